// SPDX-License-Identifier: MIT
#include "fit/rulefit.h"

#include "kppoint.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr int ruleCountInAll = KpReal::FromBottomPartOfSide + 1;

/** The rules in the order in which they are taken where the samples leave a choice. */
std::array<qint16, ruleCountInAll> const& customaryOrder(Axis axis)
{
    static constexpr std::array<qint16, ruleCountInAll> horizontal {KpReal::PartOfWidth,
        KpReal::Absolute, KpReal::FromRight, KpReal::PartOfSide, KpReal::FromRightPartOfSide,
        KpReal::PartOfHeight, KpReal::FromBottom, KpReal::FromBottomPartOfSide};
    static constexpr std::array<qint16, ruleCountInAll> vertical {KpReal::PartOfHeight,
        KpReal::Absolute, KpReal::FromBottom, KpReal::PartOfSide, KpReal::FromBottomPartOfSide,
        KpReal::PartOfWidth, KpReal::FromRight, KpReal::FromRightPartOfSide};
    return axis == Axis::Horizontal ? horizontal : vertical;
}

/** An edge of the box, on which several rules lie with one of their parameters. */
struct BoxEdge
{
    double parameter; ///< of the customary rule
    std::array<qint16, 2> customary; ///< for a horizontal and a vertical coordinate
    std::array<bool, ruleCountInAll> rules; ///< those that can be this edge
};

/** Left and top, right, bottom. */
constexpr std::array<BoxEdge, 3> edges {{
    {0.0, {KpReal::PartOfWidth, KpReal::PartOfHeight},
        {true, true, true, false, false, true, false, false}},
    {1.0, {KpReal::PartOfWidth, KpReal::PartOfWidth},
        {false, true, false, true, false, false, true, false}},
    {1.0, {KpReal::PartOfHeight, KpReal::PartOfHeight},
        {false, false, true, false, true, false, false, true}},
}};

} // namespace

double RuleChoice::valueIn(QSizeF const& box) const
{
    KpReal real(rule, parameter, parameter);
    real.updateValue(box.width(), box.height());
    return real.value;
}

RuleFitter::RuleFitter(QVector<QSizeF> boxes, double tolerance)
    : m_boxes(std::move(boxes))
    , m_tolerance(tolerance)
{
    m_lines.reserve(ruleCountInAll * m_boxes.size());
    for (qint16 rule = 0; rule < ruleCountInAll; ++rule) {
        for (QSizeF const& box : qAsConst(m_boxes))
            m_lines.append(lineOf(rule, box));
    }
}

RuleFitter::Line RuleFitter::lineOf(qint16 rule, QSizeF const& box)
{
    double const side = std::min(box.width(), box.height());
    switch (rule) {
    case KpReal::PartOfWidth:
        return {0.0, box.width()};
    case KpReal::PartOfHeight:
        return {0.0, box.height()};
    case KpReal::FromRight:
        return {box.width(), -1.0};
    case KpReal::FromBottom:
        return {box.height(), -1.0};
    case KpReal::PartOfSide:
        return {0.0, side};
    case KpReal::FromRightPartOfSide:
        return {box.width(), -side};
    case KpReal::FromBottomPartOfSide:
        return {box.height(), -side};
    default:
        return {0.0, 1.0};
    }
}

RuleChoice RuleFitter::fitted(qint16 rule, double const* values) const
{
    RuleChoice choice;
    choice.rule = rule;
    choice.least = -std::numeric_limits<double>::infinity();
    choice.greatest = std::numeric_limits<double>::infinity();
    double products = 0.0;
    double squares = 0.0;
    for (int i = 0; i < m_boxes.size(); ++i) {
        Line const& at = line(rule, i);
        double const rest = values[i] - at.offset;
        double const parameter = rest / at.gain;
        double const slack = m_tolerance / std::abs(at.gain);
        choice.least = std::max(choice.least, parameter - slack);
        choice.greatest = std::min(choice.greatest, parameter + slack);
        products += rest * at.gain;
        squares += at.gain * at.gain;
    }
    choice.parameter = products / squares;
    if (choice.least <= choice.greatest)
        choice.parameter = qBound(choice.least, choice.parameter, choice.greatest);
    return choice;
}

bool RuleFitter::isMetBy(qint16 rule, double parameter, double const* values) const
{
    return errorOf({rule, parameter, parameter, parameter}, values) <= m_tolerance;
}

double RuleFitter::errorOf(RuleChoice const& choice, double const* values) const
{
    double error = 0.0;
    for (int i = 0; i < m_boxes.size(); ++i) {
        Line const& at = line(choice.rule, i);
        error = std::max(error, std::abs(values[i] - (at.offset + at.gain * choice.parameter)));
    }
    return error;
}

QVector<RuleChoice> RuleFitter::candidates(double const* values, Axis axis) const
{
    QVector<RuleChoice> found;
    std::array<bool, ruleCountInAll> isEdge {};
    for (BoxEdge const& edge : edges) {
        qint16 const rule = edge.customary[axis == Axis::Horizontal ? 0 : 1];
        if (!isMetBy(rule, edge.parameter, values))
            continue;
        found.append({rule, edge.parameter, edge.parameter, edge.parameter});
        for (std::size_t i = 0; i < isEdge.size(); ++i)
            isEdge[i] = isEdge[i] || edge.rules[i];
    }
    // In a square, right and bottom are the same; each axis has its own first.
    if (found.size() > 1 && axis == Axis::Vertical)
        std::reverse(found.begin(), found.end());
    for (qint16 const rule : customaryOrder(axis)) {
        if (isEdge[static_cast<std::size_t>(rule)])
            continue;
        RuleChoice const choice = fitted(rule, values);
        if (choice.least <= choice.greatest)
            found.append(choice);
    }
    return found;
}

RuleChoice RuleFitter::nearest(double const* values, Axis axis) const
{
    RuleChoice best;
    double leastError = std::numeric_limits<double>::infinity();
    for (qint16 const rule : customaryOrder(axis)) {
        RuleChoice const choice = fitted(rule, values);
        double const error = errorOf(choice, values);
        if (error < leastError) {
            leastError = error;
            best = choice;
        }
    }
    return best;
}

CoordinateFit RuleFitter::fit(double const* values, Axis axis) const
{
    CoordinateFit fit;
    fit.rivals = candidates(values, axis);
    fit.isExpressed = !fit.rivals.isEmpty();
    fit.choice = fit.isExpressed ? fit.rivals.takeFirst() : nearest(values, axis);
    fit.error = errorOf(fit.choice, values);
    return fit;
}

bool RuleFitter::isFeasible(qint16 rule, double const* values) const
{
    double least = -std::numeric_limits<double>::infinity();
    double greatest = std::numeric_limits<double>::infinity();
    for (int i = 0; i < m_boxes.size() && least <= greatest; ++i) {
        Line const& at = line(rule, i);
        double const parameter = (values[i] - at.offset) / at.gain;
        double const slack = m_tolerance / std::abs(at.gain);
        least = std::max(least, parameter - slack);
        greatest = std::min(greatest, parameter + slack);
    }
    return least <= greatest;
}

int RuleFitter::strangeness(double const* values, Axis axis) const
{
    constexpr int rulesOfOwnAxis = 5;
    constexpr int likely = 0;
    constexpr int unlikely = 1;
    auto const& rules = customaryOrder(axis);
    for (std::size_t i = 0; i < rules.size(); ++i) {
        if (isFeasible(rules[i], values))
            return i < rulesOfOwnAxis ? likely : unlikely;
    }
    return impossible;
}
