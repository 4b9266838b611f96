// SPDX-License-Identifier: MIT
#include "paint/picture.h"

#include "common/fonts.h"
#include "common/text.h"

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QSvgGenerator>

#include <cmath>

namespace {

constexpr double largestSide = 20000.0;
constexpr double largestArea = 100e6;
constexpr double pointsAnInch = 72.0;
constexpr double inchesAMetre = 1.0 / 0.0254;

void paint(Picture const& picture, QPainter& painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    picture.paint(painter);
}

void paintOnGround(Picture const& picture, QColor const& background, QPainter& painter)
{
    if (background.alpha() > 0)
        painter.fillRect(QRectF(QPointF(0.0, 0.0), picture.size), background);
    paint(picture, painter);
}

/** Whole pixels, of 1/96 inch but for those of a PNG file. */
QSizeF pixelSize(Picture const& picture, PictureSettings const& settings)
{
    double const dots = settings.format == PictureFormat::Png ? settings.dotsPerInch : unitsAnInch;
    // Divided last: 240 units at 300 dots an inch are just 750 pixels.
    auto const whole = [dots](double side) { return std::ceil(side * dots / unitsAnInch); };
    return {whole(picture.size.width()), whole(picture.size.height())};
}

QByteArray toPng(Picture const& picture, PictureSettings const& settings)
{
    bool const isOpaque = settings.background.alpha() == 255;
    QImage image(pixelSize(picture, settings).toSize(),
        isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return QByteArray();
    // The last pixels too, of which the picture may cover a part only.
    image.fill(settings.background);
    int const density = qRound(settings.dotsPerInch * inchesAMetre);
    image.setDotsPerMeterX(density);
    image.setDotsPerMeterY(density);
    image.setText(QStringLiteral("Title"), settings.title);
    {
        QPainter painter(&image);
        double const scale = settings.dotsPerInch / unitsAnInch;
        painter.scale(scale, scale);
        paint(picture, painter);
    }
    QByteArray file;
    QBuffer buffer(&file);
    image.save(&buffer, "PNG");
    return file;
}

/** Qt writes whole millimetres or fractions that are no whole pixels. */
QByteArray measuredInPixels(QByteArray const& svg, QSizeF const& size)
{
    QString text = QString::fromUtf8(svg);
    static QRegularExpression const measures(
        QStringLiteral("<svg width=\"[^\"]*\" height=\"[^\"]*\""));
    QRegularExpressionMatch const match = measures.match(text);
    if (match.hasMatch()) {
        text.replace(match.capturedStart(), match.capturedLength(),
            QStringLiteral("<svg width=\"%1\" height=\"%2\"")
                .arg(numberText(size.width()), numberText(size.height())));
    }
    return text.toUtf8();
}

QByteArray toSvg(Picture const& picture, PictureSettings const& settings)
{
    QByteArray file;
    QBuffer buffer(&file);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(static_cast<int>(unitsAnInch));
    generator.setSize(pixelSize(picture, settings).toSize());
    generator.setViewBox(QRectF(QPointF(0.0, 0.0), picture.size));
    // Qt writes both as they are, and one of its own instead of none.
    generator.setTitle(settings.title.toHtmlEscaped());
    generator.setDescription(QString());
    {
        QPainter painter(&generator);
        paintOnGround(picture, settings.background, painter);
    }
    return measuredInPixels(file, picture.size);
}

/** With its table of offsets as it has to be when what follows `from` has moved by some bytes. */
QByteArray withOffsetsMoved(QByteArray pdf, int from, int bytes)
{
    constexpr int entryLength = 20;
    constexpr int offsetLength = 10;
    QByteArray const heading = "xref\n";
    int const table = pdf.lastIndexOf('\n' + heading) + 1;
    int const trailer = pdf.indexOf("trailer", table);
    int const count = table + heading.size();
    for (int at = pdf.indexOf('\n', count) + 1; at < trailer; at += entryLength) {
        int const offset = pdf.mid(at, offsetLength).toInt();
        if (offset > from) {
            pdf.replace(at, offsetLength,
                QByteArray::number(offset + bytes).rightJustified(offsetLength, '0'));
        }
    }
    int const place = pdf.indexOf('\n', pdf.indexOf("startxref", trailer)) + 1;
    return pdf.replace(place, pdf.indexOf('\n', place) - place, QByteArray::number(table));
}

/** With another entry in the place of the last one of a key. */
QByteArray withEntry(QByteArray pdf, QByteArray const& key, QByteArray const& entry)
{
    int const start = pdf.lastIndexOf('\n' + key + ' ') + 1;
    if (start == 0)
        return pdf;
    int const length = pdf.indexOf('\n', start) - start;
    pdf.replace(start, length, entry);
    return withOffsetsMoved(pdf, start, entry.size() - length);
}

/** With the date that is wanted, or none, instead of that of the day. */
QByteArray dated(QByteArray const& pdf, QDateTime const& date)
{
    QByteArray const key = "/CreationDate";
    return withEntry(pdf, key,
        date.isValid() ? key
                + " (D:" + date.toUTC().toString(QStringLiteral("yyyyMMddHHmmss")).toLatin1() + "Z)"
                       : QByteArray());
}

/** With a page of just the size, at the top left of one that is as many whole points large. */
QByteArray trimmed(QByteArray const& pdf, QSizeF const& points, QSizeF const& wholePoints)
{
    auto const text = [](double length) { return QByteArray::number(length, 'g', 10); };
    QByteArray const key = "/MediaBox";
    return withEntry(pdf, key,
        key + " [0 " + text(wholePoints.height() - points.height()) + ' ' + text(points.width())
            + ' ' + text(wholePoints.height()) + ']');
}

/** Without memory to compress a page Qt writes an empty one, where nothing that is compressed is. */
bool lacksContent(QByteArray const& file)
{
    return file.contains("stream\n\nendstream");
}

/** Empty if there is no memory for it. */
QByteArray toPdf(Picture const& picture, PictureSettings const& settings)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    QSizeF const points = picture.size * (pointsAnInch / unitsAnInch);
    QSizeF const wholePoints(std::ceil(points.width()), std::ceil(points.height()));
    {
        QPdfWriter writer(&buffer);
        writer.setResolution(static_cast<int>(unitsAnInch));
        writer.setPageSize(
            QPageSize(wholePoints, QPageSize::Point, QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF(0.0, 0.0, 0.0, 0.0));
        writer.setTitle(settings.title);
        QPainter painter(&writer);
        paintOnGround(picture, settings.background, painter);
    }
    if (lacksContent(file))
        return QByteArray();
    return trimmed(dated(file, settings.date), points, wholePoints);
}

bool isTooLarge(QSizeF const& size)
{
    return std::isfinite(size.width()) && std::isfinite(size.height())
        && (size.width() > largestSide || size.height() > largestSide
            || size.width() * size.height() > largestArea);
}

/** Empty if there is no memory for it. */
QByteArray encoded(Picture const& picture, PictureSettings const& settings)
{
    // Before the painter takes the default font, which SVG files name beside each shape.
    if (picture.hasText || settings.format == PictureFormat::Svg)
        startFonts();
    switch (settings.format) {
    case PictureFormat::Svg:
        return toSvg(picture, settings);
    case PictureFormat::Png:
        return toPng(picture, settings);
    case PictureFormat::Pdf:
        return toPdf(picture, settings);
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
    if (!std::isfinite(size.width()) || !std::isfinite(size.height()))
        return QStringLiteral("a coordinate is too large or no number and cannot be drawn");
    QString const sides = QStringLiteral("a picture of %1 by %2")
                              .arg(numberText(size.width()), numberText(size.height()));
    if (size.width() < 1.0 || size.height() < 1.0)
        return QStringLiteral("%1 is empty").arg(sides);
    if (!isTooLarge(size))
        return QString();
    return QStringLiteral("%1 is too large: at most %2 a side, and %3 million in all")
        .arg(sides, numberText(largestSide), numberText(largestArea / 1e6));
}

std::optional<QByteArray> toFile(Picture const& picture, PictureSettings const& settings,
    QString const& source, Diagnostics& diagnostics)
{
    QSizeF const size = pixelSize(picture, settings);
    QString fault = sizeFault(size);
    if (isTooLarge(size) && !settings.wayOut.isEmpty())
        fault = QStringLiteral("%1 (%2)").arg(fault, settings.wayOut);
    // Where the picture ends within a pixel, the whole pixel belongs to it.
    Picture const whole {QSizeF(std::ceil(picture.size.width()), std::ceil(picture.size.height())),
        picture.paint, picture.hasText};
    QByteArray const file = fault.isEmpty() ? encoded(whole, settings) : QByteArray();
    if (fault.isEmpty() && file.isEmpty())
        fault = QStringLiteral("there is no memory for the picture");
    if (fault.isEmpty())
        return file;
    diagnostics.error(source, fault);
    return std::nullopt;
}
