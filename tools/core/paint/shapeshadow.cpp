// SPDX-License-Identifier: MIT
#include "paint/shapeshadow.h"

#include "document/appearancexml.h"
#include "gaussianblur.h"
#include "paint/figure.h"

#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double mostPixels = 16e6;
constexpr double greatestKernel = greatestShadowRadius;
/** A box already; the sums of the greatest kernel wrap somewhat above. */
constexpr double greatestFlatness = 32000.0;

QRectF widened(QRectF const& rectangle, double by)
{
    return rectangle.adjusted(-by, -by, by, by);
}

/** A shadow in device pixels. */
class ShadowLayer
{
public:
    /** @param pixels device pixels a unit of the shape */
    ShadowLayer(ShapeShadow const& shadow, QRectF const& area, double pixels)
        : m_colour(shadow.colour)
        , m_area(area.toAlignedRect())
        , m_reduction(std::max({1.0, shadow.radius * pixels / greatestKernel,
              std::sqrt(area.width() * area.height() / mostPixels)}))
        , m_radius(std::min(shadow.radius * pixels / m_reduction, greatestKernel))
        , m_flatness(std::min(shadow.flatness * pixels / m_reduction, greatestFlatness))
    {
    }

    /** Draws the shadow of a path with a painter whose units are device pixels. */
    void draw(QPainter& painter, QPainterPath const& path, QTransform const& toPixels) const
    {
        QSizeF const size = QSizeF(m_area.size()) / m_reduction;
        QImage image(static_cast<int>(std::ceil(size.width())),
            static_cast<int>(std::ceil(size.height())), QImage::Format_ARGB32_Premultiplied);
        if (image.isNull())
            return;
        image.fill(Qt::transparent);
        fill(image, path, toPixels);
        QRectF const place(m_area.topLeft(), QSizeF(image.size()) * m_reduction);
        QImage const blurred = GaussianBlur::blurBitmap(std::move(image),
            static_cast<unsigned int>(std::lround(m_radius)),
            static_cast<unsigned int>(std::lround(m_flatness)))
                                   .toImage();
        painter.setRenderHint(QPainter::SmoothPixmapTransform, m_reduction > 1.0);
        painter.drawImage(place, blurred);
    }

private:
    void fill(QImage& image, QPainterPath const& path, QTransform const& toPixels) const
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setTransform(toPixels * QTransform::fromTranslate(-m_area.x(), -m_area.y())
            * QTransform::fromScale(1.0 / m_reduction, 1.0 / m_reduction));
        painter.fillPath(path, m_colour);
    }

    QColor m_colour;
    QRect m_area;
    double m_reduction; ///< device pixels a pixel that is blurred
    double m_radius;
    double m_flatness;
};

bool paintsPixels(QPainter const& painter)
{
    return painter.paintEngine() && painter.paintEngine()->type() == QPaintEngine::Raster;
}

} // namespace

QRectF withShadow(QRectF const& bounds, ShapeShadow const& shadow)
{
    QRectF const thrown = widened(bounds.translated(shadow.offset), shadow.radius);
    return {QPointF(std::min(bounds.left(), thrown.left()), std::min(bounds.top(), thrown.top())),
        QPointF(
            std::max(bounds.right(), thrown.right()), std::max(bounds.bottom(), thrown.bottom()))};
}

void drawShadow(
    QPainter& painter, QPainterPath const& path, ShapeShadow const& shadow, double scale)
{
    bool isInvertible = false;
    QTransform const toPixels = painter.deviceTransform();
    // Of the painter's own units, which need not be pixels even without a transform.
    QTransform const fromPixels = toPixels.inverted(&isInvertible) * painter.worldTransform();
    if (!paintsPixels(painter) || !isInvertible || shadow.colour.alpha() == 0)
        return;
    double const pixels = scale * std::sqrt(std::abs(toPixels.determinant()));
    QTransform const toShadow =
        QTransform::fromTranslate(scale * shadow.offset.x(), scale * shadow.offset.y()) * toPixels;
    QRectF const shape = toShadow.mapRect(path.boundingRect());
    if (!isDrawable(shape) || !isDrawable(pixels))
        return;
    double const reach = shadow.radius * pixels + 1.0;
    QRectF const device(0.0, 0.0, painter.device()->width(), painter.device()->height());
    QRectF const visible = fromPixels.inverted().mapRect(device);
    // What cannot be seen and throws no shadow on what can is left out.
    QRectF const area = widened(shape, reach) & widened(visible, reach);
    if (area.isEmpty())
        return;
    painter.save();
    painter.setWorldTransform(fromPixels);
    ShadowLayer(shadow, area, pixels).draw(painter, path, toShadow);
    painter.restore();
}
