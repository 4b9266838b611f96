// SPDX-License-Identifier: MIT
#include "kpfilepathmanager.h"
#include "outlinetesting.h"
#include "recentfilestesting.h"

#include <QDomDocument>
#include <QElapsedTimer>
#include <QFileInfo>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>

#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

Q_DECLARE_METATYPE(std::function<QByteArray()>)

using namespace RecentFilesTesting;

namespace {

/** All that a file keeps, as text. */
QStringList stateOf(KpRecentFileManager const& manager)
{
    return QStringList {manager.m_recentFileFolder, manager.m_symbolFolder, manager.m_libraryFolder}
    + text(manager.m_files) + QStringList("--") + text(manager.m_folders);
}

/** What a manager reads that is the first of its process to load. */
QStringList loadedState()
{
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager manager;
    manager.load();
    return stateOf(manager);
}

/** How a child ends in which `action` runs: its exit code, or minus the signal that killed it. */
int endOfChild(std::function<int()> const& action)
{
    pid_t const child = fork();
    if (child == 0)
        _exit(action());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

/**
 * A child draws the same random names for its temporary files as its parent's other children,
 * whose files may be left: after some tries with names that are taken a save gives up.
 */
void chooseOtherNames()
{
    static QVector<quint32> draws(100);
    for (int i = getpid() % 10000; i > 0; --i)
        QRandomGenerator::global()->fillRange(draws.data(), draws.size());
}

/** Gives up the privileges that make every file writable. */
void becomeNobody()
{
    uid_t const nobody = 65534;
    if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
        _exit(77);
}

/** A list whose state tells its number. */
void fillWith(KpRecentFileManager& manager, int number)
{
    manager.setRecentFileFolder(QString("/state/%1/x").arg(number));
    manager.m_files.clear();
    manager.m_folders.clear();
    // States of very different length: a mixture of two would be seen.
    for (int i = 0; i < 1 + number % 60; ++i) {
        manager.m_files.append({i == 0, 1, QString("/state/%1/file%2").arg(number).arg(i), "T"});
        manager.m_folders.append({false, 1, QString("/state/%1/folder%2").arg(number).arg(i), ""});
    }
}

/** The number of the state that the file holds; -1 if it is not whole. */
int savedNumber()
{
    QStringList const saved = loadedState();
    int const number = saved.first().section('/', 2, 2).toInt();
    KpRecentFileManager expected;
    fillWith(expected, number);
    return saved == stateOf(expected) ? number : -1;
}

struct stat statusOf(QString const& file)
{
    struct stat status = {};
    if (lstat(QFile::encodeName(file).constData(), &status) != 0)
        qFatal("%s is not there", qPrintable(file));
    return status;
}

/** A number of random characters of the hard sort. */
QString trickyText(QRandomGenerator& random)
{
    static QStringList const pieces {"a", "/", "<", ">", "&", "\"", "'", "]]>", "\n", "\r", "\t",
        " ", "\x01", "\x1b", "\x7f", "\ue001", "\u00e4", "\u4e2d",
        QString::fromUtf8("\xf0\x9f\x98\x80"), "&amp;", "#$#", "\u0085", "\u2028", "%1", "<!--",
        "\uFEFF"};
    QString text;
    int const count = random.bounded(12);
    for (int i = 0; i < count; ++i)
        text += pieces.at(random.bounded(pieces.size()));
    return random.bounded(50) == 0 ? text + QString(20000, 'l') : text;
}

} // namespace

/** RecentFiles.xml: what is read from it and written to it, and what becomes of it. */
class TestRecentFilesFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void foldersAreRead_data();
    void foldersAreRead();
    void entriesAreRead_data();
    void entriesAreRead();
    void readingAppends();
    void nullElementChangesNothing();
    void longListsAreReadWhole();

    void fileIsReadOnceInAProcess();
    void failedLoadIsNotTriedAgain();
    void otherRootChangesNothing();

    void fileHasItsForm();
    void everythingComesBack();
    void randomListsComeBack();
    void typesAreWrittenWithoutSign();
    void charactersThatNoReaderGivesBackAreReplaced_data();
    void charactersThatNoReaderGivesBackAreReplaced();
    void controlCharactersComeBack_data();
    void controlCharactersComeBack();
    void controlCharactersAreWrittenAsTheyAre();
    void controlCharactersOfOlderListsAreRead();
    void listsAreSavedAsTheyStand();

    void fileIsReplacedInOneStep();
    void whatOthersHaveLeftIsRemoved();
    void permissionsStay_data();
    void permissionsStay();
    void newFileHasTheUsualPermissions();
    void linksStay();
    void linkToNothingBecomesAFile();
    void whatIsNoFileIsLeftAlone_data();
    void whatIsNoFileIsLeftAlone();
    void unwritableFileStays();
    void fileInAnUnwritableDirectoryIsWrittenDirectly_data();
    void fileInAnUnwritableDirectoryIsWrittenDirectly();
    void unwritableDirectoryGetsNoFile();
    void fileOfAnotherUserIsReplaced();
    void fullDiskKeepsTheFile_data();
    void fullDiskKeepsTheFile();
    void fileIsSavedWhenThereIsRoomAgain();
    void linkIntoAMissingFolderStays();
    void fullFileSystemKeepsTheFile();
    void killedSaveKeepsAWholeFile();
    void savesAtOnceLeaveOneOfThem();

    void everyTruncationIsHarmless();
    void hostileFilesAreHarmless_data();
    void hostileFilesAreHarmless();
    void externalEntitiesAreNotRead();

private:
    QString file() const { return KpFilePathManager::configPath("RecentFiles.xml"); }
    QByteArray content() const;
    void write(QByteArray const& bytes) const;
    QStringList entriesOfDirectory() const;
    void expectOnlyTheFile() const
    {
        QCOMPARE(entriesOfDirectory(), QStringList("RecentFiles.xml"));
    }

    QScopedPointer<Home> m_home;
};

/** Before anything has set it anew. */
void TestRecentFilesFile::initTestCase()
{
    QVERIFY(!KpRecentFileManager::s_isLoaded);
}

void TestRecentFilesFile::init()
{
    m_home.reset(new Home);
    QCoreApplication::setApplicationName("Application");
}

void TestRecentFilesFile::cleanup()
{
    KpRecentFileManager::s_isLoaded = false;
}

QByteArray TestRecentFilesFile::content() const
{
    QFile file(this->file());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestRecentFilesFile::write(QByteArray const& bytes) const
{
    QFile file(this->file());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

QStringList TestRecentFilesFile::entriesOfDirectory() const
{
    return QFileInfo(file()).dir().entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

void TestRecentFilesFile::foldersAreRead_data()
{
    QTest::addColumn<QByteArray>("elements");
    QTest::addColumn<QString>("fileFolder");
    QTest::addColumn<QString>("symbolFolder");
    QTest::addColumn<QString>("libraryFolder");
    // A dash is the folder as it was.
    QTest::newRow("none") << QByteArray() << "-"
                          << "-"
                          << "-";
    QTest::newRow("all") << QByteArray("<RecentFile V='/f'/><RecentSymbol V='/s'/>"
                                       "<RecentLibrary V='/l'/>")
                         << "/f"
                         << "/s"
                         << "/l";
    QTest::newRow("any order") << QByteArray("<RecentLibrary V='/l'/><Other/><RecentFile V='/f'/>")
                               << "/f"
                               << "-"
                               << "/l";
    QTest::newRow("without V") << QByteArray("<RecentSymbol/><RecentFile X='/f'/>") << ""
                               << ""
                               << "-";
    QTest::newRow("empty V") << QByteArray("<RecentLibrary V=''/>") << "-"
                             << "-"
                             << "";
    QTest::newRow("first of several")
        << QByteArray("<RecentFile V='/1'/><RecentFile V='/2'/>") << "/1"
        << "-"
        << "-";
    QTest::newRow("nested elsewhere") << QByteArray("<Other><RecentSymbol V='/s'/></Other>") << "-"
                                      << "-"
                                      << "-";
    QTest::newRow("other case") << QByteArray("<recentsymbol V='/s'/><RecentLibrary v='/l'/>")
                                << "-"
                                << "-"
                                << "";
}

void TestRecentFilesFile::foldersAreRead()
{
    QFETCH(QByteArray, elements);
    QFETCH(QString, fileFolder);
    QFETCH(QString, symbolFolder);
    QFETCH(QString, libraryFolder);
    KpRecentFileManager manager;
    manager.m_recentFileFolder = manager.m_symbolFolder = manager.m_libraryFolder = "-";
    QDomDocument document;
    QVERIFY(document.setContent("<RecentFiles>" + elements + "</RecentFiles>"));
    QDomElement root = document.documentElement();
    manager.parse(root);
    QCOMPARE(manager.m_recentFileFolder, fileFolder);
    QCOMPARE(manager.m_symbolFolder, symbolFolder);
    QCOMPARE(manager.m_libraryFolder, libraryFolder);
}

void TestRecentFilesFile::entriesAreRead_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QString>("line");
    auto const attributes = [](QByteArray const& text) { return "<RecentFile " + text + "/>"; };
    QTest::newRow("all") << attributes("V='/a' Type='3' TeamName='T' Top='1'") << "*3 /a [T]";
    QTest::newRow("only a path") << attributes("V='/a'") << "0 /a";
    QTest::newRow("no path") << attributes("Type='3' TeamName='T' Top='1'") << "";
    QTest::newRow("empty path") << attributes("V='' Type='3'") << "";
    QTest::newRow("white path") << attributes("V=' ' Type='3'") << "3  ";
    QTest::newRow("other name") << QByteArray("<Anything V='/a' Type='1'/>") << "1 /a";
    QTest::newRow("name of a folder") << QByteArray("<RecentFolder V='/a' Type='1'/>") << "1 /a";
    QTest::newRow("what is within is not read")
        << QByteArray("<X V='/a' Type='1'><RecentFile V='/b'/></X>") << "1 /a";
    QTest::newRow("empty type") << attributes("V='/a' Type=''") << "0 /a";
    QTest::newRow("no number") << attributes("V='/a' Type='x'") << "0 /a";
    QTest::newRow("white around") << attributes("V='/a' Type=' 3 '") << "3 /a";
    QTest::newRow("zeros before") << attributes("V='/a' Type='003'") << "3 /a";
    QTest::newRow("hexadecimal") << attributes("V='/a' Type='0x3'") << "0 /a";
    QTest::newRow("fraction") << attributes("V='/a' Type='3.0'") << "0 /a";
    QTest::newRow("negative") << attributes("V='/a' Type='-7'") << "-7 /a";
    QTest::newRow("unknown kind") << attributes("V='/a' Type='99'") << "99 /a";
    QTest::newRow("greatest") << attributes("V='/a' Type='2147483647'") << "2147483647 /a";
    QTest::newRow("too great") << attributes("V='/a' Type='2147483648'") << "0 /a";
    QTest::newRow("top 0") << attributes("V='/a' Top='0'") << "0 /a";
    QTest::newRow("top 2") << attributes("V='/a' Top='2'") << "0 /a";
    QTest::newRow("top -1") << attributes("V='/a' Top='-1'") << "0 /a";
    QTest::newRow("top true") << attributes("V='/a' Top='true'") << "0 /a";
    QTest::newRow("top empty") << attributes("V='/a' Top=''") << "0 /a";
    QTest::newRow("top 01") << attributes("V='/a' Top='01'") << "*0 /a";
    QTest::newRow("top +1") << attributes("V='/a' Top='+1'") << "*0 /a";
    QTest::newRow("top with white") << attributes("V='/a' Top=' 1 '") << "*0 /a";
    QTest::newRow("top 1.0") << attributes("V='/a' Top='1.0'") << "0 /a";
    QTest::newRow("team of spaces") << attributes("V='/a' TeamName=' '") << "0 /a [ ]";
    QTest::newRow("characters") << attributes("V='&lt;&#10;&#228;&quot;'") << "0 <\n\u00e4\"";
}

void TestRecentFilesFile::entriesAreRead()
{
    QFETCH(QByteArray, entry);
    QFETCH(QString, line);
    QStringList const lines = line.isEmpty() ? QStringList("1 /z") : QStringList {line, "1 /z"};
    QByteArray const last = "<RecentFile V='/z' Type='1'/>";
    for (bool const isFolder : {false, true}) {
        QByteArray const list = isFolder ? "RecentFolders" : "RecentFiles";
        QDomDocument document;
        QVERIFY(document.setContent("<RecentFiles><" + list + ">text" + entry + "<!-- -->" + last
            + "</" + list + "><" + list + "><X V='second list'/></" + list + "></RecentFiles>"));
        QDomElement root = document.documentElement();
        KpRecentFileManager manager;
        manager.parse(root);
        QCOMPARE(text(isFolder ? manager.m_folders : manager.m_files), lines);
        QCOMPARE(text(isFolder ? manager.m_files : manager.m_folders), QStringList());
    }
}

void TestRecentFilesFile::readingAppends()
{
    KpRecentFileManager manager;
    manager.m_files = entriesOf({"/old"});
    manager.m_folders = entriesOf({"/older"});
    manager.m_isModified = false;
    QDomDocument document;
    QVERIFY(document.setContent(
        QByteArray("<Any><RecentFiles><a V='/n' Top='1'/><a V='/old' Type='1'/></RecentFiles>"
                   "<RecentFolders><a V='/m'/></RecentFolders></Any>")));
    QDomElement root = document.documentElement();
    manager.parse(root);
    // Neither order nor duplicates are looked at.
    QCOMPARE(pathsOf(manager.m_files), QStringList({"/old", "*/n", "/old"}));
    QCOMPARE(pathsOf(manager.m_folders), QStringList({"/older", "/m"}));
    QVERIFY(!manager.m_isModified);
}

void TestRecentFilesFile::nullElementChangesNothing()
{
    KpRecentFileManager manager;
    manager.m_files = entriesOf({"/a"});
    QStringList const before = stateOf(manager);
    QDomElement null;
    manager.parse(null);
    QCOMPARE(stateOf(manager), before);
}

void TestRecentFilesFile::longListsAreReadWhole()
{
    QByteArray xml = "<RecentFiles><RecentFiles>";
    for (int i = 0; i < 100; ++i)
        xml += "<RecentFile V='/f" + QByteArray::number(i) + "' Type='1' Top='0'/>";
    write(xml + "</RecentFiles></RecentFiles>");
    KpRecentFileManager manager;
    manager.load();
    QCOMPARE(manager.m_files.size(), 100);
    KpRecentFileManager added(manager);
    added.addRecentFile("/new", 1, "");
    QCOMPARE(added.m_files.size(), 60);
    QVector<RecFileInfo> infos;
    manager.getRecentFiles(infos);
    QCOMPARE(infos.size(), 60);
    QCOMPARE(manager.m_files.size(), 60);
    QCOMPARE(manager.m_files.last().path, QString("/f59"));
}

void TestRecentFilesFile::fileIsReadOnceInAProcess()
{
    QVERIFY(!KpRecentFileManager::s_isLoaded);
    write("<RecentFiles><RecentFiles><a V='/a'/></RecentFiles></RecentFiles>");
    KpRecentFileManager first;
    first.load();
    QVERIFY(KpRecentFileManager::s_isLoaded);
    QCOMPARE(pathsOf(first.m_files), QStringList("/a"));
    first.load();
    QCOMPARE(pathsOf(first.m_files), QStringList("/a"));
    KpRecentFileManager second;
    second.load();
    QVERIFY(second.m_files.isEmpty());
}

void TestRecentFilesFile::failedLoadIsNotTriedAgain()
{
    KpRecentFileManager manager;
    QStringList const before = stateOf(manager);
    manager.load();
    QVERIFY(KpRecentFileManager::s_isLoaded);
    QCOMPARE(stateOf(manager), before);
    write("<RecentFiles><RecentFiles><a V='/a'/></RecentFiles></RecentFiles>");
    manager.load();
    QCOMPARE(stateOf(manager), before);
}

void TestRecentFilesFile::otherRootChangesNothing()
{
    QStringList const defaults = stateOf(KpRecentFileManager());
    for (QByteArray const root : {"Recent", "recentfiles", "RecentFolders"}) {
        write('<' + root + "><RecentFile V='/f'/><RecentFiles><a V='/a'/></RecentFiles></" + root
            + '>');
        QCOMPARE(loadedState(), defaults);
    }
}

void TestRecentFilesFile::fileHasItsForm()
{
    KpRecentFileManager manager;
    manager.m_recentFileFolder = "/f";
    manager.m_symbolFolder = "/s\u00e4";
    manager.m_libraryFolder = "";
    manager.m_files = {{true, 3, "/a", "T"}, {false, 1, "/b", ""}};
    manager.m_folders = {{false, 1, "/c", ""}};
    manager.save();
    QByteArray const text = content();
    // The attributes come in any order.
    QByteArray form = text;
    for (QByteArray const attribute : {"V=\"/a\"", "Type=\"3\"", "TeamName=\"T\"", "Top=\"1\"",
             "V=\"/b\"", "Type=\"1\"", "Top=\"0\"", "V=\"/c\""}) {
        QVERIFY2(form.contains(' ' + attribute), attribute);
        form.replace(' ' + attribute, "");
    }
    QCOMPARE(form,
        QByteArray("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                   "<RecentFiles>\n"
                   "    <RecentFile V=\"/f\"/>\n"
                   "    <RecentSymbol V=\"/s\303\244\"/>\n"
                   "    <RecentLibrary V=\"\"/>\n"
                   "    <RecentFiles>\n"
                   "        <RecentFile/>\n"
                   "        <RecentFile/>\n"
                   "    </RecentFiles>\n"
                   "    <RecentFolders>\n"
                   "        <RecentFolder/>\n"
                   "    </RecentFolders>\n"
                   "</RecentFiles>\n"));
    QCOMPARE(OutlineTesting::meaning(OutlineTesting::domElement(text)),
        QString("RecentFiles[](RecentFile[V=/f] RecentSymbol[V=/s\u00e4] RecentLibrary[V=] "
                "RecentFiles[](RecentFile[TeamName=T Top=1 Type=3 V=/a] "
                "RecentFile[Top=0 Type=1 V=/b]) "
                "RecentFolders[](RecentFolder[Top=0 Type=1 V=/c]))"));
    expectOnlyTheFile();
}

void TestRecentFilesFile::everythingComesBack()
{
    KpRecentFileManager manager;
    manager.setSymbolFolder("/symbols/s.x");
    manager.setLibraryFolder("/libraries/l.x");
    manager.addOpenFileInfo("/a/1.x", 0, "");
    manager.addOpenFileInfo("u#$#/Dropbox/2.x", 0, "");
    manager.addSaveFileInfo("/t/3.x", 3, "Ours");
    manager.moveRecentFileTop(2);
    manager.moveRecentFolderTop(0);
    manager.save();
    QCOMPARE(loadedState(), stateOf(manager));
    int const fresh = endOfChild([&] {
        KpRecentFileManager::s_isLoaded = false;
        KpRecentFileManager other;
        other.load();
        return stateOf(other) == stateOf(manager) ? 0 : 1;
    });
    QCOMPARE(fresh, 0);
    // Saving what was loaded gives the same again.
    QByteArray const before = content();
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager loaded;
    loaded.load();
    loaded.save();
    QCOMPARE(OutlineTesting::meaning(OutlineTesting::domElement(content())),
        OutlineTesting::meaning(OutlineTesting::domElement(before)));
}

void TestRecentFilesFile::randomListsComeBack()
{
    QRandomGenerator random = Testing::seededRandom(41);
    for (int round = 0; round < 200; ++round) {
        KpRecentFileManager manager;
        manager.m_recentFileFolder = trickyText(random);
        manager.m_symbolFolder = trickyText(random);
        manager.m_libraryFolder = trickyText(random);
        for (QList<RecFile>* const list : {&manager.m_files, &manager.m_folders}) {
            int const count = random.bounded(70);
            for (int i = 0; i < count; ++i) {
                list->append({random.bounded(2) == 1, random.bounded(8), "p" + trickyText(random),
                    trickyText(random)});
            }
        }
        manager.save();
        QCOMPARE(loadedState(), stateOf(manager));
    }
    expectOnlyTheFile();
}

void TestRecentFilesFile::typesAreWrittenWithoutSign()
{
    KpRecentFileManager manager;
    manager.m_files = {{false, -1, "/a", ""}, {false, 2147483647, "/b", ""}};
    manager.save();
    QVERIFY(content().contains("Type=\"4294967295\""));
    QVERIFY(content().contains("Type=\"2147483647\""));
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager loaded;
    loaded.load();
    QCOMPARE(text(loaded.m_files), QStringList({"0 /a", "2147483647 /b"}));
}

void TestRecentFilesFile::charactersThatNoReaderGivesBackAreReplaced_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("read");
    QChar const high(ushort(0xD83D));
    QChar const low(ushort(0xDE00));
    QString const mark(QChar::ReplacementCharacter);
    for (ushort const code : QVector<ushort> {0x00, 0xFFFE, 0xFFFF})
        QTest::addRow("U+%04X", code) << "a" + QString(QChar(code)) + "b"
                                      << "a" + mark + "b";
    for (ushort const code :
        QVector<ushort> {0x20, 0xD7FF, 0xE000, 0xE001, 0xF8FF, 0xFDD0, 0xFFFD}) {
        QString const same = "a" + QString(QChar(code)) + "b";
        QTest::addRow("U+%04X stays", code) << same << same;
    }
    QTest::newRow("a pair stays") << QString(high) + low << QString(high) + low;
    QTest::newRow("first half") << "a" + QString(high) + "b"
                                << "a" + mark + "b";
    QTest::newRow("second half") << "a" + QString(low) + "b"
                                 << "a" + mark + "b";
    QTest::newRow("first half at the end") << "a" + QString(high) << "a" + mark;
    QTest::newRow("halves the wrong way round") << QString(low) + high << mark + mark;
    QTest::newRow("a half before a pair")
        << QString(high) + high + low << mark + QString(high) + low;
}

void TestRecentFilesFile::charactersThatNoReaderGivesBackAreReplaced()
{
    QFETCH(QString, written);
    QFETCH(QString, read);
    KpRecentFileManager manager;
    manager.m_recentFileFolder = manager.m_symbolFolder = manager.m_libraryFolder = written;
    manager.m_files = {{false, 1, "/whole", ""}, {false, 1, written, written}};
    manager.m_folders = {{false, 1, written, written}};
    manager.save();
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager loaded;
    loaded.load();
    QCOMPARE(loaded.m_recentFileFolder, read);
    QCOMPARE(loaded.m_symbolFolder, read);
    QCOMPARE(loaded.m_libraryFolder, read);
    QCOMPARE(pathsOf(loaded.m_files), QStringList({"/whole", read}));
    QCOMPARE(loaded.m_files.last().teamName, read);
    QCOMPARE(pathsOf(loaded.m_folders), QStringList(read));
    // In memory all is as it was.
    QCOMPARE(manager.m_files.last().path, written);
}

void TestRecentFilesFile::controlCharactersComeBack_data()
{
    QTest::addColumn<QString>("text");
    QString all;
    auto const row = [&all](ushort code) {
        QTest::addRow("U+%04X", code) << QString(QChar(code));
        all += QChar(code);
    };
    for (ushort code = 0x01; code <= 0x1F; ++code)
        row(code);
    for (ushort code = 0x7F; code <= 0x9F; ++code)
        row(code);
    QTest::newRow("all") << all;
    QString backwards;
    for (QChar const character : qAsConst(all))
        backwards.prepend(character);
    QTest::newRow("mixed") << backwards + " <&>\"'" + all + "]]>" + backwards;
    QTest::newRow("line ends") << "\r\n\n\r\r\t \t\n";
    QTest::newRow("line ends beside others") << "\x01\r\n\x02\n\x03\t\x04\r\x85\x1f ";
    QTest::newRow("beside what stands for them")
        << "\x01\x1f" + QString(QChar(0xE001)) + "&#xE001;";
}

void TestRecentFilesFile::controlCharactersComeBack()
{
    QFETCH(QString, text);
    QStringList forms {"%1/%1"};
    if (!Testing::sanitized)
        forms << "%1"
              << "/a%1b";
    for (QString const& form : qAsConst(forms)) {
        QString const written = form.arg(text);
        KpRecentFileManager manager;
        manager.m_recentFileFolder = manager.m_symbolFolder = manager.m_libraryFolder = written;
        manager.m_files = {{true, 3, written, written}, {false, 1, "/plain", ""}};
        manager.m_folders = {{false, 1, written, written}};
        manager.save();
        int const fresh = endOfChild([&] {
            KpRecentFileManager::s_isLoaded = false;
            KpRecentFileManager other;
            other.load();
            return stateOf(other) == stateOf(manager) ? 0 : 1;
        });
        QCOMPARE(fresh, 0);
    }
}

void TestRecentFilesFile::controlCharactersAreWrittenAsTheyAre()
{
    KpRecentFileManager manager;
    manager.m_symbolFolder = "/\x01\x1f\x7f";
    // But for those three, of which a reader would make blanks.
    manager.m_libraryFolder = "/\t\n\r";
    manager.save();
    QVERIFY2(content().contains("<RecentSymbol V=\"/\x01\x1f\x7f\"/>"), content().constData());
    QVERIFY2(content().contains("<RecentLibrary V=\"/&#x9;&#xa;&#xd;\"/>"), content().constData());
}

/** Byte by byte what the application wrote before. */
void TestRecentFilesFile::controlCharactersOfOlderListsAreRead()
{
    write("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
          "<RecentFiles>\n"
          "    <RecentFile V=\"/f\x01\"/>\n"
          "    <RecentSymbol V=\"/s&#x9;&#xa;&#xd;\x0b\"/>\n"
          "    <RecentLibrary V=\"/l\x7f\xc2\x85\"/>\n"
          "    <RecentFiles>\n"
          "        <RecentFile V=\"/a\x1b[31m.x\" Type=\"1\" Top=\"1\"/>\n"
          "        <RecentFile TeamName=\"\x02&amp;\x03\" V=\"/b\" Top=\"0\" Type=\"3\"/>\n"
          "    </RecentFiles>\n"
          "    <RecentFolders>\n"
          "        <RecentFolder Top=\"0\" Type=\"1\" V=\"/\xc3\xa4\x1f\"/>\n"
          "    </RecentFolders>\n"
          "</RecentFiles>\n");
    QStringList const expected {"/f\x01", "/s\t\n\r\x0b", QString::fromUtf8("/l\x7f\xc2\x85"),
        "*1 /a\x1b[31m.x", "3 /b [\x02&\x03]", "--", QString::fromUtf8("1 /\xc3\xa4\x1f")};
    QCOMPARE(loadedState(), expected);
    // The next save does not lose them.
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager manager;
    manager.load();
    manager.save();
    QCOMPARE(loadedState(), expected);
}

void TestRecentFilesFile::listsAreSavedAsTheyStand()
{
    KpRecentFileManager manager;
    manager.m_maxCount = 2;
    manager.m_isModified = false;
    manager.m_files = entriesOf({"/1", "*/2", "/3", "/1"});
    manager.save();
    QCOMPARE(manager.m_files.size(), 4);
    QVERIFY(!manager.m_isModified);
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager loaded;
    loaded.load();
    QCOMPARE(pathsOf(loaded.m_files), QStringList({"/1", "*/2", "/3", "/1"}));
}

void TestRecentFilesFile::fileIsReplacedInOneStep()
{
    write("old");
    QString const other = m_home->path() + "/other";
    QCOMPARE(link(QFile::encodeName(file()).constData(), QFile::encodeName(other).constData()), 0);
    ino_t const before = statusOf(file()).st_ino;
    KpRecentFileManager().save();
    QVERIFY(statusOf(file()).st_ino != before);
    QFile kept(other);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("old"));
    expectOnlyTheFile();
}

void TestRecentFilesFile::whatOthersHaveLeftIsRemoved()
{
    QString const list = KpFilePathManager::configPath("RecentFiles.xml");
    QFile left(QFileInfo(list).path() + "/.kpgeometry-save-0123456789abcdef");
    QVERIFY(left.open(QIODevice::WriteOnly));
    left.close();
    KpRecentFileManager manager;
    manager.save();
    QVERIFY(!left.exists());
    QVERIFY(QFile::exists(list));
}

void TestRecentFilesFile::permissionsStay_data()
{
    QTest::addColumn<unsigned int>("mode");
    for (unsigned int const mode : {0600U, 0640U, 0644U, 0664U, 0666U, 0700U})
        QTest::addRow("%04o", mode) << mode;
    // Others than root cannot write to these, see unwritableFileStays().
    if (geteuid() == 0) {
        QTest::newRow("0444") << 0444U;
        QTest::newRow("0000") << 0000U;
    }
}

void TestRecentFilesFile::permissionsStay()
{
    QFETCH(unsigned int, mode);
    write("old");
    QCOMPARE(chmod(QFile::encodeName(file()).constData(), mode), 0);
    KpRecentFileManager().save();
    QVERIFY(content().contains("RecentFolders"));
    QCOMPARE(statusOf(file()).st_mode & 07777U, mode);
}

void TestRecentFilesFile::newFileHasTheUsualPermissions()
{
    mode_t const before = umask(027);
    KpRecentFileManager().save();
    umask(before);
    QCOMPARE(statusOf(file()).st_mode & 07777U, 0640U);
}

void TestRecentFilesFile::linksStay()
{
    QString const target = m_home->path() + "/kept.xml";
    QVERIFY(QFile::link(m_home->path() + "/second", file()));
    QVERIFY(QFile::link("kept.xml", m_home->path() + "/second"));
    QFile kept(target);
    QVERIFY(kept.open(QIODevice::WriteOnly));
    kept.close();
    KpRecentFileManager().save();
    QVERIFY(QFileInfo(file()).isSymLink());
    QVERIFY(QFileInfo(m_home->path() + "/second").isSymLink());
    QVERIFY(!QFileInfo(target).isSymLink());
    QVERIFY(content().contains("RecentFolders"));
    expectOnlyTheFile();
}

void TestRecentFilesFile::linkToNothingBecomesAFile()
{
    QVERIFY(QFile::link(m_home->path() + "/later.xml", file()));
    KpRecentFileManager().save();
    QVERIFY(QFileInfo(file()).isSymLink());
    QVERIFY(QFileInfo(m_home->path() + "/later.xml").isFile());
    QVERIFY(content().contains("RecentFolders"));
}

void TestRecentFilesFile::whatIsNoFileIsLeftAlone_data()
{
    QTest::addColumn<QString>("kind");
    for (char const* const kind : {"pipe", "directory", "link to a device"})
        QTest::newRow(kind) << kind;
}

void TestRecentFilesFile::whatIsNoFileIsLeftAlone()
{
    QFETCH(QString, kind);
    QByteArray const name = QFile::encodeName(file());
    // A device that nothing can replace: no file is made among terminals.
    int const screen = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    QVERIFY(unlockpt(screen) == 0);
    char const* const device = ptsname(screen);
    if (kind == "pipe")
        QCOMPARE(mkfifo(name.constData(), 0600), 0);
    else if (kind == "directory")
        QCOMPARE(mkdir(name.constData(), 0700), 0);
    else
        QCOMPARE(symlink(device, name.constData()), 0);
    struct stat const before = statusOf(file());
    KpRecentFileManager().save();
    QCOMPARE(statusOf(file()).st_ino, before.st_ino);
    QCOMPARE(statusOf(file()).st_mode, before.st_mode);
    QVERIFY(!QFileInfo(QFile::decodeName(device)).isFile());
    close(screen);
    expectOnlyTheFile();
}

void TestRecentFilesFile::unwritableFileStays()
{
    write("old");
    QCOMPARE(chmod(QFile::encodeName(file()).constData(), 0444), 0);
    // The directory is open to the child, which may be another user.
    QCOMPARE(chmod(QFile::encodeName(QFileInfo(file()).path()).constData(), 0777), 0);
    for (QString const& folder : {m_home->path(), m_home->path() + "/config"})
        QCOMPARE(chmod(QFile::encodeName(folder).constData(), 0755), 0);
    auto const save = [] {
        becomeNobody();
        KpRecentFileManager manager;
        manager.save();
        return manager.m_maxCount == 60 ? 0 : 1;
    };
    QCOMPARE(endOfChild(save), 0);
    QCOMPARE(content(), QByteArray("old"));
    QCOMPARE(chmod(QFile::encodeName(file()).constData(), 0666), 0);
    QCOMPARE(endOfChild(save), 0);
    QVERIFY(content().contains("RecentFolders"));
}

void TestRecentFilesFile::fileInAnUnwritableDirectoryIsWrittenDirectly_data()
{
    QTest::addColumn<unsigned int>("mode"); // of the file, which is another user's
    QTest::addColumn<bool>("isLink");
    QTest::addColumn<bool>("isWritten");
    QTest::newRow("writable") << 0666U << false << true;
    QTest::newRow("writable for others alone") << 0602U << false << true;
    QTest::newRow("link to a writable one") << 0666U << true << true;
    QTest::newRow("read-only") << 0444U << false << false;
    QTest::newRow("link to a read-only one") << 0644U << true << false;
}

void TestRecentFilesFile::fileInAnUnwritableDirectoryIsWrittenDirectly()
{
    if (geteuid() != 0) {
        qInfo("only root can become another user: not run");
        return;
    }
    QFETCH(unsigned int, mode);
    QFETCH(bool, isLink);
    QFETCH(bool, isWritten);
    QByteArray const directory = QFile::encodeName(QFileInfo(file()).path());
    QByteArray const target =
        isLink ? QFile::encodeName(m_home->path()) + "/kept.xml" : QFile::encodeName(file());
    if (isLink)
        QCOMPARE(symlink(target.constData(), QFile::encodeName(file()).constData()), 0);
    // Longer than the list that takes its place.
    QByteArray const before = "old" + QByteArray(10000, ' ');
    write(before);
    QCOMPARE(chmod(target.constData(), mode), 0);
    for (QString const& folder : {m_home->path(), m_home->path() + "/config"})
        QCOMPARE(chmod(QFile::encodeName(folder).constData(), 0755), 0);
    QCOMPARE(chmod(directory.constData(), 0555), 0);
    struct stat const status = statusOf(QFile::decodeName(target));
    KpRecentFileManager manager;
    fillWith(manager, 7);
    int const end = endOfChild([&] {
        becomeNobody();
        manager.save();
        return 0;
    });
    QCOMPARE(end, 0);
    QCOMPARE(content() == before, !isWritten);
    if (isWritten)
        QCOMPARE(savedNumber(), 7);
    QCOMPARE(statusOf(QFile::decodeName(target)).st_ino, status.st_ino);
    QCOMPARE(statusOf(QFile::decodeName(target)).st_mode, status.st_mode);
    QCOMPARE(statusOf(QFile::decodeName(target)).st_uid, status.st_uid);
    QCOMPARE(QFileInfo(file()).isSymLink(), isLink);
    expectOnlyTheFile();
}

void TestRecentFilesFile::unwritableDirectoryGetsNoFile()
{
    if (geteuid() != 0) {
        qInfo("only root can become another user: not run");
        return;
    }
    for (QString const& folder : {m_home->path(), m_home->path() + "/config"})
        QCOMPARE(chmod(QFile::encodeName(folder).constData(), 0755), 0);
    QCOMPARE(chmod(QFile::encodeName(QFileInfo(file()).path()).constData(), 0555), 0);
    int const end = endOfChild([] {
        becomeNobody();
        KpRecentFileManager().save();
        return 0;
    });
    QCOMPARE(end, 0);
    QCOMPARE(entriesOfDirectory(), QStringList());
}

/** Where the directory can be written to, another user's file is replaced as ever. */
void TestRecentFilesFile::fileOfAnotherUserIsReplaced()
{
    if (geteuid() != 0) {
        qInfo("only root can become another user: not run");
        return;
    }
    write("old");
    QCOMPARE(chmod(QFile::encodeName(file()).constData(), 0666), 0);
    for (QString const& folder : {m_home->path(), m_home->path() + "/config"})
        QCOMPARE(chmod(QFile::encodeName(folder).constData(), 0755), 0);
    QCOMPARE(chmod(QFile::encodeName(QFileInfo(file()).path()).constData(), 0777), 0);
    ino_t const before = statusOf(file()).st_ino;
    int const end = endOfChild([] {
        becomeNobody();
        KpRecentFileManager().save();
        return 0;
    });
    QCOMPARE(end, 0);
    QVERIFY(content().contains("RecentFolders"));
    QVERIFY(statusOf(file()).st_ino != before);
    QCOMPARE(statusOf(file()).st_mode & 07777U, 0666U);
    expectOnlyTheFile();
}

void TestRecentFilesFile::fullDiskKeepsTheFile_data()
{
    QTest::addColumn<int>("limit");
    for (int const limit : {0, 1, 100, 4095, 4096, 8192, 16384, 20000})
        QTest::addRow("room for %d bytes", limit) << limit;
}

void TestRecentFilesFile::fullDiskKeepsTheFile()
{
    QFETCH(int, limit);
    KpRecentFileManager manager;
    fillWith(manager, 3);
    manager.save();
    QCOMPARE(savedNumber(), 3);
    fillWith(manager, 59 + 60 * 1000);
    manager.m_files.last().teamName = QString(20000, 't');
    auto const saveWithin = [&](bool isSignalIgnored) {
        return endOfChild([&] {
            std::signal(SIGXFSZ, isSignalIgnored ? SIG_IGN : SIG_DFL);
            rlimit const room {rlim_t(limit), rlim_t(limit)};
            setrlimit(RLIMIT_FSIZE, &room);
            manager.save();
            return 0;
        });
    };
    QCOMPARE(saveWithin(true), 0);
    QCOMPARE(savedNumber(), 3);
    expectOnlyTheFile();
    QCOMPARE(saveWithin(false), -SIGXFSZ);
    QCOMPARE(savedNumber(), 3);
}

void TestRecentFilesFile::fileIsSavedWhenThereIsRoomAgain()
{
    KpRecentFileManager manager;
    fillWith(manager, 3);
    manager.save();
    fillWith(manager, 5);
    rlimit usual {};
    getrlimit(RLIMIT_FSIZE, &usual);
    rlimit const lower {100, usual.rlim_max};
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &lower);
    manager.save();
    setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, handler);
    QCOMPARE(savedNumber(), 3);
    expectOnlyTheFile();
    manager.save();
    QCOMPARE(savedNumber(), 5);
    expectOnlyTheFile();
}

void TestRecentFilesFile::linkIntoAMissingFolderStays()
{
    QString const target = QFileInfo(file()).path() + "/none/list";
    QVERIFY(QFile::link(target, file()));
    KpRecentFileManager manager;
    fillWith(manager, 3);
    manager.save();
    QCOMPARE(QFileInfo(file()).symLinkTarget(), target);
    QVERIFY(!QFileInfo::exists(QFileInfo(target).path()));
}

void TestRecentFilesFile::fullFileSystemKeepsTheFile()
{
    QByteArray const directory = QFile::encodeName(QFileInfo(file()).path());
    auto const child = [&] {
        // A small file system in the place of the directory, for this process only.
        if (unshare(CLONE_NEWNS) != 0
            || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
            || mount("tmpfs", directory.constData(), "tmpfs", 0, "size=64k") != 0)
            return 77;
        KpRecentFileManager manager;
        fillWith(manager, 3);
        manager.save();
        if (savedNumber() != 3)
            return 1;
        fillWith(manager, 59);
        manager.m_files.last().teamName = QString(60000, 't');
        manager.save();
        if (savedNumber() != 3 || entriesOfDirectory() != QStringList("RecentFiles.xml"))
            return 2;
        manager.m_files.last().teamName = QString(1000, 't');
        manager.save();
        return loadedState() == stateOf(manager) ? 0 : 3;
    };
    int const end = endOfChild(child);
    if (end == 77)
        qInfo("this process may not mount a file system: not run");
    else
        QCOMPARE(end, 0);
}

void TestRecentFilesFile::killedSaveKeepsAWholeFile()
{
    int const rounds = Testing::sanitized ? 60 : 1000;
    QRandomGenerator random = Testing::seededRandom(42);
    // How often a save has begun and ended, also seen from outside.
    auto* const counters = static_cast<std::atomic<int>*>(mmap(nullptr,
        2 * sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    QVERIFY(counters != MAP_FAILED);
    auto const killWhileRunning = [&](std::function<void(int)> const& change) {
        counters[0] = counters[1] = 0;
        pid_t const child = fork();
        if (child == 0) {
            chooseOtherNames();
            for (int i = 1;; ++i) {
                ++counters[0];
                change(i);
                ++counters[1];
            }
        }
        auto const waitForSave = [&](int number) {
            while (counters[1] < number && waitpid(child, nullptr, WNOHANG) == 0) { }
        };
        waitForSave(1);
        QElapsedTimer save;
        save.start();
        waitForSave(2);
        // Any moment of the next can be the last, however long a save takes here.
        usleep(random.bounded(1 + unsigned(save.nsecsElapsed() / 1000)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        return counters[0] != counters[1];
    };
    KpRecentFileManager manager;
    int withinSave = 0;
    for (int round = 0; round < rounds; ++round) {
        bool const isWithin = killWhileRunning([&](int i) {
            fillWith(manager, i % 1000);
            manager.save();
        });
        withinSave += isWithin ? 1 : 0;
        int const number = savedNumber();
        int const last = counters[1];
        QVERIFY2(number == last % 1000 || number == (last + 1) % 1000,
            qPrintable(QString("%1 after %2 saves").arg(number).arg(last)));
    }
    qInfo("%d of %d kills within a save, %d temporary files left", withinSave, rounds,
        entriesOfDirectory().size() - 1);
    QVERIFY(withinSave > rounds / 2);
    // Whoever writes into the file itself is caught.
    int broken = 0;
    for (int round = 0; round < 1000 && broken == 0; ++round) {
        QString const name = file();
        killWhileRunning([&](int i) {
            fillWith(manager, i % 1000);
            manager.save();
            QFile whole(name);
            whole.open(QIODevice::ReadOnly);
            QByteArray const bytes = whole.readAll();
            QFile truncated(name);
            truncated.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered);
            truncated.write(bytes.left(bytes.size() / 2));
            usleep(300);
            truncated.write(bytes.mid(bytes.size() / 2));
        });
        broken += savedNumber() == -1 ? 1 : 0;
    }
    QVERIFY(broken > 0);
    munmap(counters, 2 * sizeof(std::atomic<int>));
}

void TestRecentFilesFile::savesAtOnceLeaveOneOfThem()
{
    int const rounds = Testing::sanitized ? 20 : 200;
    int wins[2] = {};
    for (int round = 0; round < rounds; ++round) {
        pid_t children[2];
        for (int i = 0; i < 2; ++i) {
            children[i] = fork();
            if (children[i] == 0) {
                chooseOtherNames();
                KpRecentFileManager manager;
                fillWith(manager, i == 0 ? 2 : 59);
                for (int save = 0; save < 5; ++save)
                    manager.save();
                _exit(0);
            }
        }
        for (pid_t const child : children)
            waitpid(child, nullptr, 0);
        int const number = savedNumber();
        QVERIFY2(number == 2 || number == 59, qPrintable(QString::number(number)));
        ++wins[number == 2 ? 0 : 1];
    }
    qInfo("the one has won %d times, the other %d times", wins[0], wins[1]);
    expectOnlyTheFile();
}

void TestRecentFilesFile::everyTruncationIsHarmless()
{
    KpRecentFileManager manager;
    fillWith(manager, 5);
    manager.m_files.last().path = "/\u00e4\u4e2d&<";
    manager.save();
    QByteArray const whole = content();
    QStringList const state = stateOf(manager);
    QStringList const defaults = stateOf(KpRecentFileManager());
    for (int size = 0; size <= whole.size(); ++size) {
        write(whole.left(size));
        // Only the line feed at the end can be missed.
        QCOMPARE(loadedState(), size >= whole.size() - 1 ? state : defaults);
    }
}

void TestRecentFilesFile::hostileFilesAreHarmless_data()
{
    QTest::addColumn<std::function<QByteArray()>>("made");
    QTest::addColumn<int>("files"); // that are read from it
    auto const inLists = [](QByteArray const& entries) {
        return "<RecentFiles><RecentFiles>" + entries + "</RecentFiles></RecentFiles>";
    };
    auto const row = [](char const* name, int files, std::function<QByteArray()> const& made) {
        QTest::newRow(name) << made << files;
    };
    row("empty", 0, [] { return QByteArray(); });
    row("binary", 0, [] { return QByteArray("\0\1\2\377\376<RecentFiles/>", 19); });
    row("zeros", 0, [] { return QByteArray(1000000, '\0'); });
    row("a million nested elements", 0,
        [] { return QByteArray("<RecentFiles>").repeated(1000000); });
    row("nested and closed", 0, [=] {
        return inLists(QByteArray("<a>").repeated(1000000) + QByteArray("</a>").repeated(1000000));
    });
    row("entity bomb", 0, [=] {
        QByteArray text = "<!DOCTYPE x [<!ENTITY e0 \"0123456789\">";
        for (int i = 1; i < 10; ++i) {
            QByteArray const inner = "&e" + QByteArray::number(i - 1) + ';';
            text += "<!ENTITY e" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
        }
        return text + "]>" + inLists("<a V='&e9;'/>");
    });
    row("default attribute bomb", 0, [=] {
        return "<!DOCTYPE x [<!ATTLIST a V CDATA \"" + QByteArray(4000, 'x') + "\">]>"
            + inLists(QByteArray("<a/>").repeated(400000));
    });
    row("attribute of 50 MB", 1,
        [=] { return inLists("<a V='" + QByteArray(50000000, 'x') + "' Type='1'/>"); });
    if (!Testing::sanitized) {
        row("20 million control characters", 1,
            [=] { return inLists("<a V='" + QByteArray(20000000, '\x01') + "' Type='1'/>"); });
        // Each counts as three bytes.
        row("25 million control characters", 0,
            [=] { return inLists("<a V='" + QByteArray(25000000, '\x01') + "' Type='1'/>"); });
    }
    row("control characters in 100,000 entries", 100000, [=] {
        return inLists(QByteArray("<a V='/b\x01' Type='1' TeamName='\x02'/>").repeated(100000));
    });
    row("100,000 entries", 100000, [=] {
        QByteArray entries;
        for (int i = 0; i < 100000; ++i) {
            entries += "<RecentFile V='/some/folder/with/a/drawing" + QByteArray::number(i)
                + ".x' Type='1' TeamName='Team' Top='" + (i % 3 == 0 ? "1" : "0") + "'/>\n";
        }
        return inLists(entries);
    });
    row("a million entries", 0,
        [=] { return inLists(QByteArray("<a V='/b' Type='1'/>").repeated(1000000)); });
    row("above 64 MiB", 0, [=] { return inLists("<a V='" + QByteArray(68000000, 'x') + "'/>"); });
    row("many attributes", 0, [=] {
        QByteArray attributes;
        for (int i = 0; i < 5000; ++i)
            attributes += " a" + QByteArray::number(i) + "=''";
        return inLists("<a" + attributes + '>');
    });
    row("other encoding", 1,
        [=] { return "<?xml version='1.0' encoding='iso-8859-1'?>" + inLists("<a V='\344'/>"); });
}

void TestRecentFilesFile::hostileFilesAreHarmless()
{
    QFETCH(std::function<QByteArray()>, made);
    QFETCH(int, files);
    write(made());
    int report[2];
    QCOMPARE(pipe(report), 0);
    int const end = endOfChild([&] {
        KpRecentFileManager manager;
        manager.load();
        if (manager.m_files.size() != files)
            return 1;
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        if (::write(report[1], &usage.ru_maxrss, sizeof usage.ru_maxrss) < 0)
            return 2;
        // All goes on afterwards.
        manager.addOpenFileInfo("/new/file", 0, "");
        QVector<RecFileInfo> infos;
        manager.getRecentFiles(infos);
        manager.getRecentFolder(infos);
        if (manager.m_files.size() > 60 || infos.isEmpty())
            return 3;
        manager.save();
        return loadedState() == stateOf(manager) ? 0 : 4;
    });
    QCOMPARE(end, 0);
    long kilobytes = 0;
    QCOMPARE(read(report[0], &kilobytes, sizeof kilobytes), ssize_t(sizeof kilobytes));
    close(report[0]);
    close(report[1]);
    qInfo("%ld MB", kilobytes / 1024);
    QVERIFY(Testing::sanitized || kilobytes / 1024 < 700);
}

void TestRecentFilesFile::externalEntitiesAreNotRead()
{
    QFile secret(m_home->path() + "/secret");
    QVERIFY(secret.open(QIODevice::WriteOnly));
    secret.write("hidden");
    secret.close();
    write("<!DOCTYPE x [<!ENTITY e SYSTEM \"file://" + QFile::encodeName(secret.fileName())
        + "\">]><RecentFiles><RecentFile V='/f'/><RecentFiles><a V='/a' Type='1'>&e;</a>"
          "</RecentFiles></RecentFiles>");
    QVERIFY(!loadedState().join('\n').contains("hidden"));
}

QTEST_GUILESS_MAIN(TestRecentFilesFile)
#include "tst_recentfilesfile.moc"
