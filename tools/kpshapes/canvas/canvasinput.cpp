// SPDX-License-Identifier: MIT
#include "canvas/canvas.h"
#include "canvas/handlehit.h"

#include <QGestureEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPinchGesture>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr double wheelNotch = 120.0; ///< of a wheel, as events count
constexpr double wheelScroll = 48.0; ///< pixels for a notch
constexpr double arrowScroll = 24.0; ///< pixels for an arrow key

/** The way of an arrow key; nothing for any other key. */
std::optional<QPointF> wayOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return QPointF(-1.0, 0.0);
    case Qt::Key_Right:
        return QPointF(1.0, 0.0);
    case Qt::Key_Up:
        return QPointF(0.0, -1.0);
    case Qt::Key_Down:
        return QPointF(0.0, 1.0);
    default:
        return std::nullopt;
    }
}

/** How far a key moves something, in units of the outline. */
double lengthOf(Qt::KeyboardModifiers modifiers)
{
    if (modifiers.testFlag(Qt::ControlModifier))
        return 0.1;
    return modifiers.testFlag(Qt::ShiftModifier) ? 10.0 : 1.0;
}

Qt::KeyboardModifier modifierOf(int key)
{
    switch (key) {
    case Qt::Key_Shift:
        return Qt::ShiftModifier;
    case Qt::Key_Control:
        return Qt::ControlModifier;
    case Qt::Key_Alt:
        return Qt::AltModifier;
    default:
        return Qt::NoModifier;
    }
}

} // namespace

Qt::Key keyOf(Tool tool)
{
    switch (tool) {
    case Tool::Select:
        return Qt::Key_V;
    case Tool::Line:
        return Qt::Key_L;
    case Tool::Curve:
        return Qt::Key_C;
    case Tool::Ellipse:
        return Qt::Key_E;
    case Tool::Move:
        return Qt::Key_M;
    case Tool::Insert:
        return Qt::Key_I;
    case Tool::Hand:
        return Qt::Key_H;
    case Tool::Zoom:
        return Qt::Key_Z;
    }
    return Qt::Key_unknown;
}

bool Canvas::event(QEvent* event)
{
    // No shortcut of the window makes a step of what is half done: it comes as a key instead.
    if (event->type() == QEvent::ShortcutOverride && m_pressed) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::Gesture) {
        auto* const gestures = static_cast<QGestureEvent*>(event);
        if (auto const* const found =
                static_cast<QPinchGesture*>(gestures->gesture(Qt::PinchGesture))) {
            pinch(*found);
            return true;
        }
    }
    if (event->type() == QEvent::NativeGesture) {
        auto const& gesture = *static_cast<QNativeGestureEvent*>(event);
        if (gesture.gestureType() == Qt::ZoomNativeGesture) {
            zoomBy(1.0 + gesture.value(), gesture.localPos());
            return true;
        }
    }
    return QWidget::event(event);
}

void Canvas::pinch(QPinchGesture const& gesture)
{
    // Native gestures have the place in the widget, gestures of touch that on the screen.
    zoomBy(gesture.scaleFactor(), mapFromGlobal(gesture.centerPoint().toPoint()));
}

ToolPoint Canvas::toolPoint(QPointF const& widget, Qt::KeyboardModifiers modifiers) const
{
    return toolPointAt(m_view, widget, modifiers);
}

void Canvas::mousePressEvent(QMouseEvent* event)
{
    if (m_pressed)
        return;
    ToolPoint const at = toolPoint(event->localPos(), event->modifiers());
    bool const isLeft = event->button() == Qt::LeftButton;
    bool const isHand = event->button() == Qt::MiddleButton || (isLeft && m_isSpaceDown);
    if (!isHand && !(isLeft && m_view.area().contains(event->localPos())))
        return QWidget::mousePressEvent(event);
    // A key has pressed already: the mouse goes on from there.
    if (!isHand && activeTool().isActive())
        activeTool().cancel();
    m_isSpaceUsed = m_isSpaceDown;
    m_crosshair.reset();
    m_pressed = isHand ? &m_hand : &activeTool();
    m_pressed->press(at);
    updateCursor();
    update();
}

void Canvas::mouseMoveEvent(QMouseEvent* event)
{
    ToolPoint const at = toolPoint(event->localPos(), event->modifiers());
    m_pointer = at.widget;
    // The button went up where nobody told: in a dialog, or in another window.
    if (m_pressed && !(event->buttons() & (Qt::LeftButton | Qt::MiddleButton)))
        endPress();
    if (m_pressed)
        m_pressed->move(at);
    else if (!activeTool().isActive())
        movePointer(at);
    updateCursor();
    if (m_pressed || m_tool != Tool::Select)
        update();
    else if (m_scene.settings.showsRulers())
        update(QRegion(rect()) - m_view.area().toRect());
    Q_EMIT pointerMoved(toolPoint(at.widget, {}).outline, m_view.area().contains(at.widget));
}

void Canvas::movePointer(ToolPoint const& at)
{
    if (m_crosshair)
        update();
    m_crosshair.reset();
    activeTool().move(at);
}

void Canvas::mouseReleaseEvent(QMouseEvent* event)
{
    bool const isOurs = event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton;
    if (!m_pressed || !isOurs)
        return QWidget::mouseReleaseEvent(event);
    // A step of undo that this makes must not abandon it.
    CanvasTool& pressed = *m_pressed;
    m_pressed = nullptr;
    pressed.release(toolPoint(event->localPos(), event->modifiers()));
    updateCursor();
    update();
}

void Canvas::leaveEvent(QEvent*)
{
    m_pointer.reset();
    update();
    Q_EMIT pointerMoved({}, false);
}

void Canvas::updateCursor()
{
    QPointF const at = m_pointer.value_or(QPointF(-1e4, -1e4));
    CanvasTool const& tool = m_pressed ? *m_pressed : m_isSpaceDown ? m_hand : activeTool();
    bool const isOutside = !m_pressed && !m_view.area().contains(at);
    setCursor(isOutside ? QCursor(Qt::ArrowCursor) : tool.cursor(toolPoint(at, {})));
}

void Canvas::wheelEvent(QWheelEvent* event)
{
    QPointF const angle = event->angleDelta();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        double const notches = (angle.y() != 0.0 ? angle.y() : angle.x()) / wheelNotch;
        zoomBy(std::pow(zoomStep, notches), event->position());
    } else {
        QPointF by = event->pixelDelta().isNull() ? angle / wheelNotch * wheelScroll
                                                  : QPointF(event->pixelDelta());
        if (event->modifiers().testFlag(Qt::ShiftModifier))
            by = {by.y(), by.x()};
        m_view.pan(by);
        m_scene.viewChanged();
    }
    event->accept();
}

void Canvas::keyPressEvent(QKeyEvent* event)
{
    modifierChanged(*event, true);
    if (!pressKey(*event))
        QWidget::keyPressEvent(event);
}

bool Canvas::pressKey(QKeyEvent const& event)
{
    Qt::KeyboardModifiers const modifiers = event.modifiers() & ~Qt::KeypadModifier;
    int const key = event.key();
    if (m_pressed) {
        pressKeyWhileDragging(event);
        return true;
    }
    switch (key) {
    case Qt::Key_Escape:
        pressEscape();
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        // With Ctrl, the way out of the canvas.
        return QWidget::focusNextPrevChild(key == Qt::Key_Tab);
    case Qt::Key_Space:
        if (!event.isAutoRepeat()) {
            m_isSpaceDown = true;
            m_isSpaceUsed = false;
            updateCursor();
        }
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!activeTool().usesCrosshair())
            return false;
        actAtCrosshair(modifiers);
        return true;
    default:
        return pressArrow(event) || pressViewKey(key, modifiers) || pressToolKey(key, modifiers);
    }
}

/** While the mouse drags, a key must not make a step of what is half done. */
void Canvas::pressKeyWhileDragging(QKeyEvent const& event)
{
    if (event.key() == Qt::Key_Escape || event.matches(QKeySequence::Undo))
        pressEscape();
    else if (event.key() != Qt::Key_A)
        pressViewKey(event.key(), event.modifiers() & ~Qt::KeypadModifier);
}

bool Canvas::pressViewKey(int key, Qt::KeyboardModifiers modifiers)
{
    bool const hasControl = modifiers.testFlag(Qt::ControlModifier);
    switch (key) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomIn();
        return true;
    case Qt::Key_Minus:
        zoomOut();
        return true;
    case Qt::Key_0:
        hasControl ? fitPage() : fitBox();
        return true;
    case Qt::Key_9:
        fitPage();
        return true;
    case Qt::Key_A:
        if (!hasControl || !m_scene.settings.showsHandles())
            return false;
        m_scene.selection.set(handleIds());
        return true;
    default:
        return false;
    }
}

bool Canvas::pressToolKey(int key, Qt::KeyboardModifiers modifiers)
{
    if (modifiers != Qt::NoModifier)
        return false;
    for (int i = 0; i < toolCount; ++i) {
        if (keyOf(static_cast<Tool>(i)) != key)
            continue;
        setTool(static_cast<Tool>(i));
        return true;
    }
    return false;
}

bool Canvas::pressArrow(QKeyEvent const& event)
{
    std::optional<QPointF> const way = wayOf(event.key());
    if (!way)
        return false;
    double const length = lengthOf(event.modifiers());
    if (activeTool().usesCrosshair()) {
        moveCrosshair(*way * length);
    } else if (m_tool != Tool::Select || !m_select.nudge(*way * length)) {
        m_view.pan(-*way * arrowScroll);
        m_scene.viewChanged();
    } else if (auto const current = m_scene.selection.current()) {
        scrollTo(*current);
    }
    return true;
}

/** Gives up what the button has begun. */
void Canvas::endPress()
{
    if (m_pressed)
        m_pressed->cancel();
    m_pressed = nullptr;
}

void Canvas::pressEscape()
{
    if (m_pressed) {
        endPress();
    } else if (activeTool().isActive()) {
        activeTool().cancel();
    } else {
        m_crosshair.reset();
        m_select.setBoxHandle(std::nullopt);
        m_scene.selection.clear();
        activeTool().abandon();
    }
    updateCursor();
    update();
}

void Canvas::keyReleaseEvent(QKeyEvent* event)
{
    modifierChanged(*event, false);
    if (event->key() != Qt::Key_Space || event->isAutoRepeat())
        return QWidget::keyReleaseEvent(event);
    bool const isForTool = m_isSpaceDown && !m_isSpaceUsed && activeTool().usesCrosshair();
    m_isSpaceDown = false;
    updateCursor();
    if (isForTool)
        actAtCrosshair(event->modifiers());
}

/** What is dragged follows Shift, Ctrl and Alt at once. */
void Canvas::modifierChanged(QKeyEvent const& event, bool isPressed)
{
    Qt::KeyboardModifier const modifier = modifierOf(event.key());
    if (modifier == Qt::NoModifier || !m_pressed || !m_pointer)
        return;
    Qt::KeyboardModifiers modifiers = event.modifiers();
    modifiers.setFlag(modifier, isPressed);
    m_pressed->move(toolPoint(*m_pointer, modifiers));
    update();
}

void Canvas::moveCrosshair(QPointF const& by)
{
    if (!m_scene.document.hasCurrent())
        return;
    QSizeF const box = m_scene.document.working().box;
    QPointF at(box.width() / 2.0, box.height() / 2.0);
    std::optional<HandleId> const current = m_scene.selection.current();
    auto const handle =
        current ? handleOf(*m_scene.document.working().list, *current) : std::nullopt;
    if (m_crosshair)
        at = *m_crosshair;
    else if (handle && std::isfinite(handle->position.x()) && std::isfinite(handle->position.y()))
        at = handle->position;
    m_crosshair = roundedTo(at + by, 1e-6);
    scrollTo(m_view.fromOutline(*m_crosshair));
    ToolPoint const point {m_view.fromOutline(*m_crosshair), *m_crosshair, {}};
    activeTool().move(point);
    update();
    Q_EMIT pointerMoved(point.outline, true);
}

void Canvas::actAtCrosshair(Qt::KeyboardModifiers modifiers)
{
    if (m_pressed)
        return;
    if (!m_crosshair)
        return moveCrosshair({});
    ToolPoint const at {m_view.fromOutline(*m_crosshair), *m_crosshair, modifiers};
    CanvasTool& tool = activeTool();
    bool const wasActive = tool.isActive();
    if (!wasActive)
        tool.press(at);
    if (wasActive || !tool.drags())
        tool.release(at);
    update();
}

bool Canvas::focusNextPrevChild(bool next)
{
    return m_pressed || stepHandle(next) || QWidget::focusNextPrevChild(next);
}

/** Goes to the next handle, of the outline and then of the box; false behind the last one. */
bool Canvas::stepHandle(bool next)
{
    if (!m_scene.document.hasCurrent())
        return false;
    int const first = m_scene.settings.showsHandles() ? 0 : handleIds().size();
    int const count = handleIds().size() + boxHandleCount;
    std::optional<HandleId> const current = m_scene.selection.current();
    int index = next ? first - 1 : count;
    if (boxHandle())
        index = handleIds().size() + static_cast<int>(*boxHandle());
    else if (current)
        index = indexOf(*current);
    index += next ? 1 : -1;
    if (index < first || index >= count) {
        m_select.setBoxHandle(std::nullopt);
        m_scene.selection.clear();
        return false;
    }
    if (index >= handleIds().size()) {
        setBoxHandle(static_cast<BoxHandle>(index - handleIds().size()));
    } else {
        m_scene.selection.set({handleIds().at(index)});
        scrollTo(handleIds().at(index));
    }
    return true;
}
