// SPDX-License-Identifier: MIT
#ifndef SHAPEPAINTING_H
#define SHAPEPAINTING_H

#include "canvas/devicepath.h"
#include "model/shapeitem.h"

#include <QPainterPath>
#include <QRectF>
#include <QTransform>

class QPainter;

/**
 * Draws a shape as pictures of it show it, with its own colours and its shadow.
 *
 * @param path its drawing in the widget
 * @param zoom pixels of the widget a unit of the outline
 */
void drawShape(QPainter& painter, WorkingShape const& shape, DevicePath const& path, double zoom);

/** The drawing of a shape, made again only when the shape or the view is another. */
class ShapeDrawing
{
public:
    /** The shape has changed. */
    void invalidate();
    /** The drawing in the widget, cut beyond `visible`. */
    DevicePath const& path(
        WorkingShape const& shape, QTransform const& toWidget, QRectF const& visible);

private:
    bool m_isOutlineValid = false;
    QPainterPath m_outline; ///< in the outline's units
    bool m_isPathValid = false;
    QTransform m_toWidget;
    QRectF m_visible;
    DevicePath m_path;
};

#endif // SHAPEPAINTING_H
