// SPDX-License-Identifier: MIT
#include "process/lackofmemory.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

#include <unistd.h>

namespace {

char const* lineToPrint = "";
std::terminate_handler usual = nullptr;

/** An exception may come where none may: then nobody can catch it, and this is called. */
void terminate()
{
    try {
        if (std::exception_ptr const exception = std::current_exception())
            std::rethrow_exception(exception);
    } catch (std::bad_alloc const&) {
        [[maybe_unused]] ssize_t const written =
            write(STDERR_FILENO, lineToPrint, std::strlen(lineToPrint));
        _exit(EXIT_FAILURE);
    } catch (...) {
        // Of any other sort: as ever.
    }
    usual();
    std::abort();
}

} // namespace

void tellLackOfMemory(char const* line)
{
    lineToPrint = line;
    usual = std::set_terminate(terminate);
}
