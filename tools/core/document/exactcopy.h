// SPDX-License-Identifier: MIT
#ifndef EXACTCOPY_H
#define EXACTCOPY_H

#include "kppathseglist.h"

#include <memory>

/**
 * A copy of the outline with every field, made through its undo record: clone() binds the
 * radii of ellipses to the width and the height, whatever rules they had.
 */
std::unique_ptr<KpPathSegList> exactCopy(KpPathSegList& list);

#endif // EXACTCOPY_H
