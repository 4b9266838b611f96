#ifndef OUTLINECHECK_H
#define OUTLINECHECK_H

#include "common/diagnostic.h"
#include "document/outlinedocument.h"

/**
 * All that the readers, the writers, undo or drawing do to the outlines of a document silently: a
 * warning each, in document order for each outline.
 */
Diagnostics checkOutlines(OutlineDocument const& document);

/**
 * Of these, what is not to be seen any more when the outlines are written anew as the DOM reader
 * reads them: what reads otherwise than it looks, and in what the stream reader differs.
 */
Diagnostics checkReading(OutlineDocument const& document);

#endif // OUTLINECHECK_H
