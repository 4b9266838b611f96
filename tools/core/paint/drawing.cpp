// SPDX-License-Identifier: MIT
#include "paint/drawing.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double defaultMargin = 10.0;

/** A drawing without a scale is made smaller if its longer side exceeds this. */
constexpr double comfortableSide = 2000.0;

double marginOf(DrawingLayout const& layout)
{
    return layout.margin.value_or(defaultMargin);
}

/** What of the outlines' plane is shown. */
QRectF shownArea(DrawingLayout const& layout, QRectF const& bounds)
{
    if (!layout.box)
        return bounds;
    QRectF const box(QPointF(0.0, 0.0), *layout.box);
    return layout.margin ? box : bounds.united(box);
}

double scaleFor(QSizeF const& area, DrawingLayout const& layout, double margin)
{
    if (layout.scale)
        return *layout.scale;
    double const endless = std::numeric_limits<double>::infinity();
    auto const fitting = [=](std::optional<double> whole, double side) {
        return whole && side > 0.0 ? (*whole - 2.0 * margin) / side : endless;
    };
    double const scale =
        std::min(fitting(layout.width, area.width()), fitting(layout.height, area.height()));
    if (std::isfinite(scale))
        return scale;
    return std::min(1.0, comfortableSide / std::max(area.width(), area.height()));
}

} // namespace

bool hasRoom(DrawingLayout const& layout)
{
    double const margins = 2.0 * marginOf(layout);
    return layout.width.value_or(margins + 1.0) > margins
        && layout.height.value_or(margins + 1.0) > margins;
}

Figure joined(std::vector<Figure> const& figures, DrawingLayout const& layout)
{
    Figure all;
    for (Figure const& figure : figures) {
        Figure const& shown = layout.box ? resized(figure, *layout.box) : figure;
        all.parts.insert(all.parts.end(), shown.parts.begin(), shown.parts.end());
    }
    return all;
}

Picture drawing(Figure const& figure, DrawingLayout const& layout)
{
    QRectF const bounds = boundsOf(figure, layout.style);
    if (!isDrawable(bounds))
        return {bounds.size(), [](QPainter&) {}, false};
    double const margin = marginOf(layout);
    QRectF const area = shownArea(layout, bounds);
    double const scale = scaleFor(area.size(), layout, margin);
    QSizeF const drawn = scale * area.size();
    QSizeF size(layout.width.value_or(drawn.width() + 2.0 * margin),
        layout.height.value_or(drawn.height() + 2.0 * margin));
    QPointF const place(
        (size.width() - drawn.width()) / 2.0, (size.height() - drawn.height()) / 2.0);
    QPointF const origin = place - scale * area.topLeft();
    QPointF const legendPlace(defaultMargin, size.height());
    if (layout.style.showsPoints) {
        QSizeF const legend = OutlinePainter::legendSize();
        size = QSizeF(std::max(size.width(), legend.width() + 2.0 * defaultMargin),
            size.height() + legend.height());
    }
    auto const paint = [=, style = layout.style](QPainter& painter) {
        QTransform const toPicture =
            QTransform::fromScale(scale, scale) * QTransform::fromTranslate(origin.x(), origin.y());
        drawFigure(painter, figure, style, toPicture);
        if (style.showsPoints)
            OutlinePainter(painter, style).drawLegend(legendPlace);
    };
    bool const hasShadow = std::any_of(figure.parts.cbegin(), figure.parts.cend(),
        [](Figure::Part const& part) { return part.appearance.shadow.has_value(); });
    return {size, paint, layout.style.showsPoints || hasShadow};
}
