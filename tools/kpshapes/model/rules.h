// SPDX-License-Identifier: MIT
#ifndef RULES_H
#define RULES_H

#include "fit/rulefit.h"
#include "model/shapeitem.h"
#include "model/subpaths.h"

#include <optional>

/**
 * @file
 * What a panel of numbers shows of the selected handles and changes in them. The coordinates are
 * those of one axis that the handles move; of an ellipse's radii, each handle has one. Where a
 * ring closes, the two points of its node are changed together, see isRing().
 *
 * All that change something tell whether they did. Handles that the outline does not have are
 * ignored.
 */

/** The rule of all these coordinates, which may be one that is not known; none if they differ. */
std::optional<qint16> commonRule(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis);
/** Their value, if it is the same to the bit, or NaN for each; else none. */
std::optional<double> commonValue(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis);
/** Their rate, if it and the rule are the same; else none. Meaningless without a rule that binds. */
std::optional<double> commonRate(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis);

/**
 * Binds by another rule: each value stays to the bit, its rate is computed.
 *
 * A coordinate that has the rule stays as it is, and so does one that no rate keeps in its place.
 *
 * @param rule from 0 to 7; others are ignored
 */
bool setRule(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, qint16 rule);
/**
 * Sets the rate, from which the value follows in the shape's box.
 *
 * A coordinate that no rule binds, or whose value would not be finite, stays as it is.
 *
 * @param rate not finite: ignored
 */
bool setRate(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, double rate);
/**
 * Sets the value; the rate follows by the coordinate's own rule, which stays.
 *
 * A coordinate that has the value stays as it is, and so does one that no rate would keep there.
 * Control points beside a point stay.
 *
 * @param value not finite: ignored
 */
bool setValue(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, double value);

#endif // RULES_H
