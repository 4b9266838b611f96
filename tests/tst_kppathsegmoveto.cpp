// SPDX-License-Identifier: MIT
#include "segmenttesting.h"

using OutlineTesting::exact;

namespace {

TestedKind const kindMoveTo {"MoveTo", KpPathSeg::SegMoveTo,
    {
        {'X', 1, true, [](KpPathSeg& seg) -> KpReal& { return seg.pt.x; }},
        {'Y', 2, true, [](KpPathSeg& seg) -> KpReal& { return seg.pt.y; }},
    },
    true, false, [](KpPathSegList* owner) -> KpPathSeg* {
        return new KpPathSegMoveTo(QPointF(0.0, 0.0), owner);
    }};

KpPath pathOf(QVector<KpPath::KpElement> const& elements)
{
    KpPath path;
    path.elements = elements;
    return path;
}

} // namespace

class TestKpPathSegMoveTo : public SegmentTest
{
    Q_OBJECT

public:
    TestKpPathSegMoveTo()
        : SegmentTest(kindMoveTo)
    {
    }

private Q_SLOTS:
    void takesAPlainPoint();
    void takesABoundPointWithAllItsFields();
    void startsWhereItStands();
    void setStartPtMovesTheSegmentItself();
    void drawsOneMove();
    void drawsAMoveEvenWhereThePathEnds();
    void isWrittenAsDocumentsHaveIt();
    void looksLikeALineApartFromItsName();
};

void TestKpPathSegMoveTo::takesAPlainPoint()
{
    KpPathSegList list;
    KpPathSegMoveTo const seg(QPointF(12.5, -7.0), &list);
    QCOMPARE(seg.type, KpPathSeg::SegMoveTo);
    QCOMPARE(seg.owner, &list);
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0.0, 12.5}, {2, 0.0, -7.0})));
}

void TestKpPathSegMoveTo::takesABoundPointWithAllItsFields()
{
    KpPoint const point({-9, 0.25, 12.5}, {32767, 0.5, -7.0});
    KpPathSegMoveTo const seg(point, nullptr);
    QCOMPARE(seg.type, KpPathSeg::SegMoveTo);
    QCOMPARE(seg.owner, nullptr);
    QCOMPARE(exact(seg.pt), exact(point));
}

void TestKpPathSegMoveTo::startsWhereItStands()
{
    KpPathSegList list;
    list.closed = true;
    list.lineTo(QPointF(10, 20));
    list.moveTo(QPointF(30, 40));
    QCOMPARE(list.segs.at(1)->startPt(), QPointF(30, 40));
    QCOMPARE(KpPathSegMoveTo(QPointF(5, 6), nullptr).startPt(), QPointF(5, 6));
}

void TestKpPathSegMoveTo::setStartPtMovesTheSegmentItself()
{
    KpPathSegList list;
    list.closed = true;
    list.lineTo(QPointF(10, 20));
    list.addTail(new KpPathSegMoveTo(KpPoint({3, 0.25, 30}, {4, 0.5, 40}), nullptr));
    list.segs.at(1)->setStartPt(QPointF(7, 8));
    QCOMPARE(exact(list.segs.at(0)->pt), exact(KpPoint({1, 0, 10}, {2, 0, 20})));
    QCOMPARE(exact(list.segs.at(1)->pt), exact(KpPoint({3, 0.25, 7}, {4, 0.5, 8})));

    KpPathSegMoveTo alone(QPointF(5, 6), nullptr);
    alone.setStartPt(QPointF(7, 8));
    QCOMPARE(exact(alone.pt), exact(KpPoint({1, 0, 7}, {2, 0, 8})));
}

void TestKpPathSegMoveTo::drawsOneMove()
{
    KpPath path;
    KpPathSegMoveTo(KpPoint({3, 9, 12.5}, {4, 9, -7}), nullptr).addToPath(path);
    QCOMPARE(exact(path), exact(pathOf({{12.5, -7, 0, 0, 0}})));
}

void TestKpPathSegMoveTo::drawsAMoveEvenWhereThePathEnds()
{
    KpPath path = pathOf({{12.5, -7, 1, 2, 1}});
    KpPathSegMoveTo(QPointF(12.5, -7), nullptr).addToPath(path);
    KpPathSegMoveTo(QPointF(12.5, -7), nullptr).addToPath(path);
    QCOMPARE(exact(path),
        exact(pathOf({{12.5, -7, 1, 2, 1}, {12.5, -7, 0, 0, 0}, {12.5, -7, 0, 0, 0}})));
}

void TestKpPathSegMoveTo::isWrittenAsDocumentsHaveIt()
{
    KpPathSegMoveTo seg(QPointF(120, 40), nullptr);
    seg.updateRate(240, 160);
    QCOMPARE(streamText(seg),
        QByteArray(
            "<MoveTo><X V=\"120\" B=\"1\" P=\"0.5\"/><Y V=\"40\" B=\"2\" P=\"0.25\"/></MoveTo>"));
    QCOMPARE(domMeaning(seg), QString("MoveTo[](X[B=1 P=0.5 V=120] Y[B=2 P=0.25 V=40])"));
}

void TestKpPathSegMoveTo::looksLikeALineApartFromItsName()
{
    KpPoint const point({3, 0.125, 12.5}, {0, 0, 1e6});
    KpPathSegMoveTo move(point, nullptr);
    KpPathSegLineTo line(point, nullptr);
    QCOMPARE(streamText(move).replace("MoveTo", "LineTo"), streamText(line));
    QCOMPARE(domMeaning(move).replace("MoveTo", "LineTo"), domMeaning(line));
}

QTEST_GUILESS_MAIN(TestKpPathSegMoveTo)
#include "tst_kppathsegmoveto.moc"
