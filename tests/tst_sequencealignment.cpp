// SPDX-License-Identifier: MIT
#include "check/sequencealignment.h"
#include "testing.h"

#include <algorithm>
#include <cmath>

namespace {

using Pairs = std::vector<AlignedPair>;

constexpr qint64 plenty = 1000 * 1000;

/** What alignedInOrder() makes of two texts whose letters are the elements: "a=a b~c -d +e". */
QString aligning(QString const& before, QString const& after, qint64 effort = plenty)
{
    Effort left(effort);
    Sequences const sequences {before.size(), after.size(),
        [&](int i, int j) { return before.at(i) == after.at(j); },
        // Letters that differ in case only are near, digits stay away from letters.
        [&](int i, int j) {
            if (before.at(i).isDigit() != after.at(j).isDigit())
                return 2.0;
            return before.at(i).toLower() == after.at(j).toLower() ? 0.1 : 0.9;
        }};
    QStringList steps;
    for (AlignedPair const& pair : alignedInOrder(sequences, left)) {
        if (pair.after < 0)
            steps << QString('-') + before.at(pair.before);
        else if (pair.before < 0)
            steps << QString('+') + after.at(pair.after);
        else if (before.at(pair.before) == after.at(pair.after))
            steps << QString(before.at(pair.before));
        else
            steps << QString(before.at(pair.before)) + '~' + after.at(pair.after);
    }
    return steps.join(' ');
}

/** How long the longest common sequence is, by the plain table. */
int commonLength(std::vector<int> const& before, std::vector<int> const& after)
{
    std::vector<int> row(after.size() + 1, 0);
    for (int const element : before) {
        int diagonal = 0;
        for (std::size_t j = 0; j < after.size(); ++j) {
            int const above = row[j + 1];
            row[j + 1] = element == after[j] ? diagonal + 1 : std::max(row[j], above);
            diagonal = above;
        }
    }
    return row.back();
}

std::vector<int> randomElements(QRandomGenerator& random, int most)
{
    std::vector<int> elements(static_cast<std::size_t>(random.bounded(most + 1)));
    for (int& element : elements)
        element = random.bounded(6);
    return elements;
}

/** Whether each element of both is there once, in order. */
bool isComplete(Pairs const& pairs, int beforeCount, int afterCount)
{
    int before = 0;
    int after = 0;
    for (AlignedPair const& pair : pairs) {
        if ((pair.before >= 0 && pair.before != before++)
            || (pair.after >= 0 && pair.after != after++) || (pair.before < 0 && pair.after < 0))
            return false;
    }
    return before == beforeCount && after == afterCount;
}

} // namespace

class TestSequenceAlignment : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsWhatBelongsTogether_data();
    void findsWhatBelongsTogether();
    void withoutEffortPairsOneByOne();
    void leavesAsFewAsPossible();
    void isCompleteWhateverTheEffort();
    void longSequencesTakeLittle_data();
    void longSequencesTakeLittle();
    void placesAreLookedForWithinBounds_data();
    void placesAreLookedForWithinBounds();
    void distancesAreComparedWithinBounds_data();
    void distancesAreComparedWithinBounds();
    void effortIsSpentOnce();
};

void TestSequenceAlignment::findsWhatBelongsTogether_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("steps");
    QTest::newRow("both empty") << ""
                                << ""
                                << "";
    QTest::newRow("first empty") << ""
                                 << "ab"
                                 << "+a +b";
    QTest::newRow("second empty") << "ab"
                                  << ""
                                  << "-a -b";
    QTest::newRow("same") << "abc"
                          << "abc"
                          << "a b c";
    QTest::newRow("added at the start") << "abc"
                                        << "xabc"
                                        << "+x a b c";
    QTest::newRow("added in the middle") << "abc"
                                         << "abxc"
                                         << "a b +x c";
    QTest::newRow("added at the end") << "abc"
                                      << "abcx"
                                      << "a b c +x";
    QTest::newRow("removed") << "abcd"
                             << "ad"
                             << "a -b -c d";
    QTest::newRow("one of equal ones removed") << "aaa"
                                               << "aa"
                                               << "a a -a";
    QTest::newRow("changed") << "abc"
                             << "axc"
                             << "a b~x c";
    QTest::newRow("all changed") << "abc"
                                 << "xyz"
                                 << "a~x b~y c~z";
    QTest::newRow("changed beside an added one") << "abc"
                                                 << "axBc"
                                                 << "a +x b~B c";
    QTest::newRow("changed beside a removed one") << "aBxc"
                                                  << "abc"
                                                  << "a B~b -x c";
    QTest::newRow("changed in two places") << "abcde"
                                           << "aBcDe"
                                           << "a b~B c d~D e";
    QTest::newRow("told apart") << "a1c"
                                << "axc"
                                << "a -1 +x c";
    QTest::newRow("moved") << "abcdef"
                           << "bcdefa"
                           << "-a b c d e f +a";
    QTest::newRow("all near, one added") << "abcd"
                                         << "AxBCD"
                                         << "a~A +x b~B c~C d~D";
}

void TestSequenceAlignment::findsWhatBelongsTogether()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, steps);
    QCOMPARE(aligning(before, after), steps);
}

void TestSequenceAlignment::withoutEffortPairsOneByOne()
{
    QCOMPARE(aligning("abcde", "axbce", 0), QString("a b~x c~b d~c e"));
    QCOMPARE(aligning("abe", "axyze", 0), QString("a b~x +y +z e"));
    // What is the same at both ends costs nothing.
    QCOMPARE(aligning("abcd", "abxcd", 0), QString("a b +x c d"));
}

void TestSequenceAlignment::leavesAsFewAsPossible()
{
    QRandomGenerator random = Testing::seededRandom(11);
    for (int round = 0; round < 3000; ++round) {
        std::vector<int> const before = randomElements(random, 24);
        std::vector<int> const after = randomElements(random, 24);
        auto const at = [](std::vector<int> const& elements, int i) {
            return elements[static_cast<std::size_t>(i)];
        };
        Effort effort(plenty);
        Sequences const sequences {static_cast<int>(before.size()), static_cast<int>(after.size()),
            [&](int i, int j) { return at(before, i) == at(after, j); },
            [](int, int) { return 2.0; }};
        Pairs const pairs = alignedInOrder(sequences, effort);
        QVERIFY(isComplete(pairs, sequences.beforeCount, sequences.afterCount));
        int same = 0;
        for (AlignedPair const& pair : pairs) {
            if (pair.before >= 0 && pair.after >= 0) {
                QCOMPARE(at(before, pair.before), at(after, pair.after));
                ++same;
            }
        }
        QCOMPARE(same, commonLength(before, after));
    }
}

void TestSequenceAlignment::isCompleteWhateverTheEffort()
{
    QRandomGenerator random = Testing::seededRandom(12);
    for (int round = 0; round < 3000; ++round) {
        std::vector<int> const before = randomElements(random, 24);
        std::vector<int> const after = randomElements(random, 24);
        std::vector<double> distances(7);
        for (double& distance : distances)
            distance = Testing::awkwardReal(random);
        Effort effort(random.bounded(200));
        Sequences const sequences {static_cast<int>(before.size()), static_cast<int>(after.size()),
            // Nearly the same is not transitive.
            [&](int i, int j) {
                return std::abs(
                           before[static_cast<std::size_t>(i)] - after[static_cast<std::size_t>(j)])
                    < 2;
            },
            [&](int i, int j) { return distances[static_cast<std::size_t>((i + j) % 7)]; }};
        QVERIFY(isComplete(
            alignedInOrder(sequences, effort), sequences.beforeCount, sequences.afterCount));
        QVERIFY(effort.left() >= 0);
    }
}

void TestSequenceAlignment::longSequencesTakeLittle_data()
{
    QTest::addColumn<int>("step"); // element i of the second is i * step of the first
    QTest::addColumn<int>("most"); // comparisons
    QTest::newRow("the same") << 1 << 1000000;
    QTest::newRow("in another order") << 7919 << 30000000;
}

void TestSequenceAlignment::longSequencesTakeLittle()
{
    QFETCH(int, step);
    QFETCH(int, most);
    int const count = 1000000;
    int comparisons = 0;
    Effort effort(10 * plenty);
    Sequences const sequences {count, count,
        [&](int i, int j) {
            ++comparisons;
            return i == static_cast<int>(static_cast<qint64>(j) * step % count);
        },
        [&](int, int) {
            ++comparisons;
            return 0.5;
        }};
    QVERIFY(isComplete(alignedInOrder(sequences, effort), count, count));
    QVERIFY2(comparisons <= most, qPrintable(QString::number(comparisons)));
}

void TestSequenceAlignment::placesAreLookedForWithinBounds_data()
{
    QTest::addColumn<int>("removed"); // before what is the same, as 499 are added
    QTest::addColumn<int>("found");
    QTest::newRow("most additions and removals") << 499 << 10;
    QTest::newRow("one removal more") << 500 << 0;
}

void TestSequenceAlignment::placesAreLookedForWithinBounds()
{
    QFETCH(int, removed);
    QFETCH(int, found);
    int const added = 499;
    int const same = 10;
    Effort effort(plenty);
    // One more of each stands behind what is the same.
    Sequences const sequences {removed + same + 1, added + same + 1,
        [&](int i, int j) {
            return i >= removed && i < removed + same && i - removed == j - added;
        },
        [](int, int) { return 2.0; }};
    Pairs const pairs = alignedInOrder(sequences, effort);
    QVERIFY(isComplete(pairs, sequences.beforeCount, sequences.afterCount));
    QCOMPARE(int(std::count_if(pairs.begin(), pairs.end(),
                 [](AlignedPair const& pair) { return pair.before >= 0 && pair.after >= 0; })),
        found);
}

void TestSequenceAlignment::distancesAreComparedWithinBounds_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("areCompared");
    QTest::newRow("largest table") << 2000 << true;
    QTest::newRow("a column more") << 2001 << false;
}

void TestSequenceAlignment::distancesAreComparedWithinBounds()
{
    QFETCH(int, count);
    QFETCH(bool, areCompared);
    Effort effort(10 * plenty);
    Sequences const sequences {2000, count, [](int, int) { return false; },
        [](int i, int j) { return j == i + 1 ? 0.0 : 2.0; }};
    Pairs const pairs = alignedInOrder(sequences, effort);
    QVERIFY(isComplete(pairs, 2000, count));
    // One by one, or each with the next.
    QCOMPARE(pairs.front().before, areCompared ? -1 : 0);
    QCOMPARE(pairs.front().after, 0);
}

void TestSequenceAlignment::effortIsSpentOnce()
{
    Effort effort(10);
    QVERIFY(effort.spend(4));
    QCOMPARE(effort.left(), qint64(6));
    QVERIFY(!effort.spend(7));
    QCOMPARE(effort.left(), qint64(0));
    QVERIFY(effort.spend(0));
    QVERIFY(!effort.spend(1));
}

QTEST_GUILESS_MAIN(TestSequenceAlignment)

#include "tst_sequencealignment.moc"
