// SPDX-License-Identifier: MIT
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "outlinesamples.h"
#include "themes.h"

#include <functional>

namespace {

using Vectors::exactCopy;
using Vectors::Fields;
using Vectors::Outline;
using Vectors::Theme;

QString classOf(KpPathSeg const& segment)
{
    switch (segment.type) {
    case KpPathSeg::SegMoveTo:
        return "KpPathSegMoveTo::";
    case KpPathSeg::SegLineTo:
        return "KpPathSegLineTo::";
    case KpPathSeg::SegCurveTo:
        return "KpPathSegCurveTo::";
    default:
        return "KpPathSegEllipse::";
    }
}

/** The function that a call of `member` reaches: that of the kind, or of the base. */
QString reached(KpPathSeg const& segment, QString const& member)
{
    static QStringList const ownOfMove {"startPt()", "setStartPt(QPointF)"};
    static QStringList const ownOfCurve {"updateValue(double, double)",
        "updateRate(double, double)", "applyTransform(QMatrix)", "translate(double, double)",
        "toCurveTo()"};
    static QStringList const ownOfEllipse {
        "updateValue(double, double)", "updateRate(double, double)", "toEllipse()"};
    static QStringList const ownOfAll {"clone()", "addToPath(KpPath&)"};
    bool const isOwn = ownOfAll.contains(member)
        || (segment.type == KpPathSeg::SegMoveTo && ownOfMove.contains(member))
        || (segment.type == KpPathSeg::SegCurveTo && ownOfCurve.contains(member))
        || (segment.type == KpPathSeg::SegEllipse && ownOfEllipse.contains(member));
    return (isOwn ? classOf(segment) : QString("KpPathSeg::")) + member;
}

void addOfPoint(Theme& theme, QPointF const& p)
{
    Fields const inputs {{"point", p}};
    theme.add("KpPathSegMoveTo::KpPathSegMoveTo(QPointF const&, KpPathSegList*)", inputs,
        {{"segment", static_cast<KpPathSeg const&>(KpPathSegMoveTo(p, nullptr))}});
    theme.add("KpPathSegLineTo::KpPathSegLineTo(QPointF const&, KpPathSegList*)", inputs,
        {{"segment", static_cast<KpPathSeg const&>(KpPathSegLineTo(p, nullptr))}});
    QPointF const c1(p.y(), p.x());
    QPointF const c2(-p.x(), 7);
    theme.add("KpPathSegCurveTo::KpPathSegCurveTo(QPointF const&, QPointF const&, QPointF const&, "
              "KpPathSegList*)",
        {{"control1", c1}, {"control2", c2}, {"end", p}},
        {{"segment", static_cast<KpPathSeg const&>(KpPathSegCurveTo(c1, c2, p, nullptr))}});
    theme.add("KpPathSegEllipse::KpPathSegEllipse(QPointF const&, double, double, KpPathSegList*)",
        {{"centre", p}, {"horizontalRadius", 30.0}, {"verticalRadius", -20.5}},
        {{"segment", static_cast<KpPathSeg const&>(KpPathSegEllipse(p, 30.0, -20.5, nullptr))}});
}

void addOfReals(Theme& theme, KpReal const& x, KpReal const& y)
{
    KpPoint const p(x, y);
    Fields const inputs {{"point", p}};
    theme.add("KpPathSegMoveTo::KpPathSegMoveTo(KpPoint const&, KpPathSegList*)", inputs,
        {{"segment", static_cast<KpPathSeg const&>(KpPathSegMoveTo(p, nullptr))}});
    theme.add("KpPathSegLineTo::KpPathSegLineTo(KpPoint const&, KpPathSegList*)", inputs,
        {{"segment", static_cast<KpPathSeg const&>(KpPathSegLineTo(p, nullptr))}});
    KpPoint const c1(y, x);
    KpPoint const c2(KpReal(3, 1, 2), x);
    theme.add("KpPathSegCurveTo::KpPathSegCurveTo(KpPoint const&, KpPoint const&, KpPoint const&, "
              "KpPathSegList*)",
        {{"control1", c1}, {"control2", c2}, {"end", p}},
        {{"segment", static_cast<KpPathSeg const&>(KpPathSegCurveTo(c1, c2, p, nullptr))}});
    theme.add("KpPathSegEllipse::KpPathSegEllipse(KpPoint const&, KpReal const&, KpReal const&, "
              "KpPathSegList*)",
        {{"centre", p}, {"horizontalRadius", y}, {"verticalRadius", x}},
        {{"segment", static_cast<KpPathSeg const&>(KpPathSegEllipse(p, y, x, nullptr))}});
}

void addConstruction(Theme& theme)
{
    addOfPoint(theme, QPointF(120, 40));
    addOfPoint(theme, QPointF(-0.0, 1e300));
    std::vector<KpReal> const reals = Vectors::sampleReals();
    for (std::size_t i = 0; i + 1 < reals.size(); i += 4)
        addOfReals(theme, reals[i], reals[i + 1]);
}

/** `change` applied to a copy of `segment`, which no list holds. */
void addChange(Theme& theme, KpPathSeg& segment, QString const& member, Fields inputs,
    std::function<void(KpPathSeg&)> const& change)
{
    inputs.push_back({"segment", segment});
    auto const after = exactCopy(segment);
    change(*after);
    theme.add(reached(segment, member), inputs, {{"segment", *after}});
}

void addAlone(Theme& theme, KpPathSeg& segment)
{
    auto const clone = exactCopy(*std::unique_ptr<KpPathSeg>(segment.clone()));
    theme.add(reached(segment, "clone()"), {{"segment", segment}}, {{"clone", *clone}});
    theme.add(reached(segment, "toCurveTo()"), {{"segment", segment}},
        {{"isItself", segment.toCurveTo() == &segment}});
    theme.add(reached(segment, "toEllipse()"), {{"segment", segment}},
        {{"isItself", segment.toEllipse() == &segment}});

    for (QSizeF const& box : {QSizeF(240, 160), QSizeF(31.7, 0.0005)}) {
        Fields const inputs {{"width", box.width()}, {"height", box.height()}};
        addChange(theme, segment, "updateValue(double, double)", inputs,
            [&box](KpPathSeg& seg) { seg.updateValue(box.width(), box.height()); });
        addChange(theme, segment, "updateRate(double, double)", inputs,
            [&box](KpPathSeg& seg) { seg.updateRate(box.width(), box.height()); });
    }
    addChange(theme, segment, "translate(double, double)", {{"dx", 0.1}, {"dy", -7.5}},
        [](KpPathSeg& seg) { seg.translate(0.1, -7.5); });
    for (QMatrix const& matrix : {QMatrix(0, 1, -1, 0, 5, 6), QMatrix(1.5, 0.25, 0.1, 2, -3, 4)}) {
        addChange(theme, segment, "applyTransform(QMatrix)", {{"matrix", matrix}},
            [&matrix](KpPathSeg& seg) { seg.applyTransform(matrix); });
    }

    KpPath path;
    path.append({segment.pt.x.value - 0.5, segment.pt.y.value + 0.75, 0, 0, 1});
    for (KpPath const& before : {KpPath(), path}) {
        KpPath after = before;
        segment.addToPath(after);
        theme.add(reached(segment, "addToPath(KpPath&)"), {{"segment", segment}, {"path", before}},
            {{"path", after}});
    }
}

void addWithin(Theme& theme, KpPathSegList& outline, int index)
{
    KpPathSeg& segment = *outline.segs.at(index);
    Fields inputs {{"outline", outline}, {"index", index}};
    theme.add(reached(segment, "startPt()"), inputs, {{"result", segment.startPt()}});
    theme.add(reached(segment, "isLastSeg()"), inputs, {{"result", segment.isLastSeg()}});
    Outline const after = exactCopy(outline);
    after->segs.at(index)->setStartPt(QPointF(-1.5, 2.25));
    inputs.push_back({"point", QPointF(-1.5, 2.25)});
    theme.add(reached(segment, "setStartPt(QPointF)"), inputs, {{"outline", *after}});
}

} // namespace

void Vectors::addSegments(Theme& theme)
{
    addConstruction(theme);
    for (Outline const& outline : sampleOutlines()) {
        int const count = outline->segs.count();
        for (int i = 0; i < count; ++i) {
            if (count <= 4)
                addAlone(theme, *outline->segs.at(i));
            if (count <= 4 || i == 0)
                addWithin(theme, *outline, i);
        }
    }
}
