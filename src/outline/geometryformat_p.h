// SPDX-License-Identifier: MIT
#ifndef GEOMETRYFORMAT_P_H
#define GEOMETRYFORMAT_P_H

#include <QString>

/**
 * The names of the elements and attributes that an outline is written in. Each is a function of
 * constant data: nothing is allocated, and nothing needs to be destroyed at exit.
 */
namespace GeometryFormat {

inline QString geometry()
{
    return QStringLiteral("Geometry");
}

// -- Flags, attributes of geometry()

inline QString closed()
{
    return QStringLiteral("Closed");
}

inline QString noFill()
{
    return QStringLiteral("NoFill");
}

inline QString noLine()
{
    return QStringLiteral("NoLine");
}

// -- Attributes of a coordinate

inline QString value()
{
    return QStringLiteral("V");
}

inline QString base()
{
    return QStringLiteral("B");
}

inline QString rate()
{
    return QStringLiteral("P");
}

} // namespace GeometryFormat

#endif // GEOMETRYFORMAT_P_H
