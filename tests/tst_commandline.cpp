// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "console.h"
#include "testing.h"

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quietIsWhoeverAsksForIt_data();
    void quietIsWhoeverAsksForIt();
};

void TestCommandLine::quietIsWhoeverAsksForIt_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("by the letter") << QStringList {"-q", "a.xml"};
    QTest::newRow("by the name") << QStringList {"a.xml", "--quiet"};
}

void TestCommandLine::quietIsWhoeverAsksForIt()
{
    QFETCH(QStringList, arguments);
    QVERIFY(!CommandLine(checkCommand).parse(arguments));
    QVERIFY(isQuiet());
    // One process may run several commands.
    QVERIFY(!CommandLine(checkCommand).parse({"a.xml"}));
    QVERIFY(!isQuiet());
}

QTEST_MAIN(TestCommandLine)
#include "tst_commandline.moc"
