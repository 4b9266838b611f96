// SPDX-License-Identifier: MIT
// Outlines with rules, drawn in several boxes: rules are learnt that place every coordinate where
// the drawings have it.

#include "choiceoutline.h"
#include "diagnosticproperties.h"
#include "document/exactcopy.h"
#include "fit/outlinefit.h"
#include "segmentkind_p.h"

#include <cmath>
#include <limits>

namespace {

using Fuzzing::Choices;
using Fuzzing::require;

std::vector<QSizeF> boxesFrom(Choices& choices)
{
    std::vector<QSizeF> boxes(static_cast<std::size_t>(2 + choices.bounded(3)));
    for (QSizeF& box : boxes)
        box = Fuzzing::boxFrom(choices);
    return boxes;
}

SizedDrawing drawingOf(std::vector<std::unique_ptr<KpPathSegList>> const& lists, QSizeF const& box)
{
    SizedDrawing drawing {QStringLiteral("%1").arg(box.width()), box, {}};
    for (auto const& list : lists) {
        std::shared_ptr<KpPathSegList> drawn = exactCopy(*list);
        drawn->updateValue(box.width(), box.height());
        drawing.shapes.push_back({QString(), box, std::nullopt, std::move(drawn)});
    }
    return drawing;
}

/** The values of a list by their axes. */
struct Values
{
    std::vector<double> of[2];

    explicit Values(KpPathSegList const& list)
    {
        std::size_t index = 0;
        for (KpPathSeg* const segment : list.segs) {
            SegmentKind::forEachReal(
                *segment, [&](KpReal const& real) { of[index++ % 2].push_back(real.value); });
        }
    }

    double distanceTo(double value, std::size_t axis) const
    {
        double distance = std::numeric_limits<double>::infinity();
        for (double const other : of[axis])
            distance = std::min(distance, std::fabs(other - value));
        return distance;
    }
};

bool isInexact(FitResult const& result, int shape)
{
    auto const concerns = [shape](auto const& finding) { return finding.shape == shape; };
    return std::any_of(result.inexact.begin(), result.inexact.end(), concerns);
}

/** How far values are rounded where they are large. */
double roundingOf(Values const& values)
{
    double largest = 0.0;
    for (auto const& axis : values.of) {
        for (double const value : axis)
            largest = std::max(largest, std::fabs(value));
    }
    return largest * 1e-9;
}

/** That each learnt coordinate is, in the box of the drawing, where the drawing has one. */
void requireReproduced(Shape const& learnt, Shape const& drawn, double tolerance)
{
    auto const list = exactCopy(*learnt.list);
    list->updateValue(drawn.box.width(), drawn.box.height());
    Values const placed(*list);
    Values const wanted(*drawn.list);
    double const most = tolerance * 1.000001 + roundingOf(wanted);
    for (std::size_t axis = 0; axis < 2; ++axis) {
        for (double const value : placed.of[axis]) {
            require(wanted.distanceTo(value, axis) <= most,
                "learnt rules place a coordinate where the drawing has it");
        }
    }
}

void requireFindings(QVector<CoordinateFinding> const& findings, FitResult const& result)
{
    for (CoordinateFinding const& finding : findings) {
        require(finding.shape >= 0 && finding.shape < static_cast<int>(result.shapes.size()),
            "a finding is of a shape");
        auto const& list = *result.shapes[static_cast<std::size_t>(finding.shape)].list;
        require(finding.segment >= 0 && finding.segment < list.segs.size(),
            "a finding is of a segment");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Choices choices(Fuzzing::bytes(data, size));
    std::vector<QSizeF> const boxes = boxesFrom(choices);
    // Half a unit at most, by which drawings are rounded.
    double const tolerance = choices.bounded(256) / 512.0;
    bool const findsEllipses = choices.flag();
    std::vector<std::unique_ptr<KpPathSegList>> lists(
        static_cast<std::size_t>(1 + choices.bounded(3)));
    for (auto& list : lists)
        list = Fuzzing::outlineFrom(choices, 24);
    std::vector<SizedDrawing> drawings;
    for (QSizeF const& box : boxes)
        drawings.push_back(drawingOf(lists, box));

    Diagnostics diagnostics;
    auto const result = fitDrawings(drawings, {tolerance, findsEllipses}, diagnostics);
    Fuzzing::requireReason(result.has_value(), diagnostics);
    if (!result)
        return 0;
    require(result->shapes.size() == lists.size(), "every shape is learnt");
    requireFindings(result->undecided, *result);
    requireFindings(result->inexact, *result);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        // The places of an ellipse are not those of the curves that it was.
        if (findsEllipses || isInexact(*result, static_cast<int>(i)))
            continue;
        for (SizedDrawing const& drawing : drawings)
            requireReproduced(result->shapes[i], drawing.shapes[i], result->tolerance);
    }
    return 0;
}
