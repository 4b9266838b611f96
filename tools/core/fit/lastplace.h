// SPDX-License-Identifier: MIT
#ifndef LASTPLACE_H
#define LASTPLACE_H

#include <QByteArray>

/**
 * The unit of the last place to which the coordinates of a drawing were rounded: 0.01 for two
 * decimals, 1 for whole numbers. Of a program that writes a number of digits, not of decimals, the
 * place is that of the numbers with most digits, not counting a tenth that may have come of some
 * computation. Enlarging transforms enlarge it.
 *
 * @param xml an SVG picture or a document of outlines, well-formed; else the result is 1
 */
double lastPlaceOf(QByteArray const& xml);

#endif // LASTPLACE_H
