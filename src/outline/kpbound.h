// SPDX-License-Identifier: MIT
#ifndef KPBOUND_H
#define KPBOUND_H

#include "kppoint.h"

/**
 * Coordinates that follow the box of their outline, each by the rule that its function is named
 * after.
 *
 * Their value is 0 until updateValue() with the size of the box; only absolute() has its value at
 * once. A plate with a round corner on the right, whatever its size:
 *
 * @code
 * KpPathSegList plate;
 * plate.addTail(new KpPathSegMoveTo(
 *     KpBound::point(KpBound::absolute(0), KpBound::absolute(0)), nullptr));
 * plate.addTail(new KpPathSegLineTo(
 *     KpBound::point(KpBound::fromRightPartOfSide(0.25), KpBound::absolute(0)), nullptr));
 * plate.addTail(new KpPathSegLineTo(
 *     KpBound::point(KpBound::partOfWidth(1), KpBound::partOfSide(0.25)), nullptr));
 * plate.addTail(new KpPathSegLineTo(
 *     KpBound::point(KpBound::fromRight(0), KpBound::fromBottom(10)), nullptr));
 * plate.updateValue(240, 160);
 * @endcode
 */
namespace KpBound {

/** `value` in every box. */
inline KpReal absolute(double value) noexcept
{
    return KpReal(KpReal::Absolute, 0.0, value);
}

/** `rate` of the width: 1 is the right edge. */
inline KpReal partOfWidth(double rate) noexcept
{
    return KpReal(KpReal::PartOfWidth, rate, 0.0);
}

/** `rate` of the height: 1 is the lower edge. */
inline KpReal partOfHeight(double rate) noexcept
{
    return KpReal(KpReal::PartOfHeight, rate, 0.0);
}

/** `distance` to the left of the right edge. */
inline KpReal fromRight(double distance) noexcept
{
    return KpReal(KpReal::FromRight, distance, 0.0);
}

/** `distance` above the lower edge. */
inline KpReal fromBottom(double distance) noexcept
{
    return KpReal(KpReal::FromBottom, distance, 0.0);
}

/** `rate` of the smaller one of width and height. */
inline KpReal partOfSide(double rate) noexcept
{
    return KpReal(KpReal::PartOfSide, rate, 0.0);
}

/** `rate` of the smaller one of width and height, to the left of the right edge. */
inline KpReal fromRightPartOfSide(double rate) noexcept
{
    return KpReal(KpReal::FromRightPartOfSide, rate, 0.0);
}

/** `rate` of the smaller one of width and height, above the lower edge. */
inline KpReal fromBottomPartOfSide(double rate) noexcept
{
    return KpReal(KpReal::FromBottomPartOfSide, rate, 0.0);
}

/** The point of two coordinates, each of any rule. */
inline KpPoint point(KpReal const& x, KpReal const& y) noexcept
{
    return KpPoint(x, y);
}

} // namespace KpBound

#endif // KPBOUND_H
