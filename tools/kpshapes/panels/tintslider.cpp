// SPDX-License-Identifier: MIT
#include "panels/tintslider.h"

#include "panels/swatch.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionSlider>

namespace {

constexpr double grooveHeight = 10.0;
constexpr int gradientSteps = 16; ///< light is not linear in the numbers between

} // namespace

TintSlider::TintSlider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
{
    setRange(-strongestTint, strongestTint);
    setPageStep(strongestTint / 10);
}

void TintSlider::setColour(KpColor const& colour)
{
    m_colour = colour;
    update();
}

void TintSlider::paintEvent(QPaintEvent* /*event*/)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    QRect const handle =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    double const inset = handle.width() / 2.0;
    QRectF const groove(
        inset, (height() - grooveHeight) / 2.0, width() - 2.0 * inset, grooveHeight);
    QLinearGradient gradient(groove.topLeft(), groove.topRight());
    for (int step = 0; step <= gradientSteps; ++step) {
        KpColor tinted = m_colour;
        tinted.modifyTint(2 * strongestTint * step / gradientSteps - strongestTint);
        gradient.setColorAt(static_cast<double>(step) / gradientSteps, QColor(tinted.rgb()));
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(groove, grooveHeight / 2.0, grooveHeight / 2.0);
    if (isEnabled())
        painter.fillPath(shape, gradient);
    painter.setPen(QPen(swatchBorder(palette()), 1.0));
    painter.drawPath(shape);
    double const middle = groove.center().x();
    painter.drawLine(
        QPointF(middle, groove.bottom() + 2.0), QPointF(middle, groove.bottom() + 5.0));
    painter.setRenderHint(QPainter::Antialiasing, false);
    option.subControls = QStyle::SC_SliderHandle;
    style()->drawComplexControl(QStyle::CC_Slider, &option, &painter, this);
}
