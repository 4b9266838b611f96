#include "fit/vanishedlines.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

/** The table of all beginnings of both is not made larger than this. */
constexpr std::size_t greatestTable = 1000000;

constexpr int endless = std::numeric_limits<int>::max();

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
        , m_costs((reference.steps.size() + 1) * m_width, endless)
        , m_moves(m_costs.size(), Move::None)
    {
    }

    std::optional<VanishedLines> find()
    {
        if (!correspond(m_reference.start, m_other.start))
            return std::nullopt;
        m_costs[0] = 0;
        for (std::size_t i = 0; i <= m_reference.steps.size(); ++i) {
            for (std::size_t j = 0; j <= m_other.steps.size(); ++j) {
                if (m_costs[cell(i, j)] < endless)
                    goOn(i, j);
            }
        }
        if (m_costs.back() == endless)
            return std::nullopt;
        return wayBack();
    }

private:
    std::size_t cell(std::size_t i, std::size_t j) const { return i * m_width + j; }

    bool correspond(QPointF const& left, QPointF const& right) const
    {
        std::array<double, 2> const x {left.x(), right.x()};
        std::array<double, 2> const y {left.y(), right.y()};
        return m_fitter.strangeness(x.data(), Axis::Horizontal) < RuleFitter::impossible
            && m_fitter.strangeness(y.data(), Axis::Vertical) < RuleFitter::impossible;
    }

    bool correspond(DrawnStep const& left, DrawnStep const& right) const
    {
        return left.isCurve == right.isCurve && correspond(left.end, right.end)
            && (!left.isCurve
                || (correspond(left.control1, right.control1)
                    && correspond(left.control2, right.control2)));
    }

    void goOn(std::size_t i, std::size_t j)
    {
        int const cost = m_costs[cell(i, j)];
        bool const isReferenceLeft = i < m_reference.steps.size();
        bool const isOtherLeft = j < m_other.steps.size();
        if (isReferenceLeft && isOtherLeft && correspond(m_reference.steps[i], m_other.steps[j]))
            offer(i + 1, j + 1, cost, Move::Both);
        if (isReferenceLeft && !m_reference.steps[i].isCurve
            && correspond(m_reference.steps[i].end, m_other.point(j)))
            offer(i + 1, j, cost + 1, Move::OnlyReference);
        if (isOtherLeft && !m_other.steps[j].isCurve
            && correspond(m_reference.point(i), m_other.steps[j].end))
            offer(i, j + 1, cost + 1, Move::OnlyOther);
    }

    void offer(std::size_t i, std::size_t j, int cost, Move move)
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
    std::vector<int> m_costs; ///< how many lines have to be put in to get there
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
