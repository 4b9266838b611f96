// SPDX-License-Identifier: MIT
#ifndef PIXELGRID_H
#define PIXELGRID_H

#include <QRectF>

class QColor;
class QPainter;

/** The pixels of a device under the logical ones of a widget: lines that lie on them are crisp. */
class PixelGrid
{
public:
    /** @param ratio device pixels for each logical one; 0 and less counts as 1 */
    explicit PixelGrid(double ratio);

    /** The nearest edge between two device pixels. */
    double edge(double logical) const;
    /** The thickness of a thin line: a logical pixel, in whole device pixels. */
    double hairline() const { return m_hairline; }
    /** The rectangle whose sides are edges. */
    QRectF aligned(QRectF const& rect) const;

    /** A thin line downwards, from `top` to `bottom`. */
    void drawVertical(
        QPainter& painter, double x, double top, double bottom, QColor const& colour) const;
    /** A thin line to the right, from `left` to `right`. */
    void drawHorizontal(
        QPainter& painter, double y, double left, double right, QColor const& colour) const;
    /** A thin frame along the inner side of a rectangle. */
    void drawFrame(QPainter& painter, QRectF const& rect, QColor const& colour) const;

private:
    double m_ratio;
    double m_hairline;
};

#endif // PIXELGRID_H
