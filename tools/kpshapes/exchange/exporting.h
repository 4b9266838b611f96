// SPDX-License-Identifier: MIT
#ifndef EXPORTING_H
#define EXPORTING_H

#include "common/diagnostic.h"
#include "model/shapeitem.h"
#include "paint/figure.h"
#include "paint/picture.h"

#include <QByteArray>

#include <array>
#include <optional>

/** What outlines can be exported as. */
enum class ExportFormat { Svg, Png, Pdf, Html, CustomGeometry, PathData };

/** How a format is called. */
struct ExportKind
{
    ExportFormat format; ///< which one
    char const* id; ///< in names of actions: "svg"
    char const* text; ///< in menus and file dialogs: "SVG Picture"
    char const* suffix; ///< of its files, without the point
};

/** All formats, in the order of the menu. */
std::array<ExportKind, 6> const& exportKinds();

/** What is exported. */
struct ExportInput
{
    Items items; ///< each with its values as they are; the first lies lowest
    QString name; ///< the title of pages and pictures, and the name in diagnostics
};

/** The outlines over one another, in the colours that they have. */
Figure figureOf(Items const& items);

/** The outlines over one another as a picture in their own units. */
Picture pictureOf(Items const& items);

/**
 * The outlines as a file, as kpgeom render and kpgeom svg write it. Nothing, with a diagnostic, if
 * there is nothing to be written, or a coordinate cannot be.
 */
std::optional<QByteArray> exported(
    ExportInput const& input, ExportFormat format, Diagnostics& diagnostics);

#endif // EXPORTING_H
