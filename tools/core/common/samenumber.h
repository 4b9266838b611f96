// SPDX-License-Identifier: MIT
#ifndef SAMENUMBER_H
#define SAMENUMBER_H

/** Whether two numbers are equal to the bit but for the sign of zero; NaN is the same as any. */
inline bool isSameNumber(double left, double right)
{
    return !(left < right) && !(left > right);
}

#endif // SAMENUMBER_H
