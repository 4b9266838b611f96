// SPDX-License-Identifier: MIT
#ifndef CUSTGEOM_H
#define CUSTGEOM_H

#include "common/diagnostic.h"
#include "document/shapes.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <optional>
#include <vector>

/** Outlines that become one shape of DrawingML. */
struct CustomShape
{
    QString name; ///< any text
    QString source; ///< where the outlines come from, in diagnostics
    QSizeF box; ///< that it has at first, in the outlines' units; sides above 0
    Shapes outlines; ///< the first lies lowest
};

/** EMUs of DrawingML in a unit of an outline, which is 1/96 inch. */
constexpr double emusAUnit = 9525.0;

/**
 * The EMUs that a unit becomes in a shape of this box: emusAUnit or, so that whole numbers of them
 * are fine enough for a small box and not too large for a large one, a power of ten times as many.
 */
double unitScale(QSizeF const& box);

/**
 * The shapes as DrawingML (ECMA-376), in UTF-8: a p:spTree, as a slide of PresentationML holds it,
 * with a p:sp a shape. Its a:custGeom has an a:path an outline, without a size of its own, so that
 * coordinates are EMUs of the shape: what keeps its length in the outline keeps it there.
 *
 * Each binding rule becomes guides of the box, equal ones once. Guides are whole numbers, at most
 * half an EMU and a millionth of a side beside the outline's. All lines are written, those too
 * that drawing leaves out. Names of outlines that are not the shape's are comments before their paths.
 *
 * Nothing, with a diagnostic, if a coordinate is no number or too large for DrawingML.
 */
std::optional<QByteArray> custGeomDocument(
    std::vector<CustomShape> const& shapes, Diagnostics& diagnostics);

#endif // CUSTGEOM_H
