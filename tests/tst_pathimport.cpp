// SPDX-License-Identifier: MIT
#include "export/pathdata.h"
#include "import/pathimport.h"
#include "outlinetesting.h"

class TestPathImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesTheBox_data();
    void choosesTheBox();
    void bindsToTheBox();
    void keepsDirections();
    void saysTheRuleWhereOverlapsNeedIt();
    void warnsOfShortLines();
    void scalesEllipses();
};

namespace {

struct Outcome
{
    std::optional<ImportedOutlines> picture;
    Diagnostics diagnostics;
};

Outcome imported(QString const& data, PathImportOptions const& options = {"data", {}, 1.0})
{
    Outcome outcome;
    outcome.picture = importPath(data, options, outcome.diagnostics);
    return outcome;
}

QString dataOf(Outcome const& outcome)
{
    return pathData(*outcome.picture->outlines.front().list, {}).value();
}

} // namespace

void TestPathImport::choosesTheBox_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QSizeF>("box");

    QTest::newRow("right and lower end") << "M-5 -5L10 20" << QSizeF(10, 20);
    QTest::newRow("of the curve, not its points") << "M0 0C0 40 10 40 10 0" << QSizeF(10, 30);
    QTest::newRow("at least a unit") << "M0 0L0.5 9" << QSizeF(1, 9);
    QTest::newRow("a level line") << "M0 0L9 0" << QSizeF(9, 1);
}

void TestPathImport::choosesTheBox()
{
    QFETCH(QString, data);
    QFETCH(QSizeF, box);

    Outcome const outcome = imported(data);
    QVERIFY(outcome.picture);
    COMPARE_BITS(outcome.picture->size.width(), box.width());
    COMPARE_BITS(outcome.picture->size.height(), box.height());
}

void TestPathImport::bindsToTheBox()
{
    Outcome const outcome = imported("M10 20L30 40", {"data", QSizeF(100, 400), 1.0});
    KpReal const& x = outcome.picture->outlines.front().list->segs.at(1)->pt.x;
    QCOMPARE(x.base, qint16(KpReal::PartOfWidth));
    COMPARE_BITS(x.rate, 0.3);
    COMPARE_BITS(x.value, 30.0);
}

void TestPathImport::keepsDirections()
{
    // A plate without a hole, unless it is filled by the other rule.
    Outcome const plate = imported("M0 0H90V90H0ZM30 30H60V60H30Z");
    QCOMPARE(plate.picture->outlines.front().fillRule, std::optional(Qt::WindingFill));
    QCOMPARE(plate.diagnostics.size(), 1);
    QCOMPARE(dataOf(plate), QString("M0 0 L90 0 L90 90 L0 90 L0 0 M30 30 L60 30 L60 60 L30 60 Z"));
    // One with a hole, whatever the rule.
    Outcome const hole = imported("M0 0H90V90H0ZM30 30V60H60V30Z");
    QVERIFY(!hole.picture->outlines.front().fillRule);
    QVERIFY(hole.diagnostics.isEmpty());
    QCOMPARE(dataOf(hole), QString("M0 0 L90 0 L90 90 L0 90 L0 0 M30 30 L30 60 L60 60 L60 30 Z"));
}

void TestPathImport::saysTheRuleWhereOverlapsNeedIt()
{
    Outcome const outcome = imported("M0 0H60V60H0ZM30 30H90V90H30Z");
    QCOMPARE(outcome.picture->outlines.front().fillRule, std::optional(Qt::WindingFill));
    QCOMPARE(outcome.diagnostics.at(0).text,
        QString("1 shape would be filled otherwise by the other rule: FillRule=\"nonzero\" beside "
                "the outline says so"));
}

void TestPathImport::warnsOfShortLines()
{
    Outcome const outcome = imported("M0 0L0.5 0L9 9");
    QCOMPARE(dataOf(outcome), QString("M0 0 L0.5 0 L9 9"));
    QCOMPARE(outcome.diagnostics.size(), 1);
    QCOMPARE(outcome.diagnostics.at(0).text,
        QString("1 line of less than one unit: not drawn, unless at a larger scale"));
    QVERIFY(imported("M0 0L0.5 0L9 9", {"data", {}, 2.0}).diagnostics.isEmpty());
}

void TestPathImport::scalesEllipses()
{
    Outcome const outcome = imported("M15 20A5 7 0 0 1 5 20A5 7 0 0 1 15 20Z", {"data", {}, 3.0});
    QCOMPARE(dataOf(outcome), QString("M45 60 A15 21 0 0 1 15 60 A15 21 0 0 1 45 60 Z"));
    COMPARE_BITS(outcome.picture->size.width(), 45.0);
    QVERIFY(outcome.diagnostics.isEmpty());
}

QTEST_GUILESS_MAIN(TestPathImport)

#include "tst_pathimport.moc"
