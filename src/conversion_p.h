#ifndef CONVERSION_P_H
#define CONVERSION_P_H

#include <QtGlobal>

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

} // namespace Conversion

#endif // CONVERSION_P_H
