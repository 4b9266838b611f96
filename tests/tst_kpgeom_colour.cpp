// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

using namespace KpgeomTesting;

class TestKpgeomColour : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void transformsAreAppliedInOrder();
    void everyColourIsTransformed();
    void coloursAreReadInEveryForm_data();
    void coloursAreReadInEveryForm();
    void valuesMayBePercentages();
    void commandHasAnotherName();
    void everyTransformIsKnown_data();
    void everyTransformIsKnown();
    void greyHasNoHue();
    void jsonHoldsEveryStep();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void swatchesShowTintsAndShades();
    void swatchesStandBesideMixesOfEncodedValues();
    void swatchesHaveABorder();
    void translucentSwatchesHaveAChequeredGround();
    void opaqueSwatchesAreOfOneColour();
    void comparedTranslucentColoursStayTranslucent();
    void captionsTellTheColours_data();
    void captionsTellTheColours();
    void swatchesHaveATitle();
    void swatchesAreTheSameEveryTime();
    void swatchesTooManyFail();
    void swatchesComeInEveryFormat_data();
    void swatchesComeInEveryFormat();
    void swatchesThatCannotBeWrittenFail();
    void terminalShowsSwatches_data();
    void terminalShowsSwatches();
};

void TestKpgeomColour::transformsAreAppliedInOrder()
{
    Workplace const place;
    Result const result = place.run({"colour", "#4472c4", "shade=0.5", "alpha=0.5", "inv=0"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(QString::fromUtf8(result.out),
        QString::fromUtf8(
            "step       #RRGGBB  RRGGBB  #AARRGGBB     hue  saturation  lightness    alpha\n"
            "#ff4472c4  #4472C4  4472C4  #FF4472C4  218.4\302\260      52.0 %     51.8 %  100.0 %\n"
            "shade=0.5  #2F528F  2F528F  #FF2F528F  218.1\302\260      50.5 %     37.3 %  100.0 %\n"
            "alpha=0.5  #2F528F  2F528F  #802F528F  218.1\302\260      50.5 %     37.3 %   50.0 %\n"
            "inv=0      #D0AD70  D0AD70  #80D0AD70   38.1\302\260      50.5 %     62.7 %   50.0 "
            "%\n"));
    QCOMPARE(result.err, QByteArray());

    Result const otherOrder = place.run({"colour", "#4472c4", "inv=0", "shade=0.5"});
    COMPARE_EXIT(otherOrder, 0);
    QVERIFY(otherOrder.out.contains("\nshade=0.5  #"));
    QVERIFY(!otherOrder.out.contains("D0AD70"));
}

void TestKpgeomColour::everyColourIsTransformed()
{
    Workplace const place;
    Result const result = place.run({"colour", "red", "inv=0", "blue"});
    COMPARE_EXIT(result, 0);
    QByteArrayList const lines = result.out.split('\n');
    QCOMPARE(lines.size(), 6);
    QVERIFY(lines.at(1).startsWith("#ffff0000  #FF0000"));
    QVERIFY(lines.at(2).startsWith("inv=0      #00FFFF"));
    QVERIFY(lines.at(3).startsWith("#ff0000ff  #0000FF"));
    QVERIFY(lines.at(4).startsWith("inv=0      #FFFF00"));
}

void TestKpgeomColour::coloursAreReadInEveryForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("argb");
    QTest::newRow("three digits") << "#47c" << QByteArray("#FF4477CC");
    QTest::newRow("six digits") << "#4472c4" << QByteArray("#FF4472C4");
    QTest::newRow("six digits without the sign") << "4472C4" << QByteArray("#FF4472C4");
    QTest::newRow("alpha first") << "#804472c4" << QByteArray("#804472C4");
    QTest::newRow("levels") << "rgb(68,114,196)" << QByteArray("#FF4472C4");
    QTest::newRow("levels with alpha") << "rgba(68, 114, 196, 0.5)" << QByteArray("#804472C4");
    QTest::newRow("alpha as a percentage") << "rgba(68,114,196,50%)" << QByteArray("#804472C4");
    QTest::newRow("percentages") << "rgb(10%,20%,100%)" << QByteArray("#FF1A33FF");
    QTest::newRow("the same function by both names") << "rgb(1,2,3,0)" << QByteArray("#00010203");
    QTest::newRow("no alpha") << "rgba(1,2,3)" << QByteArray("#FF010203");
    QTest::newRow("capitals and blanks") << " RGB( 1 , 2 , 3 ) " << QByteArray("#FF010203");
    QTest::newRow("ends of the levels") << "rgba(0,255,0%,1)" << QByteArray("#FF00FF00");
    QTest::newRow("name") << "steelblue" << QByteArray("#FF4682B4");
    QTest::newRow("name of six letters") << "orange" << QByteArray("#FFFFA500");
}

void TestKpgeomColour::coloursAreReadInEveryForm()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, argb);
    Workplace const place;
    Result const result = place.run({"colour", text});
    COMPARE_EXIT(result, 0);
    QVERIFY2(result.out.contains("  " + argb + "  "), result.out.constData());
}

void TestKpgeomColour::valuesMayBePercentages()
{
    Workplace const place;
    Result const fractions = place.run({"colour", "#4472c4", "shade=0.5", "lumOff=-0.125"});
    Result const percentages = place.run({"colour", "#4472c4", "shade=50%", "lumOff=-12.5 %"});
    COMPARE_EXIT(fractions, 0);
    COMPARE_EXIT(percentages, 0);
    QByteArrayList const expected = fractions.out.split('\n');
    QByteArrayList const lines = percentages.out.split('\n');
    QCOMPARE(lines.size(), 5);
    for (int i = 1; i < 4; ++i)
        QCOMPARE(lines.at(i).mid(lines.at(i).indexOf("  ")).simplified(),
            expected.at(i).mid(expected.at(i).indexOf("  ")).simplified());
    QVERIFY(lines.at(2).startsWith("shade=50%  "));
}

void TestKpgeomColour::commandHasAnotherName()
{
    Workplace const place;
    Result const result = place.run({"color", "#4472c4", "shade=0.5"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, place.run({"colour", "#4472c4", "shade=0.5"}).out);
    QCOMPARE(place.run({"color", "--help"}).out, place.run({"colour", "--help"}).out);
    COMPARE_FAILURE(
        place.run({"color"}), 2, "kpgeom colour: no colour given (see kpgeom colour --help)");
}

void TestKpgeomColour::everyTransformIsKnown_data()
{
    QTest::addColumn<QString>("name");
    for (char const* const name : {"tint", "shade", "comp", "inv", "gray", "alpha", "alphaOff",
             "alphaMod", "hue", "hueOff", "hueMod", "sat", "satOff", "satMod", "lum", "lumOff",
             "lumMod", "red", "redOff", "redMod", "green", "greenOff", "greenMod", "blue",
             "blueOff", "blueMod", "gamma", "invGamma"})
        QTest::newRow(name) << name;
}

void TestKpgeomColour::everyTransformIsKnown()
{
    QFETCH(QString, name);
    Workplace const place;
    Result const result = place.run({"colour", "#4472c4", name + "=0.25"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out.count('\n'), 3);
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomColour::greyHasNoHue()
{
    Workplace const place;
    Result const result = place.run({"colour", "#808080"});
    COMPARE_EXIT(result, 0);
    QByteArrayList const cells = result.out.split('\n').at(1).simplified().split(' ');
    QCOMPARE(cells.at(4), QByteArray("-"));
    QCOMPARE(cells.at(5), QByteArray("0.0"));
}

void TestKpgeomColour::jsonHoldsEveryStep()
{
    Workplace const place;
    Result const result = place.run({"colour", "--json", "#4472c4", "grey", "shade=0.5"});
    COMPARE_EXIT(result, 0);
    QJsonArray const colours = QJsonDocument::fromJson(result.out).array();
    QCOMPARE(colours.size(), 2);
    QJsonObject const first = colours.at(0).toObject();
    QJsonArray const steps = first.value("steps").toArray();
    QCOMPARE(steps.size(), 2);
    QCOMPARE(steps.at(0).toObject().value("step").toString(), QString("#ff4472c4"));
    QCOMPARE(steps.at(0).toObject().value("rgb").toString(), QString("#4472C4"));
    QCOMPARE(steps.at(1).toObject().value("step").toString(), QString("shade=0.5"));
    QJsonObject const shaded = first.value("result").toObject();
    QCOMPARE(shaded.value("rgb").toString(), QString("#2F528F"));
    QCOMPARE(shaded.value("argb").toString(), QString("#FF2F528F"));
    QCOMPARE(shaded.value("red").toInt(), 47);
    QCOMPARE(shaded.value("green").toInt(), 82);
    QCOMPARE(shaded.value("blue").toInt(), 143);
    QCOMPARE(shaded.value("alpha").toInt(), 255);
    QVERIFY(qAbs(shaded.value("hue").toDouble() - 0.6059) < 0.0001);
    QVERIFY(qAbs(shaded.value("saturation").toDouble() - 0.5053) < 0.0001);
    QVERIFY(qAbs(shaded.value("lightness").toDouble() - 0.3725) < 0.0001);
    QVERIFY(colours.at(1).toObject().value("result").toObject().value("hue").isNull());
}

void TestKpgeomColour::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("what");
    QTest::newRow("no colour") << QStringList {} << QByteArray("no colour given");
    QTest::newRow("transforms only") << QStringList {"tint=0.5"} << QByteArray("no colour given");
    QTest::newRow("no colour's name")
        << QStringList {"#4472c4", "mauvish"} << QByteArray("'mauvish' is no colour");
    QTest::newRow("five digits") << QStringList {"#4472c"} << QByteArray("'#4472c' is no colour");
    for (char const* const colour : {"rgb()", "rgb(1,2)", "rgb(1,2,3,0.5,0.5)", "rgb(256,0,0)",
             "rgb(-1,0,0)", "rgb(101%,0,0)", "rgb(1,2,nan)", "rgb(1,2,3,1.1)", "rgb(1,2,)",
             "rgb(1,2,3", "rgb 1,2,3", "rgb(1;2;3)", "rgb(1,2,%)", "rgb((1,2,3))", "hsl(1,2,3)"}) {
        QTest::newRow(colour) << QStringList {colour}
                              << QByteArray("'") + colour + "' is no colour";
    }
    QTest::newRow("unknown transform") << QStringList {
        "red", "Tint=0.5"} << QByteArray("there is no transform 'Tint'; did you mean tint?");
    QTest::newRow("value that is no number")
        << QStringList {"red", "tint=half"} << QByteArray("'tint=half' does not end in a number");
    for (char const* const value : {"nan", "inf", "-inf", "1e999", "nan%", "%", "5%%", "5mm"}) {
        QTest::addRow("value of %s", value)
            << QStringList {"red", QString("tint=") + value}
            << QByteArray("'tint=") + value + "' does not end in a number";
    }
    QTest::newRow("no value") << QStringList {"red", "tint="}
                              << QByteArray("'tint=' does not end in a number");
    QTest::newRow("comparison without swatches")
        << QStringList {"red", "--compare"} << QByteArray("--compare goes with --swatches");
    QTest::newRow("format of swatches") << QStringList {"red", "--swatches",
        "a.gif"} << QByteArray("the picture's format is none of svg, png and pdf");
    QTest::newRow("unknown option") << QStringList {
        "red", "--swatch"} << QByteArray("Unknown option 'swatch'. Did you mean --swatches?");
}

void TestKpgeomColour::wrongUsageIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, what);
    Workplace const place;
    COMPARE_FAILURE(place.run(QStringList {"colour"} + arguments), 2,
        "kpgeom colour: " + what + " (see kpgeom colour --help)");
    QCOMPARE(place.entries(), QStringList());
}

namespace {

/** The swatch in a row (0 is the strongest tint, 4 the reference) and a column. */
QRect swatch(int row, int column)
{
    return QRect(12 + 70 + column * (112 + 6), 12 + row * (34 + 16 + 6), 112, 34);
}

QByteArray colourAt(QImage const& image, QPoint const& place)
{
    return QColor(image.pixel(place)).name().toLatin1();
}

QByteArray leftHalf(QImage const& image, QRect const& place)
{
    return colourAt(image, QPoint(place.left() + 20, place.center().y()));
}

QByteArray rightHalf(QImage const& image, QRect const& place)
{
    return colourAt(image, QPoint(place.right() - 20, place.center().y()));
}

} // namespace

void TestKpgeomColour::swatchesShowTintsAndShades()
{
    Workplace const place;
    Result const result = place.run({"colour", "#4472c4", "#ff8040", "--swatches", "a.png"});
    COMPARE_EXIT(result, 0);
    QVERIFY(result.out.contains("#FF8040"));
    QImage const image = QImage::fromData(place.read("a.png"), "PNG");
    QCOMPARE(image.size(), QSize(2 * 12 + 70 + 2 * 118 - 6, 2 * 12 + 9 * 56 - 6));
    QCOMPARE(leftHalf(image, swatch(4, 0)), QByteArray("#4472c4"));
    QCOMPARE(rightHalf(image, swatch(4, 0)), QByteArray("#4472c4"));
    QCOMPARE(leftHalf(image, swatch(4, 1)), QByteArray("#ff8040"));
    // 60 % tint and 60 % shade of the first, from a calculation of its own in decimals.
    QCOMPARE(leftHalf(image, swatch(1, 0)), QByteArray("#cfd5ea"));
    QCOMPARE(rightHalf(image, swatch(7, 0)), QByteArray("#2a4981"));
}

void TestKpgeomColour::swatchesStandBesideMixesOfEncodedValues()
{
    Workplace const place;
    COMPARE_EXIT(place.run({"colour", "#4472c4", "--swatches", "a.png", "--compare"}), 0);
    QImage const image = QImage::fromData(place.read("a.png"), "PNG");
    QCOMPARE(leftHalf(image, swatch(1, 0)), QByteArray("#cfd5ea"));
    QCOMPARE(rightHalf(image, swatch(1, 0)), QByteArray("#b4c7e7"));
    QCOMPARE(leftHalf(image, swatch(7, 0)), QByteArray("#2a4981"));
    QCOMPARE(rightHalf(image, swatch(7, 0)), QByteArray("#1b2e4e"));
}

void TestKpgeomColour::swatchesHaveABorder()
{
    Workplace const place;
    COMPARE_EXIT(place.run({"colour", "white", "#80ffffff", "--swatches", "a.png"}), 0);
    QImage const image = QImage::fromData(place.read("a.png"), "PNG");
    for (int column = 0; column < 2; ++column) {
        for (int row = 0; row < 9; ++row) {
            QRect const whole = swatch(row, column);
            for (QPoint const edge : {QPoint(whole.center().x(), whole.top()),
                     QPoint(whole.center().x(), whole.bottom()),
                     QPoint(whole.left(), whole.center().y()),
                     QPoint(whole.right(), whole.center().y())})
                QCOMPARE(colourAt(image, edge), QByteArray("#b0b0b0"));
            QCOMPARE(colourAt(image, whole.topLeft() - QPoint(1, 1)), QByteArray("#ffffff"));
            QCOMPARE(colourAt(image, whole.bottomRight() + QPoint(1, 1)), QByteArray("#ffffff"));
        }
    }
    QCOMPARE(colourAt(image, swatch(4, 0).center()), QByteArray("#ffffff"));
}

void TestKpgeomColour::translucentSwatchesHaveAChequeredGround()
{
    Workplace const place;
    COMPARE_EXIT(place.run({"colour", "#80336699", "#00ff0000", "--swatches", "a.png"}), 0);
    QImage const image = QImage::fromData(place.read("a.png"), "PNG");
    // Chequers of 8.5 pixels, the first one grey: 0xcc and 0xff behind 0x80 of 0xff of the colour.
    auto const chequer = [&image](QRect const& whole, int column, int row) {
        return colourAt(image, whole.topLeft() + QPoint(int(8.5 * column) + 4, int(8.5 * row) + 4));
    };
    QRect const reference = swatch(4, 0);
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 13; ++column) {
            bool const isGrey = (row + column) % 2 == 0;
            QCOMPARE(chequer(reference, column, row),
                isGrey ? QByteArray("#8099b3") : QByteArray("#99b2cc"));
            QCOMPARE(chequer(swatch(4, 1), column, row),
                isGrey ? QByteArray("#cccccc") : QByteArray("#ffffff"));
        }
    }
    // Tints and shades of it are as translucent: #CDD3DE and #1E4164 in the middle of the ground.
    QCOMPARE(chequer(swatch(1, 0), 0, 0), QByteArray("#cdd0d5"));
    QCOMPARE(chequer(swatch(1, 0), 1, 0), QByteArray("#e6e9ee"));
    QColor const shade(QString::fromLatin1(chequer(swatch(7, 0), 0, 0)));
    QCOMPARE(shade.red(), 117);
    QVERIFY(qAbs(shade.green() - 134.2) < 1.0); // the painter rounds twice
    QCOMPARE(shade.blue(), 152);
}

void TestKpgeomColour::opaqueSwatchesAreOfOneColour()
{
    Workplace const place;
    COMPARE_EXIT(place.run({"colour", "#336699", "white", "--swatches", "a.png"}), 0);
    QImage const image = QImage::fromData(place.read("a.png"), "PNG");
    QByteArray const expected[] = {"#336699", "#ffffff"};
    for (int column = 0; column < 2; ++column) {
        QRect const inside = swatch(4, column).adjusted(1, 1, -1, -1);
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x)
                QCOMPARE(colourAt(image, QPoint(x, y)), expected[column]);
        }
    }
    // The ground, and of each of the 18 swatches the fill and the border; no chequers behind.
    COMPARE_EXIT(place.run({"colour", "#336699", "white", "--swatches", "a.svg"}), 0);
    QCOMPARE(place.read("a.svg").count("<rect "), 1 + 18 * 2);
}

void TestKpgeomColour::comparedTranslucentColoursStayTranslucent()
{
    Workplace const place;
    COMPARE_EXIT(place.run({"colour", "#80336699", "--swatches", "a.png", "--compare"}), 0);
    QImage const image = QImage::fromData(place.read("a.png"), "PNG");
    QCOMPARE(image.width(), 2 * 12 + 70 + 148);
    // The halves meet at 74 pixels; the 60 % tints are #CDD3DE and, of encoded values, #ADC2D6.
    QPoint const tint = swatch(1, 0).topLeft() + QPoint(4, 4);
    QCOMPARE(colourAt(image, tint), QByteArray("#cdd0d5"));
    QCOMPARE(colourAt(image, tint + QPoint(85, 0)), QByteArray("#bdc7d1"));
    QCOMPARE(colourAt(image, tint + QPoint(93, 0)), QByteArray("#d6e0ea"));
}

void TestKpgeomColour::captionsTellTheColours_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("captions"); ///< of the tint of 60 % and of the reference

    QTest::newRow("opaque") << QStringList {"#336699"} << QStringList {"#CDD3DE", "#336699"};
    QTest::newRow("translucent") << QStringList {"#80336699"}
                                 << QStringList {"#80CDD3DE", "#80336699"};
    QTest::newRow("made translucent")
        << QStringList {"#336699", "alpha=0.5"} << QStringList {"#80CDD3DE", "#80336699"};
    QTest::newRow("compared") << QStringList {"#336699", "--compare"}
                              << QStringList {"#CDD3DE #ADC2D6", "#336699 #336699"};
    QTest::newRow("translucent and compared") << QStringList {
        "#80336699", "--compare"} << QStringList {"#80CDD3DE #80ADC2D6", "#80336699 #80336699"};
}

void TestKpgeomColour::captionsTellTheColours()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, captions);
    Workplace const place;
    COMPARE_EXIT(place.run(QStringList {"colour", "--swatches", "a.svg"} + options), 0);
    QStringList found;
    QXmlStreamReader reader(place.read("a.svg"));
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == QLatin1String("text"))
            found << reader.readElementText().trimmed();
    }
    QCOMPARE(found.size(), 18);
    QCOMPARE(found.mid(2, 2), (QStringList {"tint 60 %", captions.first()}));
    QCOMPARE(found.mid(8, 2), (QStringList {"reference", captions.last()}));

    // Nothing of a caption is cut off at the sides of its swatch.
    COMPARE_EXIT(place.run(QStringList {"colour", "--swatches", "a.png"} + options), 0);
    QImage const image = QImage::fromData(place.read("a.png"), "PNG");
    int const right = image.width() - 12;
    for (int y = swatch(1, 0).bottom() + 2; y < swatch(2, 0).top(); ++y) {
        for (int x : {swatch(1, 0).left(), right - 1})
            QCOMPARE(colourAt(image, QPoint(x, y)), QByteArray("#ffffff"));
    }
}

void TestKpgeomColour::swatchesHaveATitle()
{
    Workplace const place;
    for (QString const& file : {QString("a.svg"), QString("a.png"), QString("a.pdf")})
        COMPARE_EXIT(place.run({"colour", "red", "--swatches", file}), 0);
    QVERIFY(place.read("a.svg").contains("<title>Tints and shades</title>"));
    QVERIFY(!place.read("a.svg").contains("<desc"));
    QCOMPARE(
        QImage::fromData(place.read("a.png"), "PNG").text("Title"), QString("Tints and shades"));
    QVERIFY(place.read("a.pdf").contains(QByteArray("/Title (\xfe\xff\0T\0i\0n\0t\0s\0 ", 21)));
}

void TestKpgeomColour::swatchesAreTheSameEveryTime()
{
    Workplace const place;
    QStringList const formats {"svg", "png", "pdf"};
    for (QString const& format : formats)
        COMPARE_EXIT(place.run({"colour", "#80ff0000", "--swatches", "1." + format}), 0);
    QTest::qSleep(1100);
    for (QString const& format : formats) {
        COMPARE_EXIT(place.run({"colour", "#80ff0000", "--swatches", "2." + format}), 0);
        QVERIFY(!place.read("1." + format).isEmpty());
        QVERIFY2(place.read("1." + format) == place.read("2." + format), qPrintable(format));
    }
}

void TestKpgeomColour::swatchesTooManyFail()
{
    Workplace const place;
    QStringList const colours = QVector<QString>(170, "red").toList();
    COMPARE_FAILURE(place.run(QStringList {"colour", "--swatches", "a.png"} + colours), 1,
        "kpgeom colour: a picture of 20148 by 522 is too large: at most 20000 a side, and 100 "
        "million in all (draw fewer colours at a time)");
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomColour::swatchesComeInEveryFormat_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("PNG") << "a.png" << QByteArray("\x89PNG");
    QTest::newRow("SVG") << "a.svg" << QByteArray("<?xml");
    QTest::newRow("PDF") << "a.pdf" << QByteArray("%PDF");
}

void TestKpgeomColour::swatchesComeInEveryFormat()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, start);
    Workplace const place;
    COMPARE_EXIT(place.run({"colour", "red", "--swatches", file}), 0);
    QVERIFY(place.read(file).startsWith(start));
    QCOMPARE(place.entries(), QStringList {file});
}

void TestKpgeomColour::swatchesThatCannotBeWrittenFail()
{
    Workplace const place;
    Result const result = place.run({"colour", "red", "--swatches", "missing/a.png"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.out, QByteArray());
    QVERIFY(result.err.startsWith("missing/a.png: "));
    QCOMPARE(result.err.count('\n'), 1);
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomColour::terminalShowsSwatches_data()
{
    using Variables = QMap<QString, QString>;
    QTest::addColumn<Variables>("variables");
    QTest::addColumn<bool>("shown");
    QTest::newRow("terminal") << Variables {{"TERM", "xterm-256color"}} << true;
    QTest::newRow("without colour")
        << Variables {{"TERM", "xterm-256color"}, {"NO_COLOR", "1"}} << false;
    QTest::newRow("dumb terminal") << Variables {{"TERM", "dumb"}} << false;
    QTest::newRow("unknown terminal") << Variables {} << false;
}

void TestKpgeomColour::terminalShowsSwatches()
{
    using Variables = QMap<QString, QString>;
    QFETCH(Variables, variables);
    QFETCH(bool, shown);
    Terminal const terminal;
    Workplace const place;
    Workplace::Start start;
    start.variables = variables;
    start.setUp = terminal.replacing(STDOUT_FILENO);
    COMPARE_EXIT(place.run({"colour", "#4472c4", "shade=0.5"}, start), 0);
    QByteArray const seen = terminal.text();
    QVERIFY(seen.contains("#2F528F"));
    QCOMPARE(seen.contains("\x1b[48;2;47;82;143m      \x1b[0m"), shown);
    QCOMPARE(seen.contains('\x1b'), shown);
}

QTEST_GUILESS_MAIN(TestKpgeomColour)

#include "tst_kpgeom_colour.moc"
