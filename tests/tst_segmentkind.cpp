// SPDX-License-Identifier: MIT
#include "segmentkind_p.h"

#include <QtTest>

#include <memory>

/** What the tables of the segment kinds give to those who walk over them. */
class TestSegmentKind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void realsAreVisitedInTheirOrder_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("letters");
        QTest::newRow("move") << "MoveTo" << QStringList {"X", "Y"};
        QTest::newRow("line") << "LineTo" << QStringList {"X", "Y"};
        QTest::newRow("curve") << "CurveTo" << QStringList {"X", "Y", "A", "B", "C", "D"};
        QTest::newRow("ellipse") << "Ellipse" << QStringList {"X", "Y", "A", "B"};
    }

    void realsAreVisitedInTheirOrder()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, letters);
        SegmentKind::Kind const* const kind =
            SegmentKind::find([&](SegmentKind::Kind const& k) { return k.name() == name; });
        QVERIFY(kind);
        std::unique_ptr<KpPathSeg> const segment(kind->create(nullptr));
        QCOMPARE(segment->type, kind->type);
        QCOMPARE(SegmentKind::realCount(*segment), letters.size());

        double next = 1.0;
        SegmentKind::forEachReal(*segment, [&next](KpReal& real) { real.value = next++; });
        QStringList visited;
        double sum = 0.0;
        SegmentKind::forEachCoordinate(*segment, [&](QString const& letter, KpReal& real) {
            visited << letter;
            sum = sum * 10.0 + real.value;
        });
        QCOMPARE(visited, letters);
        QCOMPARE(sum, QString("123456").left(letters.size()).toDouble());

        QStringList entries;
        SegmentKind::forEachEntry(*segment, [&entries](auto const& coordinate, auto& typed) {
            entries << coordinate.letter() + QString::number(coordinate.real(typed).value);
        });
        QStringList expected;
        for (QString const& letter : letters)
            expected << letter + QString::number(expected.size() + 1);
        QCOMPARE(entries, expected);
    }

    void segmentOfAnotherTypeIsNotVisited()
    {
        KpPathSegLineTo line(QPointF(1.0, 2.0), nullptr);
        for (int const type : {KpPathSeg::SegCurveTo, KpPathSeg::SegEllipse}) {
            line.type = static_cast<KpPathSeg::SegType>(type);
            QCOMPARE(SegmentKind::realCount(line), 0);
        }
    }

    void unknownNameHasNoKind()
    {
        QVERIFY(!SegmentKind::find([](SegmentKind::Kind const&) { return false; }));
    }
};

QTEST_APPLESS_MAIN(TestSegmentKind)

#include "tst_segmentkind.moc"
