// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "outlinetesting.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPainterPath>
#include <QTextCodec>

using namespace KpgeomTesting;

namespace {

QString const sans = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");

QByteArray svg(QByteArray const& content)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
           "viewBox='0 0 100 50'>"
        + content + "</svg>";
}

QStringList resizing(QString const& from, QString const& to)
{
    return {"resize", "in.xml", "--from", from, "--to", to, "-o", "out.xml"};
}

/** A document with the outline around `segments`. */
QByteArray outline(QByteArray const& segments)
{
    return "<D><Geometry Closed=\"1\">" + segments + "</Geometry></D>";
}

/** An outline of one line. */
QByteArray line(QByteArray const& coordinates)
{
    return outline("<LineTo>" + coordinates + "</LineTo>");
}

/** The outlines of a document that the tool has written, each as text, read by both readers. */
QStringList readOutlines(QByteArray const& xml)
{
    QStringList outlines;
    QXmlStreamReader reader(xml);
    QDomDocument const document = OutlineTesting::domDocument(xml);
    QDomNodeList const elements = document.elementsByTagName("Geometry");
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement() || reader.name() != QLatin1String("Geometry"))
            continue;
        KpPathSegList fromStream;
        KpPathSegList fromDom;
        fromStream.parse(reader, 0);
        fromDom.parse(elements.at(outlines.size()).toElement(), 0);
        QString const text = OutlineTesting::exact(fromStream);
        outlines << (text == OutlineTesting::exact(fromDom) ? text : "the readers differ");
    }
    return outlines.size() == elements.size() && !reader.hasError() ? outlines : QStringList();
}

/** A document of boxes that has exactly this many bytes. */
QByteArray documentOfSize(int bytes)
{
    QByteArray const frame = "<D></D>";
    QByteArray const box = boxGeometry();
    int const count = (bytes - frame.size()) / box.size();
    QByteArray const padding(bytes - frame.size() - count * box.size(), ' ');
    return "<D>" + box.repeated(count) + padding + "</D>";
}

/** What `info` says of the only outline of a file. */
QJsonObject infoOf(Workplace const& place, QString const& file)
{
    Result const result = place.run({"info", "--json", file});
    QJsonArray const outlines =
        QJsonDocument::fromJson(result.out).array().at(0).toObject().value("outlines").toArray();
    return outlines.size() == 1 ? outlines.at(0).toObject() : QJsonObject();
}

/** Points of SVG path data of moves, lines and closes: "M1 2L3 4Z". */
QPainterPath painterPath(QByteArray const& data, Qt::FillRule rule)
{
    QPainterPath path;
    path.setFillRule(rule);
    for (QByteArray const& subpath : data.split('Z')) {
        QList<QByteArray> const points = subpath.mid(1).split('L');
        for (int i = 0; i < points.size() && !subpath.isEmpty(); ++i) {
            QList<QByteArray> const numbers = points.at(i).split(' ');
            QPointF const point(numbers.at(0).toDouble(), numbers.at(1).toDouble());
            i == 0 ? path.moveTo(point) : path.lineTo(point);
        }
        path.closeSubpath();
    }
    return path;
}

/** 200 by 100 pixels: white within the path, black outside. */
QImage drawn(QPainterPath const& path)
{
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(2.0, 2.0);
    painter.fillPath(path, Qt::white);
    return image;
}

/** What `render` draws of the file in 200 by 100 pixels. */
QImage rendered(Workplace const& place, QString const& file, QStringList const& options = {})
{
    Result const result = place.run(QStringList {"render", file, "--size", "200x100", "--margin",
                                        "0", "--format", "png", "-o", "-"}
        + options);
    return QImage::fromData(result.out, "PNG").convertToFormat(QImage::Format_RGB32);
}

/** How many pixels are filled in one of them and bare in the other, edges left out. */
int differences(QImage const& fromTool, QImage const& expected)
{
    QRgb const bare = qRgb(255, 255, 255);
    int count = fromTool.size() == expected.size() ? 0 : -1;
    for (int y = 0; count >= 0 && y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            int const coverage = qRed(expected.pixel(x, y));
            bool const isBare = fromTool.pixel(x, y) == bare;
            count += (coverage == 255 && isBare) || (coverage == 0 && !isBare) ? 1 : 0;
        }
    }
    return count;
}

QByteArray const square = "M10 5L60 5L60 45L10 45Z";
QByteArray const squareInside = "M20 15L40 15L40 35L20 35Z";
QByteArray const squareInsideReversed = "M20 15L20 35L40 35L40 15Z";
QByteArray const squareAcross = "M40 10L90 10L90 40L40 40Z";
QByteArray const star = "M50 1L70 49L10 20L90 20L30 49Z";

} // namespace

class TestKpgeomDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resizeFollowsTheRule_data();
    void resizeFollowsTheRule();
    void resizeReachesEveryCoordinate();
    void resizeReachesEveryOutline();
    void resizeKeepsWhatIsForeign();
    void resizeKeepsTheSpellingOfWhatStays();
    void resizeWritesDownWhatTheFormatLeavesOut();
    void resizeKeepsAllDigitsOfACoordinateGivenAgain();
    void resizeReadsEveryEncoding_data();
    void resizeReadsEveryEncoding();
    void resizeThereAndBackKeepsTheNumbers();
    void resizeIsTheSameEveryTime();
    void resizeRefusesWhatBecomesTooLarge();
    void resizeReadsStandardInput();
    void resizeKeepsTheFillRule();
    void resizeTellsLinesThatVanish_data();
    void resizeTellsLinesThatVanish();
    void wrongUsageOfResizeIsTold_data();
    void wrongUsageOfResizeIsTold();

    void svgPicturesAreSentToConvert_data();
    void svgPicturesAreSentToConvert();
    void stencilsAreSentToConvert_data();
    void stencilsAreSentToConvert();
    void outlinesAreSentToRender();
    void whatIsNoTextIsToldByItsKind_data();
    void whatIsNoTextIsToldByItsKind();
    void textIsNotMistakenForAnotherKind_data();
    void textIsNotMistakenForAnotherKind();
    void largeDocumentShowsProgress_data();
    void largeDocumentShowsProgress();
    void progressOfLargeDocumentsNeedsATerminal();
    void documentThatIsNotLargeShowsNoProgress();
    void messagesTakeTheProgressAway();
    void readerMayLeaveInTheMiddle();

    void convertTellsHowPathsArePainted_data();
    void convertTellsHowPathsArePainted();
    void convertLeavesOutWhatPaintsNothing();
    void convertAppliesTransforms();
    void convertKeepsTheOrder();
    void convertFitsThePictureToLargeUnits();
    void bothFormsHoldTheSameOutlines_data();
    void bothFormsHoldTheSameOutlines();
    void bothFormsHoldTheFillRule();
    void bothFormsHoldASetForEachSymbol();
    void convertedEllipsesAreDrawnAsPainted();
    void convertedShapesAreFilledAsPainted_data();
    void convertedShapesAreFilledAsPainted();
    void convertedGlyphsAreFilledAsPainted();
    void convertNamesEachLoss();
    void convertTakesFinerUnitsWhereLinesWouldVanish_data();
    void convertTakesFinerUnitsWhereLinesWouldVanish();
    void convertedPictureIsClean();
    void convertSaysWhatIsLeftOut();
    void textBecomesAnOutlineForEachGlyph();
    void textWithoutGlyphsIsTold();
    void textTooLongNamesAnEmThatWillDo();
    void fontsThatCannotBeReadAreTold_data();
    void fontsThatCannotBeReadAreTold();
    void convertReadsStandardInput();
    void whatCannotBeConvertedIsTold_data();
    void whatCannotBeConvertedIsTold();
    void wrongUsageOfConvertIsTold_data();
    void wrongUsageOfConvertIsTold();
};

void TestKpgeomDocuments::resizeFollowsTheRule_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    // From a box of 100 by 60 to one of 300 by 40, whose smaller side is 40.
    QTest::newRow("0: keeps its place")
        << QByteArray("V=\"30\" B=\"0\" P=\"7\"") << QByteArray("V=\"30\" B=\"0\" P=\"7\"");
    QTest::newRow("1: part of the width, taken from the value")
        << QByteArray("V=\"30\" B=\"1\" P=\"7\"") << QByteArray("V=\"90\" B=\"1\" P=\"0.3\"");
    QTest::newRow("2: part of the height, taken from the value")
        << QByteArray("V=\"30\" B=\"2\" P=\"7\"") << QByteArray("V=\"20\" B=\"2\" P=\"0.5\"");
    QTest::newRow("3: distance from the right")
        << QByteArray("V=\"30\" B=\"3\" P=\"7\"") << QByteArray("V=\"293\" B=\"3\" P=\"7\"");
    QTest::newRow("4: distance from the bottom")
        << QByteArray("V=\"30\" B=\"4\" P=\"7\"") << QByteArray("V=\"33\" B=\"4\" P=\"7\"");
    QTest::newRow("5: part of the smaller side")
        << QByteArray("V=\"30\" B=\"5\" P=\"0.25\"") << QByteArray("V=\"10\" B=\"5\" P=\"0.25\"");
    QTest::newRow("6: the same from the right")
        << QByteArray("V=\"30\" B=\"6\" P=\"0.25\"") << QByteArray("V=\"290\" B=\"6\" P=\"0.25\"");
    QTest::newRow("7: the same from the bottom")
        << QByteArray("V=\"30\" B=\"7\" P=\"0.25\"") << QByteArray("V=\"30\" B=\"7\" P=\"0.25\"");
    QTest::newRow("8: no rule") << QByteArray("V=\"30\" B=\"8\" P=\"7\"")
                                << QByteArray("V=\"30\" B=\"8\" P=\"7\"");
    QTest::newRow("-5: no rule") << QByteArray("V=\"30\" B=\"-5\" P=\"7\"")
                                 << QByteArray("V=\"30\" B=\"-5\" P=\"7\"");
    QTest::newRow("six digits") << QByteArray("V=\"1\" B=\"1\" P=\"0\"")
                                << QByteArray("V=\"3\" B=\"1\" P=\"0.01\"");
}

void TestKpgeomDocuments::resizeFollowsTheRule()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    Workplace const place;
    QByteArray const y = "<Y V=\"0\" B=\"0\" P=\"0\"/>";
    place.write("in.xml", line("<X " + before + "/>" + y));
    COMPARE_EXIT(place.run(resizing("100x60", "300x40")), 0);
    QCOMPARE(place.read("out.xml"),
        QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + line("<X " + after + "/>" + y)
            + "\n"));
}

void TestKpgeomDocuments::resizeReachesEveryCoordinate()
{
    auto const segments = [](QByteArray const& x, QByteArray const& y) {
        QByteArray const horizontal = " V=\"" + x + "\" B=\"1\" P=\"0.5\"/>";
        QByteArray const vertical = " V=\"" + y + "\" B=\"2\" P=\"0.5\"/>";
        QByteArray const point = "<X" + horizontal + "<Y" + vertical;
        return outline("<MoveTo>" + point + "</MoveTo><LineTo>" + point + "</LineTo><CurveTo>"
            + point + "<A" + horizontal + "<B" + vertical + "<C" + horizontal + "<D" + vertical
            + "</CurveTo><Ellipse>" + point + "<A" + horizontal + "<B" + vertical + "</Ellipse>");
    };
    Workplace const place;
    place.write("in.xml", segments("50", "30"));
    COMPARE_EXIT(place.run(resizing("100x60", "300x40")), 0);
    QVERIFY(place.read("out.xml").contains(segments("150", "20")));
}

void TestKpgeomDocuments::resizeReachesEveryOutline()
{
    Workplace const place;
    place.write("in.xml",
        "<D><Page><Shape>" + boxGeometry() + "</Shape>" + boxGeometry("Closed=\"0\"")
            + "</Page><Group><Group>" + boxGeometry("NoFill=\"1\"")
            + "</Group></Group><Geometry Closed=\"1\">" + boxGeometry() + "</Geometry></D>");
    COMPARE_EXIT(place.run(resizing("100x60", "7x9")), 0);
    QByteArray const out = place.read("out.xml");
    // An outline within an outline is not read by the outer one, and is one of its own.
    QCOMPARE(out.count("V=\"100\""), 0);
    QCOMPARE(out.count("V=\"7\""), 8);
    QCOMPARE(out.count("V=\"9\""), 8);
    QCOMPARE(out.count("<Geometry"), 5);
}

void TestKpgeomDocuments::resizeKeepsWhatIsForeign()
{
    QByteArray const before =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<?style of=\"old\"?>\n"
        "<!-- before -->\n"
        "<!DOCTYPE D SYSTEM \"d.dtd\" [<!ENTITY e \"text\">]>\n"
        "<D z=\"1\" a=\"2\" m=\"&lt;&amp;&quot;\"><!-- within --><?go on?>\n"
        "  <p:Title xmlns:p=\"urn:p\" p:k=\"v\">A &amp; B &lt; C\t<![CDATA[<&]]></p:Title>\n"
        "  <Geometry Closed=\"TRUE\" Name=\"box\" NoFill=\"no\">\n"
        "    <!-- first -->\n"
        "    <MoveTo id=\"m\"> <X unit=\"px\" V=\"0\" B=\"1\" P=\"0\"/> text"
        " <Y V=\"0\" B=\"2\" P=\"0\"><Note/></Y><Z V=\"50\"/></MoveTo>\n"
        "    <Arc><X V=\"50\" B=\"1\" P=\"0.5\"/></Arc>\n"
        "    <LineTo><X V=\"50\" B=\"1\" P=\"0.5\"/><Y V=\"0\" B=\"2\" P=\"0\"/></LineTo>\n"
        "  </Geometry>\n"
        "  <LineTo><X V=\"50\" B=\"1\" P=\"0.5\"/></LineTo>\n"
        "</D>\n"
        "<!-- after -->\n";
    QByteArray after = before;
    int const moved = after.lastIndexOf("<X V=\"50\"", after.indexOf("</Geometry>"));
    after.replace(moved, 9, "<X V=\"10\"");
    Workplace const place;
    place.write("in.xml", before);
    COMPARE_EXIT(place.run(resizing("100x60", "20x60")), 0);
    QCOMPARE(QString::fromUtf8(place.read("out.xml")), QString::fromUtf8(after));
}

void TestKpgeomDocuments::resizeKeepsTheSpellingOfWhatStays()
{
    QByteArray const text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        + line("<X V=\" 3.0E1 \" B=\"00\" P=\"+7\"/><Y V=\"0.0078125\" B=\"+4\" "
               "P=\"59.9921875\"/>")
        + "\n";
    Workplace const place;
    place.write("in.xml", text);
    COMPARE_EXIT(place.run(resizing("100x60", "300x60")), 0);
    QCOMPARE(place.read("out.xml"), text);
}

void TestKpgeomDocuments::resizeWritesDownWhatTheFormatLeavesOut()
{
    Workplace const place;
    // A base of 0 is read back as bound unless it is there; so are coordinates that are missing.
    place.write("in.xml", line("<X V=\"30\"/>"));
    COMPARE_EXIT(place.run(resizing("100x60", "300x60")), 0);
    QVERIFY2(place.read("out.xml").contains(
                 line("<X V=\"90\" B=\"1\" P=\"0.3\"/><Y V=\"0\" B=\"2\" P=\"0\"/>")),
        place.read("out.xml").constData());
    place.write("in.xml", line("<X V=\"30\" B=\"0\"/><Y V=\"\" B=\"0\"/>"));
    COMPARE_EXIT(place.run(resizing("100x60", "300x60")), 0);
    QVERIFY2(place.read("out.xml").contains(line("<X V=\"30\" B=\"0\"/><Y V=\"0\" B=\"0\"/>")),
        place.read("out.xml").constData());
}

void TestKpgeomDocuments::resizeKeepsAllDigitsOfACoordinateGivenAgain()
{
    QByteArray const y = "<Y V=\"0\" B=\"0\" P=\"0\"/>";
    Workplace const place;
    place.write("in.xml",
        line("<X V=\"1.23456789\" B=\"0\" P=\"7\"/>" + y + "<X V=\"\" a=\"1\" B=\"0\"/>"));
    COMPARE_EXIT(place.run(resizing("100x60", "300x60")), 0);
    QVERIFY2(place.read("out.xml").contains(
                 line("<X V=\"1.23456789\" B=\"0\" P=\"7\"/>" + y + "<X a=\"1\" B=\"0\"/>")),
        place.read("out.xml").constData());
}

void TestKpgeomDocuments::resizeReadsEveryEncoding_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::newRow("UTF-8") << QByteArray("UTF-8");
    QTest::newRow("Latin 1") << QByteArray("ISO-8859-1");
    QTest::newRow("UTF-16") << QByteArray("UTF-16");
}

void TestKpgeomDocuments::resizeReadsEveryEncoding()
{
    QFETCH(QByteArray, codec);
    QString const body = QString::fromUtf8("\n<D n=\"\xc3\xa4\">\xc3\xb6\xc3\xbc"
                                           "<Geometry Closed=\"1\"/></D>\n");
    QString const text =
        QString("<?xml version=\"1.0\" encoding=\"%1\"?>").arg(QString(codec)) + body;
    Workplace const place;
    place.write("in.xml", QTextCodec::codecForName(codec)->fromUnicode(text));
    COMPARE_EXIT(place.run(resizing("1x1", "2x2")), 0);
    QCOMPARE(QString::fromUtf8(place.read("out.xml")),
        QString("<?xml version=\"1.0\" encoding=\"UTF-8\"?>") + body);
}

void TestKpgeomDocuments::resizeThereAndBackKeepsTheNumbers()
{
    Workplace const place;
    place.write("in.xml",
        outline("<MoveTo><X V=\"12.5\" B=\"1\" P=\"0.125\"/><Y V=\"45\" B=\"4\" P=\"15\"/></MoveTo>"
                "<LineTo><X V=\"90\" B=\"3\" P=\"10\"/><Y V=\"15\" B=\"5\" P=\"0.25\"/></LineTo>"
                "<LineTo><X V=\"85\" B=\"6\" P=\"0.25\"/><Y V=\"45\" B=\"7\" "
                "P=\"0.25\"/></LineTo>"));
    COMPARE_EXIT(place.run(resizing("100x60", "1000x70")), 0);
    QVERIFY(!place.read("out.xml").contains("V=\"12.5\""));
    COMPARE_EXIT(
        place.run({"resize", "out.xml", "--from", "1000x70", "--to", "100x60", "-o", "back.xml"}),
        0);
    QCOMPARE(readOutlines(place.read("back.xml")), readOutlines(place.read("in.xml")));
    QCOMPARE(readOutlines(place.read("back.xml")).size(), 1);
}

void TestKpgeomDocuments::resizeIsTheSameEveryTime()
{
    Workplace const place;
    place.write("in.xml",
        line("<X h=\"1\" g=\"2\" f=\"3\" V=\"1\" e=\"4\" d=\"5\"/><Y V=\"1\" B=\"2\" P=\"1\"/>"));
    COMPARE_EXIT(place.run(resizing("100x60", "300x40")), 0);
    QByteArray const first = place.read("out.xml");
    QVERIFY(
        first.contains("<X h=\"1\" g=\"2\" f=\"3\" V=\"3\" e=\"4\" d=\"5\" B=\"1\" P=\"0.01\"/>"));
    for (int i = 0; i < 3; ++i) {
        COMPARE_EXIT(place.run(resizing("100x60", "300x40")), 0);
        QCOMPARE(place.read("out.xml"), first);
    }
}

void TestKpgeomDocuments::resizeRefusesWhatBecomesTooLarge()
{
    Workplace const place;
    place.write("in.xml",
        "<D>" + boxGeometry() + line("<X V=\"1e308\" B=\"1\" P=\"0\"/><Y V=\"0\"/>") + "</D>");
    COMPARE_FAILURE(place.run(resizing("1x1", "100x100")), 1,
        "in.xml: a coordinate of outline 2 becomes too large");
    QCOMPARE(place.entries(), QStringList {"in.xml"});
}

void TestKpgeomDocuments::resizeReadsStandardInput()
{
    Workplace const place;
    Workplace::Start start;
    start.input = boxGeometry();
    Result const result =
        place.run({"resize", "-", "--from", "100x60", "--to", "7x9", "-o", "-"}, start);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out.count("V=\"7\""), 2);
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomDocuments::resizeKeepsTheFillRule()
{
    Workplace const place;
    place.write("in.xml",
        "<D><S FillRule=\"evenodd\">" + boxGeometry() + "</S><S FillRule='nonzero'>" + boxGeometry()
            + "</S><S FillRule=\"other\">" + boxGeometry() + "</S></D>");
    COMPARE_EXIT(place.run(resizing("100x60", "7x9")), 0);
    QByteArray const out = place.read("out.xml");
    QCOMPARE(out.count("V=\"7\""), 6);
    int const first = out.indexOf("<S FillRule=\"evenodd\"><Geometry");
    int const second = out.indexOf("<S FillRule=\"nonzero\"><Geometry");
    QVERIFY2(first > 0 && second > first, out.constData());
    QVERIFY(out.indexOf("<S FillRule=\"other\"><Geometry") > second);
}

void TestKpgeomDocuments::resizeTellsLinesThatVanish_data()
{
    QTest::addColumn<QByteArray>("outlines");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QByteArray>("told");

    QByteArray const box = boxGeometry();
    QByteArray const end = " shorter than one unit and not drawn\n";
    QTest::newRow("none") << box << "100x60"
                          << "1x1" << QByteArray();
    QTest::newRow("one") << box << "100x60"
                         << "20x0.5"
                         << "in.xml: in a box of 20 x 0.5, 1 line is" + end;
    QTest::newRow("two") << box << "100x60"
                         << "0.5x20"
                         << "in.xml: in a box of 0.5 x 20, 2 lines are" + end;
    QTest::newRow("of all outlines") << box + box << "100x60"
                                     << "0.5x20"
                                     << "in.xml: in a box of 0.5 x 20, 4 lines are" + end;
    QByteArray const point = "<LineTo><X V=\"0.5\" B=\"0\"/><Y V=\"0.5\" B=\"0\"/></LineTo>";
    QTest::newRow("not drawn before") << "<Geometry><MoveTo/>" + point + point + "</Geometry>"
                                      << "100x60"
                                      << "50x20" << QByteArray();
    // The first line grows to 5 units, the last one shrinks from 11 to less than one.
    QTest::newRow("one vanishes, one appears")
        << QByteArray("<Geometry><MoveTo><X V=\"0\" B=\"0\"/><Y V=\"0\" B=\"0\"/></MoveTo>"
                      "<LineTo><X V=\"0.5\" B=\"1\"/><Y V=\"0\" B=\"0\"/></LineTo>"
                      "<LineTo><X V=\"9\" B=\"0\"/><Y V=\"9\" B=\"0\"/></LineTo>"
                      "<LineTo><X V=\"9\" B=\"0\"/><Y V=\"19\" B=\"2\"/></LineTo></Geometry>")
        << "1x20"
        << "10x10"
        << "in.xml: in a box of 10 x 10, 1 line is" + end;
}

void TestKpgeomDocuments::resizeTellsLinesThatVanish()
{
    QFETCH(QByteArray, outlines);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QByteArray, told);
    Workplace const place;
    place.write("in.xml", "<D>" + outlines + "</D>");
    Result const result = place.run(resizing(from, to));
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, told);
    QVERIFY(place.read("out.xml").contains("</Geometry>"));
}

void TestKpgeomDocuments::wrongUsageOfResizeIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("what");
    QByteArray const boxes = "--from and --to take a box like 240x160";
    auto const sizes = [](QString const& from, QString const& to) {
        return QStringList {"in.xml", "-o", "out.xml", "--from", from, "--to", to};
    };
    QTest::newRow("no box") << QStringList {"in.xml", "-o", "out.xml"} << boxes;
    QTest::newRow("one box") << QStringList {"in.xml", "-o", "out.xml", "--from", "1x1"} << boxes;
    QTest::newRow("one side") << sizes("10", "1x1") << boxes;
    QTest::newRow("three sides") << sizes("1x1", "1x1x1") << boxes;
    QTest::newRow("no width") << sizes("0x1", "1x1") << boxes;
    QTest::newRow("no height") << sizes("1x1", "1x0") << boxes;
    QTest::newRow("negative side") << sizes("1x1", "1x-1") << boxes;
    QTest::newRow("letters") << sizes("axb", "1x1") << boxes;
    QTest::newRow("infinite") << sizes("infx1", "1x1") << boxes;
    QTest::newRow("not a number") << sizes("nanx1", "1x1") << boxes;
    QTest::newRow("too large") << sizes("1e7x1", "1x1") << boxes;
    QTest::newRow("no file") << QStringList {"--from", "1x1", "--to", "1x1", "-o", "out.xml"}
                             << QByteArray("exactly one file is needed");
    QTest::newRow("two files") << sizes("1x1", "1x1") + QStringList {"in.xml"}
                               << QByteArray("exactly one file is needed");
    QTest::newRow("no output") << QStringList {"in.xml", "--from", "1x1", "--to", "1x1"}
                               << QByteArray("no output file given (-o)");
}

void TestKpgeomDocuments::wrongUsageOfResizeIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, what);
    Workplace const place;
    place.write("in.xml", boxGeometry());
    COMPARE_FAILURE(place.run(QStringList {"resize"} + arguments), 2,
        "kpgeom resize: " + what + " (see kpgeom resize --help)");
    QCOMPARE(place.entries(), QStringList {"in.xml"});
}

void TestKpgeomDocuments::svgPicturesAreSentToConvert_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("out");

    QTest::newRow("info") << QStringList {"info"} << 0 << QByteArray(": 0 outlines\n");
    QTest::newRow("check") << QStringList {"check"} << 0
                           << QByteArray(": outlines: 0, warnings: 0\n");
    QTest::newRow("render") << QStringList {"render", "-o", "out.png"} << 1 << QByteArray();
    QTest::newRow("render a sheet")
        << QStringList {"render", "--sheet", "-o", "out.png"} << 1 << QByteArray();
    QTest::newRow("render the second outline")
        << QStringList {"render", "--index", "2", "-o", "out.png"} << 1 << QByteArray();
}

void TestKpgeomDocuments::svgPicturesAreSentToConvert()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QFETCH(QByteArray, out);
    QByteArray const advice = ": an SVG picture: kpgeom convert makes a document of it\n";
    Workplace const place;
    QByteArray const picture = svg("<rect width='10' height='10'/>");
    place.write("in.svg", picture);
    place.write("prefixed.svg", "<s:svg xmlns:s='http://www.w3.org/2000/svg'/>");
    for (QString const& file : {QString("in.svg"), QString("prefixed.svg"), QString("-")}) {
        QByteArray const name = file == "-" ? QByteArray("<stdin>") : file.toUtf8();
        Result const result = place.run(arguments + QStringList(file), {picture});
        QVERIFY(result.exited);
        QCOMPARE(result.code, code);
        QCOMPARE(result.err, name + advice);
        QCOMPARE(result.out, out.isEmpty() ? out : name + out);
    }
    QCOMPARE(place.entries(), (QStringList {"in.svg", "prefixed.svg"}));
}

void TestKpgeomDocuments::stencilsAreSentToConvert_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("fault"); // of a command that draws
    QTest::addColumn<bool>("isAdvised");

    QByteArray const packed = "\x1f\x8b\x08";
    QByteArray const noXml = "a compressed file (gzip), not an XML document";
    QTest::newRow("packed picture") << "in.svgz" << packed << noXml << true;
    QTest::newRow("in capitals") << "in.SVGZ" << packed << noXml << true;
    QTest::newRow("shape file") << "in.shape" << QByteArray("<shape/>")
                                << QByteArray("no outline to draw") << true;
    QTest::newRow("packed document") << "in.xml" << packed << noXml << false;
    QTest::newRow("packed, and called like a picture that is not")
        << "in.svg" << packed << noXml << false;
}

void TestKpgeomDocuments::stencilsAreSentToConvert()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, fault);
    QFETCH(bool, isAdvised);

    Workplace const place;
    place.write(file, content);
    QByteArray const name = file.toUtf8() + ": ";
    QByteArray const advice =
        isAdvised ? "\n" + name + "kpgeom convert makes a document of it" : QByteArray();
    COMPARE_FAILURE(place.run({"render", file, "-o", "out.svg"}), 1, name + fault + advice);
    COMPARE_FAILURE(place.run({"svg", file}), 1, name + fault + advice);
    if (fault.startsWith("a compressed"))
        COMPARE_FAILURE(place.run({"info", file}), 1, name + fault + advice);
    COMPARE_FAILURE(place.run({"svg", "none.svgz"}), 1, "none.svgz: No such file or directory");
}

void TestKpgeomDocuments::outlinesAreSentToRender()
{
    Workplace const place;
    place.write("a.xml", "<D>" + boxGeometry() + "</D>");
    COMPARE_FAILURE(place.run({"convert", "a.xml", "-o", "b.xml"}), 1,
        "a.xml: not an SVG picture\na.xml: a document of outlines: kpgeom render draws it");
}

void TestKpgeomDocuments::whatIsNoTextIsToldByItsKind_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("kind");

    auto const row = [](char const* kind, QByteArray const& content) {
        QTest::newRow(kind) << content << QByteArray(kind);
    };
    QByteArray const member =
        QByteArray("PK\x03\x04") + QByteArray(22, '\0') + "\x08" + QByteArray(3, '\0');
    row("a PNG picture", "\x89PNG\r\n\x1a\n");
    row("a JPEG picture", "\xff\xd8\xff\xe0");
    row("a GIF picture", "GIF89a");
    row("a WebP picture", "RIFF1234WEBPVP8 ");
    row("a TIFF picture", QByteArray("II*\0", 4));
    row("an icon", QByteArray("\0\0\1\0\1", 5));
    row("an OpenDocument drawing",
        member + "mimetypeapplication/vnd.oasis.opendocument.graphicsPK");
    row("an OpenDocument file", member + "mimetypeapplication/vnd.oasis.opendocument.textPK");
    row("a zip file", member + "document.xml");
    row("a PDF document", "%PDF-1.4\n");
    row("a PostScript document", "%!PS-Adobe-3.0\n");
    row("a compressed file (gzip)", "\x1f\x8b\x08");
    row("a font", QByteArray("\0\1\0\0\0", 5));
    QTest::newRow("a font with cubic curves") << QByteArray("OTTO") << QByteArray("a font");
    QTest::newRow("a collection of fonts") << QByteArray("ttcf") << QByteArray("a font");
    QTest::newRow("a font of the web") << QByteArray("wOF2") << QByteArray("a font");
    row("a program or library",
        "\x7f"
        "ELF\x02");
    row("a binary file", QByteArray("text\0text", 9));
}

void TestKpgeomDocuments::whatIsNoTextIsToldByItsKind()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, kind);
    Workplace const place;
    place.write("in.xml", content);
    for (QStringList const& arguments :
        {QStringList {"info"}, QStringList {"check"}, QStringList {"render", "-o", "out.svg"},
            QStringList {"resize", "--from", "1x1", "--to", "2x2", "-o", "out.xml"}}) {
        for (QByteArray const& name : {QByteArray("in.xml"), QByteArray("<stdin>")}) {
            QString const operand = name == "in.xml" ? "in.xml" : "-";
            Result const result = place.run(arguments + QStringList(operand), {content});
            QVERIFY(result.exited);
            QCOMPARE(result.code, 1);
            QCOMPARE(result.err, name + ": " + kind + ", not an XML document\n");
        }
    }
    QCOMPARE(place.entries(), QStringList {"in.xml"});
}

void TestKpgeomDocuments::textIsNotMistakenForAnotherKind_data()
{
    QTest::addColumn<QByteArray>("content");

    QByteArray const document = "<D><Geometry Closed=\"1\"/></D>";
    auto const wide = [&document](char const* mark, int before, int after) {
        QByteArray text(mark, before + after + 1);
        for (char const character : document)
            text += QByteArray(before, '\0') + character + QByteArray(after, '\0');
        return text;
    };
    QTest::newRow("plain") << document;
    QTest::newRow("UTF-8 with a mark") << "\xef\xbb\xbf" + document;
    QTest::newRow("UTF-16, little-endian") << wide("\xff\xfe", 0, 1);
    QTest::newRow("UTF-16, big-endian") << wide("\xfe\xff", 1, 0);
}

void TestKpgeomDocuments::textIsNotMistakenForAnotherKind()
{
    QFETCH(QByteArray, content);
    Workplace const place;
    place.write("in.xml", content);
    Result const result = place.run({"info", "in.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QVERIFY2(result.out.startsWith("in.xml: 1 outline\n"), result.out.constData());
}

void TestKpgeomDocuments::largeDocumentShowsProgress_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("info") << QStringList {"info", "in.xml"};
    if (!Testing::sanitized) {
        QTest::newRow("check") << QStringList {"check", "in.xml"};
        QTest::newRow("render") << QStringList {"render", "in.xml", "-o", "out.svg"};
        QTest::newRow("resize") << QStringList {
            "resize", "in.xml", "--from", "1x1", "--to", "1x1", "-o", "out.xml"};
    }
    QTest::newRow("two files") << QStringList {"info", "--jobs", "1", "in.xml", "in.xml"};
}

void TestKpgeomDocuments::largeDocumentShowsProgress()
{
    QFETCH(QStringList, arguments);
    Workplace const place;
    place.write("in.xml", documentOfSize(4 << 20));
    Terminal const terminal;
    Workplace::Start start;
    start.setUp = terminal.replacing(STDERR_FILENO);
    COMPARE_EXIT(place.run(arguments, start), 0);
    QByteArray const shown = terminal.text();

    QByteArray const erased = "\r\x1b[K";
    QVERIFY2(shown.endsWith(erased), shown.constData());
    QCOMPARE(shown.count('\x1b'), 1);
    QCOMPARE(shown.count('\n'), 0);
    QVector<int> percents;
    QByteArrayList const bars = shown.left(shown.size() - erased.size()).split('\r').mid(1);
    for (QByteArray const& bar : bars) {
        QVERIFY2(
            bar.size() == 48 && bar.startsWith('[') && bar.mid(41, 2) == "] " && bar.endsWith(" %"),
            bar.constData());
        percents << bar.mid(43, 3).trimmed().toInt();
        QCOMPARE(bar.count('#'), percents.last() * 40 / 100);
    }
    QVERIFY(percents.size() > 2);
    QCOMPARE(percents.first(), 0);
    QVERIFY(percents.last() >= 90);
    for (int i = 1; i < percents.size(); ++i)
        QVERIFY(percents.at(i) > percents.at(i - 1));
}

void TestKpgeomDocuments::progressOfLargeDocumentsNeedsATerminal()
{
    Workplace const place;
    place.write("in.xml", documentOfSize(4 << 20));
    Result const result = place.run({"info", "in.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomDocuments::documentThatIsNotLargeShowsNoProgress()
{
    Workplace const place;
    place.write("in.xml", documentOfSize((4 << 20) - 1));
    Terminal const terminal;
    Workplace::Start start;
    start.setUp = terminal.replacing(STDERR_FILENO);
    COMPARE_EXIT(place.run({"info", "in.xml"}, start), 0);
    QCOMPARE(terminal.text(), QByteArray());
}

void TestKpgeomDocuments::messagesTakeTheProgressAway()
{
    Workplace const place;
    place.write("in.xml", documentOfSize(4 << 20).replace("</D>", "</E>"));
    Terminal const terminal;
    Workplace::Start start;
    start.setUp = terminal.replacing(STDERR_FILENO);
    COMPARE_EXIT(place.run({"info", "in.xml"}, start), 1);
    QByteArray const shown = terminal.text();
    QVERIFY2(shown.startsWith("\r[                                        ]   0 %\r"),
        shown.constData());
    QVERIFY2(shown.contains("\r\x1b[Kin.xml:1:"), shown.constData());
    QVERIFY2(shown.endsWith(": Opening and ending tag mismatch.\r\n"), shown.constData());
}

void TestKpgeomDocuments::readerMayLeaveInTheMiddle()
{
    // What is printed does not fit into a pipe, whose reader takes one line.
    Workplace const place;
    place.write("in.xml", "<D>" + boxGeometry().repeated(2000) + "</D>");
    QProcess shell;
    shell.setWorkingDirectory(place.path());
    shell.start(
        "/bin/sh", {"-c", "{ \"$0\" info in.xml; echo $? >&2; } | head -n 1", KPGEOM_EXECUTABLE});
    QVERIFY(shell.waitForFinished());
    QCOMPARE(shell.readAllStandardOutput(), QByteArray("in.xml: 2000 outlines\n"));
    QCOMPARE(shell.readAllStandardError(), QByteArray("1\n"));
}

void TestKpgeomDocuments::convertTellsHowPathsArePainted_data()
{
    QTest::addColumn<QByteArray>("paint");
    QTest::addColumn<bool>("noFill");
    QTest::addColumn<bool>("noLine");
    QTest::newRow("filled by default") << QByteArray("") << false << true;
    QTest::newRow("filled") << QByteArray("fill='red'") << false << true;
    QTest::newRow("stroked") << QByteArray("fill='none' stroke='red'") << true << false;
    QTest::newRow("both") << QByteArray("fill='red' stroke='blue'") << false << false;
    QTest::newRow("by style") << QByteArray("style='fill:none;stroke:#00f'") << true << false;
}

void TestKpgeomDocuments::convertTellsHowPathsArePainted()
{
    QFETCH(QByteArray, paint);
    QFETCH(bool, noFill);
    QFETCH(bool, noLine);
    Workplace const place;
    place.write("in.svg", svg("<path d='M1 1L9 1L9 9Z' " + paint + "/>"));
    COMPARE_EXIT(place.run({"convert", "in.svg", "-o", "out.xml"}), 0);
    QJsonObject const info = infoOf(place, "out.xml");
    QCOMPARE(info.value("noFill").toBool(), noFill);
    QCOMPARE(info.value("noLine").toBool(), noLine);
    QCOMPARE(info.value("closed").toBool(), true);
}

void TestKpgeomDocuments::convertLeavesOutWhatPaintsNothing()
{
    Workplace const place;
    place.write("in.svg",
        svg("<path d='M1 1L9 1L9 9Z' fill='none'/><path d='M1 1L9 1L9 9Z' opacity='0'/>"
            "<path d='M2 2L9 1L9 9Z'/>"));
    Result const result = place.run({"convert", "in.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray("in.svg: 2 shapes painted with nothing: left out\n"));
    QCOMPARE(infoOf(place, "out.xml").value("name").toString(), QString("path 3"));
    place.write("in.svg", svg("<path d='M1 1L9 1L9 9Z' fill='none'/>"));
    Result const nothing = place.run({"convert", "in.svg", "-o", "none.xml"});
    COMPARE_EXIT(nothing, 1);
    QCOMPARE(nothing.err,
        QByteArray("in.svg: 1 shape painted with nothing: left out\n"
                   "in.svg: nothing in it becomes an outline\n"));
    QCOMPARE(place.read("none.xml"), QByteArray());
}

void TestKpgeomDocuments::convertAppliesTransforms()
{
    Workplace const place;
    place.write("in.svg",
        svg("<g transform='translate(20 10)'><rect transform='scale(2)' x='1' y='1' width='10' "
            "height='5'/></g>"));
    COMPARE_EXIT(place.run({"convert", "in.svg", "--scale", "1", "-o", "out.xml"}), 0);
    QJsonObject const bounds = infoOf(place, "out.xml").value("bounds").toObject();
    QCOMPARE(bounds, (QJsonObject {{"x", 22.0}, {"y", 12.0}, {"width", 20.0}, {"height", 10.0}}));
}

void TestKpgeomDocuments::convertKeepsTheOrder()
{
    Workplace const place;
    place.write("in.svg",
        svg("<rect width='10' height='10'/><circle cx='50' cy='25' r='5'/>"
            "<path d='M0 0C0 10 10 10 10 0M20 0A5 5 0 0 1 30 0'/>"));
    COMPARE_EXIT(place.run({"convert", "in.svg", "-o", "out.xml"}), 0);
    Result const info = place.run({"info", "--json", "out.xml"});
    QJsonArray const outlines =
        QJsonDocument::fromJson(info.out).array().at(0).toObject().value("outlines").toArray();
    QCOMPARE(outlines.size(), 3);
    QStringList names;
    QVector<int> curves;
    QVector<int> ellipses;
    for (QJsonValue const& outline : outlines) {
        names << outline.toObject().value("name").toString();
        QJsonObject const segments = outline.toObject().value("segments").toObject();
        curves << segments.value("curveTo").toInt();
        ellipses << segments.value("ellipse").toInt();
    }
    QCOMPARE(names, (QStringList {"path 1", "path 2", "path 3"}));
    // The half circle of the last path is two curves.
    QCOMPARE(curves, (QVector<int> {0, 0, 3}));
    QCOMPARE(ellipses, (QVector<int> {0, 1, 0}));
}

void TestKpgeomDocuments::convertFitsThePictureToLargeUnits()
{
    Workplace const place;
    place.write("in.svg", svg("<rect x='25' width='50' height='50'/>"));
    COMPARE_EXIT(place.run({"convert", "in.svg", "-o", "out.xml"}), 0);
    QByteArray const out = place.read("out.xml");
    QVERIFY(out.contains("<Shape Name=\"path 1\" Width=\"10000\" Height=\"5000\">"));
    QVERIFY(out.contains("<X V=\"2500\" B=\"1\" P=\"0.25\"/>"));
    QVERIFY(out.contains("<Y V=\"5000\" B=\"2\" P=\"1\"/>"));
    COMPARE_EXIT(place.run({"convert", "in.svg", "--scale", "2", "-o", "out.xml"}), 0);
    QVERIFY(place.read("out.xml").contains("Width=\"200\" Height=\"100\""));
    QVERIFY(place.read("out.xml").contains("<X V=\"50\" B=\"1\" P=\"0.25\"/>"));
}

void TestKpgeomDocuments::bothFormsHoldTheSameOutlines_data()
{
    QTest::addColumn<QStringList>("source");
    QTest::addColumn<int>("count");
    QTest::newRow("picture") << QStringList {"in.svg"} << 2;
    QTest::newRow("text") << QStringList {"--font", sans, "--text", "Agß@"} << 4;
}

void TestKpgeomDocuments::bothFormsHoldTheSameOutlines()
{
    QFETCH(QStringList, source);
    QFETCH(int, count);
    Workplace const place;
    place.write("in.svg",
        svg("<rect width='10' height='10' fill='none'/><ellipse cx='50' cy='25' rx='5' ry='9'/>"
            "<path d='M0 0C0 10 10 10 10 0M20 0A5 5 0 0 1 30 0' stroke='red'/>"));
    COMPARE_EXIT(
        place.run(QStringList {"convert"} + source + QStringList {"--form", "dom", "-o", "dom"}),
        0);
    COMPARE_EXIT(place.run(QStringList {"convert"} + source
                     + QStringList {"--form", "stream", "-o", "stream"}),
        0);
    QStringList const fromStream = readOutlines(place.read("stream"));
    QCOMPARE(fromStream.size(), count);
    QCOMPARE(readOutlines(place.read("dom")), fromStream);
    // The stream form is the one that is written unless another is asked for.
    COMPARE_EXIT(place.run(QStringList {"convert"} + source + QStringList {"-o", "plain"}), 0);
    QVERIFY(place.read("plain") == place.read("stream"));
}

void TestKpgeomDocuments::bothFormsHoldTheFillRule()
{
    Workplace const place;
    place.write("in.svg",
        svg("<path fill-rule='evenodd' d='" + star + "'/><path d='" + square + squareAcross
            + "'/><path d='" + square + "'/>"));
    for (QString const& form : {QString("dom"), QString("stream")}) {
        COMPARE_EXIT(place.run({"convert", "in.svg", "--form", form, "-o", "out.xml"}), 0);
        QDomDocument const document = OutlineTesting::domDocument(place.read("out.xml"));
        QDomNodeList const shapes = document.elementsByTagName("Shape");
        QCOMPARE(shapes.size(), 3);
        QCOMPARE(shapes.at(0).toElement().attribute("FillRule"), QString("evenodd"));
        QCOMPARE(shapes.at(1).toElement().attribute("FillRule"), QString("nonzero"));
        QVERIFY(!shapes.at(2).toElement().hasAttribute("FillRule"));
    }
}

void TestKpgeomDocuments::bothFormsHoldASetForEachSymbol()
{
    Workplace const place;
    place.write("in.svg",
        svg("<symbol id='nut' viewBox='0 0 4 2'><circle id='hole' cx='1' cy='1' r='1'/>"
            "<path d='M0 0L4 0V2'/></symbol>"
            "<symbol id='bolt &lt;8&gt;' viewBox='1 1 5 10'><path d='M1 1L6 1V11'/></symbol>"));
    QStringList const expected {
        "nut/hole in 10000 by 5000", "nut in 10000 by 5000", "bolt <8> in 5000 by 10000"};
    QStringList outlines;
    for (QString const& form : {QString("dom"), QString("stream")}) {
        Result const result = place.run({"convert", "in.svg", "--form", form, "-o", "out.xml"});
        COMPARE_EXIT(result, 0);
        QCOMPARE(result.err, QByteArray());
        QDomDocument const document = OutlineTesting::domDocument(place.read("out.xml"));
        QDomNodeList const shapes = document.elementsByTagName("Shape");
        QStringList sets;
        for (int i = 0; i < shapes.size(); ++i) {
            QDomElement const shape = shapes.at(i).toElement();
            sets << QString("%1 in %2 by %3")
                        .arg(shape.attribute("Name"), shape.attribute("Width"),
                            shape.attribute("Height"));
        }
        QCOMPARE(sets, expected);
        QStringList const read = readOutlines(place.read("out.xml"));
        QCOMPARE(read.size(), 3);
        if (!outlines.isEmpty())
            QCOMPARE(read, outlines);
        outlines = read;
        COMPARE_EXIT(place.run({"check", "out.xml"}), 0);
    }
    QVERIFY(place.read("out.xml").contains("<Ellipse>\n    <X V=\"2500\" B=\"1\" P=\"0.25\"/>\n"
                                           "    <Y V=\"2500\" B=\"2\" P=\"0.5\"/>\n"
                                           "    <A V=\"2500\" B=\"1\" P=\"0.25\"/>\n"
                                           "    <B V=\"2500\" B=\"2\" P=\"0.5\"/>\n"));
}

void TestKpgeomDocuments::convertedEllipsesAreDrawnAsPainted()
{
    Workplace const place;
    place.write("in.svg",
        svg("<g transform='rotate(90) scale(1 -1)'><ellipse cx='25' cy='50' "
            "rx='20' ry='45'/></g>"));
    COMPARE_EXIT(place.run({"convert", "in.svg", "-o", "out.xml"}), 0);
    QVERIFY(place.read("out.xml").contains("<Ellipse>"));
    QPainterPath ellipse;
    ellipse.addEllipse(QPointF(50.0, 25.0), 45.0, 20.0);
    QCOMPARE(differences(rendered(place, "out.xml"), drawn(ellipse)), 0);
}

void TestKpgeomDocuments::convertedShapesAreFilledAsPainted_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<bool>("isEvenOdd");
    QTest::addColumn<bool>("needsRule"); // beside the outline, and a line that tells of it
    QTest::newRow("square") << square << false << false;
    QTest::newRow("square, evenodd") << square << true << false;
    QTest::newRow("hole by direction") << square + squareInsideReversed << false << false;
    QTest::newRow("hole by direction, evenodd") << square + squareInsideReversed << true << false;
    QTest::newRow("hole, evenodd") << square + squareInside << true << false;
    QTest::newRow("square within a square") << square + squareInside << false << true;
    QTest::newRow("squares that overlap") << square + squareAcross << false << true;
    QTest::newRow("squares that overlap, evenodd") << square + squareAcross << true << false;
    QTest::newRow("pentagram") << star << false << true;
    QTest::newRow("pentagram, evenodd") << star << true << true;
}

void TestKpgeomDocuments::convertedShapesAreFilledAsPainted()
{
    QFETCH(QByteArray, data);
    QFETCH(bool, isEvenOdd);
    QFETCH(bool, needsRule);
    QByteArray const rule = isEvenOdd ? "evenodd" : "nonzero";
    QImage const expected = drawn(painterPath(data, isEvenOdd ? Qt::OddEvenFill : Qt::WindingFill));
    Workplace const place;
    place.write("in.svg", svg("<path fill-rule='" + rule + "' d='" + data + "'/>"));
    Result const result = place.run({"convert", "in.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(place.read("out.xml").count("FillRule=\"" + rule + "\""), needsRule ? 1 : 0);
    QCOMPARE(place.read("out.xml").count("FillRule="), needsRule ? 1 : 0);
    QCOMPARE(result.err,
        needsRule ? "in.svg: 1 shape would be filled otherwise by the other rule: FillRule=\""
                + rule + "\" beside the outline says so\n"
                  : QByteArray());
    QCOMPARE(differences(rendered(place, "out.xml"), expected), 0);
    // A reader that knows no FillRule takes either rule.
    for (QString const& other : {QString("evenodd"), QString("nonzero")}) {
        QByteArray out = place.read("out.xml");
        place.write("bare.xml", out.replace(" FillRule=\"" + rule + "\"", ""));
        int const wrong =
            differences(rendered(place, "bare.xml", {"--fill-rule", other}), expected);
        QCOMPARE(wrong > 0, needsRule && other != rule);
    }
    // Without a filling there is nothing for a rule to decide.
    place.write("in.svg",
        svg("<path fill='none' stroke='black' fill-rule='" + rule + "' d='" + data + "'/>"));
    Result const line = place.run({"convert", "in.svg", "-o", "out.xml"});
    COMPARE_EXIT(line, 0);
    QCOMPARE(line.err, QByteArray());
    QVERIFY(!place.read("out.xml").contains("FillRule"));
}

void TestKpgeomDocuments::convertedGlyphsAreFilledAsPainted()
{
    // The cedilla of this face is a contour of its own that overlaps the letter.
    QString const text = QString::fromUtf8("o\xc3\xa7");
    Workplace const place;
    Result const result = place.run({"convert", "--font", sans, "--text", text, "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err,
        sans.toUtf8()
            + ": 1 shape would be filled otherwise by the other rule: FillRule=\"nonzero\" beside "
              "the outline says so\n");
    QByteArray out = place.read("out.xml");
    QCOMPARE(out.count("FillRule="), 1);
    QVERIFY(out.indexOf("FillRule=\"nonzero\"") > out.indexOf("Name=\"\xc3\xa7\""));
    QImage const whole = rendered(place, "out.xml");
    QVERIFY(whole == rendered(place, "out.xml", {"--fill-rule", "nonzero"}));
    place.write("bare.xml", out.replace(" FillRule=\"nonzero\"", ""));
    QVERIFY(whole == rendered(place, "bare.xml", {"--fill-rule", "nonzero"}));
    QVERIFY(whole != rendered(place, "bare.xml", {"--fill-rule", "evenodd"}));
}

void TestKpgeomDocuments::convertNamesEachLoss()
{
    QByteArray const line = "<path d='M1 1L9 1' fill='none' stroke='black' ";
    Workplace const place;
    place.write("in.svg",
        svg("<linearGradient id='g'><stop stop-color='red'/><stop offset='1'/></linearGradient>"
            "<rect width='9' height='9'/>"
            "<rect width='9' height='9' fill='url(#g)' stroke='red'/>"
            "<rect width='9' height='9' fill='#000100'/>"
            "<g opacity='0.5'><rect width='9' height='9'/><circle r='5'/></g>"
            "<rect width='9' height='9' fill-opacity='0.5'/>"
            + line + "/>" + line + "stroke-width='2'/><g transform='scale(3)'>" + line + "/></g>"
            + line + "stroke-dasharray='3 2'/>" + line + "stroke-linecap='round'/>" + line
            + "stroke-linejoin='round'/><image width='9' height='9'/><image/>"
              "<clipPath id='c'/><filter id='f'/><filter id='h'/><mask id='m'/>"));
    Result const result = place.run({"convert", "in.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(QString::fromUtf8(result.err).split('\n'),
        QStringList({"in.svg: 1 clipPath: without effect, shapes in it may be painted",
            "in.svg: 2 filter: without effect, shapes in it may be painted",
            "in.svg: 1 mask: without effect, shapes in it may be painted",
            "in.svg: 2 images: left out",
            "in.svg: 2 shapes with a colour other than black: not kept",
            "in.svg: 1 shape with a gradient or pattern: not kept",
            "in.svg: 3 shapes with opacity below 1: not kept",
            "in.svg: 2 shapes with a line width other than 1: not kept",
            "in.svg: 1 shape with a dashed line: not kept",
            "in.svg: 2 shapes with line ends other than butt, or joins other than miter: not kept",
            ""}));
}

void TestKpgeomDocuments::convertTakesFinerUnitsWhereLinesWouldVanish_data()
{
    QTest::addColumn<QByteArray>("end"); // of a line from (10, 10) in a picture 100 wide
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("width");
    QTest::addColumn<int>("lost");
    QStringList const usual;
    QTest::newRow("a unit long") << QByteArray("10.02 10") << usual << QByteArray("10000") << 0;
    QTest::newRow("less than a ten-thousandth")
        << QByteArray("10.005 10.005") << usual << QByteArray("100000") << 0;
    QTest::newRow("less than a hundred-thousandth")
        << QByteArray("10.0005 10.0005") << usual << QByteArray("100000") << 1;
    QTest::newRow("no length") << QByteArray("10 10") << usual << QByteArray("10000") << 0;
    QTest::newRow("lost at the scale asked for")
        << QByteArray("10.5 10") << QStringList {"--scale", "1"} << QByteArray("100") << 1;
    QTest::newRow("kept at the scale asked for")
        << QByteArray("10.0005 10") << QStringList {"--scale", "5000"} << QByteArray("500000") << 0;
}

void TestKpgeomDocuments::convertTakesFinerUnitsWhereLinesWouldVanish()
{
    QFETCH(QByteArray, end);
    QFETCH(QStringList, options);
    QFETCH(QByteArray, width);
    QFETCH(int, lost);
    Workplace const place;
    place.write("in.svg", svg("<path d='M10 10L" + end + "L90 40L10 40Z'/>"));
    Result const result = place.run(QStringList {"convert", "in.svg", "-o", "out.xml"} + options);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err,
        lost == 0 ? QByteArray()
                  : QByteArray("in.svg: 1 line of less than one unit: not drawn, unless at a "
                               "larger scale\n"));
    QVERIFY2(place.read("out.xml").contains(" Width=\"" + width + "\""),
        place.read("out.xml").left(200).constData());
}

void TestKpgeomDocuments::convertedPictureIsClean()
{
    Workplace const place;
    place.write("in.svg", svg("<rect width='10' height='10'/><circle cx='50' cy='25' r='5'/>"));
    COMPARE_EXIT(place.run({"convert", "in.svg", "-o", "out.xml"}), 0);
    Result const check = place.run({"check", "out.xml"});
    COMPARE_EXIT(check, 0);
    QCOMPARE(check.out, QByteArray("out.xml: outlines: 2, warnings: 0\n"));
}

void TestKpgeomDocuments::convertSaysWhatIsLeftOut()
{
    Workplace const place;
    place.write("in.svg",
        svg("<clipPath id='c'><rect width='5' height='5'/></clipPath>"
            "<rect width='10' height='10' clip-path='url(#c)'/>"
            "<image width='9' height='9' xlink:href='other.png'/>"));
    Result const result = place.run({"convert", "in.svg", "-o", "out.xml"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err,
        QByteArray("in.svg: 1 clipPath: without effect, shapes in it may be painted\n"
                   "in.svg: 1 image: left out\n"));
    QVERIFY(place.read("out.xml").contains("<Geometry"));
}

void TestKpgeomDocuments::textBecomesAnOutlineForEachGlyph()
{
    Workplace const place;
    COMPARE_EXIT(place.run({"convert", "--font", sans, "--text", QString::fromUtf8("l \xc3\x84l"),
                     "-o", "out.xml"}),
        0);
    QByteArray const out = place.read("out.xml");
    QCOMPARE(readOutlines(out).size(), 3);
    QVERIFY(out.indexOf("Name=\"l\"") < out.indexOf("Name=\"\xc3\x84\""));
    QCOMPARE(out.count("Name=\"l\""), 2);
    // The stem of an l is 184 of 2048 units of this face wide and starts at 193.
    QVERIFY(out.contains("<X V=\"193\" "));
    QVERIFY(out.contains("<X V=\"377\" "));
    COMPARE_EXIT(
        place.run({"convert", "--font", sans, "--text", "l", "--em", "4096", "-o", "out.xml"}), 0);
    QVERIFY(place.read("out.xml").contains("<X V=\"386\" "));
}

void TestKpgeomDocuments::textWithoutGlyphsIsTold()
{
    Workplace const place;
    Result const some = place.run(
        {"convert", "--font", sans, "--text", QString::fromUtf8("l\xe4\xb8\xad"), "-o", "out.xml"});
    COMPARE_EXIT(some, 0);
    QCOMPARE(some.err, (sans + ": no glyph for U+4E2D\n").toUtf8());
    QCOMPARE(readOutlines(place.read("out.xml")).size(), 1);
    QVERIFY(QFile::remove(place.path("out.xml")));
    COMPARE_FAILURE(place.run({"convert", "--font", sans, "--text", "   ", "-o", "out.xml"}), 1,
        sans.toUtf8() + ": nothing in it becomes an outline");
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomDocuments::textTooLongNamesAnEmThatWillDo()
{
    Workplace const place;
    QStringList const text = {
        "convert", "--font", sans, "--text", QString(700, 'W'), "-o", "out.xml"};
    COMPARE_FAILURE(place.run(text), 1,
        sans.toUtf8()
            + ": the picture would be 1.4175e+06 by 2384 units large, more than 1000000; --em 1444 "
              "would do");
    QCOMPARE(place.entries(), QStringList());
    Result const larger = place.run(text + QStringList {"--em", "1445"});
    COMPARE_EXIT(larger, 1);
    QVERIFY(larger.err.endsWith("--em 1444 would do\n"));
    Result const fitting = place.run(text + QStringList {"--em", "1444"});
    COMPARE_EXIT(fitting, 0);
    QCOMPARE(fitting.err, QByteArray());
    QCOMPARE(place.read("out.xml").count("<Geometry "), 700);
}

void TestKpgeomDocuments::fontsThatCannotBeReadAreTold_data()
{
    QTest::addColumn<QString>("font");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("missing") << "none.ttf" << QByteArray("none.ttf: there is no such font file");
    QTest::newRow("no font") << "in.svg" << QByteArray("in.svg: not a font file that can be read");
    QTest::newRow("folder") << "." << QByteArray(".: the font file cannot be read");
    QTest::newRow("device") << "/dev/null" << QByteArray("/dev/null: the font file cannot be read");
}

void TestKpgeomDocuments::fontsThatCannotBeReadAreTold()
{
    QFETCH(QString, font);
    QFETCH(QByteArray, line);
    Workplace const place;
    place.write("in.svg", svg("<rect width='10' height='10'/>"));
    COMPARE_FAILURE(
        place.run({"convert", "--font", font, "--text", "a", "-o", "out.xml"}), 1, line);
    QCOMPARE(place.entries(), QStringList {"in.svg"});
}

void TestKpgeomDocuments::convertReadsStandardInput()
{
    Workplace const place;
    Workplace::Start start;
    start.input = svg("<rect width='10' height='10'/>");
    Result const result = place.run({"convert", "-", "-o", "-"}, start);
    COMPARE_EXIT(result, 0);
    QCOMPARE(readOutlines(result.out).size(), 1);
    start.input = "<svg>\n</D>";
    COMPARE_FAILURE(place.run({"convert", "-", "-o", "-"}, start), 1,
        "<stdin>:2:5: Opening and ending tag mismatch.");
    // An empty name is a picture's that is not there, and not a text.
    COMPARE_FAILURE(place.run({"convert", "", "-o", "-"}), 1, "\"\": No file name specified");
}

void TestKpgeomDocuments::whatCannotBeConvertedIsTold_data()
{
    QTest::addColumn<QByteArray>("picture");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("malformed") << QByteArray("<svg>\n</D>")
                               << QByteArray("in.svg:2:5: Opening and ending tag mismatch.");
    QTest::newRow("truncated") << QByteArray("<svg>\n<rect")
                               << QByteArray("in.svg:2:6: Premature end of document.");
    QTest::newRow("empty") << QByteArray() << QByteArray("in.svg: the picture is empty");
    QTest::newRow("another document")
        << QByteArray("<html/>") << QByteArray("in.svg: not an SVG picture");
    QTest::newRow("nothing painted")
        << svg("<defs><rect/></defs>") << QByteArray("in.svg: nothing in it becomes an outline");
    QTest::newRow("damaged compression") << QByteArray(
        "\x1f\x8b\x08") << QByteArray("in.svg: the compressed picture is damaged or too large");
    QTest::newRow("no size") << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'/>")
                             << QByteArray("in.svg: the picture has no size");
}

void TestKpgeomDocuments::whatCannotBeConvertedIsTold()
{
    QFETCH(QByteArray, picture);
    QFETCH(QByteArray, line);
    Workplace const place;
    place.write("in.svg", picture);
    COMPARE_FAILURE(place.run({"convert", "in.svg", "-o", "out.xml"}), 1, line);
    QCOMPARE(place.entries(), QStringList {"in.svg"});
}

void TestKpgeomDocuments::wrongUsageOfConvertIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("what");
    QByteArray const together = "--font and --text go together";
    QTest::newRow("nothing") << QStringList {"-o", "out.xml"}
                             << QByteArray("exactly one input file is needed");
    QTest::newRow("two pictures") << QStringList {"in.svg", "in.svg", "-o", "out.xml"}
                                  << QByteArray("exactly one input file is needed");
    QTest::newRow("no output") << QStringList {"in.svg"} << QByteArray("no output file given (-o)");
    QTest::newRow("font alone") << QStringList {"--font", sans, "-o", "out.xml"} << together;
    QTest::newRow("text alone") << QStringList {"--text", "a", "-o", "out.xml"} << together;
    QTest::newRow("empty text") << QStringList {"--font", sans, "--text", "", "-o", "out.xml"}
                                << together;
    QTest::newRow("picture and text") << QStringList {"in.svg", "--font", sans, "--text", "a", "-o",
        "out.xml"} << QByteArray("--font and --text take no input file");
    QTest::newRow("unknown form") << QStringList {"in.svg", "--form", "json", "-o", "out.xml"}
                                  << QByteArray("--form takes dom or stream, not 'json'");
    QTest::newRow("scale of nothing")
        << QStringList {"in.svg", "--scale", "0", "-o", "out.xml"}
        << QByteArray("--scale takes a number greater than 0 and at most 1000000, and an SVG file");
    QTest::newRow("scale of text")
        << QStringList {"--font", sans, "--text", "a", "--scale", "2", "-o", "out.xml"}
        << QByteArray("--scale takes a number greater than 0 and at most 1000000, and an SVG file");
    QTest::newRow("em of a picture")
        << QStringList {"in.svg", "--em", "9", "-o", "out.xml"}
        << QByteArray("--em takes a number greater than 0 and at most 1000000, and a font");
}

void TestKpgeomDocuments::wrongUsageOfConvertIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, what);
    Workplace const place;
    place.write("in.svg", svg("<rect width='10' height='10'/>"));
    COMPARE_FAILURE(place.run(QStringList {"convert"} + arguments), 2,
        "kpgeom convert: " + what + " (see kpgeom convert --help)");
    QCOMPARE(place.entries(), QStringList {"in.svg"});
}

QTEST_GUILESS_MAIN(TestKpgeomDocuments)

#include "tst_kpgeom_documents.moc"
