// SPDX-License-Identifier: MIT
#include "outlinetesting.h"

#include <array>

// No time is asserted: an operation whose cost grows with the square of the number of segments
// runs into the time limit of the test, and every result is compared.

using OutlineTesting::exact;

namespace {

int const largeCount = Testing::sanitized ? 300000 : 1000000;
int const xmlCount = Testing::sanitized ? 40000 : 200000;
int const domCount = Testing::sanitized ? 15000 : 60000;

/** Lines to (0, 0), (1, 2), (2, 4) and so on, and a curve at every tenth place. */
void fill(KpPathSegList& list, int count)
{
    for (int i = 0; i < count; ++i) {
        QPointF const point(i, 2.0 * i);
        if (i % 10 == 9)
            list.curveTo(point, point, point);
        else
            list.lineTo(point);
    }
}

void append(KpPathSegList& list, int number)
{
    list.lineTo(QPointF(number, 2.0 * number));
}

int number(KpPathSeg const* seg)
{
    return int(seg->pt.x.value);
}

/** One walk through a list, which must meet the segments in their order. */
class Walk
{
public:
    enum Direction { Forwards, Backwards };

    Walk(KpPathSegList const& walked, Direction walkDirection)
        : list(walked)
        , direction(walkDirection)
        , current(forwards() ? walked.segs.first() : walked.segs.last())
        , position(forwards() ? 0 : walked.segs.count() - 1)
    {
    }

    /** Goes on to the next segment. @return whether the place before it was the right one */
    bool step()
    {
        bool const right = current && current == list.segs.at(position);
        current = forwards() ? list.getNextSeg(current) : list.getPrevSeg(current);
        position += forwards() ? 1 : -1;
        return right;
    }

    bool atEnd() const { return !current; }

private:
    bool forwards() const { return direction == Forwards; }

    KpPathSegList const& list;
    Direction direction;
    KpPathSeg* current;
    int position;
};

/** Takes the walks in turn, step by step. @return the steps that were right until each ended */
qint64 interleave(QVector<Walk> walks, int steps)
{
    qint64 right = 0;
    for (int step = 0; step < steps; ++step) {
        for (Walk& walk : walks)
            right += walk.step() ? 1 : 0;
    }
    bool const ended =
        std::all_of(walks.begin(), walks.end(), [](Walk const& walk) { return walk.atEnd(); });
    return ended ? right : -1;
}

/** Whether the list holds just the segments of these numbers. */
template <class NumberAt> bool holds(KpPathSegList const& list, int count, NumberAt numberAt)
{
    if (list.segs.count() != count)
        return false;
    for (int i = 0; i < count; ++i) {
        if (number(list.segs.at(i)) != numberAt(i))
            return false;
    }
    return true;
}

} // namespace

class TestLargeOutlines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void walksThroughOneOutline();
    void walksRoundAClosedOutline();
    void walksInOppositeDirectionsOverTwoOutlines();
    void walksOverOutlinesSideBySide();
    void walksInOppositeDirectionsOverOneOutline();
    void asksEverySegmentForItsStart();
    void movesEveryStart();
    void walksWhileTheOutlineGrows();
    void removesHalfOfTheSegments_data();
    void removesHalfOfTheSegments();
    void removesByRepeatedIndices();
    void copiesAndDraws();
    void goesThroughTheStreamForm();
    void goesThroughTheDomForm();
    void goesThroughUndo();
};

void TestLargeOutlines::walksThroughOneOutline()
{
    KpPathSegList list;
    fill(list, largeCount);
    QCOMPARE(interleave({Walk(list, Walk::Forwards)}, largeCount), qint64(largeCount));
    QCOMPARE(interleave({Walk(list, Walk::Backwards)}, largeCount), qint64(largeCount));
}

void TestLargeOutlines::walksRoundAClosedOutline()
{
    KpPathSegList list;
    fill(list, largeCount);
    list.closed = true;
    KpPathSeg* forwards = list.segs.first();
    for (int i = 0; i < largeCount; ++i)
        forwards = list.getNextSeg(forwards);
    QCOMPARE(forwards, list.segs.first());
    KpPathSeg* backwards = list.segs.first();
    for (int i = 0; i < largeCount; ++i)
        backwards = list.getPrevSeg(backwards);
    QCOMPARE(backwards, list.segs.first());
}

void TestLargeOutlines::walksInOppositeDirectionsOverTwoOutlines()
{
    KpPathSegList first;
    KpPathSegList second;
    fill(first, largeCount);
    fill(second, largeCount);
    QCOMPARE(interleave({Walk(first, Walk::Forwards), Walk(second, Walk::Backwards)}, largeCount),
        2 * qint64(largeCount));
}

void TestLargeOutlines::walksOverOutlinesSideBySide()
{
    // However close the lists lie in memory, the walk over one must not disturb the other's.
    alignas(64) std::array<KpPathSegList, 2> lists;
    for (KpPathSegList& list : lists)
        fill(list, largeCount);
    QCOMPARE(
        interleave({Walk(lists[0], Walk::Forwards), Walk(lists[1], Walk::Backwards)}, largeCount),
        2 * qint64(largeCount));
}

void TestLargeOutlines::walksInOppositeDirectionsOverOneOutline()
{
    KpPathSegList list;
    fill(list, largeCount);
    QCOMPARE(interleave({Walk(list, Walk::Forwards), Walk(list, Walk::Backwards)}, largeCount),
        2 * qint64(largeCount));
}

void TestLargeOutlines::asksEverySegmentForItsStart()
{
    KpPathSegList list;
    fill(list, largeCount);
    list.closed = true;
    int different = 0;
    for (int i = 0; i < largeCount; ++i) {
        int const previous = i == 0 ? largeCount - 1 : i - 1;
        different += list.segs.at(i)->startPt() == QPointF(previous, 2.0 * previous) ? 0 : 1;
    }
    QCOMPARE(different, 0);
    for (int i = largeCount - 1; i >= 0; --i) {
        int const previous = i == 0 ? largeCount - 1 : i - 1;
        different += list.segs.at(i)->startPt() == QPointF(previous, 2.0 * previous) ? 0 : 1;
    }
    QCOMPARE(different, 0);
}

void TestLargeOutlines::movesEveryStart()
{
    KpPathSegList list;
    fill(list, largeCount);
    for (int i = 0; i < largeCount; ++i)
        list.segs.at(i)->setStartPt(QPointF(-i, 5.0));
    // Each one has moved the point before it; the last one stays.
    QVERIFY(holds(list, largeCount, [](int i) { return i == largeCount - 1 ? i : -(i + 1); }));
}

void TestLargeOutlines::walksWhileTheOutlineGrows()
{
    KpPathSegList list;
    append(list, 0);
    KpPathSeg* seg = list.segs.first();
    int different = 0;
    for (int i = 1; i < largeCount; ++i) {
        append(list, i);
        seg = list.getNextSeg(seg);
        different +=
            seg == list.segs.last() && seg->startPt() == QPointF(i - 1, 2.0 * (i - 1)) ? 0 : 1;
    }
    QCOMPARE(different, 0);
}

void TestLargeOutlines::removesHalfOfTheSegments_data()
{
    QVector<int> even(largeCount / 2);
    for (int i = 0; i < even.count(); ++i)
        even[i] = 2 * i;
    QVector<int> backwards = even;
    std::reverse(backwards.begin(), backwards.end());
    QVector<int> shuffled = even;
    QRandomGenerator random = Testing::seededRandom(8128);
    std::shuffle(shuffled.begin(), shuffled.end(), random);
    QTest::addColumn<QVector<int>>("indices");
    QTest::newRow("forwards") << even;
    QTest::newRow("backwards") << backwards;
    QTest::newRow("shuffled") << shuffled;
}

void TestLargeOutlines::removesHalfOfTheSegments()
{
    QFETCH(QVector<int>, indices);
    KpPathSegList list;
    fill(list, largeCount);
    list.removeAt(indices, true);
    QVERIFY(holds(list, largeCount / 2, [](int i) { return 2 * i + 1; }));

    KpPathSegList handingOver;
    fill(handingOver, largeCount);
    QVector<KpPathSeg*> const held = handingOver.segs;
    handingOver.removeAt(indices, false);
    QVERIFY(holds(handingOver, largeCount / 2, [](int i) { return 2 * i + 1; }));
    int wrongOwners = 0;
    for (int const index : qAsConst(indices)) {
        wrongOwners += held.at(index)->owner == &handingOver ? 0 : 1;
        delete held.at(index);
    }
    QCOMPARE(wrongOwners, 0);
}

void TestLargeOutlines::removesByRepeatedIndices()
{
    // The same index again and again takes one segment after the other.
    KpPathSegList list;
    fill(list, largeCount);
    list.removeAt(QVector<int>(largeCount - 20, 10), true);
    QVERIFY(holds(list, 20, [](int i) { return i < 10 ? i : largeCount - 20 + i; }));

    KpPathSegList emptied;
    fill(emptied, largeCount);
    emptied.removeAt(QVector<int>(largeCount + 5, 0), true);
    QCOMPARE(emptied.segs.count(), 0);
}

void TestLargeOutlines::copiesAndDraws()
{
    KpPathSegList list;
    fill(list, largeCount);
    list.closed = true;
    KpPathSegList copy(list);
    copy.assign(copy);
    QVERIFY(holds(copy, 2 * largeCount, [](int i) { return i % largeCount; }));

    KpPath path;
    list.toPath(path);
    QCOMPARE(path.count(), largeCount + 2 * (largeCount / 10) + 1);
    KpPathSegList imported;
    imported.fromPath(path);
    QVERIFY(imported.closed);
    QVERIFY(holds(imported, largeCount, [](int i) { return i; }));
}

void TestLargeOutlines::goesThroughTheStreamForm()
{
    KpPathSegList list;
    fill(list, xmlCount);
    list.closed = true;
    QByteArray const text = OutlineTesting::streamXml(list);
    KpPathSegList read;
    QVERIFY(OutlineTesting::parseStream(read, text));
    QVERIFY(exact(read) == exact(list));
}

void TestLargeOutlines::goesThroughTheDomForm()
{
    KpPathSegList list;
    fill(list, domCount);
    list.closed = true;
    QDomDocument const document = OutlineTesting::domXml(list);
    KpPathSegList read;
    QVERIFY(read.parse(document.documentElement().firstChildElement(), 0));
    QVERIFY(exact(read) == exact(list));
}

void TestLargeOutlines::goesThroughUndo()
{
    KpPathSegList list;
    fill(list, largeCount);
    list.closed = true;
    QVector<int> ints;
    QVector<double> doubles;
    list.toUndoValue(ints, doubles);
    int const curves = largeCount / 10;
    QCOMPARE(ints.count(), 3 + 3 * (largeCount - curves) + 7 * curves);
    QCOMPARE(doubles.count(), 4 * (largeCount - curves) + 12 * curves);
    int intPos = 0;
    int doublePos = 0;
    KpPathSegList read;
    read.fromUndoValue(ints, doubles, intPos, doublePos, largeCount);
    QCOMPARE(intPos, ints.count());
    QCOMPARE(doublePos, doubles.count());
    QVERIFY(read.closed);
    QVERIFY(holds(read, largeCount, [](int i) { return i; }));
}

QTEST_GUILESS_MAIN(TestLargeOutlines)
#include "tst_largeoutlines.moc"
