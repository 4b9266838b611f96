// SPDX-License-Identifier: MIT
#include "paint/outlinepainter.h"

#include "document/bindingrule.h"
#include "document/place.h"
#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "paint/caption.h"
#include "paint/pointmark.h"
#include "paint/shapeshadow.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr QRgb ink = 0xff1f3a5f;
constexpr QRgb pale = 0xffdbe9f6;
constexpr QRgb translucentInk = 0xb01f3a5f; ///< overlapping figures stay visible
constexpr double legendLineHeight = 15.0;
constexpr double legendWidth = 260.0;

QColor shownColour(std::optional<ShapeColour> const& own, QRgb usual)
{
    return own ? own->shown() : QColor::fromRgba(usual);
}

/** What throws the shadow of an outline that is not filled. */
QPainterPath bandOf(QPainterPath const& path, double lineWidth)
{
    QPainterPathStroker stroker(
        QPen(Qt::black, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath band = stroker.createStroke(path);
    band.setFillRule(Qt::WindingFill);
    return band;
}

} // namespace

OutlinePainter::OutlinePainter(QPainter& painter, OutlineStyle const& style)
    : m_painter(painter)
    , m_style(style)
{
}

void OutlinePainter::draw(KpPathSegList& list, Qt::FillRule fillRule, QTransform const& toDevice,
    Appearance const& appearance)
{
    QPainterPath path = toDevice.map(painterPathOf(list));
    path.setFillRule(m_style.fillRule.value_or(fillRule));
    drawShadowOf(list, {path, path, std::sqrt(std::abs(toDevice.determinant()))}, appearance);
    setColours(list, appearance);
    m_painter.drawPath(path);
}

void OutlinePainter::drawMapped(KpPathSegList const& list, Qt::FillRule fillRule,
    MappedDrawing const& drawing, Appearance const& appearance)
{
    MappedDrawing ruled = drawing;
    ruled.fill.setFillRule(m_style.fillRule.value_or(fillRule));
    drawShadowOf(list, ruled, appearance);
    setColours(list, appearance);
    m_painter.fillPath(ruled.fill, m_painter.brush());
    m_painter.strokePath(ruled.line, m_painter.pen());
}

void OutlinePainter::drawShadowOf(
    KpPathSegList const& list, MappedDrawing const& drawing, Appearance const& appearance)
{
    if (!appearance.shadow || (list.noFill && list.noLine))
        return;
    drawShadow(m_painter, list.noFill ? bandOf(drawing.line, m_style.lineWidth) : drawing.fill,
        *appearance.shadow, drawing.scale);
}

void OutlinePainter::setColours(KpPathSegList const& list, Appearance const& appearance)
{
    QColor const fill = shownColour(appearance.fill, list.noLine ? translucentInk : pale);
    m_painter.setBrush(list.noFill ? QBrush() : QBrush(fill));
    m_painter.setPen(list.noLine ? QPen(Qt::NoPen)
                                 : QPen(shownColour(appearance.line, ink), m_style.lineWidth,
                                     Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void OutlinePainter::drawPoints(KpPathSegList& list, QTransform const& toDevice)
{
    QPen const handle(QColor::fromRgb(0xff909090), 0.75);
    auto const device = [&toDevice](QPointF const& point) { return toDevice.map(point); };
    auto const mark = [&](KpPoint const& point, PointMark kind) {
        drawPointMark(
            m_painter, device(placeOf(point)), kind, ruleColour(point.x), ruleColour(point.y));
    };
    for (KpPathSeg* const seg : qAsConst(list.segs)) {
        if (KpPathSegCurveTo const* const curve = seg->toCurveTo()) {
            m_painter.setPen(handle);
            m_painter.drawLine(device(seg->startPt()), device(placeOf(curve->ctrl1)));
            m_painter.drawLine(device(placeOf(curve->pt)), device(placeOf(curve->ctrl2)));
            mark(curve->ctrl1, PointMark::Control);
            mark(curve->ctrl2, PointMark::Control);
            mark(curve->pt, PointMark::Curve);
        } else if (KpPathSegEllipse const* const ellipse = seg->toEllipse()) {
            QPointF const centre = placeOf(ellipse->pt);
            QPointF const right = device(centre + QPointF(ellipse->a.value, 0.0));
            QPointF const bottom = device(centre + QPointF(0.0, ellipse->b.value));
            m_painter.setPen(handle);
            m_painter.drawLine(device(centre), right);
            m_painter.drawLine(device(centre), bottom);
            QColor const a = ruleColour(ellipse->a);
            QColor const b = ruleColour(ellipse->b);
            drawPointMark(m_painter, right, PointMark::Control, a, a);
            drawPointMark(m_painter, bottom, PointMark::Control, b, b);
            mark(ellipse->pt, PointMark::Curve);
        } else {
            mark(seg->pt, PointMark::Corner);
        }
    }
}

void OutlinePainter::drawLegend(QPointF const& topLeft)
{
    m_painter.setFont(captionFont());
    QPointF line = topLeft + QPointF(0.0, legendLineHeight / 2.0);
    for (int rule = 0; rule < ruleCount; ++rule) {
        BindingRule const& shown = bindingRule(rule);
        QColor const colour = QColor::fromRgb(shown.colour);
        drawPointMark(
            m_painter, line + QPointF(pointMarkRadius, 0.0), PointMark::Corner, colour, colour);
        m_painter.setPen(Qt::black);
        m_painter.drawText(line + QPointF(4.0 * pointMarkRadius, 4.0),
            QStringLiteral("%1: %2").arg(
                QString::fromUtf8(shown.name), QString::fromUtf8(shown.meaning)));
        line.ry() += legendLineHeight;
    }
    m_painter.drawText(
        line + QPointF(0.0, 4.0), QStringLiteral("left half: rule of x, right half: rule of y"));
}

QSizeF OutlinePainter::legendSize()
{
    return {legendWidth, (ruleCount + 1) * legendLineHeight};
}

QPainterPath painterPathOf(KpPathSegList const& list)
{
    KpPath path;
    list.toPath(path);
    return path.toPainterPath();
}

bool isDrawable(double number)
{
    // Beyond this, scaling to a picture would leave the range in which Qt draws.
    return std::abs(number) < 1e100;
}

QRectF drawnBounds(KpPathSegList& list, OutlineStyle const& style)
{
    KpPath drawing;
    list.toPath(drawing);
    auto const isBad = [](KpPath::KpElement const& element) {
        return !isDrawable(element.x) || !isDrawable(element.y);
    };
    // A painter path would leave such an element out without a word.
    if (std::any_of(drawing.elements.cbegin(), drawing.elements.cend(), isBad)) {
        double const endless = std::numeric_limits<double>::infinity();
        return QRectF(QPointF(-endless, -endless), QPointF(endless, endless));
    }
    QPainterPath const path = drawing.toPainterPath();
    return style.showsPoints ? path.controlPointRect() : path.boundingRect();
}
