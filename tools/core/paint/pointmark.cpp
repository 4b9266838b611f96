// SPDX-License-Identifier: MIT
#include "paint/pointmark.h"

#include "document/bindingrule.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr double radius = pointMarkRadius;

/** The left half of a mark around the origin; the right one is its mirror image. */
QPainterPath leftHalf(PointMark mark)
{
    QPainterPath half(QPointF(0.0, -radius));
    switch (mark) {
    case PointMark::Corner:
        half.lineTo(-radius, -radius);
        half.lineTo(-radius, radius);
        break;
    case PointMark::Curve:
        half.arcTo(QRectF(-radius, -radius, 2.0 * radius, 2.0 * radius), 90.0, 180.0);
        break;
    case PointMark::Control:
        half.lineTo(-radius, 0.0);
        break;
    }
    half.lineTo(0.0, radius);
    half.closeSubpath();
    return half;
}

} // namespace

QColor ruleColour(KpReal const& real)
{
    return QColor::fromRgb(bindingRule(ruleOf(real.base)).colour);
}

void drawPointMark(
    QPainter& painter, QPointF const& at, PointMark mark, QColor const& x, QColor const& y)
{
    QPainterPath const half = leftHalf(mark);
    painter.setPen(QPen(Qt::white, 0.5));
    painter.setBrush(x);
    painter.drawPath(half.translated(at));
    painter.setBrush(y);
    painter.drawPath(QTransform::fromScale(-1.0, 1.0).map(half).translated(at));
}
