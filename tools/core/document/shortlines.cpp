// SPDX-License-Identifier: MIT
#include "document/shortlines.h"

#include "kppath.h"

namespace {

/** Calls `visit` with the index of each line that is left out, and the path up to there. */
template <class Visitor> void forEachUndrawnLine(KpPathSegList const& list, Visitor visit)
{
    KpPath path;
    for (int i = 0; i < list.segs.count(); ++i) {
        int const before = path.count();
        list.segs.at(i)->addToPath(path);
        if (list.segs.at(i)->type == KpPathSeg::SegLineTo && path.count() == before)
            visit(i, path);
    }
}

bool isAt(KpPoint const& point, KpPath::KpElement const& element)
{
    return !(point.x.value < element.x) && !(point.x.value > element.x)
        && !(point.y.value < element.y) && !(point.y.value > element.y);
}

} // namespace

QVector<int> undrawnLines(KpPathSegList const& list)
{
    QVector<int> indices;
    forEachUndrawnLine(list, [&indices](int index, KpPath const&) { indices << index; });
    return indices;
}

int countLostLines(KpPathSegList const& list)
{
    int count = 0;
    forEachUndrawnLine(list, [&](int index, KpPath const& path) {
        count += isAt(list.segs.at(index)->pt, path.last()) ? 0 : 1;
    });
    return count;
}
