// SPDX-License-Identifier: MIT
#include "document/exactpath.h"

#include "kppath.h"
#include "kppathseg.h"

QPainterPath exactPath(KpPathSegList const& list)
{
    KpPath path;
    for (KpPathSeg* const seg : list.segs) {
        if (!seg)
            continue;
        if (seg->type == KpPathSeg::SegLineTo)
            path.append({seg->pt.x.value, seg->pt.y.value, 0.0, 0.0, QPainterPath::LineToElement});
        else
            seg->addToPath(path);
    }
    if (list.closed)
        path.closeSubpath();
    return path.toPainterPath();
}
