// SPDX-License-Identifier: MIT
#include "outlinetesting.h"

#include <type_traits>

using OutlineTesting::exact;
using Testing::infinite;
using Testing::notANumber;

namespace {

/** The least of a segment: what the base class leaves open does nothing. */
class PlainSegment : public KpPathSeg
{
public:
    PlainSegment(SegType segType, KpPathSegList* list)
        : KpPathSeg(segType, list)
    {
    }

    void saveTo(QDomElement&) override { }
    void saveTo(XmlStreamWriter&) override { }
    bool parse(QDomElement const&, unsigned int) override { return true; }
    bool parse(QXmlStreamReader&, unsigned int) override { return true; }
    KpPathSeg* clone() override { return new PlainSegment(type, nullptr); }
    void addToPath(KpPath&) override { }
};

/** Counts its destruction. */
class CountedSegment : public PlainSegment
{
public:
    explicit CountedSegment(int* destructions)
        : PlainSegment(SegLineTo, nullptr)
        , count(destructions)
    {
    }
    ~CountedSegment() override { ++*count; }

private:
    int* count;
};

enum SegmentKind { Move, Line, Curve, Ellipse };

KpPathSeg* create(SegmentKind kind, QPointF const& point)
{
    switch (kind) {
    case Move:
        return new KpPathSegMoveTo(point, nullptr);
    case Line:
        return new KpPathSegLineTo(point, nullptr);
    case Curve:
        return new KpPathSegCurveTo(QPointF(91, 92), QPointF(93, 94), point, nullptr);
    case Ellipse:
        return new KpPathSegEllipse(point, 95, 96, nullptr);
    }
    return nullptr;
}

/** Segments at (10, 11), (20, 21) and so on. */
void fill(KpPathSegList& list, QVector<SegmentKind> const& kinds)
{
    for (int i = 0; i < kinds.count(); ++i)
        list.addTail(create(kinds.at(i), QPointF(10 * (i + 1), 10 * (i + 1) + 1)));
}

QVector<QString> exactSegments(KpPathSegList const& list)
{
    QVector<QString> texts;
    for (KpPathSeg* const seg : list.segs)
        texts << exact(*seg);
    return texts;
}

} // namespace

using Kinds = QVector<SegmentKind>;
Q_DECLARE_METATYPE(Kinds)

class TestKpPathSeg : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindsHaveTheNumbersOfRecords();
    void isNotCopied();
    void constructorBindsThePointInProportion();
    void baseIsOfNoKind();
    void isDestroyedThroughTheBase();
    void baseOperationsReachThePointOnly();

    void startsWhereThePreviousSegmentEnds_data();
    void startsWhereThePreviousSegmentEnds();
    void setStartPtMovesThePreviousPoint_data();
    void setStartPtMovesThePreviousPoint();
    void setStartPtTakesAnyNumbers();
    void withoutOwnerStartsAtTheOrigin();
    void removedSegmentStartsWhereItsListSays();

    void lastSegmentIsTheOneAtTheEnd_data();
    void lastSegmentIsTheOneAtTheEnd();
    void withoutListThereIsNoLastSegment();
    void lastSegmentIsToldByAddress();
};

void TestKpPathSeg::kindsHaveTheNumbersOfRecords()
{
    QCOMPARE(int(KpPathSeg::SegMoveTo), 2);
    QCOMPARE(int(KpPathSeg::SegLineTo), 3);
    QCOMPARE(int(KpPathSeg::SegCurveTo), 4);
    QCOMPARE(int(KpPathSeg::SegEllipse), 5);
}

void TestKpPathSeg::isNotCopied()
{
    QVERIFY(!std::is_copy_constructible<KpPathSegLineTo>::value);
    QVERIFY(!std::is_copy_assignable<KpPathSegLineTo>::value);
}

void TestKpPathSeg::constructorBindsThePointInProportion()
{
    KpPathSegList list;
    PlainSegment const seg(KpPathSeg::SegEllipse, &list);
    QCOMPARE(seg.type, KpPathSeg::SegEllipse);
    QCOMPARE(seg.owner, &list);
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0.0, 0.0}, {2, 0.0, 0.0})));
}

void TestKpPathSeg::baseIsOfNoKind()
{
    // The casts tell the class, not the type that a segment claims.
    PlainSegment curve(KpPathSeg::SegCurveTo, nullptr);
    QCOMPARE(curve.toCurveTo(), nullptr);
    PlainSegment ellipse(KpPathSeg::SegEllipse, nullptr);
    QCOMPARE(ellipse.toEllipse(), nullptr);
}

void TestKpPathSeg::isDestroyedThroughTheBase()
{
    int destructions = 0;
    KpPathSeg* const seg = new CountedSegment(&destructions);
    delete seg;
    QCOMPARE(destructions, 1);
}

void TestKpPathSeg::baseOperationsReachThePointOnly()
{
    PlainSegment seg(KpPathSeg::SegLineTo, nullptr);
    seg.pt = KpPoint({1, 0.5, 10}, {4, 0.25, 20});
    seg.translate(3, -4);
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0.5, 13}, {4, 0.25, 16})));
    seg.applyTransform(QMatrix(2, 0, 1, 3, 0.5, -0.5));
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0.5, 42.5}, {4, 0.25, 47.5})));
    seg.updateRate(85, 50);
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0.5, 42.5}, {4, 0.25, 47.5})));
    seg.updateRate(170, 50);
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0.25, 42.5}, {4, 0.25, 47.5})));
    seg.updateValue(100, 50);
    QCOMPARE(exact(seg.pt), exact(KpPoint({1, 0.25, 25}, {4, 0.25, 49.75})));
}

void TestKpPathSeg::startsWhereThePreviousSegmentEnds_data()
{
    QTest::addColumn<Kinds>("kinds");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<QVector<QPointF>>("starts");

    QPointF const origin(0, 0);
    QPointF const first(10, 11);
    QPointF const second(20, 21);
    QPointF const third(30, 31);
    using Points = QVector<QPointF>;
    QTest::newRow("lines, open") << Kinds {Line, Line, Line} << false
                                 << Points {origin, first, second};
    QTest::newRow("lines, closed")
        << Kinds {Line, Line, Line} << true << Points {third, first, second};
    QTest::newRow("curves, open") << Kinds {Curve, Curve, Curve} << false
                                  << Points {origin, first, second};
    QTest::newRow("curves, closed")
        << Kinds {Curve, Curve, Curve} << true << Points {third, first, second};
    QTest::newRow("ellipses, open")
        << Kinds {Ellipse, Ellipse, Ellipse} << false << Points {origin, first, second};
    QTest::newRow("ellipses, closed")
        << Kinds {Ellipse, Ellipse, Ellipse} << true << Points {third, first, second};
    QTest::newRow("moves, open") << Kinds {Move, Move, Move} << false
                                 << Points {first, second, third};
    QTest::newRow("moves, closed")
        << Kinds {Move, Move, Move} << true << Points {first, second, third};
    QTest::newRow("a move begins, open")
        << Kinds {Move, Line, Curve} << false << Points {first, first, second};
    QTest::newRow("a move begins, closed")
        << Kinds {Move, Line, Curve} << true << Points {first, first, second};
    QTest::newRow("a move ends, closed")
        << Kinds {Line, Ellipse, Move} << true << Points {third, first, third};
    QTest::newRow("one line, open") << Kinds {Line} << false << Points {origin};
    QTest::newRow("one line, closed") << Kinds {Line} << true << Points {first};
    QTest::newRow("two curves, closed") << Kinds {Curve, Curve} << true << Points {second, first};
}

void TestKpPathSeg::startsWhereThePreviousSegmentEnds()
{
    QFETCH(Kinds, kinds);
    QFETCH(bool, closed);
    QFETCH(QVector<QPointF>, starts);

    KpPathSegList list;
    fill(list, kinds);
    list.closed = closed;
    for (int i = 0; i < kinds.count(); ++i)
        QCOMPARE(list.segs.at(i)->startPt(), starts.at(i));
}

void TestKpPathSeg::setStartPtMovesThePreviousPoint_data()
{
    QTest::addColumn<Kinds>("kinds");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<QVector<int>>("moved"); // the segment that moves for each one; -1 for none

    QTest::newRow("lines, open") << Kinds {Line, Line, Line} << false << QVector<int> {-1, 0, 1};
    QTest::newRow("lines, closed") << Kinds {Line, Line, Line} << true << QVector<int> {2, 0, 1};
    QTest::newRow("a line behind a curve") << Kinds {Curve, Line} << false << QVector<int> {-1, 0};
    QTest::newRow("a curve behind an ellipse, closed")
        << Kinds {Ellipse, Curve} << true << QVector<int> {1, 0};
    QTest::newRow("moves, open") << Kinds {Move, Move} << false << QVector<int> {0, 1};
    QTest::newRow("moves, closed") << Kinds {Move, Move} << true << QVector<int> {0, 1};
    QTest::newRow("a move begins") << Kinds {Move, Line, Ellipse} << true << QVector<int> {0, 0, 1};
    QTest::newRow("one line, open") << Kinds {Line} << false << QVector<int> {-1};
    QTest::newRow("one line, closed") << Kinds {Line} << true << QVector<int> {0};
}

void TestKpPathSeg::setStartPtMovesThePreviousPoint()
{
    QFETCH(Kinds, kinds);
    QFETCH(bool, closed);
    QFETCH(QVector<int>, moved);

    for (int i = 0; i < kinds.count(); ++i) {
        KpPathSegList list;
        fill(list, kinds);
        list.closed = closed;
        for (KpPathSeg* const seg : qAsConst(list.segs)) {
            seg->pt.x.rate = 0.25;
            seg->pt.y.base = 7;
        }
        // The same outline, with the point written into it by hand.
        KpPathSegList expected;
        fill(expected, kinds);
        for (KpPathSeg* const seg : qAsConst(expected.segs)) {
            seg->pt.x.rate = 0.25;
            seg->pt.y.base = 7;
        }
        if (moved.at(i) >= 0) {
            expected.segs.at(moved.at(i))->pt.x.value = -5;
            expected.segs.at(moved.at(i))->pt.y.value = 0.125;
        }
        list.segs.at(i)->setStartPt(QPointF(-5, 0.125));
        QCOMPARE(exactSegments(list), exactSegments(expected));
    }
}

void TestKpPathSeg::setStartPtTakesAnyNumbers()
{
    KpPathSegList list;
    fill(list, {Line, Line});
    list.segs.at(1)->setStartPt(QPointF(notANumber, -infinite));
    QVERIFY(std::isnan(list.segs.at(0)->pt.x.value));
    COMPARE_BITS(list.segs.at(0)->pt.y.value, -infinite);
    QVERIFY(std::isnan(list.segs.at(1)->startPt().x()));
    COMPARE_BITS(list.segs.at(1)->startPt().y(), -infinite);
}

void TestKpPathSeg::withoutOwnerStartsAtTheOrigin()
{
    for (SegmentKind const kind : {Line, Curve, Ellipse}) {
        std::unique_ptr<KpPathSeg> const seg(create(kind, QPointF(10, 11)));
        QString const before = exact(*seg);
        QCOMPARE(seg->startPt(), QPointF(0, 0));
        seg->setStartPt(QPointF(7, 8));
        QCOMPARE(exact(*seg), before);
    }
}

void TestKpPathSeg::removedSegmentStartsWhereItsListSays()
{
    KpPathSegList list;
    fill(list, {Line, Line, Line});
    std::unique_ptr<KpPathSeg> const removed(list.segs.at(1));
    list.removeAt(1, false);
    QCOMPARE(removed->startPt(), QPointF(0, 0));
    removed->setStartPt(QPointF(1, 2));
    QCOMPARE(removed->startPt(), QPointF(0, 0));

    list.closed = true;
    QCOMPARE(removed->startPt(), QPointF(30, 31));
    removed->setStartPt(QPointF(1, 2));
    QCOMPARE(list.segs.at(1)->pt.x.value, 1.0);
    QCOMPARE(list.segs.at(1)->pt.y.value, 2.0);
    list.removeAll(true);
    QCOMPARE(removed->startPt(), QPointF(0, 0));
}

void TestKpPathSeg::lastSegmentIsTheOneAtTheEnd_data()
{
    QTest::addColumn<bool>("closed");
    QTest::newRow("open") << false;
    QTest::newRow("closed") << true;
}

void TestKpPathSeg::lastSegmentIsTheOneAtTheEnd()
{
    QFETCH(bool, closed);
    KpPathSegList list;
    fill(list, {Move, Line, Curve, Ellipse});
    list.closed = closed;
    for (int i = 0; i < 4; ++i)
        QCOMPARE(list.segs.at(i)->isLastSeg(), i == 3);

    std::unique_ptr<KpPathSeg> const removed(list.segs.at(3));
    list.removeAt(3, false);
    QCOMPARE(removed->owner, &list);
    QVERIFY(!removed->isLastSeg());
    QVERIFY(list.segs.at(2)->isLastSeg());
}

void TestKpPathSeg::withoutListThereIsNoLastSegment()
{
    for (SegmentKind const kind : {Move, Line, Curve, Ellipse}) {
        std::unique_ptr<KpPathSeg> const seg(create(kind, QPointF(10, 11)));
        QVERIFY(!seg->isLastSeg());
        KpPathSegList empty;
        seg->owner = &empty;
        QVERIFY(!seg->isLastSeg());
    }
}

void TestKpPathSeg::lastSegmentIsToldByAddress()
{
    KpPathSegList list;
    list.lineTo(QPointF(10, 11));
    KpPathSegLineTo twin(QPointF(10, 11), &list);
    QVERIFY(!twin.isLastSeg());
    QVERIFY(list.segs.at(0)->isLastSeg());
}

QTEST_GUILESS_MAIN(TestKpPathSeg)
#include "tst_kppathseg.moc"
