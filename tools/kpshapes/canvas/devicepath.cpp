// SPDX-License-Identifier: MIT
#include "canvas/devicepath.h"

#include "model/subpaths.h"

#include <QPolygonF>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double tolerance = 0.06; ///< between a curve and its lines, in pixels
constexpr double closest = 0.2; ///< that two points of a line are apart, in pixels
constexpr int mostLines = 2000; ///< that one curve becomes

/** QRectF itself says that nothing contains a straight line along an axis. */
bool isWithin(QRectF const& bounds, QRectF const& rect)
{
    return rect.left() >= bounds.left() && rect.right() <= bounds.right()
        && rect.top() >= bounds.top() && rect.bottom() <= bounds.bottom();
}

/** One side of the bounds: what lies on its inner side stays. */
struct Side
{
    bool isUpright;
    double at;
    bool keepsGreater;

    double coordinate(QPointF const& point) const { return isUpright ? point.x() : point.y(); }
    bool keeps(QPointF const& point) const
    {
        return keepsGreater ? coordinate(point) >= at : coordinate(point) <= at;
    }
    QPointF crossing(QPointF const& from, QPointF const& to) const
    {
        double const part = (at - coordinate(from)) / (coordinate(to) - coordinate(from));
        QPointF const point = from + (to - from) * part;
        return isUpright ? QPointF(at, point.y()) : QPointF(point.x(), at);
    }
};

/** What is left of a line of points, or of the polygon of them, on the inner side. */
QPolygonF cut(QPolygonF const& points, Side const& side, bool isPolygon)
{
    QPolygonF left;
    left.reserve(points.size() + 8);
    for (int i = 0; i < points.size(); ++i) {
        QPointF const& point = points.at(i);
        QPointF const& before = i > 0 ? points.at(i - 1) : points.constLast();
        bool const isKept = side.keeps(point);
        if ((i > 0 || isPolygon) && side.keeps(before) != isKept)
            left.append(side.crossing(before, point));
        if (isKept)
            left.append(point);
    }
    return left;
}

/** A walk along the drawing that collects the points of each of its figures. */
class Flattening
{
public:
    Flattening(QTransform const& toDevice, QRectF const& bounds)
        : m_toDevice(toDevice)
        , m_bounds(bounds)
    {
    }

    DevicePath of(QPainterPath const& outline)
    {
        for (int i = 0; i < outline.elementCount(); ++i) {
            QPointF const point = device(outline, i);
            switch (outline.elementAt(i).type) {
            case QPainterPath::MoveToElement:
                finish();
                append(point);
                break;
            case QPainterPath::CurveToElement:
                if (i + 2 < outline.elementCount()) {
                    curve(point, device(outline, i + 1), device(outline, i + 2));
                    i += 2;
                }
                break;
            default:
                append(point);
                break;
            }
        }
        finish();
        return m_path;
    }

private:
    QPointF device(QPainterPath const& outline, int index) const
    {
        return m_toDevice.map(QPointF(outline.elementAt(index)));
    }

    void append(QPointF const& point)
    {
        if (!isFinite(point))
            return;
        m_end = point;
        if (m_points.isEmpty() || (point - m_points.constLast()).manhattanLength() >= closest)
            m_points.append(point);
    }

    void curve(QPointF const& control1, QPointF const& control2, QPointF const& end)
    {
        QPointF const start = m_end;
        if (!isFinite(control1) || !isFinite(control2) || !isFinite(end) || m_points.isEmpty())
            return append(end);
        // The second differences bound how far a curve is from its chords.
        double const bend = std::max((start - 2.0 * control1 + control2).manhattanLength(),
            (control1 - 2.0 * control2 + end).manhattanLength());
        double const lines = std::ceil(std::sqrt(0.75 * bend / tolerance));
        int const count = static_cast<int>(std::clamp(lines, 1.0, double(mostLines)));
        for (int i = 1; i < count; ++i) {
            double const t = double(i) / count;
            double const s = 1.0 - t;
            append(s * s * s * start + 3.0 * s * s * t * control1 + 3.0 * s * t * t * control2
                + t * t * t * end);
        }
        append(end);
    }

    /** Ends the figure: where points were left out, its end is the exact one. */
    void finish()
    {
        if (m_points.size() > 1)
            m_points.last() = m_end;
        bool const isRing = m_points.size() > 2
            && (m_points.constFirst() - m_points.constLast()).manhattanLength() < closest;
        bool const isCut = !isWithin(m_bounds, m_points.boundingRect());
        append(m_path.line, visible(isCut, false), isRing && !isCut);
        append(m_path.fill, visible(isCut, true), true);
        m_points.clear();
    }

    QPolygonF visible(bool isCut, bool isPolygon) const
    {
        QPolygonF points = m_points;
        if (!isCut)
            return points;
        std::array<Side, 4> const sides {
            {{true, m_bounds.left(), true}, {true, m_bounds.right(), false},
                {false, m_bounds.top(), true}, {false, m_bounds.bottom(), false}}};
        for (Side const& side : sides)
            points = cut(points, side, isPolygon);
        return points;
    }

    static void append(QPainterPath& path, QPolygonF const& points, bool isClosed)
    {
        if (points.isEmpty())
            return;
        path.moveTo(points.constFirst());
        for (int i = 1; i < points.size(); ++i)
            path.lineTo(points.at(i));
        if (isClosed)
            path.closeSubpath();
    }

    QTransform const& m_toDevice;
    QRectF const m_bounds;
    QPolygonF m_points;
    QPointF m_end;
    DevicePath m_path;
};

} // namespace

DevicePath devicePathOf(
    QPainterPath const& outline, QTransform const& toDevice, QRectF const& bounds)
{
    return Flattening(toDevice, bounds).of(outline);
}
