// SPDX-License-Identifier: MIT
#include "gaussianblur.h"
#include "sequence.h"
#include "themes.h"

#include <iterator>

namespace {

using GaussianBlur::blurBitmap;

QImage noise(Vectors::Sequence& sequence, int width, int height, QImage::Format format)
{
    QImage image(width, height, format);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            QRgb const any = QRgb(sequence.bits());
            // Premultiplied, a channel above alpha is none.
            int const most = format == QImage::Format_RGB32 ? 255 : qAlpha(any);
            image.setPixel(x, y,
                qRgba(
                    qMin(qRed(any), most), qMin(qGreen(any), most), qMin(qBlue(any), most), most));
        }
    }
    return image;
}

QImage dot(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    image.setPixel(width / 2, height / 2, 0xFFFFFFFF);
    return image;
}

char const* nameOf(QImage::Format format)
{
    switch (format) {
    case QImage::Format_Grayscale8:
        return "Grayscale8";
    case QImage::Format_RGBA64_Premultiplied:
        return "RGBA64_Premultiplied";
    case QImage::Format_RGB32:
        return "RGB32";
    default:
        return "ARGB32_Premultiplied";
    }
}

} // namespace

void Vectors::addBlur(Theme& theme)
{
    theme.add("GaussianBlur::g_gus_blur_scale", {},
        {{"value",
            QVector<unsigned int>(std::begin(GaussianBlur::g_gus_blur_scale),
                std::end(GaussianBlur::g_gus_blur_scale))}});

    struct Blur
    {
        QImage image;
        unsigned int radius;
        unsigned int flatness;
    };
    auto const translucent = QImage::Format_ARGB32_Premultiplied;
    Sequence sequence(50);
    QVector<Blur> blurs {{QImage(), 3, 0}, {dot(7, 7), 0, 5}, {dot(7, 5), 1, 0}, {dot(7, 5), 1, 1},
        {dot(9, 9), 3, 0}, {dot(5, 5), 254, 0}, {dot(5, 5), 255, 0}, {dot(5, 5), 1000, 0},
        {noise(sequence, 1, 1, translucent), 4, 0}, {noise(sequence, 1, 6, translucent), 2, 0},
        {noise(sequence, 6, 1, translucent), 2, 3},
        // From here on the sums of the weights wrap around, at last to the divisor 0.
        {noise(sequence, 4, 3, translucent), 2, 16000000},
        {noise(sequence, 4, 3, translucent), 1, 4294967295U},
        {noise(sequence, 4, 3, translucent), 1, 1431655764U}};
    for (unsigned int radius = 1; radius <= 12; ++radius) {
        int const width = sequence.between(2, 14);
        int const height = sequence.between(2, 10);
        auto const format = radius % 3 == 0 ? QImage::Format_RGB32 : translucent;
        blurs.append(
            {noise(sequence, width, height, format), radius, radius % 4 == 0 ? radius : 0});
    }
    blurs.append({dot(5, 5).convertToFormat(QImage::Format_Grayscale8), 2, 0});
    blurs.append({dot(5, 5).convertToFormat(QImage::Format_RGBA64_Premultiplied), 2, 0});
    for (Blur const& blur : qAsConst(blurs)) {
        bool const isOpaque = !blur.image.hasAlphaChannel();
        auto const format = isOpaque ? QImage::Format_RGB32 : translucent;
        auto const pixels = [format](QImage const& image) {
            return image.isNull() ? image : image.convertToFormat(format);
        };
        QPixmap const blurred = blurBitmap(blur.image, blur.radius, blur.flatness);
        theme.add("GaussianBlur::blurBitmap(QImage, unsigned int, unsigned int)",
            {{"image", pixels(blur.image)}, {"format", nameOf(blur.image.format())},
                {"radius", blur.radius}, {"flatness", blur.flatness}},
            {{"result", pixels(blurred.toImage())}});
    }
}
