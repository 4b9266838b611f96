#ifndef SHAPEFORMAT_H
#define SHAPEFORMAT_H

#include <QString>

/**
 * The names of the documents that the tools make: a root with one element a shape, around its
 * Geometry. Of a document from elsewhere the tools look at no more than name() and fillRule() of
 * the element around a Geometry.
 */
namespace ShapeFormat {

inline QString shapes()
{
    return QStringLiteral("Shapes");
}

inline QString shape()
{
    return QStringLiteral("Shape");
}

inline QString name()
{
    return QStringLiteral("Name");
}

/** The box that the outline was made for, in its own units. */
inline QString width()
{
    return QStringLiteral("Width");
}

inline QString height()
{
    return QStringLiteral("Height");
}

/** "evenodd" or "nonzero", on a shape that the two rules fill differently. */
inline QString fillRule()
{
    return QStringLiteral("FillRule");
}

} // namespace ShapeFormat

#endif // SHAPEFORMAT_H
