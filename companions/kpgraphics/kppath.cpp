// SPDX-License-Identifier: MIT
#include "kppath.h"

#include <QPointF>

namespace {

// The control point distance at which a cubic meets a quarter of the unit circle at its
// middle: 4/3 (sqrt(2) - 1).
constexpr double quarterCircleControl = 0.55228474983079340;

constexpr int move = QPainterPath::MoveToElement;
constexpr int line = QPainterPath::LineToElement;
constexpr int curve = QPainterPath::CurveToElement;
constexpr int data = QPainterPath::CurveToDataElement;
constexpr int close = 4;

KpPath::KpElement element(double x, double y, int type)
{
    return {x, y, 0.0, 0.0, type};
}

QPointF point(KpPath::KpElement const& element)
{
    return {element.x, element.y};
}

} // namespace

void KpPath::closeSubpath()
{
    if (elements.isEmpty()) {
        append(element(0.0, 0.0, close));
        return;
    }
    int start = count() - 1;
    while (start > 0 && at(start).type != move)
        --start;
    append(element(at(start).x, at(start).y, close));
}

QVector<KpPath::KpElement> KpPath::ellipse(QRectF rect)
{
    double const a = rect.width() / 2.0;
    double const b = rect.height() / 2.0;
    double const cx = rect.x() + a;
    double const cy = rect.y() + b;
    double const ka = a * quarterCircleControl;
    double const kb = b * quarterCircleControl;
    return {
        element(cx + a, cy, move),
        element(cx + a, cy + kb, curve),
        element(cx + ka, cy + b, data),
        element(cx, cy + b, data),
        element(cx - ka, cy + b, curve),
        element(cx - a, cy + kb, data),
        element(cx - a, cy, data),
        element(cx - a, cy - kb, curve),
        element(cx - ka, cy - b, data),
        element(cx, cy - b, data),
        element(cx + ka, cy - b, curve),
        element(cx + a, cy - kb, data),
        element(cx + a, cy, data),
        element(cx + a, cy, close),
    };
}

bool KpPath::isClockWise()
{
    if (elements.isEmpty())
        return false;
    // Seen from one of its own points, a small polygon far away loses no digits, and an upright
    // or level line has no area at all.
    QPointF const origin = point(elements.constFirst());
    double twiceArea = 0.0;
    QPointF from = point(last()) - origin;
    for (KpElement const& element : qAsConst(elements)) {
        QPointF const to = point(element) - origin;
        twiceArea += from.x() * to.y() - to.x() * from.y();
        from = to;
    }
    return twiceArea > 0.0;
}

QPainterPath KpPath::toPainterPath() const
{
    QPainterPath path;
    for (int i = 0; i < count(); ++i) {
        KpElement const& current = at(i);
        switch (current.type) {
        case move:
            path.moveTo(point(current));
            break;
        case line:
            path.lineTo(point(current));
            break;
        case curve:
            if (i + 2 < count()) {
                path.cubicTo(point(current), point(at(i + 1)), point(at(i + 2)));
                i += 2;
            }
            break;
        case close:
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
    result.elements.reserve(path.elementCount());
    for (int i = 0; i < path.elementCount(); ++i) {
        QPainterPath::Element const& source = path.elementAt(i);
        result.append({source.x, source.y, 0.0, 0.0, source.type});
    }
    return result;
}
