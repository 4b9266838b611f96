// SPDX-License-Identifier: MIT
#ifndef SHAPEFORMAT_H
#define SHAPEFORMAT_H

#include <QString>

/**
 * The names of the documents that the tools make: a root with one element a shape, around its
 * Geometry. Of a document from elsewhere the tools look at no more than name() and fillRule() of
 * the element around a Geometry.
 */
namespace ShapeFormat {

/** The root element. */
inline QString shapes()
{
    return QStringLiteral("Shapes");
}

/** The element around one Geometry. */
inline QString shape()
{
    return QStringLiteral("Shape");
}

/** An attribute: what the outline is called. */
inline QString name()
{
    return QStringLiteral("Name");
}

/** An attribute: the width of the box that the outline was made for, in its own units. */
inline QString width()
{
    return QStringLiteral("Width");
}

/** Likewise the height. */
inline QString height()
{
    return QStringLiteral("Height");
}

/** An attribute: "evenodd" or "nonzero", on a shape that the two rules fill differently. */
inline QString fillRule()
{
    return QStringLiteral("FillRule");
}

} // namespace ShapeFormat

#endif // SHAPEFORMAT_H
