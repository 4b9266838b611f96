// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "testing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>
#include <memory>
#include <vector>

#include <sys/stat.h>

using namespace KpgeomTesting;

namespace {

/** A list as the application writes it: two pinned files, two others, two folders. */
QByteArray const usualFile =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<RecentFiles>\n"
    "    <RecentFile V=\"/home/u/Documents\"/>\n"
    "    <RecentSymbol V=\"/s\"/>\n"
    "    <RecentLibrary V=\"/l\"/>\n"
    "    <RecentFiles>\n"
    "        <RecentFile V=\"/home/u/Documents/p/a.x\" Type=\"1\" Top=\"1\"/>\n"
    "        <RecentFile V=\"7#$#/Dropbox/sub/b.x\" Type=\"5\" Top=\"1\"/>\n"
    "        <RecentFile V=\"/c/Team/c.x\" Type=\"3\" TeamName=\"Ours\" Top=\"0\"/>\n"
    "        <RecentFile V=\"/d/d.x\" Type=\"1\" Top=\"0\"/>\n"
    "    </RecentFiles>\n"
    "    <RecentFolders>\n"
    "        <RecentFolder V=\"/home/u/Documents/p\" Type=\"1\" Top=\"0\"/>\n"
    "        <RecentFolder V=\"/d\" Type=\"1\" Top=\"0\"/>\n"
    "    </RecentFolders>\n"
    "</RecentFiles>\n";

/** A folder with a configuration directory in it, and a user whose home is /home/u. */
class RecentWorkplace : public Workplace
{
public:
    explicit RecentWorkplace(QByteArray const& file = usualFile)
    {
        QDir(path()).mkdir("cfg");
        if (!file.isEmpty())
            write("cfg/RecentFiles.xml", file);
    }

    Result recent(QStringList const& arguments) const
    {
        return runAtHome(QStringList {"recent", "--config", "cfg"} + arguments);
    }

    Result runAtHome(QStringList const& arguments) const
    {
        Start start;
        start.variables = {{"HOME", "/home/u"}};
        return run(arguments, start);
    }

    /** What `list` or `folders` tells. */
    QJsonObject json(QString const& action = "list") const
    {
        return QJsonDocument::fromJson(recent({action, "--json"}).out).object();
    }

    /** The paths of a list in order, the pinned ones with a star. */
    QStringList paths(QString const& list = "files") const
    {
        QStringList paths;
        QJsonArray const entries = json().value(list).toArray();
        for (QJsonValue const& entry : entries) {
            paths << (entry["pinned"].toBool() ? QString("*") : QString())
                    + entry["path"].toString();
        }
        return paths;
    }
};

} // namespace

/** The command about recent files. */
class TestKpgeomRecent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listShowsWhatTheApplicationShows();
    void listAsJson();
    void foldersAreListedAlone();
    void emptyListsAreToldAsSuch();
    void listingChangesNothing();
    void oddEntriesAreToldWithTheirPlace_data();
    void oddEntriesAreToldWithTheirPlace();
    void namesStayOnTheirLine();
    void controlCharactersAreKept();

    void filesAreAddedInOrder();
    void relativePathsAreMadeAbsolute();
    void addingMakesTheFile();
    void addingBehindAPinnedEntryIsTold();
    void rowsOfTheListPinAndRemove();
    void pinningTheFirstAgainIsTold();
    void unpinnedEntryIsTheNewest();
    void removedByRowOrPath_data();
    void removedByRowOrPath();
    void foldersArePinnedAndRemoved();
    void permissionsAndLinksSurvive();

    void unreadableFilesAreToldAndKept_data();
    void unreadableFilesAreToldAndKept();
    void missingFileIsAnEmptyList();
    void missingFileIsTold();
    void missingDirectoryIsTold();
    void noNameIsTold();
    void loopOfLinksStays();
    void fileOfADirectoryThatIsGoneIsNotAdded();
    void unwritableFileIsTold();
    void fileInAnUnwritableDirectoryIsWritten();
    void fileThatIsLeftBrokenIsTold();
    void writersAtOnceAllSave();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void defaultIsThePlatformsDirectory();
};

void TestKpgeomRecent::listShowsWhatTheApplicationShows()
{
    Result const result = RecentWorkplace().recent({"list"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(QString::fromUtf8(result.out),
        // clang-format off
        QString("last file from:    /home/u/Documents\n"
                "last symbol from:  /s\n"
                "last library from: /l\n"
                "\n"
                "files: 4\n"
                "index  pin  remove  pinned  kind     name  location      path\n"
                "    0    0       0  yes     local    a.x   Documents>p   /home/u/Documents/p/a.x\n"
                "    1    1       2  yes     Dropbox  b.x   >Dropbox>sub  7#$#/Dropbox/sub/b.x\n"
                "    2    3       3  -       team     c.x   >c>Team       /c/Team/c.x\n"
                "    3    4       4  -       local    d.x   >d            /d/d.x\n"
                "\n"
                "folders: 2\n"
                "index  pin  remove  pinned  kind   name  location     path\n"
                "    0    0       0  -       local  p     Documents>p  /home/u/Documents/p\n"
                "    1    1       1  -       local  d     >d           /d\n"));
    // clang-format on
}

void TestKpgeomRecent::listAsJson()
{
    QJsonObject const json = RecentWorkplace().json();
    QCOMPARE(json.value("file").toString(), QString("cfg/RecentFiles.xml"));
    QCOMPARE(json.value("fileFolder").toString(), QString("/home/u/Documents"));
    QCOMPARE(json.value("symbolFolder").toString(), QString("/s"));
    QCOMPARE(json.value("libraryFolder").toString(), QString("/l"));
    QCOMPARE(json.value("files").toArray().size(), 4);
    QJsonObject const team {{"index", 2}, {"pinRow", 3}, {"removeRow", 3}, {"pinned", false},
        {"type", 3}, {"kind", "team"}, {"name", "c.x"}, {"location", ">c>Team"},
        {"path", "/c/Team/c.x"}, {"team", "Ours"}};
    QCOMPARE(json.value("files").toArray().at(2).toObject(), team);
    QJsonObject const folder {{"index", 0}, {"pinRow", 0}, {"removeRow", 0}, {"pinned", false},
        {"type", 1}, {"kind", "local"}, {"name", "p"}, {"location", "Documents>p"},
        {"path", "/home/u/Documents/p"}, {"team", ""}};
    QCOMPARE(json.value("folders").toArray().at(0).toObject(), folder);
}

void TestKpgeomRecent::foldersAreListedAlone()
{
    RecentWorkplace const place;
    Result const result = place.recent({"folders"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out,
        QByteArray("folders: 2\n"
                   "index  pin  remove  pinned  kind   name  location     path\n"
                   "    0    0       0  -       local  p     Documents>p  /home/u/Documents/p\n"
                   "    1    1       1  -       local  d     >d           /d\n"));
    QCOMPARE(place.json("folders").keys(), QStringList({"file", "folders"}));
    QCOMPARE(place.json("folders").value("folders"), place.json().value("folders"));
}

void TestKpgeomRecent::emptyListsAreToldAsSuch()
{
    Result const result = RecentWorkplace("<RecentFiles/>").recent({"list"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out,
        QByteArray("last file from:    /home/u/Documents\n"
                   "last symbol from:  /home/u/Documents\n"
                   "last library from: /home/u/Documents\n"
                   "\nfiles: none\n\nfolders: none\n"));
}

void TestKpgeomRecent::listingChangesNothing()
{
    RecentWorkplace const place;
    COMPARE_EXIT(place.recent({"list"}), 0);
    COMPARE_EXIT(place.recent({"folders"}), 0);
    QCOMPARE(place.read("cfg/RecentFiles.xml"), usualFile);
}

void TestKpgeomRecent::oddEntriesAreToldWithTheirPlace_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("oddity");
    auto const files = [](QByteArray const& entries) {
        return "<RecentFiles><RecentFiles>\n" + entries + "</RecentFiles></RecentFiles>";
    };
    QByteArray const good = "<RecentFile V=\"/a\" Type=\"1\" Top=\"0\"/>\n";
    QTest::newRow("other root") << QByteArray("<Recent/>")
                                << QByteArray("1:9: the root is Recent, not RecentFiles: "
                                              "nothing is read");
    QTest::newRow("foreign element") << QByteArray("<RecentFiles>\n<Other/></RecentFiles>")
                                     << QByteArray("2:8: element Other is ignored");
    QTest::newRow("second list") << QByteArray(
        "<RecentFiles><RecentFiles/>\n<RecentFiles/></RecentFiles>")
                                 << QByteArray("2:14: a second RecentFiles is ignored");
    QTest::newRow("no folder") << QByteArray("<RecentFiles>\n<RecentSymbol/></RecentFiles>")
                               << QByteArray("2:15: RecentSymbol names no folder");
    QTest::newRow("no path") << files("<RecentFile Type=\"1\" Top=\"0\"/>")
                             << QByteArray("2:30: an entry without a path is left out");
    QTest::newRow("no kind") << files("<RecentFile V=\"/a\" Type=\"x\" Top=\"0\"/>")
                             << QByteArray(
                                    "2:37: Type=\"x\" reads as 0, which is no kind of storage");
    QTest::newRow("no known kind")
        << files("<RecentFile V=\"/a\" Type=\"6\" Top=\"0\"/>")
        << QByteArray("2:37: Type=\"6\" reads as 6, which is no kind of storage");
    QTest::newRow("no pin") << files("<RecentFile V=\"/a\" Type=\"1\" Top=\"true\"/>")
                            << QByteArray("2:40: Top=\"true\" reads as not pinned");
    QTest::newRow("other name") << files("<Item V=\"/a\" Type=\"1\" Top=\"0\"/>")
                                << QByteArray("2:31: element Item is read as RecentFile");
    QTest::newRow("out of order") << files(good + "<RecentFile V=\"/b\" Type=\"1\" Top=\"1\"/>")
                                  << QByteArray(
                                         "3:37: a pinned entry stands behind one that is not");
    QTest::newRow("too many") << files(
        good.repeated(61)) << QByteArray("1:26: RecentFiles has 61 entries, of which 60 are kept");
}

void TestKpgeomRecent::oddEntriesAreToldWithTheirPlace()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, oddity);
    RecentWorkplace const place(content);
    Result const result = place.recent({"list"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err, QByteArray("cfg/RecentFiles.xml:" + oddity + "\n"));
    QVERIFY2(result.out.contains("\nfolders: none\n"), result.out);
}

void TestKpgeomRecent::namesStayOnTheirLine()
{
    RecentWorkplace const place("<RecentFiles><RecentFiles><RecentFile V=\"/a&#10;b/c&#9;&#x9b;d\" "
                                "Type=\"1\" Top=\"0\"/></RecentFiles></RecentFiles>");
    Result const result = place.recent({"list"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out.count('\n'), 9);
    QVERIFY(!result.out.contains("\302\233"));
    QCOMPARE(place.paths(), QStringList(QString("/a\nb/c\t") + QChar(0x9b) + "d"));
}

void TestKpgeomRecent::controlCharactersAreKept()
{
    QByteArray const file = "<RecentFiles><RecentFiles>"
                            "<RecentFile V='/a\x01.x' Type='1' Top='0'/>"
                            "<RecentFile V='/b' Type='3' TeamName='\x1f' Top='x'/>"
                            "</RecentFiles></RecentFiles>";
    RecentWorkplace const place(file);
    Result const listed = place.recent({"list"});
    QVERIFY(listed.out.contains("/a\xef\xbf\xbd.x"));
    // Places count them as any other character.
    Result const plain = RecentWorkplace(QByteArray(file).replace('\x01', '-').replace('\x1f', '-'))
                             .recent({"list"});
    COMPARE_EXIT(listed, 3);
    COMPARE_EXIT(plain, 3);
    QCOMPARE(listed.err, plain.err);
    COMPARE_EXIT(place.recent({"add", "/c"}), 0);
    QCOMPARE(place.paths(), QStringList({"/c", "/a\x01.x", "/b"}));
    QCOMPARE(place.json().value("files")[2]["team"].toString(), QString("\x1f"));
}

void TestKpgeomRecent::filesAreAddedInOrder()
{
    RecentWorkplace const place;
    Result const result = place.recent({"add", "/e/e.x", "5#$#/Personal/f.x", "/d/d.x"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, QByteArray("added /e/e.x\nadded 5#$#/Personal/f.x\nadded /d/d.x\n"));
    QCOMPARE(place.paths(),
        QStringList({"*/home/u/Documents/p/a.x", "*7#$#/Dropbox/sub/b.x", "/d/d.x",
            "5#$#/Personal/f.x", "/e/e.x", "/c/Team/c.x"}));
    QCOMPARE(place.paths("folders"), QStringList({"/d", "/e", "/home/u/Documents/p"}));
    QCOMPARE(place.json().value("fileFolder").toString(), QString("/d"));
    QCOMPARE(place.json().value("symbolFolder").toString(), QString("/s"));
    QCOMPARE(place.json().value("files").toArray().at(5).toObject().value("team").toString(),
        QString("Ours"));
}

void TestKpgeomRecent::relativePathsAreMadeAbsolute()
{
    RecentWorkplace const place("<RecentFiles/>");
    COMPARE_EXIT(place.recent({"add", "cfg/../x.x", "x#$#/GoogleDrive/a/b.x"}), 0);
    // A link may lead to the temporary folder.
    QString const folder = QFileInfo(place.path()).canonicalFilePath();
    QCOMPARE(place.paths(), QStringList({"x#$#/GoogleDrive/a/b.x", folder + "/x.x"}));
}

void TestKpgeomRecent::addingMakesTheFile()
{
    RecentWorkplace const place("");
    COMPARE_EXIT(place.recent({"add", "/a/a.x"}), 0);
    QCOMPARE(place.paths(), QStringList("/a/a.x"));
    QCOMPARE(QDir(place.path("cfg")).entryList(QDir::Files | QDir::Hidden),
        QStringList("RecentFiles.xml"));
}

void TestKpgeomRecent::addingBehindAPinnedEntryIsTold()
{
    RecentWorkplace const place;
    Result const result = place.recent({"add", "/p/a.x"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray("pinned already: /p/a.x\n"));
    QCOMPARE(place.paths().size(), 4);
}

void TestKpgeomRecent::rowsOfTheListPinAndRemove()
{
    for (int index = 0; index < 4; ++index) {
        RecentWorkplace const place;
        QJsonObject const entry = place.json().value("files").toArray().at(index).toObject();
        QString const path = entry.value("path").toString();
        Result const pinned = place.recent({"pin", QString::number(entry.value("pinRow").toInt())});
        COMPARE_EXIT(pinned, 0);
        QCOMPARE(QString(pinned.out), (index == 0 ? "pinned already: " : "pinned ") + path + '\n');
        QCOMPARE(place.paths().first(), '*' + path);
        QCOMPARE(place.paths().size(), 4);

        place.write("cfg/RecentFiles.xml", usualFile);
        Result const removed =
            place.recent({"remove", QString::number(entry.value("removeRow").toInt())});
        COMPARE_EXIT(removed, 0);
        QCOMPARE(QString(removed.out), "removed " + path + '\n');
        QVERIFY(place.paths().filter(path).isEmpty());
        QCOMPARE(place.paths().size(), 3);
    }
}

void TestKpgeomRecent::pinningTheFirstAgainIsTold()
{
    RecentWorkplace const place;
    Result const result = place.recent({"pin", "0"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray("pinned already: /home/u/Documents/p/a.x\n"));
}

void TestKpgeomRecent::unpinnedEntryIsTheNewest()
{
    RecentWorkplace const place;
    Result const result = place.recent({"unpin", "0"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.out, QByteArray("unpinned /home/u/Documents/p/a.x\n"));
    QCOMPARE(place.paths(),
        QStringList({"*7#$#/Dropbox/sub/b.x", "/home/u/Documents/p/a.x", "/c/Team/c.x", "/d/d.x"}));
}

void TestKpgeomRecent::removedByRowOrPath_data()
{
    QTest::addColumn<QString>("operand");
    QTest::addColumn<QString>("path");
    QTest::newRow("row of the first") << "0"
                                      << "/home/u/Documents/p/a.x";
    QTest::newRow("row behind the first is the first, too") << "1"
                                                            << "/home/u/Documents/p/a.x";
    QTest::newRow("row") << "3"
                         << "/c/Team/c.x";
    QTest::newRow("path") << "/d/d.x"
                          << "/d/d.x";
    QTest::newRow("cloud path") << "7#$#/Dropbox/sub/b.x"
                                << "7#$#/Dropbox/sub/b.x";
}

void TestKpgeomRecent::removedByRowOrPath()
{
    QFETCH(QString, operand);
    QFETCH(QString, path);
    RecentWorkplace const place;
    Result const result = place.recent({"remove", operand});
    COMPARE_EXIT(result, 0);
    QCOMPARE(QString(result.out), "removed " + path + '\n');
    QCOMPARE(place.paths().size(), 3);
    QVERIFY(place.paths().filter(path).isEmpty());
}

void TestKpgeomRecent::foldersArePinnedAndRemoved()
{
    RecentWorkplace const place;
    COMPARE_EXIT(place.recent({"--folders", "pin", "1"}), 0);
    QCOMPARE(place.paths("folders"), QStringList({"*/d", "/home/u/Documents/p"}));
    COMPARE_EXIT(place.recent({"unpin", "--folders", "0"}), 0);
    QCOMPARE(place.paths("folders"), QStringList({"/d", "/home/u/Documents/p"}));
    COMPARE_EXIT(place.recent({"remove", "--folders", "0"}), 0);
    QCOMPARE(place.paths("folders"), QStringList("/home/u/Documents/p"));
    COMPARE_EXIT(place.recent({"remove", "--folders", "/home/u/Documents/p"}), 0);
    QCOMPARE(place.paths("folders"), QStringList());
    QCOMPARE(place.paths().size(), 4);
}

void TestKpgeomRecent::permissionsAndLinksSurvive()
{
    RecentWorkplace const place;
    QVERIFY(QFile::rename(place.path("cfg/RecentFiles.xml"), place.path("kept.xml")));
    QVERIFY(QFile::link("../kept.xml", place.path("cfg/RecentFiles.xml")));
    QCOMPARE(chmod(QFile::encodeName(place.path("kept.xml")).constData(), 0640), 0);
    COMPARE_EXIT(place.recent({"add", "/e/e.x"}), 0);
    QVERIFY(QFileInfo(place.path("cfg/RecentFiles.xml")).isSymLink());
    QVERIFY(place.read("kept.xml").contains("/e/e.x"));
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(place.path("kept.xml")).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0640);
}

void TestKpgeomRecent::unreadableFilesAreToldAndKept_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("fault");
    QTest::newRow("truncated") << usualFile.left(100)
                               << QByteArray("4:8: Premature end of document.");
    QTest::newRow("deep") << QByteArray("<a>").repeated(1001)
                          << QByteArray("1:3004: more than 1000 "
                                        "nested elements");
    QTest::newRow("not text") << QByteArray("\177ELF\1\2") << QByteArray("1:");
    QTest::newRow("many") << QByteArray("<a>" + QByteArray("<b c=''/>").repeated(250001) + "</a>")
                          << QByteArray("1:2250004: more than 750000 nodes");
}

void TestKpgeomRecent::unreadableFilesAreToldAndKept()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, fault);
    RecentWorkplace const place(content);
    for (QStringList const& action : {QStringList {"list"}, {"folders"}, {"add", "/a"},
             {"pin", "0"}, {"unpin", "0"}, {"remove", "0"}}) {
        Result const result = place.recent(action);
        COMPARE_EXIT(result, 1);
        QCOMPARE(result.err.count('\n'), 1);
        QVERIFY2(result.err.startsWith("cfg/RecentFiles.xml:" + fault), result.err);
        QCOMPARE(result.out, QByteArray());
        QCOMPARE(place.read("cfg/RecentFiles.xml"), content);
    }
}

void TestKpgeomRecent::missingFileIsAnEmptyList()
{
    RecentWorkplace const place("");
    Result const list = place.recent({"list"});
    COMPARE_EXIT(list, 0);
    QVERIFY2(list.out.endsWith("\n\nfiles: none\n\nfolders: none\n"), list.out);
    QCOMPARE(list.err, QByteArray());
    Result const folders = place.recent({"folders"});
    COMPARE_EXIT(folders, 0);
    QCOMPARE(folders.out, QByteArray("folders: none\n"));
    QCOMPARE(place.json().value("files").toArray(), QJsonArray());
    QCOMPARE(place.json("folders").value("folders").toArray(), QJsonArray());
    QVERIFY(!place.json().value("fileFolder").toString().isEmpty());
    QCOMPARE(QDir(place.path("cfg")).entryList(QDir::Files), QStringList());
}

void TestKpgeomRecent::missingFileIsTold()
{
    for (QStringList const& action : {QStringList {"unpin", "0"}, {"remove", "0"}, {"pin", "0"}}) {
        COMPARE_FAILURE(RecentWorkplace("").recent(action), 1,
            "cfg/RecentFiles.xml: No such file or directory");
    }
}

void TestKpgeomRecent::missingDirectoryIsTold()
{
    Workplace const place;
    COMPARE_FAILURE(
        place.run({"recent", "add", "/a", "--config", "none"}), 1, "none: is no directory");
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomRecent::noNameIsTold()
{
    RecentWorkplace const place;
    QByteArray const before = place.read("cfg/RecentFiles.xml");
    COMPARE_FAILURE(place.recent({"add", ""}), 1, "\"\": No file name specified");
    COMPARE_FAILURE(place.recent({"add", "/a", ""}), 1, "\"\": No file name specified");
    COMPARE_FAILURE(place.run({"recent", "add", "/a", "--config", ""}), 1, "\"\": is no directory");
    QCOMPARE(place.read("cfg/RecentFiles.xml"), before);
    QCOMPARE(place.entries(), QStringList("cfg"));
}

void TestKpgeomRecent::loopOfLinksStays()
{
    RecentWorkplace const place("");
    QString const list = place.path("cfg/RecentFiles.xml");
    QVERIFY(QFile::link("RecentFiles.xml", list));
    COMPARE_FAILURE(
        place.recent({"add", "/a"}), 1, "cfg/RecentFiles.xml: Too many levels of symbolic links");
    QVERIFY(QFileInfo(list).isSymLink());
}

void TestKpgeomRecent::fileOfADirectoryThatIsGoneIsNotAdded()
{
    RecentWorkplace const place;
    QByteArray const before = place.read("cfg/RecentFiles.xml");
    Workplace::Start start;
    start.setUp = [] {
        if (mkdir("gone", 0700) != 0 || chdir("gone") != 0 || rmdir("../gone") != 0)
            _exit(127);
    };
    QStringList const add {"recent", "--config", place.path("cfg"), "add"};
    COMPARE_FAILURE(
        place.run(add + QStringList("a.x"), start), 1, "a.x: the current directory is gone");
    QCOMPARE(place.read("cfg/RecentFiles.xml"), before);
    COMPARE_EXIT(place.run(add + QStringList("/z.x"), start), 0);
    QByteArray const after = place.read("cfg/RecentFiles.xml");
    QVERIFY2(after.contains("\"/z.x\""), after.constData());
}

void TestKpgeomRecent::unwritableFileIsTold()
{
    RecentWorkplace const place("");
    // What is no file is not replaced by one.
    QCOMPARE(
        symlink("/dev/null", QFile::encodeName(place.path("cfg/RecentFiles.xml")).constData()), 0);
    Result const result = place.recent({"list"});
    COMPARE_EXIT(result, 1);
    QVERIFY(QFile::remove(place.path("cfg/RecentFiles.xml")));
    QVERIFY(QFile::link("missing/RecentFiles.xml", place.path("cfg/RecentFiles.xml")));
    COMPARE_FAILURE(place.recent({"add", "/a"}), 1, "cfg/RecentFiles.xml: cannot be written");
}

void TestKpgeomRecent::fileInAnUnwritableDirectoryIsWritten()
{
    RecentWorkplace const place;
    QVERIFY(chmod(QFile::encodeName(place.path("cfg")).constData(), 0555) == 0);
    Workplace::Start start;
    start.setUp = obeyPermissions;
    QStringList const add {"recent", "--config", "cfg", "add", "/e.x"};
    COMPARE_EXIT(place.run(add, start), 0);
    QVERIFY(place.paths().contains("/e.x"));
    QCOMPARE(QDir(place.path("cfg")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList("RecentFiles.xml"));
    QVERIFY(chmod(QFile::encodeName(place.path("cfg/RecentFiles.xml")).constData(), 0444) == 0);
    QByteArray const before = place.read("cfg/RecentFiles.xml");
    COMPARE_FAILURE(place.run(add, start), 1, "cfg/RecentFiles.xml: cannot be written");
    QCOMPARE(place.read("cfg/RecentFiles.xml"), before);
}

/** A file that is written to directly is lost where there is no room for all of it. */
void TestKpgeomRecent::fileThatIsLeftBrokenIsTold()
{
    RecentWorkplace const place;
    QVERIFY(chmod(QFile::encodeName(place.path("cfg")).constData(), 0555) == 0);
    Workplace::Start start = limitedTo(100);
    start.setUp = [limit = start.setUp] {
        obeyPermissions();
        limit();
    };
    COMPARE_FAILURE(place.run({"recent", "--config", "cfg", "add", "/e.x"}, start), 1,
        "cfg/RecentFiles.xml: cannot be written");
}

void TestKpgeomRecent::writersAtOnceAllSave()
{
    RecentWorkplace const place;
    constexpr int writers = 4;
    constexpr int rounds = Testing::sanitized ? 3 : 12;
    for (int round = 0; round < rounds; ++round) {
        QStringList added;
        std::vector<std::unique_ptr<QProcess>> runs;
        for (int i = 0; i < writers; ++i) {
            added << QString("/%1/%2.x").arg(round).arg(i);
            runs.push_back(std::make_unique<QProcess>());
            runs.back()->setWorkingDirectory(place.path());
            runs.back()->start(
                KPGEOM_EXECUTABLE, {"recent", "--config", "cfg", "add", added.last()});
        }
        for (auto const& run : runs) {
            QVERIFY(run->waitForFinished());
            QCOMPARE(run->readAllStandardError(), QByteArray());
            QCOMPARE(run->exitCode(), 0);
        }
        // Whose list came last is open; that it is one of theirs is not.
        QVERIFY(added.contains(place.paths().value(2)));
        QCOMPARE(QDir(place.path("cfg"))
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList("RecentFiles.xml"));
    }
}

void TestKpgeomRecent::wrongUsageIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("what");
    QTest::newRow("no action") << QStringList {} << 2 << QByteArray("no action given");
    QTest::newRow("unknown action")
        << QStringList {"show"} << 2 << QByteArray("unknown action 'show'");
    QTest::newRow("operand of list")
        << QStringList {"list", "x"} << 2 << QByteArray("list takes no operand");
    QTest::newRow("nothing to add") << QStringList {"add"} << 2 << QByteArray("add needs PATH...");
    QTest::newRow("two rows to pin")
        << QStringList {"pin", "0", "1"} << 2 << QByteArray("pin takes one operand");
    QTest::newRow("nothing to remove")
        << QStringList {"remove"} << 2 << QByteArray("remove needs ROW or PATH");
    QTest::newRow("row is no number")
        << QStringList {"pin", "x"} << 1 << QByteArray("there is no entry for row x");
    QTest::newRow("row behind the end")
        << QStringList {"pin", "5"} << 1 << QByteArray("there is no entry for row 5");
    QTest::newRow("row before the start")
        << QStringList {"pin", "--", "-1"} << 1 << QByteArray("there is no entry for row -1");
    QTest::newRow("index behind the end")
        << QStringList {"unpin", "4"} << 1 << QByteArray("there is no entry for index 4");
    QTest::newRow("not pinned") << QStringList {"unpin", "2"} << 1
                                << QByteArray("/c/Team/c.x is not pinned");
    QTest::newRow("removed row behind the end")
        << QStringList {"remove", "5"} << 1 << QByteArray("there is no entry for row 5");
    QTest::newRow("removed path") << QStringList {"remove", "/z"} << 1
                                  << QByteArray("there is no entry for path /z");
}

void TestKpgeomRecent::wrongUsageIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QFETCH(QByteArray, what);
    RecentWorkplace const place;
    COMPARE_FAILURE(place.recent(arguments), code,
        "kpgeom recent: " + what + (code == 2 ? " (see kpgeom recent --help)" : ""));
    QCOMPARE(place.read("cfg/RecentFiles.xml"), usualFile);
}

void TestKpgeomRecent::defaultIsThePlatformsDirectory()
{
    Workplace const place;
    Workplace::Start start;
    start.variables = {{"HOME", place.path()}};
    COMPARE_EXIT(place.run({"recent", "add", "/a/a.x"}, start), 0);
    QVERIFY(place.read(".config/kpgeom/RecentFiles.xml").contains("V=\"/a/a.x\""));
    start.variables.insert("XDG_CONFIG_HOME", place.path("elsewhere"));
    Result const list = place.run({"recent", "list"}, start);
    COMPARE_EXIT(list, 0);
    QVERIFY(!list.out.contains("/a/a.x"));
    QVERIFY(!QFileInfo::exists(place.path("elsewhere")));
    COMPARE_EXIT(place.run({"recent", "add", "/b/b.x"}, start), 0);
    QVERIFY(place.read("elsewhere/kpgeom/RecentFiles.xml").contains("V=\"/b/b.x\""));
}

QTEST_GUILESS_MAIN(TestKpgeomRecent)
#include "tst_kpgeom_recent.moc"
