// SPDX-License-Identifier: MIT
#include "outlinetesting.h"

#include <array>
#include <numeric>
#include <optional>
#include <thread>

namespace {

using Segments = QVector<KpPathSeg*>;
using Change = void (*)(Segments&, QRandomGenerator&);

/** Segments that outlive every list that holds them. */
using Pool = std::vector<std::unique_ptr<KpPathSeg>>;

std::unique_ptr<KpPathSeg> newSegment(int number)
{
    return std::make_unique<KpPathSegLineTo>(QPointF(number, 0.0), nullptr);
}

Pool newPool(int count)
{
    Pool pool;
    for (int i = 0; i < count; ++i)
        pool.push_back(newSegment(i));
    return pool;
}

int number(KpPathSeg const* seg)
{
    return seg ? int(seg->pt.x.value) : -1;
}

/** A list that owns nothing: it lets go of its segments before it is destroyed. */
class Borrower : public KpPathSegList
{
public:
    Borrower() = default;
    explicit Borrower(Pool const& pool)
    {
        for (auto const& seg : pool)
            addTail(seg.get());
    }
    ~Borrower() override { removeAll(false); }
};

/** The neighbour that a plain search finds: `step` is 1 for the next and -1 for the previous. */
KpPathSeg* plainNeighbour(KpPathSegList const& list, KpPathSeg* seg, int step)
{
    int const count = list.segs.count();
    int index = list.segs.indexOf(seg) + step;
    if (list.closed && index >= count)
        index = 0;
    if (list.closed && index < 0)
        index = count - 1;
    return list.segs.value(index);
}

KpPathSeg* neighbour(KpPathSegList const& list, KpPathSeg* seg, int step)
{
    return step > 0 ? list.getNextSeg(seg) : list.getPrevSeg(seg);
}

/** The numbers of the next segments of every segment of the pool, in its order. */
QVector<int> nextOfEach(KpPathSegList const& list, Pool const& pool)
{
    QVector<int> next;
    for (auto const& seg : pool)
        next << number(list.getNextSeg(seg.get()));
    return next;
}

QVector<int> previousOfEach(KpPathSegList const& list, Pool const& pool)
{
    QVector<int> previous;
    for (auto const& seg : pool)
        previous << number(list.getPrevSeg(seg.get()));
    return previous;
}

/**
 * Lists that share a pool of segments, each of which a list holds once at most, and that are
 * changed and asked at random.
 */
class Playground
{
public:
    explicit Playground(quint32 seed)
        : random(seed)
        , pool(newPool(400))
    {
        for (auto& list : lists)
            list.emplace();
    }

    void changeSomething()
    {
        Borrower& list = *anyList();
        Segments& segs = list.segs;
        int const count = segs.count();
        switch (random.bounded(22)) {
        case 0:
        case 1:
        case 2:
            if (KpPathSeg* const seg = stranger(list))
                list.addTail(seg);
            break;
        case 3:
            if (KpPathSeg* const seg = stranger(list))
                list.insertAt(random.bounded(count + 1), seg);
            break;
        case 4:
            if (KpPathSeg* const seg = stranger(list))
                list.insertAt(0, seg);
            break;
        case 5:
            list.removeAt(0, false);
            break;
        case 6:
            list.removeAt(random.bounded(count + 1), false);
            break;
        case 7:
            list.removeAt(indices(count), false);
            break;
        case 8:
            list.closed = !list.closed;
            break;
        case 9:
            segs.append(stranger(list)); // null, if there is none
            break;
        case 10:
            segs.insert(random.bounded(count + 1), stranger(list));
            break;
        case 11:
            segs.insert(random.bounded(count + 1), nullptr);
            break;
        case 12:
            if (count > 0)
                segs.remove(random.bounded(count));
            break;
        case 13:
            if (count > 0)
                std::swap(segs[random.bounded(count)], segs[random.bounded(count)]);
            break;
        case 14:
            rarely([&] { std::reverse(segs.begin(), segs.end()); });
            break;
        case 15:
            rarely([&] { std::shuffle(segs.begin(), segs.end(), random); });
            break;
        case 16:
            if (count > 0)
                std::rotate(segs.begin(), segs.begin() + random.bounded(count), segs.end());
            break;
        case 17:
            rarely([&] { segs = anyList()->segs; }); // the same segments in two lists
            break;
        case 18:
            rarely([&] { list.removeAll(false); });
            break;
        case 19:
            rarely([&] { refill(list); });
            break;
        case 20:
            rarely([this] { anyList().emplace(); }); // at the same address
            break;
        default:
            rarely([this] { renew(pool.at(size_t(random.bounded(int(pool.size()))))); });
            break;
        }
    }

    /** Asks for neighbours as a walk does, or here and there. @return how many were wrong */
    int ask()
    {
        Borrower const& list = *anyList();
        int const step = random.bounded(2) == 1 ? 1 : -1;
        KpPathSeg* seg = anySegment();
        if (random.bounded(2) == 1 && !list.segs.isEmpty())
            seg = list.segs.at(random.bounded(list.segs.count()));
        int wrong = 0;
        for (int left = random.bounded(12); left >= 0 && seg; --left) {
            KpPathSeg* const expected = plainNeighbour(list, seg, step);
            wrong += neighbour(list, seg, step) == expected ? 0 : 1;
            held += list.segs.contains(seg) ? 1 : 0;
            seg = expected;
        }
        return wrong;
    }

    int held = 0; ///< how many questions were about a segment that the list held

private:
    template <class Action> void rarely(Action change)
    {
        if (random.bounded(24) == 0)
            change();
    }

    std::optional<Borrower>& anyList()
    {
        return lists.at(size_t(random.bounded(int(lists.size()))));
    }

    KpPathSeg* anySegment() { return pool.at(size_t(random.bounded(int(pool.size())))).get(); }

    /** A segment that the list does not hold, if a few guesses find one. */
    KpPathSeg* stranger(KpPathSegList const& list)
    {
        for (int guess = 0; guess < 8; ++guess) {
            KpPathSeg* const seg = anySegment();
            if (!list.segs.contains(seg))
                return seg;
        }
        return nullptr;
    }

    QVector<int> indices(int count)
    {
        QVector<int> result;
        for (int left = random.bounded(4); left > 0; --left)
            result << random.bounded(count + 1);
        return result;
    }

    void refill(KpPathSegList& list)
    {
        list.removeAll(false);
        for (auto const& seg : pool) {
            if (random.bounded(4) > 0)
                list.addTail(seg.get());
        }
    }

    /** Another segment, maybe at the same address; no list holds it. */
    void renew(std::unique_ptr<KpPathSeg>& seg)
    {
        for (auto& list : lists)
            list->segs.removeAll(seg.get());
        seg.reset();
        seg = newSegment(0);
    }

    QRandomGenerator random;
    Pool pool;
    std::array<std::optional<Borrower>, 3> lists;
};

} // namespace

Q_DECLARE_METATYPE(Change)

class TestNeighbours : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followChangesThroughTheInterface();
    void followChangesOfTheVector();
    void areThoseOfTheListThatIsAsked();
    void ofASegmentThatMovedToAnotherList();
    void inAListAtTheAddressOfAnother();
    void inAListThatWasClearedAndRefilled();
    void amongNullEntries();
    void areThoseOfAPlainSearch();
    void inAnyOrderOfALargeOutline_data();
    void inAnyOrderOfALargeOutline();
    void whileALargeOutlineLosesItsFront();
    void fromTwoThreadsAboutSegmentsOfBothLists();
};

void TestNeighbours::followChangesThroughTheInterface()
{
    Pool const pool = newPool(5);
    Borrower list(pool);
    QCOMPARE(nextOfEach(list, pool), QVector<int>({1, 2, 3, 4, -1}));

    list.removeAt(0, false);
    QCOMPARE(nextOfEach(list, pool), QVector<int>({1, 2, 3, 4, -1}));
    QCOMPARE(previousOfEach(list, pool), QVector<int>({-1, -1, 1, 2, 3}));

    list.insertAt(2, pool.at(0).get()); // 1 2 0 3 4
    QCOMPARE(nextOfEach(list, pool), QVector<int>({3, 2, 0, 4, -1}));
    QCOMPARE(previousOfEach(list, pool), QVector<int>({2, -1, 1, 0, 3}));

    list.removeAt({0, 3}, false); // 2 0 4
    list.closed = true;
    QCOMPARE(nextOfEach(list, pool), QVector<int>({4, 2, 0, 2, 2}));
    QCOMPARE(previousOfEach(list, pool), QVector<int>({2, 4, 4, 4, 0}));
}

void TestNeighbours::followChangesOfTheVector()
{
    Pool const pool = newPool(5);
    Borrower list(pool);
    QCOMPARE(previousOfEach(list, pool), QVector<int>({-1, 0, 1, 2, 3}));

    std::reverse(list.segs.begin(), list.segs.end());
    QCOMPARE(previousOfEach(list, pool), QVector<int>({1, 2, 3, 4, -1}));

    std::swap(list.segs[0], list.segs[4]); // 0 3 2 1 4
    QCOMPARE(nextOfEach(list, pool), QVector<int>({3, 4, 1, 2, -1}));

    list.segs.removeFirst();
    list.segs.append(pool.at(0).get()); // 3 2 1 4 0
    QCOMPARE(nextOfEach(list, pool), QVector<int>({-1, 4, 1, 2, 0}));

    list.segs.resize(2); // 3 2
    QCOMPARE(nextOfEach(list, pool), QVector<int>({3, 3, -1, 2, 3}));
}

void TestNeighbours::areThoseOfTheListThatIsAsked()
{
    // The same segments stand elsewhere in another list, whose questions move their hints.
    Pool const pool = newPool(4);
    Borrower const list(pool);
    Borrower reversed;
    for (auto const& seg : pool)
        reversed.insertAt(0, seg.get());
    for (int turn = 0; turn < 3; ++turn) {
        QCOMPARE(nextOfEach(list, pool), QVector<int>({1, 2, 3, -1}));
        QCOMPARE(nextOfEach(reversed, pool), QVector<int>({-1, 0, 1, 2}));
    }
}

void TestNeighbours::ofASegmentThatMovedToAnotherList()
{
    Pool const pool = newPool(4);
    Borrower from(pool);
    Borrower to;
    to.addTail(pool.at(3).get());
    from.removeAt(3, false);
    to.addTail(pool.at(2).get());
    from.removeAt(2, false);
    QCOMPARE(nextOfEach(from, pool), QVector<int>({1, -1, 0, 0}));
    QCOMPARE(nextOfEach(to, pool), QVector<int>({3, 3, -1, 2}));
    QCOMPARE(pool.at(2)->startPt(), QPointF(3.0, 0.0));
    QCOMPARE(pool.at(3)->startPt(), QPointF(0.0, 0.0));
}

void TestNeighbours::inAListAtTheAddressOfAnother()
{
    Pool const pool = newPool(4);
    std::optional<Borrower> list;
    list.emplace(pool);
    QCOMPARE(nextOfEach(*list, pool), QVector<int>({1, 2, 3, -1}));
    list.emplace();
    QCOMPARE(nextOfEach(*list, pool), QVector<int>({-1, -1, -1, -1}));
    for (int const index : {2, 0})
        list->addTail(pool.at(size_t(index)).get());
    QCOMPARE(nextOfEach(*list, pool), QVector<int>({-1, 2, 0, 2}));
}

void TestNeighbours::inAListThatWasClearedAndRefilled()
{
    KpPathSegList list;
    for (int const count : {7, 2, 5}) {
        list.clear();
        list.closed = false;
        for (int i = 0; i < count; ++i)
            list.lineTo(QPointF(i, 0.0));
        for (int i = count - 1; i >= 0; --i) {
            QCOMPARE(number(list.getNextSeg(list.segs.at(i))), i + 1 < count ? i + 1 : -1);
            QCOMPARE(number(list.getPrevSeg(list.segs.at(i))), i - 1);
        }
    }
}

void TestNeighbours::amongNullEntries()
{
    Pool const pool = newPool(4);
    Borrower list(pool);
    list.segs.insert(2, nullptr); // 0 1 null 2 3
    QCOMPARE(nextOfEach(list, pool), QVector<int>({1, -1, 3, -1}));
    QCOMPARE(previousOfEach(list, pool), QVector<int>({-1, 0, -1, 2}));
    list.segs.fill(nullptr);
    QCOMPARE(nextOfEach(list, pool), QVector<int>({-1, -1, -1, -1}));
}

void TestNeighbours::areThoseOfAPlainSearch()
{
    Playground playground(Testing::seededRandom(60221).generate());
    int wrong = 0;
    for (int step = 0; step < 100000; ++step) {
        playground.changeSomething();
        wrong += playground.ask();
    }
    QCOMPARE(wrong, 0);
    QVERIFY2(playground.held > 100000, qPrintable(QString::number(playground.held)));
}

// No time is asserted: where the cost of all questions grows with the square of the number of
// segments, these run into the time limit of the test.

void TestNeighbours::inAnyOrderOfALargeOutline_data()
{
    QTest::addColumn<Change>("change");
    auto const row = [](char const* name, Change change) { QTest::newRow(name) << change; };
    row("as it was filled", [](Segments&, QRandomGenerator&) {});
    row("reversed",
        [](Segments& segs, QRandomGenerator&) { std::reverse(segs.begin(), segs.end()); });
    row("shuffled", [](Segments& segs, QRandomGenerator& random) {
        std::shuffle(segs.begin(), segs.end(), random);
    });
    row("moved by half", [](Segments& segs, QRandomGenerator&) {
        std::rotate(segs.begin(), segs.begin() + segs.count() / 2, segs.end());
    });
    row("moved by a few", [](Segments& segs, QRandomGenerator&) { segs.remove(3, 300); });
}

void TestNeighbours::inAnyOrderOfALargeOutline()
{
    QFETCH(Change, change);
    QRandomGenerator random = Testing::seededRandom(141421);
    Pool const pool = newPool(Testing::sanitized ? 150000 : 500000);
    for (bool const directly : {false, true}) {
        Borrower list;
        for (auto const& seg : pool) {
            if (directly)
                list.segs.append(seg.get());
            else
                list.addTail(seg.get());
        }
        change(list.segs, random);
        QVector<int> asked(list.segs.count());
        std::iota(asked.begin(), asked.end(), 0);
        std::shuffle(asked.begin(), asked.end(), random);
        int wrong = 0;
        for (int const index : qAsConst(asked))
            wrong += list.getNextSeg(list.segs.at(index)) == list.segs.value(index + 1) ? 0 : 1;
        QCOMPARE(wrong, 0);
    }
}

void TestNeighbours::whileALargeOutlineLosesItsFront()
{
    QRandomGenerator random = Testing::seededRandom(173205);
    Pool const pool = newPool(Testing::sanitized ? 10000 : 40000);
    Borrower list(pool);
    int wrong = 0;
    while (list.segs.count() > 1) {
        list.removeAt(0, false);
        int const index = random.bounded(list.segs.count());
        KpPathSeg* const seg = list.segs.at(index);
        wrong += list.getPrevSeg(seg) == list.segs.value(index - 1) ? 0 : 1;
    }
    QCOMPARE(wrong, 0);
}

void TestNeighbours::fromTwoThreadsAboutSegmentsOfBothLists()
{
    std::array<Pool, 2> const pools {newPool(50), newPool(50)};
    std::array<Borrower, 2> lists {Borrower(pools[0]), Borrower(pools[1])};
    std::array<int, 2> wrong {0, 0};
    auto const askAndChange = [&](size_t which) {
        Borrower& list = lists[which];
        for (int turn = 0; turn < 2000; ++turn) {
            for (Pool const& pool : pools) {
                for (auto const& seg : pool) {
                    KpPathSeg* const expected = plainNeighbour(list, seg.get(), 1);
                    wrong[which] += list.getNextSeg(seg.get()) == expected ? 0 : 1;
                }
            }
            std::rotate(list.segs.begin(), list.segs.begin() + turn % 50, list.segs.end());
        }
    };
    std::thread other(askAndChange, 1);
    askAndChange(0);
    other.join();
    QCOMPARE(wrong[0], 0);
    QCOMPARE(wrong[1], 0);
}

QTEST_APPLESS_MAIN(TestNeighbours)
#include "tst_neighbours.moc"
