// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QXmlStreamReader>

using namespace KpgeomTesting;

/** `kpgeom bind`: what becomes of documents and pictures. */
class TestKpgeomBind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void documentKeepsAllButItsRules();
    void cornersCanGrow();
    void failedOutputIsTold();
    void sizeIsTheBoxOfAllOutlines();
    void eachOutlineHasItsOwnBox();
    void pictureBecomesADocument();
    void scaleEnlargesThePictureAndItsMargins();
    void compressedPictureIsRead();
    void inexactCoordinatesAreTold();
    void inexactRadiiAreTold();
    void inexactPlacesOfAPictureAreTold();
    void numbersThatCannotBeBoundAreTold();
    void linesThatAreNotDrawnAreTold();
    void boundDrawingStretches();
    void standardInputAndOutput();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void marginsThatDoNotFitAreTold();
    void badInputIsTold_data();
    void badInputIsTold();
};

namespace {

/** A document of one outline, a line from (5, 8) to (100, 55), within an element of ours. */
QByteArray document(QByteArray const& shapeAttributes,
    QByteArray const& lineTo = "<X V=\"100\" B=\"1\" P=\"0.5\"/><Y V=\"55\" B=\"2\" P=\"0.55\"/>")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Shapes>\n<Shape" + shapeAttributes
        + ">\n<Geometry Closed=\"0\">\n<MoveTo><X V=\"5\" B=\"1\" P=\"0.025\"/>"
          "<Y V=\"8.00\" B=\"2\" P=\"0.08\"/></MoveTo>\n<LineTo>"
        + lineTo + "</LineTo>\n</Geometry>\n</Shape>\n</Shapes>\n";
}

/** "X 0", "Y 4 10": the letter, rule and parameter of every coordinate, without its value. */
QStringList rules(QByteArray const& xml)
{
    QStringList all;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement() || reader.name().size() != 1)
            continue;
        QString rule = reader.name() + ' ' + reader.attributes().value("B");
        if (reader.attributes().value("B") != QLatin1String("0"))
            rule += ' ' + reader.attributes().value("P");
        all << rule;
    }
    if (reader.hasError())
        qFatal("no XML: %s", xml.constData());
    return all;
}

/** A picture of 200 by 100 units with a triangle. */
QByteArray picture(QByteArray const& points = "10,5 195,5 100,90")
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"200\" height=\"100\""
           " viewBox=\"0 0 200 100\"><polygon points=\""
        + points + "\"/></svg>";
}

} // namespace

void TestKpgeomBind::documentKeepsAllButItsRules()
{
    Workplace place;
    place.write("a.xml", R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- a comment -->
<Drawing colour="red">
  <Plate Width="200" Height="100" Note="&lt;1&gt;">
    <Geometry Closed="1" NoLine="1">
      <MoveTo><X V="5.0" B="1" P="0.025"/><Y V="8" B="2" P="0.08"/><Hint/></MoveTo>
      <LineTo><X V="195"/><Y V="99"/></LineTo>
    </Geometry>
  </Plate>
</Drawing>
)");
    COMPARE_EXIT(place.run({"bind", "a.xml", "--slices", "20,10,20,10", "-o", "b.xml"}), 0);
    QCOMPARE(place.read("b.xml"), QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- a comment -->
<Drawing colour="red">
  <Plate Width="200" Height="100" Note="&lt;1&gt;">
    <Geometry Closed="1" NoLine="1">
      <MoveTo><X V="5.0" B="0" P="0"/><Y V="8" B="0" P="0"/><Hint/></MoveTo>
      <LineTo><X V="195" B="3" P="5"/><Y V="99" B="4" P="1"/></LineTo>
    </Geometry>
  </Plate>
</Drawing>
)"));
}

void TestKpgeomBind::cornersCanGrow()
{
    Workplace place;
    place.write("a.xml", document(" Width=\"200\" Height=\"100\"", "<X V=\"195\"/><Y V=\"98\"/>"));
    auto const result =
        place.run({"bind", "a.xml", "--slices", "20,10,20,10", "--keep-corners", "-o", "-"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(rules(result.out), QStringList({"X 5 0.05", "Y 5 0.08", "X 6 0.05", "Y 7 0.02"}));
}

void TestKpgeomBind::failedOutputIsTold()
{
    Workplace place;
    place.write("a.xml", document(" Width=\"200\" Height=\"100\"", "<X V=\"195\"/><Y V=\"98\"/>"));
    place.write("a.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' width='200' height='100'>"
        "<path d='M5 5H195V98Z'/></svg>");
    for (QString const& input : {QString("a.xml"), QString("a.svg")}) {
        QStringList const bind {"bind", input, "--slices", "20,10,20,10", "-o"};
        COMPARE_FAILURE(place.run(bind + QStringList("none/b.xml")), 1,
            "none/b.xml: No such file or directory");
        COMPARE_FAILURE(
            place.run(bind + QStringList("/dev/full")), 1, "/dev/full: No space left on device");
    }
    QCOMPARE(place.entries(), QStringList({"a.svg", "a.xml"}));
}

void TestKpgeomBind::sizeIsTheBoxOfAllOutlines()
{
    Workplace place;
    place.write("a.xml", document(" Width=\"50\" Height=\"50\"", "<X V=\"195\"/><Y V=\"98\"/>"));
    auto const result =
        place.run({"bind", "a.xml", "--slices", "20,10,20,10", "--size", "210x100", "-o", "-"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(rules(result.out), QStringList({"X 0", "Y 0", "X 3 15", "Y 4 2"}));
    QVERIFY(result.out.contains("Width=\"50\""));
}

void TestKpgeomBind::eachOutlineHasItsOwnBox()
{
    Workplace place;
    QByteArray const box = boxGeometry();
    place.write("a.xml",
        "<Shapes><Shape Width=\"100\" Height=\"60\">" + box
            + "</Shape><Shape Width=\"110\" Height=\"70\">" + box + "</Shape></Shapes>");
    auto const result = place.run({"bind", "a.xml", "--slices", "20,10,20,10", "-o", "-"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(rules(result.out),
        QStringList({"X 0", "Y 0", "X 3 0", "Y 0", "X 3 0", "Y 4 0", "X 0", "Y 4 0", //
            "X 0", "Y 0", "X 3 10", "Y 0", "X 3 10", "Y 4 10", "X 0", "Y 4 10"}));
}

void TestKpgeomBind::pictureBecomesADocument()
{
    Workplace place;
    place.write("a.svg", picture());
    auto const result = place.run({"bind", "a.svg", "--slices", "20,10,20,10", "-o", "-"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray(R"(<?xml version="1.0" encoding="UTF-8"?>
<Shapes>
 <Shape Name="path 1" Width="200" Height="100">
  <Geometry Closed="1" NoLine="1">
   <MoveTo>
    <X V="10" B="0"/>
    <Y V="5" B="0"/>
   </MoveTo>
   <LineTo>
    <X V="195" B="3" P="5"/>
    <Y V="5" B="0"/>
   </LineTo>
   <LineTo>
    <X V="100" B="1" P="0.5"/>
    <Y V="90" B="4" P="10"/>
   </LineTo>
   <LineTo>
    <X V="10" B="0"/>
    <Y V="5" B="0"/>
   </LineTo>
  </Geometry>
 </Shape>
</Shapes>
)"));
}

void TestKpgeomBind::scaleEnlargesThePictureAndItsMargins()
{
    Workplace place;
    place.write("a.svg", picture());
    auto const result =
        place.run({"bind", "a.svg", "--slices", "20,10,20,10", "--scale", "10", "-o", "-"});
    COMPARE_EXIT(result, 0);
    QVERIFY(result.out.contains("Width=\"2000\" Height=\"1000\""));
    QVERIFY(result.out.contains("<X V=\"1950\" B=\"3\" P=\"50\"/>"));
    QCOMPARE(rules(result.out),
        QStringList({"X 0", "Y 0", "X 3 50", "Y 0", "X 1 0.5", "Y 4 100", "X 0", "Y 0"}));
}

void TestKpgeomBind::compressedPictureIsRead()
{
    Workplace place;
    place.write("a.svg", picture());
    QProcess gzip;
    gzip.setWorkingDirectory(place.path());
    gzip.start("gzip", {"a.svg"});
    QVERIFY(gzip.waitForFinished() && gzip.exitCode() == 0);
    auto const result = place.run({"bind", "a.svg.gz", "--slices", "20,10,20,10", "-o", "-"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(rules(result.out),
        QStringList({"X 0", "Y 0", "X 3 5", "Y 0", "X 1 0.5", "Y 4 10", "X 0", "Y 0"}));
}

void TestKpgeomBind::inexactCoordinatesAreTold()
{
    Workplace place;
    place.write("a.xml", document(" Width=\"200\" Height=\"100\"", "<X V=\"60\"/><Y V=\"70\"/>"));
    auto const result = place.run({"bind", "a.xml", "--slices", "20,10,20,10", "-o", "b.xml"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err,
        QByteArray("a.xml:6:8: outline 1, segment 2, X: no rule expresses it; width is taken, "
                   "off by 10 in a box of 400 x 200\n"
                   "a.xml:6:8: outline 1, segment 2, Y: no rule expresses it; height is taken, "
                   "off by 5 in a box of 400 x 200\n"));
    QCOMPARE(rules(place.read("b.xml")), QStringList({"X 0", "Y 0", "X 1 0.3", "Y 2 0.7"}));
}

void TestKpgeomBind::inexactRadiiAreTold()
{
    Workplace place;
    place.write("a.xml",
        "<Shapes><Shape Width=\"200\" Height=\"100\"><Geometry Closed=\"1\"><Ellipse>"
        "<X V=\"10\"/><Y V=\"50\"/><A V=\"11\"/><B V=\"50\"/>"
        "</Ellipse></Geometry></Shape></Shapes>");
    auto const result = place.run({"bind", "a.xml", "--slices", "20,10,20,10", "-o", "b.xml"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err,
        QByteArray("a.xml:1:70: outline 1, segment 1, A: no rule expresses it; a fixed place is "
                   "taken, off by 1.25 in a box of 400 x 200\n"));
    QCOMPARE(rules(place.read("b.xml")), QStringList({"X 0", "Y 2 0.5", "A 0", "B 2 0.5"}));
}

void TestKpgeomBind::inexactPlacesOfAPictureAreTold()
{
    Workplace place;
    place.write("a.svg", picture("10,5 195,5 60,90"));
    auto const result =
        place.run({"bind", "a.svg", "--slices", "20,10,20,10", "--keep-corners", "-o", "b.xml"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err,
        QByteArray("a.svg: outline 1, segment 3, X: no rule expresses it; width is taken, off by "
                   "10 in a box of 400 x 100\n"));
    QCOMPARE(rules(place.read("b.xml")),
        QStringList({"X 5 0.1", "Y 5 0.05", "X 6 0.05", "Y 5 0.05", "X 1 0.3", "Y 7 0.1", "X 5 0.1",
            "Y 5 0.05"}));
}

void TestKpgeomBind::numbersThatCannotBeBoundAreTold()
{
    Workplace place;
    place.write("a.xml",
        document(" Width=\"200\" Height=\"100\"",
            "<X V=\"nan\" B=\"6\" P=\"2\"/><Y V=\"inf\" B=\"2\" P=\"1\"/>"));
    auto const result = place.run({"bind", "a.xml", "--slices", "20,10,20,10", "-o", "b.xml"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err,
        QByteArray("a.xml:6:8: outline 1, segment 2, X: cannot be bound and is left as it is\n"
                   "a.xml:6:8: outline 1, segment 2, Y: cannot be bound and is left as it is\n"));
    QCOMPARE(rules(place.read("b.xml")), QStringList({"X 0", "Y 0", "X 6 2", "Y 2 1"}));
}

void TestKpgeomBind::linesThatAreNotDrawnAreTold()
{
    Workplace place;
    place.write("a.xml", document(" Width=\"200\" Height=\"100\"", "<X V=\"5.5\"/><Y V=\"8.5\"/>"));
    auto const ofDocument = place.run({"bind", "a.xml", "--slices", "20,10,20,10", "-o", "b.xml"});
    COMPARE_EXIT(ofDocument, 0);
    QCOMPARE(ofDocument.err,
        QByteArray("a.xml: in a box of 200 x 100, 1 line is shorter than one unit and not "
                   "drawn\n"));
    place.write("a.svg", picture("10,5 10.5,5 100,90"));
    auto const ofPicture = place.run({"bind", "a.svg", "--slices", "20,10,20,10", "-o", "b.xml"});
    COMPARE_EXIT(ofPicture, 0);
    QVERIFY2(ofPicture.err.contains("1 line"), ofPicture.err);
}

/** The whole way: bound, resized, the corners are where they should be. */
void TestKpgeomBind::boundDrawingStretches()
{
    Workplace place;
    place.write("a.svg", picture());
    COMPARE_EXIT(place.run({"bind", "a.svg", "--slices", "20,10,20,10", "-o", "b.xml"}), 0);
    COMPARE_EXIT(
        place.run({"resize", "b.xml", "--from", "200x100", "--to", "500x300", "-o", "c.xml"}), 0);
    QByteArray const resized = place.read("c.xml");
    for (char const* const coordinate :
        {"<X V=\"10\" B=\"0\"/>", "<Y V=\"5\" B=\"0\"/>", "<X V=\"495\" B=\"3\" P=\"5\"/>",
            "<X V=\"250\" B=\"1\" P=\"0.5\"/>", "<Y V=\"290\" B=\"4\" P=\"10\"/>"})
        QVERIFY2(resized.contains(coordinate), resized);
}

void TestKpgeomBind::standardInputAndOutput()
{
    Workplace place;
    Workplace::Start start;
    start.input = document(" Width=\"200\" Height=\"100\"", "<X V=\"60\"/><Y V=\"5\"/>");
    auto const result = place.run({"bind", "-", "--slices", "20,10,20,10", "-o", "-"}, start);
    COMPARE_EXIT(result, 3);
    QVERIFY2(result.err.startsWith("<stdin>:6:8: outline 1, segment 2, X: "), result.err);
    QCOMPARE(rules(result.out), QStringList({"X 0", "Y 0", "X 1 0.3", "Y 0"}));
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomBind::wrongUsageIsTold_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("fault");
    auto const row = [](QByteArray const& arguments, QByteArray const& fault) {
        QTest::newRow(arguments.constData()) << QString(arguments) << fault;
    };
    for (QByteArray const slices : {"20", "1,2,3", "1,2,3,4,5", "1,2,3,-4", "nan,0,0,0",
             "0,inf,0,0", "a,b,c,d", "1,,2,3", "1e7,0,0,0", ","}) {
        row("a.xml -o b.xml --slices " + slices,
            "--slices takes four margins from 0, like 20,10,20,10, not '" + slices + "'");
    }
    row("a.xml -o b.xml", "--slices takes four margins from 0, like 20,10,20,10, not ''");
    for (QByteArray const size : {"0x10", "10x0", "-5x10", "1e7x10", "nanx10", "10"}) {
        row("a.xml -o b.xml --slices 1,1,1,1 --size " + size,
            "--size takes a box like 240x160, not '" + size + "'");
    }
    row("a.xml -o b.xml --slices 30,0,31,0 --size 60x40",
        "the left and right margins, 30 and 31, do not fit into a width of 60");
    row("a.xml -o b.xml --slices 0,30,0,31 --size 40x60",
        "the upper and lower margins, 30 and 31, do not fit into a height of 60");
    row("a.svg -o b.xml --slices 120,0,81,0",
        "the left and right margins, 120 and 81, do not fit into a width of 200");
    row("a.svg -o b.xml --slices 0,90,0,20 --scale 2",
        "the upper and lower margins, 180 and 40, do not fit into a height of 200");
    row("a.xml -o b.xml --slices 1,1,1,1 --scale 0",
        "--scale takes a number greater than 0 and at most 1000000");
    row("a.xml -o b.xml --slices 1,1,1,1 --scale 2", "--scale goes with an SVG picture");
    row("a.svg -o b.xml --slices 1,1,1,1 --size 10x10",
        "--size goes with a document of outlines: a picture has its own");
    row("--slices 1,1,1,1 -o b.xml", "exactly one file is needed");
    row("a.xml a.xml --slices 1,1,1,1 -o b.xml", "exactly one file is needed");
    row("a.xml --slices 1,1,1,1", "no output file given (-o)");
}

void TestKpgeomBind::wrongUsageIsTold()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, fault);
    Workplace place;
    place.write("a.xml", document(" Width=\"200\" Height=\"100\""));
    place.write("a.svg", picture());
    COMPARE_FAILURE(place.run(QStringList("bind") + arguments.split(' ')), 2,
        "kpgeom bind: " + fault + " (see kpgeom bind --help)");
    QCOMPARE(place.entries(), QStringList({"a.svg", "a.xml"}));
}

void TestKpgeomBind::marginsThatDoNotFitAreTold()
{
    Workplace place;
    place.write("a.xml", document(" Width=\"200\" Height=\"100\""));
    COMPARE_FAILURE(place.run({"bind", "a.xml", "--slices", "0,51,0,50", "-o", "b.xml"}), 2,
        "kpgeom bind: outline 1: the upper and lower margins, 51 and 50, do not fit into a height "
        "of 100 (see kpgeom bind --help)");
    QCOMPARE(place.entries(), QStringList({"a.xml"}));
}

void TestKpgeomBind::badInputIsTold_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("line");
    auto const row = [](char const* name, QByteArray const& content, QByteArray const& line) {
        QTest::newRow(name) << content << line;
    };
    row("empty", "", "a.xml:1:1: Premature end of document.");
    row("no outlines", "<Shapes/>", "a.xml: no outline to bind");
    row("no box", document(""),
        "a.xml:4:21: outline 1 has no box: its element has no Width and Height; --size gives one");
    row("half a box", document(" Width=\"200\""),
        "a.xml:4:21: outline 1 has no box: its element has no Width and Height; --size gives one");
    for (QByteArray const width : {"0", "-1", "nan", "wide", "1e7"}) {
        row(("width " + width).constData(), document(" Width=\"" + width + "\" Height=\"100\""),
            "a.xml:4:21: outline 1 has no box: Width '" + width
                + "' and Height '100'; --size gives one");
    }
    row("Geometry as the root", boxGeometry(),
        "a.xml:1:21: outline 1 has no box: its element has no Width and Height; --size gives one");
    row("an empty picture", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>",
        "a.xml: nothing in it becomes an outline");
    row("damaged gzip", "\x1f\x8b\x08", "a.xml: the compressed picture is damaged or too large");
    row("a picture of another kind", "\x89PNG\r\n\x1a\n",
        "a.xml: a PNG picture, not an XML document");
}

void TestKpgeomBind::badInputIsTold()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, line);
    Workplace place;
    place.write("a.xml", content);
    COMPARE_FAILURE(
        place.run({"bind", "a.xml", "--slices", "20,10,20,10", "-o", "b.xml"}), 1, line);
    QCOMPARE(place.entries(), QStringList({"a.xml"}));
}

QTEST_GUILESS_MAIN(TestKpgeomBind)

#include "tst_kpgeom_bind.moc"
