// SPDX-License-Identifier: MIT
#include "canvas/selecttool.h"

#include "canvas/handlehit.h"
#include "colorutil.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double dragThreshold = 3.0; ///< that tells a drag from a click, in the widget
constexpr double fine = 0.1; ///< of the way, with Ctrl

bool addsToSelection(ToolPoint const& at)
{
    return at.modifiers & (Qt::ShiftModifier | Qt::ControlModifier);
}

Qt::CursorShape cursorOf(BoxHandle handle)
{
    QPoint const direction = directionOf(handle);
    if (direction.y() == 0)
        return Qt::SizeHorCursor;
    if (direction.x() == 0)
        return Qt::SizeVerCursor;
    return direction.x() == direction.y() ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

QVector<HandleId> united(QVector<HandleId> const& one, QVector<HandleId> const& other)
{
    return one + other;
}

} // namespace

void SelectTool::press(ToolPoint const& at)
{
    m_pressed = at;
    m_grip = scene().view.toOutline(at.widget);
    m_bandEnd = at.widget;
    m_before = scene().selection.handles();
    m_boxHandle.reset();
    m_hits.clear();
    if (!scene().document.hasCurrent())
        return;
    WorkingShape const& shape = scene().document.working();
    if (scene().settings.showsHandles())
        m_hits = handlesAt(*shape.list, scene().view, at.widget);
    if (!m_hits.isEmpty())
        return pressHandles(m_hits);
    if (auto const handle = boxHandleAt(shape.box, scene().view, at.widget)) {
        m_boxDrag.begin(*handle, at);
        m_state = State::Box;
    } else if (scene().settings.showsHandles()) {
        m_state = State::Band;
    }
}

void SelectTool::pressHandles(QVector<HandleId> const& hits)
{
    m_state = State::Pressed;
    Selection& selection = scene().selection;
    bool const isSelected = std::any_of(
        hits.cbegin(), hits.cend(), [&](HandleId id) { return selection.contains(id); });
    m_isClickDone = !isSelected;
    if (isSelected)
        return;
    if (addsToSelection(m_pressed))
        selection.toggle(hits.constFirst());
    else
        selection.set({hits.constFirst()});
}

void SelectTool::move(ToolPoint const& at)
{
    double const way = std::max(std::abs(at.widget.x() - m_pressed.widget.x()),
        std::abs(at.widget.y() - m_pressed.widget.y()));
    if (m_state == State::Pressed && way >= dragThreshold) {
        m_drag.emplace(scene().document.working(), scene().selection.handles());
        m_state = State::Moving;
    }
    if (m_state == State::Moving)
        drag(at);
    else if (m_state == State::Box)
        m_boxDrag.move(at);
    else if (m_state == State::Band)
        selectWithin(at);
}

QPointF SelectTool::wayTo(ToolPoint const& at) const
{
    QPointF by = scene().view.toOutline(at.widget) - m_grip;
    double precision = scene().view.precision();
    if (at.modifiers.testFlag(Qt::ControlModifier)) {
        by *= fine;
        precision *= fine;
    }
    if (at.modifiers.testFlag(Qt::ShiftModifier))
        by = straightened(by);
    return roundedTo(by, precision);
}

void SelectTool::drag(ToolPoint const& at)
{
    bool const breaks = at.modifiers.testFlag(Qt::AltModifier);
    m_drag->moveBy(
        scene().document.working(), wayTo(at), breaks ? NodeDrag::Break : NodeDrag::Keep);
    scene().document.touch();
}

void SelectTool::selectWithin(ToolPoint const& at)
{
    m_bandEnd = at.widget;
    QVector<HandleId> const within = handlesWithin(
        *scene().document.working().list, scene().view, QRectF(m_pressed.widget, at.widget));
    scene().selection.set(addsToSelection(m_pressed) ? united(m_before, within) : within);
}

void SelectTool::release(ToolPoint const& at)
{
    State const state = m_state;
    m_state = State::Idle;
    if (state == State::Moving) {
        int const count = scene().selection.handles().size();
        scene().document.commit(stepText(QStringLiteral("Move"), count));
    } else if (state == State::Box) {
        m_boxDrag.finish();
    } else if (state == State::Band) {
        selectWithin(at);
    } else if (state == State::Pressed && !m_isClickDone) {
        click();
    }
}

/** A click at a place where a handle was selected already. */
void SelectTool::click()
{
    Selection& selection = scene().selection;
    auto const selected = std::find_if(
        m_hits.cbegin(), m_hits.cend(), [&](HandleId id) { return selection.contains(id); });
    // Something else has changed the selection while the button was down.
    if (selected == m_hits.cend())
        return;
    auto const next = std::next(selected) == m_hits.cend() ? m_hits.cbegin() : std::next(selected);
    if (m_pressed.modifiers.testFlag(Qt::AltModifier))
        selection.set({*next});
    else if (addsToSelection(m_pressed))
        selection.toggle(*selected);
    else
        selection.set({m_before.size() > 1 ? *selected : *next});
}

void SelectTool::cancel()
{
    State const state = m_state;
    m_state = State::Idle;
    if (state == State::Box)
        m_boxDrag.cancel();
    else if (state == State::Moving)
        scene().document.revert();
    else if (state == State::Band)
        scene().selection.set(m_before);
}

void SelectTool::abandon()
{
    m_state = State::Idle;
    m_boxDrag.abandon();
}

void SelectTool::paint(QPainter& painter, PixelGrid const& grid) const
{
    if (m_state != State::Band)
        return;
    QRectF const band = QRectF(m_pressed.widget, m_bandEnd).normalized();
    QColor const line = ColorUtil::s_mouseDot;
    QColor fill = line;
    fill.setAlpha(40);
    painter.fillRect(grid.aligned(band), fill);
    grid.drawFrame(painter, band, line);
}

QCursor SelectTool::cursor(ToolPoint const& at) const
{
    if (auto const held = m_boxDrag.handle())
        return cursorOf(*held);
    if (isActive() || !scene().document.hasCurrent())
        return Qt::ArrowCursor;
    WorkingShape const& shape = scene().document.working();
    if (scene().settings.showsHandles()
        && !handlesAt(*shape.list, scene().view, at.widget).isEmpty())
        return Qt::SizeAllCursor;
    auto const handle = boxHandleAt(shape.box, scene().view, at.widget);
    return handle ? cursorOf(*handle) : Qt::ArrowCursor;
}

bool SelectTool::nudge(QPointF const& by)
{
    if (m_boxHandle) {
        m_boxDrag.nudge(*m_boxHandle, by);
        return true;
    }
    QVector<HandleId> const& handles = scene().selection.handles();
    if (handles.isEmpty())
        return false;
    moveHandles(scene().document.working(), handles, by);
    scene().document.commit(stepText(QStringLiteral("Nudge"), handles.size()));
    return true;
}
