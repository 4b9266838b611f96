// SPDX-License-Identifier: MIT
#include "document/geometrywalker.h"

#include "segmentkind_p.h"

#include <algorithm>

SegmentWalker::SegmentWalker(KpPathSeg& segment)
{
    SegmentKind::forEachCoordinate(segment, [this](QString const& letter, KpReal const& real) {
        m_coordinates.append({letter, &real, false});
    });
}

SegmentWalker::Match SegmentWalker::enter(QString const& elementName)
{
    auto const found = std::find_if(m_coordinates.begin(), m_coordinates.end(),
        [&elementName](Coordinate const& known) { return known.letter == elementName; });
    if (found == m_coordinates.end())
        return {nullptr, false};
    bool const isFirst = !found->isGiven;
    found->isGiven = true;
    return {found->real, isFirst};
}

KpPathSeg* GeometryWalker::enter(QString const& elementName)
{
    bool const isSegment = SegmentKind::find(
        [&elementName](SegmentKind::Kind const& kind) { return kind.name() == elementName; });
    return isSegment ? m_list.segs.value(m_next++) : nullptr;
}
