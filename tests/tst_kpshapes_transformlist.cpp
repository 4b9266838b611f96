// SPDX-License-Identifier: MIT
#include "panels/transformlist.h"

#include "appearancepaneltesting.h"
#include "colorutil.h"
#include "panels/steplist.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>

using namespace AppearancePanelTesting;

class TestTransformList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void transformIsAdded_data();
    void transformIsAdded();
    void everyTransformIsOffered();
    void transformValueIsChanged();
    void transformIsMovedByButtons();
    void transformIsMovedByKeys();
    void transformDragIsOneStep();
    void transformIsRemoved();
    void stepsShowTheirColours();
};

void TestTransformList::transformIsAdded_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("value");
    QTest::newRow("modulation") << "satMod" << 0.75;
    QTest::newRow("offset") << "hueOff" << 0.1;
    QTest::newRow("other") << "tint" << 0.5;
}

void TestTransformList::transformIsAdded()
{
    QFETCH(QString, name);
    Bench bench;
    bench.click("Fill: Accent 1");
    bench.find<QComboBox>("Transform to add to fill")->setCurrentText(name);
    bench.click("Add the transform to fill");
    QCOMPARE(names(bench.kept().fill->transforms), QStringList {name});
    QTEST(bench.kept().fill->transforms.at(0).value, "value");
    QVERIFY(bench.kept().fill->shown() != harbour(5));
    QCOMPARE(bench.steps().last(), QString("Add transform of fill"));
    QCOMPARE(bench.find<StepList>("Transforms of fill")->currentRow(), 0);
}

void TestTransformList::everyTransformIsOffered()
{
    Bench bench;
    auto* const choice = bench.find<QComboBox>("Transform to add to fill");
    QStringList offered;
    for (int i = 0; i < choice->count(); ++i)
        offered << choice->itemText(i);
    QCOMPARE(offered, ColorUtil::mapColorFuncs.keys());
    QVERIFY(offered.contains("lumMod") && offered.contains("invGamma"));
}

void TestTransformList::transformValueIsChanged()
{
    Bench bench;
    addTransforms(bench);
    bench.find<StepList>("Transforms of fill")->setCurrentRow(2);
    auto* const value = bench.find<QDoubleSpinBox>("Value of the transform of fill");
    QCOMPARE(value->value(), 0.25);
    value->setFocus();
    value->selectAll();
    QTest::keyClicks(value, "0.5");
    QTest::keyClick(value, Qt::Key_Return);
    QCOMPARE(bench.kept().fill->transforms.at(2).value, 0.5);
    QCOMPARE(bench.steps().last(), QString("Change transform of fill"));
    QTest::keyClick(value, Qt::Key_Up);
    QCOMPARE(bench.kept().fill->transforms.at(2).value, 0.55);
}

void TestTransformList::transformIsMovedByButtons()
{
    Bench bench;
    addTransforms(bench);
    auto* const list = bench.find<StepList>("Transforms of fill");
    list->setCurrentRow(2);
    bench.click("Move the transform of fill up");
    QCOMPARE(names(bench.kept().fill->transforms), QStringList({"inv", "lum", "gray"}));
    QCOMPARE(list->currentRow(), 1);
    bench.click("Move the transform of fill up");
    QVERIFY(!bench.find<QAbstractButton>("Move the transform of fill up")->isEnabled());
    bench.click("Move the transform of fill down");
    QCOMPARE(names(bench.kept().fill->transforms), QStringList({"inv", "lum", "gray"}));
    QCOMPARE(bench.steps().size(), 4);
    QCOMPARE(bench.steps().last(), QString("Move transform of fill"));
}

void TestTransformList::transformIsMovedByKeys()
{
    Bench bench;
    addTransforms(bench);
    auto* const list = bench.find<StepList>("Transforms of fill");
    list->setFocus();
    list->setCurrentRow(0);
    QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(names(bench.kept().fill->transforms), QStringList({"gray", "inv", "lum"}));
    QCOMPARE(list->currentRow(), 1);
    QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(names(bench.kept().fill->transforms), QStringList({"inv", "gray", "lum"}));
    QCOMPARE(bench.steps().size(), 3);
}

void TestTransformList::transformDragIsOneStep()
{
    Bench bench;
    addTransforms(bench);
    auto* const list = bench.find<StepList>("Transforms of fill");
    auto const place = [list](int row) { return list->visualItemRect(list->item(row)).center(); };
    QTest::mousePress(list->viewport(), Qt::LeftButton, {}, place(0));
    drag(list->viewport(), place(1));
    QCOMPARE(names(bench.appearance().fill->transforms), QStringList({"gray", "inv", "lum"}));
    QCOMPARE(names(bench.kept().fill->transforms), QStringList({"inv", "gray", "lum"}));
    drag(list->viewport(), place(2));
    QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, place(2));
    QCOMPARE(names(bench.kept().fill->transforms), QStringList({"gray", "lum", "inv"}));
    QCOMPARE(list->currentRow(), 2);
    QCOMPARE(bench.steps(), QStringList({"Prepare", "Move transform of fill"}));
    bench.document.undoStack().undo();
    QCOMPARE(list->item(0)->text(), QString("inv  0"));
}

void TestTransformList::transformIsRemoved()
{
    Bench bench;
    addTransforms(bench);
    auto* const list = bench.find<StepList>("Transforms of fill");
    list->setCurrentRow(1);
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(names(bench.kept().fill->transforms), QStringList({"inv", "lum"}));
    bench.click("Remove the transform of fill");
    QCOMPARE(names(bench.kept().fill->transforms), QStringList {"inv"});
    QCOMPARE(bench.steps().last(), QString("Remove transform of fill"));
}

void TestTransformList::stepsShowTheirColours()
{
    Bench bench;
    addTransforms(bench);
    auto* const list = bench.find<StepList>("Transforms of fill");
    QCOMPARE(list->count(), 3);
    QCOMPARE(list->item(0)->toolTip(), QString("#37D7F5"));
    QCOMPARE(
        list->item(0)->icon().pixmap(20, 14).toImage().pixelColor(8, 7), QColor(0x37, 0xd7, 0xf5));
    QCOMPARE(list->item(2)->text(), QString("lum  0.25"));
    QCOMPARE(
        bench.find<QLabel>("Resulting fill colour")->accessibleDescription(), QString("#404040"));
}

KPSHAPES_TEST_MAIN(TestTransformList)
#include "tst_kpshapes_transformlist.moc"
