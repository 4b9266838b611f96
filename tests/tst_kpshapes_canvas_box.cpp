// SPDX-License-Identifier: MIT
#include "canvastesting.h"

using namespace CanvasTesting;

Q_DECLARE_METATYPE(BoxHandle)

class TestKpshapesCanvasBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void draggingABoxHandleResizes_data();
    void draggingABoxHandleResizes();
    void oppositeSideOfTheBoxStaysOnThePage();
    void shiftKeepsTheProportionOfTheBox();
    void ctrlTakesWholeUnitsOfTheRuler();
    void boxNeverGetsSmallerThanAUnit();
    void escapeGivesTheBoxBack();
    void arrowsMoveTheBoxHandleWithTheFocus();
};

void TestKpshapesCanvasBox::draggingABoxHandleResizes_data()
{
    QTest::addColumn<BoxHandle>("handle");
    QTest::addColumn<QSizeF>("box");
    // By 40 pixels to the right and 20 downwards, at twice the size.
    QTest::newRow("top left") << BoxHandle::TopLeft << QSizeF(180.0, 90.0);
    QTest::newRow("top") << BoxHandle::Top << QSizeF(200.0, 90.0);
    QTest::newRow("top right") << BoxHandle::TopRight << QSizeF(220.0, 90.0);
    QTest::newRow("right") << BoxHandle::Right << QSizeF(220.0, 100.0);
    QTest::newRow("bottom right") << BoxHandle::BottomRight << QSizeF(220.0, 110.0);
    QTest::newRow("bottom") << BoxHandle::Bottom << QSizeF(200.0, 110.0);
    QTest::newRow("bottom left") << BoxHandle::BottomLeft << QSizeF(180.0, 110.0);
    QTest::newRow("left") << BoxHandle::Left << QSizeF(180.0, 100.0);
}

void TestKpshapesCanvasBox::draggingABoxHandleResizes()
{
    QFETCH(BoxHandle, handle);
    QFETCH(QSizeF, box);
    Bench bench({rectangle()});
    bench.drag(bench.canvas.boxHandleRect(handle).center(), QPoint(40, 20));
    QCOMPARE(bench.document.working().box, box);
    QVERIFY(isAt(bench.place(0), box.width() / 10.0, box.height() / 10.0));
    QVERIFY(isAt(bench.place(2), box.width() - 20.0, box.height() - 10.0));
    QVERIFY(isAt(bench.place(3), 20.0, box.height() - 10.0));
    QCOMPARE(bench.steps(), 1);
    QCOMPARE(bench.lastStep(), QStringLiteral("Resize box"));
}

void TestKpshapesCanvasBox::oppositeSideOfTheBoxStaysOnThePage()
{
    Bench bench({rectangle()});
    QPointF const corner = bench.canvas.view().boxOrigin() + QPointF(200.0, 100.0);
    QPoint const from = bench.canvas.boxHandleRect(BoxHandle::TopLeft).center();
    bench.press(from);
    for (int i = 1; i <= 5; ++i) {
        bench.move(from + QPoint(10 * i, 6 * i));
        QSizeF const box = bench.document.working().box;
        QCOMPARE(box, QSizeF(200.0 - 5.0 * i, 100.0 - 3.0 * i));
        QPointF const now = bench.canvas.view().boxOrigin() + QPointF(box.width(), box.height());
        QVERIFY(isAt(now, corner.x(), corner.y()));
    }
    bench.release(from + QPoint(50, 30));
    QCOMPARE(bench.steps(), 1);
    // The first step of a document is no reason to look at it anew.
    QPointF const then = bench.canvas.view().boxOrigin() + QPointF(175.0, 85.0);
    QVERIFY(isAt(then, corner.x(), corner.y()));
    QCOMPARE(bench.canvas.zoom(), 2.0);
}

void TestKpshapesCanvasBox::shiftKeepsTheProportionOfTheBox()
{
    Bench bench({rectangle()});
    QPoint const from = bench.canvas.boxHandleRect(BoxHandle::BottomRight).center();
    bench.drag(from, QPoint(200, 10), Qt::ShiftModifier);
    QCOMPARE(bench.document.working().box, QSizeF(300.0, 150.0));
}

void TestKpshapesCanvasBox::ctrlTakesWholeUnitsOfTheRuler()
{
    Bench bench({rectangle()});
    bench.settings.setUnit(1);
    QPoint const from = bench.canvas.boxHandleRect(BoxHandle::Right).center();
    bench.drag(from, QPoint(31, 0), Qt::ControlModifier);
    double const millimetres = UnitUtil::pixelToUnit(bench.document.working().box.width(), 1U);
    QVERIFY(std::abs(millimetres - 57.0) < 1e-9);
    QCOMPARE(bench.document.working().box.height(), 100.0);
}

void TestKpshapesCanvasBox::boxNeverGetsSmallerThanAUnit()
{
    Bench bench({rectangle()});
    bench.drag(bench.canvas.boxHandleRect(BoxHandle::Left).center(), QPoint(600, 0));
    QCOMPARE(bench.document.working().box, QSizeF(1.0, 100.0));
}

void TestKpshapesCanvasBox::escapeGivesTheBoxBack()
{
    Bench bench({rectangle()});
    QPointF const origin = bench.canvas.view().boxOrigin();
    QPoint const from = bench.canvas.boxHandleRect(BoxHandle::Left).center();
    bench.press(from);
    bench.move(from + QPoint(40, 0));
    QCOMPARE(bench.document.working().box.width(), 180.0);
    bench.key(Qt::Key_Escape);
    QCOMPARE(bench.document.working().box, QSizeF(200.0, 100.0));
    QVERIFY(isAt(bench.canvas.view().boxOrigin(), origin.x(), origin.y()));
    bench.release(from + QPoint(40, 0));
    QCOMPARE(bench.steps(), 0);
}

void TestKpshapesCanvasBox::arrowsMoveTheBoxHandleWithTheFocus()
{
    Bench bench({rectangle()});
    bench.canvas.setBoxHandle(BoxHandle::Left);
    bench.key(Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(bench.document.working().box, QSizeF(210.0, 100.0));
    QVERIFY(isAt(bench.place(0), 21.0, 10.0));
    QCOMPARE(bench.lastStep(), QStringLiteral("Resize box"));
    bench.key(Qt::Key_Right, Qt::ControlModifier);
    QVERIFY(std::abs(bench.document.working().box.width() - 209.9) < 1e-9);
    QCOMPARE(*bench.canvas.boxHandle(), BoxHandle::Left);
}

KPSHAPES_TEST_MAIN(TestKpshapesCanvasBox)
#include "tst_kpshapes_canvas_box.moc"
