// SPDX-License-Identifier: MIT
#include "model/nodekind.h"

#include "model/binding.h"
#include "model/outlineedit.h"

#include <algorithm>
#include <cmath>

namespace {

QPointF pointOf(KpPathSegList const& list, Node const& node)
{
    return placeOf(list.segs.at(node.point)->pt);
}

double lengthOf(QPointF const& way)
{
    return std::hypot(way.x(), way.y());
}

/** The way to a point, in a length of 1; none where it is as good as nothing, or not finite. */
std::optional<QPointF> directionOf(QPointF const& way)
{
    double const length = lengthOf(way);
    if (coincide(way, QPointF()) || !std::isfinite(length))
        return std::nullopt;
    return QPointF(way.x() / length, way.y() / length);
}

/** One side of a node, seen from its point. */
struct NodeSide
{
    std::optional<HandleId> control; ///< none beside a line
    QPointF reach; ///< the way to the control point, or to the other end of a line
    QPointF chord; ///< the way to the other end

    /** How far its control point is, or would be. */
    double controlDistance() const
    {
        bool const hasOwn = control && !coincide(reach, QPointF());
        return hasOwn ? lengthOf(reach) : lengthOf(chord) / 3.0;
    }
};

NodeSide sideOf(KpPathSegList const& list, QPointF const& point,
    std::optional<HandleId> const& control, QPointF const& otherEnd)
{
    QPointF const chord = otherEnd - point;
    std::optional<Handle> const handle = control ? handleOf(list, *control) : std::nullopt;
    return {control, handle ? handle->position - point : chord, chord};
}

/** Both sides; the node must be between two segments. */
std::pair<NodeSide, NodeSide> sidesOf(KpPathSegList const& list, Node const& node)
{
    QPointF const point = pointOf(list, node);
    return {
        sideOf(list, point, controlBefore(list, node), placeOf(startPointOf(list, node.incoming))),
        sideOf(list, point, controlAfter(list, node), placeOf(list.segs.at(node.outgoing)->pt))};
}

bool isBetweenTwo(Node const& node)
{
    return node.incoming >= 0 && node.outgoing >= 0;
}

/** Where the drawing goes through a smooth node; none if nothing tells. */
std::optional<QPointF> directionThrough(NodeSide const& before, NodeSide const& after, bool isFree)
{
    auto const towards = directionOf(before.reach);
    auto const onwards = directionOf(after.reach);
    if (!isFree)
        return before.control ? onwards : directionOf(-before.reach);
    if (towards && onwards) {
        if (auto const mean = directionOf(*onwards - *towards))
            return mean;
    } else if (towards || onwards) {
        return towards ? -*towards : onwards;
    }
    return directionOf(after.chord - before.chord);
}

/** Where the control points of a node are to stand. */
struct ControlPlaces
{
    QPointF before;
    QPointF after;
    bool convertsLines; ///< whether lines must become curves for that
};

std::optional<ControlPlaces> smoothPlaces(
    KpPathSegList const& list, Node const& node, NodeKind kind)
{
    auto const [before, after] = sidesOf(list, node);
    bool const isSymmetric = kind == NodeKind::Symmetric;
    bool const isBesideOneLine = before.control.has_value() != after.control.has_value();
    auto const direction = directionThrough(before, after, isSymmetric || !isBesideOneLine);
    if (!direction)
        return std::nullopt;
    double const mean = before.controlDistance() / 2.0 + after.controlDistance() / 2.0;
    double const distanceBefore = isSymmetric ? mean : before.controlDistance();
    double const distanceAfter = isSymmetric ? mean : after.controlDistance();
    QPointF const point = pointOf(list, node);
    ControlPlaces const places {point - *direction * distanceBefore,
        point + *direction * distanceAfter, isSymmetric || !isBesideOneLine};
    if (!isFinite(places.before) || !isFinite(places.after))
        return std::nullopt;
    return places;
}

std::optional<ControlPlaces> placesFor(KpPathSegList const& list, Node const& node, NodeKind kind)
{
    NodeKind const present = nodeKindOf(list, node);
    bool const isAlready =
        present == kind || (present == NodeKind::Symmetric && kind == NodeKind::Smooth);
    if (isAlready || !isBetweenTwo(node) || !isDivisible(list, node.incoming)
        || !isDivisible(list, node.outgoing))
        return std::nullopt;
    if (kind != NodeKind::Corner)
        return smoothPlaces(list, node, kind);
    QPointF const point = pointOf(list, node);
    return ControlPlaces {point, point, false};
}

void place(WorkingShape& shape, std::optional<HandleId> const& control, QPointF const& place)
{
    if (!control)
        return;
    auto const handle = handleOf(*shape.list, *control);
    moveBound(*handle->x, place.x(), shape.box);
    moveBound(*handle->y, place.y(), shape.box);
}

} // namespace

Node nodeAt(KpPathSegList const& list, int segment)
{
    Node node {segment};
    KpPathSeg const& own = *list.segs.at(segment);
    if (own.type == KpPathSeg::SegEllipse)
        return node;
    if (isStep(own))
        node.incoming = segment;
    bool const goesOn = segment + 1 < list.segs.count() && isStep(*list.segs.at(segment + 1));
    if (goesOn)
        node.outgoing = segment + 1;
    if (!list.closed || (goesOn && isStep(own)))
        return node;
    SubpathRange const range = subpathAt(list, segment);
    if (isRing(list, range))
        return {range.first, range.end - 1, range.end - 1, range.first + 1};
    return node;
}

std::optional<Node> nodeOf(KpPathSegList const& list, HandleId id)
{
    if (!handleOf(list, id))
        return std::nullopt;
    if (id.kind == HandleKind::Point || id.kind == HandleKind::Control2)
        return nodeAt(list, id.segment);
    bool const startsAtNode = id.kind == HandleKind::Control1 && id.segment > 0
        && list.segs.at(id.segment - 1)->type != KpPathSeg::SegEllipse;
    return startsAtNode ? std::optional(nodeAt(list, id.segment - 1)) : std::nullopt;
}

std::vector<Node> nodesOf(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    std::vector<Node> nodes;
    for (HandleId const id : handles) {
        if (auto const node = nodeOf(list, id))
            nodes.push_back(*node);
    }
    std::sort(nodes.begin(), nodes.end(),
        [](Node const& left, Node const& right) { return left.point < right.point; });
    auto const isSame = [](Node const& left, Node const& right) {
        return left.point == right.point;
    };
    nodes.erase(std::unique(nodes.begin(), nodes.end(), isSame), nodes.end());
    return nodes;
}

QVector<HandleId> withTwins(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    QVector<HandleId> all = handles;
    for (int const segment : pointsAmong(list, handles)) {
        Node const node = nodeAt(list, segment);
        if (node.twin >= 0)
            all << HandleId {node.point, HandleKind::Point}
                << HandleId {node.twin, HandleKind::Point};
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

std::optional<HandleId> controlBefore(KpPathSegList const& list, Node const& node)
{
    if (node.incoming < 0 || !list.segs.at(node.incoming)->toCurveTo())
        return std::nullopt;
    return HandleId {node.incoming, HandleKind::Control2};
}

std::optional<HandleId> controlAfter(KpPathSegList const& list, Node const& node)
{
    if (node.outgoing < 0 || !list.segs.at(node.outgoing)->toCurveTo())
        return std::nullopt;
    return HandleId {node.outgoing, HandleKind::Control1};
}

NodeKind nodeKindOf(KpPathSegList const& list, Node const& node)
{
    if (!isBetweenTwo(node))
        return NodeKind::Corner;
    auto const [before, after] = sidesOf(list, node);
    auto const towards = directionOf(before.reach);
    auto const onwards = directionOf(after.reach);
    if (!towards || !onwards || !(before.control || after.control))
        return NodeKind::Corner;
    double const halfADegree = 0.0087; // the sine; coordinates in files are rounded
    double const sine = towards->x() * onwards->y() - towards->y() * onwards->x();
    double const cosine = QPointF::dotProduct(*towards, *onwards);
    if (!(std::abs(sine) <= halfADegree) || !(cosine < 0.0))
        return NodeKind::Corner;
    double const halfAPercent = 0.005;
    double const distanceBefore = lengthOf(before.reach);
    double const distanceAfter = lengthOf(after.reach);
    bool const isSymmetric = before.control && after.control
        && std::abs(distanceBefore - distanceAfter)
            <= halfAPercent * std::max(distanceBefore, distanceAfter);
    return isSymmetric ? NodeKind::Symmetric : NodeKind::Smooth;
}

bool canMakeNode(KpPathSegList const& list, Node const& node, NodeKind kind)
{
    return placesFor(list, node, kind).has_value();
}

void makeNode(WorkingShape& shape, Node const& node, NodeKind kind)
{
    auto const places = placesFor(*shape.list, node, kind);
    if (!places)
        return;
    if (places->convertsLines) {
        makeCurve(shape, node.incoming);
        makeCurve(shape, node.outgoing);
    }
    place(shape, controlBefore(*shape.list, node), places->before);
    place(shape, controlAfter(*shape.list, node), places->after);
}
