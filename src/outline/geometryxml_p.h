// SPDX-License-Identifier: MIT
#ifndef GEOMETRYXML_P_H
#define GEOMETRYXML_P_H

#include "geometryformat_p.h"
#include "numbertext_p.h"
#include "quarkmanager.h"
#include "segmentkind_p.h"
#include "xmlattribute_p.h"
#include "xmlelement_p.h"
#include "xmlstreamwriter.h"

#include <QDomElement>
#include <QXmlStreamReader>

/**
 * The XML of outlines, DOM and stream: the coordinate element that carries one bound real,
 * and the segment element around such elements, each written once for all segment kinds.
 *
 * A coordinate element has the attributes V (value), B (base) and P (rate), in this order;
 * B and P only when the base is not 0. So an absolute real is read back with the rule that
 * its segment's constructor gives it; the format has always behaved so, and keeps it.
 *
 * The two readers differ where Qt's two interfaces do, and documents count on both:
 * an empty attribute is ignored in the DOM and stores 0 in the stream; of a move's or line's
 * repeated coordinates the DOM takes the first and the stream the last.
 */
namespace GeometryXml {

/** A flag's text: "1" and, in any letter case, "TRUE" are true; everything else is false. */
template <class Text> void readFlag(bool& flag, Text const& text)
{
    if (XmlAttribute::isGiven(text)) {
        flag = text == QLatin1String("1")
            || text.compare(QLatin1String("TRUE"), Qt::CaseInsensitive) == 0;
    }
}

/** Whether `name` is `letter`, as coordinates and their attributes are called. */
inline bool isLetter(QStringRef const& name, QString const& letter)
{
    return name.size() == 1 && name.at(0) == letter.at(0);
}

/** @param attribute gives the text of an attribute by its name */
template <class Attribute> void readReal(KpReal& real, Attribute attribute)
{
    if (auto const value = attribute(GeometryFormat::value()); XmlAttribute::isGiven(value))
        real.value = NumberText::toReal(value);
    if (auto const base = attribute(GeometryFormat::base()); XmlAttribute::isGiven(base))
        real.base = NumberText::toBase(base);
    if (auto const rate = attribute(GeometryFormat::rate()); XmlAttribute::isGiven(rate))
        real.rate = NumberText::toReal(rate);
}

inline void readReal(KpReal& real, QDomElement const& element)
{
    readReal(real, [&element](QString const& name) { return element.attribute(name); });
}

/** The text of the attribute whose name is `letter`; null if there is none. */
inline QStringRef textOf(QXmlStreamAttributes const& attributes, QString const& letter)
{
    for (QXmlStreamAttribute const& attribute : attributes) {
        if (isLetter(attribute.qualifiedName(), letter))
            return attribute.value();
    }
    return QStringRef();
}

inline void readReal(KpReal& real, QXmlStreamAttributes const& attributes)
{
    readReal(real, [&attributes](QString const& letter) { return textOf(attributes, letter); });
}

/** @param setAttribute takes the name and the text of one attribute */
template <class SetAttribute> void writeReal(KpReal const& real, SetAttribute setAttribute)
{
    setAttribute(GeometryFormat::value(), NumberText::fromReal(real.value));
    if (real.base == KpReal::Absolute)
        return;
    setAttribute(GeometryFormat::base(), NumberText::fromBase(real.base));
    setAttribute(GeometryFormat::rate(), NumberText::fromReal(real.rate));
}

/** Appends the segment's element to `geometry`. */
template <class Segment> void saveSegment(Segment& segment, QDomElement& geometry)
{
    if (geometry.isNull())
        return;
    QDomDocument document = geometry.ownerDocument();
    QDomElement element =
        XmlElement::append(document, geometry, SegmentKind::elementName<Segment>());
    for (auto const& coordinate : SegmentKind::coordinates(segment)) {
        QDomElement child = XmlElement::append(document, element, coordinate.letter());
        writeReal(
            coordinate.real(segment), [&child](QString const& attribute, QString const& text) {
                child.setAttribute(attribute, text);
            });
    }
}

template <class Segment> void saveSegment(Segment& segment, XmlStreamWriter& writer)
{
    writer.writeStartElement(SegmentKind::elementName<Segment>());
    for (auto const& coordinate : SegmentKind::coordinates(segment)) {
        writer.writeEmptyElement(coordinate.letter());
        writeReal(
            coordinate.real(segment), [&writer](QString const& attribute, QString const& text) {
                writer.writeAttribute(attribute, text);
            });
    }
    writer.writeEndElement();
}

/** Reads the first child of each letter. */
template <class Segment> void parseFirstOfEach(Segment& segment, QDomElement const& element)
{
    for (auto const& coordinate : SegmentKind::coordinates(segment))
        readReal(coordinate.real(segment), element.firstChildElement(coordinate.letter()));
}

/** Reads every child whose name is a letter of the kind, in document order. */
template <class Segment> void parseEach(Segment& segment, QDomElement const& element)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        int const quark = QuarkManager::quarkFromString(child.nodeName());
        for (auto const& coordinate : SegmentKind::coordinates(segment)) {
            if (coordinate.quark == quark)
                readReal(coordinate.real(segment), child);
        }
    }
}

/** Reads the segment on whose start tag the reader stands, to its end tag. */
template <class Segment> void parseSegment(Segment& segment, QXmlStreamReader& reader)
{
    QString const segmentName = SegmentKind::elementName<Segment>();
    reader.readNextStartElement();
    // On a device that promises more than it holds, a reader in error is not at the end.
    while (!reader.atEnd() && !reader.hasError()) {
        if (reader.isStartElement()) {
            QStringRef const name = reader.name();
            for (auto const& coordinate : SegmentKind::coordinates(segment)) {
                if (isLetter(name, coordinate.letter())) {
                    readReal(coordinate.real(segment), reader.attributes());
                    break;
                }
            }
            reader.skipCurrentElement();
        } else if (reader.isEndElement() && reader.name() == segmentName) {
            return;
        }
        reader.readNext();
    }
}

} // namespace GeometryXml

#endif // GEOMETRYXML_P_H
