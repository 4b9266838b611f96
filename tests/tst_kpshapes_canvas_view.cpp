// SPDX-License-Identifier: MIT
#include "canvas/devicepath.h"
#include "canvas/legend.h"
#include "canvas/rulerscale.h"
#include "canvastesting.h"
#include "unitcode_p.h"

#include <QNativeGestureEvent>
#include <QSignalSpy>

using namespace CanvasTesting;

class TestKpshapesCanvasView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { UnitUtil::initScreen(96.0, 1.0, QSize(1920, 1080)); }
    void boxIsInTheMiddleOfThePageAtFirst();
    void zoomStaysInItsRange_data();
    void zoomStaysInItsRange();
    void zoomChangesAreTold();
    void wheelScrolls();
    void wheelWithCtrlZoomsAtThePointer();
    void gestureZooms();
    void keysZoom();
    void fittedBoxFollowsTheSizeOfTheWidget();
    void scrollToBringsAHandleIntoView();
    void pageStaysInReach();
    void handlesFarAwayAreNotFollowed();
    void pointerIsTold();
    void anotherPageCentresTheBoxAgain();
    void rulersTakeTheirPlaceOnlyWhenShown();
    void rulerStepsAreNice_data();
    void rulerStepsAreNice();
    void rulerLabelsSuitTheUnit_data();
    void rulerLabelsSuitTheUnit();
    void everyUnitHasAGraduationAtEveryZoom();
    void cutDrawingIsTheSameWhereItIsSeen();
    void cutDrawingLeavesOutWhatIsNoNumber();
    void cutDrawingOfHugeNumbersStaysWithinItsBounds();
    void handlesShowTheRulesOfTheirCoordinates();
    void linesOfTheBoxAreCrisp();
    void legendExplainsTheRulesInUse();
    void pageIsWhiteInADarkPalette();
    void shapeHasItsOwnColours();
    void documentThatIsReadIsFitted();
};

void TestKpshapesCanvasView::boxIsInTheMiddleOfThePageAtFirst()
{
    Bench bench({rectangle()});
    QSizeF const page = bench.settings.pageSize();
    QVERIFY(isAt(bench.canvas.view().boxOrigin(), (page.width() - 200.0) / 2.0,
        (page.height() - 100.0) / 2.0));
}

void TestKpshapesCanvasView::zoomStaysInItsRange_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<double>("expected");
    QTest::newRow("within") << 3.0 << 3.0;
    QTest::newRow("too large") << 1000.0 << 100.0;
    QTest::newRow("too small") << 0.0001 << 0.01;
    QTest::newRow("zero") << 0.0 << 0.01;
    QTest::newRow("negative") << -1.0 << 0.01;
    QTest::newRow("infinite") << Testing::infinite << 100.0;
    QTest::newRow("not a number") << Testing::notANumber << 2.0;
}

void TestKpshapesCanvasView::zoomStaysInItsRange()
{
    QFETCH(double, zoom);
    QFETCH(double, expected);
    Bench bench({rectangle()}, 2.0);
    bench.canvas.setZoom(zoom);
    QCOMPARE(bench.canvas.zoom(), expected);
}

void TestKpshapesCanvasView::zoomChangesAreTold()
{
    Bench bench({rectangle()}, 2.0);
    QSignalSpy told(&bench.canvas, &Canvas::zoomChanged);
    bench.canvas.setZoom(2.0);
    QCOMPARE(told.count(), 0);
    bench.canvas.zoomIn();
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.at(0).at(0).toDouble(), 2.5);
    bench.canvas.zoomOut();
    QCOMPARE(bench.canvas.zoom(), 2.0);
}

namespace {

void turnWheel(
    Canvas& canvas, QPoint const& at, QPoint const& angle, Qt::KeyboardModifiers modifiers = {})
{
    QWheelEvent event(
        at, canvas.mapToGlobal(at), {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&canvas, &event);
}

} // namespace

void TestKpshapesCanvasView::wheelScrolls()
{
    Bench bench({rectangle()});
    QPoint const before = bench.pixel(0.0, 0.0);
    QPoint const middle = bench.canvas.rect().center();
    turnWheel(bench.canvas, middle, QPoint(0, 120));
    QCOMPARE(bench.pixel(0.0, 0.0), before + QPoint(0, 48));
    turnWheel(bench.canvas, middle, QPoint(0, -120), Qt::ShiftModifier);
    QCOMPARE(bench.pixel(0.0, 0.0), before + QPoint(-48, 48));
}

void TestKpshapesCanvasView::wheelWithCtrlZoomsAtThePointer()
{
    Bench bench({rectangle()}, 2.0);
    QPoint const at = bench.pixel(50.0, 30.0);
    turnWheel(bench.canvas, at, QPoint(0, 120), Qt::ControlModifier);
    QCOMPARE(bench.canvas.zoom(), 2.5);
    QVERIFY((bench.pixel(50.0, 30.0) - at).manhattanLength() <= 2);
    turnWheel(bench.canvas, at, QPoint(0, -240), Qt::ControlModifier);
    QCOMPARE(bench.canvas.zoom(), 1.6);
}

void TestKpshapesCanvasView::gestureZooms()
{
    Bench bench({rectangle()}, 2.0);
    QPointF const at = bench.pixel(50.0, 30.0);
    QNativeGestureEvent event(
        Qt::ZoomNativeGesture, nullptr, at, at, bench.canvas.mapToGlobal(at.toPoint()), 0.5, 0, 0);
    QApplication::sendEvent(&bench.canvas, &event);
    QCOMPARE(bench.canvas.zoom(), 3.0);
    QVERIFY((bench.pixel(50.0, 30.0) - at.toPoint()).manhattanLength() <= 2);
}

void TestKpshapesCanvasView::keysZoom()
{
    Bench bench({rectangle()}, 2.0);
    bench.key(Qt::Key_Plus);
    QCOMPARE(bench.canvas.zoom(), 2.5);
    bench.key(Qt::Key_Minus);
    QCOMPARE(bench.canvas.zoom(), 2.0);
    bench.key(Qt::Key_0);
    double const ofBox = bench.canvas.zoom();
    bench.key(Qt::Key_9);
    double const ofPage = bench.canvas.zoom();
    QVERIFY(ofPage < 1.0);
    QVERIFY(ofBox > 2.0);
    bench.key(Qt::Key_0);
    QCOMPARE(bench.canvas.zoom(), ofBox);
    bench.key(Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(bench.canvas.zoom(), ofPage);
}

void TestKpshapesCanvasView::fittedBoxFollowsTheSizeOfTheWidget()
{
    Bench bench({rectangle()}, 0.0);
    double const before = bench.canvas.zoom();
    bench.canvas.resize(1280, 960);
    QVERIFY(bench.canvas.zoom() > 1.8 * before);
    bench.canvas.setZoom(1.5);
    bench.canvas.resize(640, 480);
    QCOMPARE(bench.canvas.zoom(), 1.5);
}

void TestKpshapesCanvasView::scrollToBringsAHandleIntoView()
{
    Bench bench({rectangle()}, 40.0);
    HandleId const corner {2, HandleKind::Point};
    QVERIFY(!bench.canvas.rect().contains(bench.canvas.handleRect(corner)));
    bench.canvas.scrollTo(corner);
    QVERIFY(bench.canvas.rect().contains(bench.canvas.handleRect(corner)));
    // What is in view already stays.
    QPointF const centre = bench.canvas.view().centre();
    bench.canvas.scrollTo(corner);
    QCOMPARE(bench.canvas.view().centre(), centre);
    bench.canvas.scrollTo(HandleId {99, HandleKind::Point});
    QCOMPARE(bench.canvas.view().centre(), centre);
}

void TestKpshapesCanvasView::pageStaysInReach()
{
    Bench bench({rectangle()});
    for (int i = 0; i < 500; ++i)
        turnWheel(bench.canvas, bench.canvas.rect().center(), QPoint(1200, 1200));
    QPointF const centre = bench.canvas.view().centre();
    QVERIFY(std::abs(centre.x()) < 1.0 && std::abs(centre.y()) < 1.0);
}

void TestKpshapesCanvasView::handlesFarAwayAreNotFollowed()
{
    Bench bench({rectangle()});
    bench.segment(1).pt.x.value = 1e300;
    bench.segment(1).pt.y.value = -1e300;
    bench.canvas.scrollTo(HandleId {1, HandleKind::Point});
    QVERIFY(bench.canvas.view().centre().x() < 1.1e9);
    QVERIFY(bench.canvas.view().centre().y() > -1.1e9);
    QVERIFY(!bench.canvas.grab().isNull());
    bench.canvas.scrollTo(HandleId {0, HandleKind::Point});
    QVERIFY(bench.canvas.rect().contains(bench.canvas.handleRect({0, HandleKind::Point})));
}

void TestKpshapesCanvasView::pointerIsTold()
{
    Bench bench({rectangle()});
    QSignalSpy told(&bench.canvas, &Canvas::pointerMoved);
    bench.move(bench.pixel(50.0, 30.0), {}, {});
    QCOMPARE(told.count(), 1);
    QVERIFY(isAt(told.at(0).at(0).toPointF(), 50.0, 30.0));
    QVERIFY(told.at(0).at(1).toBool());
    bench.move(QPoint(3, 3), {}, {});
    QVERIFY(!told.at(1).at(1).toBool());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&bench.canvas, &leave);
    QVERIFY(!told.at(2).at(1).toBool());
}

void TestKpshapesCanvasView::anotherPageCentresTheBoxAgain()
{
    Bench bench({rectangle()});
    bench.settings.setPage(bench.settings.page(), true);
    QSizeF const page = bench.settings.pageSize();
    QVERIFY(page.width() > page.height());
    QVERIFY(isAt(bench.canvas.view().boxOrigin(), (page.width() - 200.0) / 2.0,
        (page.height() - 100.0) / 2.0));
}

void TestKpshapesCanvasView::rulersTakeTheirPlaceOnlyWhenShown()
{
    Bench bench({rectangle()});
    QVERIFY(bench.canvas.view().area().top() > 10.0);
    bench.settings.setShowsRulers(false);
    QCOMPARE(bench.canvas.view().area(), QRectF(0.0, 0.0, 640.0, 480.0));
}

void TestKpshapesCanvasView::rulerStepsAreNice_data()
{
    QTest::addColumn<unsigned int>("unit");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<double>("major");
    QTest::addColumn<int>("divisions");
    unsigned int const mm = UnitMillimetre;
    unsigned int const inch = UnitInch;
    unsigned int const foot = UnitFoot;
    QTest::newRow("pixels at their size") << 0U << 1.0 << 100.0 << 20;
    QTest::newRow("pixels enlarged") << 0U << 100.0 << 1.0 << 20;
    QTest::newRow("millimetres at their size") << mm << 1.0 << 20.0 << 10;
    QTest::newRow("millimetres enlarged") << mm << 4.0 << 5.0 << 10;
    QTest::newRow("inches at their size") << inch << 1.0 << 1.0 << 16;
    QTest::newRow("inches enlarged") << inch << 4.0 << 0.25 << 16;
    QTest::newRow("inches reduced") << inch << 0.1 << 10.0 << 10;
    QTest::newRow("feet at their size") << foot << 1.0 << 1.0 / 12.0 << 16;
    QTest::newRow("feet reduced") << foot << 0.1 << 0.5 << 6;
}

void TestKpshapesCanvasView::rulerStepsAreNice()
{
    QFETCH(unsigned int, unit);
    QFETCH(double, zoom);
    QFETCH(double, major);
    QFETCH(int, divisions);
    RulerScale const scale = rulerScale(unit, zoom, 56.0);
    QCOMPARE(scale.major, major);
    QCOMPARE(scale.divisions, divisions);
}

void TestKpshapesCanvasView::rulerLabelsSuitTheUnit_data()
{
    QTest::addColumn<unsigned int>("unit");
    QTest::addColumn<double>("major");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("label");
    QTest::newRow("zero") << 1U << 0.1 << 0 << "0";
    QTest::newRow("tenths") << 1U << 0.1 << 3 << "0.3";
    QTest::newRow("negative") << 2U << 5.0 << -2 << "-10";
    QTest::newRow("small kilometres") << 4U << 0.00002 << 3 << "0.00006";
    QTest::newRow("quarter inches") << 5U << 0.25 << 5 << "1.25";
    QTest::newRow("inches of a foot") << 6U << 1.0 / 12.0 << 1 << "0.0833";
    QTest::newRow("feet and inches") << 7U << 0.5 << 5 << "2'6\"";
    QTest::newRow("feet and inches below zero") << 7U << 0.25 << -1 << "-0'3\"";
    QTest::newRow("whole feet") << 7U << 1.0 << 2 << "2'";
}

void TestKpshapesCanvasView::rulerLabelsSuitTheUnit()
{
    QFETCH(unsigned int, unit);
    QFETCH(double, major);
    QFETCH(int, index);
    QFETCH(QString, label);
    QCOMPARE((RulerScale {unit, major, 1}.label(index)), label);
}

void TestKpshapesCanvasView::everyUnitHasAGraduationAtEveryZoom()
{
    for (unsigned int unit = 0; unit < unitCount; ++unit) {
        for (double zoom = 0.01; zoom <= 100.0; zoom *= 1.1) {
            RulerScale const scale = rulerScale(unit, zoom, 56.0);
            double const spacing = scale.minorPixels() * scale.divisions * zoom;
            QVERIFY2(spacing >= 56.0 && spacing < 250.0,
                qPrintable(QStringLiteral("unit %1 at %2: %3").arg(unit).arg(zoom).arg(spacing)));
            QVERIFY(scale.minorPixels() * zoom >= 5.0);
            QVERIFY(scale.label(1) != scale.label(2));
        }
    }
}

void TestKpshapesCanvasView::cutDrawingIsTheSameWhereItIsSeen()
{
    QRectF const seen(0.0, 0.0, 200.0, 100.0);
    QRandomGenerator random = Testing::seededRandom(7);
    auto const coordinate = [&random] { return random.bounded(2000.0) - 900.0; };
    for (int i = 0; i < 50; ++i) {
        QPainterPath path(QPointF(coordinate(), coordinate()));
        for (int k = 0; k < 6; ++k) {
            QPointF const one(coordinate(), coordinate());
            QPointF const two(coordinate(), coordinate());
            QPointF const end(coordinate(), coordinate());
            if (k % 2)
                path.cubicTo(one, two, end);
            else
                path.lineTo(end);
        }
        QPainterPath const cut = devicePathOf(path, {}, seen.adjusted(-64, -64, 64, 64)).fill;
        for (int k = 0; k < cut.elementCount(); ++k)
            QVERIFY(seen.adjusted(-65, -65, 65, 65).contains(cut.elementAt(k)));
        // The same points are inside, but for the quarter of a pixel along the edges.
        int different = 0;
        for (int x = 0; x < 200; x += 5) {
            for (int y = 0; y < 100; y += 5)
                different += path.contains(QPointF(x, y)) != cut.contains(QPointF(x, y)) ? 1 : 0;
        }
        QVERIFY2(different <= 8, qPrintable(QString::number(different)));
    }
}

void TestKpshapesCanvasView::cutDrawingLeavesOutWhatIsNoNumber()
{
    QPainterPath path(QPointF(10.0, 10.0));
    path.lineTo(50.0, 10.0);
    path.lineTo(50.0, 50.0);
    QTransform const toNowhere(Testing::notANumber, 0.0, 0.0, 1.0, 0.0, 0.0);
    QRectF const bounds(0.0, 0.0, 100.0, 100.0);
    QVERIFY(devicePathOf(path, toNowhere, bounds).line.isEmpty());
    QVERIFY(devicePathOf(path, toNowhere, bounds).fill.isEmpty());
    QCOMPARE(devicePathOf(path, {}, bounds).line, path);
}

void TestKpshapesCanvasView::cutDrawingOfHugeNumbersStaysWithinItsBounds()
{
    QRectF const bounds(-64.0, -64.0, 300.0, 300.0);
    for (double const huge : {1e6, 1e12, 1e100}) {
        QPainterPath path(QPointF(-huge, -huge));
        path.lineTo(huge, -huge);
        path.lineTo(huge, huge);
        path.cubicTo(0.0, huge, 0.0, huge, -huge, huge);
        path.closeSubpath();
        QPainterPath const cut = devicePathOf(path, {}, bounds).fill;
        QVERIFY(bounds.adjusted(-1.0, -1.0, 1.0, 1.0).contains(cut.boundingRect()));
        QVERIFY(cut.contains(QPointF(50.0, 50.0)));
        QVERIFY(cut.elementCount() < 5000);
    }
}

namespace {

/** The colour at a place of a picture, in logical pixels. */
QColor colourAt(QImage const& picture, QPointF const& at)
{
    return picture.pixelColor((at * picture.devicePixelRatio()).toPoint());
}

} // namespace

void TestKpshapesCanvasView::handlesShowTheRulesOfTheirCoordinates()
{
    Bench bench({rectangle()});
    QImage const picture = bench.canvas.grab().toImage();
    QPointF const right = bench.canvas.view().fromOutline({180.0, 90.0});
    QCOMPARE(colourAt(picture, right - QPointF(2.0, 0.0)), QColor(0xff, 0x7f, 0x0e));
    QCOMPARE(colourAt(picture, right + QPointF(2.5, 0.0)), QColor(0x17, 0xbe, 0xcf));
    QPointF const left = bench.canvas.view().fromOutline({20.0, 10.0});
    QCOMPARE(colourAt(picture, left - QPointF(2.0, 0.0)), QColor(0xd6, 0x27, 0x28));
    QCOMPARE(colourAt(picture, left + QPointF(2.5, 0.0)), QColor(0x1f, 0x77, 0xb4));
    bench.settings.setShowsHandles(false);
    QImage const plain = bench.canvas.grab().toImage();
    QVERIFY(colourAt(plain, right - QPointF(2.0, 0.0)) != QColor(0xff, 0x7f, 0x0e));
}

void TestKpshapesCanvasView::linesOfTheBoxAreCrisp()
{
    Bench bench({rectangle()}, 1.7);
    QImage const picture = bench.canvas.grab().toImage();
    double const ratio = picture.devicePixelRatio();
    QPointF const top = bench.canvas.view().fromOutline({100.0, 0.0}) * ratio;
    // Across the upper side of the box: only paper and one colour of the line.
    QSet<QRgb> colours;
    for (int y = int(top.y()) - 4; y <= int(top.y()) + 4; ++y)
        colours.insert(picture.pixel(int(top.x()), y));
    QCOMPARE(colours.size(), 2);
    QVERIFY(colours.contains(qRgb(255, 255, 255)));
}

void TestKpshapesCanvasView::legendExplainsTheRulesInUse()
{
    Legend const legend = legendOf(*workingShapeOf(*rectangle()).list);
    QCOMPARE(legend.rules[KpReal::PartOfWidth], 2);
    QCOMPARE(legend.rules[KpReal::FromBottom], 2);
    QCOMPARE(legend.rules[KpReal::FromRight], 1);
    QCOMPARE(legend.rules[KpReal::Absolute], 1);
    QCOMPARE(legend.rules[KpReal::PartOfSide], 0);
    QVERIFY(!legend.hasCurves);
    QVERIFY(legendOf(*workingShapeOf(*curveAndEllipse()).list).hasCurves);
    Bench bench({rectangle()});
    QImage const without = bench.canvas.grab().toImage();
    bench.canvas.setShowsLegend(true);
    QVERIFY(bench.canvas.grab().toImage() != without);
}

void TestKpshapesCanvasView::pageIsWhiteInADarkPalette()
{
    Bench bench({rectangle()}, 1.0);
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(40, 40, 44));
    dark.setColor(QPalette::WindowText, Qt::white);
    bench.canvas.setPalette(dark);
    QImage const picture = bench.canvas.grab().toImage();
    QCOMPARE(colourAt(picture, bench.canvas.view().fromOutline({-40.0, -40.0})), QColor(Qt::white));
    QCOMPARE(colourAt(picture, {3.0, 3.0}), QColor(40, 40, 44));
}

void TestKpshapesCanvasView::shapeHasItsOwnColours()
{
    ShapeItem item = *rectangle();
    ShapeColour fill;
    fill.colour = KpColor(QColor(200, 30, 60));
    item.appearance.fill = fill;
    Bench bench({std::make_shared<ShapeItem const>(item)});
    QImage const picture = bench.canvas.grab().toImage();
    QCOMPARE(
        colourAt(picture, bench.canvas.view().fromOutline({100.0, 50.0})), QColor(200, 30, 60));
}

void TestKpshapesCanvasView::documentThatIsReadIsFitted()
{
    Bench bench({rectangle()}, 0.0);
    double const fitted = bench.canvas.zoom();
    bench.canvas.setZoom(1.0);
    bench.selection.set({{0, HandleKind::Point}});
    bench.document.reset({rectangle()});
    QCOMPARE(bench.canvas.zoom(), fitted);
    QVERIFY(bench.selection.isEmpty());
}

KPSHAPES_TEST_MAIN(TestKpshapesCanvasView)
#include "tst_kpshapes_canvas_view.moc"
