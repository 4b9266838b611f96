// SPDX-License-Identifier: MIT
// Pictures of any format, size and owner, with any radius and flatness: blurred as the plain loop
// blurs them, and nothing is written to memory that is not the picture's own.

#include "fuzzing.h"
#include "gaussianblur.h"
#include "stackblur_p.h"

#include <QGuiApplication>

#include <algorithm>
#include <vector>

using Fuzzing::require;

namespace {

QImage expectedImage(QImage image, unsigned int radius, unsigned int flatness)
{
    unsigned int const used = std::min(radius, 254U);
    unsigned int const divisor = flatness * (2 * used + 1) + (used + 1) * (used + 1);
    if (used == 0 || divisor == 0 || image.isNull())
        return image;
    if (image.depth() != 32) {
        image = image.convertToFormat(
            image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    }
    image.detach();
    StackBlur::blurPlain({image.constBits(), image.bytesPerLine(), image.bits(),
                             image.bytesPerLine(), image.width(), image.height()},
        {static_cast<int>(used), flatness, divisor});
    return image;
}

QImage shown(QImage const& image)
{
    return QPixmap::fromImage(image).toImage();
}

unsigned int anyNumber(FuzzedDataProvider& input)
{
    switch (input.ConsumeIntegralInRange(0, 2)) {
    case 0:
        return input.ConsumeIntegralInRange(0U, 12U);
    case 1:
        return input.ConsumeIntegralInRange(0U, 300U);
    default:
        return input.ConsumeIntegral<unsigned int>();
    }
}

/** The bytes of a picture, in memory of the caller's. */
std::vector<uchar> pixels(FuzzedDataProvider& input, std::size_t count)
{
    std::vector<uchar> const pattern = input.ConsumeBytes<uchar>(32);
    std::vector<uchar> result(count, 0x80);
    for (std::size_t i = 0; i < count && !pattern.empty(); ++i)
        result[i] = pattern[i % pattern.size()];
    return result;
}

/** A colour for each byte: Qt compares pictures by them, without asking how many there are. */
QVector<QRgb> colours()
{
    QVector<QRgb> result;
    for (unsigned int i = 0; i < 256; ++i)
        result.append(i * 0x01020305U ^ 0xFF000000U);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    // It must outlive every picture, and Qt frees what it keeps for them at exit.
    static QGuiApplication const application(*argc, *argv);
    Fuzzing::forbidLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    auto const format = static_cast<QImage::Format>(
        input.ConsumeIntegralInRange(0, int(QImage::NImageFormats) - 1));
    int const width = input.ConsumeIntegralInRange(0, 24);
    int const height = input.ConsumeIntegralInRange(0, 24);
    unsigned int const radius = anyNumber(input);
    unsigned int const flatness = anyNumber(input);
    bool const isForeign = input.ConsumeBool();
    bool const isMoved = input.ConsumeBool();
    int const stride = 4 * ((width * 8 + 3) / 4 + input.ConsumeIntegralInRange(0, 2));
    std::vector<uchar> const before = pixels(input, std::size_t(stride) * std::size_t(height));

    std::vector<uchar> memory = before;
    QImage image(memory.data(), width, height, stride, format);
    if (image.isNull() && width > 0 && height > 0 && format != QImage::Format_Invalid)
        return 0;
    if (image.depth() <= 8)
        image.setColorTable(colours());
    if (!isForeign)
        image = image.copy();
    QImage const source = image.copy();
    QImage const expected = shown(expectedImage(source, radius, flatness));
    QImage const blurred =
        GaussianBlur::blurBitmap(isMoved ? std::move(image) : image, radius, flatness).toImage();
    require(blurred == expected, "a picture is blurred as by the plain loop");
    require(memory == before, "memory of the caller's stays");
    require(isMoved || image == source, "a picture that is kept stays");
    return 0;
}
