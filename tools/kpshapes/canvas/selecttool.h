// SPDX-License-Identifier: MIT
#ifndef SELECTTOOL_H
#define SELECTTOOL_H

#include "canvas/boxdrag.h"
#include "canvas/canvastool.h"
#include "model/handledrag.h"

#include <QVector>

/** Selects handles and moves them; resizes the box by its handles. */
class SelectTool : public CanvasTool
{
public:
    /** As CanvasTool. */
    explicit SelectTool(CanvasScene& scene)
        : CanvasTool(scene)
        , m_boxDrag(scene)
    {
    }

    /** On a handle: selects it, unless it is. Elsewhere: begins a rubber band. */
    void press(ToolPoint const& at) override;
    /** Moves what is selected: Shift straight, Ctrl a tenth of the way, Alt breaks smooth points. */
    void move(ToolPoint const& at) override;
    /** Without a move: another click at the place selects the handle below. */
    void release(ToolPoint const& at) override;
    bool isActive() const override { return m_state != State::Idle; }
    void cancel() override;
    void abandon() override;
    void paint(QPainter& painter, PixelGrid const& grid) const override;
    QCursor cursor(ToolPoint const& at) const override;
    bool usesCrosshair() const override { return false; }

    /** The handle of the box that keys act on. */
    std::optional<BoxHandle> boxHandle() const { return m_boxHandle; }
    /** Makes a handle of the box the one that keys act on, or none. */
    void setBoxHandle(std::optional<BoxHandle> handle) { m_boxHandle = handle; }
    /** Moves what is selected, or the handle of the box, as a step; false if there is neither. */
    bool nudge(QPointF const& by);

private:
    enum class State { Idle, Pressed, Moving, Band, Box };

    void pressHandles(QVector<HandleId> const& hits);
    void click();
    void drag(ToolPoint const& at);
    QPointF wayTo(ToolPoint const& at) const;
    void selectWithin(ToolPoint const& at);

    State m_state = State::Idle;
    ToolPoint m_pressed {}; ///< where the button went down
    QPointF m_grip; ///< the same place, in the outline's units, not rounded
    QPointF m_bandEnd; ///< in the widget
    QVector<HandleId> m_hits; ///< the handles at that place
    QVector<HandleId> m_before; ///< what was selected then
    bool m_isClickDone = false; ///< the press has selected already
    std::optional<HandleDrag> m_drag;
    BoxDrag m_boxDrag;
    std::optional<BoxHandle> m_boxHandle;
};

#endif // SELECTTOOL_H
