// SPDX-License-Identifier: MIT
#ifndef FILESTATE_H
#define FILESTATE_H

#include <QByteArray>
#include <QString>

/** What a file on disk was at some time, to notice that another program has changed it. */
struct FileState
{
    qint64 size = -1; ///< in bytes; -1 for no file
    qint64 modified = 0; ///< in milliseconds since 1970
    QByteArray digest; ///< of all bytes, as digestOf() gives it
};

/** The application's own digest in 32 digits: it tells contents apart, and protects from nothing. */
QByteArray digestOf(QByteArray const& content);

/** Size and time of a file, without its digest; of no file, or of what is none, size -1. */
FileState stateOf(QString const& path);

/**
 * Whether a file is no longer what it was. It is read only if its time has changed and its size has
 * not. One that cannot be read has changed.
 */
bool hasChanged(QString const& path, FileState const& before);

#endif // FILESTATE_H
