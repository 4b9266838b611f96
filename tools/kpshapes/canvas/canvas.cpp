// SPDX-License-Identifier: MIT
#include "canvas/canvas.h"

#include "canvas/drawingtools.h"
#include "canvas/handlehit.h"
#include "canvas/ruler.h"

#include <QAccessible>
#include <QEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr double scrollMargin = 24.0; ///< from what is brought into view to the edge
constexpr double viewMargin = 20.0; ///< around the box when it is fitted, in the widget

} // namespace

Canvas::Canvas(
    ShapeDocument& document, Selection& selection, ViewSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_scene {document, selection, settings, m_view,
          [this] {
              m_fit = Fit::None;
              takeView();
          }}
    , m_select(m_scene)
    , m_hand(m_scene)
{
    m_owned = {nullptr, std::make_unique<LineTool>(m_scene), std::make_unique<CurveTool>(m_scene),
        std::make_unique<EllipseTool>(m_scene), std::make_unique<MoveTool>(m_scene),
        std::make_unique<InsertTool>(m_scene), nullptr, std::make_unique<ZoomTool>(m_scene)};
    std::transform(m_owned.cbegin(), m_owned.cend(), m_tools.begin(),
        [](std::unique_ptr<CanvasTool> const& tool) { return tool.get(); });
    m_tools[static_cast<std::size_t>(Tool::Select)] = &m_select;
    m_tools[static_cast<std::size_t>(Tool::Hand)] = &m_hand;

    setAccessibleName(QStringLiteral("Canvas"));
    setAccessibleDescription(
        QStringLiteral("The page with the shape. Tab goes from handle to handle, arrows move it."));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    grabGesture(Qt::PinchGesture);
    followDocument();
    layOut();
    takeOutline();
}

Canvas::~Canvas() = default;

void Canvas::followDocument()
{
    ShapeDocument& document = m_scene.document;
    connect(&document, &ShapeDocument::workingChanged, this, &Canvas::outlineChanged);
    connect(&document, &ShapeDocument::currentChanged, this, &Canvas::takeOutline);
    connect(&m_scene.selection, &Selection::changed, this, &Canvas::selectionChanged);
    connect(&m_scene.settings, &ViewSettings::changed, this, &Canvas::layOut);
}

void Canvas::setTool(Tool tool)
{
    if (tool == m_tool)
        return;
    endPress();
    if (activeTool().isActive())
        activeTool().cancel();
    m_tool = tool;
    m_crosshair.reset();
    updateCursor();
    update();
    Q_EMIT toolChanged(tool);
}

void Canvas::setZoom(double zoom)
{
    m_view.setZoom(zoom, m_view.area().center());
    m_scene.viewChanged();
}

void Canvas::zoomIn()
{
    zoomBy(zoomStep, m_view.area().center());
}

void Canvas::zoomOut()
{
    zoomBy(1.0 / zoomStep, m_view.area().center());
}

void Canvas::zoomBy(double factor, QPointF const& fixed)
{
    m_view.setZoom(m_view.zoom() * factor, fixed);
    m_scene.viewChanged();
}

void Canvas::fitBox()
{
    m_fit = Fit::Box;
    refit();
}

void Canvas::fitPage()
{
    m_fit = Fit::Page;
    refit();
}

void Canvas::refit()
{
    if (m_fit == Fit::Page) {
        m_view.fit(pageRect());
    } else if (m_fit == Fit::Box) {
        // The handles of the box stand outside of it.
        QRectF const area = m_view.area();
        double const margin = std::min(viewMargin, std::min(area.width(), area.height()) / 8.0);
        // Where there is room enough, the legend lies beside it.
        double const height = legendRect().height();
        double const legend = height * 3.0 < area.height() ? height : 0.0;
        m_view.setArea(area.adjusted(margin, margin, -margin, -margin - legend));
        m_view.fit(boxOnPage(m_scene));
        m_view.setArea(area);
        m_view.pan({0.0, -legend / 2.0});
    }
    takeView();
}

/** The view has changed: it stays where there is something to be seen. */
void Canvas::takeView()
{
    QRectF shown = boxOnPage(m_scene);
    if (m_scene.settings.showsPage())
        shown |= pageRect();
    m_view.keepWithin(shown);
    m_view.alignBox();
    update();
    double const zoom = m_view.zoom();
    if (zoom < m_toldZoom || zoom > m_toldZoom) {
        m_toldZoom = zoom;
        Q_EMIT zoomChanged(zoom);
    }
}

void Canvas::scrollTo(HandleId handle)
{
    if (auto const found = handleOf(*m_scene.document.working().list, handle))
        scrollTo(m_view.fromOutline(found->position));
}

void Canvas::scrollTo(QPointF const& widget)
{
    if (!std::isfinite(widget.x()) || !std::isfinite(widget.y()))
        return;
    QRectF const area = m_view.area();
    auto const missing = [](double at, double from, double to) {
        double const margin = std::min(scrollMargin, (to - from) / 4.0);
        return std::clamp(at, from + margin, std::max(to - margin, from + margin)) - at;
    };
    QPointF const by(missing(widget.x(), area.left(), area.right()),
        missing(widget.y(), area.top(), area.bottom()));
    if (by.isNull())
        return;
    m_view.pan(by);
    m_view.alignBox();
    m_fit = Fit::None;
    update();
}

void Canvas::setShowsLegend(bool isShown)
{
    m_showsLegend = isShown;
    update();
}

QVector<HandleId> const& Canvas::handleIds() const
{
    if (!m_areIdsValid) {
        m_handleIds.clear();
        forEachHandle(*m_scene.document.working().list,
            [this](Handle const& handle) { m_handleIds.append(handle.id); });
        m_areIdsValid = true;
    }
    return m_handleIds;
}

int Canvas::indexOf(HandleId handle) const
{
    QVector<HandleId> const& ids = handleIds();
    auto const found = std::lower_bound(ids.cbegin(), ids.cend(), handle);
    bool const isThere = found != ids.cend() && *found == handle;
    return isThere ? static_cast<int>(found - ids.cbegin()) : -1;
}

QRect Canvas::handleRect(HandleId handle) const
{
    auto const found = handleOf(*m_scene.document.working().list, handle);
    if (!found)
        return {};
    QPointF const at = m_view.fromOutline(found->position);
    // Beyond this, integers of a screen would overflow.
    bool const isNear = std::abs(at.x()) < 1e6 && std::abs(at.y()) < 1e6;
    return isNear
        ? QRectF(at.x() - handleReach, at.y() - handleReach, 2.0 * handleReach, 2.0 * handleReach)
              .toAlignedRect()
        : QRect();
}

QRect Canvas::boxHandleRect(BoxHandle handle) const
{
    QRectF const frame = boxHandleFrame(m_scene.document.working().box, m_view);
    QPointF const at = positionOn(frame, handle);
    double const reach = handleReach;
    QRectF const rect(at.x() - reach, at.y() - reach, 2.0 * reach, 2.0 * reach);
    return QRectF(-1e6, -1e6, 2e6, 2e6).contains(rect) ? rect.toAlignedRect() : QRect();
}

void Canvas::setBoxHandle(BoxHandle handle)
{
    m_scene.selection.clear();
    m_select.setBoxHandle(handle);
    QRectF const frame = boxHandleFrame(m_scene.document.working().box, m_view);
    scrollTo(positionOn(frame, handle));
    tellFocus();
    update();
}

QRectF Canvas::pageRect() const
{
    return {QPointF(), m_scene.settings.pageSize()};
}

/** The settings or the size have changed. */
void Canvas::layOut()
{
    double const ruler = m_scene.settings.showsRulers() ? rulerThickness(font()) : 0.0;
    m_view.setArea(
        QRectF(ruler, ruler, std::max(width() - ruler, 1.0), std::max(height() - ruler, 1.0)));
    if (m_pageSize != m_scene.settings.pageSize())
        centreBox();
    refit();
}

/** Another outline is the current one, or it has been changed by a step. */
void Canvas::takeOutline()
{
    ShapeDocument& document = m_scene.document;
    // A document that has just been read has no steps. Nor has it within the first one; but that
    // keeps the outline itself.
    KpPathSegList const* const list = document.working().list.get();
    bool const isRead = document.undoStack().count() == 0 && list != m_list;
    bool const isAnother = document.current() != m_outline || isRead;
    m_outline = document.current();
    m_list = list;
    if (m_pressed)
        m_pressed->abandon();
    if (isAnother || activeTool().isActive())
        activeTool().abandon();
    m_pressed = nullptr;
    m_areIdsValid = false;
    if (isAnother) {
        m_scene.selection.clear();
        m_select.setBoxHandle(std::nullopt);
        m_crosshair.reset();
        m_fit = Fit::Box;
        centreBox();
        refit();
    } else {
        m_scene.selection.restrictTo(*document.working().list);
    }
}

void Canvas::centreBox()
{
    m_pageSize = m_scene.settings.pageSize();
    QSizeF const rest = m_pageSize - m_scene.document.working().box;
    m_view.setBoxOrigin({rest.width() / 2.0, rest.height() / 2.0});
}

void Canvas::outlineChanged()
{
    m_list = m_scene.document.working().list.get();
    m_areIdsValid = false;
    m_drawing.invalidate();
    update();
}

void Canvas::selectionChanged()
{
    if (!m_scene.selection.isEmpty())
        m_select.setBoxHandle(std::nullopt);
    tellFocus();
    update();
}

/** Tells assistive technology which handle has the focus now. */
void Canvas::tellFocus()
{
    if (!QAccessible::isActive() || !hasFocus())
        return;
    std::optional<HandleId> const current = m_scene.selection.current();
    int child = -1;
    if (m_select.boxHandle())
        child = handleIds().size() + static_cast<int>(*m_select.boxHandle());
    else if (current)
        child = indexOf(*current);
    // Without installCanvasAccessibility() the canvas has no children.
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(this);
    if (!interface || child >= interface->childCount())
        return;
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(child);
    QAccessible::updateAccessibility(&event);
}

void Canvas::resizeEvent(QResizeEvent*)
{
    layOut();
}

void Canvas::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        layOut();
    if (event->type() == QEvent::PaletteChange)
        update();
    QWidget::changeEvent(event);
}

void Canvas::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    tellFocus();
    update();
}

void Canvas::focusOutEvent(QFocusEvent* event)
{
    m_isSpaceDown = false;
    QWidget::focusOutEvent(event);
    update();
}
