// SPDX-License-Identifier: MIT
#ifndef PICTURE_H
#define PICTURE_H

#include "common/diagnostic.h"

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QSizeF>
#include <QString>

#include <functional>
#include <optional>

class QPainter;

/** Picture units an inch. One unit is as long in every format: a drawing has one physical size. */
constexpr double unitsAnInch = 96.0;

/** Something to be drawn, in units of 1/96 inch. */
struct Picture
{
    QSizeF size; ///< of the page, which begins at (0, 0)
    std::function<void(QPainter&)> paint; ///< draws it, and leaves the background alone
    bool hasText =
        true; ///< false only if neither text nor a shadow is drawn: both need an application
};

/** The formats that drawings are written in. */
enum class PictureFormat { Svg, Png, Pdf };

/** The format with this name ("svg", in any letter case). */
std::optional<PictureFormat> pictureFormat(QString const& name);

/** How a picture becomes a file. */
struct PictureSettings
{
    PictureFormat format = PictureFormat::Svg; ///< of the file
    QColor background = Qt::white; ///< transparent: none is drawn
    double dotsPerInch = unitsAnInch; ///< of a PNG file; finite and above 0
    QString title; ///< in the file's properties
    /** The date in a PDF file, which has none if it is invalid: the same picture, the same bytes. */
    QDateTime date;
    QString wayOut; ///< what would make a picture smaller, for diagnostics; or empty
};

/** What forbids a picture of this many whole pixels, which is empty or too large; or empty. */
QString sizeFault(QSizeF const& size);

/**
 * The picture as a file, in whole units; the last one begun. An SVG file measures pixels of 1/96
 * inch, a PDF page 0.75 point a unit; a PNG file tells its density. Nothing, with a diagnostic, if the picture would be
 * empty or too large.
 *
 * @param source what is drawn, in diagnostics
 */
std::optional<QByteArray> toFile(Picture const& picture, PictureSettings const& settings,
    QString const& source, Diagnostics& diagnostics);

#endif // PICTURE_H
