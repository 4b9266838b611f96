// SPDX-License-Identifier: MIT
#ifndef SHAPES_H
#define SHAPES_H

#include "kppathseglist.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class XmlStreamWriter;

/** An outline with what the tools keep beside it: one element of a document that they make. */
struct Shape
{
    QString name; ///< what it is called, or empty
    QSizeF box; ///< that its values are for, in its own units
    std::optional<Qt::FillRule> fillRule; ///< none where both rules fill it alike
    std::shared_ptr<KpPathSegList> list; ///< never null
};

/** The shapes of one document, in its order: the first lies lowest. */
using Shapes = std::vector<Shape>;

/**
 * Writes a `Geometry` element in which every coordinate has its rule, so that an absolute one is
 * read back as such. KpPathSegList::saveTo() leaves that rule out, and readers take the one of a
 * new segment for it.
 */
void writeGeometry(XmlStreamWriter& writer, KpPathSegList const& list);

/** Writes the element of a segment, as writeGeometry() does; nothing for one of no known kind. */
void writeSegment(XmlStreamWriter& writer, KpPathSeg& segment);

/**
 * Writes the start tag of the element around a shape's Geometry: its name, box and fill rule, as
 * shapesDocument() has them. The list is not looked at.
 */
void writeShapeStart(XmlStreamWriter& writer, Shape const& shape);

/** Writes the flags of an outline on its start tag: Closed, the others only if they are set. */
void writeFlags(XmlStreamWriter& writer, KpPathSegList const& list);

/** Writes a coordinate on its start tag: value and rule, the rate only where the rule takes one. */
void writeReal(XmlStreamWriter& writer, KpReal const& real);

/**
 * The document of the shapes, in UTF-8: a root with an element a shape, around its Geometry.
 * Numbers have six significant digits. Characters of names that XML forbids are replaced.
 */
QByteArray shapesDocument(Shapes const& shapes);

#endif // SHAPES_H
