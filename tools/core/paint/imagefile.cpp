#include "paint/imagefile.h"

#include "paint/picture.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

namespace {

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

} // namespace

std::optional<QImage> decodedPicture(
    QByteArray const& content, QString const& file, Diagnostics& diagnostics)
{
    QBuffer buffer;
    buffer.setData(content);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    // Before it is read: a small file can claim to be a large picture.
    QString fault = reader.size().isValid() ? sizeFault(reader.size()) : QString();
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
