// SPDX-License-Identifier: MIT
// Makes a shape whose corners keep their size, and gives its box another one.

#include <kpbound.h>
#include <kppath.h>
#include <kppathseglineto.h>
#include <kppathseglist.h>
#include <kppathsegmoveto.h>

#include <cstdio>

//! [corners]
KpPathSegList plate(double corner)
{
    using namespace KpBound;
    KpPoint const places[] = {
        point(absolute(corner), absolute(0)),
        point(fromRight(corner), absolute(0)),
        point(fromRight(0), absolute(corner)),
        point(fromRight(0), fromBottom(corner)),
        point(fromRight(corner), fromBottom(0)),
        point(absolute(corner), fromBottom(0)),
        point(absolute(0), fromBottom(corner)),
        point(absolute(0), absolute(corner)),
    };

    KpPathSegList outline;
    outline.closed = true;
    for (KpPoint const& place : places) {
        if (outline.segs.isEmpty())
            outline.addTail(new KpPathSegMoveTo(place, nullptr)); // the list owns it
        else
            outline.addTail(new KpPathSegLineTo(place, nullptr));
    }
    return outline;
}
//! [corners]

void print(KpPathSegList const& outline)
{
    for (KpPathSeg const* segment : outline.segs)
        std::printf(" %g,%g", segment->pt.x.value, segment->pt.y.value);
    std::putchar('\n');
}

int main()
{
    //! [resize]
    KpPathSegList outline = plate(10);
    outline.updateValue(100, 60);
    print(outline);
    outline.updateValue(300, 60); // three times as wide: the corners are still 10 by 10
    print(outline);
    //! [resize]
}
