// SPDX-License-Identifier: MIT
#include "document/outlinedocument.h"

#include "testing.h"

namespace {

/** The themes of the outlines of a document, "-" where it tells none. */
QStringList themesOf(QString const& text)
{
    Diagnostics diagnostics;
    auto const document = OutlineDocument::read(text.toUtf8(), "a.xml", diagnostics);
    QStringList themes;
    if (!document)
        return {diagnostics.at(0).text};
    for (Outline const& outline : document->outlines())
        themes << (outline.appearance.theme.isEmpty() ? "-" : outline.appearance.theme);
    return themes;
}

} // namespace

class TestFollowingAppearance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appearanceIsOfTheOutlineBefore_data();
    void appearanceIsOfTheOutlineBefore();
    void allOfItIsRead();
};

void TestFollowingAppearance::appearanceIsOfTheOutlineBefore_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QStringList>("themes");
    QTest::newRow("none") << "<Geometry/>" << QStringList {"-"};
    QTest::newRow("one") << "<Geometry/><Appearance Theme='A'/>" << QStringList {"A"};
    QTest::newRow("space") << "<Geometry/>\n\t <!-- a --> <Appearance Theme='A'/>"
                           << QStringList {"A"};
    QTest::newRow("before") << "<Appearance Theme='A'/><Geometry/>" << QStringList {"-"};
    QTest::newRow("text between") << "<Geometry/>x<Appearance Theme='A'/>" << QStringList {"-"};
    QTest::newRow("element between")
        << "<Geometry/><Other/><Appearance Theme='A'/>" << QStringList {"-"};
    QTest::newRow("other parent") << "<S><Geometry/></S><Appearance Theme='A'/>"
                                  << QStringList {"-"};
    QTest::newRow("within another")
        << "<Geometry/><S><Appearance Theme='A'/></S>" << QStringList {"-"};
    QTest::newRow("the first counts")
        << "<Geometry/><Appearance Theme='A'/><Appearance Theme='B'/>" << QStringList {"A"};
    QTest::newRow("two") << "<S><Geometry/><Appearance Theme='A'/></S><S><Geometry/></S><S>"
                            "<Geometry/><Appearance Theme='C'/></S>"
                         << QStringList {"A", "-", "C"};
    QTest::newRow("outline inside another")
        << "<Geometry><Geometry/><Appearance Theme='A'/></Geometry><Appearance Theme='B'/>"
        << QStringList {"B", "-"};
    QTest::newRow("outline inside an appearance")
        << "<Geometry/><Appearance Theme='A'><Geometry/></Appearance>" << QStringList {"-", "-"};
    QTest::newRow("another name") << "<Geometry/><a:Appearance Theme='A'/>" << QStringList {"-"};
}

void TestFollowingAppearance::appearanceIsOfTheOutlineBefore()
{
    QFETCH(QString, content);
    QTEST(themesOf("<Shapes>" + content + "</Shapes>"), "themes");
}

void TestFollowingAppearance::allOfItIsRead()
{
    Diagnostics diagnostics;
    auto const document = OutlineDocument::read(
        QByteArray("<Shape><Geometry/><Appearance Theme='A'><Fill><Color V='#102030'/>"
                   "<Transform Name='inv' Value='1'/></Fill><Shadow Radius='9'/></Appearance>"
                   "</Shape>"),
        "a.xml", diagnostics);
    QVERIFY(document);
    Appearance const& appearance = document->outlines().at(0).appearance;
    QVERIFY(appearance.fill);
    QCOMPARE(appearance.fill->shown(), QColor(0xef, 0xdf, 0xcf));
    QVERIFY(!appearance.line);
    QVERIFY(appearance.shadow);
    QCOMPARE(appearance.shadow->radius, 9U);
}

QTEST_GUILESS_MAIN(TestFollowingAppearance)
#include "tst_followingappearance.moc"
