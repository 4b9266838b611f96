// SPDX-License-Identifier: MIT
#ifndef ODFTRANSFORM_H
#define ODFTRANSFORM_H

#include <QString>
#include <QTransform>

#include <optional>

/** Numbers beyond this are refused: lengths in pixels or in their own unit, angles and all others. */
constexpr double greatestOdfNumber = 1e9;

/** A length with its unit (cm, mm, in, pt, pc, px) in pixels; none for a text that is none. */
std::optional<double> odfLength(QStringRef const& text);

/**
 * A draw:transform, to pixels: a list of matrix(), translate(), scale() and rotate(), applied from
 * left to right. An angle is in radians and counterclockwise on the screen, as office suites write
 * it. None for a text that is no such list, skewing included: programs differ in its direction.
 */
std::optional<QTransform> odfTransform(QString const& text);

#endif // ODFTRANSFORM_H
