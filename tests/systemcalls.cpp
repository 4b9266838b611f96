// SPDX-License-Identifier: MIT
#include "systemcalls.h"

#include <QHash>

#include <algorithm>
#include <cerrno>
#include <cstdarg>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

// Under their own names they might be inline functions of the system's headers.
extern "C" {
int calledAccess(char const* path, int mode) __asm__("access");
int calledOpen(char const* path, int flags, ...) __asm__("open");
int calledOpen64(char const* path, int flags, ...) __asm__("open64");
int calledOpenAt(int folder, char const* path, int flags, ...) __asm__("openat");
int calledFlock(int file, int operation) __asm__("flock");
int calledFchmod(int file, mode_t mode) __asm__("fchmod");
int calledFdatasync(int file) __asm__("fdatasync");
int calledLinkAt(int fromFolder, char const* from, int toFolder, char const* to, int flags) __asm__(
    "linkat");
int calledRenameAt(int fromFolder, char const* from, int toFolder, char const* to) __asm__(
    "renameat");
ssize_t calledGetrandom(void* bytes, std::size_t size, unsigned int flags) __asm__("getrandom");
}

namespace {

struct Fault
{
    int error;
    int times;
};

struct State
{
    QHash<QByteArray, Fault> faults;
    QHash<QByteArray, std::function<void()>> actions;
    QVector<QByteArray> random;
    QVector<SystemCalls::Call> made;
};

/** Calls are made before main() and after it, too. */
State& state()
{
    static auto* const all = new State;
    return *all;
}

/** Whether a call is to fail. */
bool fails(char const* name, char const* path = "", int flags = 0, mode_t mode = 0)
{
    state().made.append({name, path, flags, mode});
    if (auto const action = state().actions.take(name))
        action();
    auto const fault = state().faults.find(name);
    if (fault == state().faults.end() || fault->times == 0)
        return false;
    --fault->times;
    errno = fault->error;
    return true;
}

mode_t modeIn(int flags, va_list arguments)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(arguments, mode_t)
                                                                      : 0;
}

int opened(char const* name, int folder, char const* path, int flags, mode_t mode)
{
    return fails(name, path, flags, mode)
        ? -1
        : static_cast<int>(syscall(SYS_openat, folder, path, flags, mode));
}

} // namespace

void SystemCalls::reset()
{
    state() = State();
}

void SystemCalls::fail(QByteArray const& name, int error, int times)
{
    state().faults.insert(name, {error, times});
}

void SystemCalls::doBefore(QByteArray const& name, std::function<void()> const& action)
{
    state().actions.insert(name, action);
}

void SystemCalls::setRandom(QVector<QByteArray> const& bytes)
{
    state().random = bytes;
}

QVector<SystemCalls::Call> const& SystemCalls::made()
{
    return state().made;
}

int SystemCalls::count(QByteArray const& name)
{
    QVector<Call> const& all = made();
    return static_cast<int>(std::count_if(
        all.cbegin(), all.cend(), [&name](Call const& call) { return call.name == name; }));
}

int calledAccess(char const* path, int mode)
{
    // 64-bit Arm has no call that takes a path alone.
    return fails("access", path) ? -1
                                 : static_cast<int>(syscall(SYS_faccessat, AT_FDCWD, path, mode));
}

int calledOpen(char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    return opened("open", AT_FDCWD, path, flags, mode);
}

int calledOpen64(char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    return opened("open", AT_FDCWD, path, flags, mode);
}

int calledOpenAt(int folder, char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    char const* const name = (flags & O_TMPFILE) == O_TMPFILE ? "openat nameless"
        : (flags & O_CREAT) != 0                              ? "openat new"
                                                              : "openat";
    return opened(name, folder, path, flags, mode);
}

int calledFlock(int file, int operation)
{
    return fails("flock") ? -1 : static_cast<int>(syscall(SYS_flock, file, operation));
}

int calledFchmod(int file, mode_t mode)
{
    return fails("fchmod", "", 0, mode) ? -1 : static_cast<int>(syscall(SYS_fchmod, file, mode));
}

int calledFdatasync(int file)
{
    return fails("fdatasync") ? -1 : static_cast<int>(syscall(SYS_fdatasync, file));
}

int calledLinkAt(int fromFolder, char const* from, int toFolder, char const* to, int flags)
{
    return fails("linkat", to)
        ? -1
        : static_cast<int>(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
}

int calledRenameAt(int fromFolder, char const* from, int toFolder, char const* to)
{
    return fails("renameat", from)
        ? -1
        : static_cast<int>(syscall(SYS_renameat, fromFolder, from, toFolder, to));
}

ssize_t calledGetrandom(void* bytes, std::size_t size, unsigned int flags)
{
    if (fails("getrandom"))
        return -1;
    QVector<QByteArray>& random = state().random;
    if (random.isEmpty())
        return syscall(SYS_getrandom, bytes, size, flags);
    QByteArray const next = random.size() > 1 ? random.takeFirst() : random.first();
    std::size_t const count = std::min(size, static_cast<std::size_t>(next.size()));
    std::copy_n(next.constData(), count, static_cast<char*>(bytes));
    return static_cast<ssize_t>(count);
}
