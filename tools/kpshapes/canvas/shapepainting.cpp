// SPDX-License-Identifier: MIT
#include "canvas/shapepainting.h"

#include "paint/outlinepainter.h"

#include <QPainter>

#include <cmath>

namespace {

// From so many lines on, speed comes before beauty. A line wider than a pixel of the device takes
// twenty times as long, and so do smooth edges of the fill.
constexpr int manyForWideLines = 1000;
constexpr int manyForSmoothEdges = 2500;

/** How far from what throws it a shadow is seen, in the outline's units. */
double shadowReach(Appearance const& appearance)
{
    if (!appearance.shadow)
        return 0.0;
    QPointF const& offset = appearance.shadow->offset;
    return appearance.shadow->radius + std::abs(offset.x()) + std::abs(offset.y());
}

} // namespace

void drawShape(QPainter& painter, WorkingShape const& shape, DevicePath const& path, double zoom)
{
    painter.save();
    int const lines = path.count();
    painter.setRenderHint(QPainter::Antialiasing, lines < manyForSmoothEdges);
    OutlineStyle style;
    if (lines >= manyForWideLines)
        style.lineWidth = 1.0 / painter.device()->devicePixelRatioF();
    OutlinePainter(painter, style)
        .drawMapped(*shape.list, shape.fillRule.value_or(Qt::WindingFill),
            {path.fill, path.line, zoom}, shape.appearance);
    painter.restore();
}

void ShapeDrawing::invalidate()
{
    m_isOutlineValid = false;
    m_isPathValid = false;
}

DevicePath const& ShapeDrawing::path(
    WorkingShape const& shape, QTransform const& toWidget, QRectF const& visible)
{
    if (!m_isOutlineValid)
        m_outline = painterPathOf(*shape.list);
    if (!m_isPathValid || m_toWidget != toWidget || m_visible != visible) {
        double const margin = cutMargin + shadowReach(shape.appearance) * toWidget.m11();
        m_path =
            devicePathOf(m_outline, toWidget, visible.adjusted(-margin, -margin, margin, margin));
    }
    m_isOutlineValid = true;
    m_isPathValid = true;
    m_toWidget = toWidget;
    m_visible = visible;
    return m_path;
}
