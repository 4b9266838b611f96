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

using ByteVector = hn::VFromD<Bytes>;
using WordVector = hn::VFromD<Words>;
using NumberVector = hn::VFromD<Numbers>;

constexpr int lineBytes = int(hn::MaxLanes(Bytes()));
constexpr int pixelBytes = 4;
constexpr int linePixels = lineBytes / pixelBytes;
constexpr int blockBytes = 16; ///< within which Highway interleaves

/** Memory for the bytes of a line. */
struct alignas(lineBytes) LineMemory
{
    quint8 bytes[lineBytes];
};

/** The channels of a line as words: those in even places, and those in odd ones. */
struct WideLine
{
    WordVector even;
    WordVector odd;

    HWY_INLINE explicit WideLine(ByteVector line)
        : even(hn::And(hn::BitCast(Words(), line), hn::Set(Words(), 0x00FF)))
        , odd(hn::ShiftRight<8>(hn::BitCast(Words(), line)))
    {
    }
};

/** Two words that lie side by side, each times one of two factors, added up. */
class PairSum
{
public:
    HWY_INLINE PairSum(int first, int second)
        : m_factors(hn::BitCast(SignedWords(),
            hn::Set(Numbers(), (quint32(first) & 0xFFFFU) | (quint32(second) << 16))))
    {
    }

    HWY_INLINE NumberVector operator()(WordVector pairs) const
    {
        auto rest = hn::Zero(SignedNumbers());
        auto const sums = hn::ReorderWidenMulAccumulate(
            SignedNumbers(), hn::BitCast(SignedWords(), pairs), m_factors, rest, rest);
        return hn::BitCast(Numbers(), hn::RearrangeToOddPlusEven(sums, rest));
    }

private:
    hn::VFromD<SignedWords> m_factors;
};

/**
 * The sums of a whole line of channels; a line goes through each step at once.
 *
 * @tparam hasFlatness whether there is a flatness
 * @tparam isShort whether quotients are the upper bytes of 16 bits, see Divisor
 */
template <bool hasFlatness, bool isShort> class Sums
{
public:
    HWY_INLINE explicit Sums(Kernel const& kernel)
        : Sums(int(kernel.flatness), Divisor(kernel.divisor))
    {
    }

    /** Puts `count` lines up to the middle, of this weight in all. */
    HWY_INLINE void addOutgoing(ByteVector line, int count, quint32 weight)
    {
        addTo(m_outgoing, WideLine(line), count);
        addWeighted(WideLine(line), weight);
    }

    /** Puts `count` lines behind the middle, of this weight in all. */
    HWY_INLINE void addIncoming(ByteVector line, int count, quint32 weight)
    {
        addTo(m_incoming, WideLine(line), count);
        addWeighted(WideLine(line), weight);
    }

    /** What the middle becomes. */
    HWY_INLINE ByteVector mean() const
    {
        auto const even = pairOf(quotients(m_weighted[0][0]), quotients(m_weighted[0][1]));
        auto const odd = pairOf(quotients(m_weighted[1][0]), quotients(m_weighted[1][1]));
        auto const evenBytes = hn::BitCast(Bytes(), isShort ? hn::ShiftRight<8>(even) : even);
        auto const oddBytes = hn::BitCast(Bytes(), isShort ? odd : hn::ShiftLeft<8>(odd));
        return inOrder(hn::OddEven(oddBytes, evenBytes));
    }

    /** Moves on by one: a line arrives, one becomes the middle, and one leaves. */
    HWY_INLINE void advance(ByteVector arrivingLine, ByteVector passingLine, ByteVector leavingLine)
    {
        WideLine const arriving(arrivingLine);
        WideLine const passing(passingLine);
        WideLine const leaving(leavingLine);
        advanceHalf(0, arriving.even, passing.even, leaving.even);
        advanceHalf(1, arriving.odd, passing.odd, leaving.odd);
    }

private:
    HWY_INLINE Sums(int flatness, Divisor const& divisor)
        : m_triangle(divisor.scale(), -divisor.scale())
        , m_box(flatness * divisor.scale(), -flatness * divisor.scale())
        , m_scale(quint32(divisor.scale()))
        , m_multiplier(hn::Set(Numbers(), divisor.multiplier()))
        , m_shift(divisor.shift())
    {
    }

    HWY_INLINE void addTo(WordVector (&sums)[2], WideLine const& line, int count)
    {
        auto const factor = hn::Set(Words(), quint16(count));
        sums[0] = hn::Add(sums[0], hn::Mul(line.even, factor));
        sums[1] = hn::Add(sums[1], hn::Mul(line.odd, factor));
    }

    HWY_INLINE void addWeighted(WideLine const& line, quint32 weight)
    {
        addWeightedHalf(0, line.even, weight);
        addWeightedHalf(1, line.odd, weight);
    }

    HWY_INLINE void addWeightedHalf(int half, WordVector line, quint32 weight)
    {
        auto const factor = hn::Set(Numbers(), weight * m_scale);
        auto const zero = hn::Zero(Words());
        NumberVector* const weighted = m_weighted[half];
        auto const lower = hn::BitCast(Numbers(), hn::InterleaveLower(Words(), line, zero));
        auto const upper = hn::BitCast(Numbers(), hn::InterleaveUpper(Words(), line, zero));
        weighted[0] = hn::Add(weighted[0], hn::Mul(lower, factor));
        weighted[1] = hn::Add(weighted[1], hn::Mul(upper, factor));
    }

    HWY_INLINE void advanceHalf(
        int half, WordVector arriving, WordVector passing, WordVector leaving)
    {
        auto const incoming = hn::Add(m_incoming[half], arriving);
        addPairs(half, m_triangle, incoming, m_outgoing[half]);
        if (hasFlatness)
            addPairs(half, m_box, arriving, leaving);
        m_incoming[half] = hn::Sub(incoming, passing);
        m_outgoing[half] = hn::Add(m_outgoing[half], hn::Sub(passing, leaving));
    }

    HWY_INLINE void addPairs(int half, PairSum const& sum, WordVector first, WordVector second)
    {
        NumberVector* const weighted = m_weighted[half];
        weighted[0] = hn::Add(weighted[0], sum(hn::InterleaveLower(Words(), first, second)));
        weighted[1] = hn::Add(weighted[1], sum(hn::InterleaveUpper(Words(), first, second)));
    }

    /** The quotients, or what they are the upper bytes of. */
    HWY_INLINE NumberVector quotients(NumberVector sums) const
    {
        auto const oddSums =
            hn::BitCast(Numbers(), hn::ShiftRight<32>(hn::BitCast(Products(), sums)));
        auto const even = hn::MulEven(sums, m_multiplier);
        auto const odd = hn::MulEven(oddSums, m_multiplier);
        auto const upper = hn::OddEven(
            hn::BitCast(Numbers(), odd), hn::BitCast(Numbers(), hn::ShiftRight<32>(even)));
        return isShort ? upper : hn::ShiftRightSame(upper, m_shift);
    }

    /** Two numbers of 16 bits in the place of one of 32. */
    HWY_INLINE static WordVector pairOf(NumberVector first, NumberVector second)
    {
        return hn::BitCast(Words(), hn::Or(first, hn::ShiftLeft<16>(second)));
    }

    /** Undoes the interleaving: a block of 16 bytes came apart into four numbers of each sum. */
    HWY_INLINE static ByteVector inOrder(ByteVector line)
    {
        HWY_ALIGN static constexpr quint8 places[16] = {
            0, 1, 4, 5, 8, 9, 12, 13, 2, 3, 6, 7, 10, 11, 14, 15};
        return hn::TableLookupBytes(line, hn::LoadDup128(Bytes(), places));
    }

    // The difference of two sums of 16 bits has 17. Both start at half of their range below 0, so
    // that as words with a sign they can be multiplied and added up.
    WordVector m_incoming[2] = {hn::Set(Words(), 0x8000), hn::Set(Words(), 0x8000)};
    WordVector m_outgoing[2] = {hn::Set(Words(), 0x8000), hn::Set(Words(), 0x8000)};
    /** Of the even channels and of the odd ones, the lower and the upper half of each block. */
    NumberVector m_weighted[2][2] = {
        {hn::Zero(Numbers()), hn::Zero(Numbers())}, {hn::Zero(Numbers()), hn::Zero(Numbers())}};
    PairSum const m_triangle;
    PairSum const m_box;
    quint32 const m_scale;
    NumberVector const m_multiplier;
    int const m_shift;
};

/** The sums around the first of `count` lines. @param lineAt gives the line of an index */
template <class LineSums, class LineAt>
HWY_INLINE LineSums sumsAroundFirst(Kernel const& kernel, int count, LineAt const& lineAt)
{
    quint32 const radius = quint32(kernel.radius);
    auto const weightOfAll = [&](quint32 distances, quint32 shortest) {
        // The mean weight of so many distances in a row is that in their middle.
        quint32 const twice = 2 * (radius + 1 + kernel.flatness - shortest) - (distances - 1);
        return distances * twice / 2;
    };
    LineSums sums(kernel);
    sums.addOutgoing(lineAt(0), kernel.radius + 1, weightOfAll(radius + 1, 0));
    int const last = std::min(kernel.radius, count - 1);
    for (int i = 1; i < last; ++i)
        sums.addIncoming(lineAt(i), 1, weightOfAll(1, quint32(i)));
    // From the last line on it is repeated.
    int const nearest = std::max(last, 1);
    int const repeated = kernel.radius - nearest + 1;
    sums.addIncoming(lineAt(last), repeated, weightOfAll(quint32(repeated), quint32(nearest)));
    return sums;
}

/**
 * A column of lines that lie below each other in the image.
 *
 * @tparam isWhole whether the image is wide enough for a whole line
 */
template <bool isWhole> class Strip
{
public:
    HWY_INLINE Strip(Pixels const& pixels, int left, int width)
        : m_first(pixels.data + std::ptrdiff_t(left) * pixelBytes)
        , m_stride(pixels.stride)
        , m_last(pixels.height - 1)
        , m_bytes(width * pixelBytes)
    {
    }

    HWY_INLINE int height() const { return m_last + 1; }

    /** Beyond the end it is the last one. */
    HWY_INLINE ByteVector line(int y) const
    {
        quint8 const* const place = m_first + std::min(y, m_last) * m_stride;
        if (isWhole)
            return hn::LoadU(Bytes(), place);
        HWY_ALIGN quint8 padded[lineBytes] = {};
        std::memcpy(padded, place, std::size_t(m_bytes));
        return hn::Load(Bytes(), padded);
    }

    HWY_INLINE void setLine(int y, ByteVector line) const
    {
        quint8* const place = m_first + y * m_stride;
        if (isWhole) {
            hn::StoreU(line, Bytes(), place);
            return;
        }
        HWY_ALIGN quint8 padded[lineBytes];
        hn::Store(line, Bytes(), padded);
        std::memcpy(place, padded, std::size_t(m_bytes));
    }

private:
    quint8* m_first;
    std::ptrdiff_t m_stride;
    int m_last;
    int m_bytes;
};

/** A strip with the sums at one of its lines. */
template <class LineSums, bool isWhole> class StripBlur
{
public:
    /** @param ring for radius + 1 lines: those that leave have been written over in the image */
    HWY_INLINE StripBlur(Strip<isWhole> const& strip, Kernel const& kernel, quint8* ring)
        : m_strip(strip)
        , m_radius(kernel.radius)
        , m_sums(sumsAroundFirst<LineSums>(
              kernel, strip.height(), [&strip](int y) HWY_ATTR { return strip.line(y); }))
        , m_ring(ring)
    {
        for (int i = 0; i <= kernel.radius; ++i)
            hn::Store(strip.line(0), Bytes(), ring + std::ptrdiff_t(i) * lineBytes);
    }

    /** @param offset of the line in the ring that leaves */
    HWY_INLINE void blurLine(int y, int offset)
    {
        auto const leaving = hn::Load(Bytes(), m_ring + offset);
        auto const passing = m_strip.line(y + 1);
        auto const arriving = m_strip.line(y + m_radius + 1);
        m_strip.setLine(y, m_sums.mean());
        m_sums.advance(arriving, passing, leaving);
        hn::Store(passing, Bytes(), m_ring + offset);
    }

private:
    Strip<isWhole> const m_strip;
    int const m_radius;
    LineSums m_sums;
    quint8* const m_ring;
};

/** Strips side by side, a line of each in turn: that keeps more of the processor busy. */
template <class... StripBlurs>
HWY_NOINLINE void blurTogether(int height, int radius, StripBlurs... strips)
{
    int const end = (radius + 1) * lineBytes;
    int offset = 0;
    for (int y = 0; y < height; ++y) {
        (strips.blurLine(y, offset), ...);
        offset += lineBytes;
        if (offset == end)
            offset = 0;
    }
}

template <class LineSums> void blurColumns(Pixels const& pixels, Kernel const& kernel)
{
    int const ringLines = kernel.radius + 1;
    std::unique_ptr<LineMemory[]> const memory(new LineMemory[std::size_t(2 * ringLines)]);
    quint8* const firstRing = memory[0].bytes;
    quint8* const secondRing = memory[std::size_t(ringLines)].bytes;
    auto const wholeStrip = [&](int left, quint8* ring) HWY_ATTR {
        return StripBlur<LineSums, true>(Strip<true>(pixels, left, linePixels), kernel, ring);
    };
    // Two have room in the registers where these are wide, for there are more of them.
    constexpr int together = lineBytes >= 64 ? 2 * linePixels : linePixels;
    int left = 0;
    for (; together > linePixels && left + together <= pixels.width; left += together) {
        blurTogether(pixels.height, kernel.radius, wholeStrip(left, firstRing),
            wholeStrip(left + linePixels, secondRing));
    }
    for (; left + linePixels <= pixels.width; left += linePixels)
        blurTogether(pixels.height, kernel.radius, wholeStrip(left, firstRing));
    if (left < pixels.width) {
        Strip<false> const rest(pixels, left, pixels.width - left);
        blurTogether(
            pixels.height, kernel.radius, StripBlur<LineSums, false>(rest, kernel, firstRing));
    }
}

/** 16 bytes of every fourth row, from the offset on: block i of the result is of row 4 * i. */
template <class D>
HWY_INLINE hn::VFromD<D> blocksOfRows(D tag, quint8 const* const* rows, std::ptrdiff_t offset)
{
    if constexpr (hn::MaxLanes(D()) <= blockBytes) {
        return hn::LoadU(tag, *rows + offset);
    } else {
        hn::Half<D> const half;
        quint8 const* const* const middle = rows + hn::MaxLanes(half) / pixelBytes;
        return hn::Combine(
            tag, blocksOfRows(half, middle, offset), blocksOfRows(half, rows, offset));
    }
}

template <class D>
HWY_INLINE void setBlocksOfRows(
    D tag, hn::VFromD<D> blocks, quint8* const* rows, std::ptrdiff_t offset)
{
    if constexpr (hn::MaxLanes(D()) <= blockBytes) {
        hn::StoreU(blocks, tag, *rows + offset);
    } else {
        hn::Half<D> const half;
        quint8* const* const middle = rows + hn::MaxLanes(half) / pixelBytes;
        setBlocksOfRows(half, hn::LowerHalf(half, blocks), rows, offset);
        setBlocksOfRows(half, hn::UpperHalf(half, blocks), middle, offset);
    }
}

/** Four lines of pixels; transposed, pixel j of line i is pixel i of line j in each block. */
struct Tile
{
    static constexpr int side = 4;
    ByteVector lines[side];

    HWY_INLINE explicit Tile(ByteVector const (&given)[side])
        : lines {given[0], given[1], given[2], given[3]}
    {
    }

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

/**
 * As many rows as a line has pixels, seen as lines of one pixel of each. Where the image has fewer
 * rows left the last one is there several times: all copies come to the same result.
 */
class RowGroup
{
public:
    HWY_INLINE RowGroup(Pixels const& pixels, int top)
        : m_width(pixels.width)
    {
        for (int i = 0; i < linePixels; ++i) {
            int const y = std::min(top + i, pixels.height - 1);
            m_sources[i] = pixels.source + y * pixels.sourceStride;
            m_rows[i] = pixels.data + y * pixels.stride;
        }
    }

    HWY_INLINE int width() const { return m_width; }

    HWY_INLINE Tile tile(int x) const
    {
        return x + Tile::side <= m_width ? tileOf(m_sources, offsetOf(x)) : lastTile(x);
    }

    HWY_INLINE void setTile(int x, Tile tile) const
    {
        tile.transpose();
        if (x + Tile::side <= m_width)
            setTileOf(m_rows, offsetOf(x), tile);
        else
            setLastTile(x, tile);
    }

private:
    using Rows = quint8* [linePixels];
    using Sources = quint8 const* [linePixels];

    /** Copies of the last pixels, with room for a whole tile. */
    struct Margin
    {
        HWY_ALIGN quint8 bytes[linePixels][blockBytes] = {};
        Rows rows;
        Sources sources;

        Margin()
        {
            for (int i = 0; i < linePixels; ++i)
                sources[i] = rows[i] = bytes[i];
        }
    };

    HWY_INLINE static std::ptrdiff_t offsetOf(int x) { return std::ptrdiff_t(x) * pixelBytes; }

    HWY_INLINE static Tile tileOf(Sources const& rows, std::ptrdiff_t offset)
    {
        ByteVector blocks[Tile::side];
        for (int i = 0; i < Tile::side; ++i)
            blocks[i] = blocksOfRows(Bytes(), rows + i, offset);
        Tile tile(blocks);
        tile.transpose();
        return tile;
    }

    HWY_INLINE static void setTileOf(Rows const& rows, std::ptrdiff_t offset, Tile const& tile)
    {
        for (int i = 0; i < Tile::side; ++i)
            setBlocksOfRows(Bytes(), tile.lines[i], rows + i, offset);
    }

    HWY_NOINLINE Tile lastTile(int x) const
    {
        Margin margin;
        for (int i = 0; i < linePixels; ++i)
            std::memcpy(
                margin.rows[i], m_sources[i] + offsetOf(x), std::size_t(offsetOf(m_width - x)));
        return tileOf(margin.sources, 0);
    }

    HWY_NOINLINE void setLastTile(int x, Tile const& tile) const
    {
        Margin margin;
        setTileOf(margin.rows, 0, tile);
        for (int i = 0; i < linePixels; ++i)
            std::memcpy(
                m_rows[i] + offsetOf(x), margin.rows[i], std::size_t(offsetOf(m_width - x)));
    }

    Sources m_sources;
    Rows m_rows;
    int m_width;
};

/** The last lines that were read from a group of rows, just as many as a step can ask for. */
class LineRing
{
public:
    explicit LineRing(int radius)
        // From the one that leaves to a tile beyond the one that arrives.
        : m_size(2 * radius + 2 + 2 * Tile::side)
        , m_lines(new LineMemory[std::size_t(m_size)]())
    {
    }

    /** Goes round the ring line by line. */
    class Cursor
    {
    public:
        HWY_INLINE Cursor(LineRing const& ring, int line)
            : m_begin(ring.m_lines.get())
            , m_end(m_begin + ring.m_size)
            , m_place(m_begin + line)
        {
        }

        HWY_INLINE ByteVector line() const { return hn::Load(Bytes(), m_place->bytes); }
        HWY_INLINE void setLine(ByteVector line) { hn::Store(line, Bytes(), m_place->bytes); }
        HWY_INLINE void advance()
        {
            ++m_place;
            if (m_place == m_end)
                m_place = m_begin;
        }

    private:
        LineMemory* m_begin;
        LineMemory* m_end;
        LineMemory* m_place;
    };

private:
    int m_size;
    std::unique_ptr<LineMemory[]> m_lines;
};

template <class LineSums>
HWY_NOINLINE void blurRowGroup(RowGroup const& rows, Kernel const& kernel, LineRing const& ring)
{
    int const radius = kernel.radius;
    int const last = rows.width() - 1;
    // The ring begins with copies of the first line, for those before the edge.
    LineRing::Cursor reading(ring, radius);
    int read = 0;
    auto const readUpTo = [&](int x) HWY_ATTR {
        for (; read <= std::min(x, last); read += Tile::side) {
            Tile const tile = rows.tile(read);
            for (ByteVector const& line : tile.lines) {
                reading.setLine(line);
                reading.advance();
            }
        }
    };
    readUpTo(radius);
    auto sums = sumsAroundFirst<LineSums>(kernel, rows.width(),
        [&](int x) HWY_ATTR { return LineRing::Cursor(ring, radius + x).line(); });
    LineRing::Cursor leaving(ring, 0);
    LineRing::Cursor passing(ring, radius + 1);
    LineRing::Cursor arriving(ring, radius + std::min(radius + 1, last));
    ByteVector const first = LineRing::Cursor(ring, radius).line();
    for (int i = 0; i < radius; ++i)
        LineRing::Cursor(ring, i).setLine(first);
    for (int x = 0; x <= last; x += Tile::side) {
        readUpTo(x + Tile::side + radius);
        ByteVector means[Tile::side];
        for (int i = 0; i < Tile::side; ++i) {
            means[i] = sums.mean();
            sums.advance(arriving.line(), passing.line(), leaving.line());
            leaving.advance();
            passing.advance();
            if (x + i + radius + 1 < last)
                arriving.advance();
        }
        rows.setTile(x, Tile(means));
    }
}

template <class LineSums> void blurRows(Pixels const& pixels, Kernel const& kernel)
{
    LineRing ring(kernel.radius);
    for (int top = 0; top < pixels.height; top += linePixels)
        blurRowGroup<LineSums>(RowGroup(pixels, top), kernel, ring);
}

template <class LineSums> void blurWith(Pixels const& pixels, Kernel const& kernel)
{
    blurRows<LineSums>(pixels, kernel);
    blurColumns<LineSums>(pixels, kernel);
}

void blur(Pixels const& pixels, Kernel const& kernel)
{
    // Without flatness the divisor is small enough for short quotients.
    if (kernel.flatness == 0)
        blurWith<Sums<false, true>>(pixels, kernel);
    else if (Divisor(kernel.divisor).isShort())
        blurWith<Sums<true, true>>(pixels, kernel);
    else
        blurWith<Sums<true, false>>(pixels, kernel);
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
