// SPDX-License-Identifier: MIT
#ifndef CONVERSION_P_H
#define CONVERSION_P_H

#include <QtGlobal>

#include <cmath>
#include <limits>

/** Conversions between number types for which the language leaves a case open. */
namespace Conversion {

/** The low 16 bits of `number`, taken as signed: 70000 gives 4464, 32768 gives -32768. */
constexpr qint16 lowSixteenBits(int number) noexcept
{
    return static_cast<qint16>(static_cast<quint16>(static_cast<unsigned int>(number) & 0xFFFFU));
}

/** The number after `number`; the one after the greatest is the least. */
constexpr int wrappingNext(int number) noexcept
{
    return static_cast<int>(static_cast<unsigned int>(number) + 1U);
}

/** Toward zero. Beyond the range of int it is the nearer end, NaN is 0. */
inline int truncated(double number) noexcept
{
    if (std::isnan(number))
        return 0;
    if (number >= static_cast<double>(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (number <= static_cast<double>(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return static_cast<int>(number);
}

/** To the nearest integer, halves upward as qRound does: -2.5 gives -2. Ends as truncated(). */
inline int rounded(double number) noexcept
{
    return truncated(std::floor(number + 0.5));
}

} // namespace Conversion

#endif // CONVERSION_P_H
