// SPDX-License-Identifier: MIT
#ifndef MESSAGELOG_H
#define MESSAGELOG_H

#include <QByteArray>
#include <QSet>
#include <QStringList>
#include <QtGlobal>

/**
 * Takes the messages that Qt logs in this thread while it lives, instead of their being printed.
 * Threads may have one each at the same time; those of other threads go where they went before.
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

    static thread_local MessageLog* s_current;
    MessageLog* m_outer;
    QStringList m_messages;
    QSet<QString> m_leftOut;
};

/**
 * While one lives in any thread, what the libraries behind Qt say on standard error of their own is
 * dropped: the descriptor of the whole process leads nowhere.
 */
class QuietStandardError
{
public:
    QuietStandardError();
    ~QuietStandardError();

private:
    Q_DISABLE_COPY(QuietStandardError)
};

/** Prints on standard error, also while that is quiet: nothing of the tool's own is dropped. */
void printError(QByteArray const& text);

#endif // MESSAGELOG_H
