// SPDX-License-Identifier: MIT
#ifndef GAUSSIANBLUR_H
#define GAUSSIANBLUR_H

#include "kpgeometry_export.h"

#include <QImage>
#include <QPixmap>

/** A fast blur of pictures that comes close to a Gaussian one: a stack blur. */
namespace GaussianBlur {

/**
 * For each radius the sum of the weights of its kernel at flatness 0: entry i is (i + 1) squared.
 * Read at each call and never written by the library; a client that writes to it changes what the
 * weighted sums are divided by.
 */
KPGEOMETRY_EXPORT extern unsigned int g_gus_blur_scale[255];

/**
 * The image, blurred first along its rows and then along its columns.
 *
 * A pixel becomes the weighted mean, rounded down, of those up to `radius` away from it in a row,
 * and then in a column. The weight of one at the distance d is `radius` + 1 - d + `flatness`. Beyond
 * an edge the pixel at the edge is repeated. The time does not depend on the radius.
 *
 * With flatness 0 it comes close to a Gaussian of the standard deviation
 * sqrt(`radius` * (`radius` + 2) / 6), about 0.41 * (`radius` + 1); a large flatness makes a box
 * of it, of the deviation sqrt(`radius` * (`radius` + 1) / 3).
 *
 * Each of the four bytes of a pixel is blurred by itself. So a picture with transparent parts
 * should be premultiplied: in any other format the colour that is hidden in transparent pixels
 * comes out as a dark or light halo.
 *
 * @param image of any size. A picture that is moved in, and that shares its pixels with nobody, is
 * blurred where it is; all others are only read, whoever owns their memory. If it has not 32 bits per
 * pixel it is converted first, to QImage::Format_ARGB32_Premultiplied if it has an alpha
 * channel, else to QImage::Format_RGB32.
 * @param radius in pixels; 0 returns the image as it is, more than 254 counts as 254
 * @param flatness is added to every weight: 0 gives a triangle, a large one comes close to a box.
 * The sums are taken modulo 2^32: at the greatest radius they wrap above a flatness of 32,962,
 * as the formula says. When the sum of all weights wraps to 0 the image is returned as it is.
 * @return a null pixmap for a null image. Pixmaps need a QGuiApplication.
 */
KPGEOMETRY_EXPORT QPixmap blurBitmap(QImage image, unsigned int radius, unsigned int flatness);

} // namespace GaussianBlur

#endif // GAUSSIANBLUR_H
