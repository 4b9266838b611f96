// SPDX-License-Identifier: MIT
#ifndef LARGEPAGES_P_H
#define LARGEPAGES_P_H

#include <cstddef>

/** Pages of memory that are larger than usual. */
namespace LargePages {

/**
 * Asks the system to back this memory by large pages when it is first written to, as far as it
 * covers such: a picture of 100 MB else takes the system longer to provide, page by page, than to
 * blur. Where there are none nothing happens.
 */
void adviseFor(void* memory, std::size_t size) noexcept;

} // namespace LargePages

#endif // LARGEPAGES_P_H
