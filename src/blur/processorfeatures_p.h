// SPDX-License-Identifier: MIT
#ifndef PROCESSORFEATURES_P_H
#define PROCESSORFEATURES_P_H

#include <string_view>

/** What a processor has beyond that which the compiler takes for granted. */
namespace ProcessorFeatures {

/** Tells whether a processor has the feature of a name that compilers know, such as "avx2". */
using Test = bool (*)(std::string_view feature) noexcept;

/**
 * Whether the processor that runs this has the feature, and the system lets programs use it: it
 * has to keep the registers. Of a feature that is not among those asked for here the answer is no.
 */
bool isPresent(std::string_view feature) noexcept;

/** Whether the test passes for all names in a list that commas separate. */
bool areAllPresent(std::string_view list, Test test) noexcept;

} // namespace ProcessorFeatures

#endif // PROCESSORFEATURES_P_H
