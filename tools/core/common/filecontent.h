#ifndef FILECONTENT_H
#define FILECONTENT_H

#include "common/diagnostic.h"

#include <QByteArray>
#include <QString>

#include <optional>

class QFile;
class QIODevice;

/** False, with a diagnostic, for a name with bytes that are no text: Qt would take another file. */
bool isNameExact(QString const& file, Diagnostics& diagnostics);

/** Opens the file for reading; false, with a diagnostic, if it cannot be. */
bool openFile(QFile& device, QString const& file, Diagnostics& diagnostics);

/**
 * All that an open device holds. Nothing, with a diagnostic, when it cannot be read or holds more
 * than the tools take (BoundedXml::Limits).
 *
 * @param file the name of what is read in diagnostics
 */
std::optional<QByteArray> contentOf(
    QIODevice& device, QString const& file, Diagnostics& diagnostics);

/** All that the file holds; nothing, with a diagnostic, as contentOf() and openFile(). */
std::optional<QByteArray> readFile(QString const& file, Diagnostics& diagnostics);

/**
 * Writes the file whole or not at all. A device or a pipe is written directly, since it cannot be
 * replaced. False, with a diagnostic, on failure.
 */
bool writeFile(QString const& file, QByteArray const& content, Diagnostics& diagnostics);

#endif // FILECONTENT_H
