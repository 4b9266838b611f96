// SPDX-License-Identifier: MIT
#ifndef CANVASTOOL_H
#define CANVASTOOL_H

#include "canvas/pixelgrid.h"
#include "canvas/viewtransform.h"
#include "model/selection.h"
#include "model/shapedocument.h"
#include "model/viewsettings.h"

#include <QCursor>

#include <functional>

class QPainter;

/** What the mouse does on the canvas. */
enum class Tool {
    Select, ///< selects and moves handles, and resizes the box
    Line, ///< adds lines
    Curve, ///< adds curves
    Ellipse, ///< adds ellipses
    Move, ///< begins subpaths
    Insert, ///< divides segments
    Hand, ///< moves the page
    Zoom ///< makes it larger or smaller
};

/** How many tools there are: their numbers count from 0. */
constexpr int toolCount = 8;

/** What the tools of a canvas work on. */
struct CanvasScene
{
    ShapeDocument& document; ///< not owned
    Selection& selection; ///< of its current outline; not owned
    ViewSettings& settings; ///< not owned
    ViewTransform& view; ///< of the canvas
    std::function<void()> viewChanged; ///< to be called when a tool has changed the view
};

/** Where the pointer is. */
struct ToolPoint
{
    QPointF widget; ///< in the widget
    QPointF outline; ///< in the outline's units, rounded to what a pixel tells
    Qt::KeyboardModifiers modifiers; ///< the keys that are held
};

/** What a press, moves and a release of the pointer, or of a key in its place, do. */
class CanvasTool
{
public:
    /** @param scene not owned, must outlive this */
    explicit CanvasTool(CanvasScene& scene)
        : m_scene(scene)
    {
    }
    virtual ~CanvasTool() = default;
    CanvasTool(CanvasTool const&) = delete;
    CanvasTool& operator=(CanvasTool const&) = delete;

    /** The button goes down. */
    virtual void press(ToolPoint const& at) = 0;
    /** The pointer moves, with the button down if isActive(). */
    virtual void move(ToolPoint const& at) = 0;
    /** The button goes up: what was begun becomes one step of undo. */
    virtual void release(ToolPoint const& at) = 0;
    /** Between a press and its release. */
    virtual bool isActive() const = 0;
    /** Ends what was begun as if it had not been. */
    virtual void cancel() = 0;
    /** Ends what was begun because the outline is another now; that one stays as it is. */
    virtual void abandon() = 0;
    /** Draws what only this tool shows, above all else. */
    virtual void paint(QPainter& painter, PixelGrid const& grid) const;
    /** What the pointer looks like. */
    virtual QCursor cursor(ToolPoint const& at) const = 0;
    /** Whether the arrow keys move a crosshair, at which a key takes the place of the button. */
    virtual bool usesCrosshair() const { return true; }
    /** Whether something is done from one place to another: a key presses, another one releases. */
    virtual bool drags() const { return false; }

protected:
    /** What it works on. */
    CanvasScene& scene() const { return m_scene; }

private:
    CanvasScene& m_scene;
};

/** Where the pointer is, given its place in the widget. */
ToolPoint toolPointAt(
    ViewTransform const& view, QPointF const& widget, Qt::KeyboardModifiers modifiers);

/** "Move point", "Move 3 points": a verb and how many points it is done to. */
QString stepText(QString const& verb, int points);

#endif // CANVASTOOL_H
