// SPDX-License-Identifier: MIT
#ifndef HANDLEHIT_H
#define HANDLEHIT_H

#include "canvas/boxhandle.h"
#include "canvas/viewtransform.h"
#include "model/handle.h"

#include <QVector>

#include <optional>

/** How far from the middle of a handle a press still meets it, in logical pixels. */
constexpr double handleReach = 7.0;
/** How far outside of the box its handles stand, so that they hide no point: logical pixels. */
constexpr double boxHandleOffset = 12.0;

/** Where the handles of a box stand: on this rectangle of the widget. */
QRectF boxHandleFrame(QSizeF const& box, ViewTransform const& view);

/** The handles that a press at a place of the widget meets: the nearest first, then the later. */
QVector<HandleId> handlesAt(
    KpPathSegList const& list, ViewTransform const& view, QPointF const& at);

/** The handles within a rectangle of the widget, in the order of the outline. */
QVector<HandleId> handlesWithin(
    KpPathSegList const& list, ViewTransform const& view, QRectF const& rect);

/** The handle of the box that a press meets. */
std::optional<BoxHandle> boxHandleAt(
    QSizeF const& box, ViewTransform const& view, QPointF const& at);

/** A place on an outline. */
struct SegmentPlace
{
    int segment; ///< from 0: the one whose drawing it is on
    double t; ///< 0 at its start, 1 at its end
    QPointF position; ///< in the outline's units
    double distance; ///< from the place that was asked for, in the outline's units
};

/**
 * The place on lines and curves that is nearest to a point in the outline's units; nothing if no
 * segment can take a point: of moves and ellipses none can.
 */
std::optional<SegmentPlace> nearestPlace(KpPathSegList const& list, QPointF const& point);

#endif // HANDLEHIT_H
