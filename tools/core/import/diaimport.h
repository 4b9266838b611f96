// SPDX-License-Identifier: MIT
#ifndef DIAIMPORT_H
#define DIAIMPORT_H

#include "import/importedoutlines.h"
#include "import/svgimport.h"

/** The namespace of Dia's shape files. */
inline QString diaNamespace()
{
    return QStringLiteral("http://www.daa.com.au/~james/dia-shape-ns");
}

/**
 * The outlines of a shape file of Dia: those of its svg:svg element as importSvg() paints them, by
 * Dia's rules. Elements are not filled unless they say so, the line is black, transformations,
 * images and texts are not read. One outline a painted element, all named after the shape, with
 * a number if there are several.
 *
 * The box is what the drawing covers, invisible elements included; if the shape has a default width and height and its aspect
 * ratio is not fixed, it has their aspect ratio, and the outlines are drawn for that.
 *
 * Warnings and failures are as with importSvg(). Path data that is none gives a warning: Qt SVG
 * paints what stands before the fault.
 */
std::optional<ImportedOutlines> importDia(
    QByteArray const& content, SvgImportOptions const& options, Diagnostics& diagnostics);

#endif // DIAIMPORT_H
