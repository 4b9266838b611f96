// SPDX-License-Identifier: MIT
#ifndef SVGIMPORT_H
#define SVGIMPORT_H

#include "import/importedoutlines.h"

#include <QByteArray>

/**
 * The longer side of an imported SVG picture in outline units, unless a scale is given.
 *
 * An outline that is drawn leaves out lines shorter than one unit, and a document holds six
 * digits of a coordinate. So no line vanishes that is longer than a ten-thousandth of the
 * picture, and what is stored is a hundred times as exact as that at least.
 */
constexpr double defaultPictureSide = 10000.0;

/** The side instead where lines would vanish at the default: what vanishes then cannot be seen. */
constexpr double finePictureSide = 100000.0;

/** How an SVG picture is imported. */
struct SvgImportOptions
{
    QString file; ///< the name of the picture in diagnostics
    /** Outline units a user unit: finite and above 0; 0 makes the longer side as long as usual. */
    double scale = 0.0;
    TakeMessages takeMessages; ///< not empty
    bool tellsLosses = true; ///< whether warnOfLosses() is called: not where only shapes matter
    bool keepsPainted = false; ///< as in ImportedOutlines
};

/**
 * The outlines of an SVG picture as Qt SVG paints them: SVG Tiny 1.2, so clip paths, masks,
 * filters, patterns and the like have no effect, and the shapes in them may be painted; each
 * kind that occurs is named in a warning. Beyond that, nested `svg` elements and symbols are shown
 * in their places, without being cut off there. One outline a painted shape; shapes that paint
 * nothing are left out. The user unit is that of the view box, whose corner becomes the origin.
 *
 * The result is one picture, or a picture a symbol if there are symbols and nothing else is
 * painted, in the order of the text. Symbols without a size are left out with a warning.
 *
 * No two outlines have the same name. In a picture a shape that has an id is named after it, or
 * after the `use` that paints it; any other one is "path" and its number. In a symbol its name
 * begins with that of the symbol: "bolt", "bolt/thread".
 *
 * No other file is opened: images are left out, with a warning, and references to style sheets
 * are ignored. What else of the picture outlines do not hold is named by warnOfLosses(), if asked.
 *
 * Nothing, with a diagnostic, for what guardedSvg() refuses, for a picture without a size or
 * larger than maximumPictureSide, and for a scale that is none.
 *
 * A picture with text needs a QGuiApplication: see startFonts().
 */
std::optional<ImportedPictures> importSvg(
    QByteArray const& svg, SvgImportOptions const& options, Diagnostics& diagnostics);

#endif // SVGIMPORT_H
