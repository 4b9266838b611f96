#include "savedfile_p.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <functional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QString const leftName = ".kpgeometry-save-0123456789abcdef";

/** A child that does something and then waits to be killed. */
class WaitingChild
{
public:
    explicit WaitingChild(std::function<void()> const& action)
    {
        int ready[2];
        if (pipe(ready) != 0)
            qFatal("there is no pipe");
        m_child = fork();
        if (m_child == 0) {
            action();
            close(ready[1]);
            for (;;)
                pause();
        }
        close(ready[1]);
        char none = 0;
        [[maybe_unused]] ssize_t const end = read(ready[0], &none, 1);
        close(ready[0]);
    }
    ~WaitingChild()
    {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    WaitingChild(WaitingChild const&) = delete;
    WaitingChild& operator=(WaitingChild const&) = delete;

private:
    pid_t m_child = -1;
};

void lockedByName(QByteArray const& name)
{
    flock(open(name.constData(), O_RDWR | O_CREAT, 0600), LOCK_EX);
}

} // namespace

/** A file that takes the place of another one, and what is left of those that do not. */
class TestSavedFile : public QObject
{
    Q_OBJECT

private:
    QScopedPointer<QTemporaryDir> m_folder;

    QString path(QString const& name) const { return m_folder->filePath(name); }
    QByteArray bytes(QString const& name) const { return QFile::encodeName(path(name)); }

    void write(QString const& name, QByteArray const& content) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    QByteArray content(QString const& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QStringList entries() const
    {
        return QDir(m_folder->path())
            .entryList(
                QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

private Q_SLOTS:
    void init() { m_folder.reset(new QTemporaryDir); }

    void presentFileIsReplacedByCommitAlone()
    {
        write("file", "old");
        {
            SavedFile file(path("file"));
            QVERIFY(file.begin());
            QCOMPARE(file.write("dropped"), qint64(7));
            QVERIFY(file.flush());
            QCOMPARE(content("file"), QByteArray("old"));
        }
        QCOMPARE(content("file"), QByteArray("old"));
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QCOMPARE(file.write("new"), qint64(3));
        QVERIFY(file.commit());
        QCOMPARE(content("file"), QByteArray("new"));
        QCOMPARE(entries(), QStringList("file"));
    }

    void whatIsGivenUpIsNotPutInPlace()
    {
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        file.cancel();
        QVERIFY(!file.commit());
        QCOMPARE(entries(), QStringList());
    }

    void failuresTellWhy_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("error");
        QTest::newRow("missing folder") << "missing/file" << ENOENT;
        QTest::newRow("file as a folder") << "present/file" << ENOTDIR;
        QTest::newRow("folder") << "folder" << EISDIR;
        QTest::newRow("links in a circle") << "circle" << ELOOP;
        QTest::newRow("name that is too long") << QString(256, 'x') << ENAMETOOLONG;
    }

    void failuresTellWhy()
    {
        QFETCH(QString, name);
        QFETCH(int, error);
        write("present", "old");
        QVERIFY(QDir(m_folder->path()).mkdir("folder"));
        QVERIFY(QFile::link("circle", path("circle")));
        QStringList const before = entries();
        SavedFile file(path(name));
        QVERIFY(!file.begin());
        QCOMPARE(errno, error);
        QCOMPARE(file.errorString(), qt_error_string(error));
        QVERIFY(!file.commit());
        QCOMPARE(entries(), before);
    }

    /** What took the folder's place is not written to: the folder is the one that was opened. */
    void folderMayBeRenamedMeanwhile()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("one"));
        SavedFile file(path("one/file"));
        QVERIFY(file.begin());
        QCOMPARE(rename(bytes("one").constData(), bytes("two").constData()), 0);
        QVERIFY(QDir(m_folder->path()).mkdir("one"));
        QCOMPARE(file.write("new"), qint64(3));
        QVERIFY(file.commit());
        QCOMPARE(content("two/file"), QByteArray("new"));
        QVERIFY(!QFile::exists(path("one/file")));
    }

    void whatIsLeftIsRemoved()
    {
        write(leftName, "half");
        write(".kpgeometry-save-ffffffffffffffff", "");
        QCOMPARE(chmod(bytes(leftName).constData(), 0400), 0);
        write("file", "old");
        SavedFile::removeStale(path("another"));
        QCOMPARE(entries(), QStringList("file"));
    }

    void whatIsLeftBesideTheTargetOfALinkIsRemoved()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("folder"));
        write("folder/" + leftName, "half");
        QVERIFY(QFile::link("folder/file", path("link")));
        SavedFile::removeStale(path("link"));
        QVERIFY(!QFile::exists(path("folder/" + leftName)));
    }

    void whatIsBeingWrittenStays()
    {
        QByteArray const name = bytes(leftName);
        {
            WaitingChild const writer([&] { lockedByName(name); });
            SavedFile::removeStale(path("file"));
            QCOMPARE(entries(), QStringList(leftName));
        }
        SavedFile::removeStale(path("file"));
        QCOMPARE(entries(), QStringList());
    }

    void otherNamesStay_data()
    {
        QTest::addColumn<QString>("name");
        for (QString const name : {".kpgeometry-save-", ".kpgeometry-save-0123456789abcde",
                 ".kpgeometry-save-0123456789abcdef0", ".kpgeometry-save-0123456789abcdeg",
                 ".kpgeometry-save-0123456789ABCDEF", "kpgeometry-save-0123456789abcdef",
                 ".kpgeometry-save-0123456789abcdef~", "file.AbCdEf", "file~", ".file.swp"})
            QTest::newRow(qPrintable(name)) << name;
    }

    void otherNamesStay()
    {
        QFETCH(QString, name);
        write(name, "kept");
        SavedFile::removeStale(path("file"));
        QCOMPARE(entries(), QStringList(name));
    }

    void whatIsNoFileOfOursStays_data()
    {
        QTest::addColumn<QString>("kind");
        for (char const* const kind :
            {"folder", "link", "pipe", "file of two names", "file of another user"})
            QTest::newRow(kind) << kind;
    }

    void whatIsNoFileOfOursStays()
    {
        QFETCH(QString, kind);
        QByteArray const name = bytes(leftName);
        write("file", "kept");
        if (kind == "folder")
            QCOMPARE(mkdir(name.constData(), 0700), 0);
        else if (kind == "link")
            QVERIFY(QFile::link("file", path(leftName)));
        else if (kind == "pipe")
            QCOMPARE(mkfifo(name.constData(), 0600), 0);
        else if (kind == "file of two names")
            QCOMPARE(link(bytes("file").constData(), name.constData()), 0);
        else
            write(leftName, "half");
        if (kind == "file of another user" && geteuid() != 0) {
            qInfo("only root can become another user: not run");
            return;
        }
        QCOMPARE(chmod(QFile::encodeName(m_folder->path()).constData(), 0777), 0);
        pid_t const child = fork();
        if (child == 0) {
            constexpr uid_t nobody = 65534;
            if (kind == "file of another user" && setuid(nobody) != 0)
                _exit(1);
            SavedFile::removeStale(path("file"));
            _exit(0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        QCOMPARE(status, 0);
        QCOMPARE(entries(), (QStringList {leftName, "file"}));
        QCOMPARE(content("file"), QByteArray("kept"));
    }

    /** A save of root's gives the new file to the owner of the present one. */
    void whatRootHasGivenAwayIsRemovedByRoot()
    {
        constexpr uid_t nobody = 65534;
        write(leftName, "half");
        if (chown(bytes(leftName).constData(), nobody, gid_t(-1)) != 0) {
            qInfo("only root can give a file away: not run");
            return;
        }
        SavedFile::removeStale(path("file"));
        QCOMPARE(entries(), QStringList());
    }

    void missingFolderHasNothingStale()
    {
        SavedFile::removeStale(path("missing/file"));
        QCOMPARE(entries(), QStringList());
    }

    void temporaryFileHasNoName()
    {
        qputenv("TMPDIR", QFile::encodeName(m_folder->path()));
        QFile file;
        QVERIFY(SavedFile::openTemporary(file));
        QCOMPARE(file.write("text"), qint64(4));
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), QByteArray("text"));
        QCOMPARE(entries(), QStringList());
        qunsetenv("TMPDIR");
    }
};

QTEST_GUILESS_MAIN(TestSavedFile)

#include "tst_savedfile.moc"
