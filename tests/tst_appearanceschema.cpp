// SPDX-License-Identifier: MIT
#include "document/appearancexml.h"

#include "document/colourtheme.h"
#include "schematesting.h"
#include "testing.h"
#include "xmlstreamwriter.h"

using SchemaTesting::Schema;

namespace {

QByteArray documentWith(QByteArray const& appearance)
{
    return "<Shapes><Shape Width=\"100\" Height=\"60\">" + KpgeomTesting::boxGeometry() + appearance
        + "</Shape></Shapes>";
}

ShapeColour anyColour(QRandomGenerator& random, ColourTheme const& theme)
{
    ShapeColour colour;
    int const slot = random.bounded(themeSlotCount + 1);
    QColor const any(random.bounded(256), random.bounded(40), random.bounded(256));
    colour.colour.setTintColor(
        slot > 0 ? theme.colour(slot) : any, random.bounded(-100, 101), slot);
    colour.colour.setAlpha(random.bounded(256));
    for (int i = random.bounded(4); i > 0; --i)
        colour.transforms.append({"any <name>", Testing::awkwardReal(random)});
    return colour;
}

Appearance anyAppearance(QRandomGenerator& random)
{
    ColourTheme const& theme = colourThemes().back();
    Appearance appearance;
    if (random.bounded(2) == 1)
        appearance.theme = theme.name;
    if (random.bounded(2) == 1)
        appearance.fill = anyColour(random, theme);
    if (random.bounded(2) == 1)
        appearance.line = anyColour(random, theme);
    if (random.bounded(2) == 1) {
        appearance.shadow = ShapeShadow {static_cast<unsigned int>(random.bounded(255)),
            random.generate(), {Testing::awkwardReal(random), Testing::awkwardReal(random)},
            QColor(1, 2, 3, random.bounded(256))};
    }
    return appearance;
}

} // namespace

/** What documents say of how shapes look, by the schema. */
class TestAppearanceSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writtenIsValid();
    void otherwiseIsNot_data();
    void otherwiseIsNot();
};

void TestAppearanceSchema::writtenIsValid()
{
    QRandomGenerator random = Testing::seededRandom(11);
    KpgeomTesting::Workplace const place;
    QStringList files;
    for (int i = 0; i < 100; ++i) {
        QByteArray text;
        XmlStreamWriter writer(&text);
        writeAppearance(writer, anyAppearance(random));
        files << QString("%1.xml").arg(i);
        place.write(files.last(), documentWith(text));
    }
    Schema schema("shapes.rng");
    QCOMPARE(schema.invalid(place.path(), files), QStringList());
}

void TestAppearanceSchema::otherwiseIsNot_data()
{
    QTest::addColumn<QByteArray>("appearance");
    QTest::newRow("unknown element") << QByteArray("<Appearance><Odd/></Appearance>");
    QTest::newRow("unknown attribute") << QByteArray("<Appearance Odd='1'/>");
    QTest::newRow("two") << QByteArray("<Appearance/><Appearance/>");
    QTest::newRow("fill without a colour") << QByteArray("<Appearance><Fill/></Appearance>");
    QTest::newRow("colour by a name")
        << QByteArray("<Appearance><Fill><Color V='red'/></Fill></Appearance>");
    QTest::newRow("slot 0") << QByteArray(
        "<Appearance><Fill><Color ThemeColor='0' V='#ff000000'/></Fill></Appearance>");
    QTest::newRow("tint and shade") << QByteArray(
        "<Appearance><Fill><Color Tint='5' Shade='5' V='#ff000000'/></Fill></Appearance>");
    QTest::newRow("tint of 101 %")
        << QByteArray("<Appearance><Fill><Color Tint='101' V='#ff000000'/></Fill></Appearance>");
    QTest::newRow("value that is no number")
        << QByteArray("<Appearance><Fill><Color V='#ff000000'/><Transform Name='lum' Value='inf'/>"
                      "</Fill></Appearance>");
    QTest::newRow("radius of 255")
        << QByteArray("<Appearance><Shadow Radius='255' Flatness='0' X='0' Y='0' "
                      "Color='#ff000000'/></Appearance>");
}

void TestAppearanceSchema::otherwiseIsNot()
{
    QFETCH(QByteArray, appearance);
    QVERIFY(Schema("shapes.rng").isValid(documentWith("<Appearance/>")));
    QVERIFY(!Schema("shapes.rng").isValid(documentWith(appearance)));
}

QTEST_GUILESS_MAIN(TestAppearanceSchema)
#include "tst_appearanceschema.moc"
