// SPDX-License-Identifier: MIT
#ifndef SEQUENCEALIGNMENT_H
#define SEQUENCEALIGNMENT_H

#include <QtGlobal>

#include <functional>
#include <vector>

/**
 * How much may be spent on finding what belongs together, in comparisons of two segments. It
 * bounds the time of a whole comparison, whatever is compared; the result is the same every time.
 */
class Effort
{
public:
    /** @param comparisons that may be spent, not below 0 */
    explicit Effort(qint64 comparisons)
        : m_left(comparisons)
    {
    }

    /** Takes as much away; false, with nothing left, if there was less. */
    bool spend(qint64 comparisons)
    {
        bool const isEnough = comparisons <= m_left;
        m_left = isEnough ? m_left - comparisons : 0;
        return isEnough;
    }

    /** What may still be spent. */
    qint64 left() const { return m_left; }

private:
    qint64 m_left;
};

/** One step through two sequences: elements that stand for each other, or one that has none. */
struct AlignedPair
{
    int before; ///< an index into the first sequence; -1 for what only the second one holds
    int after; ///< an index into the second sequence; -1 for what only the first one holds
};

/** Two sequences, by what there is to know of their elements: the index in each is given. */
struct Sequences
{
    int beforeCount; ///< of elements in the first, not below 0
    int afterCount; ///< likewise in the second
    std::function<bool(int, int)> areSame; ///< it need not be transitive
    /**
     * How different two elements are, from 0. Above 1 they are told apart rather than one
     * being taken for the other.
     */
    std::function<double(int, int)> distance;
};

/**
 * Walks through both sequences in order, so that as few elements as possible are left that are not
 * the same; those are paired by their distance. An element that was put in between does not
 * disturb what follows.
 *
 * Time is linear for what is the same at the beginning and at the end. For the rest no more is
 * spent than there is effort; without any left, elements are paired one by one.
 */
std::vector<AlignedPair> alignedInOrder(Sequences const& sequences, Effort& effort);

#endif // SEQUENCEALIGNMENT_H
