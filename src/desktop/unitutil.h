// SPDX-License-Identifier: MIT
#ifndef UNITUTIL_H
#define UNITUTIL_H

#include "kpgeometry_export.h"

#include <QSize>
#include <QSizeF>
#include <QString>

/**
 * Units of length, page sizes, and what the application said of its screen.
 *
 * A pixel is the application's drawing unit. Inch, foot and yard follow the screen's logical
 * DPI, while metric units, mile, point and Didot point stand at 96 pixels an inch. The split is
 * deliberate: rulers in inches match the screen, and documents keep their size.
 *
 * The variables are written by initScreen() at start-up and read everywhere, without a lock: all
 * of this belongs to the GUI thread.
 */
namespace UnitUtil {

extern KPGEOMETRY_EXPORT double s_pixPerMM; ///< pixels a millimetre
extern KPGEOMETRY_EXPORT double s_pixPerPt; ///< pixels a typographic point
extern KPGEOMETRY_EXPORT double s_pixPerDidot; ///< pixels a Didot point, which is 0.375 mm here
extern KPGEOMETRY_EXPORT double s_pixPerMile; ///< pixels a mile
extern KPGEOMETRY_EXPORT double s_logicalDpi; ///< pixels an inch: the screen's, an integer
extern KPGEOMETRY_EXPORT double s_pixelRatio; ///< physical pixels a logical pixel
extern KPGEOMETRY_EXPORT double s_dpiScale; ///< s_logicalDpi / 96, snapped to 1 and 2
extern KPGEOMETRY_EXPORT QSize s_screenSize; ///< the screen, in pixels of 96 an inch
extern KPGEOMETRY_EXPORT int s_cacheWidth; ///< width of the off-screen cache, in logical pixels
extern KPGEOMETRY_EXPORT int s_cacheHeight; ///< height of the off-screen cache, in logical pixels
extern KPGEOMETRY_EXPORT int s_usedMemory; ///< the application's own; not used here
extern KPGEOMETRY_EXPORT bool s_inited; ///< the application's own; not used here

/**
 * Pixels to a unit, which is given by its code.
 *
 * 0 pixel, 1 mm, 2 cm, 3 m, 4 km, 5 inch, 6 foot, 7 foot (shown as feet and inches), 8 yard,
 * 9 mile, 10 point, 11 pica, 12 Didot point, 13 cicero. Any other code leaves the value.
 */
KPGEOMETRY_EXPORT double pixelToUnit(double value, unsigned int unit);
/** A unit to pixels, as pixelToUnit(). */
KPGEOMETRY_EXPORT double unitToPixel(double value, unsigned int unit);

/**
 * Pixels to a unit, which is given by its name: px, mm, cm, m, km, in, ft, ft-in, yd, mi, pt, pc,
 * dd or cc, in any letter case. Any other name leaves the value.
 */
KPGEOMETRY_EXPORT double pixelToUnit(double value, QString const& unitName);
/** A unit to pixels, by its name. */
KPGEOMETRY_EXPORT double unitToPixel(double value, QString const& unitName);

/** The name that QuarkManager has for a unit's code. */
KPGEOMETRY_EXPORT QString unitStr(unsigned int unit);

/**
 * A length as feet and inches: 30 inches are 2'6", 24 are 2', 5.25 are 0'5.25". Inches have six
 * significant digits and are left out from a millionth downwards. Exactly 12 inches are 0'12",
 * deliberately: a value of that size is shown as it was entered.
 */
KPGEOMETRY_EXPORT QString incheValtoFeetIncheStr(double inches);
/** The same of a length in feet. */
KPGEOMETRY_EXPORT QString feetValtoFeetIncheStr(double feet);

/**
 * A predefined page, upright, by its index 0 to 60; any other index gives ISO A4.
 *
 * The sizes are a contract. Some come twice, and some differ from the norm that they resemble
 * (index 15 is 250 x 354 mm, index 19 is 215 x 275 mm, and of the JIS B sizes 54, 55, 57 and 58
 * have 0.1 mm too much): deliberate, documents hold the index.
 *
 * @param pixelSize receives the size in pixels
 * @param unitSize receives the size in the page's own unit
 * @return the code of that unit: 1 (mm) or 5 (inch)
 */
KPGEOMETRY_EXPORT int preDefinedPage(int index, QSizeF& pixelSize, QSizeF& unitSize);

/** Quarter millimetres to pixels. */
KPGEOMETRY_EXPORT double from7Val(double value);

/**
 * Takes over what the screen is like; the application calls this at start-up and again when its
 * screen changes.
 *
 * Everything is computed anew: the ratio and the scale snap to 1 and 2 within 0.01, the cache is
 * the screen and a margin of 200 by 300 physical pixels, but at least 4100 by 2500. A number out
 * of the range of int becomes the nearer end of it.
 *
 * @param dpi logical dots an inch, rounded to an integer
 * @param pixelRatio physical pixels a logical pixel
 * @param size of the screen, in logical pixels
 */
KPGEOMETRY_EXPORT void initScreen(double dpi, double pixelRatio, QSize size);

/** s_dpiScale. */
KPGEOMETRY_EXPORT double dpiScale();
/** s_dpiScale, too: the scale against 96 pixels an inch. */
KPGEOMETRY_EXPORT double dpiScale96();

/** Physical pixels a pixel of 96 an inch. */
KPGEOMETRY_EXPORT double dpiAndPixel();

/** Whether images at their plain size fit the screen: its scale is within 0.1 of 1. */
KPGEOMETRY_EXPORT bool isSmallImg();

/** Whether the physical pixels are plain too: isSmallImg() and a ratio below 1.1. */
KPGEOMETRY_EXPORT bool isSmallImgReal();

/** The size of a new document: 1.2 by 1.5 screens, truncated. */
KPGEOMETRY_EXPORT QSize docDefaultSize();

/** "linux": the platform of this build. */
KPGEOMETRY_EXPORT QString platForm();
/** False on this platform. */
KPGEOMETRY_EXPORT bool isWin();
/** False on this platform. */
KPGEOMETRY_EXPORT bool isMac();
/** True on this platform. */
KPGEOMETRY_EXPORT bool isLinux();

/**
 * Puts a font family in the place of one that KpVersion::s_fontFamilyList does not hold
 * (case-sensitive): "Arial", or the usual Chinese one when KpVersion::s_langID is 4. Whether that
 * one is installed is not asked.
 *
 * @return whether `family` was replaced
 */
KPGEOMETRY_EXPORT bool changeToSystemExistFamily(QString& family);

/**
 * A font size of the convention of 72 points an inch in that of 96: three quarters of it, to the
 * half point. Fractions from 0.26 to below 0.74 become a half.
 */
KPGEOMETRY_EXPORT double fontSizeFromMac(double size);
/**
 * The way back: four thirds, to the point. Deliberately not the exact inverse, the factor is
 * 1.33333333.
 */
KPGEOMETRY_EXPORT double fontSizeToMac(double size);

/**
 * Waits `ms` milliseconds and handles the events of the thread meanwhile, so the application is
 * entered again. Ends early after 15,000,000 rounds: without events to handle that is less than
 * a second.
 */
KPGEOMETRY_EXPORT void timeDelay(int ms);

/** Empty: not available on this platform. No file is opened. */
KPGEOMETRY_EXPORT QString FileDigest(QString path, int, int);

} // namespace UnitUtil

#endif // UNITUTIL_H
