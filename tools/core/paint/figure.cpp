// SPDX-License-Identifier: MIT
#include "paint/figure.h"

#include "document/exactcopy.h"
#include "paint/shapeshadow.h"

#include <algorithm>

QRectF boundsOf(Figure const& figure, OutlineStyle const& style)
{
    QRectF bounds;
    for (Figure::Part const& part : figure.parts) {
        QRectF drawn = drawnBounds(*part.list, style);
        if (drawn.isNull())
            continue;
        if (part.appearance.shadow)
            drawn = withShadow(drawn, *part.appearance.shadow);
        // United by hand: QRectF::united leaves out a rectangle without height or width.
        bounds = bounds.isNull() ? drawn
                                 : QRectF(QPointF(std::min(bounds.left(), drawn.left()),
                                              std::min(bounds.top(), drawn.top())),
                                     QPointF(std::max(bounds.right(), drawn.right()),
                                         std::max(bounds.bottom(), drawn.bottom())));
    }
    return bounds;
}

Figure resized(Figure const& figure, QSizeF const& box)
{
    Figure copy {figure.caption, {}};
    for (Figure::Part const& part : figure.parts) {
        std::shared_ptr<KpPathSegList> const list = exactCopy(*part.list);
        list->updateValue(box.width(), box.height());
        copy.parts.push_back({list, part.fillRule, part.appearance});
    }
    return copy;
}

bool isDrawable(QRectF const& bounds)
{
    return isDrawable(bounds.left()) && isDrawable(bounds.top()) && isDrawable(bounds.right())
        && isDrawable(bounds.bottom());
}

void drawFigure(
    QPainter& painter, Figure const& figure, OutlineStyle const& style, QTransform const& toDevice)
{
    OutlinePainter outlinePainter(painter, style);
    for (Figure::Part const& part : figure.parts) {
        outlinePainter.draw(
            *part.list, part.fillRule.value_or(Qt::WindingFill), toDevice, part.appearance);
    }
    if (!style.showsPoints)
        return;
    for (Figure::Part const& part : figure.parts)
        outlinePainter.drawPoints(*part.list, toDevice);
}
