// SPDX-License-Identifier: MIT
#include "kpversion.h"

#include <new>

int KpVersion::s_langID = 0;

/**
 * The list's place, under the list's name for the linker. A list that is defined as such would be
 * destroyed at exit, before the last of those that may use it.
 */
KPBX_EXPORT extern unsigned char fontFamilyListStorage[] __asm__(
    "_ZN9KpVersion16s_fontFamilyListE");
alignas(QStringList) unsigned char fontFamilyListStorage[sizeof(QStringList)];

namespace {

struct FontFamilyListMaker
{
    FontFamilyListMaker() { new (&KpVersion::s_fontFamilyList) QStringList; }
};

FontFamilyListMaker const fontFamilyListMaker;

} // namespace
