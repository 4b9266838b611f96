// SPDX-License-Identifier: MIT
#ifndef VECTORS_VALUES_H
#define VECTORS_VALUES_H

#include "kpcolor.h"
#include "kppath.h"
#include "kppathseglist.h"
#include "kprecentfilemanager.h"

#include <QDomElement>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QMatrix>
#include <QRectF>
#include <QSize>
#include <QStringList>
#include <QVector>

#include <string>

/** How the values of the library stand in the vectors; docs/vectors.md has the table. */
namespace Vectors {

/** A double without loss: "0x1.8p+1", "-0x0p+0", "inf", "-inf", "nan". */
QString hexText(double number);

QJsonValue json(bool value);
QJsonValue json(int value);
QJsonValue json(unsigned int value);
QJsonValue json(double value);
QJsonValue json(char const* text);
QJsonValue json(QString const& text);
QJsonValue json(std::string const& text);
QJsonValue json(QByteArray const& bytes);
QJsonValue json(QPointF const& point);
QJsonValue json(QRectF const& rect);
QJsonValue json(QSizeF const& size);
QJsonValue json(QSize const& size);
QJsonValue json(QMatrix const& matrix);
QJsonValue json(QColor const& colour);
QJsonValue json(KpColor const& colour);
QJsonValue json(KpReal const& real);
QJsonValue json(KpPoint const& point);
QJsonValue json(KpPathSeg const& segment);
QJsonValue json(KpPathSegList const& outline);
QJsonValue json(KpPath const& path);
QJsonValue json(QPainterPath const& path);
QJsonValue json(QImage const& image);
QJsonValue json(QDomElement const& element);
QJsonValue json(KpRecentFileManager const& manager);
QJsonValue json(KpRecentFileManager::RecFileInfo const& row);
inline QJsonValue json(QJsonValue const& value)
{
    return value;
}
template <class Entry> QJsonValue json(QVector<Entry> const& entries)
{
    QJsonArray array;
    for (Entry const& entry : entries)
        array.append(json(entry));
    return array;
}

} // namespace Vectors

#endif // VECTORS_VALUES_H
