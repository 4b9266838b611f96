// SPDX-License-Identifier: MIT
#include "check/sequencealignment.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace {

/** Beyond as many additions and removals, elements are not looked for in other places. */
constexpr int mostEdits = 1000;

/** Of the table in which elements are paired by distance: a byte each. */
constexpr qint64 mostCells = 4000000;

/** What an element costs that is left without a counterpart: a pair of such costs 1. */
constexpr double costAlone = 0.5;

/** From an index in both sequences, up to before one in both. */
struct Range
{
    int before;
    int after;
    int beforeEnd;
    int afterEnd;

    int beforeCount() const { return beforeEnd - before; }
    int afterCount() const { return afterEnd - after; }
    bool isEmpty() const { return beforeCount() == 0 && afterCount() == 0; }
};

/** What is the same in both, in order: the longest such sequence (E. Myers, 1986). */
class CommonSequence
{
public:
    CommonSequence(Sequences const& sequences, Range const& range, Effort& effort)
        : m_sequences(sequences)
        , m_range(range)
        , m_effort(effort)
    {
    }

    /** Its elements; nothing if they are too hard to find. */
    std::optional<std::vector<AlignedPair>> find()
    {
        int const longest = m_range.beforeCount() + m_range.afterCount();
        m_reached.assign(2 * static_cast<std::size_t>(std::min(longest, mostEdits)) + 3, 0);
        for (int edits = 0; edits <= std::min(longest, mostEdits); ++edits) {
            if (auto const end = advance(edits))
                return walkedBack(edits, *end);
            if (m_effort.left() == 0)
                break;
        }
        return std::nullopt;
    }

private:
    // A diagonal is the number of elements passed in the first sequence less that in the second.

    int& reached(int diagonal) { return *(m_reached.begin() + placeOf(diagonal)); }

    /** Whether the last of `edits` edits on the way to this diagonal is an addition. */
    bool isAddition(int diagonal, int edits)
    {
        return diagonal == -edits
            || (diagonal != edits && reached(diagonal - 1) < reached(diagonal + 1));
    }

    /** Goes as far as one more edit leads; the diagonal on which the end is reached. */
    std::optional<int> advance(int edits)
    {
        m_history.emplace_back(
            m_reached.begin() + placeOf(-edits - 1), m_reached.begin() + placeOf(edits + 1) + 1);
        for (int diagonal = -edits; diagonal <= edits; diagonal += 2) {
            int const start = edits == 0      ? 0
                : isAddition(diagonal, edits) ? reached(diagonal + 1)
                                              : reached(diagonal - 1) + 1;
            int const end = slide(start, diagonal);
            reached(diagonal) = end;
            if (end >= m_range.beforeCount() && end - diagonal >= m_range.afterCount())
                return diagonal;
        }
        return std::nullopt;
    }

    std::ptrdiff_t placeOf(int diagonal) const
    {
        return static_cast<std::ptrdiff_t>(m_reached.size() / 2) + diagonal;
    }

    /** How far what is the same reaches from here on a diagonal. */
    int slide(int before, int diagonal)
    {
        int end = before;
        while (end < m_range.beforeCount() && end - diagonal < m_range.afterCount()
            && end - diagonal >= 0
            && m_sequences.areSame(m_range.before + end, m_range.after + end - diagonal))
            ++end;
        m_effort.spend(1 + end - before);
        return end;
    }

    std::vector<AlignedPair> walkedBack(int edits, int diagonal)
    {
        std::vector<AlignedPair> pairs;
        int end = reached(diagonal);
        for (; edits >= 0; --edits) {
            std::vector<int> const& earlier = m_history[static_cast<std::size_t>(edits)];
            auto const reachedBefore = [&earlier, edits](
                                           int of) { return *(earlier.begin() + of + edits + 1); };
            bool const isAdded = diagonal == -edits
                || (diagonal != edits && reachedBefore(diagonal - 1) < reachedBefore(diagonal + 1));
            int const previous = isAdded ? diagonal + 1 : diagonal - 1;
            int const start = edits == 0 ? 0 : reachedBefore(previous) + (isAdded ? 0 : 1);
            for (; end > start; --end)
                pairs.push_back({m_range.before + end - 1, m_range.after + end - 1 - diagonal});
            if (edits > 0) {
                end = reachedBefore(previous);
                diagonal = previous;
            }
        }
        std::reverse(pairs.begin(), pairs.end());
        return pairs;
    }

    Sequences const& m_sequences;
    Range const m_range;
    Effort& m_effort;
    std::vector<int> m_reached; ///< how far in the first sequence, for each diagonal
    std::vector<std::vector<int>> m_history; ///< the same before each edit, where it matters
};

/** Pairs what is not the same so that the distances add up to as little as possible. */
class Pairing
{
public:
    Pairing(Sequences const& sequences, Range const& range)
        : m_sequences(sequences)
        , m_range(range)
        , m_columns(static_cast<std::size_t>(range.afterCount()) + 1)
        , m_steps(m_columns * (static_cast<std::size_t>(range.beforeCount()) + 1), Step::Pair)
    {
        fill();
    }

    void appendTo(std::vector<AlignedPair>& pairs) const
    {
        auto const first = static_cast<std::ptrdiff_t>(pairs.size());
        int before = m_range.beforeCount();
        int after = m_range.afterCount();
        while (before > 0 || after > 0) {
            Step const step = m_steps[cell(before, after)];
            before -= step == Step::Add ? 0 : 1;
            after -= step == Step::Remove ? 0 : 1;
            pairs.push_back({step == Step::Add ? -1 : m_range.before + before,
                step == Step::Remove ? -1 : m_range.after + after});
        }
        std::reverse(pairs.begin() + first, pairs.end());
    }

private:
    enum class Step : std::uint8_t { Pair, Remove, Add };

    std::size_t cell(int before, int after) const
    {
        return static_cast<std::size_t>(before) * m_columns + static_cast<std::size_t>(after);
    }

    void fill()
    {
        std::vector<double> costs(m_columns);
        for (int after = 1; after <= m_range.afterCount(); ++after) {
            costs[static_cast<std::size_t>(after)] = after * costAlone;
            m_steps[cell(0, after)] = Step::Add;
        }
        for (int before = 1; before <= m_range.beforeCount(); ++before)
            fillRow(before, costs);
    }

    /** @param costs of the row above, then of this one */
    void fillRow(int before, std::vector<double>& costs)
    {
        double diagonal = costs.front();
        costs.front() = before * costAlone;
        m_steps[cell(before, 0)] = Step::Remove;
        for (int after = 1; after <= m_range.afterCount(); ++after) {
            double& cost = costs[static_cast<std::size_t>(after)];
            double const paired = diagonal
                + m_sequences.distance(m_range.before + before - 1, m_range.after + after - 1);
            double const removed = cost + costAlone;
            double const added = costs[static_cast<std::size_t>(after) - 1] + costAlone;
            diagonal = cost;
            cost = std::min({paired, removed, added});
            Step const alone = added <= removed ? Step::Add : Step::Remove;
            m_steps[cell(before, after)] = paired <= cost ? Step::Pair : alone;
        }
    }

    Sequences const& m_sequences;
    Range const m_range;
    std::size_t const m_columns;
    std::vector<Step> m_steps; ///< the last one on the best way to each place
};

/** Pairs one by one; what is left of the longer one stays alone. */
void appendInOrder(Range const& range, std::vector<AlignedPair>& pairs)
{
    for (int i = 0; i < std::max(range.beforeCount(), range.afterCount()); ++i) {
        pairs.push_back({i < range.beforeCount() ? range.before + i : -1,
            i < range.afterCount() ? range.after + i : -1});
    }
}

void appendChanged(
    Sequences const& sequences, Range const& range, Effort& effort, std::vector<AlignedPair>& pairs)
{
    qint64 const cells = static_cast<qint64>(range.beforeCount()) * range.afterCount();
    if (cells > 0 && cells <= mostCells && effort.spend(cells))
        Pairing(sequences, range).appendTo(pairs);
    else
        appendInOrder(range, pairs);
}

/** What is left between what is the same at the beginning and at the end. */
Range differingRange(Sequences const& sequences)
{
    Range range {0, 0, sequences.beforeCount, sequences.afterCount};
    auto const hasBoth = [&range] { return range.beforeCount() > 0 && range.afterCount() > 0; };
    for (; hasBoth() && sequences.areSame(range.before, range.after); ++range.after)
        ++range.before;
    for (; hasBoth() && sequences.areSame(range.beforeEnd - 1, range.afterEnd - 1);
         --range.afterEnd)
        --range.beforeEnd;
    return range;
}

} // namespace

std::vector<AlignedPair> alignedInOrder(Sequences const& sequences, Effort& effort)
{
    Range const middle = differingRange(sequences);
    std::vector<AlignedPair> pairs;
    pairs.reserve(static_cast<std::size_t>(std::max(sequences.beforeCount, sequences.afterCount)));
    appendInOrder({0, 0, middle.before, middle.after}, pairs);
    Range rest = middle;
    if (middle.beforeCount() > 0 && middle.afterCount() > 0) {
        auto const common = CommonSequence(sequences, middle, effort).find();
        for (AlignedPair const& same : common.value_or(std::vector<AlignedPair>())) {
            appendChanged(
                sequences, {rest.before, rest.after, same.before, same.after}, effort, pairs);
            pairs.push_back(same);
            rest.before = same.before + 1;
            rest.after = same.after + 1;
        }
    }
    appendChanged(sequences, rest, effort, pairs);
    appendInOrder(
        {middle.beforeEnd, middle.afterEnd, sequences.beforeCount, sequences.afterCount}, pairs);
    return pairs;
}
