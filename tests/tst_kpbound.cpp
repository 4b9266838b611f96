// SPDX-License-Identifier: MIT
#include "kpbound.h"
#include "outlinetesting.h"

using OutlineTesting::exact;

static_assert(noexcept(KpBound::point(KpBound::absolute(0.0), KpBound::partOfSide(0.0))),
    "numbers are put together, nothing else");

namespace {

/** Where each segment ends, in the order of the list. */
QVector<QPointF> positions(KpPathSegList const& list)
{
    QVector<QPointF> points;
    for (KpPathSeg* const seg : list.segs)
        points << QPointF(seg->pt.x.value, seg->pt.y.value);
    return points;
}

} // namespace

Q_DECLARE_METATYPE(KpReal)

class TestKpBound : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachFunctionIsItsRule_data();
    void eachFunctionIsItsRule();
    void pointHasItsCoordinates();
    void outlineFollowsItsBox();
};

void TestKpBound::eachFunctionIsItsRule_data()
{
    QTest::addColumn<KpReal>("real");
    QTest::addColumn<int>("base");
    QTest::addColumn<double>("rate");
    QTest::addColumn<double>("atOnce");
    QTest::addColumn<double>("inWideBox"); // 240 by 160
    QTest::addColumn<double>("inHighBox"); // 100 by 300
    auto const row = [](char const* name, KpReal const& real, int base, double rate, double atOnce,
                         double inWideBox, double inHighBox) {
        QTest::newRow(name) << real << base << rate << atOnce << inWideBox << inHighBox;
    };
    row("absolute", KpBound::absolute(10), 0, 0, 10, 10, 10);
    row("part of the width", KpBound::partOfWidth(0.25), 1, 0.25, 0, 60, 25);
    row("part of the height", KpBound::partOfHeight(0.25), 2, 0.25, 0, 40, 75);
    row("from the right", KpBound::fromRight(10), 3, 10, 0, 230, 90);
    row("from the bottom", KpBound::fromBottom(10), 4, 10, 0, 150, 290);
    row("part of the side", KpBound::partOfSide(0.25), 5, 0.25, 0, 40, 25);
    row("part of the side from the right", KpBound::fromRightPartOfSide(0.25), 6, 0.25, 0, 200, 75);
    row("part of the side from the bottom", KpBound::fromBottomPartOfSide(0.25), 7, 0.25, 0, 120,
        275);
}

void TestKpBound::eachFunctionIsItsRule()
{
    QFETCH(KpReal, real);
    QFETCH(int, base);
    QFETCH(double, rate);
    QFETCH(double, atOnce);
    QFETCH(double, inWideBox);
    QFETCH(double, inHighBox);
    QCOMPARE(int(real.base), base);
    COMPARE_BITS(real.rate, rate);
    COMPARE_BITS(real.value, atOnce);
    real.updateValue(240, 160);
    COMPARE_BITS(real.value, inWideBox);
    real.updateValue(100, 300);
    COMPARE_BITS(real.value, inHighBox);
}

void TestKpBound::pointHasItsCoordinates()
{
    KpPoint const point = KpBound::point(KpBound::fromRight(3), KpBound::absolute(4));
    QCOMPARE(exact(point.x), exact(KpReal(3, 3, 0)));
    QCOMPARE(exact(point.y), exact(KpReal(0, 0, 4)));
}

void TestKpBound::outlineFollowsItsBox()
{
    using namespace KpBound;
    KpPathSegList plate;
    plate.addTail(new KpPathSegMoveTo(point(absolute(0), absolute(0)), nullptr));
    plate.addTail(new KpPathSegLineTo(point(fromRightPartOfSide(0.25), absolute(0)), nullptr));
    plate.addTail(new KpPathSegLineTo(point(partOfWidth(1), partOfSide(0.25)), nullptr));
    plate.addTail(new KpPathSegLineTo(point(fromRight(0), fromBottom(10)), nullptr));
    plate.updateValue(240, 160);
    QCOMPARE(positions(plate), (QVector<QPointF> {{0, 0}, {200, 0}, {240, 40}, {240, 150}}));
    plate.updateValue(100, 300);
    QCOMPARE(positions(plate), (QVector<QPointF> {{0, 0}, {75, 0}, {100, 25}, {100, 290}}));
}

QTEST_APPLESS_MAIN(TestKpBound)
#include "tst_kpbound.moc"
