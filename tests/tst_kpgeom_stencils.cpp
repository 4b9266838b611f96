// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "ziptesting.h"

using namespace KpgeomTesting;

/** `svg`, and what `convert` makes of path data and of the stencils of other programs. */
class TestKpgeomStencils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void svgPrintsALineAnOutline();
    void svgTakesItsOptions_data();
    void svgTakesItsOptions();
    void svgWritesAFile();
    void svgFails_data();
    void svgFails();
    void convertTakesPathData();
    void convertReadsPathData();
    void convertFailsOnPathData_data();
    void convertFailsOnPathData();
    void pathDataIsReadAsWritten_data();
    void pathDataIsReadAsWritten();
    void convertKnowsStencilsByTheirContent_data();
    void convertKnowsStencilsByTheirContent();
    void convertFailsOnStencils_data();
    void convertFailsOnStencils();
};

namespace {

/** A dot of radius 5 at (10, 20). */
QByteArray dotGeometry()
{
    return "<Geometry Closed=\"0\"><Ellipse><X V=\"10\"/><Y V=\"20\"/><A V=\"5\"/><B V=\"5\"/>"
           "</Ellipse></Geometry>";
}

QByteArray diaShape(QByteArray const& elements)
{
    return "<shape xmlns='http://www.daa.com.au/~james/dia-shape-ns' "
           "xmlns:svg='http://www.w3.org/2000/svg'><name>Thing</name><svg:svg>"
        + elements + "</svg:svg></shape>";
}

QByteArray flatDrawing(QByteArray const& elements)
{
    return "<o:document xmlns:o='urn:oasis:names:tc:opendocument:xmlns:office:1.0' "
           "xmlns:d='urn:oasis:names:tc:opendocument:xmlns:drawing:1.0' "
           "xmlns:s='urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0'><o:body><o:drawing>"
           "<d:page>"
        + elements + "</d:page></o:drawing></o:body></o:document>";
}

/** A box and a dot. */
QByteArray twoOutlines()
{
    return "<D><S Name=\"a&#9;box\">" + boxGeometry() + "</S>" + dotGeometry() + "</D>";
}

} // namespace

void TestKpgeomStencils::svgPrintsALineAnOutline()
{
    Workplace const place;
    place.write("a.xml", twoOutlines());
    place.write("b.xml", "<D><Geometry/></D>");
    Result const result = place.run({"svg", "a.xml", "b.xml", "-"}, {dotGeometry()});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out,
        QByteArray("M0 0 L100 0 L100 60 L0 60 Z\n"
                   "M15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z\n"
                   "\n"
                   "M15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z\n"));
}

void TestKpgeomStencils::svgTakesItsOptions_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("lines");

    QTest::newRow("names") << QStringList {"--names"}
                           << QByteArray("a box\tM0 0 L100 0 L100 60 L0 60 Z\n"
                                         "#2\tM15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z\n");
    QTest::newRow("index") << QStringList {"--index", "2"}
                           << QByteArray("M15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z\n");
    QTest::newRow("size") << QStringList {"--size", "50.5x20", "--index", "1"}
                          << QByteArray("M0 0 L50.5 0 L50.5 20 L0 20 Z\n");
    QTest::newRow("relative") << QStringList {"--relative", "--index", "1"}
                              << QByteArray("M0 0 l100 0 l0 60 l-100 0 Z\n");
    QTest::newRow("precision") << QStringList {"--precision", "0", "--size", "50.5x20", "--index",
        "1"} << QByteArray("M0 0 L51 0 L51 20 L0 20 Z\n");
}

void TestKpgeomStencils::svgTakesItsOptions()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, lines);

    Workplace const place;
    place.write("a.xml", twoOutlines());
    Result const result = place.run(QStringList {"svg", "a.xml"} + options);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, lines);
}

void TestKpgeomStencils::svgWritesAFile()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    Result const result = place.run({"svg", "a.xml", "-o", "a.txt"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(place.read("a.txt"), QByteArray("M0 0 L100 0 L100 60 L0 60 Z\n"));
}

void TestKpgeomStencils::svgFails_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("line");

    auto const row = [](char const* name, QByteArray const& document, QByteArray const& line) {
        QTest::newRow(name) << document << line;
    };
    row("empty", "", "a.xml:1:1: Premature end of document.");
    row("no outline", "<D/>", "a.xml: no outline to draw");
    row("SVG picture", "<svg/>", "a.xml: an SVG picture: kpgeom convert makes a document of it");
    row("index", boxGeometry(), "a.xml: there is no outline 2 among its 1");
    row("NaN", "<D>" + boxGeometry() + dotGeometry().replace("20", "nan") + "</D>",
        "a.xml: a coordinate of outline 2 is infinite, NaN or too large");
    row("infinite", "<D>" + boxGeometry() + dotGeometry().replace("20", "-inf") + "</D>",
        "a.xml: a coordinate of outline 2 is infinite, NaN or too large");
}

void TestKpgeomStencils::svgFails()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, line);

    Workplace const place;
    place.write("a.xml", document);
    place.write("ok.xml", "<D>" + boxGeometry() + boxGeometry() + "</D>");
    place.write("out.txt", "as before");
    COMPARE_FAILURE(
        place.run({"svg", "ok.xml", "a.xml", "--index", "1", "--index", "2", "-o", "out.txt"}), 1,
        line);
    QCOMPARE(place.read("out.txt"), QByteArray("as before"));
}

void TestKpgeomStencils::convertTakesPathData()
{
    Workplace const place;
    Result const result = place.run({"convert", "--path", "M0 0h10v20z", "-o", "a.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(place.read("a.xml"), QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>
<Shapes>
 <Shape Name="path 1" Width="10" Height="20">
  <Geometry Closed="1">
   <MoveTo>
    <X V="0" B="1" P="0"/>
    <Y V="0" B="2" P="0"/>
   </MoveTo>
   <LineTo>
    <X V="10" B="1" P="1"/>
    <Y V="0" B="2" P="0"/>
   </LineTo>
   <LineTo>
    <X V="10" B="1" P="1"/>
    <Y V="20" B="2" P="1"/>
   </LineTo>
  </Geometry>
 </Shape>
</Shapes>
)"));
}

void TestKpgeomStencils::convertReadsPathData()
{
    Workplace const place;
    Result const result =
        place.run({"convert", "--path", "-", "--size", "40x20", "--scale", "2.5", "-o", "a.xml"},
            {"M0 0\nh10v20z\n"});
    COMPARE_EXIT(result, 0);
    QVERIFY(place.read("a.xml").contains("Width=\"100\" Height=\"50\""));
    QCOMPARE(place.run({"svg", "a.xml"}).out, QByteArray("M0 0 L25 0 L25 50 Z\n"));
    QCOMPARE(
        place.run({"svg", "a.xml", "--size", "200x50"}).out, QByteArray("M0 0 L50 0 L50 50 Z\n"));
}

void TestKpgeomStencils::convertFailsOnPathData_data()
{
    QTest::addColumn<QString>("data");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("line");

    auto const row = [](char const* name, char const* data, char const* input, char const* line) {
        QTest::newRow(name) << QString(data) << QByteArray(input) << QByteArray(line);
    };
    row("a fault", "M0 0L5", "", "--path:1:7: a number is missing at the end");
    row("a fault of standard input", "-", "M0 0\nL5 x",
        "<stdin>:2:4: a number is expected, not 'x'");
    row("an escape sequence", "M0 0\033[31m", "",
        "--path:1:5: a command is expected, not '\xef\xbf\xbd'");
    row("nothing", "", "", "--path: the path draws nothing");
    row("no standard input", "-", "", "<stdin>: the path draws nothing");
    row("a move", "M5 5", "", "--path: the path draws nothing");
    row("too large", "M0 0L1e7 1", "",
        "--path: the picture would be 1e+07 by 1 units large, more than 1000000");
    row("far too large", "M0 0L1 1e120", "", "--path: a coordinate is too large");
    row("left of the origin", "M-9 0L-5 5", "",
        "--path: it lies left of or above its origin, so its box must be given");
}

void TestKpgeomStencils::convertFailsOnPathData()
{
    QFETCH(QString, data);
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, line);

    Workplace const place;
    COMPARE_FAILURE(place.run({"convert", "--path", data, "-o", "a.xml"}, {input}), 1, line);
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomStencils::pathDataIsReadAsWritten_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("a box") << QByteArray("M0 0 L100 0 L100 60 L0 60 Z");
    QTest::newRow("a ring") << QByteArray(
        "M15 20 A5 5 0 0 1 5 20 A5 5 0 0 1 15 20 Z M2 1 L3 3 L2 1");
    QTest::newRow("a curve") << QByteArray("M0.1 0 C-5 5 10 33.3333 20 0.001 L7 7");
}

void TestKpgeomStencils::pathDataIsReadAsWritten()
{
    QFETCH(QByteArray, data);

    Workplace const place;
    for (QString const& form : {QString("--names"), QString("--relative")}) {
        COMPARE_EXIT(place.run({"convert", "--path", data, "-o", "a.xml"}), 0);
        QByteArray const again = place.run({"svg", "a.xml", form}).out;
        QByteArray const path = again.mid(again.indexOf('M'));
        COMPARE_EXIT(place.run({"convert", "--path", "-", "-o", "b.xml"}, {path}), 0);
        QCOMPARE(place.read("b.xml"), place.read("a.xml"));
        QCOMPARE(place.run({"svg", "b.xml"}).out, data + '\n');
    }
}

void TestKpgeomStencils::convertKnowsStencilsByTheirContent_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("lines");

    QByteArray const drawing = flatDrawing(
        "<d:rect d:name='Box' s:width='2cm' s:height='1cm'/>"
        "<d:g><d:line s:x1='1cm' s:x2='5cm'/><d:line d:name='Lower' s:x1='1cm' s:y1='2cm' "
        "s:x2='5cm' s:y2='2cm'/></d:g>");
    QByteArray const drawn = "Box\tM0 0 L10000 0 L10000 5000 L0 5000 L0 0 Z\n"
                             "line 2\tM0 0 L10000 0\n"
                             "Lower\tM0 5000 L10000 5000\n";
    QTest::newRow("Dia") << diaShape("<svg:line x1='-1' y1='0' x2='1' y2='1'/>")
                         << QByteArray("Thing\tM0 0 L10000 5000\n");
    QTest::newRow("flat OpenDocument") << drawing << drawn;
    QTest::newRow("OpenDocument") << ZipTesting::zipOf({{"content.xml", drawing}}) << drawn;
}

void TestKpgeomStencils::convertKnowsStencilsByTheirContent()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, lines);

    Workplace const place;
    place.write("in.dat", content);
    for (QString const& operand : {QString("in.dat"), QString("-")}) {
        Result const result = place.run({"convert", operand, "-o", "out.xml"}, {content});
        COMPARE_EXIT(result, 0);
        QCOMPARE(result.err, QByteArray());
        QCOMPARE(place.run({"svg", "--names", "out.xml"}).out, lines);
        QCOMPARE(place.run({"check", "out.xml"}).err, QByteArray());
    }
}

void TestKpgeomStencils::convertFailsOnStencils_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("an empty shape")
        << diaShape("") << QByteArray("in.dat: the shape draws nothing");
    QTest::newRow("an empty page")
        << flatDrawing("") << QByteArray("in.dat: nothing in it becomes an outline");
    QTest::newRow("a damaged zip file")
        << ZipTesting::zipOf({{"content.xml", flatDrawing("")}}).chopped(1)
        << QByteArray("in.dat: no OpenDocument drawing: the zip file is damaged or incomplete");
    QTest::newRow("too large") << flatDrawing("<d:rect s:width='1e9px' s:height='1px'/>")
                               << QByteArray(
                                      "in.dat: rect 1: the picture would be 3e+09 by 3 units "
                                      "large, more than 1000000");
}

void TestKpgeomStencils::convertFailsOnStencils()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, line);

    Workplace const place;
    place.write("in.dat", content);
    COMPARE_FAILURE(place.run({"convert", "in.dat", "--scale", "3", "-o", "out.xml"}), 1, line);
    QCOMPARE(place.entries(), QStringList("in.dat"));
}

QTEST_GUILESS_MAIN(TestKpgeomStencils)

#include "tst_kpgeom_stencils.moc"
