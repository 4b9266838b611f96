#ifndef IMAGEFILE_H
#define IMAGEFILE_H

#include <QByteArray>
#include <QImage>
#include <QString>

/**
 * The picture in a file of any format that Qt reads, upright, opaque or premultiplied; null, with
 * `error` set, if it cannot be read or is too large.
 */
QImage decodedPicture(QByteArray const& file, QString& error);

/** Whether Qt writes pictures in the format ("png", in any letter case). */
bool isWritableFormat(QString const& format);

/** The picture in a file of a writable format, on white where that has no transparency; or empty. */
QByteArray encodedPicture(QImage const& picture, QString const& format);

#endif // IMAGEFILE_H
