// SPDX-License-Identifier: MIT
#include "kpshapestesting.h"
#include "testing.h"
#include "windowtesting.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include <memory>

using Testing::movePoint;
using Testing::openFile;
using Testing::trigger;
using Testing::WindowFolder;

namespace {

/** A document with all that the editor knows nothing of. */
QByteArray foreignText()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
           "<!-- kept -->\r\n"
           "<drawing xmlns:x=\"urn:x\" x:author='somebody'>\r\n"
           "  <shape Name='plate' Width=\"240\" Height=\"160\" x:id=\"1\">\r\n"
           "    <Geometry Closed=\"1\"><MoveTo><X V=\"10\" B=\"0\"/><Y V=\"0\" "
           "B=\"0\"/></MoveTo>\r\n"
           "      <LineTo x:note='kept, too'><X V=\"200\" B=\"0\"/><Y V=\"0\" "
           "B=\"0\"/></LineTo>\r\n"
           "    </Geometry>\r\n"
           "  </shape>\r\n"
           "  <metadata>text &amp; <![CDATA[more]]></metadata>\r\n"
           "</drawing>\r\n<!-- the end -->";
}

} // namespace

/** Opening, saving, reloading and closing documents by what a user does in the window. */
class TestKpshapesDocuments : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;
    std::unique_ptr<MainWindow> m_window;

    Testing::ScriptedPrompter& prompter() { return m_folder->prompter; }
    DocumentController& controller() { return m_window->controller(); }
    QString open(QByteArray const& content = Testing::twoOutlines())
    {
        QString const path = m_folder->write("shapes.xml", content);
        if (!openFile(*m_window, path))
            qFatal("%s is never read", qPrintable(path));
        return path;
    }

    static void drop(MainWindow& window, QList<QUrl> const& urls)
    {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event({50, 50}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    }

    void fillRecent(QMenu& menu, QStringList& chosen)
    {
        auto const choose = [&chosen](QString const& path) { chosen << path; };
        m_folder->recent->fill(menu, choose, choose);
    }

    static QMenu& menuIn(QMenu& menu, QString const& title)
    {
        for (QAction* const action : menu.actions()) {
            if (action->menu() && action->menu()->title() == title)
                return *action->menu();
        }
        qFatal("there is no menu %s", qPrintable(title));
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

    void filesAreOpenedByTheDialog()
    {
        QString const first = m_folder->write("a.xml", Testing::twoOutlines());
        QString const second = m_folder->write("b.xml", foreignText());
        prompter().open = QStringList {first, second};
        QSignalSpy const wanted(m_window.get(), &MainWindow::windowWanted);
        trigger(*m_window, "open");
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(prompter().asked, QStringList("Open"));
        QCOMPARE(controller().path(), first);
        QCOMPARE(m_window->document().count(), 2);
        QCOMPARE(m_window->document().at(1).name, QString("roof"));
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(wanted.at(0).at(0).toString(), second);
        QCOMPARE(m_window->messages().text(), QString());
    }

    void filesAreDroppedIntoTheWindow()
    {
        QString const first = m_folder->write("a b.xml", foreignText());
        QString const second = m_folder->write("b.xml", foreignText());
        QSignalSpy const wanted(m_window.get(), &MainWindow::windowWanted);
        drop(*m_window, {QUrl::fromLocalFile(first), QUrl::fromLocalFile(second)});
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(controller().path(), first);
        QCOMPARE(m_window->document().at(0).name, QString("plate"));
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(wanted.at(0).at(0).toString(), second);
    }

    void whatIsElsewhereIsNotDropped()
    {
        drop(*m_window, {QUrl("https://example.org/a.xml")});
        QCOMPARE(m_window->document().count(), 0);
        QVERIFY2(m_window->messages().text().contains("https://example.org/a.xml"),
            qPrintable(m_window->messages().text()));
    }

    void aNewDocumentGoesIntoAWindowOfItsOwn()
    {
        QSignalSpy const wanted(m_window.get(), &MainWindow::windowWanted);
        trigger(*m_window, "new");
        QCOMPARE(wanted.size(), 0);
        open();
        trigger(*m_window, "new");
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(wanted.at(0).at(0).toString(), QString());
    }

    void undoneStepsGiveTheFileBack_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("plain") << Testing::twoOutlines();
        QTest::newRow("foreign") << foreignText();
        QTest::newRow("foreign with a byte order mark") << "\xef\xbb\xbf" + foreignText();
    }

    void undoneStepsGiveTheFileBack()
    {
        QFETCH(QByteArray, text);
        QString const path = open(text);
        movePoint(*m_window, 7.0);
        Testing::resizeCurrent(*m_window, {480.0, 80.0});
        trigger(*m_window, "new-outline");
        trigger(*m_window, "move-outline-up");
        m_window->document().remove(0, 1, "Remove outline");
        trigger(*m_window, "save");
        QVERIFY(WindowFolder::read(path) != text);
        while (m_window->document().undoStack().canUndo())
            trigger(*m_window, "undo");
        QCOMPARE(controller().text(), text);
        QVERIFY(controller().isModified());
        trigger(*m_window, "save");
        QCOMPARE(WindowFolder::read(path), text);
        QCOMPARE(prompter().asked, QStringList());
    }

    void whatIsNotKnownStays()
    {
        QString const path = open(foreignText());
        movePoint(*m_window, 7.5);
        trigger(*m_window, "save");
        QByteArray expected = foreignText();
        expected.replace("V=\"10\"", "V=\"7.5\"");
        QCOMPARE(WindowFolder::read(path), expected);
    }

    void savingAsTakesTheOtherFile()
    {
        QString const path = open();
        movePoint(*m_window, 7.0);
        prompter().saveAs = m_folder->path("other.xml");
        trigger(*m_window, "save-as");
        QCOMPARE(controller().path(), m_folder->path("other.xml"));
        QVERIFY(!controller().isModified());
        QCOMPARE(WindowFolder::read(path), Testing::twoOutlines());
        QCOMPARE(WindowFolder::read(controller().path()), controller().text());
        QCOMPARE(prompter().asked, QStringList("Save As"));
    }

    void savingWithoutANameAsksForOne()
    {
        controller().openExample();
        QVERIFY(!controller().isModified());
        trigger(*m_window, "save");
        QCOMPARE(prompter().asked, QStringList("Save As"));
        QCOMPARE(controller().path(), QString());
        prompter().saveAs = m_folder->path("mine.xml");
        trigger(*m_window, "save");
        QCOMPARE(controller().path(), m_folder->path("mine.xml"));
        int const count = m_window->document().count();
        MainWindow other(m_folder->surroundings());
        QVERIFY(openFile(other, m_folder->path("mine.xml")));
        QCOMPARE(other.document().count(), count);
        QVERIFY(count > 1);
    }

    void closingAsks_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("hasFile");
        QTest::addColumn<bool>("isClosed");
        QTest::addColumn<bool>("isSaved");
        using Unsaved = Prompter::Unsaved;
        QTest::newRow("save") << int(Unsaved::Save) << true << true << true;
        QTest::newRow("discard") << int(Unsaved::Discard) << true << true << false;
        QTest::newRow("cancel") << int(Unsaved::Cancel) << true << false << false;
        QTest::newRow("save, and no name") << int(Unsaved::Save) << false << false << false;
        QTest::newRow("discard a new one") << int(Unsaved::Discard) << false << true << false;
    }

    void closingAsks()
    {
        QFETCH(int, answer);
        QFETCH(bool, hasFile);
        QFETCH(bool, isSaved);
        QString const path = hasFile ? open() : QString();
        if (hasFile)
            movePoint(*m_window, 7.0);
        else
            trigger(*m_window, "new-outline");
        controller().storeRecovery();
        QCOMPARE(QDir(m_folder->path("recovery")).entryList({"*.recovery"}).size(), 1);
        prompter().unsaved = static_cast<Prompter::Unsaved>(answer);
        trigger(*m_window, "close");
        QTEST(!m_window->isVisible(), "isClosed");
        QCOMPARE(prompter().asked.first(), "save " + controller().title());
        if (hasFile)
            QCOMPARE(WindowFolder::read(path) != Testing::twoOutlines(), isSaved);
        // What was closed on purpose is not offered any more.
        QCOMPARE(QDir(m_folder->path("recovery")).entryList({"*.recovery"}).size(),
            m_window->isVisible() ? 1 : 0);
    }

    void closingWhatIsSavedAsksNothing()
    {
        open();
        trigger(*m_window, "close");
        QVERIFY(!m_window->isVisible());
        QCOMPARE(prompter().asked, QStringList());
    }

    void reloadingAsksBeforeAnythingIsLost()
    {
        open();
        movePoint(*m_window, 7.0);
        trigger(*m_window, "reload");
        QCOMPARE(prompter().asked.size(), 1);
        QVERIFY(!controller().isLoading());
        QCOMPARE(m_window->document().working().list->segs.first()->pt.x.value, 7.0);
        prompter().isConfirmed = true;
        trigger(*m_window, "reload");
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->document().working().list->segs.first()->pt.x.value, 0.0);
        QVERIFY(!controller().isModified());
        trigger(*m_window, "reload");
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(prompter().asked.size(), 2);
    }

    void picturesBecomeDocumentsWithoutAFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("count");
        QTest::newRow("SVG") << "roof.svg"
                             << QByteArray(
                                    "<svg xmlns='http://www.w3.org/2000/svg' width='40' "
                                    "height='20'><path d='M0 0H40V20Z'/><circle r='3'/></svg>")
                             << 2;
    }

    void picturesBecomeDocumentsWithoutAFile()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QString const path = m_folder->write(name, content);
        QVERIFY(openFile(*m_window, path));
        QTEST(m_window->document().count(), "count");
        QCOMPARE(controller().path(), QString());
        QCOMPARE(controller().title(), QString("roof"));
        trigger(*m_window, "save");
        QCOMPARE(prompter().asked, QStringList("Save As"));
        QCOMPARE(WindowFolder::read(path), content);
    }

    void recentFilesAreInTheMenu()
    {
        for (QString const name : {"a.xml", "b.xml", "c&d.xml"})
            QVERIFY(openFile(*m_window, m_folder->write(name, Testing::twoOutlines())));
        QMenu menu;
        QStringList chosen;
        fillRecent(menu, chosen);
        QVERIFY(menu.actions().at(0)->text().startsWith("c&&d.xml"));
        QVERIFY(menu.actions().at(2)->text().startsWith("a.xml"));
        menu.actions().at(2)->trigger();
        QCOMPARE(chosen, QStringList(m_folder->path("a.xml")));
        menuIn(menu, "&Folders").actions().first()->trigger();
        QCOMPARE(chosen.size(), 2);
        QCOMPARE(QFileInfo(chosen.last()), QFileInfo(m_folder->path("")));
    }

    void recentFilesArePinned()
    {
        for (QString const name : {"a.xml", "b.xml", "c.xml", "d.xml"})
            m_folder->recent->add(m_folder->write(name, Testing::twoOutlines()));
        auto const order = [this] {
            QMenu menu;
            QStringList unused;
            fillRecent(menu, unused);
            QString names;
            for (QAction* const action : menuIn(menu, "&Pinned").actions())
                names += action->text().left(1) + (action->isChecked() ? "*" : "");
            return names;
        };
        auto const toggle = [this](int index) {
            QMenu menu;
            QStringList unused;
            fillRecent(menu, unused);
            menuIn(menu, "&Pinned").actions().at(index)->trigger();
        };
        QCOMPARE(order(), QString("dcba"));
        toggle(2);
        QCOMPARE(order(), QString("b*dca"));
        toggle(3);
        QCOMPARE(order(), QString("a*b*dc"));
        toggle(2);
        QCOMPARE(order().count('*'), 3);
        QVERIFY(order().contains("d*"));
        toggle(0);
        QCOMPARE(order().count('*'), 2);
        // Another manager reads what was kept.
        KpRecentFileManager::s_isLoaded = false;
        RecentFiles again;
        QCOMPARE(again.manager().m_files.size(), 4);
    }

    void missingRecentFilesAreRemoved()
    {
        QString const gone = m_folder->write("a.xml", Testing::twoOutlines());
        m_folder->recent->add(gone);
        m_folder->recent->add(m_folder->write("b.xml", Testing::twoOutlines()));
        QVERIFY(QFile::remove(gone));
        QMenu menu;
        QStringList unused;
        fillRecent(menu, unused);
        for (QAction* const action : menu.actions()) {
            if (action->text() == "&Remove Missing Files")
                action->trigger();
        }
        QCOMPARE(m_folder->recent->manager().m_files.size(), 1);
        QVERIFY(m_folder->recent->manager().m_files.at(0).path.endsWith("b.xml"));
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesDocuments)
#include "tst_kpshapes_documents.moc"
