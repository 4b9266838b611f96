// SPDX-License-Identifier: MIT
#ifndef HANDLEDRAG_H
#define HANDLEDRAG_H

#include "model/shapeitem.h"
#include "model/subpaths.h"

#include <QPointF>
#include <QVector>

#include <vector>

/** What a control point that is moved does to the one on the other side of its point. */
enum class NodeDrag {
    Keep, ///< of a smooth point, it turns along; of a symmetric one, it stays its mirror image
    Break ///< it stays where it is
};

/**
 * Moves handles by the same way; their rules stay, their rates follow the places.
 *
 * A point takes along the control points beside it, and the other point of its node where a ring
 * closes (isRing()). A control point whose point stays does what `drag` says to the one opposite,
 * unless that is moved itself. A coordinate that would not be finite stays; so does every one along
 * an axis that the way does not change, to the bit.
 *
 * Whether a point is smooth is seen in the places as they are at the call: a drag in many steps goes
 * through HandleDrag, lest a corner becomes smooth while it passes through a straight line.
 *
 * @param handles unknown ones are ignored
 * @param by not finite: nothing happens
 */
void moveHandles(WorkingShape& shape, QVector<HandleId> const& handles, QPointF const& by,
    NodeDrag drag = NodeDrag::Keep);

/** The larger part of a way, along x or along y alone; x if they are equal. */
QPointF straightened(QPointF const& by);

/** A drag of handles: every step of it begins where all coordinates were at its start. */
class HandleDrag
{
public:
    /** Remembers where everything is. */
    HandleDrag(WorkingShape const& shape, QVector<HandleId> const& handles);

    /**
     * Moves the handles by the whole way from the start of the drag: moveHandles(). By no way,
     * everything is as it was, to the bit.
     *
     * Nothing happens to a shape that has got another number of coordinates since.
     */
    void moveBy(WorkingShape& shape, QPointF const& by, NodeDrag drag = NodeDrag::Keep) const;

private:
    QVector<HandleId> m_handles;
    std::vector<KpReal> m_start; ///< all reals of the outline
};

#endif // HANDLEDRAG_H
