// SPDX-License-Identifier: MIT
#ifndef APPEARANCEXML_H
#define APPEARANCEXML_H

#include "document/appearance.h"

#include <QStringRef>

class QXmlStreamAttributes;
class QXmlStreamReader;
class XmlStreamWriter;

/** As many transforms of one colour are read; the others are left out. */
constexpr int mostTransforms = 1000;

/** The greatest radius of a shadow. */
constexpr unsigned int greatestShadowRadius = 254;

/** The name of the element that tells how a shape looks. */
QString appearanceElement();

/**
 * Writes one `Appearance` element, or nothing for an appearance that says nothing.
 *
 * A colour is written as KpColor does, within a `Fill` or `Line` that holds its transforms, too.
 * Where the reference is not the concrete colour itself it stands there once more, as every colour
 * of red, green and blue can be read. An invalid colour is left out. A number is written so that it
 * is read back to the bit, and as 0 if it is not finite.
 */
void writeAppearance(XmlStreamWriter& writer, Appearance const& appearance);

/**
 * Makes an appearance of the tags that it is told, whatever they are read with.
 *
 * What is not known is ignored, and so is a colour that is none. A number that cannot be read, or
 * that is not finite, is 0; a radius, flatness or theme index beyond its range is the nearer end.
 */
class AppearanceReader
{
public:
    /** The start tag of the `Appearance` itself, and then of each element within. */
    void startElement(QStringRef const& name, QXmlStreamAttributes const& attributes);
    /** The end tag of one of them. */
    void endElement();
    /** Whether the end tag of the `Appearance` was among them. */
    bool isComplete() const { return m_isComplete; }
    /** What has been read. */
    Appearance const& appearance() const { return m_appearance; }

private:
    void startPart(QStringRef const& name, QXmlStreamAttributes const& attributes);
    void startStep(QStringRef const& name, QXmlStreamAttributes const& attributes);
    void endPart();

    Appearance m_appearance;
    int m_depth = 0;
    bool m_isComplete = false;
    /** The colour at whose children it is, or null. */
    std::optional<ShapeColour> Appearance::*m_part = nullptr;
    ShapeColour m_read; ///< of that part
    QColor m_reference; ///< likewise; invalid: the colour tells it
};

/** Reads the element at whose start tag the reader is, and goes on to its end tag. */
Appearance readAppearance(QXmlStreamReader& reader);

#endif // APPEARANCEXML_H
