// SPDX-License-Identifier: MIT
#include "canvastesting.h"
#include "model/rules.h"

#include <QAction>

using namespace CanvasTesting;

/** What becomes of a drag when something comes between. */
class TestKpshapesCanvasInterrupted : public QObject
{
    Q_OBJECT

private:
    /** Takes the second point, which stands at (180, 10), so far to the right. */
    static QPoint beginDrag(Bench& bench, int pixels = 20)
    {
        QPoint const from = bench.pixel(180.0, 10.0);
        bench.press(from);
        bench.move(from + QPoint(pixels, 0));
        return from;
    }

private Q_SLOTS:
    void theSelectionChangesBetweenPressAndRelease()
    {
        Bench bench({rectangle()});
        QPoint const at = bench.pixel(180.0, 10.0);
        bench.click(at);
        bench.press(at);
        bench.selection.clear();
        bench.release(at);
        QVERIFY(bench.selection.isEmpty());
        QCOMPARE(bench.steps(), 0);
    }

    void aButtonThatWentUpElsewhereEndsTheDrag()
    {
        Bench bench({rectangle()});
        QPoint const from = beginDrag(bench);
        QVERIFY(isAt(bench.place(1), 190.0, 10.0));
        bench.move(from + QPoint(40, 0), {}, Qt::NoButton);
        QVERIFY(isAt(bench.place(1), 180.0, 10.0));
        bench.release(from + QPoint(40, 0));
        QCOMPARE(bench.steps(), 0);
        bench.drag(from, QPoint(20, 0));
        QVERIFY(isAt(bench.place(1), 190.0, 10.0));
        QCOMPARE(bench.steps(), 1);
    }

    void theFirstStepAfterADragThatWasGivenUpKeepsTheView()
    {
        Bench bench({rectangle()});
        beginDrag(bench);
        bench.key(Qt::Key_Escape);
        double const zoom = bench.canvas.zoom();
        QPointF const centre = bench.canvas.view().centre();
        bench.drag(bench.pixel(180.0, 10.0), QPoint(20, 0));
        QCOMPARE(bench.steps(), 1);
        QCOMPARE(bench.selection.handles(), (QVector<HandleId> {{1, HandleKind::Point}}));
        QCOMPARE(bench.canvas.zoom(), zoom);
        QCOMPARE(bench.canvas.view().centre(), centre);
    }

    void shortcutsWaitForTheEndOfADrag()
    {
        Bench bench({rectangle()});
        QAction action(&bench.canvas);
        action.setShortcut(QKeySequence("Ctrl+D"));
        bench.canvas.addAction(&action);
        int count = 0;
        connect(&action, &QAction::triggered, this, [&count] { ++count; });
        QPoint const from = beginDrag(bench);
        bench.key(Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(count, 0);
        bench.release(from + QPoint(20, 0));
        QVERIFY(isAt(bench.place(1), 190.0, 10.0));
        bench.key(Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(count, 1);
    }

    void ctrlZGivesUpADragAndKeepsTheStepsBefore()
    {
        Bench bench({rectangle()});
        bench.drag(bench.pixel(20.0, 10.0), QPoint(20, 0));
        QPoint const from = beginDrag(bench);
        bench.key(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(isAt(bench.place(1), 180.0, 10.0));
        bench.move(from + QPoint(60, 0));
        bench.release(from + QPoint(60, 0));
        QVERIFY(isAt(bench.place(0), 30.0, 10.0));
        QVERIFY(isAt(bench.place(1), 180.0, 10.0));
        QCOMPARE(bench.steps(), 1);
    }

    void keysDoNotDisturbADrag_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::newRow("tab") << int(Qt::Key_Tab) << 0;
        QTest::newRow("ctrl tab") << int(Qt::Key_Tab) << int(Qt::ControlModifier);
        QTest::newRow("select all") << int(Qt::Key_A) << int(Qt::ControlModifier);
        QTest::newRow("tool") << int(Qt::Key_L) << 0;
        QTest::newRow("arrow") << int(Qt::Key_Left) << 0;
        QTest::newRow("return") << int(Qt::Key_Return) << 0;
        QTest::newRow("space") << int(Qt::Key_Space) << 0;
        QTest::newRow("zoom") << int(Qt::Key_Plus) << 0;
    }

    void keysDoNotDisturbADrag()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        Bench bench({rectangle()});
        beginDrag(bench);
        bench.key(Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QVERIFY(bench.canvas.hasFocus());
        QCOMPARE(int(bench.canvas.tool()), int(Tool::Select));
        QPoint const to = bench.pixel(195.0, 10.0);
        bench.move(to);
        bench.release(to);
        QCOMPARE(bench.selection.handles(), (QVector<HandleId> {{1, HandleKind::Point}}));
        QVERIFY(qAbs(bench.place(1).x() - 195.0) <= 1.0);
        QCOMPARE(bench.lastStep(), QString("Move point"));
        QCOMPARE(bench.steps(), 1);
    }

    void whatIsDraggedIsRemoved_data()
    {
        QTest::addColumn<int>("what");
        QTest::newRow("a point") << 0;
        QTest::newRow("the outline") << 1;
        QTest::newRow("all outlines") << 2;
        QTest::newRow("another document") << 3;
    }

    void whatIsDraggedIsRemoved()
    {
        QFETCH(int, what);
        for (bool const isBox : {false, true}) {
            Bench bench({rectangle(), curveAndEllipse()});
            QPoint const from = isBox ? bench.canvas.boxHandleRect(BoxHandle::BottomRight).center()
                                      : bench.pixel(180.0, 10.0);
            bench.press(from);
            bench.move(from + QPoint(20, 10));
            if (what == 0) {
                delete bench.document.working().list->segs.takeLast();
                bench.document.commit("Delete");
            } else if (what < 3) {
                bench.document.remove(0, what, "Remove");
            } else {
                bench.document.reset({curveAndEllipse()});
            }
            int const steps = bench.steps();
            bench.move(from + QPoint(40, 20));
            bench.release(from + QPoint(40, 20));
            QCOMPARE(bench.steps(), steps);
            bench.document.undoStack().setIndex(0);
            ItemPointer const first = what < 3 ? rectangle() : curveAndEllipse();
            QVERIFY(haveSameContent(bench.document.at(0), *first));
        }
    }

    void theBoxChangesWithinADrag()
    {
        Bench bench({rectangle()});
        QPoint const from = bench.canvas.boxHandleRect(BoxHandle::TopLeft).center();
        bench.press(from);
        bench.move(from - QPoint(20, 20));
        bench.document.working().box = QSizeF(50.0, 50.0);
        bench.document.working().list->updateValue(50.0, 50.0);
        QVERIFY(bench.document.commit("Take box"));
        bench.move(from - QPoint(40, 40));
        bench.release(from - QPoint(40, 40));
        QCOMPARE(bench.steps(), 1);
        QCOMPARE(bench.document.working().box, QSizeF(50.0, 50.0));
    }

    void theCanvasGoesWithinADrag()
    {
        ShapeDocument document;
        Selection selection;
        ViewSettings settings;
        document.reset({rectangle()});
        auto canvas = std::make_unique<Canvas>(document, selection, settings);
        canvas->resize(640, 480);
        canvas->show();
        QPoint const from = canvas->boxHandleRect(BoxHandle::TopLeft).center();
        QTest::mousePress(canvas.get(), Qt::LeftButton, {}, from);
        canvas.reset();
        QCOMPARE(document.undoStack().count(), 0);
        QVERIFY(haveSameContent(itemOf(document.working()), *rectangle()));
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesCanvasInterrupted)
#include "tst_kpshapes_canvas_interrupted.moc"
