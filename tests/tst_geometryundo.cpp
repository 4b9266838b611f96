// SPDX-License-Identifier: MIT
#include "outlinetesting.h"

using OutlineTesting::exact;

namespace {

using Ints = QVector<int>;
using Doubles = QVector<double>;

int const intMax = std::numeric_limits<int>::max();
int const intMin = std::numeric_limits<int>::min();

/** Claims a kind that it does not cast to. */
class Impostor : public KpPathSegLineTo
{
public:
    explicit Impostor(SegType claimed)
        : KpPathSegLineTo(QPointF(1.0, 2.0), nullptr)
    {
        type = claimed;
    }
};

/** A list with one segment of each kind, all bases, rates and values different. */
void fillWithEachKind(KpPathSegList& list)
{
    list.closed = true;
    list.noFill = false;
    list.noLine = true;
    list.addTail(new KpPathSegMoveTo(KpPoint({1, 0.25, 10}, {2, 0.5, 20}), nullptr));
    list.addTail(new KpPathSegCurveTo(KpPoint({3, 1.25, 30}, {4, 1.5, 40}),
        KpPoint({5, 2.25, 50}, {6, 2.5, 60}), KpPoint({7, 3.25, 70}, {0, 3.5, 80}), nullptr));
    auto* const ellipse =
        new KpPathSegEllipse(KpPoint({-1, 4.25, 90}, {8, 4.5, 100}), {}, {}, nullptr);
    ellipse->a = KpReal(5, 5.25, 110);
    ellipse->b = KpReal(-32768, 5.5, 120);
    list.addTail(ellipse);
    list.addTail(new KpPathSegLineTo(KpPoint({32767, 6.25, 130}, {3, 6.5, 140}), nullptr));
}

Ints const eachKindInts {1, 0, 1, /* move */ 2, 1, 2, /* curve */ 4, 7, 0, 3, 4, 5, 6,
    /* ellipse */ 5, -1, 8, 5, -32768, /* line */ 3, 32767, 3};
Doubles const eachKindDoubles {/* move */ 10, 0.25, 20, 0.5,
    /* curve, the end point first */ 70, 3.25, 80, 3.5, 30, 1.25, 40, 1.5, 50, 2.25, 60, 2.5,
    /* ellipse */ 90, 4.25, 100, 4.5, 110, 5.25, 120, 5.5, /* line */ 130, 6.25, 140, 6.5};

/** Where the records of the segments end. */
Ints const eachKindIntEnds {3, 6, 13, 18, 21};
Ints const eachKindDoubleEnds {0, 4, 16, 24, 28};

template <class Entry> QVector<Entry> firstOf(QVector<Entry> const& entries, int count)
{
    QVector<Entry> result = entries.mid(0, count);
    result.squeeze();
    return result;
}

/** Flags as "110" (closed, noFill, noLine), then the segments. */
QString decoded(KpPathSegList const& list)
{
    QString text = QStringLiteral("%1%2%3").arg(list.closed).arg(list.noFill).arg(list.noLine);
    for (KpPathSeg* const seg : list.segs)
        text += QLatin1Char('\n') + exact(*seg);
    return text;
}

} // namespace

Q_DECLARE_METATYPE(Ints)

class TestGeometryUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flagsStandFirst_data();
    void flagsStandFirst();
    void onlyOneIsTrue_data();
    void onlyOneIsTrue();
    void encodesPlainLines();
    void encodesEachKind();
    void encodingAppends();
    void encodingSkipsWhatHasNoRecord();
    void encodingFollowsTheTypeField_data();
    void encodingFollowsTheTypeField();
    void encodingLeavesTheList();

    void decodesEachKind();
    void decodingAppendsToTheList();
    void recordsFollowEachOther();
    void countOfNothingReadsTheFlagsOnly_data();
    void countOfNothingReadsTheFlagsOnly();
    void smallerCountReadsTheFirstSegments();
    void basesKeepTheirLowSixteenBits_data();
    void basesKeepTheirLowSixteenBits();
    void unknownTypesTakeOneInt_data();
    void unknownTypesTakeOneInt();
    void unknownTypesCountAsSegments();

    void shortenedIntsKeepWholeSegments();
    void shortenedDoublesKeepWholeSegments();
    void shortenedHeaderReadsNothing();
    void hugeCountEndsWithTheRecord();
    void positionsOutsideReadNothing_data();
    void positionsOutsideReadNothing();
    void realsAtAPositionOutsideDropTheSegment_data();
    void realsAtAPositionOutsideDropTheSegment();

    void randomOutlinesGoThereAndBack();
    void randomStreamsAreReadWithinTheirBounds();
};

void TestGeometryUndo::flagsStandFirst_data()
{
    QTest::addColumn<bool>("closed");
    QTest::addColumn<bool>("noFill");
    QTest::addColumn<bool>("noLine");
    QTest::addColumn<Ints>("ints");
    QTest::newRow("none") << false << false << false << Ints {0, 0, 0};
    QTest::newRow("closed") << true << false << false << Ints {1, 0, 0};
    QTest::newRow("noFill") << false << true << false << Ints {0, 1, 0};
    QTest::newRow("noLine") << false << false << true << Ints {0, 0, 1};
    QTest::newRow("all") << true << true << true << Ints {1, 1, 1};
}

void TestGeometryUndo::flagsStandFirst()
{
    QFETCH(bool, closed);
    QFETCH(bool, noFill);
    QFETCH(bool, noLine);
    QFETCH(Ints, ints);
    KpPathSegList list;
    list.closed = closed;
    list.noFill = noFill;
    list.noLine = noLine;
    Ints encoded;
    Doubles doubles;
    list.toUndoValue(encoded, doubles);
    QCOMPARE(encoded, ints);
    QCOMPARE(doubles, Doubles());

    for (bool const before : {false, true}) {
        KpPathSegList read;
        read.closed = read.noFill = read.noLine = before;
        int intPos = 0;
        int doublePos = 0;
        read.fromUndoValue(encoded, doubles, intPos, doublePos, 0);
        QCOMPARE(exact(read), exact(list));
        QCOMPARE(intPos, 3);
        QCOMPARE(doublePos, 0);
    }
}

void TestGeometryUndo::onlyOneIsTrue_data()
{
    QTest::addColumn<int>("entry");
    QTest::addColumn<bool>("flag");
    QTest::newRow("1") << 1 << true;
    QTest::newRow("0") << 0 << false;
    QTest::newRow("2") << 2 << false;
    QTest::newRow("-1") << -1 << false;
    QTest::newRow("257") << 257 << false;
    QTest::newRow("65537") << 65537 << false;
}

void TestGeometryUndo::onlyOneIsTrue()
{
    QFETCH(int, entry);
    QFETCH(bool, flag);
    for (int which = 0; which < 3; ++which) {
        Ints ints {0, 0, 0};
        ints[which] = entry;
        Doubles doubles;
        int intPos = 0;
        int doublePos = 0;
        KpPathSegList list;
        list.closed = list.noFill = list.noLine = true;
        list.fromUndoValue(ints, doubles, intPos, doublePos, 0);
        QCOMPARE(list.closed, which == 0 && flag);
        QCOMPARE(list.noFill, which == 1 && flag);
        QCOMPARE(list.noLine, which == 2 && flag);
    }
}

void TestGeometryUndo::encodesPlainLines()
{
    KpPathSegList list;
    list.closed = true;
    list.moveTo(QPointF(10, 20));
    list.lineTo(QPointF(30, 40));
    Ints ints;
    Doubles doubles;
    list.toUndoValue(ints, doubles);
    QCOMPARE(ints, Ints({1, 0, 0, 2, 1, 2, 3, 1, 2}));
    QCOMPARE(doubles, Doubles({10, 0, 20, 0, 30, 0, 40, 0}));
}

void TestGeometryUndo::encodesEachKind()
{
    KpPathSegList list;
    fillWithEachKind(list);
    Ints ints;
    Doubles doubles;
    list.toUndoValue(ints, doubles);
    QCOMPARE(ints, eachKindInts);
    QCOMPARE(doubles, eachKindDoubles);
}

void TestGeometryUndo::encodingAppends()
{
    KpPathSegList list;
    list.lineTo(QPointF(30, 40));
    Ints ints {77};
    Doubles doubles {88, 99};
    list.toUndoValue(ints, doubles);
    QCOMPARE(ints, Ints({77, 0, 0, 0, 3, 1, 2}));
    QCOMPARE(doubles, Doubles({88, 99, 30, 0, 40, 0}));
}

void TestGeometryUndo::encodingSkipsWhatHasNoRecord()
{
    KpPathSegList list;
    list.addTail(new Impostor(KpPathSeg::SegCurveTo));
    list.addTail(new Impostor(KpPathSeg::SegEllipse));
    list.addTail(new Impostor(KpPathSeg::SegMoveTo));
    list.segs << nullptr;
    Ints ints;
    Doubles doubles;
    list.toUndoValue(ints, doubles);
    QCOMPARE(ints, Ints({0, 0, 0, 2, 1, 2}));
    QCOMPARE(doubles, Doubles({1, 0, 2, 0}));
}

void TestGeometryUndo::encodingFollowsTheTypeField_data()
{
    QTest::addColumn<int>("segment"); // of fillWithEachKind()
    QTest::addColumn<int>("type");
    QTest::addColumn<Ints>("ints");
    QTest::addColumn<Doubles>("doubles");
    int const move = 0;
    int const curve = 1;
    int const ellipse = 2;
    int const line = 3;
    auto const row = [](char const* name, int segment, int type, Ints const& ints,
                         Doubles const& doubles) {
        QTest::newRow(name) << segment << type << ints << doubles;
    };
    row("a move as a line", move, 3, {3, 1, 2}, {10, 0.25, 20, 0.5});
    row("a move as a curve", move, 4, {}, {});
    row("a move as an ellipse", move, 5, {}, {});
    row("a line as a move", line, 2, {2, 32767, 3}, {130, 6.25, 140, 6.5});
    row("a line as a curve", line, 4, {}, {});
    row("a line as an ellipse", line, 5, {}, {});
    row("a curve as a move", curve, 2, {2, 7, 0}, {70, 3.25, 80, 3.5});
    row("a curve as a line", curve, 3, {3, 7, 0}, {70, 3.25, 80, 3.5});
    row("a curve as an ellipse", curve, 5, {}, {});
    row("an ellipse as a move", ellipse, 2, {2, -1, 8}, {90, 4.25, 100, 4.5});
    row("an ellipse as a line", ellipse, 3, {3, -1, 8}, {90, 4.25, 100, 4.5});
    row("an ellipse as a curve", ellipse, 4, {}, {});
    row("a line as nothing known", line, 0, {}, {});
    row("a curve as nothing known", curve, 1, {}, {});
    row("an ellipse as nothing known", ellipse, 6, {}, {});
}

void TestGeometryUndo::encodingFollowsTheTypeField()
{
    QFETCH(int, segment);
    QFETCH(int, type);
    QFETCH(Ints, ints);
    QFETCH(Doubles, doubles);
    KpPathSegList all;
    fillWithEachKind(all);
    KpPathSegList list;
    list.addTail(all.segs.takeAt(segment));
    list.segs.first()->type = KpPathSeg::SegType(type);
    Ints encodedInts;
    Doubles encodedDoubles;
    list.toUndoValue(encodedInts, encodedDoubles);
    QCOMPARE(encodedInts, Ints({0, 0, 0}) + ints);
    QCOMPARE(encodedDoubles, doubles);
}

void TestGeometryUndo::encodingLeavesTheList()
{
    KpPathSegList list;
    fillWithEachKind(list);
    QString const before = exact(list);
    Ints ints;
    Doubles doubles;
    list.toUndoValue(ints, doubles);
    QCOMPARE(exact(list), before);
}

void TestGeometryUndo::decodesEachKind()
{
    KpPathSegList expected;
    fillWithEachKind(expected);
    Ints ints = eachKindInts;
    Doubles doubles = eachKindDoubles;
    int intPos = 0;
    int doublePos = 0;
    KpPathSegList list;
    list.fromUndoValue(ints, doubles, intPos, doublePos, 4);
    QCOMPARE(exact(list), exact(expected));
    QCOMPARE(intPos, 21);
    QCOMPARE(doublePos, 28);
    QCOMPARE(ints, eachKindInts);
    QCOMPARE(doubles, eachKindDoubles);
    for (KpPathSeg* const seg : qAsConst(list.segs))
        QCOMPARE(seg->owner, &list);
}

void TestGeometryUndo::decodingAppendsToTheList()
{
    KpPathSegList list;
    list.moveTo(QPointF(1, 2));
    list.lineTo(QPointF(3, 4));
    QVector<KpPathSeg*> const held = list.segs;
    Ints ints {0, 1, 0, 3, 1, 2};
    Doubles doubles {30, 0, 40, 0};
    int intPos = 0;
    int doublePos = 0;
    list.fromUndoValue(ints, doubles, intPos, doublePos, 1);
    QCOMPARE(list.segs.count(), 3);
    QCOMPARE(list.segs.mid(0, 2), held);
    QCOMPARE(exact(list.segs.at(0)->pt), exact(KpPoint({1, 0, 1}, {2, 0, 2})));
    QCOMPARE(exact(list.segs.at(2)->pt), exact(KpPoint({1, 0, 30}, {2, 0, 40})));
    QVERIFY(list.noFill);
}

void TestGeometryUndo::recordsFollowEachOther()
{
    KpPathSegList first;
    fillWithEachKind(first);
    KpPathSegList second;
    second.noFill = true;
    KpPathSegList third;
    third.closed = true;
    third.curveTo(QPointF(1, 2), QPointF(3, 4), QPointF(5, 6));
    Ints ints {9};
    Doubles doubles {9, 9};
    for (KpPathSegList* const list : {&first, &second, &third})
        list->toUndoValue(ints, doubles);

    int intPos = 1;
    int doublePos = 2;
    for (KpPathSegList* const list : {&first, &second, &third}) {
        KpPathSegList read;
        read.fromUndoValue(ints, doubles, intPos, doublePos, list->segs.count());
        QCOMPARE(exact(read), exact(*list));
    }
    QCOMPARE(intPos, ints.count());
    QCOMPARE(doublePos, doubles.count());
}

void TestGeometryUndo::countOfNothingReadsTheFlagsOnly_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("0") << 0;
    QTest::newRow("-1") << -1;
    QTest::newRow("the least") << intMin;
}

void TestGeometryUndo::countOfNothingReadsTheFlagsOnly()
{
    QFETCH(int, count);
    KpPathSegList list;
    list.lineTo(QPointF(1, 2));
    Ints ints = eachKindInts;
    Doubles doubles = eachKindDoubles;
    int intPos = 0;
    int doublePos = 0;
    list.fromUndoValue(ints, doubles, intPos, doublePos, count);
    QCOMPARE(list.segs.count(), 1);
    QVERIFY(list.closed && !list.noFill && list.noLine);
    QCOMPARE(intPos, 3);
    QCOMPARE(doublePos, 0);
}

void TestGeometryUndo::smallerCountReadsTheFirstSegments()
{
    KpPathSegList expected;
    fillWithEachKind(expected);
    Ints ints = eachKindInts;
    Doubles doubles = eachKindDoubles;
    for (int count = 4; count >= 0; --count) {
        while (expected.segs.count() > count)
            expected.removeAt(count, true);
        int intPos = 0;
        int doublePos = 0;
        KpPathSegList list;
        list.fromUndoValue(ints, doubles, intPos, doublePos, count);
        QCOMPARE(exact(list), exact(expected));
        QCOMPARE(intPos, eachKindIntEnds.at(count));
        QCOMPARE(doublePos, eachKindDoubleEnds.at(count));
    }
}

void TestGeometryUndo::basesKeepTheirLowSixteenBits_data()
{
    QTest::addColumn<int>("entry");
    QTest::addColumn<int>("base");
    struct Row
    {
        int entry;
        int base;
    };
    Row const rows[] = {{-1, -1}, {32767, 32767}, {32768, -32768}, {65535, -1}, {65536, 0},
        {70000, 4464}, {-32769, 32767}, {intMax, -1}, {intMin, 0}};
    for (Row const& row : rows)
        QTest::addRow("%d", row.entry) << row.entry << row.base;
}

void TestGeometryUndo::basesKeepTheirLowSixteenBits()
{
    QFETCH(int, entry);
    QFETCH(int, base);
    Ints ints {0, 0, 0, 5, entry, entry, entry, entry};
    Doubles doubles(8, 1.5);
    int intPos = 0;
    int doublePos = 0;
    KpPathSegList list;
    list.fromUndoValue(ints, doubles, intPos, doublePos, 1);
    QCOMPARE(list.segs.count(), 1);
    KpPathSegEllipse const* const ellipse = list.segs.at(0)->toEllipse();
    KpReal const expected(qint16(base), 1.5, 1.5);
    QCOMPARE(exact(ellipse->pt), exact(KpPoint(expected, expected)));
    QCOMPARE(exact(ellipse->a), exact(expected));
    QCOMPARE(exact(ellipse->b), exact(expected));
}

void TestGeometryUndo::unknownTypesTakeOneInt_data()
{
    QTest::addColumn<int>("type");
    for (int const type : {0, 1, 6, -1, 255, 65538, 65539, intMax, intMin})
        QTest::addRow("%d", type) << type;
}

void TestGeometryUndo::unknownTypesTakeOneInt()
{
    QFETCH(int, type);
    Ints ints {0, 0, 0, type, 3, 1, 2, type};
    Doubles doubles {30, 0, 40, 0};
    int intPos = 0;
    int doublePos = 0;
    KpPathSegList list;
    list.fromUndoValue(ints, doubles, intPos, doublePos, 3);
    QCOMPARE(list.segs.count(), 1);
    QCOMPARE(exact(list.segs.at(0)->pt), exact(KpPoint({1, 0, 30}, {2, 0, 40})));
    QCOMPARE(intPos, 8);
    QCOMPARE(doublePos, 4);
}

void TestGeometryUndo::unknownTypesCountAsSegments()
{
    Ints ints {0, 0, 0, 77, 77, 3, 1, 2};
    Doubles doubles {30, 0, 40, 0};
    int intPos = 0;
    int doublePos = 0;
    KpPathSegList list;
    list.fromUndoValue(ints, doubles, intPos, doublePos, 2);
    QCOMPARE(list.segs.count(), 0);
    QCOMPARE(intPos, 5);
    QCOMPARE(doublePos, 0);
}

void TestGeometryUndo::shortenedIntsKeepWholeSegments()
{
    for (int length = 3; length <= eachKindInts.count(); ++length) {
        int whole = 0;
        while (whole < 4 && eachKindIntEnds.at(whole + 1) <= length)
            ++whole;
        KpPathSegList expected;
        fillWithEachKind(expected);
        while (expected.segs.count() > whole)
            expected.removeAt(whole, true);

        Ints ints = firstOf(eachKindInts, length);
        Doubles doubles = eachKindDoubles;
        int intPos = 0;
        int doublePos = 0;
        KpPathSegList list;
        list.fromUndoValue(ints, doubles, intPos, doublePos, 4);
        QCOMPARE(exact(list), exact(expected));
        QCOMPARE(intPos, eachKindIntEnds.at(whole));
        QCOMPARE(doublePos, eachKindDoubleEnds.at(whole));
    }
}

void TestGeometryUndo::shortenedDoublesKeepWholeSegments()
{
    for (int length = 0; length <= eachKindDoubles.count(); ++length) {
        int whole = 0;
        while (whole < 4 && eachKindDoubleEnds.at(whole + 1) <= length)
            ++whole;
        KpPathSegList expected;
        fillWithEachKind(expected);
        while (expected.segs.count() > whole)
            expected.removeAt(whole, true);

        Ints ints = eachKindInts;
        Doubles doubles = firstOf(eachKindDoubles, length);
        int intPos = 0;
        int doublePos = 0;
        KpPathSegList list;
        list.fromUndoValue(ints, doubles, intPos, doublePos, 4);
        QCOMPARE(exact(list), exact(expected));
        QCOMPARE(intPos, eachKindIntEnds.at(whole));
        QCOMPARE(doublePos, eachKindDoubleEnds.at(whole));
    }
}

void TestGeometryUndo::shortenedHeaderReadsNothing()
{
    for (int length = 0; length < 3; ++length) {
        for (bool const before : {false, true}) {
            Ints ints = firstOf(Ints {!before, !before, !before}, length);
            Doubles doubles = eachKindDoubles;
            int intPos = 0;
            int doublePos = 5;
            KpPathSegList list;
            list.closed = list.noFill = list.noLine = before;
            list.fromUndoValue(ints, doubles, intPos, doublePos, 4);
            QCOMPARE(decoded(list), QString(before ? "111" : "000"));
            QCOMPARE(intPos, 0);
            QCOMPARE(doublePos, 5);
        }
    }
}

void TestGeometryUndo::hugeCountEndsWithTheRecord()
{
    KpPathSegList expected;
    fillWithEachKind(expected);
    Ints ints = eachKindInts;
    Doubles doubles = eachKindDoubles;
    int intPos = 0;
    int doublePos = 0;
    KpPathSegList list;
    list.fromUndoValue(ints, doubles, intPos, doublePos, intMax);
    QCOMPARE(exact(list), exact(expected));
    QCOMPARE(intPos, 21);
    QCOMPARE(doublePos, 28);

    Ints unknown(1000, 77);
    intPos = 0;
    doublePos = 0;
    KpPathSegList empty;
    empty.fromUndoValue(unknown, doubles, intPos, doublePos, intMax);
    QCOMPARE(empty.segs.count(), 0);
    QCOMPARE(intPos, 1000);
    QCOMPARE(doublePos, 0);
}

void TestGeometryUndo::positionsOutsideReadNothing_data()
{
    QTest::addColumn<int>("intPos");
    QTest::addColumn<int>("doublePos");
    QTest::newRow("ints before the start") << -1 << 0;
    QTest::newRow("ints far before the start") << intMin << 0;
    QTest::newRow("ints at the end") << 21 << 0;
    QTest::newRow("ints two before the end") << 19 << 0;
    QTest::newRow("ints behind the end") << 22 << 0;
    QTest::newRow("ints far behind the end") << intMax << 0;
    QTest::newRow("ints a header before the greatest") << intMax - 3 << 0;
    QTest::newRow("both before the start") << -1 << -1;
    QTest::newRow("both far behind the end") << intMax << intMax;
}

void TestGeometryUndo::positionsOutsideReadNothing()
{
    QFETCH(int, intPos);
    QFETCH(int, doublePos);
    Ints ints = eachKindInts;
    Doubles doubles = eachKindDoubles;
    int intPosAfter = intPos;
    int doublePosAfter = doublePos;
    KpPathSegList list;
    list.noFill = true;
    list.fromUndoValue(ints, doubles, intPosAfter, doublePosAfter, 4);
    QCOMPARE(decoded(list), QString("010"));
    QCOMPARE(intPosAfter, intPos);
    QCOMPARE(doublePosAfter, doublePos);
}

void TestGeometryUndo::realsAtAPositionOutsideDropTheSegment_data()
{
    QTest::addColumn<int>("doublePos");
    QTest::newRow("before the start") << -1;
    QTest::newRow("far before the start") << intMin;
    QTest::newRow("at the end") << 28;
    QTest::newRow("too near the end") << 25;
    QTest::newRow("far behind the end") << intMax;
    QTest::newRow("a point before the greatest") << intMax - 4;
}

void TestGeometryUndo::realsAtAPositionOutsideDropTheSegment()
{
    QFETCH(int, doublePos);
    Ints ints = eachKindInts;
    Doubles doubles = eachKindDoubles;
    int intPos = 0;
    int doublePosAfter = doublePos;
    KpPathSegList list;
    list.noFill = true;
    list.fromUndoValue(ints, doubles, intPos, doublePosAfter, 4);
    QCOMPARE(decoded(list), QString("101"));
    QCOMPARE(intPos, 3);
    QCOMPARE(doublePosAfter, doublePos);
}

void TestGeometryUndo::randomOutlinesGoThereAndBack()
{
    QRandomGenerator random = Testing::seededRandom(271828);
    for (int round = 0; round < 1000; ++round) {
        KpPathSegList list;
        OutlineTesting::fillRandomly(list, random.bounded(20), random);
        Ints ints;
        Doubles doubles;
        list.toUndoValue(ints, doubles);
        int intPos = 0;
        int doublePos = 0;
        KpPathSegList read;
        read.fromUndoValue(ints, doubles, intPos, doublePos, list.segs.count());
        QCOMPARE(exact(read), exact(list));
        QCOMPARE(intPos, ints.count());
        QCOMPARE(doublePos, doubles.count());
    }
}

void TestGeometryUndo::randomStreamsAreReadWithinTheirBounds()
{
    QRandomGenerator random = Testing::seededRandom(161803);
    int segments = 0;
    for (int round = 0; round < 20000; ++round) {
        Ints ints(random.bounded(40));
        for (int& entry : ints)
            entry = random.bounded(16) == 0 ? int(random.generate()) : random.bounded(8);
        ints.squeeze();
        Doubles doubles(random.bounded(60), 1.0);
        doubles.squeeze();
        int const intStart = random.bounded(-2, 6);
        int const doubleStart = random.bounded(-2, 6);
        int intPos = intStart;
        int doublePos = doubleStart;
        KpPathSegList list;
        list.fromUndoValue(ints, doubles, intPos, doublePos, random.bounded(12));

        // What was read is what the positions say: ints and doubles of the segments that came.
        int intsRead = intPos == intStart ? 0 : 3;
        int doublesRead = 0;
        for (KpPathSeg* const seg : qAsConst(list.segs)) {
            int const reals = seg->toCurveTo() ? 6 : seg->toEllipse() ? 4 : 2;
            intsRead += 1 + reals;
            doublesRead += 2 * reals;
        }
        QCOMPARE(doublePos, doubleStart + doublesRead);
        QVERIFY(intPos >= intStart + intsRead);
        QVERIFY(intPos == intStart || intPos <= ints.count());
        segments += list.segs.count();
    }
    QVERIFY(segments > 1000);
}

QTEST_GUILESS_MAIN(TestGeometryUndo)
#include "tst_geometryundo.moc"
