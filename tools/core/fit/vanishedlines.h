// SPDX-License-Identifier: MIT
#ifndef VANISHEDLINES_H
#define VANISHEDLINES_H

#include "fit/rulefit.h"
#include "fit/subpath.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/** Where lines of no length have to be put so that the steps of two subpaths correspond. */
struct VanishedLines
{
    /** Before which step, in the order in which they are put in; each counts those before it. */
    std::vector<std::size_t> inReference;
    std::vector<std::size_t> inOther; ///< likewise
    using Cost = std::int64_t; ///< how bad a way is, to be compared only
    Cost cost = 0; ///< fewer lines first, then rules that are usual for their axis
};

/**
 * A line that has no length at one size is left out by many programs: of a pill, the straight sides
 * that are not there. Finds the fewest lines of no length with which the kinds of both subpaths
 * correspond and every coordinate obeys a rule, of these those with the likeliest rules; nothing if
 * there are none, or if the subpaths are too long to try.
 *
 * @param fitter of two boxes: that of the reference and that of the other
 */
std::optional<VanishedLines> vanishedLines(
    Subpath const& reference, Subpath const& other, RuleFitter const& fitter);

/** Puts lines of no length in. */
void putIn(Subpath& subpath, std::vector<std::size_t> const& lines);

#endif // VANISHEDLINES_H
