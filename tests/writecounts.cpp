// SPDX-License-Identifier: MIT
#include <sys/resource.h>

/**
 * A part of kpgeom where gcov measures coverage: the counts are written even if a test has kept the
 * files of the process small, and if it ends at once.
 */
extern "C" {
void __gcov_dump();
[[noreturn]] void __real__exit(int code);
[[noreturn]] void __wrap__exit(int code);
}

namespace {

[[gnu::destructor]] void liftFileSizeLimit()
{
    rlimit limit {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

void __wrap__exit(int code)
{
    liftFileSizeLimit();
    __gcov_dump();
    __real__exit(code);
}
