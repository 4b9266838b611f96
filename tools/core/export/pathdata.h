// SPDX-License-Identifier: MIT
#ifndef PATHDATA_H
#define PATHDATA_H

#include "kppathseglist.h"

#include <QString>

#include <optional>

/** How path data is written. */
struct PathDataOptions
{
    bool isRelative = false; ///< each command counts from where the one before it ends
    /**
     * Digits behind the point, from 0 to 15; trailing zeros are left out. None: six significant
     * digits a coordinate, as documents have.
     */
    std::optional<int> decimals;
};

/** The greatest number of decimals: more than a coordinate has. */
constexpr int maximumPathDecimals = 15;

/**
 * The outline as the path data of SVG, with its values as they are; empty for an outline without
 * segments. Nothing if a value is infinite or NaN, or the sums and differences are too large.
 *
 * Lines that drawing leaves out for their shortness are written. An ellipse is two arcs that begin
 * at its right, and a closed subpath; a closed outline ends with Z. Numbers of the relative form
 * are differences of rounded positions: they add up to these, whatever their number. The positions
 * of an ellipse are sums of its rounded centre and radii, so that arcs of just these radii join
 * them.
 */
std::optional<QString> pathData(KpPathSegList const& list, PathDataOptions const& options);

#endif // PATHDATA_H
