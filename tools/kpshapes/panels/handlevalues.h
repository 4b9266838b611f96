#ifndef HANDLEVALUES_H
#define HANDLEVALUES_H

#include "fit/rulefit.h"
#include "model/handle.h"
#include "model/shapeitem.h"

#include <QVector>

#include <optional>

/**
 * What is shown of the selected handles in numbers, and changed in them. All functions are about
 * the coordinates of one axis: handles without one, and those that the outline does not have, do
 * not count.
 */
namespace HandleValues {

/** How many of the handles move a coordinate of this axis. */
int countOf(KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis);

/** The rule of all, whatever number it is; nothing if they differ or there are none. */
std::optional<qint16> commonRule(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis);
/** The value of all; nothing if they differ or there are none. */
std::optional<double> commonValue(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis);
/** The rate of all if they have one rule too; nothing if they differ or there are none. */
std::optional<double> commonRate(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis);

/** Binds all by a rule in their places. False if nothing is different. */
bool setRule(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, qint16 rule);
/** Moves all of them there; rates follow. False if nothing is different. @param value finite */
bool setValue(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, double value);
/** Gives all that have a rule this rate; values follow. False if nothing is different. */
bool setRate(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, double rate);

} // namespace HandleValues

#endif // HANDLEVALUES_H
