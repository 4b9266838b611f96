// SPDX-License-Identifier: MIT
#ifndef DOCUMENTREWRITER_H
#define DOCUMENTREWRITER_H

#include "document/outlinereader.h"

/** Changes the list of an outline, whose segments stay; false ends the rewriting. */
using OutlineEdit = std::function<bool(Outline&)>;

/**
 * Copies a document with the coordinates of its outlines as `edit` has left them, in UTF-8, an
 * outline at a time.
 *
 * Everything else stays as it is: foreign elements and attributes, comments, white space, the
 * document type, the spelling of numbers that are the same. Rules and coordinates that are left
 * to the readers are written down.
 *
 * False, with a diagnostic, if it is no well-formed XML or goes beyond BoundedXml's bounds; and,
 * without one, if `edit` said so. What was written then is of no use.
 *
 * @param output it must remember itself whether anything could not be written
 * @param file the name of the input in diagnostics
 * @param edit called with each outline in document order
 * @param progress called now and then; may be empty
 */
bool rewriteDocument(QIODevice& input, QString const& file, QIODevice& output,
    OutlineEdit const& edit, Diagnostics& diagnostics, ProgressFunction const& progress = {});

#endif // DOCUMENTREWRITER_H
