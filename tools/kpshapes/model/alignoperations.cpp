// SPDX-License-Identifier: MIT
#include "fit/rulefit.h"
#include "model/binding.h"
#include "model/nodekind.h"
#include "model/operationtables.h"

#include <algorithm>
#include <cmath>

namespace {

/** Where points go along an axis. */
enum class Line { Least, Middle, Greatest };

double along(Axis axis, QPointF const& point)
{
    return axis == Axis::Horizontal ? point.x() : point.y();
}

/** A node and where it stands along an axis. */
struct PlacedNode
{
    Node node;
    double place;
};

/** The nodes of the selected points that stand somewhere, from the least place on. */
std::vector<PlacedNode> selectedNodes(OperationTarget const& target, Axis axis)
{
    KpPathSegList const& list = *target.shape.list;
    QVector<HandleId> const points = pointHandles(pointsAmong(list, target.handles));
    std::vector<PlacedNode> nodes;
    for (Node const& node : nodesOf(list, points)) {
        double const place = along(axis, placeOf(list.segs.at(node.point)->pt));
        if (std::isfinite(place))
            nodes.push_back({node, place});
    }
    std::stable_sort(nodes.begin(), nodes.end(),
        [](PlacedNode const& left, PlacedNode const& right) { return left.place < right.place; });
    return nodes;
}

/** Puts a node at a place; its control points keep their way from it. */
void put(WorkingShape& shape, PlacedNode const& placed, Axis axis, double place)
{
    if (!(placed.place < place || placed.place > place))
        return;
    KpPathSegList const& list = *shape.list;
    double const by = place - placed.place;
    moveHandles(shape, {{placed.node.point, HandleKind::Point}},
        axis == Axis::Horizontal ? QPointF(by, 0.0) : QPointF(0.0, by));
    for (int const segment : {placed.node.point, placed.node.twin}) {
        if (segment < 0)
            continue;
        KpPoint& point = list.segs.at(segment)->pt;
        moveBound(axis == Axis::Horizontal ? point.x : point.y, place, shape.box);
    }
}

double placeOn(Line line, std::vector<PlacedNode> const& nodes)
{
    double const least = nodes.front().place;
    double const greatest = nodes.back().place;
    switch (line) {
    case Line::Least:
        return least;
    case Line::Greatest:
        return greatest;
    default:
        return least / 2.0 + greatest / 2.0;
    }
}

template <Axis Along, Line To> bool canAlign(OperationTarget const& target)
{
    std::vector<PlacedNode> const nodes = selectedNodes(target, Along);
    return nodes.size() > 1 && nodes.front().place < nodes.back().place;
}

template <Axis Along, Line To> void align(OperationTarget& target)
{
    if (!canAlign<Along, To>(target))
        return;
    std::vector<PlacedNode> const nodes = selectedNodes(target, Along);
    double const place = placeOn(To, nodes);
    for (PlacedNode const& node : nodes)
        put(target.shape, node, Along, place);
}

/** Where the node goes when all stand as far from each other. */
double evenPlace(std::vector<PlacedNode> const& nodes, std::size_t index)
{
    double const part = static_cast<double>(index) / static_cast<double>(nodes.size() - 1);
    return nodes.front().place * (1.0 - part) + nodes.back().place * part;
}

template <Axis Along> bool canDistribute(OperationTarget const& target)
{
    std::vector<PlacedNode> const nodes = selectedNodes(target, Along);
    for (std::size_t i = 1; i + 1 < nodes.size(); ++i) {
        double const place = evenPlace(nodes, i);
        if (nodes[i].place < place || nodes[i].place > place)
            return true;
    }
    return false;
}

template <Axis Along> void distribute(OperationTarget& target)
{
    std::vector<PlacedNode> const nodes = selectedNodes(target, Along);
    for (std::size_t i = 1; i + 1 < nodes.size(); ++i)
        put(target.shape, nodes[i], Along, evenPlace(nodes, i));
}

template <Axis Along, Line To> Operation alignOperation(char const* id, char const* text)
{
    return {
        id, text, "Align points", "", OperationMenu::Align, canAlign<Along, To>, align<Along, To>};
}

template <Axis Along> Operation distributeOperation(char const* id, char const* text)
{
    return {id, text, "Distribute points", "", OperationMenu::Align, canDistribute<Along>,
        distribute<Along>};
}

} // namespace

std::vector<Operation> alignOperations()
{
    Axis const x = Axis::Horizontal;
    Axis const y = Axis::Vertical;
    return {
        alignOperation<x, Line::Least>("align-left", "Align &Left"),
        alignOperation<x, Line::Middle>("align-centre", "Align &Centre"),
        alignOperation<x, Line::Greatest>("align-right", "Align &Right"),
        alignOperation<y, Line::Least>("align-top", "Align &Top"),
        alignOperation<y, Line::Middle>("align-middle", "Align &Middle"),
        alignOperation<y, Line::Greatest>("align-bottom", "Align &Bottom"),
        distributeOperation<x>("distribute-horizontally", "Distribute &Horizontally"),
        distributeOperation<y>("distribute-vertically", "Distribute &Vertically"),
    };
}
