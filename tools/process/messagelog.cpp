// SPDX-License-Identifier: MIT
#include "process/messagelog.h"

#include "common/text.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <utility>

namespace {

/** Guards what follows, except that messages are given to the usual handler at any time. */
std::mutex logging;
int logs = 0;
std::atomic<QtMessageHandler> usualHandler {nullptr};

std::mutex silencing;
int silencers = 0;
int standardError = -1; ///< what the descriptor was before

} // namespace

thread_local MessageLog* MessageLog::s_current = nullptr;

MessageLog::MessageLog()
    : m_outer(std::exchange(s_current, this))
{
    std::lock_guard<std::mutex> const lock(logging);
    if (++logs == 1)
        usualHandler = qInstallMessageHandler(note);
}

MessageLog::~MessageLog()
{
    std::lock_guard<std::mutex> const lock(logging);
    if (--logs == 0)
        qInstallMessageHandler(usualHandler);
    s_current = m_outer;
}

QStringList MessageLog::take()
{
    QStringList result = std::exchange(m_messages, {});
    if (int const leftOut = std::exchange(m_leftOut, {}).size(); leftOut > 0) {
        result << QStringLiteral("%1 of this kind")
                      .arg(countText(leftOut, QStringLiteral("more message")));
    }
    return result;
}

void MessageLog::note(QtMsgType type, QMessageLogContext const& context, QString const& message)
{
    if (type != QtFatalMsg && s_current)
        s_current->add(message.simplified());
    else if (QtMessageHandler const handler = usualHandler)
        handler(type, context, message);
}

void MessageLog::add(QString const& message)
{
    int const enough = 20;
    if (m_messages.contains(message))
        return;
    if (m_messages.count() < enough)
        m_messages << message;
    else
        m_leftOut.insert(message);
}

QuietStandardError::QuietStandardError()
{
    std::lock_guard<std::mutex> const lock(silencing);
    if (++silencers > 1)
        return;
    standardError = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDERR_FILENO);
    close(nowhere);
}

QuietStandardError::~QuietStandardError()
{
    std::lock_guard<std::mutex> const lock(silencing);
    if (--silencers > 0)
        return;
    dup2(standardError, STDERR_FILENO);
    close(standardError);
}

void printError(QByteArray const& text)
{
    std::lock_guard<std::mutex> const lock(silencing);
    auto const size = static_cast<std::size_t>(text.size());
    if (silencers == 0) {
        std::fwrite(text.constData(), 1, size, stderr);
        return;
    }
    for (std::size_t done = 0; done < size;) {
        ssize_t const more = ::write(standardError, text.constData() + done, size - done);
        if (more < 0 && errno != EINTR)
            return;
        done += static_cast<std::size_t>(qMax<ssize_t>(0, more));
    }
}
