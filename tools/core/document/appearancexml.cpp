// SPDX-License-Identifier: MIT
#include "document/appearancexml.h"

#include "xmlstreamwriter.h"

#include <QDomDocument>
#include <QLocale>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

namespace Name {

QString theme()
{
    return QStringLiteral("Theme");
}

QString fill()
{
    return QStringLiteral("Fill");
}

QString line()
{
    return QStringLiteral("Line");
}

QString reference()
{
    return QStringLiteral("Reference");
}

/** Of a colour's element, and of the colour of a shadow. */
QString colour()
{
    return QStringLiteral("Color");
}

QString transform()
{
    return QStringLiteral("Transform");
}

QString name()
{
    return QStringLiteral("Name");
}

QString value()
{
    return QStringLiteral("Value");
}

QString shadow()
{
    return QStringLiteral("Shadow");
}

QString radius()
{
    return QStringLiteral("Radius");
}

QString flatness()
{
    return QStringLiteral("Flatness");
}

QString x()
{
    return QStringLiteral("X");
}

QString y()
{
    return QStringLiteral("Y");
}

} // namespace Name

QString exactNumberText(double number)
{
    return QString::number(
        std::isfinite(number) ? number : 0.0, 'g', QLocale::FloatingPointShortest);
}

void writeColour(
    XmlStreamWriter& writer, QString const& name, std::optional<ShapeColour> const& part)
{
    if (!part || !part->colour.isValid())
        return;
    writer.writeStartElement(name);
    KpColor colour = part->colour;
    if (QColor const reference = colour.refColor(); reference.rgb() != (colour.rgb() | 0xFF000000U))
        writer.writeAttribute(Name::reference(), reference.name());
    colour.saveTo(writer, Name::colour());
    for (ColourTransform const& transform : part->transforms) {
        writer.writeStartElement(Name::transform());
        writer.writeAttribute(Name::name(), transform.name);
        writer.writeAttribute(Name::value(), exactNumberText(transform.value));
        writer.writeEndElement();
    }
    writer.writeEndElement();
}

void writeShadow(XmlStreamWriter& writer, ShapeShadow const& shadow)
{
    writer.writeStartElement(Name::shadow());
    writer.writeAttribute(Name::radius(), QString::number(shadow.radius));
    writer.writeAttribute(Name::flatness(), QString::number(shadow.flatness));
    writer.writeAttribute(Name::x(), exactNumberText(shadow.offset.x()));
    writer.writeAttribute(Name::y(), exactNumberText(shadow.offset.y()));
    writer.writeAttribute(Name::colour(), shadow.colour.name(QColor::HexArgb));
    writer.writeEndElement();
}

double numberOf(QXmlStreamAttributes const& attributes, QString const& name)
{
    double const number = attributes.value(name).toDouble();
    return std::isfinite(number) ? number : 0.0;
}

unsigned int countOf(
    QXmlStreamAttributes const& attributes, QString const& name, unsigned int greatest)
{
    return static_cast<unsigned int>(
        std::clamp(numberOf(attributes, name), 0.0, static_cast<double>(greatest)));
}

/** A colour that documents can hold: eight bits of red, green, blue and alpha. */
QColor plainColour(QColor const& colour)
{
    return colour.isValid() ? QColor::fromRgba(colour.rgba()) : QColor();
}

KpColor colourFrom(QXmlStreamAttributes const& attributes)
{
    QDomDocument document;
    QDomElement element = document.createElement(Name::colour());
    for (QXmlStreamAttribute const& attribute : attributes)
        element.setAttribute(attribute.qualifiedName().toString(), attribute.value().toString());
    KpColor colour;
    colour.parse(element);
    return colour;
}

ShapeShadow shadowFrom(QXmlStreamAttributes const& attributes)
{
    ShapeShadow shadow;
    shadow.radius = countOf(attributes, Name::radius(), greatestShadowRadius);
    shadow.flatness =
        countOf(attributes, Name::flatness(), std::numeric_limits<unsigned int>::max());
    shadow.offset = QPointF(numberOf(attributes, Name::x()), numberOf(attributes, Name::y()));
    QColor const colour = plainColour(QColor(attributes.value(Name::colour()).toString()));
    if (colour.isValid())
        shadow.colour = colour;
    return shadow;
}

} // namespace

QString appearanceElement()
{
    return QStringLiteral("Appearance");
}

void writeAppearance(XmlStreamWriter& writer, Appearance const& appearance)
{
    if (appearance.isEmpty())
        return;
    writer.writeStartElement(appearanceElement());
    if (!appearance.theme.isEmpty())
        writer.writeAttribute(Name::theme(), appearance.theme);
    writeColour(writer, Name::fill(), appearance.fill);
    writeColour(writer, Name::line(), appearance.line);
    if (appearance.shadow)
        writeShadow(writer, *appearance.shadow);
    writer.writeEndElement();
}

void AppearanceReader::startElement(QStringRef const& name, QXmlStreamAttributes const& attributes)
{
    if (m_depth == 0)
        m_appearance.theme = attributes.value(Name::theme()).toString();
    else if (m_depth == 1)
        startPart(name, attributes);
    else if (m_depth == 2 && m_part)
        startStep(name, attributes);
    ++m_depth;
}

void AppearanceReader::endElement()
{
    --m_depth;
    if (m_depth == 1 && m_part)
        endPart();
    m_isComplete = m_isComplete || m_depth == 0;
}

void AppearanceReader::startPart(QStringRef const& name, QXmlStreamAttributes const& attributes)
{
    if (name == Name::shadow())
        m_appearance.shadow = shadowFrom(attributes);
    if (name != Name::fill() && name != Name::line())
        return;
    m_part = name == Name::fill() ? &Appearance::fill : &Appearance::line;
    m_read = ShapeColour();
    m_reference = QColor(attributes.value(Name::reference()).toString());
}

void AppearanceReader::startStep(QStringRef const& name, QXmlStreamAttributes const& attributes)
{
    if (name == Name::colour()) {
        m_read.colour = colourFrom(attributes);
    } else if (name == Name::transform() && m_read.transforms.size() < mostTransforms) {
        m_read.transforms.append(
            {attributes.value(Name::name()).toString(), numberOf(attributes, Name::value())});
    }
}

void AppearanceReader::endPart()
{
    KpColor& colour = m_read.colour;
    if (colour.isValid()) {
        QColor const reference = m_reference.isValid() ? m_reference : colour.refColor();
        colour.setColorValues(reference, plainColour(colour), colour.tint(), colour.themeIndex());
        m_appearance.*m_part = m_read;
    }
    m_part = nullptr;
}

Appearance readAppearance(QXmlStreamReader& reader)
{
    AppearanceReader appearance;
    appearance.startElement(reader.qualifiedName(), reader.attributes());
    while (!appearance.isComplete() && !reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement())
            appearance.startElement(reader.qualifiedName(), reader.attributes());
        else if (reader.isEndElement())
            appearance.endElement();
    }
    return appearance.appearance();
}
