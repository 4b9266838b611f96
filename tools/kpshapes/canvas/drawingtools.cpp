// SPDX-License-Identifier: MIT
#include "canvas/drawingtools.h"

#include "canvas/handlehit.h"
#include "colorutil.h"
#include "model/outlineedit.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double insertReach = 8.0; ///< from the pointer to the segment, in the widget
constexpr double leastPull = 3.0; ///< that tells a drag from a click, in the widget

/** What is not there yet, in colours that show on any ground. */
void drawPreview(QPainter& painter, QPainterPath const& path)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 160), 3.0));
    painter.drawPath(path);
    painter.setPen(QPen(ColorUtil::s_mouseDot, 1.25, Qt::DashLine));
    painter.drawPath(path);
    painter.restore();
}

void drawDot(QPainter& painter, QPointF const& at, QColor const& colour)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, 1.0));
    painter.setBrush(colour);
    painter.drawEllipse(at, 4.5, 4.5);
    painter.restore();
}

} // namespace

void DrawingTool::press(ToolPoint const& at)
{
    m_pointer = at;
    if (scene().document.hasCurrent())
        m_start = at;
}

void DrawingTool::move(ToolPoint const& at)
{
    m_pointer = at;
}

void DrawingTool::release(ToolPoint const& at)
{
    if (!m_start)
        return;
    m_pointer = at;
    ToolPoint const from = *m_start;
    m_start.reset();
    // The step takes the outline apart anew: all that is asked of it is asked before.
    int const added = add(scene().document.working(), from, at);
    if (added < 0)
        return;
    scene().document.commit(step());
    scene().selection.set({{added, HandleKind::Point}});
}

void DrawingTool::cancel()
{
    m_start.reset();
}

QCursor DrawingTool::cursor(ToolPoint const&) const
{
    return Qt::CrossCursor;
}

int DrawingTool::placeToAdd() const
{
    return segmentToAddAfter(scene().document.working(), scene().selection.handles());
}

std::optional<QPointF> DrawingTool::openEnd() const
{
    KpPathSegList const& list = *scene().document.working().list;
    int const last = placeToAdd();
    if (last < 0 || last >= list.segs.count() || list.segs.at(last)->toEllipse())
        return std::nullopt;
    return placeOf(list.segs.at(last)->pt);
}

int LineTool::add(WorkingShape& shape, ToolPoint const& start, ToolPoint const&)
{
    return openEnd() ? addLine(shape, placeToAdd(), start.outline)
                     : addMove(shape, placeToAdd(), start.outline);
}

void LineTool::paint(QPainter& painter, PixelGrid const&) const
{
    std::optional<QPointF> const from = openEnd();
    if (!from || !isFinite(*from))
        return;
    QPainterPath path(scene().view.fromOutline(*from));
    path.lineTo(scene().view.fromOutline(pointer().outline));
    drawPreview(painter, path);
}

/** Without a pull the control points lie on the straight way, at its thirds. */
CurveTool::Controls CurveTool::controlsTo(
    QPointF const& from, QPointF const& to, QPointF const& pulled) const
{
    QPointF const way = to - from;
    Controls controls {from + way / 3.0, to - way / 3.0};
    if (m_pull && coincide(m_pull->point, from))
        controls.first = m_pull->control;
    QPointF const pull = pulled - to;
    if (pull.manhattanLength() * scene().view.zoom() >= leastPull)
        controls.second = to - pull;
    return controls;
}

int CurveTool::add(WorkingShape& shape, ToolPoint const& start, ToolPoint const& end)
{
    std::optional<QPointF> const from = openEnd();
    int added = -1;
    if (from) {
        Controls const controls = controlsTo(*from, start.outline, end.outline);
        added = addCurve(shape, placeToAdd(), controls.first, controls.second, start.outline);
    } else {
        added = addMove(shape, placeToAdd(), start.outline);
    }
    bool const isPulled =
        (end.outline - start.outline).manhattanLength() * scene().view.zoom() >= leastPull;
    m_pull = isPulled ? std::optional(Pull {start.outline, end.outline}) : std::nullopt;
    return added;
}

void CurveTool::abandon()
{
    DrawingTool::abandon();
    m_pull.reset();
}

void CurveTool::paint(QPainter& painter, PixelGrid const&) const
{
    ViewTransform const& view = scene().view;
    QPointF const to = start() ? start()->outline : pointer().outline;
    std::optional<QPointF> const from = openEnd();
    if (from && isFinite(*from)) {
        Controls const controls = controlsTo(*from, to, pointer().outline);
        QPainterPath path(view.fromOutline(*from));
        path.cubicTo(view.fromOutline(controls.first), view.fromOutline(controls.second),
            view.fromOutline(to));
        drawPreview(painter, path);
    }
    if (start()) {
        QPainterPath pull(view.fromOutline(2.0 * to - pointer().outline));
        pull.lineTo(view.fromOutline(pointer().outline));
        drawPreview(painter, pull);
        drawDot(painter, view.fromOutline(to), ColorUtil::s_mouseDot);
    }
}

QSizeF EllipseTool::radii(ToolPoint const& start, ToolPoint const& end)
{
    double const a = std::abs(end.outline.x() - start.outline.x());
    double const b = std::abs(end.outline.y() - start.outline.y());
    bool const isCircle = end.modifiers.testFlag(Qt::ShiftModifier);
    return isCircle ? QSizeF(std::max(a, b), std::max(a, b)) : QSizeF(a, b);
}

int EllipseTool::add(WorkingShape& shape, ToolPoint const& start, ToolPoint const& end)
{
    QSizeF const size = radii(start, end);
    if (size.isEmpty())
        return -1;
    return addEllipse(shape, placeToAdd(), start.outline, size.width(), size.height());
}

void EllipseTool::paint(QPainter& painter, PixelGrid const&) const
{
    if (!start())
        return;
    QSizeF const size = radii(*start(), pointer()) * scene().view.zoom();
    QPointF const centre = scene().view.fromOutline(start()->outline);
    QPainterPath path;
    path.addEllipse(centre, size.width(), size.height());
    drawPreview(painter, path);
    drawDot(painter, centre, ColorUtil::s_mouseDot);
}

int MoveTool::add(WorkingShape& shape, ToolPoint const& start, ToolPoint const&)
{
    return addMove(shape, placeToAdd(), start.outline);
}

int InsertTool::add(WorkingShape& shape, ToolPoint const& start, ToolPoint const&)
{
    auto const place = nearestPlace(*shape.list, scene().view.toOutline(start.widget));
    if (!place || place->distance * scene().view.zoom() > insertReach)
        return -1;
    return insertPoint(shape, place->segment, place->t);
}

void InsertTool::paint(QPainter& painter, PixelGrid const&) const
{
    WorkingShape const& shape = scene().document.working();
    auto const place = nearestPlace(*shape.list, scene().view.toOutline(pointer().widget));
    if (place && place->distance * scene().view.zoom() <= insertReach)
        drawDot(painter, scene().view.fromOutline(place->position), ColorUtil::s_anchorDock);
}
