// SPDX-License-Identifier: MIT
#include "model/pointdeletion.h"

#include "kppathsegmoveto.h"
#include "model/nodekind.h"
#include "model/outlineedit.h"

#include <algorithm>

namespace {

bool isControl(HandleId id)
{
    return id.kind == HandleKind::Control1 || id.kind == HandleKind::Control2;
}

/** For each segment, whether its point is to go. */
std::vector<bool> doomedSegments(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    std::vector<bool> doomed(static_cast<std::size_t>(list.segs.count()), false);
    for (HandleId const id : withTwins(list, handles)) {
        if (!isControl(id) && handleOf(list, id))
            doomed[static_cast<std::size_t>(id.segment)] = true;
    }
    return doomed;
}

/** Deletes points of a subpath while its segments are handed over one by one. */
class SubpathDeletion
{
public:
    SubpathDeletion(Segments& segments, std::vector<bool> const& doomed, Segments& kept)
        : m_segments(segments)
        , m_doomed(doomed)
        , m_kept(kept)
    {
    }

    void run(SubpathRange const& range, bool isRing)
    {
        std::size_t const before = m_kept.size();
        auto index = static_cast<std::size_t>(range.first);
        auto const end = static_cast<std::size_t>(range.end);
        std::unique_ptr<KpPathSeg> first;
        if (range.hasMove && m_doomed[index]) {
            while (index < end && m_doomed[index])
                ++index;
            if (index == end)
                return;
            first = std::move(m_segments[index++]);
            m_kept.push_back(std::make_unique<KpPathSegMoveTo>(first->pt, nullptr));
        }
        for (; index < end; ++index)
            keepOrDelete(index);
        if (isRing && first && m_kept.size() - before > 1)
            keep(std::move(first));
    }

private:
    void keepOrDelete(std::size_t index)
    {
        auto& segment = m_segments[index];
        if (!m_doomed[index]) {
            keep(std::move(segment));
            return;
        }
        if (!m_firstDeleted)
            m_firstDeleted = std::move(segment);
    }

    /** A segment stays; it starts where the first of those deleted before it did. */
    void keep(std::unique_ptr<KpPathSeg> segment)
    {
        KpPathSegCurveTo* const curve = segment->toCurveTo();
        KpPathSegCurveTo* const deleted = m_firstDeleted ? m_firstDeleted->toCurveTo() : nullptr;
        if (curve && deleted)
            curve->ctrl1 = deleted->ctrl1;
        m_firstDeleted.reset();
        m_kept.push_back(std::move(segment));
    }

    Segments& m_segments;
    std::vector<bool> const& m_doomed;
    Segments& m_kept;
    std::unique_ptr<KpPathSeg> m_firstDeleted;
};

struct DeletableSubpath
{
    SubpathRange range;
    bool isRing;
};

QVector<HandleId> makeLinesOfCurves(WorkingShape& shape, QVector<HandleId> const& handles)
{
    QVector<HandleId> points;
    for (int const segment : segmentsAmong(*shape.list, handles)) {
        makeLine(shape, segment);
        points << HandleId {segment, HandleKind::Point};
    }
    return points;
}

} // namespace

bool canDeletePoints(KpPathSegList const& list, QVector<HandleId> const& handles)
{
    return !segmentsAmong(list, handles).empty();
}

QVector<HandleId> deletePoints(WorkingShape& shape, QVector<HandleId> const& handles)
{
    KpPathSegList& list = *shape.list;
    if (!canDeletePoints(list, handles))
        return handles;
    std::vector<bool> const doomed = doomedSegments(list, handles);
    auto const firstDoomed = std::find(doomed.cbegin(), doomed.cend(), true);
    if (firstDoomed == doomed.cend())
        return makeLinesOfCurves(shape, handles);

    std::vector<DeletableSubpath> subpaths;
    for (SubpathRange const& range : allSubpaths(list))
        subpaths.push_back({range, isRing(list, range)});
    Segments segments = takeSegments(list);
    Segments kept;
    for (DeletableSubpath const& subpath : subpaths)
        SubpathDeletion(segments, doomed, kept).run(subpath.range, subpath.isRing);
    appendSegments(list, std::move(kept));

    auto const next = static_cast<int>(firstDoomed - doomed.cbegin());
    if (list.segs.isEmpty())
        return {};
    return {{std::min(next, list.segs.count() - 1), HandleKind::Point}};
}
