// SPDX-License-Identifier: MIT
#ifndef FILENAMES_H
#define FILENAMES_H

/**
 * Lets Qt keep the names of files to the byte, in any locale: what QFile::decodeName() makes of bytes,
 * QFile::encodeName() makes the same bytes again. To be called once, at the start of the process,
 * before any name or argument becomes text.
 *
 * Bytes are UTF-8, a byte-order mark being a character like any other. Each byte that belongs to no
 * character becomes a low surrogate that stands alone, U+DC80 to U+DCFF, which no valid text holds.
 * Qt takes all text of its surroundings so: arguments, variables of the environment, and what the
 * system says of errors.
 */
void keepFileNamesExact();

#endif // FILENAMES_H
