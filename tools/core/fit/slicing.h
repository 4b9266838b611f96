// SPDX-License-Identifier: MIT
#ifndef SLICING_H
#define SLICING_H

#include "kppathseglist.h"

#include <QSizeF>
#include <QString>

#include <vector>

/**
 * The four margins of a drawing that stretches as a nine-slice picture does: what lies in a margin
 * keeps its distance from the edge there, and what lies between two margins stretches between them.
 */
struct Slices
{
    double left = 0.0; ///< width of the margin at the left edge, in the drawing's units, from 0
    double top = 0.0; ///< height of the one at the upper edge
    double right = 0.0; ///< width of the one at the right edge
    double bottom = 0.0; ///< height of the one at the lower edge
    /** The margins grow with the smaller side of the box, so that corners keep their part of it. */
    bool growsCorners = false;
};

/** Why a box of this size cannot be sliced so; empty if it can. */
QString slicesFault(Slices const& slices, QSizeF const& box);

/** A coordinate that no binding rule places where the stretched drawing has it. */
struct InexactBinding
{
    int segment; ///< its index, from 0
    QString letter; ///< of the coordinate in a document
    qint16 base; ///< the rule that it has now
    QSizeF box; ///< of another size, where it is off by `error`
    /** In units, above 0; NaN for a number that cannot be bound, whose rule is left as it was. */
    double error;
};

/**
 * Gives every coordinate the rule by which it follows the slices. Its value stays.
 *
 * Points in a margin, its inner edge included, keep their distance from the outer edge. Of those
 * between two margins, a rule follows only the one that divides the side as the margins divide
 * their sum (the middle, where they are equal), or all of them where both margins are 0: they are
 * bound in proportion to the box, and so are the others, which are returned as inexact.
 *
 * The radii of an ellipse are the distances of its centre from its right-most and left-most, or
 * lowest and topmost, point; where these grow differently, or as no rule does, the radius gets
 * the nearest rule. A curve follows its points: the curve itself is not cut at the margins.
 *
 * Places count as the same within six significant digits of a side, as a document holds them, and
 * rules as exact if they are off by less than a ten-thousandth of a side that doubles.
 *
 * Errors are told for a box of twice the size. Corners that grow would grow with it as all rules
 * do, so then they are told for a box of the same smaller side, and twice the longer one along the
 * coordinate.
 *
 * @param box that the values of the list are for
 * @param slices without a fault for the box
 * @returns in the order of the document format
 */
std::vector<InexactBinding> bindToSlices(
    KpPathSegList& list, QSizeF const& box, Slices const& slices);

#endif // SLICING_H
