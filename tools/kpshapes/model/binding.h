// SPDX-License-Identifier: MIT
#ifndef BINDING_H
#define BINDING_H

#include "kppoint.h"

#include <QSizeF>

/**
 * Binds a coordinate by a rule so that it stays where it is: its rate becomes the one that gives its
 * value in the box, its value stays to the bit.
 *
 * A side of 0.001 or less, or a value that is not finite, leaves the rate as it was. For
 * KpReal::Absolute, and for a number that names no rule, the rate becomes 0.
 *
 * @param rule any number; KpReal::Rule names those that bind
 * @param box that the value is for
 */
void bindInPlace(KpReal& real, qint16 rule, QSizeF const& box);

/** Moves a coordinate, and takes its rate back by its own rule. As bindInPlace() otherwise. */
void moveBound(KpReal& real, double value, QSizeF const& box);

#endif // BINDING_H
