// SPDX-License-Identifier: MIT
#ifndef QUARKMANAGER_H
#define QUARKMANAGER_H

#include "kpbx_export.h"

class QString;

/**
 * The fixed table of well-known names and their numbers, the quarks.
 *
 * Units: 0 px, 1 mm, 2 cm, 3 m, 4 km, 5 in, 6 ft, 7 ft-in, 8 yd, 9 mi, 10 pt, 11 pc,
 * 12 dd, 13 cc. Outline elements: 52 MoveTo, 53 LineTo, 54 CurveTo, 55 Ellipse, 56 X, 57 Y,
 * 58 A, 59 B, 60 C, 61 D. The table never grows, so no document can make it grow.
 */
class QuarkManager
{
public:
    /** The number of `name` (case-sensitive), or -1 for a name the table does not hold. */
    KPBX_EXPORT static int quarkFromString(QString const& name);
    /** The name with the number `quark`, or an empty string. */
    KPBX_EXPORT static QString quarkToString(int quark);
};

#endif // QUARKMANAGER_H
