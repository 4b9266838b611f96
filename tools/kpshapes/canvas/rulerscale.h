// SPDX-License-Identifier: MIT
#ifndef RULERSCALE_H
#define RULERSCALE_H

#include <QString>

/** The graduation of a ruler, in a unit of UnitUtil. */
struct RulerScale
{
    unsigned int unit; ///< a code of UnitUtil
    double major; ///< from one labelled mark to the next, in that unit
    int divisions; ///< parts between two labelled marks; 1: none

    /** From one mark to the next, in pixels of 96 an inch. */
    double minorPixels() const;
    /** What stands at a labelled mark. @param index of the labelled mark; 0 stands at zero */
    QString label(double index) const;
};

/**
 * The graduation that is fine enough and not too fine: 1, 2 or 5 of a power of ten, and below one
 * inch, foot, yard, pica or cicero the parts that such a unit is divided into.
 *
 * @param unit 0 to 13; any other counts as pixels
 * @param zoom pixels of the widget for one of 96 an inch
 * @param spacing pixels of the widget that labelled marks are apart at least
 */
RulerScale rulerScale(unsigned int unit, double zoom, double spacing);

#endif // RULERSCALE_H
