// SPDX-License-Identifier: MIT
#ifndef XMLMUTATOR_H
#define XMLMUTATOR_H

#include <cstddef>
#include <cstdint>

/**
 * Changes of XML by its parts: elements, attributes, texts and numbers. Bytes that are no XML are
 * changed as far as they look like it.
 *
 * xmlfuzzer.cpp hands them to libFuzzer, for targets that are given XML in CMakeLists.txt. One whose
 * input only holds XML somewhere calls them from a mutator of its own instead.
 */
namespace XmlMutator {

/**
 * Changes the `size` bytes at `data` in place, which has room for `maxSize`; now and then just as
 * libFuzzer does.
 * @return how many bytes there are then
 */
std::size_t mutate(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned int seed);

/**
 * Writes the first text with an element of the second one in it to `out`, which has room for
 * `maxSize` bytes.
 * @return how many bytes were written; 0 if there was no element or too little room
 */
std::size_t cross(std::uint8_t const* first, std::size_t firstSize, std::uint8_t const* second,
    std::size_t secondSize, std::uint8_t* out, std::size_t maxSize, unsigned int seed);

} // namespace XmlMutator

#endif // XMLMUTATOR_H
