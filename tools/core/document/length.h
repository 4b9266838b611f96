// SPDX-License-Identifier: MIT
#ifndef LENGTH_H
#define LENGTH_H

#include <QString>

#include <optional>

/** A length as somebody has entered it. */
struct Length
{
    double value; ///< finite
    unsigned int unit; ///< a code of UnitUtil

    /** In another unit; infinite if it is too large for a number there. */
    double in(unsigned int other) const;
    /** In units of an outline, which are pixels; may be infinite as well. */
    double pixels() const;
};

/** The code of the unit of this name, in any letter case. */
std::optional<unsigned int> unitFromText(QString const& name);

/**
 * A number with the name of its unit behind it ("5mm", "2.5 in"), or feet and inches: 5'6" is a
 * length of 66 inches. Nothing if it is no finite length, or has no unit.
 */
std::optional<Length> lengthWithUnit(QString const& text);

#endif // LENGTH_H
