// SPDX-License-Identifier: MIT
#include "kpshapestesting.h"
#include "windowtesting.h"

#include <QClipboard>
#include <QToolButton>

#include <memory>

using Testing::trigger;
using Testing::WindowFolder;

/** The line below the page: where the mouse is, and the command that does what was done. */
class TestKpshapesStatusLine : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;
    std::unique_ptr<MainWindow> m_window;

    void openDocument()
    {
        QVERIFY(
            Testing::openFile(*m_window, m_folder->write("shapes.xml", Testing::twoOutlines())));
        QCOMPARE(m_window->document().count(), 2);
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<WindowFolder>();
        m_window = std::make_unique<MainWindow>(m_folder->surroundings());
        m_window->show();
    }

    void cleanup()
    {
        m_window.reset();
        m_folder.reset();
    }

    void thePositionIsTold_data()
    {
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QPointF>("position");
        QTest::addColumn<QString>("text");
        QString const degrees = QString::fromUtf8("\u00b0");
        // From the point (0, 50) of the second outline, at 96 pixels an inch.
        QTest::newRow("mm") << "mm" << QPointF(96.0, 50.0)
                            << "x 25.4 mm  y 13.23 mm  distance 25.4 mm  angle 0.0" + degrees;
        QTest::newRow("in") << "in" << QPointF(0.0, 146.0)
                            << "x 0 in  y 1.521 in  distance 1 in  angle 90.0" + degrees;
        QTest::newRow("px") << "px" << QPointF(3.0, 54.0)
                            << "x 3 px  y 54 px  distance 5 px  angle 53.1" + degrees;
        QTest::newRow("pt") << "pt" << QPointF(96.0, 146.0)
                            << "x 72 pt  y 109.5 pt  distance 101.8 pt  angle 45.0" + degrees;
        QTest::newRow("there") << "px" << QPointF(0.0, 50.0) << "x 0 px  y 50 px  distance 0 px";
    }

    void thePositionIsTold()
    {
        QFETCH(QString, unit);
        QFETCH(QPointF, position);
        openDocument();
        trigger(*m_window, "unit-" + unit);
        m_window->document().setCurrent(1);
        m_window->selection().set({{0, HandleKind::Point}});
        m_window->statusLine().setPosition(position);
        QTEST(m_window->statusLine().positionText(), "text");
        m_window->statusLine().clearPosition();
        QCOMPARE(m_window->statusLine().positionText(), QString());
    }

    void thePointerIsFollowed()
    {
        openDocument();
        trigger(*m_window, "unit-px");
        QPoint const at = m_window->canvas().handleRect({1, HandleKind::Point}).center();
        // The screen may be smaller than the window, and keep the cursor in it.
        QMouseEvent move(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&m_window->canvas(), &move);
        QString const text = m_window->statusLine().positionText();
        QVERIFY2(text.startsWith("x 2") && text.contains(" px  y "), qPrintable(text));
        QVERIFY(!text.contains("distance"));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(&m_window->canvas(), &leave);
        QCOMPARE(m_window->statusLine().positionText(), QString());
    }

    void stepsAreCommands()
    {
        openDocument();
        QString const path = m_folder->path("shapes.xml");
        QCOMPARE(m_window->statusLine().command(), "kpgeom info " + path);
        Testing::resizeCurrent(*m_window, {480.0, 80.0});
        QCOMPARE(m_window->statusLine().command(),
            QString("kpgeom resize --from 240x160 --to 480x80 %1 -o %1").arg(path));
        trigger(*m_window, "copy-command");
        QCOMPARE(QGuiApplication::clipboard()->text(), m_window->statusLine().command());
        trigger(*m_window, "undo");
        QCOMPARE(m_window->statusLine().command(),
            QString("kpgeom resize --from 480x80 --to 240x160 %1 -o %1").arg(path));
        Testing::movePoint(*m_window, 3.0);
        QCOMPARE(m_window->statusLine().command(), QString());
        m_window->document().working().appearance.fill.emplace();
        m_window->document().working().appearance.fill->colour.setTintColor(Qt::red, 0, 5);
        m_window->document().commit("Change colour");
        QCOMPARE(m_window->statusLine().command(), QString("kpgeom colour '#FF0000'"));
        trigger(*m_window, "unit-in");
        QCOMPARE(m_window->statusLine().command(), QString("kpgeom units 1 in"));
        trigger(*m_window, "page-3");
        QCOMPARE(m_window->statusLine().command(), QString("kpgeom pages"));
        trigger(*m_window, "save");
        QCOMPARE(m_window->statusLine().command(), "kpgeom check " + path);
    }

    /** To look at another outline is no step, whatever box that has. */
    void anotherOutlineIsNoStep()
    {
        for (QSizeF const& box : {QSizeF(240.0, 160.0), QSizeF(100.0, 50.0)}) {
            trigger(*m_window, "new-outline");
            Testing::resizeCurrent(*m_window, box);
        }
        m_window->statusLine().setCommand("kept");
        m_window->document().setCurrent(0);
        QCOMPARE(m_window->document().working().box, QSizeF(240.0, 160.0));
        QCOMPARE(m_window->statusLine().command(), QString("kept"));
        trigger(*m_window, "new-outline");
        QVERIFY(!m_window->statusLine().command().contains("resize"));
    }

    void removingIsNoResizing()
    {
        openDocument();
        m_window->document().remove(0, 1, "Remove outline");
        QCOMPARE(m_window->document().working().box, QSizeF(100.0, 50.0));
        QCOMPARE(m_window->statusLine().command(), QString());
        trigger(*m_window, "undo");
        QCOMPARE(m_window->statusLine().command(), QString());
    }

    /** What another program has done is none of the steps of this one. */
    void reloadingIsNoStep()
    {
        openDocument();
        QString const path = m_folder->path("shapes.xml");
        QByteArray other = Testing::twoOutlines();
        m_folder->write("shapes.xml", other.replace("Height='160'", "Height='320'"));
        trigger(*m_window, "reload");
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->document().working().box, QSizeF(240.0, 320.0));
        QCOMPARE(m_window->statusLine().command(), "kpgeom info " + path);
        Testing::movePoint(*m_window, 3.0);
        QCOMPARE(m_window->statusLine().command(), QString());
    }

    void theCommandIsCopiedByItsButton()
    {
        openDocument();
        for (QToolButton* const button : m_window->statusLine().findChildren<QToolButton*>())
            button->click();
        QCOMPARE(
            QGuiApplication::clipboard()->text(), "kpgeom info " + m_folder->path("shapes.xml"));
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesStatusLine)
#include "tst_kpshapes_statusline.moc"
