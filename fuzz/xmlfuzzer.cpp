// SPDX-License-Identifier: MIT
// Lets libFuzzer change inputs as XML.

#include "xmlmutator.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(
    std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed)
{
    return XmlMutator::mutate(data, size, maxSize, seed);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(std::uint8_t const* first, std::size_t firstSize,
    std::uint8_t const* second, std::size_t secondSize, std::uint8_t* out, std::size_t maxSize,
    unsigned int seed)
{
    return XmlMutator::cross(first, firstSize, second, secondSize, out, maxSize, seed);
}
