// SPDX-License-Identifier: MIT
#ifndef VALUETEXT_H
#define VALUETEXT_H

#include <QSizeF>
#include <QString>

#include <optional>

/** The greatest size, scale, margin or density. */
constexpr double greatestFactor = 1e6;

/** A number, which is finite. */
std::optional<double> numberFromText(QString const& text);

/** A number from `least` to `greatest`. */
std::optional<double> numberFromText(QString const& text, double least, double greatest);

/** A number, or a percentage: of "50%" a half. It is finite. */
std::optional<double> amountFromText(QString const& text);

/** An amount greater than 0 and at most greatestFactor. */
std::optional<double> factorFromText(QString const& text);

/** A length from `least` to `greatest` in units of an outline, or with a unit of its own: "5mm". */
std::optional<double> lengthFromText(QString const& text, double least, double greatest);

/** A length greater than 0 and at most greatestFactor, likewise. */
std::optional<double> sideFromText(QString const& text);

/** A length from 0 to greatestFactor, likewise. */
std::optional<double> marginFromText(QString const& text);

/** Dots an inch, from 1 to greatestFactor. */
std::optional<double> densityFromText(QString const& text);

/**
 * "WxH", also with a capital X or the sign of multiplication. Both are sides as above; a unit behind
 * the second one is that of the first, too, unless this has its own.
 */
std::optional<QSizeF> sizeFromText(QString const& text);

#endif // VALUETEXT_H
