// SPDX-License-Identifier: MIT
#include "fit/presetfit.h"

#include "common/text.h"
#include "document/exactcopy.h"
#include "fit/rulefit.h"
#include "segmentkind_p.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/** The boxes to be compared in. Of different sizes, lest an area pass for a length. */
struct ComparedBox
{
    double aspect; ///< width by height
    double scale; ///< of the sides
};
constexpr std::array<ComparedBox, 7> comparedBoxes {
    {{4.0, 1.0}, {2.0, 1.2}, {1.5, 0.9}, {1.0, 1.0}, {2.0 / 3.0, 1.1}, {0.5, 0.8}, {0.25, 1.05}}};
constexpr int firstOfMiddle = 2; ///< the boxes in which a shape is mostly used
constexpr int countOfMiddle = 3;

/** What rounding may change of a coordinate, as a part of the longest side of all boxes. */
constexpr double roundingError = 1e-10;

/** The scale of further boxes, which tell what keeps its place from what only moves little. */
constexpr double smallScale = 0.1;

double longestSideOf(QVector<QSizeF> const& boxes)
{
    double longest = 0.0;
    for (QSizeF const& box : boxes)
        longest = std::max({longest, box.width(), box.height()});
    return longest;
}

/** The values of all coordinates of an outline, in document order. */
std::vector<double> valuesOf(KpPathSegList const& list)
{
    std::vector<double> result;
    for (KpPathSeg* const seg : list.segs)
        SegmentKind::forEachReal(
            *seg, [&result](KpReal const& real) { result.push_back(real.value); });
    return result;
}

/** presetBoxes(), and behind them the same ones made small. */
QVector<QSizeF> fittedBoxes(QSizeF const& box)
{
    return presetBoxes(box) + presetBoxes(box * smallScale);
}

/** Finds rules from values in fittedBoxes(). */
class PresetFitter
{
public:
    explicit PresetFitter(QVector<QSizeF> const& boxes)
        : m_compared(boxes.mid(0, comparedBoxes.size()), roundingError * longestSideOf(boxes))
        , m_middle(boxes.mid(firstOfMiddle, countOfMiddle), m_compared.tolerance())
        , m_all(boxes, m_compared.tolerance())
    {
    }

    /** @param values one for each box */
    RuleChoice rule(double const* values, Axis axis) const
    {
        CoordinateFit const compared = m_compared.fit(values, axis);
        if (compared.isExpressed)
            return compared.choice;
        CoordinateFit const middle = m_middle.fit(values + firstOfMiddle, axis);
        return middle.isExpressed ? middle.choice : m_all.fit(values, axis).choice;
    }

private:
    RuleFitter m_compared;
    RuleFitter m_middle;
    RuleFitter m_all;
};

/** The same outline as it is in several boxes. */
using OutlinePointers = std::vector<KpPathSegList const*>;

OutlinePointers outlinesOf(std::vector<Shapes> const& inBoxes, std::size_t shape)
{
    OutlinePointers result;
    for (Shapes const& shapes : inBoxes)
        result.push_back(shapes[shape].list.get());
    return result;
}

/** Binds all coordinates of `list` by what their values are in the boxes. */
void bind(KpPathSegList& list, OutlinePointers const& outlines, PresetFitter const& fitter)
{
    std::vector<std::vector<double>> values;
    for (KpPathSegList const* const outline : outlines)
        values.push_back(valuesOf(*outline));
    std::vector<double> ofOne(values.size());
    std::size_t index = 0;
    for (KpPathSeg* const seg : list.segs) {
        SegmentKind::forEachReal(*seg, [&](KpReal& real) {
            for (std::size_t box = 0; box < values.size(); ++box)
                ofOne[box] = values[box][index];
            RuleChoice const choice = fitter.rule(ofOne.data(), axisOfReal(index));
            ++index;
            real.base = choice.rule;
            real.rate = choice.rule == KpReal::Absolute ? 0.0 : choice.parameter;
            if (choice.rule == KpReal::Absolute)
                real.value = choice.parameter;
        });
    }
}

/** Compares an outline, brought to each box by its rules, with what it should be there. */
class Comparison
{
public:
    explicit Comparison(KpPathSegList& list)
    {
        for (int i = 0; i < list.segs.size(); ++i) {
            SegmentKind::forEachCoordinate(*list.segs.at(i), [&](QString const& letter, KpReal&) {
                m_deviations.push_back({0, i, letter, 0.0, QSizeF()});
            });
        }
        m_list = exactCopy(list);
    }

    void compareIn(QSizeF const& box, KpPathSegList const& expected)
    {
        m_list->updateValue(box.width(), box.height());
        std::vector<double> const actual = valuesOf(*m_list);
        std::vector<double> const wanted = valuesOf(expected);
        double const side = std::max(box.width(), box.height());
        for (std::size_t i = 0; i < m_deviations.size(); ++i) {
            double const error = std::fabs(actual[i] - wanted[i]) / side;
            if (error > m_deviations[i].error) {
                m_deviations[i].error = error;
                m_deviations[i].box = box;
            }
        }
    }

    std::vector<PresetDeviation> const& deviations() const { return m_deviations; }

private:
    std::unique_ptr<KpPathSegList> m_list;
    std::vector<PresetDeviation> m_deviations;
};

/** A warning about a shape that is no more than nearly what its definition says. */
Diagnostic deviationOf(
    LearntPreset const& learnt, ShapeDefinition const& shape, QString const& file)
{
    PresetDeviation const& worst = *learnt.worst();
    return {Diagnostic::Severity::Warning, file, shape.line, shape.column,
        QStringLiteral("%1: %2 of %3 follow no rule; the worst, %4 of segment %5 in outline %6, is "
                       "off by %7 of the longer side in a box of %8")
            .arg(titleOf(shape))
            .arg(learnt.inexact.size())
            .arg(countText(learnt.coordinates, QStringLiteral("coordinate")), worst.letter)
            .arg(worst.segment + 1)
            .arg(worst.shape + 1)
            .arg(QString::number(worst.error, 'g', 2), sizeText(worst.box))};
}

} // namespace

PresetDeviation const* LearntPreset::worst() const
{
    auto const found = std::max_element(inexact.begin(), inexact.end(),
        [](PresetDeviation const& a, PresetDeviation const& b) { return a.error < b.error; });
    return found == inexact.end() ? nullptr : &*found;
}

QVector<QSizeF> presetBoxes(QSizeF const& box)
{
    double const side = std::sqrt(box.width()) * std::sqrt(box.height());
    QVector<QSizeF> result;
    for (ComparedBox const& compared : comparedBoxes) {
        result.append(QSizeF(std::sqrt(compared.aspect), 1.0 / std::sqrt(compared.aspect))
            * compared.scale * side);
    }
    return result;
}

std::optional<LearntPreset> learntPreset(ShapeDefinition const& definition, QSizeF const& box,
    GuideAdjustments const& adjustments, QString const& file, Diagnostics& diagnostics)
{
    QVector<QSizeF> const boxes = fittedBoxes(box);
    // All in one go, so that all have one structure.
    std::vector<QSizeF> wanted(boxes.begin(), boxes.end());
    wanted.push_back(box);
    auto inBoxes = shapesInBoxes(definition, wanted, adjustments, file, diagnostics);
    if (!inBoxes)
        return std::nullopt;
    LearntPreset result;
    result.shapes = std::move(inBoxes->back());
    inBoxes->pop_back();
    PresetFitter const fitter(boxes);
    for (std::size_t shape = 0; shape < result.shapes.size(); ++shape) {
        KpPathSegList& list = *result.shapes[shape].list;
        OutlinePointers const outlines = outlinesOf(*inBoxes, shape);
        bind(list, outlines, fitter);
        Comparison comparison(list);
        for (int i = 0; i < static_cast<int>(comparedBoxes.size()); ++i)
            comparison.compareIn(boxes.at(i), *outlines[static_cast<std::size_t>(i)]);
        for (PresetDeviation deviation : comparison.deviations()) {
            ++result.coordinates;
            result.error = std::max(result.error, deviation.error);
            deviation.shape = static_cast<int>(shape);
            if (!(deviation.error <= exactPresetError))
                result.inexact.append(deviation);
        }
        list.updateValue(box.width(), box.height());
    }
    return result;
}

std::optional<LearntPreset> learntShape(ShapeDefinition const& definition,
    GuideAdjustments const& adjustments, QString const& file, Diagnostics& diagnostics)
{
    QSizeF const box = definition.box.isEmpty() ? defaultPresetBox : definition.box;
    auto learnt = learntPreset(definition, box, adjustments, file, diagnostics);
    if (learnt && learnt->shapes.empty()) {
        diagnostics.add({Diagnostic::Severity::Warning, file, definition.line, definition.column,
            QStringLiteral("%1 draws nothing: left out").arg(titleOf(definition))});
        learnt.reset();
    }
    if (learnt && !learnt->isWhole())
        diagnostics.add(deviationOf(*learnt, definition, file));
    return learnt;
}
