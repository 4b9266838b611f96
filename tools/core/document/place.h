// SPDX-License-Identifier: MIT
#ifndef PLACE_H
#define PLACE_H

#include <kppoint.h>

#include <QPointF>

/** The values of a point. */
inline QPointF placeOf(KpPoint const& point)
{
    return {point.x.value, point.y.value};
}

#endif // PLACE_H
