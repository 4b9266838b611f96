// SPDX-License-Identifier: MIT
#ifndef EXACTPATH_H
#define EXACTPATH_H

#include "kppathseglist.h"

#include <QPainterPath>

/**
 * The path of all segments of the outline, with the lines that drawing leaves out for their
 * shortness. Values that are not finite are left out.
 */
QPainterPath exactPath(KpPathSegList const& list);

#endif // EXACTPATH_H
