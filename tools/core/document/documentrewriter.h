#ifndef DOCUMENTREWRITER_H
#define DOCUMENTREWRITER_H

#include "document/outlinedocument.h"

/**
 * The document with the coordinates of its outlines as they stand in their lists, in UTF-8.
 *
 * Everything else stays as it is: foreign elements and attributes, comments, white space, the
 * document type, the spelling of numbers that are the same. Rules and coordinates that are left
 * to the readers are written down.
 *
 * @param document the segments of its lists must be those that were read
 */
QByteArray rewritten(OutlineDocument const& document);

#endif // DOCUMENTREWRITER_H
