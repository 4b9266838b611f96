// SPDX-License-Identifier: MIT
#include "model/outlineedit.h"

#include "document/bindingrule.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "model/binding.h"

#include <cmath>

namespace {

KpReal boundReal(double value, qint16 rule, QSizeF const& box)
{
    KpReal real(rule, 0.0, value);
    bindInPlace(real, rule, box);
    return real;
}

KpPoint inProportion(QPointF const& place, QSizeF const& box)
{
    return {boundReal(place.x(), KpReal::PartOfWidth, box),
        boundReal(place.y(), KpReal::PartOfHeight, box)};
}

qint16 commonRule(KpReal const& left, KpReal const& right, qint16 otherwise)
{
    bool const agree = left.base == right.base && ruleOf(left.base) != unknownRule;
    return agree ? left.base : otherwise;
}

/** A number between two, which is theirs to the bit where they are the same. */
double between(double left, double right, double t)
{
    return left < right || left > right ? left * (1.0 - t) + right * t : left;
}

QPointF between(QPointF const& left, QPointF const& right, double t)
{
    return {between(left.x(), right.x(), t), between(left.y(), right.y(), t)};
}

/** Moves a point; a coordinate that stays the same keeps its rate to the bit. */
void movePoint(KpPoint& point, QPointF const& place, QSizeF const& box)
{
    auto const move = [&box](KpReal& real, double value) {
        if (real.value < value || real.value > value)
            moveBound(real, value, box);
    };
    move(point.x, place.x());
    move(point.y, place.y());
}

std::unique_ptr<KpPathSeg> firstPartOf(
    KpPathSegCurveTo& curve, KpPoint const& start, double t, QSizeF const& box)
{
    QPointF const middle = between(placeOf(curve.ctrl1), placeOf(curve.ctrl2), t);
    QPointF const control1 = between(placeOf(start), placeOf(curve.ctrl1), t);
    QPointF const control2 = between(control1, middle, t);
    QPointF const control4 = between(placeOf(curve.ctrl2), placeOf(curve.pt), t);
    QPointF const control3 = between(middle, control4, t);

    KpPoint const point = boundBetween(start, curve.pt, between(control2, control3, t), box);
    KpPoint firstControl = curve.ctrl1;
    movePoint(firstControl, control1, box);
    auto first = std::make_unique<KpPathSegCurveTo>(
        firstControl, boundBetween(curve.ctrl1, point, control2, box), point, nullptr);
    curve.ctrl1 = boundBetween(point, curve.ctrl2, control3, box);
    movePoint(curve.ctrl2, control4, box);
    return first;
}

/** Divides a segment: it becomes its second part, and its first is returned. */
std::unique_ptr<KpPathSeg> firstPartOf(WorkingShape& shape, int segment, double t)
{
    KpPathSeg& divided = *shape.list->segs.at(segment);
    KpPoint const start = startPointOf(*shape.list, segment);
    if (KpPathSegCurveTo* const curve = divided.toCurveTo())
        return firstPartOf(*curve, start, t, shape.box);
    QPointF const place = between(placeOf(start), placeOf(divided.pt), t);
    return std::make_unique<KpPathSegLineTo>(
        boundBetween(start, divided.pt, place, shape.box), nullptr);
}

bool isOf(KpPathSegList const& list, int segment)
{
    return segment >= 0 && segment < list.segs.count();
}

/** Where something goes that is added behind a segment. */
int placeAfter(KpPathSegList const& list, int after)
{
    return after >= -1 && after < list.segs.count() ? after + 1 : list.segs.count();
}

int placeAfterSubpath(KpPathSegList const& list, int after)
{
    return isOf(list, after) ? subpathAt(list, after).end : placeAfter(list, after);
}

int insertAt(WorkingShape& shape, int index, std::unique_ptr<KpPathSeg> segment)
{
    shape.list->insertAt(index, segment.release());
    return index;
}

} // namespace

KpPoint boundBetween(
    KpPoint const& left, KpPoint const& right, QPointF const& place, QSizeF const& box)
{
    qint16 const horizontal = commonRule(left.x, right.x, KpReal::PartOfWidth);
    qint16 const vertical = commonRule(left.y, right.y, KpReal::PartOfHeight);
    return {boundReal(place.x(), horizontal, box), boundReal(place.y(), vertical, box)};
}

bool isDivisible(KpPathSegList const& list, int segment)
{
    if (!isOf(list, segment) || !isStep(*list.segs.at(segment)))
        return false;
    KpPathSeg& step = *list.segs.at(segment);
    KpPathSegCurveTo const* const curve = step.toCurveTo();
    return isFinite(placeOf(startPointOf(list, segment))) && isFinite(placeOf(step.pt))
        && (!curve || (isFinite(placeOf(curve->ctrl1)) && isFinite(placeOf(curve->ctrl2))));
}

int insertPoint(WorkingShape& shape, int segment, double t)
{
    if (!isDivisible(*shape.list, segment) || !(t >= 0.0 && t <= 1.0))
        return -1;
    return insertAt(shape, segment, firstPartOf(shape, segment, t));
}

std::vector<int> insertMidpoints(WorkingShape& shape, std::vector<int> const& segments)
{
    // Dividing leaves end points alone, and so the starts of those behind.
    auto const count = static_cast<std::size_t>(shape.list->segs.count());
    Segments firstParts(count);
    for (int const segment : segments) {
        if (!isDivisible(*shape.list, segment))
            continue;
        auto& firstPart = firstParts[static_cast<std::size_t>(segment)];
        if (!firstPart)
            firstPart = firstPartOf(shape, segment, 0.5);
    }
    std::vector<int> added;
    Segments all;
    Segments divided = takeSegments(*shape.list);
    for (std::size_t i = 0; i < count; ++i) {
        if (firstParts[i]) {
            added.push_back(static_cast<int>(all.size()));
            all.push_back(std::move(firstParts[i]));
        }
        all.push_back(std::move(divided[i]));
    }
    appendSegments(*shape.list, std::move(all));
    return added;
}

bool isFiniteLine(KpPathSegList const& list, int segment)
{
    return isDivisible(list, segment) && list.segs.at(segment)->type == KpPathSeg::SegLineTo;
}

void makeCurve(WorkingShape& shape, int segment)
{
    if (!isFiniteLine(*shape.list, segment))
        return;
    KpPoint const start = startPointOf(*shape.list, segment);
    KpPoint const end = shape.list->segs.at(segment)->pt;
    auto const control = [&](double t) {
        return boundBetween(start, end, between(placeOf(start), placeOf(end), t), shape.box);
    };
    replaceSegment(*shape.list, segment,
        std::make_unique<KpPathSegCurveTo>(control(1.0 / 3.0), control(2.0 / 3.0), end, nullptr));
}

void makeLine(WorkingShape& shape, int segment)
{
    if (!isOf(*shape.list, segment) || !shape.list->segs.at(segment)->toCurveTo())
        return;
    KpPoint const end = shape.list->segs.at(segment)->pt;
    replaceSegment(*shape.list, segment, std::make_unique<KpPathSegLineTo>(end, nullptr));
}

int segmentToAddAfter(WorkingShape const& shape, QVector<HandleId> const& handles)
{
    std::vector<int> const segments = segmentsAmong(*shape.list, handles);
    return segments.empty() ? shape.list->segs.count() - 1 : segments.back();
}

int addLine(WorkingShape& shape, int after, QPointF const& point)
{
    if (!isFinite(point))
        return -1;
    return insertAt(shape, placeAfter(*shape.list, after),
        std::make_unique<KpPathSegLineTo>(inProportion(point, shape.box), nullptr));
}

int addCurve(WorkingShape& shape, int after, QPointF const& control1, QPointF const& control2,
    QPointF const& end)
{
    if (!isFinite(control1) || !isFinite(control2) || !isFinite(end))
        return -1;
    return insertAt(shape, placeAfter(*shape.list, after),
        std::make_unique<KpPathSegCurveTo>(inProportion(control1, shape.box),
            inProportion(control2, shape.box), inProportion(end, shape.box), nullptr));
}

int addMove(WorkingShape& shape, int after, QPointF const& point)
{
    if (!isFinite(point))
        return -1;
    return insertAt(shape, placeAfterSubpath(*shape.list, after),
        std::make_unique<KpPathSegMoveTo>(inProportion(point, shape.box), nullptr));
}

int addEllipse(WorkingShape& shape, int after, QPointF const& centre, double a, double b)
{
    if (!isFinite(centre) || !isFinite(QPointF(a, b)))
        return -1;
    return insertAt(shape, placeAfterSubpath(*shape.list, after),
        std::make_unique<KpPathSegEllipse>(inProportion(centre, shape.box),
            boundReal(std::abs(a), KpReal::PartOfWidth, shape.box),
            boundReal(std::abs(b), KpReal::PartOfHeight, shape.box), nullptr));
}
