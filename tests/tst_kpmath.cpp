// SPDX-License-Identifier: MIT
#include "conversion_p.h"
#include "kpmath.h"
#include "testing.h"

#include <cstdlib>
#include <new>

using namespace KpMath;

using Testing::infinite;
using Testing::notANumber;

namespace {

/** Blocks of memory asked for so far. */
long allocations = 0;

using Testing::isSame;

bool isSame(QPointF const& first, QPointF const& second)
{
    return isSame(first.x(), second.x()) && isSame(first.y(), second.y());
}

QString text(QPointF const& point)
{
    return QStringLiteral("(%1, %2)").arg(point.x(), 0, 'g', 17).arg(point.y(), 0, 'g', 17);
}

// The formulas once more, number by number, for random input. Screen coordinates throughout.
namespace Plain {

double const pi = 3.141592653589793;

bool isUnit(double x, double y)
{
    double const off = 1.0 - std::sqrt(x * x + y * y);
    return off < 0.0001 && off > -0.0001;
}

QPointF unit(double x, double y)
{
    double const squares = x * x + y * y;
    if (std::isnan(squares) || squares == 0.0)
        return {x, y};
    return {x / std::sqrt(squares), y / std::sqrt(squares)};
}

double determinant(double const* m)
{
    double sum = m[0] * m[4] * m[8];
    sum += m[3] * m[7] * m[2];
    sum += m[6] * m[1] * m[5];
    sum -= m[2] * m[4] * m[6];
    sum -= m[5] * m[7] * m[0];
    sum -= m[1] * m[8] * m[3];
    return sum;
}

/** The length between two numbers, which is never zero; `least` is the lesser of them. */
double side(double first, double second, double least)
{
    double const distance = std::fabs(first - second);
    return distance == 0.0 ? (0.5 + least) - least : distance;
}

/** Whether `least` is the lesser; which of two zeros or beside no number is left open. */
bool isLesser(double least, double first, double second)
{
    if (first < second)
        return isSame(least, first);
    if (second < first)
        return isSame(least, second);
    return isSame(least, first) || isSame(least, second);
}

bool isRectOf(QRectF const& rect, QPointF p1, QPointF p2)
{
    return isLesser(rect.x(), p1.x(), p2.x()) && isLesser(rect.y(), p1.y(), p2.y())
        && isSame(rect.width(), side(p1.x(), p2.x(), rect.x()))
        && isSame(rect.height(), side(p1.y(), p2.y(), rect.y()));
}

double atan(double ax, double ay, double bx, double by)
{
    double t = std::atan((ay - by) / (ax - bx));
    t = bx > ax ? t + pi : t;
    t = t > pi ? t - 6.283185307179586 : t;
    return t * 57.29577951308232;
}

double atan2(double ax, double ay, double bx, double by)
{
    double const dx = ax - bx;
    double const dy = ay - by;
    bool const isNarrow = dx > -0.1 && dx < 0.1;
    if (isNarrow && std::fabs(dy) > std::fabs(dx))
        return ay < by ? 270.0 : 90.0;
    double t = isNarrow ? 0.0 : std::atan(dy / dx);
    if (bx > ax)
        t = t + pi;
    if (t < 0.0)
        t = t + 6.283185307179586;
    return t * 57.29577951308232;
}

int side(double px, double py, double ax, double ay, double bx, double by)
{
    double const d = (px - bx) * (ay - by) - (py - by) * (ax - bx);
    if (!(d > -1.0 && d < 1.0))
        return d > 0.0 ? 1 : 2;
    if (bx < ax)
        return 4;
    return px >= bx ? 3 : 4;
}

QPointF projection(double ax, double ay, double px, double py, double bx, double by)
{
    double const ux = bx - ax;
    double const uy = by - ay;
    double const t = ((px - ax) * ux + (py - ay) * uy) / (ux * ux + uy * uy);
    return {ax + t * ux, ay + t * uy};
}

int direction(double ox, double oy, double ax, double ay, double bx, double by, double tolerance)
{
    double const c = (ax - ox) * (by - oy) - (bx - ox) * (ay - oy);
    return c < -tolerance ? -1 : (c > tolerance ? 1 : 0);
}

int turn(double ox, double oy, double ax, double ay, double bx, double by)
{
    int const d = direction(ox, oy, ax, ay, bx, by, 0.0);
    if (d > 0)
        return 1;
    if (d < 0)
        return 2;
    double const o = ax == bx ? oy : ox;
    double const a = ax == bx ? ay : ax;
    double const b = ax == bx ? by : bx;
    if (a > o && a > b)
        return 0;
    if (o > a)
        return b > a ? 0 : 3;
    return 3;
}

double degree(double ax, double ay, double ox, double oy, double bx, double by)
{
    double const ux = ax - ox;
    double const uy = oy - ay;
    double const wx = bx - ox;
    double const wy = oy - by;
    double t =
        std::acos((ux * wx + uy * wy) / std::sqrt((ux * ux + uy * uy) * (wx * wx + wy * wy)));
    if (side(ox, oy, ax, ay, bx, by) == 2)
        t = -t;
    return t * 57.29577951308232;
}

QPointF onEllipse(double x, double y, double w, double h, double angle)
{
    double const halfWidth = 0.5 * w;
    double const height = h < 0.1 ? 0.1 : h;
    double const halfHeight = h < 0.1 ? 0.05 : 0.5 * h;
    if (angle > 360.0 || angle < -360.0) {
        double turns = std::trunc(angle / 360.0);
        turns = turns > 2147483647.0 ? 2147483647.0 : turns;
        turns = turns < -2147483648.0 ? -2147483648.0 : turns;
        angle = angle - 360.0 * turns;
    }
    if (angle < -180.0)
        angle = angle + 360.0;
    if (angle > 180.0)
        angle = angle - 360.0;
    double const r = pi * angle / 180.0;
    double t = std::atan(std::tan(r) * w / height);
    if (r < 0.0 && t > 0.0)
        t = t - pi;
    else if (r > 0.0 && t < 0.0)
        t = t + pi;
    return {x + halfWidth + halfWidth * std::cos(t), y + halfHeight + halfHeight * std::sin(t)};
}

QPointF upright(double ax, double ay, double bx, double by, double px, double py)
{
    if (std::fabs(ax - bx) < 0.001)
        return {(ax + bx) * 0.5, py};
    if (std::fabs(ay - by) < 0.001)
        return {px, (ay + by) * 0.5};
    double const k = (ay - by) / (ax - bx);
    float const x = float((k * bx - by + px / k + py) / (1.0 / k + k));
    float const y = float((px - double(x)) / k + py);
    return {double(x), double(y)};
}

struct Crossing
{
    int code;
    QPointF point; ///< kept as it was where the code says that there is none
};

QPointF const untouched(123.0, 456.0);

Crossing cross(QPointF a1, QPointF a2, QPointF b1, QPointF b2)
{
    double const d1x = a2.x() - a1.x();
    double const d1y = a2.y() - a1.y();
    double const d2x = b2.x() - b1.x();
    double const d2y = b2.y() - b1.y();
    double const wx = b1.x() - a1.x();
    double const wy = b1.y() - a1.y();
    double const c = d1x * d2y - d1y * d2x;
    double const d1 = d1x * d1x + d1y * d1y;
    if (c * c > 1e-8 * d1 * (d2x * d2x + d2y * d2y)) {
        double const s = (d2y * wx - d2x * wy) / c;
        return {1, QPointF(a1.x() + s * d1x, a1.y() + s * d1y)};
    }
    double const e = d1y * wx - d1x * wy;
    return {e * e > 1e-6 * d1 * (wx * wx + wy * wy) ? 2 : 0, untouched};
}

Crossing crossInside(QPointF a1, QPointF a2, QPointF b1, QPointF b2, double margin)
{
    double const d1x = a2.x() - a1.x();
    double const d1y = a2.y() - a1.y();
    double const d2x = b2.x() - b1.x();
    double const d2y = b2.y() - b1.y();
    double const wx = b1.x() - a1.x();
    double const wy = b1.y() - a1.y();
    double const c = d1x * d2y - d1y * d2x;
    double const d1 = d1x * d1x + d1y * d1y;
    double const d2 = d2x * d2x + d2y * d2y;
    if (c * c <= 1e-8 * d1 * d2)
        return {0, untouched};
    double const s = (d2y * wx - d2x * wy) / c;
    double const e1 = margin / std::sqrt(d1);
    if (s < e1 || s > 1.0 - e1)
        return {0, untouched};
    double const t = (wx * d1y - wy * d1x) / c;
    double const e2 = margin / std::sqrt(d2);
    if (t < e2 || t > 1.0 - e2)
        return {0, untouched};
    return {1, QPointF(a1.x() + s * d1x, a1.y() + s * d1y)};
}

} // namespace Plain

/** What the functions are asked about: points, and a number for a margin, an angle and so on. */
struct Input
{
    QPointF a;
    QPointF b;
    QPointF c;
    QPointF d;
    double number;
};

/** Points that lie on a grid, near a tolerance, on an axis or a line, or anywhere at all. */
class Inputs
{
public:
    explicit Inputs(quint32 seed)
        : m_random(Testing::seededRandom(seed))
    {
    }

    Input next()
    {
        Input input {point(), point(), point(), point(), number()};
        QPointF const along = input.b - input.a;
        QPointF const across(-along.y(), along.x());
        double const square = along.x() * along.x() + along.y() * along.y();
        // Drawn one by one: the order within an expression is up to the compiler.
        double const drawnPart = part();
        double const little = littleNumber();
        double const sign = m_random.bounded(2) * 2.0 - 1.0;
        switch (m_random.bounded(9)) {
        case 0: // three points on a line, or nearly so
            input.c = input.a + along * drawnPart + across * little;
            break;
        case 1: // within about a unit of area of the line
            input.c = input.a + along * drawnPart + across * (sign * (1.0 + little) / square);
            break;
        case 2: // parallel lines, or nearly so
            input.d = input.c + along * drawnPart + across * little;
            break;
        case 3: // lines whose sine is about the tolerance
            input.d = input.c + along + across * (sign * 1e-4 * (1.0 + little));
            break;
        case 4: // a margin that is about the distance from the end
            input.number = std::sqrt(square) * drawnPart + little;
            break;
        case 5: // equal points
            input.c = input.a;
            break;
        case 6:
            input.d = input.b;
            break;
        case 7: // an angle near an eighth of a turn
            input.number = 45.0 * m_random.bounded(-100, 101);
            input.number += little;
            break;
        default:
            break;
        }
        return input;
    }

private:
    double number()
    {
        static double const special[] = {0.0, -0.0, 0.1, -0.1, 0.09999999999999999,
            0.10000000000000002, 0.05, 0.001, 0.0009999999999999999, 0.0010000000000000002, 1.0,
            -1.0, 0.5, 1e-4, 1e-8, 1e-300, 1e-310, 2.2250738585072014e-308, 5e-324, -5e-324, 1e150,
            -1e150, 1e155, 1.7e308, -1.7e308, 1.7976931348623157e308, infinite, -infinite,
            notANumber, 360.0, -360.0, 360.00000000000006, 180.0, -180.0, 90.0, 45.0, 1e12};
        switch (m_random.bounded(8)) {
        case 0:
            return special[m_random.bounded(int(std::size(special)))];
        case 1:
            return m_last; // points that share a coordinate
        case 2:
            return m_last + (m_random.generateDouble() - 0.5) * 0.003;
        case 3:
            return Testing::awkwardReal(m_random);
        case 4:
            return m_last = m_random.generateDouble() * 2000.0 - 1000.0;
        default:
            return m_last = m_random.bounded(-20, 21);
        }
    }

    QPointF point()
    {
        double const x = number();
        return QPointF(x, number());
    }

    /** A part of a vector: often its start, its middle or its end. */
    double part()
    {
        return m_random.bounded(2) == 0 ? m_random.bounded(-2, 5) * 0.5
                                        : m_random.generateDouble() * 3.0 - 1.0;
    }

    /** Zero, or a power of ten that is at most a hundredth, of either sign. */
    double littleNumber()
    {
        int const sign = m_random.bounded(-1, 2);
        return sign * std::pow(10.0, m_random.bounded(-18, -1));
    }

    QRandomGenerator m_random;
    double m_last = 0.0;
};

} // namespace

#ifdef TESTING_SANITIZED

// The sanitizer has a malloc of its own.
void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

#else

// Containers of Qt do not call operator new, and operator new calls this.
extern "C" void* __libc_malloc(std::size_t size);

extern "C" void* malloc(std::size_t size) noexcept
{
    ++allocations;
    return __libc_malloc(size);
}

#endif

class TestKpMath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unitVectorsAreKnown_data();
    void unitVectorsAreKnown();
    void vectorsAreScaledToUnitLength_data();
    void vectorsAreScaledToUnitLength();
    void noComputedLengthComesNearTheGreatestNumbers();
    void determinantFollowsTheRuleOfSarrus_data();
    void determinantFollowsTheRuleOfSarrus();
    void directionRunsFromMinusToPlus180_data();
    void directionRunsFromMinusToPlus180();
    void directionRunsFrom0To360_data();
    void directionRunsFrom0To360();
    void sideOfALine_data();
    void sideOfALine();
    void footOfAPerpendicular_data();
    void footOfAPerpendicular();
    void turnWithATolerance_data();
    void turnWithATolerance();
    void turnOfAPolyline_data();
    void turnOfAPolyline();
    void angleAtAPoint_data();
    void angleAtAPoint();
    void rectangleOfTwoCorners_data();
    void rectangleOfTwoCorners();
    void pointOfAnEllipse_data();
    void pointOfAnEllipse();
    void anglesOfOneDirectionGiveOnePointOfAnEllipse_data();
    void anglesOfOneDirectionGiveOnePointOfAnEllipse();
    void lowEllipsesAreATenthHigh_data();
    void lowEllipsesAreATenthHigh();
    void footInSinglePrecision_data();
    void footInSinglePrecision();
    void linesMeet_data();
    void linesMeet();
    void segmentsMeetInside_data();
    void segmentsMeetInside();

    void randomInputGivesThePlainFormula();
    void gridGivesThePlainFormula();
    void anglesGiveThePlainFormula();
    void allocationsAreCounted();

    void truncatedNumbersSaturate_data();
    void truncatedNumbersSaturate();
    void roundedNumbersGoUpward_data();
    void roundedNumbersGoUpward();
    void roundedNumbersAreThoseOfQt();
};

void TestKpMath::unitVectorsAreKnown_data()
{
    QTest::addColumn<QPointF>("v");
    QTest::addColumn<bool>("expected");
    QTest::newRow("along x") << QPointF(1, 0) << true;
    QTest::newRow("along y upwards") << QPointF(0, -1) << true;
    QTest::newRow("oblique") << QPointF(0.6, 0.8) << true;
    QTest::newRow("short by half the tolerance") << QPointF(0.99995, 0) << true;
    QTest::newRow("long by half the tolerance") << QPointF(1.00005, 0) << true;
    // In doubles 1 - 0.9999 is just below 0.0001.
    QTest::newRow("short by the tolerance") << QPointF(0.9999, 0) << true;
    QTest::newRow("long by the tolerance") << QPointF(1.0001, 0) << true;
    QTest::newRow("short by the tolerance and one bit") << QPointF(0.9998999999999999, 0) << false;
    QTest::newRow("long by the tolerance and one bit") << QPointF(1.0001000000000002, 0) << false;
    QTest::newRow("short by more") << QPointF(0.9998, 0) << false;
    QTest::newRow("long by more") << QPointF(1.00011, 0) << false;
    QTest::newRow("no length") << QPointF(0, 0) << false;
    QTest::newRow("not a number") << QPointF(notANumber, 0) << false;
    QTest::newRow("infinite") << QPointF(infinite, 0) << false;
}

void TestKpMath::unitVectorsAreKnown()
{
    QFETCH(QPointF, v);
    QFETCH(bool, expected);
    QCOMPARE(kpIsUnitVector(v), expected);
}

void TestKpMath::vectorsAreScaledToUnitLength_data()
{
    QTest::addColumn<QPointF>("v");
    QTest::addColumn<QPointF>("expected");
    QTest::newRow("three, four, five") << QPointF(3, 4) << QPointF(0.6, 0.8);
    QTest::newRow("negative") << QPointF(-3, 4) << QPointF(-0.6, 0.8);
    QTest::newRow("along an axis") << QPointF(0, -7) << QPointF(0, -1);
    QTest::newRow("no length stays") << QPointF(0, 0) << QPointF(0, 0);
    QTest::newRow("so short that its squares vanish stays")
        << QPointF(1e-200, 0) << QPointF(1e-200, 0);
    QTest::newRow("not a number stays") << QPointF(notANumber, 1) << QPointF(notANumber, 1);
    QTest::newRow("minus zero stays") << QPointF(-0.0, 0) << QPointF(-0.0, 0);
    QTest::newRow("minus zero beside a length") << QPointF(-0.0, 2) << QPointF(-0.0, 1);
    QTest::newRow("not a number in y stays") << QPointF(-3, notANumber) << QPointF(-3, notANumber);
    QTest::newRow("one as long as its squares allow")
        << QPointF(1.3407807929942596e154, 0) << QPointF(1, 0);
    QTest::newRow("one bit more is too long")
        << QPointF(1.3407807929942597e154, 0) << QPointF(0, 0);
    QTest::newRow("1.7e308 to the right") << QPointF(1.7e308, 0) << QPointF(0, 0);
    QTest::newRow("1.7e308 upwards") << QPointF(0, -1.7e308) << QPointF(0, -0.0);
    QTest::newRow("1.7e308 both ways") << QPointF(-1.7e308, 1.7e308) << QPointF(-0.0, 0);
    QTest::newRow("a length of 1.7e308, were it computed otherwise")
        << QPointF(1.02e308, 1.36e308) << QPointF(0, 0);
    QTest::newRow("greatest components")
        << QPointF(1.7976931348623157e308, 1.7976931348623157e308) << QPointF(0, 0);
    QTest::newRow("infinite and minus infinite")
        << QPointF(infinite, -infinite) << QPointF(notANumber, notANumber);
    QTest::newRow("infinite component") << QPointF(infinite, 1) << QPointF(notANumber, 0);
}

void TestKpMath::vectorsAreScaledToUnitLength()
{
    QFETCH(QPointF, v);
    QFETCH(QPointF, expected);
    QVERIFY2(isSame(kpUnitVector(v), expected), qPrintable(text(kpUnitVector(v))));
}

void TestKpMath::noComputedLengthComesNearTheGreatestNumbers()
{
    // A length is the root of a number: none between the root of the greatest and infinity.
    double const longest = std::sqrt(std::numeric_limits<double>::max());
    QVERIFY(longest < 1.4e154);
    for (double const factor : {1.0, 2.0, 1e10, 1e153}) {
        double const x = factor * std::nextafter(longest, infinite);
        COMPARE_BITS(kpUnitVector(QPointF(x, 0.0)).x(), 0.0);
        COMPARE_BITS(kpUnitVector(QPointF(0.0, x)).y(), 0.0);
    }
    COMPARE_BITS(kpUnitVector(QPointF(0.0, longest)).y(), 1.0);
}

void TestKpMath::determinantFollowsTheRuleOfSarrus_data()
{
    QTest::addColumn<QVector<double>>("matrix");
    QTest::addColumn<double>("expected");
    using Matrix = QVector<double>;
    QTest::newRow("primes") << Matrix {2, 3, 5, 7, 11, 13, 17, 19, 23} << -78.0;
    QTest::newRow("exchanged rows") << Matrix {7, 11, 13, 2, 3, 5, 17, 19, 23} << 78.0;
    QTest::newRow("equal rows") << Matrix {2, 3, 5, 2, 3, 5, 17, 19, 23} << 0.0;
    QTest::newRow("identity") << Matrix {1, 0, 0, 0, 1, 0, 0, 0, 1} << 1.0;
    QTest::newRow("first product") << Matrix {2, 0, 0, 0, 3, 0, 0, 0, 5} << 30.0;
    QTest::newRow("second product") << Matrix {0, 0, 2, 3, 0, 0, 0, 5, 0} << 30.0;
    QTest::newRow("third product") << Matrix {0, 2, 0, 0, 0, 3, 5, 0, 0} << 30.0;
    QTest::newRow("fourth product") << Matrix {0, 0, 2, 0, 3, 0, 5, 0, 0} << -30.0;
    QTest::newRow("fifth product") << Matrix {2, 0, 0, 0, 0, 3, 0, 5, 0} << -30.0;
    QTest::newRow("sixth product") << Matrix {0, 2, 0, 3, 0, 0, 0, 0, 5} << -30.0;
    QTest::newRow("factors are multiplied in their order")
        << Matrix {1e200, 0, 0, 0, 1e200, 0, 0, 0, 1e-200} << infinite;
    // 1 + 1e16 + 0 - 1e16 - 0 - 1: the first is lost, the last is not.
    QTest::newRow("products are added in their order")
        << Matrix {1, 1, 1e16, 1, 1, 0, 1, 1, 1} << -1.0;
    QTest::newRow("not a number anywhere")
        << Matrix {1, 0, 0, 0, 1, notANumber, 0, 0, 1} << notANumber;
}

void TestKpMath::determinantFollowsTheRuleOfSarrus()
{
    QFETCH(QVector<double>, matrix);
    QFETCH(double, expected);
    QVector<double> rows = matrix;
    double const found = kpDeterminate(rows.data(), rows.data() + 3, rows.data() + 6);
    COMPARE_SAME(found, expected);
    for (int i = 0; i < rows.size(); ++i)
        COMPARE_SAME(rows.at(i), matrix.at(i));
}

void TestKpMath::directionRunsFromMinusToPlus180_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<double>("expected");
    QPointF const origin(0, 0);
    QTest::newRow("right") << QPointF(10, 0) << origin << 0.0;
    QTest::newRow("right and down") << QPointF(10, 10) << origin << 45.0;
    QTest::newRow("down") << QPointF(0, 10) << origin << 90.0;
    QTest::newRow("left and down") << QPointF(-10, 10) << origin << 135.0;
    QTest::newRow("left") << origin << QPointF(10, 0) << 180.0;
    QTest::newRow("left and up") << origin << QPointF(10, 10) << -135.0;
    QTest::newRow("up") << QPointF(0, -10) << origin << -90.0;
    QTest::newRow("right and up") << QPointF(10, -10) << origin << -45.0;
    QTest::newRow("between any two points") << QPointF(13, 5) << QPointF(3, -5) << 45.0;
    QTest::newRow("a hair upwards of left is 180, too") << QPointF(-10, -1e-20) << origin << 180.0;
    QTest::newRow("a hair downwards of left") << QPointF(-10, 1e-20) << origin << 180.0;
    QTest::newRow("a hair to the left of down") << QPointF(-1e-20, 10) << origin << 90.0;
    QTest::newRow("a hair to the left of up") << QPointF(-1e-20, -10) << origin << -90.0;
    QTest::newRow("right and minus zero up") << QPointF(10, -0.0) << origin << -0.0;
    QTest::newRow("infinitely far down") << QPointF(0, infinite) << origin << 90.0;
    QTest::newRow("infinitely far both ways")
        << QPointF(infinite, infinite) << origin << notANumber;
    QTest::newRow("one point") << origin << origin << notANumber;
}

void TestKpMath::directionRunsFromMinusToPlus180()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(double, expected);
    COMPARE_SAME(kpAtan(a, b), expected);
}

void TestKpMath::directionRunsFrom0To360_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<double>("expected");
    QPointF const origin(0, 0);
    QTest::newRow("right") << QPointF(10, 0) << origin << 0.0;
    QTest::newRow("right and down") << QPointF(10, 10) << origin << 45.0;
    QTest::newRow("down") << QPointF(0, 10) << origin << 90.0;
    QTest::newRow("left") << origin << QPointF(10, 0) << 180.0;
    QTest::newRow("left and up") << origin << QPointF(10, 10) << 225.0;
    QTest::newRow("up") << QPointF(0, -10) << origin << 270.0;
    QTest::newRow("right and up") << QPointF(10, -10) << origin << 315.0;
    QTest::newRow("nearly down") << QPointF(0.05, 10) << origin << 90.0;
    QTest::newRow("nearly up") << QPointF(0.05, -10) << origin << 270.0;
    QTest::newRow("nearly down, to the left") << QPointF(-0.05, 10) << origin << 90.0;
    QTest::newRow("narrow and no higher than wide") << QPointF(0.05, 0.05) << origin << 0.0;
    QTest::newRow("the same to the left") << QPointF(-0.05, 0.05) << origin << 180.0;
    QTest::newRow("one point") << origin << origin << 0.0;
    QTest::newRow("wide enough to be exact") << QPointF(0.1, 0.1) << origin << 45.0;
    QTest::newRow("one bit less wide, as high")
        << QPointF(0.09999999999999999, 0.09999999999999999) << origin << 0.0;
    QTest::newRow("one bit less wide, higher")
        << QPointF(0.09999999999999999, 0.1) << origin << 90.0;
    QTest::newRow("wide enough to the left") << QPointF(-0.1, 0.1) << origin << 135.0;
    QTest::newRow("one bit less wide to the left, as high")
        << QPointF(-0.09999999999999999, -0.09999999999999999) << origin << 180.0;
    QTest::newRow("one bit less wide to the left, higher upwards")
        << QPointF(-0.09999999999999999, -0.1) << origin << 270.0;
    QTest::newRow("narrow, level to the left") << QPointF(-0.05, 0) << origin << 180.0;
    QTest::newRow("width not a number") << QPointF(notANumber, 1) << origin << notANumber;
    QTest::newRow("narrow, height not a number") << QPointF(0.05, notANumber) << origin << 0.0;
    QTest::newRow("infinitely far down") << QPointF(0, infinite) << origin << 90.0;
    QTest::newRow("infinitely far left") << QPointF(-infinite, 0) << origin << 180.0;
    QTest::newRow("a hair before the full circle") << QPointF(10, -1e-20) << origin << 360.0;
}

void TestKpMath::directionRunsFrom0To360()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(double, expected);
    COMPARE_SAME(kpAtan2(a, b), expected);
}

void TestKpMath::sideOfALine_data()
{
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<int>("side");
    QPointF const top(0, 0);
    QPointF const bottom(0, 10);
    QTest::newRow("left of a line downwards") << QPointF(-5, 5) << top << bottom << 1;
    QTest::newRow("right of it") << QPointF(5, 5) << top << bottom << 2;
    QTest::newRow("left of a line upwards, as seen") << QPointF(-5, 5) << bottom << top << 2;
    QTest::newRow("between the points of a level line")
        << QPointF(5, 0) << QPointF(0, 0) << QPointF(10, 0) << 4;
    QTest::newRow("beyond its right end") << QPointF(15, 0) << QPointF(0, 0) << QPointF(10, 0) << 3;
    QTest::newRow("at its right end") << QPointF(10, 0) << QPointF(0, 0) << QPointF(10, 0) << 3;
    QTest::newRow("on a line to the left")
        << QPointF(15, 0) << QPointF(10, 0) << QPointF(0, 0) << 4;
    QTest::newRow("off by less than one unit of area")
        << QPointF(5, 0.09) << QPointF(0, 0) << QPointF(10, 0) << 4;
    QTest::newRow("off by one unit of area")
        << QPointF(5, 0.1) << QPointF(0, 0) << QPointF(10, 0) << 1;
    QTest::newRow("off by one to the other side")
        << QPointF(5, -0.1) << QPointF(0, 0) << QPointF(10, 0) << 2;
    QTest::newRow("off by one bit less than one unit of area")
        << QPointF(0, 0.9999999999999999) << QPointF(-1, 0) << QPointF(0, 0) << 3;
    QTest::newRow("the same to the other side")
        << QPointF(0, -0.9999999999999999) << QPointF(-1, 0) << QPointF(0, 0) << 3;
    QTest::newRow("a long line has the same tolerance")
        << QPointF(500, 0.001) << QPointF(0, 0) << QPointF(1000, 0) << 1;
    QTest::newRow("before its left end") << QPointF(-5, 0) << QPointF(0, 0) << QPointF(10, 0) << 4;
    QTest::newRow("on an upright line") << QPointF(0, 5) << top << bottom << 3;
    QTest::newRow("just left of an upright line") << QPointF(-0.05, 5) << top << bottom << 4;
    QTest::newRow("three times one point") << top << top << top << 3;
    QTest::newRow("not a number") << QPointF(notANumber, 0) << top << bottom << 2;
}

void TestKpMath::sideOfALine()
{
    QFETCH(QPointF, p);
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(int, side);
    QCOMPARE(kpLineSide(p, a, b), side);
}

void TestKpMath::footOfAPerpendicular_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<QPointF>("foot");
    QTest::newRow("level line") << QPointF(0, 5) << QPointF(3, 9) << QPointF(10, 5)
                                << QPointF(3, 5);
    QTest::newRow("upright line") << QPointF(2, 0) << QPointF(9, 4) << QPointF(2, 8)
                                  << QPointF(2, 4);
    QTest::newRow("oblique line") << QPointF(0, 0) << QPointF(0, 10) << QPointF(8, 8)
                                  << QPointF(5, 5);
    QTest::newRow("beyond the end")
        << QPointF(0, 0) << QPointF(20, 3) << QPointF(10, 0) << QPointF(20, 0);
    QTest::newRow("one point") << QPointF(1, 1) << QPointF(2, 3) << QPointF(1, 1)
                               << QPointF(notANumber, notANumber);
}

void TestKpMath::footOfAPerpendicular()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, p);
    QFETCH(QPointF, b);
    QFETCH(QPointF, foot);
    QVERIFY2(isSame(kpProjection(a, p, b), foot), qPrintable(text(kpProjection(a, p, b))));
}

void TestKpMath::turnWithATolerance_data()
{
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<double>("eps");
    QTest::addColumn<int>("turn");
    // Seen from (0, 0) along (10, 0): the cross product is ten times y.
    QTest::newRow("clockwise") << QPointF(5, 1) << 0.0 << 1;
    QTest::newRow("counter-clockwise") << QPointF(5, -1) << 0.0 << -1;
    QTest::newRow("straight") << QPointF(5, 0) << 0.0 << 0;
    QTest::newRow("at the tolerance") << QPointF(5, 1) << 10.0 << 0;
    QTest::newRow("beyond it") << QPointF(5, 1) << 9.99 << 1;
    QTest::newRow("at the tolerance, the other way") << QPointF(5, -1) << 10.0 << 0;
    QTest::newRow("a negative tolerance makes a straight line turn back")
        << QPointF(5, 0) << -1.0 << -1;
    QTest::newRow("not a number") << QPointF(5, notANumber) << 0.0 << 0;
}

void TestKpMath::turnWithATolerance()
{
    QFETCH(QPointF, b);
    QFETCH(double, eps);
    QFETCH(int, turn);
    QCOMPARE(kpVectorDir(QPointF(0, 0), QPointF(10, 0), b, eps), turn);
}

void TestKpMath::turnOfAPolyline_data()
{
    QTest::addColumn<QPointF>("o");
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<int>("turn");
    auto const row = [](char const* name, QPointF o, QPointF a, QPointF b, int turn) {
        QTest::newRow(name) << o << a << b << turn;
    };
    row("clockwise", {0, 0}, {10, 0}, {10, 5}, 1);
    row("counter-clockwise", {0, 0}, {10, 0}, {10, -5}, 2);
    row("back, to the right first", {0, 0}, {10, 0}, {5, 0}, 0);
    row("back, to the left first", {0, 0}, {-10, 0}, {-5, 0}, 0);
    row("straight to the right", {0, 0}, {5, 0}, {10, 0}, 3);
    row("straight to the left", {0, 0}, {-5, 0}, {-10, 0}, 3);
    row("back, downwards first", {0, 0}, {0, 10}, {0, 5}, 0);
    row("back, upwards first", {0, 0}, {0, -10}, {0, -5}, 0);
    row("straight down", {0, 0}, {0, 5}, {0, 10}, 3);
    row("straight up", {0, 0}, {0, -5}, {0, -10}, 3);
    row("upright but for one bit", {1.0000000000000002, 5}, {1, 5}, {1.0000000000000002, 5}, 0);
    row("back to the start", {0, 0}, {10, 0}, {0, 0}, 0);
    row("back beyond the start", {0, 0}, {10, 0}, {-5, 0}, 0);
    row("back, oblique", {0, 0}, {10, 10}, {5, 5}, 0);
    row("straight, oblique", {0, 0}, {5, 5}, {10, 10}, 3);
    row("no second step", {0, 0}, {10, 0}, {10, 0}, 3);
    row("no second step upwards", {0, 0}, {0, -10}, {0, -10}, 3);
    row("a hair clockwise", {0, 0}, {10, 0}, {5, 1e-300}, 1);
    row("a hair counter-clockwise", {0, 0}, {10, 0}, {5, -1e-300}, 2);
    row("not a number", {0, 0}, {10, 0}, {notANumber, 5}, 3);
    row("no step at all", {4, 4}, {4, 4}, {4, 4}, 3);
    row("from the turning point", {5, 0}, {5, 0}, {9, 0}, 3);
    row("upright but for the first point", {1, 1}, {1, 1}, {1, 0}, 3);
}

void TestKpMath::turnOfAPolyline()
{
    QFETCH(QPointF, o);
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(int, turn);
    QCOMPARE(kpOrtTurnOrder(o, a, b), turn);
}

void TestKpMath::angleAtAPoint_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<double>("degrees");
    QPointF const right(10, 0);
    QTest::newRow("a quarter clockwise") << right << QPointF(0, 10) << 90.0;
    QTest::newRow("a quarter counter-clockwise") << right << QPointF(0, -10) << -90.0;
    QTest::newRow("the same direction") << right << QPointF(20, 0) << 0.0;
    QTest::newRow("opposite") << right << QPointF(-5, 0) << 180.0;
    QTest::newRow("a side of less than one unit of area has no sign")
        << QPointF(0.5, 0) << QPointF(0, -0.5) << 90.0;
    QTest::newRow("a cosine that rounding takes beyond 1")
        << QPointF(0.1, 0.5) << QPointF(0.30000000000000004, 1.5) << notANumber;
    QTest::newRow("no first arm") << QPointF(0, 0) << right << notANumber;
    QTest::newRow("no second arm") << right << QPointF(0, 0) << notANumber;
}

void TestKpMath::angleAtAPoint()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(double, degrees);
    double const angle = kpDegree(a, QPointF(0, 0), b);
    COMPARE_SAME(angle, degrees);
}

void TestKpMath::rectangleOfTwoCorners_data()
{
    QTest::addColumn<QPointF>("p1");
    QTest::addColumn<QPointF>("p2");
    QTest::addColumn<QRectF>("rect");
    QTest::newRow("top left and bottom right")
        << QPointF(1, 2) << QPointF(4, 9) << QRectF(1, 2, 3, 7);
    QTest::newRow("bottom right and top left")
        << QPointF(4, 9) << QPointF(1, 2) << QRectF(1, 2, 3, 7);
    QTest::newRow("bottom left and top right")
        << QPointF(1, 9) << QPointF(4, 2) << QRectF(1, 2, 3, 7);
    QTest::newRow("no width") << QPointF(5, 5) << QPointF(5, 9) << QRectF(5, 5, 0.5, 4);
    QTest::newRow("no height") << QPointF(5, 5) << QPointF(9, 5) << QRectF(5, 5, 4, 0.5);
    QTest::newRow("one point") << QPointF(0, 0) << QPointF(0, 0) << QRectF(0, 0, 0.5, 0.5);
    QTest::newRow("no width, rounded")
        << QPointF(4503599627370497.0, 0) << QPointF(4503599627370497.0, 1)
        << QRectF(4503599627370497.0, 0, 1, 1);
    QTest::newRow("no width, so far away that half a unit is lost")
        << QPointF(1e300, 0) << QPointF(1e300, 1) << QRectF(1e300, 0, 0, 1);
}

void TestKpMath::rectangleOfTwoCorners()
{
    QFETCH(QPointF, p1);
    QFETCH(QPointF, p2);
    QFETCH(QRectF, rect);
    QRectF const found = kpNormalizeRect(p1, p2);
    COMPARE_BITS(found.x(), rect.x());
    COMPARE_BITS(found.y(), rect.y());
    COMPARE_BITS(found.width(), rect.width());
    COMPARE_BITS(found.height(), rect.height());
}

void TestKpMath::pointOfAnEllipse_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<double>("angle");
    QTest::addColumn<QPointF>("point");
    QRectF const rect(0, 0, 100, 50);
    QTest::newRow("right") << rect << 0.0 << QPointF(100, 25);
    QTest::newRow("down") << rect << 90.0 << QPointF(50, 50);
    QTest::newRow("left") << rect << 180.0 << QPointF(0, 25);
    QTest::newRow("up") << rect << -90.0 << QPointF(50, 0);
    QTest::newRow("up, counted on") << rect << 270.0 << QPointF(50, 0);
    QTest::newRow("a turn and a quarter") << rect << 450.0 << QPointF(50, 50);
    QTest::newRow("a turn and a quarter back") << rect << -450.0 << QPointF(50, 0);
    QTest::newRow("a thousand turns") << rect << 360090.0 << QPointF(50, 50);
    QTest::newRow("elsewhere") << QRectF(10, 20, 100, 50) << 0.0 << QPointF(110, 45);
    QTest::newRow("flat") << QRectF(0, 0, 100, 0.05) << 90.0 << QPointF(50, 0.1);
    QTest::newRow("without height") << QRectF(0, 0, 100, 0) << 90.0 << QPointF(50, 0.1);
    QTest::newRow("without width") << QRectF(0, 0, 0, 50) << 0.0 << QPointF(0, 25);
}

void TestKpMath::pointOfAnEllipse()
{
    QFETCH(QRectF, rect);
    QFETCH(double, angle);
    QFETCH(QPointF, point);
    QPointF const found = kpEllipsePoint(rect, angle);
    QVERIFY2(std::abs(found.x() - point.x()) < 1e-12 && std::abs(found.y() - point.y()) < 1e-12,
        qPrintable(text(found)));
}

void TestKpMath::anglesOfOneDirectionGiveOnePointOfAnEllipse_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<double>("same");
    QTest::newRow("a turn more") << 450.0 << 90.0;
    QTest::newRow("a turn less") << -450.0 << -90.0;
    QTest::newRow("just a turn") << 360.0 << 0.0;
    QTest::newRow("just a turn back") << -360.0 << 0.0;
    QTest::newRow("two turns") << 720.0 << 0.0;
    QTest::newRow("three quarters") << 270.0 << -90.0;
    QTest::newRow("three quarters back") << -270.0 << 90.0;
    QTest::newRow("a turn and a half") << 540.0 << 180.0;
    QTest::newRow("a turn and a half back") << -540.0 << -180.0;
    QTest::newRow("turns whose product with 360 is above int") << 3600000090.0 << 90.0;
    QTest::newRow("as many turns back") << -3600000090.0 << -90.0;
    QTest::newRow("as many turns as an int holds") << 773094112920.0 << 0.0;
}

void TestKpMath::anglesOfOneDirectionGiveOnePointOfAnEllipse()
{
    QFETCH(double, angle);
    QFETCH(double, same);
    for (QRectF const& rect : {QRectF(0, 0, 100, 50), QRectF(-3, 7, 1, 900), QRectF(1, 2, 3, 0)}) {
        QPointF const point = kpEllipsePoint(rect, angle);
        QVERIFY2(isSame(point, kpEllipsePoint(rect, same)), qPrintable(text(point)));
    }
}

void TestKpMath::lowEllipsesAreATenthHigh_data()
{
    QTest::addColumn<double>("height");
    QTest::newRow("half of it") << 0.05;
    QTest::newRow("one bit less") << 0.09999999999999999;
    QTest::newRow("none") << 0.0;
    QTest::newRow("negative") << -50.0;
    QTest::newRow("minus infinity") << -infinite;
}

void TestKpMath::lowEllipsesAreATenthHigh()
{
    QFETCH(double, height);
    for (double angle = -400.0; angle <= 400.0; angle += 12.5) {
        QPointF const point = kpEllipsePoint(QRectF(3, 4, 100, height), angle);
        QPointF const same = kpEllipsePoint(QRectF(3, 4, 100, 0.1), angle);
        QVERIFY2(isSame(point, same), qPrintable(text(point)));
    }
}

void TestKpMath::footInSinglePrecision_data()
{
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<QPointF>("foot");
    QTest::newRow("nearly upright")
        << QPointF(0, 0) << QPointF(0.0005, 100) << QPointF(7, 3) << QPointF(0.00025, 3);
    QTest::newRow("nearly level") << QPointF(0, 0) << QPointF(100, 0.0005) << QPointF(7, 3)
                                  << QPointF(7, 0.00025);
    QTest::newRow("an upright line is not rounded")
        << QPointF(0.1, 0) << QPointF(0.1, 9) << QPointF(7, 0.3) << QPointF(0.1, 0.3);
    QTest::newRow("one point counts as upright")
        << QPointF(2, 2) << QPointF(2, 2) << QPointF(7, 3) << QPointF(2, 3);
    QTest::newRow("oblique") << QPointF(0, 0) << QPointF(8, 8) << QPointF(0, 10) << QPointF(5, 5);
    QTest::newRow("one bit below the width of a line that is not upright")
        << QPointF(0, 0) << QPointF(0.0009999999999999999, 100) << QPointF(7, 3)
        << QPointF(0.0009999999999999999 * 0.5, 3);
    QTest::newRow("just wide enough not to be upright")
        << QPointF(0, 0) << QPointF(0.001, 100) << QPointF(7, 3)
        << QPointF(3.000069955305662e-05, 3.000070095062256);
    QTest::newRow("just high enough not to be level")
        << QPointF(0, 0) << QPointF(100, 0.001) << QPointF(7, 3)
        << QPointF(7.000030040740967, -0.0040740966796875);
    QTest::newRow("upright before level")
        << QPointF(0, 0) << QPointF(0.0005, 0.0007) << QPointF(7, 3) << QPointF(0.00025, 3);
    QTest::newRow("a level line is not rounded")
        << QPointF(0, 0.1) << QPointF(9, 0.1) << QPointF(0.3, 7) << QPointF(0.3, 0.1);
    QTest::newRow("too far for single precision")
        << QPointF(0, 0) << QPointF(1, 1) << QPointF(1e300, 1e300) << QPointF(infinite, -infinite);
    // A third and two thirds in single precision.
    QTest::newRow("rounded") << QPointF(0, 0) << QPointF(1, 1) << QPointF(0, 2.0 / 3.0)
                             << QPointF(0.3333333432674408, 0.3333333134651184);
}

void TestKpMath::footInSinglePrecision()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(QPointF, p);
    QFETCH(QPointF, foot);
    QVERIFY2(isSame(kpUprightPoint(a, b, p), foot), qPrintable(text(kpUprightPoint(a, b, p))));
}

void TestKpMath::linesMeet_data()
{
    QTest::addColumn<QVector<QPointF>>("lines");
    QTest::addColumn<int>("code");
    QTest::addColumn<QPointF>("point");
    using Points = QVector<QPointF>;
    QTest::newRow("crossing") << Points {{0, 0}, {10, 10}, {0, 10}, {10, 0}} << 1 << QPointF(5, 5);
    QTest::newRow("beyond their points")
        << Points {{0, 0}, {1, 0}, {8, 5}, {8, 4}} << 1 << QPointF(8, 0);
    QTest::newRow("parallel") << Points {{0, 0}, {10, 0}, {0, 5}, {10, 5}} << 2 << Plain::untouched;
    QTest::newRow("one line") << Points {{0, 0}, {10, 0}, {20, 0}, {35, 0}} << 0
                              << Plain::untouched;
    QTest::newRow("the same points")
        << Points {{0, 0}, {10, 3}, {0, 0}, {10, 3}} << 0 << Plain::untouched;
    QTest::newRow("no first direction")
        << Points {{3, 3}, {3, 3}, {0, 0}, {10, 0}} << 0 << Plain::untouched;
    QTest::newRow("a sine of 0.0002")
        << Points {{0, 0}, {1, 0}, {0, 0}, {1, 0.0002}} << 1 << QPointF(0, 0);
    QTest::newRow("a sine of 0.00005")
        << Points {{0, 0}, {1, 0}, {5, 0}, {6, 0.00005}} << 0 << Plain::untouched;
    QTest::newRow("apart by a sine of 0.0009")
        << Points {{0, 0}, {1, 0}, {1, 0.0009}, {2, 0.0009}} << 0 << Plain::untouched;
    QTest::newRow("apart by a sine of 0.0011")
        << Points {{0, 0}, {1, 0}, {1, 0.0011}, {2, 0.0011}} << 2 << Plain::untouched;
    QTest::newRow("parallel the other way")
        << Points {{0, 0}, {10, 0}, {10, 5}, {0, 5}} << 2 << Plain::untouched;
    QTest::newRow("no second direction, apart")
        << Points {{0, 0}, {10, 0}, {3, 3}, {3, 3}} << 2 << Plain::untouched;
    QTest::newRow("lengths do not matter")
        << Points {{0, 0}, {1024, 0}, {3, 7}, {3, 7.0009765625}} << 1 << QPointF(3, 0);
    QTest::newRow("not a number") << Points {{0, 0}, {notANumber, 1}, {0, 1}, {1, 0}} << 0
                                  << Plain::untouched;
}

void TestKpMath::linesMeet()
{
    QFETCH(QVector<QPointF>, lines);
    QFETCH(int, code);
    QFETCH(QPointF, point);
    QPointF out = Plain::untouched;
    QCOMPARE(kpCrossPoint(lines.at(0), lines.at(1), lines.at(2), lines.at(3), out), code);
    QVERIFY2(isSame(out, point), qPrintable(text(out)));
}

void TestKpMath::segmentsMeetInside_data()
{
    QTest::addColumn<QVector<QPointF>>("lines");
    QTest::addColumn<double>("margin");
    QTest::addColumn<int>("code");
    QTest::addColumn<QPointF>("point");
    using Points = QVector<QPointF>;
    Points const diagonals {{0, 0}, {10, 10}, {0, 10}, {10, 0}};
    QTest::newRow("diagonals") << diagonals << 1.0 << 1 << QPointF(5, 5);
    QTest::newRow("diagonals, a margin of more than half")
        << diagonals << 7.1 << 0 << Plain::untouched;
    Points const joined {{0, 0}, {10, 0}, {10, 0}, {10, 10}};
    QTest::newRow("at a shared end") << joined << 0.0 << 1 << QPointF(10, 0);
    QTest::newRow("at a shared end with a margin") << joined << 0.001 << 0 << Plain::untouched;
    Points const crossed {{0, 0}, {10, 0}, {2, -5}, {2, 5}};
    QTest::newRow("just at the margin") << crossed << 2.0 << 1 << QPointF(2, 0);
    QTest::newRow("within the margin of the first")
        << crossed << 2.0000001 << 0 << Plain::untouched;
    QTest::newRow("just at the margin of the far end")
        << Points {{0, 0}, {8, 0}, {6, -5}, {6, 5}} << 2.0 << 1 << QPointF(6, 0);
    QTest::newRow("within the margin of the second")
        << Points {{0, 0}, {10, 0}, {5, -1}, {5, 9}} << 1.5 << 0 << Plain::untouched;
    QTest::newRow("beyond the second")
        << Points {{0, 0}, {10, 0}, {5, 1}, {5, 9}} << 0.0 << 0 << Plain::untouched;
    QTest::newRow("a negative margin reaches beyond the ends")
        << Points {{0, 0}, {10, 0}, {5, 1}, {5, 9}} << -2.0 << 1 << QPointF(5, 0);
    QTest::newRow("just at the margin of the second")
        << Points {{0, 0}, {10, 0}, {5, -2}, {5, 6}} << 2.0 << 1 << QPointF(5, 0);
    QTest::newRow("just at the margin of the far end of the second")
        << Points {{0, 0}, {10, 0}, {5, -6}, {5, 2}} << 2.0 << 1 << QPointF(5, 0);
    QTest::newRow("within the margin of the far end of the second")
        << Points {{0, 0}, {10, 0}, {5, -6}, {5, 2}} << 2.0000001 << 0 << Plain::untouched;
    QTest::newRow("at the starts of both")
        << Points {{0, 0}, {10, 0}, {0, 0}, {0, 10}} << 0.0 << 1 << QPointF(0, 0);
    QTest::newRow("no length") << Points {{3, 0}, {3, 0}, {3, -1}, {3, 1}} << 0.0 << 0
                               << Plain::untouched;
    QTest::newRow("a margin that is not a number") << diagonals << notANumber << 1 << QPointF(5, 5);
    QTest::newRow("parallel") << Points {{0, 0}, {10, 0}, {0, 1}, {10, 1}} << 0.0 << 0
                              << Plain::untouched;
    QTest::newRow("one line") << Points {{0, 0}, {10, 0}, {5, 0}, {15, 0}} << 0.0 << 0
                              << Plain::untouched;
    QTest::newRow("not a number") << Points {{0, 0}, {notANumber, 1}, {0, 1}, {1, 0}} << 0.0 << 1
                                  << QPointF(notANumber, notANumber);
}

void TestKpMath::segmentsMeetInside()
{
    QFETCH(QVector<QPointF>, lines);
    QFETCH(double, margin);
    QFETCH(int, code);
    QFETCH(QPointF, point);
    QPointF out = Plain::untouched;
    QCOMPARE(kpCrossPoint3(lines.at(0), lines.at(1), lines.at(2), lines.at(3), out, margin), code);
    QVERIFY2(isSame(out, point), qPrintable(text(out)));
}

namespace {

/** The names of the functions whose results differ from the plain formulas. */
QStringList differences(Input const& input)
{
    QPointF const a = input.a;
    QPointF const b = input.b;
    QPointF const c = input.c;
    QPointF const d = input.d;
    double const number = input.number;
    QStringList names;
    auto const expect = [&names](bool same, char const* name) {
        if (!same)
            names << QString(name);
    };
    expect(kpIsUnitVector(a) == Plain::isUnit(a.x(), a.y()), "kpIsUnitVector");
    expect(isSame(kpUnitVector(a), Plain::unit(a.x(), a.y())), "kpUnitVector");
    double matrix[] = {a.x(), a.y(), b.x(), b.y(), c.x(), c.y(), d.x(), d.y(), number};
    expect(isSame(kpDeterminate(matrix, matrix + 3, matrix + 6), Plain::determinant(matrix)),
        "kpDeterminate");
    expect(isSame(kpAtan(a, b), Plain::atan(a.x(), a.y(), b.x(), b.y())), "kpAtan");
    expect(isSame(kpAtan2(a, b), Plain::atan2(a.x(), a.y(), b.x(), b.y())), "kpAtan2");
    expect(
        kpLineSide(a, b, c) == Plain::side(a.x(), a.y(), b.x(), b.y(), c.x(), c.y()), "kpLineSide");
    expect(
        isSame(kpProjection(a, b, c), Plain::projection(a.x(), a.y(), b.x(), b.y(), c.x(), c.y())),
        "kpProjection");
    expect(kpVectorDir(a, b, c, number)
            == Plain::direction(a.x(), a.y(), b.x(), b.y(), c.x(), c.y(), number),
        "kpVectorDir");
    expect(kpOrtTurnOrder(a, b, c) == Plain::turn(a.x(), a.y(), b.x(), b.y(), c.x(), c.y()),
        "kpOrtTurnOrder");
    expect(isSame(kpDegree(a, b, c), Plain::degree(a.x(), a.y(), b.x(), b.y(), c.x(), c.y())),
        "kpDegree");
    expect(Plain::isRectOf(kpNormalizeRect(a, c), a, c), "kpNormalizeRect");
    expect(isSame(kpEllipsePoint(QRectF(a.x(), a.y(), b.x(), b.y()), number),
               Plain::onEllipse(a.x(), a.y(), b.x(), b.y(), number)),
        "kpEllipsePoint");
    expect(
        isSame(kpUprightPoint(a, b, c), Plain::upright(a.x(), a.y(), b.x(), b.y(), c.x(), c.y())),
        "kpUprightPoint");
    QPointF out = Plain::untouched;
    Plain::Crossing const crossing = Plain::cross(a, b, c, d);
    expect(kpCrossPoint(a, b, c, d, out) == crossing.code && isSame(out, crossing.point),
        "kpCrossPoint");
    out = Plain::untouched;
    Plain::Crossing const inside = Plain::crossInside(a, b, c, d, number);
    expect(kpCrossPoint3(a, b, c, d, out, number) == inside.code && isSame(out, inside.point),
        "kpCrossPoint3");
    return names;
}

QString text(Input const& input)
{
    return text(input.a) + text(input.b) + text(input.c) + text(input.d)
        + QString::number(input.number, 'g', 17);
}

} // namespace

void TestKpMath::randomInputGivesThePlainFormula()
{
    int const count = 1000000;
    Inputs inputs(271828);
    long const before = allocations;
    for (int i = 0; i < count; ++i) {
        Input const input = inputs.next();
        QStringList const names = differences(input);
        if (!names.isEmpty())
            QFAIL(qPrintable(names.join(' ') + text(input)));
    }
    // Nothing is logged either: a message would be a block of memory.
    QCOMPARE(allocations - before, 0L);
}

void TestKpMath::gridGivesThePlainFormula()
{
    // Collinear, axis-parallel and coinciding points are the rule here.
    double const places[] = {-10.0, -1.0, -0.0, 0.0, 0.0009999999999999999, 0.0995, 1.0};
    QVector<QPointF> points;
    for (double const x : places) {
        for (double const y : places)
            points << QPointF(x, y);
    }
    int turn = 0;
    for (QPointF const& a : qAsConst(points)) {
        for (QPointF const& b : qAsConst(points)) {
            ++turn; // so that the fourth point does not depend on the third alone
            for (QPointF const& c : qAsConst(points)) {
                for (double const number : {0.0, 1.0}) {
                    turn = (turn + 5) % points.size();
                    Input const input {a, b, c, points.at(turn), number};
                    QStringList const names = differences(input);
                    if (!names.isEmpty())
                        QFAIL(qPrintable(names.join(' ') + text(input)));
                }
            }
        }
    }
}

void TestKpMath::anglesGiveThePlainFormula()
{
    for (double const height : {50.0, 100.0, 0.1, 0.0}) {
        for (int eighths = -8000; eighths <= 8000; ++eighths) {
            double const angle = eighths * 0.125;
            QPointF const found = kpEllipsePoint(QRectF(1.5, -2.5, 100, height), angle);
            if (!isSame(found, Plain::onEllipse(1.5, -2.5, 100, height, angle)))
                QFAIL(qPrintable(text(found) + QString::number(angle)));
        }
    }
}

void TestKpMath::allocationsAreCounted()
{
    long const before = allocations;
    // Not a new-expression: compilers may leave that out.
    ::operator delete(::operator new(16));
    QVERIFY(allocations > before);
}

void TestKpMath::truncatedNumbersSaturate_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("expected");
    QTest::newRow("towards zero") << 2.9 << 2;
    QTest::newRow("towards zero from below") << -2.9 << -2;
    QTest::newRow("a fraction") << 0.9999999999999999 << 0;
    QTest::newRow("a negative fraction") << -0.9999999999999999 << 0;
    QTest::newRow("minus zero") << -0.0 << 0;
    QTest::newRow("least positive number") << 5e-324 << 0;
    QTest::newRow("a fraction less than the greatest int") << 2147483646.9 << 2147483646;
    QTest::newRow("a fraction more than the least int") << -2147483647.9 << -2147483647;
    QTest::newRow("a fraction less than the least int")
        << -2147483648.9 << std::numeric_limits<int>::min();
    QTest::newRow("minus huge") << -1e300 << std::numeric_limits<int>::min();
    QTest::newRow("greatest int") << 2147483647.0 << std::numeric_limits<int>::max();
    QTest::newRow("a fraction more") << 2147483647.9 << std::numeric_limits<int>::max();
    QTest::newRow("one more") << 2147483648.0 << std::numeric_limits<int>::max();
    QTest::newRow("least int") << -2147483648.0 << std::numeric_limits<int>::min();
    QTest::newRow("one less") << -2147483649.0 << std::numeric_limits<int>::min();
    QTest::newRow("huge") << 1e300 << std::numeric_limits<int>::max();
    QTest::newRow("infinite") << infinite << std::numeric_limits<int>::max();
    QTest::newRow("minus infinity") << -infinite << std::numeric_limits<int>::min();
    QTest::newRow("not a number") << notANumber << 0;
}

void TestKpMath::truncatedNumbersSaturate()
{
    QFETCH(double, number);
    QFETCH(int, expected);
    QCOMPARE(Conversion::truncated(number), expected);
}

void TestKpMath::roundedNumbersGoUpward_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("expected");
    QTest::newRow("half") << 0.5 << 1;
    QTest::newRow("minus half") << -0.5 << 0;
    QTest::newRow("two and a half") << 2.5 << 3;
    QTest::newRow("minus two and a half") << -2.5 << -2;
    QTest::newRow("less than a half") << 2.4999999999999996 << 2;
    QTest::newRow("the number before a half, whose sum is rounded up") << 0.49999999999999994 << 1;
    QTest::newRow("its negative") << -0.49999999999999994 << 0;
    QTest::newRow("minus half and one bit") << -0.5000000000000001 << -1;
    QTest::newRow("minus one and a half") << -1.5 << -1;
    QTest::newRow("greatest int") << 2147483647.0 << std::numeric_limits<int>::max();
    QTest::newRow("half less than the greatest int")
        << 2147483646.5 << std::numeric_limits<int>::max();
    QTest::newRow("more than half less") << 2147483646.4 << 2147483646;
    QTest::newRow("half more than the greatest int")
        << 2147483647.5 << std::numeric_limits<int>::max();
    QTest::newRow("least int") << -2147483648.0 << std::numeric_limits<int>::min();
    QTest::newRow("half more than the least int") << -2147483647.5 << -2147483647;
    QTest::newRow("half less than the least int")
        << -2147483648.5 << std::numeric_limits<int>::min();
    QTest::newRow("infinite") << infinite << std::numeric_limits<int>::max();
    QTest::newRow("minus infinity") << -infinite << std::numeric_limits<int>::min();
    QTest::newRow("huge") << 1e300 << std::numeric_limits<int>::max();
    QTest::newRow("minus huge") << -1e300 << std::numeric_limits<int>::min();
    QTest::newRow("not a number") << notANumber << 0;
}

void TestKpMath::roundedNumbersGoUpward()
{
    QFETCH(double, number);
    QFETCH(int, expected);
    QCOMPARE(Conversion::rounded(number), expected);
}

void TestKpMath::roundedNumbersAreThoseOfQt()
{
    QRandomGenerator random = Testing::seededRandom(31415);
    int different = 0;
    for (int i = 0; i < 1000000; ++i) {
        double number = (random.generateDouble() - 0.5) * std::pow(10.0, random.bounded(10));
        if (i % 4 == 0)
            number = std::floor(number) + 0.5;
        if (i % 4 == 1)
            number = std::nextafter(std::floor(number) + 0.5, -1e10);
        different += Conversion::rounded(number) == qRound(number) ? 0 : 1;
    }
    QCOMPARE(different, 0);
}

QTEST_APPLESS_MAIN(TestKpMath)
#include "tst_kpmath.moc"
