// SPDX-License-Identifier: MIT
#include "panels/appearancepanel.h"

#include "appearancepaneltesting.h"
#include "panels/colourbutton.h"
#include "panels/colourslots.h"
#include "panels/steplist.h"
#include "panels/swatch.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QSlider>
#include <QSpinBox>

using namespace AppearancePanelTesting;

class TestAppearancePanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsSaidAtFirst();
    void slotIsChosenByMouse();
    void slotIsChosenByKeyboard();
    void usualColourIsChosenAgain();
    void slotKeepsTintAndTransforms();
    void plainColourIsChosen();
    void plainColourIsSeenBeforeAndDropped();
    void tintDragIsOneStep();
    void tintByKeyboard();
    void tintByNumber();
    void sliderShowsTheTints();
    void lineHasItsOwn();
    void shadowIsSwitched();
    void shadowRadiusDragIsOneStep();
    void shadowNumbersAreChanged();
    void themeChangesAllOutlinesInOneStep();
    void themeByKeyboard();
    void unknownThemeIsNamed();
    void panelFollowsTheDocument();
    void emptyDocumentDisablesIt();
    void everyControlHasAName();
    void swatchesAreOfTheirColours();
    void picturesInPalettes_data();
    void picturesInPalettes();
};

void TestAppearancePanel::nothingIsSaidAtFirst()
{
    Bench bench;
    QVERIFY(bench.appearance().isEmpty());
    QVERIFY(bench.steps().isEmpty());
    QCOMPARE(bench.section->findChild<ColourSlots*>()->currentSlot(), 0);
    QVERIFY(!bench.find<QSlider>("Tint of fill")->isEnabled());
    QVERIFY(!bench.find<StepList>("Transforms of fill")->isEnabled());
}

void TestAppearancePanel::slotIsChosenByMouse()
{
    Bench bench;
    bench.click("Fill: Accent 3");
    QVERIFY(bench.kept().fill);
    QCOMPARE(bench.kept().fill->colour.themeIndex(), 7);
    QCOMPARE(bench.kept().fill->shown(), QColor(0xe0, 0xa0, 0x30));
    QCOMPARE(bench.kept().theme, QString("Harbour"));
    QVERIFY(!bench.kept().line);
    QCOMPARE(bench.steps(), QStringList {"Change fill colour"});
    bench.document.undoStack().undo();
    QVERIFY(bench.kept().isEmpty());
    QCOMPARE(bench.section->findChild<ColourSlots*>()->currentSlot(), 0);
}

void TestAppearancePanel::slotIsChosenByKeyboard()
{
    Bench bench;
    QWidget* const usual = bench.find<QAbstractButton>("Fill: Usual colour");
    usual->setFocus();
    QTest::keyClick(usual, Qt::Key_Right);
    QCOMPARE(bench.kept().fill->colour.themeIndex(), 1);
    QTest::keyClick(bench.panel.focusWidget(), Qt::Key_Right);
    QCOMPARE(bench.kept().fill->colour.themeIndex(), 2);
    QCOMPARE(bench.kept().fill->shown(), harbour(2));
    QCOMPARE(bench.steps().size(), 2);
}

void TestAppearancePanel::usualColourIsChosenAgain()
{
    Bench bench;
    bench.click("Fill: Dark 1");
    bench.click("Fill: Usual colour");
    QVERIFY(!bench.kept().fill);
    QCOMPARE(bench.steps().size(), 2);
}

void TestAppearancePanel::slotKeepsTintAndTransforms()
{
    Bench bench;
    bench.appearance().fill = ShapeColour {KpColor(QColor(200, 40, 10, 99)), {{"inv", 0}}};
    bench.appearance().fill->colour.modifyTint(-30);
    bench.document.commit("Prepare");
    bench.document.touch();
    bench.click("Fill: Accent 1");
    KpColor colour = bench.kept().fill->colour;
    QCOMPARE(colour.tint(), -30);
    QCOMPARE(colour.alpha(), 99);
    QCOMPARE(colour.refColor(), harbour(5));
    QCOMPARE(names(bench.kept().fill->transforms), QStringList {"inv"});
}

void TestAppearancePanel::plainColourIsChosen()
{
    Bench bench;
    auto* const button = bench.find<ColourButton>("Fill colour");
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    QColorDialog* const dialog = button->dialog();
    QVERIFY(dialog);
    dialog->setCurrentColor(QColor(1, 2, 3, 4));
    QTest::keyClick(dialog, Qt::Key_Return);
    QVERIFY(bench.kept().fill);
    QCOMPARE(bench.kept().fill->shown(), QColor(1, 2, 3, 4));
    QCOMPARE(bench.kept().fill->colour.themeIndex(), 0);
    QCOMPARE(bench.kept().theme, QString());
    QCOMPARE(bench.steps(), QStringList {"Change fill colour"});
    QCOMPARE(bench.section->findChild<ColourSlots*>()->currentSlot(), -1);
    QCOMPARE(button->colour(), QColor(1, 2, 3, 4));
}

void TestAppearancePanel::plainColourIsSeenBeforeAndDropped()
{
    Bench bench;
    auto* const button = bench.find<ColourButton>("Fill colour");
    QTest::mouseClick(button, Qt::LeftButton);
    button->dialog()->setCurrentColor(QColor(9, 8, 7));
    QVERIFY(bench.appearance().fill);
    QCOMPARE(bench.appearance().fill->shown(), QColor(9, 8, 7));
    QVERIFY(!bench.kept().fill);
    QTest::keyClick(button->dialog(), Qt::Key_Escape);
    QVERIFY(!bench.appearance().fill);
    QVERIFY(bench.steps().isEmpty());
}

void TestAppearancePanel::tintDragIsOneStep()
{
    Bench bench;
    bench.click("Fill: Accent 1");
    auto* const slider = bench.find<QSlider>("Tint of fill");
    QSignalSpy const seen(&bench.document, &ShapeDocument::workingChanged);
    int const y = slider->height() / 3;
    QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(slider->width() / 2, y));
    QVERIFY(slider->isSliderDown());
    for (int part : {5, 6, 7})
        drag(slider, QPoint(slider->width() * part / 8, y));
    QVERIFY(seen.count() >= 3);
    QCOMPARE(bench.steps().size(), 1);
    QCOMPARE(KpColor(bench.kept().fill->colour).tint(), 0);
    QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(slider->width() * 7 / 8, y));
    int const tint = KpColor(bench.kept().fill->colour).tint();
    QVERIFY2(tint > 50 && tint < 100, qPrintable(QString::number(tint)));
    QCOMPARE(bench.steps(), QStringList({"Change fill colour", "Change tint of fill"}));
    QCOMPARE(bench.find<QSpinBox>("Tint of fill in percent")->value(), tint);
}

void TestAppearancePanel::tintByKeyboard()
{
    Bench bench;
    bench.appearance().fill = ShapeColour {KpColor(QColor(255, 0, 0)), {}};
    bench.document.touch();
    auto* const slider = bench.find<QSlider>("Tint of fill");
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(slider, Qt::Key_PageUp);
    QCOMPARE(KpColor(bench.kept().fill->colour).tint(), 50);
    // Half of the light, not half of the numbers.
    QCOMPARE(bench.kept().fill->shown(), QColor(255, 188, 188));
    QTest::keyClick(slider, Qt::Key_Home);
    QCOMPARE(bench.kept().fill->shown(), QColor(0, 0, 0));
    QTest::keyClick(slider, Qt::Key_End);
    QCOMPARE(bench.kept().fill->shown(), QColor(255, 255, 255));
    QCOMPARE(bench.steps().last(), QString("Change tint of fill"));
}

void TestAppearancePanel::tintByNumber()
{
    Bench bench;
    bench.click("Fill: Accent 1");
    auto* const number = bench.find<QSpinBox>("Tint of fill in percent");
    number->setFocus();
    number->selectAll();
    QTest::keyClicks(number, "-42");
    QCOMPARE(bench.steps().size(), 1);
    QTest::keyClick(number, Qt::Key_Return);
    QCOMPARE(KpColor(bench.kept().fill->colour).tint(), -42);
    QCOMPARE(bench.find<QSlider>("Tint of fill")->value(), -42);
    QCOMPARE(bench.steps().size(), 2);
}

void TestAppearancePanel::sliderShowsTheTints()
{
    Bench bench;
    bench.appearance().fill = ShapeColour {KpColor(QColor(255, 0, 0)), {}};
    bench.document.touch();
    auto* const slider = bench.find<QSlider>("Tint of fill");
    QImage const image = slider->grab().toImage();
    auto const at = [&image](double part) {
        return image.pixelColor(int(part * image.width()), image.height() / 2);
    };
    // A quarter of the way is half of the tint: half of the light, not half of the numbers.
    QVERIFY(qAbs(at(0.75).green() - 188) < 16);
    QVERIFY(qAbs(at(0.25).red() - 188) < 16);
    QVERIFY(at(0.94).green() > at(0.75).green());
    QVERIFY(at(0.06).red() < at(0.25).red());
    QCOMPARE(at(0.25).green(), 0);
    QCOMPARE(at(0.75).red(), 255);
}

void TestAppearancePanel::lineHasItsOwn()
{
    Bench bench;
    bench.showTab(1);
    bench.click("Line: Dark 2");
    QVERIFY(bench.kept().line);
    QVERIFY(!bench.kept().fill);
    QCOMPARE(bench.kept().line->shown(), harbour(3));
    bench.find<QSlider>("Tint of line")->setValue(20);
    QCOMPARE(bench.steps(), QStringList({"Change line colour", "Change tint of line"}));
}

void TestAppearancePanel::shadowIsSwitched()
{
    Bench bench;
    bench.showTab(2);
    auto* const check = bench.section->findChild<QCheckBox*>();
    QTest::keyClick(check, Qt::Key_Space);
    QVERIFY(bench.kept().shadow);
    QCOMPARE(bench.kept().shadow->radius, 6U);
    auto* const radius = bench.find<QSpinBox>("Radius of the shadow, in units of the shape");
    radius->setValue(12);
    QTest::keyClick(check, Qt::Key_Space);
    QVERIFY(!bench.kept().shadow);
    QVERIFY(!radius->isEnabled());
    QTest::keyClick(check, Qt::Key_Space);
    QCOMPARE(bench.kept().shadow->radius, 12U);
    QCOMPARE(bench.steps().size(), 4);
    QCOMPARE(bench.steps().count("Change shadow"), 4);
}

void TestAppearancePanel::shadowRadiusDragIsOneStep()
{
    Bench bench;
    bench.showTab(2);
    QTest::keyClick(bench.section->findChild<QCheckBox*>(), Qt::Key_Space);
    auto* const slider = bench.find<QSlider>("Radius of the shadow");
    slider->setValue(0);
    slider->setSliderDown(true);
    slider->setSliderPosition(20);
    slider->setSliderPosition(30);
    QCOMPARE(bench.appearance().shadow->radius, 30U);
    QCOMPARE(bench.kept().shadow->radius, 0U);
    slider->setSliderDown(false);
    QCOMPARE(bench.kept().shadow->radius, 30U);
    QCOMPARE(bench.steps().size(), 3);
}

void TestAppearancePanel::shadowNumbersAreChanged()
{
    Bench bench;
    bench.appearance().shadow = ShapeShadow {200, 1, {1.23456, 7.0}, QColor(Qt::red)};
    bench.document.commit("Prepare");
    bench.document.touch();
    bench.showTab(2);
    bench.find<QSpinBox>("Flatness of the shadow")->setValue(30);
    auto* const y = bench.find<QDoubleSpinBox>("Shadow downwards");
    y->setFocus();
    y->selectAll();
    QTest::keyClicks(y, "-2.5");
    QTest::keyClick(y, Qt::Key_Return);
    ShapeShadow const& shadow = *bench.kept().shadow;
    QCOMPARE(shadow.radius, 200U);
    QCOMPARE(shadow.flatness, 30U);
    QCOMPARE(shadow.offset.x(), 1.23456);
    QCOMPARE(shadow.offset.y(), -2.5);
    auto* const button = bench.find<ColourButton>("Shadow colour");
    QTest::mouseClick(button, Qt::LeftButton);
    button->dialog()->setCurrentColor(QColor(0, 0, 9, 50));
    QTest::keyClick(button->dialog(), Qt::Key_Return);
    QCOMPARE(bench.kept().shadow->colour, QColor(0, 0, 9, 50));
    QCOMPARE(bench.steps().size(), 4);
}

void TestAppearancePanel::themeChangesAllOutlinesInOneStep()
{
    Bench bench;
    bench.click("Fill: Accent 1");
    bench.document.setCurrent(1);
    bench.appearance().line = ShapeColour {KpColor(QColor(1, 2, 3)), {}};
    bench.document.commit("Prepare");
    auto* const combo = bench.panel.findChild<QComboBox*>();
    QCOMPARE(combo->accessibleName(), QString("Theme of all outlines"));
    int const dusk = combo->findText("Dusk");
    combo->setCurrentIndex(dusk);
    Q_EMIT combo->activated(dusk);
    QCOMPARE(bench.steps(), QStringList({"Change fill colour", "Prepare", "Change theme"}));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(bench.document.at(i).appearance.theme, QString("Dusk"));
    QCOMPARE(bench.document.at(0).appearance.fill->shown(), QColor(0x6f, 0x55, 0xb5));
    QCOMPARE(bench.document.at(1).appearance.line->shown(), QColor(1, 2, 3));
    QCOMPARE(bench.document.current(), 1);
    bench.document.undoStack().undo();
    QCOMPARE(bench.document.at(0).appearance.fill->shown(), harbour(5));
    QVERIFY(bench.document.at(2).appearance.isEmpty());
}

void TestAppearancePanel::themeByKeyboard()
{
    Bench bench;
    auto* const combo = bench.panel.findChild<QComboBox*>();
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(bench.kept().theme, QString("Meadow"));
    QCOMPARE(
        bench.find<QAbstractButton>("Fill: Accent 1")->accessibleDescription(), QString("#4B9B4E"));
    QCOMPARE(bench.steps(), QStringList {"Change theme"});
}

void TestAppearancePanel::unknownThemeIsNamed()
{
    Bench bench;
    bench.appearance().theme = "Elsewhere";
    bench.document.touch();
    auto* const combo = bench.panel.findChild<QComboBox*>();
    QCOMPARE(combo->currentIndex(), -1);
    QCOMPARE(combo->placeholderText(), QString("Elsewhere"));
    QCOMPARE(bench.appearance().theme, QString("Elsewhere"));
}

void TestAppearancePanel::panelFollowsTheDocument()
{
    Bench bench;
    bench.click("Fill: Accent 2");
    bench.document.setCurrent(2);
    auto* const slotRow = bench.section->findChild<ColourSlots*>();
    QCOMPARE(slotRow->currentSlot(), 0);
    bench.document.setCurrent(0);
    QCOMPARE(slotRow->currentSlot(), 6);
    QVERIFY(bench.find<QSlider>("Tint of fill")->isEnabled());
}

void TestAppearancePanel::emptyDocumentDisablesIt()
{
    Bench bench;
    bench.document.remove(0, 3, "Remove");
    QVERIFY(!bench.panel.isEnabled());
    bench.document.undoStack().undo();
    QVERIFY(bench.panel.isEnabled());
}

void TestAppearancePanel::everyControlHasAName()
{
    Bench bench;
    int controls = 0;
    for (QWidget* const widget : bench.panel.findChildren<QWidget*>()) {
        bool const isControl = widget->focusPolicy() != Qt::NoFocus
            && (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QAbstractSlider*>(widget)
                || qobject_cast<QAbstractSpinBox*>(widget) || qobject_cast<QComboBox*>(widget)
                || qobject_cast<QListWidget*>(widget));
        auto const* const button = qobject_cast<QAbstractButton*>(widget);
        if (!isControl)
            continue;
        ++controls;
        QVERIFY2(!widget->accessibleName().isEmpty() || (button && !button->text().isEmpty()),
            widget->metaObject()->className());
    }
    QVERIFY(controls > 40);
}

void TestAppearancePanel::swatchesAreOfTheirColours()
{
    Bench bench;
    bench.click("Fill: Accent 4");
    for (int slot = 1; slot <= 10; ++slot) {
        QWidget* const button = bench.section->findChild<ColourSlots*>()->button(slot);
        QImage const image = button->grab().toImage();
        QCOMPARE(image.pixelColor(image.width() / 2, image.height() / 2), harbour(slot));
    }
    QImage const usual =
        swatchPixmap(QColor(), QSize(20, 20), bench.panel.palette(), 1.0).toImage();
    QVERIFY(usual.pixelColor(5, 5) != usual.pixelColor(10, 9));
}

void TestAppearancePanel::picturesInPalettes_data()
{
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("text");
    QTest::newRow("light") << QColor(0xef, 0xef, 0xef) << QColor(Qt::black);
    QTest::newRow("dark") << QColor(0x2b, 0x2d, 0x30) << QColor(0xe6, 0xe6, 0xe6);
    QTest::newRow("contrast") << QColor(Qt::black) << QColor(Qt::yellow);
}

void TestAppearancePanel::picturesInPalettes()
{
    QFETCH(QColor, window);
    QFETCH(QColor, text);
    QPalette palette(window, window);
    for (auto const role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, window.darker(window.value() > 128 ? 95 : 120));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x7f, 0xd0));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(0x88, 0x88, 0x88));
    Bench bench;
    bench.panel.setPalette(palette);
    addTransforms(bench);
    bench.click("Fill: Accent 3");
    bench.appearance().line = ShapeColour {KpColor(QColor(20, 30, 200, 120)), {}};
    bench.appearance().shadow = ShapeShadow();
    bench.document.touch();
    QString const folder = qEnvironmentVariable("KPSHAPES_PICTURES");
    for (int tab = 0; tab < 3; ++tab) {
        bench.showTab(tab);
        QPixmap const picture = bench.panel.grab();
        // Nothing is painted in a colour of another palette: the ground is the palette's.
        QCOMPARE(picture.toImage().pixelColor(1, 1), window);
        if (!folder.isEmpty())
            picture.save(
                QString("%1/look-%2-%3.png").arg(folder, QTest::currentDataTag()).arg(tab));
    }
}

KPSHAPES_TEST_MAIN(TestAppearancePanel)
#include "tst_kpshapes_appearancepanel.moc"
