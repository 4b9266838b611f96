// SPDX-License-Identifier: MIT
#include "model/handledrag.h"

#include "model/binding.h"
#include "model/nodekind.h"

#include <algorithm>
#include <cmath>

namespace {

void moveReal(KpReal* real, double by, QSizeF const& box)
{
    if (!real || !(by < 0.0 || by > 0.0))
        return;
    double const value = real->value + by;
    if (std::isfinite(value))
        moveBound(*real, value, box);
}

/** A control point that follows the one on the other side of its point. */
struct Follower
{
    HandleId leader;
    HandleId id;
    QPointF point;
    NodeKind kind;
    double distance; ///< from the point, before the drag
};

class Followers
{
public:
    /** @param moved all that is moved, sorted */
    Followers(KpPathSegList const& list, QVector<HandleId> const& moved)
        : m_list(list)
        , m_moved(moved)
    {
        for (HandleId const id : moved)
            collect(id);
    }

    void follow(QSizeF const& box) const
    {
        for (Follower const& follower : m_followers)
            follow(follower, box);
    }

private:
    bool isMoved(HandleId id) const
    {
        return std::binary_search(m_moved.cbegin(), m_moved.cend(), id);
    }

    void collect(HandleId id)
    {
        if (id.kind != HandleKind::Control1 && id.kind != HandleKind::Control2)
            return;
        auto const node = nodeOf(m_list, id);
        if (!node || isMoved({node->point, HandleKind::Point}))
            return;
        auto const opposite = id.kind == HandleKind::Control1 ? controlBefore(m_list, *node)
                                                              : controlAfter(m_list, *node);
        NodeKind const kind = nodeKindOf(m_list, *node);
        if (!opposite || isMoved(*opposite) || kind == NodeKind::Corner)
            return;
        QPointF const point = placeOf(m_list.segs.at(node->point)->pt);
        QPointF const way = handleOf(m_list, *opposite)->position - point;
        m_followers.push_back({id, *opposite, point, kind, std::hypot(way.x(), way.y())});
    }

    void follow(Follower const& follower, QSizeF const& box) const
    {
        QPointF const way = follower.point - handleOf(m_list, follower.leader)->position;
        bool const isMirrored = follower.kind == NodeKind::Symmetric;
        if (coincide(way, QPointF()) && !isMirrored)
            return; // on the point, it has no direction
        double const scale = isMirrored ? 1.0 : follower.distance / std::hypot(way.x(), way.y());
        QPointF const place = follower.point + way * scale;
        if (!isFinite(place))
            return;
        auto const handle = handleOf(m_list, follower.id);
        moveBound(*handle->x, place.x(), box);
        moveBound(*handle->y, place.y(), box);
    }

    KpPathSegList const& m_list;
    QVector<HandleId> const& m_moved;
    std::vector<Follower> m_followers;
};

/** The handles, the other points of their nodes, and the control points beside all these. */
QVector<HandleId> withCompany(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    QVector<HandleId> all = withTwins(list, handles);
    for (int const segment : pointsAmong(list, handles)) {
        Node const node = nodeAt(list, segment);
        for (auto const& control : {controlBefore(list, node), controlAfter(list, node)}) {
            if (control)
                all << *control;
        }
    }
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

} // namespace

void moveHandles(
    WorkingShape& shape, QVector<HandleId> const& handles, QPointF const& by, NodeDrag drag)
{
    bool const isAnyWay = by.x() < 0.0 || by.x() > 0.0 || by.y() < 0.0 || by.y() > 0.0;
    if (!isFinite(by) || !isAnyWay)
        return;
    QVector<HandleId> const moved = withCompany(*shape.list, handles);
    std::optional<Followers> followers;
    if (drag == NodeDrag::Keep)
        followers.emplace(*shape.list, moved);
    for (HandleId const id : moved) {
        if (auto const handle = handleOf(*shape.list, id)) {
            moveReal(handle->x, by.x(), shape.box);
            moveReal(handle->y, by.y(), shape.box);
        }
    }
    if (followers)
        followers->follow(shape.box);
}

QPointF straightened(QPointF const& by)
{
    return std::abs(by.x()) >= std::abs(by.y()) ? QPointF(by.x(), 0.0) : QPointF(0.0, by.y());
}

HandleDrag::HandleDrag(WorkingShape const& shape, QVector<HandleId> const& handles)
    : m_handles(handles)
{
    forEachReal(*shape.list, [this](KpReal const& real) { m_start.push_back(real); });
}

void HandleDrag::moveBy(WorkingShape& shape, QPointF const& by, NodeDrag drag) const
{
    std::vector<KpReal*> reals;
    forEachReal(*shape.list, [&reals](KpReal& real) { reals.push_back(&real); });
    if (reals.size() != m_start.size())
        return;
    for (std::size_t i = 0; i < reals.size(); ++i)
        *reals[i] = m_start[i];
    moveHandles(shape, m_handles, by, drag);
}
