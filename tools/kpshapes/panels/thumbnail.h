// SPDX-License-Identifier: MIT
#ifndef THUMBNAIL_H
#define THUMBNAIL_H

#include "model/shapeitem.h"

#include <QImage>
#include <QSize>

#include <optional>

/** An outline to be pictured, as it is now; nothing of it is owned. */
struct PicturedShape
{
    KpPathSegList& list; ///< only read; its values are those in the box
    QSizeF box; ///< in the outline's units
    std::optional<Qt::FillRule> fillRule; ///< none: nonzero
    Appearance const& appearance; ///< its colours and its shadow, as far as there is room
};

/** How large a thumbnail is. */
struct ThumbnailLayout
{
    QSize size; ///< in logical pixels; each side is brought to 1 to 1,024
    double ratio = 1.0; ///< device pixels a logical one; brought to 1 to 8
    /** Logical pixels a unit, the box in the middle; none: all of the shape and its box is shown. */
    std::optional<double> scale;
};

/**
 * A shape on white paper, with the frame of its box. Blank paper if a coordinate of it cannot be
 * drawn, or a box.
 *
 * Of an outline with more steps than a small picture can show, only some are drawn, in thin lines.
 */
QImage thumbnail(PicturedShape const& shape, ThumbnailLayout const& layout);

/** The shape in the box that it has. */
QImage thumbnail(ShapeItem const& item, ThumbnailLayout const& layout);

/** The shape in another box, which its coordinates follow by their rules. */
QImage thumbnail(ShapeItem const& item, QSizeF const& box, ThumbnailLayout const& layout);

#endif // THUMBNAIL_H
