// SPDX-License-Identifier: MIT
#include "model/subpaths.h"

#include <algorithm>
#include <cmath>

namespace {

/** The index behind the subpath that begins at `first`. */
int endOfSubpath(KpPathSegList const& list, int first)
{
    int end = first + 1;
    if (list.segs.at(first)->type == KpPathSeg::SegEllipse)
        return end;
    while (end < list.segs.count() && isStep(*list.segs.at(end)))
        ++end;
    return end;
}

SubpathRange rangeFrom(KpPathSegList const& list, int first)
{
    bool const hasMove = list.segs.at(first)->type == KpPathSeg::SegMoveTo;
    return {first, endOfSubpath(list, first), hasMove};
}

template <class Predicate>
std::vector<int> segmentsWhere(
    KpPathSegList const& list, QVector<HandleId> const& handles, Predicate isWanted)
{
    std::vector<int> segments;
    for (HandleId const id : handles) {
        if (isWanted(id) && handleOf(list, id))
            segments.push_back(id.segment);
    }
    std::sort(segments.begin(), segments.end());
    segments.erase(std::unique(segments.begin(), segments.end()), segments.end());
    return segments;
}

} // namespace

bool isStep(KpPathSeg const& segment)
{
    return segment.type == KpPathSeg::SegLineTo || segment.type == KpPathSeg::SegCurveTo;
}

std::vector<SubpathRange> allSubpaths(KpPathSegList const& list)
{
    std::vector<SubpathRange> ranges;
    for (int first = 0; first < list.segs.count(); first = ranges.back().end)
        ranges.push_back(rangeFrom(list, first));
    return ranges;
}

SubpathRange subpathAt(KpPathSegList const& list, int segment)
{
    int first = segment;
    while (first > 0 && isStep(*list.segs.at(first))
        && list.segs.at(first - 1)->type != KpPathSeg::SegEllipse)
        --first;
    return rangeFrom(list, first);
}

std::vector<SubpathRange> subpathsOf(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    std::vector<SubpathRange> ranges;
    for (int const segment : segmentsAmong(list, handles)) {
        if (ranges.empty() || segment >= ranges.back().end)
            ranges.push_back(subpathAt(list, segment));
    }
    return ranges;
}

bool isRing(KpPathSegList const& list, SubpathRange const& range)
{
    return list.closed && range.hasMove && range.count() > 1
        && coincide(
            placeOf(list.segs.at(range.first)->pt), placeOf(list.segs.at(range.end - 1)->pt));
}

KpPoint startPointOf(KpPathSegList const& list, int segment)
{
    if (segment > 0)
        return list.segs.at(segment - 1)->pt;
    if (list.closed)
        return list.segs.constLast()->pt;
    return {KpReal(KpReal::PartOfWidth, 0.0, 0.0), KpReal(KpReal::PartOfHeight, 0.0, 0.0)};
}

std::vector<int> pointsAmong(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    return segmentsWhere(list, handles, [](HandleId id) { return id.kind == HandleKind::Point; });
}

std::vector<int> segmentsAmong(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    return segmentsWhere(list, handles, [](HandleId) { return true; });
}

Segments takeSegments(KpPathSegList& list)
{
    Segments segments;
    segments.reserve(static_cast<std::size_t>(list.segs.count()));
    for (KpPathSeg* const segment : qAsConst(list.segs))
        segments.emplace_back(segment);
    list.removeAll(false);
    return segments;
}

void appendSegments(KpPathSegList& list, Segments segments)
{
    for (auto& segment : segments)
        list.addTail(segment.release());
}

void replaceSegment(KpPathSegList& list, int index, std::unique_ptr<KpPathSeg> segment)
{
    // In place: a removal and an insertion would move all that stands behind, twice.
    std::unique_ptr<KpPathSeg> const replaced(list.segs.at(index));
    segment->owner = &list;
    list.segs[index] = segment.release();
}

std::unique_ptr<KpPathSeg> copyOf(KpPathSeg& segment)
{
    std::unique_ptr<KpPathSeg> copy(segment.clone());
    if (KpPathSegEllipse* const ellipse = copy->toEllipse()) {
        ellipse->a = segment.toEllipse()->a;
        ellipse->b = segment.toEllipse()->b;
    }
    return copy;
}

bool coincide(QPointF const& left, QPointF const& right)
{
    double const nothing = 1e-6; // values that rules give differ in their last places
    return std::abs(left.x() - right.x()) < nothing && std::abs(left.y() - right.y()) < nothing;
}

bool isFinite(QPointF const& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}
