// SPDX-License-Identifier: MIT
#ifndef ODFSTYLES_H
#define ODFSTYLES_H

#include <QBrush>
#include <QHash>
#include <QPen>
#include <QString>

#include <optional>

class QXmlStreamReader;

/** Names of OpenDocument 1.2, part 1. */
namespace OdfNamespace {

/** Of elements that draw, and of their style. */
inline QString draw()
{
    return QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:drawing:1.0");
}

/** Of the parts of a document. */
inline QString office()
{
    return QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:office:1.0");
}

/** Of what presentations add. */
inline QString presentation()
{
    return QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:presentation:1.0");
}

/** Of styles. */
inline QString style()
{
    return QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:style:1.0");
}

/** Of what is much as in SVG. */
inline QString svg()
{
    return QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0");
}

/** Of text. */
inline QString text()
{
    return QStringLiteral("urn:oasis:names:tc:opendocument:xmlns:text:1.0");
}

} // namespace OdfNamespace

/** How the graphic styles of an OpenDocument file paint, as far as outlines and warnings need it. */
class OdfStyles
{
public:
    /** Adds the style whose start tag the reader is at, if it is one; the reader goes to its end. */
    void read(QXmlStreamReader& reader);

    /** The brush of a style; a solid one if it says nothing. An unknown name is the default style. */
    QBrush brush(QString const& style) const;
    /** Likewise the pen. */
    QPen pen(QString const& style) const;

private:
    /** Null where a style says nothing. */
    struct Properties
    {
        QString parent;
        QString fill;
        QString fillColour;
        QString stroke;
        QString strokeColour;
    };

    /** What the style or the nearest of its parents says. */
    QString lookUp(QString const& style, QString Properties::*property) const;

    QHash<QString, Properties> m_styles; ///< by name; the default one under an empty name
};

#endif // ODFSTYLES_H
