// SPDX-License-Identifier: MIT
#include "outlinetesting.h"

#include <type_traits>

Q_DECLARE_METATYPE(KpReal)
Q_DECLARE_METATYPE(KpPoint)

using OutlineTesting::exact;

using Testing::infinite;
using Testing::notANumber;

namespace {

int const intMax = std::numeric_limits<int>::max();
int const intMin = std::numeric_limits<int>::min();

KpPoint point(KpReal const& x, KpReal const& y)
{
    return KpPoint(x, y);
}

} // namespace

class TestKpPoint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void realsAndPointsArePlainValues();
    void realIsZeroByDefault();
    void realTakesItsThreeFields();
    void rulesHaveTheNumbersOfDocuments();
    void updateValueFollowsTheRule_data();
    void updateValueFollowsTheRule();
    void updateRateFollowsTheRule_data();
    void updateRateFollowsTheRule();
    void basesWithoutARuleKeepValueAndRate();
    void rateAndValueMakeEachOtherForProportionalRules();
    void otherRulesReturnToTheirParameter();

    void pointIsZeroByDefault();
    void pointTakesTwoReals();
    void pointUpdatesBothCoordinates();
    void undoRecordIsReadByPosition_data();
    void undoRecordIsReadByPosition();
    void undoRecordKeepsTheLowSixteenBitsOfABase_data();
    void undoRecordKeepsTheLowSixteenBitsOfABase();
    void undoRecordIsNotChangedByReading();
};

void TestKpPoint::realsAndPointsArePlainValues()
{
    QVERIFY(!std::is_polymorphic<KpReal>::value);
    QVERIFY(!std::is_polymorphic<KpPoint>::value);

    KpReal const source(5, 0.25, 7.5);
    KpReal copy = source;
    copy.base = 2;
    copy.rate = 1.0;
    copy.value = 2.0;
    QCOMPARE(exact(source), exact(KpReal(5, 0.25, 7.5)));
    copy = source;
    QCOMPARE(exact(copy), exact(source));
}

void TestKpPoint::realIsZeroByDefault()
{
    KpReal const real;
    QCOMPARE(real.base, qint16(0));
    COMPARE_BITS(real.rate, 0.0);
    COMPARE_BITS(real.value, 0.0);
}

void TestKpPoint::realTakesItsThreeFields()
{
    KpReal const real(-7, 0.125, 42.5);
    QCOMPARE(real.base, qint16(-7));
    COMPARE_BITS(real.rate, 0.125);
    COMPARE_BITS(real.value, 42.5);
}

void TestKpPoint::rulesHaveTheNumbersOfDocuments()
{
    QCOMPARE(int(KpReal::Absolute), 0);
    QCOMPARE(int(KpReal::PartOfWidth), 1);
    QCOMPARE(int(KpReal::PartOfHeight), 2);
    QCOMPARE(int(KpReal::FromRight), 3);
    QCOMPARE(int(KpReal::FromBottom), 4);
    QCOMPARE(int(KpReal::PartOfSide), 5);
    QCOMPARE(int(KpReal::FromRightPartOfSide), 6);
    QCOMPARE(int(KpReal::FromBottomPartOfSide), 7);
}

void TestKpPoint::updateValueFollowsTheRule_data()
{
    QTest::addColumn<KpReal>("real");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addColumn<double>("value");

    struct Row
    {
        char const* name;
        KpReal real;
        double width;
        double height;
        double value;
    };
    Row const rows[] = {
        {"absolute stays", {0, 0.5, 9}, 80, 40, 9},
        {"absolute stays in no box", {0, 0.5, 9}, 0, 0, 9},
        {"absolute stays in a box of no number", {0, 0.5, 9}, notANumber, infinite, 9},
        {"part of the width", {1, 0.5, 9}, 80, 40, 40},
        {"part of the width after a quarter", {1, 0.25, 30}, 200, 60, 50},
        {"part of the height", {2, 0.5, 9}, 80, 40, 20},
        {"offset from the width", {3, 10, 95}, 100, 50, 90},
        {"offset from the height", {4, 10, 95}, 100, 50, 40},
        {"part of the smaller side, the height", {5, 0.5, 9}, 80, 40, 20},
        {"part of the smaller side, the width", {5, 0.5, 9}, 40, 80, 20},
        {"width less a part of the height", {6, 0.5, 9}, 80, 40, 60},
        {"width less a part of itself", {6, 0.25, 9}, 40, 80, 30},
        {"height less a part of itself", {7, 0.5, 9}, 80, 40, 20},
        {"height less a part of the width", {7, 0.5, 9}, 40, 80, 60},
        {"above the rules", {8, 0.5, 9}, 80, 40, 9},
        {"below the rules", {-1, 0.5, 9}, 80, 40, 9},
        {"rate zero", {1, 0, 9}, 80, 40, 0},
        {"negative rate", {2, -0.5, 9}, 80, 40, -20},
        {"negative box", {5, 0.5, 9}, -80, 40, -40},
        {"empty box, proportional", {1, 0.5, 9}, 0, 0, 0},
        {"empty box, offset", {3, 10, 9}, 0, 0, -10},
        {"box below the threshold of rates", {1, 0.5, 9}, 0.0005, 40, 0.00025},
        {"infinite width", {1, 0.5, 9}, infinite, 40, infinite},
        {"infinite height", {2, -0.5, 9}, 80, infinite, -infinite},
        {"smaller side of an infinite width", {5, 0.5, 9}, infinite, 40, 20},
        {"smaller side of an infinite height", {5, 0.5, 9}, 80, infinite, 40},
        {"infinite width less a part", {6, 0.5, 9}, infinite, 40, infinite},
        {"infinite height less a part", {7, 0.5, 9}, 80, infinite, infinite},
        {"other side infinite", {1, 0.5, 9}, 80, infinite, 40},
        {"other side no number", {1, 0.5, 9}, 80, notANumber, 40},
        {"other side no number, offset", {4, 10, 9}, notANumber, 50, 40},
    };
    for (Row const& row : rows)
        QTest::newRow(row.name) << row.real << row.width << row.height << row.value;
}

void TestKpPoint::updateValueFollowsTheRule()
{
    QFETCH(KpReal, real);
    QFETCH(double, width);
    QFETCH(double, height);
    QFETCH(double, value);

    KpReal updated = real;
    updated.updateValue(width, height);
    QCOMPARE(exact(updated), exact(KpReal(real.base, real.rate, value)));

    KpPoint both(real, real);
    both.updateValue(width, height);
    QCOMPARE(exact(both), exact(point(updated, updated)));
}

void TestKpPoint::updateRateFollowsTheRule_data()
{
    QTest::addColumn<KpReal>("real");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    QTest::addColumn<double>("rate");

    double const justAbove = std::nextafter(0.001, 1.0);
    struct Row
    {
        char const* name;
        KpReal real;
        double width;
        double height;
        double rate;
    };
    Row const rows[] = {
        {"absolute", {0, 9, 30}, 120, 60, 9},
        {"part of the width", {1, 9, 30}, 120, 60, 0.25},
        {"part of the height", {2, 9, 30}, 120, 60, 0.5},
        {"offset from the width", {3, 9, 30}, 120, 60, 9},
        {"offset from the height", {4, 9, 30}, 120, 60, 9},
        {"part of the smaller side", {5, 9, 30}, 120, 60, 9},
        {"width less a part", {6, 9, 30}, 120, 60, 9},
        {"height less a part", {7, 9, 30}, 120, 60, 9},
        {"above the rules", {8, 9, 30}, 120, 60, 9},
        {"below the rules", {-1, 9, 30}, 120, 60, 9},
        {"negative value", {1, 9, -30}, 120, 60, -0.25},
        {"width at the threshold", {1, 9, 30}, 0.001, 60, 9},
        {"height at the threshold", {2, 9, 30}, 120, 0.001, 9},
        {"width just above the threshold", {1, 9, justAbove}, justAbove, 60, 1},
        {"height just above the threshold", {2, 9, justAbove}, 120, justAbove, 1},
        {"width above the threshold", {1, 9, 4}, 0.0078125, 0, 512},
        {"height above the threshold", {2, 9, 4}, 0, 0.0078125, 512},
        {"no width", {1, 9, 30}, 0, 60, 9},
        {"no height", {2, 9, 30}, 120, 0, 9},
        {"negative width", {1, 9, 30}, -120, 60, 9},
        {"negative height", {2, 9, 30}, 120, -60, 9},
        {"width is no number", {1, 9, 30}, notANumber, 60, 9},
        {"height is no number", {2, 9, 30}, 120, notANumber, 9},
        {"infinite width", {1, 9, 30}, infinite, 60, 0},
        {"infinite height", {2, 9, 30}, 120, infinite, 0},
        {"width of minus infinity", {1, 9, 30}, -infinite, 60, 9},
        {"infinite value", {1, 9, infinite}, 120, 60, infinite},
        {"the height does not count for the width", {1, 9, 30}, 120, 0, 0.25},
        {"the width does not count for the height", {2, 9, 30}, 0, 60, 0.5},
    };
    for (Row const& row : rows)
        QTest::newRow(row.name) << row.real << row.width << row.height << row.rate;
}

void TestKpPoint::updateRateFollowsTheRule()
{
    QFETCH(KpReal, real);
    QFETCH(double, width);
    QFETCH(double, height);
    QFETCH(double, rate);

    KpReal updated = real;
    updated.updateRate(width, height);
    QCOMPARE(exact(updated), exact(KpReal(real.base, rate, real.value)));

    KpPoint both(real, real);
    both.updateRate(width, height);
    QCOMPARE(exact(both), exact(point(updated, updated)));
}

void TestKpPoint::basesWithoutARuleKeepValueAndRate()
{
    int kept = 0;
    for (int base = -32768; base <= 32767; ++base) {
        if (base >= 1 && base <= 7)
            continue;
        KpReal real(qint16(base), 0.25, 30.0);
        real.updateValue(200.0, 60.0);
        real.updateRate(120.0, 60.0);
        if (real.base != base || real.rate != 0.25 || real.value != 30.0)
            QFAIL(qPrintable(QStringLiteral("base %1 gave %2").arg(base).arg(exact(real))));
        ++kept;
    }
    QCOMPARE(kept, 65529);
}

void TestKpPoint::rateAndValueMakeEachOtherForProportionalRules()
{
    KpReal real(1, 0.0, 30.0);
    real.updateRate(120.0, 60.0);
    COMPARE_BITS(real.rate, 0.25);
    real.updateValue(200.0, 60.0);
    COMPARE_BITS(real.value, 50.0);
}

void TestKpPoint::otherRulesReturnToTheirParameter()
{
    struct Row
    {
        KpReal real;
        double value;
    };
    Row const rows[] = {
        {{3, 10, 95}, 90},
        {{4, 10, 95}, 40},
        {{5, 0.5, 95}, 25},
        {{6, 0.5, 95}, 75},
        {{7, 0.5, 95}, 25},
    };
    for (Row const& row : rows) {
        KpReal real = row.real;
        real.updateRate(100.0, 50.0);
        real.updateValue(100.0, 50.0);
        QCOMPARE(exact(real), exact(KpReal(row.real.base, row.real.rate, row.value)));
    }
}

void TestKpPoint::pointIsZeroByDefault()
{
    QCOMPARE(exact(KpPoint()), exact(point({0, 0.0, 0.0}, {0, 0.0, 0.0})));
}

void TestKpPoint::pointTakesTwoReals()
{
    KpReal const x(3, 0.5, 1.5);
    KpReal const y(-4, 0.25, 2.5);
    KpPoint const made(x, y);
    QCOMPARE(exact(made.x), exact(x));
    QCOMPARE(exact(made.y), exact(y));
    KpPoint const copy = made;
    QCOMPARE(exact(copy), exact(made));
}

void TestKpPoint::pointUpdatesBothCoordinates()
{
    KpPoint corner({1, 0.0, 30.0}, {2, 0.0, 45.0});
    corner.updateRate(120.0, 60.0);
    QCOMPARE(exact(corner), exact(point({1, 0.25, 30.0}, {2, 0.75, 45.0})));
    corner.updateValue(200.0, 100.0);
    QCOMPARE(exact(corner), exact(point({1, 0.25, 50.0}, {2, 0.75, 75.0})));

    KpPoint inset({3, 10.0, 0.0}, {7, 0.5, 0.0});
    inset.updateValue(80.0, 40.0);
    QCOMPARE(exact(inset), exact(point({3, 10.0, 70.0}, {7, 0.5, 20.0})));
}

void TestKpPoint::undoRecordIsReadByPosition_data()
{
    QTest::addColumn<QVector<int>>("ints");
    QTest::addColumn<QVector<double>>("doubles");
    QTest::addColumn<int>("intPos");
    QTest::addColumn<int>("doublePos");
    QTest::addColumn<KpPoint>("read");
    QTest::addColumn<int>("intPosAfter");
    QTest::addColumn<int>("doublePosAfter");

    QVector<int> const ints {3, 4};
    QVector<double> const doubles {10, 0.25, 20, 0.5};
    QTest::newRow("value first, rate second")
        << ints << doubles << 0 << 0 << point({3, 0.25, 10}, {4, 0.5, 20}) << 2 << 4;
    QTest::newRow("behind other entries")
        << QVector<int> {9, 9, 9, 5, 6, 9} << QVector<double> {9, 1, 2, 3, 4, 9} << 3 << 1
        << point({5, 2, 1}, {6, 4, 3}) << 5 << 5;
    QTest::newRow("second base is missing")
        << QVector<int> {3} << doubles << 0 << 0 << point({3, 0.25, 10}, {0, 0.5, 20}) << 2 << 4;
    QTest::newRow("last rate is missing") << ints << QVector<double> {10, 0.25, 20} << 0 << 0
                                          << point({3, 0.25, 10}, {4, 0, 20}) << 2 << 4;
    QTest::newRow("y is missing") << ints << QVector<double> {10, 0.25} << 0 << 0
                                  << point({3, 0.25, 10}, {4, 0, 0}) << 2 << 4;
    QTest::newRow("nothing is there")
        << QVector<int>() << QVector<double>() << 0 << 0 << KpPoint() << 2 << 4;
    QTest::newRow("behind the end") << ints << doubles << 2 << 4 << KpPoint() << 4 << 8;
    QTest::newRow("across the end")
        << ints << doubles << 1 << 2 << point({4, 0.5, 20}, {0, 0, 0}) << 3 << 6;
    QTest::newRow("before the start")
        << ints << doubles << -1 << -2 << point({0, 0, 0}, {3, 0.25, 10}) << 1 << 2;
    QTest::newRow("an odd step before the start")
        << ints << doubles << -1 << -1 << point({0, 10, 0}, {3, 20, 0.25}) << 1 << 3;
    QTest::newRow("far before the start")
        << ints << doubles << intMin << intMin << KpPoint() << intMin + 2 << intMin + 4;
    QTest::newRow("the advance wraps around")
        << ints << doubles << intMax << intMax << KpPoint() << intMin + 1 << intMin + 3;
    QTest::newRow("the advance ends at the least position")
        << ints << doubles << intMax - 1 << intMax - 3 << KpPoint() << intMin << intMin;
}

void TestKpPoint::undoRecordIsReadByPosition()
{
    QFETCH(QVector<int>, ints);
    QFETCH(QVector<double>, doubles);
    QFETCH(int, intPos);
    QFETCH(int, doublePos);
    QFETCH(KpPoint, read);
    QFETCH(int, intPosAfter);
    QFETCH(int, doublePosAfter);

    KpPoint target({1, 77, 77}, {2, 77, 77});
    target.fromUndoValue(ints, doubles, intPos, doublePos);
    QCOMPARE(exact(target), exact(read));
    QCOMPARE(intPos, intPosAfter);
    QCOMPARE(doublePos, doublePosAfter);
}

void TestKpPoint::undoRecordKeepsTheLowSixteenBitsOfABase_data()
{
    QTest::addColumn<int>("entry");
    QTest::addColumn<int>("base");
    struct Row
    {
        int entry;
        int base;
    };
    Row const rows[] = {{0, 0}, {5, 5}, {-1, -1}, {32767, 32767}, {32768, -32768}, {65535, -1},
        {65536, 0}, {65537, 1}, {70000, 4464}, {-32768, -32768}, {-32769, 32767}, {intMax, -1},
        {intMin, 0}};
    for (Row const& row : rows)
        QTest::addRow("%d", row.entry) << row.entry << row.base;
}

void TestKpPoint::undoRecordKeepsTheLowSixteenBitsOfABase()
{
    QFETCH(int, entry);
    QFETCH(int, base);
    KpPoint target;
    int intPos = 0;
    int doublePos = 0;
    target.fromUndoValue({entry, entry}, {1, 2, 3, 4}, intPos, doublePos);
    QCOMPARE(exact(target), exact(point({qint16(base), 2, 1}, {qint16(base), 4, 3})));
}

void TestKpPoint::undoRecordIsNotChangedByReading()
{
    QVector<int> const ints {1, 2};
    QVector<double> const doubles {10, 0.25, 20, 0.5};
    KpPoint target;
    int intPos = 0;
    int doublePos = 0;
    target.fromUndoValue(ints, doubles, intPos, doublePos);
    QCOMPARE(ints, QVector<int>({1, 2}));
    QCOMPARE(doubles, QVector<double>({10, 0.25, 20, 0.5}));
}

QTEST_GUILESS_MAIN(TestKpPoint)
#include "tst_kppoint.moc"
