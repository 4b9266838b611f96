// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "outlinetesting.h"
#include "segmentkind_p.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace KpgeomTesting;

namespace {

/** A picture of a polygon in a box of this size. */
QByteArray picture(QByteArray const& width, QByteArray const& height, QByteArray const& points)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " + width + ' ' + height
        + "'><polygon points='" + points + "' stroke='black' fill='none'/></svg>";
}

/** A triangle whose right corner stays 10 from the right edge. */
void drawTriangles(Workplace const& place)
{
    place.write("a.svg", picture("400", "200", "0,0 390,0 200,200"));
    place.write("b.svg", picture("150", "300", "0,0 140,0 75,300"));
}

/** The rules of all coordinates of all outlines in a document, an outline a line. */
QStringList rulesIn(QByteArray const& xml)
{
    QStringList outlines;
    QDomDocument const document = OutlineTesting::domDocument(xml);
    QDomNodeList const elements = document.elementsByTagName("Geometry");
    for (int i = 0; i < elements.size(); ++i) {
        KpPathSegList list;
        list.parse(elements.at(i).toElement(), 0);
        QString rules;
        for (KpPathSeg* const seg : qAsConst(list.segs)) {
            SegmentKind::forEachReal(
                *seg, [&rules](KpReal const& real) { rules += QString::number(real.base); });
            rules += ' ';
        }
        outlines << rules.trimmed();
    }
    return outlines;
}

QString const exampleFolder = QStringLiteral(KPGEOMETRY_EXAMPLES);

} // namespace

class TestKpgeomFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { obeyPermissions(); }

    void writesTheRulesOfDrawings();
    void takesBoxesThatAreNamed();
    void takesDocumentsAndCompressedPictures();
    void scalesCoordinatesAndBoxes();
    void tellsWhatOfAPictureIsNotDrawn();
    void namesWhatIsNotDecidedAndTheBoxToDraw();
    void namesWhatNoRuleExpresses();
    void strictWritesNothing();
    void toleranceDecidesWhatIsOff();
    void printsAllAsJson();
    void drawsAReport();
    void namesLinesThatAreTooShort();
    void theToleranceFollowsTheDigits_data();
    void theToleranceFollowsTheDigits();
    void examplesAreLearntFromTheirPictures_data();
    void examplesAreLearntFromTheirPictures();
    void drawingsMayComeFromOtherPrograms_data();
    void drawingsMayComeFromOtherPrograms();
    void reportsBadDrawings_data();
    void reportsBadDrawings();
    void failedOutputIsTold_data();
    void failedOutputIsTold();
    void reportsMisuse_data();
    void reportsMisuse();
};

void TestKpgeomFit::writesTheRulesOfDrawings()
{
    Workplace const place;
    drawTriangles(place);
    Result const result = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out,
        QByteArray("8 of 8 coordinates in 1 outline decided and exact, tolerance 0.06\n"));
    QCOMPARE(place.read("out.xml"), QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>
<Shapes>
 <Shape Name="path 1" Width="400" Height="200">
  <Geometry Closed="1" NoFill="1">
   <MoveTo>
    <X V="0" B="1" P="0"/>
    <Y V="0" B="2" P="0"/>
   </MoveTo>
   <LineTo>
    <X V="390" B="3" P="10"/>
    <Y V="0" B="2" P="0"/>
   </LineTo>
   <LineTo>
    <X V="200" B="1" P="0.5"/>
    <Y V="200" B="2" P="1"/>
   </LineTo>
   <LineTo>
    <X V="0" B="1" P="0"/>
    <Y V="0" B="2" P="0"/>
   </LineTo>
  </Geometry>
 </Shape>
</Shapes>
)"));
}

void TestKpgeomFit::takesBoxesThatAreNamed()
{
    Workplace const place;
    // The pictures are larger than the boxes that the shape was drawn for.
    place.write("a.svg", picture("1000", "1000", "0,0 390,0 200,200"));
    place.write("b@2.svg", picture("1000", "1000", "0,0 140,0 75,300"));
    COMPARE_EXIT(place.run({"fit", "a.svg@400x200", "b@2.svg@150x300", "-o", "out.xml"}), 0);
    QCOMPARE(rulesIn(place.read("out.xml")), QStringList("12 32 12 12"));
}

void TestKpgeomFit::takesDocumentsAndCompressedPictures()
{
    Workplace const place;
    drawTriangles(place);
    COMPARE_EXIT(place.run({"convert", "a.svg", "--scale", "1", "-o", "a.xml"}), 0);
    COMPARE_EXIT(place.run({"fit", "a.xml", "b.svg", "-o", "out.xml"}), 0);
    QCOMPARE(rulesIn(place.read("out.xml")), QStringList("12 32 12 12"));
    Result const piped =
        place.run({"fit", "-", "b.svg", "-o", "-"}, Workplace::Start {place.read("a.svg")});
    COMPARE_EXIT(piped, 0);
    QCOMPARE(rulesIn(piped.out), QStringList("12 32 12 12"));
}

void TestKpgeomFit::scalesCoordinatesAndBoxes()
{
    Workplace const place;
    drawTriangles(place);
    COMPARE_EXIT(place.run({"fit", "a.svg", "b.svg", "-o", "out.xml", "--scale", "2.5"}), 0);
    QByteArray const xml = place.read("out.xml");
    QVERIFY2(xml.contains("Width=\"1000\" Height=\"500\""), xml);
    QVERIFY2(xml.contains("<X V=\"975\" B=\"3\" P=\"25\"/>"), xml);
}

void TestKpgeomFit::tellsWhatOfAPictureIsNotDrawn()
{
    Workplace const place;
    drawTriangles(place);
    // Colours are not learnt, so nothing is said of them; a picture in the picture is a shape less.
    place.write("b.svg",
        place.read("b.svg").replace("</svg>", "<image href='x.png' width='9' height='9'/></svg>"));
    Result const result = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray("b.svg: 1 image: left out\n"));
}

void TestKpgeomFit::namesWhatIsNotDecidedAndTheBoxToDraw()
{
    Workplace const place;
    place.write("a.svg", picture("400", "200", "50,0 400,0 400,200"));
    place.write("b.svg", picture("600", "300", "75,0 600,0 600,300"));
    Result const result = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 3);
    QVERIFY2(
        result.err.contains("out.xml: outline 1 \"path 1\": not decided between height, smaller "
                            "side, width and right edge less smaller side, height is taken: "
                            "segment 3 Y\n"),
        result.err);
    int const at = result.err.indexOf("out.xml: a drawing at 400x600 would decide between ");
    QVERIFY2(at > 0, result.err);
    QVERIFY2(
        result.err.indexOf("between width and smaller side for 4 coordinates", at) > 0, result.err);
    // The box that was proposed decides.
    place.write("c.svg", picture("400", "600", "50,0 400,0 400,600"));
    COMPARE_EXIT(place.run({"fit", "a.svg", "b.svg", "c.svg", "-o", "out.xml"}), 0);
    QCOMPARE(rulesIn(place.read("out.xml")), QStringList("12 12 12 12"));
}

void TestKpgeomFit::namesWhatNoRuleExpresses()
{
    Workplace const place;
    place.write("a.svg", picture("400", "200", "0,0 101,0 200,200"));
    place.write("b.svg", picture("150", "300", "0,0 103,0 75,300"));
    Result const result = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err,
        QByteArray(
            "out.xml: outline 1 \"path 1\", segment 2 (LineTo), X: no rule expresses it; the "
            "nearest, a fixed place, is off by 1\n"));
    QCOMPARE(rulesIn(place.read("out.xml")), QStringList("12 02 12 12"));
}

void TestKpgeomFit::strictWritesNothing()
{
    Workplace const place;
    place.write("a.svg", picture("400", "200", "0,0 101,0 200,200"));
    place.write("b.svg", picture("150", "300", "0,0 103,0 75,300"));
    Result const result = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml", "--strict"});
    COMPARE_EXIT(result, 1);
    QVERIFY2(result.err.contains("is off by 1\n"), result.err);
    QCOMPARE(place.entries(), QStringList({"a.svg", "b.svg"}));
}

void TestKpgeomFit::toleranceDecidesWhatIsOff()
{
    Workplace const place;
    place.write("a.svg", picture("400", "200", "0,0 101,0 200,200"));
    place.write("b.svg", picture("150", "300", "0,0 103,0 75,300"));
    QStringList const fit {"fit", "a.svg", "b.svg", "-o", "out.xml", "--strict", "--tolerance"};
    COMPARE_EXIT(place.run(fit + QStringList("0.9")), 1);
    COMPARE_EXIT(place.run(fit + QStringList("1.1")), 0);
    QCOMPARE(place.entries(), QStringList({"a.svg", "b.svg", "out.xml"}));
}

void TestKpgeomFit::printsAllAsJson()
{
    Workplace const place;
    place.write("a.svg", picture("400", "200", "0,0 101,0 200,200"));
    place.write("b.svg", picture("150", "300", "0,0 103,0 75,300"));
    Result const result = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml", "--json"});
    COMPARE_EXIT(result, 3);
    QJsonObject const json = QJsonDocument::fromJson(result.out).object();
    QCOMPARE(json["coordinates"].toInt(), 8);
    QCOMPARE(json["outlines"].toInt(), 1);
    COMPARE_BITS(json["tolerance"].toDouble(), 0.06);
    QCOMPARE(json["undecided"].toArray().size(), 0);
    QCOMPARE(json["proposals"].toArray().size(), 0);
    QJsonObject const drawing = json["drawings"].toArray().at(1).toObject();
    QCOMPARE(drawing["file"].toString(), QString("b.svg"));
    COMPARE_BITS(drawing["height"].toDouble(), 300.0);
    QJsonArray const inexact = json["inexact"].toArray();
    QCOMPARE(inexact.size(), 1);
    QJsonObject const finding = inexact.first().toObject();
    QCOMPARE(finding["outline"].toInt(), 1);
    QCOMPARE(finding["name"].toString(), QString("path 1"));
    QCOMPARE(finding["segment"].toInt(), 2);
    QCOMPARE(finding["kind"].toString(), QString("LineTo"));
    QCOMPARE(finding["coordinate"].toString(), QString("X"));
    QCOMPARE(finding["rule"].toString(), QString("absolute"));
    COMPARE_BITS(finding["rate"].toDouble(), 102.0);
    COMPARE_BITS(finding["error"].toDouble(), 1.0);
}

void TestKpgeomFit::drawsAReport()
{
    Workplace const place;
    place.write("a.svg", picture("400", "200", "0,0 101,0 200,200"));
    place.write("b.svg", picture("150", "300", "0,0 103,0 75,300"));
    COMPARE_EXIT(
        place.run({"fit", "a.svg", "b.svg", "-o", "out.xml", "--report", "report.png"}), 3);
    QImage const marked = QImage::fromData(place.read("report.png"));
    QVERIFY(!marked.isNull());
    // The red of the marks, at the corner that is not exact, in both boxes.
    auto const countRed = [](QImage const& image) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                QColor const colour = image.pixelColor(x, y);
                count += colour.red() > 180 && colour.green() < 80 && colour.blue() < 90;
            }
        }
        return count;
    };
    place.write("b.svg", picture("150", "300", "0,0 101,0 75,300"));
    COMPARE_EXIT(
        place.run({"fit", "a.svg", "b.svg", "-o", "out.xml", "--report", "report.png"}), 0);
    QImage const exact = QImage::fromData(place.read("report.png"));
    QCOMPARE(countRed(exact), 0);
    QVERIFY(countRed(marked) > 20);
}

void TestKpgeomFit::namesLinesThatAreTooShort()
{
    Workplace const place;
    place.write("a.svg", picture("40", "20", "0,0 0.5,0 40,20"));
    place.write("b.svg", picture("15", "30", "0,0 0.5,0 15,30"));
    Result const small = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml"});
    COMPARE_EXIT(small, 3);
    QVERIFY2(small.err.endsWith("out.xml: outline 1 \"path 1\": in a box of 40 x 20, shorter than "
                                "one unit and not drawn: segment 2; a larger --scale would help\n"),
        small.err);
    Result const large = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml", "--scale", "100"});
    QVERIFY2(!large.err.contains("--scale would"), large.err);
}

void TestKpgeomFit::theToleranceFollowsTheDigits_data()
{
    QTest::addColumn<QByteArray>("points");
    QTest::addColumn<QByteArray>("tolerance");
    QTest::newRow("whole units") << QByteArray("0,0 390,0 200,200") << QByteArray("0.06");
    QTest::newRow("one decimal") << QByteArray("0,0 390,0 200.1,200") << QByteArray("0.06");
    QTest::newRow("two decimals") << QByteArray("0,0 390,0 200.12,200") << QByteArray("0.006");
    QTest::newRow("some decimals fewer")
        << QByteArray("0,0 390.5,0.5 200.123,200") << QByteArray("0.004");
    QTest::newRow("six digits") << QByteArray("0.123456,0 390.123,0 200.123,200")
                                << QByteArray("0.004");
    QTest::newRow("one number of a computation") << QByteArray(
        "0.30000000000000004,0 390.25,0 200.12,200 11.25,11.5 12.25,12.75 13.75,13.21 "
        "14.31,14.27") << QByteArray("0.006");
    QTest::newRow("exponents") << QByteArray("0,0 3.9012e2,0 200,200") << QByteArray("0.006");
}

void TestKpgeomFit::theToleranceFollowsTheDigits()
{
    QFETCH(QByteArray, points);
    QFETCH(QByteArray, tolerance);
    Workplace const place;
    place.write("a.svg", picture("400", "200", points));
    place.write("b.svg", picture("150", "300", points));
    Result const result = place.run({"fit", "a.svg", "b.svg", "-o", "out.xml"});
    QVERIFY2(result.out.endsWith(", tolerance " + tolerance + '\n'), result.out + result.err);
}

void TestKpgeomFit::examplesAreLearntFromTheirPictures_data()
{
    QTest::addColumn<QString>("name");
    for (char const* const name :
        {"arrow", "callout", "cylinder", "gauge", "page", "pill", "rounded-box"})
        QTest::newRow(name) << QString(name);
}

void TestKpgeomFit::examplesAreLearntFromTheirPictures()
{
    QFETCH(QString, name);
    Workplace const place;
    QString const example = exampleFolder + '/' + name + ".xml";
    for (char const* const box : {"240x160", "150x310"}) {
        COMPARE_EXIT(place.run({"render", example, "-o", QString(box) + ".svg", "--size", box,
                         "--scale", "1", "--margin", "0", "--background", "none"}),
            0);
    }
    Result const result = place.run({"fit", "240x160.svg", "150x310.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    // The same shape in boxes that nobody drew.
    for (char const* const box : {"500x100", "100x500", "320x320"}) {
        QStringList bounds;
        for (QString const& document : {example, QString("out.xml")}) {
            COMPARE_EXIT(place.run({"render", document, "-o", "drawn.png", "--size", box, "--scale",
                             "1", "--margin", "0"}),
                0);
            QImage const image = QImage::fromData(place.read("drawn.png"));
            QVERIFY(!image.isNull());
            bounds << QString::number(image.width());
            place.write(document == example ? "drawn" : "learnt", place.read("drawn.png"));
        }
        QImage const drawn = QImage::fromData(place.read("drawn"));
        QImage const learnt = QImage::fromData(place.read("learnt"));
        QCOMPARE(learnt.size(), drawn.size());
        int differing = 0;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x)
                differing += qAbs(qGray(drawn.pixel(x, y)) - qGray(learnt.pixel(x, y))) > 16;
        }
        QCOMPARE(differing, 0);
    }
}

void TestKpgeomFit::drawingsMayComeFromOtherPrograms_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QString>("name");
    QStringList const scour {"scour", "-q", "IN", "OUT"};
    QStringList const renderer {"rsvg-convert", "-f", "svg", "IN", "-o", "OUT"};
    for (char const* const name : {"callout", "gauge", "pill"})
        QTest::addRow("%s through scour", name) << scour << QString(name);
    for (char const* const name :
        {"arrow", "callout", "cylinder", "gauge", "page", "pill", "rounded-box"})
        QTest::addRow("%s through rsvg-convert", name) << renderer << QString(name);
}

void TestKpgeomFit::drawingsMayComeFromOtherPrograms()
{
    QFETCH(QStringList, command);
    QFETCH(QString, name);
    QVERIFY2(!QStandardPaths::findExecutable(command.first()).isEmpty(),
        qPrintable(command.first() + " is not installed"));
    Workplace const place;
    QStringList drawings;
    for (char const* const box : {"240x160", "150x310"}) {
        QStringList const files {QString(box) + ".svg", QString(box) + "-saved.svg"};
        COMPARE_EXIT(place.run({"render", exampleFolder + '/' + name + ".xml", "-o", files.first(),
                         "--size", box, "--scale", "1", "--margin", "0", "--background", "none"}),
            0);
        QStringList arguments = command.mid(1);
        arguments.replaceInStrings("IN", place.path(files.first()));
        arguments.replaceInStrings("OUT", place.path(files.last()));
        QCOMPARE(QProcess::execute(command.first(), arguments), 0);
        drawings << files.last();
    }
    Result const result = place.run(QStringList("fit") + drawings + QStringList({"-o", "out.xml"}));
    COMPARE_EXIT(result, 0);
    Result const direct = place.run({"fit", "240x160.svg", "150x310.svg", "-o", "direct.xml"});
    COMPARE_EXIT(direct, 0);
    QCOMPARE(rulesIn(place.read("out.xml")), rulesIn(place.read("direct.xml")));
}

void TestKpgeomFit::reportsBadDrawings_data()
{
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QString>("operand");
    QTest::addColumn<QByteArray>("fault");
    QByteArray const triangle = picture("150", "300", "0,0 140,0 75,300");
    QTest::newRow("another shape")
        << picture("150", "300", "0,0 140,0 75,300 10,10") << "b.svg"
        << QByteArray("b.svg: drawing 2, path 1: 4 lines where drawing 1 "
                      "has 3");
    QTest::newRow("nothing drawn")
        << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 150 300'/>") << "b.svg"
        << QByteArray("b.svg: drawing 2: nothing is drawn in it");
    QTest::newRow("one box twice")
        << picture("400", "200", "0,0 390,0 200,200") << "b.svg"
        << QByteArray(
               "b.svg: drawing 2: its box of 400 x 200 is that of drawing 1: two drawings of "
               "one size tell nothing");
    QTest::newRow("a box of size 0")
        << triangle << "b.svg@0x300"
        << QByteArray("b.svg: drawing 2: a box of 0 x 300 is none to draw for: both sides must be "
                      "above 0 and at most a million units");
    QTest::newRow("a box of size 1e9")
        << triangle << "b.svg@150x1e9"
        << QByteArray("b.svg: drawing 2: a box of 150 x 1e+09 is none to draw for: both sides must "
                      "be above 0 and at most a million units");
    QTest::newRow("a box that is no number")
        << triangle << "b.svg@nanx300"
        << QByteArray(
               "b.svg: drawing 2: a box of nan x 300 is none to draw for: both sides must be "
               "above 0 and at most a million units");
    QTest::newRow("a document without a box")
        << QByteArray("<D>" + boxGeometry() + "</D>") << "b.svg"
        << QByteArray(
               "b.svg: it does not tell the box that it was drawn for: name it, as FILE@WxH");
    QTest::newRow("a document of several boxes")
        << QByteArray("<D><S Width='9' Height='9'>" + boxGeometry() + "</S><S Width='8' Height='9'>"
               + boxGeometry() + "</S></D>")
        << "b.svg"
        << QByteArray(
               "b.svg: its shapes have boxes of their own: name the one that they were drawn "
               "for, as FILE@WxH");
    QTest::newRow("a coordinate that is no number")
        << QByteArray(
               "<D><S Width='9' Height='9'><Geometry Closed='1'><LineTo><X V='nan'/><Y V='1'/>"
               "</LineTo></Geometry></S></D>")
        << "b.svg" << QByteArray("b.svg: drawing 2: a coordinate is no number, or too large");
    QTest::newRow("no XML") << QByteArray("hello") << "b.svg"
                            << QByteArray("b.svg:1:2: Start tag expected.");
    QTest::newRow("no such file") << triangle << "c.svg"
                                  << QByteArray("c.svg: No such file or directory");
}

void TestKpgeomFit::reportsBadDrawings()
{
    QFETCH(QByteArray, second);
    QFETCH(QString, operand);
    QFETCH(QByteArray, fault);
    Workplace const place;
    drawTriangles(place);
    place.write("b.svg", second);
    COMPARE_FAILURE(place.run({"fit", "a.svg", operand, "-o", "out.xml"}), 1, fault);
    QCOMPARE(place.entries(), QStringList({"a.svg", "b.svg"}));
}

void TestKpgeomFit::failedOutputIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("standardOutput");
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("document") << QStringList({"-o", "none/out.xml"}) << ""
                              << QByteArray("none/out.xml: No such file or directory");
    QTest::newRow("report") << QStringList({"-o", "out.xml", "--report", "none/out.png"}) << ""
                            << QByteArray("none/out.png: No such file or directory");
    QTest::newRow("JSON") << QStringList({"-o", "out.xml", "--json"}) << "/dev/full"
                          << QByteArray("<stdout>: cannot be written");
}

void TestKpgeomFit::failedOutputIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, standardOutput);
    QFETCH(QByteArray, fault);
    Workplace const place;
    drawTriangles(place);
    Workplace::Start start;
    start.outputFile = standardOutput;
    COMPARE_FAILURE(place.run(QStringList({"fit", "a.svg", "b.svg"}) + arguments, start), 1, fault);
    QCOMPARE(place.entries(), QStringList({"a.svg", "b.svg"}));
}

void TestKpgeomFit::reportsMisuse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("one drawing") << QStringList({"a.svg", "-o", "out.xml"})
                                 << QByteArray("at least two drawings are needed");
    QTest::newRow("no output") << QStringList({"a.svg", "b.svg"})
                               << QByteArray("no output file given (-o)");
    QTest::newRow("a negative tolerance")
        << QStringList({"a.svg", "b.svg", "-o", "out.xml", "--tolerance", "-1"})
        << QByteArray("--tolerance takes a number from 0 to 100000");
    QTest::newRow("a tolerance that is no number")
        << QStringList({"a.svg", "b.svg", "-o", "out.xml", "--tolerance", "nan"})
        << QByteArray("--tolerance takes a number from 0 to 100000");
    QTest::newRow("a scale of 0") << QStringList({"a.svg", "b.svg", "-o", "out.xml", "--scale",
        "0"}) << QByteArray("--scale takes a number greater than 0 and at most 1000000");
    QTest::newRow("a report of no known format")
        << QStringList({"a.svg", "b.svg", "-o", "out.xml", "--report", "report.txt"})
        << QByteArray("--report takes a file named .svg, .png or .pdf");
    QTest::newRow("a report in the place of the document")
        << QStringList({"a.svg", "b.svg", "-o", "out.svg", "--report", "out.svg"})
        << QByteArray("--report and -o name the same file");
    QTest::newRow("both on standard output")
        << QStringList({"a.svg", "b.svg", "-o", "-", "--json"})
        << QByteArray("--json and -o - both want standard output");
}

void TestKpgeomFit::reportsMisuse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, fault);
    Workplace const place;
    drawTriangles(place);
    COMPARE_FAILURE(place.run(QStringList("fit") + arguments), 2,
        "kpgeom fit: " + fault + " (see kpgeom fit --help)");
}

QTEST_MAIN(TestKpgeomFit)

#include "tst_kpgeom_fit.moc"
