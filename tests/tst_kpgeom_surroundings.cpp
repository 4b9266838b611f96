// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "testing.h"

#include <csignal>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace KpgeomTesting;

namespace {

QByteArray const picture = "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                           "<rect x='4' y='4' width='12' height='2'/></svg>";

void prepareInput(Workplace const& place)
{
    place.write("in.xml", boxGeometry());
    place.write("in.svg", picture);
    place.write("wide.svg", QByteArray(picture).replace("'20'", "'40'").replace("'12'", "'32'"));
    place.write("high.svg",
        QByteArray(picture).replace("height='10'", "height='30'").replace("'2'/", "'22'/"));
    QDir(place.path()).mkdir("cfg");
}

/** A row for each command. */
void addCommandRows()
{
    QTest::addColumn<QStringList>("arguments");
    for (QStringList const& arguments : {QStringList {"info", "in.xml"},
             QStringList {"render", "in.xml", "--format", "svg", "-o", "-"},
             QStringList {"resize", "in.xml", "--from", "100x60", "--to", "10x6", "-o", "-"},
             QStringList {"convert", "in.svg", "-o", "-"},
             QStringList {"fit", "in.svg@20x10", "wide.svg@40x10", "high.svg@20x30", "-o", "-"},
             QStringList {"bind", "in.svg", "--slices", "5,5,5,5", "-o", "-"},
             QStringList {"svg", "in.xml"}, QStringList {"check", "in.xml"},
             QStringList {"diff", "in.xml", "in.xml"}, QStringList {"normalize", "in.xml"},
             QStringList {"colour", "#123456", "tint=0.5"}, QStringList {"units", "1", "in"},
             QStringList {"pages"}, QStringList {"digest", "in.xml"},
             QStringList {"recent", "add", "/a.x", "--config", "cfg"}})
        QTest::newRow(qPrintable(arguments.first())) << arguments;
}

/** What a process reads from the tool a byte at a time, and nothing for a while. */
QByteArray readSlowly(int end)
{
    QByteArray all;
    char byte = 0;
    QThread::msleep(20);
    while (::read(end, &byte, 1) == 1)
        all += byte;
    return all;
}

/** A pipe that holds as little as one can. */
struct NarrowPipe
{
    int ends[2] = {-1, -1};

    NarrowPipe()
    {
        if (pipe2(ends, O_CLOEXEC) != 0 || fcntl(ends[1], F_SETPIPE_SZ, 4096) < 0)
            qFatal("there is no pipe");
    }
};

/** A row for each command that reads a file, without its name. */
void addReaderRows()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("input");
    for (QStringList const& arguments :
        {QStringList {"info"}, QStringList {"render", "--format", "svg", "-o", "-"},
            QStringList {"resize", "--from", "100x60", "--to", "10x60", "-o", "-"},
            QStringList {"bind", "--slices", "5,5,5,5", "--size", "100x60", "-o", "-"},
            QStringList {"svg"}, QStringList {"check"}, QStringList {"normalize"},
            QStringList {"digest"}})
        QTest::newRow(qPrintable(arguments.first())) << arguments << boxGeometry();
    QTest::newRow("convert") << QStringList {"convert", "-o", "-"} << picture;
    QTest::newRow("blur") << QStringList {"blur", "--format", "ppm", "-r", "1", "-o", "-"}
                          << QByteArray("P6 1 1 255\nabc");
}

/** Puts a file in the place of standard input. */
std::function<void()> standardInputFrom(QString const& file)
{
    return [name = QFile::encodeName(file)] {
        dup2(open(name.constData(), O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    };
}

struct SocketPair
{
    int ends[2] = {-1, -1};

    SocketPair()
    {
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
            qFatal("there is no pair of sockets");
    }
};

} // namespace

/** Streams, files and file systems that are not as usual. */
class TestKpgeomSurroundings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void closedStreamsHarmNothing_data() { addCommandRows(); }

    void closedStreamsHarmNothing()
    {
        QFETCH(QStringList, arguments);
        Workplace const place;
        prepareInput(place);
        QStringList const before = place.entries();
        QByteArray const document = place.read("in.xml");
        for (int const closed : {1, 2, 4, 3, 5, 6, 7}) {
            Workplace::Start start;
            start.setUp = [closed] {
                for (int const stream : {0, 1, 2}) {
                    if ((closed >> stream) & 1)
                        close(stream);
                }
            };
            // Of files that are the same nothing is printed.
            bool const isOutputClosed = (closed & 2) != 0 && arguments.first() != "diff";
            Result const result = place.run(arguments, start);
            QVERIFY(result.exited);
            QCOMPARE(result.code, isOutputClosed ? 1 : 0);
            bool const isTold = isOutputClosed && (closed & 4) == 0;
            QCOMPARE(
                result.err, isTold ? QByteArray("<stdout>: cannot be written\n") : QByteArray());
            QCOMPARE(place.read("in.xml"), document);
            QCOMPARE(place.entries(), before);
        }
    }

    void slowReaderGetsAll_data() { addCommandRows(); }

    void slowReaderGetsAll()
    {
        QFETCH(QStringList, arguments);
        Workplace const place;
        prepareInput(place);
        // More than the pipe holds.
        place.write("in.xml", "<D>" + boxGeometry().repeated(60) + "</D>");
        Result const usual = place.run(arguments);
        COMPARE_EXIT(usual, 0);
        NarrowPipe const pipe;
        PreparedProcess tool;
        tool.setUp = [&pipe] { dup2(pipe.ends[1], STDOUT_FILENO); };
        tool.setWorkingDirectory(place.path());
        tool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        tool.start(KPGEOM_EXECUTABLE, arguments);
        QVERIFY(tool.waitForStarted());
        close(pipe.ends[1]);
        QByteArray const all = readSlowly(pipe.ends[0]);
        close(pipe.ends[0]);
        QVERIFY(tool.waitForFinished());
        QCOMPARE(tool.exitCode(), 0);
        // What is added again is told in other words.
        if (arguments.first() != "recent")
            QCOMPARE(all, usual.out);
    }

    void tricklingInputIsReadToItsEnd_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("info") << QStringList {"info", "-"};
        QTest::newRow("svg") << QStringList {"svg", "-"};
        QTest::newRow("normalize") << QStringList {"normalize", "-"};
        QTest::newRow("digest") << QStringList {"digest", "-"};
        QTest::newRow("resize") << QStringList {
            "resize", "-", "--from", "100x60", "--to", "10x6", "-o", "-"};
    }

    void tricklingInputIsReadToItsEnd()
    {
        QFETCH(QStringList, arguments);
        Workplace const place;
        Workplace::Start start;
        start.input = boxGeometry();
        Result const usual = place.run(arguments, start);
        COMPARE_EXIT(usual, 0);
        QProcess tool;
        tool.start(KPGEOM_EXECUTABLE, arguments);
        QVERIFY(tool.waitForStarted());
        for (char const byte : boxGeometry()) {
            tool.write(&byte, 1);
            tool.waitForBytesWritten();
        }
        tool.closeWriteChannel();
        QVERIFY(tool.waitForFinished());
        QCOMPARE(tool.exitCode(), 0);
        QCOMPARE(tool.readAllStandardOutput(), usual.out);
    }

    void standardInputIsTakenWhereNoFileIsNamed_data() { addReaderRows(); }

    void standardInputIsTakenWhereNoFileIsNamed()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, input);
        Workplace const place;
        place.write("input", input);
        Workplace::Start start;
        start.input = input;
        Result const expected = place.run(arguments + QStringList("-"), start);
        COMPARE_EXIT(expected, 0);
        Result const fromPipe = place.run(arguments, start);
        start.setUp = standardInputFrom(place.path("input"));
        Result const fromFile = place.run(arguments, start);
        SocketPair const sockets;
        QCOMPARE(::write(sockets.ends[1], input.constData(), std::size_t(input.size())),
            ssize_t(input.size()));
        close(sockets.ends[1]);
        start.setUp = [&sockets] { dup2(sockets.ends[0], STDIN_FILENO); };
        Result const fromSocket = place.run(arguments, start);
        for (Result const& result : {fromPipe, fromFile, fromSocket}) {
            COMPARE_EXIT(result, 0);
            QCOMPARE(result.out, expected.out);
            QCOMPARE(result.err, expected.err);
        }
    }

    void noFileIsWrongUsageWhereNothingIsPut_data() { addReaderRows(); }

    void noFileIsWrongUsageWhereNothingIsPut()
    {
        QFETCH(QStringList, arguments);
        Workplace const place;
        place.write("empty", QByteArray());
        Terminal const terminal;
        SocketPair const sockets;
        close(sockets.ends[1]);
        QByteArray const command = "kpgeom " + arguments.first().toUtf8();
        for (auto const& setUp :
            std::vector<std::function<void()>> {{}, terminal.replacing(STDIN_FILENO),
                standardInputFrom("/dev/null"), standardInputFrom("/dev/zero"),
                standardInputFrom(place.path("empty")), standardInputFrom("."),
                [&] { dup2(sockets.ends[0], STDIN_FILENO); }, [] { close(STDIN_FILENO); }}) {
            Workplace::Start start;
            start.setUp = setUp;
            Result const result = place.run(arguments, start);
            COMPARE_EXIT(result, 2);
            QVERIFY2(result.err.startsWith(command + ": ")
                    && result.err.endsWith(" (see " + command + " --help)\n"),
                result.err.constData());
            QCOMPARE(result.out, QByteArray());
        }
    }

    void commandsWithoutFilesLeaveStandardInput_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::newRow("a named file") << QStringList {"digest", "in"} << 0;
        QTest::newRow("path data")
            << QStringList {"convert", "--path", "M0,0H9V9Z", "-o", "-"} << 0;
        QTest::newRow("text without a font")
            << QStringList {"convert", "--text", "x", "-o", "-"} << 2;
        QTest::newRow("pages") << QStringList {"pages"} << 0;
        QTest::newRow("units") << QStringList {"units"} << 2;
        QTest::newRow("colour") << QStringList {"colour"} << 2;
        QTest::newRow("recent") << QStringList {"recent"} << 2;
        QTest::newRow("diff") << QStringList {"diff", "in"} << 2;
        QTest::newRow("fit") << QStringList {"fit", "in", "-o", "-"} << 2;
    }

    void commandsWithoutFilesLeaveStandardInput()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        Workplace const place;
        place.write("in", "<Geometry/>");
        int ends[2] = {-1, -1};
        QCOMPARE(pipe2(ends, O_CLOEXEC), 0);
        QCOMPARE(::write(ends[1], "abc", 3), ssize_t(3));
        Workplace::Start start;
        start.setUp = [&ends] { dup2(ends[0], STDIN_FILENO); };
        // What would wait for the end of the pipe would never end: it stays open.
        Result const result = place.run(arguments, start);
        COMPARE_EXIT(result, code);
        char left[4] = {};
        QCOMPARE(::read(ends[0], left, 4), ssize_t(3));
        close(ends[0]);
        close(ends[1]);
    }

    void hugeFilesAreRefusedAtOnce_data()
    {
        QTest::addColumn<QStringList>("arguments");
        for (QStringList const& arguments :
            {QStringList {"info", "huge"}, QStringList {"svg", "huge"},
                QStringList {"check", "huge"}, QStringList {"convert", "huge", "-o", "out.xml"},
                QStringList {"render", "huge", "-o", "out.svg"},
                QStringList {"bind", "huge", "--slices", "1,1,1,1", "-o", "out.xml"},
                QStringList {"blur", "huge", "-r", "1", "-o", "out.png"}})
            QTest::newRow(qPrintable(arguments.first())) << arguments;
    }

    void hugeFilesAreRefusedAtOnce()
    {
        QFETCH(QStringList, arguments);
        Workplace const place;
        QFile huge(place.path("huge"));
        QVERIFY(huge.open(QIODevice::WriteOnly));
        QVERIFY(huge.resize(qint64(300) << 20));
        Workplace::Start start;
        // The file would not fit.
        start.setUp = [] {
            rlimit const room {rlim_t(200) << 20, rlim_t(200) << 20};
            if (!Testing::sanitized)
                setrlimit(RLIMIT_DATA, &room);
        };
        Result const result = place.run(arguments, start);
        COMPARE_EXIT(result, 1);
        QVERIFY2(result.err.startsWith("huge: ") && result.err.count('\n') == 1
                && !result.err.contains("memory"),
            result.err.constData());
        QCOMPARE(place.entries(), QStringList("huge"));
    }

    void fullFileSystemKeepsTheOldFile()
    {
        Workplace const place;
        prepareInput(place);
        QDir(place.path()).mkdir("small");
        QByteArray const small = QFile::encodeName(place.path("small"));
        QByteArray const output = small + "/out.xml";
        place.write("in.xml", "<D>" + boxGeometry().repeated(100) + "</D>");
        Workplace::Start start;
        // Seen by the tool alone; it prints there what it has left, for nobody else can.
        start.program = "sh";
        start.setUp = [small] {
            if (unshare(CLONE_NEWNS) != 0
                || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
                || mount("tmpfs", small.constData(), "tmpfs", 0, "size=16k") != 0)
                _exit(77);
        };
        Result const result =
            place.run({"-c",
                          "echo old > small/out.xml; $0 normalize in.xml -o small/out.xml; code=$?;"
                          "ls -A small; cat small/out.xml; exit $code",
                          KPGEOM_EXECUTABLE},
                start);
        if (result.exited && result.code == 77) {
            qInfo("this process may not mount a file system: not run");
            return;
        }
        COMPARE_EXIT(result, 1);
        QCOMPARE(result.err, QByteArray("small/out.xml: No space left on device\n"));
        QCOMPARE(result.out, QByteArray("out.xml\nold\n"));
    }

    void timesOfFilesAreNoMatter_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("before time began") << qint64(-1000000);
        QTest::newRow("the beginning") << qint64(0);
        QTest::newRow("far in the future") << qint64(4000000000);
    }

    void timesOfFilesAreNoMatter()
    {
        QFETCH(qint64, seconds);
        Workplace const place;
        prepareInput(place);
        place.write("out.xml", "old");
        for (char const* const name : {"in.svg", "out.xml", "cfg"}) {
            timespec const times[2] = {{time_t(seconds), 0}, {time_t(seconds), 0}};
            QCOMPARE(
                utimensat(AT_FDCWD, QFile::encodeName(place.path(name)).constData(), times, 0), 0);
        }
        COMPARE_EXIT(place.run({"convert", "in.svg", "-o", "out.xml"}), 0);
        QVERIFY(place.read("out.xml").startsWith("<?xml"));
        COMPARE_EXIT(place.run({"recent", "add", "/a.x", "--config", "cfg"}), 0);
    }

    /** What has changed is what is not as it was, be it younger or older. */
    void watchSeesFilesOfAnyTime()
    {
        Workplace const place;
        prepareInput(place);
        QProcess tool;
        tool.setWorkingDirectory(place.path());
        tool.start(KPGEOM_EXECUTABLE, {"convert", "in.svg", "-o", "out/{name}.xml", "--watch"});
        QString const output = place.path("out/in.xml");
        QVERIFY(QTest::qWaitFor([&] { return QFile::exists(output); }, 30000));
        for (qint64 const seconds : {qint64(4000000000), qint64(1000), qint64(2000000000)}) {
            QVERIFY(QFile::remove(output));
            place.write("new", picture);
            timespec const times[2] = {{time_t(seconds), 0}, {time_t(seconds), 0}};
            QCOMPARE(
                utimensat(AT_FDCWD, QFile::encodeName(place.path("new")).constData(), times, 0), 0);
            QCOMPARE(rename(QFile::encodeName(place.path("new")).constData(),
                         QFile::encodeName(place.path("in.svg")).constData()),
                0);
            QVERIFY(QTest::qWaitFor([&] { return QFile::exists(output); }, 30000));
        }
        ::kill(pid_t(tool.processId()), SIGTERM);
        QVERIFY(tool.waitForFinished());
        QCOMPARE(tool.exitStatus(), QProcess::CrashExit);
        QCOMPARE(tool.exitCode(), SIGTERM);
    }
};

QTEST_GUILESS_MAIN(TestKpgeomSurroundings)

#include "tst_kpgeom_surroundings.moc"
