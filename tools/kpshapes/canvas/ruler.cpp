// SPDX-License-Identifier: MIT
#include "canvas/ruler.h"

#include "canvas/palettecolours.h"
#include "colorutil.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double longMark = 0.45; ///< of the thickness
constexpr double shortMark = 0.22;
constexpr int mostMarks = 100000; ///< whatever the numbers are

} // namespace

QFont rulerFont(QFont const& widgetFont)
{
    QFont font = widgetFont;
    if (font.pointSizeF() > 0.0)
        font.setPointSizeF(std::max(font.pointSizeF() * 0.8, 5.0));
    return font;
}

double rulerThickness(QFont const& widgetFont)
{
    return std::ceil(QFontMetricsF(rulerFont(widgetFont)).height()) + 8.0;
}

void Ruler::paint(QPainter& painter, PixelGrid const& grid, QPalette const& palette) const
{
    bool const isLevel = orientation == Qt::Horizontal;
    double const from = isLevel ? rect.left() : rect.top();
    double const to = isLevel ? rect.right() : rect.bottom();
    double const edge = isLevel ? rect.bottom() : rect.right();
    double const thickness = isLevel ? rect.height() : rect.width();
    auto const line = [&](double at, double length, QColor const& colour) {
        if (isLevel)
            grid.drawVertical(painter, at, edge - length, edge, colour);
        else
            grid.drawHorizontal(painter, at, edge - length, edge, colour);
    };
    painter.save();
    painter.setClipRect(rect);
    painter.fillRect(rect, palette.color(QPalette::Window));
    double const start = std::clamp(zero, from, to);
    double const end = std::clamp(zero + extent, start, to);
    QColor emphasis = palette.color(QPalette::Highlight);
    emphasis.setAlpha(60);
    painter.fillRect(grid.aligned(isLevel ? QRectF(start, rect.top(), end - start, thickness)
                                          : QRectF(rect.left(), start, thickness, end - start)),
        emphasis);

    QFontMetricsF const metrics(painter.font());
    QColor const& text = palette.color(QPalette::WindowText);
    QColor const marks = mixed(palette.color(QPalette::Window), text, 0.6);
    double const step = std::max(scale.minorPixels() * zoom, 1.0);
    // From the labelled mark before the first one that is seen: its text reaches into the ruler.
    double const first = std::floor((from - zero) / (step * scale.divisions)) * scale.divisions;
    double const count = std::min((to - zero) / step - first, double(mostMarks));
    for (int i = 0; i <= count; ++i) {
        double const at = zero + (first + i) * step;
        bool const isLabelled = i % scale.divisions == 0;
        bool const isHalf = scale.divisions % 2 == 0 && i % (scale.divisions / 2) == 0;
        line(at, thickness * (isLabelled ? 1.0 : isHalf ? longMark : shortMark), marks);
        if (!isLabelled)
            continue;
        QString const label = scale.label((first + i) / scale.divisions);
        painter.setPen(text);
        painter.save();
        painter.translate(isLevel ? QPointF(at + 3.0, rect.top() + 1.0 + metrics.ascent())
                                  : QPointF(rect.left() + 1.0 + metrics.ascent(), at - 3.0));
        if (!isLevel)
            painter.rotate(-90.0);
        painter.drawText(QPointF(), label);
        painter.restore();
    }
    line(isLevel ? rect.left() : rect.top(), 0.0, marks);
    if (isLevel)
        grid.drawHorizontal(painter, edge - grid.hairline(), from, to, marks);
    else
        grid.drawVertical(painter, edge - grid.hairline(), from, to, marks);
    if (mark)
        line(*mark, thickness, ColorUtil::s_anchorDock);
    painter.restore();
}
