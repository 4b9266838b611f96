// SPDX-License-Identifier: MIT
#ifndef DRAWINGTOOLS_H
#define DRAWINGTOOLS_H

#include "canvas/canvastool.h"

#include <optional>

/** A tool that adds something to the outline where the button goes down, or from there on. */
class DrawingTool : public CanvasTool
{
public:
    using CanvasTool::CanvasTool;

    void press(ToolPoint const& at) override;
    void move(ToolPoint const& at) override;
    void release(ToolPoint const& at) override;
    bool isActive() const override { return m_start.has_value(); }
    void cancel() override;
    void abandon() override { m_start.reset(); }
    QCursor cursor(ToolPoint const& at) const override;

protected:
    /** Adds what goes from `start` to `end`; its index in the outline, or -1. */
    virtual int add(WorkingShape& shape, ToolPoint const& start, ToolPoint const& end) = 0;
    /** The text of the step of undo. */
    virtual QString step() const = 0;
    /** Where the button went down, while it is down. */
    std::optional<ToolPoint> const& start() const { return m_start; }
    /** Where the pointer was last. */
    ToolPoint const& pointer() const { return m_pointer; }
    /** The segment behind which something is added. */
    int placeToAdd() const;
    /** Where a line or a curve that is added starts; nothing if a move has to come first. */
    std::optional<QPointF> openEnd() const;

private:
    std::optional<ToolPoint> m_start;
    ToolPoint m_pointer {};
};

/** Adds a line to where the button goes down; the first point of an outline is a move. */
class LineTool : public DrawingTool
{
public:
    using DrawingTool::DrawingTool;
    /** Shows the line that a click would add. */
    void paint(QPainter& painter, PixelGrid const& grid) const override;

protected:
    int add(WorkingShape& shape, ToolPoint const& start, ToolPoint const& end) override;
    QString step() const override { return QStringLiteral("Add line"); }
};

/**
 * Adds a curve to where the button goes down; dragging from there pulls its control point, whose
 * mirror image is the first one of the curve that is added next.
 */
class CurveTool : public DrawingTool
{
public:
    using DrawingTool::DrawingTool;
    /** Shows the curve that is being added. */
    void paint(QPainter& painter, PixelGrid const& grid) const override;
    bool drags() const override { return true; }
    void abandon() override;

protected:
    int add(WorkingShape& shape, ToolPoint const& start, ToolPoint const& end) override;
    QString step() const override { return QStringLiteral("Add curve"); }

private:
    struct Controls
    {
        QPointF first;
        QPointF second;
    };
    Controls controlsTo(QPointF const& from, QPointF const& to, QPointF const& pulled) const;

    /** What was pulled last: the control point to go on with from a point. */
    struct Pull
    {
        QPointF point;
        QPointF control;
    };
    std::optional<Pull> m_pull;
};

/** Adds an ellipse: from its centre to a corner of its box. Shift: a circle. */
class EllipseTool : public DrawingTool
{
public:
    using DrawingTool::DrawingTool;
    /** Shows the ellipse that is being added. */
    void paint(QPainter& painter, PixelGrid const& grid) const override;
    bool drags() const override { return true; }

protected:
    int add(WorkingShape& shape, ToolPoint const& start, ToolPoint const& end) override;
    QString step() const override { return QStringLiteral("Add ellipse"); }

private:
    static QSizeF radii(ToolPoint const& start, ToolPoint const& end);
};

/** Begins a subpath where the button goes down. */
class MoveTool : public DrawingTool
{
public:
    using DrawingTool::DrawingTool;

protected:
    int add(WorkingShape& shape, ToolPoint const& start, ToolPoint const& end) override;
    QString step() const override { return QStringLiteral("Begin subpath"); }
};

/** Puts a point on the line or curve that the pointer is at. */
class InsertTool : public DrawingTool
{
public:
    using DrawingTool::DrawingTool;
    /** Shows where the point would be. */
    void paint(QPainter& painter, PixelGrid const& grid) const override;

protected:
    int add(WorkingShape& shape, ToolPoint const& start, ToolPoint const& end) override;
    QString step() const override { return QStringLiteral("Insert point"); }
};

#endif // DRAWINGTOOLS_H
