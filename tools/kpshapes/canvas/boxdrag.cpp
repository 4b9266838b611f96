// SPDX-License-Identifier: MIT
#include "canvas/boxdrag.h"

#include "canvas/rulerscale.h"
#include "model/operations.h"
#include "unitutil.h"

#include <algorithm>

QRectF boxOnPage(CanvasScene const& scene)
{
    return {scene.view.boxOrigin(), scene.document.working().box};
}

void BoxDrag::begin(BoxHandle handle, ToolPoint const& at)
{
    m_resize = BoxResize {boxOnPage(m_scene), handle, false, 0.0};
    m_start.emplace(m_scene.document.working(), QVector<HandleId>());
    m_grip = m_scene.view.toPage(at.widget);
}

void BoxDrag::move(ToolPoint const& at)
{
    ViewTransform const& view = m_scene.view;
    double const unit = UnitUtil::unitToPixel(1.0, m_scene.settings.unit());
    RulerScale const scale = rulerScale(m_scene.settings.unit(), view.zoom(), 60.0);
    m_resize->keepsProportion = at.modifiers.testFlag(Qt::ShiftModifier);
    // A kilometre, or a foot, would leave no choice.
    m_resize->step = at.modifiers.testFlag(Qt::ControlModifier)
        ? std::min(unit, scale.minorPixels())
        : view.precision();
    QPointF const by = view.toPage(at.widget) - m_grip;
    apply(by.isNull() ? m_resize->start : m_resize->movedBy(by));
    m_scene.document.touch();
}

void BoxDrag::apply(QRectF const& box)
{
    WorkingShape& shape = m_scene.document.working();
    // By no way at all: each size is computed from how everything was.
    m_start->moveBy(shape, {});
    shape.box = m_resize->start.size();
    if (box != m_resize->start)
        resizeBox(shape, box.size());
    m_scene.view.setBoxOrigin(box.topLeft());
}

void BoxDrag::finish()
{
    m_resize.reset();
    m_scene.document.commit(QStringLiteral("Resize box"));
}

void BoxDrag::cancel()
{
    m_scene.view.setBoxOrigin(m_resize->start.topLeft());
    m_resize.reset();
    m_scene.document.revert();
}

std::optional<BoxHandle> BoxDrag::handle() const
{
    return m_resize ? std::optional(m_resize->handle) : std::nullopt;
}

void BoxDrag::nudge(BoxHandle handle, QPointF const& by)
{
    begin(handle, {});
    apply(m_resize->movedBy(by));
    finish();
}
