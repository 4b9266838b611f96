#include "conversion_p.h"
#include "kpmath.h"
#include "outlinetesting.h"

#include <cstdlib>
#include <functional>
#include <new>

using namespace KpMath;

namespace {

/** Blocks of memory asked for by operator new so far. */
long allocations = 0;

double const notANumber = std::numeric_limits<double>::quiet_NaN();
double const infinite = std::numeric_limits<double>::infinity();

/** Equal to the last bit; all that is not a number is alike. */
bool isSame(double first, double second)
{
    return (std::isnan(first) && std::isnan(second))
        || std::memcmp(&first, &second, sizeof first) == 0;
}

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

/** Numbers that lie on a grid, near a tolerance, on an axis, or anywhere at all. */
class Numbers
{
public:
    explicit Numbers(quint32 seed)
        : m_random(OutlineTesting::seededRandom(seed))
    {
    }

    double next()
    {
        static double const special[] = {0.0, -0.0, 0.1, -0.1, 0.09999999999999999, 0.001,
            0.0009999999999999999, 1.0, -1.0, 0.5, 1e-4, 1e-8, 1e-300, 5e-324, 1e150, -1e150, 1e155,
            1.7e308, -1.7e308, 1.7976931348623157e308, infinite, -infinite, notANumber, 360.0,
            -360.0, 180.0, 90.0, 45.0};
        switch (m_random.bounded(8)) {
        case 0:
            return special[m_random.bounded(int(sizeof special / sizeof *special))];
        case 1:
            return m_last; // points that share a coordinate
        case 2:
            return m_last + (m_random.generateDouble() - 0.5) * 0.003;
        case 3:
            return OutlineTesting::awkwardReal(m_random);
        case 4:
            return m_last = m_random.generateDouble() * 2000.0 - 1000.0;
        default:
            return m_last = m_random.bounded(-20, 21);
        }
    }

    QPointF point()
    {
        double const x = next();
        return QPointF(x, next());
    }

private:
    QRandomGenerator m_random;
    double m_last = 0.0;
};

} // namespace

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

class TestKpMath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unitVectorsAreKnown_data();
    void unitVectorsAreKnown();
    void vectorsAreScaledToUnitLength_data();
    void vectorsAreScaledToUnitLength();
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
    void footInSinglePrecision_data();
    void footInSinglePrecision();
    void linesMeet_data();
    void linesMeet();
    void segmentsMeetInside_data();
    void segmentsMeetInside();

    void randomInputGivesThePlainFormula();
    void gridGivesThePlainFormula();
    void nothingIsAllocated();

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
    // The squares overflow: no vector has a computed length of 1.7e308.
    QTest::newRow("so long that its squares overflow") << QPointF(1.7e308, 0) << QPointF(0, 0);
    QTest::newRow("the greatest length whose square is finite")
        << QPointF(1.3407807929942596e154, 0) << QPointF(1, 0);
    QTest::newRow("infinite component") << QPointF(infinite, 1) << QPointF(notANumber, 0);
}

void TestKpMath::vectorsAreScaledToUnitLength()
{
    QFETCH(QPointF, v);
    QFETCH(QPointF, expected);
    QVERIFY2(isSame(kpUnitVector(v), expected), qPrintable(text(kpUnitVector(v))));
}

void TestKpMath::determinantFollowsTheRuleOfSarrus()
{
    double r0[] = {2, 3, 5};
    double r1[] = {7, 11, 13};
    double r2[] = {17, 19, 23};
    QCOMPARE(kpDeterminate(r0, r1, r2), -78.0);
    QCOMPARE(kpDeterminate(r1, r0, r2), 78.0);
    QCOMPARE(kpDeterminate(r0, r0, r2), 0.0);
    QCOMPARE(r0[0], 2.0);
    // The six products are taken in their order: here 1e16 swallows what comes before.
    double big[] = {1e16, 0, 1};
    double small[] = {0, 1, 0};
    double last[] = {1, 0, 1};
    QCOMPARE(kpDeterminate(big, small, last), 1e16 - 1.0);
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
    QTest::newRow("one point") << origin << origin << notANumber;
}

void TestKpMath::directionRunsFromMinusToPlus180()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(double, expected);
    QVERIFY2(isSame(kpAtan(a, b), expected), qPrintable(QString::number(kpAtan(a, b), 'g', 17)));
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
    QTest::newRow("a hair before the full circle") << QPointF(10, -1e-20) << origin << 360.0;
}

void TestKpMath::directionRunsFrom0To360()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(double, expected);
    QVERIFY2(isSame(kpAtan2(a, b), expected), qPrintable(QString::number(kpAtan2(a, b), 'g', 17)));
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
    QTest::newRow("no first arm") << QPointF(0, 0) << right << notANumber;
    QTest::newRow("no second arm") << right << QPointF(0, 0) << notANumber;
}

void TestKpMath::angleAtAPoint()
{
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(double, degrees);
    double const angle = kpDegree(a, QPointF(0, 0), b);
    QVERIFY2(isSame(angle, degrees), qPrintable(QString::number(angle, 'g', 17)));
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
QStringList differences(QPointF a, QPointF b, QPointF c, QPointF d, double number)
{
    QStringList names;
    auto const expect = [&names](bool same, char const* name) {
        if (!same)
            names << QString(name);
    };
    expect(kpIsUnitVector(a) == Plain::isUnit(a.x(), a.y()), "kpIsUnitVector");
    expect(isSame(kpUnitVector(a), Plain::unit(a.x(), a.y())), "kpUnitVector");
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

} // namespace

void TestKpMath::randomInputGivesThePlainFormula()
{
#ifdef OUTLINETESTING_SANITIZED
    int const count = 100000;
#else
    int const count = 1000000;
#endif
    Numbers numbers(271828);
    for (int i = 0; i < count; ++i) {
        QPointF const a = numbers.point();
        QPointF const b = numbers.point();
        QPointF const c = numbers.point();
        QPointF const d = numbers.point();
        double const number = numbers.next();
        QStringList const names = differences(a, b, c, d, number);
        QVERIFY2(names.isEmpty(),
            qPrintable(QStringList({names.join(' '), text(a), text(b), text(c), text(d),
                                       QString::number(number, 'g', 17)})
                           .join(' ')));
    }
}

void TestKpMath::gridGivesThePlainFormula()
{
    // Collinear, axis-parallel and coinciding points are the rule here.
    double const places[] = {-1.0, 0.0, 0.05, 0.0995, 1.0};
    QVector<QPointF> points;
    for (double const x : places) {
        for (double const y : places)
            points << QPointF(x, y);
    }
    for (QPointF const& a : qAsConst(points)) {
        for (QPointF const& b : qAsConst(points)) {
            for (QPointF const& c : qAsConst(points)) {
                for (double const number : {0.0, 0.5}) {
                    QStringList const names = differences(a, b, c, QPointF(1.0, -1.0), number);
                    QVERIFY2(
                        names.isEmpty(), qPrintable(names.join(' ') + text(a) + text(b) + text(c)));
                }
            }
        }
    }
}

void TestKpMath::nothingIsAllocated()
{
    double r0[] = {2, 3, 5};
    double r1[] = {7, 11, 13};
    double r2[] = {17, 19, 23};
    QPointF const a(1, 2);
    QPointF const b(5, 8);
    QPointF const c(9, 4);
    QPointF out;
    long const before = allocations;
    double sum = kpDeterminate(r0, r1, r2) + kpAtan(a, b) + kpAtan2(a, b) + kpDegree(a, b, c)
        + kpUnitVector(a).x() + kpProjection(a, b, c).x() + kpUprightPoint(a, b, c).x()
        + kpEllipsePoint(QRectF(a, b), 30.0).x() + kpNormalizeRect(a, b).width();
    sum += kpLineSide(a, b, c) + kpVectorDir(a, b, c, 0.0) + kpOrtTurnOrder(a, b, c)
        + kpCrossPoint(a, b, c, a, out) + kpCrossPoint3(a, b, c, a, out, 0.0)
        + (kpIsUnitVector(a) ? 1 : 0);
    QCOMPARE(allocations - before, 0L);
    QVERIFY(std::isfinite(sum));
    QVERIFY(!QString::number(sum).isEmpty());
    std::unique_ptr<int> const counted(new int(0));
    QVERIFY(allocations > before);
}

void TestKpMath::truncatedNumbersSaturate_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("expected");
    QTest::newRow("towards zero") << 2.9 << 2;
    QTest::newRow("towards zero from below") << -2.9 << -2;
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
    QRandomGenerator random = OutlineTesting::seededRandom(31415);
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
