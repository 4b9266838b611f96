// SPDX-License-Identifier: MIT
#include "export/pathdata.h"
#include "import/anyimport.h"
#include "import/odfdrawing.h"
#include "outlinetesting.h"
#include "ziptesting.h"

using ZipTesting::Member;
using ZipTesting::zipOf;

class TestOdfImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void importsElements_data();
    void importsElements();
    void readsLengths_data();
    void readsLengths();
    void transforms_data();
    void transforms();
    void namesOutlines();
    void makesAPictureOfEachElementAndGroup();
    void paintsByStyle_data();
    void paintsByStyle();
    void leavesOutWhatIsNotDrawnOnThePage();
    void chooses10000UnitsByDefault();
    void readsZipFiles_data();
    void readsZipFiles();
    void saysWhatIsLeftOut_data();
    void saysWhatIsLeftOut();
    void numbersAreBounded_data();
    void numbersAreBounded();
    void failsInOneLine_data();
    void failsInOneLine();
    void refusesTooManyElements();
    void everyBeginningIsRefused();
};

namespace {

QByteArray const namespaces =
    " xmlns:office='urn:oasis:names:tc:opendocument:xmlns:office:1.0'"
    " xmlns:draw='urn:oasis:names:tc:opendocument:xmlns:drawing:1.0'"
    " xmlns:svg='urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0'"
    " xmlns:style='urn:oasis:names:tc:opendocument:xmlns:style:1.0'"
    " xmlns:presentation='urn:oasis:names:tc:opendocument:xmlns:presentation:1.0'"
    " xmlns:text='urn:oasis:names:tc:opendocument:xmlns:text:1.0'";

QByteArray body(QByteArray const& elements)
{
    return "<office:body><office:drawing><draw:page draw:name='page1'>" + elements
        + "</draw:page></office:drawing></office:body>";
}

QByteArray flat(QByteArray const& elements, QByteArray const& styles = {})
{
    return "<office:document" + namespaces + ">" + styles + body(elements) + "</office:document>";
}

QByteArray zipped(QByteArray const& elements, QByteArray const& styles = {})
{
    Member content {"content.xml",
        "<office:document-content" + namespaces + ">\n" + body(elements)
            + "</office:document-content>"};
    content.isDeflated = true;
    QVector<Member> members {{"mimetype", "application/vnd.oasis.opendocument.graphics"}, content};
    if (!styles.isEmpty()) {
        members << Member {"styles.xml",
            "<office:document-styles" + namespaces + ">" + styles + "</office:document-styles>"};
    }
    return zipOf(members);
}

QByteArray style(QByteArray const& head, QByteArray const& properties)
{
    return "<style:" + head + " style:family='graphic'><style:graphic-properties " + properties
        + "/></style:" + head.split(' ').first() + ">";
}

struct Outcome
{
    std::optional<ImportedPictures> pictures;
    QStringList lines;

    /** Of all outlines: name, data and box. */
    QStringList texts() const
    {
        QStringList list;
        for (ImportedOutlines const& picture : *pictures) {
            for (ImportedOutline const& outline : picture.outlines) {
                list << QString("%1: %2 in %3x%4")
                            .arg(outline.name, pathData(*outline.list, {}).value())
                            .arg(picture.size.width())
                            .arg(picture.size.height());
            }
        }
        return list;
    }
};

Outcome imported(QByteArray const& content, double scale = 1.0)
{
    Outcome outcome;
    Diagnostics diagnostics;
    outcome.pictures = importAny(content, {"in", scale, [] { return QStringList(); }}, diagnostics);
    for (Diagnostic const& diagnostic : diagnostics) {
        outcome.lines << (diagnostic.line > 0
                ? QString("%1:%2: ").arg(diagnostic.line).arg(diagnostic.column) + diagnostic.text
                : diagnostic.text);
    }
    return outcome;
}

QByteArray const frame = " svg:x='10px' svg:y='20px' svg:width='40px' svg:height='20px' ";

} // namespace

void TestOdfImport::importsElements_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("text");

    auto const row = [](char const* name, QByteArray const& element, char const* text) {
        QTest::newRow(name) << element << QString(text);
    };
    row("rectangle", "<draw:rect" + frame + "/>",
        "rect 1: M0 0 L40 0 L40 20 L0 20 L0 0 Z in 40x20");
    row("line", "<draw:line svg:x1='5px' svg:y1='5px' svg:x2='25px' svg:y2='15px'/>",
        "line 1: M0 0 L20 10 in 20x10");
    row("level line", "<draw:line svg:x1='5px' svg:y1='5px' svg:x2='25px' svg:y2='5px'/>",
        "line 1: M0 0 L20 0 in 20x1");
    row("polygon",
        "<draw:polygon" + frame + "svg:viewBox='0 0 4000 4000' draw:points='0,0 4000,0 0,4000'/>",
        "polygon 1: M0 0 L40 0 L0 20 L0 0 Z in 40x20");
    row("polyline",
        "<draw:polyline" + frame + "svg:viewBox='0 0 4000 4000' draw:points='0,0 4000,0 0,4000'/>",
        "polyline 1: M0 0 L40 0 L0 20 in 40x20");
    row("path",
        "<draw:path" + frame + "svg:viewBox='100 0 40 10' svg:d='M100 0c40 0 40 0 40 10z'/>",
        "path 1: M0 0 C40 0 40 0 40 20 L0 0 Z in 40x20");
    row("part of its view box",
        "<draw:path" + frame + "svg:viewBox='0 0 40 20' svg:d='M10 10h20v5'/>",
        "path 1: M0 0 L20 0 L20 5 in 20x5");
    row("view box without height",
        "<draw:path" + frame + "svg:viewBox='0 0 80 0' svg:d='M0 0H80'/>",
        "path 1: M0 0 L40 0 in 40x1");
    row("half an ellipse",
        "<draw:ellipse" + frame + "draw:kind='cut' draw:start-angle='0' draw:end-angle='180'/>",
        "ellipse 1: M40 10 C40 4.47715 31.0457 0 20 0 C8.95431 0 0 4.47715 0 10 L40 10 Z in 40x10");
    row("a quarter of it",
        "<draw:ellipse" + frame + "draw:kind='section' draw:start-angle='0' draw:end-angle='90'/>",
        "ellipse 1: M20 10 C20 4.47715 11.0457 0 0 0 L0 10 L20 10 Z in 20x10");
    row("an arc",
        "<draw:circle" + frame + "draw:kind='arc' draw:start-angle='270' draw:end-angle='0'/>",
        "circle 1: M0 10 C11.0457 10 20 5.52285 20 0 in 20x10");
}

void TestOdfImport::importsElements()
{
    QFETCH(QByteArray, element);
    QFETCH(QString, text);

    for (QByteArray const& content : {flat(element), zipped(element)}) {
        Outcome const outcome = imported(content);
        QVERIFY2(outcome.pictures, qPrintable(outcome.lines.join('\n')));
        QCOMPARE(outcome.texts(), QStringList(text));
        QCOMPARE(outcome.lines, QStringList());
    }
}

void TestOdfImport::readsLengths_data()
{
    QTest::addColumn<QByteArray>("length");
    QTest::addColumn<double>("pixels");

    QTest::newRow("cm") << QByteArray("2.54cm") << 96.0;
    QTest::newRow("mm") << QByteArray("25.4mm") << 96.0;
    QTest::newRow("in") << QByteArray("0.5in") << 48.0;
    QTest::newRow("pt") << QByteArray("72pt") << 96.0;
    QTest::newRow("pc") << QByteArray("3pc") << 48.0;
    QTest::newRow("px") << QByteArray("12.5px") << 12.5;
}

void TestOdfImport::readsLengths()
{
    QFETCH(QByteArray, length);
    QFETCH(double, pixels);

    Outcome const outcome =
        imported(flat("<draw:rect svg:width='" + length + "' svg:height='1px'/>"));
    QVERIFY2(outcome.pictures, qPrintable(outcome.lines.join('\n')));
    QCOMPARE(outcome.pictures->front().size.width(), pixels);
}

void TestOdfImport::transforms_data()
{
    QTest::addColumn<QByteArray>("transform");
    QTest::addColumn<QString>(
        "data"); // of a line to (40, 20), in a group from (0, 0) to (100, 100)

    auto const row = [](char const* transform, char const* data) {
        QTest::newRow(transform) << QByteArray(transform) << QString(data);
    };
    row("", "M0 0 L40 20");
    row("translate(10px 5px)", "M10 5 L50 25");
    row("translate (0.5in)", "M48 0 L88 20");
    row("translate(0 5px)", "M0 5 L40 25");
    row("scale(2)", "M0 0 L80 40");
    row("scale(2, 0.5)", "M0 0 L80 10");
    row("matrix(0 1 1 0 7.5pt 0pt)", "M10 0 L30 40");
    row("rotate (1.57079632679490) translate (0px 50px)", "M0 50 L20 10");
    row("translate(0px 50px) scale(0.5)", "M0 25 L20 35");
}

void TestOdfImport::transforms()
{
    QFETCH(QByteArray, transform);
    QFETCH(QString, data);

    Outcome const outcome = imported(
        flat("<draw:g><draw:rect svg:width='100px' svg:height='100px'/><draw:line svg:x2='40px' "
             "svg:y2='20px' draw:transform='"
            + transform + "'/></draw:g>"));
    QVERIFY(outcome.pictures);
    QCOMPARE(outcome.lines, QStringList());
    QCOMPARE(outcome.texts().at(1), "line 2: " + data + " in 100x100");
}

void TestOdfImport::namesOutlines()
{
    Outcome const outcome = imported(flat("<draw:rect draw:name=' a &lt;b&gt; '" + frame
        + "/><draw:rect" + frame + "/><draw:rect draw:name=''" + frame + "/>"));
    QStringList names;
    for (ImportedOutlines const& picture : *outcome.pictures)
        names << picture.outlines.front().name;
    QCOMPARE(names, (QStringList {"a <b>", "rect 2", "rect 3"}));
}

void TestOdfImport::makesAPictureOfEachElementAndGroup()
{
    QByteArray const square = "<draw:rect svg:width='10px' svg:height='10px' svg:x='";
    Outcome const outcome = imported(flat(square + "50px'/><draw:g>" + square + "20px'/><draw:g>"
        + square + "40px'/></draw:g></draw:g><draw:g/>" + square + "70px'/>"));
    QCOMPARE(outcome.texts(),
        (QStringList {"rect 1: M0 0 L10 0 L10 10 L0 10 L0 0 Z in 10x10",
            "rect 2: M0 0 L10 0 L10 10 L0 10 L0 0 Z in 30x10",
            "rect 3: M20 0 L30 0 L30 10 L20 10 L20 0 Z in 30x10",
            "rect 4: M0 0 L10 0 L10 10 L0 10 L0 0 Z in 10x10"}));
}

void TestOdfImport::paintsByStyle_data()
{
    QTest::addColumn<QByteArray>("styles");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QStringList>("lines");

    auto const row = [](char const* name, QByteArray const& styles, char const* flags,
                         QStringList const& lines = {}) {
        QTest::newRow(name) << styles << QString(flags) << lines;
    };
    row("no style", "", "fill line");
    row("no filling", style("style style:name='a'", "draw:fill='none'"), "line");
    row("no line", style("style style:name='a'", "draw:stroke='none'"), "fill");
    row("nothing", style("style style:name='a'", "draw:stroke='none' draw:fill='none'"), "",
        {"1 shape painted with nothing: left out"});
    row("default style", style("default-style", "draw:fill='none'"), "line");
    row("of another family",
        style("default-style", "draw:fill='none'").replace("graphic'", "text'"), "fill line");
    row("parent",
        style("style style:name='a' style:parent-style-name='b'", "draw:fill='solid'")
            + style("style style:name='b'", "draw:fill='none' draw:stroke='none'"),
        "fill");
    row("its own parent",
        style("style style:name='a' style:parent-style-name='b'", "")
            + style("style style:name='b' style:parent-style-name='a'", ""),
        "fill line");
    row("colour", style("style style:name='a'", "draw:fill-color='#ff0000'"), "fill line",
        {"1 shape with a colour other than black: not kept"});
    row("gradient", style("style style:name='a'", "draw:fill='gradient'"), "fill line",
        {"1 shape with a gradient or pattern: not kept"});
    row("dashes", style("style style:name='a'", "draw:stroke='dash'"), "fill line",
        {"1 shape with a dashed line: not kept"});
}

void TestOdfImport::paintsByStyle()
{
    QFETCH(QByteArray, styles);
    QFETCH(QString, flags);
    QFETCH(QStringList, lines);

    QByteArray const element = "<draw:rect draw:style-name='a'" + frame + "/>";
    QByteArray const flatStyles = "<office:styles>" + styles + "</office:styles>";
    for (QByteArray const& content : {flat(element, flatStyles), zipped(element, flatStyles)}) {
        Outcome const outcome = imported(content);
        QVERIFY2(outcome.pictures, qPrintable(outcome.lines.join('\n')));
        QCOMPARE(outcome.lines, lines);
        QCOMPARE(outcome.pictures->empty(), flags.isEmpty());
        if (flags.isEmpty())
            continue;
        KpPathSegList const& list = *outcome.pictures->front().outlines.front().list;
        QStringList found;
        if (!list.noFill)
            found << "fill";
        if (!list.noLine)
            found << "line";
        QCOMPARE(found.join(' '), flags);
    }
}

void TestOdfImport::leavesOutWhatIsNotDrawnOnThePage()
{
    QByteArray const rectangle = "<draw:rect" + frame + "/>";
    Outcome const outcome =
        imported(flat(rectangle + "<presentation:notes>" + rectangle + "</presentation:notes>",
            "<office:master-styles>" + rectangle + "</office:master-styles>"));
    QCOMPARE(outcome.texts().size(), 1);
    QCOMPARE(outcome.lines, QStringList());
}

void TestOdfImport::chooses10000UnitsByDefault()
{
    Outcome const outcome = imported(flat("<draw:rect" + frame + "/>"), 0.0);
    QCOMPARE(outcome.texts(),
        QStringList("rect 1: M0 0 L10000 0 L10000 5000 L0 5000 L0 0 Z in 10000x5000"));
    // A hundredth of a hundredth of the width would not be drawn.
    Outcome const fine = imported(
        flat("<draw:path" + frame + "svg:viewBox='0 0 40 20' svg:d='M0 0H0.002V10H40'/>"), 0.0);
    QCOMPARE(fine.pictures->front().size, QSizeF(100000, 25000));
}

void TestOdfImport::readsZipFiles_data()
{
    QTest::addColumn<QByteArray>("zip");
    QTest::addColumn<QString>("line");

    QByteArray const content = zipped("<draw:rect" + frame + "/>");
    auto const row = [](char const* name, QByteArray const& zip, char const* line) {
        QTest::newRow(name) << zip << QString(line);
    };
    row("cut", content.left(content.size() - 1),
        "no OpenDocument drawing: the zip file is damaged or incomplete");
    row("another zip file", zipOf({{"a.txt", "a"}}),
        "no OpenDocument drawing: there is no content.xml in the zip file");
    row("no XML", zipOf({{"content.xml", "\x01\x02"}}), "content.xml:1:1: ");
    row("no XML in the styles", zipped("", "<"), "styles.xml:1:");
    Member bomb {"content.xml", "x"};
    bomb.size = 300 * 1024 * 1024;
    row("too large", zipOf({bomb}),
        "no OpenDocument drawing: content.xml in the zip file is larger than 268435456 bytes");
}

void TestOdfImport::readsZipFiles()
{
    QFETCH(QByteArray, zip);
    QFETCH(QString, line);

    Outcome const outcome = imported(zip);
    QVERIFY(!outcome.pictures);
    QCOMPARE(outcome.lines.size(), 1);
    QVERIFY2(outcome.lines.first().startsWith(line), qPrintable(outcome.lines.first()));
}

void TestOdfImport::saysWhatIsLeftOut_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QStringList>("lines");

    auto const row = [](QByteArray const& name, QByteArray const& element,
                         QStringList const& lines) { QTest::newRow(name) << element << lines; };
    row("other shapes", "<draw:custom-shape/><draw:frame><draw:rect/></draw:frame><draw:frame/>",
        {"1 draw:custom-shape: left out", "2 draw:frame: left out"});
    row("text", "<draw:rect" + frame + "><svg:title>a</svg:title><text:p>b</text:p></draw:rect>",
        {"1 shape with text: not kept"});
    row("a title", "<draw:rect" + frame + "><svg:title>a</svg:title><text:p/></draw:rect>", {});
    QByteArray const transformed = "<draw:rect" + frame + "draw:transform='";
    for (QByteArray const transform :
        {"skewX(1)", "rotate(1) turn", "rotate()", "rotate(nan)", "matrix(1 2 3 4 5 6)",
            "translate(5)", "scale(1e10)", "rotate(1", "rotate((1))", "1"}) {
        row("transform " + transform, transformed + transform + "'/>",
            {"1 shape with a draw:transform that is not heeded"});
    }
    row("path data", "<draw:path" + frame + "svg:viewBox='0 0 9 9' svg:d='M0 0L5'/>",
        {"1:580: draw:path left out: path data, character 7: a number is missing at the end"});
    row("view box", "<draw:path" + frame + "svg:d='M0 0L5 5'/>",
        {"1:560: draw:path left out: viewBox is not four numbers"});
    row("lengths",
        "<draw:rect svg:x='5'/><draw:rect svg:width='nanpx'/><draw:rect svg:y='1e10cm'/>",
        {"1:492: draw:rect left out: x is no length",
            "2 shapes more that cannot be read: left out"});
    row("angle", "<draw:ellipse draw:kind='arc' draw:start-angle='inf'" + frame + "/>",
        {"1:586: draw:ellipse left out: start-angle is no angle"});
    row("nothing", "<draw:rect/>", {"1 shape painted with nothing: left out"});
    row("no size", "<draw:line svg:x1='1e-9px'/>", {"line 1: without a size; left out"});
}

void TestOdfImport::saysWhatIsLeftOut()
{
    QFETCH(QByteArray, element);
    QFETCH(QStringList, lines);

    Outcome const outcome = imported(flat(element), 0.0);
    QVERIFY(outcome.pictures);
    QCOMPARE(outcome.lines, lines);
    // In a zip file the place is that in its member.
    if (!lines.isEmpty() && lines.first().startsWith("1:"))
        QVERIFY(imported(zipped(element)).lines.first().startsWith("content.xml:2:"));
}

void TestOdfImport::numbersAreBounded_data()
{
    QTest::addColumn<QString>("element"); // with a number that is missing
    QTest::addColumn<QString>("fault");

    auto const row = [](char const* name, QByteArray const& element, char const* fault) {
        QTest::newRow(name) << QString(element) << QString(fault);
    };
    QByteArray const transformed = "<draw:rect" + frame + "draw:transform=";
    char const* const notHeeded = "a draw:transform that is not heeded";
    row("length", "<draw:rect svg:x='%1px' svg:width='9px' svg:height='9px'/>", "x is no length");
    row("movement", transformed + "'translate(%1px 0)'/>", notHeeded);
    row("factor", transformed + "'scale(%1) scale(1e-9)'/>", notHeeded);
    row("angle of a rotation", transformed + "'rotate(%1)'/>", notHeeded);
    row("angle", "<draw:ellipse draw:kind='arc' draw:start-angle='%1'" + frame + "/>",
        "start-angle is no angle");
    row("view box", "<draw:path svg:viewBox='%1 0 9 9' svg:d='M0 0L5 5'" + frame + "/>",
        "viewBox is not four numbers");
}

void TestOdfImport::numbersAreBounded()
{
    QFETCH(QString, element);
    QFETCH(QString, fault);

    for (QString const sign : {"", "-"}) {
        Outcome const greatest = imported(flat(element.arg(sign + "1000000000").toUtf8()));
        QVERIFY(greatest.pictures);
        QCOMPARE(greatest.pictures->size(), std::size_t(1));
        QCOMPARE(greatest.lines, QStringList());
        Outcome const greater = imported(flat(element.arg(sign + "1000000001").toUtf8()));
        QCOMPARE(greater.lines.size(), 1);
        QVERIFY2(greater.lines.first().endsWith(fault), qPrintable(greater.lines.first()));
    }
}

void TestOdfImport::failsInOneLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("line");

    QTest::newRow("unclosed") << "<office:document" + namespaces + ">"
                              << "1:412: Premature end of document.";
    QTest::newRow("undeclared prefix")
        << flat("<other:thing/>") << "1:484: Namespace prefix 'other' not declared";
    QTest::newRow("deep") << flat(
        QByteArray("<draw:g>").repeated(1001) + QByteArray("</draw:g>").repeated(1001))
                          << "1:8446: more than 1000 nested elements";
}

void TestOdfImport::failsInOneLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, line);

    Outcome const outcome = imported(content);
    QVERIFY(!outcome.pictures);
    QCOMPARE(outcome.lines, QStringList(line));
}

void TestOdfImport::refusesTooManyElements()
{
    Outcome const outcome =
        imported(zipped(QByteArray("<draw:line/>").repeated(maximumOdfShapes + 1)));
    QVERIFY(!outcome.pictures);
    QCOMPARE(outcome.lines, QStringList("it draws more than 200000 elements"));
}

void TestOdfImport::everyBeginningIsRefused()
{
    for (QByteArray const& content :
        {flat("<draw:rect" + frame + "/>"), zipped("<draw:rect" + frame + "/>")}) {
        for (int size = 0; size < content.size(); ++size) {
            Outcome const outcome = imported(content.left(size));
            QVERIFY(!outcome.pictures);
            QCOMPARE(outcome.lines.size(), 1);
        }
    }
}

QTEST_MAIN(TestOdfImport)

#include "tst_odfimport.moc"
