// SPDX-License-Identifier: MIT
#ifndef MD5_H
#define MD5_H

#include "kpgeometry_export.h"

#include <cstddef>
#include <iosfwd>
#include <string>

/**
 * The application's own digest of bytes, with which it tells buffers, texts and files apart.
 *
 * It is built as the MD5 of RFC 1321 is, but computes with words of 64 bits that are nowhere cut to
 * 32: its digests are not those of MD5, and no other program gives them. It protects from nothing:
 * use it to notice change, never for security.
 *
 * Input is added in any number of pieces. What is added after digest() does not continue the
 * message as it was: part of the state is that of the finished message. This is deliberate, the
 * application counts on it; reset() begins a new message.
 */
class KPGEOMETRY_EXPORT MD5
{
public:
    /** What a message is filled up with: 0x80 and 63 zeros. */
    static unsigned char const PADDING[64];
    /** The digits of toString(). */
    static char const HEX[16];

    /** An empty message. */
    MD5();
    /** The message of `length` bytes. */
    MD5(void const* input, std::size_t length);
    /** The message of the bytes of a string. */
    MD5(std::string const& str);
    /** The message of the rest of a file, see update(std::ifstream&). */
    MD5(std::ifstream& in);

    /** Adds `length` bytes; without any, `input` may be null. */
    void update(void const* input, std::size_t length);
    /** Adds the bytes of a string, zeros too. */
    void update(std::string const& str);
    /**
     * Adds all from where the stream stands to its end, and closes it. A stream that has failed
     * before is left as it is, open; one that turns bad on the way ends there. Memory does not
     * depend on the length.
     */
    void update(std::ifstream& in);
    /** Adds `length` bytes; without any, `input` may be null. */
    void update(unsigned char const* input, std::size_t length);

    /**
     * The 16 bytes of the digest, which stay the same until something is added.
     *
     * They belong to this object, and change with the next digest. What is added afterwards goes
     * on from a state of which C, D, the carry of the count and the buffer are those of the
     * finished message.
     */
    unsigned char const* digest();
    /** The digest as 32 digits in lower case. */
    std::string toString();
    /** Begins a new message. */
    void reset();

    /** Two digits in lower case for each byte. */
    std::string bytesToHexString(unsigned char const* input, std::size_t length);

    /** Adds a block of 64 bytes to the state: a step of update(). */
    void transform(unsigned char const block[64]);
    /** Computes the digest from the state: a step of digest(). */
    void final();
    /**
     * The lower 32 bits of each word as four bytes, the lowest first.
     *
     * @param length how many bytes come out, a multiple of 4
     */
    void encode(unsigned long const* input, unsigned char* output, std::size_t length);
    /**
     * The inverse of encode(): each four bytes as a word.
     *
     * @param length how many bytes go in, a multiple of 4
     */
    void decode(unsigned char const* input, unsigned long* output, std::size_t length);

private:
    KPGEOMETRY_NO_EXPORT void append(unsigned char const* input, std::size_t length);
    KPGEOMETRY_NO_EXPORT std::size_t usedBuffer() const;

    unsigned long m_state[4];
    unsigned long m_count[2]; ///< bits so far, and the carry
    unsigned char m_buffer[64]; ///< input that is not yet part of the state
    unsigned char m_digest[16];
    bool m_finished; ///< m_digest is of the input so far
};

static_assert(sizeof(unsigned long) == 8, "the digest computes with words of 64 bits");
static_assert(sizeof(MD5) == 136, "the application's layout of a digest");

#endif // MD5_H
