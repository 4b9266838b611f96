// SPDX-License-Identifier: MIT
#ifndef KPGEOMTESTING_H
#define KPGEOMTESTING_H

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

/** What the tests of the command-line tool share: an empty folder to run it in. */
namespace KpgeomTesting {

/** How a run of the tool ended. */
struct Result
{
    bool exited; ///< false after a crash, and when it took too long
    int code;
    QByteArray out;
    QByteArray err;
};

/** Lets the superuser, too, be stopped by permissions. */
inline void obeyPermissions()
{
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
}

/**
 * From here on nothing gets a name or loses one. So a device that a test has written to stays the
 * device, whatever the tool does, even for the superuser.
 */
inline void keepNames()
{
    static constexpr unsigned int calls[] = {
#ifdef __NR_rename // and so the others without "at"
        __NR_rename, __NR_link, __NR_symlink, __NR_unlink,
#endif
        __NR_renameat, __NR_renameat2, __NR_linkat, __NR_symlinkat, __NR_unlinkat};
    std::vector<sock_filter> rules {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (unsigned int const call : calls) {
        rules.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 1));
        rules.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM));
    }
    rules.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    sock_fprog const filter {static_cast<unsigned short>(rules.size()), rules.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0
        || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
        _exit(127);
}

/** A process that is prepared between fork and exec by `setUp`. */
class PreparedProcess : public QProcess
{
public:
    std::function<void()> setUp;

protected:
    void setupChildProcess() override
    {
        if (setUp)
            setUp();
    }
};

/** A fresh folder, which is the tool's current one: file names in messages are short. */
class Workplace
{
public:
    /** How the tool is started, beside its arguments. */
    struct Start
    {
        QByteArray input {}; ///< on standard input, which is then closed
        QString outputFile {}; ///< standard output, instead of `Result::out`
        std::function<void()> setUp {}; ///< called in the child before the tool begins
        QString locale = QStringLiteral("C.UTF-8");
        QMap<QString, QString> variables {}; ///< of the environment, besides the usual ones
        QString program = QStringLiteral(KPGEOM_EXECUTABLE); ///< another one instead of the tool
    };

    Result run(QStringList const& arguments) const { return run(arguments, Start()); }

    Result run(QStringList const& arguments, Start const& start) const
    {
        PreparedProcess process;
        begin(process, arguments, start);
        return ended(process);
    }

    /** Runs the tool with each of the arguments, all at the same time. */
    std::vector<Result> runAtOnce(std::vector<QStringList> const& runs, Start const& start) const
    {
        std::vector<std::unique_ptr<PreparedProcess>> processes;
        for (QStringList const& arguments : runs) {
            processes.push_back(std::make_unique<PreparedProcess>());
            begin(*processes.back(), arguments, start);
        }
        std::vector<Result> results;
        for (auto const& process : processes)
            results.push_back(ended(*process));
        return results;
    }

    QString path(QString const& name = QString()) const { return m_directory.filePath(name); }

    void write(QString const& name, QByteArray const& content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s cannot be written", qPrintable(file.fileName()));
    }

    /** The content of a file, empty if there is none. */
    QByteArray read(QString const& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /** The names of all files and folders in the folder, hidden ones too. */
    QStringList entries() const
    {
        return QDir(m_directory.path())
            .entryList(
                QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

private:
    void begin(PreparedProcess& process, QStringList const& arguments, Start const& start) const
    {
        process.setUp = start.setUp;
        process.setWorkingDirectory(m_directory.path());
        process.setProcessEnvironment(environment(start));
        if (!start.outputFile.isEmpty())
            process.setStandardOutputFile(start.outputFile);
        process.start(start.program, arguments);
        process.write(start.input);
        process.closeWriteChannel();
    }

    static Result ended(PreparedProcess& process)
    {
        int const longestRun = 120 * 1000;
        if (process.error() == QProcess::FailedToStart)
            return {false, -1, QByteArray(), "it did not start"};
        if (process.state() != QProcess::NotRunning && !process.waitForFinished(longestRun)) {
            process.kill();
            process.waitForFinished();
            return {false, -1, QByteArray(), "it did not end in time"};
        }
        return {process.exitStatus() == QProcess::NormalExit, process.exitCode(),
            process.readAllStandardOutput(), process.readAllStandardError()};
    }

    /** Nothing of the surroundings but what the sanitizers need. */
    QProcessEnvironment environment(Start const& start) const
    {
        QProcessEnvironment const outer = QProcessEnvironment::systemEnvironment();
        QProcessEnvironment result;
        for (QString const& name : {QStringLiteral("ASAN_OPTIONS"), QStringLiteral("LSAN_OPTIONS"),
                 QStringLiteral("UBSAN_OPTIONS"), QStringLiteral("PATH"), QStringLiteral("HOME")}) {
            if (outer.contains(name))
                result.insert(name, outer.value(name));
        }
        result.insert(QStringLiteral("LC_ALL"), start.locale);
        // Where lines are counted, what is said of files for the counts is no message of the tool.
        result.insert(QStringLiteral("GCOV_ERROR_FILE"), QStringLiteral("/dev/null"));
        for (auto it = start.variables.cbegin(); it != start.variables.cend(); ++it)
            result.insert(it.key(), it.value());
        return result;
    }

    QTemporaryDir m_directory;
};

/**
 * A start in which no file grows beyond `bytes`. What measures coverage lifts this limit, a soft one,
 * when the tool ends: its own files are larger.
 */
inline Workplace::Start limitedTo(rlim_t bytes)
{
    Workplace::Start start;
    start.setUp = [bytes] {
        rlimit limit {};
        getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    return start;
}

/** What a program prints on a pseudo terminal that stands for one of its streams. */
class Terminal
{
public:
    Terminal()
    {
        if (openpty(&m_screen, &m_terminal, nullptr, nullptr, nullptr) != 0)
            qFatal("there is no pseudo terminal");
    }
    ~Terminal()
    {
        close(m_terminal);
        close(m_screen);
    }
    Terminal(Terminal const&) = delete;
    Terminal& operator=(Terminal const&) = delete;

    /** What puts the terminal in the place of a stream: a setUp of Workplace::Start. */
    std::function<void()> replacing(int stream) const
    {
        return [terminal = m_terminal, stream] { dup2(terminal, stream); };
    }

    /** The name of the terminal as a device, which nothing can replace. */
    QString name() const { return QString::fromLatin1(ttyname(m_terminal)); }

    /** What has been shown since the last call. */
    QByteArray text() const
    {
        // What was written before is on its way, and comes before this.
        constexpr char mark = '\x1e';
        if (write(m_terminal, &mark, 1) != 1)
            qFatal("nothing can be written to the pseudo terminal");
        QByteArray text;
        while (!text.endsWith(mark)) {
            char part[4096];
            ssize_t const size = read(m_screen, part, sizeof part);
            if (size <= 0)
                qFatal("nothing can be read from the pseudo terminal");
            text.append(part, int(size));
        }
        text.chop(1);
        return text;
    }

private:
    int m_screen = -1;
    int m_terminal = -1;
};

/** A box of 100 by 60 units, clockwise, its corners bound to the width and the height. */
inline QByteArray boxGeometry(QByteArray const& flags = "Closed=\"1\"")
{
    return "<Geometry " + flags
        + "><MoveTo><X V=\"0\" B=\"1\" P=\"0\"/><Y V=\"0\" B=\"2\" P=\"0\"/></MoveTo>"
          "<LineTo><X V=\"100\" B=\"1\" P=\"1\"/><Y V=\"0\" B=\"2\" P=\"0\"/></LineTo>"
          "<LineTo><X V=\"100\" B=\"1\" P=\"1\"/><Y V=\"60\" B=\"2\" P=\"1\"/></LineTo>"
          "<LineTo><X V=\"0\" B=\"1\" P=\"0\"/><Y V=\"60\" B=\"2\" P=\"1\"/></LineTo></Geometry>";
}

} // namespace KpgeomTesting

/** The tool ended by itself with this code; if not, the log shows what it said. */
#define COMPARE_EXIT(result, expected)                                                             \
    do {                                                                                           \
        KpgeomTesting::Result const& ended = (result); /* a run is not repeated */                 \
        QVERIFY2(ended.exited, ended.err.constData());                                             \
        QVERIFY2(ended.code == (expected),                                                         \
            QByteArray(QByteArray::number(ended.code) + " is not " #expected ": " + ended.err      \
                + ended.out.left(2000)));                                                          \
    } while (false)

/** The tool failed with this code and one line on standard error, and printed nothing else. */
#define COMPARE_FAILURE(result, expected, line)                                                    \
    do {                                                                                           \
        KpgeomTesting::Result const& failed = (result); /* a run is not repeated */                \
        COMPARE_EXIT(failed, expected);                                                            \
        QCOMPARE(failed.err, QByteArray(line) + '\n');                                             \
        QCOMPARE(failed.out, QByteArray());                                                        \
    } while (false)

#endif // KPGEOMTESTING_H
