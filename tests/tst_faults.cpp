// SPDX-License-Identifier: MIT
#include "kpgeomtesting.h"
#include "testing.h"

#include <QImage>

#include <cerrno>
#include <csignal>
#include <optional>

using namespace KpgeomTesting;

namespace {

QByteArray const drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='%1' height='%2'>"
                           "<rect x='2' y='2' width='%3' height='%4'/></svg>";

QByteArray boxPicture(int width, int height)
{
    return QString(drawing).arg(width).arg(height).arg(width - 4).arg(height - 4).toUtf8();
}

QByteArray const recentFiles =
    "<RecentFiles><RecentFile V=\"/f\"/><RecentSymbol V=\"/s\"/><RecentLibrary V=\"/l\"/>"
    "<RecentFiles><RecentFile V=\"/f/a.x\" Type=\"1\" Top=\"0\"/></RecentFiles>"
    "<RecentFolders><RecentFolder V=\"/f\" Type=\"1\" Top=\"0\"/></RecentFolders></RecentFiles>\n";

/** A call that fails: the n-th of its sort, for each n as long as there is one. */
struct Fault
{
    char const* calls; ///< names of the library that is loaded before
    char const* effect;
    int error; ///< of the effect "error"
    bool isHarmless; ///< the save succeeds all the same
    bool isEverywhere; ///< tried with all tasks, not only with those that stand for them
};

constexpr Fault faults[] = {
    {"write", "error", ENOSPC, false, true},
    {"write", "error", EIO, false, false},
    {"write", "error", EDQUOT, false, false},
    {"write", "error", EINTR, true, true},
    {"write", "short", 0, true, true},
    {"sync", "error", EIO, false, true},
    {"sync", "error", EDQUOT, false, false},
    {"sync", "error", EINTR, true, false},
    {"rename", "error", EACCES, false, true},
    {"rename", "error", EIO, false, false},
    {"rename", "error", ENOSPC, false, false},
    {"rename", "error", EROFS, false, false},
    {"open", "error", EACCES, false, true},
    {"open", "error", EMFILE, false, false},
    {"open", "error", EROFS, false, false},
    {"open", "error", ENOSPC, false, false},
    {"open", "error", EINTR, true, true},
    {"close", "error", EIO, false, true},
    {"close", "error", EINTR, true, false},
    {"read", "error", EIO, false, true},
    {"read", "error", EINTR, true, false},
    {"read", "short", 0, true, true},
    {"truncate", "error", EIO, false, false},
    {"map", "error", ENOMEM, false, true},
    {"permissions", "error", EPERM, false, true},
    {"remove", "error", EIO, true, false},
    {"print", "error", EIO, false, true},
};

/** What is tried: a program that writes one file, or to standard output. */
struct Task
{
    QStringList arguments;
    QString output; ///< empty for standard output
    QByteArray before = "old"; ///< the content of the output
    QString program = KPGEOM_EXECUTABLE;
    int failureCode = 1;

    bool isModel = false; ///< it stands for others that save in the same way
};

/** A fresh folder with what all tasks read. */
class FaultWorkplace : public Workplace
{
public:
    explicit FaultWorkplace(Task const& task)
        : m_task(task)
    {
        write("in.xml", boxGeometry());
        write("in.svg", boxPicture(20, 10));
        write("wide.svg", boxPicture(40, 10));
        write("high.svg", boxPicture(20, 30));
        QImage picture(4, 4, QImage::Format_ARGB32);
        picture.fill(Qt::red);
        picture.save(path("in.png"));
        for (QString const folder : {"cfg", "tmp", "recovery"})
            QDir(path()).mkdir(folder);
        restore();
        m_entries = everything();
    }

    /** The output is what it was before. */
    void restore() const
    {
        // Qt reads a lock that a process has left in one go, and believes what it has got.
        QFile::remove(path("recovery/a.lock"));
        write("cfg/RecentFiles.xml", recentFiles);
        if (!m_task.output.isEmpty())
            write(m_task.output, m_task.before);
    }

    /** What the output is, or what was printed; but for the default font, which is the system's. */
    QByteArray content(Result const& result) const
    {
        QByteArray const content = m_task.output.isEmpty() ? result.out : read(m_task.output);
        if (!content.contains("<svg"))
            return content;
        static QRegularExpression const font("font-family=\"[^\"]*\"");
        return QString::fromUtf8(content).remove(font).toUtf8();
    }

    Result run(QMap<QString, QString> variables = {}) const
    {
        Start start;
        start.program = m_task.program;
        variables["XDG_CONFIG_HOME"] = path("cfg");
        variables["HOME"] = path();
        variables["TMPDIR"] = path("tmp");
        start.variables = variables;
        return Workplace::run(m_task.arguments, start);
    }

    bool isClean() const { return everything() == m_entries; }

    QStringList everything() const
    {
        QStringList result;
        for (QString const folder : {"", "cfg", "tmp", "recovery"}) {
            QDir const entries(path(folder));
            for (QString const& entry :
                entries.entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name)) {
                // A lock names a process: it goes when its file does.
                if (!entry.endsWith(".lock"))
                    result << folder + QString('/') + entry;
            }
        }
        return result;
    }

private:
    Task const m_task;
    QStringList m_entries;
};

/** Runs with one fault. */
class FaultyRun
{
public:
    FaultyRun(FaultWorkplace const& place, QMap<QString, QString> variables)
    {
        QString const report = m_reports.filePath("reached");
        variables["LD_PRELOAD"] = KPGEOMETRY_FAULTS;
        variables["FAULT_REPORT"] = report;
        result = place.run(variables);
        isReached = QFile::remove(report);
        ++runs;
        reached += isReached ? 1 : 0;
    }

    Result result;
    bool isReached = false;

    static int runs;
    static int reached;

private:
    static QTemporaryDir m_reports;
};

int FaultyRun::runs = 0;
int FaultyRun::reached = 0;
QTemporaryDir FaultyRun::m_reports;

QMap<QString, QString> variablesOf(QString const& calls, QString const& effect, int number)
{
    return {{"FAULT_CALLS", calls}, {"FAULT_EFFECT", effect},
        {"FAULT_NUMBER", QString::number(number)}};
}

/** What a fault, or none, must leave. */
struct Expected
{
    QByteArray before; ///< of standard output: nothing
    QByteArray after;
    QByteArray messages; ///< of a run that has succeeded
    int code; ///< of such a run
    int failureCode;
    bool tellsFailures; ///< the library does not
};

/** What the program itself has said: the library of fonts tells of its own files by itself. */
QByteArray ownMessages(QByteArray const& err)
{
    // The name of the file may be what it has read instead, line feeds and all.
    static QRegularExpression const ofFonts(
        "Fontconfig (warning|error): ([^(]*\\(errno \\d+\\)|[^\n]*)\n");
    return QString::fromLatin1(err).remove(ofFonts).toLatin1();
}

/** What is wrong after a run with a fault; empty if nothing is. */
QString faultOf(
    FaultWorkplace const& place, Result const& result, Expected const& expected, bool isHarmless)
{
    QByteArray message = ownMessages(result.err);
    QByteArray const content = place.content(result);
    if (!result.exited)
        return "it has crashed: " + result.err;
    if (!place.isClean())
        return "files are left: " + place.everything().join(' ');
    if (!expected.tellsFailures && content == expected.before && !isHarmless)
        return QString();
    if (result.code == expected.code) {
        if (content != expected.after)
            return "success without the whole content: " + content.left(200);
        // A line of them may have been what could not be printed.
        return expected.messages.endsWith(message) ? QString() : "a message: " + message;
    }
    if (isHarmless)
        return QString("failed with %1: ").arg(result.code) + result.err;
    if (result.code != expected.failureCode)
        return QString("exit code %1: ").arg(result.code) + result.err;
    if (message.startsWith(expected.messages))
        message.remove(0, expected.messages.size());
    if (message.count('\n') != 1 || !message.endsWith('\n'))
        return "not one line: " + result.err;
    // What has been printed cannot be taken back, and what is told of a file comes after it.
    bool const isPrinted = expected.before.isNull() && expected.after.startsWith(content);
    bool const isAfterFile =
        message == "<stdout>: cannot be written\n" && content == expected.after;
    if (content != expected.before && !isPrinted && !isAfterFile)
        return "failure, but not the old content: " + content.left(200);
    return QString();
}

} // namespace

Q_DECLARE_METATYPE(Task)

/** Whatever call to the system fails: files are as they were or as they should be. */
class TestFaults : public QObject
{
    Q_OBJECT

private:
    /** What the task leaves without a fault; also how it is judged later. */
    static Expected succeed(Task const& task)
    {
        FaultWorkplace const place(task);
        Result const result = place.run();
        constexpr int doneWithWarnings = 3;
        if (!result.exited || (result.code != 0 && result.code != doneWithWarnings))
            qFatal("it fails by itself: %s", result.err.constData());
        bool const isLibrary =
            task.arguments.first() == "recent" && task.program != KPGEOM_EXECUTABLE;
        return {task.output.isEmpty() ? QByteArray() : task.before, place.content(result),
            result.err, result.code, task.failureCode, !isLibrary};
    }

    /** The tasks that stand for all ways to save. */
    static QVector<Task> modelTasks()
    {
        QVector<Task> tasks {{{"convert", "in.svg", "-o", "out.xml"}, "out.xml"},
            {{"recent", "--config", "cfg", "pin", "0"}, "cfg/RecentFiles.xml", recentFiles},
            {{"recent"}, "cfg/RecentFiles.xml", recentFiles, KPGEOMETRY_SAVES},
            {{"document", "a.xml"}, "a.xml", "<D><S Name='a'><Geometry/></S></D>\n",
                KPGEOMETRY_SAVES},
            {{"recovery", "recovery/a.recovery"}, "recovery/a.recovery", "old", KPGEOMETRY_SAVES}};
        for (Task& task : tasks)
            task.isModel = true;
        return tasks;
    }

    static void addTasks(bool withPrinted)
    {
        QTest::addColumn<Task>("task");
        for (Task const& task : modelTasks())
            QTest::newRow(qPrintable(task.arguments.join(' '))) << task;
        auto const writing = [](QStringList const& arguments, QString const& output) {
            QTest::newRow(qPrintable(arguments.join(' ') + " to " + output))
                << Task {arguments + QStringList {"-o", output}, output};
        };
        writing({"render", "in.xml"}, "out.svg");
        writing({"render", "in.xml"}, "out.png");
        writing({"render", "in.xml"}, "out.pdf");
        writing({"resize", "in.xml", "--from", "100x60", "--to", "10x6"}, "out.xml");
        writing({"convert", "in.svg", "--form", "dom"}, "out.xml");
        writing({"fit", "in.svg@20x10", "wide.svg@40x10", "high.svg@20x30"}, "out.xml");
        writing({"bind", "in.svg", "--slices", "3,3,3,3"}, "out.xml");
        writing({"svg", "in.xml"}, "out.txt");
        writing({"normalize", "in.xml"}, "out.xml");
        writing({"blur", "in.png", "-r", "1"}, "out.png");
        QTest::newRow("in its own place")
            << Task {{"resize", "in.xml", "--from", "100x60", "--to", "10x6", "-o", "in.xml"},
                   "in.xml", boxGeometry()};
        QTest::newRow("one of many files")
            << Task {{"convert", "in.svg", "-j", "1", "-o", "{name}.out"}, "in.out"};
        for (QStringList const& action :
            {QStringList {"add", "/g/b.x"}, QStringList {"remove", "/f/a.x"}}) {
            QTest::newRow(qPrintable("recent " + action.join(' ')))
                << Task {QStringList {"recent", "--config", "cfg"} + action, "cfg/RecentFiles.xml",
                       recentFiles};
        }
        if (!withPrinted)
            return;
        for (QStringList const& arguments :
            {QStringList {"render", "in.xml", "--format", "svg", "-o", "-"},
                QStringList {"info", "in.xml"}, QStringList {"svg", "in.xml"},
                QStringList {"check", "in.xml"}, QStringList {"normalize", "in.xml"},
                QStringList {"digest", "in.xml"}, QStringList {"colour", "#123456", "tint=0.5"},
                QStringList {"units", "1", "in"}, QStringList {"pages"},
                QStringList {"recent", "list", "--config", "cfg"}})
            QTest::newRow(qPrintable(arguments.join(' '))) << Task {arguments, QString()};
        QTest::newRow("diff") << Task {
            {"diff", "in.xml", "in.xml"}, QString(), {}, KPGEOM_EXECUTABLE, 2};
    }

private Q_SLOTS:
    void cleanupTestCase() { qInfo("%d faults in %d runs", FaultyRun::reached, FaultyRun::runs); }

    void everyFaultLeavesTheOldFileOrTheNewOne_data() { addTasks(true); }

    void everyFaultLeavesTheOldFileOrTheNewOne()
    {
        QFETCH(Task, task);
        Expected const expected = succeed(task);
        FaultWorkplace const place(task);
        int reached = 0;
        for (Fault const& fault : faults) {
            if (!fault.isEverywhere && !task.isModel)
                continue;
            QString const effect = fault.error == 0
                ? QString(fault.effect)
                : QString("%1 %2").arg(fault.effect).arg(fault.error);
            for (int number = 1;; ++number) {
                place.restore();
                FaultyRun const run(place, variablesOf(fault.calls, effect, number));
                QString const wrong = faultOf(place, run.result, expected, fault.isHarmless);
                QVERIFY2(wrong.isEmpty(),
                    qPrintable(
                        QString("%1 %2, %3: %4").arg(fault.calls).arg(number).arg(effect, wrong)));
                if (!run.isReached)
                    break;
                ++reached;
            }
        }
        QVERIFY(reached > 0);
    }

    void fileSystemWithoutNamelessFilesIsNoDifference_data() { addTasks(false); }

    void fileSystemWithoutNamelessFilesIsNoDifference()
    {
        QFETCH(Task, task);
        Expected const expected = succeed(task);
        FaultWorkplace const place(task);
        int reached = 0;
        for (QString const calls : {"write", "sync", "rename", "open", "permissions"}) {
            for (int number = 1;; ++number) {
                place.restore();
                QMap<QString, QString> variables = variablesOf(calls, "error 28", number);
                variables["FAULT_NAMELESS"] = "no";
                FaultyRun const run(place, variables);
                QString const wrong = faultOf(place, run.result, expected, false);
                QVERIFY2(wrong.isEmpty(),
                    qPrintable(QString("%1 %2: %3").arg(calls).arg(number).arg(wrong)));
                if (!run.isReached)
                    break;
                ++reached;
            }
        }
        QVERIFY(reached > 0);
    }

    void signalAtAnyCallLeavesAWholeFile_data()
    {
        QTest::addColumn<Task>("task");
        QTest::addColumn<int>("signal");
        QTest::addColumn<bool>("hasNameless");
        for (Task const& task : modelTasks()) {
            for (int const signal : {SIGKILL, SIGTERM, SIGINT}) {
                for (bool const hasNameless : {true, false}) {
                    if (signal != SIGINT || hasNameless) {
                        QTest::addRow("%s, signal %d%s", qPrintable(task.arguments.join(' ')),
                            signal, hasNameless ? "" : ", files have names")
                            << task << signal << hasNameless;
                    }
                }
            }
        }
    }

    /** What is left then is gone after the next save. */
    void signalAtAnyCallLeavesAWholeFile()
    {
        QFETCH(Task, task);
        QFETCH(int, signal);
        QFETCH(bool, hasNameless);
        Expected const expected = succeed(task);
        FaultWorkplace const place(task);
        bool const mayLeave = signal == SIGKILL || !expected.tellsFailures;
        int left = 0;
        int number = 1;
        for (bool isReached = true; isReached; ++number) {
            place.restore();
            QMap<QString, QString> variables =
                variablesOf("write,sync,rename,open,close,remove,permissions",
                    QString("signal %1").arg(signal), number);
            variables["FAULT_NAMELESS"] = hasNameless ? "yes" : "no";
            FaultyRun const run(place, variables);
            isReached = run.isReached;
            bool const isWhole = run.result.exited && run.result.code == 0;
            QVERIFY(isWhole || (isReached && !run.result.exited && run.result.code == signal));
            QByteArray const content = place.content(run.result);
            QVERIFY2(content == expected.after || (!isWhole && content == expected.before),
                content.constData());
            QVERIFY2(place.isClean() || mayLeave, qPrintable(place.everything().join(' ')));
            if (place.isClean())
                continue;
            ++left;
            place.restore();
            QCOMPARE(place.run().code, expected.code);
            QCOMPARE(place.content({}), expected.after);
            QVERIFY2(place.isClean(), qPrintable(place.everything().join(' ')));
        }
        QVERIFY(number > 5);
        // Otherwise it is not the moment in question that was met.
        QVERIFY(left > 0 || !mayLeave);
    }

    void anotherWritersListIsNotTakenForOurs_data()
    {
        QTest::addColumn<QString>("effect");
        QTest::newRow("after ours") << "none";
        QTest::newRow("instead of ours") << "error 13";
    }

    /** Another program's list takes the file's place right after the rename, be that done or not. */
    void anotherWritersListIsNotTakenForOurs()
    {
        QFETCH(QString, effect);
        Task const task = modelTasks().at(1);
        Expected const expected = succeed(task);
        FaultWorkplace const place(task);
        place.write("theirs", QByteArray(recentFiles).replace("a.x", "other.x"));
        QMap<QString, QString> variables = variablesOf("rename", effect, 2);
        variables["FAULT_SWAP"] = "theirs:cfg/RecentFiles.xml";
        FaultyRun const run(place, variables);
        QVERIFY(run.isReached);
        COMPARE_EXIT(run.result, 0);
        QCOMPARE(run.result.err, QByteArray());
        QVERIFY(!QFile::exists(place.path("theirs")));
        QCOMPARE(place.content(run.result), expected.after);
    }

    void clockThatJumpsIsNoMatter_data() { addTasks(true); }

    void clockThatJumpsIsNoMatter()
    {
        QFETCH(Task, task);
        Expected const expected = succeed(task);
        FaultWorkplace const place(task);
        for (QString const seconds : {"-1600000000", "2000000000"}) {
            place.restore();
            QMap<QString, QString> variables = variablesOf("read", "none", 1);
            variables["FAULT_CLOCK"] = seconds;
            FaultyRun const run(place, variables);
            COMPARE_EXIT(run.result, expected.code);
            QCOMPARE(place.content(run.result), expected.after);
            QVERIFY(place.isClean());
        }
    }

    void lackOfMemoryLeavesAWholeFile_data() { addTasks(false); }

    void lackOfMemoryLeavesAWholeFile()
    {
        QFETCH(Task, task);
        Expected const expected = succeed(task);
        FaultWorkplace const place(task);
        int told = 0;
        int crashed = 0;
        // All of the first ones, and of the others ever fewer.
        int const density = task.isModel ? 12 : 3;
        bool isReached = true;
        for (int number = 1; isReached; number += 1 + number / density) {
            place.restore();
            FaultyRun const run(place, variablesOf("alloc", "error 12", number));
            isReached = run.isReached;
            QByteArray const content = place.content(run.result);
            bool const isDone = run.result.exited && run.result.code == expected.code;
            QVERIFY2(place.isClean(), qPrintable(place.everything().join(' ')));
            bool const mayBeOld = !isDone || !expected.tellsFailures;
            QVERIFY2(content == expected.after || (mayBeOld && content == expected.before),
                content.constData());
            // In drawing code of Qt, and in libraries below it, which do not ask whether they got any.
            crashed += run.result.exited ? 0 : 1;
            QVERIFY2(run.result.exited || !run.result.err.contains("terminate"),
                run.result.err.constData());
            told += run.result.exited && !isDone ? 1 : 0;
            if (run.result.exited && !isDone)
                QVERIFY2(run.result.err.count('\n') == 1, run.result.err.constData());
        }
        QVERIFY(told > 0);
        qInfo("%d told, %d crashed", told, crashed);
    }
};

QTEST_GUILESS_MAIN(TestFaults)

#include "tst_faults.moc"
