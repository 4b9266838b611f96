// SPDX-License-Identifier: MIT
// The blur by every set of vector instructions that this machine has, against the plain loop, and
// that against the weighted mean as it is defined; also with gaps between rows, which stay as they
// were, and from one place to another.

#include "fuzzing.h"
#include "stackblur_p.h"

#include <algorithm>
#include <vector>

using Fuzzing::require;
using StackBlur::Kernel;
using StackBlur::Pixels;

namespace {

/** Rows of pixels with a gap behind each. */
struct Picture
{
    int width;
    int height;
    int gap;
    std::vector<quint8> bytes;

    std::ptrdiff_t stride() const { return 4 * width + gap; }
    quint8 at(int x, int y, int channel) const
    {
        return bytes[std::size_t(y * stride() + 4 * x + channel)];
    }
};

Picture picture(FuzzedDataProvider& input)
{
    Picture result {};
    int const greatest = input.ConsumeIntegralInRange(0, 7) == 0 ? 70 : 20;
    result.width = input.ConsumeIntegralInRange(1, greatest);
    result.height = input.ConsumeIntegralInRange(1, greatest);
    result.gap = input.ConsumeIntegralInRange(0, 9);
    // Few bytes make a picture, by a pattern that goes on: plain, of steps, or of noise.
    auto const pattern = input.ConsumeIntegralInRange(0, 3);
    auto const seed = input.ConsumeIntegral<std::uint32_t>();
    auto const own = input.ConsumeBytes<std::uint8_t>(64);
    result.bytes.resize(std::size_t(result.stride() * result.height));
    std::uint32_t noise = seed | 1U;
    for (std::size_t i = 0; i < result.bytes.size(); ++i) {
        noise = noise * 1664525U + 1013904223U;
        switch (pattern) {
        case 0:
            result.bytes[i] = std::uint8_t(noise >> 24);
            break;
        case 1:
            result.bytes[i] = 255;
            break;
        case 2:
            result.bytes[i] = (i / 4 + seed) % 7 < 3 ? 255 : 0;
            break;
        default:
            result.bytes[i] = own.empty() ? 0 : own[i % own.size()];
        }
    }
    return result;
}

Kernel kernel(FuzzedDataProvider& input)
{
    int const radius = input.ConsumeBool() ? input.ConsumeIntegralInRange(1, 12)
                                           : input.ConsumeIntegralInRange(1, 254);
    quint32 flatness = 0;
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        break;
    case 1:
        flatness = input.ConsumeIntegralInRange(0U, 40U);
        break;
    case 2:
        flatness = input.ConsumeIntegralInRange(0U, 33000U);
        break;
    default:
        flatness = input.ConsumeIntegral<quint32>();
    }
    auto const side = quint32(radius + 1);
    quint32 divisor = flatness * (2 * side - 1) + side * side;
    if (divisor == 0 || input.ConsumeIntegralInRange(0, 7) == 0)
        divisor = input.ConsumeIntegralInRange(1U, 0xFFFFFFFFU);
    return {radius, flatness, divisor};
}

/** One channel of a line by the definition: the weights of all in reach, modulo 2^32. */
std::vector<quint8> blurredLine(std::vector<quint8> const& line, Kernel const& kernel)
{
    std::vector<quint8> result;
    int const count = int(line.size());
    for (int i = 0; i < count; ++i) {
        quint32 sum = 0;
        for (int d = -kernel.radius; d <= kernel.radius; ++d) {
            quint32 const weight = quint32(kernel.radius + 1 - std::abs(d)) + kernel.flatness;
            sum += weight * line[std::size_t(std::clamp(i + d, 0, count - 1))];
        }
        result.push_back(static_cast<quint8>(sum / kernel.divisor));
    }
    return result;
}

void checkDefinition(Picture const& source, Picture const& blurred, Kernel const& kernel)
{
    std::vector<std::vector<quint8>> columns(std::size_t(source.width) * 4);
    for (int y = 0; y < source.height; ++y) {
        for (int channel = 0; channel < 4; ++channel) {
            std::vector<quint8> row;
            for (int x = 0; x < source.width; ++x)
                row.push_back(source.at(x, y, channel));
            row = blurredLine(row, kernel);
            for (int x = 0; x < source.width; ++x)
                columns[std::size_t(4 * x + channel)].push_back(row[std::size_t(x)]);
        }
    }
    for (int x = 0; x < source.width; ++x) {
        for (int channel = 0; channel < 4; ++channel) {
            auto const column = blurredLine(columns[std::size_t(4 * x + channel)], kernel);
            for (int y = 0; y < source.height; ++y)
                require(blurred.at(x, y, channel) == column[std::size_t(y)],
                    "the plain loop gives the weighted means");
        }
    }
}

Pixels pixels(Picture const& source, Picture& target)
{
    return {source.bytes.data(), source.stride(), target.bytes.data(), target.stride(),
        source.width, source.height};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static auto const blurs = StackBlur::wideBlurs(ProcessorFeatures::isPresent);
    FuzzedDataProvider input(data, size);
    Kernel const kernel = ::kernel(input);
    Picture const source = picture(input);

    Picture plain = source;
    StackBlur::blurPlain(pixels(plain, plain), kernel);
    if (source.width * source.height * kernel.radius < 2000)
        checkDefinition(source, plain, kernel);
    bool const isInPlace = input.ConsumeBool();
    auto const blurred = [&](auto blur) {
        Picture result = source;
        blur(pixels(isInPlace ? result : source, result), kernel);
        return result.bytes;
    };
    require(blurred(StackBlur::blurPlain) == plain.bytes, "apart is as in place");
    if (!StackBlur::isWideKernel(kernel))
        return 0;
    for (StackBlur::WideBlur const& blur : blurs)
        require(blurred(blur.blur) == plain.bytes, "vectors give what the plain loop gives");
    return 0;
}
