#ifndef UNDOREAL_P_H
#define UNDOREAL_P_H

#include "conversion_p.h"
#include "kppoint.h"
#include "undovalue_p.h"

namespace UndoValue {

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

#endif // UNDOREAL_P_H
