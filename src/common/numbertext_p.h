// SPDX-License-Identifier: MIT
#ifndef NUMBERTEXT_P_H
#define NUMBERTEXT_P_H

#include "conversion_p.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

/**
 * The text of numbers in documents. A `Text` is a QString or a QStringRef.
 *
 * What is not common in documents is left to Qt, and the rest is as Qt has it.
 */
namespace NumberText {

/** Those that a double holds exactly, as far as they are asked for. */
constexpr std::array<double, 16> powersOfTen {
    1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/**
 * A real in six significant digits, C locale: 1/3 gives 0.333333, 1234567 gives 1.23457e+06.
 * Not printf's "%.6g": exact ties round up and negative zero gives 0.
 */
inline QString fromReal(double real)
{
    double const magnitude = std::fabs(real);
    if (real == 0.0)
        return QStringLiteral("0");
    if (!(magnitude >= 1e-4 && magnitude < 999999.0))
        return QString::number(real, 'g', 6);

    // Scaled to six digits before the point.
    std::size_t places = 0;
    for (double const limit : {1e5, 1e4, 1e3, 1e2, 1e1, 1e0, 1e-1, 1e-2, 1e-3})
        places += magnitude < limit ? 1 : 0;
    double const scaled = magnitude * powersOfTen[places];
    auto digits = static_cast<unsigned int>(static_cast<int>(scaled));
    double const overHalf = scaled - static_cast<int>(digits) - 0.5;
    // The power is exact and the product below 2^20, so that its rounding is below 2^-33 and
    // matters only this near a tie; there it is taken back.
    bool const roundsUp = std::fabs(overHalf) > 1e-9
        ? overHalf > 0.0
        : overHalf >= -std::fma(magnitude, powersOfTen[places], -scaled);
    digits += roundsUp ? 1 : 0;
    if (digits == 1000000) {
        digits = 100000;
        --places;
    }

    // A sign, zeros before the first digit that counts, and a point among the digits.
    constexpr std::size_t first = 5;
    constexpr std::size_t last = first + 5;
    std::array<char, last + 2> text;
    text.fill('0');
    std::size_t const point = last + 1 - places;
    text[point] = '.';
    for (std::size_t i = last; i >= first; --i, digits /= 10)
        text[i < point ? i : i + 1] = static_cast<char>('0' + digits % 10);
    std::size_t end = text.size();
    while (text[end - 1] == '0')
        --end;
    if (text[end - 1] == '.')
        --end;
    std::size_t begin = std::min(first, point - 1);
    if (real < 0.0)
        text[--begin] = '-';
    return QString::fromLatin1(&text[begin], static_cast<int>(end - begin));
}

/** The binding rules have constant texts: nothing is allocated for them. */
inline QString fromBase(qint16 base)
{
    static constexpr std::array<QString (*)(), 8> rules {
        [] { return QStringLiteral("0"); },
        [] { return QStringLiteral("1"); },
        [] { return QStringLiteral("2"); },
        [] { return QStringLiteral("3"); },
        [] { return QStringLiteral("4"); },
        [] { return QStringLiteral("5"); },
        [] { return QStringLiteral("6"); },
        [] { return QStringLiteral("7"); },
    };
    auto const rule = static_cast<std::size_t>(base);
    return rule < rules.size() ? rules[rule]() : QString::number(static_cast<int>(base), 10);
}

/** 0 for text that is no number; "inf", "nan" and surrounding white space are accepted. */
template <class Text> double toReal(Text const& text)
{
    // So few digits are exact in a double, as is the power: the division rounds once.
    constexpr int enough = 15;
    auto character = text.begin();
    bool const isNegative = character != text.end() && *character == QLatin1Char('-');
    if (isNegative)
        ++character;
    if (character == text.end() || text.end() - character > enough)
        return text.toDouble();
    qint64 digits = 0;
    std::size_t places = 0;
    std::size_t placesOfDigit = 0;
    for (; character != text.end(); ++character) {
        int const digit = character->unicode() - '0';
        if (digit >= 0 && digit <= 9) {
            digits = digits * 10 + digit;
            places += placesOfDigit;
        } else if (digit == '.' - '0' && placesOfDigit == 0) {
            placesOfDigit = 1;
        } else {
            return text.toDouble();
        }
    }
    if (isNegative && digits == 0)
        return text.toDouble();
    return static_cast<double>(isNegative ? -digits : digits) / powersOfTen[places];
}

/** The low 16 bits of a decimal int; 0 for text that is none. */
template <class Text> qint16 toBase(Text const& text)
{
    if (text.size() == 1 && text.at(0) >= QLatin1Char('0') && text.at(0) <= QLatin1Char('9'))
        return static_cast<qint16>(text.at(0).unicode() - '0');
    return Conversion::lowSixteenBits(text.toInt(nullptr, 10));
}

} // namespace NumberText

#endif // NUMBERTEXT_P_H
