// SPDX-License-Identifier: MIT
#ifndef RECOVERY_H
#define RECOVERY_H

#include "common/diagnostic.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class QLockFile;

/** What is kept of a document that is being edited, in case the program ends before its time. */
struct RecoveryContent
{
    QString path; ///< where the document is; empty for one without a file
    QByteArray digest; ///< of that file when it was read or saved, as digestOf(); or empty
    QByteArray text; ///< the document, as SourceDocument::write() gives it
};

/**
 * A recovery file, held for one document as long as this lives. No other process then lists it.
 *
 * The file is a header of lines that end in a line feed, an empty line, and the text:
 *
 *     kpshapes-recovery 1
 *     path: (UTF-8, percent-encoded)
 *     digest: (32 digits, or nothing)
 *     bytes: (how many the text has)
 *     text-digest: (32 digits, of the text)
 *
 * Readers take a file for damaged whose text is not as its header says, and skip header lines of
 * other names. Beside NAME.recovery stands NAME.lock, which names the process that holds it.
 */
class RecoveryFile
{
public:
    /**
     * A new file in a folder, which is created when it is missing. Nothing is written yet. Null,
     * with a diagnostic, if the folder cannot be used.
     */
    static std::unique_ptr<RecoveryFile> create(QString const& folder, Diagnostics& diagnostics);
    /**
     * Takes over a file that listRecoverable() gave: its document goes on to be kept there. Null if
     * another process has it, or it is gone.
     */
    static std::unique_ptr<RecoveryFile> adopt(QString const& file);

    /** Lets it go; its file is removed, since a document that was closed needs no recovery. */
    ~RecoveryFile();

    /** Its path. */
    QString const& file() const { return m_file; }
    /** Writes it anew, whole or not at all; false, with a diagnostic, if that fails. */
    bool store(RecoveryContent const& content, Diagnostics& diagnostics) const;
    /** Removes the file: there is nothing to be recovered, until the next store(). */
    void discard() const;

private:
    RecoveryFile(QString const& file, std::unique_ptr<QLockFile> lock);

    QString const m_file;
    std::unique_ptr<QLockFile> m_lock; ///< held
};

/** A document that a process has left behind. */
struct RecoverableDocument
{
    QString file; ///< the recovery file
    QString path; ///< of the document, as of RecoveryContent
    QDateTime time; ///< when it was kept
};

/**
 * The documents in a folder that no running process holds, the latest first. Damaged files are not
 * among them. A folder that is not there holds none. Locks that processes have left without a file
 * are removed.
 */
std::vector<RecoverableDocument> listRecoverable(QString const& folder);

/** What a recovery file holds; nothing, with a diagnostic, if it cannot be read or is damaged. */
std::optional<RecoveryContent> readRecovery(QString const& file, Diagnostics& diagnostics);

/** Removes a recovery file and its lock, unless a running process holds it: false then. */
bool discardRecovery(QString const& file);

#endif // RECOVERY_H
