// SPDX-License-Identifier: MIT
#ifndef HANDLE_H
#define HANDLE_H

#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglist.h"

#include <QPointF>

#include <optional>

/** What a handle of an outline moves. */
enum class HandleKind {
    Point, ///< the end point of a segment, or the centre of an ellipse
    Control1, ///< the control point of a curve beside its start
    Control2, ///< the control point beside its end
    RadiusA, ///< the horizontal radius of an ellipse: the handle stands at its right
    RadiusB ///< the vertical radius: the handle stands below
};

/** Names a handle of an outline. */
struct HandleId
{
    int segment; ///< from 0
    HandleKind kind; ///< which of the handles of that segment
};

/** The same handle. */
inline bool operator==(HandleId left, HandleId right)
{
    return left.segment == right.segment && left.kind == right.kind;
}
/** In the order of the outline. */
inline bool operator<(HandleId left, HandleId right)
{
    return left.segment < right.segment
        || (left.segment == right.segment && left.kind < right.kind);
}

/** A handle of an outline, with the coordinates that it moves. */
struct Handle
{
    HandleId id; ///< which one
    KpReal* x; ///< moved to the right; null for a vertical radius; not owned
    KpReal* y; ///< moved downwards; null for a horizontal radius; not owned
    QPointF position; ///< in the outline's units
};

/** The handle of this name; nothing if the outline has none. */
std::optional<Handle> handleOf(KpPathSegList const& list, HandleId id);

/** Calls `visit` with each handle of a segment, its end point first. */
template <class Visitor> void forEachHandle(KpPathSeg& segment, int index, Visitor visit)
{
    QPointF const end(segment.pt.x.value, segment.pt.y.value);
    visit(Handle {{index, HandleKind::Point}, &segment.pt.x, &segment.pt.y, end});
    if (KpPathSegCurveTo* const curve = segment.toCurveTo()) {
        auto const control = [&](HandleKind kind, KpPoint& point) {
            visit(
                Handle {{index, kind}, &point.x, &point.y, QPointF(point.x.value, point.y.value)});
        };
        control(HandleKind::Control1, curve->ctrl1);
        control(HandleKind::Control2, curve->ctrl2);
    } else if (KpPathSegEllipse* const ellipse = segment.toEllipse()) {
        visit(Handle {{index, HandleKind::RadiusA}, &ellipse->a, nullptr,
            end + QPointF(ellipse->a.value, 0.0)});
        visit(Handle {{index, HandleKind::RadiusB}, nullptr, &ellipse->b,
            end + QPointF(0.0, ellipse->b.value)});
    }
}

/** Calls `visit` with each handle of the outline, in its order. */
template <class Visitor> void forEachHandle(KpPathSegList const& list, Visitor visit)
{
    for (int i = 0; i < list.segs.count(); ++i)
        forEachHandle(*list.segs.at(i), i, visit);
}

/** Calls `visit` with each KpReal of the outline, once. */
template <class Visitor> void forEachReal(KpPathSegList const& list, Visitor visit)
{
    forEachHandle(list, [&visit](Handle const& handle) {
        if (handle.x)
            visit(*handle.x);
        if (handle.y)
            visit(*handle.y);
    });
}

#endif // HANDLE_H
