// SPDX-License-Identifier: MIT
#include "kpshapestesting.h"
#include "testing.h"
#include "window/exchangecontroller.h"
#include "windowtesting.h"

#include <csignal>
#include <memory>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using Testing::movePoint;
using Testing::openFile;
using Testing::trigger;
using Testing::WindowFolder;

namespace {

/** While it lives no file can become larger: as on a disk that is full. */
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit const now {bytes, m_before.rlim_max};
        if (setrlimit(RLIMIT_FSIZE, &now) != 0)
            qFatal("the size of files cannot be limited");
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(FullDisk const&) = delete;
    FullDisk& operator=(FullDisk const&) = delete;

private:
    rlimit m_before {};
    void (*m_handler)(int);
};

/** While it lives the process is a user who may do nothing in particular. */
class PlainUser
{
public:
    PlainUser()
        : m_before(geteuid())
    {
        constexpr uid_t nobody = 65534;
        if (m_before == 0 && seteuid(nobody) != 0)
            qFatal("cannot become another user");
    }
    ~PlainUser()
    {
        if (geteuid() != m_before && seteuid(m_before) != 0)
            qFatal("cannot become the user again");
    }
    PlainUser(PlainUser const&) = delete;
    PlainUser& operator=(PlainUser const&) = delete;

private:
    uid_t const m_before;
};

} // namespace

/** Files that cannot be read, written or trusted: it is told, and nothing is lost. */
class TestKpshapesFaultyFiles : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WindowFolder> m_folder;
    std::unique_ptr<MainWindow> m_window;
    QString m_path;

    Testing::ScriptedPrompter& prompter() { return m_folder->prompter; }
    DocumentController& controller() { return m_window->controller(); }
    QString message() { return m_window->messages().text(); }
    double firstX() { return m_window->document().working().list->segs.first()->pt.x.value; }

    void open()
    {
        m_path = m_folder->write("shapes.xml", Testing::twoOutlines());
        QVERIFY(openFile(*m_window, m_path));
        QCOMPARE(m_window->document().count(), 2);
    }

    /** Makes a pipe at which nobody waits: whoever opens it without care never returns. */
    QString pipe() const
    {
        QString const path = m_folder->path("pipe.xml");
        if (mkfifo(QFile::encodeName(path).constData(), 0600) != 0)
            qFatal("cannot make a pipe");
        return path;
    }

    void verifyNothingIsLost()
    {
        QCOMPARE(m_window->document().count(), 2);
        QCOMPARE(firstX(), 7.0);
        QVERIFY(controller().isModified());
        QCOMPARE(controller().path(), m_path);
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

    void whatCannotBeReadIsTold_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text");
        QTest::newRow("not well-formed")
            << "a.xml" << QByteArray("<Shapes>\n<Shape><Geometry><MoveTo/></Geometry>\n</Shapes>")
            << "a.xml:3:";
        QTest::newRow("cut") << "a.xml" << Testing::twoOutlines().left(250) << "a.xml:1:";
        QTest::newRow("empty") << "a.xml" << QByteArray() << "a.xml:1:";
        QTest::newRow("binary") << "a.xml" << QByteArray("\0\xff\x01PNG", 6)
                                << "a.xml: a binary file";
        QTest::newRow("picture that is cut")
            << "a.svg" << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'><path d='M0 0H4'")
            << "a.svg:1:";
        QTest::newRow("picture of nothing")
            << "a.svg" << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'/>") << "a.svg: ";
        QTest::newRow("missing") << "missing.xml" << QByteArray() << "missing.xml: ";
        QTest::newRow("folder") << "." << QByteArray() << "/.: is no file that can be edited";
        QTest::newRow("pipe") << "pipe.xml" << QByteArray()
                              << "pipe.xml: is no file that can be edited";
    }

    void whatCannotBeReadIsTold()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        QString path = m_folder->path(name);
        if (name == "pipe.xml")
            path = pipe();
        else if (name.startsWith("a."))
            m_folder->write(name, content);
        QVERIFY(openFile(*m_window, path));
        QVERIFY2(message().contains(text), qPrintable(message()));
        QCOMPARE(m_window->document().count(), 0);
        QCOMPARE(controller().path(), QString());
        QVERIFY(!controller().isModified());
        // The window goes on.
        open();
        QCOMPARE(controller().title(), QString("shapes.xml"));
    }

    void whatCannotBeReadIsNoRecentFile()
    {
        QVERIFY(openFile(*m_window, m_folder->path("missing.xml")));
        QCOMPARE(m_folder->recent->manager().m_files.size(), 0);
        QCOMPARE(controller().title(), QString("New shapes"));
    }

    void aFullDiskLosesNothing()
    {
        open();
        movePoint(*m_window, 7.0);
        {
            FullDisk const full(64);
            trigger(*m_window, "save");
        }
        QVERIFY2(message().contains("shapes.xml: "), qPrintable(message()));
        verifyNothingIsLost();
        QCOMPARE(WindowFolder::read(m_path), Testing::twoOutlines());
        trigger(*m_window, "save");
        QVERIFY(!controller().isModified());
        QVERIFY(WindowFolder::read(m_path).contains("'7'"));
    }

    void closingOntoAFullDiskKeepsTheWindow()
    {
        open();
        movePoint(*m_window, 7.0);
        prompter().unsaved = Prompter::Unsaved::Save;
        FullDisk const full(64);
        trigger(*m_window, "close");
        QVERIFY(m_window->isVisible());
        verifyNothingIsLost();
    }

    void aFullDiskIsToldWhenWorkIsKept()
    {
        open();
        movePoint(*m_window, 7.0);
        FullDisk const full(64);
        controller().storeRecovery();
        QVERIFY2(message().contains("recovery"), qPrintable(message()));
        verifyNothingIsLost();
    }

    void whatIsReadOnlyStays()
    {
        open();
        movePoint(*m_window, 7.0);
        QString const folder = m_folder->path("");
        QVERIFY(QFile::setPermissions(m_path, QFile::Permissions(0x4444)));
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
        {
            PlainUser const plain;
            QVERIFY(faccessat(AT_FDCWD, qPrintable(m_path), W_OK, AT_EACCESS) != 0);
            trigger(*m_window, "save");
        }
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x7755)));
        QVERIFY2(message().contains("shapes.xml: "), qPrintable(message()));
        verifyNothingIsLost();
        QCOMPARE(WindowFolder::read(m_path), Testing::twoOutlines());
    }

    void whatIsNoFileIsNotWritten_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("full device") << "/dev/full";
        QTest::newRow("device that forgets") << "/dev/null";
        QTest::newRow("folder") << "/tmp";
        QTest::newRow("missing folder") << "/missing/shapes.xml";
        QTest::newRow("pipe") << QString();
    }

    void whatIsNoFileIsNotWritten()
    {
        QFETCH(QString, path);
        open();
        movePoint(*m_window, 7.0);
        if (path.isEmpty())
            path = pipe();
        prompter().saveAs = path;
        trigger(*m_window, "save-as");
        QVERIFY2(message().startsWith(path + ": "), qPrintable(message()));
        verifyNothingIsLost();
        m_window->messages().hide();
        trigger(*m_window, "export-svg");
        QVERIFY2(message().startsWith(path + ": "), qPrintable(message()));
    }

    void whatIsNoFileIsNotImported_data()
    {
        QTest::addColumn<QString>("action");
        for (QString const action : {"import", "import-glyphs", "import-presets"})
            QTest::newRow(qPrintable(action)) << action;
    }

    void whatIsNoFileIsNotImported()
    {
        QFETCH(QString, action);
        prompter().open = QStringList(pipe());
        prompter().answer = "A";
        trigger(*m_window, action);
        QVERIFY2(message().contains("pipe.xml: "), qPrintable(message()));
        QCOMPARE(m_window->document().count(), 0);
    }

    void othersWhoChangeTheFileAreNoticedOnce()
    {
        open();
        movePoint(*m_window, 7.0);
        controller().lookAtFile();
        QCOMPARE(message(), QString());
        m_folder->write("shapes.xml", "<Shapes/>");
        controller().lookAtFile();
        QVERIFY2(message().contains("another program has changed the file"), qPrintable(message()));
        m_window->messages().hide();
        controller().lookAtFile();
        QCOMPARE(message(), QString());

        trigger(*m_window, "save");
        QCOMPARE(prompter().asked.size(), 1);
        QVERIFY(prompter().asked.first().contains("was changed by another program"));
        QCOMPARE(WindowFolder::read(m_path), QByteArray("<Shapes/>"));
        verifyNothingIsLost();

        prompter().isConfirmed = true;
        trigger(*m_window, "save");
        QVERIFY(WindowFolder::read(m_path).contains("'7'"));
        // From here on it is a change of its own again.
        trigger(*m_window, "save");
        QCOMPARE(prompter().asked.size(), 2);
        m_folder->write("shapes.xml", "<Shapes/>");
        controller().lookAtFile();
        QVERIFY(message().contains("another program has changed the file"));
    }

    void theSameBytesAreNoChange()
    {
        open();
        m_folder->write("shapes.xml", Testing::twoOutlines());
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(
            QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
        file.close();
        controller().lookAtFile();
        QCOMPARE(message(), QString());
    }

    void reloadingShowsWhatOthersHaveWritten()
    {
        open();
        QByteArray const other =
            "<Shapes><Shape Name='other' Width='10' Height='10'><Geometry/></Shape></Shapes>";
        m_folder->write("shapes.xml", other);
        trigger(*m_window, "reload");
        QVERIFY(Testing::awaitLoading(*m_window));
        QCOMPARE(m_window->document().count(), 1);
        QCOMPARE(m_window->document().at(0).name, QString("other"));
        QCOMPARE(controller().text(), other);
        controller().lookAtFile();
        QCOMPARE(message(), QString());
    }

    void reloadingWhatIsBrokenKeepsTheDocument_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("not well-formed") << QByteArray("<Shapes>");
        QTest::newRow("picture") << QByteArray(
            "<svg xmlns='http://www.w3.org/2000/svg'><path d='M0 0H4V4Z'/></svg>");
    }

    void reloadingWhatIsBrokenKeepsTheDocument()
    {
        QFETCH(QByteArray, content);
        open();
        m_folder->write("shapes.xml", content);
        trigger(*m_window, "reload");
        QVERIFY(Testing::awaitLoading(*m_window));
        QVERIFY(message().contains("shapes.xml:"));
        QCOMPARE(m_window->document().count(), 2);
        QCOMPARE(controller().path(), m_path);
        QCOMPARE(WindowFolder::read(m_path), content);
    }

    void othersWhoRemoveTheFileAreNoticed()
    {
        open();
        movePoint(*m_window, 7.0);
        QVERIFY(QFile::remove(m_path));
        controller().lookAtFile();
        QVERIFY2(message().contains("another program has removed the file"), qPrintable(message()));
        trigger(*m_window, "save");
        QVERIFY(prompter().asked.first().contains("was removed by another program"));
        QVERIFY(!QFile::exists(m_path));
        prompter().isConfirmed = true;
        trigger(*m_window, "save");
        QCOMPARE(WindowFolder::read(m_path), controller().text());
    }

    void theWindowLooksWhenItIsActivated()
    {
        open();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QWidget other;
        other.show();
        QApplication::setActiveWindow(&other);
        m_folder->write("shapes.xml", "<Shapes/>");
        QCOMPARE(message(), QString());
        QApplication::setActiveWindow(m_window.get());
        QVERIFY2(message().contains("another program has changed the file"), qPrintable(message()));
    }
};

KPSHAPES_TEST_MAIN(TestKpshapesFaultyFiles)
#include "tst_kpshapes_faultyfiles.moc"
