// SPDX-License-Identifier: MIT
#ifndef KPVERSION_H
#define KPVERSION_H

#include "kpbx_export.h"

#include <QStringList>

/** What the application found out about its installation at start-up; it fills these in. */
class KpVersion
{
public:
    /** The font families of the system. Empty until the application fills it. */
    KPBX_EXPORT static QStringList s_fontFamilyList;
    /** The language of the user interface; 4 is simplified Chinese. 0 until it is set. */
    KPBX_EXPORT static int s_langID;
};

#endif // KPVERSION_H
