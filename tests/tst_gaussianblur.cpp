// SPDX-License-Identifier: MIT
#include "gaussianblur.h"
#include "largepages_p.h"
#include "stackblur_p.h"
#include "testing.h"

#include <QColorSpace>
#include <QFile>
#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

using Testing::seededRandom;

namespace {

using Kernel = StackBlur::Kernel;

/** The kernel that blurBitmap() uses while its table is as it was made. */
Kernel kernelOf(int radius, quint32 flatness)
{
    quint32 const side = quint32(radius) + 1;
    return {radius, flatness, flatness * (2 * side - 1) + side * side};
}

/** Pixels of the given values in a format whose four bytes are all kept by a pixmap. */
QImage imageOf(QVector<QRgb> const& pixels, int width)
{
    QImage image(width, pixels.size() / width, QImage::Format_ARGB32_Premultiplied);
    for (int i = 0; i < pixels.size(); ++i)
        reinterpret_cast<QRgb*>(image.scanLine(i / width))[i % width] = pixels.at(i);
    return image;
}

QVector<QRgb> pixelsOf(QImage const& image)
{
    QVector<QRgb> pixels;
    for (int y = 0; y < image.height(); ++y) {
        auto const* const row = reinterpret_cast<QRgb const*>(image.constScanLine(y));
        std::copy_n(row, image.width(), std::back_inserter(pixels));
    }
    return pixels;
}

/** Any bytes; the first pixel is not opaque, so that a pixmap keeps the format. */
QImage randomImage(int width, int height, QRandomGenerator& random)
{
    QVector<QRgb> pixels(width * height);
    random.generate(pixels.begin(), pixels.end());
    // Runs of equal pixels and extreme values are more usual than noise.
    for (int i = 1; i < pixels.size(); ++i) {
        if (random.bounded(4) == 0)
            pixels[i] = random.bounded(2) == 0 ? pixels.at(i - 1) : 0xFFFFFFFFU;
    }
    pixels[0] &= 0x7FFFFFFFU;
    return imageOf(pixels, width);
}

/** The channels along a row or column, each the weighted mean as it is defined. */
std::vector<quint8> blurredLine(std::vector<quint8> const& line, Kernel const& kernel)
{
    int const last = int(line.size()) - 1;
    std::vector<quint8> result;
    for (int i = 0; i <= last; ++i) {
        quint32 sum = 0;
        for (int d = -kernel.radius; d <= kernel.radius; ++d) {
            quint32 const weight = quint32(kernel.radius + 1 - std::abs(d)) + kernel.flatness;
            sum += weight * line[size_t(qBound(0, i + d, last))];
        }
        result.push_back(quint8(sum / kernel.divisor));
    }
    return result;
}

/** The bytes of the picture, row by row, after rows and columns were blurred. */
QVector<QRgb> plainlyBlurred(QImage const& image, Kernel const& kernel)
{
    int const width = image.width();
    int const height = image.height();
    QVector<QRgb> pixels = pixelsOf(image);
    auto* const bytes = reinterpret_cast<quint8*>(pixels.data());
    auto const blurEvery = [&](int lines, int lineStep, int count, int step) {
        for (int i = 0; i < lines; ++i) {
            for (int channel = 0; channel < 4; ++channel) {
                quint8* const first = bytes + (i * lineStep) * 4 + channel;
                std::vector<quint8> line;
                for (int j = 0; j < count; ++j)
                    line.push_back(first[j * step * 4]);
                line = blurredLine(line, kernel);
                for (int j = 0; j < count; ++j)
                    first[j * step * 4] = line[size_t(j)];
            }
        }
    };
    blurEvery(height, width, width, 1);
    blurEvery(width, 1, height, width);
    return pixels;
}

QVector<QRgb> blurred(QImage const& image, int radius, quint32 flatness)
{
    return pixelsOf(GaussianBlur::blurBitmap(image, unsigned(radius), flatness).toImage());
}

/** By radius 1, of an image over the pixels of another, and with all that belongs to that. */
QPixmap blurredFromForeignMemory(QImage image)
{
    QImage over(image.bits(), image.width(), image.height(), image.bytesPerLine(), image.format());
    over.setDevicePixelRatio(image.devicePixelRatio());
    over.setDotsPerMeterX(image.dotsPerMeterX());
    over.setDotsPerMeterY(image.dotsPerMeterY());
    over.setOffset(image.offset());
    over.setColorSpace(image.colorSpace());
    for (QString const& key : image.textKeys())
        over.setText(key, image.text(key));
    return GaussianBlur::blurBitmap(std::move(over), 1, 0);
}

/** What a blur makes of an image, in place or in a new one. */
QVector<QRgb> blurredBy(void (*blur)(StackBlur::Pixels const&, Kernel const&), QImage const& image,
    Kernel const& kernel, bool isInPlace)
{
    QImage result = isInPlace ? image.copy() : QImage(image.size(), image.format());
    quint8* const data = result.bits();
    blur({isInPlace ? data : image.constBits(), image.bytesPerLine(), data, result.bytesPerLine(),
             image.width(), image.height()},
        kernel);
    return pixelsOf(result);
}

/** The pixels of a picture that is white beyond a line in its middle. */
QImage blackAndWhite(int width, int height)
{
    QVector<QRgb> pixels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            pixels << (x > width / 2 || y > height / 2 ? 0xFFFFFFFFU : 0U);
    }
    return imageOf(pixels, width);
}

/** Of the first pixel that differs, or empty. */
QString difference(QVector<QRgb> const& actual, QVector<QRgb> const& expected, int width)
{
    if (actual.size() != expected.size())
        return QStringLiteral("%1 pixels, not %2").arg(actual.size()).arg(expected.size());
    for (int i = 0; i < actual.size(); ++i) {
        if (actual.at(i) != expected.at(i)) {
            return QStringLiteral("pixel (%1, %2) is %3, not %4")
                .arg(QString::number(i % width), QString::number(i / width),
                    QString::number(actual.at(i), 16), QString::number(expected.at(i), 16));
        }
    }
    return QString();
}

QVector<QString> namesOf(std::vector<StackBlur::WideBlur> const& blurs)
{
    QVector<QString> names;
    for (StackBlur::WideBlur const& blur : blurs)
        names << blur.instructions;
    return names;
}

} // namespace

class TestGaussianBlur : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableHoldsTheSquares();
    void kernelIsATriangleOnABox_data();
    void kernelIsATriangleOnABox();
    void columnsAreBlurredAfterRows();
    void meansAreRoundedDown();
    void nullImageGivesANullPixmap();
    void withoutMemoryThePixmapIsNull();
    void withoutRadiusTheImageStays();
    void radiusEndsAt254();
    void uniformImageStays_data();
    void uniformImageStays();
    void onePixelWideImageIsBlurredInItsColumnOnly();
    void eachByteIsAChannel();
    void imageOfTheCallerStays();
    void whoeverOwnsTheMemoryItIsOnlyRead_data();
    void whoeverOwnsTheMemoryItIsOnlyRead();
    void pixelsOfNobodyElseAreBlurredWhereTheyAre();
    void otherFormatsAreConverted_data();
    void otherFormatsAreConverted();
    void opaquePicturesStayOpaqueWhateverTheTableSays();
    void formatsOf32BitsAreBlurredAsTheyAre_data();
    void formatsOf32BitsAreBlurredAsTheyAre();
    void whatBelongsToThePictureStays();
    void tableIsReadAtEachCall();
    void divisorOfZeroReturnsTheImage();
    void premultipliedPicturesHaveNoHalo();

    void agreesWithTheDefinition_data();
    void agreesWithTheDefinition();
    void everySetOfInstructionsGivesTheSameBytes_data();
    void everySetOfInstructionsGivesTheSameBytes();
    void pixelsMayLieAnywhere_data();
    void pixelsMayLieAnywhere();
    void sumsAreExactUpToTheirBounds_data();
    void sumsAreExactUpToTheirBounds();
    void processorsGetNoInstructionsThatTheyLack();
    void featuresAreAskedForUntilOneIsMissing_data();
    void featuresAreAskedForUntilOneIsMissing();
    void featuresAreThoseThatTheSystemNames_data();
    void featuresAreThoseThatTheSystemNames();
    void plainBlurGivesTheSameBytes();
    void kernelsThatWrapAreLeftToThePlainBlur();
    void quotientsAreExactAtEveryStep();
    void quotientsAreExactForEverySum();
    void shortQuotientsAreExactForEverySum();
    void floatQuotientsAreExactAtEveryStep();
    void largePicturesAreBlurredAlike();
    void adviceLeavesTheMemoryAsItIs();
};

void TestGaussianBlur::tableHoldsTheSquares()
{
    QCOMPARE(int(std::size(GaussianBlur::g_gus_blur_scale)), 255);
    QCOMPARE(GaussianBlur::g_gus_blur_scale[0], 1U);
    QCOMPARE(GaussianBlur::g_gus_blur_scale[1], 4U);
    QCOMPARE(GaussianBlur::g_gus_blur_scale[2], 9U);
    QCOMPARE(GaussianBlur::g_gus_blur_scale[254], 65025U);
    for (unsigned int i = 0; i < 255; ++i)
        QCOMPARE(GaussianBlur::g_gus_blur_scale[i], (i + 1) * (i + 1));
}

void TestGaussianBlur::kernelIsATriangleOnABox_data()
{
    QTest::addColumn<unsigned int>("radius");
    QTest::addColumn<unsigned int>("flatness");
    QTest::addColumn<QVector<int>>("means");
    // Of 252 amid zeros, at the distances -3 to 3.
    QTest::newRow("1, 2, 1 of 4") << 1U << 0U << QVector<int> {0, 0, 63, 126, 63, 0, 0};
    QTest::newRow("2, 3, 2 of 7") << 1U << 1U << QVector<int> {0, 0, 72, 108, 72, 0, 0};
    QTest::newRow("1, 2, 3, 2, 1 of 9") << 2U << 0U << QVector<int> {0, 28, 56, 84, 56, 28, 0};
    QTest::newRow("nearly a box of 3") << 1U << 1000U << QVector<int> {0, 0, 83, 84, 83, 0, 0};
}

void TestGaussianBlur::kernelIsATriangleOnABox()
{
    QFETCH(unsigned int, radius);
    QFETCH(unsigned int, flatness);
    QFETCH(QVector<int>, means);
    QVector<QRgb> line(21, 0);
    line[10] = qRgba(252, 252, 252, 252);
    QVector<QRgb> expected(21, 0);
    for (int i = 0; i < 7; ++i)
        expected[7 + i] = qRgba(means.at(i), means.at(i), means.at(i), means.at(i));
    QCOMPARE(blurred(imageOf(line, 21), int(radius), flatness), expected);
    QCOMPARE(blurred(imageOf(line, 1), int(radius), flatness), expected);
}

void TestGaussianBlur::columnsAreBlurredAfterRows()
{
    QVector<QRgb> pixels(9, 0);
    pixels[4] = 0xFF; // 255, of which a quarter, rounded down, is 63
    // Rows: 63, 127, 63; columns of 63: 15, 31, 15; of 127: 31, 63, 31.
    QCOMPARE(blurred(imageOf(pixels, 3), 1, 0),
        QVector<QRgb>({0x0F, 0x1F, 0x0F, 0x1F, 0x3F, 0x1F, 0x0F, 0x1F, 0x0F}));
}

void TestGaussianBlur::meansAreRoundedDown()
{
    // (2 * 255 + 254) / 4 is 191, (255 + 3 * 254) / 4 is 254.25.
    QCOMPARE(blurred(imageOf({255, 254}, 2), 1, 0), QVector<QRgb>({254, 254}));
    QCOMPARE(blurred(imageOf({0, 3}, 2), 1, 0), QVector<QRgb>({0, 2}));
}

void TestGaussianBlur::nullImageGivesANullPixmap()
{
    QVERIFY(GaussianBlur::blurBitmap(QImage(), 3, 0).isNull());
    QVERIFY(GaussianBlur::blurBitmap(QImage(), 0, 0).isNull());
}

void TestGaussianBlur::withoutMemoryThePixmapIsNull()
{
    if (Testing::sanitized) {
        qInfo("not tested: a sanitizer needs more memory than the limit leaves");
        return;
    }
    QImage const image(3000, 3000, QImage::Format_ARGB32_Premultiplied);
    QImage const small(3000, 3000, QImage::Format_RGB16);
    QFile usage("/proc/self/statm");
    QVERIFY(usage.open(QIODevice::ReadOnly));
    rlim_t const used = usage.readAll().split(' ').first().toULongLong() * rlim_t(getpagesize());
    rlimit usual {};
    getrlimit(RLIMIT_AS, &usual);
    // Less than another of the images takes.
    rlimit const lower {used + (16U << 20U), usual.rlim_max};
    setrlimit(RLIMIT_AS, &lower);
    QPixmap const ofShared = GaussianBlur::blurBitmap(image, 3, 0);
    QPixmap const ofConverted = GaussianBlur::blurBitmap(small, 3, 0);
    setrlimit(RLIMIT_AS, &usual);
    QVERIFY(ofShared.isNull());
    QVERIFY(ofConverted.isNull());
    QCOMPARE(GaussianBlur::blurBitmap(image, 3, 0).size(), QSize(3000, 3000));
}

void TestGaussianBlur::withoutRadiusTheImageStays()
{
    QImage const image = imageOf({1, 2, 3, 4, 5, 6}, 3);
    QCOMPARE(blurred(image, 0, 0), pixelsOf(image));
    QCOMPARE(blurred(image, 0, 7), pixelsOf(image));
    // Nothing is converted either.
    QImage const grey(3, 2, QImage::Format_Grayscale8);
    QCOMPARE(GaussianBlur::blurBitmap(grey, 0, 0).toImage(), QPixmap::fromImage(grey).toImage());
}

void TestGaussianBlur::radiusEndsAt254()
{
    QRandomGenerator random = seededRandom(5);
    QImage const image = randomImage(600, 3, random);
    QVector<QRgb> const expected = blurred(image, 254, 2);
    QVERIFY(blurred(image, 253, 2) != expected);
    for (unsigned int const radius : {255U, 1000U, 0xFFFFFFFFU}) {
        QCOMPARE(pixelsOf(GaussianBlur::blurBitmap(image, radius, 2).toImage()), expected);
    }
}

void TestGaussianBlur::uniformImageStays_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("one pixel") << 1 << 1;
    QTest::newRow("a row") << 100 << 1;
    QTest::newRow("a column") << 1 << 100;
    QTest::newRow("a picture") << 67 << 35;
}

void TestGaussianBlur::uniformImageStays()
{
    QFETCH(int, width);
    QFETCH(int, height);
    for (QRgb const colour : {0x00000000U, 0x01020304U, 0x7F0080FFU, 0xFFFFFFFFU}) {
        QVector<QRgb> const pixels(width * height, colour);
        for (int radius = 1; radius <= 254; radius += radius < 20 ? 1 : 13) {
            for (quint32 const flatness : {0U, 1U, 16U, 300U, 30000U}) {
                QString const what =
                    difference(blurred(imageOf(pixels, width), radius, flatness), pixels, width);
                QVERIFY2(what.isEmpty(),
                    qPrintable(QStringLiteral("radius %1, flatness %2: %3")
                                   .arg(QString::number(radius), QString::number(flatness), what)));
            }
        }
    }
}

void TestGaussianBlur::onePixelWideImageIsBlurredInItsColumnOnly()
{
    QRandomGenerator random = seededRandom(6);
    for (int const length : {1, 2, 5, 40}) {
        QImage const column = randomImage(1, length, random);
        QImage const row = imageOf(pixelsOf(column), length);
        for (int const radius : {1, 4, 39, 254})
            QCOMPARE(blurred(column, radius, 0), blurred(row, radius, 0));
    }
}

void TestGaussianBlur::eachByteIsAChannel()
{
    // A colour in a transparent pixel is blurred like any other.
    QCOMPARE(blurred(imageOf({0x00FF0000, 0x00FF0000, 0xFF00FF00}, 3), 1, 0),
        QVector<QRgb>({0x00FF0000, 0x3FBF3F00, 0xBF3FBF00}));
}

void TestGaussianBlur::imageOfTheCallerStays()
{
    QRandomGenerator random = seededRandom(7);
    QImage const image = randomImage(40, 30, random);
    QVector<QRgb> const before = pixelsOf(image);
    QVERIFY(blurred(image, 5, 0) != before);
    QCOMPARE(pixelsOf(image), before);
}

void TestGaussianBlur::whoeverOwnsTheMemoryItIsOnlyRead_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("padding");
    for (int const width : {1, 3, 4, 15, 16, 17, 33, 130}) {
        for (int const height : {1, 2, 16, 17, 35}) {
            for (int const padding : {0, 4, 52}) {
                QTest::addRow("%d by %d, %d bytes more a row", width, height, padding)
                    << width << height << padding;
            }
        }
    }
}

void TestGaussianBlur::whoeverOwnsTheMemoryItIsOnlyRead()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, padding);
    QRandomGenerator random = seededRandom(quint32(8 + width + height + padding));
    QImage const image = randomImage(width, height, random);
    int const stride = 4 * width + padding;
    // Without the padding of the last row: one byte too far is seen.
    std::size_t const size = size_t(height - 1) * size_t(stride) + size_t(4 * width);
    std::unique_ptr<uchar[]> const memory(new uchar[size]);
    std::fill_n(memory.get(), size, uchar(0xA5));
    for (int y = 0; y < height; ++y)
        std::memcpy(memory.get() + y * stride, image.constScanLine(y), size_t(4 * width));
    std::vector<uchar> const before(memory.get(), memory.get() + size);
    for (int const radius : {1, 7, 40, 254}) {
        QVector<QRgb> const expected = plainlyBlurred(image, kernelOf(radius, 3));
        QImage const kept(memory.get(), width, height, stride, QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(blurred(kept, radius, 3), expected);
        QPixmap const moved = GaussianBlur::blurBitmap(
            QImage(memory.get(), width, height, stride, QImage::Format_ARGB32_Premultiplied),
            unsigned(radius), 3);
        QCOMPARE(pixelsOf(moved.toImage()), expected);
        QVERIFY(std::equal(before.begin(), before.end(), memory.get()));
    }
}

void TestGaussianBlur::pixelsOfNobodyElseAreBlurredWhereTheyAre()
{
    QRandomGenerator random = seededRandom(13);
    for (QSize const& size : {QSize(1, 1), QSize(1, 9), QSize(9, 1), QSize(37, 53), QSize(64, 3)}) {
        QImage image = randomImage(size.width(), size.height(), random);
        for (int const radius : {1, 15, 16, 200}) {
            QVector<QRgb> const expected = plainlyBlurred(image, kernelOf(radius, 0));
            QImage own = image.copy();
            uchar const* const memory = own.constBits();
            QPixmap const pixmap = GaussianBlur::blurBitmap(std::move(own), unsigned(radius), 0);
            QCOMPARE(pixmap.toImage().constBits(), memory);
            QCOMPARE(pixelsOf(pixmap.toImage()), expected);
        }
        QImage const shared = image;
        QPixmap const pixmap = GaussianBlur::blurBitmap(std::move(image), 1, 0);
        QVERIFY(pixmap.toImage().constBits() != shared.constBits());
    }
}

void TestGaussianBlur::otherFormatsAreConverted_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QImage::Format>("blurredFormat");
    auto const opaque = QImage::Format_RGB32;
    auto const transparent = QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("1 bit") << QImage::Format_Mono << opaque;
    QTest::newRow("8 bits grey") << QImage::Format_Grayscale8 << opaque;
    QTest::newRow("8 bits alpha") << QImage::Format_Alpha8 << transparent;
    QTest::newRow("16 bits") << QImage::Format_RGB16 << opaque;
    QTest::newRow("16 bits with alpha") << QImage::Format_ARGB4444_Premultiplied << transparent;
    QTest::newRow("24 bits") << QImage::Format_RGB888 << opaque;
    QTest::newRow("24 bits with alpha") << QImage::Format_ARGB6666_Premultiplied << transparent;
    QTest::newRow("64 bits") << QImage::Format_RGBA64 << transparent;
}

void TestGaussianBlur::otherFormatsAreConverted()
{
    QFETCH(QImage::Format, format);
    QFETCH(QImage::Format, blurredFormat);
    QRandomGenerator random = seededRandom(9);
    QImage const image = randomImage(37, 21, random).convertToFormat(format);
    QImage const converted = image.convertToFormat(blurredFormat);
    QImage expected(37, 21, blurredFormat);
    QVector<QRgb> const pixels = plainlyBlurred(converted, kernelOf(4, 1));
    for (int y = 0; y < 21; ++y)
        std::memcpy(expected.scanLine(y), pixels.constData() + 37 * y, 37 * sizeof(QRgb));
    QCOMPARE(
        GaussianBlur::blurBitmap(image, 4, 1).toImage(), QPixmap::fromImage(expected).toImage());
}

void TestGaussianBlur::opaquePicturesStayOpaqueWhateverTheTableSays()
{
    QImage image(3, 1, QImage::Format_RGB888);
    image.fill(QColor(200, 100, 40));
    GaussianBlur::g_gus_blur_scale[1] = 8;
    QImage const result = GaussianBlur::blurBitmap(image, 1, 0).toImage();
    GaussianBlur::g_gus_blur_scale[1] = 4;
    // Rows and columns halve all bytes, the one beside the colours too: it would be their alpha.
    QCOMPARE(result.pixelColor(1, 0), QColor(50, 25, 10));
}

void TestGaussianBlur::formatsOf32BitsAreBlurredAsTheyAre_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("RGB32") << QImage::Format_RGB32;
    QTest::newRow("ARGB32") << QImage::Format_ARGB32;
    QTest::newRow("ARGB32_Premultiplied") << QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("RGBX8888") << QImage::Format_RGBX8888;
    QTest::newRow("RGBA8888") << QImage::Format_RGBA8888;
    QTest::newRow("RGBA8888_Premultiplied") << QImage::Format_RGBA8888_Premultiplied;
    QTest::newRow("RGB30") << QImage::Format_RGB30;
    QTest::newRow("A2RGB30_Premultiplied") << QImage::Format_A2RGB30_Premultiplied;
    QTest::newRow("BGR30") << QImage::Format_BGR30;
    QTest::newRow("A2BGR30_Premultiplied") << QImage::Format_A2BGR30_Premultiplied;
}

void TestGaussianBlur::formatsOf32BitsAreBlurredAsTheyAre()
{
    QFETCH(QImage::Format, format);
    // Each byte is blurred by itself, even where the ten bits of a colour lie in two of them: the
    // lowest bit of 7 is lost and does not come down into the next byte.
    QVector<QRgb> const pixels {0x00000000U, 0x83C7070FU, 0x00000000U};
    QVector<QRgb> const means {0x20310103U, 0x41630307U, 0x20310103U};
    QImage image(3, 1, format);
    std::memcpy(image.bits(), pixels.constData(), 3 * sizeof(QRgb));
    QImage expected(3, 1, format);
    std::memcpy(expected.bits(), means.constData(), 3 * sizeof(QRgb));
    QCOMPARE(
        GaussianBlur::blurBitmap(image, 1, 0).toImage(), QPixmap::fromImage(expected).toImage());
}

void TestGaussianBlur::whatBelongsToThePictureStays()
{
    QImage image = imageOf({0, 1, 2, 3}, 2);
    image.setDevicePixelRatio(2.0);
    image.setDotsPerMeterX(1000);
    image.setDotsPerMeterY(2000);
    image.setOffset(QPoint(3, 4));
    image.setText("Author", "A B");
    image.setColorSpace(QColorSpace::SRgb);
    QImage const plain = QPixmap::fromImage(image).toImage();
    for (QPixmap const& pixmap : {GaussianBlur::blurBitmap(image, 1, 0),
             GaussianBlur::blurBitmap(image.copy(), 1, 0), blurredFromForeignMemory(image)}) {
        QCOMPARE(pixmap.devicePixelRatio(), 2.0);
        QImage const result = pixmap.toImage();
        QCOMPARE(result.format(), plain.format());
        QCOMPARE(result.dotsPerMeterX(), plain.dotsPerMeterX());
        QCOMPARE(result.dotsPerMeterY(), plain.dotsPerMeterY());
        QCOMPARE(result.offset(), plain.offset());
        QCOMPARE(result.text("Author"), plain.text("Author"));
        QCOMPARE(result.colorSpace(), plain.colorSpace());
    }
}

void TestGaussianBlur::tableIsReadAtEachCall()
{
    QRandomGenerator random = seededRandom(10);
    QImage const image = randomImage(30, 20, random);
    for (quint32 const scale : {1U, 5U, 17U, 100U, 0xFFFFFFFFU}) {
        GaussianBlur::g_gus_blur_scale[3] = scale;
        Kernel const kernel {3, 2, 2 * 7 + scale};
        QVector<QRgb> const result = blurred(image, 3, 2);
        GaussianBlur::g_gus_blur_scale[3] = 16;
        QCOMPARE(difference(result, plainlyBlurred(image, kernel), 30), QString());
    }
}

void TestGaussianBlur::divisorOfZeroReturnsTheImage()
{
    QImage const image = imageOf({1, 200, 3, 4}, 2);
    // 3 * 1431655764 + 4 is 2^32.
    QCOMPARE(blurred(image, 1, 1431655764U), pixelsOf(image));
    QVERIFY(blurred(image, 1, 0) != pixelsOf(image));
    QImage const grey = QImage(3, 2, QImage::Format_Grayscale8);
    QCOMPARE(GaussianBlur::blurBitmap(grey, 1, 1431655764U).toImage(),
        QPixmap::fromImage(grey).toImage());
}

void TestGaussianBlur::premultipliedPicturesHaveNoHalo()
{
    // White beside transparent black.
    QVector<QRgb> const pixels {0xFFFFFFFFU, 0xFFFFFFFFU, 0x00000000U, 0x00000000U};
    QImage const premultiplied = imageOf(pixels, 4);
    QImage plain = premultiplied;
    plain.reinterpretAsFormat(QImage::Format_ARGB32);
    QImage const good = GaussianBlur::blurBitmap(premultiplied, 1, 0).toImage();
    QImage const bad = GaussianBlur::blurBitmap(plain, 1, 0).toImage();
    QCOMPARE(good.pixelColor(1, 0).alpha(), bad.pixelColor(1, 0).alpha());
    QCOMPARE(good.pixelColor(1, 0).red(), 255);
    QVERIFY(bad.pixelColor(1, 0).red() < 200);
}

void TestGaussianBlur::agreesWithTheDefinition_data()
{
    QTest::addColumn<int>("radius");
    QTest::addColumn<unsigned int>("flatness");
    for (int const radius : {1, 2, 3, 7, 14, 15, 16, 50, 127, 128, 219, 253, 254}) {
        for (unsigned int const flatness : {0U, 1U, 2U, 16U, 100U, 1000U, 16383U, 32767U, 32768U,
                 40000U, 65535U, 1U << 20, 1U << 31, 0xFFFFFFFFU}) {
            QTest::addRow("radius %d, flatness %u", radius, flatness) << radius << flatness;
        }
    }
}

void TestGaussianBlur::agreesWithTheDefinition()
{
    QFETCH(int, radius);
    QFETCH(unsigned int, flatness);
    if (kernelOf(radius, flatness).divisor == 0)
        qFatal("there is no mean");
    QRandomGenerator random = seededRandom(quint32(radius) * 31 + flatness);
    QVector<QSize> sizes {{1, 1}, {2, 1}, {1, 2}, {3, 3}, {5, 34}, {34, 5}, {32, 16}};
    if (!Testing::sanitized)
        sizes << QSize(5, 64) << QSize(64, 5) << QSize(71, 37);
    for (int i = 0; i < (Testing::sanitized ? 2 : 12); ++i)
        sizes << QSize(random.bounded(1, 80), random.bounded(1, 40));
    for (QSize const& size : qAsConst(sizes)) {
        QImage const image = randomImage(size.width(), size.height(), random);
        QString const what = difference(blurred(image, radius, flatness),
            plainlyBlurred(image, kernelOf(radius, flatness)), size.width());
        QVERIFY2(what.isEmpty(),
            qPrintable(
                QStringLiteral("%1 by %2: %3")
                    .arg(QString::number(size.width()), QString::number(size.height()), what)));
    }
}

void TestGaussianBlur::everySetOfInstructionsGivesTheSameBytes_data()
{
    QTest::addColumn<int>("index");
    auto const blurs = StackBlur::wideBlurs(ProcessorFeatures::isPresent);
    for (int i = 0; i < int(blurs.size()); ++i)
        QTest::newRow(blurs[size_t(i)].instructions) << i;
}

void TestGaussianBlur::everySetOfInstructionsGivesTheSameBytes()
{
    QFETCH(int, index);
    auto const blur = StackBlur::wideBlurs(ProcessorFeatures::isPresent)[size_t(index)].blur;
    QRandomGenerator random = seededRandom(11);
    for (int i = 0; i < 400; ++i) {
        int const width = random.bounded(1, 150);
        int const height = random.bounded(1, 70);
        int const radius = random.bounded(3) == 0 ? random.bounded(1, 255) : random.bounded(1, 20);
        quint32 const flatness = random.bounded(2) == 0 ? 0 : quint32(random.bounded(32768));
        Kernel const kernel = kernelOf(radius, flatness);
        if (!StackBlur::isWideKernel(kernel))
            continue;
        QImage const image = randomImage(width, height, random);
        QString const what = difference(blurredBy(blur, image, kernel, i % 2 == 0),
            blurredBy(StackBlur::blurPlain, image, kernel, false), width);
        QVERIFY2(what.isEmpty(),
            qPrintable(QStringLiteral("%1 by %2, radius %3, flatness %4: %5")
                           .arg(QString::number(width), QString::number(height),
                               QString::number(radius), QString::number(flatness), what)));
    }
}

void TestGaussianBlur::pixelsMayLieAnywhere_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("a pixel") << 1;
    QTest::newRow("less than a vector") << 8;
    QTest::newRow("several vectors") << 70;
}

void TestGaussianBlur::pixelsMayLieAnywhere()
{
    QFETCH(int, width);
    int const height = 40;
    auto const size = std::size_t(4 * width * height);
    QRandomGenerator random = seededRandom(17);
    Kernel const kernel = kernelOf(5, 3);
    auto const blurAt = [&](auto blur, quint8* pixels) {
        blur({pixels, 4 * width, pixels, 4 * width, width, height}, kernel);
    };
    for (auto const& wide : StackBlur::wideBlurs(ProcessorFeatures::isPresent)) {
        for (int const offset : {0, 1, 3, 4, 8, 16, 20, 32, 48, 60}) {
            std::vector<quint8> pixels(size + 128);
            for (quint8& byte : pixels)
                byte = quint8(random.bounded(256));
            std::vector<quint8> expected = pixels;
            blurAt(StackBlur::blurPlain, expected.data() + offset);
            blurAt(wide.blur, pixels.data() + offset);
            // What lies around them stays.
            QVERIFY2(pixels == expected,
                qPrintable(QString("%1 at %2").arg(wide.instructions).arg(offset)));
        }
    }
}

void TestGaussianBlur::sumsAreExactUpToTheirBounds_data()
{
    QTest::addColumn<int>("radius");
    QTest::addColumn<quint32>("flatness");
    // A divisor up to 256 leaves sums of 16 bits.
    QTest::newRow("divisor 256") << 15 << 0U;
    QTest::newRow("divisor 289") << 16 << 0U;
    QTest::newRow("divisor 256, flat") << 1 << 84U;
    QTest::newRow("divisor 259, flat") << 1 << 85U;
    // Radius + 1 + flatness up to 128 leaves steps of 16 bits.
    QTest::newRow("short steps") << 127 << 0U;
    QTest::newRow("long steps") << 128 << 0U;
    QTest::newRow("short steps, flat") << 63 << 64U;
    QTest::newRow("long steps, flat") << 63 << 65U;
    // A radius up to 127 leaves steps of the triangle that have 16 bits, whatever the box adds.
    QTest::newRow("short triangle") << 127 << 100U;
    QTest::newRow("long triangle") << 128 << 100U;
    QTest::newRow("short triangle, divisor above 2^16") << 127 << 977U;
    QTest::newRow("long triangle, divisor above 2^16") << 128 << 977U;
    // So many lines that arrive are summed up at once: 15.
    QTest::newRow("15 lines arrive") << 16 << 16U;
    QTest::newRow("16 lines arrive") << 17 << 16U;
    // A divisor up to 2^15 or 2^16 leaves sums that a float keeps.
    QTest::newRow("divisor below 2^15") << 180 << 0U;
    QTest::newRow("divisor above 2^15") << 181 << 0U;
    QTest::newRow("divisor below 2^16") << 254 << 1U;
    QTest::newRow("divisor above 2^16") << 254 << 2U;
    // So does a flatness that has 15 bits when doubled.
    QTest::newRow("flatness 16383") << 1 << 16383U;
    QTest::newRow("flatness 16384") << 1 << 16384U;
    QTest::newRow("greatest flatness") << 1 << 32767U;
    QTest::newRow("greatest divisor") << 127 << 32767U;
}

void TestGaussianBlur::sumsAreExactUpToTheirBounds()
{
    QFETCH(int, radius);
    QFETCH(quint32, flatness);
    Kernel const kernel = kernelOf(radius, flatness);
    QVERIFY(StackBlur::isWideKernel(kernel));
    QRandomGenerator random = seededRandom(14);
    QVector<QImage> images {blackAndWhite(600, 7), blackAndWhite(7, 600),
        randomImage(1, 700, random), randomImage(700, 1, random)};
    if (!Testing::sanitized) {
        images << blackAndWhite(600, 70) << blackAndWhite(70, 600) << randomImage(300, 200, random);
    }
    for (QImage const& image : images) {
        QVector<QRgb> const expected = blurredBy(StackBlur::blurPlain, image, kernel, false);
        for (auto const& wide : StackBlur::wideBlurs(ProcessorFeatures::isPresent)) {
            for (bool const isInPlace : {false, true}) {
                QString const what = difference(
                    blurredBy(wide.blur, image, kernel, isInPlace), expected, image.width());
                QVERIFY2(what.isEmpty(),
                    qPrintable(QLatin1String(wide.instructions) + QStringLiteral(": ") + what));
            }
        }
    }
}

void TestGaussianBlur::processorsGetNoInstructionsThatTheyLack()
{
    auto const every = namesOf(StackBlur::wideBlurs([](auto) noexcept { return true; }));
    auto const least = namesOf(StackBlur::wideBlurs([](auto) noexcept { return false; }));
    QCOMPARE(least, QVector<QString> {every.last()});

#if defined(__x86_64__) && !defined(__SSSE3__)
    // In the order in which a compiler's sets of instructions grew.
    QCOMPARE(every.mid(0, 4), (QVector<QString> {"AVX3", "AVX2", "SSE4", "SSSE3"}));
    QCOMPARE(every.size(), 5);
    struct Need
    {
        QString feature;
        int sets; ///< how many of the four cannot do without
    };
    QVector<Need> const needs {{"sse2", 4}, {"ssse3", 4}, {"sse4.1", 3}, {"sse4.2", 3},
        {"pclmul", 3}, {"aes", 3}, {"avx", 2}, {"avx2", 2}, {"bmi", 2}, {"bmi2", 2}, {"fma", 2},
        {"avx512f", 1}, {"avx512vl", 1}, {"avx512dq", 1}, {"avx512bw", 1}};
    static QString lacking;
    for (Need const& need : needs) {
        lacking = need.feature;
        auto const names = namesOf(StackBlur::wideBlurs([](auto feature) noexcept {
            return QLatin1String(feature.data(), int(feature.size())) != lacking;
        }));
        QVERIFY2(names == every.mid(need.sets), qPrintable(need.feature));
    }
#endif
}

void TestGaussianBlur::featuresAreAskedForUntilOneIsMissing_data()
{
    QTest::addColumn<QStringList>("asked");
    QTest::addColumn<bool>("areAllPresent");
    QTest::newRow("") << QStringList() << true;
    QTest::newRow("a") << QStringList {"a"} << true;
    QTest::newRow("missing") << QStringList {"missing"} << false;
    QTest::newRow("a,bc,d") << QStringList {"a", "bc", "d"} << true;
    QTest::newRow("a,missing,d") << QStringList {"a", "missing"} << false;
    QTest::newRow("a,bc,missing") << QStringList {"a", "bc", "missing"} << false;
}

void TestGaussianBlur::featuresAreAskedForUntilOneIsMissing()
{
    QFETCH(QStringList, asked);
    QFETCH(bool, areAllPresent);
    static QStringList names;
    names.clear();
    auto const test = [](std::string_view name) noexcept {
        names << QString::fromLatin1(name.data(), int(name.size()));
        return name != "missing";
    };
    QCOMPARE(ProcessorFeatures::areAllPresent(QTest::currentDataTag(), test), areAllPresent);
    QCOMPARE(names, asked);
}

void TestGaussianBlur::featuresAreThoseThatTheSystemNames_data()
{
    QTest::addColumn<QString>("flags");
    QTest::newRow("sse2") << "sse2";
    QTest::newRow("ssse3") << "ssse3";
    QTest::newRow("sse4.1") << "sse4_1";
    QTest::newRow("sse4.2") << "sse4_2 popcnt";
    QTest::newRow("pclmul") << "pclmulqdq";
    QTest::newRow("aes") << "aes";
    QTest::newRow("avx") << "avx";
    QTest::newRow("avx2") << "avx2";
    QTest::newRow("bmi") << "bmi1";
    QTest::newRow("bmi2") << "bmi2";
    QTest::newRow("fma") << "fma";
    QTest::newRow("avx512f") << "avx512f";
    QTest::newRow("avx512vl") << "avx512vl";
    QTest::newRow("avx512dq") << "avx512dq";
    QTest::newRow("avx512bw") << "avx512bw";
    // No processor has a feature of no name, or one that nobody asks for.
    QTest::newRow("") << "no such flag";
    QTest::newRow("mmx") << "no such flag";
}

void TestGaussianBlur::featuresAreThoseThatTheSystemNames()
{
#ifdef __x86_64__
    QFETCH(QString, flags);
    QFile description("/proc/cpuinfo");
    QVERIFY(description.open(QIODevice::ReadOnly));
    QStringList present;
    for (QByteArray const& line : description.readAll().split('\n')) {
        if (line.startsWith("flags"))
            present = QString::fromLatin1(line).section(':', 1).split(' ');
    }
    QVERIFY(present.contains("fpu"));
    bool areAllNamed = true;
    for (QString const& flag : flags.split(' '))
        areAllNamed = areAllNamed && present.contains(flag);
    QCOMPARE(ProcessorFeatures::isPresent(QTest::currentDataTag()), areAllNamed);
#else
    QVERIFY(!ProcessorFeatures::isPresent(QTest::currentDataTag()));
#endif
}

void TestGaussianBlur::plainBlurGivesTheSameBytes()
{
    QRandomGenerator random = seededRandom(12);
    for (int i = 0; i < 200; ++i) {
        int const width = random.bounded(1, 60);
        int const height = random.bounded(1, 40);
        int const radius = random.bounded(1, i % 4 == 0 ? 255 : 12);
        quint32 const flatness = i % 3 == 0 ? 0 : random.generate() >> random.bounded(32);
        Kernel const kernel = kernelOf(radius, flatness);
        if (kernel.divisor == 0)
            continue;
        QImage const image = randomImage(width, height, random);
        QImage result(width, height, image.format());
        StackBlur::blurPlain({image.constBits(), image.bytesPerLine(), result.bits(),
                                 result.bytesPerLine(), width, height},
            kernel);
        QCOMPARE(difference(pixelsOf(result), plainlyBlurred(image, kernel), width), QString());
    }
}

void TestGaussianBlur::kernelsThatWrapAreLeftToThePlainBlur()
{
    QVERIFY(StackBlur::isWideKernel(kernelOf(1, 0)));
    QVERIFY(StackBlur::isWideKernel(kernelOf(254, 16)));
    QVERIFY(StackBlur::isWideKernel(kernelOf(127, 32767)));
    QVERIFY(!StackBlur::isWideKernel(kernelOf(1, 32768)));
    // 32767 * 259 + 130 * 130 is above 2^23.
    QVERIFY(!StackBlur::isWideKernel(kernelOf(129, 32767)));
    QVERIFY(!StackBlur::isWideKernel(kernelOf(254, 0xFFFFFFFFU)));
    QVERIFY(!StackBlur::isWideKernel({3, 0, 15}));
    QVERIFY(!StackBlur::isWideKernel({3, 0, 17}));
}

void TestGaussianBlur::quotientsAreExactAtEveryStep()
{
    // The quotient never falls as the sum grows, so that it is exact for all sums if it is for
    // those before and behind each step.
    constexpr quint32 stride = Testing::sanitized ? 11 : 1;
    QVector<quint32> divisors;
    for (quint32 divisor = 2; divisor <= 70000; divisor += stride)
        divisors << divisor;
    for (int radius = 1; radius <= 254; radius += stride) {
        for (quint32 flatness = 0; flatness < 32768; flatness += 1 + flatness / 8)
            divisors << kernelOf(radius, flatness).divisor;
    }
    for (quint32 power = 2; power <= StackBlur::Divisor::greatest; power *= 2)
        divisors << power - (power > 2 ? 1 : 0) << power << qMin(power + 1, 1U << 23);
    qint64 count = 0;
    for (quint32 const value : qAsConst(divisors)) {
        if (value > StackBlur::Divisor::greatest)
            continue;
        StackBlur::Divisor const divisor(value);
        for (quint32 quotient = 0; quotient < 256; ++quotient) {
            bool const isExact = divisor.quotient(quotient * value) == quotient
                && (quotient == 255 || divisor.quotient(quotient * value + value - 1) == quotient);
            QVERIFY2(isExact, qPrintable(QStringLiteral("%1 times %2").arg(quotient).arg(value)));
        }
        ++count;
    }
    qInfo("%lld divisors", count);
    QVERIFY(count > 80000 / stride);
}

void TestGaussianBlur::quotientsAreExactForEverySum()
{
    QVector<int> const radii = Testing::sanitized
        ? QVector<int> {1, 3, 15, 50}
        : QVector<int> {1, 2, 3, 10, 15, 16, 50, 127, 220, 254};
    for (int const radius : radii) {
        quint32 const value = kernelOf(radius, 0).divisor;
        StackBlur::Divisor const divisor(value);
        for (quint32 sum = 0; sum <= 255 * value; ++sum) {
            if (divisor.quotient(sum) != sum / value)
                QFAIL(qPrintable(QStringLiteral("%1 by %2").arg(sum).arg(value)));
        }
    }
}

void TestGaussianBlur::shortQuotientsAreExactForEverySum()
{
    QCOMPARE(StackBlur::ShortDivisor::greatest, 256U);
    for (quint32 value = 2; value <= StackBlur::ShortDivisor::greatest; ++value) {
        StackBlur::ShortDivisor const divisor(value);
        QVERIFY(divisor.multiplier() <= 0xFFFF);
        QVERIFY(255 * value + divisor.offset() <= 0xFFFF);
        for (quint32 sum = 0; sum <= 255 * value; ++sum) {
            if (divisor.quotient(sum) != sum / value)
                QFAIL(qPrintable(QStringLiteral("%1 by %2").arg(sum).arg(value)));
        }
    }
}

void TestGaussianBlur::floatQuotientsAreExactAtEveryStep()
{
    using StackBlur::FloatDivisor;
    auto const lowerWord = [](float number) {
        quint32 bits;
        std::memcpy(&bits, &number, sizeof bits);
        return bits & 0xFFFF;
    };
    for (quint32 value = 1; value <= FloatDivisor::greatestFused; ++value) {
        FloatDivisor const divisor(value);
        for (quint32 quotient = 0; quotient < 256; ++quotient) {
            for (quint32 const sum : {quotient * value, quotient * value + value - 1}) {
                if (sum > 255 * value)
                    continue;
                int const scaled = 2 * int(sum) + divisor.offset();
                auto const exact = float(scaled);
                QVERIFY(int(exact) == scaled);
                bool const isExact =
                    lowerWord(std::fma(exact, divisor.reciprocal(), FloatDivisor::whole))
                    == quotient;
                float const product = exact * divisor.reciprocal();
                bool const isExactIfRounded = value > FloatDivisor::greatest
                    || lowerWord(product + FloatDivisor::whole) == quotient;
                if (!isExact || !isExactIfRounded)
                    QFAIL(qPrintable(QStringLiteral("%1 by %2").arg(sum).arg(value)));
            }
        }
        // A sanitizer takes its time.
        if (Testing::sanitized)
            value += value / 64;
    }
}

void TestGaussianBlur::largePicturesAreBlurredAlike()
{
    // Several of the pages that are asked for, and one line of pixels more than whole vectors.
    QRandomGenerator random = seededRandom(15);
    QImage const image = randomImage(1601, 1500, random);
    for (int const radius : {3, 30}) {
        QVector<QRgb> const expected =
            blurredBy(StackBlur::blurPlain, image, kernelOf(radius, 0), false);
        QCOMPARE(difference(blurred(image, radius, 0), expected, 1601), QString());
        QPixmap const moved = GaussianBlur::blurBitmap(image.copy(), unsigned(radius), 0);
        QCOMPARE(difference(pixelsOf(moved.toImage()), expected, 1601), QString());
    }
}

void TestGaussianBlur::adviceLeavesTheMemoryAsItIs()
{
    std::vector<char> memory(5 << 20, 'a');
    std::vector<char> const before = memory;
    for (std::size_t const offset : {0U, 1U, 4096U, 3000000U}) {
        for (std::size_t const size : {std::size_t(0), std::size_t(1), memory.size() - offset})
            LargePages::adviseFor(memory.data() + offset, size);
    }
    QVERIFY(memory == before);
}

QTEST_MAIN(TestGaussianBlur)
#include "tst_gaussianblur.moc"
