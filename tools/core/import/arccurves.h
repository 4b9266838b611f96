// SPDX-License-Identifier: MIT
#ifndef ARCCURVES_H
#define ARCCURVES_H

#include <QPointF>
#include <QSizeF>

#include <vector>

/** A cubic Bézier curve from wherever the last one ended. */
struct Curve
{
    QPointF control1; ///< towards the start
    QPointF control2; ///< towards the end
    QPointF end; ///< on the curve
};

/** A part of an ellipse, as SVG describes it: its ends stand beside it. */
struct EllipticalArc
{
    QSizeF radii; ///< not negative; too small ones grow until the ellipse meets both ends
    double rotation = 0.0; ///< of the first radius from the x axis, in degrees, clockwise
    bool isLarge = false; ///< the longer way round
    bool isClockwise = false; ///< as seen on the screen
};

/** Whether it is an arc and not, for a radius of 0, a straight line. */
bool isCurved(EllipticalArc const& arc);

/**
 * Curves for the arc, one for each quarter turn or part of it, within 0.0003 of the radius. The
 * last one ends at `to`, to the bit. None if the ends are the same place; one that is straight if
 * the radii are 0 or so large that the arc is no longer distinct. Numbers beyond 1e150 can make
 * places that are not finite.
 */
std::vector<Curve> arcCurves(QPointF const& from, QPointF const& to, EllipticalArc const& arc);

#endif // ARCCURVES_H
