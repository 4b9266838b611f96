// SPDX-License-Identifier: MIT
#include "outputname.h"

#include <QtTest>

class TestOutputName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placeholdersAreFilledIn_data();
    void placeholdersAreFilledIn();
    void patternsAreToldFromNames_data();
    void patternsAreToldFromNames();
    void folderHoldsAFileAnInput_data();
    void folderHoldsAFileAnInput();
    void folderThatIsThereNeedsNoSlash();
    void strangePlaceholdersAreFaults_data();
    void strangePlaceholdersAreFaults();
};

void TestOutputName::placeholdersAreFilledIn_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("name");
    auto const row = [](char const* pattern, char const* name) {
        QTest::newRow(pattern) << QString(pattern) << QString(name);
    };
    row("out/{name}.png", "out/c.d.png");
    row("out/{path}.png", "out/a/b/c.d.png");
    row("{name}-{size}.png", "c.d-240x160.5.png");
    row("{size}/{path}-{name}", "240x160.5/a/b/c.d-c.d");
    row("{name}{name}", "c.dc.d");
    row("plain", "plain");
    QTest::newRow("half a character")
        << QString(QChar(0xdcff)) + "{name}" << QString(QChar(0xdcff)) + "c.d";
    row("", "");
    // A brace by itself is no placeholder, and two stand for one before one.
    row("{{name}-{name}", "{name}-c.d");
    row("{{{name}}", "{c.d}");
    row("{", "{");
    row("}{", "}{");
    row("{NAME}{1}{}", "{NAME}{1}{}");
    row("{nam", "{nam");
}

void TestOutputName::placeholdersAreFilledIn()
{
    QFETCH(QString, pattern);
    QFETCH(QString, name);
    QCOMPARE(outputName(pattern, {"a/b/c.d", QSizeF(240, 160.5)}), name);
}

void TestOutputName::patternsAreToldFromNames_data()
{
    QTest::addColumn<bool>("isPattern");
    QTest::addColumn<bool>("isMany");
    QTest::newRow("out.xml") << false << false;
    QTest::newRow("-") << false << false;
    QTest::newRow("a{b.xml") << false << false;
    QTest::newRow("a{{name}.xml") << false << false;
    QTest::newRow("{1}.xml") << false << false;
    QTest::newRow("missing/") << false << true;
    QTest::newRow("{name}.xml") << true << true;
    QTest::newRow("{strange}.xml") << true << true;
    QTest::newRow("{name}/") << true << true;
}

void TestOutputName::patternsAreToldFromNames()
{
    QFETCH(bool, isPattern);
    QFETCH(bool, isMany);
    QString const output = QTest::currentDataTag();
    QCOMPARE(isOutputPattern(output), isPattern);
    QCOMPARE(namesManyOutputs(output), isMany);
}

void TestOutputName::folderHoldsAFileAnInput_data()
{
    QTest::addColumn<bool>("hasSizes");
    QTest::addColumn<QString>("pattern");
    QTest::newRow("out/") << false << "out/{path}.png";
    QTest::newRow("/") << false << "/{path}.png";
    QTest::newRow("out/a/") << true << "out/a/{path}-{size}.png";
    QTest::newRow("{name}/") << false << "{name}/{path}.png";
    QTest::newRow("out.png") << false << "out.png";
    QTest::newRow("{name}.svg") << true << "{name}.svg";
}

void TestOutputName::folderHoldsAFileAnInput()
{
    QFETCH(bool, hasSizes);
    QFETCH(QString, pattern);
    QCOMPARE(outputPattern(QTest::currentDataTag(), "png", hasSizes), pattern);
}

void TestOutputName::folderThatIsThereNeedsNoSlash()
{
    QTemporaryDir const folder;
    QVERIFY(namesManyOutputs(folder.path()));
    QCOMPARE(outputPattern(folder.path(), "xml", false), folder.path() + "/{path}.xml");
}

void TestOutputName::strangePlaceholdersAreFaults_data()
{
    QTest::addColumn<bool>("hasSizes");
    QTest::addColumn<QString>("fault");
    QTest::newRow("{name}-{path}-{size}") << true << QString();
    QTest::newRow("{name}-{{size}") << false << QString();
    QTest::newRow("{name}-{size}") << false << "{size} in -o needs a --size of its own";
    QTest::newRow("{name}-{index}") << true << "-o takes {name}, {path} and {size}, not '{index}'";
}

void TestOutputName::strangePlaceholdersAreFaults()
{
    QFETCH(bool, hasSizes);
    QFETCH(QString, fault);
    QCOMPARE(patternFault(QTest::currentDataTag(), hasSizes), fault);
}

QTEST_GUILESS_MAIN(TestOutputName)

#include "tst_outputname.moc"
