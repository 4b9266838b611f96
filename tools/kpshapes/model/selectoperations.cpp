// SPDX-License-Identifier: MIT
#include "model/operationtables.h"

#include "model/subpaths.h"

#include <algorithm>

namespace {

QVector<HandleId> allPoints(KpPathSegList const& list)
{
    QVector<HandleId> points;
    for (int i = 0; i < list.segs.count(); ++i)
        points << HandleId {i, HandleKind::Point};
    return points;
}

QVector<HandleId> allHandles(KpPathSegList const& list)
{
    QVector<HandleId> handles;
    forEachHandle(list, [&handles](Handle const& handle) { handles << handle.id; });
    return handles;
}

QVector<HandleId> none(OperationTarget const&)
{
    return {};
}

QVector<HandleId> everyPoint(OperationTarget const& target)
{
    return allPoints(*target.shape.list);
}

/** The handle behind the last one selected; behind the last of all, and at first, the first. */
QVector<HandleId> next(OperationTarget const& target)
{
    QVector<HandleId> const all = allHandles(*target.shape.list);
    if (all.isEmpty())
        return {};
    if (target.handles.isEmpty())
        return {all.constFirst()};
    auto const found = std::upper_bound(all.cbegin(), all.cend(), target.handles.constLast());
    return {found == all.cend() ? all.constFirst() : *found};
}

/** The handle before the first one selected; before the first of all, and at first, the last. */
QVector<HandleId> previous(OperationTarget const& target)
{
    QVector<HandleId> const all = allHandles(*target.shape.list);
    if (all.isEmpty())
        return {};
    if (target.handles.isEmpty())
        return {all.constLast()};
    auto const found = std::lower_bound(all.cbegin(), all.cend(), target.handles.constFirst());
    return {found == all.cbegin() ? all.constLast() : *(found - 1)};
}

using Choice = QVector<HandleId> (*)(OperationTarget const&);

template <Choice Chosen> bool wouldChange(OperationTarget const& target)
{
    return Chosen(target) != target.handles;
}

template <Choice Chosen> void choose(OperationTarget& target)
{
    target.handles = Chosen(target);
}

template <Choice Chosen>
Operation selectOperation(char const* id, char const* text, char const* shortcut)
{
    return {id, text, "", shortcut, OperationMenu::Select, wouldChange<Chosen>, choose<Chosen>};
}

} // namespace

std::vector<Operation> selectOperations()
{
    return {
        selectOperation<everyPoint>("select-all", "Select &All Points", "Ctrl+A"),
        selectOperation<none>("select-none", "Select &Nothing", "Ctrl+Shift+A"),
        selectOperation<next>("select-next", "Select Ne&xt Handle", "Alt+PgDown"),
        selectOperation<previous>("select-previous", "Select &Previous Handle", "Alt+PgUp"),
    };
}
