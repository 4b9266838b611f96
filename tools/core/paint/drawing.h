// SPDX-License-Identifier: MIT
#ifndef DRAWING_H
#define DRAWING_H

#include "paint/figure.h"
#include "paint/picture.h"

#include <optional>
#include <vector>

/** How figures become one drawing; lengths in picture units. */
struct DrawingLayout
{
    std::optional<QSizeF> box; ///< that the figures are resized to
    /** Around the drawing; if given, around just the box, and what lies beyond is cut off. */
    std::optional<double> margin;
    std::optional<double>
        scale; ///< picture units a unit; by default 1, or less for a large drawing
    std::optional<double> width; ///< of the whole picture; it gives the scale, as height does
    std::optional<double> height; ///< of both the smaller scale is taken, and the drawing centred
    OutlineStyle style; ///< of all outlines
};

/** Whether anything of the width and the height that are given is left within the margins. */
bool hasRoom(DrawingLayout const& layout);

/** All figures over one another, resized as the layout says. */
Figure joined(std::vector<Figure> const& figures, DrawingLayout const& layout);

/**
 * The figure with a margin and, if points are shown, a legend below; without bounds if a
 * coordinate cannot be drawn.
 *
 * @param layout one that has room
 */
Picture drawing(Figure const& figure, DrawingLayout const& layout);

#endif // DRAWING_H
