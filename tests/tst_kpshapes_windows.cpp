// SPDX-License-Identifier: MIT
#include "files/recovery.h"
#include "kpshapestesting.h"
#include "testing.h"
#include "window/menus.h"
#include "window/windows.h"
#include "windowtesting.h"

#include <QProcess>

#include <cstdio>
#include <memory>

using Testing::movePoint;
using Testing::openFile;
using Testing::trigger;
using Testing::WindowFolder;

namespace {

/** The program that is killed: it opens a file, or none, moves a point and waits. */
int workUntilKilled(QString const& folder, QString const& file)
{
    Testing::ScriptedPrompter prompter;
    RecentFiles recent;
    MainWindow window(WindowFolder::surroundingsIn(folder, prompter, recent));
    window.show();
    if (file.isEmpty())
        window.controller().openExample();
    else if (!openFile(window, file))
        return 1;
    auto const keptCount = [&folder] {
        return QDir(folder + "/recovery").entryList({"*.recovery"}).size();
    };
    int const before = keptCount();
    movePoint(window, 7.0);
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&keptCount, before] {
        // Its writing is done in one go: what is there is whole.
        if (keptCount() > before) {
            std::puts("kept");
            std::fflush(stdout);
        }
    });
    look.start(20);
    return QApplication::exec();
}

} // namespace

/** All windows of the program: how it starts, and what it offers after it was killed. */
class TestKpshapesWindows : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;

    QStringList kept() const { return QDir(m_folder->path("recovery")).entryList({"*.recovery"}); }

    std::unique_ptr<Windows> started(QStringList const& files = {})
    {
        auto windows = std::make_unique<Windows>(m_folder->surroundings());
        windows->start(files);
        for (MainWindow* const window : windows->all()) {
            if (!Testing::awaitLoading(*window))
                qFatal("a file is never read");
        }
        return windows;
    }

    /** Starts the program that works on a file; returns when its work is kept. */
    std::unique_ptr<QProcess> working(QString const& file) const
    {
        auto process = std::make_unique<QProcess>();
        process->start(
            QCoreApplication::applicationFilePath(), {"--work", m_folder->path(""), file});
        QByteArray output;
        while (!output.contains("kept") && process->waitForReadyRead(30000))
            output += process->readAllStandardOutput();
        if (!output.contains("kept"))
            qFatal("work is never kept: %s", process->readAllStandardError().constData());
        return process;
    }

    /** Has a program work on a file until it is killed. */
    void killWorking(QString const& file) const
    {
        auto const process = working(file);
        process->kill();
        QVERIFY(process->waitForFinished());
        QCOMPARE(process->exitStatus(), QProcess::CrashExit);
    }

    static double firstX(MainWindow& window)
    {
        return window.document().working().list->segs.first()->pt.x.value;
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<WindowFolder>();
        // Not the very first start, unless a test wants it to be.
        m_folder->write("window.ini", "[General]\nstarted=true\n");
    }

    void theFirstStartShowsTheExample()
    {
        QVERIFY(QFile::remove(m_folder->path("window.ini")));
        {
            auto const windows = started();
            QCOMPARE(windows->all().size(), 1);
            MainWindow& window = *windows->all().first();
            QVERIFY(window.document().count() > 1);
            QCOMPARE(window.controller().title(), QString("Example"));
            QVERIFY(!window.isWindowModified());
            QCOMPARE(window.messages().text(), whatToDrag());
        }
        auto const windows = started();
        QCOMPARE(windows->all().size(), 1);
        QCOMPARE(windows->all().first()->document().count(), 0);
        QCOMPARE(windows->all().first()->messages().text(), QString());
        QCOMPARE(m_folder->prompter.asked, QStringList());
    }

    void aDocumentTakesThePlaceOfTheUnchangedExample()
    {
        QString const file = m_folder->write("a.xml", Testing::twoOutlines());
        auto const windows = started();
        MainWindow& window = *windows->all().first();
        window.controller().openExample();
        window.controller().newDocument();
        QCOMPARE(window.document().count(), 0);
        QCOMPARE(window.controller().title(), QString("New shapes"));
        window.controller().openExample();
        window.controller().openHereOrElsewhere(file);
        QVERIFY(Testing::awaitLoading(window));
        QCOMPARE(window.controller().path(), file);
        QCOMPARE(windows->all().size(), 1);
        // What somebody has changed is a document like any other.
        window.controller().openExample();
        window.document().remove(0, 1, "Remove outline");
        window.controller().openHereOrElsewhere(file);
        QCOMPARE(windows->all().size(), 2);
    }

    void everyFileHasAWindow()
    {
        QString const first = m_folder->write("a.xml", Testing::twoOutlines());
        QString const missing = m_folder->path("missing.xml");
        auto const windows = started({first, missing});
        QCOMPARE(windows->all().size(), 2);
        QCOMPARE(windows->all().at(0)->controller().path(), first);
        QCOMPARE(windows->all().at(0)->document().count(), 2);
        QVERIFY(windows->all().at(1)->messages().text().contains(missing));
    }

    void windowsOpenFurtherWindows()
    {
        QString const path = m_folder->write("a.xml", Testing::twoOutlines());
        auto const windows = started({path});
        trigger(*windows->all().first(), "new-window");
        QCOMPARE(windows->all().size(), 2);
        windows->all().first()->controller().openHereOrElsewhere(path);
        QCOMPARE(windows->all().size(), 3);
        QVERIFY(Testing::awaitLoading(*windows->all().at(2)));
        QCOMPARE(windows->all().at(2)->controller().path(), path);
        windows->all().at(1)->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(windows->all().size(), 2);
    }

    void quittingStopsAtAWindowThatIsKept()
    {
        QString const path = m_folder->write("a.xml", Testing::twoOutlines());
        auto const windows = started({path, path, path});
        movePoint(*windows->all().at(1), 7.0);
        m_folder->prompter.unsaved = Prompter::Unsaved::Cancel;
        trigger(*windows->all().at(2), "quit");
        QCOMPARE(m_folder->prompter.asked, QStringList("save a.xml"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(windows->all().size() >= 1);
        m_folder->prompter.unsaved = Prompter::Unsaved::Discard;
        trigger(*windows->all().first(), "quit");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(windows->all().size(), 0);
        QCOMPARE(WindowFolder::read(path), Testing::twoOutlines());
    }

    void workIsKeptByItself()
    {
        QString const path = m_folder->write("a.xml", Testing::twoOutlines());
        auto const windows = started({path});
        QCOMPARE(kept(), QStringList());
        movePoint(*windows->all().first(), 7.0);
        QTRY_COMPARE(kept().size(), 1);
        Diagnostics diagnostics;
        auto const content =
            readRecovery(m_folder->path("recovery/" + kept().first()), diagnostics);
        QVERIFY(content);
        QCOMPARE(content->path, path);
        QCOMPARE(content->text, windows->all().first()->controller().text());
        trigger(*windows->all().first(), "save");
        QCOMPARE(kept(), QStringList());
    }

    void workOfAKilledProgramIsOffered()
    {
        QString const path = m_folder->write("a.xml", Testing::twoOutlines());
        killWorking(path);
        QCOMPARE(WindowFolder::read(path), Testing::twoOutlines());
        QCOMPARE(kept().size(), 1);
        m_folder->prompter.isConfirmed = true;
        auto const windows = started();
        QCOMPARE(m_folder->prompter.asked.size(), 1);
        QVERIFY(m_folder->prompter.asked.first().startsWith(path + " was not saved"));
        QCOMPARE(windows->all().size(), 1);
        MainWindow& window = *windows->all().first();
        QCOMPARE(window.controller().path(), path);
        QCOMPARE(window.document().count(), 2);
        QCOMPARE(firstX(window), 7.0);
        QVERIFY(window.isWindowModified());
        QVERIFY(!window.document().undoStack().canUndo());
        // Still there, and held by this program: it may be killed, too.
        QCOMPARE(kept().size(), 1);
        QVERIFY(listRecoverable(m_folder->path("recovery")).empty());
        trigger(window, "save");
        QCOMPARE(m_folder->prompter.asked.size(), 1);
        QVERIFY(WindowFolder::read(path).contains("'7'"));
        QCOMPARE(kept(), QStringList());
    }

    void whatIsRefusedIsOfferedAgain()
    {
        killWorking(m_folder->write("a.xml", Testing::twoOutlines()));
        for (int start = 1; start < 3; ++start) {
            auto const windows = started();
            QCOMPARE(m_folder->prompter.asked.size(), start);
            QCOMPARE(windows->all().size(), 1);
            QCOMPARE(windows->all().first()->document().count(), 0);
            QCOMPARE(kept().size(), 1);
        }
    }

    void recoveredWorkIsDiscardedWithItsWindow()
    {
        killWorking(m_folder->write("a.xml", Testing::twoOutlines()));
        m_folder->prompter.isConfirmed = true;
        m_folder->prompter.unsaved = Prompter::Unsaved::Discard;
        auto const windows = started();
        QVERIFY(windows->all().first()->close());
        QCOMPARE(m_folder->prompter.asked.last(), QString("save a.xml"));
        QCOMPARE(kept(), QStringList());
    }

    void othersWhoChangedTheFileMeanwhileAreNoticed()
    {
        QString const path = m_folder->write("a.xml", Testing::twoOutlines());
        killWorking(path);
        m_folder->write("a.xml", "<Shapes/>");
        m_folder->prompter.isConfirmed = true;
        auto const windows = started();
        m_folder->prompter.isConfirmed = false;
        trigger(*windows->all().first(), "save");
        QVERIFY(m_folder->prompter.asked.last().contains("was changed by another program"));
        QCOMPARE(WindowFolder::read(path), QByteArray("<Shapes/>"));
        QCOMPARE(kept().size(), 1);
    }

    void workWithoutAFileIsOffered()
    {
        killWorking({});
        m_folder->prompter.isConfirmed = true;
        auto const windows = started();
        QVERIFY(m_folder->prompter.asked.first().startsWith("A new document was not saved"));
        MainWindow& window = *windows->all().first();
        QCOMPARE(window.controller().path(), QString());
        QVERIFY(window.document().count() > 1);
        QCOMPARE(firstX(window), 7.0);
        QVERIFY(window.isWindowModified());
        trigger(window, "save");
        QCOMPARE(m_folder->prompter.asked.last(), QString("Save As"));
    }

    void filesAreOpenedBesideRecoveredWork()
    {
        QString const path = m_folder->write("a.xml", Testing::twoOutlines());
        killWorking(path);
        killWorking({});
        m_folder->prompter.isConfirmed = true;
        auto const windows = started({path});
        QCOMPARE(windows->all().size(), 3);
    }

    void workOfARunningProgramIsItsOwn()
    {
        auto const process = working(m_folder->write("a.xml", Testing::twoOutlines()));
        auto const windows = started();
        QCOMPARE(m_folder->prompter.asked, QStringList());
        QCOMPARE(windows->all().size(), 1);
        process->kill();
        QVERIFY(process->waitForFinished());
    }

    void damagedWorkIsTold()
    {
        QVERIFY(QDir().mkpath(m_folder->path("recovery")));
        m_folder->write("recovery/a.recovery",
            "kpshapes-recovery 1\npath: x\nbytes: 3\ntext-digest: "
            "00000000000000000000000000000000\n\nabc");
        m_folder->prompter.isConfirmed = true;
        auto const windows = started();
        QCOMPARE(windows->all().size(), 1);
        QVERIFY2(windows->all().first()->messages().text().contains("is damaged"),
            qPrintable(windows->all().first()->messages().text()));
        QCOMPARE(windows->all().first()->document().count(), 0);
    }
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QStringList const arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == "--work")
        return workUntilKilled(arguments.at(2), arguments.at(3));
    TestKpshapesWindows test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_kpshapes_windows.moc"
