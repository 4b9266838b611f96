// SPDX-License-Identifier: MIT
#ifndef IMPORTING_H
#define IMPORTING_H

#include "common/diagnostic.h"
#include "document/shapes.h"
#include "model/shapeitem.h"

#include <optional>

/** Items of the shapes, each in its own box; where that is empty, in one that holds all. */
Items itemsOf(Shapes const& shapes);

/** Copies of items that stand in no file yet. */
Items newItems(Items const& items);

/**
 * The outlines of a file of another kind, as kpgeom convert makes them: an SVG picture, an
 * OpenDocument drawing, a stencil, custom or preset shapes of DrawingML. Nothing, with a diagnostic,
 * if it holds none or cannot be read.
 *
 * @param file the name in diagnostics
 */
std::optional<Items> importedItems(
    QByteArray const& content, QString const& file, Diagnostics& diagnostics);

/** The glyphs of a text in a font, one outline each; as importText(). */
std::optional<Items> glyphItems(
    QString const& text, QString const& fontFile, Diagnostics& diagnostics);

/** The shapes of a document of preset shapes of DrawingML, with the rules learnt of each. */
std::optional<Items> presetItems(
    QByteArray const& content, QString const& file, Diagnostics& diagnostics);

#endif // IMPORTING_H
