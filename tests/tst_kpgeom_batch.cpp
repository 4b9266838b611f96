// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "testing.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

using namespace KpgeomTesting;

/** Many files in one run of the tool. */
class TestKpgeomBatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wrongUsageIsToldInOneLine_data();
    void wrongUsageIsToldInOneLine();
    void folderTakesAFileAnInput();
    void pattern_data();
    void pattern();
    void oneFileIsWrittenAsBefore();
    void foldersAreSearched();
    void emptyFolderIsTold();
    void unreadableFolderIsTold();
    void namesThatAreNoTextAreKept();
    void resultsAreNoInputs();
    void failureDoesNotStopOthers();
    void worstOutcomeCounts();
    void jobsDoNotShow();
    void digestsComeInOrder();
    void digestsStopWithTheirReader();
    void misuseNamesItsFile();
    void blurKeepsFormats();
    void renderDrawsSizes();
    void renderMakesOnePictureOfAFolder();
    void svgWritesFiles();
    void documentsAreTakenToo();
    void linksDoNotHideAClash();
    void failedWriteIsToldOfTheOutput();
    void fullDiskLeavesWholeFiles();
    void fileInThePlaceOfAFolderIsTold();
    void signalLeavesWholeFiles_data();
    void signalLeavesWholeFiles();
    void ignoredSignalStaysIgnored();
    void watchDoesAgainWhatChanges();
    void watchNeedsAFolderToWatch();
};

namespace {

/** A black box, of which nothing is lost. */
QByteArray boxPicture(int width)
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"100\" height=\"60\"><path d=\"M0 0H"
        + QByteArray::number(width) + "V60H0Z\"/></svg>";
}

/** A picture that is not kept whole: one message. */
QByteArray redPicture()
{
    return boxPicture(50).replace("<path", "<path fill=\"red\"");
}

/** A red text: it takes a font. */
QByteArray textPicture()
{
    return redPicture().replace("</svg>", "<text x=\"5\" y=\"30\">Text</text></svg>");
}

QByteArray const redMessage = "1 shape with a colour other than black: not kept\n";

void makeFolder(Workplace const& place, QString const& name)
{
    if (!QDir().mkpath(place.path(name)))
        qFatal("%s cannot be made", qPrintable(name));
}

/** The files in a folder and below, hidden ones too, by their paths from it. */
QStringList filesBelow(Workplace const& place, QString const& folder)
{
    QStringList result;
    QDir const root(place.path(folder));
    QDirIterator files(
        root.path(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext())
        result << root.relativeFilePath(files.next());
    result.sort();
    return result;
}

/** Pictures "000.svg" to one below `count`, in a folder of their own. */
void writePictures(Workplace const& place, int count)
{
    makeFolder(place, "in");
    for (int i = 0; i < count; ++i)
        place.write(QStringLiteral("in/%1.svg").arg(i, 3, 10, QLatin1Char('0')), boxPicture(i + 1));
}

/** The tool while it runs. */
class RunningTool
{
public:
    RunningTool(Workplace const& place, QStringList const& arguments)
    {
        m_process.setWorkingDirectory(place.path());
        m_process.start(KPGEOM_EXECUTABLE, arguments);
        if (!m_process.waitForStarted())
            qFatal("the tool does not start");
    }
    ~RunningTool()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    bool hasEnded()
    {
        return m_process.waitForFinished(0) || m_process.state() == QProcess::NotRunning;
    }
    void send(int signal) { ::kill(pid_t(m_process.processId()), signal); }

    /** Its exit code as a shell shows it; below 0 when it does not end. */
    int exitCode()
    {
        if (!m_process.waitForFinished(60000))
            return -1000;
        // Of one that a signal has ended Qt gives the signal.
        int const code = m_process.exitCode();
        return m_process.exitStatus() == QProcess::NormalExit ? code : 128 + code;
    }

    /** Standard error up to the end of this text, or what there is after a long time. */
    QByteArray errorsUntil(QByteArray const& text)
    {
        QElapsedTimer timer;
        timer.start();
        while (!m_errors.contains(text) && timer.elapsed() < 30000) {
            m_process.waitForReadyRead(20);
            m_errors += m_process.readAllStandardError();
        }
        return std::exchange(m_errors, QByteArray());
    }

private:
    Q_DISABLE_COPY(RunningTool)

    QProcess m_process;
    QByteArray m_errors;
};

bool waitFor(std::function<bool()> const& isDone)
{
    return QTest::qWaitFor(isDone, 30000);
}

} // namespace

void TestKpgeomBatch::wrongUsageIsToldInOneLine_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("fault");
    auto const row = [](char const* arguments, char const* fault) {
        QTest::newRow(arguments) << QString(arguments) << QByteArray(fault);
    };
    row("convert a.svg b.svg -o c.xml", "exactly one input file is needed");
    row("convert a.svg b.svg -o -", "exactly one input file is needed");
    row("convert -R in -o c.xml",
        "many files go to a folder or a pattern, like -o DIR/ or -o '{name}.out'");
    row("convert a.svg b.svg -o {nam}.xml", "-o takes {name}, {path} and {size}, not '{nam}'");
    row("convert a.svg -o {size}.xml", "{size} in -o needs a --size of its own");
    row("convert a.svg b.svg -o out/ -j 0", "--jobs takes a number from 1 to 256, not '0'");
    row("convert a.svg b.svg -o out/ -j 257", "--jobs takes a number from 1 to 256, not '257'");
    row("convert a.svg b.svg -o out/ --jobs many",
        "--jobs takes a number from 1 to 256, not 'many'");
    row("convert - a.svg - -o out/", "standard input is given twice");
    row("convert - -o a.xml --watch", "--watch does not go with standard input");
    row("convert a.svg in/a.svg -o out/", "a.svg and in/a.svg would both become out/a.xml");
    row("convert a.svg b.svg -o x{{{path}{{.xml -j 1 a.svg",
        "a.svg and a.svg would both become x{a{.xml");
    row("convert a.svg b.svg -o ./{name}.svg --watch",
        "./a.svg is an input and would become an output");
    row("convert a.svg b.svg -o b.svg/../{name}b.svg -j 2",
        "b.svg/../ab.svg is an input and would become an output");
    row("convert --path M0 -o a.xml -R", "--recursive does not go with --path");
    row("convert --font a --text b -o a.xml -j 1", "--jobs does not go with --font and --text");
    row("convert --presets a -o b --watch", "--watch does not go with --presets");
    row("bind a.svg b.svg --slices 1,1,1,1 -o c.xml", "exactly one file is needed");
    row("blur a.png b.png -o c.png -r 1", "one picture is taken");
    row("blur a.png b.png -o {name}.nothing -r 1",
        "pictures of the format 'nothing' are not written");
    row("digest -c a.svg -R", "--recursive does not go with --check");
    row("digest - -", "standard input is given twice");
    row("render a.xml b.xml -o out/", "the format is none of svg, png, pdf, html and custgeom.xml");
    row("render a.xml -o {name}.svg --size 1x1 --size 2x2",
        "several sizes need {size} in -o, or --sheet");
    row("render a.xml -o {name}-{size}.html --size 1x1 --size 2x2",
        "only one --size goes with html");
    row("render a.xml -o a.svg --watch", "--watch needs an output a file");
    row("svg a.xml --watch", "--watch needs an output a file");
}

void TestKpgeomBatch::wrongUsageIsToldInOneLine()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, fault);
    Workplace const place;
    makeFolder(place, "in");
    for (QString const& name :
        {QString("a.svg"), QString("b.svg"), QString("ab.svg"), QString("in/a.svg")})
        place.write(name, boxPicture(10));
    QStringList list = arguments.split(' ');
    if (fault.startsWith("b.svg/../"))
        list.insert(3, "ab.svg");
    QByteArray const command = "kpgeom " + list.first().toUtf8();
    COMPARE_FAILURE(place.run(list), 2, command + ": " + fault + " (see " + command + " --help)");
    QCOMPARE(place.entries(), (QStringList {"a.svg", "ab.svg", "b.svg", "in"}));
}

void TestKpgeomBatch::folderTakesAFileAnInput()
{
    Workplace const place;
    makeFolder(place, "deep");
    place.write("a.svg", boxPicture(10));
    place.write("deep/b.c.svg", boxPicture(20));
    place.write("none", boxPicture(30));
    QStringList const inputs {"a.svg", "deep/b.c.svg", "none"};
    for (QString const& input : inputs) {
        COMPARE_EXIT(
            place.run({"convert", input, "-o", QFileInfo(input).completeBaseName() + ".ref"}), 0);
    }
    // It is made, its slash tells, or it is there.
    for (QString const& output : {QString("new/out/"), QString("new/out")}) {
        Result const result =
            place.run(QStringList {"convert"} + inputs + QStringList {"-o", output});
        COMPARE_EXIT(result, 0);
        QCOMPARE(result.out + result.err, QByteArray());
        QCOMPARE(filesBelow(place, "new/out"), (QStringList {"a.xml", "b.c.xml", "none.xml"}));
        QCOMPARE(place.read("new/out/a.xml"), place.read("a.ref"));
        QCOMPARE(place.read("new/out/b.c.xml"), place.read("b.c.ref"));
        QCOMPARE(place.read("new/out/none.xml"), place.read("none.ref"));
    }
    Workplace::Start start;
    start.input = boxPicture(10);
    COMPARE_EXIT(place.run({"convert", "-", "a.svg", "-o", "piped/"}, start), 0);
    QCOMPARE(filesBelow(place, "piped"), (QStringList {"a.xml", "stdin.xml"}));
    QCOMPARE(place.read("piped/stdin.xml"), place.read("a.ref"));
}

void TestKpgeomBatch::pattern_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("files");
    QTest::newRow("name") << "out/{name}.xml" << QStringList {"a.xml", "b.xml"};
    QTest::newRow("path") << "out/{path}.xml" << QStringList {"a.xml", "deep/b.xml"};
    QTest::newRow("both") << "out/{path}/{name}.txt" << QStringList {"a/a.txt", "deep/b/b.txt"};
    QTest::newRow("brace") << "out/{{{name}" << QStringList {"{a", "{b"};
    QTest::newRow("folder") << "out/{name}/" << QStringList {"a/a.xml", "b/deep/b.xml"};
}

void TestKpgeomBatch::pattern()
{
    QFETCH(QString, output);
    QFETCH(QStringList, files);
    Workplace const place;
    makeFolder(place, "in/deep");
    place.write("in/a.svg", boxPicture(10));
    place.write("in/deep/b.svg", boxPicture(20));
    COMPARE_EXIT(place.run({"convert", "--recursive", "in", "-o", output}), 0);
    QCOMPARE(filesBelow(place, "out"), files);
}

void TestKpgeomBatch::oneFileIsWrittenAsBefore()
{
    Workplace const place;
    place.write("a.svg", boxPicture(10));
    makeFolder(place, "folder");
    COMPARE_FAILURE(place.run({"convert", "a.svg", "-o", "folder/"}), 1, "folder/: is a directory");
    COMPARE_EXIT(place.run({"convert", "a.svg", "-o", "a{{b{1}.xml"}), 0);
    COMPARE_EXIT(place.run({"convert", "a.svg", "-o", "{name}.xml"}), 0);
    COMPARE_EXIT(place.run({"convert", "a.svg", "-o", "folder/", "--jobs", "1"}), 0);
    QCOMPARE(place.entries(), (QStringList {"a.svg", "a.xml", "a{{b{1}.xml", "folder"}));
    QCOMPARE(filesBelow(place, "folder"), QStringList("a.xml"));
}

void TestKpgeomBatch::foldersAreSearched()
{
    Workplace const place;
    makeFolder(place, "in/b/c");
    makeFolder(place, "in/.hidden");
    for (QString const& name :
        {QString("a.svg"), QString("b/c/z.SVG"), QString("b/d.svg"), QString("e.svgz"),
            QString("notes.txt"), QString("old.xml"), QString(".x.svg"), QString(".hidden/y.svg")})
        place.write("in/" + name, redPicture());
    QVERIFY(QFile::link("..", place.path("in/b/loop")));
    QVERIFY(QFile::link("a.svg", place.path("in/link.svg")));
    QVERIFY(QFile::link("in", place.path("linked")));
    place.write("first", redPicture());
    QByteArray const messages = "first: " + redMessage + "in/a.svg: " + redMessage
        + "in/b/c/z.SVG: " + redMessage + "in/b/d.svg: " + redMessage + "in/e.svgz: " + redMessage;
    Result const result = place.run({"convert", "-R", "first", "in", "-o", "out/"});
    COMPARE_EXIT(result, 0);
    QCOMPARE(result.err, messages);
    QStringList const files {"a.xml", "b/c/z.xml", "b/d.xml", "e.xml", "first.xml"};
    QCOMPARE(filesBelow(place, "out"), files);
    // A link that is named leads where it leads.
    COMPARE_EXIT(place.run({"convert", "-R", "first", "linked/", "-o", "again/"}), 0);
    QCOMPARE(filesBelow(place, "again"), files);
    Result const flat = place.run({"convert", "in", "first", "-o", "flat/"});
    COMPARE_EXIT(flat, 1);
    QCOMPARE(flat.err, "in: file to open is a directory\nfirst: " + redMessage);
}

void TestKpgeomBatch::emptyFolderIsTold()
{
    Workplace const place;
    makeFolder(place, "in/deep");
    place.write("in/notes.txt", "");
    place.write("a.svg", boxPicture(10));
    Result const result = place.run({"convert", "-R", "in", "a.svg", "-o", "out/"});
    COMPARE_EXIT(result, 3);
    QCOMPARE(result.err, QByteArray("in: no file in it to be taken\n"));
    QCOMPARE(filesBelow(place, "out"), QStringList("a.xml"));
}

void TestKpgeomBatch::unreadableFolderIsTold()
{
    Workplace const place;
    writePictures(place, 2);
    makeFolder(place, "in/closed");
    QFile::setPermissions(place.path("in/closed"), QFile::Permissions());
    Workplace::Start start;
    start.setUp = obeyPermissions;
    Result const result = place.run({"convert", "-R", "in", "-o", "out/"}, start);
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray("in/closed: Permission denied\n"));
    QCOMPARE(filesBelow(place, "out"), (QStringList {"000.xml", "001.xml"}));
}

void TestKpgeomBatch::namesThatAreNoTextAreKept()
{
    Workplace const place;
    writePictures(place, 1);
    QByteArray const folder = QFile::encodeName(place.path("in/"));
    QCOMPARE(mkdir((folder + "a\xfe").constData(), 0700), 0);
    QCOMPARE(rename((folder + "000.svg").constData(), (folder + "a\xfe/\xff.svg").constData()), 0);
    QCOMPARE(mkfifo((folder + "pipe.svg").constData(), 0600), 0);
    Result const result = place.run({"convert", "-R", "in", "-o", "out/"});
    QByteArray const output = QFile::encodeName(place.path("out/")) + "a\xfe";
    // The folder could not be removed with them.
    QCOMPARE(unlink((folder + "a\xfe/\xff.svg").constData()), 0);
    QCOMPARE(rmdir((folder + "a\xfe").constData()), 0);
    QCOMPARE(unlink((output + "/\xff.xml").constData()), 0);
    QCOMPARE(rmdir(output.constData()), 0);
    COMPARE_EXIT(result, 0);
}

void TestKpgeomBatch::resultsAreNoInputs()
{
    Workplace const place;
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    makeFolder(place, "in");
    QVERIFY(picture.save(place.path("in/a.png")));
    for (int i = 0; i < 2; ++i) {
        COMPARE_EXIT(place.run({"blur", "-R", "in", "-r", "1", "-o", "in/{path}-soft.png"}), 0);
        COMPARE_EXIT(place.run({"blur", "-R", "in", "-r", "1", "-o", "in/out/"}), 0);
    }
    QCOMPARE(filesBelow(place, "in"),
        (QStringList {"a-soft.png", "a.png", "out/a-soft.png", "out/a.png"}));
}

void TestKpgeomBatch::failureDoesNotStopOthers()
{
    Workplace const place;
    for (QString const& name : {QString("a"), QString("c"), QString("e")})
        place.write(name + ".svg", redPicture());
    place.write("b.svg", "<svg>\n</D>");
    Result const result =
        place.run({"convert", "a.svg", "b.svg", "c.svg", "d.svg", "e.svg", "-o", "out/"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err,
        "a.svg: " + redMessage + "b.svg:2:5: Opening and ending tag mismatch.\nc.svg: " + redMessage
            + "d.svg: No such file or directory\ne.svg: " + redMessage);
    QCOMPARE(filesBelow(place, "out"), (QStringList {"a.xml", "c.xml", "e.xml"}));
}

void TestKpgeomBatch::worstOutcomeCounts()
{
    Workplace const place;
    // Exact; without a rule for the middle; too small for the margins; unreadable.
    place.write("done.svg", boxPicture(100));
    place.write("warned.svg", boxPicture(40));
    place.write("misused.svg", boxPicture(4).replace("width=\"100\"", "width=\"4\""));
    auto const codeOf = [&](QStringList const& names) {
        return place.run(QStringList {"bind", "--slices", "10,10,20,10", "-o", "out/"} + names)
            .code;
    };
    QCOMPARE(codeOf({"done.svg", "./missing"}), 1);
    QCOMPARE(codeOf({"warned.svg", "done.svg"}), 3);
    QCOMPARE(codeOf({"done.svg", "misused.svg", "warned.svg"}), 2);
    QCOMPARE(codeOf({"misused.svg", "missing", "warned.svg"}), 1);
}

void TestKpgeomBatch::jobsDoNotShow()
{
    Workplace const place;
    makeFolder(place, "in");
    QRandomGenerator random = Testing::seededRandom(1);
    for (int i = 0; i < 60; ++i) {
        QString const name = QStringLiteral("in/%1.svg").arg(i, 3, 10, QLatin1Char('0'));
        QByteArray const shape =
            redPicture().replace("</svg>", "").mid(redPicture().indexOf("<path"));
        int const kind = random.bounded(4);
        // Those that take long come first: what ends first is not the first.
        if (kind == 0)
            place.write(name,
                redPicture().replace("</svg>",
                    shape.repeated(i < 3 ? (Testing::sanitized ? 200 : 1000) : 20) + "</svg>"));
        else
            place.write(name, kind == 1 ? "<svg>" : kind == 2 ? boxPicture(i) : textPicture());
    }
    auto const run = [&](QByteArray const& jobs) {
        return place.run({"convert", "-R", "in", "-o", "out" + jobs + "/", "--jobs", jobs});
    };
    Result const one = run("1");
    COMPARE_EXIT(one, 1);
    QStringList const files = filesBelow(place, "out1");
    QVERIFY(files.size() > 30 && files.size() < 55);
    QVERIFY(one.err.startsWith("in/00"));
    for (QByteArray const jobs : {"3", "256"}) {
        Result const many = run(jobs);
        COMPARE_EXIT(many, 1);
        QCOMPARE(many.err, one.err);
        QCOMPARE(many.out, one.out);
        QCOMPARE(filesBelow(place, "out" + jobs), files);
        for (QString const& file : files)
            QCOMPARE(place.read("out" + jobs + "/" + file), place.read("out1/" + file));
    }
    for (QString const& jobs : {QString("1"), QString("7")}) {
        COMPARE_EXIT(place.run({"render", "-R", "out1", "--points", "--format", "pdf", "-o",
                         "pdf" + jobs + "/", "-j", jobs}),
            0);
    }
    for (QString const& file : filesBelow(place, "pdf1"))
        QCOMPARE(place.read("pdf7/" + file), place.read("pdf1/" + file));
}

void TestKpgeomBatch::digestsComeInOrder()
{
    Workplace const place;
    writePictures(place, 300);
    place.write("in/010.svg", QByteArray(5000000, 'x'));
    QStringList arguments {"digest"};
    for (int i = 299; i >= 0; --i)
        arguments << QStringLiteral("in/%1.svg").arg(i, 3, 10, QLatin1Char('0'));
    Result const result = place.run(arguments + QStringList {"-j", "8", "missing"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray("missing: No such file or directory\n"));
    QStringList names;
    for (QString const& line : QString(result.out).split('\n', Qt::SkipEmptyParts))
        names << line.mid(34);
    QCOMPARE(names, arguments.mid(1));
    place.write("list", result.out);
    COMPARE_EXIT(place.run({"digest", "-c", "list"}), 0);
    // By name, whatever suffix.
    std::reverse(names.begin(), names.end());
    QString const found = place.run({"digest", "-R", "in"}).out;
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(found.section('\n', i, i).mid(34), names.at(i));
}

void TestKpgeomBatch::digestsStopWithTheirReader()
{
    Workplace const place;
    writePictures(place, 20);
    Workplace::Start start;
    start.setUp = [] {
        int ends[2];
        if (pipe(ends) == 0) {
            dup2(ends[1], STDOUT_FILENO);
            close(ends[0]);
            close(ends[1]);
        }
    };
    Result const result = place.run({"digest", "-R", "in", "-j", "4"}, start);
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray());
}

void TestKpgeomBatch::misuseNamesItsFile()
{
    Workplace const place;
    place.write("a.svg", boxPicture(10));
    place.write("b.xml", "<D>" + boxGeometry() + "</D>");
    QByteArray const fault = "--scale goes with an SVG picture (see kpgeom bind --help)";
    QStringList const options {"bind", "--slices", "1,1,1,1", "--scale", "2", "-o"};
    COMPARE_FAILURE(
        place.run(options + QStringList {"c.xml", "b.xml"}), 2, "kpgeom bind: " + fault);
    for (QString const& jobs : {QString("1"), QString("3")}) {
        Result const result =
            place.run(options + QStringList {"out/", "b.xml", "a.svg", "-j", jobs});
        COMPARE_EXIT(result, 2);
        QVERIFY2(result.err.startsWith("kpgeom bind: b.xml: " + fault + '\n'), result.err);
        QCOMPARE(filesBelow(place, "out"), QStringList("a.xml"));
    }
}

void TestKpgeomBatch::blurKeepsFormats()
{
    Workplace const place;
    makeFolder(place, "in/deep");
    QStringList const names {"a.png", "b.bmp", "deep/c.png"};
    for (QString const& name : names) {
        QImage picture(9, 7, QImage::Format_RGB32);
        picture.fill(Qt::white);
        picture.setPixel(4, 3, 0xff000000u + uint(name.at(0).unicode()));
        QVERIFY(picture.save(place.path("in/" + name)));
        COMPARE_EXIT(place.run({"blur", "in/" + name, "-r", "2", "-o", "one" + name.right(4)}), 0);
        COMPARE_EXIT(place.run({"blur", "-R", "in", "-r", "2", "-o", "out/", "-j", "4"}), 0);
        QCOMPARE(filesBelow(place, "out").contains(name), true);
        QCOMPARE(place.read("out/" + name), place.read("one" + name.right(4)));
    }
    COMPARE_EXIT(place.run({"blur", "-R", "in", "-r", "2", "-o", "all/", "--format", "PNG"}), 0);
    QCOMPARE(filesBelow(place, "all"), (QStringList {"a.png", "b.png", "deep/c.png"}));
    QVERIFY(place.read("all/b.png").startsWith("\x89PNG"));
}

void TestKpgeomBatch::renderDrawsSizes()
{
    Workplace const place;
    place.write("a.xml", "<D>" + boxGeometry() + "</D>");
    place.write("b.xml", "<D>" + boxGeometry("Closed=\"0\"") + "</D>");
    QStringList const sizes {"--size", "30x20", "--size", "200.5x100"};
    COMPARE_EXIT(
        place.run(QStringList {"render", "a.xml", "b.xml", "-o", "out/{size}/{name}.png"} + sizes),
        0);
    QCOMPARE(filesBelow(place, "out"),
        (QStringList {"200.5x100/a.png", "200.5x100/b.png", "30x20/a.png", "30x20/b.png"}));
    COMPARE_EXIT(
        place.run(
            QStringList {"render", "a.xml", "b.xml", "-o", "flat/", "--format", "png"} + sizes),
        0);
    QCOMPARE(filesBelow(place, "flat"),
        (QStringList {"a-200.5x100.png", "a-30x20.png", "b-200.5x100.png", "b-30x20.png"}));
    for (QString const& name : {QString("a"), QString("b")}) {
        for (QString const& size : {QString("30x20"), QString("200.5x100")}) {
            COMPARE_EXIT(place.run({"render", name + ".xml", "-o", "one.png", "--size", size}), 0);
            QCOMPARE(place.read("out/" + size + '/' + name + ".png"), place.read("one.png"));
            QCOMPARE(place.read("flat/" + name + '-' + size + ".png"), place.read("one.png"));
        }
    }
    COMPARE_EXIT(place.run({"render", "a.xml", "-o", "{name}-{size}.svg", "--size", "5x5"}), 0);
    COMPARE_EXIT(
        place.run(QStringList {"render", "a.xml", "b.xml", "-o", "{name}.pdf", "--sheet"} + sizes),
        0);
    COMPARE_EXIT(place.run({"render", "a.xml", "b.xml", "-o", "{name}.custgeom.xml"}), 0);
    COMPARE_EXIT(place.run({"render", "a.xml", "b.xml", "-o", "pages/", "--format", "html"}), 0);
    QCOMPARE(place.entries(),
        (QStringList {"a-5x5.svg", "a.custgeom.xml", "a.pdf", "a.xml", "b.custgeom.xml", "b.pdf",
            "b.xml", "flat", "one.png", "out", "pages"}));
    QCOMPARE(filesBelow(place, "pages"), (QStringList {"a.html", "b.html"}));
}

void TestKpgeomBatch::renderMakesOnePictureOfAFolder()
{
    Workplace const place;
    makeFolder(place, "in/deep");
    place.write("in/b.xml", boxGeometry());
    place.write("in/deep/c.xml", boxGeometry("Closed=\"0\""));
    QStringList const output {"--sheet", "-o"};
    COMPARE_EXIT(place.run(QStringList {"render", "in/b.xml", "in/deep/c.xml"} + output
                     + QStringList("a.svg")),
        0);
    COMPARE_EXIT(place.run(QStringList {"render", "-R", "in"} + output + QStringList("b.svg")), 0);
    QCOMPARE(place.read("b.svg"), place.read("a.svg"));
}

void TestKpgeomBatch::svgWritesFiles()
{
    Workplace const place;
    makeFolder(place, "in/deep");
    place.write("in/b.xml", boxGeometry());
    place.write("in/bad.xml", "<D>");
    place.write("in/deep/c.xml", boxGeometry("Closed=\"0\""));
    Result const result = place.run({"svg", "-R", "in", "-o", "out/"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray("in/bad.xml:1:1: Premature end of document.\n"));
    QCOMPARE(filesBelow(place, "out"), (QStringList {"b.txt", "deep/c.txt"}));
    QCOMPARE(place.read("out/b.txt"), place.run({"svg", "in/b.xml"}).out);
    QVERIFY(QFile::remove(place.path("in/bad.xml")));
    QCOMPARE(
        place.run({"svg", "-R", "in"}).out, place.read("out/b.txt") + place.read("out/deep/c.txt"));
}

void TestKpgeomBatch::documentsAreTakenToo()
{
    Workplace const place;
    makeFolder(place, "in/deep");
    place.write("in/b.xml", "<D>" + boxGeometry() + "</D>");
    place.write("in/bad.xml", "<D>\n</E>");
    place.write("in/deep/c.xml", "<D><Other/>" + boxGeometry("Closed=\"0\"") + "</D>");
    QByteArray const message = "in/bad.xml:2:5: Opening and ending tag mismatch.\n";
    for (QStringList const& command :
        {QStringList {"normalize"}, QStringList {"resize", "--from", "100x60", "--to", "10x6"}}) {
        Result const result =
            place.run(command + QStringList {"-R", "in", "-o", "out/", "-j", "3"});
        COMPARE_EXIT(result, 1);
        QCOMPARE(result.err, message);
        QCOMPARE(filesBelow(place, "out"), (QStringList {"b.xml", "deep/c.xml"}));
        for (QString const& file : {QString("b.xml"), QString("deep/c.xml")}) {
            COMPARE_EXIT(place.run(command + QStringList {"in/" + file, "-o", "one"}), 0);
            QCOMPARE(place.read("out/" + file), place.read("one"));
        }
    }
    Result const checked = place.run({"check", "-R", "in", "-j", "3"});
    COMPARE_EXIT(checked, 1);
    QCOMPARE(checked.err, message);
    QCOMPARE(checked.out,
        place.run({"check", "in/b.xml"}).out + place.run({"check", "in/deep/c.xml"}).out);
    QByteArray const one = place.run({"info", "in/b.xml"}).out;
    QByteArray const other = place.run({"info", "in/deep/c.xml"}).out;
    for (QString const& jobs : {QString("1"), QString("3")}) {
        Result const told = place.run({"info", "-R", "in", "-j", jobs});
        COMPARE_EXIT(told, 1);
        QCOMPARE(told.err, message);
        QCOMPARE(told.out, one + '\n' + other);
        Result const json = place.run({"info", "--json", "-R", "in", "-j", jobs});
        QCOMPARE(json.err, message);
        QCOMPARE(
            json.out, place.run({"info", "--json", "in/b.xml", "in/bad.xml", "in/deep/c.xml"}).out);
        QCOMPARE(QJsonDocument::fromJson(json.out).array().size(), 2);
    }
}

void TestKpgeomBatch::linksDoNotHideAClash()
{
    Workplace const place;
    QVERIFY(QDir(place.path()).mkdir("in") && QDir(place.path()).mkdir("one"));
    place.write("in/a.xml", "<D>" + boxGeometry() + "</D>");
    place.write("in/a-9x9.xml", "<D>" + boxGeometry() + "</D>");
    QCOMPARE(symlink("in", QFile::encodeName(place.path("link")).constData()), 0);
    COMPARE_FAILURE(place.run({"resize", "in/a.xml", "in/a-9x9.xml", "--from", "9x9", "--to", "4x4",
                        "-o", "link/{name}-9x9.xml"}),
        2,
        "kpgeom resize: link/a-9x9.xml is an input and would become an output (see kpgeom resize "
        "--help)");
    place.write("one/z.xml", "");
    QCOMPARE(symlink("one", QFile::encodeName(place.path("two")).constData()), 0);
    place.write("one.xml", "<D/>");
    place.write("two.xml", "<D/>");
    COMPARE_FAILURE(place.run({"normalize", "one.xml", "two.xml", "-o", "{name}/z.xml"}), 2,
        "kpgeom normalize: one.xml and two.xml would both become two/z.xml (see kpgeom normalize "
        "--help)");
    QCOMPARE(place.read("one/z.xml"), QByteArray());
}

void TestKpgeomBatch::failedWriteIsToldOfTheOutput()
{
    Workplace const place;
    place.write("in.xml", "<D>" + boxGeometry().repeated(500) + "</D>");
    Workplace::Start const start = limitedTo(20000);
    for (QStringList const& command :
        {QStringList {"normalize"}, QStringList {"resize", "--from", "100x60", "--to", "10x6"}}) {
        Result const result = place.run(command + QStringList {"in.xml", "-o", "out.xml"}, start);
        COMPARE_EXIT(result, 1);
        QVERIFY2(result.err.endsWith("out.xml: File too large\n"), result.err.constData());
        QCOMPARE(place.entries(), QStringList("in.xml"));
    }
}

void TestKpgeomBatch::fileInThePlaceOfAFolderIsTold()
{
    Workplace const place;
    writePictures(place, 2);
    place.write("out", "no folder");
    Result const result = place.run({"convert", "-R", "in", "-o", "out/", "-j", "1"});
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray("out: cannot be made a folder\n").repeated(2));
    QCOMPARE(place.read("out"), QByteArray("no folder"));
}

void TestKpgeomBatch::fullDiskLeavesWholeFiles()
{
    Workplace const place;
    writePictures(place, 30);
    place.write("in/005.svg",
        boxPicture(7).replace(
            "</svg>", QByteArray("<path d=\"M0 0H9V9Z\"/>").repeated(200) + "</svg>"));
    COMPARE_EXIT(place.run({"convert", "-R", "in", "-o", "all/"}), 0);
    rlim_t const limit = rlim_t(place.read("all/005.xml").size()) - 1;
    Workplace::Start const start = limitedTo(limit);
    Result const result = place.run({"convert", "-R", "in", "-o", "out/", "-j", "4"}, start);
    COMPARE_EXIT(result, 1);
    QCOMPARE(result.err, QByteArray("out/005.xml: File too large\n"));
    QStringList expected = filesBelow(place, "all");
    QVERIFY(expected.removeOne("005.xml"));
    QCOMPARE(filesBelow(place, "out"), expected);
    for (QString const& file : qAsConst(expected))
        QCOMPARE(place.read("out/" + file), place.read("all/" + file));
}

void TestKpgeomBatch::signalLeavesWholeFiles_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("code");
    QTest::newRow("interrupt") << SIGINT << 130;
    QTest::newRow("terminate") << SIGTERM << 143;
    QTest::newRow("hang up") << SIGHUP << 129;
    QTest::newRow("kill") << SIGKILL << 137;
}

void TestKpgeomBatch::signalLeavesWholeFiles()
{
    QFETCH(int, signal);
    QFETCH(int, code);
    Workplace const place;
    int const count = Testing::sanitized ? 100 : 300;
    writePictures(place, count);
    COMPARE_EXIT(place.run({"convert", "-R", "in", "-o", "all/"}), 0);
    QRandomGenerator random = Testing::seededRandom(quint32(signal));
    int within = 0;
    int rounds = 0;
    // Most come in time, but not all on a fast machine.
    for (; within < 4 && rounds < 40; ++rounds) {
        RunningTool tool(place, {"convert", "-R", "in", "-o", "out/", "-j", "4"});
        QVERIFY(
            waitFor([&] { return QFile::exists(place.path("out/000.xml")) || tool.hasEnded(); }));
        QThread::usleep(random.bounded(20000u));
        tool.send(signal);
        int const ended = tool.exitCode();
        QVERIFY2(ended == code || ended == 0, QByteArray::number(ended));
        QStringList const files = filesBelow(place, "out");
        within += ended == code && files.size() < count ? 1 : 0;
        for (QString const& file : files) {
            if (signal != SIGKILL || file.endsWith(".xml"))
                QCOMPARE(place.read("out/" + file), place.read("all/" + file));
        }
        QVERIFY(QDir(place.path("out")).removeRecursively());
    }
    qInfo("%d of %d signals came while files were written", within, rounds);
    QCOMPARE(within, 4);
}

void TestKpgeomBatch::ignoredSignalStaysIgnored()
{
    Workplace const place;
    writePictures(place, 2);
    Workplace::Start start;
    start.setUp = [] { std::signal(SIGINT, SIG_IGN); };
    // A file that is read from a pipe: it ends only with its writer.
    QVERIFY(mkfifo(QFile::encodeName(place.path("pipe")).constData(), 0600) == 0);
    PreparedProcess process;
    process.setUp = start.setUp;
    process.setWorkingDirectory(place.path());
    process.start(KPGEOM_EXECUTABLE, {"convert", "in/000.svg", "pipe", "-o", "out/"});
    QFile writer(place.path("pipe"));
    QVERIFY(writer.open(QIODevice::WriteOnly));
    QVERIFY(waitFor([&] { return QFile::exists(place.path("out/000.xml")); }));
    ::kill(pid_t(process.processId()), SIGINT);
    QVERIFY(!process.waitForFinished(300));
    QVERIFY(writer.write(boxPicture(5)) > 0);
    writer.close();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(filesBelow(place, "out"), (QStringList {"000.xml", "pipe.xml"}));
}

void TestKpgeomBatch::watchDoesAgainWhatChanges()
{
    Workplace const place;
    writePictures(place, 3);
    RunningTool tool(place, {"convert", "-R", "in", "-o", "in/out/", "--watch"});
    auto const isThere = [&](QString const& name) {
        return waitFor([&] { return QFile::exists(place.path("in/out/" + name)); });
    };
    for (QString const& name : {QString("000.xml"), QString("001.xml"), QString("002.xml")})
        QVERIFY(isThere(name));
    QByteArray const first = place.read("in/out/001.xml");

    place.write("in/001.svg", boxPicture(77));
    QCOMPARE(tool.errorsUntil("done\n"), QByteArray("in/001.svg: done\n"));
    QVERIFY(place.read("in/out/001.xml") != first);

    // As editors do.
    for (int width : {2, 1}) {
        place.write("in/.new", boxPicture(width));
        QCOMPARE(rename(QFile::encodeName(place.path("in/.new")).constData(),
                     QFile::encodeName(place.path("in/001.svg")).constData()),
            0);
        QCOMPARE(tool.errorsUntil("done\n"), QByteArray("in/001.svg: done\n"));
    }
    place.write("in/001.svg", redPicture());
    QCOMPARE(tool.errorsUntil("\n"), "in/001.svg: " + redMessage);
    place.write("in/001.svg", "<svg>");
    QCOMPARE(tool.errorsUntil("\n"), QByteArray("in/001.svg:1:6: Premature end of document.\n"));

    makeFolder(place, "in/new/deep");
    place.write("in/new/deep/a.svg", boxPicture(5));
    QCOMPARE(tool.errorsUntil("done\n"), QByteArray("in/new/deep/a.svg: done\n"));
    QVERIFY(isThere("new/deep/a.xml"));
    QVERIFY(QDir(place.path("in/new")).removeRecursively());
    place.write("in/002.svg", boxPicture(6));
    QCOMPARE(tool.errorsUntil("done\n"), QByteArray("in/002.svg: done\n"));

    tool.send(SIGTERM);
    QCOMPARE(tool.exitCode(), 143);
    QCOMPARE(filesBelow(place, "in/out"),
        (QStringList {"000.xml", "001.xml", "002.xml", "new/deep/a.xml"}));
}

void TestKpgeomBatch::watchNeedsAFolderToWatch()
{
    Workplace const place;
    COMPARE_FAILURE(place.run({"convert", "missing/a.svg", "-o", "a.xml", "--watch"}), 1,
        "missing: cannot be watched: No such file or directory");
}

QTEST_GUILESS_MAIN(TestKpgeomBatch)

#include "tst_kpgeom_batch.moc"
