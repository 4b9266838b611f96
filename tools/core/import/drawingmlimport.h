// SPDX-License-Identifier: MIT
#ifndef DRAWINGMLIMPORT_H
#define DRAWINGMLIMPORT_H

#include "import/shapedefinition.h"

#include <QByteArray>

#include <optional>
#include <vector>

/** The most steps of all paths of one shape that are read. */
constexpr int maximumPathSteps = 100000;

/**
 * The shapes of a document of preset shapes: each child of its root is one, by the name of the
 * element. One with a fault is left out, with a warning at the place of the fault.
 *
 * @param file its name in diagnostics
 * @return nothing, with a diagnostic, if it is no well-formed XML, goes beyond BoundedXml::Limits, or
 * has no shape without a fault
 */
std::optional<std::vector<ShapeDefinition>> readPresetShapes(
    QByteArray const& text, QString const& file, Diagnostics& diagnostics);

/**
 * The custom shapes of a document: what its `custGeom` elements define, wherever they stand and
 * whatever their prefix. Their box is the extent beside them, or else that of their first path. They
 * have the name that the document gives the shape around them. Otherwise as readPresetShapes().
 */
std::optional<std::vector<ShapeDefinition>> readCustomShapes(
    QByteArray const& text, QString const& file, Diagnostics& diagnostics);

/** Whether the text is an XML document, other than an SVG picture, with a `custGeom` element. */
bool holdsCustomShapes(QByteArray const& text);

#endif // DRAWINGMLIMPORT_H
