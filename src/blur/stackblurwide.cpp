// SPDX-License-Identifier: MIT
// Compiled once for each set of instructions: the macros of Highway include this file again.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stackblurwide.cpp"
// Vectors whose size is not known to the compiler cannot be members of a class. AVX3_DL has nothing
// for the blur that AVX3 lacks.
#define HWY_DISABLED_TARGETS                                                                       \
    (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV | HWY_AVX3_DL)
// Not needed either, and not every compiler can ask a processor for it.
#define HWY_DISABLE_F16C
#include <hwy/foreach_target.h>

#include <hwy/highway.h>

#include "processorfeatures_p.h"
#include "stackblur_p.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <type_traits>

HWY_BEFORE_NAMESPACE();

namespace StackBlur {
namespace HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

void blur(Pixels const& pixels, Kernel const& kernel)
{
    blurPlain(pixels, kernel);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<quint8>;
using Words = hn::Repartition<quint16, Bytes>;
using SignedWords = hn::Repartition<qint16, Bytes>;
using Numbers = hn::Repartition<quint32, Bytes>;
using SignedNumbers = hn::Repartition<qint32, Bytes>;
using Products = hn::Repartition<std::uint64_t, Bytes>;
using Floats = hn::Repartition<float, Bytes>;

using ByteVector = hn::VFromD<Bytes>;
using WordVector = hn::VFromD<Words>;
using SignedWordVector = hn::VFromD<SignedWords>;
using NumberVector = hn::VFromD<Numbers>;
using FloatVector = hn::VFromD<Floats>;

constexpr int lineBytes = int(hn::MaxLanes(Bytes()));
constexpr int pixelBytes = 4;
constexpr int linePixels = lineBytes / pixelBytes;
constexpr int blockBytes = 16; ///< within which Highway interleaves
constexpr quint32 greatestWord = 32767; ///< with a sign

/** Memory for the bytes of a line. */
struct alignas(lineBytes) LineMemory
{
    quint8 bytes[lineBytes];

    HWY_INLINE ByteVector line() const { return hn::Load(Bytes(), bytes); }
    HWY_INLINE void setLine(ByteVector line) { hn::Store(line, Bytes(), bytes); }
};

/** The channels of a line as words: those in even places, and those in odd ones. */
struct WideLine
{
    WordVector channels[2];

    HWY_INLINE explicit WideLine(ByteVector line)
        : channels {hn::And(hn::BitCast(Words(), line), hn::Set(Words(), 0x00FF)),
            hn::ShiftRight<8>(hn::BitCast(Words(), line))}
    {
    }
};

/** Of the even channels or of the odd ones: what arrives, was in the middle, and leaves. */
struct Change
{
    WordVector arriving;
    WordVector middle;
    WordVector leaving;

    /** How much more the sum of the triangle grows than before. @param left what left then */
    HWY_INLINE WordVector ofStep(WordVector left) const
    {
        return hn::Sub(hn::Sub(arriving, middle), hn::Sub(middle, left));
    }

    HWY_INLINE WordVector ofBox() const { return hn::Sub(arriving, leaving); }
};

/** Lines that arrive while the one in the middle and those that leave are still the first. */
struct Arrivals
{
    static constexpr int most = 15; ///< that leave the totals in a word with a sign

    int count;
    int sumFactor; ///< what the sums have to be multiplied by
    int totalFactor;
    WordVector sums[2]; ///< of what the lines are more than the first
    WordVector totals[2]; ///< of the sums after each line

    /** None yet. */
    HWY_INLINE static Arrivals none()
    {
        auto const zero = hn::Zero(Words());
        return {0, 1, 1, {zero, zero}, {zero, zero}};
    }

    /** The same line again and again. */
    HWY_INLINE static Arrivals repeated(WideLine const& line, WideLine const& first, int count)
    {
        Arrivals result {count, count, count * (count + 1) / 2, {}, {}};
        for (int i = 0; i < 2; ++i)
            result.sums[i] = result.totals[i] = hn::Sub(line.channels[i], first.channels[i]);
        return result;
    }

    HWY_INLINE void add(WideLine const& line, WideLine const& first)
    {
        ++count;
        for (int i = 0; i < 2; ++i) {
            sums[i] = hn::Add(sums[i], hn::Sub(line.channels[i], first.channels[i]));
            totals[i] = hn::Add(totals[i], sums[i]);
        }
    }
};

/**
 * Sums of 16 bits, for divisors up to ShortDivisor::greatest.
 *
 * @tparam hasFlatness whether there is a flatness
 */
template <bool hasFlatness> class ShortSums
{
public:
    /** The sums at one line, and what has to be known of the lines before. */
    struct At
    {
        WordVector step[2]; ///< what the triangle's sum grows by
        WordVector weighted[2];
        WordVector left[2]; ///< the line that left last
    };

    HWY_INLINE explicit ShortSums(Kernel const& kernel)
        : ShortSums(kernel, ShortDivisor(kernel.divisor))
    {
    }

    /** Where all lines are the same. */
    HWY_INLINE At amid(ByteVector line) const
    {
        At sums;
        WideLine const wide(line);
        for (int i = 0; i < 2; ++i) {
            sums.step[i] = hn::Zero(Words());
            sums.weighted[i] = hn::Add(hn::Mul(wide.channels[i], m_divisor), m_offset);
            sums.left[i] = wide.channels[i];
        }
        return sums;
    }

    HWY_INLINE void arrive(At& sums, Arrivals const& arrivals) const
    {
        for (int i = 0; i < 2; ++i) {
            auto const grown =
                hn::Mul(arrivals.sums[i], hn::Set(Words(), quint16(arrivals.sumFactor)));
            auto const total =
                hn::Mul(arrivals.totals[i], hn::Set(Words(), quint16(arrivals.totalFactor)));
            auto const steps = hn::Mul(sums.step[i], hn::Set(Words(), quint16(arrivals.count)));
            sums.weighted[i] = hn::Add(
                hn::Add(sums.weighted[i], steps), hn::Add(total, hn::Mul(grown, m_flatness)));
            sums.step[i] = hn::Add(sums.step[i], grown);
        }
    }

    /** Moves on by one: a line arrives, one was in the middle, and one leaves. */
    HWY_INLINE void advance(
        At& sums, ByteVector arrivingLine, ByteVector middleLine, ByteVector leavingLine) const
    {
        WideLine const arriving(arrivingLine);
        WideLine const middle(middleLine);
        WideLine const leaving(leavingLine);
        advanceHalf(sums, 0, {arriving.channels[0], middle.channels[0], leaving.channels[0]});
        advanceHalf(sums, 1, {arriving.channels[1], middle.channels[1], leaving.channels[1]});
    }

    /** What the line in the middle becomes. */
    HWY_INLINE ByteVector mean(At const& sums) const
    {
        auto const even = hn::MulHigh(sums.weighted[0], m_multiplier);
        auto const odd = hn::MulHigh(sums.weighted[1], m_multiplier);
        return hn::BitCast(Bytes(),
            hn::OrAnd(hn::ShiftRightSame(even, m_shift), hn::ShiftLeftSame(odd, 8 - m_shift),
                hn::Set(Words(), 0xFF00)));
    }

private:
    HWY_INLINE void advanceHalf(At& sums, int i, Change const& change) const
    {
        sums.step[i] = hn::Add(sums.step[i], change.ofStep(sums.left[i]));
        sums.weighted[i] = hn::Add(sums.weighted[i], sums.step[i]);
        if (hasFlatness)
            sums.weighted[i] = hn::Add(sums.weighted[i], hn::Mul(change.ofBox(), m_flatness));
        sums.left[i] = change.leaving;
    }

    HWY_INLINE ShortSums(Kernel const& kernel, ShortDivisor const& divisor)
        : m_flatness(hn::Set(Words(), quint16(kernel.flatness)))
        , m_divisor(hn::Set(Words(), quint16(kernel.divisor)))
        , m_multiplier(hn::Set(Words(), quint16(divisor.multiplier())))
        , m_offset(hn::Set(Words(), quint16(divisor.offset())))
        , m_shift(divisor.shift())
    {
    }

    WordVector const m_flatness;
    WordVector const m_divisor;
    WordVector const m_multiplier;
    WordVector const m_offset;
    int const m_shift;
};

/** The quotients of doubled sums, see FloatDivisor. */
class FloatDivision
{
public:
    static constexpr int factor = 2; ///< of the sums
    static constexpr bool isFused = HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX2;
    static constexpr quint32 greatest =
        isFused ? FloatDivisor::greatestFused : FloatDivisor::greatest;

    HWY_INLINE explicit FloatDivision(quint32 divisor)
        : m_offset(FloatDivisor(divisor).offset())
        , m_reciprocal(hn::Set(Floats(), FloatDivisor(divisor).reciprocal()))
    {
    }

    /** What a sum has to begin with. */
    HWY_INLINE int offset() const { return m_offset; }

    /** A line of the quotients: of the even channels and of the odd ones. */
    HWY_INLINE ByteVector operator()(NumberVector const (&sums)[2][2]) const
    {
        return hn::BitCast(Bytes(), hn::Or(hn::ShiftLeft<8>(words(sums[1])), words(sums[0])));
    }

private:
    HWY_INLINE WordVector words(NumberVector const (&sums)[2]) const
    {
        return hn::BitCast(Words(),
            hn::OrAnd(hn::ShiftLeft<16>(quotients(sums[1])), quotients(sums[0]),
                hn::Set(Numbers(), 0xFFFF)));
    }

    /** In the lower words. */
    HWY_INLINE NumberVector quotients(NumberVector sums) const
    {
        auto const exact = hn::ConvertTo(Floats(), hn::BitCast(SignedNumbers(), sums));
        return hn::BitCast(
            Numbers(), hn::MulAdd(exact, m_reciprocal, hn::Set(Floats(), FloatDivisor::whole)));
    }

    int m_offset;
    FloatVector m_reciprocal;
};

/** The quotients by divisors above 2^15, see Divisor. */
class IntegerDivision
{
public:
    static constexpr int factor = 1;

    HWY_INLINE explicit IntegerDivision(quint32 divisor)
        : m_multiplier(hn::Set(Numbers(), Divisor(divisor).multiplier()))
        , m_shift(Divisor(divisor).shift())
    {
    }

    HWY_INLINE int offset() const { return 0; }

    /** A line of the quotients: of the even channels and of the odd ones. */
    HWY_INLINE ByteVector operator()(NumberVector const (&sums)[2][2]) const
    {
        return hn::BitCast(Bytes(),
            hn::OrAnd(hn::ShiftRight<8>(words(sums[0])), words(sums[1]), hn::Set(Words(), 0xFF00)));
    }

private:
    /** Words whose upper bytes are the quotients. */
    HWY_INLINE WordVector words(NumberVector const (&sums)[2]) const
    {
        // The shift of a divisor above 2^15 is 15 at least, and 22 at most.
        return hn::BitCast(Words(),
            hn::OrAnd(hn::ShiftRightSame(products(sums[0]), m_shift - 8),
                hn::ShiftLeftSame(products(sums[1]), 24 - m_shift),
                hn::Set(Numbers(), 0xFFFF0000)));
    }

    /** The upper halves. */
    HWY_INLINE NumberVector products(NumberVector sums) const
    {
        auto const oddSums =
            hn::BitCast(Numbers(), hn::ShiftRight<32>(hn::BitCast(Products(), sums)));
        auto const even = hn::BitCast(Numbers(), hn::MulEven(sums, m_multiplier));
        auto const odd = hn::BitCast(Numbers(), hn::MulEven(oddSums, m_multiplier));
        return hn::OddEven(odd, hn::DupOdd(even));
    }

    NumberVector m_multiplier;
    int m_shift;
};

/** What the even one of two words that lie side by side is multiplied by, the other by 0. */
HWY_INLINE SignedWordVector evenFactor(int factor)
{
    return hn::BitCast(SignedWords(), hn::Set(Numbers(), quint32(factor)));
}

HWY_INLINE SignedWordVector oddFactor(int factor)
{
    return hn::BitCast(SignedWords(), hn::Set(Numbers(), quint32(factor) << 16));
}

/** Two words that lie side by side, with a sign, each times its factor, added up. */
HWY_INLINE NumberVector pairSums(WordVector pairs, SignedWordVector factors)
{
    auto rest = hn::Zero(SignedNumbers());
    auto const sums = hn::ReorderWidenMulAccumulate(
        SignedNumbers(), hn::BitCast(SignedWords(), pairs), factors, rest, rest);
    return hn::BitCast(Numbers(), hn::RearrangeToOddPlusEven(sums, rest));
}

/** What a word with a sign has room for. */
enum class Fitting {
    Nothing,
    Triangle, ///< what the triangle's sum grows by in a step
    All ///< what the sum of triangle and box does
};

/**
 * Sums of 32 bits.
 *
 * @tparam hasFlatness whether there is a flatness
 * @tparam fitting what may be kept in words
 * @tparam Division how sums are divided
 */
template <bool hasFlatness, Fitting fitting, class Division> class LongSums
{
    static constexpr bool hasShortSteps = fitting != Fitting::Nothing;
    /** Whether the box is added apart. */
    static constexpr bool hasLongBox = hasFlatness && fitting != Fitting::All;

    struct LongStep
    {
        NumberVector numbers[2];
    };
    struct ShortStep
    {
        WordVector words;
    };
    using Step = std::conditional_t<hasShortSteps, ShortStep, LongStep>;

public:
    /** The sums at one line, and what has to be known of the lines before. */
    struct At
    {
        Step step[2]; ///< what the triangle's sum grows by
        NumberVector weighted[2][2];
        WordVector left[2]; ///< the line that left last
    };

    HWY_INLINE explicit LongSums(Kernel const& kernel)
        : m_division(kernel.divisor)
        , m_divisor(hn::Set(Numbers(), kernel.divisor * Division::factor))
        , m_flatnessNumber(kernel.flatness)
        , m_flatness(hn::Set(Words(), quint16(kernel.flatness)))
        , m_unit {evenFactor(Division::factor), oddFactor(Division::factor)}
        , m_box {evenFactor(int(kernel.flatness) * Division::factor),
              oddFactor(int(kernel.flatness) * Division::factor)}
    {
    }

    /** Where all lines are the same. */
    HWY_INLINE At amid(ByteVector line) const
    {
        At sums;
        WideLine const wide(line);
        auto const offset = hn::Set(Numbers(), quint32(m_division.offset()));
        for (int i = 0; i < 2; ++i) {
            auto const both = hn::BitCast(Numbers(), wide.channels[i]);
            NumberVector const channels[2] = {
                hn::And(both, hn::Set(Numbers(), 0xFFFF)), hn::ShiftRight<16>(both)};
            for (int j = 0; j < 2; ++j)
                sums.weighted[i][j] = hn::Add(hn::Mul(channels[j], m_divisor), offset);
            if constexpr (hasShortSteps)
                sums.step[i] = {hn::Zero(Words())};
            else
                sums.step[i] = {{hn::Zero(Numbers()), hn::Zero(Numbers())}};
            sums.left[i] = wide.channels[i];
        }
        return sums;
    }

    HWY_INLINE void arrive(At& sums, Arrivals const& arrivals) const
    {
        auto const flatness = hn::Set(Numbers(), m_flatnessNumber);
        for (int i = 0; i < 2; ++i) {
            for (int j = 0; j < 2; ++j) {
                auto const grown = scaledSums(arrivals.sums[i], arrivals.sumFactor, j);
                auto const total = scaledSums(arrivals.totals[i], arrivals.totalFactor, j);
                auto& weighted = sums.weighted[i][j];
                weighted = hn::Add(weighted, hn::Add(total, hn::Mul(grown, flatness)));
                if constexpr (hasShortSteps) {
                    weighted = hn::Add(weighted, scaledSums(sums.step[i].words, arrivals.count, j));
                } else {
                    auto& step = sums.step[i].numbers[j];
                    auto const count = hn::Set(Numbers(), quint32(arrivals.count));
                    weighted = hn::Add(weighted, hn::Mul(step, count));
                    step = hn::Add(step, grown);
                }
            }
            if constexpr (hasShortSteps)
                sums.step[i].words = hn::Add(sums.step[i].words,
                    hn::Mul(arrivals.sums[i], hn::Set(Words(), quint16(arrivals.sumFactor))));
        }
    }

    /** Moves on by one: a line arrives, one was in the middle, and one leaves. */
    HWY_INLINE void advance(
        At& sums, ByteVector arrivingLine, ByteVector middleLine, ByteVector leavingLine) const
    {
        WideLine const arriving(arrivingLine);
        WideLine const middle(middleLine);
        WideLine const leaving(leavingLine);
        advanceHalf(sums, 0, {arriving.channels[0], middle.channels[0], leaving.channels[0]});
        advanceHalf(sums, 1, {arriving.channels[1], middle.channels[1], leaving.channels[1]});
    }

    /** What the line in the middle becomes. */
    HWY_INLINE ByteVector mean(At const& sums) const { return m_division(sums.weighted); }

private:
    /** The words in even places, or in odd ones, times a factor of 15 bits. */
    HWY_INLINE static NumberVector scaledSums(WordVector words, int factor, int place)
    {
        auto const sums = pairSums(words, place == 0 ? evenFactor(factor) : oddFactor(factor));
        return hn::ShiftLeft<Division::factor - 1>(sums);
    }

    HWY_INLINE void advanceHalf(At& sums, int i, Change const& change) const
    {
        auto& weighted = sums.weighted[i];
        auto const growth = change.ofStep(sums.left[i]);
        if constexpr (hasShortSteps) {
            auto& words = sums.step[i].words;
            words = hn::Add(words, growth);
            constexpr bool hasShortBox = hasFlatness && !hasLongBox;
            add(weighted, hasShortBox ? hn::Add(words, hn::Mul(change.ofBox(), m_flatness)) : words,
                m_unit);
        } else {
            auto& numbers = sums.step[i].numbers;
            add(numbers, growth, m_unit);
            weighted[0] = hn::Add(weighted[0], numbers[0]);
            weighted[1] = hn::Add(weighted[1], numbers[1]);
        }
        if constexpr (hasLongBox)
            add(weighted, change.ofBox(), m_box);
        sums.left[i] = change.leaving;
    }

    HWY_INLINE static void add(
        NumberVector (&numbers)[2], WordVector words, SignedWordVector const (&factors)[2])
    {
        numbers[0] = hn::Add(numbers[0], pairSums(words, factors[0]));
        numbers[1] = hn::Add(numbers[1], pairSums(words, factors[1]));
    }

    Division const m_division;
    NumberVector const m_divisor;
    quint32 const m_flatnessNumber;
    WordVector const m_flatness;
    SignedWordVector const m_unit[2];
    SignedWordVector const m_box[2];
};

/** Lets the lines from `begin` to before `end` arrive; beyond `last` that one is repeated. */
template <class Sums, class LineAt>
HWY_INLINE void arriveAll(Sums const& sums, typename Sums::At& at, ByteVector firstLine, int begin,
    int end, int last, LineAt const& lineAt)
{
    WideLine const first(firstLine);
    int i = begin;
    for (int const different = std::min(end, last); i < different;) {
        Arrivals arrivals = Arrivals::none();
        for (int const stop = std::min(i + Arrivals::most, different); i < stop; ++i)
            arrivals.add(WideLine(lineAt(i)), first);
        sums.arrive(at, arrivals);
    }
    if (i < end)
        sums.arrive(at, Arrivals::repeated(WideLine(lineAt(last)), first, end - i));
}

/** Four lines of pixels; transposed, pixel j of line i is pixel i of line j in each block. */
struct Tile
{
    static constexpr int side = 4;
    ByteVector lines[side];

    HWY_INLINE void transpose()
    {
        NumberVector n[side];
        for (int i = 0; i < side; ++i)
            n[i] = hn::BitCast(Numbers(), lines[i]);
        auto const low01 = hn::BitCast(Products(), hn::InterleaveLower(Numbers(), n[0], n[1]));
        auto const low23 = hn::BitCast(Products(), hn::InterleaveLower(Numbers(), n[2], n[3]));
        auto const high01 = hn::BitCast(Products(), hn::InterleaveUpper(Numbers(), n[0], n[1]));
        auto const high23 = hn::BitCast(Products(), hn::InterleaveUpper(Numbers(), n[2], n[3]));
        lines[0] = hn::BitCast(Bytes(), hn::InterleaveLower(Products(), low01, low23));
        lines[1] = hn::BitCast(Bytes(), hn::InterleaveUpper(Products(), low01, low23));
        lines[2] = hn::BitCast(Bytes(), hn::InterleaveLower(Products(), high01, high23));
        lines[3] = hn::BitCast(Bytes(), hn::InterleaveUpper(Products(), high01, high23));
    }
};

/** Blocks of every fourth row: block i of the result is of row 4 * i. */
template <class D>
HWY_INLINE hn::VFromD<D> blocksOfRows(D tag, quint8 const* first, std::ptrdiff_t stride)
{
    if constexpr (hn::MaxLanes(D()) <= blockBytes) {
        return hn::LoadU(tag, first);
    } else {
        hn::Half<D> const half;
        quint8 const* const middle =
            first + std::ptrdiff_t(hn::MaxLanes(half)) / pixelBytes * stride;
        return hn::Combine(
            tag, blocksOfRows(half, middle, stride), blocksOfRows(half, first, stride));
    }
}

template <class D>
HWY_INLINE void setBlocksOfRows(D tag, hn::VFromD<D> blocks, quint8* first, std::ptrdiff_t stride)
{
    if constexpr (hn::MaxLanes(D()) <= blockBytes) {
        hn::StoreU(blocks, tag, first);
    } else {
        hn::Half<D> const half;
        quint8* const middle = first + std::ptrdiff_t(hn::MaxLanes(half)) / pixelBytes * stride;
        setBlocksOfRows(half, hn::LowerHalf(half, blocks), first, stride);
        setBlocksOfRows(half, hn::UpperHalf(half, blocks), middle, stride);
    }
}

/** As many rows as a line has pixels, seen as lines of one pixel of each. */
class RowGroup
{
public:
    HWY_INLINE RowGroup(quint8 const* first, std::ptrdiff_t stride)
        : m_first(first)
        , m_stride(stride)
    {
    }

    /** All of it has to be readable, pixels behind the last one too. */
    HWY_INLINE Tile tile(int x) const
    {
        quint8 const* const first = m_first + std::ptrdiff_t(x) * pixelBytes;
        Tile tile;
        for (int i = 0; i < Tile::side; ++i)
            tile.lines[i] = blocksOfRows(Bytes(), first + i * m_stride, m_stride);
        tile.transpose();
        return tile;
    }

private:
    quint8 const* m_first;
    std::ptrdiff_t m_stride;
};

/** Room for a copy of those rows of an image behind which too little can be read. */
class RowCopy
{
public:
    explicit RowCopy(int width)
        : m_stride(std::ptrdiff_t((width + Tile::side - 1) / Tile::side) * blockBytes)
        , m_bytes(new quint8[std::size_t(m_stride) * linePixels]())
    {
    }

    RowGroup groupOf(Pixels const& pixels, int top) const
    {
        for (int y = top; y < std::min(top + linePixels, pixels.height); ++y)
            std::memcpy(m_bytes.get() + (y - top) * m_stride,
                pixels.source + y * pixels.sourceStride, std::size_t(pixels.width) * pixelBytes);
        return RowGroup(m_bytes.get(), m_stride);
    }

private:
    std::ptrdiff_t m_stride;
    std::unique_ptr<quint8[]> m_bytes;
};

/** The last lines that were read, each in a place of its own as long as a span asks for it. */
class LineRing
{
public:
    /** @param size a power of 2 */
    HWY_INLINE LineRing(LineMemory* lines, int size)
        : m_lines(lines)
        , m_mask(size - 1)
    {
    }

    /** From a line that leaves to those of a tile in which another arrives. */
    static int sizeFor(int radius)
    {
        int size = 1;
        while (size < 2 * (radius + Tile::side))
            size *= 2;
        return size;
    }

    /** Before the first line there are others. */
    HWY_INLINE LineMemory& operator[](int index) const { return m_lines[index & m_mask]; }

private:
    LineMemory* m_lines;
    int m_mask;
};

/** How many rows are blurred before the columns go on: what is kept of these is then in use. */
constexpr int bandRows = 16;

/**
 * The rows that were blurred, as long as a span of a column asks for them: a strip as wide as a
 * line below the other, so that what is read one after the other lies so.
 */
class Window
{
public:
    Window(Pixels const& pixels, int radius)
        : m_rows(std::min(wholeBands(2 * radius + 1 + bandRows), wholeBands(pixels.height)))
        , m_lead(leadOf(pixels))
        , m_strips((m_lead + pixels.width + linePixels - 1) / linePixels)
        , m_lines(new LineMemory[std::size_t(m_rows) * std::size_t(m_strips)])
    {
    }

    int strips() const { return m_strips; }
    /** Pixels before the first in its strip: with them the strips of the result are aligned. */
    int lead() const { return m_lead; }
    /** Where a row is in each strip. */
    int place(int row) const { return row % m_rows; }
    /** The lines of a strip, the one below the other. */
    HWY_INLINE LineMemory* strip(int index) const
    {
        return m_lines.get() + std::ptrdiff_t(index) * m_rows;
    }

    /** Sets pixels of as many rows as a line has pixels. */
    HWY_INLINE void setTile(int x, int place, Tile tile) const
    {
        tile.transpose();
        int const left = m_lead + x;
        quint8* const corner =
            strip(left / linePixels)[place].bytes + std::ptrdiff_t(left % linePixels) * pixelBytes;
        for (int i = 0; i < Tile::side; ++i)
            setBlocksOfRows(
                Bytes(), tile.lines[i], corner + std::ptrdiff_t(i) * lineBytes, lineBytes);
    }

private:
    static int leadOf(Pixels const& pixels)
    {
        int const bytes = int(reinterpret_cast<std::uintptr_t>(pixels.data) % lineBytes);
        return bytes % blockBytes == 0 ? bytes / pixelBytes : 0;
    }

    static int wholeBands(int rows) { return (rows + bandRows - 1) / bandRows * bandRows; }

    int m_rows;
    int m_lead;
    int m_strips;
    std::unique_ptr<LineMemory[]> m_lines;
};

/** Blurs rows into a window. @param place where the first of them is there */
template <class Sums>
HWY_NOINLINE void blurRowGroup(RowGroup const& rows, int width, int radius, Sums sums,
    LineRing ring, Window const& window, int place)
{
    int const last = width - 1;
    int read = 0;
    auto const readUpTo = [&](int end) HWY_ATTR {
        for (; read < std::min(end, width); read += Tile::side) {
            Tile const tile = rows.tile(read);
            for (int i = 0; i < Tile::side; ++i)
                ring[read + i].setLine(tile.lines[i]);
        }
    };
    readUpTo(radius);
    ByteVector const first = ring[0].line();
    auto at = sums.amid(first);
    arriveAll(sums, at, first, 1, radius, last, [&](int x) HWY_ATTR { return ring[x].line(); });
    for (int i = -radius - 1; i < 0; ++i)
        ring[i].setLine(first);
    for (int x = 0; x < width; x += Tile::side) {
        readUpTo(x + radius + Tile::side);
        Tile means;
        for (int i = 0; i < Tile::side; ++i) {
            int const middle = x + i;
            sums.advance(at, ring[std::min(middle + radius, last)].line(), ring[middle - 1].line(),
                ring[middle - radius - 1].line());
            means.lines[i] = sums.mean(at);
        }
        window.setTile(x, place, means);
    }
}

/** Where the lines of a step are in each strip of a window, and which row its result is. */
struct Step
{
    int arriving;
    int middle;
    int leaving;
    int result; ///< negative above the first row
};

/** The pixels of a strip that are in the image. */
struct Part
{
    int begin;
    int end;
};

/** The columns, strip by strip, as far as their rows are in the window. */
template <class Sums> class ColumnBlur
{
public:
    ColumnBlur(Pixels const& pixels, int radius, Sums const& sums, Window const& window)
        : m_pixels(pixels)
        , m_radius(radius)
        , m_sums(sums)
        , m_window(window)
        , m_at(new typename Sums::At[std::size_t(window.strips())])
        , m_steps(new Step[std::size_t(std::max(radius, bandRows))])
    {
    }

    /** When the first row is there. */
    void start()
    {
        for (int i = 0; i < m_window.strips(); ++i)
            m_at[std::size_t(i)] = m_sums.amid(m_window.strip(i)->line());
    }

    /**
     * The steps at which the rows from `begin` to before `end` arrive; beyond the last it does.
     * These are rows of one band, or all beyond the last.
     */
    void advance(int begin, int end)
    {
        int const silent = std::clamp(m_radius, begin, end);
        for (int i = silent; i < end; ++i)
            m_steps[std::size_t(i - silent)] = stepAt(i);
        int const behind = m_window.lead() + m_pixels.width;
        for (int i = 0; i < m_window.strips(); ++i) {
            int const left = i * linePixels;
            Part const part {
                std::max(m_window.lead() - left, 0), std::min(behind - left, linePixels)};
            if (part.end - part.begin == linePixels)
                advanceStrip<true>(i, part, begin, silent, end);
            else
                advanceStrip<false>(i, part, begin, silent, end);
        }
    }

private:
    Step stepAt(int row) const
    {
        int const middle = row - m_radius - 1;
        return {m_window.place(std::min(row, m_pixels.height - 1)),
            m_window.place(std::max(middle, 0)), m_window.place(std::max(middle - m_radius, 0)),
            middle + 1};
    }

    /** @tparam isWhole whether all of the strip is in the image */
    template <bool isWhole>
    HWY_INLINE void advanceStrip(int strip, Part part, int begin, int silent, int end)
    {
        // Copies, for the bytes that are written might be those of the members.
        Sums const sums = m_sums;
        std::ptrdiff_t const stride = m_pixels.stride;
        LineMemory const* const lines = m_window.strip(strip);
        quint8* const data =
            m_pixels.data + (std::ptrdiff_t(strip) * linePixels - m_window.lead()) * pixelBytes;
        auto at = m_at[std::size_t(strip)];
        // As long as nothing leaves, all rows are in the window, and the first at its beginning.
        arriveAll(sums, at, lines->line(), begin, silent, m_pixels.height - 1,
            [&](int y) HWY_ATTR { return lines[y].line(); });
        Step const* const steps = m_steps.get();
        for (int i = 0; i < end - silent; ++i) {
            Step const& step = steps[i];
            sums.advance(at, lines[step.arriving].line(), lines[step.middle].line(),
                lines[step.leaving].line());
            setLine<isWhole>(data + step.result * stride, part, sums.mean(at));
        }
        m_at[std::size_t(strip)] = at;
    }

    template <bool isWhole>
    HWY_INLINE static void setLine(quint8* place, Part part, ByteVector mean)
    {
        if constexpr (isWhole) {
            hn::StoreU(mean, Bytes(), place);
        } else {
            LineMemory line;
            line.setLine(mean);
            int const begin = part.begin * pixelBytes;
            std::memcpy(
                place + begin, line.bytes + begin, std::size_t(part.end * pixelBytes - begin));
        }
    }

    Pixels const m_pixels;
    int const m_radius;
    Sums const m_sums;
    Window const& m_window;
    std::unique_ptr<typename Sums::At[]> m_at;
    std::unique_ptr<Step[]> m_steps;
};

/** Rows and columns by turns, so that a row is still in the cache when its columns are blurred. */
template <class Sums> void blurWith(Pixels const& pixels, Kernel const& kernel)
{
    int const radius = kernel.radius;
    int const ringSize = LineRing::sizeFor(radius);
    std::unique_ptr<LineMemory[]> const ringLines(new LineMemory[std::size_t(ringSize)]);
    LineRing const ring(ringLines.get(), ringSize);
    Window const window(pixels, radius);
    RowCopy const copy(pixels.width);
    Sums const sums(kernel);
    ColumnBlur<Sums> columns(pixels, radius, sums, window);
    for (int top = 0; top < pixels.height; top += bandRows) {
        int const bottom = std::min(top + bandRows, pixels.height);
        for (int y = top; y < bottom; y += linePixels) {
            // Behind a row there has to be room for a tile: the next row, unless that is short.
            bool const isReadable = pixels.width >= Tile::side && y + linePixels < pixels.height;
            RowGroup const rows = isReadable
                ? RowGroup(pixels.source + y * pixels.sourceStride, pixels.sourceStride)
                : copy.groupOf(pixels, y);
            blurRowGroup(rows, pixels.width, radius, sums, ring, window, window.place(y));
        }
        if (top == 0)
            columns.start();
        columns.advance(std::max(top, 1), bottom);
    }
    columns.advance(pixels.height, pixels.height + radius);
}

template <bool hasFlatness, class Division>
void blurWithLongSums(Pixels const& pixels, Kernel const& kernel)
{
    quint32 const triangle = 255 * (quint32(kernel.radius) + 1);
    if (triangle > greatestWord)
        blurWith<LongSums<hasFlatness, Fitting::Nothing, Division>>(pixels, kernel);
    else if (triangle + 255 * kernel.flatness > greatestWord)
        blurWith<LongSums<hasFlatness, Fitting::Triangle, Division>>(pixels, kernel);
    else
        blurWith<LongSums<hasFlatness, Fitting::All, Division>>(pixels, kernel);
}

template <bool hasFlatness> void blurWith(Pixels const& pixels, Kernel const& kernel)
{
    bool const isFloat = kernel.divisor <= FloatDivision::greatest
        && kernel.flatness <= greatestWord / FloatDivision::factor;
    if (kernel.divisor <= ShortDivisor::greatest)
        blurWith<ShortSums<hasFlatness>>(pixels, kernel);
    else if (isFloat)
        blurWithLongSums<hasFlatness, FloatDivision>(pixels, kernel);
    else
        blurWithLongSums<hasFlatness, IntegerDivision>(pixels, kernel);
}

void blur(Pixels const& pixels, Kernel const& kernel)
{
    if (kernel.flatness == 0)
        blurWith<false>(pixels, kernel);
    else
        blurWith<true>(pixels, kernel);
}

#endif // HWY_TARGET == HWY_SCALAR

#if HWY_TARGET == HWY_STATIC_TARGET
// What the compiler takes for granted anyway.
constexpr char const* features = "";
#else
constexpr char const* features = HWY_TARGET_STR;
#endif

// A constant and no function: that would itself be made of these instructions.
constexpr WideBlur wideBlur {&HWY_STR(HWY_NAMESPACE)[2], features, blur};

} // namespace HWY_NAMESPACE
} // namespace StackBlur

HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace {

constexpr StackBlur::WideBlur all[] = {
#if HWY_TARGETS & HWY_AVX3 & ~HWY_STATIC_TARGET
    StackBlur::N_AVX3::wideBlur,
#endif
#if HWY_TARGETS & HWY_AVX2 & ~HWY_STATIC_TARGET
    StackBlur::N_AVX2::wideBlur,
#endif
#if HWY_TARGETS & HWY_SSE4 & ~HWY_STATIC_TARGET
    StackBlur::N_SSE4::wideBlur,
#endif
#if HWY_TARGETS & HWY_SSSE3 & ~HWY_STATIC_TARGET
    StackBlur::N_SSSE3::wideBlur,
#endif
    StackBlur::HWY_STATIC_DISPATCH(wideBlur),
};

} // namespace

std::vector<StackBlur::WideBlur> StackBlur::wideBlurs(ProcessorFeatures::Test test)
{
    std::vector<WideBlur> result;
    std::copy_if(
        std::begin(all), std::end(all), std::back_inserter(result), [test](WideBlur const& blur) {
            return ProcessorFeatures::areAllPresent(blur.features, test);
        });
    return result;
}

void StackBlur::blurWide(Pixels const& pixels, Kernel const& kernel)
{
    static WideBlur const fastest = wideBlurs(ProcessorFeatures::isPresent).front();
    fastest.blur(pixels, kernel);
}

#endif // HWY_ONCE
