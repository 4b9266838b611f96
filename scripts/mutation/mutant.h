// SPDX-License-Identifier: MIT
#ifndef MUTANT_H
#define MUTANT_H

#include <cstddef>
#include <cstdlib>

/** What scripts/mutate puts into the sources: which of all the mutants of a build is alive. */
namespace Mutation {

/** The number of the one that is alive; none if there is no MUTANT in the environment. */
inline int const alive = [] {
    char const* const number = std::getenv("MUTANT");
    return number ? std::atoi(number) : -1;
}();

// The headers of the system would bring names that the sources use for their own.
extern "C" int mutationOpen(char const* path, int flags, ...) __asm__("open");
extern "C" int mutationClose(int file) __asm__("close");
extern "C" void* mutationMap(
    void* at, std::size_t size, int protection, int flags, int file, long offset) __asm__("mmap");

/** How long the file is that MUTANT_TRACE names. */
constexpr std::size_t most = 65536;

/** A byte for each that was reached, in the file that MUTANT_TRACE names; null without one. */
inline char* const reached = []() -> char* {
    constexpr int readAndWrite = 2;
    constexpr int mayReadAndWrite = 3;
    constexpr int shared = 1;
    char const* const path = std::getenv("MUTANT_TRACE");
    int const file = path ? mutationOpen(path, readAndWrite) : -1;
    if (file < 0)
        return nullptr;
    void* const memory = mutationMap(nullptr, most, mayReadAndWrite, shared, file, 0);
    mutationClose(file);
    return reinterpret_cast<std::ptrdiff_t>(memory) == -1 ? nullptr : static_cast<char*>(memory);
}();

__attribute__((always_inline)) inline bool is(int number)
{
    if (reached)
        reached[number] = 1;
    return number == alive;
}

/** The same where the compiler may want a constant, which is never that of a mutant. */
__attribute__((always_inline)) constexpr bool isAtRunTime(int number)
{
    return !__builtin_is_constant_evaluated() && is(number);
}

} // namespace Mutation

#endif // MUTANT_H
