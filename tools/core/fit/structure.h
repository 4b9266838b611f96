// SPDX-License-Identifier: MIT
#ifndef STRUCTURE_H
#define STRUCTURE_H

#include "common/diagnostic.h"
#include "fit/outlinefit.h"
#include "fit/subpath.h"

#include <optional>
#include <vector>

/** A shape whose subpaths correspond, step by step, in all drawings. */
struct AlignedShape
{
    Shape const* reference; ///< in the first drawing; not owned
    /** For each drawing the subpaths in the order of the first one. */
    std::vector<std::vector<Subpath>> drawings;
};

/**
 * Brings the shapes of all drawings together. Nothing, with a diagnostic that says what differs
 * and where, if that cannot be done.
 *
 * @param drawings their boxes and coordinates are finite; they must outlive the result
 */
std::optional<std::vector<AlignedShape>> alignedShapes(
    std::vector<SizedDrawing> const& drawings, double tolerance, Diagnostics& diagnostics);

#endif // STRUCTURE_H
