// SPDX-License-Identifier: MIT
#ifndef NODEKIND_H
#define NODEKIND_H

#include "model/shapeitem.h"
#include "model/subpaths.h"

#include <optional>

/**
 * Where a subpath goes through a point, or begins or ends. Where a ring closes, its move and the
 * end of its last step are one node, see isRing().
 */
struct Node
{
    int point; ///< the segment whose point it is; of two, the first
    int twin = -1; ///< the other segment whose point it is; -1 for none
    int incoming = -1; ///< the line or curve that ends there; -1 for none
    int outgoing = -1; ///< the line or curve that starts there; -1 for none
};

/** What the control points on both sides of a node do. Kept nowhere: the places tell it. */
enum class NodeKind {
    Corner, ///< anything else
    Smooth, ///< both sides have one direction, up to half a degree; one may be a line
    Symmetric ///< and the control points are as far from the point, up to half a percent
};

/** The node of a segment's point. @param segment an index of the outline */
Node nodeAt(KpPathSegList const& list, int segment);
/** The node that a point, or a control point, is beside. Nothing for a radius, or a control point
 *  that starts at no node. */
std::optional<Node> nodeOf(KpPathSegList const& list, HandleId id);
/** The nodes that the handles are beside, in the order of their points, none twice. */
std::vector<Node> nodesOf(KpPathSegList const& list, QVector<HandleId> const& handles);
/** The handles, and the other point of each node whose point is among them. Sorted. */
QVector<HandleId> withTwins(KpPathSegList const& list, QVector<HandleId> const& handles);

/** The control point of the curve that ends at the node, if one does. */
std::optional<HandleId> controlBefore(KpPathSegList const& list, Node const& node);
/** The control point of the curve that starts at the node, if one does. */
std::optional<HandleId> controlAfter(KpPathSegList const& list, Node const& node);

/** What a node is. One that is not between two segments, or not finite, is a corner. */
NodeKind nodeKindOf(KpPathSegList const& list, Node const& node);

/** Whether makeNode() would change anything. */
bool canMakeNode(KpPathSegList const& list, Node const& node, NodeKind kind);
/**
 * Moves the control points of a node so that it becomes what is wanted; its point stays.
 *
 * A corner gets its control points onto its point. For a smooth node, a control point beside a
 * line goes on in its direction; two take the direction between theirs, or that of their
 * neighbours where they stand on the point, and keep their distances. For a symmetric one, and
 * where both sides are lines, lines become curves first.
 */
void makeNode(WorkingShape& shape, Node const& node, NodeKind kind);

#endif // NODEKIND_H
