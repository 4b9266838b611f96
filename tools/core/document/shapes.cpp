// SPDX-License-Identifier: MIT
#include "document/shapes.h"

#include "common/text.h"
#include "document/outlinedocument.h"
#include "document/shapeformat.h"
#include "geometryformat_p.h"
#include "numbertext_p.h"
#include "segmentkind_p.h"
#include "xmlstreamwriter.h"
#include "xmltext_p.h"

namespace {

void writeCoordinate(XmlStreamWriter& writer, QString const& letter, KpReal const& real)
{
    writer.writeStartElement(letter);
    writeReal(writer, real);
    writer.writeEndElement();
}

void writeFlag(XmlStreamWriter& writer, QString const& name, bool isSet)
{
    if (isSet)
        writer.writeAttribute(name, "1");
}

void writeShape(XmlStreamWriter& writer, Shape const& shape)
{
    writeShapeStart(writer, shape);
    writeGeometry(writer, *shape.list);
    writer.writeEndElement();
}

} // namespace

void writeShapeStart(XmlStreamWriter& writer, Shape const& shape)
{
    writer.writeStartElement(ShapeFormat::shape());
    if (!shape.name.isEmpty()) {
        writer.writeAttribute(
            ShapeFormat::name(), XmlText::readable(shape.name, XmlText::Controls::AreReplaced));
    }
    writer.writeAttribute(ShapeFormat::width(), numberText(shape.box.width()));
    writer.writeAttribute(ShapeFormat::height(), numberText(shape.box.height()));
    if (shape.fillRule)
        writer.writeAttribute(ShapeFormat::fillRule(), fillRuleText(*shape.fillRule));
}

void writeFlags(XmlStreamWriter& writer, KpPathSegList const& list)
{
    writer.writeAttribute(GeometryFormat::closed(), list.closed ? "1" : "0");
    writeFlag(writer, GeometryFormat::noFill(), list.noFill);
    writeFlag(writer, GeometryFormat::noLine(), list.noLine);
}

void writeReal(XmlStreamWriter& writer, KpReal const& real)
{
    writer.writeAttribute(GeometryFormat::value(), NumberText::fromReal(real.value));
    writer.writeAttribute(GeometryFormat::base(), NumberText::fromBase(real.base));
    if (real.base != KpReal::Absolute)
        writer.writeAttribute(GeometryFormat::rate(), NumberText::fromReal(real.rate));
}

void writeSegment(XmlStreamWriter& writer, KpPathSeg& segment)
{
    auto const* const kind =
        SegmentKind::find([&segment](auto const& known) { return known.type == segment.type; });
    if (!kind)
        return;
    writer.writeStartElement(kind->name());
    SegmentKind::forEachCoordinate(segment, [&writer](QString const& letter, KpReal const& real) {
        writeCoordinate(writer, letter, real);
    });
    writer.writeEndElement();
}

void writeGeometry(XmlStreamWriter& writer, KpPathSegList const& list)
{
    writer.writeStartElement(GeometryFormat::geometry());
    writeFlags(writer, list);
    for (KpPathSeg* const seg : list.segs)
        writeSegment(writer, *seg);
    writer.writeEndElement();
}

QByteArray shapesDocument(Shapes const& shapes)
{
    QByteArray xml;
    XmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(1);
    writer.writeStartDocument();
    writer.writeStartElement(ShapeFormat::shapes());
    for (Shape const& shape : shapes)
        writeShape(writer, shape);
    writer.writeEndDocument();
    return xml;
}
