// SPDX-License-Identifier: MIT
#include "fit/vanishedlines.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

/** The table of all beginnings of both is not made larger than this. */
constexpr std::size_t greatestTable = 1000000;

using Cost = VanishedLines::Cost;

constexpr Cost endlessCost = std::numeric_limits<Cost>::max();

/** Fewer lines are always better than likelier rules. */
constexpr Cost costOfALine = Cost(1) << 32;

/** The last step on the best way to a pair of beginnings. */
enum class Move : char { None, Both, OnlyReference, OnlyOther };

/** Aligns two sequences of steps, of which each may lack lines of no length (as edit distances do). */
class LineFinder
{
public:
    LineFinder(Subpath const& reference, Subpath const& other, RuleFitter const& fitter)
        : m_reference(reference)
        , m_other(other)
        , m_fitter(fitter)
        , m_width(other.steps.size() + 1)
        , m_costs((reference.steps.size() + 1) * m_width, endlessCost)
        , m_moves(m_costs.size(), Move::None)
    {
    }

    std::optional<VanishedLines> find()
    {
        m_costs[0] = costOf(m_reference.start, m_other.start);
        for (std::size_t i = 0; i <= m_reference.steps.size(); ++i) {
            for (std::size_t j = 0; j <= m_other.steps.size(); ++j) {
                if (m_costs[cell(i, j)] < endlessCost)
                    goOn(i, j);
            }
        }
        if (m_costs.back() == endlessCost)
            return std::nullopt;
        return wayBack();
    }

private:
    std::size_t cell(std::size_t i, std::size_t j) const { return i * m_width + j; }

    /** How unlikely it is that two points correspond; endlessCost if no rule meets them. */
    Cost costOf(QPointF const& left, QPointF const& right) const
    {
        std::array<double, 2> const x {left.x(), right.x()};
        std::array<double, 2> const y {left.y(), right.y()};
        int const horizontal = m_fitter.strangeness(x.data(), Axis::Horizontal);
        int const vertical = m_fitter.strangeness(y.data(), Axis::Vertical);
        bool const isPossible = std::max(horizontal, vertical) < RuleFitter::impossible;
        return isPossible ? horizontal + vertical : endlessCost;
    }

    Cost costOf(DrawnStep const& left, DrawnStep const& right) const
    {
        if (left.isCurve != right.isCurve)
            return endlessCost;
        Cost cost = costOf(left.end, right.end);
        if (left.isCurve) {
            cost = sum(cost, costOf(left.control1, right.control1));
            cost = sum(cost, costOf(left.control2, right.control2));
        }
        return cost;
    }

    static Cost sum(Cost left, Cost right)
    {
        return left == endlessCost || right == endlessCost ? endlessCost : left + right;
    }

    void goOn(std::size_t i, std::size_t j)
    {
        Cost const cost = m_costs[cell(i, j)];
        Cost const withLine = cost + costOfALine;
        bool const isReferenceLeft = i < m_reference.steps.size();
        bool const isOtherLeft = j < m_other.steps.size();
        if (isReferenceLeft && isOtherLeft) {
            offer(i + 1, j + 1, sum(cost, costOf(m_reference.steps[i], m_other.steps[j])),
                Move::Both);
        }
        if (isReferenceLeft && !m_reference.steps[i].isCurve) {
            offer(i + 1, j, sum(withLine, costOf(m_reference.steps[i].end, m_other.point(j))),
                Move::OnlyReference);
        }
        if (isOtherLeft && !m_other.steps[j].isCurve) {
            offer(i, j + 1, sum(withLine, costOf(m_reference.point(i), m_other.steps[j].end)),
                Move::OnlyOther);
        }
    }

    void offer(std::size_t i, std::size_t j, Cost cost, Move move)
    {
        if (cost >= m_costs[cell(i, j)])
            return;
        m_costs[cell(i, j)] = cost;
        m_moves[cell(i, j)] = move;
    }

    VanishedLines wayBack() const
    {
        std::vector<Move> moves;
        std::size_t i = m_reference.steps.size();
        std::size_t j = m_other.steps.size();
        while (i > 0 || j > 0) {
            Move const move = m_moves[cell(i, j)];
            moves.push_back(move);
            i -= move == Move::OnlyOther ? 0 : 1;
            j -= move == Move::OnlyReference ? 0 : 1;
        }
        VanishedLines lines;
        lines.cost = m_costs.back();
        for (std::size_t step = 0; step < moves.size(); ++step) {
            Move const move = moves[moves.size() - 1 - step];
            if (move == Move::OnlyOther)
                lines.inReference.push_back(step);
            if (move == Move::OnlyReference)
                lines.inOther.push_back(step);
        }
        return lines;
    }

    Subpath const& m_reference;
    Subpath const& m_other;
    RuleFitter const& m_fitter;
    std::size_t m_width;
    std::vector<Cost> m_costs; ///< of the best way to a pair of beginnings
    std::vector<Move> m_moves;
};

} // namespace

std::optional<VanishedLines> vanishedLines(
    Subpath const& reference, Subpath const& other, RuleFitter const& fitter)
{
    bool const isTooLong = reference.steps.size() + 1 > greatestTable / (other.steps.size() + 1);
    if (isTooLong || !reference.hasMove || !other.hasMove)
        return std::nullopt;
    return LineFinder(reference, other, fitter).find();
}

void putIn(Subpath& subpath, std::vector<std::size_t> const& lines)
{
    for (std::size_t const line : lines) {
        subpath.steps.insert(subpath.steps.begin() + static_cast<std::ptrdiff_t>(line),
            {false, QPointF(), QPointF(), subpath.point(line)});
    }
    if (!lines.empty())
        subpath.ellipse.reset();
}
