// SPDX-License-Identifier: MIT
#ifndef DEVICEPATH_H
#define DEVICEPATH_H

#include <QPainterPath>
#include <QRectF>
#include <QTransform>

/** What of a drawing is to be seen, in the widget. */
struct DevicePath
{
    QPainterPath fill; ///< its figures are closed: to be filled
    QPainterPath line; ///< to be stroked

    /** How many lines it is made of. */
    int count() const { return line.elementCount(); }
};

/**
 * The part of a drawing that is to be seen, made of straight lines only: quick to draw whatever
 * the size of the drawing.
 *
 * Curves become lines that differ from them by less than a tenth of a pixel, points that fall
 * within a fifth of a pixel become one, and what lies outside the bounds runs along them. Points
 * that are not finite are left out.
 *
 * @param bounds in the widget: must reach beyond what is seen by more than the width of the line
 */
DevicePath devicePathOf(
    QPainterPath const& outline, QTransform const& toDevice, QRectF const& bounds);

/** How far a drawing that is cut has to reach beyond what is seen, in pixels. */
constexpr double cutMargin = 64.0;

#endif // DEVICEPATH_H
