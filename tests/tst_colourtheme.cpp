// SPDX-License-Identifier: MIT
#include "document/colourtheme.h"

#include "testing.h"

#include <QSet>

namespace {

ShapeColour slotColour(ColourTheme const& theme, int slot, int tint, int alpha)
{
    ShapeColour colour;
    colour.colour.setTintColor(theme.colour(slot), tint, slot);
    colour.colour.setAlpha(alpha);
    return colour;
}

ColourTheme plainTheme(QString const& name, QColor const& accent1)
{
    ColourTheme theme {name, QVector<QColor>(themeSlotCount, QColor(Qt::black))};
    theme.colours[4] = accent1;
    return theme;
}

} // namespace

class TestColourTheme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void themesAreWhole();
    void accentsCanBeToldApart();
    void themesAreFoundByName();
    void slotsHaveNames();
    void colourOfASlotFollowsTheTheme();
    void tintStays_data();
    void tintStays();
    void transformsAndShadowStay();
    void whatIsOfNoSlotStays();
};

void TestColourTheme::themesAreWhole()
{
    QSet<QString> names;
    QVERIFY(colourThemes().size() >= 4);
    for (ColourTheme const& theme : colourThemes()) {
        names.insert(theme.name);
        QCOMPARE(theme.colours.size(), 10);
        for (QColor const& colour : theme.colours) {
            QVERIFY(colour.isValid());
            QCOMPARE(colour.alpha(), 255);
        }
        // Text of a dark slot can be read on a light one.
        QVERIFY(theme.colour(1).lightness() + 100 < theme.colour(2).lightness());
        QVERIFY(theme.colour(3).lightness() + 100 < theme.colour(4).lightness());
    }
    QCOMPARE(names.size(), int(colourThemes().size()));
}

void TestColourTheme::accentsCanBeToldApart()
{
    for (ColourTheme const& theme : colourThemes()) {
        for (int one = 5; one <= 10; ++one) {
            for (int other = one + 1; other <= 10; ++other) {
                QColor const left = theme.colour(one);
                QColor const right = theme.colour(other);
                int const distance = qAbs(left.red() - right.red())
                    + qAbs(left.green() - right.green()) + qAbs(left.blue() - right.blue());
                QVERIFY2(distance >= 60,
                    qPrintable(QString("%1: %2, %3").arg(theme.name).arg(one).arg(other)));
            }
        }
    }
}

void TestColourTheme::themesAreFoundByName()
{
    QVERIFY(themeOf("Meadow"));
    QCOMPARE(themeOf("Meadow")->name, QString("Meadow"));
    QVERIFY(!themeOf("meadow"));
    QVERIFY(!themeOf(""));
}

void TestColourTheme::slotsHaveNames()
{
    QCOMPARE(themeSlotName(1), QString("Dark 1"));
    QCOMPARE(themeSlotName(4), QString("Light 2"));
    QCOMPARE(themeSlotName(10), QString("Accent 6"));
    QCOMPARE(themeSlotName(0), QString());
    QCOMPARE(themeSlotName(11), QString());
    QVERIFY(!colourThemes().front().colour(0).isValid());
    QVERIFY(!colourThemes().front().colour(11).isValid());
}

void TestColourTheme::colourOfASlotFollowsTheTheme()
{
    ColourTheme const red = plainTheme("Red", QColor(200, 0, 0));
    ColourTheme const blue = plainTheme("Blue", QColor(0, 0, 200));
    Appearance appearance;
    appearance.theme = "Red";
    appearance.fill = slotColour(red, 5, 0, 255);
    appearance.line = slotColour(red, 5, 0, 40);
    Appearance changed = withTheme(appearance, blue);
    QCOMPARE(changed.theme, QString("Blue"));
    QCOMPARE(changed.fill->shown(), QColor(0, 0, 200));
    QCOMPARE(changed.fill->colour.refColor(), QColor(0, 0, 200));
    QCOMPARE(changed.fill->colour.themeIndex(), 5);
    QCOMPARE(changed.line->shown(), QColor(0, 0, 200, 40));
    QVERIFY(withTheme(changed, red) == appearance);
}

void TestColourTheme::tintStays_data()
{
    QTest::addColumn<int>("tint");
    QTest::addColumn<QColor>("shown");
    // In linear light: half of full intensity is 188, not 128.
    QTest::newRow("half to white") << 50 << QColor(188, 188, 255);
    QTest::newRow("half to black") << -50 << QColor(0, 0, 188);
    QTest::newRow("white") << 100 << QColor(255, 255, 255);
    QTest::newRow("black") << -100 << QColor(0, 0, 0);
}

void TestColourTheme::tintStays()
{
    QFETCH(int, tint);
    Appearance appearance;
    appearance.fill = slotColour(plainTheme("Red", QColor(255, 0, 0)), 5, tint, 255);
    Appearance changed = withTheme(appearance, plainTheme("Blue", QColor(0, 0, 255)));
    QCOMPARE(changed.fill->colour.tint(), tint);
    QTEST(changed.fill->shown(), "shown");
}

void TestColourTheme::transformsAndShadowStay()
{
    Appearance appearance;
    appearance.fill = slotColour(plainTheme("Red", QColor(255, 0, 0)), 5, 0, 255);
    appearance.fill->transforms = {{"redMod", 0.5}, {"inv", 0.0}};
    appearance.shadow = ShapeShadow {9, 1, {2.0, 3.0}, QColor(9, 8, 7)};
    Appearance const changed = withTheme(appearance, plainTheme("Pink", QColor(200, 100, 50)));
    QCOMPARE(changed.fill->transforms.size(), 2);
    QCOMPARE(changed.fill->transforms.at(0).name, QString("redMod"));
    QCOMPARE(changed.fill->shown(), QColor(155, 155, 205));
    QVERIFY(changed.shadow);
    QCOMPARE(changed.shadow->radius, 9U);
}

void TestColourTheme::whatIsOfNoSlotStays()
{
    Appearance appearance;
    appearance.fill = ShapeColour {KpColor(QColor(1, 2, 3, 4)), {}};
    appearance.line = ShapeColour();
    appearance.line->colour.setTintColor(QColor(10, 20, 30), 0, 11);
    Appearance const changed = withTheme(appearance, colourThemes().front());
    QCOMPARE(changed.fill->shown(), QColor(1, 2, 3, 4));
    QCOMPARE(changed.line->shown(), QColor(10, 20, 30));
    QCOMPARE(changed.line->colour.themeIndex(), 11);
}

QTEST_GUILESS_MAIN(TestColourTheme)
#include "tst_colourtheme.moc"
