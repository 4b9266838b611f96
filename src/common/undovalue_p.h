// SPDX-License-Identifier: MIT
#ifndef UNDOVALUE_P_H
#define UNDOVALUE_P_H

#include "conversion_p.h"

#include <QVector>

/**
 * The entries of undo records: plain vectors that are appended to and read back by position,
 * without tags or lengths.
 */
namespace UndoValue {

/** Whether `count` entries stand in `entries` from `position` on. */
template <class Entry> bool holds(QVector<Entry> const& entries, int position, int count)
{
    return position >= 0 && position <= entries.size() - count;
}

/** Appends `count` entries. @return the first of them, to be written */
template <class Entry> Entry* grow(QVector<Entry>& entries, int count)
{
    int const before = entries.size();
    entries.resize(before + count);
    return entries.data() + before;
}

/** Drops the entries from `end` on, which were not written. */
template <class Entry> void endAt(QVector<Entry>& entries, Entry const* end)
{
    entries.resize(static_cast<int>(end - entries.constData()));
}

/** The entry at `position`, or 0 outside the vector; `position` moves on in either case. */
template <class Entry> Entry take(QVector<Entry> const& entries, int& position)
{
    Entry const entry = entries.value(position);
    position = Conversion::wrappingNext(position);
    return entry;
}

} // namespace UndoValue

#endif // UNDOVALUE_P_H
