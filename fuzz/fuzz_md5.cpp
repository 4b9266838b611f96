// SPDX-License-Identifier: MIT
// A message in pieces gives the digest of the whole, and that is the one of a plain model with its
// tables computed; so do objects that go on after a digest, which keep part of it.

#include "fuzzing.h"
#include "md5.h"

#include <cmath>
#include <string>
#include <vector>

using Fuzzing::require;

namespace {

using Bytes = std::vector<std::uint8_t>;

/** The digest by the text of RFC 1321, but with words of 64 bits. */
class Model
{
public:
    void update(Bytes const& bytes)
    {
        for (std::uint8_t const byte : bytes)
            put(byte);
        m_size += bytes.size();
    }

    /** Fills up the message; what is left of that is what the application counts on. */
    Bytes digest()
    {
        std::uint64_t const a = m_state[0];
        std::uint64_t const b = m_state[1];
        std::size_t const used = m_size % 64;
        Bytes padding(used < 56 ? 56 - used : 120 - used, 0);
        padding[0] = 0x80;
        // No message is so long here that the upper half of the count were not 0.
        for (std::size_t i = 0; i < 8; ++i)
            padding.push_back(std::uint8_t(i < 4 ? 8 * m_size >> (8 * i) : 0));
        for (std::uint8_t const byte : padding)
            put(byte);
        Bytes result;
        for (std::uint64_t const word : m_state) {
            for (int i = 0; i < 4; ++i)
                result.push_back(std::uint8_t(word >> (8 * i)));
        }
        m_state[0] = a;
        m_state[1] = b;
        m_used = used;
        return result;
    }

private:
    void put(std::uint8_t byte)
    {
        m_block[m_used++] = byte;
        if (m_used == 64) {
            m_used = 0;
            mix();
        }
    }

    void mix()
    {
        static constexpr int shifts[4][4] = {
            {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
        std::uint64_t a = m_state[0];
        std::uint64_t b = m_state[1];
        std::uint64_t c = m_state[2];
        std::uint64_t d = m_state[3];
        for (std::size_t i = 0; i < 64; ++i) {
            std::uint64_t f = 0;
            std::size_t word = 0;
            switch (i / 16) {
            case 0:
                f = (b & c) | (~b & d);
                word = i;
                break;
            case 1:
                f = (b & d) | (c & ~d);
                word = (5 * i + 1) % 16;
                break;
            case 2:
                f = b ^ c ^ d;
                word = (3 * i + 5) % 16;
                break;
            default:
                f = c ^ (b | ~d);
                word = 7 * i % 16;
            }
            std::uint64_t x = 0;
            for (std::size_t j = 0; j < 4; ++j)
                x |= std::uint64_t(m_block[4 * word + j]) << (8 * j);
            auto const constant =
                std::uint64_t(std::floor(std::fabs(std::sin(double(i + 1))) * 4294967296.0));
            std::uint64_t const sum = a + f + x + constant;
            int const shift = shifts[i / 16][i % 4];
            a = d;
            d = c;
            c = b;
            b += (sum << shift) | (sum >> (32 - shift));
        }
        m_state[0] += a;
        m_state[1] += b;
        m_state[2] += c;
        m_state[3] += d;
    }

    std::uint64_t m_state[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    std::size_t m_size = 0; ///< of the message
    std::size_t m_used = 0; ///< bytes in the block
    std::uint8_t m_block[64] = {};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    MD5 pieces;
    Model model;
    Bytes whole;
    bool isDigested = false;
    while (input.remaining_bytes() > 0) {
        std::size_t const length = input.ConsumeIntegralInRange<std::size_t>(0, 200);
        Bytes const piece = input.ConsumeBytes<std::uint8_t>(length);
        switch (input.ConsumeIntegralInRange(0, 2)) {
        case 0:
            pieces.update(static_cast<void const*>(piece.data()), piece.size());
            break;
        case 1:
            pieces.update(std::string(piece.begin(), piece.end()));
            break;
        default:
            pieces.update(piece.data(), piece.size());
        }
        model.update(piece);
        whole.insert(whole.end(), piece.begin(), piece.end());
        if (input.ConsumeIntegralInRange(0, 3) == 0) {
            unsigned char const* const digest = pieces.digest();
            require(Bytes(digest, digest + 16) == model.digest(), "a digest is the model's");
            isDigested = true;
        }
    }
    if (!isDigested) {
        MD5 once(whole.data(), whole.size());
        require(once.toString() == pieces.toString(), "pieces give the digest of the whole");
    }
    std::string const text = pieces.toString();
    require(text == pieces.toString(), "a digest stays");
    require(text == pieces.bytesToHexString(pieces.digest(), 16), "its text is its bytes");
    pieces.reset();
    pieces.update(whole.data(), whole.size());
    require(pieces.toString() == MD5(whole.data(), whole.size()).toString(), "a reset forgets");
    return 0;
}
