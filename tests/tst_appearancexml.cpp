// SPDX-License-Identifier: MIT
#include "document/appearancexml.h"

#include "testing.h"
#include "xmlstreamwriter.h"

#include <QXmlStreamReader>

namespace {

QString written(Appearance const& appearance)
{
    QString text;
    XmlStreamWriter writer(&text);
    writeAppearance(writer, appearance);
    return text;
}

Appearance readFrom(QString const& text)
{
    QXmlStreamReader reader(text);
    reader.readNextStartElement();
    return readAppearance(reader);
}

ShapeColour themeColour(QColor const& reference, int tint, int slot)
{
    ShapeColour colour;
    colour.colour.setTintColor(reference, tint, slot);
    return colour;
}

/** A fill whose one transform has this value as text. */
QString fillWith(QString const& value)
{
    return QString("<Appearance><Fill><Color V='red'/><Transform Name='lum' Value='%1'/></Fill>"
                   "</Appearance>")
        .arg(value);
}

} // namespace

class TestAppearanceXml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsWrittenOfNothing();
    void documentIsAsExpected();
    void coloursAreReadBack_data();
    void coloursAreReadBack();
    void transformsKeepTheirOrderAndValues();
    void shadowIsReadBack();
    void invalidColourIsLeftOut();
    void readerStopsAtTheEndTag();
    void unknownIsIgnored();
    void badNumbersAreZero_data();
    void badNumbersAreZero();
    void shadowIsClamped_data();
    void shadowIsClamped();
    void themeIndexIsNeverNegative();
    void transformsAreBounded_data();
    void transformsAreBounded();
    void depthIsNoTrouble();
    void brokenDocumentEnds();
};

void TestAppearanceXml::nothingIsWrittenOfNothing()
{
    QCOMPARE(written({}), QString());
}

void TestAppearanceXml::documentIsAsExpected()
{
    Appearance appearance;
    appearance.theme = "Harbour";
    appearance.fill = ShapeColour {KpColor(QColor(0x33, 0x66, 0x99)), {{"lumMod", 0.75}}};
    appearance.line = themeColour(QColor(10, 20, 30), -50, 5);
    appearance.shadow = ShapeShadow {7, 2, {1.5, -3.0}, QColor(1, 2, 3, 4)};
    QCOMPARE(written(appearance),
        QString("<Appearance Theme=\"Harbour\"><Fill><Color V=\"#ff336699\"/>"
                "<Transform Name=\"lumMod\" Value=\"0.75\"/></Fill>"
                "<Line Reference=\"#0a141e\"><Color ThemeColor=\"5\" Shade=\"50\" "
                "V=\"#ff050b13\" Ref=\"#a141e\"/></Line>"
                "<Shadow Radius=\"7\" Flatness=\"2\" X=\"1.5\" Y=\"-3\" Color=\"#04010203\"/>"
                "</Appearance>"));
}

void TestAppearanceXml::coloursAreReadBack_data()
{
    QTest::addColumn<int>("red");
    QTest::addColumn<int>("tint");
    QTest::addColumn<int>("slot");
    QTest::addColumn<int>("alpha");
    QTest::newRow("plain") << 200 << 0 << 0 << 255;
    QTest::newRow("translucent") << 200 << 0 << 0 << 7;
    QTest::newRow("slot") << 200 << 0 << 10 << 255;
    QTest::newRow("slot tinted") << 200 << 40 << 3 << 255;
    QTest::newRow("slot shaded, translucent") << 200 << -99 << 3 << 128;
    QTest::newRow("white by its tint") << 200 << 100 << 3 << 255;
    QTest::newRow("black by its shade") << 200 << -100 << 3 << 255;
    QTest::newRow("reference of one digit") << 5 << 40 << 3 << 255;
    QTest::newRow("reference of zero") << 0 << 1 << 0 << 255;
}

void TestAppearanceXml::coloursAreReadBack()
{
    QFETCH(int, red);
    QFETCH(int, tint);
    QFETCH(int, slot);
    QFETCH(int, alpha);
    Appearance appearance;
    appearance.fill = themeColour(QColor(red, 90, 12), tint, slot);
    appearance.fill->colour.setAlpha(alpha);
    Appearance read = readFrom(written(appearance));
    QVERIFY(read == appearance);
    QVERIFY(read.fill);
    QCOMPARE(read.fill->colour.refColor(), QColor(red, 90, 12));
    QCOMPARE(read.fill->colour.tint(), tint);
    QCOMPARE(read.fill->colour.themeIndex(), slot);
    QCOMPARE(read.fill->colour.alpha(), alpha);
    QVERIFY(!read.line && !read.shadow);
}

void TestAppearanceXml::transformsKeepTheirOrderAndValues()
{
    double const values[] = {0.1, 1.0 / 3.0, -5e-324, 1.7976931348623157e308, 0.0, 100000.0};
    Appearance appearance;
    appearance.line = ShapeColour {KpColor(QColor(Qt::red)), {}};
    for (double const value : values)
        appearance.line->transforms.append({QString("name %1 <&\"").arg(value), value});
    Appearance const read = readFrom(written(appearance));
    QVERIFY(read == appearance);
    QVERIFY(read.line);
    QCOMPARE(read.line->transforms.size(), 6);
    for (int i = 0; i < 6; ++i)
        COMPARE_BITS(read.line->transforms.at(i).value, values[i]);
}

void TestAppearanceXml::shadowIsReadBack()
{
    Appearance appearance;
    appearance.shadow =
        ShapeShadow {254, 4294967295U, {1.0 / 3.0, -1e-7}, QColor(255, 254, 253, 0)};
    QVERIFY(readFrom(written(appearance)) == appearance);
}

void TestAppearanceXml::invalidColourIsLeftOut()
{
    Appearance appearance;
    appearance.fill = ShapeColour();
    QCOMPARE(written(appearance), QString("<Appearance/>"));
    for (char const* const colour : {"", "<Color/>", "<Color V='nonsense'/>", "<Color Tint='5'/>"})
        QVERIFY(!readFrom(QString("<Appearance><Fill>%1</Fill></Appearance>").arg(colour)).fill);
}

void TestAppearanceXml::readerStopsAtTheEndTag()
{
    QXmlStreamReader reader(
        QString("<Shape><Appearance Theme='A'><Fill><Color V='#102030'/></Fill></Appearance>"
                "<Next/></Shape>"));
    reader.readNextStartElement();
    reader.readNextStartElement();
    QCOMPARE(readAppearance(reader).theme, QString("A"));
    QVERIFY(reader.isEndElement());
    QCOMPARE(reader.name().toString(), QString("Appearance"));
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), QString("Next"));
}

void TestAppearanceXml::unknownIsIgnored()
{
    Appearance const read = readFrom(
        "<Appearance Odd='1' Theme='A'>text<Odd><Fill><Color V='red'/></Fill></Odd>"
        "<Fill Odd='2'><Odd><Color V='red'/><Transform Name='inv'/></Odd><Color V='#102030' "
        "Odd='3'><Transform Name='inv'/></Color><!-- --><Transform Name='gray' Value='1'/></Fill>"
        "<Transform Name='inv'/></Appearance>");
    QCOMPARE(read.theme, QString("A"));
    QVERIFY(read.fill && !read.line && !read.shadow);
    QCOMPARE(read.fill->colour.name(), QString("#102030"));
    QCOMPARE(read.fill->transforms.size(), 1);
    QCOMPARE(read.fill->transforms.at(0).name, QString("gray"));
}

void TestAppearanceXml::badNumbersAreZero_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("word") << "much";
    QTest::newRow("infinite") << "inf";
    QTest::newRow("no number") << "nan";
    QTest::newRow("too large") << "1e999";
    QTest::newRow("comma") << "0,5";
}

void TestAppearanceXml::badNumbersAreZero()
{
    QFETCH(QString, text);
    Appearance const read = readFrom(fillWith(text));
    QVERIFY(read.fill);
    COMPARE_BITS(read.fill->transforms.at(0).value, 0.0);
}

void TestAppearanceXml::shadowIsClamped_data()
{
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<unsigned int>("radius");
    QTest::addColumn<unsigned int>("flatness");
    QTest::addColumn<QPointF>("offset");
    QTest::addColumn<QColor>("colour");
    QColor const usual(0, 0, 0, 128);
    QTest::newRow("nothing given") << "" << 0U << 0U << QPointF() << usual;
    QTest::newRow("the greatest radius") << "Radius='254'" << 254U << 0U << QPointF() << usual;
    QTest::newRow("too large") << "Radius='255' Flatness='1e30' X='1e999'" << 254U << 4294967295U
                               << QPointF() << usual;
    QTest::newRow("negative") << "Radius='-1' Flatness='-7' Y='-7'" << 0U << 0U
                              << QPointF(0.0, -7.0) << usual;
    QTest::newRow("not finite") << "Radius='inf' Flatness='nan' X='-inf' Y='nan'" << 0U << 0U
                                << QPointF() << usual;
    QTest::newRow("a part") << "Radius='6.9' Color='blue'" << 6U << 0U << QPointF()
                            << QColor(0, 0, 255);
    QTest::newRow("many bits") << "Color='#111122223333'" << 0U << 0U << QPointF()
                               << QColor(0x11, 0x22, 0x33);
    QTest::newRow("no colour") << "Color='#12'" << 0U << 0U << QPointF() << usual;
}

void TestAppearanceXml::shadowIsClamped()
{
    QFETCH(QString, attributes);
    Appearance const read =
        readFrom(QString("<Appearance><Shadow %1/></Appearance>").arg(attributes));
    QVERIFY(read.shadow);
    QTEST(read.shadow->radius, "radius");
    QTEST(read.shadow->flatness, "flatness");
    QTEST(read.shadow->offset, "offset");
    QTEST(read.shadow->colour, "colour");
}

void TestAppearanceXml::themeIndexIsNeverNegative()
{
    Appearance const read = readFrom(
        "<Appearance><Fill><Color V='red' ThemeColor='-4' Tint='900'/></Fill></Appearance>");
    QVERIFY(read.fill);
    QCOMPARE(read.fill->colour.themeIndex(), 0);
    QCOMPARE(KpColor(read.fill->colour).tint(), 100);
}

void TestAppearanceXml::transformsAreBounded_data()
{
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("read");
    QTest::newRow("most") << 1000 << 1000;
    QTest::newRow("one more") << 1001 << 1000;
    QTest::newRow("many") << 5000 << 1000;
}

void TestAppearanceXml::transformsAreBounded()
{
    QFETCH(int, written);
    QString const many = QString("<Transform Name='inv' Value='1'/>").repeated(written);
    Appearance const read =
        readFrom("<Appearance><Fill>" + many + "<Color V='red'/></Fill></Appearance>");
    QVERIFY(read.fill);
    QTEST(read.fill->transforms.size(), "read");
}

void TestAppearanceXml::depthIsNoTrouble()
{
    int const depth = 100000;
    Appearance const read = readFrom("<Appearance>" + QString("<Fill>").repeated(depth)
        + QString("</Fill>").repeated(depth) + "<Shadow Radius='3'/></Appearance>");
    QVERIFY(!read.fill);
    QVERIFY(read.shadow);
    QCOMPARE(read.shadow->radius, 3U);
}

void TestAppearanceXml::brokenDocumentEnds()
{
    QXmlStreamReader reader(QString("<Appearance Theme='A'><Fill><Color V='red'/><</Fill>"));
    reader.readNextStartElement();
    QCOMPARE(readAppearance(reader).theme, QString("A"));
    QVERIFY(reader.hasError());
}

QTEST_GUILESS_MAIN(TestAppearanceXml)
#include "tst_appearancexml.moc"
