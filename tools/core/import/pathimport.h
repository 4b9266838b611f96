// SPDX-License-Identifier: MIT
#ifndef PATHIMPORT_H
#define PATHIMPORT_H

#include "import/importedoutlines.h"

/** How path data is imported. */
struct PathImportOptions
{
    QString source; ///< what diagnostics call the text
    /** That the outline is drawn for, in units of the text; none: up to its right and lower end. */
    std::optional<QSizeF> box;
    double scale = 1.0; ///< outline units a unit of the text: finite and above 0
};

/**
 * The outline of the path data of SVG, its numbers as they are but for the scale. As in SVG it is
 * filled by nonzero winding, and says so if even-odd filling would differ. A box that is not given
 * is at least one unit wide and high.
 *
 * Nothing, with a diagnostic that tells line and column, for what is no path data. Nothing either if
 * no segment draws anything, if the outline is wholly left of or above its box and none is given, or
 * if that would be larger than maximumPictureSide.
 */
std::optional<ImportedOutlines> importPath(
    QString const& data, PathImportOptions const& options, Diagnostics& diagnostics);

#endif // PATHIMPORT_H
