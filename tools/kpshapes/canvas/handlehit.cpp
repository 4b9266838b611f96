// SPDX-License-Identifier: MIT
#include "canvas/handlehit.h"
#include "document/place.h"

#include <QLineF>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr int samples = 32; ///< of a curve, before the search around the best of them
constexpr int refinements = 30;

double distanceOf(QPointF const& one, QPointF const& other)
{
    return std::hypot(one.x() - other.x(), one.y() - other.y());
}

/** A line or a curve by its parameter. */
struct Drawing
{
    QPointF start;
    QPointF control1;
    QPointF control2;
    QPointF end;
    bool isCurve;

    QPointF at(double t) const
    {
        double const s = 1.0 - t;
        if (!isCurve)
            return s * start + t * end;
        return s * s * s * start + 3.0 * s * s * t * control1 + 3.0 * s * t * t * control2
            + t * t * t * end;
    }

    /** No point of it is nearer than this: it lies within the box of its four points. */
    double leastDistance(QPointF const& point) const
    {
        auto const outside = [](double at, std::initializer_list<double> ends) {
            return std::max({std::min(ends) - at, at - std::max(ends), 0.0});
        };
        return isCurve
            ? std::hypot(outside(point.x(), {start.x(), control1.x(), control2.x(), end.x()}),
                outside(point.y(), {start.y(), control1.y(), control2.y(), end.y()}))
            : std::hypot(
                outside(point.x(), {start.x(), end.x()}), outside(point.y(), {start.y(), end.y()}));
    }
};

double nearestOnLine(Drawing const& line, QPointF const& point)
{
    QPointF const way = line.end - line.start;
    double const square = QPointF::dotProduct(way, way);
    return square > 0.0
        ? std::clamp(QPointF::dotProduct(point - line.start, way) / square, 0.0, 1.0)
        : 0.0;
}

double nearestOnCurve(Drawing const& curve, QPointF const& point)
{
    auto const distance = [&](double t) { return distanceOf(curve.at(t), point); };
    int best = 0;
    for (int i = 1; i <= samples; ++i) {
        if (distance(double(i) / samples) < distance(double(best) / samples))
            best = i;
    }
    double low = std::max(best - 1, 0) / double(samples);
    double high = std::min(best + 1, samples) / double(samples);
    for (int i = 0; i < refinements; ++i) {
        double const third = (high - low) / 3.0;
        if (distance(low + third) <= distance(high - third))
            high -= third;
        else
            low += third;
    }
    return (low + high) / 2.0;
}

std::optional<Drawing> drawingOf(KpPathSeg& segment)
{
    QPointF const end = placeOf(segment.pt);
    if (KpPathSegCurveTo const* const curve = segment.toCurveTo())
        return Drawing {segment.startPt(), placeOf(curve->ctrl1), placeOf(curve->ctrl2), end, true};
    if (segment.type == KpPathSeg::SegLineTo)
        return Drawing {segment.startPt(), {}, {}, end, false};
    return std::nullopt;
}

} // namespace

QVector<HandleId> handlesAt(KpPathSegList const& list, ViewTransform const& view, QPointF const& at)
{
    std::vector<std::pair<double, HandleId>> found;
    forEachHandle(list, [&](Handle const& handle) {
        double const distance = distanceOf(view.fromOutline(handle.position), at);
        if (distance <= handleReach)
            found.emplace_back(distance, handle.id);
    });
    // Within a pixel nobody can aim: what is drawn later lies above.
    std::stable_sort(found.begin(), found.end(), [](auto const& left, auto const& right) {
        double const one = std::floor(left.first);
        double const other = std::floor(right.first);
        return one < other || (!(other < one) && right.second < left.second);
    });
    QVector<HandleId> handles;
    handles.reserve(static_cast<int>(found.size()));
    for (auto const& [distance, id] : found)
        handles.append(id);
    return handles;
}

QVector<HandleId> handlesWithin(
    KpPathSegList const& list, ViewTransform const& view, QRectF const& rect)
{
    QRectF const normal = rect.normalized();
    QVector<HandleId> handles;
    forEachHandle(list, [&](Handle const& handle) {
        QPointF const at = view.fromOutline(handle.position);
        bool const isWithin = at.x() >= normal.left() && at.x() <= normal.right()
            && at.y() >= normal.top() && at.y() <= normal.bottom();
        if (isWithin)
            handles.append(handle.id);
    });
    return handles;
}

QRectF boxHandleFrame(QSizeF const& box, ViewTransform const& view)
{
    double const by = boxHandleOffset;
    return QRectF(view.fromOutline({}), view.fromOutline({box.width(), box.height()}))
        .adjusted(-by, -by, by, by);
}

std::optional<BoxHandle> boxHandleAt(
    QSizeF const& box, ViewTransform const& view, QPointF const& at)
{
    QRectF const frame = boxHandleFrame(box, view);
    std::optional<BoxHandle> found;
    double nearest = handleReach;
    for (int i = 0; i < boxHandleCount; ++i) {
        auto const handle = static_cast<BoxHandle>(i);
        double const distance = distanceOf(positionOn(frame, handle), at);
        if (distance <= nearest) {
            nearest = distance;
            found = handle;
        }
    }
    return found;
}

std::optional<SegmentPlace> nearestPlace(KpPathSegList const& list, QPointF const& point)
{
    std::optional<SegmentPlace> nearest;
    for (int i = 0; i < list.segs.count(); ++i) {
        std::optional<Drawing> const drawing = drawingOf(*list.segs.at(i));
        if (!drawing || (nearest && !(drawing->leastDistance(point) < nearest->distance)))
            continue;
        double const t =
            drawing->isCurve ? nearestOnCurve(*drawing, point) : nearestOnLine(*drawing, point);
        QPointF const position = drawing->at(t);
        double const distance = distanceOf(position, point);
        if (std::isfinite(distance) && (!nearest || distance < nearest->distance))
            nearest = SegmentPlace {i, t, position, distance};
    }
    return nearest;
}
