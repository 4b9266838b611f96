// SPDX-License-Identifier: MIT
#include "paint/caption.h"

#include "common/fonts.h"

#include <QFontMetricsF>
#include <QPainter>

namespace {

constexpr double padding = 5.0; ///< on both sides of a text

} // namespace

QFont captionFont()
{
    startFonts();
    QFont font;
    font.setPixelSize(11);
    return font;
}

void drawCaption(QPainter& painter, QString const& text, QRectF const& place, QColor const& colour)
{
    QFont const font = captionFont();
    QString const shown =
        QFontMetricsF(font).elidedText(text, Qt::ElideMiddle, place.width() - 2.0 * padding);
    painter.setFont(font);
    painter.setPen(colour);
    painter.drawText(place, Qt::AlignCenter, shown);
}
