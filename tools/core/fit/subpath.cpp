// SPDX-License-Identifier: MIT
#include "fit/subpath.h"

#include "document/place.h"
#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"

#include <algorithm>
#include <cmath>

namespace {

/** The part of a radius that the control points of a quarter of an ellipse lie from its ends. */
constexpr double quarterControl = 0.5522847498;

/** Editors use factors that differ by less: nobody sees a difference of this part of a radius. */
constexpr double controlSlack = 0.0006;

bool isNear(QPointF const& left, QPointF const& right, double tolerance)
{
    return std::abs(left.x() - right.x()) <= tolerance
        && std::abs(left.y() - right.y()) <= tolerance;
}

/** Whether the step is a quarter of the ellipse from `start`, which lies on one of its axes. */
bool isQuarter(
    DrawnEllipse const& ellipse, QPointF const& start, DrawnStep const& step, double tolerance)
{
    QPointF const from = start - ellipse.centre;
    QPointF const to = step.end - ellipse.centre;
    // One end lies on the horizontal axis, the other on the vertical one.
    // A point is rounded, and so is the centre that it is compared with.
    double const pointSlack = 2.0 * tolerance;
    bool const startsAtSide = std::abs(from.y()) <= pointSlack;
    QPointF const side = startsAtSide ? from : to;
    QPointF const top = startsAtSide ? to : from;
    if (std::abs(std::abs(side.x()) - ellipse.a) > pointSlack || std::abs(side.y()) > pointSlack
        || std::abs(std::abs(top.y()) - ellipse.b) > pointSlack || std::abs(top.x()) > pointSlack)
        return false;
    QPointF const sideControl = side + quarterControl * QPointF(0.0, top.y());
    QPointF const topControl = top + quarterControl * QPointF(side.x(), 0.0);
    double const slack = 3.0 * tolerance + controlSlack * std::max(ellipse.a, ellipse.b);
    return isNear(step.control1 - ellipse.centre, startsAtSide ? sideControl : topControl, slack)
        && isNear(step.control2 - ellipse.centre, startsAtSide ? topControl : sideControl, slack);
}

/** The ellipse that a ring of four curves is, if it is one. */
std::optional<DrawnEllipse> ellipseOf(Subpath const& ring, double tolerance)
{
    constexpr std::size_t quarters = 4;
    if (!ring.isRing || ring.isClosedByFlag || ring.steps.size() != quarters
        || !std::all_of(ring.steps.begin(), ring.steps.end(),
            [](DrawnStep const& step) { return step.isCurve; }))
        return std::nullopt;
    QPointF const p0 = ring.point(0);
    QPointF const p1 = ring.point(1);
    QPointF const p2 = ring.point(2);
    QPointF const p3 = ring.point(3);
    DrawnEllipse ellipse;
    ellipse.centre = (p0 + p1 + p2 + p3) / 4.0;
    ellipse.a = std::max(std::abs(p0.x() - p2.x()), std::abs(p1.x() - p3.x())) / 2.0;
    ellipse.b = std::max(std::abs(p0.y() - p2.y()), std::abs(p1.y() - p3.y())) / 2.0;
    if (std::min(ellipse.a, ellipse.b) <= 4.0 * tolerance)
        return std::nullopt;
    for (std::size_t i = 0; i < quarters; ++i) {
        if (!isQuarter(ellipse, ring.point(i), ring.steps[i], tolerance))
            return std::nullopt;
    }
    QPointF const from = p0 - ellipse.centre;
    QPointF const to = p1 - ellipse.centre;
    ellipse.isClockwise = from.x() * to.y() - from.y() * to.x() > 0.0;
    return ellipse;
}

Subpath ellipseSubpath(KpPathSegEllipse const& segment)
{
    Subpath ring;
    DrawnEllipse const ellipse {placeOf(segment.pt), segment.a.value, segment.b.value, true};
    QPointF const radii(ellipse.a, ellipse.b);
    auto const elements = KpPath::ellipse(QRectF(ellipse.centre - radii, ellipse.centre + radii));
    auto const at = [&elements](int i) { return QPointF(elements.at(i).x, elements.at(i).y); };
    ring.start = at(0);
    for (int i = 1; i + 2 < elements.size(); i += 3)
        ring.steps.push_back({true, at(i), at(i + 1), at(i + 2)});
    ring.isRing = true;
    ring.isEllipseSegment = true;
    ring.ellipse = ellipse;
    return ring;
}

/** Collects the segments of an outline. */
class Splitter
{
public:
    std::vector<Subpath> split(KpPathSegList const& list, double tolerance)
    {
        for (KpPathSeg* const seg : list.segs)
            add(*seg);
        if (list.closed)
            closeLast(tolerance);
        for (Subpath& subpath : m_subpaths)
            complete(subpath, tolerance);
        return std::move(m_subpaths);
    }

private:
    void add(KpPathSeg& seg)
    {
        if (KpPathSegEllipse const* const ellipse = seg.toEllipse()) {
            m_subpaths.push_back(ellipseSubpath(*ellipse));
        } else if (seg.type == KpPathSeg::SegMoveTo) {
            m_subpaths.emplace_back();
            m_subpaths.back().start = placeOf(seg.pt);
        } else {
            if (m_subpaths.empty() || m_subpaths.back().isEllipseSegment) {
                m_subpaths.emplace_back();
                m_subpaths.back().hasMove = false;
            }
            m_subpaths.back().steps.push_back(stepOf(seg));
        }
    }

    static DrawnStep stepOf(KpPathSeg& seg)
    {
        if (KpPathSegCurveTo const* const curve = seg.toCurveTo())
            return {true, placeOf(curve->ctrl1), placeOf(curve->ctrl2), placeOf(seg.pt)};
        return {false, QPointF(), QPointF(), placeOf(seg.pt)};
    }

    /** Makes a step of the line that closing the outline draws. */
    void closeLast(double tolerance)
    {
        if (m_subpaths.empty())
            return;
        Subpath& last = m_subpaths.back();
        if (!last.hasMove || last.steps.empty()
            || isNear(last.start, last.steps.back().end, tolerance))
            return;
        last.steps.push_back({false, QPointF(), QPointF(), last.start});
        last.isClosedByFlag = true;
    }

    static void complete(Subpath& subpath, double tolerance)
    {
        if (subpath.isEllipseSegment)
            return;
        subpath.isRing = subpath.hasMove && subpath.steps.size() > 1
            && isNear(subpath.start, subpath.steps.back().end, tolerance);
        subpath.ellipse = ellipseOf(subpath, tolerance);
    }

    std::vector<Subpath> m_subpaths;
};

} // namespace

std::string Subpath::kinds() const
{
    std::string letters;
    letters.reserve(steps.size());
    for (DrawnStep const& step : steps)
        letters.push_back(step.isCurve ? 'C' : 'L');
    return letters;
}

std::vector<Subpath> subpathsOf(KpPathSegList const& list, double tolerance)
{
    return Splitter().split(list, tolerance);
}

Subpath reversed(Subpath const& subpath)
{
    Subpath turned = subpath;
    turned.start = subpath.steps.empty() ? subpath.start : subpath.steps.back().end;
    std::size_t const count = subpath.steps.size();
    for (std::size_t i = 0; i < count; ++i) {
        DrawnStep const& step = subpath.steps[count - 1 - i];
        turned.steps[i] = {
            step.isCurve, step.control2, step.control1, subpath.point(count - 1 - i)};
    }
    if (turned.ellipse)
        turned.ellipse->isClockwise = !turned.ellipse->isClockwise;
    return turned;
}

Subpath rotated(Subpath const& ring, std::size_t shift)
{
    Subpath turned = ring;
    turned.start = ring.point(shift);
    std::rotate(turned.steps.begin(), turned.steps.begin() + static_cast<std::ptrdiff_t>(shift),
        turned.steps.end());
    return turned;
}
