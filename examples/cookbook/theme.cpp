// SPDX-License-Identifier: MIT
// Takes a colour from a theme, draws with it, and follows the theme when it changes.

#include <kpcolor.h>

#include <cstdio>

int main()
{
    //! [theme]
    int const accent = 5; // a slot of the theme
    KpColor fill;
    fill.setTintColor(QColor(0x44, 0x72, 0xc4), -50, accent); // half way to black

    QColor const drawn = fill; // a KpColor is a QColor: brushes and pens take it as it is
    std::printf("drawn with     %s\n", qPrintable(drawn.name()));

    fill.setRefColor(QColor(0xd9, 0x82, 0x2b), -1); // another theme; -1 keeps the slot
    std::printf("another theme  %s, still slot %d and tint %d\n", qPrintable(fill.name()),
        fill.themeIndex(), fill.tint());
    //! [theme]

    //! [plain]
    KpColor plain(drawn); // the concrete colour alone: no theme, no tint
    std::printf("a plain colour %s, slot %d\n", qPrintable(plain.name()), plain.themeIndex());
    //! [plain]
}
