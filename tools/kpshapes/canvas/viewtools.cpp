// SPDX-License-Identifier: MIT
#include "canvas/viewtools.h"

#include "colorutil.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr double leastRectangle = 5.0; ///< that tells a rectangle from a click, in the widget

} // namespace

void HandTool::move(ToolPoint const& at)
{
    if (!m_last)
        return;
    scene().view.pan(at.widget - *m_last);
    m_last = at.widget;
    scene().viewChanged();
}

void HandTool::release(ToolPoint const& at)
{
    move(at);
    m_last.reset();
}

QCursor HandTool::cursor(ToolPoint const&) const
{
    return isActive() ? Qt::ClosedHandCursor : Qt::OpenHandCursor;
}

void ZoomTool::press(ToolPoint const& at)
{
    m_start = at.widget;
    m_end = at.widget;
}

void ZoomTool::release(ToolPoint const& at)
{
    if (!m_start)
        return;
    QRectF const rect = QRectF(*m_start, at.widget).normalized();
    m_start.reset();
    ViewTransform& view = scene().view;
    if (at.modifiers.testFlag(Qt::AltModifier)) {
        view.setZoom(view.zoom() / zoomStep, at.widget);
    } else if (std::min(rect.width(), rect.height()) < leastRectangle) {
        view.setZoom(view.zoom() * zoomStep, at.widget);
    } else {
        view.fit(QRectF(view.toPage(rect.topLeft()), view.toPage(rect.bottomRight())));
    }
    scene().viewChanged();
}

void ZoomTool::paint(QPainter& painter, PixelGrid const& grid) const
{
    if (m_start)
        grid.drawFrame(painter, QRectF(*m_start, m_end).normalized(), ColorUtil::s_mouseDot);
}

QCursor ZoomTool::cursor(ToolPoint const&) const
{
    return Qt::CrossCursor;
}
