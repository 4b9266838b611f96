// SPDX-License-Identifier: MIT
#ifndef RULER_H
#define RULER_H

#include "canvas/pixelgrid.h"
#include "canvas/rulerscale.h"

#include <QPalette>
#include <QRectF>

#include <optional>

class QFont;
class QPainter;

/** A ruler along the upper or the left edge of the canvas. */
struct Ruler
{
    Qt::Orientation orientation; ///< horizontal: along the upper edge
    QRectF rect; ///< of the widget
    RulerScale scale; ///< its graduation
    double zero; ///< where zero is, in the widget
    double zoom; ///< pixels of the widget for one of 96 an inch
    double extent; ///< the length that is emphasised, from zero on, in pixels of the widget
    std::optional<double> mark; ///< where the pointer is, in the widget

    /** Draws it. */
    void paint(QPainter& painter, PixelGrid const& grid, QPalette const& palette) const;
};

/** The font of rulers, somewhat smaller than that of the widget. */
QFont rulerFont(QFont const& widgetFont);
/** How thick a ruler is, in logical pixels. */
double rulerThickness(QFont const& widgetFont);

#endif // RULER_H
