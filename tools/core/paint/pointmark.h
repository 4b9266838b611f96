// SPDX-License-Identifier: MIT
#ifndef POINTMARK_H
#define POINTMARK_H

#include "kppoint.h"

#include <QColor>
#include <QPointF>

class QPainter;

/** What a mark stands on, which gives its form. */
enum class PointMark {
    Corner, ///< the end of a line: a square
    Curve, ///< the end of a curve, or a centre: a disc
    Control ///< a control point, or the end of a radius: a diamond
};

/** From the middle of a mark to its edge, in the painter's units. */
constexpr double pointMarkRadius = 4.5;

/** The colour that stands for the rule of a coordinate. */
QColor ruleColour(KpReal const& real);

/**
 * Draws a mark whose left half shows the rule of x and whose right half that of y.
 *
 * @param at its middle, in the painter's units
 * @param x, y colours of the halves, see ruleColour()
 */
void drawPointMark(
    QPainter& painter, QPointF const& at, PointMark mark, QColor const& x, QColor const& y);

#endif // POINTMARK_H
