#ifndef IMAGEFILE_H
#define IMAGEFILE_H

#include "common/diagnostic.h"

#include <QByteArray>
#include <QImage>
#include <QString>

#include <optional>

/**
 * The picture in a file of any format that Qt reads, upright, opaque or premultiplied; nothing,
 * with a diagnostic, if it cannot be read or is too large.
 *
 * Libraries behind Qt may write to standard error of their own: that is the caller's to prevent.
 *
 * @param file the name in diagnostics
 */
std::optional<QImage> decodedPicture(
    QByteArray const& content, QString const& file, Diagnostics& diagnostics);

/** Whether Qt writes pictures in the format ("png", in any letter case). */
bool isWritableFormat(QString const& format);

/** The picture in a file of a writable format, on white where that has no transparency; or empty. */
QByteArray encodedPicture(QImage const& picture, QString const& format);

#endif // IMAGEFILE_H
