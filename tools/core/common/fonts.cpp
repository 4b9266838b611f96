// SPDX-License-Identifier: MIT
#include "common/fonts.h"

namespace {

void (*fontStarter)() = nullptr;

} // namespace

void setFontStarter(void (*starter)())
{
    fontStarter = starter;
}

void startFonts()
{
    if (fontStarter)
        fontStarter();
}
