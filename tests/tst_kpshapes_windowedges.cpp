// SPDX-License-Identifier: MIT
#include "canvas/canvasaccessible.h"
#include "kpshapestesting.h"
#include "panels/fitdialog.h"
#include "testing.h"
#include "window/messagebar.h"
#include "window/stylechoice.h"
#include "window/windows.h"
#include "windowtesting.h"

#include <QPointer>
#include <QTimer>

using Testing::WindowFolder;

namespace {

QByteArray documentText(int outlines)
{
    return "<D>"
        + QByteArray("<S Width=\"200\" Height=\"100\"><Geometry Closed=\"1\">"
                     "<MoveTo><X V=\"20\" B=\"1\" P=\"0.1\"/><Y V=\"10\"/></MoveTo>"
                     "<LineTo><X V=\"180\"/><Y V=\"10\"/></LineTo>"
                     "<LineTo><X V=\"180\"/><Y V=\"90\"/></LineTo></Geometry></S>")
              .repeated(outlines)
        + "</D>";
}

/** Enough to take a while. */
constexpr int many = 3000;

QPoint beginDrag(MainWindow& window)
{
    Canvas& canvas = window.canvas();
    QPoint const from = canvas.handleRect({1, HandleKind::Point}).center();
    QTest::mousePress(&canvas, Qt::LeftButton, {}, from);
    QPoint const to = from + QPoint(20, 10);
    QMouseEvent move(
        QEvent::MouseMove, to, canvas.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&canvas, &move);
    return to;
}

QString renameFirst(MainWindow& window)
{
    window.document().working().name = "changed";
    window.document().commit("Rename");
    return window.document().undoStack().undoText();
}

} // namespace

/** What users do to windows at the wrong moment. */
class TestKpshapesWindowEdges : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;
    std::unique_ptr<MainWindow> m_window;

    QString openDocument(int outlines)
    {
        QString const file = m_folder->write("shapes.xml", documentText(outlines));
        Testing::openFile(*m_window, file);
        return file;
    }

private Q_SLOTS:
    void initTestCase() { installCanvasAccessibility(); }

    void init()
    {
        m_folder = std::make_unique<WindowFolder>();
        m_window = std::make_unique<MainWindow>(m_folder->surroundings());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void cleanup()
    {
        m_window.reset();
        m_folder.reset();
        applyStyle(StyleChoice::System);
    }

    void aWindowClosesWhileItReads()
    {
        m_window->controller().open(m_folder->write("shapes.xml", documentText(many)));
        QVERIFY(m_window->controller().isLoading());
        QVERIFY(m_window->close());
        m_window.reset();
        QCOMPARE(m_folder->prompter.asked, QStringList());
        QCOMPARE(m_folder->read(m_folder->path("shapes.xml")), documentText(many));
    }

    void aWindowGoesWithinADrag()
    {
        openDocument(2);
        beginDrag(*m_window);
        QVERIFY(m_window->close());
        m_window.reset();
        QCOMPARE(m_folder->read(m_folder->path("shapes.xml")), documentText(2));
    }

    void aStepWithinADragIsUndoneWhole_data()
    {
        QTest::addColumn<QString>("action");
        for (char const* const action : {"remove-outline", "cut", "duplicate-outline", "delete",
                 "select-none", "show-handles", "reverse", "style-dark", "zoom-box", "tool-line",
                 "new-outline", "paste", "undo", "redo"})
            QTest::newRow(action) << QString(action);
    }

    void aStepWithinADragIsUndoneWhole()
    {
        QFETCH(QString, action);
        openDocument(2);
        if (!m_window->actions().action(action))
            QFAIL("there is no such action");
        renameFirst(*m_window);
        QPoint const to = beginDrag(*m_window);
        Testing::trigger(*m_window, action);
        m_window->canvas().grab();
        QTest::mouseRelease(&m_window->canvas(), Qt::LeftButton, {}, to);
        m_window->document().undoStack().setIndex(0);
        QCOMPARE(m_window->controller().text(), documentText(2));
    }

    void aSaveWithinADragWritesTheLastStep()
    {
        QString const file = openDocument(1);
        QPoint const to = beginDrag(*m_window);
        QVERIFY(m_window->controller().save());
        QCOMPARE(m_folder->read(file), documentText(1));
        QTest::mouseRelease(&m_window->canvas(), Qt::LeftButton, {}, to);
        QCOMPARE(m_window->document().undoStack().undoText(), QString("Move point"));
        QVERIFY(m_window->controller().isModified());
    }

    void whatIsChangedWhileItIsReadAnewIsNotLost()
    {
        openDocument(many);
        m_window->controller().reload();
        QVERIFY(m_window->controller().isLoading());
        renameFirst(*m_window);
        QByteArray const text = m_window->controller().text();
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->document().at(0).name, QString("changed"));
        QCOMPARE(m_window->controller().text(), text);
        QVERIFY(m_window->controller().isModified());
        QVERIFY(m_window->messages().text().contains("changed here"));
        m_window->document().undoStack().setIndex(0);
        m_window->controller().reload();
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->controller().text(), documentText(many));
    }

    void whatIsChangedWhileItIsReadIsAStep()
    {
        m_window->controller().open(m_folder->write("shapes.xml", documentText(many)));
        QVERIFY(QTest::qWaitFor([this] { return m_window->document().count() > 6; }));
        m_window->document().remove(0, 2, "Remove");
        m_window->document().move(0, 5, "Move");
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->document().count(), many - 2);
        m_window->document().undoStack().setIndex(0);
        QCOMPARE(m_window->controller().text(), documentText(many));
    }

    void aLoadingWindowIsNotSaved()
    {
        QString const file = m_folder->write("shapes.xml", documentText(many));
        m_window->controller().open(file);
        QVERIFY(!m_window->controller().save() || !m_window->controller().isLoading());
        QCOMPARE(m_folder->read(file), documentText(many));
    }

    void twoWindowsOnOneFileLoseNothing()
    {
        QString const file = openDocument(2);
        MainWindow other(m_folder->surroundings());
        other.show();
        QVERIFY(Testing::openFile(other, file));
        renameFirst(*m_window);
        QVERIFY(m_window->controller().save());
        QByteArray const saved = m_folder->read(file);
        other.document().remove(1, 1, "Remove");
        QVERIFY(!other.controller().save());
        QCOMPARE(m_folder->prompter.asked.size(), 1);
        QCOMPARE(m_folder->read(file), saved);
        m_folder->prompter.isConfirmed = true;
        QVERIFY(other.controller().save());
        QCOMPARE(m_folder->read(file), other.controller().text());
    }

    void aWindowOfOnePixelIsDrawn()
    {
        openDocument(1);
        for (QSize const size : {QSize(1, 1), QSize(1, 900), QSize(1200, 1), QSize(900, 700)}) {
            m_window->resize(size);
            m_window->canvas().resize(size);
            QCoreApplication::processEvents();
            m_window->grab();
            m_window->canvas().fitPage();
            m_window->canvas().fitBox();
            QVERIFY(m_window->canvas().zoom() >= 0.01);
        }
    }

    void theStyleChangesWhileThingsAreOpen()
    {
        openDocument(3);
        Testing::trigger(*m_window, "rename-outline");
        QPoint const to = beginDrag(*m_window);
        for (StyleName const& name : styleNames()) {
            applyStyle(name.choice);
            QCoreApplication::processEvents();
            m_window->grab();
        }
        QTest::mouseRelease(&m_window->canvas(), Qt::LeftButton, {}, to);
        QCOMPARE(m_window->document().undoStack().undoText(), QString("Move point"));
    }

    void theSystemsStyleComesBack()
    {
        QString const before = QApplication::style()->objectName();
        applyStyle(StyleChoice::HighContrast);
        QVERIFY(QApplication::style()->objectName() != before);
        applyStyle(StyleChoice::System);
        QCOMPARE(QApplication::style()->objectName(), before);
    }

    void manyMessagesAreBounded_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("end");
        QTest::newRow("most") << 1000 << "\na.xml: fault 1000";
        QTest::newRow("one more") << 1001 << "\na.xml: fault 1000\nand 1 more";
    }

    void manyMessagesAreBounded()
    {
        QFETCH(int, count);
        QFETCH(QString, end);
        Diagnostics diagnostics;
        for (int i = 1; i <= count; ++i)
            diagnostics.error("a.xml", QString("fault %1").arg(i));
        MessageBar bar;
        bar.show(diagnostics);
        QVERIFY2(bar.details().endsWith(end), qPrintable(bar.details().right(100)));
    }

    void aDialogGoesWhileItWorks()
    {
        auto dialog = std::make_unique<FitDialog>(m_window.get());
        QString const picture = m_folder->write("a.svg",
            "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'><path d='M0 0"
                + QByteArray("L40 20L3 4").repeated(5000) + "Z'/></svg>");
        dialog->addFiles({picture, picture});
        dialog->show();
        QTest::qWait(200);
        m_window->close();
        dialog.reset();
        m_window.reset();
        QVERIFY(!m_folder->read(picture).isEmpty());
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesWindowEdges)
#include "tst_kpshapes_windowedges.moc"
