// SPDX-License-Identifier: MIT
#ifndef REPEATABLEINPUT_H
#define REPEATABLEINPUT_H

#include <QByteArray>

#include <functional>
#include <memory>

class QFile;
class QIODevice;

/**
 * What can be read several times, also in turn: each call gives a device, open for reading from
 * the start. All that it gives belong to one thread.
 */
using RepeatableInput = std::function<std::unique_ptr<QIODevice>()>;

/** The text. */
RepeatableInput repeatableInput(QByteArray const& text);

/**
 * The rest of an open file. What is no regular file is read when it is needed first, and kept in a
 * temporary file without a name.
 */
RepeatableInput repeatableInput(std::unique_ptr<QFile> file);

#endif // REPEATABLEINPUT_H
