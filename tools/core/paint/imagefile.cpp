// SPDX-License-Identifier: MIT
#include "paint/imagefile.h"

#include "document/contentkind.h"
#include "paint/picture.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QXmlStreamReader>
#include <QtEndian>

#include <algorithm>

namespace {

/** Formats of pixels, as Qt names them: those that begin with bytes of their own come first. */
constexpr char const* rasterFormats[] = {"png", "jpeg", "jpg", "gif", "bmp", "webp", "tiff", "tif",
    "ico", "cur", "icns", "jp2", "mng", "pbm", "pgm", "ppm", "xbm", "xpm", "wbmp", "tga"};

/** Whether it begins as GIF files do. Qt's reader of them goes on without, as far as it can. */
bool isGif(QByteArray const& content)
{
    return content.startsWith("GIF87a") || content.startsWith("GIF89a");
}

/**
 * The format of what the device holds; empty if that is none of pixels. Whoever leaves the choice to
 * Qt asks every plugin that is installed, and one draws a picture with all the files that it names.
 */
QByteArray rasterFormat(QBuffer& device)
{
    auto const* const found = std::find_if(
        std::begin(rasterFormats), std::end(rasterFormats), [&device](QByteArray const& format) {
            // Of any other file it makes room for a picture of a size that it takes for one.
            if (format == "gif" && !isGif(device.data()))
                return false;
            // The reader before may have read on.
            device.seek(0);
            QImageReader reader(&device, format);
            reader.setAutoDetectImageFormat(false);
            return reader.canRead();
        });
    device.seek(0);
    return found == std::end(rasterFormats) ? QByteArray() : QByteArray(*found);
}

/** Why the content is no picture of pixels. */
QString formatFault(QByteArray const& content)
{
    QXmlStreamReader root(content);
    root.readNextStartElement();
    if (root.name() == QLatin1String("svg"))
        return QStringLiteral("an SVG picture, not one of pixels");
    QString const kind = kindOfContent(content);
    return kind.isEmpty() ? QStringLiteral("Unsupported image format")
                          : QStringLiteral("%1, of no format that is read").arg(kind);
}

bool hasTransparency(QString const& format)
{
    static QStringList const formats {QStringLiteral("png"), QStringLiteral("webp"),
        QStringLiteral("tif"), QStringLiteral("tiff"), QStringLiteral("ico"),
        QStringLiteral("icns"), QStringLiteral("jp2")};
    return formats.contains(format, Qt::CaseInsensitive);
}

QImage onWhite(QImage const& picture)
{
    QImage result(picture.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, picture);
    return result;
}

/**
 * The size that the content claims. Qt tells none of a GIF picture that is damaged, and yet makes room
 * for all of it: its header tells.
 */
QSize claimedSize(QImageReader const& reader, QByteArray const& content)
{
    constexpr int widthAt = 6;
    constexpr int heightAt = 8;
    QSize const size = reader.size();
    if (size.isValid() || reader.format() != "gif" || content.size() < heightAt + 2)
        return size;
    char const* const header = content.constData();
    return {qFromLittleEndian<quint16>(header + widthAt),
        qFromLittleEndian<quint16>(header + heightAt)};
}

/**
 * Whether a chunk of a PNG picture says that it is longer than what is left, which cannot be read: room
 * would be made for all of it.
 */
bool isCutOff(QByteArray const& png)
{
    constexpr qint64 signature = 8;
    constexpr qint64 frame = 12; // of a chunk: its length, its name and a check sum
    constexpr qint64 nameAt = 4;
    qint64 at = signature;
    while (at + frame <= png.size()) {
        char const* const chunk = png.constData() + at;
        if (std::equal(chunk + nameAt, chunk + 2 * nameAt, "IEND"))
            return false;
        at += frame + qFromBigEndian<quint32>(chunk);
    }
    return at > png.size();
}

} // namespace

std::optional<QImage> decodedPicture(
    QByteArray const& content, QString const& file, Diagnostics& diagnostics)
{
    QBuffer buffer;
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
    QByteArray const format = rasterFormat(buffer);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    QString fault = format.isEmpty() ? formatFault(content) : QString();
    if (format == "png" && isCutOff(content))
        fault = QStringLiteral("Unable to read image data");
    // Before it is read: a small file can claim to be a large picture.
    QSize const claimed = fault.isEmpty() ? claimedSize(reader, content) : QSize();
    if (fault.isEmpty() && claimed.isValid())
        fault = sizeFault(claimed);
    QImage picture;
    if (fault.isEmpty()) {
        picture = reader.read();
        fault = picture.isNull() ? reader.errorString() : sizeFault(picture.size());
    }
    if (!fault.isEmpty()) {
        diagnostics.error(file, fault);
        return std::nullopt;
    }
    return picture.convertToFormat(
        picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

QStringList readableFormats()
{
    QList<QByteArray> const installed = QImageReader::supportedImageFormats();
    QStringList result;
    for (char const* const format : rasterFormats) {
        if (installed.contains(format))
            result << QString::fromLatin1(format);
    }
    return result;
}

bool isWritableFormat(QString const& format)
{
    return QImageWriter::supportedImageFormats().contains(format.toLower().toLatin1());
}

QByteArray encodedPicture(QImage const& picture, QString const& format)
{
    QByteArray file;
    QBuffer buffer(&file);
    QImageWriter writer(&buffer, format.toLower().toLatin1());
    bool const isWritten = writer.write(
        picture.hasAlphaChannel() && !hasTransparency(format) ? onWhite(picture) : picture);
    return isWritten ? file : QByteArray();
}
