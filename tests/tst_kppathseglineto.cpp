// SPDX-License-Identifier: MIT
#include "segmenttesting.h"

using OutlineTesting::exact;

using Testing::infinite;
using Testing::notANumber;

namespace {

TestedKind const kindLineTo {"LineTo", KpPathSeg::SegLineTo,
    {
        {'X', 1, true, [](KpPathSeg& seg) -> KpReal& { return seg.pt.x; }},
        {'Y', 2, true, [](KpPathSeg& seg) -> KpReal& { return seg.pt.y; }},
    },
    true, false, [](KpPathSegList* owner) -> KpPathSeg* {
        return new KpPathSegLineTo(QPointF(0.0, 0.0), owner);
    }};

} // namespace

class TestKpPathSegLineTo : public SegmentTest
{
    Q_OBJECT

public:
    TestKpPathSegLineTo()
        : SegmentTest(kindLineTo)
    {
    }

private Q_SLOTS:
    void takesAPlainPoint();
    void takesABoundPointWithAllItsFields();
    void drawsALineOnAnEmptyPath();
    void dropsALineShorterThanOneUnit_data();
    void dropsALineShorterThanOneUnit();
    void measuresFromTheLastElementOfAnyType_data();
    void measuresFromTheLastElementOfAnyType();
    void isWrittenAsDocumentsHaveIt();
};

void TestKpPathSegLineTo::takesAPlainPoint()
{
    KpPathSegList list;
    KpPathSegLineTo const seg(QPointF(12.5, -7.0), &list);
    QCOMPARE(seg.type, KpPathSeg::SegLineTo);
    QCOMPARE(seg.owner, &list);
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0.0, 12.5}, {2, 0.0, -7.0})));
}

void TestKpPathSegLineTo::takesABoundPointWithAllItsFields()
{
    KpPoint const point({-9, 0.25, 12.5}, {32767, 0.5, -7.0});
    KpPathSegLineTo const seg(point, nullptr);
    QCOMPARE(seg.type, KpPathSeg::SegLineTo);
    QCOMPARE(seg.owner, nullptr);
    QCOMPARE(exact(seg.pt), exact(point));
}

void TestKpPathSegLineTo::drawsALineOnAnEmptyPath()
{
    KpPath path;
    KpPathSegLineTo(KpPoint({3, 9, 0.25}, {4, 9, -0.5}), nullptr).addToPath(path);
    KpPath expected;
    expected.append({0.25, -0.5, 0, 0, 1});
    QCOMPARE(exact(path), exact(expected));
}

void TestKpPathSegLineTo::dropsALineShorterThanOneUnit_data()
{
    QTest::addColumn<QPointF>("last");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<bool>("drawn");

    double const justBelow = std::nextafter(1.0, 0.0);
    QTest::newRow("no length") << QPointF(10, 20) << QPointF(10, 20) << false;
    QTest::newRow("short in both directions") << QPointF(10, 20) << QPointF(10.4, 20.9) << false;
    QTest::newRow("short to the upper left") << QPointF(10, 20) << QPointF(9.5, 19.5) << false;
    QTest::newRow("one unit to the right") << QPointF(10, 20) << QPointF(11, 20) << true;
    QTest::newRow("one unit to the left") << QPointF(10, 20) << QPointF(9, 20) << true;
    QTest::newRow("one unit down") << QPointF(10, 20) << QPointF(10, 21) << true;
    QTest::newRow("one unit up") << QPointF(10, 20) << QPointF(10, 19) << true;
    QTest::newRow("just below one unit in x") << QPointF(0, 0) << QPointF(justBelow, 0) << false;
    QTest::newRow("just below one unit in y") << QPointF(0, 0) << QPointF(0, -justBelow) << false;
    QTest::newRow("just below one unit in both")
        << QPointF(0, 0) << QPointF(justBelow, justBelow) << false;
    QTest::newRow("long in x, short in y") << QPointF(10, 20) << QPointF(50, 20.5) << true;
    QTest::newRow("short in x, long in y") << QPointF(10, 20) << QPointF(10.5, 50) << true;
    QTest::newRow("x is no number") << QPointF(10, 20) << QPointF(notANumber, 20) << true;
    QTest::newRow("y is no number") << QPointF(10, 20) << QPointF(10, notANumber) << true;
    QTest::newRow("from no number") << QPointF(notANumber, 20) << QPointF(10, 20) << true;
    QTest::newRow("to infinity") << QPointF(10, 20) << QPointF(infinite, 20) << true;
    QTest::newRow("from infinity to infinity")
        << QPointF(infinite, 20) << QPointF(infinite, 20) << true;
    QTest::newRow("short where doubles are coarse")
        << QPointF(1e300, 1e300) << QPointF(1e300, 1e300) << false;
}

void TestKpPathSegLineTo::dropsALineShorterThanOneUnit()
{
    QFETCH(QPointF, last);
    QFETCH(QPointF, point);
    QFETCH(bool, drawn);

    KpPath path;
    path.append({500, 500, 0, 0, 0});
    path.append({last.x(), last.y(), 3, 4, 1});
    KpPath expected = path;
    if (drawn)
        expected.append({point.x(), point.y(), 0, 0, 1});
    KpPathSegLineTo(point, nullptr).addToPath(path);
    QCOMPARE(exact(path), exact(expected));
}

void TestKpPathSegLineTo::measuresFromTheLastElementOfAnyType_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("move") << 0;
    QTest::newRow("line") << 1;
    QTest::newRow("control point") << 2;
    QTest::newRow("end of a curve") << 3;
    QTest::newRow("close") << 4;
    QTest::newRow("unknown") << 77;
}

void TestKpPathSegLineTo::measuresFromTheLastElementOfAnyType()
{
    QFETCH(int, type);
    KpPath path;
    path.append({10, 20, 0, 0, type});
    KpPathSegLineTo(QPointF(10.5, 19.5), nullptr).addToPath(path);
    QCOMPARE(path.count(), 1);
    KpPathSegLineTo(QPointF(11, 20), nullptr).addToPath(path);
    QCOMPARE(path.count(), 2);
    // The new element is the last one now.
    KpPathSegLineTo(QPointF(10, 20), nullptr).addToPath(path);
    QCOMPARE(path.count(), 3);
}

void TestKpPathSegLineTo::isWrittenAsDocumentsHaveIt()
{
    KpPathSegLineTo seg(QPointF(120, 40), nullptr);
    seg.updateRate(240, 160);
    QCOMPARE(streamText(seg),
        QByteArray(
            "<LineTo><X V=\"120\" B=\"1\" P=\"0.5\"/><Y V=\"40\" B=\"2\" P=\"0.25\"/></LineTo>"));
    QCOMPARE(domMeaning(seg), QString("LineTo[](X[B=1 P=0.5 V=120] Y[B=2 P=0.25 V=40])"));
}

QTEST_GUILESS_MAIN(TestKpPathSegLineTo)
#include "tst_kppathseglineto.moc"
