// SPDX-License-Identifier: MIT
#include "stackblur_p.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

constexpr std::ptrdiff_t channels = 4;

/** The pixels of a row or a column, from the first and with a step in bytes. */
struct Line
{
    quint8 const* source;
    std::ptrdiff_t sourceStep;
    quint8* data;
    std::ptrdiff_t step;
    int count;

    /** Beyond the end it is the last pixel. */
    quint8 const* pixel(int index) const
    {
        return source + std::min(index, count - 1) * sourceStep;
    }
};

/** The pixels of the span as they were, for those before the middle are written over. */
class Ring
{
public:
    explicit Ring(int radius)
        : m_size(2 * radius + 1)
        , m_bytes(new quint8[static_cast<std::size_t>(m_size * channels)])
    {
    }

    quint8* at(int index) { return m_bytes.get() + index * channels; }
    void put(int index, quint8 const* pixel) { std::copy_n(pixel, channels, at(index)); }
    int next(int index) const { return index + 1 < m_size ? index + 1 : 0; }

private:
    int m_size;
    std::unique_ptr<quint8[]> m_bytes;
};

void blurLine(Line const& line, StackBlur::Kernel const& kernel, Ring& ring)
{
    int const radius = kernel.radius;
    quint32 outgoing[channels] = {};
    quint32 incoming[channels] = {};
    quint32 weighted[channels] = {};
    for (int i = -radius; i <= radius; ++i) {
        quint8 const* const pixel = line.pixel(std::max(i, 0));
        quint32 const weight = static_cast<quint32>(radius + 1 - std::abs(i)) + kernel.flatness;
        ring.put(radius + i, pixel);
        for (int c = 0; c < channels; ++c) {
            (i > 0 ? incoming : outgoing)[c] += pixel[c];
            weighted[c] += weight * pixel[c];
        }
    }
    int leaving = 0;
    int middle = radius;
    for (int i = 0; i < line.count; ++i) {
        quint8* const result = line.data + i * line.step;
        quint8 const* const arriving = line.pixel(i + radius + 1);
        quint8 const* const left = ring.at(leaving);
        middle = ring.next(middle);
        quint8 const* const passing = ring.at(middle);
        for (int c = 0; c < channels; ++c) {
            result[c] = static_cast<quint8>(weighted[c] / kernel.divisor);
            incoming[c] += arriving[c];
            weighted[c] += incoming[c] - outgoing[c]
                + kernel.flatness * (static_cast<quint32>(arriving[c]) - left[c]);
            outgoing[c] += static_cast<quint32>(passing[c]) - left[c];
            incoming[c] -= passing[c];
        }
        ring.put(leaving, arriving);
        leaving = ring.next(leaving);
    }
}

} // namespace

bool StackBlur::isWideKernel(Kernel const& kernel) noexcept
{
    // The greatest number of 16 bits with a sign, which the flatness is multiplied as.
    constexpr quint32 greatestFlatness = 32767;
    quint32 const side = static_cast<quint32>(kernel.radius) + 1;
    return kernel.flatness <= greatestFlatness && kernel.divisor <= Divisor::greatest
        && kernel.divisor == kernel.flatness * (2 * side - 1) + side * side;
}

void StackBlur::blurPlain(Pixels const& pixels, Kernel const& kernel)
{
    Ring ring(kernel.radius);
    for (int y = 0; y < pixels.height; ++y)
        blurLine({pixels.source + y * pixels.sourceStride, channels,
                     pixels.data + y * pixels.stride, channels, pixels.width},
            kernel, ring);
    for (int x = 0; x < pixels.width; ++x) {
        quint8* const top = pixels.data + x * channels;
        blurLine({top, pixels.stride, top, pixels.stride, pixels.height}, kernel, ring);
    }
}
