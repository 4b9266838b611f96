#ifndef UNDOVALUE_P_H
#define UNDOVALUE_P_H

#include "conversion_p.h"
#include "kppoint.h"

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

/** The entry at `position`, or 0 outside the vector; `position` moves on in either case. */
template <class Entry> Entry take(QVector<Entry> const& entries, int& position)
{
    Entry const entry = entries.value(position);
    position = Conversion::wrappingNext(position);
    return entry;
}

/** A bound real: its base among the ints; its value, then its rate, among the doubles. */
inline void append(KpReal const& real, QVector<int>& ints, QVector<double>& doubles)
{
    ints.append(real.base);
    doubles.append(real.value);
    doubles.append(real.rate);
}

inline KpReal takeReal(
    QVector<int> const& ints, QVector<double> const& doubles, int& intPos, int& doublePos)
{
    KpReal real;
    real.base = Conversion::lowSixteenBits(take(ints, intPos));
    real.value = take(doubles, doublePos);
    real.rate = take(doubles, doublePos);
    return real;
}

} // namespace UndoValue

#endif // UNDOVALUE_P_H
