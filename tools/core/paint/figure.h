// SPDX-License-Identifier: MIT
#ifndef FIGURE_H
#define FIGURE_H

#include "paint/outlinepainter.h"

#include <QSizeF>
#include <QString>

#include <memory>
#include <vector>

/** Outlines that are drawn together, over one another. */
struct Figure
{
    /** An outline, the rule that it is meant to be filled with if it names one, and its look. */
    struct Part
    {
        std::shared_ptr<KpPathSegList> list; ///< never null
        std::optional<Qt::FillRule> fillRule; ///< none: nonzero
        Appearance appearance {}; ///< empty: as any outline
    };

    QString caption; ///< what it is called
    std::vector<Part> parts; ///< in the order in which they are drawn
};

/** What the figure covers, shadows included; without bounds if a coordinate of it cannot be drawn. */
QRectF boundsOf(Figure const& figure, OutlineStyle const& style);

/** A copy of the figure, its coordinates recomputed for the box. */
Figure resized(Figure const& figure, QSizeF const& box);

/** Whether the numbers of a rectangle are such that it can be drawn. */
bool isDrawable(QRectF const& bounds);

/**
 * Draws all outlines, and over all of them their points if the style shows them.
 *
 * @param toDevice maps the outlines' units to the painter's
 */
void drawFigure(
    QPainter& painter, Figure const& figure, OutlineStyle const& style, QTransform const& toDevice);

#endif // FIGURE_H
