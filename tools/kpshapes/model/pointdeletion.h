// SPDX-License-Identifier: MIT
#ifndef POINTDELETION_H
#define POINTDELETION_H

#include "model/shapeitem.h"
#include "model/subpaths.h"

/** Whether deletePoints() would delete anything. */
bool canDeletePoints(KpPathSegList const& list, QVector<HandleId> const& handles);

/**
 * Deletes points and ellipses, of which any handle will do.
 *
 * Without a point, the line or curve that ends there is gone, and the next one starts where that
 * did; of two curves, one is left with the outer control points. Without the point of its move, a
 * subpath begins at its next point; a ring still closes then, there. A subpath without any point is
 * gone.
 *
 * Control points beside a deleted point, or any point, are passed over; if there is nothing else
 * among the handles, their curves become lines.
 *
 * @return what is to be selected then: the point that follows, or the last one, or nothing
 */
QVector<HandleId> deletePoints(WorkingShape& shape, QVector<HandleId> const& handles);

#endif // POINTDELETION_H
