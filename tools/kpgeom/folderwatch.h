// SPDX-License-Identifier: MIT
#ifndef FOLDERWATCH_H
#define FOLDERWATCH_H

#include <QSet>
#include <QString>

/** Waits until something in folders changes. */
class FolderWatch
{
public:
    FolderWatch();
    ~FolderWatch();

    /** Watches a folder, not those in it. True unless it is watched already, or cannot be. */
    bool add(QString const& folder);

    /** What went wrong with the last folder that cannot be watched; empty if all are. */
    QString const& fault() const { return m_fault; }

    /**
     * Returns when a file was written, or one came or went, since the last call, and nothing more
     * happens for a tenth of a second. False if that can never be told.
     */
    bool wait();

private:
    Q_DISABLE_COPY(FolderWatch)

    bool readEvents();

    int const m_events;
    QSet<int> m_watches;
    QString m_fault;
};

#endif // FOLDERWATCH_H
