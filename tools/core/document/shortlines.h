// SPDX-License-Identifier: MIT
#ifndef SHORTLINES_H
#define SHORTLINES_H

#include "kppathseglist.h"

#include <QVector>

/**
 * The indices of the lines that drawing leaves out, since they end less than one unit from where
 * the drawing stands, in both directions.
 */
QVector<int> undrawnLines(KpPathSegList const& list);

/** How many of these would lead anywhere: to another point than that where the drawing stands. */
int countLostLines(KpPathSegList const& list);

#endif // SHORTLINES_H
