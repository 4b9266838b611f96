#include "kpgeomtesting.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>

using namespace KpgeomTesting;

/** `kpgeom render`: what the pictures show. */
class TestKpgeomRender : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatIsTakenFromTheSuffix_data();
    void formatIsTakenFromTheSuffix();
    void formatOptionOutweighsTheSuffix();
    void pictureGoesToStandardOutput();
    void boxIsDrawnWithMargin();
    void svgLooksLikePng();
    void pdfHasOnePageOfThatSize();
    void flagsDecideWhatIsPainted_data();
    void flagsDecideWhatIsPainted();
    void fillRuleDecidesOnHoles_data();
    void fillRuleDecidesOnHoles();
    void indexChoosesOutlines();
    void sizeRecomputesCoordinates();
    void scaleEnlarges();
    void largeDrawingsAreScaledDown();
    void emptyOutlinesDoNotEnlargeThePicture();
    void pointsShowTheirRules();
    void pointsOfCurvesAndEllipses();
    void sheetHasCellForEachOutline();
    void sheetHasCellForEachSize();
    void sheetOfWholeFiles();
    void sheetSaysWhatCannotBeDrawn();
    void outlinesThatCannotBeDrawnFail_data();
    void outlinesThatCannotBeDrawnFail();
    void picturesTooLargeFail_data();
    void picturesTooLargeFail();
    void missingIndexFails();
    void documentsWithoutOutlinesFail();
    void oneBadFileFails();
};

namespace {

QRgb const white = 0xffffffff;
QRgb const pale = 0xffdbe9f6;

QImage png(QByteArray const& file)
{
    return QImage::fromData(file, "PNG").convertToFormat(QImage::Format_RGB32);
}

QImage renderedSvg(QByteArray const& file)
{
    QSvgRenderer renderer(file);
    QImage image(renderer.defaultSize(), QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    return image;
}

/** The viewBox of an SVG file, "malformed" if it is not well-formed. */
QString viewBox(QByteArray const& file)
{
    QXmlStreamReader reader(file);
    reader.readNextStartElement();
    QString const result = reader.attributes().value("viewBox").toString();
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? QString("malformed") : result;
}

/** The texts of an SVG file. */
QStringList texts(QByteArray const& file)
{
    QStringList result;
    QXmlStreamReader reader(file);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("text"))
            result << reader.readElementText().trimmed();
    }
    return result;
}

/** A square, open at its end, that runs clockwise from `left`, `left`. */
QByteArray squareSegments(int left, int side)
{
    auto const point = [](char const* kind, int x, int y) {
        return QString("<%1><X V=\"%2\"/><Y V=\"%3\"/></%1>").arg(kind).arg(x).arg(y).toUtf8();
    };
    int const right = left + side;
    return point("MoveTo", left, left) + point("LineTo", right, left)
        + point("LineTo", right, right) + point("LineTo", left, right)
        + point("LineTo", left, left);
}

/** Equal but for the rounding of what is translucent. */
bool isNear(QRgb first, QRgb second)
{
    return std::abs(qRed(first) - qRed(second)) <= 1
        && std::abs(qGreen(first) - qGreen(second)) <= 1
        && std::abs(qBlue(first) - qBlue(second)) <= 1;
}

QString hex(QRgb colour)
{
    return QString::number(colour, 16);
}

/** A colour, where antialiasing may have left its traces. */
bool isDark(QRgb colour)
{
    return qGray(colour) < 140;
}

} // namespace

void TestKpgeomRender::formatIsTakenFromTheSuffix_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("start");

    QTest::newRow("svg") << "a.svg" << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"");
    QTest::newRow("png") << "a.png" << QByteArray("\x89PNG\r\n\x1a\n");
    QTest::newRow("pdf") << "a.pdf" << QByteArray("%PDF-1.4\n");
    QTest::newRow("upper case") << "a.PNG" << QByteArray("\x89PNG\r\n\x1a\n");
    QTest::newRow("last suffix") << "a.svg.png" << QByteArray("\x89PNG\r\n\x1a\n");
}

void TestKpgeomRender::formatIsTakenFromTheSuffix()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, start);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    Result const result = place.run({"render", "a.xml", "-o", file});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(place.read(file).left(start.size()), start);
}

void TestKpgeomRender::formatOptionOutweighsTheSuffix()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(place.run({"render", "a.xml", "--output=a.svg", "--format", "png"}), 0);
    QCOMPARE(png(place.read("a.svg")).size(), QSize(120, 80));
}

void TestKpgeomRender::pictureGoesToStandardOutput()
{
    Workplace const place;
    for (QString const& format : {QString("svg"), QString("png")}) {
        place.run({"render", "-", "-o", "file", "--format", format}, {boxGeometry()});
        Result const result =
            place.run({"render", "-", "-o", "-", "--format", format}, {boxGeometry()});
        COMPARE_EXIT(result, 0);
        QCOMPARE(result.err, QByteArray());
        QVERIFY(!result.out.isEmpty());
        QCOMPARE(result.out, place.read("file"));
    }
    Result const pdf = place.run({"render", "-", "-o", "-", "--format", "pdf"}, {boxGeometry()});
    QVERIFY(pdf.out.startsWith("%PDF-"));
    QVERIFY(pdf.out.trimmed().endsWith("%%EOF"));
}

void TestKpgeomRender::boxIsDrawnWithMargin()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png"}), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(image.size(), QSize(120, 80));
    for (QPoint const outside : {QPoint(0, 0), QPoint(119, 79), QPoint(60, 7), QPoint(7, 40)})
        QCOMPARE(hex(image.pixel(outside)), hex(white));
    for (QPoint const inside : {QPoint(60, 40), QPoint(12, 12), QPoint(107, 67)})
        QCOMPARE(hex(image.pixel(inside)), hex(pale));
    // Lines 1.5 wide on the edges at 10 and 110, 10 and 70: pixels 9 and 10 are half covered.
    for (QPoint const edge : {QPoint(60, 9), QPoint(60, 10), QPoint(60, 69), QPoint(60, 70),
             QPoint(9, 40), QPoint(10, 40), QPoint(109, 40), QPoint(110, 40)})
        QVERIFY2(isDark(image.pixel(edge)), qPrintable(hex(image.pixel(edge))));
}

void TestKpgeomRender::svgLooksLikePng()
{
    Workplace const place;
    place.write("a.xml",
        "<D>" + boxGeometry() + "<Geometry NoLine=\"1\">" + squareSegments(20, 30)
            + "<Ellipse><X V=\"70\"/><Y V=\"30\"/><A V=\"20\"/><B V=\"10\"/></Ellipse>"
              "</Geometry></D>");
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.svg", "--scale", "3"}), 0);
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png", "--scale", "3"}), 0);
    QCOMPARE(viewBox(place.read("a.svg")), QString("0 0 320 200"));
    QImage const expected = png(place.read("a.png"));
    QImage const actual = renderedSvg(place.read("a.svg")).scaled(expected.size());
    QCOMPARE(expected.size(), QSize(320, 200));
    for (QPoint const point : {QPoint(3, 3), QPoint(160, 196), QPoint(35, 35), QPoint(115, 115),
             QPoint(220, 100), QPoint(275, 60), QPoint(300, 180)})
        QVERIFY2(isNear(actual.pixel(point), expected.pixel(point)),
            qPrintable(hex(actual.pixel(point)) + ' ' + hex(expected.pixel(point))));
}

void TestKpgeomRender::pdfHasOnePageOfThatSize()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.pdf", "--scale", "2.5"}), 0);
    QByteArray const file = place.read("a.pdf");
    QVERIFY2(file.contains("/MediaBox [0 0.5 202.5 128]"), file.left(2000));
    QCOMPARE(file.count("/Type /Page\n"), 1);
}

void TestKpgeomRender::flagsDecideWhatIsPainted_data()
{
    QTest::addColumn<QByteArray>("flags");
    QTest::addColumn<QString>("inside");
    QTest::addColumn<bool>("hasLine");

    QTest::newRow("fill and line") << QByteArray("Closed=\"1\"") << hex(pale) << true;
    QTest::newRow("line only") << QByteArray("NoFill=\"1\" Closed=\"1\"") << hex(white) << true;
    // Ink at 0xb0 of 0xff over white.
    QTest::newRow("fill only") << QByteArray("NoLine=\"1\" Closed=\"1\"") << "ff647791" << false;
    QTest::newRow("nothing") << QByteArray("NoLine=\"1\" NoFill=\"1\"") << hex(white) << false;
}

void TestKpgeomRender::flagsDecideWhatIsPainted()
{
    QFETCH(QByteArray, flags);
    QFETCH(QString, inside);
    QFETCH(bool, hasLine);

    Workplace const place;
    place.write("a.xml", boxGeometry(flags));
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png"}), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(hex(image.pixel(60, 40)), inside);
    QCOMPARE(hex(image.pixel(60, 9)) != hex(white), hasLine);
}

void TestKpgeomRender::fillRuleDecidesOnHoles_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QRgb>("inside");

    QTest::newRow("default") << QStringList() << pale;
    QTest::newRow("nonzero") << QStringList {"--fill-rule", "nonzero"} << pale;
    QTest::newRow("evenodd") << QStringList {"--fill-rule", "evenodd"} << white;
}

void TestKpgeomRender::fillRuleDecidesOnHoles()
{
    QFETCH(QStringList, options);
    QFETCH(QRgb, inside);

    Workplace const place;
    place.write("a.xml",
        "<Geometry Closed=\"1\">" + squareSegments(0, 100) + squareSegments(30, 40)
            + "</Geometry>");
    COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.png"} + options), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(hex(image.pixel(60, 60)), hex(inside));
    QCOMPARE(hex(image.pixel(20, 20)), hex(pale));
}

void TestKpgeomRender::indexChoosesOutlines()
{
    Workplace const place;
    place.write("a.xml",
        "<D><Geometry Closed=\"1\">" + squareSegments(0, 50) + "</Geometry><Geometry Closed=\"1\">"
            + squareSegments(200, 30) + "</Geometry><Geometry Closed=\"1\">"
            + squareSegments(100, 70) + "</Geometry></D>");
    auto const sizeWith = [&place](QStringList const& options) {
        place.run(QStringList {"render", "a.xml", "-o", "a.png"} + options);
        return png(place.read("a.png")).size();
    };
    QCOMPARE(sizeWith({}), QSize(250, 250));
    QCOMPARE(sizeWith({"--index", "1"}), QSize(70, 70));
    QCOMPARE(sizeWith({"--index", "2"}), QSize(50, 50));
    QCOMPARE(sizeWith({"--index", "3"}), QSize(90, 90));
    QCOMPARE(sizeWith({"--index", "3", "--index", "1"}), QSize(190, 190));
    QCOMPARE(sizeWith({"--index=1", "--index=1"}), QSize(70, 70));
}

void TestKpgeomRender::sizeRecomputesCoordinates()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png", "--size", "40x200"}), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(image.size(), QSize(60, 220));
    QCOMPARE(hex(image.pixel(30, 110)), hex(pale));
    QVERIFY(isDark(image.pixel(49, 110)));
    QVERIFY(isDark(image.pixel(30, 209)));

    // The box belongs to the picture, even where the outline does not reach its sides.
    place.write("b.xml", "<Geometry>" + squareSegments(10, 10) + "</Geometry>");
    COMPARE_EXIT(place.run({"render", "b.xml", "-o", "b.svg", "--size", "300.5x10"}), 0);
    QCOMPARE(viewBox(place.read("b.svg")), QString("0 0 321 30"));
}

void TestKpgeomRender::scaleEnlarges()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png", "--scale", "4"}), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(image.size(), QSize(420, 260));
    QCOMPARE(hex(image.pixel(210, 130)), hex(pale));
    QVERIFY(isDark(image.pixel(409, 130)));

    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "b.png", "--scale", "1e-9"}), 0);
    QCOMPARE(png(place.read("b.png")).size(), QSize(21, 21));
}

void TestKpgeomRender::largeDrawingsAreScaledDown()
{
    Workplace const place;
    for (QString const& size : {QString("1000000x500000"), QString("8000x4000")}) {
        place.write("a.xml", boxGeometry());
        COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.svg", "--size", size}), 0);
        QCOMPARE(viewBox(place.read("a.svg")), QString("0 0 2020 1020"));
    }
    place.write("a.xml",
        "<Geometry Closed=\"1\"><MoveTo/><LineTo><X V=\"1e90\"/><Y "
        "V=\"5e89\"/></LineTo></Geometry>");
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.svg"}), 0);
    QCOMPARE(viewBox(place.read("a.svg")), QString("0 0 2020 1020"));
}

void TestKpgeomRender::emptyOutlinesDoNotEnlargeThePicture()
{
    Workplace const place;
    place.write("a.xml",
        "<D><Geometry Closed=\"1\"/><Geometry>" + squareSegments(500, 30)
            + "</Geometry><Geometry Closed=\"0\"/></D>");
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.svg"}), 0);
    QCOMPARE(viewBox(place.read("a.svg")), QString("0 0 50 50"));
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.svg", "--index", "1"}), 0);
    QCOMPARE(viewBox(place.read("a.svg")), QString("0 0 20 20"));
}

void TestKpgeomRender::pointsShowTheirRules()
{
    QRgb const colours[] = {0xff808080, 0xffd62728, 0xff1f77b4, 0xffff7f0e, 0xff17becf, 0xff2ca02c,
        0xff9467bd, 0xff8c564b, 0xff000000};
    QByteArray points;
    for (int rule = 0; rule < 9; ++rule) {
        points += QString("<MoveTo><X V=\"%1\" B=\"%2\"/><Y V=\"%3\" B=\"%4\"/></MoveTo>")
                      .arg(30 * rule)
                      .arg(rule)
                      .arg(20 * rule)
                      .arg((rule + 1) % 9)
                      .toUtf8();
    }
    // A path of moves alone draws nothing; the line spans the picture.
    points += "<MoveTo/><LineTo><X V=\"240\"/><Y V=\"160\"/></LineTo>";
    Workplace const place;
    place.write(
        "a.xml", "<Geometry Closed=\"0\" NoFill=\"1\" NoLine=\"1\">" + points + "</Geometry>");
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png", "--points"}), 0);
    QImage const image = png(place.read("a.png"));
    // Ten lines of legend below; it is wider than the outline.
    QCOMPARE(image.size(), QSize(280, 180 + 150));
    for (int rule = 1; rule < 8; ++rule) {
        QPoint const point(10 + 30 * rule, 10 + 20 * rule);
        QCOMPARE(hex(image.pixel(point - QPoint(3, 0))), hex(colours[rule]));
        QCOMPARE(hex(image.pixel(point + QPoint(2, 0))), hex(colours[rule + 1]));
    }
    for (int rule = 0; rule < 9; ++rule)
        QCOMPARE(hex(image.pixel(12, 180 + 7 + 15 * rule)), hex(colours[rule]));

    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.svg", "--points"}), 0);
    QCOMPARE(texts(place.read("a.svg")),
        QStringList({"absolute: fixed", "width: rate \303\227 width",
            "height: rate \303\227 height", "right: width \342\210\222 rate",
            "bottom: height \342\210\222 rate", "side: rate \303\227 smaller side",
            "right-side: width \342\210\222 rate \303\227 smaller side",
            "bottom-side: height \342\210\222 rate \303\227 smaller side", "unknown: no rule",
            "left half: rule of x, right half: rule of y"}));
}

void TestKpgeomRender::pointsOfCurvesAndEllipses()
{
    Workplace const place;
    place.write("a.xml",
        "<D><Geometry Closed=\"0\" NoFill=\"1\" NoLine=\"1\"><MoveTo><X V=\"0\"/><Y "
        "V=\"100\"/></MoveTo>"
        "<CurveTo><X V=\"100\" B=\"3\"/><Y V=\"100\" B=\"3\"/><A V=\"0\" B=\"5\"/><B V=\"0\" "
        "B=\"5\"/>"
        "<C V=\"100\" B=\"6\"/><D V=\"0\" B=\"6\"/></CurveTo></Geometry>"
        "<Geometry Closed=\"0\" NoFill=\"1\" NoLine=\"1\"><Ellipse><X V=\"200\" B=\"4\"/><Y "
        "V=\"50\" "
        "B=\"4\"/>"
        "<A V=\"40\" B=\"5\"/><B V=\"30\" B=\"7\"/></Ellipse></Geometry></D>");
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png", "--points"}), 0);
    QImage const image = png(place.read("a.png"));
    // The control points at the top reach further than the curve.
    QCOMPARE(image.size(), QSize(280, 120 + 150));
    auto const colourAt = [&image](int x, int y) { return hex(image.pixel(10 + x, 10 + y)); };
    QCOMPARE(colourAt(98, 100), QString("ffff7f0e"));
    QCOMPARE(colourAt(1, 0), QString("ff2ca02c"));
    QCOMPARE(colourAt(98, 0), QString("ff9467bd"));
    QCOMPARE(colourAt(198, 50), QString("ff17becf"));
    QCOMPARE(colourAt(238, 50), QString("ff2ca02c"));
    QCOMPARE(colourAt(198, 80), QString("ff8c564b"));
    // The handle from the start to the first control point.
    QVERIFY(colourAt(0, 50) != hex(white));
}

void TestKpgeomRender::sheetHasCellForEachOutline()
{
    Workplace const place;
    place.write("a.xml",
        "<D><S Name=\"First\">" + boxGeometry() + "</S>" + boxGeometry("Closed=\"1\" NoFill=\"1\"")
            + "<S Name=\"Third &lt;\">" + boxGeometry() + "</S></D>");
    COMPARE_EXIT(place.run({"render", "a.xml", "--sheet", "-o", "a.svg"}), 0);
    QCOMPARE(texts(place.read("a.svg")), QStringList({"First", "#2", "Third <"}));
    // Two columns of 150 and two rows of 168, with a margin of 12.
    QCOMPARE(viewBox(place.read("a.svg")), QString("0 0 324 360"));

    COMPARE_EXIT(place.run({"render", "a.xml", "--sheet", "-o", "a.png"}), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(hex(image.pixel(12 + 75, 12 + 75)), hex(pale));
    QCOMPARE(hex(image.pixel(12 + 150 + 75, 12 + 75)), hex(white));
    QCOMPARE(hex(image.pixel(12 + 75, 12 + 168 + 75)), hex(pale));
    QCOMPARE(hex(image.pixel(12 + 150 + 75, 12 + 168 + 75)), hex(white));
    // A figure fills its cell but for the margin.
    QVERIFY(isDark(image.pixel(12 + 10, 12 + 75)));
    QVERIFY(isDark(image.pixel(12 + 139, 12 + 75)));

    COMPARE_EXIT(place.run({"render", "a.xml", "--sheet", "--index", "2", "-o", "b.svg"}), 0);
    QCOMPARE(texts(place.read("b.svg")), QStringList({"#2"}));
}

void TestKpgeomRender::sheetHasCellForEachSize()
{
    Workplace const place;
    place.write("a.xml", "<S Name=\"Box\">" + boxGeometry() + "</S>");
    QStringList const options {
        "render", "a.xml", "--sheet", "--size", "100x60", "--size", "50x100", "--size", "25.5x1"};
    COMPARE_EXIT(place.run(options + QStringList {"-o", "a.svg"}), 0);
    QCOMPARE(texts(place.read("a.svg")), QStringList({"100 x 60", "50 x 100", "25.5 x 1", "Box"}));
    QCOMPARE(viewBox(place.read("a.svg")), QString("0 0 474 210"));

    COMPARE_EXIT(place.run(options + QStringList {"-o", "a.png"}), 0);
    QImage const image = png(place.read("a.png"));
    // 130 pixels for 100 units in every cell, around the middles at 87, 237 and 387.
    QVERIFY(isDark(image.pixel(87 - 65, 87)));
    QCOMPARE(hex(image.pixel(87, 87 + 30)), hex(pale));
    QCOMPARE(hex(image.pixel(87, 87 + 50)), hex(white));
    QVERIFY(isDark(image.pixel(237 - 33, 87)));
    QCOMPARE(hex(image.pixel(237, 87 + 60)), hex(pale));
    QCOMPARE(hex(image.pixel(237 + 40, 87)), hex(white));
    QVERIFY(isDark(image.pixel(387, 87)));
}

void TestKpgeomRender::sheetOfWholeFiles()
{
    Workplace const place;
    place.write("one.xml", "<D>" + boxGeometry() + boxGeometry() + "</D>");
    place.write("two.b.xml", "<D>" + boxGeometry() + "</D>");
    COMPARE_EXIT(
        place.run({"render", "one.xml", "two.b.xml", "--sheet", "--whole-files", "-o", "a.svg"}),
        0);
    QCOMPARE(texts(place.read("a.svg")), QStringList({"one", "two.b"}));
    COMPARE_EXIT(place.run({"render", "one.xml", "two.b.xml", "--sheet", "-o", "a.svg"}), 0);
    QCOMPARE(texts(place.read("a.svg")), QStringList({"#1", "#2", "#1"}));
}

void TestKpgeomRender::sheetSaysWhatCannotBeDrawn()
{
    Workplace const place;
    place.write("a.xml",
        "<D>" + boxGeometry()
            + "<Geometry><MoveTo/><LineTo><X V=\"nan\"/></LineTo></Geometry></D>");
    COMPARE_EXIT(place.run({"render", "a.xml", "--sheet", "--points", "-o", "a.svg"}), 0);
    QCOMPARE(texts(place.read("a.svg")).mid(0, 3), QStringList({"#1", "cannot be drawn", "#2"}));
}

void TestKpgeomRender::outlinesThatCannotBeDrawnFail_data()
{
    QTest::addColumn<QByteArray>("segment");

    QTest::newRow("not a number") << QByteArray("<LineTo><X V=\"nan\"/><Y V=\"1\"/></LineTo>");
    QTest::newRow("infinity") << QByteArray("<MoveTo><X V=\"1\"/><Y V=\"-inf\"/></MoveTo>");
    QTest::newRow("huge") << QByteArray("<LineTo><X V=\"1e308\"/><Y V=\"1\"/></LineTo>");
    QTest::newRow("beyond what Qt draws")
        << QByteArray("<LineTo><X V=\"-1e101\"/><Y V=\"1\"/></LineTo>");
    QTest::newRow("control point") << QByteArray("<CurveTo><A V=\"inf\"/></CurveTo>");
    QTest::newRow("radius") << QByteArray("<Ellipse><A V=\"nan\"/><B V=\"2\"/></Ellipse>");
    QTest::newRow("radius too large") << QByteArray("<Ellipse><A V=\"1e308\"/></Ellipse>");
}

void TestKpgeomRender::outlinesThatCannotBeDrawnFail()
{
    QFETCH(QByteArray, segment);

    Workplace const place;
    place.write("a.xml", "<Geometry Closed=\"1\"><MoveTo/>" + segment + "</Geometry>");
    for (QString const& file : {QString("a.svg"), QString("a.png"), QString("a.pdf")}) {
        COMPARE_FAILURE(place.run({"render", "a.xml", "-o", file}), 1,
            "a.xml: a coordinate is too large or no number and cannot be drawn");
        COMPARE_FAILURE(place.run({"render", "a.xml", "--points", "-o", file}), 1,
            "a.xml: a coordinate is too large or no number and cannot be drawn");
    }
    QCOMPARE(place.entries(), QStringList("a.xml"));
    place.write("b.xml", boxGeometry());
    COMPARE_FAILURE(place.run({"render", "b.xml", "a.xml", "-o", "c.svg"}), 1,
        "kpgeom render: a coordinate is too large or no number and cannot be drawn");
}

void TestKpgeomRender::picturesTooLargeFail_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("line");

    QByteArray const limit = ": at most 20000 a side, and 100 million in all (use a smaller "
                             "--scale, --size or --dpi)";
    QTest::newRow("wide") << QStringList {"--scale", "200"}
                          << QByteArray("a.xml: a picture of 20020 by 12020 is too large" + limit);
    QTest::newRow("area") << QStringList {"--scale", "150"}
                          << QByteArray("a.xml: a picture of 15020 by 9020 is too large" + limit);
    QTest::newRow("far too large") << QStringList {"--scale", "1e6", "--size",
        "1e6x1e6"} << QByteArray("a.xml: a picture of 1e+12 by 1e+12 is too large" + limit);
}

void TestKpgeomRender::picturesTooLargeFail()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, line);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    for (QString const& file : {QString("a.svg"), QString("a.png"), QString("a.pdf")})
        COMPARE_FAILURE(place.run(QStringList {"render", "a.xml", "-o", file} + options), 1, line);
    QCOMPARE(place.entries(), QStringList("a.xml"));
}

void TestKpgeomRender::missingIndexFails()
{
    Workplace const place;
    place.write("a.xml", "<D>" + boxGeometry() + boxGeometry() + "</D>");
    COMPARE_FAILURE(place.run({"render", "a.xml", "-o", "a.svg", "--index", "3"}), 1,
        "a.xml: there is no outline 3 among its 2");
    COMPARE_FAILURE(
        place.run({"render", "a.xml", "-o", "a.svg", "--index", "1", "--index", "2147483647"}), 1,
        "a.xml: there is no outline 2147483647 among its 2");
    QCOMPARE(place.entries(), QStringList("a.xml"));
}

void TestKpgeomRender::documentsWithoutOutlinesFail()
{
    Workplace const place;
    place.write("a.xml", "<D/>");
    COMPARE_FAILURE(place.run({"render", "a.xml", "-o", "a.svg"}), 1, "a.xml: no outline to draw");
    COMPARE_FAILURE(
        place.run({"render", "a.xml", "--sheet", "-o", "a.svg"}), 1, "a.xml: no outline to draw");
    QCOMPARE(place.entries(), QStringList("a.xml"));
}

void TestKpgeomRender::oneBadFileFails()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    place.write("b.xml", "<D></E>");
    COMPARE_FAILURE(place.run({"render", "a.xml", "b.xml", "-o", "a.svg"}), 1,
        "b.xml:1:8: Opening and ending tag mismatch.");
    QCOMPARE(place.entries(), QStringList({"a.xml", "b.xml"}));
}

QTEST_MAIN(TestKpgeomRender)

#include "tst_kpgeom_render.moc"
