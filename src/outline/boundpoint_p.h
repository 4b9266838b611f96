// SPDX-License-Identifier: MIT
#ifndef BOUNDPOINT_P_H
#define BOUNDPOINT_P_H

#include "kppath.h"
#include "kppoint.h"

#include <QMatrix>
#include <QPointF>

/** What the segments do with the current values of their bound points. */
namespace BoundPoint {

/** A horizontal measure in proportion to the width, not yet bound to a box (rate 0). */
inline KpReal horizontal(double value) noexcept
{
    return KpReal(KpReal::PartOfWidth, 0.0, value);
}

/** A vertical measure in proportion to the height, not yet bound to a box (rate 0). */
inline KpReal vertical(double value) noexcept
{
    return KpReal(KpReal::PartOfHeight, 0.0, value);
}

inline KpPoint at(QPointF const& position) noexcept
{
    return KpPoint(horizontal(position.x()), vertical(position.y()));
}

inline QPointF position(KpPoint const& point) noexcept
{
    return {point.x.value, point.y.value};
}

inline void setPosition(KpPoint& point, QPointF const& position) noexcept
{
    point.x.value = position.x();
    point.y.value = position.y();
}

inline void translate(KpPoint& point, double dx, double dy) noexcept
{
    point.x.value += dx;
    point.y.value += dy;
}

inline void map(KpPoint& point, QMatrix const& matrix)
{
    setPosition(point, matrix.map(position(point)));
}

/**
 * Appends `count` elements for the caller to fill. An element is written where it stays: copied at
 * once, its type would be read together with the padding behind it, which waits for the write.
 */
inline KpPath::KpElement* appendTo(KpPath& path, int count)
{
    int const before = path.count();
    path.elements.resize(before + count);
    return path.elements.data() + before;
}

/** @param type a QPainterPath::ElementType; a painter path numbers its elements alike */
inline KpPath::KpElement element(KpPoint const& point, int type) noexcept
{
    return {point.x.value, point.y.value, 0.0, 0.0, type};
}

} // namespace BoundPoint

#endif // BOUNDPOINT_P_H
