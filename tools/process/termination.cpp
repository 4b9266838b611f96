// SPDX-License-Identifier: MIT
#include "process/termination.h"

#include "common/unfinishedfile.h"

#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int endingSignals[] = {SIGHUP, SIGINT, SIGTERM};

int ends[2] = {-1, -1}; ///< of the pipe from the handler to the thread that ends the process

/** Ends the process as the signal does, so that whoever has started it sees which one it was. */
[[noreturn]] void endBy(int signal)
{
    struct sigaction action
    {
    };
    action.sa_handler = SIG_DFL;
    sigaction(signal, &action, nullptr);
    raise(signal);
    // The first process of a container, which no signal ends of itself. Not exit(): other threads are
    // still running.
    _exit(128 + signal);
}

/** Does no more than a handler may; what takes a lock is left to the thread. */
void pass(int signal)
{
    int const usual = errno;
    auto const number = static_cast<unsigned char>(signal);
    // The pipe is full only if many have come already, of which one is enough.
    [[maybe_unused]] ssize_t const written = write(ends[1], &number, 1);
    errno = usual;
}

void awaitSignal()
{
    unsigned char number = 0;
    ssize_t size = 0;
    do {
        size = read(ends[0], &number, 1);
    } while (size < 0 && errno == EINTR);
    if (size != 1)
        return;
    UnfinishedFile::awaitAllForGood();
    endBy(number);
}

bool startToAwait()
{
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0 || fcntl(ends[0], F_SETFL, 0) != 0)
        return false;
    try {
        std::thread(awaitSignal).detach();
    } catch (std::system_error const&) {
        return false; // as before: a signal ends the process itself
    }
    for (int const signal : endingSignals) {
        struct sigaction action
        {
        };
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL)
            continue;
        action.sa_handler = pass;
        action.sa_flags = SA_RESTART;
        sigaction(signal, &action, nullptr);
    }
    return true;
}

} // namespace

void endTidily()
{
    [[maybe_unused]] static bool const isStarted = startToAwait();
}
