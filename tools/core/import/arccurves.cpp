// SPDX-License-Identifier: MIT
#include "import/arccurves.h"

#include <QTransform>

#include <algorithm>
#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;

/** An arc of the unit circle around the origin. */
struct UnitArc
{
    double start; ///< in radians, clockwise from the right
    double sweep; ///< negative counterclockwise
};

QPointF onCircle(double angle)
{
    return {std::cos(angle), std::sin(angle)};
}

/** What the tangent of a point of the unit circle is. */
QPointF tangentAt(double angle)
{
    return {-std::sin(angle), std::cos(angle)};
}

/** The turn around `centre` that leads from `start` to its opposite, both on the circle. */
UnitArc turnBetween(QPointF const& start, QPointF const& centre, bool isClockwise)
{
    double const first = std::atan2(start.y() - centre.y(), start.x() - centre.x());
    double const last = std::atan2(-start.y() - centre.y(), -start.x() - centre.x());
    double sweep = last - first;
    if (isClockwise && sweep < 0.0)
        sweep += 2.0 * pi;
    else if (!isClockwise && sweep > 0.0)
        sweep -= 2.0 * pi;
    return {first, sweep};
}

/** The curves of a turn, mapped from the unit circle. */
std::vector<Curve> curvesOf(UnitArc const& turn, QTransform const& fromCircle)
{
    // A whole number of quarters stays one, whatever the rounding.
    double const rounding = 1e-9;
    int const count =
        std::max(1, static_cast<int>(std::ceil(std::abs(turn.sweep) / (pi / 2.0) - rounding)));
    double const step = turn.sweep / count;
    double const reach = 4.0 / 3.0 * std::tan(step / 4.0);
    std::vector<Curve> curves;
    for (int i = 0; i < count; ++i) {
        double const begin = turn.start + i * step;
        double const end = begin + step;
        curves.push_back({fromCircle.map(onCircle(begin) + reach * tangentAt(begin)),
            fromCircle.map(onCircle(end) - reach * tangentAt(end)), fromCircle.map(onCircle(end))});
    }
    return curves;
}

} // namespace

bool isCurved(EllipticalArc const& arc)
{
    return arc.radii.width() > 0.0 && arc.radii.height() > 0.0;
}

// The way of SVG 1.1, F.6.5 and F.6.6, with the ellipse made a circle of radius 1 first: squares of
// the radii, which can be too large or small for a number, do not occur.
std::vector<Curve> arcCurves(QPointF const& from, QPointF const& to, EllipticalArc const& arc)
{
    QPointF const half = (from - to) / 2.0;
    if (!(std::abs(half.x()) > 0.0 || std::abs(half.y()) > 0.0))
        return {};
    std::vector<Curve> straight {{from, to, to}};
    if (!isCurved(arc))
        return straight;
    QTransform rotation;
    rotation.rotate(std::fmod(arc.rotation, 360.0));
    QPointF const upright = rotation.transposed().map(half);
    QPointF start(upright.x() / arc.radii.width(), upright.y() / arc.radii.height());
    double const squaredDistance = QPointF::dotProduct(start, start);
    if (!std::isfinite(squaredDistance))
        return straight;
    double scale = 1.0;
    QPointF centre;
    if (squaredDistance > 1.0) {
        scale = std::sqrt(squaredDistance);
        start /= scale;
    } else {
        double const side = arc.isLarge != arc.isClockwise ? 1.0 : -1.0;
        double const away = side * std::sqrt(1.0 / squaredDistance - 1.0);
        centre = away * QPointF(start.y(), -start.x());
    }
    if (!std::isfinite(centre.x()) || !std::isfinite(centre.y()))
        return straight;
    QPointF const middle = (from + to) / 2.0;
    QTransform const fromCircle = QTransform::fromTranslate(centre.x(), centre.y())
        * QTransform::fromScale(scale * arc.radii.width(), scale * arc.radii.height()) * rotation
        * QTransform::fromTranslate(middle.x(), middle.y());
    std::vector<Curve> curves = curvesOf(turnBetween(start, centre, arc.isClockwise), fromCircle);
    curves.back().end = to;
    return curves;
}
