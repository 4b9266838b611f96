// SPDX-License-Identifier: MIT
#ifndef SEGMENTSEARCH_P_H
#define SEGMENTSEARCH_P_H

#include "kppathseglist.h"

/**
 * Where a segment stands in its list.
 *
 * The list remembers where its last search ended, and each segment where it was last seen. Both
 * are only places to look first, checked against the list before they count: a stale one, or that
 * of another list, costs time and nothing else. They are atomic lest a question be a write that
 * other threads have to know of.
 */
struct SegmentSearch
{
    /** Notes that `seg` has been put at `index` of a list. */
    static void note(KpPathSeg& seg, int index) { seg.place.storeRelaxed(index); }

    /**
     * The index of `seg` in `list`, or -1.
     *
     * @param step 1 or -1, the way that is being gone: the next search nearly always ends beside
     * the last, and a walk looks at nothing but the list.
     */
    static int indexOf(KpPathSegList const& list, KpPathSeg& seg, int step)
    {
        int const last = list.lastFound.loadRelaxed();
        for (int const index : {last + step, last, last - step}) {
            if (list.segs.value(index) == &seg)
                return found(list, index);
        }
        int const place = seg.place.loadRelaxed();
        if (list.segs.value(place) == &seg)
            return found(list, place);
        return search(list, seg, place < 0 ? last : place);
    }

private:
    static int found(KpPathSegList const& list, int index)
    {
        list.lastFound.storeRelaxed(index);
        return index;
    }

    /** Looks on both sides of `start`, farther and farther away. */
    Q_NEVER_INLINE static int search(KpPathSegList const& list, KpPathSeg& seg, int start)
    {
        int const count = list.segs.count();
        start = qBound(0, start, count - 1);
        for (int distance = 0; distance < count; ++distance) {
            for (int const index : {start - distance, start + distance}) {
                if (list.segs.value(index) == &seg) {
                    noteAround(list.segs, index, distance / 4);
                    return found(list, index);
                }
            }
        }
        return -1;
    }

    /**
     * What moved a segment has mostly moved those around it too. That many of them are noted as
     * the search was long: its length pays for it, and all searches after a change of the whole
     * list take no longer together than a few walks over it.
     */
    static void noteAround(QVector<KpPathSeg*> const& segs, int index, int reach)
    {
        int const end = qMin(index + reach + 1, segs.count());
        for (int i = qMax(0, index - reach); i < end; ++i) {
            if (KpPathSeg* const seg = segs.at(i))
                note(*seg, i);
        }
    }
};

#endif // SEGMENTSEARCH_P_H
