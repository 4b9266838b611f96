// SPDX-License-Identifier: MIT
#include "document/outlinesummary.h"

#include "kppath.h"
#include "segmentkind_p.h"

#include <QPainterPath>

#include <algorithm>

namespace {

QString directionOf(KpPath& path)
{
    if (path.isClockWise())
        return QStringLiteral("clockwise");
    // Zero area is neither, so only the reversed path tells.
    KpPath reversed = path;
    std::reverse(reversed.elements.begin(), reversed.elements.end());
    return reversed.isClockWise() ? QStringLiteral("counterclockwise") : QStringLiteral("none");
}

void count(KpPathSeg const& seg, OutlineSummary& facts)
{
    switch (seg.type) {
    case KpPathSeg::SegMoveTo:
        ++facts.moves;
        break;
    case KpPathSeg::SegLineTo:
        ++facts.lines;
        break;
    case KpPathSeg::SegCurveTo:
        ++facts.curves;
        break;
    case KpPathSeg::SegEllipse:
        ++facts.ellipses;
        break;
    }
}

} // namespace

OutlineSummary summaryOf(KpPathSegList& list)
{
    OutlineSummary facts;
    for (KpPathSeg* const seg : qAsConst(list.segs)) {
        count(*seg, facts);
        SegmentKind::forEachReal(*seg, [&facts](KpReal const& real) {
            ++facts.rules[static_cast<std::size_t>(ruleOf(real.base))];
        });
    }
    KpPath path;
    list.toPath(path);
    facts.bounds = path.toPainterPath().boundingRect();
    facts.direction = directionOf(path);
    return facts;
}
