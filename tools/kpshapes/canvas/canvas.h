// SPDX-License-Identifier: MIT
#ifndef CANVAS_H
#define CANVAS_H

#include "canvas/canvastool.h"
#include "canvas/handlepainter.h"
#include "canvas/selecttool.h"
#include "canvas/shapepainting.h"
#include "canvas/viewtools.h"

#include <QWidget>

#include <array>
#include <memory>
#include <optional>

class QPinchGesture;

/**
 * The page on which the current outline of a document is edited: with rulers, its box and its
 * handles.
 *
 * By keyboard: Tab goes from handle to handle and then to those of the box, arrows move what is
 * selected by one unit of the outline (Shift: ten, Ctrl: a tenth), and scroll if nothing is; in the
 * drawing tools they move a crosshair at which Return and Space act. Plus, minus, 0 and 9 zoom,
 * V, L, C, E, M, I, H and Z choose tools, Ctrl+Tab leaves. While the mouse drags, Escape and Ctrl+Z
 * give it up, and no other shortcut works: a step of undo is never half of one.
 *
 * Nothing is done without a current outline, nor by any coordinates that are not finite.
 */
class Canvas : public QWidget
{
    Q_OBJECT

public:
    /** What is edited; none is owned, all must outlive this. */
    Canvas(ShapeDocument& document, Selection& selection, ViewSettings& settings,
        QWidget* parent = nullptr);
    ~Canvas() override;

    /** What the mouse does. */
    Tool tool() const { return m_tool; }
    /** Takes another tool; what was begun with the one before is dropped. */
    void setTool(Tool tool);

    /** Logical pixels for one pixel of the page: 0.01 to 100. */
    double zoom() const { return m_view.zoom(); }
    /** What is in the middle stays there. @param zoom brought into the range; NaN is ignored */
    void setZoom(double zoom);
    /** Shows all a step larger. */
    void zoomIn();
    /** Shows all a step smaller. */
    void zoomOut();
    /** Shows the shape's box as large as it fits, also when the widget changes its size. */
    void fitBox();
    /** Shows the page as large as it fits, also when the widget changes its size. */
    void fitPage();
    /** Brings a handle into view; one that the outline has not: nothing. */
    void scrollTo(HandleId handle);

    /** Whether the colours of the handles are explained. */
    bool showsLegend() const { return m_showsLegend; }
    /** Explains them, or not. */
    void setShowsLegend(bool isShown);

    /** Where the page and the box are. */
    ViewTransform const& view() const { return m_view; }
    /** All handles, in the order of the outline. */
    QVector<HandleId> const& handleIds() const;
    /** The place of a handle in handleIds(); -1 if there is no such handle. */
    int indexOf(HandleId handle) const;
    /** Where a handle is, in the widget; empty if the outline has none such. */
    QRect handleRect(HandleId handle) const;
    /** Where a handle of the box is, in the widget. */
    QRect boxHandleRect(BoxHandle handle) const;
    /** The handle of the box that has the focus: the arrow keys move it. */
    std::optional<BoxHandle> boxHandle() const { return m_select.boxHandle(); }
    /** Gives the focus to a handle of the box, and selects none of the outline. */
    void setBoxHandle(BoxHandle handle);
    /** The document. */
    ShapeDocument const& document() const { return m_scene.document; }
    /** What is selected in it. */
    Selection& selection() const { return m_scene.selection; }

    QSize sizeHint() const override { return {800, 600}; }
    QSize minimumSizeHint() const override { return {120, 90}; }

Q_SIGNALS:
    /** The pointer, or the crosshair, is there; `inside`: over the page and not the rulers. */
    void pointerMoved(QPointF outlineUnits, bool inside);
    /** Another tool is used. */
    void toolChanged(Tool tool);
    /** Another zoom(). */
    void zoomChanged(double zoom);

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    enum class Fit { None, Box, Page };

    void followDocument();
    void layOut();
    void takeOutline();
    void centreBox();
    void refit();
    void takeView();
    void outlineChanged();
    void selectionChanged();
    void tellFocus();
    QRectF pageRect() const;
    void scrollTo(QPointF const& widget);

    CanvasTool& activeTool() const { return *m_tools[static_cast<std::size_t>(m_tool)]; }
    ToolPoint toolPoint(QPointF const& widget, Qt::KeyboardModifiers modifiers) const;
    void movePointer(ToolPoint const& at);
    void updateCursor();
    void zoomBy(double factor, QPointF const& fixed);
    void pinch(QPinchGesture const& gesture);

    bool pressKey(QKeyEvent const& event);
    void pressKeyWhileDragging(QKeyEvent const& event);
    bool pressViewKey(int key, Qt::KeyboardModifiers modifiers);
    bool pressToolKey(int key, Qt::KeyboardModifiers modifiers);
    bool pressArrow(QKeyEvent const& event);
    void endPress();
    void pressEscape();
    void modifierChanged(QKeyEvent const& event, bool isPressed);
    void moveCrosshair(QPointF const& by);
    void actAtCrosshair(Qt::KeyboardModifiers modifiers);
    bool stepHandle(bool next);

    void paintPage(QPainter& painter, PixelGrid const& grid);
    void paintShape(QPainter& painter, PixelGrid const& grid);
    QRectF legendRect() const;
    void paintLegend(QPainter& painter) const;
    void paintCrosshair(QPainter& painter, PixelGrid const& grid) const;
    void paintRulers(QPainter& painter, PixelGrid const& grid) const;

    ViewTransform m_view;
    CanvasScene m_scene;
    SelectTool m_select;
    HandTool m_hand; ///< of the middle button and the space bar, beside the tool
    std::array<std::unique_ptr<CanvasTool>, toolCount> m_owned;
    std::array<CanvasTool*, toolCount> m_tools {};
    CanvasTool* m_pressed = nullptr; ///< what the button that is down acts on
    Tool m_tool = Tool::Select;

    ShapeDrawing m_drawing;
    HandlePainter m_handlePainter;
    mutable QVector<HandleId> m_handleIds;
    mutable bool m_areIdsValid = false;

    Fit m_fit = Fit::Box;
    QSizeF m_pageSize;
    int m_outline = -1; ///< the current outline that the view is for
    KpPathSegList const* m_list = nullptr; ///< its list, never looked into
    double m_toldZoom = 1.0;
    bool m_showsLegend = true;
    std::optional<QPointF> m_pointer; ///< of the mouse, in the widget
    std::optional<QPointF> m_crosshair; ///< of the keyboard, in the outline's units
    bool m_isSpaceDown = false;
    bool m_isSpaceUsed = false; ///< for dragging
};

/** The key that chooses a tool while the canvas has the focus: Qt::Key_V for Tool::Select. */
Qt::Key keyOf(Tool tool);

#endif // CANVAS_H
