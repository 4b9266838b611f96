// SPDX-License-Identifier: MIT
#ifndef VIEWTOOLS_H
#define VIEWTOOLS_H

#include "canvas/canvastool.h"

#include <optional>

/** Moves the page. */
class HandTool : public CanvasTool
{
public:
    using CanvasTool::CanvasTool;

    void press(ToolPoint const& at) override { m_last = at.widget; }
    void move(ToolPoint const& at) override;
    void release(ToolPoint const& at) override;
    bool isActive() const override { return m_last.has_value(); }
    void cancel() override { m_last.reset(); }
    void abandon() override { m_last.reset(); }
    QCursor cursor(ToolPoint const& at) const override;
    bool usesCrosshair() const override { return false; }

private:
    std::optional<QPointF> m_last;
};

/** Makes the page larger around a place, or shows a rectangle as large as it fits. Alt: smaller. */
class ZoomTool : public CanvasTool
{
public:
    using CanvasTool::CanvasTool;

    void press(ToolPoint const& at) override;
    void move(ToolPoint const& at) override { m_end = at.widget; }
    void release(ToolPoint const& at) override;
    bool isActive() const override { return m_start.has_value(); }
    void cancel() override { m_start.reset(); }
    void abandon() override { m_start.reset(); }
    void paint(QPainter& painter, PixelGrid const& grid) const override;
    QCursor cursor(ToolPoint const& at) const override;
    bool drags() const override { return true; }

private:
    std::optional<QPointF> m_start; ///< in the widget
    QPointF m_end;
};

/** The factor of one step of zooming. */
constexpr double zoomStep = 1.25;

#endif // VIEWTOOLS_H
