// SPDX-License-Identifier: MIT
#include "savedfile_p.h"

#include "systemcalls.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <functional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
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

/** Bytes of which a name with these digits is made. */
QByteArray randomFor(QByteArray const& digits)
{
    QByteArray bytes;
    for (int i = 0; i < digits.size(); ++i)
        bytes += char(digits.mid(i, 1).toInt(nullptr, 16) + 16 * i);
    return bytes;
}

mode_t modeOf(QByteArray const& name)
{
    struct stat status = {};
    return stat(name.constData(), &status) == 0 ? status.st_mode & 07777U : 0;
}

/** What an action tells by its exit code in a process of its own. */
int exitCodeOf(std::function<int()> const& action)
{
    pid_t const child = fork();
    if (child == 0)
        _exit(action());
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

QStringList openDescriptors()
{
    return QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
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

    /** link1 to `target`, link2 to link1 and so on. */
    void makeLinks(QString const& target, int count) const
    {
        QVERIFY(QFile::link(target, path("link1")));
        for (int i = 2; i <= count; ++i)
            QVERIFY(QFile::link(QString("link%1").arg(i - 1), path(QString("link%1").arg(i))));
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

    static void addNamelessAndNamed()
    {
        QTest::addColumn<QByteArray>("making"); // the call that takes the name
        QTest::newRow("nameless") << QByteArray("linkat");
        QTest::newRow("named") << QByteArray("openat new");
    }

    static void addUnsupported(QVector<int> const& errors)
    {
        QTest::addColumn<int>("error");
        for (int const error : errors)
            QTest::newRow(qPrintable(qt_error_string(error))) << error;
    }

private Q_SLOTS:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        SystemCalls::reset();
    }
    void cleanup() { SystemCalls::reset(); }

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

    void nameHasRandomDigits()
    {
        SystemCalls::fail("openat nameless", EOPNOTSUPP);
        SystemCalls::setRandom({randomFor("0123456789abcdef")});
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QVERIFY(file.isNamed());
        QCOMPARE(entries(), QStringList(".kpgeometry-save-0123456789abcdef"));
        file.cancel();
        QVERIFY(!file.isNamed());
        QVERIFY(!file.isOpen());
        QCOMPARE(entries(), QStringList());
    }

    void nameWithoutRandomnessHasTheSameForm_data()
    {
        QTest::addColumn<QByteArray>("random");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("half of it") << QByteArray(8, '\0');
    }

    void nameWithoutRandomnessHasTheSameForm()
    {
        QFETCH(QByteArray, random);
        if (random.isEmpty())
            SystemCalls::fail("getrandom", ENOSYS);
        else
            SystemCalls::setRandom({random});
        SystemCalls::fail("openat nameless", EOPNOTSUPP);
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QString const name = entries().join(' ');
        QVERIFY2(QRegularExpression("\\A\\.kpgeometry-save-[0-9a-f]{16}\\z").match(name).hasMatch(),
            qPrintable(name));
        QVERIFY(!name.endsWith("0000000000000000"));
        QVERIFY(file.commit());
        QCOMPARE(entries(), QStringList("file"));
    }

    void fileHasANameOnlyWhileItTakesItsPlace()
    {
        write("file", "old");
        SystemCalls::setRandom({randomFor("0123456789abcdef")});
        QStringList meanwhile;
        SystemCalls::doBefore("renameat", [&] {
            // It is locked.
            SavedFile::removeStale(path("file"));
            meanwhile = entries();
        });
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QCOMPARE(file.write("new"), qint64(3));
        QVERIFY(!file.isNamed());
        QCOMPARE(entries(), QStringList("file"));
        QVERIFY(file.commit());
        QCOMPARE(meanwhile, (QStringList {leftName, "file"}));
        QVERIFY(!file.isNamed());
        QVERIFY(!file.isOpen());
        QCOMPARE(entries(), QStringList("file"));
        QCOMPARE(content("file"), QByteArray("new"));
    }

    void namedFileIsNotTakenForStale()
    {
        SystemCalls::fail("openat nameless", EOPNOTSUPP);
        SystemCalls::setRandom({randomFor("0123456789abcdef")});
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        SavedFile::removeStale(path("file"));
        QCOMPARE(entries(), QStringList(leftName));
    }

    void takenNamesAreLeftAlone_data() { addNamelessAndNamed(); }

    void takenNamesAreLeftAlone()
    {
        QFETCH(QByteArray, making);
        if (making == "openat new")
            SystemCalls::fail("openat nameless", EOPNOTSUPP);
        write(leftName, "another");
        QByteArray const taken = randomFor("0123456789abcdef");
        SystemCalls::setRandom({taken, taken, randomFor("fedcba9876543210")});
        QStringList meanwhile;
        SystemCalls::doBefore("renameat", [&] { meanwhile = entries(); });
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QCOMPARE(file.write("new"), qint64(3));
        QVERIFY(file.commit());
        QCOMPARE(meanwhile, (QStringList {leftName, ".kpgeometry-save-fedcba9876543210"}));
        QCOMPARE(SystemCalls::count(making), 3);
        QCOMPARE(entries(), (QStringList {leftName, "file"}));
        QCOMPARE(content("file"), QByteArray("new"));
        QCOMPARE(content(leftName), QByteArray("another"));
    }

    void hundredTakenNamesAreAFailure_data() { addNamelessAndNamed(); }

    void hundredTakenNamesAreAFailure()
    {
        QFETCH(QByteArray, making);
        if (making == "openat new")
            SystemCalls::fail("openat nameless", EOPNOTSUPP);
        write(leftName, "another");
        SystemCalls::setRandom({randomFor("0123456789abcdef")});
        SavedFile file(path("file"));
        QCOMPARE(file.begin(), making != "openat new");
        QVERIFY(!file.commit());
        QCOMPARE(file.errorString(), qt_error_string(EEXIST));
        QCOMPARE(SystemCalls::count(making), 100);
        QCOMPARE(entries(), QStringList(leftName));
        QCOMPARE(content(leftName), QByteArray("another"));
    }

    void interruptedCallsAreMadeAgain_data()
    {
        QTest::addColumn<QByteArray>("call");
        for (char const* const call :
            {"open", "openat nameless", "openat new", "flock", "fdatasync"})
            QTest::newRow(call) << QByteArray(call);
    }

    void interruptedCallsAreMadeAgain()
    {
        QFETCH(QByteArray, call);
        if (call == "openat new" || call == "flock")
            SystemCalls::fail("openat nameless", EOPNOTSUPP);
        SystemCalls::fail(call, EINTR, 3);
        int const before = SystemCalls::count(call);
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QCOMPARE(file.write("new"), qint64(3));
        QVERIFY(file.commit());
        QCOMPARE(SystemCalls::count(call) - before, 4);
        QCOMPARE(content("file"), QByteArray("new"));
    }

    void failingCallsLeaveAllAsItWas_data()
    {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<int>("error");
        QTest::addColumn<bool>("isNamed");
        QTest::addColumn<bool>("isBegun");
        QTest::newRow("folder") << QByteArray("open") << EMFILE << false << false;
        QTest::newRow("nameless file") << QByteArray("openat nameless") << EIO << false << false;
        QTest::newRow("permission in the folder")
            << QByteArray("openat nameless") << EACCES << false << false;
        QTest::newRow("named file") << QByteArray("openat new") << ENOSPC << true << false;
        QTest::newRow("permission to write") << QByteArray("access") << EACCES << false << false;
        QTest::newRow("permissions") << QByteArray("fchmod") << EPERM << false << false;
        QTest::newRow("permissions of a named file")
            << QByteArray("fchmod") << EPERM << true << false;
        QTest::newRow("disk") << QByteArray("fdatasync") << EIO << false << true;
        QTest::newRow("disk of a named file") << QByteArray("fdatasync") << EIO << true << true;
        QTest::newRow("name") << QByteArray("linkat") << ENOSPC << false << true;
        QTest::newRow("place") << QByteArray("renameat") << EBUSY << false << true;
        QTest::newRow("place of a named file") << QByteArray("renameat") << EBUSY << true << true;
    }

    void failingCallsLeaveAllAsItWas()
    {
        QFETCH(QByteArray, call);
        QFETCH(int, error);
        QFETCH(bool, isNamed);
        QFETCH(bool, isBegun);
        write("file", "old");
        QCOMPARE(chmod(bytes("file").constData(), 0640), 0);
        QStringList const before = openDescriptors();
        if (isNamed)
            SystemCalls::fail("openat nameless", EOPNOTSUPP);
        SystemCalls::fail(call, error);
        SavedFile file(path("file"));
        QCOMPARE(file.begin(), isBegun);
        if (isBegun) {
            QCOMPARE(file.write("new"), qint64(3));
            QVERIFY(!file.commit());
        }
        QCOMPARE(errno, error);
        QCOMPARE(file.errorString(), qt_error_string(error));
        QVERIFY(!file.isOpen());
        QVERIFY(!file.isNamed());
        QCOMPARE(openDescriptors(), before);
        QCOMPARE(entries(), QStringList("file"));
        QCOMPARE(content("file"), QByteArray("old"));
        QCOMPARE(modeOf(bytes("file")), mode_t(0640));
        QCOMPARE(SystemCalls::count(call), call == "open" ? SystemCalls::count("open") : 1);
    }

    void reasonOutlastsWhatFailsAfterIt()
    {
        SystemCalls::fail("openat nameless", EOPNOTSUPP);
        SystemCalls::fail("fdatasync", EIO);
        SystemCalls::doBefore("fdatasync", [&] {
            for (QString const& name : entries())
                QVERIFY(QFile::remove(path(name)));
        });
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QVERIFY(!file.commit());
        QCOMPARE(errno, EIO);
        QCOMPARE(file.errorString(), qt_error_string(EIO));
    }

    void firstDescriptorIsAsGoodAsOthers_data()
    {
        QTest::addColumn<QByteArray>("call"); // that gives it
        QTest::addColumn<int>("left"); // in errno from before
        QTest::addColumn<bool>("isNamed");
        QTest::newRow("folder") << QByteArray("open") << 0 << false;
        QTest::newRow("nameless file") << QByteArray("openat nameless") << 0 << false;
        QTest::newRow("nameless file where there are such")
            << QByteArray("openat nameless") << EOPNOTSUPP << false;
        QTest::newRow("nameless file in a writable folder")
            << QByteArray("openat nameless") << EACCES << false;
        QTest::newRow("named file") << QByteArray("openat new") << 0 << true;
        QTest::newRow("named file whose name is free")
            << QByteArray("openat new") << EEXIST << true;
    }

    void firstDescriptorIsAsGoodAsOthers()
    {
        QFETCH(QByteArray, call);
        QFETCH(int, left);
        QFETCH(bool, isNamed);
        int const code = exitCodeOf([&] {
            if (isNamed)
                SystemCalls::fail("openat nameless", EOPNOTSUPP);
            SystemCalls::doBefore(call, [left] {
                close(0);
                errno = left;
            });
            QStringList meanwhile;
            SystemCalls::doBefore("renameat", [&] {
                SavedFile::removeStale(path("file"));
                meanwhile = entries();
            });
            SavedFile file(path("file"));
            if (!file.begin(SavedFile::Unwritable::IsBypassed) || file.isNamed() != isNamed)
                return 1;
            if (SystemCalls::count("openat new") != (isNamed ? 1 : 0))
                return 2;
            if (file.write("new") != 3 || !file.commit())
                return 3;
            if (fcntl(0, F_GETFD) >= 0)
                return 4;
            return meanwhile.size() == 1 ? 0 : 5;
        });
        QCOMPARE(code, 0);
        QCOMPARE(entries(), QStringList("file"));
        QCOMPARE(content("file"), QByteArray("new"));
    }

    void staleFileIsRemovedByTheFirstDescriptor()
    {
        write(leftName, "half");
        int const code = exitCodeOf([&] {
            SystemCalls::doBefore("openat", [] { close(0); });
            SavedFile::removeStale(path("file"));
            return fcntl(0, F_GETFD) < 0 ? 0 : 1;
        });
        QCOMPARE(code, 0);
        QCOMPARE(entries(), QStringList());
    }

    void folderNeedNotBeReadable()
    {
        QByteArray const folder = bytes("folder");
        QCOMPARE(mkdir(folder.constData(), 0700), 0);
        QCOMPARE(chmod(folder.constData(), 0333), 0);
        QCOMPARE(chmod(QFile::encodeName(m_folder->path()).constData(), 0755), 0);
        int const code = exitCodeOf([&] {
            constexpr uid_t nobody = 65534;
            if (geteuid() == 0 && setuid(nobody) != 0)
                return 1;
            SavedFile file(path("folder/file"));
            return file.begin() && file.write("new") == 3 && file.commit() ? 0 : 2;
        });
        QCOMPARE(chmod(folder.constData(), 0700), 0);
        QCOMPARE(code, 0);
        QCOMPARE(content("folder/file"), QByteArray("new"));
    }

    void manyLinksAreFollowed_data()
    {
        QTest::addColumn<int>("links");
        QTest::addColumn<bool>("areFollowed");
        QTest::newRow("128") << 128 << true;
        QTest::newRow("129") << 129 << false;
    }

    void manyLinksAreFollowed()
    {
        QFETCH(int, links);
        QFETCH(bool, areFollowed);
        QVERIFY(QDir(m_folder->path()).mkdir("folder"));
        makeLinks("folder/file", links);
        write("folder/" + leftName, "half");
        SavedFile::removeStale(path(QString("link%1").arg(links)));
        QCOMPARE(QFile::exists(path("folder/" + leftName)), !areFollowed);
    }

    void whatAFileSystemCannotTellIsNoFailure_data()
    {
        addUnsupported({EINVAL, ENOSYS, EOPNOTSUPP});
    }

    void whatAFileSystemCannotTellIsNoFailure()
    {
        QFETCH(int, error);
        SystemCalls::fail("fdatasync", error);
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QVERIFY(file.commit());
        QCOMPARE(entries(), QStringList("file"));
    }

    void fileHasANameWhereItHasToHaveOne_data() { addUnsupported({EINVAL, EISDIR, EOPNOTSUPP}); }

    void fileHasANameWhereItHasToHaveOne()
    {
        QFETCH(int, error);
        SystemCalls::fail("openat nameless", error);
        write("file", "old");
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QVERIFY(file.isNamed());
        QCOMPARE(entries().size(), 2);
        QCOMPARE(file.write("new"), qint64(3));
        QVERIFY(file.commit());
        QCOMPARE(SystemCalls::count("linkat"), 0);
        QCOMPARE(entries(), QStringList("file"));
        QCOMPARE(content("file"), QByteArray("new"));
    }

    void fileHasANameWhereItCouldGetNoneLater()
    {
        SystemCalls::fail("access", ENOENT);
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QVERIFY(file.isNamed());
        QCOMPARE(SystemCalls::count("openat nameless"), 0);
        QVERIFY(file.commit());
        QCOMPARE(entries(), QStringList("file"));
    }

    void fileThatWasTakenForStaleIsMadeAnew()
    {
        SystemCalls::fail("openat nameless", EOPNOTSUPP);
        QStringList removed;
        SystemCalls::doBefore("flock", [&] {
            removed = entries();
            QCOMPARE(QFile::remove(path(removed.value(0))), true);
        });
        QStringList const before = openDescriptors();
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QCOMPARE(removed.size(), 1);
        QCOMPARE(entries().size(), 1);
        QVERIFY(entries() != removed);
        QVERIFY(file.commit());
        QCOMPARE(entries(), QStringList("file"));
        QCOMPARE(openDescriptors(), before);
    }

    void nameThatGoesToAnotherFileMeanwhileStays()
    {
        write(leftName, "half");
        write("another", "kept");
        SystemCalls::doBefore("flock", [&] {
            QCOMPARE(rename(bytes("another").constData(), bytes(leftName).constData()), 0);
        });
        SavedFile::removeStale(path("file"));
        QCOMPARE(entries(), QStringList(leftName));
        QCOMPARE(content(leftName), QByteArray("kept"));
    }

    void nothingStaysOpen()
    {
        write(leftName, "half");
        write("file", "old");
        QStringList const before = openDescriptors();
        SavedFile::removeStale(path("file"));
        QCOMPARE(openDescriptors(), before);
        {
            SavedFile file(path("file"));
            QVERIFY(file.begin());
            QVERIFY(file.commit());
            QCOMPARE(openDescriptors(), before);
            SavedFile dropped(path("file"));
            QVERIFY(dropped.begin());
        }
        QCOMPARE(openDescriptors(), before);
    }

    void nothingOfOthersIsClosed()
    {
        QStringList const before = openDescriptors();
        {
            SavedFile const unused(path("file"));
        }
        QCOMPARE(openDescriptors(), before);
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        file.cancel();
        // It takes the number of the folder's.
        QFile other(path("other"));
        QVERIFY(other.open(QIODevice::WriteOnly));
        QStringList const meanwhile = openDescriptors();
        file.cancel();
        QCOMPARE(openDescriptors(), meanwhile);
    }

    void temporaryFileMayHaveTheFirstDescriptor_data()
    {
        QTest::addColumn<QByteArray>("call"); // that gives it
        QTest::newRow("folder") << QByteArray("open");
        QTest::newRow("file") << QByteArray("openat nameless");
    }

    void temporaryFileMayHaveTheFirstDescriptor()
    {
        QFETCH(QByteArray, call);
        QByteArray const folder = QFile::encodeName(m_folder->path());
        int const code = exitCodeOf([&] {
            qputenv("TMPDIR", folder);
            SystemCalls::doBefore(call, [] { close(0); });
            QFile file;
            return SavedFile::openTemporary(file) && file.write("text") == 4 ? 0 : 1;
        });
        QCOMPARE(code, 0);
    }

    void whatIsOpenIsNotInherited_data() { addNamelessAndNamed(); }

    void whatIsOpenIsNotInherited()
    {
        QFETCH(QByteArray, making);
        write(leftName, "half");
        if (making == "openat new")
            SystemCalls::fail("openat nameless", EOPNOTSUPP);
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        SavedFile::removeStale(path("file"));
        int checked = 0;
        for (SystemCalls::Call const& call : SystemCalls::made()) {
            if (call.name.startsWith("open")) {
                QVERIFY2(call.flags & O_CLOEXEC, call.name + ' ' + call.path);
                ++checked;
            }
        }
        QVERIFY(checked > 3);
    }

    void newFileHasUsualPermissions_data() { addNamelessAndNamed(); }

    void newFileHasUsualPermissions()
    {
        QFETCH(QByteArray, making);
        if (making == "openat new")
            SystemCalls::fail("openat nameless", EOPNOTSUPP);
        mode_t const usual = umask(0026);
        SavedFile file(path("file"));
        bool const isBegun = file.begin();
        umask(usual);
        QVERIFY(isBegun);
        QVERIFY(file.commit());
        QCOMPARE(modeOf(bytes("file")), mode_t(0640));
    }

    void permissionsStay_data()
    {
        QTest::addColumn<uint>("present");
        QTest::addColumn<uint>("expected");
        for (uint const mode : {0600U, 0644U, 0640U, 0666U, 0755U, 0707U})
            QTest::addRow("%o", mode) << mode << mode;
        // Those of what was checked are no business of what is new.
        QTest::newRow("set user") << 04755U << 0755U;
        QTest::newRow("sticky") << 01644U << 0644U;
    }

    void permissionsStay()
    {
        QFETCH(uint, present);
        QFETCH(uint, expected);
        write("file", "old");
        QCOMPARE(chmod(bytes("file").constData(), present), 0);
        mode_t const usual = umask(0077);
        SavedFile file(path("file"));
        bool const isBegun = file.begin();
        umask(usual);
        QVERIFY(isBegun);
        QVERIFY(file.commit());
        QCOMPARE(modeOf(bytes("file")), mode_t(expected));
        // Until then nobody else may read it.
        for (SystemCalls::Call const& call : SystemCalls::made()) {
            if (call.name == "openat nameless")
                QCOMPARE(call.mode, 0600U);
        }
    }

    void permissionsThatAreRightAreNotSet()
    {
        write("file", "old");
        QCOMPARE(chmod(bytes("file").constData(), 0600), 0);
        SystemCalls::fail("fchmod", EPERM);
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        QCOMPARE(SystemCalls::count("fchmod"), 0);
    }

    void unwritableFolderIsBypassedOnDemand()
    {
        write("file", "old");
        QVERIFY(QFile::link("file", path("link")));
        SystemCalls::fail("openat nameless", EACCES);
        SavedFile file(path("link"));
        QVERIFY(file.begin(SavedFile::Unwritable::IsBypassed));
        QVERIFY(!file.isNamed());
        QCOMPARE(content("file"), QByteArray());
        QCOMPARE(file.fileName(), path("file"));
        QCOMPARE(file.write("new"), qint64(3));
        QVERIFY(file.commit());
        QVERIFY(!file.isOpen());
        QCOMPARE(entries(), (QStringList {"file", "link"}));
        QVERIFY(QFileInfo(path("link")).isSymLink());
        QCOMPARE(content("file"), QByteArray("new"));
        QCOMPARE(SystemCalls::count("linkat"), 0);
        QCOMPARE(SystemCalls::count("renameat"), 0);
    }

    void otherFailuresAreNotBypassed()
    {
        write("file", "old");
        SystemCalls::fail("openat nameless", EIO);
        SavedFile file(path("file"));
        QVERIFY(!file.begin(SavedFile::Unwritable::IsBypassed));
        QCOMPARE(errno, EIO);
        QCOMPARE(content("file"), QByteArray("old"));
    }

    void fileThatCannotBeWrittenEitherIsAFailure()
    {
        SystemCalls::fail("openat nameless", EACCES);
        SystemCalls::doBefore("openat nameless", [] { SystemCalls::fail("open", EACCES); });
        SavedFile file(path("file"));
        QVERIFY(!file.begin(SavedFile::Unwritable::IsBypassed));
        QCOMPARE(errno, EACCES);
        QCOMPARE(file.errorString(), qt_error_string(EACCES));
        QVERIFY(!file.commit());
        QCOMPARE(entries(), QStringList());
    }

    void failedWriteIsAFailureOfTheCommit()
    {
        write("file", "old");
        SavedFile file(path("file"));
        QVERIFY(file.begin());
        rlimit usual = {};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &usual), 0);
        rlimit const none {0, usual.rlim_max};
        auto const handler = std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &none), 0);
        QCOMPARE(file.write(QByteArray(100000, 'x')), qint64(-1));
        setrlimit(RLIMIT_FSIZE, &usual);
        std::signal(SIGXFSZ, handler);
        QString const reason = file.errorString();
        errno = 0;
        QVERIFY(!file.commit());
        QCOMPARE(file.errorString(), reason);
        QCOMPARE(entries(), QStringList("file"));
        QCOMPARE(content("file"), QByteArray("old"));
    }

    void folderOfANameAloneIsTheCurrentOne()
    {
        QString const usual = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder->path()));
        write(leftName, "half");
        SavedFile::removeStale("file");
        QStringList const left = entries();
        SavedFile file("file");
        bool const isSaved = file.begin() && file.commit();
        QVERIFY(QDir::setCurrent(usual));
        QCOMPARE(left, QStringList());
        QVERIFY(isSaved);
        QCOMPARE(entries(), QStringList("file"));
    }

    void folderOfANameBehindASlashIsTheRoot()
    {
        SystemCalls::fail("openat nameless", EIO);
        SavedFile file("/kpgeometry-test");
        QVERIFY(!file.begin());
        QByteArrayList opened;
        for (SystemCalls::Call const& call : SystemCalls::made()) {
            if (call.name == "open")
                opened << call.path;
        }
        QVERIFY2(opened.contains("/"), opened.join(' '));
    }

    void savesThroughManyLinks_data()
    {
        QTest::addColumn<int>("links");
        QTest::addColumn<int>("error");
        QTest::newRow("128") << 128 << 0;
        QTest::newRow("129") << 129 << ELOOP;
        QTest::newRow("200") << 200 << ELOOP;
    }

    void savesThroughManyLinks()
    {
        QFETCH(int, links);
        QFETCH(int, error);
        write("file", "old");
        makeLinks("file", links);
        QStringList const before = entries();
        SavedFile file(path(QString("link%1").arg(links)));
        QCOMPARE(file.begin(), error == 0);
        QCOMPARE(error == 0 ? 0 : errno, error);
        if (error == 0)
            QCOMPARE(file.write("new"), qint64(3));
        QCOMPARE(file.commit(), error == 0);
        QCOMPARE(content("file"), QByteArray(error == 0 ? "new" : "old"));
        QCOMPARE(entries(), before);
        for (int i = 1; i <= links; ++i)
            QVERIFY(QFileInfo(path(QString("link%1").arg(i))).isSymLink());
    }

    void linksAreFollowedToTheFile()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("folder"));
        QVERIFY(QFile::link("folder/file", path("one")));
        QVERIFY(QFile::link(path("one"), path("two")));
        SavedFile file(path("two"));
        QVERIFY(file.begin());
        QCOMPARE(file.write("new"), qint64(3));
        QVERIFY(file.commit());
        QCOMPARE(content("folder/file"), QByteArray("new"));
        QCOMPARE(QFile::symLinkTarget(path("two")), path("one"));
        QCOMPARE(QFile::symLinkTarget(path("one")), path("folder/file"));
    }

    void temporaryFileHasNoNameWhereItHasToHaveOne()
    {
        qputenv("TMPDIR", QFile::encodeName(m_folder->path()));
        write(leftName, "half");
        SystemCalls::fail("openat nameless", EOPNOTSUPP);
        QStringList const before = openDescriptors();
        QFile file;
        bool const isOpen = SavedFile::openTemporary(file);
        qunsetenv("TMPDIR");
        QVERIFY(isOpen);
        // What others have left goes as well.
        QCOMPARE(entries(), QStringList());
        struct stat status = {};
        QCOMPARE(fstat(file.handle(), &status), 0);
        QCOMPARE(status.st_mode & 0777U, 0600U);
        QCOMPARE(status.st_nlink, nlink_t(0));
        QCOMPARE(openDescriptors().size(), before.size() + 1);
        file.close();
        QCOMPARE(openDescriptors(), before);
    }

    void temporaryFileThatCannotBeIsAFailure_data()
    {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<int>("error");
        QTest::newRow("folder") << QByteArray("open") << ENOENT;
        QTest::newRow("file") << QByteArray("openat nameless") << ENOSPC;
    }

    void temporaryFileThatCannotBeIsAFailure()
    {
        QFETCH(QByteArray, call);
        QFETCH(int, error);
        QStringList const before = openDescriptors();
        SystemCalls::fail(call, error);
        QFile file;
        QVERIFY(!SavedFile::openTemporary(file));
        QCOMPARE(errno, error);
        QVERIFY(!file.isOpen());
        QCOMPARE(openDescriptors(), before);
    }
};

QTEST_GUILESS_MAIN(TestSavedFile)

#include "tst_savedfile.moc"
