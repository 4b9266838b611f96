// SPDX-License-Identifier: MIT
#ifndef OVERLAYSHEET_H
#define OVERLAYSHEET_H

#include "paint/figure.h"
#include "paint/picture.h"

#include <QPointF>
#include <QSizeF>
#include <QVector>

#include <vector>

/** A drawing and what is meant to look like it, both as they are in one box. */
struct Overlay
{
    QSizeF box; ///< of both, in their units
    Figure drawing; ///< what should be there
    Figure fit; ///< what is there
    QVector<QPointF> marks; ///< places that are not exact; such as cannot be drawn are left out
};

/**
 * The overlays beside one another, each in its box with the size for a caption, and a legend below:
 * the drawings are broad and translucent, the fits fine and dark on top of them, so that a fit that
 * leaves its drawing is seen at a glance. The captions of the figures are not shown.
 *
 * All have one scale, so that what keeps its size is seen to; unless one would be too small then.
 * An overlay that cannot be drawn, for a box or a coordinate that is no number or too large, says
 * so. Without overlays there is the legend alone.
 */
Picture overlaySheet(std::vector<Overlay> const& overlays);

#endif // OVERLAYSHEET_H
