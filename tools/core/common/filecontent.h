// SPDX-License-Identifier: MIT
#ifndef FILECONTENT_H
#define FILECONTENT_H

#include "common/diagnostic.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

class QFile;
class QFileDevice;
class QIODevice;
class Spool;

/** False, with a diagnostic, for a name that no bytes give: Qt would take another file. */
bool isNameExact(QString const& file, Diagnostics& diagnostics);

/** Why an operation before which errno was 0 has failed: Qt does not always know. */
QString reasonOf(QFileDevice const& device);

/** Opens the file for reading, as Opening::forReading(); false, with a diagnostic, if it cannot be. */
bool openFile(QFile& device, QString const& file, Diagnostics& diagnostics);

/**
 * All that an open device holds. Nothing, with a diagnostic, when it cannot be read or holds more
 * than the tools take (BoundedXml::Limits).
 *
 * @param file the name of what is read in diagnostics
 */
std::optional<QByteArray> contentOf(
    QIODevice& device, QString const& file, Diagnostics& diagnostics);

/** Copies all that is left of one device to another; false if one of them fails. */
bool copyAll(QIODevice& from, QIODevice& to);

/** All that the file holds; nothing, with a diagnostic, as contentOf() and openFile(). */
std::optional<QByteArray> readFile(QString const& file, Diagnostics& diagnostics);

/** A file that is written piece by piece, and whole or not at all. */
class OutputFile
{
public:
    /**
     * Opens the file. Nothing, with a diagnostic, if that fails.
     *
     * @param file for a device, a pipe or a descriptor of this process, which cannot be replaced, what
     * is written waits for commit()
     */
    static std::unique_ptr<OutputFile> open(QString const& file, Diagnostics& diagnostics);
    /** Unless it was committed, what was there before stays. */
    ~OutputFile();

    /** Takes what is to be written. */
    QIODevice& device();
    /** Puts all in its place; false, with a diagnostic, on failure. */
    bool commit(Diagnostics& diagnostics);

private:
    class Replacement;

    explicit OutputFile(QString const& file);

    QString const m_file;
    std::unique_ptr<Replacement> m_replacement; ///< null for a device
    std::unique_ptr<Spool> m_waiting; ///< null for a file
};

/**
 * Writes the file whole or not at all. A device or a pipe is written directly, since it cannot be
 * replaced. False, with a diagnostic, on failure.
 */
bool writeFile(QString const& file, QByteArray const& content, Diagnostics& diagnostics);

/**
 * Whether there is a file of this name, or nothing yet. False, with a diagnostic, for a folder, a
 * device or a pipe: to open that may wait for who knows whom, and a window must not.
 */
bool isPlainFile(QString const& file, Diagnostics& diagnostics);
/** As readFile(), of plain files. */
std::optional<QByteArray> readPlainFile(QString const& file, Diagnostics& diagnostics);
/** As writeFile(), in the place of a plain file or of nothing. */
bool writePlainFile(QString const& file, QByteArray const& content, Diagnostics& diagnostics);

#endif // FILECONTENT_H
