// SPDX-License-Identifier: MIT
#ifndef SYSTEMCALLS_H
#define SYSTEMCALLS_H

#include <QByteArray>
#include <QVector>

#include <functional>

/**
 * The calls to the system by which files are saved, as this process makes them: what they are, and
 * what becomes of them.
 *
 * Names: access, open, "openat nameless" and "openat new" of those that make a file, openat, flock,
 * fchmod, fdatasync, linkat, renameat, getrandom.
 */
namespace SystemCalls {

struct Call
{
    QByteArray name;
    QByteArray path; ///< empty where there is none
    int flags; ///< of one that opens a file
    unsigned int mode; ///< of one that makes a file
};

/** All calls do as they should, and none was made. */
void reset();

/** The next calls of the name fail, as often as is said. */
void fail(QByteArray const& name, int error, int times = 1);

/** Done just before the next call of the name, as another process might. */
void doBefore(QByteArray const& name, std::function<void()> const& action);

/** What getrandom() gives, one element at a call, the last one from then on; chance if empty. */
void setRandom(QVector<QByteArray> const& bytes);

/** Those since the last reset(). */
QVector<Call> const& made();

/** How many calls of the name there are among them. */
int count(QByteArray const& name);

} // namespace SystemCalls

#endif // SYSTEMCALLS_H
