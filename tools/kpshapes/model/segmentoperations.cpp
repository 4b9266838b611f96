// SPDX-License-Identifier: MIT
#include "model/operationtables.h"

#include "kppathseglineto.h"
#include "model/binding.h"
#include "model/outlineedit.h"

#include <algorithm>

namespace {

/** Whether `isWanted` holds for any segment that has a selected handle. */
template <class Predicate> bool isAnySegment(OperationTarget const& target, Predicate isWanted)
{
    std::vector<int> const segments = segmentsAmong(*target.shape.list, target.handles);
    return std::any_of(segments.cbegin(), segments.cend(), isWanted);
}

bool canMakeCurves(OperationTarget const& target)
{
    return isAnySegment(
        target, [&target](int segment) { return isFiniteLine(*target.shape.list, segment); });
}

void makeCurves(OperationTarget& target)
{
    for (int const segment : segmentsAmong(*target.shape.list, target.handles))
        makeCurve(target.shape, segment);
}

bool canMakeLines(OperationTarget const& target)
{
    return isAnySegment(target, [&target](int segment) {
        return target.shape.list->segs.at(segment)->toCurveTo() != nullptr;
    });
}

void makeLines(OperationTarget& target)
{
    if (!canMakeLines(target))
        return;
    KpPathSegList const& list = *target.shape.list;
    for (int const segment : segmentsAmong(list, target.handles))
        makeLine(target.shape, segment);
    // A control point that goes leaves its curve's end selected.
    for (HandleId& id : target.handles) {
        if (!handleOf(list, id))
            id.kind = HandleKind::Point;
    }
    std::sort(target.handles.begin(), target.handles.end());
    target.handles.erase(
        std::unique(target.handles.begin(), target.handles.end()), target.handles.end());
}

/** Whether a subpath has a direction that can be turned. */
bool isReversible(SubpathRange const& range)
{
    return range.hasMove && range.count() > 1;
}

bool canReverse(OperationTarget const& target)
{
    auto const ranges = subpathsOf(*target.shape.list, target.handles);
    return std::any_of(ranges.cbegin(), ranges.cend(), isReversible);
}

/** Turns a subpath: its points change their places, and its steps with their control points. */
void reverse(KpPathSegList& list, SubpathRange const& range)
{
    std::vector<KpPoint> points;
    for (int i = range.first; i < range.end; ++i)
        points.push_back(list.segs.at(i)->pt);
    std::reverse(list.segs.begin() + range.first + 1, list.segs.begin() + range.end);
    for (int i = range.first; i < range.end; ++i) {
        KpPathSeg& segment = *list.segs.at(i);
        segment.pt = points[static_cast<std::size_t>(range.end - 1 - i)];
        if (KpPathSegCurveTo* const curve = segment.toCurveTo())
            std::swap(curve->ctrl1, curve->ctrl2);
    }
}

/** The name of a handle in a subpath that was turned. */
HandleId reversed(HandleId id, SubpathRange const& range)
{
    switch (id.kind) {
    case HandleKind::Control1:
        return {range.first + range.end - id.segment, HandleKind::Control2};
    case HandleKind::Control2:
        return {range.first + range.end - id.segment, HandleKind::Control1};
    default:
        return {range.first + range.end - 1 - id.segment, id.kind};
    }
}

void reverseSelected(OperationTarget& target)
{
    if (!canReverse(target))
        return;
    KpPathSegList& list = *target.shape.list;
    auto const ranges = subpathsOf(list, target.handles);
    auto range = ranges.cbegin();
    for (HandleId& id : target.handles) {
        if (!handleOf(list, id))
            continue;
        while (id.segment >= range->end)
            ++range;
        if (isReversible(*range))
            id = reversed(id, *range);
    }
    std::sort(target.handles.begin(), target.handles.end());
    for (SubpathRange const& reversible : ranges) {
        if (isReversible(reversible))
            reverse(list, reversible);
    }
}

/** Whether a subpath can stand for itself anywhere. */
bool isWhole(KpPathSegList const& list, SubpathRange const& range)
{
    return range.hasMove || list.segs.at(range.first)->type == KpPathSeg::SegEllipse;
}

std::vector<SubpathRange> wholeSubpaths(OperationTarget const& target)
{
    KpPathSegList const& list = *target.shape.list;
    std::vector<SubpathRange> ranges = subpathsOf(list, target.handles);
    ranges.erase(std::remove_if(ranges.begin(), ranges.end(),
                     [&list](SubpathRange const& range) { return !isWhole(list, range); }),
        ranges.end());
    return ranges;
}

bool canDuplicate(OperationTarget const& target)
{
    return !wholeSubpaths(target).empty();
}

/** Whether the line that closes a subpath is drawn by the flag of the outline alone. */
bool isClosedByFlag(KpPathSegList const& list, SubpathRange const& range)
{
    return list.closed && range.end == list.segs.count() && range.hasMove && range.count() > 2
        && !isRing(list, range);
}

void duplicate(OperationTarget& target)
{
    WorkingShape& shape = target.shape;
    std::vector<SubpathRange> const ranges = wholeSubpaths(target);
    if (ranges.empty())
        return;
    // What the flag closes is the last subpath, which the copy becomes: so this one needs a line.
    bool const needsLine = isClosedByFlag(*shape.list, ranges.back());
    std::vector<int> points;
    Segments all;
    std::size_t from = 0;
    Segments originals = takeSegments(*shape.list);
    auto const keepUpTo = [&](std::size_t end) {
        for (; from < end; ++from)
            all.push_back(std::move(originals[from]));
    };
    for (SubpathRange const& range : ranges) {
        Segments copies;
        for (int i = range.first; i < range.end; ++i)
            copies.push_back(copyOf(*originals[static_cast<std::size_t>(i)]));
        keepUpTo(static_cast<std::size_t>(range.end));
        if (needsLine && &range == &ranges.back())
            all.push_back(std::make_unique<KpPathSegLineTo>(copies.front()->pt, nullptr));
        for (auto& copy : copies) {
            points.push_back(static_cast<int>(all.size()));
            all.push_back(std::move(copy));
        }
    }
    keepUpTo(originals.size());
    appendSegments(*shape.list, std::move(all));
    target.handles = pointHandles(points);
    double const aside = std::min(shape.box.width(), shape.box.height()) / 20.0;
    moveHandles(shape, target.handles, QPointF(aside, aside));
}

} // namespace

std::vector<Operation> segmentOperations()
{
    OperationMenu const menu = OperationMenu::Segment;
    return {
        {"to-line", "To &Line", "Change to line", "Shift+L", menu, canMakeLines, makeLines},
        {"to-curve", "To &Curve", "Change to curve", "Shift+U", menu, canMakeCurves, makeCurves},
        {"reverse", "&Reverse Direction", "Reverse direction", "Shift+R", menu, canReverse,
            reverseSelected},
        {"duplicate", "&Duplicate Subpath", "Duplicate subpath", "Ctrl+D", menu, canDuplicate,
            duplicate},
    };
}
