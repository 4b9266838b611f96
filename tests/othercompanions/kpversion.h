// SPDX-License-Identifier: MIT
#ifndef KPVERSION_H
#define KPVERSION_H

#include "othercompanions.h"

#include <QStringList>

/** What the application says of the machine that it runs on. */
class KpVersion
{
public:
    /** The families of fonts that are installed. */
    OTHERCOMPANIONS_EXPORT static QStringList s_fontFamilyList;
    /** The language of the user interface, 4 for simplified Chinese. */
    OTHERCOMPANIONS_EXPORT static int s_langID;
};

#endif
