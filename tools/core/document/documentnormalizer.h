// SPDX-License-Identifier: MIT
#ifndef DOCUMENTNORMALIZER_H
#define DOCUMENTNORMALIZER_H

#include "common/repeatableinput.h"
#include "document/outlinereader.h"

/**
 * Writes a document in the one spelling that all documents of its meaning have, in UTF-8: a line for
 * each coordinate, an indentation of one blank a level, attributes in a fixed order. Normalised
 * again it stays as it is, to the byte.
 *
 * Outlines are written as the DOM reader reads them, and so that the stream reader reads the
 * same: flags as the writers have them, all coordinates in the order of the format and with their
 * rules, numbers in six digits. What is foreign stays, inside outlines too: elements, comments,
 * instructions, texts; attributes, sorted by name, behind those of the format.
 *
 * White space stays where there is text beside it, where xml:space says so, and alone in an
 * element unless it breaks the line. In outlines it does not count.
 *
 * A coordinate given again is left out, and so is, with a warning, an element that only the
 * stream reader would take for a segment or a coordinate. Another warning tells how many numbers
 * were rounded. What else is lost to sight by this, checkReading() finds.
 *
 * It is read twice, an outline at a time. False, with a diagnostic, if it is no well-formed XML or
 * goes beyond BoundedXml's bounds; what was written then is of no use.
 *
 * @param file its name in diagnostics
 * @param output it must remember itself whether anything could not be written
 */
bool normalizeDocument(
    RepeatableInput const& input, QString const& file, QIODevice& output, Diagnostics& diagnostics);

#endif // DOCUMENTNORMALIZER_H
