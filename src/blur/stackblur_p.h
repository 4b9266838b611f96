// SPDX-License-Identifier: MIT
#ifndef STACKBLUR_P_H
#define STACKBLUR_P_H

#include "processorfeatures_p.h"

#include <QtGlobal>

#include <cstddef>
#include <vector>

/**
 * The stack blur of 32-bit pixels, in place: along all rows, then along all columns.
 *
 * Known by that name since Mario Klingemann published it in 2004: a triangle in place of the bell
 * of a Gaussian blur, and running sums that make the time independent of the radius. The box below
 * the triangle is an addition to it.
 *
 * The kernel is a triangle on top of a box. Its sums are kept from pixel to pixel: all in the span
 * up to the middle ("outgoing"), all behind it ("incoming"), and the weighted sum of all. One step
 * takes the outgoing sum off the weighted one, lets a pixel leave, another come in, adds the
 * incoming sum, and moves one pixel from the incoming to the outgoing side. The box adds the
 * flatness times what comes in and takes off as much of what leaves.
 */
namespace StackBlur {

/**
 * Where the pixels are that are blurred, and where the result goes: to the same place, or one that
 * does not overlap. A pixel has four bytes, each a channel of its own. Bytes between two rows may be
 * read, but are never written.
 */
struct Pixels
{
    quint8 const* source;
    std::ptrdiff_t sourceStride; ///< bytes from a row to the next
    quint8* data;
    std::ptrdiff_t stride;
    int width;
    int height;
};

/** How far a kernel reaches at most. */
constexpr int greatestRadius = 254;

/** Weights radius + 1 - distance + flatness, and what their sums are divided by. */
struct Kernel
{
    int radius; ///< 1 to greatestRadius
    quint32 flatness;
    quint32 divisor; ///< not 0; the sum of the weights, unless that wraps or is said to be another
};

/**
 * Quotients by multiplication, exact for the sums of a kernel: a sum of 255 times the divisor at
 * most, a divisor from 2 to 2^23.
 *
 * The idea is that of T. Granlund and P. L. Montgomery, "Division by Invariant Integers using
 * Multiplication", PLDI 1994: a reciprocal scaled by a power of 2 and rounded up. Theirs serves all
 * numbers of a word; that sums end at 255 times the divisor leaves a multiplier of 32 bits.
 *
 * Of a divisor S let k be the number with 2^k < S <= 2^(k+1), and M be 2^(32+k) / S, rounded up, so
 * that M * S = 2^(32+k) + e with 0 <= e < S. Then
 *
 *     sum * M / 2^(32+k) = sum / S + (sum / S) * (e / 2^(32+k)),
 *
 * whose integer part is that of sum / S as long as the second term is less than 1 / S, that is
 * sum * e < 2^(32+k). It is, as sum * e <= 255 * S * e < 2^8 * 2^23 * 2^(k+1). And M < 2^32, because
 * S >= 2^k + 1 and k <= 22 leave 2^32 - M at least 2^9 - 1.
 */
class Divisor
{
public:
    static constexpr quint32 greatest = 1U << 23;

    explicit constexpr Divisor(quint32 divisor) noexcept
    {
        while (divisor > 2U << m_shift)
            ++m_shift;
        m_multiplier = static_cast<quint32>(((1ULL << (32 + m_shift)) + divisor - 1) / divisor);
    }

    constexpr quint32 multiplier() const noexcept { return m_multiplier; }
    /** Of the product, less its lower 32 bits. */
    constexpr int shift() const noexcept { return m_shift; }

    constexpr quint32 quotient(quint32 sum) const noexcept
    {
        return static_cast<quint32>((quint64(sum) * m_multiplier) >> 32) >> m_shift;
    }

private:
    int m_shift = 0;
    quint32 m_multiplier = 0;
};

/**
 * The same with 16 bits, for divisors from 2 to 2^8.
 *
 * Here M is 2^(16+k) / S, rounded to the nearest. If that is up, the condition is that of Divisor:
 * sum * e < 2^(16+k), and holds as e <= S / 2 and k <= 7 leave sum * e <= 255 * S * S / 2 <=
 * 255 * 2^(2k+1) < 2^(16+k). If it is down, M * S = 2^(16+k) - e, 1 is added to each sum first. Then
 *
 *     (sum + 1) * M / 2^(16+k) = (sum + 1) / S - ((sum + 1) / S) * (e / 2^(16+k)),
 *
 * which is below the next integer, and not below sum / S where S divides that as long as the second
 * term is 1 / S at most, that is (sum + 1) * e <= 2^(16+k). A sum that S divides is 255 * S at most,
 * and (255 * S + 1) * e <= 256 * S * S / 2 <= 2^(2k+9) <= 2^(16+k).
 */
class ShortDivisor
{
public:
    static constexpr quint32 greatest = 1U << 8;

    explicit constexpr ShortDivisor(quint32 divisor) noexcept
    {
        while (divisor > 2U << m_shift)
            ++m_shift;
        quint32 const power = 1U << (16 + m_shift);
        m_multiplier = (power + divisor / 2) / divisor;
        m_offset = m_multiplier * divisor < power ? 1 : 0;
    }

    constexpr quint32 multiplier() const noexcept { return m_multiplier; }
    /** What has to be added to each sum. */
    constexpr quint32 offset() const noexcept { return m_offset; }
    /** Of the product, less its lower 16 bits. */
    constexpr int shift() const noexcept { return m_shift; }

    constexpr quint32 quotient(quint32 sum) const noexcept
    {
        return (((sum + m_offset) * m_multiplier) >> 16) >> m_shift;
    }

private:
    int m_shift = 0;
    quint32 m_multiplier = 0;
    quint32 m_offset = 0;
};

/**
 * The same by numbers of the type float, for divisors up to 2^16 if a product is not rounded before
 * it is added to, or up to 2^15.
 *
 * Of a divisor S and a sum, the number 2 * sum + 1 - 255 * S is not above 2^24 in either direction:
 * a float keeps it exactly. Divided by 2 * S it is
 *
 *     sum / S - 127 - 1 / 2 + 1 / (2 * S),
 *
 * at least 1 / (2 * S) from the middle between two integers, and so rounds to the quotient less 127.
 * It is rounded by adding a number so large that no bits are left behind the point.
 *
 * What is rounded is less than 128 in either direction, and wrong by less than 2^-17, as the
 * reciprocal is by 2^-24 of itself at most; and by 2^-18 more if the product was rounded before. The
 * former is less than 1 / (2 * S) for S up to 2^16, both together are for S up to 2^15.
 */
class FloatDivisor
{
public:
    static constexpr quint32 greatest = 1U << 15;
    static constexpr quint32 greatestFused = 1U << 16;
    /** What has to be added: the lower word of the sum is the quotient then. */
    static constexpr float whole = (3U << 22) + 127;

    explicit constexpr FloatDivisor(quint32 divisor) noexcept
        : m_offset(1 - 255 * static_cast<int>(divisor))
        , m_reciprocal(static_cast<float>(0.5 / divisor))
    {
    }

    /** What has to be added to each sum after that was doubled. */
    constexpr int offset() const noexcept { return m_offset; }
    constexpr float reciprocal() const noexcept { return m_reciprocal; }

private:
    int m_offset;
    float m_reciprocal;
};

/** Whether blurWide() takes the kernel: no sum wraps, and each quotient is a byte. */
bool isWideKernel(Kernel const& kernel) noexcept;

/** A pixel at a time, with the sums modulo 2^32: any kernel, on any machine. */
void blurPlain(Pixels const& pixels, Kernel const& kernel);

/**
 * The same bytes with the widest vectors that the processor has, for a kernel that it takes.
 *
 * @throws std::bad_alloc before anything is written, if there is no memory for what lies between
 */
void blurWide(Pixels const& pixels, Kernel const& kernel);

/** blurWide() for one set of instructions. */
struct WideBlur
{
    char const* instructions; ///< the name of the set
    char const* features; ///< without one of which a processor must not run it; commas separate
    void (*blur)(Pixels const& pixels, Kernel const& kernel);
};

/** Those for a processor that passes the test, the widest vectors first; there always is one. */
std::vector<WideBlur> wideBlurs(ProcessorFeatures::Test test);

} // namespace StackBlur

#endif // STACKBLUR_P_H
