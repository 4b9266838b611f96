// SPDX-License-Identifier: MIT
#include "canvas/canvasaccessible.h"

#include "canvas/canvas.h"
#include "canvas/handlehit.h"
#include "canvas/handlename.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace {

/** The handle that is at an index of the canvas now, whichever that is. */
class HandleAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    HandleAccessible(Canvas* canvas, int index)
        : m_canvas(canvas)
        , m_index(index)
    {
    }

    bool isValid() const override
    {
        return m_canvas && m_canvas->document().hasCurrent()
            && m_index < m_canvas->handleIds().size() + boxHandleCount;
    }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override
    {
        return m_canvas ? m_canvas->window()->windowHandle() : nullptr;
    }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_canvas);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(QAccessibleInterface const*) const override { return -1; }
    QString text(QAccessible::Text text) const override
    {
        if (!isValid() || text != QAccessible::Name)
            return {};
        if (isOfBox())
            return QStringLiteral("Box, %1").arg(nameOf(boxHandle()));
        return handleName(*m_canvas->document().working().list, handle());
    }
    void setText(QAccessible::Text, QString const&) override { }
    QRect rect() const override
    {
        if (!isValid())
            return {};
        QRect const within =
            isOfBox() ? m_canvas->boxHandleRect(boxHandle()) : m_canvas->handleRect(handle());
        return within.isEmpty() ? QRect() : within.translated(m_canvas->mapToGlobal(QPoint()));
    }
    QAccessible::Role role() const override { return QAccessible::Grip; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {setFocusAction()}; }
    void doAction(QString const& name) override
    {
        if (!isValid() || name != setFocusAction())
            return;
        m_canvas->setFocus(Qt::OtherFocusReason);
        if (isOfBox())
            return m_canvas->setBoxHandle(boxHandle());
        m_canvas->selection().set({handle()});
        m_canvas->scrollTo(handle());
    }
    QStringList keyBindingsForAction(QString const&) const override { return {}; }

    /** Its place among the children of the canvas. */
    int index() const { return m_index; }

private:
    bool isOfBox() const { return m_index >= m_canvas->handleIds().size(); }
    HandleId handle() const { return m_canvas->handleIds().at(m_index); }
    BoxHandle boxHandle() const
    {
        return static_cast<BoxHandle>(m_index - m_canvas->handleIds().size());
    }

    QPointer<Canvas> m_canvas;
    int const m_index;
};

QAccessible::State HandleAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.focusable = true;
    state.movable = true;
    state.selectable = !isOfBox();
    bool isCurrent = false;
    if (isOfBox()) {
        isCurrent = m_canvas->boxHandle() == boxHandle();
    } else {
        auto const current = m_canvas->selection().current();
        isCurrent = current && *current == handle();
        state.selected = m_canvas->selection().contains(handle());
    }
    state.focused = isCurrent && m_canvas->hasFocus();
    QRect const within =
        isOfBox() ? m_canvas->boxHandleRect(boxHandle()) : m_canvas->handleRect(handle());
    state.offscreen = !m_canvas->rect().intersects(within);
    return state;
}

/** The canvas with its handles, which are made when they are asked for. */
class CanvasAccessible : public QAccessibleWidget
{
public:
    explicit CanvasAccessible(Canvas* canvas)
        : QAccessibleWidget(canvas, QAccessible::Canvas)
    {
    }
    CanvasAccessible(CanvasAccessible const&) = delete;
    CanvasAccessible& operator=(CanvasAccessible const&) = delete;

    int childCount() const override
    {
        return canvas().document().hasCurrent() ? canvas().handleIds().size() + boxHandleCount : 0;
    }
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(QAccessibleInterface const* child) const override
    {
        auto const* const handle = dynamic_cast<HandleAccessible const*>(child);
        return handle ? handle->index() : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

protected:
    ~CanvasAccessible() override
    {
        for (QAccessible::Id const id : qAsConst(m_children))
            QAccessible::deleteAccessibleInterface(id);
    }

private:
    Canvas& canvas() const { return *static_cast<Canvas*>(widget()); }

    mutable QHash<int, QAccessible::Id> m_children; ///< by index
};

QAccessibleInterface* CanvasAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    auto const found = m_children.constFind(index);
    if (found != m_children.constEnd())
        return QAccessible::accessibleInterface(*found);
    auto* const handle = new HandleAccessible(&canvas(), index);
    m_children.insert(index, QAccessible::registerAccessibleInterface(handle));
    return handle;
}

QAccessibleInterface* CanvasAccessible::childAt(int x, int y) const
{
    QPointF const at = canvas().mapFromGlobal(QPoint(x, y));
    if (!canvas().document().hasCurrent() || !canvas().rect().contains(at.toPoint()))
        return nullptr;
    WorkingShape const& shape = canvas().document().working();
    QVector<HandleId> const hits = handlesAt(*shape.list, canvas().view(), at);
    if (!hits.isEmpty())
        return child(canvas().indexOf(hits.constFirst()));
    auto const ofBox = boxHandleAt(shape.box, canvas().view(), at);
    return ofBox ? child(canvas().handleIds().size() + static_cast<int>(*ofBox)) : nullptr;
}

QAccessibleInterface* CanvasAccessible::focusChild() const
{
    if (!canvas().hasFocus())
        return nullptr;
    if (auto const handle = canvas().boxHandle())
        return child(canvas().handleIds().size() + static_cast<int>(*handle));
    auto const current = canvas().selection().current();
    return current ? child(canvas().indexOf(*current)) : nullptr;
}

QAccessibleInterface* makeAccessible(QString const& className, QObject* object)
{
    auto* const canvas =
        className == QLatin1String("Canvas") ? qobject_cast<Canvas*>(object) : nullptr;
    return canvas ? new CanvasAccessible(canvas) : nullptr;
}

} // namespace

void installCanvasAccessibility()
{
    static bool const isInstalled = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    Q_UNUSED(isInstalled)
}
