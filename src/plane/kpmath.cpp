// SPDX-License-Identifier: MIT
#include "kpmath.h"

#include "conversion_p.h"

#include <cmath>

// The order of the operations in each formula is part of the interface: results are compared to
// the last bit. So nothing is simplified, clamped or left to a library function that rounds
// otherwise (hypot, fmod, QRectF::center).

namespace {

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;
constexpr double degreesPerRadian = 57.29577951308232;

double square(double number)
{
    return number * number;
}

double dot(QPointF const& u, QPointF const& v)
{
    return u.x() * v.x() + u.y() * v.y();
}

double cross(QPointF const& u, QPointF const& v)
{
    return u.x() * v.y() - u.y() * v.x();
}

double length(QPointF const& v)
{
    return std::sqrt(dot(v, v));
}

/** Two lines, each by a point and a direction. */
struct LinePair
{
    QPointF a;
    QPointF d1;
    QPointF d2;
    QPointF w; ///< from the first line's point to the second's
    double c; ///< cross product of the directions

    LinePair(QPointF const& a1, QPointF const& a2, QPointF const& b1, QPointF const& b2)
        : a(a1)
        , d1(a2 - a1)
        , d2(b2 - b1)
        , w(b1 - a1)
        , c(cross(d1, d2))
    {
    }

    /** What the square of `c` must exceed, lest the lines count as parallel. */
    double limit() const { return 1e-8 * dot(d1, d1) * dot(d2, d2); }

    /** Where the lines meet, in lengths of d1 and of d2 from their points. */
    double onFirst() const { return (d2.y() * w.x() - d2.x() * w.y()) / c; }
    double onSecond() const { return (w.x() * d1.y() - w.y() * d1.x()) / c; }

    QPointF pointAt(double s) const { return QPointF(a.x() + s * d1.x(), a.y() + s * d1.y()); }
};

/** Whether `part` of a vector lies at least `margin` away from its two ends. */
bool isInside(double part, QPointF const& vector, double margin)
{
    double const edge = margin / length(vector);
    return !(part < edge || part > 1.0 - edge);
}

/** The turn at `a` of o, a, b along one axis, the three points being on a line. */
int turnOnLine(double o, double a, double b)
{
    int const back = 0;
    int const straight = 3;
    if (a > o && a > b)
        return back;
    return o > a && b > a ? back : straight;
}

} // namespace

bool KpMath::kpIsUnitVector(QPointF v)
{
    return std::abs(1.0 - length(v)) < 0.0001;
}

QPointF KpMath::kpUnitVector(QPointF v)
{
    // Callers of old know a guard for the length 1.7e308; no length computed in doubles is
    // that, as the sum of the squares has overflowed long before.
    double const l = length(v);
    if (l == 0.0 || std::isnan(l))
        return v;
    return QPointF(v.x() / l, v.y() / l);
}

double KpMath::kpDeterminate(double* r0, double* r1, double* r2)
{
    return r0[0] * r1[1] * r2[2] + r1[0] * r2[1] * r0[2] + r2[0] * r0[1] * r1[2]
        - r0[2] * r1[1] * r2[0] - r1[2] * r2[1] * r0[0] - r0[1] * r2[2] * r1[0];
}

double KpMath::kpAtan(QPointF a, QPointF b)
{
    double radians = std::atan((a.y() - b.y()) / (a.x() - b.x()));
    if (b.x() > a.x())
        radians += pi;
    if (radians > pi)
        radians -= twoPi;
    return radians * degreesPerRadian;
}

double KpMath::kpAtan2(QPointF a, QPointF b)
{
    double const dx = a.x() - b.x();
    double const dy = a.y() - b.y();
    double radians = 0.0;
    if (-0.1 < dx && dx < 0.1) {
        if (std::abs(dy) > std::abs(dx))
            return a.y() < b.y() ? 270.0 : 90.0;
    } else {
        radians = std::atan(dy / dx);
    }
    if (b.x() > a.x())
        radians += pi;
    if (radians < 0.0)
        radians += twoPi;
    return radians * degreesPerRadian;
}

int KpMath::kpLineSide(QPointF p, QPointF a, QPointF b)
{
    double const d = (p.x() - b.x()) * (a.y() - b.y()) - (p.y() - b.y()) * (a.x() - b.x());
    if (-1.0 < d && d < 1.0)
        return b.x() < a.x() || p.x() < b.x() ? 4 : 3;
    return d > 0.0 ? 1 : 2;
}

QPointF KpMath::kpProjection(QPointF const& a, QPointF const& p, QPointF const& b)
{
    QPointF const u = b - a;
    double const t = dot(p - a, u) / dot(u, u);
    return QPointF(a.x() + t * u.x(), a.y() + t * u.y());
}

int KpMath::kpVectorDir(QPointF const& o, QPointF const& a, QPointF const& b, double eps)
{
    double const c = (a.x() - o.x()) * (b.y() - o.y()) - (b.x() - o.x()) * (a.y() - o.y());
    if (c < -eps)
        return -1;
    return c > eps ? 1 : 0;
}

int KpMath::kpOrtTurnOrder(QPointF const& o, QPointF const& a, QPointF const& b)
{
    int const direction = kpVectorDir(o, a, b, 0.0);
    if (direction != 0)
        return direction > 0 ? 1 : 2;
    bool const isUpright = a.x() == b.x();
    return isUpright ? turnOnLine(o.y(), a.y(), b.y()) : turnOnLine(o.x(), a.x(), b.x());
}

double KpMath::kpDegree(QPointF a, QPointF o, QPointF b)
{
    QPointF const u(a.x() - o.x(), o.y() - a.y());
    QPointF const w(b.x() - o.x(), o.y() - b.y());
    double const radians = std::acos(dot(u, w) / std::sqrt(dot(u, u) * dot(w, w)));
    return (kpLineSide(o, a, b) == 2 ? -radians : radians) * degreesPerRadian;
}

QRectF KpMath::kpNormalizeRect(QPointF p1, QPointF p2)
{
    double const left = qMin(p1.x(), p2.x());
    double const top = qMin(p1.y(), p2.y());
    double width = std::abs(p1.x() - p2.x());
    double height = std::abs(p1.y() - p2.y());
    if (width == 0.0)
        width = (0.5 + left) - left;
    if (height == 0.0)
        height = (0.5 + top) - top;
    return QRectF(left, top, width, height);
}

QPointF KpMath::kpEllipsePoint(QRectF rect, double angle)
{
    bool const isFlat = rect.height() < 0.1;
    double const w = rect.width();
    double const h = isFlat ? 0.1 : rect.height();
    double const hw = 0.5 * w;
    double const hh = isFlat ? 0.05 : 0.5 * h;
    if (angle > 360.0 || angle < -360.0)
        angle -= static_cast<double>(360 * qint64(Conversion::truncated(angle / 360.0)));
    if (angle < -180.0)
        angle += 360.0;
    if (angle > 180.0)
        angle -= 360.0;
    double const r = pi * angle / 180.0;
    double t = std::atan(std::tan(r) * w / h);
    if (r < 0.0 && t > 0.0)
        t -= pi;
    else if (r > 0.0 && t < 0.0)
        t += pi;
    return QPointF(rect.x() + hw + hw * std::cos(t), rect.y() + hh + hh * std::sin(t));
}

QPointF KpMath::kpUprightPoint(QPointF a, QPointF b, QPointF p)
{
    if (std::abs(a.x() - b.x()) < 0.001)
        return QPointF((a.x() + b.x()) * 0.5, p.y());
    if (std::abs(a.y() - b.y()) < 0.001)
        return QPointF(p.x(), (a.y() + b.y()) * 0.5);
    double const k = (a.y() - b.y()) / (a.x() - b.x());
    // Single precision is deliberate: callers snap to the rounded point.
    auto const x = static_cast<float>((k * b.x() - b.y() + p.x() / k + p.y()) / (1.0 / k + k));
    auto const y = static_cast<float>((p.x() - static_cast<double>(x)) / k + p.y());
    return QPointF(static_cast<double>(x), static_cast<double>(y));
}

int KpMath::kpCrossPoint(QPointF a1, QPointF a2, QPointF b1, QPointF b2, QPointF& out)
{
    int const sameLine = 0;
    int const crossing = 1;
    int const parallel = 2;
    LinePair const lines(a1, a2, b1, b2);
    if (square(lines.c) > lines.limit()) {
        out = lines.pointAt(lines.onFirst());
        return crossing;
    }
    double const e = lines.d1.y() * lines.w.x() - lines.d1.x() * lines.w.y();
    bool const isApart = square(e) > 1e-6 * dot(lines.d1, lines.d1) * dot(lines.w, lines.w);
    return isApart ? parallel : sameLine;
}

int KpMath::kpCrossPoint3(
    QPointF a1, QPointF a2, QPointF b1, QPointF b2, QPointF& out, double margin)
{
    LinePair const lines(a1, a2, b1, b2);
    // Not the negation of kpCrossPoint's test: deliberate, NaN passes here.
    if (square(lines.c) <= lines.limit())
        return 0;
    double const s = lines.onFirst();
    if (!isInside(s, lines.d1, margin) || !isInside(lines.onSecond(), lines.d2, margin))
        return 0;
    out = lines.pointAt(s);
    return 1;
}
