// SPDX-License-Identifier: MIT
#ifndef OPENING_H
#define OPENING_H

#include <QFile>
#include <QString>

#include <optional>

/**
 * Files are opened so that nothing is waited for without end: a pipe with a name that nobody has
 * opened at its other end within some seconds is a failure.
 */
namespace Opening {

/** Opens the file for reading; false, with the reason in `fault`, if it cannot be. */
bool forReading(QFile& device, QString const& file, QString& fault);

/**
 * Opens a device, a pipe or an open descriptor of this process for writing, without a buffer; false,
 * with the reason in `fault`, if it cannot be. What is there stays: nothing is truncated.
 */
bool forWriting(QFile& device, QString const& file, QString& fault);

/**
 * The descriptor of this process that the file is another name of, such as 1 for /dev/fd/1 or
 * /dev/stdout; nothing for any other file. Whoever opened it anew would begin at the start of a file
 * to which something else has written before.
 */
std::optional<int> ownDescriptor(QString const& file);

} // namespace Opening

#endif // OPENING_H
