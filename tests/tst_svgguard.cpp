// SPDX-License-Identifier: MIT
#include "import/svgguard.h"
#include "import/svgscan.h"

#include <QtTest>

namespace {

/** `count` times `pattern`, each with its number in the place of %1. */
QByteArray numbered(QByteArray const& pattern, int count)
{
    QByteArray result;
    for (int i = 0; i < count; ++i)
        result += QByteArray(pattern).replace("%1", QByteArray::number(i));
    return result;
}

/** A picture of `elements` with the style sheet; the picture and the sheet are elements, too. */
QByteArray styled(QByteArray const& sheet, QByteArray const& elements)
{
    return "<svg><style>" + sheet + "</style>" + elements + "</svg>";
}

} // namespace

class TestSvgGuard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void boundsStyleSheets_data();
    void boundsStyleSheets();
    void longPicturesMayCostMore();
    void boundsUse_data();
    void boundsUse();
    void labelsAreLookedForWithinBounds_data();
    void labelsAreLookedForWithinBounds();
    void boundsTakeLittleTime_data();
    void boundsTakeLittleTime();
};

void TestSvgGuard::boundsStyleSheets_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("passes");
    auto const row = [](char const* name, QByteArray const& sheet, QByteArray const& elements,
                         bool passes) { QTest::newRow(name) << styled(sheet, elements) << passes; };

    // 5,000 elements, each compared with 10,000 selectors.
    QByteArray const paths = QByteArray("<path/>").repeated(4998);
    row("most comparisons", numbered(".c%1{}", 10000), paths, true);
    row("one selector more", numbered(".c%1{}", 10001), paths, false);
    row("one element more", numbered(".c%1{}", 10000), paths + "<path/>", false);
    row("in lists", numbered(".c%1,.d%1{}", 5000), paths, true);
    row("one more in lists", numbered(".c%1,.d%1{}", 5000) + "e{}", paths, false);
    row("in two sheets", numbered(".c%1{}", 5000) + "</style><style>" + numbered(".d%1{}", 5000),
        paths.mid(7), true);
    row("one more in two sheets",
        numbered(".c%1{}", 5000) + "</style><style>" + numbered(".d%1{}", 5001), paths.mid(7),
        false);
    row("by id", numbered("#c%1{}", 20000), paths, true);
    row("comments", numbered("/* .c%1{}, */", 20000), paths, true);
    row("in character data", "<![CDATA[" + numbered(".c%1{}", 10001) + "]]>", paths, false);

    // Each of 5,000 elements has 1,249 declarations of eight comparisons, and is itself compared.
    row("most declarations", "*{" + QByteArray("a:b;").repeated(1249) + "}", paths, true);
    row("more declarations", "*{" + QByteArray("a:b;").repeated(1250) + "}", paths, false);
    row("declarations of few", ".c{" + QByteArray("a:b;").repeated(9000) + "}",
        paths.mid(14) + QByteArray("<path class='b c'/>").repeated(2), true);
    row("of one with other letters", ".c{" + QByteArray("a:b;").repeated(9000) + "}",
        QByteArray("<path class='C'/>").repeated(4998), false);
    row("of an id", "#c{" + QByteArray("a:b;").repeated(9000) + "}",
        QByteArray("<path id='c'/>").repeated(4998), false);
    row("in another rule", "@media{.c{" + QByteArray("a:b;").repeated(9000) + "}}", paths, false);
    row("with an escape", ".\\63{" + QByteArray("a:b;").repeated(9000) + "}", paths, false);

    row("elements around", "a b{}", paths, true);
    row("many elements around", QByteArray("a ").repeated(10000) + "b{}", paths, false);
    row("neighbours", "path+path{}", QByteArray("<path/>").repeated(50000), true);
    row("more neighbours", "path+path{}", QByteArray("<path/>").repeated(80000), false);
    row("long classes", numbered(".c%1{}", 1000),
        "<path class='" + QByteArray("d ").repeated(150000) + "'/>", true);
    row("longer classes", numbered(".c%1{}", 1000),
        "<path class='" + QByteArray("d ").repeated(250000) + "'/>", false);
}

void TestSvgGuard::boundsStyleSheets()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, passes);
    Diagnostics diagnostics;
    auto const guarded = guardedSvg(text, "a.svg", diagnostics);
    QCOMPARE(guarded.has_value(), passes);
    QCOMPARE(diagnostics.size(), passes ? 0 : 1);
    if (!passes) {
        QVERIFY2((*diagnostics.begin())
                     .text.startsWith("its style sheets are too long for so many "
                                      "elements: more than "),
            qPrintable((*diagnostics.begin()).text));
        QVERIFY(useFault(text).startsWith("its style sheets"));
    }
}

void TestSvgGuard::longPicturesMayCostMore()
{
    // 32 comparisons for each character of an attribute, and for the 32 that an element counts.
    QByteArray const paths = QByteArray("<path d='" + QByteArray(464, ' ') + "'/>").repeated(5000);
    Diagnostics diagnostics;
    QVERIFY(guardedSvg(styled(numbered(".c%1{}", 15994), paths), "a.svg", diagnostics));
    QVERIFY(!guardedSvg(styled(numbered(".c%1{}", 15995), paths), "a.svg", diagnostics));
}

void TestSvgGuard::boundsUse_data()
{
    QTest::addColumn<QByteArray>("elements");
    QTest::addColumn<QString>("fault");
    // The picture is the first element, a group and a use in it the next two.
    auto const chain = [](int groups) {
        QByteArray text = "<g id='g0'/>";
        for (int i = 1; i < groups; ++i) {
            text += "<g id='g" + QByteArray::number(i) + "'><use href='#g"
                + QByteArray::number(i - 1) + "'/></g>";
        }
        return text;
    };
    QString const tooDeep = "its use elements go round in circles or nest more than 1000 deep";
    QTest::newRow("deepest") << chain(500) + "<g/>" << QString();
    QTest::newRow("one deeper") << chain(500) + "<g><use href='#g499'/></g>" << tooDeep;

    // A path counts 36 characters beside its attributes, a use 35, and 6 for what it refers to; the
    // picture counts 35 and the first path itself, too.
    QString const tooMuch = "its use elements repeat too much of it";
    auto const repeated = [](int attribute) {
        return "<path id='aaaaa' d='" + QByteArray(attribute, ' ') + "'/>"
            + QByteArray("<use href='#aaaaa'/>").repeated(1023);
    };
    int const most = 16 * 1024 * 1024;
    int const used = 1023 * (35 + 6);
    int const left = most - 35 - used;
    QTest::newRow("most") << repeated(left / 1024 - 41) << QString();
    QTest::newRow("one more in each") << repeated(left / 1024 - 40) << tooMuch;
}

void TestSvgGuard::boundsUse()
{
    QFETCH(QByteArray, elements);
    QFETCH(QString, fault);
    QCOMPARE(useFault("<svg>" + elements + "</svg>"), fault);
}

void TestSvgGuard::labelsAreLookedForWithinBounds_data()
{
    QTest::addColumn<int>("uses"); // of one another; the last one uses a shape
    QTest::addColumn<QString>("label");
    QTest::newRow("most") << 7 << "u7";
    QTest::newRow("one more") << 8 << "";
}

void TestSvgGuard::labelsAreLookedForWithinBounds()
{
    QFETCH(int, uses);
    QFETCH(QString, label);
    QByteArray text = "<path id='u0'/>";
    for (int i = 1; i <= uses; ++i) {
        text +=
            "<use id='u" + QByteArray::number(i) + "' href='#u" + QByteArray::number(i - 1) + "'/>";
    }
    SvgScan const scan("<svg>" + text + "</svg>");
    QCOMPARE(scan.labelOfUse(QString(), "u" + QString::number(uses)), label);
}

void TestSvgGuard::boundsTakeLittleTime_data()
{
    QTest::addColumn<QByteArray>("text");
    // Painting each takes minutes or more.
    QTest::newRow("rules") << styled(
        numbered(".c%1{fill:red}", 30000), QByteArray("<path class='c1'/>").repeated(30000));
    QTest::newRow("comments without an end")
        << styled(QByteArray("/*").repeated(500000) + "a{}", QByteArray());
    QTest::newRow("long selector")
        << styled(QByteArray("a.b").repeated(300000) + "{}", QByteArray("<path/>").repeated(60000));
}

void TestSvgGuard::boundsTakeLittleTime()
{
    QFETCH(QByteArray, text);
    Diagnostics diagnostics;
    guardedSvg(text, "a.svg", diagnostics);
}

QTEST_APPLESS_MAIN(TestSvgGuard)
#include "tst_svgguard.moc"
