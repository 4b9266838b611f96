// SPDX-License-Identifier: MIT
#include "recentfilestesting.h"
#include "testing.h"

#include <QDomDocument>

#include <cerrno>
#include <csignal>
#include <limits>
#include <type_traits>
#include <vector>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

// With a sanitizer a process needs more system calls than the filter lets through.
#if !defined(TESTING_SANITIZED) && (defined(__x86_64__) || defined(__aarch64__))
#define WITH_SYSTEM_CALL_FILTER
#endif

using namespace RecentFilesTesting;

namespace {

/**
 * The lists once more, as plainly as they are described: one entry at a time, each operation on
 * its own, nothing shared between files and folders.
 */
class Model
{
public:
    struct Entry
    {
        bool pinned;
        unsigned int type;
        QString path;
        QString team;
    };
    using List = std::vector<Entry>;

    bool modified = true;
    int maxCount = 60;
    QString fileFolder;
    List files;
    List folders;
    // How often something happened that not every operation brings about.
    int cancelled = 0;
    int removedDuplicates = 0;
    int trimmed = 0;
    int refusedPins = 0;

    void open(QString const& path, unsigned int type, QString const& team)
    {
        fileFolder = QFileInfo(path).path();
        if (type != 0) {
            addFile(path, type, team);
            return;
        }
        unsigned int code = 1;
        if (path.indexOf("#$#/Dropbox/") != -1)
            code = 5;
        if (path.indexOf("#$#/GoogleDrive/") != -1)
            code = 4;
        if (path.indexOf("/Personal/") != -1)
            code = 2;
        if (path.indexOf("/Team/") != -1)
            code = 3;
        addFile(path, code, "");
    }

    void addFile(QString const& path, unsigned int type, QString const& team)
    {
        QString const key = path.split("#$#").last();
        for (int i = int(files.size()) - 1; i >= 0; --i) {
            Entry const entry = files[size_t(i)];
            if (entry.type != type)
                continue;
            if (key.isEmpty() ? entry.path != path : entry.path.indexOf(key) == -1)
                continue;
            if (entry.pinned) {
                ++cancelled;
                return;
            }
            files.erase(files.begin() + i);
            ++removedDuplicates;
            if (key.isEmpty())
                break;
        }
        files.insert(files.begin() + firstUnpinned(files), Entry {false, type, path, team});
        trim(files);
        addFolder(path, type, team);
        modified = true;
    }

    void addFolder(QString const& path, unsigned int type, QString const& team)
    {
        if (type != 1)
            return;
        QString const folder = QFileInfo(path).path();
        for (size_t i = 0; i < folders.size(); ++i) {
            if (folders[i].path == folder && folders[i].type == 1) {
                if (folders[i].pinned)
                    return;
                folders.erase(folders.begin() + int(i));
                break;
            }
        }
        folders.insert(folders.begin() + firstUnpinned(folders), Entry {false, 1, folder, team});
        trim(folders);
        modified = true;
    }

    void removePath(QString const& path)
    {
        for (size_t i = 0; i < files.size(); ++i) {
            if (files[i].path == path) {
                files.erase(files.begin() + int(i));
                return;
            }
        }
    }

    static void removeRow(List& list, int row)
    {
        int index = row;
        if (!list.empty() && row >= 1 && list[0].pinned)
            index = row - 1;
        if (index >= 0 && index < int(list.size()))
            list.erase(list.begin() + index);
    }

    bool pinRow(List& list, int row)
    {
        int const size = int(list.size());
        if (row == 0 && size > 0 && list[0].pinned) {
            ++refusedPins;
            return false;
        }
        int index = row;
        if (row > 0 && size > 0 && list[0].pinned)
            index = row - 1 < size && list[size_t(row - 1)].pinned ? row : row - 1;
        if (index < 0 || index >= size)
            return true;
        Entry entry = list[size_t(index)];
        list.erase(list.begin() + index);
        entry.pinned = true;
        list.insert(list.begin(), entry);
        return true;
    }

    static void unpin(List& list, int index)
    {
        if (index < 0 || index >= int(list.size()))
            return;
        Entry entry = list[size_t(index)];
        list.erase(list.begin() + index);
        entry.pinned = false;
        list.insert(list.begin() + firstUnpinned(list), entry);
    }

    static int firstUnpinned(List const& list)
    {
        for (size_t i = 0; i < list.size(); ++i) {
            if (!list[i].pinned)
                return int(i);
        }
        return int(list.size());
    }

    void trim(List& list)
    {
        while (int(list.size()) > maxCount) {
            list.pop_back();
            ++trimmed;
        }
    }

    static QStringList text(List const& list)
    {
        QStringList lines;
        for (Entry const& entry : list)
            lines << RecentFilesTesting::text(
                RecFile {entry.pinned, int(entry.type), entry.path, entry.team});
        return lines;
    }
};

/** What is shown of an entry, from its description. */
QString shownLine(Model::Entry const& entry, Home const& home, bool isFolder)
{
    QFileInfo const info(entry.path);
    QString const folder = isFolder ? entry.path : info.path();
    QString name = isFolder ? entry.path.split('/').last() : info.fileName();
    QString location;
    QStringList const fields = folder.split("#$#");
    if (entry.type == 1) {
        location = folder;
        if (folder.contains(home.documents()))
            location.replace(home.documents(), "Papers");
        else if (folder.contains(home.desktop()))
            location.replace(home.desktop(), "Table");
        else if (folder.contains(home.path()))
            location.replace(home.path(), home.path().split('/').last());
    }
    if (entry.type == 2 || entry.type == 3)
        location = folder;
    if (entry.type == 4 && !isFolder)
        location = fields.size() >= 3 ? fields[2] : folder;
    if (entry.type == 5 && !isFolder)
        location = fields.size() >= 2 ? fields[1] : folder;
    if (entry.type == 2 && isFolder)
        name = "Personal";
    location = location.split('/').join('>');
    if (isFolder && name.isEmpty())
        name = location.left(location.size() - 1);
    return QStringLiteral("%1%2 %3 | %4 | %5")
        .arg(entry.pinned ? QStringLiteral("*") : QString(), QString::number(int(entry.type)), name,
            location, entry.path);
}

QStringList shownLines(Model::List const& list, Home const& home, bool isFolder)
{
    QStringList lines;
    for (Model::Entry const& entry : list)
        lines << shownLine(entry, home, isFolder);
    return lines;
}

/** A path that is hard to keep apart from others: parts of each other, joined, marked, odd. */
QString trickyPath(QRandomGenerator& random, Home const& home)
{
    static QStringList const pieces {"a", "b", "ab", "/", "/", "a.x", "b.x", "#$#", "$#", "#",
        "/Team/", "/Personal/", "#$#/GoogleDrive/", "#$#/Dropbox/", "..", " ", "\u00e4\u4e2d",
        "C:", "\\", "%1"};
    QString path;
    switch (random.bounded(12)) {
    case 0:
        path = home.documents();
        break;
    case 1:
        path = home.desktop() + "/a/";
        break;
    case 2:
        path = home.path() + "/b";
        break;
    case 3:
        path = QString(random.bounded(40) == 0 ? 20000 : 200, 'l') + '/';
        break;
    default:
        break;
    }
    int const count = random.bounded(6);
    for (int i = 0; i < count; ++i)
        path += pieces.at(random.bounded(pieces.size()));
    return path;
}

QStringList shownFiles(KpRecentFileManager& manager)
{
    QVector<RecFileInfo> infos;
    manager.getRecentFiles(infos);
    return text(infos);
}

QStringList shownFolders(KpRecentFileManager& manager)
{
    QVector<RecFileInfo> infos;
    manager.getRecentFolder(infos);
    return text(infos);
}

/** Adds local files, the first one first. */
void addAll(KpRecentFileManager& manager, QStringList const& paths)
{
    for (QString const& path : paths)
        manager.addRecentFile(path, KpRecentFileManager::RecLocal, QString());
}

#ifdef WITH_SYSTEM_CALL_FILTER

/** A system call that asks for something by its name in the file system. */
struct NamingCall
{
    unsigned int number;
    int nameArgument;
};

constexpr NamingCall namingCalls[] = {
    {SYS_openat, 1},
    {SYS_statx, 1},
    {SYS_newfstatat, 1},
    {SYS_faccessat, 1},
    {SYS_faccessat2, 1},
    {SYS_readlinkat, 1},
#ifdef SYS_open
    {SYS_open, 0},
    {SYS_stat, 0},
    {SYS_lstat, 0},
    {SYS_access, 0},
    {SYS_readlink, 0},
#endif
};

/** The names that the process has asked for since recordNames(). */
std::vector<QByteArray> askedNames;

/** Notes the name of a call that was caught, and answers that nothing is there. */
void noteName(int, siginfo_t* info, void* context)
{
    auto& machine = static_cast<ucontext_t*>(context)->uc_mcontext;
#ifdef __x86_64__
    auto const argument = [&](int i) { return machine.gregs[i == 0 ? REG_RDI : REG_RSI]; };
    auto& result = machine.gregs[REG_RAX];
#else
    auto const argument = [&](int i) { return machine.regs[i]; };
    auto& result = machine.regs[0];
#endif
    for (NamingCall const& call : namingCalls) {
        if (int(call.number) == info->si_syscall)
            askedNames.emplace_back(reinterpret_cast<char const*>(argument(call.nameArgument)));
    }
    result = static_cast<std::remove_reference_t<decltype(result)>>(-ENOENT);
}

/** From here on nothing is found in the file system, and what is asked for is noted. */
void recordNames()
{
    struct sigaction action = {};
    action.sa_sigaction = noteName;
    // A call within the handler, as one to get memory, is none of these.
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    std::vector<sock_filter> program {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (NamingCall const& call : namingCalls) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call.number, 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    sock_fprog const filter {static_cast<unsigned short>(program.size()), program.data()};
    if (sigaction(SIGSYS, &action, nullptr) != 0 || prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0
        || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
        _exit(77);
}

/** The names that a child asks for that does this, one after the other. */
template <class Action> QStringList namesAskedFor(Action action)
{
    QTemporaryFile report;
    if (!report.open())
        return {"no report"};
    pid_t const child = fork();
    if (child == 0) {
        recordNames();
        action();
        QByteArray names;
        for (QByteArray const& name : askedNames)
            names += name + '\n';
        _exit(::write(report.handle(), names.constData(), size_t(names.size())) == names.size()
                ? 0
                : 78);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return {QStringLiteral("the child ended with status %1").arg(status)};
    report.seek(0);
    return QString::fromLocal8Bit(report.readAll()).split('\n', Qt::SkipEmptyParts);
}

#endif

} // namespace

class TestKpRecentFileManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home.reset(new Home); }

    void beginsEmptyInTheDocuments();
    void assignmentKeepsWhetherItIsModified();
    void foldersOfPathsAreRemembered_data();
    void foldersOfPathsAreRemembered();

    void kindFollowsFromThePath_data();
    void kindFollowsFromThePath();
    void givenKindKeepsTheTeam();
    void addingTwiceLeavesOneEntry();
    void otherKindIsNoDuplicate();
    void duplicatesContainTheKey_data();
    void duplicatesContainTheKey();
    void emptyKeyTakesOneAway();
    void pinnedDuplicateCancels();
    void pinnedFolderStays();
    void foldersOfOtherKindsAreNoDuplicates();
    void onlyLocalFilesMakeFolders();
    void newestStandsBehindThePins();
    void sixtyFirstTakesTheLastAway();
    void lastGoesEvenIfPinned();
    void modifiedIsSetByInsertionOnly();
    void modifiedIsNeverCleared();
    void noRoomAtAll();
    void ownStringsMayBePassed();

    void pathIsRemovedOnce();
    void rowsAreRemovedByTheirRule_data();
    void rowsAreRemovedByTheirRule();
    void rowsArePinnedByTheirRule_data();
    void rowsArePinnedByTheirRule();
    void unpinnedIsTheNewest_data();
    void unpinnedIsTheNewest();
    void firstUnpinnedIsFound_data();
    void firstUnpinnedIsFound();
    void extremeRowsAreIgnored();

    void filesAreShown_data();
    void filesAreShown();
    void foldersAreShown_data();
    void foldersAreShown();
    void listingAppends();
    void listingCutsTheFiles();
    void userFoldersAreFoundWhenTheyChange();
    void homeWithoutSlashHasNoName();
    void onlyTheUserFoldersAreLookedUp();

    void agreesWithThePlainModel();

private:
    QScopedPointer<Home> m_home;
};

void TestKpRecentFileManager::beginsEmptyInTheDocuments()
{
    KpRecentFileManager const manager;
    QCOMPARE(manager.m_isModified, true);
    QCOMPARE(manager.m_maxCount, 60);
    QCOMPARE(manager.m_recentFileFolder, m_home->documents());
    QCOMPARE(manager.m_libraryFolder, m_home->documents());
    QCOMPARE(manager.m_symbolFolder, m_home->documents());
    QVERIFY(manager.m_files.isEmpty());
    QVERIFY(manager.m_folders.isEmpty());
}

void TestKpRecentFileManager::assignmentKeepsWhetherItIsModified()
{
    KpRecentFileManager source;
    source.m_maxCount = 7;
    source.setRecentFileFolder("/f/a");
    source.setLibraryFolder("/l/a");
    source.setSymbolFolder("/s/a");
    source.m_files = entriesOf({"*/a", "/b"});
    source.m_folders = entriesOf({"/c"});
    for (bool const isModified : {false, true}) {
        KpRecentFileManager target;
        target.m_isModified = isModified;
        source.m_isModified = !isModified;
        QCOMPARE(&(target = source), &target);
        QCOMPARE(target.m_isModified, isModified);
        QCOMPARE(target.m_maxCount, 7);
        QCOMPARE(target.m_recentFileFolder, QString("/f"));
        QCOMPARE(target.m_libraryFolder, QString("/l"));
        QCOMPARE(target.m_symbolFolder, QString("/s"));
        QCOMPARE(pathsOf(target.m_files), QStringList({"*/a", "/b"}));
        QCOMPARE(pathsOf(target.m_folders), QStringList("/c"));
        KpRecentFileManager const copy(source);
        QCOMPARE(copy.m_isModified, !isModified);
        QCOMPARE(pathsOf(copy.m_files), QStringList({"*/a", "/b"}));
    }
    KpRecentFileManager& same = source;
    source = same;
    QCOMPARE(pathsOf(source.m_files), QStringList({"*/a", "/b"}));
}

void TestKpRecentFileManager::foldersOfPathsAreRemembered_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    QTest::newRow("file") << "/a/b/c.x"
                          << "/a/b";
    QTest::newRow("bare name") << "c.x"
                               << ".";
    QTest::newRow("in the root") << "/c.x"
                                 << "/";
    QTest::newRow("ends with a slash") << "/a/b/"
                                       << "/a/b";
    QTest::newRow("relative") << "a/b/c"
                              << "a/b";
    QTest::newRow("not normalised") << "/a//../b/c"
                                    << "/a//../b";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("cloud") << "x#$#/Dropbox/a/b.x"
                           << "x#$#/Dropbox/a";
}

void TestKpRecentFileManager::foldersOfPathsAreRemembered()
{
    QFETCH(QString, path);
    QFETCH(QString, folder);
    QString const other = m_home->documents();
    KpRecentFileManager manager;
    manager.setSymbolFolder(path);
    QCOMPARE(manager.m_symbolFolder, folder);
    QCOMPARE(manager.m_libraryFolder, other);
    manager.setLibraryFolder(path);
    QCOMPARE(manager.m_libraryFolder, folder);
    QCOMPARE(manager.m_recentFileFolder, other);
    manager.setRecentFileFolder(path);
    QCOMPARE(manager.m_recentFileFolder, folder);
    KpRecentFileManager saved;
    saved.addSaveFileInfo(path, KpRecentFileManager::RecTeam, "");
    QCOMPARE(saved.m_recentFileFolder, folder);
    QCOMPARE(saved.m_symbolFolder, other);
    QCOMPARE(saved.m_libraryFolder, other);
    KpRecentFileManager opened;
    opened.addOpenFileInfo(path, KpRecentFileManager::RecTeam, "");
    QCOMPARE(opened.m_recentFileFolder, folder);
}

void TestKpRecentFileManager::kindFollowsFromThePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("kind");
    QTest::newRow("local") << "/a/b.x" << 1;
    QTest::newRow("personal") << "/a/Personal/b.x" << 2;
    QTest::newRow("team") << "/a/Team/b.x" << 3;
    QTest::newRow("Google Drive") << "u#$#/GoogleDrive/b.x" << 4;
    QTest::newRow("Dropbox") << "u#$#/Dropbox/b.x" << 5;
    QTest::newRow("team goes first") << "/Personal/#$#/Dropbox/Team/x" << 3;
    QTest::newRow("then personal") << "#$#/GoogleDrive/Personal/x" << 2;
    QTest::newRow("then Google Drive") << "#$#/Dropbox/#$#/GoogleDrive/" << 4;
    QTest::newRow("Dropbox without a separator") << "/Dropbox/b.x" << 1;
    QTest::newRow("separator apart") << "#$#a/Dropbox/b.x" << 1;
    QTest::newRow("other case") << "/team/b.x" << 1;
    QTest::newRow("no folder") << "/Team" << 1;
    QTest::newRow("empty") << "" << 1;
}

void TestKpRecentFileManager::kindFollowsFromThePath()
{
    QFETCH(QString, path);
    QFETCH(int, kind);
    KpRecentFileManager saved;
    saved.addSaveFileInfo(path, 0, "Ours");
    KpRecentFileManager opened;
    opened.addOpenFileInfo(path, 0, "Ours");
    for (KpRecentFileManager const& manager : {saved, opened}) {
        QCOMPARE(manager.m_files.size(), 1);
        QCOMPARE(manager.m_files.first().type, kind);
        QCOMPARE(manager.m_files.first().path, path);
        QCOMPARE(manager.m_files.first().isTop, false);
        QCOMPARE(manager.m_files.first().teamName, QString());
        QCOMPARE(manager.m_folders.size(), kind == 1 ? 1 : 0);
    }
}

void TestKpRecentFileManager::givenKindKeepsTheTeam()
{
    KpRecentFileManager manager;
    manager.addSaveFileInfo("/a/Personal/b.x", KpRecentFileManager::RecTeam, "Ours");
    manager.addOpenFileInfo("/a/Team/c.x", KpRecentFileManager::RecLocal, "Theirs");
    manager.addOpenFileInfo("/d", 77, "");
    QCOMPARE(text(manager.m_files),
        QStringList({"77 /d", "1 /a/Team/c.x [Theirs]", "3 /a/Personal/b.x [Ours]"}));
    QCOMPARE(text(manager.m_folders), QStringList("1 /a/Team [Theirs]"));
}

void TestKpRecentFileManager::addingTwiceLeavesOneEntry()
{
    KpRecentFileManager manager;
    addAll(manager, {"/a/1", "/b/2", "/a/1"});
    QCOMPARE(pathsOf(manager.m_files), QStringList({"/a/1", "/b/2"}));
    QCOMPARE(pathsOf(manager.m_folders), QStringList({"/a", "/b"}));
}

void TestKpRecentFileManager::otherKindIsNoDuplicate()
{
    KpRecentFileManager manager;
    manager.addRecentFile("/a", 1, "");
    manager.addRecentFile("/a", 2, "");
    manager.addRecentFile("/a", 3, "T");
    QCOMPARE(text(manager.m_files), QStringList({"3 /a [T]", "2 /a", "1 /a"}));
}

void TestKpRecentFileManager::duplicatesContainTheKey_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("added");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("the path within others") << QStringList {"/x/a/b.x", "/c", "/a/b.x.bak",
        "/a/b.x"} << "/a/b.x" << QStringList {"/a/b.x", "/c"};
    QTest::newRow("not the other way round")
        << QStringList {"/a/b", "/a"} << "/a/b.x" << QStringList {"/a/b.x", "/a/b", "/a"};
    QTest::newRow("case matters") << QStringList {"/A", "/a/"} << "/a" << QStringList {"/a", "/A"};
    QTest::newRow("nothing is normalised")
        << QStringList {"/a//b"} << "/a/b" << QStringList {"/a/b", "/a//b"};
    QTest::newRow("the last field is the key") << QStringList {"u#$#/p#$#id7", "/q/id7x",
        "id8"} << "v#$#w#$#id7" << QStringList {"v#$#w#$#id7", "id8"};
    QTest::newRow("separators overlap: the first counts")
        << QStringList {"x$#", "x"} << "a#$#$#" << QStringList {"a#$#$#", "x"};
    QTest::newRow("the first sign counts")
        << QStringList {"xbc", "xabc"} << "abc" << QStringList {"abc", "xbc"};
    QTest::newRow("a separator at the start")
        << QStringList {"id7x", "c"} << "#$#id7" << QStringList {"#$#id7", "c"};
    QTest::newRow("a field of one sign")
        << QStringList {"a#b", "c"} << "x#$##" << QStringList {"x#$##", "c"};
}

void TestKpRecentFileManager::duplicatesContainTheKey()
{
    QFETCH(QStringList, before);
    QFETCH(QString, added);
    QFETCH(QStringList, after);
    KpRecentFileManager manager;
    manager.m_files = entriesOf(before);
    manager.addRecentFile(added, 1, "");
    QCOMPARE(pathsOf(manager.m_files), after);
}

void TestKpRecentFileManager::emptyKeyTakesOneAway()
{
    KpRecentFileManager manager;
    manager.m_files = entriesOf({"a#$#", "b", "a#$#", "a#$#c"});
    manager.addRecentFile("a#$#", 1, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"a#$#", "a#$#", "b", "a#$#c"}));
    manager.m_files = entriesOf({"", "b", ""});
    manager.addRecentFile("", 1, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"", "", "b"}));
    // The walk begins at the end and ends at the first match: here the pinned one is not reached.
    manager.m_files = entriesOf({"*a#$#", "a#$#"});
    manager.addRecentFile("a#$#", 1, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"*a#$#", "a#$#"}));
    QVERIFY(manager.m_isModified);
    manager.m_isModified = false;
    manager.m_files = entriesOf({"*a#$#", "b"});
    manager.addRecentFile("a#$#", 1, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"*a#$#", "b"}));
    QVERIFY(!manager.m_isModified);
}

void TestKpRecentFileManager::pinnedDuplicateCancels()
{
    KpRecentFileManager manager;
    manager.m_isModified = false;
    manager.m_files = entriesOf({"*/c", "*/x/a", "*/a/b", "/a/1", "/d", "/a/2"});
    manager.addRecentFile("/a", 1, "");
    // The walk from the end has removed what it met before the pinned one.
    QCOMPARE(pathsOf(manager.m_files), QStringList({"*/c", "*/x/a", "*/a/b", "/d"}));
    QVERIFY(manager.m_folders.isEmpty());
    QVERIFY(!manager.m_isModified);
    // What stands before the pinned one is not reached.
    manager.m_files = entriesOf({"/a/1", "*/a", "/a/2"});
    manager.addRecentFile("/a", 1, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"/a/1", "*/a"}));
    QVERIFY(!manager.m_isModified);
    // The folder of the file is remembered all the same.
    manager.addOpenFileInfo("/a", 1, "");
    QCOMPARE(manager.m_recentFileFolder, QString("/"));
    QVERIFY(!manager.m_isModified);
}

void TestKpRecentFileManager::pinnedFolderStays()
{
    KpRecentFileManager manager;
    manager.m_folders = entriesOf({"*/p", "*/a", "/b"});
    manager.m_isModified = false;
    manager.addRecentFolder("/a/1", 1, "T");
    QCOMPARE(text(manager.m_folders), QStringList({"*1 /p", "*1 /a", "1 /b"}));
    QVERIFY(!manager.m_isModified);
    // A file in it is added nevertheless.
    manager.addRecentFile("/a/1", 1, "T");
    QCOMPARE(text(manager.m_files), QStringList("1 /a/1 [T]"));
    QCOMPARE(pathsOf(manager.m_folders), QStringList({"*/p", "*/a", "/b"}));
    manager.addRecentFolder("/b/1", 1, "T");
    QCOMPARE(text(manager.m_folders), QStringList({"*1 /p", "*1 /a", "1 /b [T]"}));
}

void TestKpRecentFileManager::foldersOfOtherKindsAreNoDuplicates()
{
    KpRecentFileManager manager;
    manager.m_folders = {{true, 2, "/a", ""}, {false, 3, "/a", ""}, {false, 1, "/ab", ""},
        {false, 1, "/a", ""}, {false, 1, "/a", ""}};
    manager.addRecentFolder("/a/1", 1, "");
    // Of two folders the first goes; folders are equal or not, whatever they contain.
    QCOMPARE(text(manager.m_folders), QStringList({"*2 /a", "1 /a", "3 /a", "1 /ab", "1 /a"}));
}

void TestKpRecentFileManager::onlyLocalFilesMakeFolders()
{
    for (unsigned int const type : {0U, 2U, 3U, 4U, 5U, 6U, 0xFFFFFFFFU}) {
        KpRecentFileManager manager;
        manager.m_isModified = false;
        manager.addRecentFolder("/a/1", type, "");
        QVERIFY(manager.m_folders.isEmpty());
        QVERIFY(!manager.m_isModified);
        manager.addRecentFile("/a/1", type, "");
        QVERIFY(manager.m_folders.isEmpty());
        QVERIFY(manager.m_isModified);
        QCOMPARE(manager.m_files.first().type, int(type));
    }
}

void TestKpRecentFileManager::newestStandsBehindThePins()
{
    KpRecentFileManager manager;
    manager.m_files = entriesOf({"*/1", "*/2", "/3"});
    manager.m_folders = entriesOf({"*/p", "/q"});
    manager.addRecentFile("/n/4", 1, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"*/1", "*/2", "/n/4", "/3"}));
    QCOMPARE(pathsOf(manager.m_folders), QStringList({"*/p", "/n", "/q"}));
}

void TestKpRecentFileManager::sixtyFirstTakesTheLastAway()
{
    KpRecentFileManager manager;
    for (int i = 10; i < 71; ++i)
        manager.addRecentFile(QString("/d%1/f%1.x").arg(i), 1, "");
    QCOMPARE(manager.m_files.size(), 60);
    QCOMPARE(manager.m_files.first().path, QString("/d70/f70.x"));
    QCOMPARE(manager.m_files.last().path, QString("/d11/f11.x"));
    QCOMPARE(manager.m_folders.size(), 60);
    QCOMPARE(manager.m_folders.last().path, QString("/d11"));
    manager.m_maxCount = 3;
    manager.addRecentFile("/e/n", 1, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"/e/n", "/d70/f70.x", "/d69/f69.x"}));
    QCOMPARE(pathsOf(manager.m_folders), QStringList({"/e", "/d70", "/d69"}));
}

void TestKpRecentFileManager::lastGoesEvenIfPinned()
{
    KpRecentFileManager manager;
    manager.m_maxCount = 2;
    manager.m_files = entriesOf({"*/1", "*/2"});
    manager.m_isModified = false;
    manager.addRecentFile("/3", 2, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"*/1", "*/2"}));
    QVERIFY(manager.m_isModified);
    manager.m_files = entriesOf({"*/1", "*/2", "*/4", "/5"});
    manager.addRecentFile("/3", 2, "");
    QCOMPARE(pathsOf(manager.m_files), QStringList({"*/1", "*/2"}));
}

void TestKpRecentFileManager::modifiedIsSetByInsertionOnly()
{
    KpRecentFileManager manager;
    manager.m_files = entriesOf({"*/1", "/2", "/3"});
    manager.m_folders = entriesOf({"*/p", "/q"});
    manager.m_isModified = false;
    manager.delRecentFile("/3");
    manager.delRecentFile(2);
    manager.delRecentFolder(2);
    manager.moveRecentFileTop(0);
    manager.moveRecentFileNotTop(0);
    manager.moveRecentFileTop(0);
    manager.moveRecentFolderNotTop(0);
    manager.moveRecentFolderTop(0);
    manager.setRecentFileFolder("/x/y");
    manager.setSymbolFolder("/x/y");
    manager.setLibraryFolder("/x/y");
    shownFiles(manager);
    shownFolders(manager);
    QVERIFY(!manager.m_isModified);
    manager.addRecentFolder("/r/1", 1, "");
    QVERIFY(manager.m_isModified);
}

void TestKpRecentFileManager::modifiedIsNeverCleared()
{
    using Manager = KpRecentFileManager;
    struct Operation
    {
        char const* name;
        void (*call)(Manager&);
    };
    static Operation const operations[] = {
        {"setSymbolFolder", [](Manager& m) { m.setSymbolFolder("/s/a"); }},
        {"setLibraryFolder", [](Manager& m) { m.setLibraryFolder("/l/a"); }},
        {"setRecentFileFolder", [](Manager& m) { m.setRecentFileFolder("/f/a"); }},
        {"addSaveFileInfo", [](Manager& m) { m.addSaveFileInfo("/s/new", 1, ""); }},
        {"addOpenFileInfo", [](Manager& m) { m.addOpenFileInfo("/o/new", 1, ""); }},
        {"addSaveFileInfo, cancelled", [](Manager& m) { m.addSaveFileInfo("/p/pinned", 1, ""); }},
        {"addOpenFileInfo, cancelled", [](Manager& m) { m.addOpenFileInfo("/p/pinned", 1, ""); }},
        {"addRecentFile", [](Manager& m) { m.addRecentFile("/n/new", 1, ""); }},
        {"addRecentFile, cancelled", [](Manager& m) { m.addRecentFile("/p/pinned", 1, ""); }},
        {"addRecentFolder", [](Manager& m) { m.addRecentFolder("/n/new", 1, ""); }},
        {"addRecentFolder, pinned", [](Manager& m) { m.addRecentFolder("/p/new", 1, ""); }},
        {"addRecentFolder, not local", [](Manager& m) { m.addRecentFolder("/n/new", 2, ""); }},
        {"delRecentFile by path", [](Manager& m) { m.delRecentFile("/a/a"); }},
        {"delRecentFile by row", [](Manager& m) { m.delRecentFile(2); }},
        {"delRecentFolder", [](Manager& m) { m.delRecentFolder(2); }},
        {"moveRecentFileTop", [](Manager& m) { m.moveRecentFileTop(2); }},
        {"moveRecentFolderTop", [](Manager& m) { m.moveRecentFolderTop(2); }},
        {"moveRecentFileNotTop", [](Manager& m) { m.moveRecentFileNotTop(0); }},
        {"moveRecentFolderNotTop", [](Manager& m) { m.moveRecentFolderNotTop(0); }},
        {"notTopFileFirstIndex", [](Manager& m) { m.notTopFileFirstIndex(); }},
        {"notTopFolderFirstIndex", [](Manager& m) { m.notTopFolderFirstIndex(); }},
        {"getRecentFiles", [](Manager& m) { shownFiles(m); }},
        {"getRecentFolder", [](Manager& m) { shownFolders(m); }},
        {"parse",
            [](Manager& m) {
                QDomDocument document;
                document.setContent(QByteArray(
                    "<RecentFiles><RecentFiles>"
                    "<RecentFile V='/x/x' Type='1' Top='0'/></RecentFiles></RecentFiles>"));
                QDomElement root = document.documentElement();
                m.parse(root);
                QCOMPARE(m.m_files.size(), 4);
            }},
        {"save", [](Manager& m) { m.save(); }},
        {"load",
            [](Manager& m) {
                Manager::s_isLoaded = false;
                m.load();
            }},
        {"assignment",
            [](Manager& m) {
                Manager other;
                other.m_isModified = false;
                m = other;
            }},
    };
    for (Operation const& operation : operations) {
        Manager manager;
        manager.m_files = entriesOf({"*/p/pinned", "/a/a", "/b/b"});
        manager.m_folders = entriesOf({"*/p", "/a", "/b"});
        manager.m_isModified = true;
        operation.call(manager);
        QVERIFY2(manager.m_isModified, operation.name);
    }
}

void TestKpRecentFileManager::noRoomAtAll()
{
    for (int const maxCount : {0, -1, std::numeric_limits<int>::min()}) {
        KpRecentFileManager manager;
        manager.m_maxCount = maxCount;
        manager.m_files = entriesOf({"*/1", "/2"});
        manager.addRecentFile("/a/3", 1, "");
        QVERIFY(manager.m_files.isEmpty());
        QVERIFY(manager.m_folders.isEmpty());
        manager.m_files = entriesOf({"*/1", "/2"});
        QVERIFY(shownFiles(manager).isEmpty());
    }
}

void TestKpRecentFileManager::ownStringsMayBePassed()
{
    KpRecentFileManager manager;
    manager.m_files = {{false, 1, "/a/1", "T"}, {false, 1, "/b/2", "U"}};
    manager.addRecentFile(manager.m_files.at(1).path, 1, manager.m_files.at(1).teamName);
    QCOMPARE(text(manager.m_files), QStringList({"1 /b/2 [U]", "1 /a/1 [T]"}));
    manager.m_recentFileFolder = "/c/3";
    manager.addSaveFileInfo(manager.m_recentFileFolder, 0, manager.m_recentFileFolder);
    QCOMPARE(text(manager.m_files), QStringList({"1 /c/3", "1 /b/2 [U]", "1 /a/1 [T]"}));
    QCOMPARE(manager.m_recentFileFolder, QString("/c"));
    manager.m_recentFileFolder = "/d/4";
    manager.addOpenFileInfo(manager.m_recentFileFolder, 1, manager.m_recentFileFolder);
    QCOMPARE(text(manager.m_files).first(), QString("1 /d/4 [/d/4]"));
    manager.setSymbolFolder(manager.m_symbolFolder);
    QCOMPARE(manager.m_symbolFolder, m_home->path());
    manager.addRecentFolder(manager.m_folders.last().path, 1, manager.m_folders.last().teamName);
    QCOMPARE(manager.m_folders.first().path, QString("/"));
    manager.delRecentFile(manager.m_files.at(1).path);
    QCOMPARE(text(manager.m_files), QStringList({"1 /d/4 [/d/4]", "1 /b/2 [U]", "1 /a/1 [T]"}));
}

void TestKpRecentFileManager::pathIsRemovedOnce()
{
    KpRecentFileManager manager;
    manager.m_files = {{true, 2, "/a", ""}, {false, 1, "/b", ""}, {false, 1, "/a", ""}};
    manager.delRecentFile("/");
    manager.delRecentFile("");
    manager.delRecentFile("/A");
    QCOMPARE(manager.m_files.size(), 3);
    manager.delRecentFile("/a");
    QCOMPARE(text(manager.m_files), QStringList({"1 /b", "1 /a"}));
    manager.delRecentFile("/a");
    manager.delRecentFile("/a");
    QCOMPARE(text(manager.m_files), QStringList("1 /b"));
}

void TestKpRecentFileManager::rowsAreRemovedByTheirRule_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QVector<int>>("indices");
    // The index that each row from -2 on removes; -1 is none.
    QTest::newRow("empty") << QStringList {} << QVector<int> {-1, -1, -1, -1, -1};
    QTest::newRow("no pins") << QStringList {"a", "b", "c"}
                             << QVector<int> {-1, -1, 0, 1, 2, -1, -1};
    QTest::newRow("one pin") << QStringList {"*a", "b", "c"}
                             << QVector<int> {-1, -1, 0, 0, 1, 2, -1, -1};
    QTest::newRow("two pins") << QStringList {"*a", "*b", "c"}
                              << QVector<int> {-1, -1, 0, 0, 1, 2, -1, -1};
    QTest::newRow("all pinned") << QStringList {"*a", "*b"}
                                << QVector<int> {-1, -1, 0, 0, 1, -1, -1};
    QTest::newRow("a pin behind") << QStringList {"a", "*b"} << QVector<int> {-1, -1, 0, 1, -1, -1};
}

void TestKpRecentFileManager::rowsAreRemovedByTheirRule()
{
    QFETCH(QStringList, list);
    QFETCH(QVector<int>, indices);
    for (int i = 0; i < indices.size(); ++i) {
        QStringList expected = list;
        if (indices.at(i) >= 0)
            expected.removeAt(indices.at(i));
        KpRecentFileManager manager;
        manager.m_files = entriesOf(list);
        manager.m_folders = entriesOf(list);
        manager.delRecentFile(i - 2);
        QCOMPARE(pathsOf(manager.m_files), expected);
        QCOMPARE(pathsOf(manager.m_folders), list);
        manager.delRecentFolder(i - 2);
        QCOMPARE(pathsOf(manager.m_folders), expected);
        QCOMPARE(pathsOf(manager.m_files), expected);
    }
}

void TestKpRecentFileManager::rowsArePinnedByTheirRule_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QVector<int>>("indices");
    // The index that each row from -2 on pins; -1 is none, -2 is refused.
    QTest::newRow("empty") << QStringList {} << QVector<int> {-1, -1, -1, -1};
    QTest::newRow("no pins") << QStringList {"a", "b", "c"} << QVector<int> {-1, -1, 0, 1, 2, -1};
    QTest::newRow("one pin") << QStringList {"*a", "b", "c"}
                             << QVector<int> {-1, -1, -2, 1, 1, 2, -1, -1};
    QTest::newRow("two pins") << QStringList {"*a", "*b", "c", "d"}
                              << QVector<int> {-1, -1, -2, 1, 2, 2, 3, -1, -1};
    QTest::newRow("all pinned") << QStringList {"*a", "*b", "*c"}
                                << QVector<int> {-1, -1, -2, 1, 2, -1, -1};
    QTest::newRow("pins out of order")
        << QStringList {"*a", "b", "*c", "d"} << QVector<int> {-1, -1, -2, 1, 1, 3, 3, -1};
    QTest::newRow("a pin behind") << QStringList {"a", "*b"} << QVector<int> {-1, -1, 0, 1, -1};
}

void TestKpRecentFileManager::rowsArePinnedByTheirRule()
{
    QFETCH(QStringList, list);
    QFETCH(QVector<int>, indices);
    for (int i = 0; i < indices.size(); ++i) {
        QStringList expected = list;
        if (indices.at(i) >= 0) {
            QString const pinned = expected.takeAt(indices.at(i));
            expected.prepend(pinned.startsWith('*') ? pinned : '*' + pinned);
        }
        KpRecentFileManager manager;
        manager.m_files = entriesOf(list);
        manager.m_folders = entriesOf(list);
        QCOMPARE(manager.moveRecentFileTop(i - 2), indices.at(i) != -2);
        QCOMPARE(pathsOf(manager.m_files), expected);
        QCOMPARE(pathsOf(manager.m_folders), list);
        QCOMPARE(manager.moveRecentFolderTop(i - 2), indices.at(i) != -2);
        QCOMPARE(pathsOf(manager.m_folders), expected);
    }
}

void TestKpRecentFileManager::unpinnedIsTheNewest_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("after");
    QStringList const same {"*a", "*b", "c", "d"};
    QTest::newRow("before the first") << -1 << same;
    QTest::newRow("first") << 0 << QStringList {"*b", "a", "c", "d"};
    QTest::newRow("second") << 1 << QStringList {"*a", "b", "c", "d"};
    QTest::newRow("first of the others") << 2 << same;
    QTest::newRow("last") << 3 << QStringList {"*a", "*b", "d", "c"};
    QTest::newRow("behind the last") << 4 << same;
}

void TestKpRecentFileManager::unpinnedIsTheNewest()
{
    QFETCH(int, index);
    QFETCH(QStringList, after);
    QStringList const before {"*a", "*b", "c", "d"};
    KpRecentFileManager manager;
    manager.m_files = entriesOf(before);
    manager.m_folders = entriesOf(before);
    manager.moveRecentFileNotTop(index);
    QCOMPARE(pathsOf(manager.m_files), after);
    QCOMPARE(pathsOf(manager.m_folders), before);
    manager.moveRecentFolderNotTop(index);
    QCOMPARE(pathsOf(manager.m_folders), after);
}

void TestKpRecentFileManager::firstUnpinnedIsFound_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<int>("index");
    QTest::newRow("empty") << QStringList {} << 0;
    QTest::newRow("none is pinned") << QStringList {"a", "b"} << 0;
    QTest::newRow("some are pinned") << QStringList {"*a", "*b", "c"} << 2;
    QTest::newRow("all are pinned") << QStringList {"*a", "*b"} << 2;
    QTest::newRow("out of order") << QStringList {"*a", "b", "*c"} << 1;
}

void TestKpRecentFileManager::firstUnpinnedIsFound()
{
    QFETCH(QStringList, list);
    QFETCH(int, index);
    KpRecentFileManager manager;
    manager.m_files = entriesOf(list);
    QCOMPARE(manager.notTopFileFirstIndex(), index);
    QCOMPARE(manager.notTopFolderFirstIndex(), 0);
    manager.m_folders = entriesOf(list);
    manager.m_files.clear();
    QCOMPARE(manager.notTopFileFirstIndex(), 0);
    QCOMPARE(manager.notTopFolderFirstIndex(), index);
}

void TestKpRecentFileManager::extremeRowsAreIgnored()
{
    QStringList const list {"*a", "*b", "c"};
    for (int const row : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        KpRecentFileManager manager;
        manager.m_files = entriesOf(list);
        manager.m_folders = entriesOf(list);
        manager.delRecentFile(row);
        manager.delRecentFolder(row);
        manager.moveRecentFileNotTop(row);
        manager.moveRecentFolderNotTop(row);
        QVERIFY(manager.moveRecentFileTop(row));
        QVERIFY(manager.moveRecentFolderTop(row));
        QCOMPARE(pathsOf(manager.m_files), list);
        QCOMPARE(pathsOf(manager.m_folders), list);
    }
}

void TestKpRecentFileManager::filesAreShown_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("location");
    // In paths, DOCUMENTS, DESKTOP and HOME stand for the user's folders.
    QTest::newRow("documents") << 1 << "DOCUMENTS/p/a.x"
                               << "a.x"
                               << "Papers>p";
    QTest::newRow("documents twice") << 1 << "DOCUMENTS/pDOCUMENTS/a.x"
                                     << "a.x"
                                     << "Papers>pPapers";
    QTest::newRow("documents before the desktop") << 1 << "/mDESKTOP/nDOCUMENTS/a.x"
                                                  << "a.x"
                                                  << ">mHOME>Table>nPapers";
    QTest::newRow("beginning of another folder") << 1 << "DOCUMENTS2/a.x"
                                                 << "a.x"
                                                 << "Papers2";
    QTest::newRow("desktop") << 1 << "DESKTOP/a.x"
                             << "a.x"
                             << "Table";
    QTest::newRow("home") << 1 << "HOME/q/a.x"
                          << "a.x"
                          << "LAST>q";
    QTest::newRow("anywhere") << 1 << "/srv/q/a.x"
                              << "a.x"
                              << ">srv>q";
    QTest::newRow("bare name") << 1 << "a.x"
                               << "a.x"
                               << ".";
    QTest::newRow("folder") << 1 << "/srv/q/"
                            << ""
                            << ">srv>q";
    QTest::newRow("empty") << 1 << ""
                           << ""
                           << "";
    QTest::newRow("personal") << 2 << "/u/Personal/s/a.x"
                              << "a.x"
                              << ">u>Personal>s";
    QTest::newRow("personal in the documents") << 2 << "/Personal/a.x"
                                               << "a.x"
                                               << ">Personal";
    QTest::newRow("team") << 3 << "/u/Team/s/a.x"
                          << "a.x"
                          << ">u>Team>s";
    QTest::newRow("Google Drive") << 4 << "id#$#/GoogleDrive/x#$#My/Sub/a.x"
                                  << "a.x"
                                  << "My>Sub";
    QTest::newRow("Google Drive, four fields") << 4 << "i#$#j#$#k/l#$#m/a.x"
                                               << "a.x"
                                               << "k>l";
    QTest::newRow("Google Drive, two fields") << 4 << "i#$#/GoogleDrive/s/a.x"
                                              << "a.x"
                                              << "i#$#>GoogleDrive>s";
    QTest::newRow("Google Drive, third field in the name") << 4 << "i#$#j/a#$#k.x"
                                                           << "a#$#k.x"
                                                           << "i#$#j";
    QTest::newRow("Dropbox") << 5 << "x#$#/Dropbox/sub/f.x"
                             << "f.x"
                             << ">Dropbox>sub";
    QTest::newRow("Dropbox, three fields") << 5 << "x#$#y#$#z/f.x"
                                           << "f.x"
                                           << "y";
    QTest::newRow("Dropbox, first field empty") << 5 << "#$#y#$#z/f.x"
                                                << "f.x"
                                                << "y";
    QTest::newRow("Dropbox, one field") << 5 << "x/y/f.x"
                                        << "f.x"
                                        << "x>y";
    QTest::newRow("Dropbox, empty field") << 5 << "x#$##$#y/f.x"
                                          << "f.x"
                                          << "";
    QTest::newRow("overlapping separators") << 5 << "x#$#$#/f.x"
                                            << "f.x"
                                            << "$#";
    QTest::newRow("none") << 0 << "/a/b.x"
                          << "b.x"
                          << "";
    QTest::newRow("unknown") << 6 << "/a/b.x"
                             << "b.x"
                             << "";
    QTest::newRow("negative") << -1 << "/a/b.x"
                              << "b.x"
                              << "";
}

void TestKpRecentFileManager::filesAreShown()
{
    QFETCH(int, type);
    QFETCH(QString, path);
    QFETCH(QString, name);
    QFETCH(QString, location);
    QString const last = m_home->path().section('/', -1);
    path.replace("DOCUMENTS", m_home->documents()).replace("DESKTOP", m_home->desktop());
    path.replace("HOME", m_home->path());
    location.replace("HOME", QString(m_home->path()).replace('/', '>')).replace("LAST", last);
    KpRecentFileManager manager;
    for (bool const isTop : {false, true}) {
        manager.m_files = {{isTop, type, path, "Ours"}};
        QVector<RecFileInfo> infos;
        manager.getRecentFiles(infos);
        QCOMPARE(infos.size(), 1);
        QCOMPARE(infos.first().isTop, isTop);
        QCOMPARE(infos.first().type, type);
        QCOMPARE(infos.first().name, name);
        QCOMPARE(infos.first().location, location);
        QCOMPARE(infos.first().path, path);
    }
}

void TestKpRecentFileManager::foldersAreShown_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("location");
    QTest::newRow("documents") << 1 << "DOCUMENTS"
                               << "Papers"
                               << "Papers";
    QTest::newRow("in the documents") << 1 << "DOCUMENTS/p"
                                      << "p"
                                      << "Papers>p";
    QTest::newRow("desktop") << 1 << "DESKTOP/p/q"
                             << "q"
                             << "Table>p>q";
    QTest::newRow("home") << 1 << "HOME/r"
                          << "r"
                          << "LAST>r";
    QTest::newRow("anywhere") << 1 << "/srv/q"
                              << "q"
                              << ">srv>q";
    QTest::newRow("drive") << 1 << "C:/"
                           << "C:"
                           << "C:>";
    QTest::newRow("root") << 1 << "/"
                          << ""
                          << ">";
    QTest::newRow("ends with a slash") << 1 << "/a/b/"
                                       << ">a>b"
                                       << ">a>b>";
    QTest::newRow("without a slash") << 1 << "abc"
                                     << "abc"
                                     << "abc";
    QTest::newRow("empty") << 1 << ""
                           << ""
                           << "";
    QTest::newRow("personal") << 2 << "/u/Personal/s"
                              << "Personal"
                              << ">u>Personal>s";
    QTest::newRow("personal, ends with a slash") << 2 << "/u/"
                                                 << "Personal"
                                                 << ">u>";
    QTest::newRow("team") << 3 << "/u/Team/s"
                          << "s"
                          << ">u>Team>s";
    QTest::newRow("team, ends with a slash") << 3 << "/u/Team/"
                                             << ">u>Team"
                                             << ">u>Team>";
    QTest::newRow("Google Drive") << 4 << "a#$#b#$#c"
                                  << "a#$#b#$#c"
                                  << "";
    QTest::newRow("Dropbox") << 5 << "a#$#b/c"
                             << "c"
                             << "";
    QTest::newRow("Dropbox, ends with a slash") << 5 << "a#$#b/"
                                                << ""
                                                << "";
    QTest::newRow("none") << 0 << "/a/b"
                          << "b"
                          << "";
    QTest::newRow("unknown") << 9 << "/a/b"
                             << "b"
                             << "";
}

void TestKpRecentFileManager::foldersAreShown()
{
    QFETCH(int, type);
    QFETCH(QString, path);
    QFETCH(QString, name);
    QFETCH(QString, location);
    path.replace("DOCUMENTS", m_home->documents()).replace("DESKTOP", m_home->desktop());
    path.replace("HOME", m_home->path());
    location.replace("LAST", m_home->path().section('/', -1));
    KpRecentFileManager manager;
    manager.m_folders = {{true, type, path, "Ours"}};
    QVector<RecFileInfo> infos;
    manager.getRecentFolder(infos);
    QCOMPARE(infos.size(), 1);
    QCOMPARE(infos.first().isTop, true);
    QCOMPARE(infos.first().type, type);
    QCOMPARE(infos.first().name, name);
    QCOMPARE(infos.first().location, location);
    QCOMPARE(infos.first().path, path);
}

void TestKpRecentFileManager::listingAppends()
{
    KpRecentFileManager manager;
    manager.m_files = entriesOf({"/a/1", "/a/2"});
    manager.m_folders = entriesOf({"/a"});
    QVector<RecFileInfo> infos;
    manager.getRecentFiles(infos);
    manager.getRecentFolder(infos);
    manager.getRecentFiles(infos);
    QCOMPARE(text(infos),
        QStringList({"1 1 | >a | /a/1", "1 2 | >a | /a/2", "1 a | >a | /a", "1 1 | >a | /a/1",
            "1 2 | >a | /a/2"}));
}

void TestKpRecentFileManager::listingCutsTheFiles()
{
    KpRecentFileManager manager;
    manager.m_maxCount = 2;
    manager.m_files = entriesOf({"/1", "/2", "/3"});
    manager.m_folders = entriesOf({"/p", "/q", "/r"});
    QCOMPARE(shownFiles(manager).size(), 2);
    QCOMPARE(pathsOf(manager.m_files), QStringList({"/1", "/2"}));
    QCOMPARE(manager.m_folders.size(), 3);
    // Listing the folders cuts the files, too, and not the folders.
    manager.m_files = entriesOf({"/1", "/2", "/3"});
    QCOMPARE(shownFolders(manager).size(), 3);
    QCOMPARE(pathsOf(manager.m_files), QStringList({"/1", "/2"}));
    QCOMPARE(manager.m_folders.size(), 3);
}

void TestKpRecentFileManager::userFoldersAreFoundWhenTheyChange()
{
    KpRecentFileManager manager;
    QString const file = m_home->documents() + "/a.x";
    manager.m_files = entriesOf({file});
    QCOMPARE(shownFiles(manager), QStringList("1 a.x | Papers | " + file));
    // Nothing is kept, neither of the environment nor of the file that names the folders.
    qputenv("HOME", "/nobody");
    QCOMPARE(shownFiles(manager),
        QStringList("1 a.x | " + m_home->documents().replace('/', '>') + " | " + file));
    qputenv("HOME", QFile::encodeName(m_home->path()));
    QCOMPARE(shownFiles(manager), QStringList("1 a.x | Papers | " + file));
    QFile folders(m_home->path() + "/config/user-dirs.dirs");
    QVERIFY(folders.open(QIODevice::WriteOnly | QIODevice::Truncate));
    folders.write("XDG_DOCUMENTS_DIR=\"$HOME/Other\"\n");
    folders.close();
    QCOMPARE(shownFiles(manager),
        QStringList("1 a.x | " + m_home->path().section('/', -1) + ">Papers | " + file));
    manager.m_folders = entriesOf({m_home->path() + "/Other/b"});
    QCOMPARE(shownFolders(manager), QStringList("1 b | Other>b | " + m_home->path() + "/Other/b"));
    QCOMPARE(KpRecentFileManager().m_recentFileFolder, m_home->path() + "/Other");
}

void TestKpRecentFileManager::homeWithoutSlashHasNoName()
{
    qputenv("HOME", "home");
    KpRecentFileManager manager;
    manager.m_files = entriesOf({"/x/home/y/a.x"});
    manager.m_folders = entriesOf({"home/y"});
    QCOMPARE(shownFiles(manager), QStringList("1 a.x | >x>>y | /x/home/y/a.x"));
    QCOMPARE(shownFolders(manager), QStringList("1 y | >y | home/y"));
}

void TestKpRecentFileManager::onlyTheUserFoldersAreLookedUp()
{
#ifdef WITH_SYSTEM_CALL_FILTER
    KpRecentFileManager manager;
    auto const list = [&manager] {
        QVector<RecFileInfo> infos;
        manager.getRecentFiles(infos);
        manager.getRecentFolder(infos);
        if (infos.size() != manager.m_files.size() + manager.m_folders.size())
            _exit(1);
    };
    QStringList const ofEmptyLists = namesAskedFor(list);
    QVERIFY(ofEmptyLists.contains(m_home->path() + "/config/user-dirs.dirs"));
    for (int i = 10; i < 70; ++i)
        manager.addOpenFileInfo(QString("%1/d%2/f%2.x").arg(m_home->documents()).arg(i), 0, "");
    // Neither the files nor their folders are among the names, and the number of entries makes no
    // difference to them.
    QCOMPARE(namesAskedFor(list), ofEmptyLists);
    for (QString const& name : ofEmptyLists)
        QVERIFY2(!name.startsWith(m_home->documents()), qPrintable(name));
    QCOMPARE(namesAskedFor([&] { manager.addOpenFileInfo("/a/b", 0, ""); }), QStringList());
    QCOMPARE(namesAskedFor([&] { manager.addSaveFileInfo("/a/b", 1, ""); }), QStringList());
    // Whoever does look for a file is seen.
    QCOMPARE(namesAskedFor([] { QFileInfo::exists("/a/b"); }), QStringList("/a/b"));
#else
    qInfo("no filter of system calls here: not run");
#endif
}

void TestKpRecentFileManager::agreesWithThePlainModel()
{
    QRandomGenerator random = Testing::seededRandom(31);
    KpRecentFileManager manager;
    Model model;
    model.fileFolder = manager.m_recentFileFolder;
    QStringList pool;
    int const rounds = Testing::sanitized ? 20000 : 120000;
    for (int i = 0; i < rounds; ++i) {
        if (i % 1000 == 0) {
            // Few paths meet each other often, many fill the list.
            int const maxCount = QVector<int> {1, 3, 10, 60}.at(random.bounded(4));
            manager.m_maxCount = model.maxCount = maxCount;
            pool.clear();
            int const poolSize = random.bounded(4, 4 * maxCount + 8);
            while (pool.size() < poolSize)
                pool << trickyPath(random, *m_home);
        }
        QString const path = pool.at(random.bounded(pool.size()));
        QString const team = random.bounded(3) == 0 ? QStringLiteral("Ours") : QString();
        unsigned int const type = unsigned(random.bounded(7));
        int const row = random.bounded(-2, int(model.files.size()) + 4);
        int const folderRow = random.bounded(-2, int(model.folders.size()) + 4);
        manager.m_isModified = model.modified = false;
        int const operation = random.bounded(20);
        QString const what =
            QStringLiteral("operation %1: %2, type %3, row %4, folder row %5")
                .arg(QString::number(operation), path.left(300), QString::number(type),
                    QString::number(row), QString::number(folderRow));
        switch (operation) {
        case 0:
            manager.delRecentFile(path);
            model.removePath(path);
            break;
        case 1:
            manager.delRecentFile(row);
            Model::removeRow(model.files, row);
            break;
        case 2:
            manager.delRecentFolder(folderRow);
            Model::removeRow(model.folders, folderRow);
            break;
        case 3:
            QVERIFY2(
                manager.moveRecentFileTop(row) == model.pinRow(model.files, row), qPrintable(what));
            break;
        case 4:
            QVERIFY2(
                manager.moveRecentFolderTop(folderRow) == model.pinRow(model.folders, folderRow),
                qPrintable(what));
            break;
        case 5:
        case 6:
            manager.moveRecentFileNotTop(row);
            Model::unpin(model.files, row);
            break;
        case 7:
            manager.moveRecentFolderNotTop(folderRow);
            Model::unpin(model.folders, folderRow);
            break;
        case 8:
            manager.addRecentFolder(path, type, team);
            model.addFolder(path, type, team);
            break;
        case 9:
        case 10:
            manager.addRecentFile(path, type, team);
            model.addFile(path, type, team);
            break;
        case 11:
            manager.addSaveFileInfo(path, type, team);
            model.open(path, type, team);
            break;
        default:
            // Mostly what the application does: an automatic kind, or a local file.
            manager.addOpenFileInfo(path, type % 2, team);
            model.open(path, type % 2, team);
            break;
        }
        QVERIFY2(text(manager.m_files) == Model::text(model.files), qPrintable(what));
        QVERIFY2(text(manager.m_folders) == Model::text(model.folders), qPrintable(what));
        QVERIFY2(manager.m_recentFileFolder == model.fileFolder, qPrintable(what));
        QVERIFY2(manager.m_isModified == model.modified, qPrintable(what));
        QVERIFY2(
            manager.notTopFileFirstIndex() == Model::firstUnpinned(model.files), qPrintable(what));
        QVERIFY2(manager.notTopFolderFirstIndex() == Model::firstUnpinned(model.folders),
            qPrintable(what));
        if (random.bounded(10) == 0) {
            model.trim(model.files);
            QCOMPARE(shownFiles(manager), shownLines(model.files, *m_home, false));
            QCOMPARE(shownFolders(manager), shownLines(model.folders, *m_home, true));
        }
    }
    qInfo("%d adds cancelled, %d duplicates removed, %d entries cut off, %d pins refused",
        model.cancelled, model.removedDuplicates, model.trimmed, model.refusedPins);
    for (int const count :
        {model.cancelled, model.removedDuplicates, model.trimmed, model.refusedPins})
        QVERIFY(count > (Testing::sanitized ? 50 : 500));
}

QTEST_GUILESS_MAIN(TestKpRecentFileManager)
#include "tst_kprecentfilemanager.moc"
