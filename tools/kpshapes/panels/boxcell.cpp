// SPDX-License-Identifier: MIT
#include "panels/boxcell.h"

#include "common/text.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr int padding = 6; ///< around the picture, in logical pixels
constexpr double radius = 4.0; ///< of the picture's corners
constexpr int shortestWidth = 64; ///< of a picture, so that its caption has room
constexpr int longestWidth = 400;

/** The smaller of the two lines of text below a picture. */
QFont smallFont(QFont font)
{
    font.setPointSizeF(std::max(font.pointSizeF() * 0.85, 6.0));
    return font;
}

} // namespace

QString captionOf(QSizeF const& box)
{
    return QStringLiteral("%1 \u00d7 %2").arg(numberText(box.width()), numberText(box.height()));
}

BoxCell::BoxCell(QWidget* parent)
    : QAbstractButton(parent)
{
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QString BoxCell::title() const
{
    return m_offer.name.isEmpty() ? captionOf(m_offer.box) : m_offer.name;
}

void BoxCell::setOffer(OfferedBox const& offer)
{
    m_offer = offer;
    QString const sides = QStringLiteral("%1 by %2")
                              .arg(numberText(offer.box.width()), numberText(offer.box.height()));
    setAccessibleName(offer.name.isEmpty() ? QStringLiteral("Box %1").arg(sides)
                                           : QStringLiteral("Box %1, %2").arg(offer.name, sides));
    setToolTip(QStringLiteral("Take the box %1").arg(captionOf(offer.box)));
    updateGeometry();
    update();
}

QSize BoxCell::pictureSize() const
{
    return {m_pictureWidth, pictureHeight};
}

void BoxCell::setPictureWidth(double width)
{
    // Written so that NaN gives the shortest.
    int const wanted = width > shortestWidth ? static_cast<int>(std::min(width, 1.0 * longestWidth))
                                             : shortestWidth;
    if (wanted == m_pictureWidth)
        return;
    m_pictureWidth = wanted;
    updateGeometry();
}

void BoxCell::setPicture(QImage const& picture)
{
    m_picture = picture;
    update();
}

QSize BoxCell::sizeHint() const
{
    QFontMetrics const caption(smallFont(font()));
    int const text = std::max(caption.horizontalAdvance(captionOf(m_offer.box)),
        fontMetrics().horizontalAdvance(title()));
    return {std::max(m_pictureWidth, text) + 2 * padding,
        pictureHeight + fontMetrics().height() + caption.height() + 2 * padding + 2};
}

void BoxCell::paintCaption(QPainter& painter) const
{
    QRect line(0, padding + pictureHeight + 2, width(), fontMetrics().height());
    QFont bold = font();
    bold.setBold(isChecked());
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(line, Qt::AlignCenter, title());
    if (isRemovable())
        return;
    QFont const small = smallFont(font());
    line.translate(0, line.height());
    line.setHeight(QFontMetrics(small).height());
    painter.setFont(small);
    painter.drawText(line, Qt::AlignCenter, captionOf(m_offer.box));
}

void BoxCell::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF const tile(QRect(QPoint((width() - m_pictureWidth) / 2, padding), pictureSize()));
    QPainterPath shape;
    shape.addRoundedRect(tile, radius, radius);
    painter.save();
    painter.setClipPath(shape);
    painter.fillPath(shape, Qt::white);
    painter.drawImage(tile, m_picture);
    painter.restore();
    bool const isMarked = isChecked() || hasFocus();
    QColor const frame =
        palette().color(isMarked || underMouse() ? QPalette::Highlight : QPalette::Mid);
    painter.setPen(QPen(frame, isChecked() ? 2.0 : 1.0));
    painter.drawPath(shape);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.0));
        painter.drawRoundedRect(tile.adjusted(-3.0, -3.0, 3.0, 3.0), radius + 2.0, radius + 2.0);
    }
    paintCaption(painter);
}

void BoxCell::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}
