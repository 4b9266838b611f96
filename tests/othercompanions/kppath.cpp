// SPDX-License-Identifier: MIT
#include "kppath.h"

#include <QPainterPath>

namespace {

enum ElementType { Move, Line, Curve, CurveData, Close };

KpPath::KpElement element(QPointF point, int type)
{
    return {point.x(), point.y(), 0.0, 0.0, type};
}

QPointF pointOf(KpPath::KpElement const& element)
{
    return {element.x, element.y};
}

/** What a quarter turn clockwise on screen makes of `direction`. */
QPointF turned(QPointF direction)
{
    return {-direction.y(), direction.x()};
}

double crossProduct(QPointF a, QPointF b)
{
    return a.x() * b.y() - a.y() * b.x();
}

} // namespace

void KpPath::closeSubpath()
{
    QPointF start;
    for (KpElement const& element : qAsConst(elements)) {
        if (element.type == Move)
            start = pointOf(element);
    }
    elements.append(element(start, Close));
}

/** One quarter of a circle, turned four times and stretched. */
QVector<KpPath::KpElement> KpPath::ellipse(QRectF rect)
{
    constexpr double handle = 0.5522847498; // of the curve that is next to a quarter of a circle
    QPointF const middle(rect.x() + rect.width() / 2.0, rect.y() + rect.height() / 2.0);
    auto const onEllipse = [&](QPointF unit) {
        return middle + QPointF(unit.x() * rect.width() / 2.0, unit.y() * rect.height() / 2.0);
    };
    QPointF from(1.0, 0.0);
    QVector<KpElement> outline {element(onEllipse(from), Move)};
    for (int quarter = 0; quarter < 4; ++quarter) {
        QPointF const to = turned(from);
        outline << element(onEllipse(from + handle * to), Curve)
                << element(onEllipse(to + handle * from), CurveData)
                << element(onEllipse(to), CurveData);
        from = to;
    }
    outline << element(onEllipse(from), Close);
    return outline;
}

/** By triangles that share the first point. */
bool KpPath::isClockWise()
{
    double doubleArea = 0.0;
    for (int i = 2; i < elements.count(); ++i) {
        QPointF const first = pointOf(elements.at(0));
        doubleArea +=
            crossProduct(pointOf(elements.at(i - 1)) - first, pointOf(elements.at(i)) - first);
    }
    return doubleArea > 0.0;
}

QPainterPath KpPath::toPainterPath() const
{
    QPainterPath path;
    for (int i = 0; i < elements.count(); ++i) {
        QPointF const point = pointOf(elements.at(i));
        switch (elements.at(i).type) {
        case Move:
            path.moveTo(point);
            break;
        case Line:
            path.lineTo(point);
            break;
        case Curve:
            if (i + 2 < elements.count())
                path.cubicTo(point, pointOf(elements.at(i + 1)), pointOf(elements.at(i + 2)));
            i += 2;
            break;
        case Close:
            path.closeSubpath();
            break;
        default:
            break;
        }
    }
    return path;
}

KpPath KpPath::fromPainterPath(QPainterPath const& path)
{
    KpPath result;
    for (int i = 0; i < path.elementCount(); ++i)
        result.append(element(path.elementAt(i), path.elementAt(i).type));
    return result;
}
