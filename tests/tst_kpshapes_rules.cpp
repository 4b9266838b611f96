// SPDX-License-Identifier: MIT
#include "model/rules.h"
#include "shapesmodeltesting.h"

using namespace OutlineTesting;
using namespace ShapesModelTesting;

Q_DECLARE_METATYPE(Axis)

namespace {

Axis const axes[] = {Axis::Horizontal, Axis::Vertical};

KpReal& realOf(WorkingShape& shape, int segment, Axis axis)
{
    KpPoint& point = shape.list->segs[segment]->pt;
    return axis == Axis::Horizontal ? point.x : point.y;
}

/** How many doubles lie between two finite numbers of one magnitude, at the magnitude of `scale`. */
double ulps(double left, double right, double scale)
{
    double const ulp = std::nextafter(std::abs(scale), Testing::infinite) - std::abs(scale);
    return std::abs(left - right) / ulp;
}

} // namespace

class TestRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bindsInPlace_data();
    void bindsInPlace();
    void bindsNothingInACollapsedBox();
    void bindsNothingThatIsNotFinite();
    void takesTheRateOfWhatBindsNothing();
    void movesWithItsRule();
    void setsEachRule_data();
    void setsEachRule();
    void returnsToItsPlaceUnderEveryRule();
    void ignoresWhatIsNoRule();
    void leavesWhatHasTheRule();
    void leavesWhatNoRateWouldKeep();
    void setsRates();
    void refusesRates();
    void setsValues();
    void refusesValues();
    void changesRadiiAndControlPoints();
    void changesBothPointsWhereARingCloses();
    void tellsWhatHandlesHaveInCommon();
    void ignoresHandlesThatAreNotThere();
};

void TestRules::bindsInPlace_data()
{
    QTest::addColumn<int>("rule");
    QTest::addColumn<double>("rate");
    QTest::newRow("fixed") << 0 << 0.0;
    QTest::newRow("width") << 1 << 0.25;
    QTest::newRow("height") << 2 << 0.5;
    QTest::newRow("right") << 3 << 150.0;
    QTest::newRow("bottom") << 4 << 50.0;
    QTest::newRow("smaller side") << 5 << 0.5;
    QTest::newRow("right less smaller side") << 6 << 1.5;
    QTest::newRow("bottom less smaller side") << 7 << 0.5;
    QTest::newRow("unknown") << 17 << 0.0;
    QTest::newRow("negative") << -1 << 0.0;
}

void TestRules::bindsInPlace()
{
    QFETCH(int, rule);
    QFETCH(double, rate);
    KpReal real(5, 9.0, 50.0);
    bindInPlace(real, qint16(rule), {200.0, 100.0});
    QCOMPARE(int(real.base), rule);
    COMPARE_BITS(real.value, 50.0);
    COMPARE_BITS(real.rate, rate);
    real.updateValue(200.0, 100.0);
    COMPARE_BITS(real.value, 50.0);
}

void TestRules::bindsNothingInACollapsedBox()
{
    for (QSizeF const box :
        {QSizeF(0.001, 100.0), QSizeF(100.0, 0.001), QSizeF(0.0, 0.0), QSizeF(-5.0, 100.0)}) {
        for (int rule = 1; rule <= 7; ++rule) {
            KpReal real(0, 9.0, 50.0);
            bindInPlace(real, qint16(rule), box);
            QCOMPARE(int(real.base), rule);
            COMPARE_BITS(real.value, 50.0);
            COMPARE_BITS(real.rate, 9.0);
        }
    }
}

void TestRules::bindsNothingThatIsNotFinite()
{
    for (double const value : {Testing::notANumber, Testing::infinite, -Testing::infinite}) {
        for (int rule = 1; rule <= 7; ++rule) {
            KpReal real(0, 9.0, value);
            bindInPlace(real, qint16(rule), {200.0, 100.0});
            COMPARE_BITS(real.value, value);
            COMPARE_BITS(real.rate, 9.0);
        }
    }
}

void TestRules::takesTheRateOfWhatBindsNothing()
{
    for (qint16 const rule : {qint16(0), qint16(17)}) {
        KpReal collapsed(5, 9.0, 50.0);
        bindInPlace(collapsed, rule, {0.0, 100.0});
        COMPARE_BITS(collapsed.rate, 0.0);
        KpReal infinite(5, 9.0, Testing::infinite);
        bindInPlace(infinite, rule, {100.0, 100.0});
        COMPARE_BITS(infinite.rate, 0.0);
    }
}

void TestRules::movesWithItsRule()
{
    KpReal real(KpReal::FromRight, 150.0, 50.0);
    moveBound(real, 80.0, {200.0, 100.0});
    QCOMPARE(exact(real), exact(KpReal(KpReal::FromRight, 120.0, 80.0)));
}

void TestRules::setsEachRule_data()
{
    QTest::addColumn<Axis>("axis");
    QTest::addColumn<int>("rule");
    for (Axis const axis : axes) {
        for (int rule = 0; rule <= 7; ++rule) {
            bool const isHorizontal = axis == Axis::Horizontal;
            QTest::addRow("%s %d", isHorizontal ? "x" : "y", rule) << axis << rule;
        }
    }
}

void TestRules::setsEachRule()
{
    QFETCH(Axis, axis);
    QFETCH(int, rule);
    WorkingShape shape = shapeOf("M 10 20 L 50 30 L 60 70");
    bindInPlace(realOf(shape, 1, axis), rule == 5 ? 6 : 5, shape.box);
    QString const first = exact(*shape.list->segs[0]);
    Axis const other = axis == Axis::Horizontal ? Axis::Vertical : Axis::Horizontal;
    QString const untouched = exact(realOf(shape, 1, other));
    double const value = realOf(shape, 1, axis).value;
    QVERIFY(setRule(shape, handlesOf("1"), axis, qint16(rule)));
    KpReal& real = realOf(shape, 1, axis);
    QCOMPARE(int(real.base), rule);
    COMPARE_BITS(real.value, value);
    QCOMPARE(exact(*shape.list->segs[0]), first);
    QCOMPARE(exact(realOf(shape, 1, other)), untouched);
    QCOMPARE(int(*commonRule(*shape.list, handlesOf("1"), axis)), rule);
    // It follows its box from then on: a box of twice the size moves it as the rule says.
    shape.list->updateValue(400.0, 200.0);
    double const extent = axis == Axis::Horizontal ? 50.0 : 30.0;
    double const expected[] = {extent, 2.0 * extent, 2.0 * extent, 200.0 + extent, 100.0 + extent,
        2.0 * extent, 2.0 * extent, 2.0 * extent};
    QVERIFY(std::abs(real.value - expected[rule]) < 1e-12 * 400.0);
}

void TestRules::returnsToItsPlaceUnderEveryRule()
{
    QRandomGenerator random = Testing::seededRandom(3);
    for (int i = 0; i < 100000; ++i) {
        QSizeF const box(
            random.generateDouble() * 1000.0 + 0.01, random.generateDouble() * 1000.0 + 0.01);
        double const value = random.generateDouble() * 3000.0 - 1000.0;
        KpReal real(0, 0.0, value);
        bindInPlace(real, qint16(random.bounded(8)), box);
        COMPARE_BITS(real.value, value);
        real.updateValue(box.width(), box.height());
        double const scale = std::max({std::abs(value), box.width(), box.height()});
        QVERIFY2(ulps(real.value, value, scale) <= 4.0,
            qPrintable(Testing::difference("value", real.value, value)));
    }
}

void TestRules::ignoresWhatIsNoRule()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30");
    QString const before = exact(*shape.list);
    for (qint16 const rule : {qint16(-1), qint16(8), qint16(17), qint16(32767)})
        QVERIFY(!setRule(shape, handlesOf("0 1"), Axis::Horizontal, rule));
    QCOMPARE(exact(*shape.list), before);
}

void TestRules::leavesWhatHasTheRule()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30");
    shape.list->segs[0]->pt.x = {KpReal::FromRight, 7.0, 10.0}; // not where its rate is
    QVERIFY(setRule(shape, handlesOf("0 1"), Axis::Horizontal, KpReal::FromRight));
    QCOMPARE(exact(shape.list->segs[0]->pt.x), exact(KpReal(KpReal::FromRight, 7.0, 10.0)));
    QCOMPARE(exact(shape.list->segs[1]->pt.x), exact(KpReal(KpReal::FromRight, 150.0, 50.0)));
    QVERIFY(!setRule(shape, handlesOf("0 1"), Axis::Horizontal, KpReal::FromRight));
}

void TestRules::leavesWhatNoRateWouldKeep()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30", false, {0.01, 0.01});
    shape.list->segs[0]->pt.x = {KpReal::FromRight, 7.0, Testing::notANumber};
    shape.list->segs[1]->pt.x = {KpReal::FromRight, 7.0, 1.7e308};
    QString const before = exact(*shape.list);
    QVERIFY(!setRule(shape, handlesOf("0 1"), Axis::Horizontal, KpReal::PartOfWidth));
    QCOMPARE(exact(*shape.list), before);
    // Fixed, they need none.
    QVERIFY(setRule(shape, handlesOf("0 1"), Axis::Horizontal, KpReal::Absolute));
    QCOMPARE(exact(shape.list->segs[1]->pt.x), exact(KpReal(0, 0.0, 1.7e308)));
}

void TestRules::setsRates()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30");
    QVERIFY(setRate(shape, handlesOf("0 1"), Axis::Horizontal, 0.75));
    QCOMPARE(textOf(*shape.list), QString("M 150 20 L 150 30"));
    QCOMPARE(*commonRate(*shape.list, handlesOf("0 1"), Axis::Horizontal), 0.75);
    QVERIFY(!setRate(shape, handlesOf("0 1"), Axis::Horizontal, 0.75));
    QVERIFY(setRate(shape, handlesOf("1"), Axis::Vertical, -1.0));
    QCOMPARE(textOf(*shape.list), QString("M 150 20 L 150 -100"));
}

void TestRules::refusesRates()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30 L 5 5");
    shape.list->segs[0]->pt.x = {KpReal::Absolute, 3.0, 10.0};
    shape.list->segs[1]->pt.x = {17, 3.0, 10.0};
    QString const before = exact(*shape.list);
    QVERIFY(!setRate(shape, handlesOf("2"), Axis::Horizontal, Testing::notANumber));
    QVERIFY(!setRate(shape, handlesOf("2"), Axis::Horizontal, -Testing::infinite));
    QVERIFY(!setRate(shape, handlesOf("2"), Axis::Horizontal, 1.7e308)); // its value is infinite
    QVERIFY(!setRate(shape, handlesOf("0 1"), Axis::Horizontal, 0.5)); // nothing binds these
    QCOMPARE(exact(*shape.list), before);
}

void TestRules::setsValues()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30 L 5 5");
    shape.list->segs[1]->pt.x = {KpReal::FromRight, 150.0, 50.0};
    shape.list->segs[2]->pt.x = {17, 3.0, 10.0};
    QVERIFY(setValue(shape, handlesOf("0 1 2"), Axis::Horizontal, 80.0));
    QCOMPARE(exact(shape.list->segs[0]->pt.x), exact(KpReal(1, 0.4, 80.0)));
    QCOMPARE(exact(shape.list->segs[1]->pt.x), exact(KpReal(3, 120.0, 80.0)));
    QCOMPARE(exact(shape.list->segs[2]->pt.x), exact(KpReal(17, 0.0, 80.0)));
    QVERIFY(!setValue(shape, handlesOf("0 1 2"), Axis::Horizontal, 80.0));
}

void TestRules::refusesValues()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30", false, {0.01, 0.01});
    QString const before = exact(*shape.list);
    QVERIFY(!setValue(shape, handlesOf("0"), Axis::Horizontal, Testing::notANumber));
    QVERIFY(!setValue(shape, handlesOf("0"), Axis::Horizontal, Testing::infinite));
    QVERIFY(!setValue(shape, handlesOf("0"), Axis::Horizontal, 1.7e308));
    QCOMPARE(exact(*shape.list), before);
}

void TestRules::changesRadiiAndControlPoints()
{
    WorkingShape shape = shapeOf("M 0 0 C 10 10 20 20 30 30 E 50 50 20 10");
    QVERIFY(setValue(shape, handlesOf("1a 2x"), Axis::Horizontal, 40.0));
    QVERIFY(setValue(shape, handlesOf("1b 2y"), Axis::Vertical, 25.0));
    QCOMPARE(textOf(*shape.list), QString("M 0 0 C 40 10 20 25 30 30 E 50 50 40 25"));
    QVERIFY(!setValue(shape, handlesOf("2x"), Axis::Vertical, 60.0)); // it has none
    QVERIFY(setRule(shape, handlesOf("2x"), Axis::Horizontal, KpReal::PartOfSide));
    QCOMPARE(exact(shape.list->segs[2]->toEllipse()->a), exact(KpReal(5, 0.4, 40.0)));
}

void TestRules::changesBothPointsWhereARingCloses()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30 L 60 70 L 10 20", true);
    QVERIFY(setRule(shape, handlesOf("3"), Axis::Horizontal, KpReal::FromRight));
    QCOMPARE(int(shape.list->segs[0]->pt.x.base), 3);
    QVERIFY(setValue(shape, handlesOf("0"), Axis::Horizontal, 5.0));
    QCOMPARE(textOf(*shape.list), QString("M 5 20 L 50 30 L 60 70 L 5 20"));
    shape.list->closed = false;
    QVERIFY(setValue(shape, handlesOf("0"), Axis::Horizontal, 8.0));
    QCOMPARE(textOf(*shape.list), QString("M 8 20 L 50 30 L 60 70 L 5 20"));
}

void TestRules::tellsWhatHandlesHaveInCommon()
{
    WorkingShape shape = shapeOf("M 10 20 L 10 30 L 60 30 E 10 10 10 5");
    KpPathSegList const& list = *shape.list;
    Axis const x = Axis::Horizontal;
    Axis const y = Axis::Vertical;
    QCOMPARE(commonValue(list, handlesOf("0 1"), x).value_or(-1.0), 10.0);
    QCOMPARE(commonRate(list, handlesOf("0 1"), x).value_or(-1.0), 0.05);
    QCOMPARE(int(commonRule(list, handlesOf("0 1 2 3x"), x).value_or(-1)), 1);
    QVERIFY(!commonValue(list, handlesOf("0 2"), x));
    QVERIFY(!commonRate(list, handlesOf("0 2"), x));
    QVERIFY(!commonValue(list, {}, x));
    QVERIFY(!commonRule(list, handlesOf("3x"), y));
    QCOMPARE(commonValue(list, handlesOf("0 3x 3y"), x).value_or(-1.0), 10.0);
    shape.list->segs[0]->pt.x = {KpReal::PartOfHeight, 0.05, 10.0};
    QVERIFY(!commonRule(list, handlesOf("0 1"), x));
    QVERIFY(!commonRate(list, handlesOf("0 1"), x)); // of another rule, it is another rate
    shape.list->segs[0]->pt.x = {17, 0.0, Testing::notANumber};
    QCOMPARE(int(commonRule(list, handlesOf("0"), x).value_or(-1)), 17);
    QVERIFY(std::isnan(commonValue(list, handlesOf("0"), x).value_or(0.0)));
    QVERIFY(!commonValue(list, handlesOf("0 1"), x));
}

void TestRules::ignoresHandlesThatAreNotThere()
{
    WorkingShape shape = shapeOf("M 10 20 L 50 30");
    QString const before = exact(*shape.list);
    auto const handles = handlesOf("-1 0a 1b 1x 2 99");
    for (Axis const axis : axes) {
        QVERIFY(!setRule(shape, handles, axis, 5));
        QVERIFY(!setRate(shape, handles, axis, 5.0));
        QVERIFY(!setValue(shape, handles, axis, 5.0));
        QVERIFY(!commonRule(*shape.list, handles, axis));
    }
    QCOMPARE(exact(*shape.list), before);
}

QTEST_GUILESS_MAIN(TestRules)
#include "tst_kpshapes_rules.moc"
