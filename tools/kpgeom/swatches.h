#ifndef SWATCHES_H
#define SWATCHES_H

#include "picture.h"

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

#endif // SWATCHES_H
