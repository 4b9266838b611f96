// SPDX-License-Identifier: MIT
#include "canvas/boxhandle.h"

#include "canvas/viewtransform.h"
#include "document/shapebox.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

double boundedSide(double length)
{
    return std::clamp(std::isnan(length) ? 1.0 : length, 1.0, greatestBoxSide);
}

/** Which of two factors changes more. */
double greaterChange(double one, double other)
{
    return std::abs(one - 1.0) >= std::abs(other - 1.0) ? one : other;
}

} // namespace

QPoint directionOf(BoxHandle handle)
{
    static std::array<QPoint, boxHandleCount> const directions {
        {{-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}}};
    return directions[static_cast<std::size_t>(handle)];
}

QPointF positionOn(QRectF const& box, BoxHandle handle)
{
    QPoint const direction = directionOf(handle);
    return box.center()
        + QPointF(direction.x() * box.width() / 2.0, direction.y() * box.height() / 2.0);
}

QString nameOf(BoxHandle handle)
{
    static std::array<char const*, boxHandleCount> const names {
        {"top left corner", "top side", "top right corner", "right side", "bottom right corner",
            "bottom side", "bottom left corner", "left side"}};
    return QString::fromLatin1(names[static_cast<std::size_t>(handle)]);
}

QRectF BoxResize::movedBy(QPointF const& by) const
{
    QPoint const direction = directionOf(handle);
    QSizeF size(start.width() + direction.x() * by.x(), start.height() + direction.y() * by.y());
    if (direction.x() != 0)
        size.setWidth(roundedTo(size.width(), step));
    if (direction.y() != 0)
        size.setHeight(roundedTo(size.height(), step));
    if (keepsProportion) {
        double const factor =
            greaterChange(size.width() / start.width(), size.height() / start.height());
        // As far as both sides can go.
        double const shorter = std::min(start.width(), start.height());
        double const longer = std::max(start.width(), start.height());
        size = start.size()
            * std::clamp(factor, 1.0 / shorter, std::max(greatestBoxSide / longer, 1.0 / shorter));
    }
    size = {boundedSide(size.width()), boundedSide(size.height())};
    QPointF const corner(direction.x() < 0 ? start.right() - size.width() : start.left(),
        direction.y() < 0 ? start.bottom() - size.height() : start.top());
    return {corner, size};
}
