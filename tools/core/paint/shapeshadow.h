// SPDX-License-Identifier: MIT
#ifndef SHAPESHADOW_H
#define SHAPESHADOW_H

#include "document/appearance.h"

#include <QPainterPath>
#include <QRectF>

class QPainter;

/** The bounds of a shape, in its units, together with those of its shadow. */
QRectF withShadow(QRectF const& bounds, ShapeShadow const& shadow);

/**
 * Draws the shadow of a path, and not the path itself.
 *
 * It is blurred in device pixels, so that it is as soft at any scale. One that would take many
 * pixels, or more than the kernel reaches, is blurred smaller and enlarged, which is not seen.
 *
 * Only painters of pixels have shadows: on a picture of vectors (SVG, PDF) nothing is drawn. Nor is
 * it without memory for it, or where a coordinate cannot be drawn. It needs a QGuiApplication.
 *
 * @param path in the painter's units, with the fill rule of the shape
 * @param scale units of the painter a unit of the shape, in which the shadow is measured
 */
void drawShadow(
    QPainter& painter, QPainterPath const& path, ShapeShadow const& shadow, double scale);

#endif // SHAPESHADOW_H
