// SPDX-License-Identifier: MIT
#include "canvastesting.h"

using namespace CanvasTesting;

namespace {

ItemPointer nothing()
{
    return itemOf(std::make_unique<KpPathSegList>(), {200.0, 100.0});
}

} // namespace

class TestKpshapesCanvasTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysChooseTools_data();
    void keysChooseTools();
    void lineToolAddsLinesAfterAMove();
    void lineToolGoesOnFromTheSelectedPoint();
    void curveToolPullsControlPoints();
    void curveToolGoesOnAlongThePull();
    void ellipseToolDragsTheRadii();
    void ellipseToolWithShiftMakesACircle();
    void ellipseWithoutSizeIsNotAdded();
    void moveToolBeginsASubpath();
    void insertToolDividesTheNearestSegment();
    void insertToolDividesCurves();
    void insertToolNeedsASegmentNearby();
    void escapeGivesUpACurve();
    void linesAreDrawnByKeyboard();
    void ellipsesAreDrawnByKeyboard();
    void pointsAreInsertedByKeyboard();
    void spaceActsToo();
    void spaceMovesThePageWithTheMouse();
    void middleButtonMovesThePage();
    void handToolMovesThePage();
    void zoomToolEnlargesAndReduces();
    void zoomToolShowsARectangle();
    void zoomToolWorksByKeyboard();
};

void TestKpshapesCanvasTools::keysChooseTools_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("tool");
    QTest::newRow("line") << int(Qt::Key_L) << int(Tool::Line);
    QTest::newRow("curve") << int(Qt::Key_C) << int(Tool::Curve);
    QTest::newRow("ellipse") << int(Qt::Key_E) << int(Tool::Ellipse);
    QTest::newRow("move") << int(Qt::Key_M) << int(Tool::Move);
    QTest::newRow("insert") << int(Qt::Key_I) << int(Tool::Insert);
    QTest::newRow("hand") << int(Qt::Key_H) << int(Tool::Hand);
    QTest::newRow("zoom") << int(Qt::Key_Z) << int(Tool::Zoom);
}

void TestKpshapesCanvasTools::keysChooseTools()
{
    QFETCH(int, key);
    QFETCH(int, tool);
    Bench bench({rectangle()});
    QVector<Tool> told;
    connect(&bench.canvas, &Canvas::toolChanged, this, [&](Tool changed) { told << changed; });
    bench.key(Qt::Key(key));
    QCOMPARE(int(bench.canvas.tool()), tool);
    bench.key(Qt::Key_V);
    QCOMPARE(told, (QVector<Tool> {Tool(tool), Tool::Select}));
}

void TestKpshapesCanvasTools::lineToolAddsLinesAfterAMove()
{
    Bench bench({nothing()});
    bench.canvas.setTool(Tool::Line);
    bench.click(bench.pixel(20.0, 30.0));
    QCOMPARE(bench.segment(0).type, KpPathSeg::SegMoveTo);
    QCOMPARE(bench.lastStep(), QStringLiteral("Add line"));
    bench.click(bench.pixel(120.0, 30.0));
    bench.click(bench.pixel(120.0, 80.0));
    QCOMPARE(bench.document.working().list->segs.count(), 3);
    QCOMPARE(bench.segment(1).type, KpPathSeg::SegLineTo);
    QVERIFY(isAt(bench.place(0), 20.0, 30.0));
    QVERIFY(isAt(bench.place(1), 120.0, 30.0));
    QVERIFY(isAt(bench.place(2), 120.0, 80.0));
    QCOMPARE(bench.segment(2).pt.x.base, qint16(KpReal::PartOfWidth));
    QCOMPARE(bench.segment(2).pt.x.rate, 0.6);
    QCOMPARE(bench.segment(2).pt.y.rate, 0.8);
    QCOMPARE(bench.steps(), 3);
    QVERIFY(bench.selection.contains({2, HandleKind::Point}));
}

void TestKpshapesCanvasTools::lineToolGoesOnFromTheSelectedPoint()
{
    Bench bench({rectangle()});
    bench.selection.set({{1, HandleKind::Point}});
    bench.canvas.setTool(Tool::Line);
    bench.click(bench.pixel(150.0, 50.0));
    QCOMPARE(bench.document.working().list->segs.count(), 5);
    QVERIFY(isAt(bench.place(2), 150.0, 50.0));
    QVERIFY(isAt(bench.place(3), 180.0, 90.0));
}

void TestKpshapesCanvasTools::curveToolPullsControlPoints()
{
    Bench bench({nothing()});
    bench.canvas.setTool(Tool::Curve);
    bench.click(bench.pixel(20.0, 50.0));
    bench.drag(bench.pixel(140.0, 50.0), QPoint(40, 20));
    QCOMPARE(bench.document.working().list->segs.count(), 2);
    QVERIFY(isAt(bench.place(1), 140.0, 50.0));
    QVERIFY(isAt(bench.place({1, HandleKind::Control1}), 60.0, 50.0));
    QVERIFY(isAt(bench.place({1, HandleKind::Control2}), 120.0, 40.0));
    QCOMPARE(bench.lastStep(), QStringLiteral("Add curve"));
    QCOMPARE(bench.steps(), 2);
}

void TestKpshapesCanvasTools::curveToolGoesOnAlongThePull()
{
    Bench bench({nothing()});
    bench.canvas.setTool(Tool::Curve);
    bench.drag(bench.pixel(20.0, 50.0), QPoint(20, -40));
    bench.click(bench.pixel(140.0, 50.0));
    QVERIFY(isAt(bench.place({1, HandleKind::Control1}), 30.0, 30.0));
    QVERIFY(isAt(bench.place({1, HandleKind::Control2}), 100.0, 50.0));
}

void TestKpshapesCanvasTools::ellipseToolDragsTheRadii()
{
    Bench bench({nothing()});
    bench.canvas.setTool(Tool::Ellipse);
    bench.drag(bench.pixel(100.0, 50.0), QPoint(-60, 40));
    QVERIFY(isAt(bench.place(0), 100.0, 50.0));
    KpPathSegEllipse const* const ellipse = bench.segment(0).toEllipse();
    QVERIFY(ellipse);
    QCOMPARE(ellipse->a.value, 30.0);
    QCOMPARE(ellipse->b.value, 20.0);
    QCOMPARE(bench.lastStep(), QStringLiteral("Add ellipse"));
}

void TestKpshapesCanvasTools::ellipseToolWithShiftMakesACircle()
{
    Bench bench({nothing()});
    bench.canvas.setTool(Tool::Ellipse);
    bench.drag(bench.pixel(100.0, 50.0), QPoint(60, 20), Qt::ShiftModifier);
    QCOMPARE(bench.segment(0).toEllipse()->a.value, 30.0);
    QCOMPARE(bench.segment(0).toEllipse()->b.value, 30.0);
}

void TestKpshapesCanvasTools::ellipseWithoutSizeIsNotAdded()
{
    Bench bench({nothing()});
    bench.canvas.setTool(Tool::Ellipse);
    bench.click(bench.pixel(100.0, 50.0));
    QCOMPARE(bench.steps(), 0);
    QVERIFY(bench.document.working().list->segs.isEmpty());
}

void TestKpshapesCanvasTools::moveToolBeginsASubpath()
{
    Bench bench({rectangle()});
    bench.canvas.setTool(Tool::Move);
    bench.click(bench.pixel(100.0, 50.0));
    QCOMPARE(bench.document.working().list->segs.count(), 5);
    QCOMPARE(bench.segment(4).type, KpPathSeg::SegMoveTo);
    QVERIFY(isAt(bench.place(4), 100.0, 50.0));
    QCOMPARE(bench.lastStep(), QStringLiteral("Begin subpath"));
}

void TestKpshapesCanvasTools::insertToolDividesTheNearestSegment()
{
    Bench bench({rectangle()});
    bench.canvas.setTool(Tool::Insert);
    bench.click(bench.pixel(100.0, 11.0));
    QCOMPARE(bench.document.working().list->segs.count(), 5);
    QVERIFY(isAt(bench.place(1), 100.0, 10.0));
    QVERIFY(isAt(bench.place(2), 180.0, 10.0));
    QCOMPARE(bench.lastStep(), QStringLiteral("Insert point"));
    QVERIFY(bench.selection.contains({1, HandleKind::Point}));
}

void TestKpshapesCanvasTools::insertToolDividesCurves()
{
    Bench bench({curveAndEllipse()});
    bench.canvas.setTool(Tool::Insert);
    bench.click(bench.pixel(100.0, 20.0));
    QCOMPARE(bench.document.working().list->segs.count(), 4);
    QVERIFY(std::abs(bench.place(1).x() - 100.0) < 0.5);
    QVERIFY(std::abs(bench.place(1).y() - 20.0) < 0.01);
    QVERIFY(isAt(bench.place(2), 200.0, 50.0));
}

void TestKpshapesCanvasTools::insertToolNeedsASegmentNearby()
{
    Bench bench({rectangle()});
    bench.canvas.setTool(Tool::Insert);
    bench.click(bench.pixel(100.0, 50.0));
    QCOMPARE(bench.steps(), 0);
}

void TestKpshapesCanvasTools::escapeGivesUpACurve()
{
    Bench bench({rectangle()});
    bench.canvas.setTool(Tool::Curve);
    QPoint const at = bench.pixel(100.0, 50.0);
    bench.press(at);
    bench.move(at + QPoint(30, 0));
    bench.key(Qt::Key_Escape);
    bench.release(at + QPoint(30, 0));
    QCOMPARE(bench.steps(), 0);
    QCOMPARE(bench.document.working().list->segs.count(), 4);
}

void TestKpshapesCanvasTools::linesAreDrawnByKeyboard()
{
    Bench bench({nothing()});
    bench.key(Qt::Key_L);
    // The first key brings the crosshair, one unit beside the middle of the box.
    bench.key(Qt::Key_Left);
    bench.key(Qt::Key_Return);
    bench.key(Qt::Key_Down, Qt::ShiftModifier);
    bench.key(Qt::Key_Right, Qt::ControlModifier);
    bench.key(Qt::Key_Enter);
    QCOMPARE(bench.document.working().list->segs.count(), 2);
    QVERIFY(isAt(bench.place(0), 99.0, 50.0));
    QVERIFY(isAt(bench.place(1), 99.1, 60.0));
    QCOMPARE(bench.steps(), 2);
}

void TestKpshapesCanvasTools::ellipsesAreDrawnByKeyboard()
{
    Bench bench({nothing()});
    bench.key(Qt::Key_E);
    bench.key(Qt::Key_Right, Qt::ShiftModifier);
    bench.key(Qt::Key_Return);
    bench.key(Qt::Key_Right, Qt::ShiftModifier);
    bench.key(Qt::Key_Up, Qt::ShiftModifier);
    bench.key(Qt::Key_Up, Qt::ShiftModifier);
    QVERIFY(bench.document.working().list->segs.isEmpty());
    bench.key(Qt::Key_Return);
    QVERIFY(isAt(bench.place(0), 110.0, 50.0));
    QCOMPARE(bench.segment(0).toEllipse()->a.value, 10.0);
    QCOMPARE(bench.segment(0).toEllipse()->b.value, 20.0);
}

void TestKpshapesCanvasTools::pointsAreInsertedByKeyboard()
{
    Bench bench({rectangle()});
    bench.selection.set({{0, HandleKind::Point}});
    bench.key(Qt::Key_I);
    bench.key(Qt::Key_Right, Qt::ShiftModifier);
    bench.key(Qt::Key_Return);
    QCOMPARE(bench.document.working().list->segs.count(), 5);
    QVERIFY(isAt(bench.place(1), 30.0, 10.0));
}

void TestKpshapesCanvasTools::spaceActsToo()
{
    Bench bench({nothing()});
    bench.key(Qt::Key_M);
    bench.key(Qt::Key_Right);
    bench.key(Qt::Key_Space);
    QCOMPARE(bench.document.working().list->segs.count(), 1);
    QVERIFY(isAt(bench.place(0), 101.0, 50.0));
}

void TestKpshapesCanvasTools::spaceMovesThePageWithTheMouse()
{
    Bench bench({rectangle()});
    bench.canvas.setTool(Tool::Line);
    QPoint const before = bench.pixel(0.0, 0.0);
    QTest::keyPress(&bench.canvas, Qt::Key_Space);
    bench.drag(bench.pixel(100.0, 50.0), QPoint(20, 30));
    QTest::keyRelease(&bench.canvas, Qt::Key_Space);
    QCOMPARE(bench.pixel(0.0, 0.0), before + QPoint(20, 30));
    QCOMPARE(bench.steps(), 0);
}

void TestKpshapesCanvasTools::middleButtonMovesThePage()
{
    Bench bench({rectangle()});
    QPoint const before = bench.pixel(0.0, 0.0);
    QPoint const at = bench.pixel(180.0, 10.0);
    QTest::mousePress(&bench.canvas, Qt::MiddleButton, {}, at);
    bench.move(at + QPoint(-30, 10), {}, Qt::MiddleButton);
    QTest::mouseRelease(&bench.canvas, Qt::MiddleButton, {}, at + QPoint(-30, 10));
    QCOMPARE(bench.pixel(0.0, 0.0), before + QPoint(-30, 10));
    QVERIFY(isAt(bench.place(1), 180.0, 10.0));
}

void TestKpshapesCanvasTools::handToolMovesThePage()
{
    Bench bench({rectangle()});
    bench.canvas.setTool(Tool::Hand);
    QPoint const before = bench.pixel(0.0, 0.0);
    bench.drag(bench.pixel(180.0, 10.0), QPoint(-30, 10));
    QCOMPARE(bench.pixel(0.0, 0.0), before + QPoint(-30, 10));
    QVERIFY(bench.selection.isEmpty());
}

void TestKpshapesCanvasTools::zoomToolEnlargesAndReduces()
{
    Bench bench({rectangle()}, 1.0);
    bench.canvas.setTool(Tool::Zoom);
    QPoint const at = bench.pixel(50.0, 20.0);
    bench.click(at);
    QCOMPARE(bench.canvas.zoom(), 1.25);
    QVERIFY((bench.pixel(50.0, 20.0) - at).manhattanLength() <= 2);
    bench.click(at, Qt::AltModifier);
    QCOMPARE(bench.canvas.zoom(), 1.0);
}

void TestKpshapesCanvasTools::zoomToolShowsARectangle()
{
    Bench bench({rectangle()}, 1.0);
    bench.canvas.setTool(Tool::Zoom);
    bench.drag(bench.pixel(20.0, 10.0), QPoint(40, 20));
    QVERIFY(bench.canvas.zoom() > 5.0);
    QPointF const centre = bench.canvas.view().centre() - bench.canvas.view().boxOrigin();
    QVERIFY(std::abs(centre.x() - 40.0) <= 1.0);
    QVERIFY(std::abs(centre.y() - 20.0) <= 1.0);
}

void TestKpshapesCanvasTools::zoomToolWorksByKeyboard()
{
    Bench bench({rectangle()}, 1.0);
    bench.key(Qt::Key_Z);
    bench.key(Qt::Key_Right);
    bench.key(Qt::Key_Return);
    bench.key(Qt::Key_Return);
    QCOMPARE(bench.canvas.zoom(), 1.25);
}

KPSHAPES_TEST_MAIN(TestKpshapesCanvasTools)
#include "tst_kpshapes_canvas_tools.moc"
