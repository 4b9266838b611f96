// SPDX-License-Identifier: MIT
#include "largepages_p.h"

#ifdef __linux__
#include <sys/mman.h>

#include <cstdint>
#endif

void LargePages::adviseFor(
    [[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#ifdef __linux__
    constexpr std::size_t pageSize = std::size_t(1) << 21;
    // Only whole pages are asked for, lest memory beside this one be touched.
    std::size_t const before =
        (pageSize - reinterpret_cast<std::uintptr_t>(memory) % pageSize) % pageSize;
    if (size < before + pageSize)
        return;
    std::size_t const whole = (size - before) / pageSize * pageSize;
    ::madvise(static_cast<char*>(memory) + before, whole, MADV_HUGEPAGE);
#endif
}
