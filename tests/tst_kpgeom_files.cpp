#include "kpgeomtesting.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <linux/capability.h>

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

void limitFileSize(rlim_t bytes)
{
    rlimit const limit {bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

/** Lets the superuser, too, be stopped by permissions. */
void obeyPermissions()
{
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
}

/** The most memory that a run of the tool has taken so far. */
long mostKilobytesOfRuns()
{
    rusage usage {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
}

/** What the tool shows on a terminal that is its standard error. */
QByteArray shownOnTerminal(Workplace const& place, QStringList const& arguments, int expectedCode)
{
    Terminal const terminal;
    Workplace::Start start;
    start.setUp = terminal.replacing(STDERR_FILENO);
    Result const result = place.run(arguments, start);
    return result.exited && result.code == expectedCode ? terminal.text() : "another end";
}

} // namespace

class TestKpgeomFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // First: the figure of the memory is the greatest of all runs so far.
    void thousandsOfFilesAreTaken_data();
    void thousandsOfFilesAreTaken();

    void outputReplacesTheFileThatWasThere_data() { addWritingRows(); }
    void outputReplacesTheFileThatWasThere();
    void outputThroughALinkKeepsTheLink_data() { addWritingRows(); }
    void outputThroughALinkKeepsTheLink();
    void outputKeepsPermissions_data() { addWritingRows(); }
    void outputKeepsPermissions();
    void fullDiskKeepsTheOldFile_data() { addWritingRows(); }
    void fullDiskKeepsTheOldFile();
    void outputThatCannotBeMadeIsTold_data();
    void outputThatCannotBeMadeIsTold();
    void unwritableFolderIsTold();
    void unwritableFileStaysAsItIs();
    void deviceIsWrittenAndStays();
    void badInputKeepsTheOldFile_data();
    void badInputKeepsTheOldFile();
    void resizedDocumentMayReplaceItself();
    void outputGoesToStandardOutput_data() { addWritingRows(); }
    void outputGoesToStandardOutput();

    void standardOutputThatFailsIsTold_data();
    void standardOutputThatFailsIsTold();
    void readerThatGoesAwayIsTold();
    void closedStreamsAreNotMistakenForFiles();

    void inputThatCannotBeReadIsTold_data();
    void inputThatCannotBeReadIsTold();
    void unreadableInputIsTold();
    void everyPrefixIsLocated();
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

    void progressIsShownOnATerminal();
    void messagesStandBesideTheProgress();
    void fewFilesShowNoProgress();
    void noProgressElsewhere();
};

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
    Workplace::Start start;
    start.setUp = [] { limitFileSize(100); };
    COMPARE_FAILURE(
        place.run(writing(arguments)(name), start), 1, name.toUtf8() + ": File too large");
    QCOMPARE(place.read(name), QByteArray("old"));
    QCOMPARE(place.entries(), (QStringList {"in.svg", "in.xml", name}));
}

void TestKpgeomFiles::outputThatCannotBeMadeIsTold_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("full device") << "/dev/full" << QByteArray("/dev/full: No space left on device");
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
    COMPARE_EXIT(place.run({"convert", "in.svg", "-o", "/dev/null"}), 0);
    struct stat status
    {
    };
    QCOMPARE(stat("/dev/null", &status), 0);
    QVERIFY(S_ISCHR(status.st_mode));
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

void TestKpgeomFiles::readerThatGoesAwayIsTold()
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
    COMPARE_FAILURE(result, 1, "<stdout>: cannot be written");
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
    QTest::newRow("endless") << "/dev/zero" << QByteArray("/dev/zero: larger than 268435456 bytes");
    QTest::newRow("no name") << "" << QByteArray(": No file name specified");
    QTest::newRow("empty") << "empty" << QByteArray("empty:1:1: Premature end of document.");
    QTest::newRow("empty device") << "/dev/null"
                                  << QByteArray("/dev/null:1:1: Premature end of document.");
    QTest::newRow("picture") << "picture"
                             << QByteArray("picture:1:2: Encountered incorrectly encoded content.");
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
        << bomb
        << QByteArray("a:2:8: Entity expands to more characters than the entity expansion "
                      "limit.");
    QTest::newRow("fifty thousand references")
        << QByteArray("<!DOCTYPE D [<!ENTITY e \"" + QByteArray(4000, 'x') + "\">]>\n<D>"
               + QByteArray("&e;").repeated(50000) + "</D>")
        << QByteArray("a:1:4030: more than 10000 references in a document that declares entities");
    QByteArray defaults;
    for (int i = 0; i < 1000; ++i)
        defaults += " a" + QByteArray::number(i) + " CDATA 'v'";
    QTest::newRow("default attributes") << QByteArray("<!DOCTYPE D [<!ATTLIST b" + defaults
        + ">]>\n<D>" + QByteArray("<b/>").repeated(10000) + "</D>")
                                        << QByteArray("a:2:404: expands to more than 100000 nodes");
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
    int const count = 100000;
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
    QCOMPARE(result.err, QByteArray());
    if (arguments.first() == "info")
        QVERIFY(result.out.contains("  100000  "));
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
    Result const result = place.run(QStringList {command} + names);
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, QByteArray());
    QByteArray const line = command == "info" ? ": 1 outline\n" : ": outlines: 1, warnings: 0\n";
    QCOMPARE(result.out.count(line), count);
    QVERIFY(mostKilobytesOfRuns() < 1024L * 1024);
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

QTEST_GUILESS_MAIN(TestKpgeomFiles)

#include "tst_kpgeom_files.moc"
