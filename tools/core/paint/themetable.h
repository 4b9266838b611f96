// SPDX-License-Identifier: MIT
#ifndef THEMETABLE_H
#define THEMETABLE_H

#include "paint/picture.h"

#include <QColor>
#include <QVector>

/**
 * A theme table: the reference colours across, their tints and shades down, each with its value
 * as a caption.
 *
 * @param compares whether the right half of each swatch shows the same mix with white or black
 *   of the encoded values, which is darker than light
 */
Picture themeTable(QVector<QColor> const& references, bool compares);

#endif // THEMETABLE_H
