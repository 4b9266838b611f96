// SPDX-License-Identifier: MIT
#ifndef VIEWTRANSFORM_H
#define VIEWTRANSFORM_H

#include <QPointF>
#include <QRectF>
#include <QTransform>

/**
 * Where the page and the shape's box lie in a widget. Lengths on the page and in the outline are
 * pixels of 96 an inch; zoom() makes logical pixels of the widget of them.
 */
class ViewTransform
{
public:
    static constexpr double minimumZoom = 0.01; ///< a hundredth of the size
    static constexpr double maximumZoom = 100.0; ///< a hundred times the size

    /** Logical pixels of the widget for each pixel of the page. */
    double zoom() const { return m_zoom; }
    /** @param zoom brought into the range; NaN is ignored @param fixed in the widget: stays */
    void setZoom(double zoom, QPointF const& fixed);

    /** The part of the widget in which the page is shown. */
    QRectF area() const { return m_area; }
    /** What is in the middle stays there. */
    void setArea(QRectF const& area) { m_area = area; }

    /** Where the top-left corner of the shape's box lies on the page. */
    QPointF boxOrigin() const { return m_boxOrigin; }
    /** @param origin any finite place; anything else is ignored */
    void setBoxOrigin(QPointF const& origin);

    /** The place on the page that is in the middle of the area. */
    QPointF centre() const { return m_centre; }
    /** @param centre any finite place, brought within 1e9 of the page; anything else is ignored */
    void setCentre(QPointF const& centre);
    /** Moves what is shown; `by` is in the widget. */
    void pan(QPointF const& by) { setCentre(m_centre - by / m_zoom); }
    /** Shows a part of the page as large as it fits, with a margin around it. */
    void fit(QRectF const& page);
    /** Keeps the middle of the area within this part of the page. */
    void keepWithin(QRectF const& page);

    /**
     * Moves what is shown by less than a pixel, so that the box begins at one: the mouse then meets
     * whole units of the outline.
     */
    void alignBox();

    /** From the page to the widget. */
    QPointF fromPage(QPointF const& page) const;
    /** From the widget to the page. */
    QPointF toPage(QPointF const& widget) const;
    /** From the outline to the widget. */
    QPointF fromOutline(QPointF const& outline) const { return fromPage(outline + m_boxOrigin); }
    /** From the widget to the outline. */
    QPointF toOutline(QPointF const& widget) const { return toPage(widget) - m_boxOrigin; }
    /** fromOutline() as a matrix. */
    QTransform outlineTransform() const;

    /** The greatest power of ten that a pixel of the widget still tells, in units of the page. */
    double precision() const;

private:
    QRectF m_area {0.0, 0.0, 1.0, 1.0};
    QPointF m_centre;
    QPointF m_boxOrigin;
    double m_zoom = 1.0;
};

/** The nearest multiple of a step; the number itself if the step is 0. */
double roundedTo(double number, double step);
/** Both coordinates rounded. */
QPointF roundedTo(QPointF const& point, double step);

#endif // VIEWTRANSFORM_H
