// SPDX-License-Identifier: MIT
#include "outlinetesting.h"

#include <array>
#include <atomic>
#include <thread>

using OutlineTesting::exact;

Q_DECLARE_METATYPE(QVector<QPointF>)

namespace {

/** A line with a number that tells of its life and of the calls it gets. */
class ProbeSegment : public KpPathSegLineTo
{
public:
    ProbeSegment(int probeNumber, QStringList* log)
        : KpPathSegLineTo(QPointF(probeNumber, 0.0), nullptr)
        , number(probeNumber)
        , events(log)
    {
    }
    ~ProbeSegment() override { note(QStringLiteral("destroyed")); }

    KpPathSeg* clone() override
    {
        note(QStringLiteral("cloned"));
        return new ProbeSegment(number + 100, events);
    }
    void addToPath(KpPath& path) override
    {
        note(QStringLiteral("drawn"));
        KpPathSegLineTo::addToPath(path);
    }
    void updateValue(double width, double height) override
    {
        note(QStringLiteral("updateValue %1 %2").arg(width).arg(height));
    }
    void updateRate(double width, double height) override
    {
        note(QStringLiteral("updateRate %1 %2").arg(width).arg(height));
    }
    void applyTransform(QMatrix matrix) override
    {
        note(QStringLiteral("applyTransform %1").arg(matrix.m11()));
    }
    void translate(double dx, double dy) override
    {
        note(QStringLiteral("translate %1 %2").arg(dx).arg(dy));
    }

    int const number;

private:
    void note(QString const& event)
    {
        if (events)
            *events << QStringLiteral("%1 %2").arg(number).arg(event);
    }

    QStringList* events;
};

/** A segment that cannot be copied. */
class LoneSegment : public KpPathSegLineTo
{
public:
    LoneSegment()
        : KpPathSegLineTo(QPointF(0.0, 0.0), nullptr)
    {
    }
    KpPathSeg* clone() override { return nullptr; }
};

/** A letter for each slot, "-" for an empty one, and the flags closed, noLine and noFill. */
QString state(KpPathSegList const& list)
{
    QString held;
    for (KpPathSeg* const seg : list.segs)
        held += QLatin1Char(seg ? 'x' : '-');
    return QStringLiteral("%1 %2%3%4").arg(held).arg(list.closed).arg(list.noLine).arg(list.noFill);
}

/** Looks at its list while it is destroyed, and at the list that it is cloned for. */
class WitnessSegment : public KpPathSegLineTo
{
public:
    explicit WitnessSegment(QStringList* log, KpPathSegList const* cloneTarget = nullptr)
        : KpPathSegLineTo(QPointF(0.0, 0.0), nullptr)
        , events(log)
        , target(cloneTarget)
    {
    }
    ~WitnessSegment() override { *events << state(*owner); }

    KpPathSeg* clone() override
    {
        *events << state(*target);
        return KpPathSegLineTo::clone();
    }

private:
    QStringList* events;
    KpPathSegList const* target;
};

/** Three witnesses in an open list that is neither stroked nor filled. */
void fillWithWitnesses(KpPathSegList& list, QStringList* events)
{
    list.noLine = true;
    list.noFill = true;
    for (int i = 0; i < 3; ++i)
        list.addTail(new WitnessSegment(events));
}

void fillWithProbes(KpPathSegList& list, int count, QStringList* events = nullptr)
{
    for (int i = 0; i < count; ++i)
        list.addTail(new ProbeSegment(i, events));
}

/** The numbers of the probes that the list holds; -1 stands for null. */
QVector<int> numbers(QVector<KpPathSeg*> const& segs)
{
    QVector<int> result;
    for (KpPathSeg* const seg : segs)
        result << (seg ? static_cast<ProbeSegment*>(seg)->number : -1);
    return result;
}

QVector<int> numbers(KpPathSegList const& list)
{
    return numbers(list.segs);
}

QStringList eventsOf(QVector<int> const& probes, QString const& event)
{
    QStringList events;
    for (int const probe : probes)
        events << QStringLiteral("%1 %2").arg(probe).arg(event);
    return events;
}

QString listed(QVector<int> const& values)
{
    QStringList texts;
    for (int const number : values)
        texts << QString::number(number);
    return texts.join(QLatin1Char(' '));
}

/** Kinds and positions, to be read at a glance. */
QString outline(KpPathSegList const& list)
{
    QStringList steps;
    auto const position = [](KpPoint const& p) {
        return QStringLiteral(" %1,%2").arg(p.x.value).arg(p.y.value);
    };
    for (KpPathSeg* const seg : list.segs) {
        QString step(QLatin1Char("??MLCE"[seg->type]));
        if (KpPathSegCurveTo const* const curve = seg->toCurveTo())
            step += position(curve->ctrl1) + position(curve->ctrl2);
        steps << step + position(seg->pt);
    }
    return steps.join(QStringLiteral("; "));
}

/** Any segments, some of a type that is not theirs, and empty slots. */
void fillOddly(KpPathSegList& list, QRandomGenerator& random)
{
    OutlineTesting::fillRandomly(list, random.bounded(20), random);
    for (KpPathSeg* const seg : qAsConst(list.segs)) {
        if (random.bounded(4) == 0)
            seg->type = KpPathSeg::SegType(random.bounded(8));
    }
    for (int i = random.bounded(3); i > 0; --i)
        list.segs.insert(random.bounded(list.segs.count() + 1), nullptr);
}

/** The reals that the undo record of a segment holds. */
QVector<KpReal> realsOf(KpPathSeg& seg)
{
    QVector<KpReal> reals {seg.pt.x, seg.pt.y};
    switch (seg.type) {
    case KpPathSeg::SegMoveTo:
    case KpPathSeg::SegLineTo:
        return reals;
    case KpPathSeg::SegCurveTo:
        if (KpPathSegCurveTo const* const curve = seg.toCurveTo())
            return reals << curve->ctrl1.x << curve->ctrl1.y << curve->ctrl2.x << curve->ctrl2.y;
        return {};
    case KpPathSeg::SegEllipse:
        if (KpPathSegEllipse const* const ellipse = seg.toEllipse())
            return reals << ellipse->a << ellipse->b;
        return {};
    }
    return {};
}

QStringList listed(QVector<double> const& values)
{
    QStringList texts;
    for (double const value : values)
        texts << exact(value);
    return texts;
}

/** What is left of `count` slots, and the slots in the order of their removal. */
struct Removal
{
    QVector<int> kept;
    QVector<int> removed;
};

/** The removal by indices, one after the other, each one adjusting the rest. `empty`: null slots. */
Removal removeOneByOne(int count, QVector<int> const& empty, QVector<int> indices)
{
    Removal result;
    for (int slot = 0; slot < count; ++slot)
        result.kept << slot;
    for (int k = 0; k < indices.count(); ++k) {
        int const i = indices.at(k);
        if (i < 0 || i >= result.kept.count())
            break;
        if (empty.contains(result.kept.at(i)))
            continue;
        result.removed << result.kept.takeAt(i);
        for (int& index : indices) {
            if (index > i)
                --index;
        }
    }
    return result;
}

/** Empties some slots of a list and destroys what stood there. */
void emptySlots(KpPathSegList& list, QVector<int> const& emptied)
{
    for (int const slot : emptied) {
        delete list.segs.at(slot);
        list.segs[slot] = nullptr;
    }
}

KpPathSeg* neighbour(KpPathSegList const& list, KpPathSeg* seg, int step)
{
    int position = -1;
    for (int i = 0; i < list.segs.count() && position < 0; ++i) {
        if (list.segs.at(i) == seg)
            position = i;
    }
    position += step;
    if (list.closed && position >= list.segs.count())
        position = 0;
    if (list.closed && position < 0)
        position = list.segs.count() - 1;
    return position >= 0 && position < list.segs.count() ? list.segs.at(position) : nullptr;
}

/**
 * Walks `steps` random steps through `lists`, editing them now and then, and compares each
 * neighbour with a plain search. @return how many differed
 */
template <class Lists> int randomWalk(Lists& lists, int steps, quint32 seed)
{
    QRandomGenerator random(seed);
    KpPathSegLineTo stranger(QPointF(0.0, 0.0), nullptr);
    std::vector<KpPathSeg*> standing(lists.size(), nullptr);
    int different = 0;
    for (int step = 0; step < steps; ++step) {
        size_t const which = random.bounded(quint32(lists.size()));
        KpPathSegList& list = lists[which];
        KpPathSeg*& current = standing[which];
        int const count = list.segs.count();
        switch (random.bounded(24)) {
        case 0:
            list.insertAt(random.bounded(count + 1), new KpPathSegLineTo(QPointF(), nullptr));
            break;
        case 1:
            if (count > 0) {
                list.removeAt(random.bounded(count), true);
                current = nullptr;
            }
            break;
        case 2:
            list.closed = !list.closed;
            break;
        case 3:
            list.removeAt(
                QVector<int> {random.bounded(count + 1), random.bounded(count + 1)}, true);
            current = nullptr;
            break;
        case 4:
            current = &stranger;
            break;
        default:
            break;
        }
        if (!current && !list.segs.isEmpty())
            current = list.segs.at(random.bounded(list.segs.count()));
        if (random.bounded(64) == 0) {
            list.removeAll(true);
            current = nullptr;
            for (int i = random.bounded(12); i > 0; --i)
                list.lineTo(QPointF());
        }
        bool const forwards = random.bounded(2) == 1;
        KpPathSeg* const found = forwards ? list.getNextSeg(current) : list.getPrevSeg(current);
        KpPathSeg* const expected = current ? neighbour(list, current, forwards ? 1 : -1) : nullptr;
        different += found == expected ? 0 : 1;
        current = expected;
    }
    return different;
}

} // namespace

class TestKpPathSegList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newListIsEmptyAndOpen();
    void gettersTellTheFlags_data();
    void gettersTellTheFlags();
    void clearedListIsEmptyAndClosed();
    void flagsAreResetBeforeSegmentsGo();
    void destructorDestroysWhatIsHeld();
    void destructorClearsTheList();
    void hasAVirtualDestructorAndNothingElseVirtual();

    void addTailAppendsAndOwns();
    void nullIsRefused();
    void insertAtTakesAnyIndex_data();
    void insertAtTakesAnyIndex();
    void stepsBindTheirPointsInProportion();

    void removeAllEmptiesTheListOnly();
    void removeAllWithDeletionDestroysInOrder();
    void removeAllEmptiesEachSlotAfterItsSegment();
    void removeAtTakesOneSegment_data();
    void removeAtTakesOneSegment();
    void removeAtWithoutDeletionHandsTheSegmentOver();
    void removeAtDestroysBeforeTheSlotGoes();
    void removeAtRemovesAnEmptySlot();
    void removeAtIndicesTakesThemAsAtTheCall_data();
    void removeAtIndicesTakesThemAsAtTheCall();
    void removeAtIndicesLeavesTheCallersVector();
    void removeAtRandomIndicesAsOneByOne();

    void neighboursOfAnOpenList();
    void neighboursOfAClosedList();
    void neighboursOfOneSegment();
    void neighboursInAnEmptyList();
    void neighboursOfASegmentThatIsNotHeld();
    void neighboursOfASegmentHeldTwice();
    void nullHasNoNeighbours();
    void randomWalksFindTheNeighboursOfAPlainSearch_data();
    void randomWalksFindTheNeighboursOfAPlainSearch();
    void twoThreadsWalkTwoLists();
    void walksThroughMovedSegments();

    void operationsReachEverySegmentInOrder();
    void updatesFollowTheBox();
    void transformsMoveEverySegment();

    void drawsSegmentsInOrder();
    void drawsBehindWhatIsThere();
    void closedListClosesThePathOnce_data();
    void closedListClosesThePathOnce();
    void strokeAndFillFlagsDoNotChangeTheDrawing();
    void fromPathReadsSteps_data();
    void fromPathReadsSteps();
    void fromPathAppendsAndKeepsFlags();
    void drawnOutlineIsImportedAgain();
    void clockwiseIsThePathsOwnAnswer_data();
    void clockwiseIsThePathsOwnAnswer();
    void clockwiseClosesAClosedListOnly();

    void copyIsDeep();
    void cloneIsDeepAndOwnedByTheCaller();
    void copyIsWhatTheSourceWasNotWhatAClearedListIs();
    void assignAppendsAndTakesTheFlags();
    void assignTakesTheFlagsAfterTheSegments();
    void assignToItselfDoublesTheList();
    void assignSkipsWhatCannotBeCloned();
    void copyBindsRadiiAsCloneDoes();

    void drawsAsItsSegmentsDoOneByOne();
    void undoRecordIsThatOfItsRealsOneByOne();
    void appendingToOneTargetCopiesItRarely();
};

void TestKpPathSegList::newListIsEmptyAndOpen()
{
    KpPathSegList const list;
    QVERIFY(!list.getClosed());
    QVERIFY(!list.getNoLine());
    QVERIFY(!list.getNoFill());
    QCOMPARE(list.segs.count(), 0);
}

void TestKpPathSegList::gettersTellTheFlags_data()
{
    QTest::addColumn<bool>("closed");
    QTest::addColumn<bool>("noLine");
    QTest::addColumn<bool>("noFill");
    for (int bits = 0; bits < 8; ++bits) {
        bool const closed = (bits & 1) != 0;
        bool const noLine = (bits & 2) != 0;
        bool const noFill = (bits & 4) != 0;
        QTest::addRow("closed %d noLine %d noFill %d", closed, noLine, noFill)
            << closed << noLine << noFill;
    }
}

void TestKpPathSegList::gettersTellTheFlags()
{
    QFETCH(bool, closed);
    QFETCH(bool, noLine);
    QFETCH(bool, noFill);
    KpPathSegList list;
    list.closed = closed;
    list.noLine = noLine;
    list.noFill = noFill;
    QCOMPARE(list.getClosed(), closed);
    QCOMPARE(list.getNoLine(), noLine);
    QCOMPARE(list.getNoFill(), noFill);
}

void TestKpPathSegList::clearedListIsEmptyAndClosed()
{
    QStringList events;
    KpPathSegList list;
    fillWithProbes(list, 3, &events);
    list.noLine = true;
    list.noFill = true;
    list.clear();
    QVERIFY(list.getClosed());
    QVERIFY(!list.getNoLine());
    QVERIFY(!list.getNoFill());
    QCOMPARE(list.segs.count(), 0);
    QCOMPARE(events, eventsOf({0, 1, 2}, "destroyed"));
    list.clear();
    QVERIFY(list.getClosed());
}

void TestKpPathSegList::flagsAreResetBeforeSegmentsGo()
{
    QStringList events;
    KpPathSegList list;
    fillWithWitnesses(list, &events);
    list.clear();
    QCOMPARE(events, QStringList({"xxx 100", "-xx 100", "--x 100"}));
}

void TestKpPathSegList::destructorDestroysWhatIsHeld()
{
    QStringList events;
    std::unique_ptr<KpPathSeg> removed;
    {
        KpPathSegList list;
        fillWithProbes(list, 4, &events);
        removed.reset(list.segs.at(1));
        list.removeAt(1, false);
    }
    QCOMPARE(events, eventsOf({0, 2, 3}, "destroyed"));
}

void TestKpPathSegList::destructorClearsTheList()
{
    QStringList events;
    {
        KpPathSegList list;
        fillWithWitnesses(list, &events);
    }
    QCOMPARE(events, QStringList({"xxx 100", "-xx 100", "--x 100"}));
}

void TestKpPathSegList::hasAVirtualDestructorAndNothingElseVirtual()
{
    struct Derived : KpPathSegList
    {
        explicit Derived(bool* gone)
            : destroyed(gone)
        {
        }
        ~Derived() override { *destroyed = true; }
        bool* destroyed;
    };
    bool destroyed = false;
    KpPathSegList* const list = new Derived(&destroyed);
    delete list;
    QVERIFY(destroyed);
}

void TestKpPathSegList::addTailAppendsAndOwns()
{
    KpPathSegList other;
    KpPathSegList list;
    auto* const first = new ProbeSegment(7, nullptr);
    first->owner = &other;
    list.addTail(first);
    list.addTail(new ProbeSegment(5, nullptr));
    QCOMPARE(numbers(list), QVector<int>({7, 5}));
    QCOMPARE(list.segs.at(0)->owner, &list);
    QCOMPARE(list.segs.at(1)->owner, &list);
}

void TestKpPathSegList::nullIsRefused()
{
    KpPathSegList list;
    list.addTail(nullptr);
    for (int const index : {-1, 0, 1})
        list.insertAt(index, nullptr);
    QCOMPARE(list.segs.count(), 0);
}

void TestKpPathSegList::insertAtTakesAnyIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QVector<int>>("order");
    QTest::newRow("far below") << std::numeric_limits<int>::min() << QVector<int> {9, 0, 1, 2};
    QTest::newRow("negative") << -5 << QVector<int> {9, 0, 1, 2};
    QTest::newRow("front") << 0 << QVector<int> {9, 0, 1, 2};
    QTest::newRow("before the second") << 1 << QVector<int> {0, 9, 1, 2};
    QTest::newRow("before the last") << 2 << QVector<int> {0, 1, 9, 2};
    QTest::newRow("at the count") << 3 << QVector<int> {0, 1, 2, 9};
    QTest::newRow("beyond the count") << 100 << QVector<int> {0, 1, 2, 9};
    QTest::newRow("far beyond") << std::numeric_limits<int>::max() << QVector<int> {0, 1, 2, 9};
}

void TestKpPathSegList::insertAtTakesAnyIndex()
{
    QFETCH(int, index);
    QFETCH(QVector<int>, order);
    KpPathSegList list;
    fillWithProbes(list, 3);
    auto* const inserted = new ProbeSegment(9, nullptr);
    list.insertAt(index, inserted);
    QCOMPARE(numbers(list), order);
    QCOMPARE(inserted->owner, &list);

    KpPathSegList empty;
    auto* const first = new ProbeSegment(9, nullptr);
    empty.insertAt(index, first);
    QCOMPARE(numbers(empty), QVector<int> {9});
    QCOMPARE(first->owner, &empty);
}

void TestKpPathSegList::stepsBindTheirPointsInProportion()
{
    KpPathSegList list;
    list.moveTo(QPointF(1, 2));
    list.lineTo(QPointF(3, 4));
    list.curveTo(QPointF(5, 6), QPointF(7, 8), QPointF(9, 10));
    QCOMPARE(list.segs.count(), 3);
    KpPathSegMoveTo move(KpPoint({1, 0, 1}, {2, 0, 2}), nullptr);
    KpPathSegLineTo line(KpPoint({1, 0, 3}, {2, 0, 4}), nullptr);
    KpPathSegCurveTo curve(KpPoint({1, 0, 5}, {2, 0, 6}), KpPoint({1, 0, 7}, {2, 0, 8}),
        KpPoint({1, 0, 9}, {2, 0, 10}), nullptr);
    QCOMPARE(exact(*list.segs.at(0)), exact(move));
    QCOMPARE(exact(*list.segs.at(1)), exact(line));
    QCOMPARE(exact(*list.segs.at(2)), exact(curve));
    for (KpPathSeg* const seg : qAsConst(list.segs))
        QCOMPARE(seg->owner, &list);
}

void TestKpPathSegList::removeAllEmptiesTheListOnly()
{
    QStringList events;
    KpPathSegList list;
    fillWithProbes(list, 3, &events);
    list.closed = true;
    list.noLine = true;
    list.noFill = true;
    QVector<KpPathSeg*> const held = list.segs;
    list.removeAll(false);
    QCOMPARE(list.segs.count(), 0);
    QCOMPARE(events, QStringList());
    QVERIFY(list.getClosed() && list.getNoLine() && list.getNoFill());
    QCOMPARE(numbers(held), QVector<int>({0, 1, 2}));
    for (KpPathSeg* const seg : held) {
        QCOMPARE(seg->owner, &list);
        delete seg;
    }
}

void TestKpPathSegList::removeAllWithDeletionDestroysInOrder()
{
    QStringList events;
    KpPathSegList list;
    fillWithProbes(list, 3, &events);
    emptySlots(list, {1});
    events.clear();
    list.removeAll(true);
    QCOMPARE(list.segs.count(), 0);
    QCOMPARE(events, eventsOf({0, 2}, "destroyed"));
    QVERIFY(!list.getClosed());
    list.removeAll(true);
    QCOMPARE(list.segs.count(), 0);
}

void TestKpPathSegList::removeAllEmptiesEachSlotAfterItsSegment()
{
    QStringList events;
    KpPathSegList list;
    fillWithWitnesses(list, &events);
    list.removeAll(true);
    QCOMPARE(events, QStringList({"xxx 011", "-xx 011", "--x 011"}));
}

void TestKpPathSegList::removeAtTakesOneSegment_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QVector<int>>("kept");
    QTest::addColumn<QVector<int>>("removed");
    QTest::newRow("first") << 0 << QVector<int> {1, 2} << QVector<int> {0};
    QTest::newRow("middle") << 1 << QVector<int> {0, 2} << QVector<int> {1};
    QTest::newRow("last") << 2 << QVector<int> {0, 1} << QVector<int> {2};
    QTest::newRow("at the count") << 3 << QVector<int> {0, 1, 2} << QVector<int> {};
    QTest::newRow("negative") << -1 << QVector<int> {0, 1, 2} << QVector<int> {};
    QTest::newRow("far below") << std::numeric_limits<int>::min() << QVector<int> {0, 1, 2}
                               << QVector<int> {};
    QTest::newRow("far beyond") << std::numeric_limits<int>::max() << QVector<int> {0, 1, 2}
                                << QVector<int> {};
}

void TestKpPathSegList::removeAtTakesOneSegment()
{
    QFETCH(int, index);
    QFETCH(QVector<int>, kept);
    QFETCH(QVector<int>, removed);
    QStringList events;
    KpPathSegList list;
    fillWithProbes(list, 3, &events);
    list.closed = true;
    list.removeAt(index, true);
    QCOMPARE(numbers(list), kept);
    QCOMPARE(events, eventsOf(removed, "destroyed"));
    QVERIFY(list.getClosed());

    KpPathSegList empty;
    empty.removeAt(index, true);
    QCOMPARE(empty.segs.count(), 0);
}

void TestKpPathSegList::removeAtWithoutDeletionHandsTheSegmentOver()
{
    QStringList events;
    KpPathSegList list;
    fillWithProbes(list, 3, &events);
    std::unique_ptr<KpPathSeg> const removed(list.segs.at(1));
    list.removeAt(1, false);
    QCOMPARE(numbers(list), QVector<int>({0, 2}));
    QCOMPARE(events, QStringList());
    QCOMPARE(removed->owner, &list);
}

void TestKpPathSegList::removeAtDestroysBeforeTheSlotGoes()
{
    QStringList events;
    KpPathSegList list;
    fillWithWitnesses(list, &events);
    list.removeAt(1, true);
    QCOMPARE(events, QStringList("xxx 011"));
    QCOMPARE(state(list), QString("xx 011"));
    events.clear();
    list.removeAt(1, true);
    QCOMPARE(events, QStringList("xx 011"));
}

void TestKpPathSegList::removeAtRemovesAnEmptySlot()
{
    KpPathSegList list;
    fillWithProbes(list, 3);
    emptySlots(list, {1});
    list.removeAt(1, true);
    QCOMPARE(numbers(list), QVector<int>({0, 2}));
}

void TestKpPathSegList::removeAtIndicesTakesThemAsAtTheCall_data()
{
    QTest::addColumn<QVector<int>>("indices");
    QTest::addColumn<QVector<int>>("kept");
    QTest::addColumn<QVector<int>>("removed"); // in the order of their removal
    using Ints = QVector<int>;
    QTest::newRow("none") << Ints {} << Ints {0, 1, 2, 3} << Ints {};
    QTest::newRow("one") << Ints {1} << Ints {0, 2, 3} << Ints {1};
    QTest::newRow("two, ascending") << Ints {0, 2} << Ints {1, 3} << Ints {0, 2};
    QTest::newRow("two, descending") << Ints {2, 0} << Ints {1, 3} << Ints {2, 0};
    QTest::newRow("all, ascending") << Ints {0, 1, 2, 3} << Ints {} << Ints {0, 1, 2, 3};
    QTest::newRow("all, descending") << Ints {3, 2, 1, 0} << Ints {} << Ints {3, 2, 1, 0};
    QTest::newRow("all, mixed") << Ints {2, 0, 3, 1} << Ints {} << Ints {2, 0, 3, 1};
    QTest::newRow("repeated") << Ints {2, 2} << Ints {0, 1} << Ints {2, 3};
    QTest::newRow("repeated thrice") << Ints {1, 1, 1} << Ints {0} << Ints {1, 2, 3};
    QTest::newRow("repeated to the end") << Ints {3, 3, 0} << Ints {0, 1, 2} << Ints {3};
    QTest::newRow("repeated, another between") << Ints {1, 3, 1} << Ints {0} << Ints {1, 3, 2};
    QTest::newRow("the next one repeated") << Ints {1, 1, 2} << Ints {0} << Ints {1, 2, 3};
    QTest::newRow("too great at the start") << Ints {5, 0} << Ints {0, 1, 2, 3} << Ints {};
    QTest::newRow("too great in the middle") << Ints {0, 4, 1} << Ints {1, 2, 3} << Ints {0};
    QTest::newRow("negative at the start") << Ints {-1, 0} << Ints {0, 1, 2, 3} << Ints {};
    QTest::newRow("negative in the middle") << Ints {1, -1, 0} << Ints {0, 2, 3} << Ints {1};
    QTest::newRow("extremes") << Ints {3, std::numeric_limits<int>::max(), 0} << Ints {0, 1, 2}
                              << Ints {3};
    QTest::newRow("least") << Ints {3, std::numeric_limits<int>::min(), 0} << Ints {0, 1, 2}
                           << Ints {3};
}

void TestKpPathSegList::removeAtIndicesTakesThemAsAtTheCall()
{
    QFETCH(QVector<int>, indices);
    QFETCH(QVector<int>, kept);
    QFETCH(QVector<int>, removed);

    QStringList events;
    KpPathSegList list;
    fillWithProbes(list, 4, &events);
    list.closed = true;
    list.removeAt(indices, true);
    QCOMPARE(numbers(list), kept);
    QCOMPARE(events, eventsOf(removed, "destroyed"));
    QVERIFY(list.getClosed());

    events.clear();
    KpPathSegList handingOver;
    fillWithProbes(handingOver, 4, &events);
    QVector<KpPathSeg*> const held = handingOver.segs;
    handingOver.removeAt(indices, false);
    QCOMPARE(numbers(handingOver), kept);
    QCOMPARE(events, QStringList());
    for (int const slot : removed) {
        QCOMPARE(held.at(slot)->owner, &handingOver);
        delete held.at(slot);
    }

    KpPathSegList empty;
    empty.removeAt(indices, true);
    QCOMPARE(empty.segs.count(), 0);
}

void TestKpPathSegList::removeAtIndicesLeavesTheCallersVector()
{
    KpPathSegList list;
    fillWithProbes(list, 4);
    // Adjusted to what is gone, they would be 0, 1 and 1.
    QVector<int> indices {0, 2, 3};
    list.removeAt(indices, true);
    QCOMPARE(indices, QVector<int>({0, 2, 3}));
    QCOMPARE(numbers(list), QVector<int> {1});
}

void TestKpPathSegList::removeAtRandomIndicesAsOneByOne()
{
    QRandomGenerator random = Testing::seededRandom(77001);
    int removedInAll = 0;
    for (int round = 0; round < 20000; ++round) {
        int const count = random.bounded(13);
        QVector<int> empty;
        for (int slot = 0; slot < count && round % 3 == 0; ++slot) {
            if (random.bounded(4) == 0)
                empty << slot;
        }
        // Indices out of range end the removal, so they are rare; repeats are many.
        bool const anyRange = random.bounded(3) == 0;
        QVector<int> indices(random.bounded(2 * count + 2));
        for (int& index : indices)
            index = anyRange ? random.bounded(-2, count + 3) : random.bounded(qMax(count, 1));
        bool const deleting = random.bounded(2) == 1;

        Removal const expected = removeOneByOne(count, empty, indices);
        QVector<int> kept = expected.kept;
        for (int& slot : kept) {
            if (empty.contains(slot))
                slot = -1;
        }
        removedInAll += expected.removed.count();

        QStringList events;
        KpPathSegList list;
        fillWithProbes(list, count, &events);
        emptySlots(list, empty);
        events.clear();
        QVector<KpPathSeg*> const held = list.segs;
        list.removeAt(indices, deleting);

        QString const what = QStringLiteral("count %1, empty %2, indices %3")
                                 .arg(count)
                                 .arg(listed(empty), listed(indices));
        QVERIFY2(numbers(list) == kept, qPrintable(what));
        QVERIFY2(events == (deleting ? eventsOf(expected.removed, "destroyed") : QStringList()),
            qPrintable(what));
        if (!deleting) {
            for (int const slot : expected.removed)
                delete held.at(slot);
        }
    }
    QVERIFY(removedInAll > 20000);
}

void TestKpPathSegList::neighboursOfAnOpenList()
{
    KpPathSegList list;
    fillWithProbes(list, 3);
    QVector<KpPathSeg*> const s = list.segs;
    QCOMPARE(list.getNextSeg(s.at(0)), s.at(1));
    QCOMPARE(list.getNextSeg(s.at(1)), s.at(2));
    QCOMPARE(list.getNextSeg(s.at(2)), nullptr);
    QCOMPARE(list.getPrevSeg(s.at(0)), nullptr);
    QCOMPARE(list.getPrevSeg(s.at(1)), s.at(0));
    QCOMPARE(list.getPrevSeg(s.at(2)), s.at(1));
}

void TestKpPathSegList::neighboursOfAClosedList()
{
    KpPathSegList list;
    fillWithProbes(list, 3);
    list.closed = true;
    QVector<KpPathSeg*> const s = list.segs;
    QCOMPARE(list.getNextSeg(s.at(0)), s.at(1));
    QCOMPARE(list.getNextSeg(s.at(2)), s.at(0));
    QCOMPARE(list.getPrevSeg(s.at(0)), s.at(2));
    QCOMPARE(list.getPrevSeg(s.at(2)), s.at(1));
}

void TestKpPathSegList::neighboursOfOneSegment()
{
    KpPathSegList list;
    fillWithProbes(list, 1);
    KpPathSeg* const only = list.segs.at(0);
    QCOMPARE(list.getNextSeg(only), nullptr);
    QCOMPARE(list.getPrevSeg(only), nullptr);
    list.closed = true;
    QCOMPARE(list.getNextSeg(only), only);
    QCOMPARE(list.getPrevSeg(only), only);
}

void TestKpPathSegList::neighboursInAnEmptyList()
{
    KpPathSegLineTo stranger(QPointF(0, 0), nullptr);
    for (bool const closed : {false, true}) {
        KpPathSegList list;
        list.closed = closed;
        QCOMPARE(list.getNextSeg(&stranger), nullptr);
        QCOMPARE(list.getPrevSeg(&stranger), nullptr);
    }
}

void TestKpPathSegList::neighboursOfASegmentThatIsNotHeld()
{
    KpPathSegList list;
    fillWithProbes(list, 3);
    KpPathSegLineTo stranger(QPointF(0, 0), &list);
    QCOMPARE(list.getNextSeg(&stranger), list.segs.at(0));
    QCOMPARE(list.getPrevSeg(&stranger), nullptr);
    list.closed = true;
    QCOMPARE(list.getNextSeg(&stranger), list.segs.at(0));
    QCOMPARE(list.getPrevSeg(&stranger), list.segs.at(2));
}

void TestKpPathSegList::neighboursOfASegmentHeldTwice()
{
    // Which of its places answers is open, but it is one of them, whatever was asked before.
    KpPathSegList list;
    fillWithProbes(list, 4);
    list.segs.append(list.segs.at(1));
    list.closed = true;
    for (KpPathSeg* const before : qAsConst(list.segs)) {
        list.getNextSeg(before);
        int const next = numbers({list.getNextSeg(list.segs.at(1))}).first();
        QVERIFY2(next == 2 || next == 0, qPrintable(QString::number(next)));
        int const previous = numbers({list.getPrevSeg(list.segs.at(1))}).first();
        QVERIFY2(previous == 0 || previous == 3, qPrintable(QString::number(previous)));
    }
    list.segs.removeLast();
}

void TestKpPathSegList::nullHasNoNeighbours()
{
    KpPathSegList list;
    fillWithProbes(list, 3);
    for (bool const closed : {false, true}) {
        list.closed = closed;
        QCOMPARE(list.getNextSeg(nullptr), nullptr);
        QCOMPARE(list.getPrevSeg(nullptr), nullptr);
    }
    // A slot that was emptied from outside is not what null means.
    emptySlots(list, {1});
    QCOMPARE(list.getNextSeg(nullptr), nullptr);
    QCOMPARE(list.getPrevSeg(nullptr), nullptr);
}

void TestKpPathSegList::randomWalksFindTheNeighboursOfAPlainSearch_data()
{
    QTest::addColumn<int>("listCount");
    QTest::newRow("one list") << 1;
    QTest::newRow("two lists") << 2;
    QTest::newRow("five lists") << 5;
    QTest::newRow("a hundred lists side by side") << 100;
}

void TestKpPathSegList::randomWalksFindTheNeighboursOfAPlainSearch()
{
    QFETCH(int, listCount);
    std::vector<KpPathSegList> lists {size_t(listCount)};
    QCOMPARE(randomWalk(lists, 100000, Testing::seededRandom(4711).generate()), 0);
}

void TestKpPathSegList::twoThreadsWalkTwoLists()
{
    // Each thread has two lists; the four of them share what neighbours in memory share.
    std::array<std::array<KpPathSegList, 2>, 2> lists;
    std::array<int, 2> different {-1, -1};
    std::atomic<int> ready {0};
    auto const walk = [&](size_t which) {
        ++ready;
        while (ready < 2)
            std::this_thread::yield();
        different[which] = randomWalk(lists[which], 200000, quint32(which) + 31U);
    };
    std::thread other(walk, 1);
    walk(0);
    other.join();
    QCOMPARE(different[0], 0);
    QCOMPARE(different[1], 0);
}

void TestKpPathSegList::walksThroughMovedSegments()
{
    // The same segments in another order, and then in another list.
    KpPathSegList list;
    fillWithProbes(list, 6);
    for (KpPathSeg* seg = list.segs.first(); seg; seg = list.getNextSeg(seg)) { }
    std::reverse(list.segs.begin(), list.segs.end());
    QVector<int> walked;
    for (KpPathSeg* seg = list.segs.first(); seg; seg = list.getNextSeg(seg))
        walked << static_cast<ProbeSegment*>(seg)->number;
    QCOMPARE(walked, QVector<int>({5, 4, 3, 2, 1, 0}));

    KpPathSegList second;
    QVector<KpPathSeg*> const moved = list.segs;
    list.removeAll(false);
    for (KpPathSeg* const seg : moved)
        second.insertAt(0, seg);
    walked.clear();
    for (KpPathSeg* seg = second.segs.last(); seg; seg = second.getPrevSeg(seg))
        walked << static_cast<ProbeSegment*>(seg)->number;
    QCOMPARE(walked, QVector<int>({5, 4, 3, 2, 1, 0}));
    QCOMPARE(list.getNextSeg(moved.at(0)), nullptr);
}

void TestKpPathSegList::operationsReachEverySegmentInOrder()
{
    QStringList events;
    KpPathSegList list;
    fillWithProbes(list, 3, &events);
    list.translate(3, -4);
    list.updateValue(80, 40);
    list.updateRate(100, 50);
    list.applyTransform(QMatrix(2, 0, 0, 1, 0, 0));
    KpPath path;
    list.toPath(path);
    QStringList const expected = eventsOf({0, 1, 2}, "translate 3 -4")
        + eventsOf({0, 1, 2}, "updateValue 80 40") + eventsOf({0, 1, 2}, "updateRate 100 50")
        + eventsOf({0, 1, 2}, "applyTransform 2") + eventsOf({0, 1, 2}, "drawn");
    QCOMPARE(events, expected);
}

void TestKpPathSegList::updatesFollowTheBox()
{
    KpPathSegList list;
    list.moveTo(QPointF(0, 0));
    list.lineTo(QPointF(120, 40));
    list.curveTo(QPointF(60, 80), QPointF(30, 160), QPointF(240, 120));
    list.addTail(new KpPathSegEllipse(QPointF(120, 80), 60, 40, nullptr));
    list.updateRate(240, 160);
    list.updateValue(480, 80);
    QCOMPARE(outline(list), QString("M 0,0; L 240,20; C 120,40 60,80 480,60; E 240,40"));
    QCOMPARE(exact(list.segs.at(3)->toEllipse()->a), exact(KpReal(1, 0.25, 120)));
    QCOMPARE(exact(list.segs.at(3)->toEllipse()->b), exact(KpReal(2, 0.25, 20)));

    // A collapsed box takes no rates: the former ones restore the outline.
    list.updateRate(0, 0);
    list.updateValue(240, 160);
    QCOMPARE(outline(list), QString("M 0,0; L 120,40; C 60,80 30,160 240,120; E 120,80"));
}

void TestKpPathSegList::transformsMoveEverySegment()
{
    KpPathSegList list;
    list.moveTo(QPointF(1, 2));
    list.curveTo(QPointF(3, 4), QPointF(5, 6), QPointF(7, 8));
    list.addTail(new KpPathSegEllipse(QPointF(9, 10), 11, 12, nullptr));
    list.translate(100, 200);
    QCOMPARE(outline(list), QString("M 101,202; C 103,204 105,206 107,208; E 109,210"));
    list.applyTransform(QMatrix(0, 1, -1, 0, 0, 0));
    QCOMPARE(outline(list), QString("M -202,101; C -204,103 -206,105 -208,107; E -210,109"));
    COMPARE_BITS(list.segs.at(2)->toEllipse()->a.value, 11.0);
    COMPARE_BITS(list.segs.at(2)->toEllipse()->b.value, 12.0);
}

void TestKpPathSegList::drawsSegmentsInOrder()
{
    KpPathSegList list;
    list.moveTo(QPointF(0, 0));
    list.lineTo(QPointF(10, 0));
    list.lineTo(QPointF(10.5, 0.5)); // shorter than one unit: not drawn
    list.curveTo(QPointF(11, 1), QPointF(12, 2), QPointF(13, 3));
    list.lineTo(QPointF(13.5, 3.5)); // shorter than one unit from the curve's end
    list.addTail(new KpPathSegEllipse(QPointF(50, 40), 30, 20, nullptr));
    KpPath path;
    list.toPath(path);

    KpPath expected;
    expected.append({0, 0, 0, 0, 0});
    expected.append({10, 0, 0, 0, 1});
    expected.append({11, 1, 0, 0, 2});
    expected.append({12, 2, 0, 0, 3});
    expected.append({13, 3, 0, 0, 3});
    expected.elements += KpPath::ellipse(QRectF(20, 20, 60, 40));
    QCOMPARE(exact(path), exact(expected));
}

void TestKpPathSegList::drawsBehindWhatIsThere()
{
    KpPathSegList list;
    list.lineTo(QPointF(1.5, 2));
    list.lineTo(QPointF(5, 6));
    KpPath path;
    path.append({1, 2, 3, 4, 0});
    list.toPath(path);
    KpPath expected;
    expected.append({1, 2, 3, 4, 0});
    expected.append({5, 6, 0, 0, 1});
    QCOMPARE(exact(path), exact(expected));
}

void TestKpPathSegList::closedListClosesThePathOnce_data()
{
    QTest::addColumn<int>("segments");
    QTest::newRow("empty") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("three") << 3;
}

void TestKpPathSegList::closedListClosesThePathOnce()
{
    QFETCH(int, segments);
    KpPathSegList list;
    for (int i = 0; i < segments; ++i)
        list.lineTo(QPointF(10 * i, 10));
    KpPath open;
    list.toPath(open);
    QCOMPARE(open.count(), segments);

    list.closed = true;
    KpPath closed;
    list.toPath(closed);
    open.closeSubpath();
    QCOMPARE(exact(closed), exact(open));
    QCOMPARE(closed.last().type, 4);
}

void TestKpPathSegList::strokeAndFillFlagsDoNotChangeTheDrawing()
{
    KpPathSegList list;
    list.moveTo(QPointF(0, 0));
    list.lineTo(QPointF(10, 10));
    KpPath plain;
    list.toPath(plain);
    list.noLine = true;
    list.noFill = true;
    KpPath flagged;
    list.toPath(flagged);
    QCOMPARE(exact(flagged), exact(plain));
}

void TestKpPathSegList::fromPathReadsSteps_data()
{
    QTest::addColumn<QVector<int>>("types"); // element i stands at (i, i + 100)
    QTest::addColumn<bool>("closed");
    QTest::addColumn<QString>("steps");
    using Types = QVector<int>;
    QTest::newRow("empty") << Types {} << false << QString();
    QTest::newRow("move") << Types {0} << false << QString("M 0,100");
    QTest::newRow("line") << Types {1} << false << QString("L 0,100");
    QTest::newRow("move, curve, close")
        << Types {0, 2, 3, 3, 4} << true << QString("M 0,100; C 1,101 2,102 3,103");
    QTest::newRow("two curves") << Types {2, 3, 3, 2, 3, 3} << false
                                << QString("C 0,100 1,101 2,102; C 3,103 4,104 5,105");
    QTest::newRow("curve at the very end")
        << Types {2, 3, 3} << false << QString("C 0,100 1,101 2,102");
    QTest::newRow("curve with one follower") << Types {0, 2, 3} << false << QString("M 0,100");
    QTest::newRow("curve with a line to follow")
        << Types {0, 2, 1} << false << QString("M 0,100; L 2,102");
    QTest::newRow("curve with a close to follow") << Types {2, 4} << true << QString();
    QTest::newRow("curve without a follower") << Types {1, 2} << false << QString("L 0,100");
    QTest::newRow("curve with a curve to follow") << Types {2, 2} << false << QString();
    QTest::newRow("followers of any type")
        << Types {2, 0, 4, 1} << false << QString("C 0,100 1,101 2,102; L 3,103");
    QTest::newRow("stray data") << Types {3, 1, 3, 3, 1} << false << QString("L 1,101; L 4,104");
    QTest::newRow("unknown types")
        << Types {5, 1, -1, 77, 1} << false << QString("L 1,101; L 4,104");
    QTest::newRow("close in the middle")
        << Types {0, 1, 4, 0, 1} << true << QString("M 0,100; L 1,101; M 3,103; L 4,104");
    QTest::newRow("close only") << Types {4} << true << QString();
    QTest::newRow("two closes") << Types {4, 4} << true << QString();
}

void TestKpPathSegList::fromPathReadsSteps()
{
    QFETCH(QVector<int>, types);
    QFETCH(bool, closed);
    QFETCH(QString, steps);
    KpPath path;
    for (int i = 0; i < types.count(); ++i)
        path.append({double(i), double(i + 100), 7, 8, types.at(i)});
    QString const before = exact(path);
    KpPathSegList list;
    list.fromPath(path);
    QCOMPARE(outline(list), steps);
    QCOMPARE(list.getClosed(), closed);
    QCOMPARE(exact(path), before);
    for (KpPathSeg* const seg : qAsConst(list.segs)) {
        QCOMPARE(seg->owner, &list);
        QCOMPARE(exact(seg->pt), exact(KpPoint({1, 0, seg->pt.x.value}, {2, 0, seg->pt.y.value})));
    }
}

void TestKpPathSegList::fromPathAppendsAndKeepsFlags()
{
    KpPath path;
    path.append({3, 4, 0, 0, 1});
    KpPathSegList list;
    list.moveTo(QPointF(1, 2));
    list.closed = true;
    list.noLine = true;
    list.noFill = true;
    list.fromPath(path);
    QCOMPARE(outline(list), QString("M 1,2; L 3,4"));
    QVERIFY(list.getClosed() && list.getNoLine() && list.getNoFill());

    path.append({0, 0, 0, 0, 4});
    KpPathSegList open;
    open.fromPath(path);
    QVERIFY(open.getClosed() && !open.getNoLine() && !open.getNoFill());
}

void TestKpPathSegList::drawnOutlineIsImportedAgain()
{
    KpPathSegList list;
    list.closed = true;
    list.moveTo(QPointF(0, 0));
    list.lineTo(QPointF(100, 0));
    list.curveTo(QPointF(120, 10), QPointF(120, 90), QPointF(100, 100));
    KpPath path;
    list.toPath(path);
    KpPathSegList imported;
    imported.fromPath(path);
    QCOMPARE(exact(imported), exact(list));
}

void TestKpPathSegList::clockwiseIsThePathsOwnAnswer_data()
{
    QTest::addColumn<QVector<QPointF>>("corners");
    QTest::addColumn<bool>("clockwise");
    using Points = QVector<QPointF>;
    QTest::newRow("clockwise on screen") << Points {{0, 0}, {100, 0}, {100, 100}, {0, 100}} << true;
    QTest::newRow("the other way round")
        << Points {{0, 0}, {0, 100}, {100, 100}, {100, 0}} << false;
    QTest::newRow("a stroke") << Points {{0, 0}, {100, 0}} << false;
    QTest::newRow("nothing") << Points {} << false;
}

void TestKpPathSegList::clockwiseIsThePathsOwnAnswer()
{
    QFETCH(QVector<QPointF>, corners);
    QFETCH(bool, clockwise);
    for (bool const closed : {false, true}) {
        KpPathSegList list;
        list.closed = closed;
        for (QPointF const& corner : qAsConst(corners))
            list.lineTo(corner);
        QString const before = exact(list);
        QCOMPARE(list.isClockwise(), clockwise);
        QCOMPARE(exact(list), before);
    }
}

void TestKpPathSegList::clockwiseClosesAClosedListOnly()
{
    // The close leads back to the start of the second subpath, which turns the sum of both.
    KpPathSegList list;
    list.moveTo(QPointF(0, 0));
    list.lineTo(QPointF(0, 10));
    list.moveTo(QPointF(100, 0));
    list.lineTo(QPointF(100, 100));
    QVERIFY(list.isClockwise());
    list.closed = true;
    QVERIFY(!list.isClockwise());
}

void TestKpPathSegList::copyIsDeep()
{
    QRandomGenerator random = Testing::seededRandom(99);
    for (int round = 0; round < 50; ++round) {
        KpPathSegList source;
        OutlineTesting::fillRandomly(source, 8, random);
        // Radii are bound anew by cloning; that has a test of its own.
        for (KpPathSeg* const seg : qAsConst(source.segs)) {
            if (KpPathSegEllipse* const ellipse = seg->toEllipse()) {
                ellipse->a.base = 1;
                ellipse->b.base = 2;
            }
        }
        QString const before = exact(source);
        KpPathSegList copy(source);
        QCOMPARE(exact(copy), before);
        for (int i = 0; i < copy.segs.count(); ++i) {
            QVERIFY(copy.segs.at(i) != source.segs.at(i));
            QCOMPARE(copy.segs.at(i)->owner, &copy);
            QCOMPARE(source.segs.at(i)->owner, &source);
        }
        copy.clear();
        QCOMPARE(exact(source), before);
    }
}

void TestKpPathSegList::cloneIsDeepAndOwnedByTheCaller()
{
    QStringList events;
    KpPathSegList source;
    fillWithProbes(source, 2, &events);
    source.noFill = true;
    std::unique_ptr<KpPathSegList> copy(source.clone());
    QVERIFY(copy.get() != &source);
    QCOMPARE(numbers(*copy), QVector<int>({100, 101}));
    QVERIFY(!copy->getClosed() && !copy->getNoLine() && copy->getNoFill());
    QCOMPARE(copy->segs.at(0)->owner, copy.get());
    copy.reset();
    QCOMPARE(events, eventsOf({0, 1}, "cloned") + eventsOf({100, 101}, "destroyed"));
}

void TestKpPathSegList::copyIsWhatTheSourceWasNotWhatAClearedListIs()
{
    KpPathSegList open;
    QVERIFY(!KpPathSegList(open).getClosed());
    KpPathSegList cleared;
    cleared.clear();
    QVERIFY(KpPathSegList(cleared).getClosed());
}

void TestKpPathSegList::assignAppendsAndTakesTheFlags()
{
    KpPathSegList source;
    fillWithProbes(source, 3);
    source.noLine = true;
    KpPathSegList list;
    fillWithProbes(list, 2);
    list.closed = true;
    list.noFill = true;
    list.assign(source);
    QCOMPARE(numbers(list), QVector<int>({0, 1, 100, 101, 102}));
    QVERIFY(!list.getClosed() && list.getNoLine() && !list.getNoFill());
    QCOMPARE(numbers(source), QVector<int>({0, 1, 2}));
    for (KpPathSeg* const seg : qAsConst(list.segs))
        QCOMPARE(seg->owner, &list);
}

void TestKpPathSegList::assignTakesTheFlagsAfterTheSegments()
{
    QStringList events;
    KpPathSegList list;
    list.noFill = true;
    KpPathSegList source;
    source.closed = true;
    source.noLine = true;
    for (int i = 0; i < 3; ++i)
        source.addTail(new WitnessSegment(&events, &list));
    list.assign(source);
    QCOMPARE(events, QStringList({" 001", "x 001", "xx 001"}));
    QCOMPARE(state(list), QString("xxx 110"));
}

void TestKpPathSegList::assignToItselfDoublesTheList()
{
    KpPathSegList list;
    fillWithProbes(list, 3);
    list.noLine = true;
    list.assign(list);
    QCOMPARE(numbers(list), QVector<int>({0, 1, 2, 100, 101, 102}));
    QVERIFY(!list.getClosed() && list.getNoLine() && !list.getNoFill());
    for (KpPathSeg* const seg : qAsConst(list.segs))
        QCOMPARE(seg->owner, &list);
}

void TestKpPathSegList::assignSkipsWhatCannotBeCloned()
{
    KpPathSegList source;
    fillWithProbes(source, 3);
    emptySlots(source, {1});
    source.insertAt(1, new LoneSegment);
    source.closed = true;
    KpPathSegList list;
    list.assign(source);
    QCOMPARE(numbers(list), QVector<int>({100, 102}));
    QVERIFY(list.getClosed());
}

void TestKpPathSegList::copyBindsRadiiAsCloneDoes()
{
    KpPathSegList source;
    auto* const ellipse = new KpPathSegEllipse(QPointF(1, 2), 3, 4, nullptr);
    ellipse->a = KpReal(5, 0.25, 3);
    ellipse->b = KpReal(0, 0.5, 4);
    source.addTail(ellipse);
    KpPathSegList const copy(source);
    QCOMPARE(exact(copy.segs.at(0)->toEllipse()->a), exact(KpReal(1, 0.25, 3)));
    QCOMPARE(exact(copy.segs.at(0)->toEllipse()->b), exact(KpReal(2, 0.5, 4)));
}

void TestKpPathSegList::drawsAsItsSegmentsDoOneByOne()
{
    QRandomGenerator random = Testing::seededRandom(57721);
    for (int round = 0; round < 1000; ++round) {
        KpPathSegList list;
        fillOddly(list, random);
        KpPath expected;
        for (int i = random.bounded(3); i > 0; --i)
            expected.append({1.0 * i, 2.0, 3.0, 4.0, i});
        KpPath path = expected;
        for (KpPathSeg* const seg : qAsConst(list.segs)) {
            if (seg)
                seg->addToPath(expected);
        }
        if (list.closed)
            expected.closeSubpath();
        list.toPath(path);
        QCOMPARE(exact(path), exact(expected));
    }
}

void TestKpPathSegList::undoRecordIsThatOfItsRealsOneByOne()
{
    QRandomGenerator random = Testing::seededRandom(69314);
    for (int round = 0; round < 1000; ++round) {
        KpPathSegList list;
        fillOddly(list, random);
        QVector<int> ints(random.bounded(3), 7);
        QVector<double> doubles(random.bounded(3), 7.0);
        QVector<int> expectedInts = ints;
        QVector<double> expectedDoubles = doubles;
        expectedInts << list.closed << list.noFill << list.noLine;
        for (KpPathSeg* const seg : qAsConst(list.segs)) {
            QVector<KpReal> const reals = seg ? realsOf(*seg) : QVector<KpReal>();
            if (!reals.isEmpty())
                expectedInts << seg->type;
            for (KpReal const& real : reals) {
                expectedInts << real.base;
                expectedDoubles << real.value << real.rate;
            }
        }
        list.toUndoValue(ints, doubles);
        QCOMPARE(ints, expectedInts);
        QCOMPARE(listed(doubles), listed(expectedDoubles));
    }
}

void TestKpPathSegList::appendingToOneTargetCopiesItRarely()
{
    // How often the memory of each target was too small for the next outline.
    QRandomGenerator random = Testing::seededRandom(30103);
    KpPathSegList list;
    OutlineTesting::fillRandomly(list, 10, random);
    KpPath path;
    QVector<int> ints;
    QVector<double> doubles;
    KpPathSegList copies;
    std::array<int, 4> growths {};
    for (int i = 0; i < 2000; ++i) {
        std::array<int, 4> const before {
            path.elements.capacity(), ints.capacity(), doubles.capacity(), copies.segs.capacity()};
        list.toPath(path);
        list.toUndoValue(ints, doubles);
        copies.assign(list);
        std::array<int, 4> const after {
            path.elements.capacity(), ints.capacity(), doubles.capacity(), copies.segs.capacity()};
        for (size_t target = 0; target < growths.size(); ++target)
            growths[target] += before[target] == after[target] ? 0 : 1;
    }
    for (int const growth : growths)
        QVERIFY2(growth > 0 && growth < 30, qPrintable(QString::number(growth)));
}

QTEST_GUILESS_MAIN(TestKpPathSegList)
#include "tst_kppathseglist.moc"
