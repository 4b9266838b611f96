// SPDX-License-Identifier: MIT
#ifndef OUTLINEEDIT_H
#define OUTLINEEDIT_H

#include "model/shapeitem.h"
#include "model/subpaths.h"

/**
 * A new point: by the rule of its neighbours where they agree on one, else in proportion to the
 * box. Each coordinate for itself.
 *
 * @param place where it stands; finite
 */
KpPoint boundBetween(
    KpPoint const& left, KpPoint const& right, QPointF const& place, QSizeF const& box);

/** Whether a line or a curve is there whose points are finite, so that it can be divided. */
bool isDivisible(KpPathSegList const& list, int segment);

/**
 * Divides a line or a curve: it stays where it is drawn, but for rounding.
 *
 * @param t where, from 0, its start, to 1, its end; a curve's parameter
 * @return the segment that ends at the new point: `segment`; -1 if nothing was divided: there is
 * no such line or curve, or a number is not finite or out of range
 */
int insertPoint(WorkingShape& shape, int segment, double t);
/** Divides several in their middle. @param segments ascending; those that cannot be: ignored
 *  @return the segments that end at the new points */
std::vector<int> insertMidpoints(WorkingShape& shape, std::vector<int> const& segments);

/** Whether there is a line, with finite points. */
bool isFiniteLine(KpPathSegList const& list, int segment);
/** Makes a line a curve that is drawn alike, its control points at its thirds. Else nothing. */
void makeCurve(WorkingShape& shape, int segment);
/** Makes a curve a line to the same point. Anything else stays as it is. */
void makeLine(WorkingShape& shape, int segment);

/** The segment behind which something new goes: the last one selected, or the last; -1 for none. */
int segmentToAddAfter(WorkingShape const& shape, QVector<HandleId> const& handles);

/**
 * Adds a line behind a segment. Its point is bound in proportion to the box, as all that is added.
 *
 * @param after the segment before it; -1 for the front; anything out of range is the end
 * @return its index; -1 if a number was not finite, and nothing was added
 */
int addLine(WorkingShape& shape, int after, QPointF const& point);
/** Adds a curve behind a segment; as addLine(). */
int addCurve(WorkingShape& shape, int after, QPointF const& control1, QPointF const& control2,
    QPointF const& end);
/** Adds a move behind the subpath of a segment, which so stays in one piece; else as addLine(). */
int addMove(WorkingShape& shape, int after, QPointF const& point);
/** Adds an ellipse; as addMove(). @param a the horizontal radius; without its sign
 *  @param b the vertical radius; without its sign */
int addEllipse(WorkingShape& shape, int after, QPointF const& centre, double a, double b);

#endif // OUTLINEEDIT_H
