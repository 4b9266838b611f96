// SPDX-License-Identifier: MIT
#include "model/operationtables.h"

#include "kppathseglineto.h"
#include "kppathsegmoveto.h"
#include "model/nodekind.h"
#include "model/outlineedit.h"
#include "model/pointdeletion.h"

#include <algorithm>

namespace {

std::vector<int> divisibleSegments(OperationTarget const& target)
{
    KpPathSegList const& list = *target.shape.list;
    std::vector<int> segments = segmentsAmong(list, target.handles);
    segments.erase(std::remove_if(segments.begin(), segments.end(),
                       [&list](int segment) { return !isDivisible(list, segment); }),
        segments.end());
    return segments;
}

bool canInsert(OperationTarget const& target)
{
    return !divisibleSegments(target).empty();
}

void insert(OperationTarget& target)
{
    std::vector<int> const segments = divisibleSegments(target);
    if (!segments.empty())
        target.handles = pointHandles(insertMidpoints(target.shape, segments));
}

bool canDelete(OperationTarget const& target)
{
    return canDeletePoints(*target.shape.list, target.handles);
}

void deleteSelected(OperationTarget& target)
{
    target.handles = deletePoints(target.shape, target.handles);
}

/** The selected points at which a subpath goes on. */
std::vector<int> splittingPoints(OperationTarget const& target)
{
    KpPathSegList const& list = *target.shape.list;
    std::vector<int> splitting;
    for (int const point : pointsAmong(list, target.handles)) {
        bool const goesOn = point + 1 < list.segs.count() && isStep(*list.segs.at(point + 1));
        if (goesOn && isStep(*list.segs.at(point)))
            splitting.push_back(point);
    }
    return splitting;
}

bool canSplit(OperationTarget const& target)
{
    return !splittingPoints(target).empty();
}

void split(OperationTarget& target)
{
    std::vector<int> const splitting = splittingPoints(target);
    if (splitting.empty())
        return;
    std::vector<int> moves;
    Segments all;
    auto next = splitting.cbegin();
    int index = 0;
    for (auto& segment : takeSegments(*target.shape.list)) {
        KpPoint const end = segment->pt;
        all.push_back(std::move(segment));
        if (next != splitting.cend() && *next == index++) {
            ++next;
            moves.push_back(static_cast<int>(all.size()));
            all.push_back(std::make_unique<KpPathSegMoveTo>(end, nullptr));
        }
    }
    appendSegments(*target.shape.list, std::move(all));
    target.handles = pointHandles(moves);
}

/** The selected moves that stand behind another subpath which they can go on from. */
std::vector<int> joiningMoves(OperationTarget const& target)
{
    KpPathSegList const& list = *target.shape.list;
    std::vector<int> joining;
    for (int const point : pointsAmong(list, target.handles)) {
        if (point > 0 && list.segs.at(point)->type == KpPathSeg::SegMoveTo
            && list.segs.at(point - 1)->type != KpPathSeg::SegEllipse)
            joining.push_back(point);
    }
    return joining;
}

bool canJoin(OperationTarget const& target)
{
    return !joiningMoves(target).empty();
}

void join(OperationTarget& target)
{
    std::vector<int> const joining = joiningMoves(target);
    if (joining.empty())
        return;
    std::vector<int> joints;
    Segments all;
    auto next = joining.cbegin();
    int index = 0;
    for (auto& segment : takeSegments(*target.shape.list)) {
        if (next == joining.cend() || *next != index++) {
            all.push_back(std::move(segment));
            continue;
        }
        ++next;
        if (!coincide(placeOf(all.back()->pt), placeOf(segment->pt)))
            all.push_back(std::make_unique<KpPathSegLineTo>(segment->pt, nullptr));
        joints.push_back(static_cast<int>(all.size()) - 1);
    }
    appendSegments(*target.shape.list, std::move(all));
    joints.erase(std::unique(joints.begin(), joints.end()), joints.end());
    target.handles = pointHandles(joints);
}

} // namespace

std::vector<Operation> pointOperations()
{
    OperationMenu const menu = OperationMenu::Point;
    return {
        {"insert-point", "&Insert Point", "Insert point", "Insert", menu, canInsert, insert},
        {"delete", "&Delete", "Delete points", "Delete", menu, canDelete, deleteSelected},
        {"split", "S&plit Subpath", "Split subpath", "Shift+B", menu, canSplit, split},
        {"join", "&Join Subpaths", "Join subpaths", "Shift+J", menu, canJoin, join},
    };
}

QVector<HandleId> pointHandles(std::vector<int> const& segments)
{
    QVector<HandleId> handles;
    for (int const segment : segments)
        handles << HandleId {segment, HandleKind::Point};
    return handles;
}
