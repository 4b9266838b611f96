// SPDX-License-Identifier: MIT
#ifndef ALIGNMENT_H
#define ALIGNMENT_H

#include "fit/rulefit.h"
#include "fit/subpath.h"

#include <QRectF>

#include <functional>
#include <optional>
#include <vector>

/**
 * The subpath with the start and the direction of the reference, so that the steps of both
 * correspond; nothing if their kinds cannot be brought together. Of several ways the one is
 * taken in which most coordinates obey rules; as it is, unless another is better.
 *
 * @param fitter of two boxes: that of the reference and that of the subpath
 */
std::optional<Subpath> aligned(
    Subpath const& reference, Subpath const& subpath, RuleFitter const& fitter);

/** Whether the kinds of both can be brought together. */
bool canAlign(Subpath const& reference, Subpath const& subpath);

/**
 * Whether the steps correspond as they are, and all their points obey rules; of ellipses
 * the centre and the radii. `fitter` as above.
 */
bool fitsAsItIs(Subpath const& reference, Subpath const& subpath, RuleFitter const& fitter);

/** What a subpath, or a shape, is from afar. */
struct Extent
{
    QRectF bounds; ///< of the points; control points do not count
    std::optional<DrawnEllipse> ellipse; ///< if it is nothing else
};

/** The extent of all subpaths together. */
Extent extentOf(std::vector<Subpath> const& subpaths);

/**
 * How unlikely it is that what has one extent corresponds to what has the other; 0 for a likely
 * pair. `fitter` as above.
 */
double strangeness(Extent const& reference, Extent const& other, RuleFitter const& fitter);

/**
 * Which of `count` things corresponds to each of as many references: in their order where that is
 * possible, unless another order is better.
 *
 * Other orders are looked for among 1,000 things at most.
 *
 * @param strangeness of a reference and a thing, by their indices; infinite for those that cannot
 *     correspond
 * @return for each reference the index of its partner; empty if there are no such pairs
 */
std::vector<int> paired(int count, std::function<double(int, int)> const& strangeness);

#endif // ALIGNMENT_H
