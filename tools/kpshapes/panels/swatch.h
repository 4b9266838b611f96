// SPDX-License-Identifier: MIT
#ifndef SWATCH_H
#define SWATCH_H

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QPixmap>
#include <QRectF>
#include <QSize>
#include <QString>

class QPainter;

/**
 * Draws a colour with a border that is seen on any ground. A translucent one lies on a chequered
 * ground and is opaque in its left upper half; an invalid one is a stroke: no colour of its own.
 */
void paintSwatch(
    QPainter& painter, QRectF const& place, QColor const& colour, QPalette const& palette);

/** The colour of a border that is seen beside any colour. */
QColor swatchBorder(QPalette const& palette);

/** A swatch as a picture. @param ratio device pixels a pixel */
QPixmap swatchPixmap(
    QColor const& colour, QSize const& size, QPalette const& palette, double ratio);

/** A swatch as an icon. @param ratio device pixels a pixel */
QIcon swatchIcon(QColor const& colour, QSize const& size, QPalette const& palette, double ratio);

/** The colour as a text: "#RRGGBB", and how opaque it is unless it is opaque. */
QString colourText(QColor const& colour);

#endif // SWATCH_H
