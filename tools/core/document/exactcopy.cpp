// SPDX-License-Identifier: MIT
#include "document/exactcopy.h"

#include "document/outlinerecord.h"

std::unique_ptr<KpPathSegList> exactCopy(KpPathSegList& list)
{
    return outlineOf(recordOf(list));
}
