// SPDX-License-Identifier: MIT
#ifndef DOCUMENTLOADER_H
#define DOCUMENTLOADER_H

#include "files/filestate.h"
#include "files/sourcedocument.h"

#include <QObject>

#include <atomic>
#include <mutex>
#include <thread>

/** What came of loading a file. */
struct LoadResult
{
    SourceReading reading; ///< the document, unless there is an error or it is a picture
    FileState state; ///< what the file was when it was read
    QByteArray content; ///< of a picture, to be imported; empty otherwise
    Diagnostics diagnostics; ///< errors and warnings
};

/**
 * Loads a file in a thread of its own. Its signals come in the thread that it lives in, which needs
 * an event loop. To destroy it cancels the loading, and waits until the thread has noticed.
 */
class DocumentLoader : public QObject
{
    Q_OBJECT

public:
    /** Nothing is loaded yet. @param path a regular file; anything else becomes a diagnostic */
    explicit DocumentLoader(QString const& path, QObject* parent = nullptr);
    ~DocumentLoader() override;

    /** Begins; at most once. */
    void start();
    /** Ends it early: no more items come, and finished() soon. Without effect before and after. */
    void cancel() { m_isCancelled = true; }

Q_SIGNALS:
    /**
     * The next items, in their order, as soon as they have been read: together they are those of
     * the document. If the result is an error, what was told is to be dropped.
     */
    void loaded(Items const& items);
    /** How much is done, from 0 to 1. */
    void progress(double done);
    /** The last signal, also of what could not be loaded. */
    void finished(LoadResult const& result);
    /** The same as progress(), in the thread that loads. */
    void hasRead(double done, QPrivateSignal);
    /** In the thread that loads: items wait to be told. */
    void hasItems(QPrivateSignal);
    /** In the thread that loads: the result is there. */
    void hasEnded(QPrivateSignal);

private:
    class Batches;

    void run();
    LoadResult load();
    void put(Items const& items);
    void tellItems();
    void tellEnd();

    QString const m_path;
    std::atomic<bool> m_isCancelled {false};
    std::mutex m_mutex; ///< guards m_waiting
    Items m_waiting; ///< those that have been read and not been told
    LoadResult m_result; ///< written by the thread before hasEnded(), and not touched afterwards
    std::thread m_thread;
};

#endif // DOCUMENTLOADER_H
