#include "paint/picture.h"

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include <cmath>

namespace {

constexpr double largestSide = 20000.0;
constexpr double largestArea = 100e6;

void paint(Picture const& picture, QPaintDevice& device)
{
    QPainter painter(&device);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(QPointF(0.0, 0.0), picture.size), Qt::white);
    picture.paint(painter);
}

QByteArray toPng(Picture const& picture)
{
    QImage image(picture.size.toSize(), QImage::Format_RGB32);
    if (image.isNull())
        return QByteArray();
    paint(picture, image);
    QByteArray file;
    QBuffer buffer(&file);
    image.save(&buffer, "PNG");
    return file;
}

QByteArray toSvg(Picture const& picture)
{
    QByteArray file;
    QBuffer buffer(&file);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(picture.size.toSize());
    generator.setViewBox(QRectF(QPointF(0.0, 0.0), picture.size));
    paint(picture, generator);
    return file;
}

QByteArray toPdf(Picture const& picture)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    int const pointsAnInch = 72;
    writer.setResolution(pointsAnInch);
    writer.setPageSize(QPageSize(picture.size, QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0.0, 0.0, 0.0, 0.0));
    paint(picture, writer);
    return file;
}

/** Empty if there is no memory for it. */
QByteArray encoded(Picture const& picture, PictureFormat format)
{
    switch (format) {
    case PictureFormat::Svg:
        return toSvg(picture);
    case PictureFormat::Png:
        return toPng(picture);
    case PictureFormat::Pdf:
        return toPdf(picture);
    }
    return QByteArray();
}

} // namespace

std::optional<PictureFormat> pictureFormat(QString const& name)
{
    if (name.compare(QLatin1String("svg"), Qt::CaseInsensitive) == 0)
        return PictureFormat::Svg;
    if (name.compare(QLatin1String("png"), Qt::CaseInsensitive) == 0)
        return PictureFormat::Png;
    if (name.compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0)
        return PictureFormat::Pdf;
    return std::nullopt;
}

QString sizeFault(QSizeF const& size)
{
    double const width = std::ceil(size.width());
    double const height = std::ceil(size.height());
    if (!std::isfinite(width) || !std::isfinite(height))
        return QStringLiteral("a coordinate is too large or no number and cannot be drawn");
    if (width >= 1.0 && height >= 1.0 && width <= largestSide && height <= largestSide
        && width * height <= largestArea)
        return QString();
    return QStringLiteral("a picture of %1 by %2 is too large")
        .arg(QString::number(width, 'g', 6), QString::number(height, 'g', 6));
}

std::optional<QByteArray> toFile(Picture const& picture, PictureFormat format, QString& error)
{
    error = sizeFault(picture.size);
    if (!error.isEmpty())
        return std::nullopt;
    Picture const whole {
        QSizeF(std::ceil(picture.size.width()), std::ceil(picture.size.height())), picture.paint};
    QByteArray const file = encoded(whole, format);
    if (file.isEmpty()) {
        error = QStringLiteral("there is no memory for the picture");
        return std::nullopt;
    }
    return file;
}
