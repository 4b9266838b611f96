#include "paint/imagefile.h"

#include "paint/picture.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <fcntl.h>
#include <unistd.h>

namespace {

bool hasTransparency(QString const& format)
{
    static QStringList const formats {QStringLiteral("png"), QStringLiteral("webp"),
        QStringLiteral("tif"), QStringLiteral("tiff"), QStringLiteral("ico"),
        QStringLiteral("icns"), QStringLiteral("jp2")};
    return formats.contains(format, Qt::CaseInsensitive);
}

/** While it lives, what the libraries behind Qt say on standard error of their own is dropped. */
class QuietStandardError
{
public:
    QuietStandardError()
    {
        int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    ~QuietStandardError()
    {
        dup2(m_standardError, STDERR_FILENO);
        close(m_standardError);
    }
    QuietStandardError(QuietStandardError const&) = delete;
    QuietStandardError& operator=(QuietStandardError const&) = delete;

private:
    int const m_standardError = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
};

QImage onWhite(QImage const& picture)
{
    QImage result(picture.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, picture);
    return result;
}

} // namespace

QImage decodedPicture(QByteArray const& file, QString& error)
{
    QuietStandardError const quiet;
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    // Before it is read: a small file can claim to be a large picture.
    if (reader.size().isValid())
        error = sizeFault(reader.size());
    if (!error.isEmpty())
        return QImage();
    QImage const picture = reader.read();
    error = picture.isNull() ? reader.errorString() : sizeFault(picture.size());
    if (!error.isEmpty())
        return QImage();
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
