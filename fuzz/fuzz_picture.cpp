// SPDX-License-Identifier: MIT
// Any bytes as a picture of pixels: a picture within the bounds that blurs to one of its size, or one
// reason. What is written of it as PNG holds the same pixels.

#include "common/fonts.h"
#include "diagnosticproperties.h"
#include "gaussianblur.h"
#include "paint/dropshadow.h"
#include "paint/imagefile.h"
#include "paint/picture.h"
#include "pictureproperties.h"

#include <QPixmap>

namespace {

using Fuzzing::require;

QString const file = QStringLiteral("a.png");

/** From there on, what is asserted takes too long to be asserted often. */
constexpr int mostPixels = 256 * 256;

/**
 * Of a damaged GIF file Qt tells no size before all of it is drawn, which takes long if the size that
 * stands behind the six bytes of its signature is large.
 */
bool isLargeGif(QByteArray const& content)
{
    constexpr int signature = 6;
    return content.startsWith("GIF8") && content.size() >= signature + 4
        && (content.at(signature + 1) != 0 || content.at(signature + 3) != 0);
}

void requireWritten(QImage const& picture)
{
    QByteArray const png = encodedPicture(picture, QStringLiteral("png"));
    require(!png.isEmpty(), "a picture can be written");
    Diagnostics diagnostics;
    auto const read = decodedPicture(png, file, diagnostics);
    require(read && read->size() == picture.size(), "a picture that is written can be read");
    // Where there is transparency, colours are rounded when they are multiplied with it.
    if (!picture.hasAlphaChannel())
        require(*read == picture, "an opaque picture stays as it is");
}

void requireBlurred(QImage const& picture, std::size_t size)
{
    auto const radius = static_cast<unsigned int>(size % 255);
    QImage const blurred = GaussianBlur::blurBitmap(picture, radius, 0).toImage();
    require(blurred.size() == picture.size(), "a blurred picture is as large as before");
    DropShadow const shadow {QPoint(4, -3), QColor(0, 0, 0, 128)};
    BlurKernel const kernel {radius % 16, 0};
    QImage const shadowed = withDropShadow(picture, shadow, kernel);
    require(shadowed.size() == shadowedArea(picture.size(), shadow, kernel).size(),
        "a picture with its shadow is as large as was told");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::prepareForImports();
    startFonts();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    QByteArray const content = Fuzzing::bytes(data, size);
    if (isLargeGif(content))
        return 0;
    Diagnostics diagnostics;
    auto const picture = decodedPicture(content, file, diagnostics);
    Fuzzing::requireReason(picture.has_value(), diagnostics);
    if (!picture)
        return 0;
    require(sizeFault(picture->size()).isEmpty(), "a picture is as large as it may be");
    require(picture->format() == QImage::Format_RGB32
            || picture->format() == QImage::Format_ARGB32_Premultiplied,
        "a picture is opaque or premultiplied");
    if (picture->width() * picture->height() > mostPixels)
        return 0;
    requireWritten(*picture);
    requireBlurred(*picture, size);
    return 0;
}
