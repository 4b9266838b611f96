// SPDX-License-Identifier: MIT
#ifndef OUTLINETESTING_H
#define OUTLINETESTING_H

#include "kppath.h"
#include "kppathsegcurveto.h"
#include "kppathsegellipse.h"
#include "kppathseglineto.h"
#include "kppathseglist.h"
#include "kppathsegmoveto.h"
#include "testing.h"
#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>

/** What the tests of outlines share: exact text, random outlines. */
namespace OutlineTesting {

using Testing::exact;

inline QString exact(KpReal const& real)
{
    return QStringLiteral("{%1 %2 %3}").arg(real.base).arg(exact(real.rate), exact(real.value));
}

inline QString exact(KpPoint const& point)
{
    return exact(point.x) + exact(point.y);
}

/** Kind and every field of a segment. */
inline QString exact(KpPathSeg& seg)
{
    QString text = QString::number(seg.type) + exact(seg.pt);
    if (KpPathSegCurveTo const* const curve = seg.toCurveTo())
        text += exact(curve->ctrl1) + exact(curve->ctrl2);
    if (KpPathSegEllipse const* const ellipse = seg.toEllipse())
        text += exact(ellipse->a) + exact(ellipse->b);
    return text;
}

/** Flags and segments of an outline, a line each. */
inline QString exact(KpPathSegList const& list)
{
    QStringList lines {QStringLiteral("closed %1 noLine %2 noFill %3")
                           .arg(list.closed)
                           .arg(list.noLine)
                           .arg(list.noFill)};
    for (KpPathSeg* const seg : list.segs)
        lines << exact(*seg);
    return lines.join(QLatin1Char('\n'));
}

/** The elements of a painter path, a line each. */
inline QString exact(KpPath const& path)
{
    QStringList lines;
    for (KpPath::KpElement const& element : path.elements) {
        lines << QStringLiteral("%1 %2 %3 %4 %5")
                     .arg(element.type)
                     .arg(exact(element.x), exact(element.y), exact(element.reserved1),
                         exact(element.reserved2));
    }
    return lines.join(QLatin1Char('\n'));
}

/** The stream form of an outline. */
inline QByteArray streamXml(KpPathSegList& list)
{
    QByteArray text;
    XmlStreamWriter writer(&text);
    list.saveTo(writer);
    return text;
}

/** The DOM form of an outline: the tree that holds it under a root element. */
inline QDomDocument domXml(KpPathSegList& list)
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("Root"));
    document.appendChild(root);
    list.saveTo(root);
    return document;
}

/** `xml` as a DOM. */
inline QDomDocument domDocument(QByteArray const& xml)
{
    QDomDocument document;
    document.setContent(xml);
    return document;
}

/** The first element of `xml`, read as a DOM. It has outlived its document: for reading only. */
inline QDomElement domElement(QByteArray const& xml)
{
    return domDocument(xml).documentElement();
}

/** Names, attributes (sorted) and child elements of a tree: what does not change between runs. */
inline QString meaning(QDomElement const& element)
{
    QStringList attributes;
    QDomNamedNodeMap const nodes = element.attributes();
    for (int i = 0; i < nodes.count(); ++i)
        attributes << nodes.item(i).nodeName() + QLatin1Char('=') + nodes.item(i).nodeValue();
    attributes.sort();
    QString text =
        element.tagName() + QLatin1Char('[') + attributes.join(QLatin1Char(' ')) + QLatin1Char(']');
    QStringList children;
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement())
        children << meaning(child);
    if (!children.isEmpty())
        text += QLatin1Char('(') + children.join(QLatin1Char(' ')) + QLatin1Char(')');
    return text;
}

/** Reads an outline or a segment from the first element of `xml` in the stream form. */
template <class Readable>
bool parseStream(Readable& readable, QByteArray const& xml, unsigned int context = 0)
{
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    return readable.parse(reader, context);
}

/** Reads an outline or a segment from the first element of `xml` in the DOM form. */
template <class Readable>
bool parseDom(Readable& readable, QByteArray const& xml, unsigned int context = 0)
{
    QDomDocument const document = domDocument(xml);
    return readable.parse(document.documentElement(), context);
}

/** Bytes without a terminator in memory of just their size: one byte too far is seen. */
class ExactlySized
{
public:
    explicit ExactlySized(QByteArray const& bytes)
        : memory(new char[size_t(bytes.size())])
        , size(bytes.size())
    {
        std::copy(bytes.begin(), bytes.end(), memory.get());
    }

    /** The bytes, valid as long as this object. */
    QByteArray bytes() const { return QByteArray::fromRawData(memory.get(), size); }

private:
    std::unique_ptr<char[]> memory;
    int size;
};

inline KpReal randomReal(QRandomGenerator& random)
{
    qint16 const base =
        random.bounded(8) == 0 ? qint16(random.bounded(-32768, 32768)) : qint16(random.bounded(8));
    return KpReal(base, Testing::awkwardReal(random), Testing::awkwardReal(random));
}

inline KpPoint randomPoint(QRandomGenerator& random)
{
    return KpPoint(randomReal(random), randomReal(random));
}

/** Appends `count` segments of all kinds with random reals, and draws the flags. */
inline void fillRandomly(KpPathSegList& list, int count, QRandomGenerator& random)
{
    list.closed = random.bounded(2) == 1;
    list.noLine = random.bounded(2) == 1;
    list.noFill = random.bounded(2) == 1;
    for (int i = 0; i < count; ++i) {
        switch (random.bounded(4)) {
        case 0:
            list.addTail(new KpPathSegMoveTo(randomPoint(random), nullptr));
            break;
        case 1:
            list.addTail(new KpPathSegLineTo(randomPoint(random), nullptr));
            break;
        case 2:
            list.addTail(new KpPathSegCurveTo(
                randomPoint(random), randomPoint(random), randomPoint(random), nullptr));
            break;
        default: {
            auto* const ellipse = new KpPathSegEllipse(
                randomPoint(random), randomReal(random), randomReal(random), nullptr);
            // The constructor binds the radii; any rule may stand there afterwards.
            ellipse->a.base = randomReal(random).base;
            ellipse->b.base = randomReal(random).base;
            list.addTail(ellipse);
            break;
        }
        }
    }
}

} // namespace OutlineTesting

#endif // OUTLINETESTING_H
