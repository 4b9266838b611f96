// SPDX-License-Identifier: MIT
#ifndef QUARKMANAGER_H
#define QUARKMANAGER_H

#include "othercompanions.h"

#include <QString>

/** The numbers of well-known names. */
class QuarkManager
{
public:
    /** The number of a name, -1 if it has none. */
    OTHERCOMPANIONS_EXPORT static int quarkFromString(QString const& name);
    /** The name of a number, empty if it has none. */
    OTHERCOMPANIONS_EXPORT static QString quarkToString(int quark);
};

#endif
