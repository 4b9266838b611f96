// SPDX-License-Identifier: MIT
#include "values.h"

#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"

#include <QDomNamedNodeMap>
#include <QPainterPath>
#include <QRgba64>

#include <cmath>
#include <cstring>

namespace {

QJsonArray array(std::initializer_list<double> numbers)
{
    QJsonArray texts;
    for (double const number : numbers)
        texts.append(Vectors::hexText(number));
    return texts;
}

/** "#aarrggbb", or with four digits a channel where one of them is no byte that is repeated. */
QString channels(QColor const& colour)
{
    QRgba64 const exact = colour.rgba64();
    quint16 const values[] = {exact.alpha(), exact.red(), exact.green(), exact.blue()};
    bool isBytes = true;
    for (quint16 const value : values)
        isBytes = isBytes && value % 0x101 == 0;
    QString text = "#";
    for (quint16 const value : values)
        text +=
            isBytes ? QString::asprintf("%02x", value / 0x101U) : QString::asprintf("%04x", value);
    return text;
}

/** The reals of a segment in the order of its undo record. */
QVector<KpReal> realsOf(KpPathSeg& segment)
{
    QVector<KpReal> reals {segment.pt.x, segment.pt.y};
    if (KpPathSegCurveTo const* const curve = segment.toCurveTo())
        reals << curve->ctrl1.x << curve->ctrl1.y << curve->ctrl2.x << curve->ctrl2.y;
    if (KpPathSegEllipse const* const ellipse = segment.toEllipse())
        reals << ellipse->a << ellipse->b;
    return reals;
}

QJsonValue json(KpRecentFileManager::RecFile const& file)
{
    return QJsonArray {file.isTop, file.type, file.path, file.teamName};
}

template <class Entries> QJsonArray eachOf(Entries const& entries)
{
    QJsonArray array;
    for (auto const& entry : entries)
        array.append(json(entry));
    return array;
}

} // namespace

QString Vectors::hexText(double number)
{
    if (std::isnan(number))
        return "nan";
    QString const sign = std::signbit(number) ? "-" : "";
    if (std::isinf(number))
        return sign + "inf";
    if (number == 0.0)
        return sign + "0x0p+0";
    quint64 bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    int const exponent = int(bits >> 52 & 0x7FF);
    QString digits = QString::asprintf("%013llx", bits & 0xFFFFFFFFFFFFFU);
    while (digits.endsWith('0'))
        digits.chop(1);
    // A number below the normal ones has no leading 1, and the least exponent.
    return QString("%1%2%3%4p%5")
        .arg(sign, exponent == 0 ? "0x0" : "0x1", digits.isEmpty() ? "" : ".", digits)
        .arg(QString::asprintf("%+d", exponent == 0 ? -1022 : exponent - 1023));
}

QJsonValue Vectors::json(bool value)
{
    return value;
}

QJsonValue Vectors::json(int value)
{
    return value;
}

QJsonValue Vectors::json(unsigned int value)
{
    return qint64(value);
}

QJsonValue Vectors::json(double value)
{
    return hexText(value);
}

QJsonValue Vectors::json(char const* text)
{
    return QString(text);
}

QJsonValue Vectors::json(QString const& text)
{
    return text;
}

QJsonValue Vectors::json(std::string const& text)
{
    return QString::fromStdString(text);
}

QJsonValue Vectors::json(QByteArray const& bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

QJsonValue Vectors::json(QPointF const& point)
{
    return array({point.x(), point.y()});
}

QJsonValue Vectors::json(QRectF const& rect)
{
    return array({rect.x(), rect.y(), rect.width(), rect.height()});
}

QJsonValue Vectors::json(QSizeF const& size)
{
    return array({size.width(), size.height()});
}

QJsonValue Vectors::json(QSize const& size)
{
    return QJsonArray {size.width(), size.height()};
}

QJsonValue Vectors::json(QMatrix const& matrix)
{
    return array(
        {matrix.m11(), matrix.m12(), matrix.m21(), matrix.m22(), matrix.dx(), matrix.dy()});
}

QJsonValue Vectors::json(QColor const& colour)
{
    if (!colour.isValid())
        return "invalid";
    if (colour.spec() != QColor::Hsl)
        return channels(colour);
    return QJsonObject {{"rgb", channels(colour.toRgb())},
        {"hsl",
            array({colour.hslHueF(), colour.hslSaturationF(), colour.lightnessF(),
                colour.alphaF()})}};
}

QJsonValue Vectors::json(KpColor const& colour)
{
    KpColor whole(colour);
    QVector<int> record;
    whole.toUndoValue(record);
    return QJsonObject {{"colour", json(static_cast<QColor const&>(colour))}, {"theme", record[0]},
        {"tintCode", record[1]}, {"reference", QString::asprintf("#%06x", unsigned(record[2]))}};
}

QJsonValue Vectors::json(KpReal const& real)
{
    return QJsonArray {real.base, hexText(real.rate), hexText(real.value)};
}

QJsonValue Vectors::json(KpPoint const& point)
{
    return QJsonArray {json(point.x), json(point.y)};
}

QJsonValue Vectors::json(KpPathSeg const& segment)
{
    QJsonArray array {int(segment.type)};
    // That its questions are not const belongs to the binary interface.
    for (KpReal const& real : realsOf(const_cast<KpPathSeg&>(segment)))
        array.append(json(real));
    return array;
}

QJsonValue Vectors::json(KpPathSegList const& outline)
{
    QJsonArray segments;
    for (KpPathSeg const* const segment : outline.segs)
        segments.append(json(*segment));
    return QJsonObject {{"closed", outline.closed}, {"noFill", outline.noFill},
        {"noLine", outline.noLine}, {"segments", segments}};
}

QJsonValue Vectors::json(KpPath const& path)
{
    QJsonArray elements;
    for (KpPath::KpElement const& element : path.elements)
        elements.append(QJsonArray {element.type, hexText(element.x), hexText(element.y)});
    return elements;
}

QJsonValue Vectors::json(QPainterPath const& path)
{
    QJsonArray elements;
    for (int i = 0; i < path.elementCount(); ++i) {
        QPainterPath::Element const element = path.elementAt(i);
        elements.append(QJsonArray {int(element.type), hexText(element.x), hexText(element.y)});
    }
    return elements;
}

QJsonValue Vectors::json(QImage const& image)
{
    QJsonArray rows;
    for (int y = 0; y < image.height(); ++y) {
        QString row;
        for (int x = 0; x < image.width(); ++x)
            row +=
                QString::asprintf("%08x", reinterpret_cast<QRgb const*>(image.constScanLine(y))[x]);
        rows.append(row);
    }
    return rows;
}

QJsonValue Vectors::json(QDomElement const& element)
{
    if (element.isNull())
        return QJsonValue::Null;
    QJsonObject attributes;
    QDomNamedNodeMap const map = element.attributes();
    for (int i = 0; i < map.count(); ++i)
        attributes.insert(map.item(i).nodeName(), map.item(i).nodeValue());
    QJsonArray array {element.tagName(), attributes};
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement())
        array.append(json(child));
    return array;
}

QJsonValue Vectors::json(KpRecentFileManager const& manager)
{
    return QJsonObject {{"isModified", manager.m_isModified}, {"maxCount", manager.m_maxCount},
        {"recentFileFolder", manager.m_recentFileFolder},
        {"libraryFolder", manager.m_libraryFolder}, {"symbolFolder", manager.m_symbolFolder},
        {"files", eachOf(manager.m_files)}, {"folders", eachOf(manager.m_folders)}};
}

QJsonValue Vectors::json(KpRecentFileManager::RecFileInfo const& row)
{
    return QJsonArray {row.isTop, row.type, row.name, row.location, row.path};
}
