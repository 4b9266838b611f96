// SPDX-License-Identifier: MIT
// Plane geometry with any coordinates: nothing undefined, results in the ranges and codes that are
// promised, output parameters untouched where they should be, and what pairs of functions owe to
// each other.

#include "fuzzing.h"
#include "kpmath.h"

#include <cmath>

using Fuzzing::require;

namespace {

QPointF point(FuzzedDataProvider& input)
{
    double const x = Fuzzing::awkwardReal(input);
    return {x, Fuzzing::awkwardReal(input)};
}

bool areSame(QPointF const& left, QPointF const& right)
{
    return Fuzzing::areSameBits(left.x(), right.x()) && Fuzzing::areSameBits(left.y(), right.y());
}

/** So small that no product of four of them overflows, and none vanishes. */
bool isModest(QPointF const& point)
{
    auto const isModestReal = [](double real) {
        return real == 0.0 || (std::abs(real) < 1e50 && std::abs(real) > 1e-50);
    };
    return isModestReal(point.x()) && isModestReal(point.y());
}

bool isWithin(double real, double least, double greatest)
{
    return std::isnan(real) || (real >= least && real <= greatest);
}

void checkVectors(QPointF const& v, FuzzedDataProvider& input)
{
    QPointF const unit = KpMath::kpUnitVector(v);
    if (isModest(v) && !v.isNull()) {
        require(std::abs(std::hypot(unit.x(), unit.y()) - 1.0) < 1e-12, "a unit vector is 1 long");
        require(KpMath::kpIsUnitVector(unit), "and known for one");
    }
    double rows[3][3];
    double before[3][3];
    for (int i = 0; i < 9; ++i)
        before[i / 3][i % 3] = rows[i / 3][i % 3] = Fuzzing::awkwardReal(input);
    KpMath::kpDeterminate(rows[0], rows[1], rows[2]);
    require(std::memcmp(rows, before, sizeof rows) == 0, "a determinant changes no row");
}

void checkDirections(QPointF const& o, QPointF const& a, QPointF const& b)
{
    require(isWithin(KpMath::kpAtan(a, b), -180.0, 180.0), "a direction is within -180 and 180");
    require(isWithin(KpMath::kpAtan2(a, b), 0.0, 360.0), "a direction is within 0 and 360");
    require(isWithin(KpMath::kpDegree(a, o, b), -180.0, 180.0), "an angle is within -180 and 180");
    int const side = KpMath::kpLineSide(o, a, b);
    require(side >= 1 && side <= 4, "a side is 1 to 4");
    int const turn = KpMath::kpVectorDir(o, a, b, 0.0);
    require(turn >= -1 && turn <= 1, "a turn is -1 to 1");
    require(KpMath::kpVectorDir(o, b, a, 0.0) == -turn, "the other way round it is the opposite");
    int const order = KpMath::kpOrtTurnOrder(o, a, b);
    require(order >= 0 && order <= 3, "a turn of a polyline is 0 to 3");
    require((order == 1) == (turn == 1) && (order == 2) == (turn == -1), "both turns agree");
}

void checkLines(QPointF const& a1, QPointF const& a2, QPointF const& b1, QPointF const& b2,
    FuzzedDataProvider& input)
{
    QPointF const untouched(-7.0, -8.0);
    QPointF ofLines = untouched;
    int const lines = KpMath::kpCrossPoint(a1, a2, b1, b2, ofLines);
    require(lines >= 0 && lines <= 2, "lines meet, are parallel, or one");
    require(lines == 1 || areSame(ofLines, untouched), "without a point there is none");
    QPointF ofSegments = untouched;
    double const margin = Fuzzing::awkwardReal(input);
    int const segments = KpMath::kpCrossPoint3(a1, a2, b1, b2, ofSegments, margin);
    require(segments == 0 || segments == 1, "segments meet or not");
    require(segments == 1 || areSame(ofSegments, untouched), "without a point there is none");
    if (segments == 1 && isModest(a1) && isModest(a2) && isModest(b1) && isModest(b2)) {
        require(lines == 1, "where segments meet, their lines do");
        require(areSame(ofLines, ofSegments), "in the same point");
    }
}

void checkPoints(QPointF const& a, QPointF const& b, QPointF const& p, FuzzedDataProvider& input)
{
    KpMath::kpProjection(a, p, b);
    KpMath::kpUprightPoint(a, b, p);
    QRectF const rect = KpMath::kpNormalizeRect(a, b);
    require(!(rect.width() < 0.0) && !(rect.height() < 0.0), "no side is negative");
    double const angle = Fuzzing::awkwardReal(input);
    QPointF const onEllipse = KpMath::kpEllipsePoint(rect, angle);
    // Beyond the range of int, turns are left over.
    bool const isPlain = std::abs(angle) < 1e9 && std::abs(rect.x()) < 1e6
        && std::abs(rect.y()) < 1e6 && rect.width() < 1e6 && rect.height() < 1e6;
    if (isPlain) {
        double const height = std::max(rect.height(), 0.1);
        require(onEllipse.x() >= rect.x() - 1e-6 && onEllipse.x() <= rect.right() + 1e-6
                && onEllipse.y() >= rect.y() - 1e-6 && onEllipse.y() <= rect.y() + height + 1e-6,
            "a point of an ellipse is within its rectangle");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::forbidLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    while (input.remaining_bytes() > 0) {
        QPointF const a = point(input);
        QPointF const b = point(input);
        QPointF const c = input.ConsumeIntegralInRange(0, 7) == 0 ? a : point(input);
        QPointF const d = point(input);
        checkVectors(a, input);
        checkDirections(a, b, c);
        checkLines(a, b, c, d, input);
        checkPoints(a, b, c, input);
    }
    return 0;
}
