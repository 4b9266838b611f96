// SPDX-License-Identifier: MIT
#ifndef CONTACTSHEET_H
#define CONTACTSHEET_H

#include "paint/figure.h"
#include "paint/picture.h"

#include <QSizeF>
#include <QVector>

#include <vector>

/**
 * The figures in a grid with their captions. With `boxes` each figure is drawn once for every
 * box, on one scale, in a row of its own.
 */
Picture contactSheet(
    std::vector<Figure> const& figures, QVector<QSizeF> const& boxes, OutlineStyle const& style);

#endif // CONTACTSHEET_H
