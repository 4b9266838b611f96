// SPDX-License-Identifier: MIT
#include "kpversion.h"

QStringList KpVersion::s_fontFamilyList;
int KpVersion::s_langID = 0;
