// SPDX-License-Identifier: MIT
#include "import/uniquenames.h"

#include <QElapsedTimer>
#include <QtTest>

class TestUniqueNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbersNamesThatComeAgain_data();
    void numbersNamesThatComeAgain();
    void takesTheBeginningOfLongNames();
    void takesAsLongForEachName();
};

void TestUniqueNames::numbersNamesThatComeAgain_data()
{
    QTest::addColumn<QStringList>("wanted");
    QTest::addColumn<QStringList>("expected");
    auto const row = [](char const* name, QStringList const& wanted, QStringList const& expected) {
        QTest::newRow(name) << wanted << expected;
    };
    row("all different", {"a", "b", "A"}, {"a", "b", "A"});
    row("three times", {"a", "a", "a"}, {"a", "a 2", "a 3"});
    row("two names", {"a", "b", "a", "b"}, {"a", "b", "a 2", "b 2"});
    row("a number that is a name", {"a", "a 2", "a"}, {"a", "a 2", "a 3"});
    row("a name that is a number given before", {"a", "a", "a 2"}, {"a", "a 2", "a 2 2"});
    row("no name", {"", ""}, {"", " 2"});
}

void TestUniqueNames::numbersNamesThatComeAgain()
{
    QFETCH(QStringList, wanted);
    QFETCH(QStringList, expected);
    UniqueNames names;
    QStringList given;
    for (QString const& name : wanted)
        given << names.unique(name);
    QCOMPARE(given, expected);
}

void TestUniqueNames::takesTheBeginningOfLongNames()
{
    QCOMPARE(longestName, 200);
    UniqueNames names;
    QString const longest(200, 'x');
    QString const beginning = QString(199, 'x') + QChar(0x2026);
    QCOMPARE(names.unique(longest), longest);
    QCOMPARE(UniqueNames().unique(QString(201, 'x')), beginning);
    QCOMPARE(names.unique(QString(1000000, 'x')), beginning);
    QCOMPARE(names.unique(QString(1000000, 'x') + "y"), beginning + " 2");
}

void TestUniqueNames::takesAsLongForEachName()
{
    // A search from 2 on for each of them would take a hundred times as long as all of this.
    int const count = 100000;
    UniqueNames names;
    QElapsedTimer timer;
    timer.start();
    for (int i = 2; i <= count; ++i)
        names.unique("a " + QString::number(i));
    for (int i = 1; i <= count; ++i)
        names.unique("a");
    QCOMPARE(names.unique("a"), "a " + QString::number(2 * count));
    qInfo("%d names: %lld ms", 2 * count, timer.elapsed());
}

QTEST_APPLESS_MAIN(TestUniqueNames)
#include "tst_uniquenames.moc"
