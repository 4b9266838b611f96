// SPDX-License-Identifier: MIT
#ifndef DOCUMENTFILE_H
#define DOCUMENTFILE_H

#include "files/filestate.h"
#include "files/sourcedocument.h"

/**
 * The file of a document that is being edited.
 *
 * What it was read from stays what it is: the origins of items are valid for good. So an item that
 * undo brings back is written as it was, also after its removal was saved, and all steps undone, a
 * save writes the file that was opened.
 */
class DocumentFile
{
public:
    /** A new document without a file. */
    DocumentFile();
    /**
     * A document that was read.
     *
     * @param path empty for one that has no file yet
     * @param source not null
     * @param state what the file was; of a recovered document, when its editing began
     */
    DocumentFile(QString const& path, std::shared_ptr<SourceDocument const> const& source,
        FileState const& state);

    /** Where it is; empty for a document without a file. */
    QString const& path() const { return m_path; }
    /** What it was read from. */
    SourceDocument const& source() const { return *m_source; }
    /** What the file was when it was read or saved. */
    FileState const& state() const { return m_state; }

    /**
     * Writes the document, whole or not at all; then it is the file's. What another program has
     * written there is replaced: see hasChangedOnDisk(). A warning tells of names, boxes and fill
     * rules that have no place in the document.
     *
     * @return false, with a diagnostic, if it could not be written; then nothing has changed
     */
    bool save(Items const& items, QString const& path, Diagnostics& diagnostics);

    /** Whether another program has written or removed the file; false without one. */
    bool hasChangedOnDisk() const;
    /** Whether the file is there, but cannot be replaced. */
    bool isReadOnly() const;

private:
    QString m_path;
    std::shared_ptr<SourceDocument const> m_source; ///< never null
    FileState m_state;
};

#endif // DOCUMENTFILE_H
