// SPDX-License-Identifier: MIT
#include "model/nodekind.h"
#include "model/operationtables.h"

#include <algorithm>

namespace {

template <NodeKind Kind> bool canMake(OperationTarget const& target)
{
    KpPathSegList const& list = *target.shape.list;
    std::vector<Node> const nodes = nodesOf(list, target.handles);
    return std::any_of(nodes.cbegin(), nodes.cend(),
        [&list](Node const& node) { return canMakeNode(list, node, Kind); });
}

template <NodeKind Kind> void make(OperationTarget& target)
{
    // Nodes keep their indices: segments change their kind at most.
    for (Node const& node : nodesOf(*target.shape.list, target.handles))
        makeNode(target.shape, node, Kind);
}

} // namespace

std::vector<Operation> nodeOperations()
{
    OperationMenu const menu = OperationMenu::Point;
    return {
        {"corner", "&Corner Point", "Make corner point", "Shift+C", menu, canMake<NodeKind::Corner>,
            make<NodeKind::Corner>},
        {"smooth", "&Smooth Point", "Make smooth point", "Shift+S", menu, canMake<NodeKind::Smooth>,
            make<NodeKind::Smooth>},
        {"symmetric", "S&ymmetric Point", "Make symmetric point", "Shift+Y", menu,
            canMake<NodeKind::Symmetric>, make<NodeKind::Symmetric>},
    };
}
