// SPDX-License-Identifier: MIT
#ifndef OUTLINEDIFF_H
#define OUTLINEDIFF_H

#include "document/outlinedocument.h"

#include <QString>

#include <functional>
#include <optional>

/** One place at which two documents do not mean the same. */
struct OutlineDifference
{
    /** One of the two documents. */
    enum class Side {
        Before, ///< the first
        After ///< the second
    };

    Side side; ///< the document that the place is in: the first, unless only the second has it
    int outline; ///< the number of the outline there, from 1
    QString name; ///< of that outline, or empty
    int segment; ///< the number of the segment there, from 1; 0 for the outline itself
    QString kind; ///< the name of the segment's element; empty without a segment
    QString letter; ///< of the coordinate; empty for the outline or the segment itself
    QString what; ///< "rule width -> right, rate 0.5 -> 10"
};

/** The place and what is different there, on one line: "outline 3 "door", segment 5 (LineTo), X: …" */
QString differenceText(OutlineDifference const& difference);

/** Told each difference; false if no more of them are wanted. */
using DifferenceReport = std::function<bool(OutlineDifference const&)>;

/**
 * Reports where the outlines of two documents differ for their readers, in the order of the first
 * document; what only the second one holds comes where it stands, whole outlines at the end.
 *
 * Outlines of one name stand for each other if no other has it; the rest are matched in their
 * order, and so are segments, so that what was put in between is one difference. Compared are
 * names, fill rules, flags, order, kinds of segments, rules, rates and values; NaN equals NaN. The
 * rate of an absolute coordinate has no meaning and does not count.
 *
 * Rates are the same if their six digits are, or within 1.5 millionths of the larger one or
 * of 1: whoever takes them from values anew gets them no closer.
 *
 * Whether there is a difference does not depend on what is matched with what. Time is linear for
 * documents that differ in few places, and bounded for others: elements are then matched one by
 * one.
 *
 * @param tolerance how far values may be apart, in units, not below 0; without it their six
 * digits, which is what documents hold, must be the same
 */
void reportDifferences(OutlineDocument const& before, OutlineDocument const& after,
    std::optional<double> tolerance, DifferenceReport const& report);

#endif // OUTLINEDIFF_H
