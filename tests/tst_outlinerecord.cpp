// SPDX-License-Identifier: MIT
#include "document/outlinerecord.h"
#include "outlinetesting.h"

#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathsegmoveto.h"

using namespace OutlineTesting;

namespace {

double numberOfBits(quint64 bits)
{
    double number = 0.0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

OutlineRecord recordOfLine(double value, qint16 base = 0)
{
    KpPathSegList list;
    KpReal const real(base, value, value);
    list.addTail(new KpPathSegLineTo(KpPoint(real, real), nullptr));
    return recordOf(list);
}

} // namespace

class TestOutlineRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsEveryField();
    void keepsEveryBit_data();
    void keepsEveryBit();
    void keepsUnknownRules();
    void takesNoMoreThanItHolds();
    void tellsBitsApart();
    void tellsFlagsAndKindsApart();
    void readsAnEmptyRecord();
    void readsWhatAnEarlyEndLeaves();
};

void TestOutlineRecord::keepsEveryField()
{
    QRandomGenerator random = Testing::seededRandom(4);
    for (int i = 0; i < 2000; ++i) {
        KpPathSegList list;
        fillRandomly(list, random.bounded(12), random);
        QString const before = exact(list);
        OutlineRecord const record = recordOf(list);
        QCOMPARE(exact(list), before);
        QCOMPARE(record.segmentCount, list.segs.count());
        auto const read = outlineOf(record);
        QCOMPARE(exact(*read), before);
        for (KpPathSeg* const segment : qAsConst(read->segs))
            QCOMPARE(segment->owner, read.get());
        QVERIFY(recordOf(*read) == record);
    }
}

void TestOutlineRecord::keepsEveryBit_data()
{
    QTest::addColumn<quint64>("bits");
    QTest::newRow("negative zero") << quint64(0x8000000000000000);
    QTest::newRow("least") << quint64(1);
    QTest::newRow("infinite") << quint64(0x7ff0000000000000);
    QTest::newRow("not a number") << quint64(0x7ff8000000000000);
    QTest::newRow("not a number, with a payload") << quint64(0xfff8000000abcdef);
}

void TestOutlineRecord::keepsEveryBit()
{
    QFETCH(quint64, bits);
    double const number = numberOfBits(bits);
    OutlineRecord const record = recordOfLine(number);
    auto const list = outlineOf(record);
    COMPARE_BITS(list->segs[0]->pt.x.value, number);
    COMPARE_BITS(list->segs[0]->pt.y.rate, number);
    QVERIFY(record == record);
    QVERIFY(recordOf(*list) == record);
}

void TestOutlineRecord::keepsUnknownRules()
{
    for (int const base : {-32768, -1, 8, 17, 32767})
        QCOMPARE(int(outlineOf(recordOfLine(1.0, qint16(base)))->segs[0]->pt.x.base), base);
}

void TestOutlineRecord::takesNoMoreThanItHolds()
{
    QRandomGenerator random = Testing::seededRandom(5);
    KpPathSegList list;
    fillRandomly(list, 1000, random);
    OutlineRecord const record = recordOf(list);
    QCOMPARE(record.ints.capacity(), record.ints.size());
    QCOMPARE(record.doubles.capacity(), record.doubles.size());
}

void TestOutlineRecord::tellsBitsApart()
{
    QVERIFY(recordOfLine(0.0) != recordOfLine(-0.0));
    QVERIFY(recordOfLine(1.0) != recordOfLine(std::nextafter(1.0, 2.0)));
    QVERIFY(recordOfLine(numberOfBits(0x7ff8000000000001))
        != recordOfLine(numberOfBits(0x7ff8000000000002)));
    QVERIFY(recordOfLine(1.0, 1) != recordOfLine(1.0, 17));
    QVERIFY(recordOfLine(1.0) == recordOfLine(1.0));
}

void TestOutlineRecord::tellsFlagsAndKindsApart()
{
    KpPathSegList list;
    list.moveTo({1.0, 2.0});
    OutlineRecord const move = recordOf(list);
    list.noFill = true;
    QVERIFY(recordOf(list) != move);
    KpPathSegList other;
    other.lineTo({1.0, 2.0});
    QVERIFY(recordOf(other) != move);
    other.clear();
    QVERIFY(recordOf(other) != move);
}

void TestOutlineRecord::readsAnEmptyRecord()
{
    auto const list = outlineOf({});
    QVERIFY(list);
    QVERIFY(list->segs.isEmpty());
    QVERIFY(!list->closed);
}

void TestOutlineRecord::readsWhatAnEarlyEndLeaves()
{
    KpPathSegList list;
    list.moveTo({1.0, 2.0});
    list.curveTo({1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0});
    list.addTail(new KpPathSegEllipse({5.0, 6.0}, 7.0, 8.0, nullptr));
    list.noLine = true;
    OutlineRecord const whole = recordOf(list);
    int most = 0;
    for (int ints = 0; ints <= whole.ints.size(); ++ints) {
        for (int doubles = 0; doubles <= whole.doubles.size(); ++doubles) {
            OutlineRecord const part {
                whole.ints.mid(0, ints), whole.doubles.mid(0, doubles), whole.segmentCount};
            auto const read = outlineOf(part);
            QCOMPARE(read->noLine, ints >= 3);
            QVERIFY(read->segs.count() <= 3);
            for (int i = 0; i < read->segs.count(); ++i)
                QCOMPARE(exact(*read->segs[i]), exact(*list.segs[i]));
            bool const isAll = ints == whole.ints.size() && doubles == whole.doubles.size();
            QCOMPARE(read->segs.count() == 3, isAll);
            most = std::max(most, read->segs.count());
        }
    }
    QCOMPARE(most, 3);
    auto const more = outlineOf({whole.ints, whole.doubles, 1000000000});
    QCOMPARE(more->segs.count(), 3);
}

QTEST_GUILESS_MAIN(TestOutlineRecord)
#include "tst_outlinerecord.moc"
