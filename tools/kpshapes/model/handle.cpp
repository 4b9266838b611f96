// SPDX-License-Identifier: MIT
#include "model/handle.h"

std::optional<Handle> handleOf(KpPathSegList const& list, HandleId id)
{
    std::optional<Handle> found;
    if (id.segment < 0 || id.segment >= list.segs.count())
        return found;
    forEachHandle(*list.segs.at(id.segment), id.segment, [&](Handle const& handle) {
        if (handle.id == id)
            found = handle;
    });
    return found;
}
