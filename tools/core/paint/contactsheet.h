#ifndef CONTACTSHEET_H
#define CONTACTSHEET_H

#include "paint/outlinepainter.h"
#include "paint/picture.h"

#include <QSizeF>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

/** Outlines that are drawn together, over one another. */
struct Figure
{
    QString caption;
    std::vector<std::shared_ptr<KpPathSegList>> outlines;
};

/** What the figure covers; without bounds if a coordinate of it cannot be drawn. */
QRectF boundsOf(Figure const& figure, OutlineStyle const& style);

/** A copy of the figure, its coordinates recomputed for the box. */
Figure resized(Figure const& figure, QSizeF const& box);

/** Whether the numbers of a rectangle are such that it can be drawn. */
bool isDrawable(QRectF const& bounds);

/**
 * The figures in a grid with their captions. With `boxes` each figure is drawn once for every
 * box, on one scale, in a row of its own.
 */
Picture contactSheet(
    std::vector<Figure> const& figures, QVector<QSizeF> const& boxes, OutlineStyle const& style);

#endif // CONTACTSHEET_H
