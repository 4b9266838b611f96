// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "testing.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <array>
#include <cstdlib>

#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace KpgeomTesting;

namespace {

QByteArray const svgText = "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                           "<rect width='10' height='5'/></svg>";

/** Arguments that write `output` from what prepareInput() has written. */
using Arguments = std::function<QStringList(QString const& output)>;

Arguments writing(QStringList const& arguments)
{
    return [arguments](QString const& output) { return arguments + QStringList {"-o", output}; };
}

void prepareInput(Workplace const& place)
{
    place.write("in.xml", boxGeometry());
    place.write("in.svg", svgText);
}

/** A row for each command that writes a file, named by the file it writes. */
void addWritingRows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("render SVG") << "out.svg" << QStringList {"render", "in.xml"};
    QTest::newRow("render PNG") << "out.png" << QStringList {"render", "in.xml"};
    QTest::newRow("render PDF") << "out.pdf" << QStringList {"render", "in.xml"};
    QTest::newRow("resize") << "out.xml"
                            << QStringList {"resize", "in.xml", "--from", "100x60", "--to", "10x6"};
    QTest::newRow("convert, stream form") << "out.xml" << QStringList {"convert", "in.svg"};
    QTest::newRow("convert, DOM form")
        << "out.xml" << QStringList {"convert", "in.svg", "--form", "dom"};
}

/** Limits what the tool may allocate; a sanitizer needs more than any limit. */
void limitMemory(rlim_t mebibytes)
{
    rlimit const limit {mebibytes * 1024 * 1024, mebibytes * 1024 * 1024};
    if (!Testing::sanitized)
        setrlimit(RLIMIT_DATA, &limit);
}

/** Makes standard input a text without an end, in an element. */
void readEndlessText()
{
    std::array<int, 2> ends {};
    if (pipe(ends.data()) != 0)
        return;
    if (fork() == 0) {
        close(ends[0]);
        std::array<char, 65536> text {};
        text.fill('x');
        text[0] = '<';
        text[2] = '>';
        while (write(ends[1], text.data(), text.size()) > 0)
            text.fill('x');
        _exit(0);
    }
    dup2(ends[0], STDIN_FILENO);
    close(ends[0]);
    close(ends[1]);
}

/** The most memory that a run of the tool has taken so far. */
long mostKilobytesOfRuns()
{
    rusage usage {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
}

/** What the tool shows on a terminal that is its standard error. */
QByteArray shownOnTerminal(
    Workplace const& place, QStringList const& arguments, int expectedCode,
    std::function<void()> const& setUpTerminal = [] {})
{
    Terminal const terminal;
    Workplace::Start start;
    start.setUp = [replace = terminal.replacing(STDERR_FILENO), setUpTerminal] {
        replace();
        setUpTerminal();
    };
    Result const result = place.run(arguments, start);
    return result.exited && result.code == expectedCode ? terminal.text() : "another end";
}

/** What each line of a terminal shows at the end: "\r" goes back, the sequence erases the rest. */
QByteArrayList linesOnScreen(QByteArray const& text)
{
    QByteArrayList lines {QByteArray()};
    int column = 0;
    for (int i = 0; i < text.size(); ++i) {
        if (text.mid(i, 3) == "\x1b[K") {
            lines.last().truncate(column);
            i += 2;
        } else if (text.at(i) == '\r') {
            column = 0;
        } else if (text.at(i) == '\n') {
            lines << QByteArray(column, ' ');
        } else {
            lines.last().replace(column++, 1, QByteArray(1, text.at(i)));
        }
    }
    return lines;
}

/** The arguments as a render to `output` in the format of `name` needs them. */
QStringList withFormatOf(QString const& name, QStringList const& arguments)
{
    return arguments.first() == "render"
        ? arguments + QStringList {"--format", QFileInfo(name).suffix()}
        : arguments;
}

/** The commands that read a document, each with what it needs beside the name of the input. */
void addReadingRows(std::function<void(char const* name, QStringList const& rest)> const& add)
{
    add("info", {"info"});
    add("info as JSON", {"info", "--json"});
    add("check", {"check"});
    add("render", {"render", "-o", "out.svg"});
    add("resize", {"resize", "--from", "1x1", "--to", "2x2", "-o", "out.xml"});
}

// A sanitizer makes runs slower and keeps what they have freed.
constexpr int prefixStep = Testing::sanitized ? 7 : 1;
constexpr long growthOfManyFiles = (Testing::sanitized ? 512L : 64L) * 1024;

} // namespace

class TestKpgeomFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // First: the figure of the memory is the greatest of all runs so far.
    void thousandsOfFilesAreTaken_data();
    void thousandsOfFilesAreTaken();

    void exitCodeTellsTheOutcome_data();
    void exitCodeTellsTheOutcome();

    void outputReplacesTheFileThatWasThere_data() { addWritingRows(); }
    void outputReplacesTheFileThatWasThere();
    void outputThroughALinkKeepsTheLink_data() { addWritingRows(); }
    void outputThroughALinkKeepsTheLink();
    void outputKeepsPermissions_data() { addWritingRows(); }
    void outputKeepsPermissions();
    void fullDiskKeepsTheOldFile_data() { addWritingRows(); }
    void fullDiskKeepsTheOldFile();
    void newFileHasUsualPermissions_data() { addWritingRows(); }
    void newFileHasUsualPermissions();
    void outputThroughALinkToNothingMakesItsTarget_data() { addWritingRows(); }
    void outputThroughALinkToNothingMakesItsTarget();
    void fileThatJustFitsIsWrittenWhole_data() { addWritingRows(); }
    void fileThatJustFitsIsWrittenWhole();
    void fileThatDoesNotFitIsNotMade_data() { addWritingRows(); }
    void fileThatDoesNotFitIsNotMade();
    void everyFormFailsAlike_data() { addWritingRows(); }
    void everyFormFailsAlike();
    void outputThatCannotBeMadeIsTold_data();
    void outputThatCannotBeMadeIsTold();
    void unwritableFolderIsTold();
    void unwritableFileStaysAsItIs();
    void deviceIsWrittenAndStays();
    void pipeIsWrittenAndStays();
    void standardOutputByItsDeviceKeepsWhatIsThere();
    void fileOfTheLongestNameIsReplaced();
    void badInputKeepsTheOldFile_data();
    void badInputKeepsTheOldFile();
    void resizedDocumentMayReplaceItself();
    void resizedDocumentThatDoesNotFitStays();
    void outputGoesToStandardOutput_data() { addWritingRows(); }
    void outputGoesToStandardOutput();

    void standardOutputThatFailsIsTold_data();
    void standardOutputThatFailsIsTold();
    void readerThatGoesAwayEndsQuietly();
    void everyCommandEndsQuietlyWithoutAReader_data() { standardOutputThatFailsIsTold_data(); }
    void everyCommandEndsQuietlyWithoutAReader();
    void failedOutputOfManyFilesIsToldOnce_data();
    void failedOutputOfManyFilesIsToldOnce();
    void closedStreamsAreNotMistakenForFiles();

    void inputThatCannotBeReadIsTold_data();
    void inputThatCannotBeReadIsTold();
    void standardInputIsRead_data();
    void standardInputIsRead();
    void standardInputThatCannotBeReadIsTold_data() { standardInputIsRead_data(); }
    void standardInputThatCannotBeReadIsTold();
    void endlessInputTakesBoundedMemory_data() { standardInputIsRead_data(); }
    void endlessInputTakesBoundedMemory();
    void lackOfMemoryIsTold_data() { standardInputIsRead_data(); }
    void lackOfMemoryIsTold();
    void encodingsAreTaken_data();
    void encodingsAreTaken();
    void wrongEncodingsAreRefused_data();
    void wrongEncodingsAreRefused();
    void unreadableInputIsTold();
    void everyPrefixIsLocated();
    void everyCommandRefusesEveryPrefix_data();
    void everyCommandRefusesEveryPrefix();
    void badFilesAreToldInTheirOrder_data();
    void badFilesAreToldInTheirOrder();
    void hostileDocumentsAreRefused_data();
    void hostileDocumentsAreRefused();
    void oddNumbersAreTaken_data();
    void oddNumbersAreTaken();
    void largeDocumentsAreTaken_data();
    void largeDocumentsAreTaken();
    void namesStayOnOneLine_data();
    void namesStayOnOneLine();
    void oddNamesAreOpened_data();
    void oddNamesAreOpened();

    void windowingOptionsAreNoOptions_data();
    void windowingOptionsAreNoOptions();

    void progressIsShownOnATerminal();
    void everyCommandTakesItsProgressAway_data();
    void everyCommandTakesItsProgressAway();
    void resultsStandBesideTheProgress();
    void progressFitsNarrowTerminals_data();
    void progressFitsNarrowTerminals();
    void messagesStandBesideTheProgress();
    void fewFilesShowNoProgress();
    void quietShowsNoProgress();
    void noProgressElsewhere();
    void noProgressBesideMessagesElsewhere();
};

void TestKpgeomFiles::exitCodeTellsTheOutcome_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::newRow("0: done") << QStringList {"check", "in.xml"} << 0;
    QTest::newRow("0: a picture is written")
        << QStringList {"render", "in.xml", "-o", "out.svg"} << 0;
    QTest::newRow("1: bad input") << QStringList {"check", "bad"} << 1;
    QTest::newRow("1: a failed operation")
        << QStringList {"render", "in.xml", "-o", "missing/out.svg"} << 1;
    QTest::newRow("1: bad input beside warnings") << QStringList {"check", "bad", "warned"} << 1;
    QTest::newRow("1: warnings beside bad input") << QStringList {"check", "warned", "bad"} << 1;
    QTest::newRow("2: wrong usage") << QStringList {"check"} << 2;
    QTest::newRow("2: wrong usage beside bad input") << QStringList {"check", "--what", "bad"} << 2;
    QTest::newRow("3: warnings") << QStringList {"check", "warned"} << 3;
    QTest::newRow("3: warnings beside a clean file")
        << QStringList {"check", "warned", "in.xml"} << 3;
    QTest::newRow("0: what check warns of is no matter to info")
        << QStringList {"info", "warned"} << 0;
}

void TestKpgeomFiles::exitCodeTellsTheOutcome()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    Workplace const place;
    prepareInput(place);
    place.write("bad", "<D>");
    place.write("warned", boxGeometry("Closed=\"2\""));
    COMPARE_EXIT(place.run(arguments), code);
}

void TestKpgeomFiles::outputReplacesTheFileThatWasThere()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    place.write(name, "old");
    COMPARE_EXIT(place.run(writing(arguments)(name)), 0);
    QVERIFY(place.read(name).size() > 100);
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", name}));
}

void TestKpgeomFiles::outputThroughALinkKeepsTheLink()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    place.write("target", "old");
    QVERIFY(QFile::link("target", place.path(name)));
    COMPARE_EXIT(place.run(writing(arguments)(name)), 0);
    QVERIFY(QFileInfo(place.path(name)).isSymLink());
    QVERIFY(place.read("target").size() > 100);
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", name, "target"}));
}

void TestKpgeomFiles::outputKeepsPermissions()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    place.write(name, "old");
    QVERIFY(chmod(QFile::encodeName(place.path(name)).constData(), 0640) == 0);
    COMPARE_EXIT(place.run(writing(arguments)(name)), 0);
    struct stat status
    {
    };
    QCOMPARE(stat(QFile::encodeName(place.path(name)).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 0777), 0640);
}

void TestKpgeomFiles::fullDiskKeepsTheOldFile()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    place.write(name, "old");
    Workplace::Start const start = limitedTo(100);
    COMPARE_FAILURE(
        place.run(writing(arguments)(name), start), 1, name.toUtf8() + ": File too large");
    QCOMPARE(place.read(name), QByteArray("old"));
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", name}));
}

void TestKpgeomFiles::newFileHasUsualPermissions()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    Workplace::Start start;
    start.setUp = [] { umask(026); };
    COMPARE_EXIT(place.run(writing(arguments)(name), start), 0);
    struct stat status
    {
    };
    QCOMPARE(stat(QFile::encodeName(place.path(name)).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0640);
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", name}));
}

void TestKpgeomFiles::outputThroughALinkToNothingMakesItsTarget()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    QVERIFY(QDir(place.path()).mkdir("folder"));
    // The way of a link begins where the link is, not where the tool is.
    QVERIFY(QFile::link("../target", place.path("folder/" + name)));
    COMPARE_EXIT(place.run(writing(arguments)("folder/" + name)), 0);
    QVERIFY(QFileInfo(place.path("folder/" + name)).isSymLink());
    QVERIFY(QFileInfo(place.path("target")).size() > 100);
    QCOMPARE(place.entries(), (QStringList {"folder", "in.svg", "in.xml", "target"}));
}

void TestKpgeomFiles::fileThatJustFitsIsWrittenWhole()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    COMPARE_EXIT(place.run(writing(arguments)(name)), 0);
    auto const size = static_cast<rlim_t>(place.read(name).size());
    for (rlim_t const missing : {rlim_t(1), rlim_t(0)}) {
        place.write(name, "old");
        Workplace::Start const start = limitedTo(size - missing);
        Result const result = place.run(writing(arguments)(name), start);
        COMPARE_EXIT(result, missing == 0 ? 0 : 1);
        QCOMPARE(result.err, missing == 0 ? QByteArray() : name.toUtf8() + ": File too large\n");
        if (missing == 0)
            QCOMPARE(static_cast<rlim_t>(place.read(name).size()), size);
        else
            QCOMPARE(place.read(name), QByteArray("old"));
        QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", name}));
    }
}

void TestKpgeomFiles::fileThatDoesNotFitIsNotMade()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    for (rlim_t const size : {rlim_t(0), rlim_t(1), rlim_t(100)}) {
        Workplace::Start const start = limitedTo(size);
        COMPARE_FAILURE(
            place.run(writing(arguments)(name), start), 1, name.toUtf8() + ": File too large");
        QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml"}));
    }
}

void TestKpgeomFiles::everyFormFailsAlike()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    QVERIFY(QDir(place.path()).mkdir("closed"));
    QVERIFY(QDir(place.path()).mkdir("folder"));
    QVERIFY(chmod(QFile::encodeName(place.path("closed")).constData(), 0555) == 0);
    Workplace::Start start;
    start.setUp = obeyPermissions;
    QStringList const complete = withFormatOf(name, arguments);
    Workplace::Start toDevice;
    toDevice.setUp = keepNames;
    COMPARE_FAILURE(place.run(writing(complete)("/dev/full"), toDevice), 1,
        "/dev/full: No space left on device");
    for (QPair<QString, QByteArray> const& failure : {
             qMakePair(QString("in.xml/out"), QByteArray("Not a directory")),
             qMakePair(QString("missing/out"), QByteArray("No such file or directory")),
             qMakePair(QString("closed/out"), QByteArray("Permission denied")),
             qMakePair(QString("folder"), QByteArray("is a directory")),
             qMakePair(QString("folder/"), QByteArray("is a directory")),
             qMakePair(QString(256, 'x'), QByteArray("File name too long")),
         }) {
        COMPARE_FAILURE(place.run(writing(complete)(failure.first), start), 1,
            failure.first.toUtf8() + ": " + failure.second);
    }
    QCOMPARE(place.entries(), (QStringList {"closed", "folder", "in.svg", "in.xml"}));
    for (QString const& folder : {QString("closed"), QString("folder")}) {
        QCOMPARE(QDir(place.path(folder))
                     .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList());
    }
    struct stat status
    {
    };
    QCOMPARE(stat("/dev/full", &status), 0);
    QVERIFY(S_ISCHR(status.st_mode));
}

void TestKpgeomFiles::outputThatCannotBeMadeIsTold_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("below a file") << "in.xml/out" << QByteArray("in.xml/out: Not a directory");
    QTest::newRow("in a missing folder")
        << "missing/out" << QByteArray("missing/out: No such file or directory");
    QTest::newRow("a folder") << "." << QByteArray(".: is a directory");
}

void TestKpgeomFiles::outputThatCannotBeMadeIsTold()
{
    QFETCH(QString, output);
    QFETCH(QByteArray, line);
    Workplace const place;
    prepareInput(place);
    for (QStringList const& arguments : {QStringList {"render", "in.xml", "--format", "png"},
             QStringList {"resize", "in.xml", "--from", "100x60", "--to", "10x6"},
             QStringList {"convert", "in.svg"}})
        COMPARE_FAILURE(place.run(writing(arguments)(output)), 1, line);
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml"}));
}

void TestKpgeomFiles::unwritableFolderIsTold()
{
    Workplace const place;
    prepareInput(place);
    QVERIFY(QDir(place.path()).mkdir("closed"));
    QByteArray const folder = QFile::encodeName(place.path("closed"));
    QVERIFY(chmod(folder.constData(), 0555) == 0);
    Workplace::Start start;
    start.setUp = obeyPermissions;
    COMPARE_FAILURE(place.run({"render", "in.xml", "-o", "closed/out.svg"}, start), 1,
        "closed/out.svg: Permission denied");
    QCOMPARE(QDir(place.path("closed")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList());
}

void TestKpgeomFiles::unwritableFileStaysAsItIs()
{
    Workplace const place;
    prepareInput(place);
    place.write("out.svg", "old");
    QVERIFY(chmod(QFile::encodeName(place.path("out.svg")).constData(), 0444) == 0);
    Workplace::Start start;
    start.setUp = obeyPermissions;
    Result const result = place.run({"render", "in.xml", "-o", "out.svg"}, start);
    COMPARE_EXIT(result, 1);
    QVERIFY2(result.err.startsWith("out.svg: "), result.err.constData());
    QCOMPARE(place.read("out.svg"), QByteArray("old"));
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", "out.svg"}));
}

void TestKpgeomFiles::deviceIsWrittenAndStays()
{
    Workplace const place;
    prepareInput(place);
    // One that nothing can replace: no file is made among terminals.
    Terminal const terminal;
    COMPARE_EXIT(place.run({"convert", "in.svg", "-o", terminal.name()}), 0);
    QVERIFY2(terminal.text().startsWith("<?xml"), terminal.text().constData());
    struct stat status
    {
    };
    QCOMPARE(stat(qPrintable(terminal.name()), &status), 0);
    QVERIFY(S_ISCHR(status.st_mode));
}

void TestKpgeomFiles::pipeIsWrittenAndStays()
{
    Workplace const place;
    prepareInput(place);
    COMPARE_EXIT(place.run({"render", "in.xml", "-o", "out.svg"}), 0);
    QByteArray const expected = place.read("out.svg");
    QByteArray const pipe = QFile::encodeName(place.path("pipe.svg"));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    int const reader = open(pipe.constData(), O_RDONLY | O_NONBLOCK);
    QVERIFY(reader >= 0);
    // A pipe holds 64 KiB, so the tool need not wait for its reader.
    Result const result = place.run({"render", "in.xml", "-o", "pipe.svg"});
    QByteArray text(65536, '\0');
    text.truncate(int(qMax<ssize_t>(0, read(reader, text.data(), size_t(text.size())))));
    close(reader);
    COMPARE_EXIT(result, 0);
    QVERIFY(expected.size() > 100);
    QCOMPARE(text, expected);
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", "out.svg", "pipe.svg"}));
    struct stat status
    {
    };
    QCOMPARE(stat(pipe.constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
}

void TestKpgeomFiles::standardOutputByItsDeviceKeepsWhatIsThere()
{
    Workplace const place;
    prepareInput(place);
    place.write("log", "before\n");
    Workplace::Start start;
    start.setUp = [log = QFile::encodeName(place.path("log"))] {
        dup2(open(log.constData(), O_WRONLY | O_APPEND), STDOUT_FILENO);
    };
    COMPARE_EXIT(place.run({"render", "in.xml", "--format", "svg", "-o", "/dev/stdout"}, start), 0);
    COMPARE_EXIT(place.run({"--version"}, start), 0);
    QByteArray const log = place.read("log");
    QVERIFY2(log.startsWith("before\n<?xml"), log.constData());
    QVERIFY2(log.endsWith("</svg>\nkpgeom " KPGEOM_VERSION "\n"), log.constData());
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", "log"}));
}

void TestKpgeomFiles::fileOfTheLongestNameIsReplaced()
{
    // There is no longer name for a file beside it.
    QString const name(255, 'x');
    Workplace const place;
    prepareInput(place);
    QStringList const arguments {"convert", "in.svg", "-o", name};
    COMPARE_EXIT(place.run(arguments), 0);
    QVERIFY(place.read(name).startsWith("<?xml"));
    place.write(name, "old");
    COMPARE_EXIT(place.run(arguments), 0);
    QVERIFY(place.read(name).startsWith("<?xml"));
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", name}));
    COMPARE_FAILURE(place.run({"convert", "in.svg", "-o", name + 'x'}), 1,
        name.toUtf8() + "x: File name too long");
}

void TestKpgeomFiles::badInputKeepsTheOldFile_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("render") << QStringList {"render", "bad", "--format", "svg"}
                            << QByteArray("bad:2:5: Opening and ending tag mismatch.");
    QTest::newRow("render the second of two") << QStringList {"render", "in.xml", "bad", "--format",
        "svg"} << QByteArray("bad:2:5: Opening and ending tag mismatch.");
    QTest::newRow("resize") << QStringList {"resize", "bad", "--from", "1x1", "--to", "2x2"}
                            << QByteArray("bad:2:5: Opening and ending tag mismatch.");
    QTest::newRow("convert") << QStringList {"convert", "bad"}
                             << QByteArray("bad:2:5: Opening and ending tag mismatch.");
    QTest::newRow("missing outline") << QStringList {"render", "in.xml", "--format", "svg",
        "--index", "2"} << QByteArray("in.xml: there is no outline 2 among its 1");
}

void TestKpgeomFiles::badInputKeepsTheOldFile()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, line);
    Workplace const place;
    prepareInput(place);
    place.write("bad", "<svg>\n</D>");
    place.write("out", "old");
    COMPARE_FAILURE(place.run(writing(arguments)("out")), 1, line);
    QCOMPARE(place.read("out"), QByteArray("old"));
    QCOMPARE(place.entries(), (QStringList {"bad", "in.svg", "in.xml", "out"}));
}

void TestKpgeomFiles::resizedDocumentMayReplaceItself()
{
    Workplace const place;
    prepareInput(place);
    COMPARE_EXIT(
        place.run({"resize", "in.xml", "--from", "100x60", "--to", "50x30", "-o", "in.xml"}), 0);
    QVERIFY(place.read("in.xml").contains("<X V=\"50\" B=\"1\" P=\"1\"/>"));
    QVERIFY(!place.read("in.xml").contains("V=\"100\""));
}

void TestKpgeomFiles::resizedDocumentThatDoesNotFitStays()
{
    Workplace const place;
    prepareInput(place);
    Workplace::Start const start = limitedTo(100);
    COMPARE_FAILURE(
        place.run({"resize", "in.xml", "--from", "100x60", "--to", "50x30", "-o", "in.xml"}, start),
        1, "in.xml: File too large");
    QCOMPARE(place.read("in.xml"), boxGeometry());
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml"}));
}

void TestKpgeomFiles::outputGoesToStandardOutput()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    QStringList toFile = arguments;
    if (arguments.first() == "render")
        toFile << "--format" << QFileInfo(name).suffix();
    Result const result = place.run(writing(toFile)("-"));
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml"}));
    if (name.endsWith("pdf")) {
        QVERIFY(result.out.startsWith("%PDF"));
        return;
    }
    COMPARE_EXIT(place.run(writing(arguments)(name)), 0);
    QVERIFY(result.out == place.read(name));
}

void TestKpgeomFiles::standardOutputThatFailsIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("help") << QStringList {"--help"};
    QTest::newRow("help of a command") << QStringList {"info", "--help"};
    QTest::newRow("version") << QStringList {"--version"};
    QTest::newRow("info") << QStringList {"info", "in.xml"};
    QTest::newRow("info as JSON") << QStringList {"info", "--json", "in.xml"};
    QTest::newRow("check") << QStringList {"check", "in.xml"};
    QTest::newRow("render") << QStringList {"render", "in.xml", "--format", "png", "-o", "-"};
    QTest::newRow("convert") << QStringList {"convert", "in.svg", "-o", "-"};
}

void TestKpgeomFiles::standardOutputThatFailsIsTold()
{
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    Workplace::Start full;
    full.outputFile = "/dev/full";
    COMPARE_FAILURE(place.run(arguments, full), 1, "<stdout>: cannot be written");
    Workplace::Start closed;
    closed.setUp = [] { close(STDOUT_FILENO); };
    COMPARE_FAILURE(place.run(arguments, closed), 1, "<stdout>: cannot be written");
}

void TestKpgeomFiles::readerThatGoesAwayEndsQuietly()
{
    Workplace const place;
    prepareInput(place);
    int ends[2] = {-1, -1};
    QCOMPARE(pipe(ends), 0);
    close(ends[0]);
    Workplace::Start start;
    start.setUp = [ends] { dup2(ends[1], STDOUT_FILENO); };
    Result const result = place.run({"info", "in.xml"}, start);
    close(ends[1]);
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomFiles::everyCommandEndsQuietlyWithoutAReader()
{
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    Workplace::Start start;
    start.setUp = [] {
        int ends[2] = {-1, -1};
        if (pipe(ends) != 0)
            _exit(127);
        close(ends[0]);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[1]);
    };
    Result const result = place.run(arguments, start);
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomFiles::failedOutputOfManyFilesIsToldOnce_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("info") << "info";
    QTest::newRow("check") << "check";
}

void TestKpgeomFiles::failedOutputOfManyFilesIsToldOnce()
{
    QFETCH(QString, command);
    Workplace const place;
    prepareInput(place);
    Workplace::Start start;
    start.outputFile = "/dev/full";
    QStringList const files = QVector<QString>(20, "in.xml").toList();
    COMPARE_FAILURE(
        place.run(QStringList {command} + files, start), 1, "<stdout>: cannot be written");
}

void TestKpgeomFiles::closedStreamsAreNotMistakenForFiles()
{
    // The next file to be opened would get the number of the closed stream.
    Workplace const place;
    prepareInput(place);
    place.write("bad", "<svg>\n</D>");
    Workplace::Start start;
    start.setUp = [] {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
    };
    Result const converted = place.run({"convert", "in.svg", "-o", "out.xml"}, start);
    QVERIFY(converted.exited);
    QCOMPARE(converted.code, 0);
    QVERIFY(place.read("out.xml").startsWith("<?xml"));
    Result const checked = place.run({"check", "in.xml", "bad"}, start);
    QVERIFY(checked.exited);
    QCOMPARE(checked.code, 1);
    QCOMPARE(place.read("in.xml"), boxGeometry());
    QCOMPARE(place.read("bad"), QByteArray("<svg>\n</D>"));
}

void TestKpgeomFiles::inputThatCannotBeReadIsTold_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("missing") << "missing" << QByteArray("missing: No such file or directory");
    QTest::newRow("below a file") << "in.xml/a" << QByteArray("in.xml/a: Not a directory");
    QTest::newRow("folder") << "." << QByteArray(".: file to open is a directory");
    QTest::newRow("endless") << "/dev/zero"
                             << QByteArray("/dev/zero: a binary file, not an XML document");
    QTest::newRow("no name") << "" << QByteArray("\"\": No file name specified");
    QTest::newRow("empty") << "empty" << QByteArray("empty:1:1: Premature end of document.");
    QTest::newRow("empty device") << "/dev/null"
                                  << QByteArray("/dev/null:1:1: Premature end of document.");
    QTest::newRow("picture") << "picture"
                             << QByteArray("picture: a PNG picture, not an XML document");
    QTest::newRow("text") << "text" << QByteArray("text:1:2: Start tag expected.");
    QTest::newRow("half of UTF-16")
        << "half" << QByteArray("half:1:10: Premature end of document.");
}

void TestKpgeomFiles::inputThatCannotBeReadIsTold()
{
    QFETCH(QString, input);
    QFETCH(QByteArray, line);
    Workplace const place;
    prepareInput(place);
    place.write("empty", "");
    place.write("picture", "\x89PNG\r\n\x1a\n\xff\xfe rubbish");
    place.write("text", "Dear reader,");
    QString const document = "<Geometry Closed='1'/>";
    place.write("half",
        QByteArray("\xff\xfe") + QByteArray(reinterpret_cast<char const*>(document.utf16()), 18));
    for (QStringList const& arguments : {QStringList {"info", input}, QStringList {"check", input},
             QStringList {"render", input, "-o", "out.svg"},
             QStringList {"resize", input, "--from", "1x1", "--to", "2x2", "-o", "out.xml"}}) {
        Result const result = place.run(arguments);
        COMPARE_EXIT(result, 1);
        QCOMPARE(result.err, QByteArray(line + '\n'));
        QVERIFY2(!result.out.contains("outline"), result.out.constData());
    }
    QCOMPARE(
        place.entries(), (QStringList {"empty", "half", "in.svg", "in.xml", "picture", "text"}));
}

void TestKpgeomFiles::standardInputIsRead_data()
{
    QTest::addColumn<QStringList>("arguments");
    addReadingRows([](char const* name, QStringList const& rest) {
        QTest::newRow(name) << rest + QStringList {"-"};
    });
}

void TestKpgeomFiles::standardInputIsRead()
{
    QFETCH(QStringList, arguments);
    Workplace const place;
    // A file of this name is not meant.
    place.write("-", "rubbish");
    Workplace::Start start;
    start.input = boxGeometry();
    Result const result = place.run(arguments, start);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    int const written = arguments.indexOf("-o") + 1;
    if (written > 0)
        QVERIFY(place.read(arguments.at(written)).size() > 100);
    else
        QVERIFY2(result.out.contains(arguments.contains("--json") ? "\"-\"" : "<stdin>: "),
            result.out.constData());

    start.input = boxGeometry().left(50);
    Result const failed = place.run(arguments, start);
    COMPARE_EXIT(failed, 1);
    QCOMPARE(failed.err, QByteArray("<stdin>:1:51: Premature end of document.\n"));
}

void TestKpgeomFiles::standardInputThatCannotBeReadIsTold()
{
    QFETCH(QStringList, arguments);
    Workplace const place;
    auto const errorOf = [&](std::function<void()> const& setUp) {
        Workplace::Start start;
        start.setUp = setUp;
        Result const result = place.run(arguments, start);
        bool const hasResult = result.out.contains("outline");
        return result.exited && result.code == 1 && !hasResult ? result.err : "another end";
    };
    QCOMPARE(errorOf([] { close(STDIN_FILENO); }), QByteArray("<stdin>: Bad file descriptor\n"));
    QCOMPARE(errorOf([] { dup2(open(".", O_RDONLY), STDIN_FILENO); }),
        QByteArray("<stdin>: Is a directory\n"));
    QCOMPARE(errorOf([] { dup2(open("/dev/zero", O_RDONLY), STDIN_FILENO); }),
        QByteArray("<stdin>: a binary file, not an XML document\n"));
    QCOMPARE(errorOf([] { dup2(open("/dev/null", O_RDONLY), STDIN_FILENO); }),
        QByteArray("<stdin>:1:1: Premature end of document.\n"));
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomFiles::endlessInputTakesBoundedMemory()
{
    // It takes minutes where everything is slow.
    if (Testing::sanitized)
        return;
    QFETCH(QStringList, arguments);
    Workplace const place;
    Workplace::Start start;
    start.setUp = [] {
        limitMemory(3072);
        readEndlessText();
    };
    Result const result = place.run(arguments, start);
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray("<stdin>: more than 268435456 bytes without a tag\n"));
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomFiles::lackOfMemoryIsTold()
{
    // A sanitizer ends a run without memory itself.
    if (Testing::sanitized)
        return;
    QFETCH(QStringList, arguments);
    Workplace const place;
    Workplace::Start start;
    start.setUp = [] {
        limitMemory(128);
        readEndlessText();
    };
    COMPARE_FAILURE(place.run(arguments, start), 1, "kpgeom: out of memory");
    QCOMPARE(place.entries(), QStringList());
}

void TestKpgeomFiles::encodingsAreTaken_data()
{
    QTest::addColumn<QByteArray>("document");
    QString const text = QString::fromUtf8("<D><S Name=\"\xc3\xa4\"><Geometry/></S></D>");
    QByteArray const start("<?xml version=\"1.0\" encoding=\"");
    QTest::newRow("UTF-8") << text.toUtf8();
    QTest::newRow("UTF-8, declared") << start + "utf-8\"?>" + text.toUtf8();
    QTest::newRow("UTF-8 with a mark") << "\xef\xbb\xbf" + text.toUtf8();
    QTest::newRow("Latin-1, declared") << start + "ISO-8859-1\"?>" + text.toLatin1();
    QTest::newRow("US-ASCII, with a reference")
        << start + "US-ASCII\"?><D><S Name=\"&#xe4;\"><Geometry/></S></D>";
    QByteArray little("\xff\xfe");
    QByteArray big("\xfe\xff");
    for (QChar const character : text) {
        little += QByteArray(1, char(character.cell())) + QByteArray(1, char(character.row()));
        big += QByteArray(1, char(character.row())) + QByteArray(1, char(character.cell()));
    }
    QTest::newRow("UTF-16, low byte first") << little;
    QTest::newRow("UTF-16, high byte first") << big;
}

void TestKpgeomFiles::encodingsAreTaken()
{
    QFETCH(QByteArray, document);
    Workplace const place;
    place.write("a", document);
    Result const info = place.run({"info", "a"});
    COMPARE_EXIT(info, 0);
    QVERIFY2(info.out.contains("\n1  \xc3\xa4     -"), info.out.constData());
    COMPARE_EXIT(place.run({"resize", "a", "--from", "1x1", "--to", "2x2", "-o", "out"}), 0);
    QVERIFY2(place.read("out").contains("Name=\"\xc3\xa4\"")
            || place.read("out").contains("Name=\"&#xe4;\""),
        place.read("out").constData());
}

void TestKpgeomFiles::wrongEncodingsAreRefused_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("Latin-1, not declared")
        << QByteArray("<D>\n<S Name=\"\xe4\"/></D>")
        << QByteArray("a:1:3: Encountered incorrectly encoded content.");
    QTest::newRow("unknown encoding") << QByteArray("<?xml version=\"1.0\" encoding=\"X-99\"?><D/>")
                                      << QByteArray("a:1:38: Encoding X-99 is unsupported");
    QTest::newRow("UTF-8 that is called UTF-16")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-16\"?><D/>")
        << QByteArray("a:1:40: Premature end of document.");
    QTest::newRow("overlong UTF-8") << QByteArray(
        "<D>\xc0\x80</D>") << QByteArray("a:1:3: Encountered incorrectly encoded content.");
    QTest::newRow("surrogate in UTF-8") << QByteArray(
        "<D>\xed\xa0\x80</D>") << QByteArray("a:1:3: Encountered incorrectly encoded content.");
    QTest::newRow("reference to a surrogate")
        << QByteArray("<D>&#xD800;</D>") << QByteArray("a:1:12: Invalid character reference.");
    QTest::newRow("zero byte") << QByteArray("<D>\0</D>", 8) << QByteArray("a:1:5: Unexpected ''.");
    QTest::newRow("control character")
        << QByteArray("<D>\x01</D>") << QByteArray("a:1:5: Unexpected ''.");
}

void TestKpgeomFiles::wrongEncodingsAreRefused()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, line);
    Workplace const place;
    place.write("a", document);
    for (QStringList const& arguments : {QStringList {"info", "a"}, QStringList {"check", "a"},
             QStringList {"render", "a", "-o", "out.svg"},
             QStringList {"resize", "a", "--from", "1x1", "--to", "2x2", "-o", "out.xml"}})
        COMPARE_FAILURE(place.run(arguments), 1, line);
    QCOMPARE(place.entries(), QStringList {"a"});
}

void TestKpgeomFiles::unreadableInputIsTold()
{
    Workplace const place;
    prepareInput(place);
    QVERIFY(chmod(QFile::encodeName(place.path("in.xml")).constData(), 0) == 0);
    Workplace::Start start;
    start.setUp = obeyPermissions;
    Result const result = place.run({"check", "in.xml"}, start);
    COMPARE_FAILURE(result, 1, "in.xml: Permission denied");
}

void TestKpgeomFiles::everyPrefixIsLocated()
{
    QByteArray const document = "<?xml version=\"1.0\"?>\n<D><!-- c -->\n<Geometry Closed=\"1\">"
                                "<MoveTo><X V=\"1\"/><Y V=\"\xc3\xa4\"/></MoveTo></Geometry></D>";
    Workplace const place;
    QStringList names;
    for (int size = 0; size < document.size(); ++size) {
        names << QString("%1.xml").arg(size, 3, 10, QChar('0'));
        place.write(names.last(), document.left(size));
    }
    Result const result = place.run(QStringList {"check"} + names);
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.out, QByteArray());
    QByteArrayList lines = result.err.split('\n');
    lines.removeLast();
    QCOMPARE(lines.size(), names.size());
    QRegularExpression const located("^\\d{3}\\.xml:[123]:\\d+: [A-Z][^:]+\\.$");
    for (int i = 0; i < names.size(); ++i) {
        QVERIFY2(lines.at(i).startsWith(names.at(i).toUtf8() + ':'), lines.at(i).constData());
        QVERIFY2(located.match(lines.at(i)).hasMatch(), lines.at(i).constData());
    }
}

void TestKpgeomFiles::everyCommandRefusesEveryPrefix_data()
{
    QTest::addColumn<QStringList>("arguments");
    addReadingRows([](char const* name, QStringList const& rest) {
        QTest::newRow(name) << rest + QStringList {"-"};
    });
    QTest::newRow("convert") << QStringList {"convert", "-", "-o", "out.xml"};
}

void TestKpgeomFiles::everyCommandRefusesEveryPrefix()
{
    QFETCH(QStringList, arguments);
    QByteArray const document =
        "<!DOCTYPE D [<!ENTITY e 'v'>]>\n<D a='&e;'><![CDATA[]]>"
        "<Geometry Closed=\"1\"><MoveTo><X V=\"1\"/></MoveTo></Geometry></D>";
    QRegularExpression const located("^<stdin>:[12]:\\d+: [A-Z][^\n]+\\.\n$");
    Workplace const place;
    for (int size = 0; size < document.size(); size += prefixStep) {
        Workplace::Start start;
        start.input = document.left(size);
        Result const result = place.run(arguments, start);
        COMPARE_EXIT(result, 1);
        if (size == 0 && arguments.first() == "convert")
            QCOMPARE(result.err, QByteArray("<stdin>: the picture is empty\n"));
        else
            QVERIFY2(located.match(result.err).hasMatch(), result.err.constData());
        QCOMPARE(result.out, QByteArray(arguments.contains("--json") ? "[\n]\n" : ""));
        QCOMPARE(place.entries(), QStringList());
    }
    if (arguments.first() == "convert")
        return;
    Workplace::Start start;
    start.input = document;
    Result const result = place.run(arguments, start);
    COMPARE_EXIT(result, arguments.first() == "check" ? 3 : 0);
}

void TestKpgeomFiles::badFilesAreToldInTheirOrder_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QByteArray>("out");
    QTest::newRow("info") << "info" << QByteArray("empty: 0 outlines\n\nempty: 0 outlines\n");
    QTest::newRow("check") << "check"
                           << QByteArray("empty: outlines: 0, warnings: 0\n"
                                         "empty: outlines: 0, warnings: 0\n");
}

void TestKpgeomFiles::badFilesAreToldInTheirOrder()
{
    QFETCH(QString, command);
    QFETCH(QByteArray, out);
    Workplace const place;
    place.write("empty", "<D/>");
    place.write("cut", "<D>\n<E");
    place.write("bytes",
        "\x7f"
        "ELF\x01\x02\x03");
    Result const result =
        place.run({command, "missing", "empty", "cut", ".", "empty", "bytes", "cut"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err,
        QByteArray("missing: No such file or directory\n"
                   "cut:2:3: Premature end of document.\n"
                   ".: file to open is a directory\n"
                   "bytes: a program or library, not an XML document\n"
                   "cut:2:3: Premature end of document.\n"));
    QCOMPARE(result.out, out);
}

void TestKpgeomFiles::hostileDocumentsAreRefused_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("line");

    QByteArray const deep =
        QByteArray("<D>").repeated(1000000) + boxGeometry() + QByteArray("</D>").repeated(1000000);
    QTest::newRow("a million levels")
        << deep << QByteArray("a:1:3004: more than 1000 nested elements");
    QTest::newRow("a million levels in an outline")
        << QByteArray("<Geometry Closed='1'>" + deep + "</Geometry>")
        << QByteArray("a:1:3022: more than 1000 nested elements");
    QTest::newRow("a million levels without an end") << QByteArray("<D>").repeated(
        1000000) << QByteArray("a:1:3004: more than 1000 nested elements");

    QByteArray bomb = "<!DOCTYPE D [<!ENTITY e0 \"xxxxxxxxxx\">";
    for (int i = 1; i < 10; ++i) {
        QByteArray const inner = "&e" + QByteArray::number(i - 1) + ";";
        bomb += "<!ENTITY e" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
    }
    bomb += "]>\n<D>&e9;</D>";
    QTest::newRow("entities of entities")
        << bomb << QByteArray("a:1:534: more than 1000 references within an entity");
    QTest::newRow("fifty thousand references")
        << QByteArray("<!DOCTYPE D [<!ENTITY e \"" + QByteArray(4000, 'x') + "\">]>\n<D>"
               + QByteArray("&e;").repeated(50000) + "</D>")
        << QByteArray("a:1:4030: more than 10000 references in a document that declares entities");
    QByteArray defaults;
    for (int i = 0; i < 1000; ++i)
        defaults += " a" + QByteArray::number(i) + " CDATA 'v'";
    QTest::newRow("default attributes") << QByteArray("<!DOCTYPE D [<!ATTLIST b" + defaults
        + ">]>\n<D>" + QByteArray("<b/>").repeated(10000) + "</D>")
                                        << QByteArray("a:2:404: more than 100000 nodes");
}

void TestKpgeomFiles::hostileDocumentsAreRefused()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, line);
    Workplace const place;
    place.write("a", document);
    for (QStringList const& arguments : {QStringList {"info", "a"}, QStringList {"check", "a"},
             QStringList {"render", "a", "-o", "out.svg"},
             QStringList {"resize", "a", "--from", "1x1", "--to", "2x2", "-o", "out.xml"},
             QStringList {"convert", "a", "-o", "out.xml"}}) {
        Result const result = place.run(arguments);
        COMPARE_EXIT(result, 1);
        QCOMPARE(result.err, QByteArray(line + '\n'));
        QVERIFY2(!result.out.contains("outline"), result.out.constData());
    }
    QCOMPARE(place.entries(), QStringList {"a"});
}

void TestKpgeomFiles::oddNumbersAreTaken_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("renderCode");
    QTest::newRow("not a number") << QByteArray("nan") << 1;
    QTest::newRow("infinity") << QByteArray("inf") << 1;
    QTest::newRow("minus infinity") << QByteArray("-inf") << 1;
    QTest::newRow("greatest double") << QByteArray("1.79769e308") << 1;
    QTest::newRow("beyond a double") << QByteArray("1e999") << 1;
    QTest::newRow("smallest double") << QByteArray("4.94066e-324") << 0;
    QTest::newRow("no number") << QByteArray("five") << 0;
    QTest::newRow("a million digits") << QByteArray(1000000, '0') << 0;
}

void TestKpgeomFiles::oddNumbersAreTaken()
{
    QFETCH(QByteArray, value);
    QFETCH(int, renderCode);
    Workplace const place;
    place.write("a.xml",
        boxGeometry().replace("</Geometry>",
            "<LineTo><X V=\"" + value + "\" B=\"99\" P=\"" + value + "\"/><Y V=\"" + value
                + "\" B=\"123456789\" P=\"0\"/></LineTo></Geometry>"));
    Result const info = place.run({"info", "a.xml"});
    COMPARE_EXIT(info, 0);
    QVERIFY(info.out.startsWith("a.xml: 1 outline\n"));
    Result const check = place.run({"check", "a.xml"});
    COMPARE_EXIT(check, 3);
    QCOMPARE(check.err, QByteArray());
    Result const render = place.run({"render", "a.xml", "-o", "out.png"});
    COMPARE_EXIT(render, renderCode);
    QCOMPARE(render.err.count('\n'), renderCode);
    QCOMPARE(place.entries().contains("out.png"), renderCode == 0);
    COMPARE_EXIT(
        place.run({"resize", "a.xml", "--from", "100x60", "--to", "10x6", "-o", "out.xml"}), 0);
}

void TestKpgeomFiles::largeDocumentsAreTaken_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("info") << QStringList {"info", "a.xml"};
    QTest::newRow("check") << QStringList {"check", "a.xml"};
    QTest::newRow("render") << QStringList {"render", "a.xml", "-o", "out.png"};
    QTest::newRow("resize") << QStringList {
        "resize", "a.xml", "--from", "100x60", "--to", "10x6", "-o", "out.xml"};
}

void TestKpgeomFiles::largeDocumentsAreTaken()
{
    QFETCH(QStringList, arguments);
    QByteArray document = "<Geometry Closed=\"1\">";
    int const count = Testing::sanitized ? 20000 : 100000;
    for (int i = 0; i < count; ++i) {
        QByteArray const x = QByteArray::number(i % 1000 * 2);
        QByteArray const y = QByteArray::number(i / 1000 * 2);
        document += "<LineTo><X V=\"" + x + "\" B=\"1\" P=\"0\"/><Y V=\"" + y
            + "\" B=\"2\" P=\"0\"/></LineTo>\n";
    }
    document += "</Geometry>";
    Workplace const place;
    place.write("a.xml", document);
    Result const result = place.run(arguments);
    COMPARE_EXIT(result, 0);
    bool const isSmaller = arguments.first() == "resize";
    QCOMPARE(result.err,
        isSmaller ? "a.xml: in a box of 10 x 6, " + QByteArray::number(count / 5 * 4)
                + " lines are shorter than one unit and not drawn\n"
                  : QByteArray());
    if (arguments.first() == "info")
        QVERIFY(result.out.contains("  " + QByteArray::number(count) + "  "));
    if (arguments.first() == "resize")
        QCOMPARE(place.read("out.xml").count("<LineTo>"), count);
}

void TestKpgeomFiles::namesStayOnOneLine_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("line feed") << "a\nb"
                               << QByteArray("a\xef\xbf\xbd"
                                             "b");
    QTest::newRow("escape") << "a\x1b[31mb" << QByteArray("a\xef\xbf\xbd[31mb");
    QTest::newRow("carriage return") << "\rb"
                                     << QByteArray("\xef\xbf\xbd"
                                                   "b");
    QTest::newRow("escape of one character") << QString("a") + QChar(0x9b) + "b"
                                             << QByteArray("a\xef\xbf\xbd"
                                                           "b");
}

void TestKpgeomFiles::namesStayOnOneLine()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, shown);
    Workplace const place;
    COMPARE_FAILURE(place.run({"check", name}), 1, shown + ": No such file or directory");
    COMPARE_FAILURE(
        place.run({name}), 2, "kpgeom: unknown command '" + shown + "' (see kpgeom --help)");
    place.write(name, boxGeometry("Closed=\"2\""));
    Result const check = place.run({"check", name});
    COMPARE_EXIT(check, 3);
    QVERIFY(check.out.startsWith(shown + ":1:"));
    Result const info = place.run({"info", name});
    COMPARE_EXIT(info, 0);
    QVERIFY(info.out.startsWith(shown + ": 1 outline\n"));
}

void TestKpgeomFiles::oddNamesAreOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("locale");
    QTest::newRow("blanks") << " a b "
                            << "C.UTF-8";
    QTest::newRow("not ASCII") << QString::fromUtf8("\xc3\x84pfel\xe4\xb8\xad") << "C.UTF-8";
    QTest::newRow("dash") << "-a"
                          << "C.UTF-8";
    QTest::newRow("like an option") << "--json"
                                    << "C.UTF-8";
    QTest::newRow("placeholder") << "%1%2"
                                 << "C.UTF-8";
    QTest::newRow("in the C locale") << "plain"
                                     << "C";
}

void TestKpgeomFiles::oddNamesAreOpened()
{
    QFETCH(QString, name);
    QFETCH(QString, locale);
    Workplace const place;
    place.write(name, boxGeometry());
    Workplace::Start start;
    start.locale = locale;
    Result const result = place.run({"info", "--", name}, start);
    COMPARE_EXIT(result, 0);
    QVERIFY2(result.out.startsWith(name.toUtf8() + ": 1 outline\n"), result.out.constData());
}

void TestKpgeomFiles::windowingOptionsAreNoOptions_data()
{
    QTest::addColumn<QString>("name");
    for (char const* const name :
        {"-platform", "-style", "-title", "-geometry", "-icon", "-display", "-session", "-reverse"})
        QTest::newRow(name) << name;
}

void TestKpgeomFiles::windowingOptionsAreNoOptions()
{
    QFETCH(QString, name);
    Workplace const place;
    place.write(name, "<D/>");
    place.write("in.xml", "<D/>");
    Result const files = place.run({"info", "--", name, "in.xml"});
    COMPARE_EXIT(files, 0);
    QCOMPARE(files.out, name.toUtf8() + ": 0 outlines\n\nin.xml: 0 outlines\n");
    COMPARE_FAILURE(place.run({name, "nonsense"}), 2,
        "kpgeom: unknown command '" + name.toUtf8() + "' (see kpgeom --help)");
    Result const option = place.run({"info", name, "in.xml"});
    COMPARE_EXIT(option, 2);
    QVERIFY2(option.err.startsWith("kpgeom info: Unknown option"), option.err.constData());
    QCOMPARE(option.out, QByteArray());
}

void TestKpgeomFiles::thousandsOfFilesAreTaken_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("info") << "info";
    QTest::newRow("check") << "check";
}

void TestKpgeomFiles::thousandsOfFilesAreTaken()
{
    QFETCH(QString, command);
    int const count = 3000;
    Workplace const place;
    QStringList names;
    for (int i = 0; i < count; ++i) {
        names << QString::number(i);
        place.write(names.last(), boxGeometry());
    }
    COMPARE_EXIT(place.run(QStringList {command} + names.mid(0, 10)), 0);
    long const few = mostKilobytesOfRuns();
    Result const result = place.run(QStringList {command} + names);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QByteArray const line = command == "info" ? ": 1 outline\n" : ": outlines: 1, warnings: 0\n";
    QCOMPARE(result.out.count(line), count);
    long const growth = mostKilobytesOfRuns() - few;
    QVERIFY2(growth < growthOfManyFiles, qPrintable(QString::number(growth)));
}

void TestKpgeomFiles::progressIsShownOnATerminal()
{
    Workplace const place;
    place.write("a", boxGeometry());
    QByteArray const shown =
        shownOnTerminal(place, QStringList {"info"} + QVector<QString>(10, "a").toList(), 0);
    QVERIFY2(shown.startsWith("\r[####                                    ] 1/10\r["),
        shown.constData());
    QVERIFY(shown.contains("\r[####################                    ] 5/10\r["));
    QVERIFY(shown.endsWith("\r[########################################] 10/10\r\x1b[K"));
    QCOMPARE(shown.count("\x1b[K"), 1);
}

void TestKpgeomFiles::everyCommandTakesItsProgressAway_data()
{
    QTest::addColumn<QStringList>("arguments");
    addReadingRows([](char const* name, QStringList const& rest) {
        if (rest.first() != "resize") // takes a single file
            QTest::newRow(name) << rest;
    });
}

void TestKpgeomFiles::everyCommandTakesItsProgressAway()
{
    QFETCH(QStringList, arguments);
    Workplace const place;
    prepareInput(place);
    QStringList const files = QVector<QString>(12, "in.xml").toList();
    QByteArray const shown = shownOnTerminal(place, arguments + files, 0);
    for (int step = 1; step <= 12; ++step) {
        QVERIFY2(shown.contains("] " + QByteArray::number(step) + "/12\r"), shown.constData());
    }
    QCOMPARE(linesOnScreen(shown), QByteArrayList {QByteArray()});
}

void TestKpgeomFiles::resultsStandBesideTheProgress()
{
    Workplace const place;
    prepareInput(place);
    place.write("bad", "<D>\n");
    QStringList files = QVector<QString>(12, "in.xml").toList();
    files[0] = "bad";
    files[6] = "bad";
    files[11] = "missing";
    Terminal const terminal;
    Workplace::Start start;
    start.setUp = [toError = terminal.replacing(STDERR_FILENO),
                      toOutput = terminal.replacing(STDOUT_FILENO)] {
        toError();
        toOutput();
    };
    COMPARE_EXIT(place.run(QStringList {"check"} + files, start), 1);
    QByteArray const clean = "in.xml: outlines: 1, warnings: 0";
    QByteArray const bad = "bad:2:1: Premature end of document.";
    QByteArray const shown = terminal.text();
    QVERIFY2(shown.contains(" 12/12"), shown.constData());
    QCOMPARE(linesOnScreen(shown),
        (QByteArrayList {bad, clean, clean, clean, clean, clean, bad, clean, clean, clean, clean,
            "missing: No such file or directory", ""}));
}

void TestKpgeomFiles::progressFitsNarrowTerminals_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QByteArray>("last");
    QTest::newRow("unknown width") << 0 << QByteArray("[" + QByteArray(40, '#') + "] 12/12");
    QTest::newRow("80 columns") << 80 << QByteArray("[" + QByteArray(40, '#') + "] 12/12");
    // The last column stays free: a terminal may go to the next line behind it.
    QTest::newRow("49 columns") << 49 << QByteArray("[" + QByteArray(40, '#') + "] 12/12");
    QTest::newRow("48 columns") << 48 << QByteArray("[" + QByteArray(39, '#') + "] 12/12");
    QTest::newRow("20 columns") << 20 << QByteArray("[" + QByteArray(11, '#') + "] 12/12");
    QTest::newRow("10 columns") << 10 << QByteArray("[#] 12/12");
    QTest::newRow("9 columns") << 9 << QByteArray("12/12");
    QTest::newRow("1 column") << 1 << QByteArray("12/12");
}

void TestKpgeomFiles::progressFitsNarrowTerminals()
{
    QFETCH(int, columns);
    QFETCH(QByteArray, last);
    Workplace const place;
    prepareInput(place);
    auto const resizeTerminal = [columns] {
        winsize size {};
        size.ws_col = static_cast<unsigned short>(columns);
        ioctl(STDERR_FILENO, TIOCSWINSZ, &size);
    };
    QStringList const files = QVector<QString>(12, "in.xml").toList();
    QByteArray const shown =
        shownOnTerminal(place, QStringList {"info"} + files, 0, resizeTerminal);
    QVERIFY2(shown.endsWith("\r" + last + "\r\x1b[K"), shown.constData());
    QCOMPARE(shown.count('\r'), 13);
}

void TestKpgeomFiles::messagesStandBesideTheProgress()
{
    Workplace const place;
    place.write("a", boxGeometry());
    QStringList files = QVector<QString>(10, "a").toList();
    files[4] = "missing";
    QByteArray const shown = shownOnTerminal(place, QStringList {"info"} + files, 1);
    QVERIFY2(shown.contains(" 5/10\r\x1b[Kmissing: No such file or directory\r\n\r["),
        shown.constData());
    QVERIFY(shown.endsWith(" 10/10\r\x1b[K"));
}

void TestKpgeomFiles::fewFilesShowNoProgress()
{
    Workplace const place;
    place.write("a", boxGeometry());
    QCOMPARE(shownOnTerminal(place, QStringList {"info"} + QVector<QString>(9, "a").toList(), 0),
        QByteArray());
}

void TestKpgeomFiles::quietShowsNoProgress()
{
    Workplace const place;
    place.write("a", boxGeometry());
    QStringList files = QVector<QString>(12, "a").toList();
    files[4] = "missing";
    QCOMPARE(shownOnTerminal(place, QStringList {"info", "--quiet"} + files, 1),
        QByteArray("missing: No such file or directory\r\n"));
}

void TestKpgeomFiles::noProgressElsewhere()
{
    Workplace const place;
    place.write("a", boxGeometry());
    QStringList const files = QVector<QString>(50, "a").toList();
    for (QStringList const& arguments : {QStringList {"info"} + files,
             QStringList {"check"} + files, QStringList {"render", "-o", "out.svg"} + files}) {
        Result const result = place.run(arguments);
        COMPARE_EXIT(result, 0);
        QCOMPARE(result.err, QByteArray());
    }
}

void TestKpgeomFiles::noProgressBesideMessagesElsewhere()
{
    // A terminal as standard output is none as standard error.
    Workplace const place;
    prepareInput(place);
    QStringList files = QVector<QString>(20, "in.xml").toList();
    files[10] = "missing";
    Terminal const terminal;
    Workplace::Start start;
    start.setUp = terminal.replacing(STDOUT_FILENO);
    Result const result = place.run(QStringList {"check"} + files, start);
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray("missing: No such file or directory\n"));
    QByteArray const line = "in.xml: outlines: 1, warnings: 0\r\n";
    QCOMPARE(terminal.text(), line.repeated(19));
}

QTEST_GUILESS_MAIN(TestKpgeomFiles)

#include "tst_kpgeom_files.moc"
