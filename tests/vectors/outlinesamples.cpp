// SPDX-License-Identifier: MIT
#include "outlinesamples.h"

#include "kpbound.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "sequence.h"

#include <limits>

namespace {

using Vectors::Outline;
using Vectors::Sequence;

KpReal anyReal(Sequence& sequence)
{
    auto const rule = qint16(sequence.between(0, 7));
    bool const isOffset = rule == KpReal::FromRight || rule == KpReal::FromBottom;
    return {rule, isOffset ? sequence.eighth(20) : sequence.eighth(2) / 4, sequence.eighth(200)};
}

KpPoint anyPoint(Sequence& sequence)
{
    KpReal const x = anyReal(sequence);
    return {x, anyReal(sequence)};
}

KpPathSeg* anySegment(Sequence& sequence)
{
    KpPoint const end = anyPoint(sequence);
    switch (sequence.between(KpPathSeg::SegMoveTo, KpPathSeg::SegEllipse)) {
    case KpPathSeg::SegMoveTo:
        return new KpPathSegMoveTo(end, nullptr);
    case KpPathSeg::SegLineTo:
        return new KpPathSegLineTo(end, nullptr);
    case KpPathSeg::SegCurveTo: {
        KpPoint const control = anyPoint(sequence);
        return new KpPathSegCurveTo(control, anyPoint(sequence), end, nullptr);
    }
    default: {
        KpReal const a = anyReal(sequence);
        auto* const ellipse = new KpPathSegEllipse(end, a, anyReal(sequence), nullptr);
        ellipse->a.base = a.base;
        return ellipse;
    }
    }
}

Outline anyOutline(Sequence& sequence, int count)
{
    auto outline = std::make_unique<KpPathSegList>();
    for (int i = 0; i < count; ++i)
        outline->addTail(anySegment(sequence));
    outline->closed = sequence.below(2) == 1;
    outline->noFill = sequence.below(3) == 0;
    outline->noLine = sequence.below(3) == 0;
    return outline;
}

/** Lines of less than one unit, in both directions and in one, at the start and after a curve. */
Outline shortLines()
{
    auto outline = std::make_unique<KpPathSegList>();
    outline->lineTo({0.25, 0.25});
    outline->lineTo({1.0, 1.0});
    outline->lineTo({1.999, 1.125});
    outline->lineTo({2.0, 1.125});
    outline->curveTo({4, 0}, {8, 0}, {10, 1});
    outline->lineTo({10.5, 1.5});
    outline->moveTo({10, 1});
    outline->lineTo({10, 2});
    return outline;
}

Outline plate()
{
    auto outline = std::make_unique<KpPathSegList>();
    outline->addTail(
        new KpPathSegMoveTo(KpBound::point(KpBound::absolute(3), KpBound::absolute(-4)), nullptr));
    outline->addTail(new KpPathSegLineTo(
        KpBound::point(KpBound::fromRightPartOfSide(0.25), KpBound::absolute(0)), nullptr));
    outline->addTail(new KpPathSegCurveTo(
        KpBound::point(KpBound::partOfWidth(1), KpBound::partOfSide(0.25)),
        KpBound::point(KpBound::fromRight(0), KpBound::fromBottom(10)),
        KpBound::point(KpBound::partOfSide(0.5), KpBound::fromBottomPartOfSide(0.125)), nullptr));
    outline->addTail(
        new KpPathSegEllipse(KpBound::point(KpBound::partOfWidth(0.5), KpBound::partOfHeight(0.5)),
            KpBound::partOfWidth(0.25), KpBound::partOfHeight(0.25), nullptr));
    outline->closed = true;
    return outline;
}

Outline triangle(bool isClockwise)
{
    auto outline = std::make_unique<KpPathSegList>();
    outline->moveTo({10, 20});
    outline->lineTo(isClockwise ? QPointF(130, 20) : QPointF(130, 90));
    outline->lineTo(isClockwise ? QPointF(130, 90) : QPointF(130, 20));
    outline->closed = true;
    return outline;
}

} // namespace

Vectors::Outline Vectors::exactCopy(KpPathSegList& outline)
{
    QVector<int> ints;
    QVector<double> doubles;
    outline.toUndoValue(ints, doubles);
    auto copy = std::make_unique<KpPathSegList>();
    int intPos = 0;
    int doublePos = 0;
    copy->fromUndoValue(ints, doubles, intPos, doublePos, outline.segs.count());
    return copy;
}

std::unique_ptr<KpPathSeg> Vectors::exactCopy(KpPathSeg& segment)
{
    std::unique_ptr<KpPathSeg> copy(segment.clone());
    if (KpPathSegEllipse* const ellipse = copy->toEllipse()) {
        ellipse->a.base = segment.toEllipse()->a.base;
        ellipse->b.base = segment.toEllipse()->b.base;
    }
    return copy;
}

std::vector<KpReal> Vectors::sampleReals()
{
    std::vector<KpReal> reals;
    Sequence sequence(10);
    for (qint16 rule = -1; rule <= 8; ++rule) {
        reals.emplace_back(rule, 0.5, 30.0);
        reals.push_back({rule, sequence.real(-2, 2), sequence.real(-500, 500)});
    }
    reals.emplace_back(qint16(-32768), 1.0, 2.0);
    reals.emplace_back(KpReal::PartOfWidth, std::numeric_limits<double>::infinity(), -0.0);
    reals.emplace_back(KpReal::PartOfSide, std::numeric_limits<double>::quiet_NaN(), 1.0);
    return reals;
}

std::vector<Vectors::Outline> Vectors::sampleOutlines()
{
    std::vector<Outline> outlines;
    outlines.push_back(std::make_unique<KpPathSegList>());
    outlines.push_back(std::make_unique<KpPathSegList>());
    outlines.back()->closed = true;
    outlines.back()->noFill = true;
    outlines.push_back(triangle(true));
    outlines.push_back(triangle(false));
    outlines.push_back(shortLines());
    outlines.push_back(plate());
    Sequence sequence(11);
    for (int const count : {1, 2, 3, 4})
        outlines.push_back(anyOutline(sequence, count));
    return outlines;
}

std::vector<QSizeF> Vectors::sampleBoxes()
{
    double const notANumber = std::numeric_limits<double>::quiet_NaN();
    return {{240, 160}, {80, 80}, {30.1, 70.7}, {0.001, 0.0011}, {0, 0}, {-10, 20},
        {notANumber, 50}, {50, notANumber}};
}
