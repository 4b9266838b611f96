// SPDX-License-Identifier: MIT
#include "import/svgrewriter.h"
#include "testing.h"

#include <QXmlStreamReader>
#include <QtTest>

namespace {

QString const file = QStringLiteral("a.svg");

QByteArray root(QByteArray const& body)
{
    return "<svg width=\"10\" height=\"10\">" + body + "</svg>";
}

/** A mark as it stands in a text. */
QByteArray mark(char const* family)
{
    return QByteArray("<path style=\"fill:none;stroke:none;font-family:") + family + "\"></path>";
}

QByteArray labelled(QByteArray const& shape, QByteArray const& number)
{
    return mark("kpgeom-begin-" + number) + shape + mark("kpgeom-end-" + number);
}

/** The names of elements with the lines on which their tags end. */
QStringList lines(QByteArray const& text)
{
    QStringList result;
    QXmlStreamReader reader(text);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement
            && !reader.attributes().value("style").contains(QLatin1String("kpgeom")))
            result << QStringLiteral("%1 %2").arg(reader.name()).arg(reader.lineNumber());
    }
    return result;
}

} // namespace

class TestSvgRewriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesPlainTextsAlone_data();
    void leavesPlainTextsAlone();
    void rewrites_data();
    void rewrites();
    void paintsEachSymbolOfASprite();
    void keepsLines();
    void keepsWhatTextsMean();
    void limitsLabelsAndSymbols_data();
    void limitsLabelsAndSymbols();
    void longIdsAreCut();
    void refusesTextsThatGrowTooLarge();
    void namesMarks();
};

void TestSvgRewriter::leavesPlainTextsAlone_data()
{
    QTest::addColumn<QByteArray>("svg");
    auto const row = [](char const* name, QByteArray const& svg) { QTest::newRow(name) << svg; };
    row("nothing in it", "<svg/>");
    row("shapes without ids", root("<g id='g'><path  d='M0 0L1 1'/>\n<circle r=\"5\" /></g>"));
    row("an empty id", root("<path id='' d='M0 0L1 1'/>"));
    row("ids of what paints nothing", root("<linearGradient id='a'/><clipPath id='b'/>"));
    row("ids and a style sheet that tells of neighbours",
        root("<style>path + path {fill:red}</style><path id='a' d='M0 0L1 1'/>"));
    row("ids and a style sheet that tells of children",
        root("<style>path:first-child {fill:red}</style><path id='a' d='M0 0L1 1'/>"));
}

void TestSvgRewriter::leavesPlainTextsAlone()
{
    QFETCH(QByteArray, svg);
    Diagnostics diagnostics;
    auto const rewritten = rewrittenSvg(svg, SvgLabels::AreMarked, file, diagnostics);
    QVERIFY(rewritten);
    QCOMPARE(rewritten->text, svg);
    QCOMPARE(rewritten->labels, QStringList());
    QVERIFY(rewritten->symbols.empty());
    QVERIFY(diagnostics.isEmpty());
}

void TestSvgRewriter::rewrites_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<QStringList>("labels");
    auto const row = [](char const* name, QByteArray const& body, QByteArray const& expected,
                         QStringList const& labels = {}) {
        QTest::newRow(name) << body << expected << labels;
    };
    QByteArray const shape = "<path id=\"a\" d=\"M0 0L1 1\"></path>";
    row("a shape with an id", shape, labelled(shape, "0"), {"a"});
    row("two shapes with one id", shape + shape, labelled(shape, "0") + labelled(shape, "1"),
        {"a", "a"});
    row("a shape in a shape is none of its own", "<path id=\"b\">" + shape + "</path>",
        labelled("<path id=\"b\">" + shape + "</path>", "0"), {"b"});
    row("the choices of a switch", "<switch>" + shape + "<g>" + shape + "</g></switch>",
        "<switch>" + shape + "<g>" + labelled(shape, "0") + "</g></switch>", {"a"});
    row("a use of a shape", shape + "<use href=\"#a\"></use>",
        labelled(shape, "0") + labelled("<use href=\"#a\"></use>", "1"), {"a", "a"});
    row("a use with an id", shape + "<use id=\"u\" href=\"#a\"></use>",
        labelled(shape, "0") + labelled("<use id=\"u\" href=\"#a\"></use>", "1"), {"a", "u"});
    row("a use of two shapes",
        "<g id=\"g\">" + shape + "<rect></rect></g><use id=\"u\" href=\"#g\"></use>",
        "<g id=\"g\">" + labelled(shape, "0") + "<rect></rect></g><use id=\"u\" href=\"#g\"></use>",
        {"a"});
    row("images, instructions and comments", "<image id=\"i\"><path/></image><?xml-a b?><!-- c -->",
        "");
    row("a nested picture",
        "<svg id=\"n\" x=\"1\" y=\"2\" width=\"4\" height=\"4\" viewBox=\"0 0 2 2\" "
        "fill=\"red\"><g></g></svg>",
        "<g id=\"n\" fill=\"red\" transform=\"matrix(2 0 0 2 1 2)\"><g></g></g>");
    row("a nested picture with a transform", "<svg x=\"1\" transform=\"scale(3)\"></svg>",
        "<g transform=\"scale(3) matrix(1 0 0 1 1 0)\"></g>");
    row("a nested picture where it is anyway", "<svg></svg>", "<g></g>");
    row("a nested picture without a size", "<svg display=\"inline\" width=\"0\"></svg>",
        "<g display=\"none\"></g>");
    row("a symbol and its use",
        "<symbol id=\"s\" viewBox=\"0 0 2 2\"><rect></rect></symbol><use href=\"#s\" "
        "width=\"4\" height=\"4\" x=\"5\"></use>",
        "<defs><g id=\"s\"><rect></rect></g></defs>"
            + labelled("<use href=\"#s\" transform=\"matrix(2 0 0 2 5 0)\"></use>", "0")
                  .replace(mark("kpgeom-begin-0"), "")
                  .replace(mark("kpgeom-end-0"), ""));
}

void TestSvgRewriter::rewrites()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, expected);
    QFETCH(QStringList, labels);
    Diagnostics diagnostics;
    auto const rewritten = rewrittenSvg(root(body), SvgLabels::AreMarked, file, diagnostics);
    QVERIFY(rewritten);
    QCOMPARE(rewritten->text, root(expected));
    QCOMPARE(rewritten->labels, labels);
    QVERIFY(rewritten->symbols.empty());
    QVERIFY(diagnostics.isEmpty());
    // Without labels nothing but the marks is missing.
    auto const bare = rewrittenSvg(root(body), SvgLabels::AreLeftOut, file, diagnostics);
    QVERIFY(bare);
    for (int i = 0; i < labels.size(); ++i) {
        for (char const* const kind : {"begin", "end"})
            expected.replace(mark("kpgeom-" + QByteArray(kind) + "-" + QByteArray::number(i)), "");
    }
    QCOMPARE(bare->text, root(expected));
    QCOMPARE(bare->labels, QStringList());
}

void TestSvgRewriter::paintsEachSymbolOfASprite()
{
    Diagnostics diagnostics;
    auto const rewritten =
        rewrittenSvg("<svg style=\"display:none\" width=\"30\" height=\"20\">"
                     "<symbol id=\"a\" viewBox=\"1 2 3 4\"><rect></rect><symbol></symbol></symbol>"
                     "<defs><symbol><rect></rect></symbol></defs></svg>",
            SvgLabels::AreMarked, file, diagnostics);
    QVERIFY(rewritten);
    QCOMPARE(rewritten->text,
        "<svg xmlns=\"http://www.w3.org/2000/svg\" "
        "xmlns:xlink=\"http://www.w3.org/1999/xlink\" viewBox=\"0 0 100 100\"><defs>"
        "<g style=\"display:none\"><defs><g id=\"kpgeom-symbol-0\"><g id=\"a\"><rect></rect>"
        "<defs><g></g></defs></g></g></defs>"
        "<defs><defs><g id=\"kpgeom-symbol-1\"><g><rect></rect></g></g></defs></defs></g></defs>"
            + mark("kpgeom-symbol-0")
            + "<use transform=\"matrix(1 0 0 1 -1 -2)\" xlink:href=\"#kpgeom-symbol-0\"></use>"
            + mark("kpgeom-symbol-1")
            + "<use transform=\"matrix(1 0 0 1 0 0)\" xlink:href=\"#kpgeom-symbol-1\"></use>"
              "</svg>");
    QCOMPARE(rewritten->symbols.size(), std::size_t(2));
    QCOMPARE(rewritten->symbols[0].name, QStringLiteral("a"));
    QCOMPARE(rewritten->symbols[0].box, QRectF(1.0, 2.0, 3.0, 4.0));
    QCOMPARE(rewritten->symbols[1].name, QStringLiteral("symbol 2"));
    QCOMPARE(rewritten->symbols[1].box, QRectF(0.0, 0.0, 30.0, 20.0));
    QVERIFY(diagnostics.isEmpty());
}

void TestSvgRewriter::keepsLines()
{
    QByteArray const svg = "<?xml version='1.0'?>\n<!-- a\n b -->\n<svg\n width='1'\n>\n<g\n/>"
                           "<![CDATA[\n]]><path\n id='a'\n/>\n<svg x='1'\n/>\n<image\n/>"
                           "<?a\n b?>\n<text id='b'>\n</text>\n<rect/>\n</svg>\n\n";
    Diagnostics diagnostics;
    auto const rewritten = rewrittenSvg(svg, SvgLabels::AreMarked, file, diagnostics);
    QVERIFY(rewritten);
    QStringList expected = lines(svg);
    QCOMPARE(expected.size(), 7);
    expected.removeOne("image 15");
    expected.replaceInStrings("svg 13", "g 13");
    QCOMPARE(lines(rewritten->text), expected);
    QCOMPARE(rewritten->text.count('\n'), svg.count('\n'));
}

void TestSvgRewriter::keepsWhatTextsMean()
{
    QByteArray const svg =
        "<!DOCTYPE svg [<!ENTITY e \"&#38;lt;e\"><!ATTLIST path d CDATA 'M0'>]>"
        "<svg xmlns:x='u'><path id='&quot;&lt;&#10;&#9;&#13;&gt;\xc3\xa4' x:y='2'/>"
        "<text>&lt;&#13;&amp;<![CDATA[<a>]]>&e;</text></svg>";
    Diagnostics diagnostics;
    auto const rewritten = rewrittenSvg(svg, SvgLabels::AreMarked, file, diagnostics);
    QVERIFY(rewritten);
    QCOMPARE(rewritten->labels, QStringList(QString::fromUtf8("\"<\n\t\r>\xc3\xa4")));
    QXmlStreamReader reader(rewritten->text);
    QStringList ids;
    QString text;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.attributes().hasAttribute("id")) {
            ids << reader.attributes().value("id").toString();
            QCOMPARE(reader.attributes().value("d").toString(), QString("M0"));
            QCOMPARE(reader.attributes().value("u", "y").toString(), QString("2"));
        }
        if (reader.isCharacters())
            text += reader.text();
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(ids, rewritten->labels);
    QCOMPARE(text, QString("<\r&<a><e"));
}

void TestSvgRewriter::limitsLabelsAndSymbols_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("kept");
    QTest::newRow("most") << 100000 << 100000;
    QTest::newRow("one more") << 100001 << 100000;
}

void TestSvgRewriter::limitsLabelsAndSymbols()
{
    QFETCH(int, count);
    QFETCH(int, kept);
    Diagnostics diagnostics;
    auto const shapes = rewrittenSvg(root(QByteArray("<path id='a'/>").repeated(count)),
        SvgLabels::AreMarked, file, diagnostics);
    QVERIFY(shapes);
    QCOMPARE(shapes->labels.size(), kept);
    QCOMPARE(shapes->text.count("id=\"a\""), count);
    auto const symbols = rewrittenSvg(
        root(QByteArray("<symbol/>").repeated(count)), SvgLabels::AreMarked, file, diagnostics);
    QVERIFY(symbols);
    QCOMPARE(symbols->symbols.size(), std::size_t(kept));
}

void TestSvgRewriter::longIdsAreCut()
{
    Diagnostics diagnostics;
    auto const longId = rewrittenSvg(root("<path id='" + QByteArray(1000000, 'a') + "'/>"),
        SvgLabels::AreMarked, file, diagnostics);
    QVERIFY(longId);
    QCOMPARE(longId->labels, QStringList(QString(199, 'a') + QChar(0x2026)));
}

void TestSvgRewriter::refusesTextsThatGrowTooLarge()
{
    // A sanitizer needs half a minute for it.
    if (Testing::sanitized)
        return;
    // It may stand as it is, and is written in six characters.
    QByteArray const svg = root("<path id='" + QByteArray(45 * 1024 * 1024, '"') + "'/>");
    Diagnostics diagnostics;
    QVERIFY(!rewrittenSvg(svg, SvgLabels::AreMarked, file, diagnostics));
}

void TestSvgRewriter::namesMarks()
{
    using Kind = SvgMark::Kind;
    QCOMPARE(SvgMark({Kind::LabelBegins, 0}).family(), QStringLiteral("kpgeom-begin-0"));
    QCOMPARE(SvgMark({Kind::LabelEnds, 12}).family(), QStringLiteral("kpgeom-end-12"));
    QCOMPARE(SvgMark({Kind::SymbolBegins, 3}).family(), QStringLiteral("kpgeom-symbol-3"));
    for (Kind const kind : {Kind::LabelBegins, Kind::LabelEnds, Kind::SymbolBegins}) {
        auto const known = SvgMark::fromFamily(SvgMark({kind, 7}).family());
        QVERIFY(known);
        QVERIFY(known->kind == kind);
        QCOMPARE(known->number, 7);
    }
    for (char const* const none :
        {"", "Sans", "kpgeom", "kpgeom-begin", "kpgeom-begin-", "kpgeom-begin-x", "kpgeom-begin-01",
            "kpgeom-begin-99999999999", "kpgeom-other-1", "kpgeom-begin-1 ", "-1"})
        QVERIFY2(!SvgMark::fromFamily(none), none);
}

QTEST_APPLESS_MAIN(TestSvgRewriter)
#include "tst_svgrewriter.moc"
