// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "testing.h"

#include <chrono>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

using namespace KpgeomTesting;

namespace {

constexpr char svgText[] = "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                           "<rect width='10' height='5'/></svg>";

/** What a command line has in the place of the odd file. */
QString const odd = QStringLiteral("@");

/** A way to use the tool. */
struct Use
{
    QStringList arguments; ///< with `odd` once
    int failure; ///< the exit status of an operation that fails
};

/** Every command that reads files, and every option that names one to be read. */
std::vector<Use> const& readers()
{
    static std::vector<Use> const all {
        {{"info", odd}, 1},
        {{"info", "--json", odd}, 1},
        {{"render", odd, "-o", "out.svg"}, 1},
        {{"render", odd, "-o", "out.png"}, 1},
        {{"render", odd, "-o", "out.html"}, 1},
        {{"render", odd, "-o", "out.custgeom.xml"}, 1},
        {{"render", odd, "in.xml", "--sheet", "-o", "out.pdf"}, 1},
        {{"resize", odd, "--from", "1x1", "--to", "2x2", "-o", "out.xml"}, 1},
        {{"convert", odd, "-o", "out.xml"}, 1},
        {{"convert", "--font", odd, "--text", "a", "-o", "out.xml"}, 1},
        {{"convert", "--presets", odd, "-o", "out"}, 1},
        {{"fit", odd, "in.xml@100x60", "-o", "out.xml"}, 1},
        {{"fit", "in.xml@100x60", odd, "-o", "out.xml"}, 1},
        {{"bind", odd, "--slices", "1,1,1,1", "-o", "out.xml"}, 1},
        {{"svg", odd, "-o", "-"}, 1},
        {{"check", odd}, 1},
        {{"diff", odd, "in.xml"}, 2},
        {{"diff", "in.xml", odd}, 2},
        {{"normalize", odd}, 1},
        {{"blur", odd, "-r", "1", "-o", "out.png"}, 1},
        {{"digest", odd}, 1},
        {{"digest", "--check", odd}, 1},
    };
    return all;
}

/** Every command that writes a file, and every option that names one to be written. */
std::vector<Use> const& writers()
{
    static std::vector<Use> const all {
        {{"render", "in.xml", "--format", "svg", "-o", odd}, 1},
        {{"render", "in.xml", "--format", "png", "-o", odd}, 1},
        {{"render", "in.xml", "--format", "pdf", "-o", odd}, 1},
        {{"render", "in.xml", "--format", "html", "-o", odd}, 1},
        {{"render", "in.xml", "--format", "custgeom", "-o", odd}, 1},
        {{"resize", "in.xml", "--from", "100x60", "--to", "10x6", "-o", odd}, 1},
        {{"convert", "in.svg", "-o", odd}, 1},
        {{"convert", "--path", "M0 0L9 9H0z", "-o", odd}, 1},
        {{"fit", "in.xml@100x60", "two.xml@200x90", "tall.xml@100x200", "-o", odd}, 1},
        {{"bind", "in.xml", "--slices", "1,1,1,1", "--size", "100x60", "-o", odd}, 1},
        {{"svg", "in.xml", "-o", odd}, 1},
        {{"normalize", "in.xml", "-o", odd}, 1},
        {{"blur", "in.ppm", "-r", "1", "--format", "png", "-o", odd}, 1},
    };
    return all;
}

/** A folder with what every command needs, and one odd thing of each kind. */
class OddPlace
{
public:
    OddPlace()
    {
        place.write("in.xml", boxGeometry());
        place.write(
            "two.xml", boxGeometry().replace("\"100\"", "\"200\"").replace("\"60\"", "\"90\""));
        place.write("tall.xml", boxGeometry().replace("\"60\"", "\"200\""));
        place.write("in.svg", svgText);
        place.write("in.ppm", "P3 1 1 255 1 2 3\n");
        place.write("closed", boxGeometry());
        require(chmod(name("closed"), 0) == 0);
        require(mkdir(name("folder"), 0700) == 0);
        require(mkdir(name("shut"), 0500) == 0);
        require(mkfifo(name("pipe"), 0600) == 0);
        require(symlink("loop", name("loop")) == 0);
        require(symlink("round", name("about")) == 0 && symlink("about", name("round")) == 0);
        m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, name("socket"), sizeof address.sun_path);
        require(bind(m_socket, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0);
        m_before = place.entries();
    }
    ~OddPlace() { close(m_socket); }
    OddPlace(OddPlace const&) = delete;
    OddPlace& operator=(OddPlace const&) = delete;

    /** Starts all uses with the odd file, which take no longer together than one, and ends them. */
    std::vector<Result> run(std::vector<Use> const& uses, QString const& file) const
    {
        Workplace::Start start;
        bool const isDevice = file.startsWith("/dev/");
        start.setUp = [isDevice] {
            obeyPermissions();
            if (isDevice)
                keepNames();
        };
        std::vector<QStringList> runs;
        for (Use const& use : uses) {
            QStringList arguments = use.arguments;
            arguments[arguments.indexOf(odd)] = file;
            runs.push_back(arguments);
        }
        return place.runAtOnce(runs, start);
    }

    bool isAsBefore() const { return place.entries() == m_before; }

    Workplace const place;

private:
    char const* name(char const* file)
    {
        m_name = QFile::encodeName(place.path(file));
        return m_name.constData();
    }

    static void require(bool isDone)
    {
        if (!isDone)
            qFatal("an odd file cannot be made");
    }

    QByteArray m_name;
    int m_socket = -1;
    QStringList m_before;
};

/** What is wrong with how a use has ended; empty if it has told what it had to, in one line. */
QByteArray faultOf(Use const& use, Result const& result, QByteArray const& reason)
{
    bool const isOneLine = result.err.count('\n') == 1 && result.err.endsWith(reason + '\n');
    bool const hasResult = !result.out.isEmpty() && result.out != "[\n]\n";
    if (result.exited && result.code == use.failure && isOneLine && !hasResult)
        return QByteArray();
    return use.arguments.join(' ').toUtf8() + ": " + QByteArray::number(result.code) + ", "
        + result.err + result.out.left(200);
}

} // namespace

/** Every command with files of every odd kind: one line, an exit status, and an end. */
class TestKpgeomEdges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oddInputIsToldInOneLine_data();
    void oddInputIsToldInOneLine();
    void oddOutputIsToldInOneLine_data();
    void oddOutputIsToldInOneLine();
    void descriptorsAreWrittenOn_data();
    void descriptorsAreWrittenOn();
    void pipesWaitForTheirOtherEnd();
    void pipesThatAreClosedAtOnceAreEmpty();
};

void TestKpgeomEdges::oddInputIsToldInOneLine_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("missing") << "none" << QByteArray("No such file or directory");
    QTest::newRow("no name") << "" << QByteArray(": No file name specified");
    QTest::newRow("folder") << "folder" << QByteArray("folder: file to open is a directory");
    QTest::newRow("below a file") << "in.xml/a" << QByteArray("in.xml/a: Not a directory");
    QTest::newRow("unreadable") << "closed" << QByteArray("closed: Permission denied");
    QTest::newRow("link to itself")
        << "loop" << QByteArray("loop: Too many levels of symbolic links");
    QTest::newRow("links to each other")
        << "about" << QByteArray("about: Too many levels of symbolic links");
    QTest::newRow("socket") << "socket" << QByteArray("socket: No such device or address");
    QTest::newRow("pipe without a writer")
        << "pipe" << QByteArray("pipe: nobody writes to this pipe");
    QTest::newRow("output of its own")
        << "/dev/fd/1" << QByteArray("/dev/fd/1: Bad file descriptor");
    QTest::newRow("long name") << QString(300, 'x')
                               << QByteArray(300, 'x') + ": File name too long";
    QTest::newRow("long path") << QString("a/").repeated(5000)
                               << QByteArray("a/").repeated(5000) + ": File name too long";
    QTest::newRow("memory of a process")
        << "/proc/self/mem" << QByteArray("/proc/self/mem: Input/output error");
}

void TestKpgeomEdges::oddInputIsToldInOneLine()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, reason);
    OddPlace const place;
    std::vector<Result> const results = place.run(readers(), file);
    for (std::size_t i = 0; i < results.size(); ++i) {
        Use const& use = readers()[i];
        // What reads fonts tells in words of its own.
        QByteArray const expected = use.arguments.contains("--font") ? QByteArray() : reason;
        QByteArray const fault = faultOf(use, results[i], expected);
        QVERIFY2(fault.isEmpty(), fault.constData());
    }
    QVERIFY(place.isAsBefore());
}

void TestKpgeomEdges::oddOutputIsToldInOneLine_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("full device") << "/dev/full" << QByteArray("/dev/full: No space left on device");
    QTest::newRow("folder") << "folder" << QByteArray("folder: is a directory");
    QTest::newRow("in a missing folder")
        << "none/a" << QByteArray("none/a: No such file or directory");
    QTest::newRow("below a file") << "in.xml/a" << QByteArray("in.xml/a: Not a directory");
    QTest::newRow("in a folder that is shut")
        << "shut/a" << QByteArray("shut/a: Permission denied");
    QTest::newRow("link to itself")
        << "loop" << QByteArray("loop: Too many levels of symbolic links");
    QTest::newRow("links to each other")
        << "about" << QByteArray("about: Too many levels of symbolic links");
    QTest::newRow("socket") << "socket" << QByteArray("socket: No such device or address");
    QTest::newRow("pipe without a reader")
        << "pipe" << QByteArray("pipe: nobody reads from this pipe");
    QTest::newRow("closed descriptor")
        << "/dev/fd/77" << QByteArray("/dev/fd/77: Bad file descriptor");
    QTest::newRow("descriptor for reading")
        << "/proc/self/fd/0" << QByteArray("/proc/self/fd/0: Bad file descriptor");
    QTest::newRow("long name") << QString(300, 'x')
                               << QByteArray(300, 'x') + ": File name too long";
}

void TestKpgeomEdges::oddOutputIsToldInOneLine()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, reason);
    OddPlace const place;
    std::vector<Result> const results = place.run(writers(), file);
    for (std::size_t i = 0; i < results.size(); ++i) {
        QByteArray const fault = faultOf(writers()[i], results[i], reason);
        QVERIFY2(fault.isEmpty(), fault.constData());
    }
    QVERIFY(place.isAsBefore());
    struct stat status
    {
    };
    QCOMPARE(lstat(QFile::encodeName(place.place.path("loop")).constData(), &status), 0);
    QVERIFY(S_ISLNK(status.st_mode));
}

void TestKpgeomEdges::descriptorsAreWrittenOn_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("descriptor");
    for (char const* const name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1",
             "/proc/thread-self/fd/1", "/proc/../dev/./fd/1", "link", "link to a link"})
        QTest::newRow(name) << name << STDOUT_FILENO;
    QTest::newRow("another descriptor") << "/dev/fd/9" << 9;
}

void TestKpgeomEdges::descriptorsAreWrittenOn()
{
    QFETCH(QString, output);
    QFETCH(int, descriptor);
    for (int const flags : {O_WRONLY | O_APPEND, O_WRONLY}) {
        Workplace const place;
        place.write("in.xml", boxGeometry());
        place.write("log", "before\n");
        QVERIFY(QFile::link("/dev/fd/1", place.path("link")));
        QVERIFY(QFile::link("link", place.path("link to a link")));
        Workplace::Start start;
        start.setUp = [flags, descriptor, log = QFile::encodeName(place.path("log"))] {
            dup2(open(log.constData(), flags), descriptor);
            lseek(descriptor, 0, SEEK_END);
        };
        QStringList const arguments {"render", "in.xml", "--format", "svg", "-o", output};
        COMPARE_EXIT(place.run(arguments, start), 0);
        COMPARE_EXIT(place.run(arguments, start), 0);
        QByteArray const log = place.read("log");
        QVERIFY2(log.startsWith("before\n<?xml"), log.constData());
        QVERIFY2(log.endsWith("</svg>\n"), log.constData());
        QCOMPARE(log.count("<?xml"), 2);
        QCOMPARE(place.entries(), (QStringList {"in.xml", "link", "link to a link", "log"}));
    }
}

void TestKpgeomEdges::pipesWaitForTheirOtherEnd()
{
    OddPlace const place;
    QByteArray const pipe = QFile::encodeName(place.place.path("pipe"));
    // Whoever opens one end alone waits here for the tool, not the tool for it.
    std::thread writer([&pipe] {
        int const end = open(pipe.constData(), O_WRONLY | O_CLOEXEC);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        QByteArray const text = boxGeometry();
        if (write(end, text.constData(), std::size_t(text.size())) != text.size())
            qFatal("the pipe cannot be written");
        close(end);
    });
    Result const info = place.place.run({"info", "pipe"});
    writer.join();
    COMPARE_EXIT(info, 0);
    QVERIFY2(info.out.startsWith("pipe: 1 outline\n"), info.out.constData());

    QByteArray text;
    std::thread reader([&pipe, &text] {
        QFile end(QFile::decodeName(pipe));
        if (end.open(QIODevice::ReadOnly))
            text = end.readAll();
    });
    Result const resized =
        place.place.run({"resize", "in.xml", "--from", "100x60", "--to", "10x6", "-o", "pipe"});
    reader.join();
    COMPARE_EXIT(resized, 0);
    QVERIFY2(text.contains("<X V=\"10\""), text.constData());
    QVERIFY(place.isAsBefore());
}

void TestKpgeomEdges::pipesThatAreClosedAtOnceAreEmpty()
{
    OddPlace const place;
    std::thread writer([pipe = QFile::encodeName(place.place.path("pipe"))] {
        close(open(pipe.constData(), O_WRONLY | O_CLOEXEC));
    });
    Result const info = place.place.run({"info", "pipe"});
    writer.join();
    COMPARE_FAILURE(info, 1, "pipe:1:1: Premature end of document.");
}

QTEST_GUILESS_MAIN(TestKpgeomEdges)

#include "tst_kpgeom_edges.moc"
