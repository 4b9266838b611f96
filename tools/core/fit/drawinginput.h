#ifndef DRAWINGINPUT_H
#define DRAWINGINPUT_H

#include "fit/outlinefit.h"
#include "import/importedoutlines.h"

#include <QByteArray>

#include <optional>

/** Where a drawing comes from. */
struct DrawingSource
{
    QString file; ///< its name in diagnostics
    std::optional<QSizeF>
        box; ///< that it was drawn for, in its own units; none: the picture's size
};

/**
 * What "FILE@WxH" names: the file, and the box if what follows the last @ is one. Sides may be any
 * numbers: whether a box can be drawn for shows later.
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

#endif // DRAWINGINPUT_H
