// SPDX-License-Identifier: MIT
#ifndef UNDOREAL_P_H
#define UNDOREAL_P_H

#include "conversion_p.h"
#include "kppoint.h"
#include "undovalue_p.h"

namespace UndoValue {

/** Where the next entries of a record are written. */
struct Writer
{
    /** A bound real: its base among the ints; its value, then its rate, among the doubles. */
    void write(KpReal const& real)
    {
        *ints++ = real.base;
        *doubles++ = real.value;
        *doubles++ = real.rate;
    }

    int* ints;
    double* doubles;
};

/** Where the next entries of a record are read; whoever reads knows that they are there. */
struct Reader
{
    KpReal read()
    {
        KpReal real;
        real.base = Conversion::lowSixteenBits(*ints++);
        real.value = *doubles++;
        real.rate = *doubles++;
        return real;
    }

    int const* ints;
    double const* doubles;
};

/** A real of a record that may end before: an entry outside its vector is 0. */
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
