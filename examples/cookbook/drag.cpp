// SPDX-License-Identifier: MIT
// Moves a point by hand so that the shape keeps what was done when its box changes.

#include <kppathseglist.h>

#include <cstdio>

int main()
{
    //! [drag]
    KpPathSegList outline;
    outline.moveTo(QPointF(0, 0));
    outline.lineTo(QPointF(60, 40));
    outline.updateRate(120, 80); // drawn for a box of 120 by 80: take the rates from there

    KpPathSeg* const corner = outline.segs.at(1);
    corner->pt.x.value = 90; // the hand moves the point...
    outline.updateRate(120, 80); // ...and the rates follow the hand

    outline.updateValue(240, 80);
    std::printf("in a box twice as wide: %g, %g\n", corner->pt.x.value, corner->pt.y.value);
    //! [drag]

    //! [parameter]
    corner->pt.x = KpReal(KpReal::FromRight, 30, 210);
    corner->pt.x.value = 200;
    outline.updateRate(240, 80); // only parts of width and height take their rate back
    outline.updateValue(240, 80);
    std::printf("30 from the right edge, as before: %g\n", corner->pt.x.value);

    corner->pt.x.rate = 40; // so write the parameter, not the value
    outline.updateValue(240, 80);
    std::printf("40 from the right edge: %g\n", corner->pt.x.value);
    //! [parameter]
}
