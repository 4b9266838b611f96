// SPDX-License-Identifier: MIT
#ifndef LENGTHTEXT_H
#define LENGTHTEXT_H

#include <QString>

#include <optional>

/**
 * A length in a unit, without the name of the unit: "12.5"; of the code 7 in feet and inches: 2'6".
 *
 * @param pixels the length, in the outline's units
 * @param unit a code of UnitUtil
 */
QString lengthText(double pixels, unsigned int unit);

/** A length with the name of its unit, in as many digits as a hand is exact: "12.5 mm", 2'6". */
QString measureText(double pixels, unsigned int unit);

/**
 * What a user has entered as a length: a number in the unit, a number with the name of any unit
 * ("10 mm"), or feet and inches (2'6"). A comma does for a point.
 *
 * @return in the outline's units; nothing if it is no finite length
 */
std::optional<double> lengthFromText(QString const& text, unsigned int unit);

/** What a user has entered as a number; of "50 %" a half. Nothing if it is no finite number. */
std::optional<double> numberFromText(QString const& text);

#endif // LENGTHTEXT_H
