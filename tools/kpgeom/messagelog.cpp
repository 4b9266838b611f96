#include "messagelog.h"

#include "common/text.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

MessageLog* MessageLog::s_current = nullptr;

MessageLog::MessageLog()
{
    s_current = this;
    m_handler = qInstallMessageHandler(note);
}

MessageLog::~MessageLog()
{
    qInstallMessageHandler(m_handler);
    s_current = nullptr;
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
    if (type == QtFatalMsg)
        s_current->m_handler(type, context, message);
    else
        s_current->add(message.simplified());
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
    : m_standardError(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3))
{
    int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDERR_FILENO);
    close(nowhere);
}

QuietStandardError::~QuietStandardError()
{
    dup2(m_standardError, STDERR_FILENO);
    close(m_standardError);
}
