// SPDX-License-Identifier: MIT
#include "panels/swatch.h"

#include "colorutil.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr double corner = 3.0;
constexpr double chequer = 4.0;

QColor mixed(QColor const& one, QColor const& other, double part)
{
    auto const mix = [part](int from, int to) { return qRound(from + part * (to - from)); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()),
        mix(one.blue(), other.blue())};
}

void paintChequers(QPainter& painter, QRectF const& place)
{
    painter.fillRect(place, Qt::white);
    for (int row = 0; row * chequer < place.height(); ++row) {
        for (int column = row % 2; column * chequer < place.width(); column += 2) {
            QRectF const square(
                place.left() + column * chequer, place.top() + row * chequer, chequer, chequer);
            painter.fillRect(square & place, QColor::fromRgb(0xffcccccc));
        }
    }
}

void paintTranslucent(QPainter& painter, QRectF const& place, QColor const& colour)
{
    paintChequers(painter, place);
    painter.fillRect(place, colour);
    QColor opaque = colour;
    opaque.setAlpha(255);
    QPainterPath half(place.topLeft());
    half.lineTo(place.topRight());
    half.lineTo(place.bottomLeft());
    half.closeSubpath();
    painter.fillPath(half, opaque);
}

} // namespace

QColor swatchBorder(QPalette const& palette)
{
    return mixed(palette.color(QPalette::Text), palette.color(QPalette::Window), 0.55);
}

void paintSwatch(
    QPainter& painter, QRectF const& place, QColor const& colour, QPalette const& palette)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF const inner = place.adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath shape;
    shape.addRoundedRect(inner, corner, corner);
    painter.save();
    painter.setClipPath(shape);
    if (!colour.isValid())
        painter.fillRect(place, palette.color(QPalette::Base));
    else if (colour.alpha() < 255)
        paintTranslucent(painter, place, colour);
    else
        painter.fillRect(place, colour);
    if (!colour.isValid()) {
        painter.setPen(
            QPen(mixed(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.3), 1.25));
        painter.drawLine(inner.bottomLeft(), inner.topRight());
    }
    painter.restore();
    painter.setPen(QPen(swatchBorder(palette), 1.0));
    painter.drawPath(shape);
    painter.restore();
}

QPixmap swatchPixmap(QColor const& colour, QSize const& size, QPalette const& palette, double ratio)
{
    QPixmap pixmap(size * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paintSwatch(painter, QRectF(QPointF(), QSizeF(size)), colour, palette);
    return pixmap;
}

QIcon swatchIcon(QColor const& colour, QSize const& size, QPalette const& palette, double ratio)
{
    QPixmap const pixmap = swatchPixmap(colour, size, palette, ratio);
    QIcon icon(pixmap);
    // A colour is not paler where it is selected, or cannot be changed.
    icon.addPixmap(pixmap, QIcon::Selected);
    icon.addPixmap(pixmap, QIcon::Disabled);
    return icon;
}

QString colourText(QColor const& colour)
{
    QString text = ColorUtil::RGBToString(colour);
    if (colour.alpha() == 255)
        return text;
    return QStringLiteral("%1, %2 %").arg(text).arg(qRound(colour.alphaF() * 100.0));
}
