// SPDX-License-Identifier: MIT
#include "paint/dropshadow.h"

#include "gaussianblur.h"

#include <QPainter>

namespace {

/** The picture's shape in the colour of the shadow. */
QImage shapeOf(QImage const& picture, DropShadow const& shadow, QRect const& area)
{
    QImage shape(area.size(), QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    QPainter painter(&shape);
    painter.drawImage(shadow.offset - area.topLeft(), picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), shadow.colour);
    return shape;
}

} // namespace

QRect shadowedArea(QSize const& size, DropShadow const& shadow, BlurKernel const& kernel)
{
    QRect const picture(QPoint(0, 0), size);
    int const reach = static_cast<int>(kernel.radius);
    return picture.united(picture.translated(shadow.offset).adjusted(-reach, -reach, reach, reach));
}

QImage withDropShadow(QImage const& picture, DropShadow const& shadow, BlurKernel const& kernel)
{
    QRect const area = shadowedArea(picture.size(), shadow, kernel);
    QImage result =
        GaussianBlur::blurBitmap(shapeOf(picture, shadow, area), kernel.radius, kernel.flatness)
            .toImage();
    if (result.isNull())
        return result;
    result = result.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter(&result).drawImage(-area.topLeft(), picture);
    return result;
}
