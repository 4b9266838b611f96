// SPDX-License-Identifier: MIT
#ifndef FONTS_H
#define FONTS_H

/**
 * For a program that has no QGuiApplication until a font is needed: what makes one, called by
 * startFonts(). Set before there are threads. By default nothing is called, as is right for
 * programs that have an application.
 */
void setFontStarter(void (*starter)());

/** Before the first font is used, and before a painter begins that will draw text. */
void startFonts();

#endif // FONTS_H
