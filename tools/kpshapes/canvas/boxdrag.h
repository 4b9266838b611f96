// SPDX-License-Identifier: MIT
#ifndef BOXDRAG_H
#define BOXDRAG_H

#include "canvas/boxhandle.h"
#include "canvas/canvastool.h"
#include "model/handledrag.h"

#include <optional>

/** A handle of the shape's box on its way: every coordinate follows its rule meanwhile. */
class BoxDrag
{
public:
    /** @param scene not owned, must outlive this */
    explicit BoxDrag(CanvasScene& scene)
        : m_scene(scene)
    {
    }

    /** Takes hold of a handle. */
    void begin(BoxHandle handle, ToolPoint const& at);
    /** The pointer is there now. Shift keeps the proportion, Ctrl takes whole units of the ruler. */
    void move(ToolPoint const& at);
    /** Makes the step. */
    void finish();
    /** The box as it was. */
    void cancel();
    /** Ends; outline and box stay as they are. */
    void abandon() { m_resize.reset(); }
    /** From begin() to the end. */
    bool isActive() const { return m_resize.has_value(); }
    /** The handle that is held. */
    std::optional<BoxHandle> handle() const;

    /** Moves a handle at once and makes a step of it. @param by in the outline's units */
    void nudge(BoxHandle handle, QPointF const& by);

private:
    void apply(QRectF const& box);

    CanvasScene& m_scene;
    std::optional<BoxResize> m_resize;
    std::optional<HandleDrag> m_start; ///< the coordinates at the start
    QPointF m_grip; ///< where it was taken hold of, on the page
};

/** The shape's box, on the page. */
QRectF boxOnPage(CanvasScene const& scene);

#endif // BOXDRAG_H
