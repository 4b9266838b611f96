// SPDX-License-Identifier: MIT
#ifndef KPMATH_H
#define KPMATH_H

#include "kpgeometry_export.h"

#include <QPointF>
#include <QRectF>

/**
 * Plane geometry in screen coordinates: x grows to the right and y downwards, so an angle of
 * 90 degrees points down.
 *
 * The functions differ in the range of their results, in their tolerances and in their codes.
 * These differences are deliberate: callers compare with the numbers given here. Nothing fails;
 * degenerate input gives what the formula gives, infinities and NaN included, and no
 * function keeps a state or allocates.
 */
namespace KpMath {

/** Whether the length of `v` differs from 1 by less than 0.0001. */
KPGEOMETRY_EXPORT bool kpIsUnitVector(QPointF v);

/**
 * `v` scaled to the length 1. A vector whose length is 0 or NaN stays as it is; one so
 * long that its length is infinite has its finite components scaled to 0.
 */
KPGEOMETRY_EXPORT QPointF kpUnitVector(QPointF v);

/**
 * The determinant of a 3 x 3 matrix by the rule of Sarrus.
 *
 * @param r0, r1, r2 the rows, three numbers each; not changed
 */
KPGEOMETRY_EXPORT double kpDeterminate(double* r0, double* r1, double* r2);

/**
 * The direction of `a - b` in degrees, in (-180, 180]. Straight up is -90, straight down 90; of
 * two equal points it is NaN.
 */
KPGEOMETRY_EXPORT double kpAtan(QPointF a, QPointF b);

/**
 * The direction of `a - b` in degrees, from 0 to 360.
 *
 * A vector that is less than 0.1 wide counts as upright, 90 or 270, if it is higher than wide,
 * and as level, 0 or 180, if not. A direction that is less than half a unit in the last place
 * before the full circle gives 360.
 */
KPGEOMETRY_EXPORT double kpAtan2(QPointF a, QPointF b);

/**
 * On which side of the line from `a` to `b` the point `p` lies: 1 and 2 are the two sides, 1 to
 * the left of a line that runs downwards on screen.
 *
 * Within one area unit of the line (twice the area of the triangle, an absolute tolerance) the
 * result is 4 if `b` is to the left of `a`, else 3 if `p` is not to the left of `b`, else 4.
 */
KPGEOMETRY_EXPORT int kpLineSide(QPointF p, QPointF a, QPointF b);

/** The foot of the perpendicular from `p` on the line a-b; NaN if `a` equals `b`. */
KPGEOMETRY_EXPORT QPointF kpProjection(QPointF const& a, QPointF const& p, QPointF const& b);

/**
 * The turn from `o`-`a` to `o`-`b`: 1 clockwise on screen, -1 counter-clockwise, and 0 where the
 * cross product is not beyond `eps` (area units).
 */
KPGEOMETRY_EXPORT int kpVectorDir(QPointF const& o, QPointF const& a, QPointF const& b, double eps);

/**
 * The turn of the polyline o, a, b at `a`: 1 clockwise on screen, 2 counter-clockwise, 0 if it
 * turns back at `a`, 3 if it goes straight on.
 */
KPGEOMETRY_EXPORT int kpOrtTurnOrder(QPointF const& o, QPointF const& a, QPointF const& b);

/**
 * The angle at `o` from `a` to `b` in degrees, its sign from the side of the line a-b on which
 * `o` lies: negative where kpLineSide(o, a, b) is 2. NaN if `a` or `b` equals `o`, and
 * where rounding takes the cosine beyond 1.
 */
KPGEOMETRY_EXPORT double kpDegree(QPointF a, QPointF o, QPointF b);

/**
 * The rectangle with the corners `p1` and `p2`. A side of zero length becomes half a unit long,
 * up to rounding.
 */
KPGEOMETRY_EXPORT QRectF kpNormalizeRect(QPointF p1, QPointF p2);

/**
 * The point at which the ray from the centre of `rect` in the direction `angle` meets the
 * ellipse inscribed in it.
 *
 * @param angle in degrees, 0 to the right and 90 down, any number of turns
 * @param rect a height below 0.1 counts as 0.1; the width is taken as it is
 */
KPGEOMETRY_EXPORT QPointF kpEllipsePoint(QRectF rect, double angle);

/**
 * The foot of the perpendicular from `p` on the line a-b, rounded to single precision. A line
 * less than 0.001 wide or high counts as upright or level; its foot is not rounded.
 */
KPGEOMETRY_EXPORT QPointF kpUprightPoint(QPointF a, QPointF b, QPointF p);

/**
 * Where the infinite lines a1-a2 and b1-b2 meet: 1, with the point in `out`; 0 if they are one
 * line and 2 if they are parallel, with `out` as it was. Directions whose sine is 0.0001 or less
 * are parallel.
 */
KPGEOMETRY_EXPORT int kpCrossPoint(QPointF a1, QPointF a2, QPointF b1, QPointF b2, QPointF& out);

/**
 * Where the segments a1-a2 and b1-b2 meet, at least `margin` units of length away from all four
 * ends: 1, with the point in `out`; else 0, with `out` as it was. Parallel segments do not meet;
 * where a coordinate is NaN, so is the point, and the result is 1.
 */
KPGEOMETRY_EXPORT int kpCrossPoint3(
    QPointF a1, QPointF a2, QPointF b1, QPointF b2, QPointF& out, double margin);

} // namespace KpMath

#endif // KPMATH_H
