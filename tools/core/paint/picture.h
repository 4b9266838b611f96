#ifndef PICTURE_H
#define PICTURE_H

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <functional>
#include <optional>

class QPainter;

/** Something to be drawn, in pixels of a PNG file or points of the vector formats. */
struct Picture
{
    QSizeF size;
    std::function<void(QPainter&)> paint;
};

/** What forbids a picture of this size, which is too small or too large; or empty. */
QString sizeFault(QSizeF const& size);

/** The formats that drawings are written in. */
enum class PictureFormat { Svg, Png, Pdf };

/** The format with this name ("svg", in any letter case). */
std::optional<PictureFormat> pictureFormat(QString const& name);

/**
 * The picture on white in a file of that format. Nothing, with `error` set, if it would be
 * empty or too large.
 */
std::optional<QByteArray> toFile(Picture const& picture, PictureFormat format, QString& error);

#endif // PICTURE_H
