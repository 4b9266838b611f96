// SPDX-License-Identifier: MIT
#ifndef DROPSHADOW_H
#define DROPSHADOW_H

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>

/** How far a kernel reaches, and how flat it is: see GaussianBlur::blurBitmap(). */
struct BlurKernel
{
    unsigned int radius; ///< in pixels
    unsigned int flatness; ///< 0 is a triangle, a large one nearly a box
};

/** The shadow that a picture throws on the plane behind it. */
struct DropShadow
{
    QPoint offset; ///< to the right and downwards, in pixels
    QColor colour; ///< of the shadow of an opaque picture
};

/** What a picture and its blurred shadow cover, the picture beginning at (0, 0). */
QRect shadowedArea(QSize const& size, DropShadow const& shadow, BlurKernel const& kernel);

/**
 * The picture on its blurred shadow, as large as both together; null if there is no memory for it.
 *
 * @param picture in a format that QPainter draws
 */
QImage withDropShadow(QImage const& picture, DropShadow const& shadow, BlurKernel const& kernel);

#endif // DROPSHADOW_H
