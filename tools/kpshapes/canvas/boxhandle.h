// SPDX-License-Identifier: MIT
#ifndef BOXHANDLE_H
#define BOXHANDLE_H

#include <QPointF>
#include <QRectF>
#include <QString>

/** A handle of the shape's box; clockwise from the top-left corner. */
enum class BoxHandle { TopLeft, Top, TopRight, Right, BottomRight, Bottom, BottomLeft, Left };

/** How many there are: their numbers count from 0. */
constexpr int boxHandleCount = 8;

/** Which sides a handle moves: -1 the left or upper one, 1 the right or lower one, 0 none. */
QPoint directionOf(BoxHandle handle);

/** Where a handle stands on a box. */
QPointF positionOn(QRectF const& box, BoxHandle handle);

/** What a handle is called: "top left corner", "right side". */
QString nameOf(BoxHandle handle);

/** How dragging a handle makes another box of one. */
struct BoxResize
{
    QRectF start; ///< the box before, on the page
    BoxHandle handle; ///< the one that is dragged
    bool keepsProportion; ///< the sides grow by the same factor
    double step; ///< the sides become multiples of this; 0: any length

    /** The box after the handle has moved by so much. Sides are 1 to a million. */
    QRectF movedBy(QPointF const& by) const;
};

#endif // BOXHANDLE_H
