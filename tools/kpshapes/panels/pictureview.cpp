// SPDX-License-Identifier: MIT
#include "panels/pictureview.h"

#include <QPainter>

#include <algorithm>

PictureView::PictureView(QString const& text, QWidget* parent)
    : QWidget(parent)
    , m_text(text)
{
    setMinimumSize(160, 120);
}

void PictureView::setPicture(Picture const& picture)
{
    m_picture = picture;
    m_drawn = QImage();
    update();
}

void PictureView::clear(QString const& text)
{
    m_picture = Picture();
    m_text = text;
    m_drawn = QImage();
    update();
}

QImage PictureView::drawn(QSize const& size) const
{
    double const ratio = devicePixelRatioF();
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    double const scale =
        std::min(size.width() / m_picture.size.width(), size.height() / m_picture.size.height());
    painter.translate((size.width() - scale * m_picture.size.width()) / 2.0,
        (size.height() - scale * m_picture.size.height()) / 2.0);
    painter.scale(scale, scale);
    m_picture.paint(painter);
    return image;
}

void PictureView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    if (!hasPicture() || m_picture.size.isEmpty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(
            rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, m_text);
        painter.setPen(QPen(palette().color(QPalette::Mid), 1.0, Qt::DashLine));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4.0, 4.0);
        return;
    }
    // Large drawings take long, and windows are painted often.
    QSize const pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (m_drawn.size() != pixels)
        m_drawn = drawn(size());
    painter.drawImage(0, 0, m_drawn);
}
