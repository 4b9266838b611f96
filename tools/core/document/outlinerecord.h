// SPDX-License-Identifier: MIT
#ifndef OUTLINERECORD_H
#define OUTLINERECORD_H

#include "kppathseglist.h"

#include <QVector>

#include <memory>

/**
 * An outline as its undo record, with the number of segments that the record itself leaves out.
 * Every field of the outline is in it, to the bit. Copies share their numbers until one changes.
 */
struct OutlineRecord
{
    QVector<int> ints; ///< flags, kinds and rules, as KpPathSegList::toUndoValue() appends them
    QVector<double> doubles; ///< values and rates, in the same order
    int segmentCount = 0; ///< as KpPathSegList::fromUndoValue() wants it
};

/** Equal to the last bit: NaN equals NaN of the same bits, and 0 is not -0. */
bool operator==(OutlineRecord const& left, OutlineRecord const& right);
/** The negation of ==. */
inline bool operator!=(OutlineRecord const& left, OutlineRecord const& right)
{
    return !(left == right);
}

/** The record of an outline, which stays as it is. */
OutlineRecord recordOf(KpPathSegList& list);

/** The outline of a record; of one that ends early, what its beginning holds. */
std::unique_ptr<KpPathSegList> outlineOf(OutlineRecord const& record);

#endif // OUTLINERECORD_H
