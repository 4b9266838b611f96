// SPDX-License-Identifier: MIT
#include "canvas/handlepainter.h"

#include "canvas/boxhandle.h"
#include "colorutil.h"
#include "paint/pointmark.h"

#include <QLineF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double spriteRadius = 9.0; ///< from the middle of a picture to its edge
constexpr double plainRadius = pointMarkRadius + 1.0;
constexpr double ringRadius = 7.0; ///< around what is selected
constexpr double focusRadius = 10.0;
constexpr double boxMarkRadius = 4.0;
constexpr int manySegments = 1500; ///< from here on handles are thinned out
constexpr double thinning = 3.0; ///< of many handles, one in a square of so many pixels is drawn

KpPathSeg::SegType typeOf(PaintedHandles const& handles, int segment)
{
    return handles.list.segs.at(segment)->type;
}

/** Remembers which squares of the widget have a handle already. */
class Thinning
{
public:
    Thinning(QRectF const& visible, bool isNeeded)
        : m_origin(visible.topLeft())
        , m_columns(isNeeded ? cells(visible.width()) : 0)
        , m_isTaken(static_cast<std::size_t>(m_columns) * (isNeeded ? cells(visible.height()) : 0))
    {
    }

    /** Whether the handle is to be drawn. @param at within the visible part */
    bool take(QPointF const& at)
    {
        if (m_isTaken.empty())
            return true;
        auto const column = static_cast<std::size_t>((at.x() - m_origin.x()) / thinning);
        auto const row = static_cast<std::size_t>((at.y() - m_origin.y()) / thinning);
        auto&& cell = m_isTaken[row * m_columns + column];
        bool const wasTaken = cell;
        cell = true;
        return !wasTaken;
    }

private:
    static std::size_t cells(double length)
    {
        return static_cast<std::size_t>(std::max(length, 0.0) / thinning) + 1;
    }

    QPointF const m_origin;
    std::size_t const m_columns;
    std::vector<bool> m_isTaken;
};

/** Asks for handles in their order which of them are selected. */
class SelectionWalk
{
public:
    explicit SelectionWalk(QVector<HandleId> const& selected)
        : m_next(selected.cbegin())
        , m_end(selected.cend())
    {
    }

    bool contains(HandleId id)
    {
        while (m_next != m_end && *m_next < id)
            ++m_next;
        return m_next != m_end && *m_next == id;
    }

private:
    QVector<HandleId>::const_iterator m_next;
    QVector<HandleId>::const_iterator const m_end;
};

bool isOn(QRectF const& rect, QPointF const& at)
{
    // False where a number is none, too.
    return at.x() >= rect.left() && at.x() < rect.right() && at.y() >= rect.top()
        && at.y() < rect.bottom();
}

PointMark markOf(HandleKind kind, bool isCurve)
{
    if (kind != HandleKind::Point)
        return PointMark::Control;
    return isCurve ? PointMark::Curve : PointMark::Corner;
}

/** Of a radius, both halves have the colour of its one coordinate. */
int shownRule(KpReal const* own, KpReal const* other)
{
    KpReal const* const shown = own ? own : other;
    return shown ? ruleOf(shown->base) : unknownRule;
}

QColor colourOf(int rule)
{
    return QColor::fromRgb(bindingRule(rule).colour);
}

} // namespace

void HandlePainter::setDevice(double ratio, QPalette const& palette)
{
    if (!(ratio < m_ratio) && !(ratio > m_ratio) && palette == m_palette)
        return;
    m_ratio = ratio;
    m_palette = palette;
    m_sprites.fill(QPixmap());
}

QPixmap const& HandlePainter::sprite(Handle const& handle, bool isCurve, bool isSelected)
{
    int const x = shownRule(handle.x, handle.y);
    int const y = shownRule(handle.y, handle.x);
    PointMark const mark = markOf(handle.id.kind, isCurve);
    int const form = static_cast<int>(mark) * 2 + (isSelected ? 1 : 0);
    int const key = (form * ruleCount + x) * ruleCount + y;
    QPixmap& picture = m_sprites[static_cast<std::size_t>(key)];
    if (!picture.isNull())
        return picture;
    double const radius = isSelected ? spriteRadius : plainRadius;
    int const side = static_cast<int>(std::ceil(2.0 * radius * m_ratio));
    picture = QPixmap(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(m_ratio, m_ratio);
    QPointF const middle(side / m_ratio / 2.0, side / m_ratio / 2.0);
    if (isSelected) {
        painter.setPen(QPen(Qt::white, 4.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(middle, ringRadius - 0.5, ringRadius - 0.5);
        painter.setPen(QPen(m_palette.color(QPalette::Highlight), 2.25));
        painter.drawEllipse(middle, ringRadius - 0.5, ringRadius - 0.5);
    }
    drawPointMark(painter, middle, mark, colourOf(x), colourOf(y));
    return picture;
}

void HandlePainter::paint(QPainter& painter, PaintedHandles const& handles,
    ViewTransform const& view, QRectF const& visible)
{
    bool const areMany = handles.list.segs.count() > manySegments;
    paintLines(painter, handles, view, visible);
    QRectF const reached =
        visible.adjusted(-spriteRadius, -spriteRadius, spriteRadius, spriteRadius);
    auto const paintAll = [&](bool areSelected) {
        Thinning thinned(reached, areMany);
        SelectionWalk walk(handles.selected);
        forEachHandle(handles.list, [&](Handle const& handle) {
            bool const isSelected = walk.contains(handle.id);
            QPointF const at = view.fromOutline(handle.position);
            if (isSelected != areSelected || !isOn(reached, at) || !thinned.take(at))
                return;
            KpPathSeg::SegType const type = typeOf(handles, handle.id.segment);
            bool const isCurve = type == KpPathSeg::SegCurveTo || type == KpPathSeg::SegEllipse;
            QPixmap const& picture = sprite(handle, isCurve, isSelected);
            QPointF const corner = at * m_ratio - QPointF(picture.width(), picture.height()) / 2.0;
            painter.drawPixmap(corner.toPoint(), picture);
        });
    };
    // In pixels of the device a picture is copied as it is, and not scaled.
    painter.save();
    painter.scale(1.0 / m_ratio, 1.0 / m_ratio);
    paintAll(false);
    if (!handles.selected.isEmpty())
        paintAll(true);
    painter.restore();
    if (!handles.focus)
        return;
    auto const focus = handleOf(handles.list, *handles.focus);
    if (focus && isOn(reached, view.fromOutline(focus->position)))
        paintFocus(painter, view.fromOutline(focus->position));
}

void HandlePainter::paintLines(QPainter& painter, PaintedHandles const& handles,
    ViewTransform const& view, QRectF const& visible) const
{
    bool const areMany = handles.list.segs.count() > manySegments;
    QVector<QLineF> lines;
    auto const add = [&](QPointF const& from, QPointF const& to) {
        QPointF const start = view.fromOutline(from);
        QPointF const end = view.fromOutline(to);
        QRectF const covered = QRectF(start, end).normalized().adjusted(-1.0, -1.0, 1.0, 1.0);
        bool const isLong = !areMany || (end - start).manhattanLength() > pointMarkRadius;
        if (isLong && covered.intersects(visible))
            lines.append({start, end});
    };
    QPointF previous;
    for (int i = 0; i < handles.list.segs.count(); ++i) {
        KpPathSeg& segment = *handles.list.segs.at(i);
        QPointF const end(segment.pt.x.value, segment.pt.y.value);
        if (segment.type == KpPathSeg::SegCurveTo && i == 0)
            previous = segment.startPt();
        bool const isCurve = segment.type == KpPathSeg::SegCurveTo;
        forEachHandle(segment, i, [&](Handle const& handle) {
            if (handle.id.kind != HandleKind::Point)
                add(isCurve && handle.id.kind == HandleKind::Control1 ? previous : end,
                    handle.position);
        });
        previous = end;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, !areMany);
    QPen pen(ColorUtil::s_virLine, areMany ? 0.0 : 1.0);
    painter.setPen(pen);
    painter.drawLines(lines);
    painter.restore();
}

void HandlePainter::paintFocus(QPainter& painter, QPointF const& at) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 3.5));
    painter.drawEllipse(at, focusRadius, focusRadius);
    painter.setPen(QPen(Qt::black, 1.5, Qt::DotLine));
    painter.drawEllipse(at, focusRadius, focusRadius);
    painter.restore();
}

void HandlePainter::paintBox(QPainter& painter, QRectF const& frame, std::optional<int> focus) const
{
    PixelGrid const grid(m_ratio);
    double const r = boxMarkRadius;
    for (int i = 0; i < boxHandleCount; ++i) {
        QPointF const at = positionOn(frame, static_cast<BoxHandle>(i));
        QRectF const mark(at - QPointF(r, r), QSizeF(2.0 * r, 2.0 * r));
        painter.fillRect(grid.aligned(mark), Qt::white);
        grid.drawFrame(painter, mark, ColorUtil::s_reversible.darker(130));
        if (focus && *focus == i)
            paintFocus(painter, at);
    }
}
