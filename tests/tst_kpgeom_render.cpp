// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QtEndian>

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
    void unitIsAsLongInEveryFormat_data();
    void unitIsAsLongInEveryFormat();
    void densityChangesDotsAlone_data();
    void densityChangesDotsAlone();
    void marginLiesAroundTheBox();
    void whatLiesBeyondTheMarginIsCutOff();
    void marginLiesAroundTheDrawing();
    void drawingFitsIntoWidthAndHeight_data();
    void drawingFitsIntoWidthAndHeight();
    void lineIsFittedByItsLength();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void groundIsOfTheColour_data();
    void groundIsOfTheColour();
    void groundReachesTheLastPixel();
    void filesHaveATitle_data();
    void filesHaveATitle();
    void titleIsEscaped();
    void filesAreTheSameEveryTime();
    void dateIsThatOfTheEnvironment_data();
    void dateIsThatOfTheEnvironment();
    void offsetsOfThePdfAreRight_data();
    void offsetsOfThePdfAreRight();
    void documentNamesTheFillRule_data();
    void documentNamesTheFillRule();
    void sheetFillsEachOutlineByItsRule();
    void linesThatVanishAreTold_data();
    void linesThatVanishAreTold();
    void marksLieOverLaterOutlines_data();
    void marksLieOverLaterOutlines();
    void legendIsNotClipped_data();
    void legendIsNotClipped();
    void sheetTooLargeFails();
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

/** What a chunk of a PNG file holds; empty if there is none. */
QByteArray chunk(QByteArray const& file, QByteArray const& name)
{
    int const headLength = 8;
    int const checksumLength = 4;
    for (int at = 8; at + headLength <= file.size();) {
        int const length = int(qFromBigEndian<quint32>(file.constData() + at));
        if (file.mid(at + 4, 4) == name)
            return file.mid(at + headLength, length);
        at += headLength + length + checksumLength;
    }
    return QByteArray();
}

/** The dots a metre that a PNG file tells, as many upwards as sideways; else 0. */
int density(QByteArray const& file)
{
    QByteArray const told = chunk(file, "pHYs");
    bool const isSquare = told.size() == 9 && told.left(4) == told.mid(4, 4) && told.at(8) == 1;
    return isSquare ? int(qFromBigEndian<quint32>(told.constData())) : 0;
}

/** An attribute of the outermost element. */
QString rootAttribute(QByteArray const& file, char const* name)
{
    QXmlStreamReader reader(file);
    reader.readNextStartElement();
    return reader.attributes().value(QLatin1String(name)).toString();
}

/** The rest of the line of a PDF file that begins with a key. */
QByteArray pdfEntry(QByteArray const& file, QByteArray const& key)
{
    int const start = file.indexOf('\n' + key + ' ');
    int const value = start + key.size() + 2;
    return start < 0 ? QByteArray() : file.mid(value, file.indexOf('\n', value) - value);
}

/** A text of a PDF file: UTF-16 in brackets, special characters behind a backslash. */
QString pdfText(QByteArray const& literal)
{
    QByteArray bytes;
    for (int i = 1; i < literal.size() - 1; ++i) {
        if (literal.at(i) == '\\')
            ++i;
        bytes += literal.at(i);
    }
    QString text;
    for (int i = 2; i + 1 < bytes.size(); i += 2)
        text += QChar(ushort(uchar(bytes.at(i)) << 8 | uchar(bytes.at(i + 1))));
    return bytes.startsWith("\xfe\xff") ? text : QString("not UTF-16");
}

/** An outline of a line from (0, 0) to (`x`, `y`), which stay where they are. */
QByteArray fixedLine(QByteArray const& x, QByteArray const& y)
{
    QByteArray const end = "\" B=\"0\" P=\"0\"/>";
    return "<Geometry NoFill=\"1\"><MoveTo><X V=\"0" + end + "<Y V=\"0" + end
        + "</MoveTo><LineTo><X V=\"" + x + end + "<Y V=\"" + y + end + "</LineTo></Geometry>";
}

/** A frame that even-odd filling leaves empty in the middle, a square of 100 around one of 40. */
QByteArray frame()
{
    QByteArray segments = squareSegments(0, 100) + squareSegments(30, 40);
    return "<Geometry Closed=\"1\">" + segments.replace("\"/>", "\" B=\"0\"/>") + "</Geometry>";
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

void TestKpgeomRender::unitIsAsLongInEveryFormat_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<QByteArray>("page");

    // A page begins at the upper edge of the whole points that it takes.
    QTest::newRow("plain") << QStringList() << QSize(120, 80) << QByteArray("[0 0 90 60]");
    QTest::newRow("half points") << QStringList {"--scale", "2.5"} << QSize(270, 170)
                                 << QByteArray("[0 0.5 202.5 128]");
    QTest::newRow("quarters of points")
        << QStringList {"--margin", "2.25"} << QSize(105, 65) << QByteArray("[0 0.25 78.75 49]");
    QTest::newRow("exact box") << QStringList {"--margin", "0", "--size", "240x160"}
                               << QSize(240, 160) << QByteArray("[0 0 180 120]");
    QTest::newRow("box of one unit") << QStringList {"--margin", "0", "--size", "1x1"}
                                     << QSize(1, 1) << QByteArray("[0 0.25 0.75 1]");
    QTest::newRow("width") << QStringList {"--width", "333"} << QSize(333, 208)
                           << QByteArray("[0 0 249.75 156]");
    QTest::newRow("large") << QStringList {"--width", "12007"} << QSize(12007, 7213)
                           << QByteArray("[0 0.25 9005.25 5410]");
    QTest::newRow("sheet") << QStringList {"--sheet"} << QSize(174, 192)
                           << QByteArray("[0 0 130.5 144]");
}

void TestKpgeomRender::unitIsAsLongInEveryFormat()
{
    QFETCH(QStringList, options);
    QFETCH(QSize, pixels);
    QFETCH(QByteArray, page);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    if (pixels.width() < 10000) { // a PNG of that size takes long
        COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.png"} + options), 0);
        QCOMPARE(png(place.read("a.png")).size(), pixels);
        QCOMPARE(density(place.read("a.png")), 3780);
    }
    COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.svg"} + options), 0);
    QByteArray const svg = place.read("a.svg");
    QCOMPARE(rootAttribute(svg, "width"), QString::number(pixels.width()));
    QCOMPARE(rootAttribute(svg, "height"), QString::number(pixels.height()));
    QCOMPARE(viewBox(svg), QString("0 0 %1 %2").arg(pixels.width()).arg(pixels.height()));
    COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.pdf"} + options), 0);
    QCOMPARE(pdfEntry(place.read("a.pdf"), "/MediaBox"), page);
}

void TestKpgeomRender::densityChangesDotsAlone_data()
{
    QTest::addColumn<QString>("dotsPerInch");
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<int>("dotsPerMetre");

    // 120 by 80 units are 1.25 by 0.8333 inch.
    QTest::newRow("96") << "96" << QSize(120, 80) << 3780;
    QTest::newRow("300") << "300" << QSize(375, 250) << 11811;
    QTest::newRow("72") << "72" << QSize(90, 60) << 2835;
    QTest::newRow("a fraction") << "100.8" << QSize(126, 84) << 3969;
    QTest::newRow("a pixel that is begun") << "100" << QSize(125, 84) << 3937;
    QTest::newRow("few") << "12" << QSize(15, 10) << 472;
}

void TestKpgeomRender::densityChangesDotsAlone()
{
    QFETCH(QString, dotsPerInch);
    QFETCH(QSize, pixels);
    QFETCH(int, dotsPerMetre);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png", "--dpi", dotsPerInch}), 0);
    QByteArray const file = place.read("a.png");
    QCOMPARE(png(file).size(), pixels);
    QCOMPARE(density(file), dotsPerMetre);
    QCOMPARE(hex(png(file).pixel(pixels.width() / 2, pixels.height() / 2)), hex(pale));
}

void TestKpgeomRender::marginLiesAroundTheBox()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    QStringList const options {"render", "a.xml", "-o", "a.png", "--size", "240x160", "--margin"};
    COMPARE_EXIT(place.run(options + QStringList {"0"}), 0);
    QImage const exact = png(place.read("a.png"));
    QCOMPARE(exact.size(), QSize(240, 160));
    for (QPoint const edge : {QPoint(0, 80), QPoint(239, 80), QPoint(120, 0), QPoint(120, 159)})
        QVERIFY2(isDark(exact.pixel(edge)), qPrintable(hex(exact.pixel(edge))));
    QCOMPARE(hex(exact.pixel(2, 2)), hex(pale));
    QCOMPARE(hex(exact.pixel(237, 157)), hex(pale));

    COMPARE_EXIT(place.run(options + QStringList {"7"}), 0);
    QImage const wide = png(place.read("a.png"));
    QCOMPARE(wide.size(), QSize(254, 174));
    QCOMPARE(hex(wide.pixel(4, 87)), hex(white));
    QVERIFY(isDark(wide.pixel(7, 87)));
    QVERIFY(isDark(wide.pixel(246, 87)));
    QCOMPARE(hex(wide.pixel(249, 87)), hex(white));
}

void TestKpgeomRender::whatLiesBeyondTheMarginIsCutOff()
{
    Workplace const place;
    place.write("a.xml", fixedLine("60", "30"));
    QStringList const options {"render", "a.xml", "-o", "a.png", "--size", "40x40"};
    COMPARE_EXIT(place.run(options), 0);
    QCOMPARE(png(place.read("a.png")).size(), QSize(80, 60));
    COMPARE_EXIT(place.run(options + QStringList {"--margin", "5"}), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(image.size(), QSize(50, 50));
    // From (5, 5), two to the right and one down, as far as the picture goes.
    QVERIFY(isDark(image.pixel(25, 15)));
    QVERIFY(isDark(image.pixel(49, 27)));
    QCOMPARE(hex(image.pixel(15, 25)), hex(white));
}

void TestKpgeomRender::marginLiesAroundTheDrawing()
{
    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png", "--margin", "25"}), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(image.size(), QSize(150, 110));
    QCOMPARE(hex(image.pixel(23, 55)), hex(white));
    QVERIFY(isDark(image.pixel(25, 55)));
    QVERIFY(isDark(image.pixel(124, 55)));
    QCOMPARE(hex(image.pixel(127, 55)), hex(white));
}

void TestKpgeomRender::drawingFitsIntoWidthAndHeight_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("drawing"); ///< between the middles of its lines

    QTest::newRow("width") << QStringList {"--width", "220"} << QSize(220, 140)
                           << QRect(10, 10, 200, 120);
    QTest::newRow("height") << QStringList {"--height", "50"} << QSize(70, 50)
                            << QRect(10, 10, 50, 30);
    QTest::newRow("both, and the width decides") << QStringList {"--width", "220", "--height",
        "300"} << QSize(220, 300) << QRect(10, 90, 200, 120);
    QTest::newRow("both, and the height decides") << QStringList {"--height", "140", "--width",
        "320"} << QSize(320, 140) << QRect(60, 10, 200, 120);
    QTest::newRow("with a margin") << QStringList {"--width", "240", "--height", "200", "--margin",
        "20"} << QSize(240, 200) << QRect(20, 40, 200, 120);
    QTest::newRow("without a margin") << QStringList {"--width", "200", "--margin", "0"}
                                      << QSize(200, 120) << QRect(0, 0, 200, 120);
    QTest::newRow("of a box") << QStringList {"--size", "30x60", "--margin", "0", "--width", "100",
        "--height", "100"} << QSize(100, 100)
                              << QRect(25, 0, 50, 100);
}

void TestKpgeomRender::drawingFitsIntoWidthAndHeight()
{
    QFETCH(QStringList, options);
    QFETCH(QSize, size);
    QFETCH(QRect, drawing);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.png"} + options), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(image.size(), size);
    int const middle = size.height() / 2;
    int const centre = size.width() / 2;
    // A rectangle's right is one less than the sum, and so is the pixel on this side of a line.
    for (QPoint const edge : {QPoint(drawing.left(), middle), QPoint(drawing.right(), middle),
             QPoint(centre, drawing.top()), QPoint(centre, drawing.bottom())})
        QVERIFY2(isDark(image.pixel(edge)), qPrintable(hex(image.pixel(edge))));
    QRect const outside = drawing.adjusted(-2, -2, 2, 2);
    for (QPoint const point : {QPoint(outside.left(), middle), QPoint(outside.right(), middle),
             QPoint(centre, outside.top()), QPoint(centre, outside.bottom())}) {
        if (image.valid(point))
            QCOMPARE(hex(image.pixel(point)), hex(white));
    }
    QCOMPARE(hex(image.pixel(drawing.left() + 2, drawing.top() + 2)), hex(pale));
}

void TestKpgeomRender::lineIsFittedByItsLength()
{
    Workplace const place;
    place.write("a.xml", fixedLine("0", "50"));
    auto const sizeWith = [&place](QStringList const& options) {
        place.run(QStringList {"render", "a.xml", "-o", "a.svg"} + options);
        return viewBox(place.read("a.svg"));
    };
    QCOMPARE(sizeWith({"--height", "220"}), QString("0 0 20 220"));
    QCOMPARE(sizeWith({"--width", "220"}), QString("0 0 220 70"));
    QCOMPARE(sizeWith({"--width", "120", "--height", "40"}), QString("0 0 120 40"));
}

void TestKpgeomRender::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("what");

    auto const row = [](QString const& options, QByteArray const& what) {
        QTest::newRow(qPrintable(options)) << options.split(' ') << what;
    };
    for (QString const& value : {QString("0"), QString("-5"), QString("nan"), QString("inf"),
             QString("wide"), QString("1e7"), QString()}) {
        row("--width=" + value, "--width takes a number greater than 0 and at most 1000000");
        row("--height=" + value, "--height takes a number greater than 0 and at most 1000000");
    }
    for (QString const& value : {QString("-1"), QString("-1e-9"), QString("nan"), QString("inf"),
             QString("10ell"), QString("1e7"), QString()})
        row("--margin=" + value, "--margin takes a number from 0 to 1000000");
    for (QString const& value :
        {QString("0"), QString("0.5"), QString("-96"), QString("nan"), QString("high"), QString()})
        row("--dpi=" + value, "--dpi takes a number from 1 to 1000000");
    row("--width 100 --sheet", "--width, --height and --margin do not go with --sheet");
    row("--height 100 --sheet", "--width, --height and --margin do not go with --sheet");
    row("--margin 0 --sheet", "--width, --height and --margin do not go with --sheet");
    row("--width 100 --scale 2", "--scale does not go with --width or --height");
    row("--height 100 --scale 2", "--scale does not go with --width or --height");
    QByteArray const noRoom = "--width and --height leave no room within the --margin";
    row("--width 20", noRoom);
    row("--height 20", noRoom);
    row("--width 100 --height 16", noRoom);
    row("--width 100 --margin 50", noRoom);
    row("--dpi 96 --format svg", "--dpi goes with PNG: the other formats have no dots");
    row("--dpi 300 --format pdf", "--dpi goes with PNG: the other formats have no dots");
    for (QString const& value :
        {QString("mauvish"), QString("#12"), QString("None"), QString("#12345"), QString()})
        row("--background=" + value,
            "--background takes a colour or none, not '" + value.toUtf8() + "'");
}

void TestKpgeomRender::wrongUsageIsTold()
{
    QFETCH(QStringList, options);
    QFETCH(QByteArray, what);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_FAILURE(place.run(QStringList {"render", "a.xml", "-o", "a.png"} + options), 2,
        "kpgeom render: " + what + " (see kpgeom render --help)");
    QCOMPARE(place.entries(), QStringList("a.xml"));
}

void TestKpgeomRender::groundIsOfTheColour_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QRgb>("corner");
    QTest::addColumn<QStringList>("rectangles"); ///< "fill opacity" of those of an SVG file

    auto const row = [](char const* colour, QRgb corner, QString const& rectangle) {
        QTest::newRow(colour) << QStringList {"--background", colour} << corner
                              << (rectangle.isEmpty() ? QStringList() : QStringList(rectangle));
    };
    QTest::newRow("default") << QStringList() << 0xffffffff << QStringList("#ffffff 1");
    row("none", 0x00000000, "");
    row("transparent", 0x00000000, "");
    row("#00ff0000", 0x00000000, "");
    row("#80ff0000", 0x80ff0000, "#ff0000 0.50196");
    row("#123456", 0xff123456, "#123456 1");
    row("123456", 0xff123456, "#123456 1");
    row("steelblue", 0xff4682b4, "#4682b4 1");
}

void TestKpgeomRender::groundIsOfTheColour()
{
    QFETCH(QStringList, options);
    QFETCH(QRgb, corner);
    QFETCH(QStringList, rectangles);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    for (QStringList const& kind : {QStringList(), QStringList("--sheet")}) {
        QStringList const all = options + kind;
        COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.png"} + all), 0);
        QImage const image = QImage::fromData(place.read("a.png"));
        QCOMPARE(image.hasAlphaChannel(), qAlpha(corner) < 255);
        QCOMPARE(hex(image.pixel(0, 0)), hex(corner));
        QCOMPARE(hex(image.pixel(image.width() - 1, image.height() - 1)), hex(corner));
        QCOMPARE(hex(image.pixel(image.width() / 2, 60)), hex(pale));

        COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.svg"} + all), 0);
        QStringList found;
        QStringList size;
        QString group;
        QXmlStreamReader reader(place.read("a.svg"));
        while (!reader.atEnd()) {
            reader.readNext();
            QXmlStreamAttributes const attributes = reader.attributes();
            if (reader.isStartElement() && reader.name() == QLatin1String("g"))
                group = attributes.value("fill").toString() + ' '
                    + attributes.value("fill-opacity").toString().left(7);
            if (reader.isStartElement() && reader.name() == QLatin1String("rect")) {
                found << group;
                size << attributes.value("width").toString() + ' '
                        + attributes.value("height").toString();
            }
        }
        QCOMPARE(found, rectangles);
        QString const whole = kind.isEmpty() ? QString("120 80") : QString("174 192");
        QCOMPARE(size, rectangles.isEmpty() ? QStringList() : QStringList(whole));
    }
}

void TestKpgeomRender::groundReachesTheLastPixel()
{
    // Of the last of 35 by 46 pixels the picture of 33 by 44 units covers a part.
    Workplace const place;
    place.write("a.xml", fixedLine("5", "5"));
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "a.png", "--size", "33x44", "--margin", "0",
                     "--dpi", "100", "--background", "#80ff0000"}),
        0);
    QImage const image = QImage::fromData(place.read("a.png"));
    QCOMPARE(image.size(), QSize(35, 46));
    QCOMPARE(hex(image.pixel(34, 45)), QString("80ff0000"));
    QCOMPARE(hex(image.pixel(34, 20)), QString("80ff0000"));
    QCOMPARE(hex(image.pixel(20, 45)), QString("80ff0000"));
}

void TestKpgeomRender::filesHaveATitle_data()
{
    QTest::addColumn<QStringList>("operands");
    QTest::addColumn<QString>("title");

    QTest::newRow("one file") << QStringList {"a.xml"} << "Outlines of a.xml";
    QTest::newRow("in a folder") << QStringList {"./a.xml"} << "Outlines of a.xml";
    QTest::newRow("two files") << QStringList {"a.xml", "a.xml"} << "Outlines of 2 files";
    QTest::newRow("standard input") << QStringList {"-"} << "Outlines of standard input";
}

void TestKpgeomRender::filesHaveATitle()
{
    QFETCH(QStringList, operands);
    QFETCH(QString, title);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    for (QString const& file : {QString("a.svg"), QString("a.png"), QString("a.pdf")}) {
        QStringList const arguments = QStringList("render") + operands + QStringList {"-o", file};
        COMPARE_EXIT(place.run(arguments, {boxGeometry()}), 0);
    }
    QCOMPARE(chunk(place.read("a.png"), "tEXt"), QByteArray("Title") + '\0' + title.toUtf8());
    QCOMPARE(pdfText(pdfEntry(place.read("a.pdf"), "/Title")), title);
    QCOMPARE(pdfEntry(place.read("a.pdf"), "/Creator"), QByteArray("()"));
    QByteArray const svg = place.read("a.svg");
    QVERIFY(svg.contains("\n<title>" + title.toUtf8() + "</title>\n"));
    QVERIFY(!svg.contains("<desc"));
    QVERIFY(!svg.contains("Qt"));
}

void TestKpgeomRender::titleIsEscaped()
{
    Workplace const place;
    place.write("a&b<(\"c\\.xml", boxGeometry());
    for (QString const& file : {QString("a.svg"), QString("a.pdf")})
        COMPARE_EXIT(place.run({"render", "a&b<(\"c\\.xml", "-o", file}), 0);
    QCOMPARE(viewBox(place.read("a.svg")), QString("0 0 120 80"));
    QVERIFY(place.read("a.svg").contains("<title>Outlines of a&amp;b&lt;(&quot;c\\.xml</title>"));
    QCOMPARE(
        pdfText(pdfEntry(place.read("a.pdf"), "/Title")), QString("Outlines of a&b<(\"c\\.xml"));
}

void TestKpgeomRender::filesAreTheSameEveryTime()
{
    Workplace const place;
    place.write("a.xml", "<S Name=\"Box\">" + boxGeometry() + "</S>");
    QStringList const formats {"svg", "png", "pdf"};
    // In another time zone and another second; what Qt writes of the time differs in its length.
    Workplace::Start start;
    start.variables["TZ"] = "UTC0";
    for (QString const& format : formats)
        COMPARE_EXIT(
            place.run({"render", "a.xml", "--sheet", "--points", "-o", "1." + format}, start), 0);
    QTest::qWait(1100);
    start.variables["TZ"] = "XYZ-5:30";
    for (QString const& format : formats) {
        COMPARE_EXIT(
            place.run({"render", "a.xml", "--sheet", "--points", "-o", "2." + format}, start), 0);
        QVERIFY(!place.read("1." + format).isEmpty());
        QVERIFY2(place.read("1." + format) == place.read("2." + format), qPrintable(format));
    }
}

void TestKpgeomRender::dateIsThatOfTheEnvironment_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QByteArray>("date");

    QTest::newRow("beginning") << "0" << QByteArray("(D:19700101000000Z)");
    QTest::newRow("now") << "1700000000" << QByteArray("(D:20231114221320Z)");
    QTest::newRow("last") << "253402300799" << QByteArray("(D:99991231235959Z)");
    QTest::newRow("unset") << QString() << QByteArray();
    QTest::newRow("empty") << "" << QByteArray();
    QTest::newRow("text") << "yesterday" << QByteArray();
    QTest::newRow("fraction") << "1.5" << QByteArray();
    QTest::newRow("negative") << "-1" << QByteArray();
    QTest::newRow("year of five digits") << "253402300800" << QByteArray();
    QTest::newRow("milliseconds overflow") << "9223372036854775807" << QByteArray();
    QTest::newRow("too long") << "99999999999999999999" << QByteArray();
}

void TestKpgeomRender::dateIsThatOfTheEnvironment()
{
    QFETCH(QString, variable);
    QFETCH(QByteArray, date);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    Workplace::Start start;
    start.variables["TZ"] = "XYZ-5:30";
    if (!variable.isNull())
        start.variables["SOURCE_DATE_EPOCH"] = variable;
    Result const result = place.run({"render", "a.xml", "-o", "a.pdf"}, start);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QByteArray const file = place.read("a.pdf");
    QCOMPARE(pdfEntry(file, "/CreationDate"), date);
    QCOMPARE(file.count("Date"), date.isEmpty() ? 0 : 1);
}

void TestKpgeomRender::offsetsOfThePdfAreRight_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QStringList>("options");

    for (char const* const zone : {"UTC0", "XYZ-5:30"}) {
        QTest::addRow("whole points in %s", zone) << zone << QStringList();
        QTest::addRow("fractions in %s", zone)
            << zone << QStringList {"--width", "1234.5", "--points"};
    }
}

void TestKpgeomRender::offsetsOfThePdfAreRight()
{
    QFETCH(QString, zone);
    QFETCH(QStringList, options);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    for (QString const& date : {QString(), QString("1700000000")}) {
        Workplace::Start start;
        start.variables = {{"TZ", zone}, {"SOURCE_DATE_EPOCH", date}};
        COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.pdf"} + options, start), 0);
        QByteArray const file = place.read("a.pdf");
        int const pointer = file.indexOf("startxref\n") + 10;
        int const table =
            file.mid(pointer, file.indexOf('\n', pointer) - pointer).trimmed().toInt();
        QCOMPARE(file.mid(table, 7), QByteArray("xref\n0 "));
        QByteArrayList const lines = file.mid(table).split('\n');
        int const count = lines.at(1).mid(2).toInt();
        QVERIFY(count > 5);
        QCOMPARE(lines.at(2), QByteArray("0000000000 65535 f "));
        for (int object = 1; object < count; ++object) {
            QByteArray const& entry = lines.at(2 + object);
            QCOMPARE(entry.mid(10), QByteArray(" 00000 n "));
            QByteArray const head = QByteArray::number(object) + " 0 obj\n";
            QCOMPARE(file.mid(entry.left(10).toInt(), head.size()), head);
        }
        QVERIFY(lines.at(2 + count).startsWith("trailer"));
    }
}

void TestKpgeomRender::documentNamesTheFillRule_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QRgb>("inside");

    QStringList const none;
    QTest::newRow("evenodd") << QByteArray("FillRule=\"evenodd\"") << none << white;
    QTest::newRow("nonzero") << QByteArray("FillRule=\"nonzero\"") << none << pale;
    QTest::newRow("upper case") << QByteArray("FillRule=\"EvenOdd\"") << none << pale;
    QTest::newRow("with a blank") << QByteArray("FillRule=\" evenodd\"") << none << pale;
    QTest::newRow("empty") << QByteArray("FillRule=\"\"") << none << pale;
    QTest::newRow("other spelling") << QByteArray("fill-rule=\"evenodd\"") << none << pale;
    QTest::newRow("option against evenodd")
        << QByteArray("FillRule=\"evenodd\"") << QStringList {"--fill-rule", "nonzero"} << pale;
    QTest::newRow("option against nonzero")
        << QByteArray("FillRule=\"nonzero\"") << QStringList {"--fill-rule", "evenodd"} << white;
}

void TestKpgeomRender::documentNamesTheFillRule()
{
    QFETCH(QByteArray, attribute);
    QFETCH(QStringList, options);
    QFETCH(QRgb, inside);

    Workplace const place;
    place.write("a.xml", "<D><S " + attribute + ">" + frame() + "</S></D>");
    COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.png"} + options), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(hex(image.pixel(60, 60)), hex(inside));
    QCOMPARE(hex(image.pixel(20, 20)), hex(pale));
}

void TestKpgeomRender::sheetFillsEachOutlineByItsRule()
{
    Workplace const place;
    place.write("a.xml",
        "<D FillRule=\"evenodd\"><S>" + frame() + "</S><S FillRule=\"evenodd\">" + frame()
            + "</S><S FillRule=\"nonzero\">" + frame() + "</S></D>");
    // In two columns of 150 and two rows of 168; the rule of the document itself is none's.
    auto const middles = [&place](QStringList const& options) {
        place.run(QStringList {"render", "a.xml", "--sheet", "-o", "a.png"} + options);
        QImage const image = png(place.read("a.png"));
        return QStringList {
            hex(image.pixel(87, 87)), hex(image.pixel(237, 87)), hex(image.pixel(87, 255))};
    };
    QCOMPARE(middles({}), QStringList({hex(pale), hex(white), hex(pale)}));
    QCOMPARE(middles({"--size", "100x100"}), QStringList({hex(pale), hex(white), hex(pale)}));
    QCOMPARE(
        middles({"--fill-rule", "evenodd"}), QStringList({hex(white), hex(white), hex(white)}));
    QCOMPARE(middles({"--fill-rule", "nonzero"}), QStringList({hex(pale), hex(pale), hex(pale)}));
}

void TestKpgeomRender::linesThatVanishAreTold_data()
{
    QTest::addColumn<QByteArray>("geometry");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("told");

    QByteArray const box = boxGeometry();
    QByteArray const end = " shorter than one unit and not drawn\n";
    QTest::newRow("none") << box << QStringList {"--size", "1x1"} << QByteArray();
    QTest::newRow("two") << box << QStringList {"--size", "0.5x20"}
                         << "a.xml: in a box of 0.5 x 20, 2 lines are" + end;
    QTest::newRow("three") << box << QStringList {"--size", "0.5x0.25"}
                           << "a.xml: in a box of 0.5 x 0.25, 3 lines are" + end;
    QTest::newRow("one of each kind")
        << box + fixedLine("5", "5") << QStringList {"--size", "20x0.5"}
        << "a.xml: in a box of 20 x 0.5, 1 line is" + end;
    QTest::newRow("of all outlines") << box + box << QStringList {"--size", "0.5x20"}
                                     << "a.xml: in a box of 0.5 x 20, 4 lines are" + end;
    QTest::newRow("of the outlines that are drawn")
        << box + box << QStringList {"--size", "0.5x20", "--index", "2"}
        << "a.xml: in a box of 0.5 x 20, 2 lines are" + end;
    QTest::newRow("not in the document either")
        << fixedLine("0.5", "0.5") << QStringList {"--size", "50x20"} << QByteArray();
    QTest::newRow("boxes of a sheet")
        << box << QStringList {"--sheet", "--size", "0.5x20", "--size", "30x20", "--size", "20x0.5"}
        << "a.xml: in a box of 0.5 x 20, 2 lines are" + end
            + "a.xml: in a box of 20 x 0.5, 1 line is" + end;
    QTest::newRow("without a box") << box << QStringList {"--scale", "0.001"} << QByteArray();
    // A line that is short in the document grows, and makes up for none that shrinks.
    QTest::newRow("one vanishes, one appears")
        << QByteArray("<Geometry><MoveTo><X V=\"0\" B=\"0\"/><Y V=\"0\" B=\"0\"/></MoveTo>"
                      "<LineTo><X V=\"0.5\" P=\"0.5\" B=\"1\"/><Y V=\"0\" B=\"0\"/></LineTo>"
                      "<LineTo><X V=\"9\" B=\"0\"/><Y V=\"9\" B=\"0\"/></LineTo>"
                      "<LineTo><X V=\"9\" B=\"0\"/><Y V=\"20\" P=\"0.95\" B=\"2\"/></LineTo>"
                      "</Geometry>")
        << QStringList {"--size", "10x10"} << "a.xml: in a box of 10 x 10, 1 line is" + end;
}

void TestKpgeomRender::linesThatVanishAreTold()
{
    QFETCH(QByteArray, geometry);
    QFETCH(QStringList, options);
    QFETCH(QByteArray, told);

    Workplace const place;
    place.write("a.xml", "<D>" + geometry + "</D>");
    Result const result = place.run(QStringList {"render", "a.xml", "-o", "a.svg"} + options);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, told);
    QVERIFY(place.read("a.svg").contains("</svg>"));
}

void TestKpgeomRender::marksLieOverLaterOutlines_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QPoint>("mark"); ///< its middle

    QTest::newRow("plain") << QStringList() << QPoint(60, 60);
    // 130 of the cell's 150 pixels for 100 units, behind a margin of 12.
    QTest::newRow("sheet") << QStringList {"--sheet", "--whole-files"} << QPoint(87, 87);
}

void TestKpgeomRender::marksLieOverLaterOutlines()
{
    QFETCH(QStringList, options);
    QFETCH(QPoint, mark);

    // The later square covers the end of the earlier line.
    Workplace const place;
    place.write("a.xml",
        "<D>" + fixedLine("50", "50") + "<Geometry Closed=\"1\">" + squareSegments(0, 100)
            + "</Geometry></D>");
    COMPARE_EXIT(place.run(QStringList {"render", "a.xml", "-o", "a.png"} + options), 0);
    QCOMPARE(hex(png(place.read("a.png")).pixel(mark - QPoint(3, 0))), hex(pale));
    COMPARE_EXIT(
        place.run(QStringList {"render", "a.xml", "-o", "a.png", "--points"} + options), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(hex(image.pixel(mark - QPoint(3, 0))), QString("ff808080"));
    QCOMPARE(hex(image.pixel(mark + QPoint(2, 0))), QString("ff808080"));
    QCOMPARE(hex(image.pixel(mark + QPoint(8, 0))), hex(pale));
}

void TestKpgeomRender::legendIsNotClipped_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("top"); ///< of the legend

    QTest::newRow("sheet") << QStringList {"--sheet"} << QSize(284, 342) << 180;
    QTest::newRow("plain") << QStringList {"--size", "20x20"} << QSize(280, 190) << 40;
    QTest::newRow("width") << QStringList {"--width", "40"} << QSize(280, 182) << 32;
}

void TestKpgeomRender::legendIsNotClipped()
{
    QFETCH(QStringList, options);
    QFETCH(QSize, size);
    QFETCH(int, top);

    Workplace const place;
    place.write("a.xml", boxGeometry());
    COMPARE_EXIT(
        place.run(QStringList {"render", "a.xml", "-o", "a.png", "--points"} + options), 0);
    QImage const image = png(place.read("a.png"));
    QCOMPARE(image.size(), size);
    // Ink in each of the ten lines, the longest of which goes far to the right, none at the edges.
    QVector<int> ends(10, 0);
    for (int y = top; y < top + 150; ++y) {
        for (int x = 0; x < size.width(); ++x) {
            if (isDark(image.pixel(x, y)))
                ends[(y - top) / 15] = qMax(ends.at((y - top) / 15), x);
        }
    }
    for (int const end : ends)
        QVERIFY2(end > 80 && end < size.width() - 5, qPrintable(QString::number(end)));
    QVERIFY2(ends.at(7) > 200, qPrintable(QString::number(ends.at(7))));
}

void TestKpgeomRender::sheetTooLargeFails()
{
    Workplace const place;
    place.write("a.xml", "<D>" + boxGeometry().repeated(5000) + "</D>");
    COMPARE_FAILURE(place.run({"render", "a.xml", "--sheet", "-o", "a.svg"}), 1,
        "a.xml: a picture of 13824 by 9264 is too large: at most 20000 a side, and 100 million in "
        "all (draw fewer outlines or sizes, use --whole-files or a smaller --dpi)");
    QCOMPARE(place.entries(), QStringList("a.xml"));
    COMPARE_EXIT(place.run({"render", "a.xml", "--sheet", "--whole-files", "-o", "a.svg"}), 0);
    COMPARE_FAILURE(place.run({"render", "a.xml", "-o", "b.svg", "--width", "20001"}), 1,
        "a.xml: a picture of 20001 by 12009 is too large: at most 20000 a side, and 100 million in "
        "all (use a smaller --scale, --size, --width, --height or --dpi)");
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
        for (QStringList const& options :
            {QStringList("--points"), QStringList {"--width", "100", "--height", "100"},
                QStringList {"--margin", "0"}}) {
            COMPARE_FAILURE(place.run(QStringList {"render", "a.xml", "-o", file} + options), 1,
                "a.xml: a coordinate is too large or no number and cannot be drawn");
        }
    }
    QCOMPARE(place.entries(), QStringList("a.xml"));
    place.write("fixed.xml", fixedLine("1e200", "1"));
    COMPARE_FAILURE(
        place.run({"render", "fixed.xml", "-o", "a.svg", "--size", "10x10", "--margin", "0"}), 1,
        "fixed.xml: a coordinate is too large or no number and cannot be drawn");
    place.write("b.xml", boxGeometry());
    COMPARE_FAILURE(place.run({"render", "b.xml", "a.xml", "-o", "c.svg"}), 1,
        "kpgeom render: a coordinate is too large or no number and cannot be drawn");
}

void TestKpgeomRender::picturesTooLargeFail_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QByteArray>("line");

    QByteArray const limit = ": at most 20000 a side, and 100 million in all (use a smaller "
                             "--scale, --size, --width, --height or --dpi)";
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
