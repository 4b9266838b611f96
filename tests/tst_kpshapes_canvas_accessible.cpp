// SPDX-License-Identifier: MIT
#include "canvas/canvasaccessible.h"
#include "canvas/handlename.h"
#include "canvastesting.h"

#include <QAccessible>
#include <QElapsedTimer>

using namespace CanvasTesting;

class TestKpshapesCanvasAccessible : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyHandleIsAChild();
    void childrenHaveNames_data();
    void childrenHaveNames();
    void coordinatesAreTold_data();
    void coordinatesAreTold();
    void childrenStandWhereTheyAreDrawn();
    void childrenAreFoundByPlace();
    void statesFollowTheSelection();
    void focusFollowsTheCurrentHandle();
    void actionGivesTheFocus();
    void childrenOutliveWhatTheyStandFor();
    void tenThousandHandlesAreQuick();
};

void TestKpshapesCanvasAccessible::initTestCase()
{
    installCanvasAccessibility();
    installCanvasAccessibility();
}

void TestKpshapesCanvasAccessible::everyHandleIsAChild()
{
    Bench bench({curveAndEllipse()});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    QVERIFY(canvas);
    QCOMPARE(canvas->role(), QAccessible::Canvas);
    QCOMPARE(canvas->text(QAccessible::Name), QStringLiteral("Canvas"));
    QCOMPARE(canvas->childCount(), 7 + 8);
    QVERIFY(!canvas->child(15));
    QVERIFY(!canvas->child(-1));
    for (int i = 0; i < canvas->childCount(); ++i) {
        QAccessibleInterface* const child = canvas->child(i);
        QVERIFY(child && child->isValid());
        QCOMPARE(canvas->child(i), child);
        QCOMPARE(canvas->indexOfChild(child), i);
        QCOMPARE(child->parent(), canvas);
        QCOMPARE(child->role(), QAccessible::Grip);
    }
    Bench empty({});
    QCOMPARE(QAccessible::queryAccessibleInterface(&empty.canvas)->childCount(), 0);
}

void TestKpshapesCanvasAccessible::childrenHaveNames_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::newRow("move") << 0 << "Point 1 of 3, move: x 0 % of the width, y 50 % of the height";
    QTest::newRow("curve") << 1
                           << "Point 2 of 3, curve: x 0 % of the smaller side left of the right "
                              "edge, y 50 % of the smaller side above the lower edge";
    QTest::newRow("control")
        << 2
        << "Point 2 of 3, curve, first control point: x 20 % of the width, y 10 % of the height";
    QTest::newRow("centre")
        << 4 << "Point 3 of 3, ellipse, centre: x 50 % of the width, y 70 % of the height";
    QTest::newRow("radius") << 5
                            << "Point 3 of 3, ellipse, horizontal radius: 30 % of the smaller side";
    QTest::newRow("box") << 7 << "Box, top left corner";
    QTest::newRow("last of the box") << 14 << "Box, left side";
}

void TestKpshapesCanvasAccessible::childrenHaveNames()
{
    QFETCH(int, index);
    QFETCH(QString, name);
    Bench bench({curveAndEllipse()});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    QCOMPARE(canvas->child(index)->text(QAccessible::Name), name);
}

void TestKpshapesCanvasAccessible::coordinatesAreTold_data()
{
    QTest::addColumn<int>("rule");
    QTest::addColumn<int>("axis");
    QTest::addColumn<QString>("text");
    int const x = int(Axis::X);
    int const y = int(Axis::Y);
    QTest::newRow("fixed") << 0 << x << "x fixed at 40";
    QTest::newRow("width") << 1 << x << "x 12.5 % of the width";
    QTest::newRow("height") << 2 << y << "y 12.5 % of the height";
    QTest::newRow("right") << 3 << x << "x 0.125 left of the right edge";
    QTest::newRow("right across") << 3 << y << "y the width less 0.125";
    QTest::newRow("bottom") << 4 << y << "y 0.125 above the lower edge";
    QTest::newRow("bottom across") << 4 << x << "x the height less 0.125";
    QTest::newRow("side") << 5 << x << "x 12.5 % of the smaller side";
    QTest::newRow("right less side")
        << 6 << x << "x 12.5 % of the smaller side left of the right edge";
    QTest::newRow("bottom less side")
        << 7 << y << "y 12.5 % of the smaller side above the lower edge";
    QTest::newRow("unknown") << 99 << x << "x 40 by no rule";
}

void TestKpshapesCanvasAccessible::coordinatesAreTold()
{
    QFETCH(int, rule);
    QFETCH(int, axis);
    QFETCH(QString, text);
    QCOMPARE(coordinateText(KpReal(qint16(rule), 0.125, 40.0), Axis(axis)), text);
}

void TestKpshapesCanvasAccessible::childrenStandWhereTheyAreDrawn()
{
    Bench bench({rectangle()});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    QPoint const at = bench.canvas.mapToGlobal(bench.pixel(180.0, 10.0));
    QRect const rect = canvas->child(1)->rect();
    QVERIFY(rect.contains(at));
    QVERIFY(rect.width() < 20);
    QVERIFY(!canvas->child(1)->state().offscreen);
    bench.canvas.setZoom(100.0);
    QVERIFY(canvas->child(1)->state().offscreen);
}

void TestKpshapesCanvasAccessible::childrenAreFoundByPlace()
{
    Bench bench({rectangle()});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    for (int const index : {0, 1, 2, 3, 4, 9, 11}) {
        QPoint const at = canvas->child(index)->rect().center();
        QCOMPARE(canvas->childAt(at.x(), at.y()), canvas->child(index));
    }
    QPoint const between = bench.canvas.mapToGlobal(bench.pixel(100.0, 50.0));
    QVERIFY(!canvas->childAt(between.x(), between.y()));
}

void TestKpshapesCanvasAccessible::statesFollowTheSelection()
{
    Bench bench({rectangle()});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    QVERIFY(!canvas->focusChild());
    bench.selection.set({{0, HandleKind::Point}, {2, HandleKind::Point}});
    QVERIFY(canvas->child(0)->state().selected);
    QVERIFY(!canvas->child(0)->state().focused);
    QVERIFY(!canvas->child(1)->state().selected);
    QVERIFY(canvas->child(2)->state().selected);
    QVERIFY(canvas->child(2)->state().focused);
    QCOMPARE(canvas->focusChild(), canvas->child(2));
    bench.canvas.setBoxHandle(BoxHandle::Top);
    QVERIFY(canvas->child(5)->state().focused);
    QVERIFY(!canvas->child(2)->state().selected);
    QCOMPARE(canvas->focusChild(), canvas->child(5));
}

void TestKpshapesCanvasAccessible::focusFollowsTheCurrentHandle()
{
    Bench bench({rectangle()});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    for (int i = 0; i < canvas->childCount(); ++i) {
        bench.key(Qt::Key_Tab);
        QCOMPARE(canvas->indexOfChild(canvas->focusChild()), i);
        QVERIFY(canvas->child(i)->state().focused);
    }
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    other.activateWindow();
    QTRY_VERIFY(!bench.canvas.hasFocus());
    QVERIFY(!canvas->focusChild());
}

void TestKpshapesCanvasAccessible::actionGivesTheFocus()
{
    Bench bench({rectangle()});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    auto const act = [&](int index) {
        canvas->child(index)->actionInterface()->doAction(
            QAccessibleActionInterface::setFocusAction());
    };
    act(2);
    QVERIFY(bench.selection.contains({2, HandleKind::Point}));
    act(4 + int(BoxHandle::Right));
    QVERIFY(bench.selection.isEmpty());
    QCOMPARE(*bench.canvas.boxHandle(), BoxHandle::Right);
}

void TestKpshapesCanvasAccessible::childrenOutliveWhatTheyStandFor()
{
    Bench bench({curveAndEllipse(), itemOf(std::make_unique<KpPathSegList>(), {9.0, 9.0})});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    QAccessibleInterface* const last = canvas->child(14);
    QVERIFY(last->isValid());
    bench.document.setCurrent(1);
    QCOMPARE(canvas->childCount(), 8);
    QVERIFY(!last->isValid());
    QVERIFY(last->text(QAccessible::Name).isEmpty());
    QVERIFY(last->state().invalid);
    QCOMPARE(canvas->child(0)->text(QAccessible::Name), QStringLiteral("Box, top left corner"));
}

void TestKpshapesCanvasAccessible::tenThousandHandlesAreQuick()
{
    Bench bench({spiral(10000)});
    QAccessibleInterface* const canvas = QAccessible::queryAccessibleInterface(&bench.canvas);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 200; ++i) {
        bench.selection.set({{9000 + i, HandleKind::Point}});
        QVERIFY(canvas->focusChild()->state().focused);
        QVERIFY(!canvas->focusChild()->text(QAccessible::Name).isEmpty());
    }
    qInfo("200 changes of the focus: %lld ms", timer.elapsed());
    QCOMPARE(canvas->childCount(), 10000 + 2 * 2499 + 8);
}

KPSHAPES_TEST_MAIN(TestKpshapesCanvasAccessible)
#include "tst_kpshapes_canvas_accessible.moc"
