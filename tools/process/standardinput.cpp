// SPDX-License-Identifier: MIT
#include "process/standardinput.h"

#include <cerrno>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** What the call returns once no signal interrupts it. */
template <class Call> auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/** Waits. A pipe at its end is hung up and not readable; a socket is. */
bool isReadable()
{
    pollfd descriptor {STDIN_FILENO, POLLIN, 0};
    return uninterrupted([&descriptor] { return poll(&descriptor, 1, -1); }) == 1
        && (descriptor.revents & POLLIN) != 0;
}

bool isSocketWithInput()
{
    char byte = 0;
    return isReadable()
        && uninterrupted([&byte] { return recv(STDIN_FILENO, &byte, 1, MSG_PEEK); }) == 1;
}

/** Whether there is a byte. Sizes are not asked: some files of the system have none. */
bool isFileWithInput()
{
    char byte = 0;
    off_t const place = lseek(STDIN_FILENO, 0, SEEK_CUR);
    return place >= 0 && uninterrupted([&] { return pread(STDIN_FILENO, &byte, 1, place); }) == 1;
}

} // namespace

bool hasStandardInput()
{
    struct stat status = {};
    if (fstat(STDIN_FILENO, &status) != 0)
        return false;
    if (S_ISFIFO(status.st_mode))
        return isReadable();
    if (S_ISSOCK(status.st_mode))
        return isSocketWithInput();
    return S_ISREG(status.st_mode) && isFileWithInput();
}
