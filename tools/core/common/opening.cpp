// SPDX-License-Identifier: MIT
#include "common/opening.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>
#include <chrono>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** How long the other end of a pipe is waited for: enough for a shell to start a program there. */
constexpr std::chrono::seconds patience {3};
constexpr std::chrono::milliseconds interval {10};

/** Whether `isThere` becomes true in time. */
bool comesInTime(std::function<bool()> const& isThere)
{
    auto const end = std::chrono::steady_clock::now() + patience;
    while (!isThere()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(interval);
    }
    return true;
}

struct stat statusOf(int descriptor)
{
    struct stat status
    {
    };
    fstat(descriptor, &status);
    return status;
}

bool isPipe(QByteArray const& name)
{
    struct stat status
    {
    };
    return stat(name.constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

/** Whether somebody has opened a pipe for writing. Nothing is taken out of it. */
bool hasWriter(int pipe, int scratch)
{
    // Of an empty pipe without a writer there is nothing to be had, else one would have to wait.
    if (tee(pipe, scratch, 1, SPLICE_F_NONBLOCK) != 0)
        return true;
    pollfd events {pipe, POLLIN, 0};
    return poll(&events, 1, 0) > 0; // the writer has gone again
}

bool awaitWriter(int pipe)
{
    int scratch[2] = {-1, -1};
    if (pipe2(scratch, O_CLOEXEC | O_NONBLOCK) != 0)
        return true;
    bool const hasCome = comesInTime([&] { return hasWriter(pipe, scratch[1]); });
    close(scratch[0]);
    close(scratch[1]);
    return hasCome;
}

/** Opens without waiting; while a lease on the file is being given up, tries again. */
int openAtOnce(QByteArray const& name, int flags)
{
    int descriptor = -1;
    comesInTime([&] {
        descriptor = open(name.constData(), flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
        return descriptor >= 0 || errno != EWOULDBLOCK;
    });
    return descriptor;
}

int openPipeForWriting(QByteArray const& name)
{
    int descriptor = -1;
    comesInTime([&] {
        descriptor = openAtOnce(name, O_WRONLY);
        return descriptor >= 0 || errno != ENXIO || !isPipe(name);
    });
    return descriptor;
}

/** Whether it is a descriptor of this process for writing: what it writes it would wait to read. */
bool isOwnOutput(QString const& file)
{
    auto const own = Opening::ownDescriptor(file);
    return own && (fcntl(*own, F_GETFL) & O_ACCMODE) == O_WRONLY;
}

/** Lets a device have the descriptor, which waits from now on as descriptors do. */
bool hand(int descriptor, QFile& device, QIODevice::OpenMode mode)
{
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    return device.open(descriptor, mode, QFileDevice::AutoCloseHandle);
}

} // namespace

bool Opening::forReading(QFile& device, QString const& file, QString& fault)
{
    if (file.isEmpty()) {
        fault = QStringLiteral("No file name specified");
        return false;
    }
    int const descriptor = openAtOnce(QFile::encodeName(file), O_RDONLY);
    if (descriptor < 0) {
        fault = qt_error_string(errno);
        return false;
    }
    mode_t const mode = statusOf(descriptor).st_mode;
    if (S_ISDIR(mode))
        fault = QStringLiteral("file to open is a directory");
    else if (S_ISFIFO(mode) && isOwnOutput(file))
        fault = qt_error_string(EBADF);
    else if (S_ISFIFO(mode) && !awaitWriter(descriptor))
        fault = QStringLiteral("nobody writes to this pipe");
    if (!fault.isEmpty())
        close(descriptor);
    return fault.isEmpty() && hand(descriptor, device, QIODevice::ReadOnly);
}

bool Opening::forWriting(QFile& device, QString const& file, QString& fault)
{
    QByteArray const name = QFile::encodeName(file);
    auto const own = ownDescriptor(file);
    int const descriptor = own ? fcntl(*own, F_DUPFD_CLOEXEC, 3) : openPipeForWriting(name);
    if (descriptor < 0) {
        fault = errno == ENXIO && isPipe(name) ? QStringLiteral("nobody reads from this pipe")
                                               : qt_error_string(errno);
        return false;
    }
    QIODevice::OpenMode const mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    // Whether an open descriptor waits is for whoever has opened it.
    return own ? device.open(descriptor, mode, QFileDevice::AutoCloseHandle)
               : hand(descriptor, device, mode);
}

std::optional<int> Opening::ownDescriptor(QString const& file)
{
    static QRegularExpression const number(QStringLiteral("^[0-9]{1,9}$"));
    QString const own = QStringLiteral("/proc/%1/").arg(getpid());
    int const mostLinks = 40; // as the system follows
    QFileInfo info(file);
    for (int i = 0; i < mostLinks; ++i) {
        // Not that of the file: what a descriptor is called leads somewhere else.
        QString const folder = QFileInfo(info.path()).canonicalFilePath();
        bool const isOwn = folder == own + QLatin1String("fd")
            || (folder.startsWith(own + QLatin1String("task/"))
                && folder.endsWith(QLatin1String("/fd")));
        if (isOwn && number.match(info.fileName()).hasMatch())
            return info.fileName().toInt();
        if (folder.isEmpty() || !info.isSymLink())
            return std::nullopt;
        info.setFile(info.symLinkTarget());
    }
    return std::nullopt;
}
