// SPDX-License-Identifier: MIT
#include "canvas/canvas.h"
#include "canvas/handlehit.h"
#include "canvas/legend.h"
#include "canvas/palettecolours.h"
#include "canvas/ruler.h"
#include "colorutil.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr double legendMargin = 10.0; ///< from the edge of the canvas
constexpr double labelSpacing = 56.0; ///< between the labels of a ruler, at least

/** Paper is white whatever the palette: shapes are drawn for it. */
QColor paper()
{
    return Qt::white;
}

} // namespace

void Canvas::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    PixelGrid const grid(devicePixelRatioF());
    m_handlePainter.setDevice(devicePixelRatioF(), palette());
    if (event->region().intersects(m_view.area().toAlignedRect())) {
        painter.save();
        painter.setClipRect(m_view.area(), Qt::IntersectClip);
        paintPage(painter, grid);
        if (m_scene.document.hasCurrent())
            paintShape(painter, grid);
        activeTool().paint(painter, grid);
        paintCrosshair(painter, grid);
        if (hasFocus())
            grid.drawFrame(painter, m_view.area(), palette().color(QPalette::Highlight));
        painter.restore();
    }
    if (m_scene.settings.showsRulers())
        paintRulers(painter, grid);
}

void Canvas::paintPage(QPainter& painter, PixelGrid const& grid)
{
    QRectF const area = m_view.area();
    if (!m_scene.settings.showsPage()) {
        painter.fillRect(area, paper());
        return;
    }
    QColor const desk =
        mixed(palette().color(QPalette::Window), palette().color(QPalette::Mid), 0.5);
    painter.fillRect(area, desk);
    // Far outside of the widget, integers of the paint engine would overflow.
    QRectF const page = QRectF(m_view.fromPage({}), m_view.fromPage(pageRect().bottomRight()))
                            .intersected(area.adjusted(-10.0, -10.0, 10.0, 10.0));
    if (page.isEmpty())
        return;
    painter.fillRect(grid.aligned(page.translated(3.0, 3.0)), QColor(0, 0, 0, 50));
    painter.fillRect(grid.aligned(page), paper());
    grid.drawFrame(painter, page, mixed(desk, palette().color(QPalette::WindowText), 0.4));
}

void Canvas::paintShape(QPainter& painter, PixelGrid const& grid)
{
    WorkingShape const& shape = m_scene.document.working();
    QRectF const area = m_view.area();
    drawShape(
        painter, shape, m_drawing.path(shape, m_view.outlineTransform(), area), m_view.zoom());
    QRectF const near = area.adjusted(-10.0, -10.0, 10.0, 10.0);
    QRectF const box(
        m_view.fromOutline({}), m_view.fromOutline({shape.box.width(), shape.box.height()}));
    QRectF const visibleBox(
        QPointF(std::max(box.left(), near.left()), std::max(box.top(), near.top())),
        QPointF(std::min(box.right(), near.right()), std::min(box.bottom(), near.bottom())));
    if (visibleBox.isValid())
        grid.drawFrame(painter, visibleBox, ColorUtil::s_alignBox.darker(140));
    // Behind the handles: all of them must be seen to be dragged.
    paintLegend(painter);
    if (m_scene.settings.showsHandles()) {
        std::optional<HandleId> const focus =
            hasFocus() ? m_scene.selection.current() : std::nullopt;
        m_handlePainter.paint(
            painter, {*shape.list, m_scene.selection.handles(), focus}, m_view, area);
    }
    std::optional<int> const focus =
        hasFocus() && boxHandle() ? std::optional(static_cast<int>(*boxHandle())) : std::nullopt;
    m_handlePainter.paintBox(painter, boxHandleFrame(shape.box, m_view), focus);
}

QRectF Canvas::legendRect() const
{
    Legend const legend = legendOf(*m_scene.document.working().list);
    QSizeF const size = legend.size(rulerFont(font()));
    QRectF const area =
        m_view.area().adjusted(legendMargin, legendMargin, -legendMargin, -legendMargin);
    bool const isShown = m_showsLegend && m_scene.settings.showsHandles() && !legend.isEmpty();
    bool const isRoom = size.width() * 2.0 < area.width() && size.height() < area.height();
    if (!isShown || !isRoom)
        return {};
    return {area.bottomRight() - QPointF(size.width(), size.height()), size};
}

void Canvas::paintLegend(QPainter& painter) const
{
    QRectF const rect = legendRect();
    if (rect.isEmpty())
        return;
    legendOf(*m_scene.document.working().list)
        .paint(painter, rect.topLeft(), rulerFont(font()), palette());
}

void Canvas::paintCrosshair(QPainter& painter, PixelGrid const& grid) const
{
    if (!m_crosshair)
        return;
    QRectF const area = m_view.area();
    QPointF const at = m_view.fromOutline(*m_crosshair);
    QColor const colour = ColorUtil::s_mouseDot;
    grid.drawVertical(painter, at.x(), area.top(), area.bottom(), colour);
    grid.drawHorizontal(painter, at.y(), area.left(), area.right(), colour);
    QRectF const dot(at - QPointF(3.0, 3.0), QSizeF(6.0, 6.0));
    painter.fillRect(grid.aligned(dot.adjusted(-1.0, -1.0, 1.0, 1.0)), Qt::white);
    painter.fillRect(grid.aligned(dot), colour);
}

void Canvas::paintRulers(QPainter& painter, PixelGrid const& grid) const
{
    WorkingShape const& shape = m_scene.document.working();
    QRectF const area = m_view.area();
    QPointF const zero = m_view.fromOutline({});
    double const zoom = m_view.zoom();
    RulerScale const scale = rulerScale(m_scene.settings.unit(), zoom, labelSpacing);
    std::optional<QPointF> const at =
        m_crosshair ? std::optional(m_view.fromOutline(*m_crosshair)) : m_pointer;
    painter.setFont(rulerFont(font()));
    QSizeF const extent = m_scene.document.hasCurrent() ? shape.box * zoom : QSizeF(0.0, 0.0);
    Ruler const level {Qt::Horizontal, QRectF(area.left(), 0.0, area.width(), area.top()), scale,
        zero.x(), zoom, extent.width(), at ? std::optional(at->x()) : std::nullopt};
    Ruler const upright {Qt::Vertical, QRectF(0.0, area.top(), area.left(), area.height()), scale,
        zero.y(), zoom, extent.height(), at ? std::optional(at->y()) : std::nullopt};
    level.paint(painter, grid, palette());
    upright.paint(painter, grid, palette());
    painter.fillRect(QRectF(0.0, 0.0, area.left(), area.top()), palette().color(QPalette::Window));
}
