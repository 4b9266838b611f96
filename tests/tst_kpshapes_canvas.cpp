// SPDX-License-Identifier: MIT
#include "canvastesting.h"
#include "model/operations.h"

using namespace CanvasTesting;

namespace {

constexpr HandleId firstPoint {0, HandleKind::Point};
constexpr HandleId secondPoint {1, HandleKind::Point};
constexpr HandleId lastPoint {3, HandleKind::Point};

} // namespace

class TestKpshapesCanvas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clickSelectsAHandle();
    void clickWithShiftOrCtrlToggles_data();
    void clickWithShiftOrCtrlToggles();
    void clickOnTheGroundSelectsNothing();
    void bandSelectsWhatItCovers();
    void bandWithShiftAddsToTheSelection();
    void clicksAtOnePlaceReachAllHandlesThere();
    void altClickSelectsTheHandleBelow();
    void tabGoesThroughAllHandlesAndOut();
    void ctrlTabLeavesTheCanvas();
    void ctrlASelectsAllAndEscapeNone();
    void dragMovesThePointByItsRule();
    void dragMovesAllThatIsSelected();
    void dragWithShiftGoesStraight();
    void dragWithCtrlGoesATenthOfTheWay();
    void dragWithAltBreaksASmoothPoint();
    void dragBelowTheThresholdMovesNothing();
    void escapeGivesUpADrag();
    void modifiersPressedWithinADragCountAtOnce();
    void arrowsNudge_data();
    void arrowsNudge();
    void arrowsScrollWhenNothingIsSelected();
    void undoWithinADragEndsIt();
    void anotherOutlineDropsTheSelection();
    void emptyDocumentTakesEveryEvent();
    void oddNumbersAreSurvived_data();
    void oddNumbersAreSurvived();
};

void TestKpshapesCanvas::clickSelectsAHandle()
{
    Bench bench({rectangle()});
    bench.click(bench.pixel(180.0, 10.0));
    QCOMPARE(bench.selection.handles().size(), 1);
    QVERIFY(bench.selection.contains(secondPoint));
    QCOMPARE(bench.steps(), 0);
}

void TestKpshapesCanvas::clickWithShiftOrCtrlToggles_data()
{
    QTest::addColumn<int>("modifier");
    QTest::newRow("Shift") << int(Qt::ShiftModifier);
    QTest::newRow("Ctrl") << int(Qt::ControlModifier);
}

void TestKpshapesCanvas::clickWithShiftOrCtrlToggles()
{
    QFETCH(int, modifier);
    auto const held = Qt::KeyboardModifier(modifier);
    Bench bench({rectangle()});
    bench.click(bench.pixel(20.0, 10.0));
    bench.click(bench.pixel(180.0, 10.0), held);
    QCOMPARE(bench.selection.handles(), (QVector<HandleId> {firstPoint, secondPoint}));
    bench.click(bench.pixel(20.0, 10.0), held);
    QCOMPARE(bench.selection.handles(), QVector<HandleId> {secondPoint});
}

void TestKpshapesCanvas::clickOnTheGroundSelectsNothing()
{
    Bench bench({rectangle()});
    bench.click(bench.pixel(180.0, 10.0));
    bench.click(bench.pixel(100.0, 50.0));
    QVERIFY(bench.selection.isEmpty());
}

void TestKpshapesCanvas::bandSelectsWhatItCovers()
{
    Bench bench({rectangle()});
    bench.press(bench.pixel(10.0, 5.0));
    bench.move(bench.pixel(30.0, 50.0));
    QCOMPARE(bench.selection.handles(), QVector<HandleId> {firstPoint});
    bench.move(bench.pixel(30.0, 95.0));
    bench.release(bench.pixel(30.0, 95.0));
    QCOMPARE(bench.selection.handles(), (QVector<HandleId> {firstPoint, lastPoint}));
    QCOMPARE(bench.steps(), 0);
}

void TestKpshapesCanvas::bandWithShiftAddsToTheSelection()
{
    Bench bench({rectangle()});
    bench.click(bench.pixel(180.0, 10.0));
    bench.press(bench.pixel(10.0, 5.0), Qt::ShiftModifier);
    bench.move(bench.pixel(30.0, 20.0), Qt::ShiftModifier);
    bench.release(bench.pixel(30.0, 20.0), Qt::ShiftModifier);
    QCOMPARE(bench.selection.handles(), (QVector<HandleId> {firstPoint, secondPoint}));
}

void TestKpshapesCanvas::clicksAtOnePlaceReachAllHandlesThere()
{
    QSizeF const box(200.0, 100.0);
    auto list = std::make_unique<KpPathSegList>();
    for (int i = 0; i < 3; ++i)
        addMove(*list, point(100.0, 50.0, box));
    Bench bench({itemOf(std::move(list), box)});
    QVector<int> reached;
    for (int i = 0; i < 4; ++i) {
        bench.click(bench.pixel(100.0, 50.0));
        QCOMPARE(bench.selection.handles().size(), 1);
        reached.append(bench.selection.current()->segment);
    }
    // The last one lies on top.
    QCOMPARE(reached, (QVector<int> {2, 1, 0, 2}));
}

void TestKpshapesCanvas::altClickSelectsTheHandleBelow()
{
    QSizeF const box(200.0, 100.0);
    auto list = std::make_unique<KpPathSegList>();
    for (int i = 0; i < 3; ++i)
        addMove(*list, point(100.0, 50.0, box));
    Bench bench({itemOf(std::move(list), box)});
    bench.click(bench.pixel(100.0, 50.0));
    bench.click(bench.pixel(100.0, 50.0), Qt::AltModifier);
    QCOMPARE(bench.selection.handles(), (QVector<HandleId> {secondPoint}));
}

void TestKpshapesCanvas::tabGoesThroughAllHandlesAndOut()
{
    Bench bench({curveAndEllipse()});
    QVector<HandleId> const expected {{0, HandleKind::Point}, {1, HandleKind::Point},
        {1, HandleKind::Control1}, {1, HandleKind::Control2}, {2, HandleKind::Point},
        {2, HandleKind::RadiusA}, {2, HandleKind::RadiusB}};
    for (HandleId const id : expected) {
        bench.key(Qt::Key_Tab);
        QCOMPARE(bench.selection.handles(), QVector<HandleId> {id});
    }
    for (int i = 0; i < boxHandleCount; ++i) {
        bench.key(Qt::Key_Tab);
        QVERIFY(bench.selection.isEmpty());
        QCOMPARE(int(*bench.canvas.boxHandle()), i);
    }
    bench.key(Qt::Key_Tab);
    QVERIFY(!bench.canvas.boxHandle());
    bench.key(Qt::Key_Backtab);
    QCOMPARE(*bench.canvas.boxHandle(), BoxHandle::Left);
}

void TestKpshapesCanvas::ctrlTabLeavesTheCanvas()
{
    QWidget window;
    ShapeDocument document;
    Selection selection;
    ViewSettings settings;
    Canvas canvas(document, selection, settings, &window);
    QWidget next(&window);
    next.setFocusPolicy(Qt::StrongFocus);
    document.reset({rectangle()});
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    canvas.setFocus();
    QTRY_VERIFY(canvas.hasFocus());
    QTest::keyClick(&canvas, Qt::Key_Tab);
    QVERIFY(canvas.hasFocus());
    QTest::keyClick(&canvas, Qt::Key_Tab, Qt::ControlModifier);
    QVERIFY(next.hasFocus());
}

void TestKpshapesCanvas::ctrlASelectsAllAndEscapeNone()
{
    Bench bench({curveAndEllipse()});
    bench.key(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(bench.selection.handles().size(), 7);
    bench.key(Qt::Key_Escape);
    QVERIFY(bench.selection.isEmpty());
}

void TestKpshapesCanvas::dragMovesThePointByItsRule()
{
    Bench bench({rectangle()});
    bench.drag(bench.pixel(180.0, 90.0), QPoint(-40, 20));
    QVERIFY(isAt(bench.place(2), 160.0, 100.0));
    KpPoint const& moved = bench.segment(2).pt;
    QCOMPARE(moved.x.base, qint16(KpReal::FromRight));
    QCOMPARE(moved.x.rate, 40.0);
    QCOMPARE(moved.y.base, qint16(KpReal::FromBottom));
    QCOMPARE(moved.y.rate, 0.0);
    QCOMPARE(bench.steps(), 1);
    QCOMPARE(bench.lastStep(), QStringLiteral("Move point"));
    bench.document.undoStack().undo();
    QVERIFY(isAt(bench.place(2), 180.0, 90.0));
}

void TestKpshapesCanvas::dragMovesAllThatIsSelected()
{
    Bench bench({rectangle()});
    bench.selection.set({firstPoint, secondPoint, lastPoint});
    bench.drag(bench.pixel(180.0, 10.0), QPoint(20, 30));
    QVERIFY(isAt(bench.place(0), 30.0, 25.0));
    QVERIFY(isAt(bench.place(1), 190.0, 25.0));
    QVERIFY(isAt(bench.place(2), 180.0, 90.0));
    QVERIFY(isAt(bench.place(3), 30.0, 105.0));
    QCOMPARE(bench.lastStep(), QStringLiteral("Move 3 points"));
    QCOMPARE(bench.steps(), 1);
    QCOMPARE(bench.selection.handles().size(), 3);
}

void TestKpshapesCanvas::dragWithShiftGoesStraight()
{
    Bench bench({rectangle()});
    bench.drag(bench.pixel(180.0, 10.0), QPoint(40, 24), Qt::ShiftModifier);
    QVERIFY(isAt(bench.place(1), 200.0, 10.0));
}

void TestKpshapesCanvas::dragWithCtrlGoesATenthOfTheWay()
{
    Bench bench({rectangle()});
    bench.drag(bench.pixel(180.0, 10.0), QPoint(-40, 60), Qt::ControlModifier);
    QVERIFY(isAt(bench.place(1), 178.0, 13.0));
}

void TestKpshapesCanvas::dragWithAltBreaksASmoothPoint()
{
    QSizeF const box(200.0, 100.0);
    auto list = std::make_unique<KpPathSegList>();
    addMove(*list, point(0.0, 50.0, box));
    add<KpPathSegCurveTo>(
        *list, point(0.0, 20.0, box), point(60.0, 50.0, box), point(100.0, 50.0, box));
    add<KpPathSegCurveTo>(
        *list, point(140.0, 50.0, box), point(200.0, 80.0, box), point(200.0, 50.0, box));
    ItemPointer const item = itemOf(std::move(list), box);
    HandleId const before {1, HandleKind::Control2};
    HandleId const behind {2, HandleKind::Control1};
    Bench smooth({item});
    smooth.drag(smooth.pixel(60.0, 50.0), QPoint(0, 40));
    QVERIFY(isAt(smooth.place(before), 60.0, 70.0));
    QVERIFY(smooth.place(behind).y() < 40.0);
    Bench broken({item});
    broken.drag(broken.pixel(60.0, 50.0), QPoint(0, 40), Qt::AltModifier);
    QVERIFY(isAt(broken.place(before), 60.0, 70.0));
    QVERIFY(isAt(broken.place(behind), 140.0, 50.0));
}

void TestKpshapesCanvas::dragBelowTheThresholdMovesNothing()
{
    Bench bench({rectangle()});
    bench.drag(bench.pixel(180.0, 10.0), QPoint(2, 2));
    QVERIFY(isAt(bench.place(1), 180.0, 10.0));
    QCOMPARE(bench.steps(), 0);
}

void TestKpshapesCanvas::escapeGivesUpADrag()
{
    Bench bench({rectangle()});
    QPoint const from = bench.pixel(180.0, 10.0);
    bench.press(from);
    bench.move(from + QPoint(40, 40));
    QVERIFY(isAt(bench.place(1), 200.0, 30.0));
    bench.key(Qt::Key_Escape);
    QVERIFY(isAt(bench.place(1), 180.0, 10.0));
    bench.move(from + QPoint(60, 60));
    bench.release(from + QPoint(60, 60));
    QVERIFY(isAt(bench.place(1), 180.0, 10.0));
    QCOMPARE(bench.steps(), 0);
    QVERIFY(bench.selection.contains(secondPoint));
}

void TestKpshapesCanvas::modifiersPressedWithinADragCountAtOnce()
{
    Bench bench({rectangle()});
    QPoint const from = bench.pixel(180.0, 10.0);
    bench.press(from);
    bench.move(from + QPoint(40, 20));
    QTest::keyPress(&bench.canvas, Qt::Key_Shift);
    QVERIFY(isAt(bench.place(1), 200.0, 10.0));
    QTest::keyRelease(&bench.canvas, Qt::Key_Shift);
    QVERIFY(isAt(bench.place(1), 200.0, 20.0));
    bench.release(from + QPoint(40, 20));
    QCOMPARE(bench.steps(), 1);
}

void TestKpshapesCanvas::arrowsNudge_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifier");
    QTest::addColumn<QPointF>("to");
    QTest::newRow("right by one") << int(Qt::Key_Right) << 0 << QPointF(181.0, 10.0);
    QTest::newRow("left by ten") << int(Qt::Key_Left) << int(Qt::ShiftModifier)
                                 << QPointF(170.0, 10.0);
    QTest::newRow("down by a tenth")
        << int(Qt::Key_Down) << int(Qt::ControlModifier) << QPointF(180.0, 10.1);
    QTest::newRow("up by one") << int(Qt::Key_Up) << 0 << QPointF(180.0, 9.0);
}

void TestKpshapesCanvas::arrowsNudge()
{
    QFETCH(int, key);
    QFETCH(int, modifier);
    QFETCH(QPointF, to);
    Bench bench({rectangle()});
    bench.selection.set({secondPoint});
    bench.key(Qt::Key(key), Qt::KeyboardModifiers(modifier));
    QVERIFY(isAt(bench.place(1), to.x(), to.y()));
    QCOMPARE(bench.lastStep(), QStringLiteral("Nudge point"));
    bench.key(Qt::Key(key), Qt::KeyboardModifiers(modifier));
    QCOMPARE(bench.steps(), 2);
}

void TestKpshapesCanvas::arrowsScrollWhenNothingIsSelected()
{
    Bench bench({rectangle()});
    QPointF const before = bench.canvas.view().centre();
    bench.key(Qt::Key_Right);
    QVERIFY(isAt(bench.canvas.view().centre(), before.x() + 12.0, before.y()));
    QCOMPARE(bench.steps(), 0);
}

void TestKpshapesCanvas::undoWithinADragEndsIt()
{
    Bench bench({rectangle()});
    bench.drag(bench.pixel(20.0, 10.0), QPoint(20, 0));
    QPoint const from = bench.pixel(180.0, 10.0);
    bench.press(from);
    bench.move(from + QPoint(20, 0));
    bench.document.undoStack().undo();
    bench.move(from + QPoint(60, 0));
    bench.release(from + QPoint(60, 0));
    QVERIFY(isAt(bench.place(0), 20.0, 10.0));
    QVERIFY(isAt(bench.place(1), 180.0, 10.0));
    QCOMPARE(bench.steps(), 0);
}

void TestKpshapesCanvas::anotherOutlineDropsTheSelection()
{
    Bench bench({rectangle(), curveAndEllipse()});
    bench.key(Qt::Key_A, Qt::ControlModifier);
    bench.document.setCurrent(1);
    QVERIFY(bench.selection.isEmpty());
    QCOMPARE(bench.canvas.handleIds().size(), 7);
}

void TestKpshapesCanvas::emptyDocumentTakesEveryEvent()
{
    Bench bench({});
    QPoint const middle = bench.canvas.rect().center();
    for (int i = 0; i < toolCount; ++i) {
        bench.canvas.setTool(Tool(i));
        bench.drag(middle, QPoint(50, 40));
        bench.click(middle);
        for (Qt::Key const key : {Qt::Key_Right, Qt::Key_Return, Qt::Key_Right, Qt::Key_Return,
                 Qt::Key_Space, Qt::Key_Backtab, Qt::Key_Escape, Qt::Key_A})
            bench.key(key);
        bench.canvas.grab();
    }
    bench.canvas.fitBox();
    bench.canvas.fitPage();
    bench.canvas.scrollTo(HandleId {0, HandleKind::Point});
    QVERIFY(bench.canvas.handleRect({0, HandleKind::Point}).isEmpty());
    QCOMPARE(bench.steps(), 0);
    QCOMPARE(bench.document.count(), 0);
}

void TestKpshapesCanvas::oddNumbersAreSurvived_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QSizeF>("box");
    QTest::newRow("not a number") << Testing::notANumber << QSizeF(200.0, 100.0);
    QTest::newRow("infinite") << Testing::infinite << QSizeF(200.0, 100.0);
    QTest::newRow("huge") << 1e300 << QSizeF(200.0, 100.0);
    QTest::newRow("beyond integers") << -1e12 << QSizeF(200.0, 100.0);
    QTest::newRow("tiny box") << 0.5 << QSizeF(1.0, 1.0);
    QTest::newRow("a million") << 5e5 << QSizeF(1e6, 1e6);
    QTest::newRow("flat") << 5e5 << QSizeF(1e6, 1.0);
}

void TestKpshapesCanvas::oddNumbersAreSurvived()
{
    QFETCH(double, number);
    QFETCH(QSizeF, box);
    auto list = std::make_unique<KpPathSegList>();
    KpPoint odd = point(0.0, 0.0, box);
    odd.x.value = number;
    KpPoint other = point(box.width(), box.height(), box);
    addMove(*list, point(0.0, 0.0, box));
    addLine(*list, odd);
    add<KpPathSegCurveTo>(*list, odd, other, other);
    auto* const ellipse = new KpPathSegEllipse(other, KpReal(KpReal::Absolute, 0.0, number),
        KpReal(KpReal::Absolute, 0.0, number), nullptr);
    list->addTail(ellipse);
    list->closed = true;
    Bench bench({itemOf(std::move(list), box)}, 0.0);
    for (double const zoom : {0.01, 1.0, 100.0}) {
        bench.canvas.setZoom(zoom);
        for (QSize const size : {QSize(640, 480), QSize(1, 1), QSize(30, 3)}) {
            bench.canvas.resize(size);
            bench.canvas.grab();
        }
        bench.canvas.resize(640, 480);
        bench.key(Qt::Key_A, Qt::ControlModifier);
        bench.canvas.grab();
        bench.key(Qt::Key_Escape);
        for (int i = 0; i < 20; ++i)
            bench.key(Qt::Key_Tab);
        bench.drag(bench.canvas.rect().center(), QPoint(50, 40));
    }
    bench.canvas.setTool(Tool::Insert);
    bench.click(bench.canvas.rect().center());
    // The first point is an ordinary one, whatever the others are.
    bench.canvas.setTool(Tool::Select);
    bench.document.undoStack().setIndex(0);
    bench.selection.set({firstPoint});
    bench.key(Qt::Key_Right);
    QVERIFY(isAt(bench.place(0), 1.0, 0.0));
}

KPSHAPES_TEST_MAIN(TestKpshapesCanvas)
#include "tst_kpshapes_canvas.moc"
