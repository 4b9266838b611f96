// SPDX-License-Identifier: MIT
#include "canvas/viewtransform.h"

#include "model/subpaths.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double fitMargin = 24.0; ///< around what is fitted, in the widget
// Beyond this a pixel is less than doubles tell apart at the greatest zoom, and marks of rulers have
// no number.
constexpr double farthest = 1e9;

} // namespace

void ViewTransform::setZoom(double zoom, QPointF const& fixed)
{
    if (std::isnan(zoom))
        return;
    QPointF const page = toPage(fixed);
    m_zoom = std::clamp(zoom, minimumZoom, maximumZoom);
    setCentre(page + (m_area.center() - fixed) / m_zoom);
}

void ViewTransform::setBoxOrigin(QPointF const& origin)
{
    if (isFinite(origin))
        m_boxOrigin = origin;
}

void ViewTransform::setCentre(QPointF const& centre)
{
    if (isFinite(centre)) {
        m_centre = {std::clamp(centre.x(), -farthest, farthest),
            std::clamp(centre.y(), -farthest, farthest)};
    }
}

void ViewTransform::fit(QRectF const& page)
{
    auto const scale = [](double available, double needed) {
        double const margin = std::min(fitMargin, available / 4.0);
        return (available - 2.0 * margin) / std::max(needed, 1e-6);
    };
    m_zoom = std::clamp(
        std::min(scale(m_area.width(), page.width()), scale(m_area.height(), page.height())),
        minimumZoom, maximumZoom);
    setCentre(page.center());
}

void ViewTransform::keepWithin(QRectF const& page)
{
    setCentre({std::clamp(m_centre.x(), page.left(), std::max(page.left(), page.right())),
        std::clamp(m_centre.y(), page.top(), std::max(page.top(), page.bottom()))});
}

void ViewTransform::alignBox()
{
    QPointF const corner = fromOutline({});
    pan(roundedTo(corner, 1.0) - corner);
}

QPointF ViewTransform::fromPage(QPointF const& page) const
{
    return m_area.center() + (page - m_centre) * m_zoom;
}

QPointF ViewTransform::toPage(QPointF const& widget) const
{
    return m_centre + (widget - m_area.center()) / m_zoom;
}

QTransform ViewTransform::outlineTransform() const
{
    QPointF const origin = fromOutline({});
    return {m_zoom, 0.0, 0.0, m_zoom, origin.x(), origin.y()};
}

double ViewTransform::precision() const
{
    // The logarithm of a zoom of exactly 10 must not fall below 1.
    return std::pow(10.0, std::floor(std::log10(1.0 / m_zoom) + 1e-9));
}

double roundedTo(double number, double step)
{
    if (!(step > 0.0))
        return number;
    // A tenth is no double: 3 divided by 10 is nearer to 0.3 than 3 times a tenth.
    double const parts = std::round(1.0 / step);
    bool const isPart = parts > 0.0 && std::abs(parts * step - 1.0) < 1e-9;
    return isPart ? std::round(number * parts) / parts : std::round(number / step) * step;
}

QPointF roundedTo(QPointF const& point, double step)
{
    return {roundedTo(point.x(), step), roundedTo(point.y(), step)};
}
