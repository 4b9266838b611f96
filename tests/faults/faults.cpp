// SPDX-License-Identifier: MIT
// To be loaded before a program (LD_PRELOAD): one of its calls to the system fails, as an environment
// variable says. Nothing else changes; only the calls that the program makes by name are seen, not
// those within the C library.
//
//   FAULT_CALLS    which calls count: a name of the table below, or several with commas
//   FAULT_NUMBER   the one that fails, from 1
//   FAULT_EFFECT   how: "error N" with an errno, "short" for half of the bytes, "signal N" just before
//   FAULT_REPORT   a file that is made when the call is reached
//   FAULT_SWAP     a file, and behind a colon another one: the one is renamed to the other just
//                  after the call, as another program might do
//   FAULT_NAMELESS "no": no file system knows files without a name
//   FAULT_CLOCK    seconds: the wall clock jumps by as much at the call
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
}

namespace {

/** What can fail. Each stands for all calls that do the same. */
enum Kind : unsigned {
    Allocation = 1U << 0U,
    Write = 1U << 1U,
    Sync = 1U << 2U,
    Rename = 1U << 3U,
    Open = 1U << 4U,
    Close = 1U << 5U,
    Truncate = 1U << 6U,
    Map = 1U << 7U,
    Read = 1U << 8U,
    Remove = 1U << 9U,
    Permissions = 1U << 10U,
    Print = 1U << 11U,
};

constexpr struct
{
    char const* name;
    unsigned kind;
} kinds[] = {
    {"alloc", Allocation},
    {"write", Write},
    {"sync", Sync},
    {"rename", Rename},
    {"open", Open},
    {"close", Close},
    {"truncate", Truncate},
    {"map", Map},
    {"read", Read},
    {"remove", Remove},
    {"permissions", Permissions},
    {"print", Print},
};

/** What the environment asks for; read once, before main(). */
struct Plan
{
    unsigned calls = 0;
    long number = 0;
    int error = 0;
    int signal = 0;
    bool isShort = false;
    bool hasNameless = true;
    long clock = 0;
    char const* report = nullptr;
    char const* swapped = nullptr;
};

Plan plan;
std::atomic<long> count {0};
std::atomic<long> clockJump {0};

char const* variable(char const* name)
{
    char const* const value = getenv(name);
    return value ? value : "";
}

__attribute__((constructor)) void readPlan()
{
    char const* const calls = variable("FAULT_CALLS");
    for (auto const& kind : kinds) {
        if (std::strstr(calls, kind.name))
            plan.calls |= kind.kind;
    }
    plan.number = std::atol(variable("FAULT_NUMBER"));
    char const* const effect = variable("FAULT_EFFECT");
    std::sscanf(effect, "error %d", &plan.error);
    std::sscanf(effect, "signal %d", &plan.signal);
    plan.isShort = std::strcmp(effect, "short") == 0;
    plan.hasNameless = std::strcmp(variable("FAULT_NAMELESS"), "no") != 0;
    plan.clock = std::atol(variable("FAULT_CLOCK"));
    plan.report = getenv("FAULT_REPORT");
    plan.swapped = getenv("FAULT_SWAP");
}

/** The next function of the name: that of the C library. */
template <class Function> Function next(char const* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void reportReached()
{
    if (plan.report) {
        long const file = syscall(SYS_open, plan.report, O_WRONLY | O_CREAT, 0666);
        syscall(SYS_close, file);
    }
}

/** Whether this call is the one; if a signal is to come, it comes now. */
bool isReached(Kind kind)
{
    if ((plan.calls & kind) == 0 || ++count != plan.number)
        return false;
    reportReached();
    if (plan.signal != 0)
        kill(getpid(), plan.signal);
    clockJump = plan.clock;
    return true;
}

bool mustFail(bool isReached)
{
    if (isReached && plan.error != 0)
        errno = plan.error;
    return isReached && plan.error != 0;
}

/** As many bytes as are to be taken of this call. */
std::size_t taken(bool isReached, std::size_t size)
{
    return isReached && plan.isShort && size > 1 ? size / 2 : size;
}

/** Lets the other program act that comes right after the call. */
void swapAfter(bool isReached)
{
    if (!isReached || !plan.swapped)
        return;
    int const error = errno;
    char from[4096];
    std::snprintf(from, sizeof from, "%s", plan.swapped);
    if (char* const colon = std::strchr(from, ':')) {
        *colon = '\0';
        syscall(SYS_rename, from, colon + 1);
    }
    errno = error;
}

/** A call that returns -1 on failure. */
template <class Call> auto done(Kind kind, Call call) -> decltype(call())
{
    bool const reached = isReached(kind);
    auto const result = mustFail(reached) ? -1 : call();
    swapAfter(reached);
    return result;
}

int openedFile(char const* name, int folder, char const* path, int flags, mode_t mode)
{
    if (!plan.hasNameless && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    return done(Open, [&] {
        return std::strncmp(name, "openat", 6) == 0
            ? next<int (*)(int, char const*, int, ...)>(name)(folder, path, flags, mode)
            : next<int (*)(char const*, int, ...)>(name)(path, flags, mode);
    });
}

mode_t modeIn(int flags, va_list arguments)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(arguments, mode_t)
                                                                      : 0;
}

} // namespace

extern "C" {

// -- Memory: aliases of the C library's, since looking a function up may allocate.

void* malloc(std::size_t size)
{
    return mustFail(isReached(Allocation)) ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t number, std::size_t size)
{
    return mustFail(isReached(Allocation)) ? nullptr : __libc_calloc(number, size);
}

void* realloc(void* memory, std::size_t size)
{
    return mustFail(isReached(Allocation)) ? nullptr : __libc_realloc(memory, size);
}

// -- Files

int open(char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    return openedFile("open", AT_FDCWD, path, flags, mode);
}

int open64(char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    return openedFile("open64", AT_FDCWD, path, flags, mode);
}

int openat(int folder, char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    return openedFile("openat", folder, path, flags, mode);
}

int openat64(int folder, char const* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = modeIn(flags, arguments);
    va_end(arguments);
    return openedFile("openat64", folder, path, flags, mode);
}

int close(int file)
{
    // Whatever it says, the descriptor is gone.
    return done(Close, [&] { return int(syscall(SYS_close, file)); });
}

ssize_t write(int file, void const* data, std::size_t size)
{
    bool const reached = isReached(Write);
    if (mustFail(reached))
        return -1;
    return syscall(SYS_write, file, data, taken(reached, size));
}

ssize_t pwrite64(int file, void const* data, std::size_t size, off64_t position)
{
    bool const reached = isReached(Write);
    if (mustFail(reached))
        return -1;
    return syscall(SYS_pwrite64, file, data, taken(reached, size), position);
}

ssize_t writev(int file, iovec const* parts, int number)
{
    return done(Write, [&] { return syscall(SYS_writev, file, parts, number); });
}

std::size_t fwrite(void const* data, std::size_t size, std::size_t number, FILE* file)
{
    bool const reached = isReached(Print);
    if (mustFail(reached))
        return 0;
    return next<decltype(&fwrite)>("fwrite")(data, size, number, file);
}

int fflush(FILE* file)
{
    return done(Print, [&] { return next<decltype(&fflush)>("fflush")(file); });
}

ssize_t read(int file, void* data, std::size_t size)
{
    bool const reached = isReached(Read);
    if (mustFail(reached))
        return -1;
    return syscall(SYS_read, file, data, taken(reached, size));
}

ssize_t pread64(int file, void* data, std::size_t size, off64_t position)
{
    bool const reached = isReached(Read);
    if (mustFail(reached))
        return -1;
    return syscall(SYS_pread64, file, data, taken(reached, size), position);
}

int fsync(int file)
{
    return done(Sync, [&] { return int(syscall(SYS_fsync, file)); });
}

int fdatasync(int file)
{
    return done(Sync, [&] { return int(syscall(SYS_fdatasync, file)); });
}

int rename(char const* from, char const* to)
{
    return done(Rename, [&] { return int(syscall(SYS_rename, from, to)); });
}

int renameat(int fromFolder, char const* from, int toFolder, char const* to)
{
    return done(Rename, [&] { return int(syscall(SYS_renameat, fromFolder, from, toFolder, to)); });
}

int linkat(int fromFolder, char const* from, int toFolder, char const* to, int flags)
{
    return done(
        Rename, [&] { return int(syscall(SYS_linkat, fromFolder, from, toFolder, to, flags)); });
}

int unlink(char const* path)
{
    return done(Remove, [&] { return int(syscall(SYS_unlink, path)); });
}

int unlinkat(int folder, char const* path, int flags)
{
    return done(Remove, [&] { return int(syscall(SYS_unlinkat, folder, path, flags)); });
}

int fchmod(int file, mode_t mode)
{
    return done(Permissions, [&] { return int(syscall(SYS_fchmod, file, mode)); });
}

int ftruncate64(int file, off64_t size)
{
    return done(Truncate, [&] { return int(syscall(SYS_ftruncate, file, size)); });
}

void* mmap64(void* place, std::size_t size, int access, int flags, int file, off64_t position)
{
    if (mustFail(isReached(Map)))
        return MAP_FAILED;
    return reinterpret_cast<void*>(syscall(SYS_mmap, place, size, access, flags, file, position));
}

void* mmap(void* place, std::size_t size, int access, int flags, int file, off_t position)
{
    return mmap64(place, size, access, flags, file, position);
}

// -- The wall clock

int clock_gettime(clockid_t clock, timespec* now)
{
    int const result = int(syscall(SYS_clock_gettime, clock, now));
    if (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)
        now->tv_sec += clockJump;
    return result;
}

int gettimeofday(timeval* now, void* /*zone*/)
{
    timespec exact {};
    int const result = clock_gettime(CLOCK_REALTIME, &exact);
    now->tv_sec = exact.tv_sec;
    now->tv_usec = exact.tv_nsec / 1000;
    return result;
}

time_t time(time_t* now)
{
    timespec exact {};
    clock_gettime(CLOCK_REALTIME, &exact);
    if (now)
        *now = exact.tv_sec;
    return exact.tv_sec;
}

} // extern "C"
