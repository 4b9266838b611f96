#ifndef DOCUMENTNORMALIZER_H
#define DOCUMENTNORMALIZER_H

#include "document/outlinedocument.h"

#include <QByteArray>

#include <optional>

/**
 * The document in the one spelling that all documents of its meaning have, in UTF-8: a line for
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
 * Nothing, with a diagnostic, if it would be larger than what OutlineDocument reads.
 */
std::optional<QByteArray> normalized(OutlineDocument const& document, Diagnostics& diagnostics);

/** As above. @param largest how many bytes it may have, above 0 and far below 2^31 */
std::optional<QByteArray> normalized(
    OutlineDocument const& document, qint64 largest, Diagnostics& diagnostics);

#endif // DOCUMENTNORMALIZER_H
