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
 * does not overlap. A pixel has four bytes, each a channel of its own.
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
 * Sum and divisor are scaled by the same power of 2, to a divisor S above 256. Let M be 2^(32+k) / S,
 * rounded up, so that M * S = 2^(32+k) + e with 0 <= e < S. Then
 *
 *     sum * M / 2^(32+k) = sum / S + (sum / S) * (e / 2^(32+k)),
 *
 * whose integer part is that of sum / S as long as the second term is less than 1 / S, that is
 * sum * e < 2^(32+k). With k = 8 the product, less its lower 32 bits, has 16 bits, which is short.
 * M < 2^32 because S > 256; the condition is 255 * S * e < 2^40 and holds for all S up to 65,664,
 * and for many beyond. Where it does not, k is the number with 2^k < S <= 2^(k+1). Then
 * 255 * S * e < 2^8 * 2^23 * 2^(k+1) = 2^(32+k), and M < 2^32, because S >= 2^k + 1 and k <= 22
 * leave 2^32 - M at least 2^9 - 1.
 */
class Divisor
{
public:
    static constexpr quint32 greatest = 1U << 23;

    explicit constexpr Divisor(quint32 divisor) noexcept
    {
        while (divisor * m_scale <= 256)
            m_scale *= 2;
        quint64 const scaled = quint64(divisor) * m_scale;
        m_multiplier = multiplierFor(scaled);
        quint64 const error = m_multiplier * scaled - power();
        if (255 * scaled * error < power())
            return;
        while (scaled > 2ULL << m_shift)
            ++m_shift;
        m_multiplier = multiplierFor(scaled);
    }

    /** What sums have to be multiplied by first. */
    constexpr int scale() const noexcept { return static_cast<int>(m_scale); }
    constexpr quint32 multiplier() const noexcept { return static_cast<quint32>(m_multiplier); }
    /** Of the product, less its lower 32 bits. */
    constexpr int shift() const noexcept { return m_shift; }
    /** Whether what is shifted has 16 bits, of which the quotient is the upper byte. */
    constexpr bool isShort() const noexcept { return m_shift == 8; }

    constexpr quint32 quotient(quint32 sum) const noexcept
    {
        return static_cast<quint32>((quint64(sum) * m_scale * m_multiplier) >> 32) >> m_shift;
    }

private:
    constexpr quint64 power() const noexcept { return 1ULL << (32 + m_shift); }
    constexpr quint64 multiplierFor(quint64 divisor) const noexcept
    {
        return (power() + divisor - 1) / divisor;
    }

    quint32 m_scale = 1;
    int m_shift = 8;
    quint64 m_multiplier = 0;
};

/** Whether blurWide() takes the kernel: no sum wraps, and each quotient is a byte. */
bool isWideKernel(Kernel const& kernel) noexcept;

/** A pixel at a time, with the sums modulo 2^32: any kernel, on any machine. */
void blurPlain(Pixels const& pixels, Kernel const& kernel);

/** The same bytes with the widest vectors that the processor has, for a kernel that it takes. */
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
