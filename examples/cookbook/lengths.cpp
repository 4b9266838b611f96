// SPDX-License-Identifier: MIT
// Converts lengths between units and pixels, and lists page sizes.

#include <unitutil.h>

#include <cstdio>

int main()
{
    //! [units]
    UnitUtil::initScreen(96, 1, QSize(1920, 1080)); // once at the start, before any conversion

    double const pixels = UnitUtil::unitToPixel(210, QStringLiteral("mm"));
    std::printf(
        "210 mm are %g px, %g in\n", pixels, UnitUtil::pixelToUnit(pixels, QStringLiteral("in")));
    std::printf("30 inches are %s\n", qPrintable(UnitUtil::incheValtoFeetIncheStr(30)));
    //! [units]

    //! [screen]
    UnitUtil::initScreen(120, 1, QSize(1920, 1080)); // inches follow the screen, metres do not
    std::printf("at 120 dpi: 1 in is %g px, 25.4 mm are %g px\n",
        UnitUtil::unitToPixel(1, QStringLiteral("in")),
        UnitUtil::unitToPixel(25.4, QStringLiteral("mm")));
    //! [screen]

    //! [pages]
    for (int const index : {0, 5, 13, 15}) {
        QSizeF inPixels;
        QSizeF inUnits;
        int const unit = UnitUtil::preDefinedPage(index, inPixels, inUnits);
        std::printf("page %2d: %g x %g %s\n", index, inUnits.width(), inUnits.height(),
            qPrintable(UnitUtil::unitStr(unsigned(unit))));
    }
    //! [pages]
}
