#ifndef MESSAGELOG_H
#define MESSAGELOG_H

#include <QSet>
#include <QStringList>
#include <QtGlobal>

/**
 * Takes the messages that Qt logs while it lives, instead of their being printed. It replaces Qt's
 * message handler, so there is one at a time in the process.
 */
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();

    /**
     * Every different message since the last call once, each on one line; above a number that is
     * of use, a count.
     */
    QStringList take();

private:
    Q_DISABLE_COPY(MessageLog)

    static void note(QtMsgType type, QMessageLogContext const& context, QString const& message);
    void add(QString const& message);

    static MessageLog* s_current;
    QtMessageHandler m_handler;
    QStringList m_messages;
    QSet<QString> m_leftOut;
};

/**
 * While it lives, what the libraries behind Qt say on standard error of their own is dropped: the
 * descriptor of the whole process leads nowhere.
 */
class QuietStandardError
{
public:
    QuietStandardError();
    ~QuietStandardError();

private:
    Q_DISABLE_COPY(QuietStandardError)

    int const m_standardError;
};

#endif // MESSAGELOG_H
