// SPDX-License-Identifier: MIT
#include "md5.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <utility>

unsigned char const MD5::PADDING[64] = {0x80};
char const MD5::HEX[16] = {
    '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};

namespace {

using Word = std::uint64_t;

constexpr std::size_t blockSize = 64;
constexpr std::size_t digestSize = 16;
constexpr std::size_t countSize = 8;

// RFC 1321, 3.4: of step i the integer part of 2^32 * abs(sin(i + 1)).
// clang-format off
constexpr Word constants[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391,
};
// clang-format on

/** RFC 1321, 3.4: by how much a round rotates in each four steps. */
constexpr int shifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

/** RFC 1321, 3.4: the word of the block that a step takes. */
constexpr int wordOf(int step)
{
    constexpr int factor[4] = {1, 5, 3, 7};
    constexpr int offset[4] = {0, 1, 5, 0};
    return (factor[step / 16] * (step % 16) + offset[step / 16]) % 16;
}

/**
 * `sum` and the function of a round: F, G, H or I of RFC 1321, 3.4.
 *
 * The latest word, b, comes in as late as possible: each step waits for it. F and G join two
 * parts that have no bit in common, which may as well be added.
 */
template <int round> Word mixed(Word sum, Word b, Word c, Word d)
{
    if constexpr (round == 0)
        return sum + (d ^ (b & (c ^ d)));
    else if constexpr (round == 1)
        return sum + (c & ~d) + (b & d);
    else if constexpr (round == 2)
        return sum + ((c ^ d) ^ b);
    else
        return sum + (c ^ (b | ~d));
}

/** As RFC 1321 rotates 32 bits, but with a word of 64, whose upper half comes down too. */
template <int shift> Word rotated(Word word)
{
    return (word << shift) | (word >> (32 - shift));
}

template <int index> void step(Word (&state)[4], std::uint32_t const (&words)[16])
{
    // The roles of the four words move on by one with each step.
    Word& a = state[(64 - index) % 4];
    Word const b = state[(65 - index) % 4];
    Word const c = state[(66 - index) % 4];
    Word const d = state[(67 - index) % 4];
    Word const sum = a + (words[wordOf(index)] + constants[index]);
    a = b + rotated<shifts[index / 16][index % 4]>(mixed<index / 16>(sum, b, c, d));
}

template <int... indices>
void steps(Word (&state)[4], std::uint32_t const (&words)[16],
    std::integer_sequence<int, indices...> /*indices*/)
{
    (step<indices>(state, words), ...);
}

std::uint32_t littleEndian(unsigned char const* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8
        | static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

} // namespace

MD5::MD5()
{
    reset();
}

MD5::MD5(void const* input, std::size_t length)
{
    reset();
    update(input, length);
}

MD5::MD5(std::string const& str)
{
    reset();
    update(str);
}

MD5::MD5(std::ifstream& in)
{
    reset();
    update(in);
}

void MD5::update(void const* input, std::size_t length)
{
    update(static_cast<unsigned char const*>(input), length);
}

void MD5::update(std::string const& str)
{
    update(str.data(), str.size());
}

void MD5::update(std::ifstream& in)
{
    if (in.fail())
        return;
    char block[1024];
    while (!in.eof() && !in.bad()) {
        in.read(block, sizeof block);
        if (in.gcount() > 0)
            update(block, static_cast<std::size_t>(in.gcount()));
    }
    in.close();
}

void MD5::update(unsigned char const* input, std::size_t length)
{
    m_finished = false;
    append(input, length);
}

unsigned char const* MD5::digest()
{
    if (!m_finished) {
        m_finished = true;
        final();
    }
    return m_digest;
}

std::string MD5::toString()
{
    return bytesToHexString(digest(), digestSize);
}

void MD5::reset()
{
    m_finished = false;
    m_count[0] = 0;
    m_count[1] = 0;
    m_state[0] = 0x67452301;
    m_state[1] = 0xefcdab89;
    m_state[2] = 0x98badcfe;
    m_state[3] = 0x10325476;
}

std::string MD5::bytesToHexString(unsigned char const* input, std::size_t length)
{
    std::string text;
    text.reserve(2 * length);
    for (std::size_t i = 0; i < length; ++i) {
        text += HEX[input[i] / 16];
        text += HEX[input[i] % 16];
    }
    return text;
}

void MD5::transform(unsigned char const block[64])
{
    std::uint32_t words[16];
    for (std::size_t i = 0; i < 16; ++i)
        words[i] = littleEndian(block + 4 * i);
    Word state[4];
    std::copy_n(m_state, 4, state);
    steps(state, words, std::make_integer_sequence<int, 64>());
    for (int i = 0; i < 4; ++i)
        m_state[i] += state[i];
}

void MD5::final()
{
    unsigned long const a = m_state[0];
    unsigned long const b = m_state[1];
    unsigned long const count = m_count[0];
    unsigned char countBytes[countSize];
    encode(m_count, countBytes, countSize);
    std::size_t const used = usedBuffer();
    std::size_t const filled = blockSize - countSize;
    append(PADDING, used < filled ? filled - used : blockSize + filled - used);
    append(countBytes, countSize);
    encode(m_state, m_digest, digestSize);
    m_state[0] = a;
    m_state[1] = b;
    m_count[0] = count;
}

void MD5::encode(unsigned long const* input, unsigned char* output, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i)
        output[i] = static_cast<unsigned char>(input[i / 4] >> (8 * (i % 4)));
}

void MD5::decode(unsigned char const* input, unsigned long* output, std::size_t length)
{
    for (std::size_t i = 0; i < length / 4; ++i)
        output[i] = littleEndian(input + 4 * i);
}

std::size_t MD5::usedBuffer() const
{
    return m_count[0] / 8 % blockSize;
}

/** Adds to the message, be it input or what fills it up. */
void MD5::append(unsigned char const* input, std::size_t length)
{
    std::size_t const used = usedBuffer();
    unsigned long const bits = static_cast<unsigned long>(length) << 3;
    m_count[0] += bits;
    if (m_count[0] < bits)
        ++m_count[1];
    m_count[1] += length >> 29;
    std::size_t done = 0;
    if (length >= blockSize - used) {
        done = blockSize - used;
        std::memcpy(m_buffer + used, input, done);
        transform(m_buffer);
        for (; length - done >= blockSize; done += blockSize)
            transform(input + done);
    }
    if (done < length)
        std::memcpy(m_buffer + (used + done) % blockSize, input + done, length - done);
}
