// SPDX-License-Identifier: MIT
#include "panels/axiseditor.h"
#include "panels/numberbox.h"
#include "panels/pointpanel.h"
#include "panelstesting.h"

#include "kppathsegellipse.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

using namespace PanelsTesting;

namespace {

HandleId point(int segment)
{
    return {segment, HandleKind::Point};
}

/** An ellipse of radii 40 and 30 around (120, 60), in proportion to its box of 240 x 120. */
ItemPointer ellipse()
{
    KpPathSegList list;
    auto* const segment = new KpPathSegEllipse(KpPoint({1, 0.5, 120.0}, {2, 0.5, 60.0}),
        KpReal(5, 0.25, 30.0), KpReal(2, 0.25, 30.0), nullptr);
    segment->a = KpReal(1, 0.25, 60.0);
    segment->b = KpReal(2, 0.25, 30.0);
    list.addTail(segment);
    return std::make_shared<ShapeItem const>(
        ShapeItem {"ellipse", {240.0, 120.0}, std::nullopt, recordOf(list), {}, -1});
}

} // namespace

class TestKpshapesPointPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_panel.reset(); }

    void nothingSelectedCannotBeChanged();
    void showsThePointThatIsSelected();
    void differentPointsAreMixed();
    void aValueMovesAllPoints();
    void arrowKeysStepAValue();
    void whatIsNoLengthChangesNothing();
    void escapeTakesTheTextBack();
    void leavingAFieldEntersIt();
    void anotherRuleKeepsThePlace_data();
    void anotherRuleKeepsThePlace();
    void theRuleIsChosenByKeys();
    void anUnknownRuleIsShownAsSuch();
    void aRateMovesItsPoints();
    void aDistanceIsARateInTheUnit();
    void anAbsoluteCoordinateHasNoRate();
    void aRadiusHasOneAxis();
    void theUnitOfTheViewIsUsed();
    void flagsAreSteps_data();
    void flagsAreSteps();
    void theFillRuleIsAStep();
    void theBoxIsResized();
    void anEmptyDocumentCannotBeChanged();
    void whatIsTypedOutlivesARefresh();

private:
    void showPanel();
    NumberBox* box(QString const& name) const { return m_panel->findChild<NumberBox*>(name); }
    QLineEdit* edit(QString const& name) const { return box(name)->findChild<QLineEdit*>(); }
    QString text(QString const& name) const { return edit(name)->text(); }
    QComboBox* combo(QString const& name) const { return m_panel->findChild<QComboBox*>(name); }
    void enter(QString const& name, QString const& text);
    void select(QVector<HandleId> const& handles);
    void settle() { QTest::qWait(1); }
    KpPoint const& pointAt(int segment) const
    {
        return m_document->working().list->segs.at(segment)->pt;
    }
    QString undoText() const { return m_document->undoStack().undoText(); }
    int stepCount() const { return m_document->undoStack().count(); }

    std::unique_ptr<ShapeDocument> m_document;
    std::unique_ptr<Selection> m_selection;
    std::unique_ptr<ViewSettings> m_settings;
    std::unique_ptr<PointPanel> m_panel;
};

void TestKpshapesPointPanel::init()
{
    m_document = std::make_unique<ShapeDocument>();
    m_document->reset({item("plate"), ellipse()});
    m_selection = std::make_unique<Selection>();
    m_settings = std::make_unique<ViewSettings>();
    m_settings->setUnit(0);
    m_panel = std::make_unique<PointPanel>(*m_document, *m_selection, *m_settings);
    m_panel->resize(290, 520);
}

void TestKpshapesPointPanel::showPanel()
{
    QVERIFY(showAndPicture(*m_panel, QStringLiteral("pointpanel")));
    m_panel->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_panel.get()));
}

void TestKpshapesPointPanel::enter(QString const& name, QString const& text)
{
    box(name)->setFocus();
    edit(name)->selectAll();
    QTest::keyClicks(box(name), text);
    QTest::keyClick(box(name), Qt::Key_Return);
    settle();
}

void TestKpshapesPointPanel::select(QVector<HandleId> const& handles)
{
    m_selection->set(handles);
    settle();
}

void TestKpshapesPointPanel::nothingSelectedCannotBeChanged()
{
    showPanel();
    QVERIFY(!box("Value of x")->isEnabled());
    QVERIFY(!combo("Rule of y")->isEnabled());
    QVERIFY(m_panel->findChild<QCheckBox*>()->isEnabled());
}

void TestKpshapesPointPanel::showsThePointThatIsSelected()
{
    select({point(1)});
    showPanel();
    QCOMPARE(text("Value of x"), QStringLiteral("230"));
    QCOMPARE(combo("Rule of x")->currentText(), QString::fromUtf8("right: width \u2212 rate"));
    QCOMPARE(text("Rate of x"), QStringLiteral("10"));
    QCOMPARE(text("Value of y"), QStringLiteral("0"));
    QCOMPARE(combo("Rule of y")->currentData().toInt(), 2);
    QCOMPARE(combo("Rule of y")->count(), 8);
    for (int rule = 0; rule < 8; ++rule)
        QVERIFY(!combo("Rule of y")->itemIcon(rule).isNull());
}

void TestKpshapesPointPanel::differentPointsAreMixed()
{
    select({point(0), point(1), point(2)});
    showPanel();
    QCOMPARE(text("Value of x"), QString());
    QCOMPARE(edit("Value of x")->placeholderText(), QStringLiteral("mixed"));
    QCOMPARE(combo("Rule of x")->currentIndex(), -1);
    QCOMPARE(combo("Rule of x")->placeholderText(), QStringLiteral("mixed"));
    QCOMPARE(edit("Rate of x")->placeholderText(), QStringLiteral("mixed"));
    // One rule, different rates.
    QCOMPARE(combo("Rule of y")->currentData().toInt(), 2);
    QCOMPARE(text("Rate of y"), QString());
}

void TestKpshapesPointPanel::aValueMovesAllPoints()
{
    select({point(0), point(1), point(2)});
    showPanel();
    enter("Value of x", "60");
    QCOMPARE(pointAt(0).x.value, 60.0);
    QCOMPARE(pointAt(0).x.rate, 0.25);
    QCOMPARE(pointAt(1).x.value, 60.0);
    QCOMPARE(pointAt(1).x.rate, 180.0);
    QCOMPARE(pointAt(2).x.value, 60.0);
    QCOMPARE(pointAt(3).x.value, 0.0);
    QCOMPARE(undoText(), QStringLiteral("Change x of 3 points"));
    QCOMPARE(stepCount(), 1);
    QCOMPARE(text("Value of x"), QStringLiteral("60"));
    enter("Value of x", "60");
    QCOMPARE(stepCount(), 1);
    m_document->undoStack().undo();
    settle();
    QCOMPARE(text("Value of x"), QString());
}

void TestKpshapesPointPanel::arrowKeysStepAValue()
{
    select({point(1)});
    showPanel();
    box("Value of x")->setFocus();
    QTest::keyClick(box("Value of x"), Qt::Key_Up);
    settle();
    QCOMPARE(pointAt(1).x.value, 231.0);
    QCOMPARE(pointAt(1).x.rate, 9.0);
    QCOMPARE(undoText(), QStringLiteral("Change x"));
    QTest::keyClick(box("Value of x"), Qt::Key_PageDown);
    settle();
    QCOMPARE(pointAt(1).x.value, 221.0);
    QCOMPARE(text("Value of x"), QStringLiteral("221"));
}

void TestKpshapesPointPanel::whatIsNoLengthChangesNothing()
{
    select({point(1)});
    showPanel();
    for (char const* const strange : {"wide", "", "1e999", "--5"}) {
        enter("Value of x", strange);
        QCOMPARE(text("Value of x"), QStringLiteral("230"));
    }
    enter("Rate of x", "nan");
    QCOMPARE(text("Rate of x"), QStringLiteral("10"));
    QCOMPARE(stepCount(), 0);
}

void TestKpshapesPointPanel::escapeTakesTheTextBack()
{
    select({point(1)});
    showPanel();
    box("Value of x")->setFocus();
    edit("Value of x")->selectAll();
    QTest::keyClicks(box("Value of x"), "77");
    QTest::keyClick(box("Value of x"), Qt::Key_Escape);
    QCOMPARE(text("Value of x"), QStringLiteral("230"));
    QTest::keyClick(box("Value of x"), Qt::Key_Return);
    QCOMPARE(stepCount(), 0);
}

void TestKpshapesPointPanel::leavingAFieldEntersIt()
{
    select({point(1)});
    showPanel();
    box("Value of x")->setFocus();
    edit("Value of x")->selectAll();
    QTest::keyClicks(box("Value of x"), "77");
    QTest::keyClick(box("Value of x"), Qt::Key_Tab);
    QCOMPARE(pointAt(1).x.value, 77.0);
    QVERIFY(combo("Rule of x")->hasFocus());
}

void TestKpshapesPointPanel::anotherRuleKeepsThePlace_data()
{
    QTest::addColumn<int>("rule");
    QTest::addColumn<double>("rate");

    // x is 230 in a box of 240 x 120.
    QTest::newRow("absolute") << 0 << 0.0;
    QTest::newRow("width") << 1 << 230.0 / 240.0;
    QTest::newRow("height") << 2 << 230.0 / 120.0;
    QTest::newRow("bottom") << 4 << -110.0;
    QTest::newRow("side") << 5 << 230.0 / 120.0;
    QTest::newRow("right-side") << 6 << 10.0 / 120.0;
    QTest::newRow("bottom-side") << 7 << -110.0 / 120.0;
}

void TestKpshapesPointPanel::anotherRuleKeepsThePlace()
{
    QFETCH(int, rule);
    QFETCH(double, rate);
    select({point(1)});
    showPanel();
    Q_EMIT combo("Rule of x")->activated(rule);
    settle();
    QCOMPARE(int(pointAt(1).x.base), rule);
    QCOMPARE(pointAt(1).x.value, 230.0);
    QCOMPARE(pointAt(1).x.rate, rate);
    QCOMPARE(undoText(), QStringLiteral("Change rule of x"));
    QCOMPARE(combo("Rule of x")->currentIndex(), rule);
}

void TestKpshapesPointPanel::theRuleIsChosenByKeys()
{
    select({point(0), point(2)});
    showPanel();
    combo("Rule of x")->setFocus();
    QTest::keyClick(combo("Rule of x"), Qt::Key_Down);
    settle();
    QCOMPARE(int(pointAt(0).x.base), 2);
    QCOMPARE(int(pointAt(2).x.base), 2);
    QCOMPARE(pointAt(2).x.value, 240.0);
    QCOMPARE(pointAt(2).x.rate, 2.0);
    QCOMPARE(undoText(), QStringLiteral("Change rule of x of 2 points"));
}

void TestKpshapesPointPanel::anUnknownRuleIsShownAsSuch()
{
    m_document->working().list->segs.at(0)->pt.x.base = 42;
    QVERIFY(m_document->commit("step"));
    select({point(0)});
    QCOMPARE(combo("Rule of x")->currentIndex(), -1);
    QCOMPARE(combo("Rule of x")->placeholderText(), QStringLiteral("unknown (42)"));
    QVERIFY(!box("Rate of x")->isEnabled());
}

void TestKpshapesPointPanel::aRateMovesItsPoints()
{
    select({point(0), point(1), point(2)});
    showPanel();
    enter("Rate of y", "25%");
    QCOMPARE(pointAt(0).y.value, 30.0);
    QCOMPARE(pointAt(2).y.value, 30.0);
    QCOMPARE(pointAt(2).y.rate, 0.25);
    QCOMPARE(undoText(), QStringLiteral("Change rate of y of 3 points"));
    QTest::keyClick(box("Rate of y"), Qt::Key_Up);
    QCOMPARE(pointAt(0).y.rate, 0.3);
    QCOMPARE(pointAt(0).y.value, 36.0);
}

void TestKpshapesPointPanel::aDistanceIsARateInTheUnit()
{
    m_settings->setUnit(1);
    select({point(1)});
    showPanel();
    QCOMPARE(text("Rate of x"), QStringLiteral("2.645833"));
    enter("Rate of x", "25.4");
    QCOMPARE(pointAt(1).x.rate, 96.0);
    QCOMPARE(pointAt(1).x.value, 144.0);
    QCOMPARE(undoText(), QStringLiteral("Change rate of x"));
}

void TestKpshapesPointPanel::anAbsoluteCoordinateHasNoRate()
{
    select({point(1)});
    Q_EMIT combo("Rule of x")->activated(0);
    settle();
    QVERIFY(!box("Rate of x")->isEnabled());
    QCOMPARE(text("Rate of x"), QString());
    QVERIFY(box("Rate of y")->isEnabled());
}

void TestKpshapesPointPanel::aRadiusHasOneAxis()
{
    m_document->setCurrent(1);
    select({{0, HandleKind::RadiusA}});
    showPanel();
    QCOMPARE(text("Value of x"), QStringLiteral("60"));
    QVERIFY(!box("Value of y")->isEnabled());
    enter("Value of x", "48");
    KpPathSegEllipse const* const segment = m_document->working().list->segs.at(0)->toEllipse();
    QCOMPARE(segment->a.value, 48.0);
    QCOMPARE(segment->a.rate, 0.2);
    QCOMPARE(segment->pt.x.value, 120.0);
    QCOMPARE(undoText(), QStringLiteral("Change x"));
    select({{0, HandleKind::RadiusB}});
    QVERIFY(!box("Value of x")->isEnabled());
    QCOMPARE(text("Value of y"), QStringLiteral("30"));
}

void TestKpshapesPointPanel::theUnitOfTheViewIsUsed()
{
    select({point(2)});
    m_settings->setUnit(5);
    settle();
    QCOMPARE(text("Value of x"), QStringLiteral("2.5"));
    m_settings->setUnit(7);
    settle();
    QCOMPARE(text("Value of x"), QStringLiteral("0'2.5\""));
    QCOMPARE(text("Width of the box"), QStringLiteral("0'2.5\""));
    enter("Value of x", "1'");
    QCOMPARE(pointAt(2).x.value, 1152.0);
}

void TestKpshapesPointPanel::flagsAreSteps_data()
{
    QTest::addColumn<int>("box");
    QTest::addColumn<QString>("text");

    QTest::newRow("closed") << 0 << "Open outline";
    QTest::newRow("fill") << 1 << "Leave out fill";
    QTest::newRow("line") << 2 << "Leave out line";
}

void TestKpshapesPointPanel::flagsAreSteps()
{
    QFETCH(int, box);
    showPanel();
    QCheckBox* const flag = m_panel->findChildren<QCheckBox*>().at(box);
    auto const isSet = [&] {
        KpPathSegList const& list = *m_document->working().list;
        return box == 0 ? list.closed : box == 1 ? list.noFill : list.noLine;
    };
    bool const before = isSet();
    QCOMPARE(flag->isChecked(), before);
    QTest::mouseClick(flag, Qt::LeftButton, Qt::NoModifier, QPoint(8, flag->height() / 2));
    QCOMPARE(isSet(), !before);
    QTEST(undoText(), "text");
    m_document->undoStack().undo();
    settle();
    QCOMPARE(flag->isChecked(), before);
    flag->setFocus();
    QTest::keyClick(flag, Qt::Key_Space);
    QCOMPARE(isSet(), !before);
}

void TestKpshapesPointPanel::theFillRuleIsAStep()
{
    showPanel();
    combo("Fill rule")->setFocus();
    QTest::keyClick(combo("Fill rule"), Qt::Key_Down);
    QCOMPARE(m_document->at(0).fillRule, std::make_optional(Qt::OddEvenFill));
    QCOMPARE(undoText(), QStringLiteral("Change fill rule"));
    m_document->undoStack().undo();
    settle();
    QCOMPARE(combo("Fill rule")->currentIndex(), 0);
}

void TestKpshapesPointPanel::theBoxIsResized()
{
    showPanel();
    enter("Width of the box", "300");
    QCOMPARE(m_document->at(0).box, QSizeF(300.0, 120.0));
    QCOMPARE(pointAt(1).x.value, 290.0);
    QCOMPARE(undoText(), QStringLiteral("Resize box"));
    QTest::keyClick(box("Height of the box"), Qt::Key_Up);
    QCOMPARE(m_document->at(0).box, QSizeF(300.0, 121.0));
    enter("Height of the box", "-5");
    QCOMPARE(m_document->at(0).box, QSizeF(300.0, 1.0));
    settle();
    QCOMPARE(text("Height of the box"), QStringLiteral("1"));
}

void TestKpshapesPointPanel::anEmptyDocumentCannotBeChanged()
{
    m_document->reset({});
    settle();
    for (QCheckBox const* const flag : m_panel->findChildren<QCheckBox*>())
        QVERIFY(!flag->isEnabled());
    QVERIFY(!box("Width of the box")->isEnabled());
}

void TestKpshapesPointPanel::whatIsTypedOutlivesARefresh()
{
    select({point(1)});
    showPanel();
    box("Value of x")->setFocus();
    edit("Value of x")->selectAll();
    QTest::keyClicks(box("Value of x"), "1");
    m_document->touch();
    settle();
    QTest::keyClicks(box("Value of x"), "00");
    QTest::keyClick(box("Value of x"), Qt::Key_Return);
    QCOMPARE(pointAt(1).x.value, 100.0);
}

KPSHAPES_TEST_MAIN(TestKpshapesPointPanel)
#include "tst_kpshapes_pointpanel.moc"
