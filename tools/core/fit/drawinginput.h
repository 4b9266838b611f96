// SPDX-License-Identifier: MIT
#ifndef DRAWINGINPUT_H
#define DRAWINGINPUT_H

#include "fit/outlinefit.h"
#include "import/importedoutlines.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <vector>

/** Where a drawing comes from. */
struct DrawingSource
{
    QString file; ///< its name in diagnostics
    std::optional<QSizeF>
        box; ///< that it was drawn for, in its own units; none: the picture's size
};

/**
 * What "FILE@WxH" names: the file, and the box if what follows the last @ is one, be it with a capital
 * X or the sign of multiplication. Sides may be any numbers: whether a box can be drawn for shows later.
 */
DrawingSource drawingSource(QString const& text);

/** A drawing with the places that its numbers were rounded to. */
struct ReadDrawing
{
    SizedDrawing drawing; ///< in the units of the file
    /** The unit of the last place that its numbers are rounded to, as lastPlaceOf(). */
    double lastPlace = 1.0;
};

/**
 * Reads an SVG picture, packed or not, or a document of outlines. Nothing, with a diagnostic, if it
 * can be read as neither, or if a document does not say how large its box is.
 *
 * @param takeMessages not empty
 */
std::optional<ReadDrawing> readDrawing(QByteArray const& content, DrawingSource const& source,
    TakeMessages const& takeMessages, Diagnostics& diagnostics);

/**
 * How far coordinates may be off that were rounded so: somewhat more than half a unit of the last
 * place, for that is what rounding costs, and 0.06 at most. Who draws to whole units means them: they
 * count only if all drawings have them. Never less than the fifth digit of the longest side: programs
 * write more digits than they compute with, of which 1/256 unit is common.
 *
 * @param lastPlaces of all drawings, in their units
 * @param longestSide of all their boxes
 */
double toleranceFor(QVector<double> const& lastPlaces, double longestSide);

/** Multiplies all coordinates and the box. */
void scale(SizedDrawing& drawing, double factor);

/** Drawings that rules are to be learnt from. */
struct ReadDrawings
{
    std::vector<SizedDrawing> drawings; ///< in the order of their sources, scaled
    double tolerance = 0.0; ///< that their digits suggest, in the scaled units
};

/** What a file holds; nothing, with a diagnostic, if it cannot be read. */
using ReadContent =
    std::function<std::optional<QByteArray>(QString const& file, Diagnostics& diagnostics)>;

/**
 * Reads drawings and finds the tolerance for all of them. Nothing, with a diagnostic, as soon as one
 * cannot be read.
 *
 * @param factor that multiplies coordinates and boxes: finite, above 0
 * @param readContent not empty
 * @param takeMessages not empty
 */
std::optional<ReadDrawings> readDrawings(QVector<DrawingSource> const& sources, double factor,
    ReadContent const& readContent, TakeMessages const& takeMessages, Diagnostics& diagnostics);

#endif // DRAWINGINPUT_H
