// SPDX-License-Identifier: MIT
#ifndef SHAPEBOX_H
#define SHAPEBOX_H

#include "document/outlinedocument.h"
#include "document/shapes.h"

#include <QSizeF>
#include <QVector>

/** No side of a box is longer, in units. */
constexpr double greatestBoxSide = 1e6;

/**
 * The box that the element around an outline says its values are for: its Width and Height. Empty
 * unless both are numbers above 0.001 and at most a million.
 */
QSizeF namedBox(Outline const& outline);

/**
 * The outlines of a document as shapes, whose boxes are namedBox(). The document loses the lists.
 *
 * @param indices those that are wanted, from 1; all if empty
 */
Shapes takeShapes(OutlineDocument& document, QVector<int> const& indices);

/**
 * The box to show shapes in: the largest sides of their boxes or, if none has one, what the values
 * cover to the right of and below the origin. Never empty: a side of nothing is as long as the
 * other one, or 100. Six significant digits, at most a million.
 */
QSizeF boxOf(Shapes const& shapes);

#endif // SHAPEBOX_H
