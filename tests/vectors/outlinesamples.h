// SPDX-License-Identifier: MIT
#ifndef VECTORS_OUTLINESAMPLES_H
#define VECTORS_OUTLINESAMPLES_H

#include "kppathseglist.h"

#include <QSizeF>

#include <memory>
#include <vector>

namespace Vectors {

using Outline = std::unique_ptr<KpPathSegList>;

/** A copy in every field: clones of ellipses take fixed rules for their radii. */
Outline exactCopy(KpPathSegList& outline);
std::unique_ptr<KpPathSeg> exactCopy(KpPathSeg& segment);

/** Reals of every rule and of rules that are none, with special and ordinary numbers. */
std::vector<KpReal> sampleReals();

/** Empty, of each kind of segment, with every rule, open and closed, some by a fixed sequence. */
std::vector<Outline> sampleOutlines();

/** Boxes to bind to: ordinary, square, collapsed, at the limit of collapsing, not numbers. */
std::vector<QSizeF> sampleBoxes();

} // namespace Vectors

#endif // VECTORS_OUTLINESAMPLES_H
