// SPDX-License-Identifier: MIT
#include "document/shapebox.h"

#include "common/text.h"
#include "kppath.h"

#include <QPainterPath>

#include <algorithm>

namespace {

/** KpReal::updateRate takes a side of this for none. */
constexpr double collapsedSide = 0.001;

/** The side of a box where nothing tells one. */
constexpr double anySide = 100.0;

/** The number, or 0 if it is no side of a box. NaN is none either. */
double sideOf(double number)
{
    return number > collapsedSide && number <= greatestBoxSide ? number : 0.0;
}

/** Rounded it may be no side any more. */
double roundedSide(double side)
{
    return sideOf(numberText(side).toDouble());
}

/** How far the drawing reaches from the origin; an end that is no side of a box counts as 0. */
QSizeF reachOf(Shapes const& shapes)
{
    QSizeF reach(0.0, 0.0);
    for (Shape const& shape : shapes) {
        KpPath path;
        shape.list->toPath(path);
        QRectF const bounds = path.toPainterPath().boundingRect();
        reach = reach.expandedTo({sideOf(bounds.right()), sideOf(bounds.bottom())});
    }
    return reach;
}

} // namespace

QSizeF namedBox(Outline const& outline)
{
    QSizeF const box(sideOf(outline.width.toDouble()), sideOf(outline.height.toDouble()));
    return box.isEmpty() ? QSizeF() : box;
}

Shapes takeShapes(OutlineDocument& document, QVector<int> const& indices)
{
    Shapes shapes;
    for (Outline& outline : document.outlines()) {
        if (indices.isEmpty() || indices.contains(outline.index)) {
            shapes.push_back(
                {outline.name, namedBox(outline), outline.fillRule, std::move(outline.list)});
        }
    }
    return shapes;
}

QSizeF boxOf(Shapes const& shapes)
{
    QSizeF box(0.0, 0.0);
    for (Shape const& shape : shapes)
        box = box.expandedTo(shape.box);
    if (box.isEmpty())
        box = reachOf(shapes);
    double const width = roundedSide(box.width());
    double const height = roundedSide(box.height());
    double const other = std::max(width, height) > 0.0 ? std::max(width, height) : anySide;
    return {width > 0.0 ? width : other, height > 0.0 ? height : other};
}
