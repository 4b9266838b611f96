// SPDX-License-Identifier: MIT
#ifndef FITSHEET_H
#define FITSHEET_H

#include "fit/outlinefit.h"
#include "paint/picture.h"

#include <vector>

/**
 * Each drawing with what was learnt over it, in the box of the drawing; what no rule expresses is
 * marked.
 *
 * @param drawings that the result was learnt from
 */
Picture fitSheet(std::vector<SizedDrawing> const& drawings, FitResult const& result);

#endif // FITSHEET_H
