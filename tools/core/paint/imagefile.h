// SPDX-License-Identifier: MIT
#ifndef IMAGEFILE_H
#define IMAGEFILE_H

#include "common/diagnostic.h"

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>

#include <optional>

/**
 * The picture of pixels in a file of any such format that Qt reads, upright, opaque or premultiplied;
 * nothing, with a diagnostic, if it cannot be read or is too large. The content tells the format, and
 * only readers of pixels are asked: what draws a picture may open files that this names.
 *
 * Libraries behind Qt may write to standard error of their own: that is the caller's to prevent.
 *
 * @param file the name in diagnostics
 */
std::optional<QImage> decodedPicture(
    QByteArray const& content, QString const& file, Diagnostics& diagnostics);

/** The formats that decodedPicture() reads here, as Qt names them ("png"); none draws anything. */
QStringList readableFormats();

/** Whether Qt writes pictures in the format ("png", in any letter case). */
bool isWritableFormat(QString const& format);

/** The picture in a file of a writable format, on white where that has no transparency; or empty. */
QByteArray encodedPicture(QImage const& picture, QString const& format);

#endif // IMAGEFILE_H
