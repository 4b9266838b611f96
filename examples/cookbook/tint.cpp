// SPDX-License-Identifier: MIT
// Makes colours lighter and darker, by hand and by the names that documents use.

#include <colorutil.h>
#include <kpcolor.h>

#include <cstdio>

void print(char const* step, QColor const& colour)
{
    std::printf("%-22s %s\n", step, qPrintable(ColorUtil::RGBToString(colour)));
}

int main()
{
    //! [tint]
    QColor const blue(0x44, 0x72, 0xc4);
    print("blue", blue);
    print("tint 0.4", ColorUtil::tint(blue, 0.4)); // 0 leaves the colour, 1 is white
    print("shade 0.5", ColorUtil::shade(blue, 0.5)); // 0 leaves the colour, 1 is black
    //! [tint]

    //! [drawingml]
    int const val = 50000; // of <a:shade val="50000"/>: 100000 leaves the colour there
    print("shade val=\"50000\"", ColorUtil::shade(blue, 1 - val / 100000.0));
    //! [drawingml]

    //! [named]
    KpColor colour(blue);
    if (ColorUtil::ColorFunc const transform = ColorUtil::getColorFunc(QStringLiteral("lumMod")))
        transform(colour, 0.75); // changes the concrete colour only
    print("lumMod 0.75", colour);
    //! [named]
}
