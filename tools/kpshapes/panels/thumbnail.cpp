// SPDX-License-Identifier: MIT
#include "panels/thumbnail.h"

#include "paint/figure.h"
#include "paint/outlinepainter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double thumbnailMargin = 5.0; ///< around what is shown, in logical pixels
constexpr double lineWidth = 1.25;
constexpr QRgb frameInk = 0xffb4bcc6;

/** So many steps lie too close for broad lines, which take long to paint. */
constexpr int manyElements = 1000;

/** More steps than this are no longer told apart in a small picture. */
constexpr int greatestElementCount = 10000;

/** Points closer than this many pixels look like one. */
constexpr double indistinct = 0.2;

/** The smallest rectangle with both; QRectF::united leaves out one without height or width. */
QRectF united(QRectF const& left, QRectF const& right)
{
    return {QPointF(std::min(left.left(), right.left()), std::min(left.top(), right.top())),
        QPointF(std::max(left.right(), right.right()), std::max(left.bottom(), right.bottom()))};
}

bool isBox(QSizeF const& box)
{
    return box.width() > 0.0 && box.height() > 0.0 && isDrawable(box.width())
        && isDrawable(box.height());
}

/** Maps the outline's units to logical pixels. */
QTransform placement(QRectF const& shown, QSizeF const& size, std::optional<double> fixedScale)
{
    QSizeF const room(std::max(size.width() - 2.0 * thumbnailMargin, 1.0),
        std::max(size.height() - 2.0 * thumbnailMargin, 1.0));
    double const scale =
        fixedScale.value_or(std::min(room.width() / shown.width(), room.height() / shown.height()));
    QPointF const middle = shown.topLeft() / 2.0 + shown.bottomRight() / 2.0;
    return QTransform::fromTranslate(-middle.x(), -middle.y()) * QTransform::fromScale(scale, scale)
        * QTransform::fromTranslate(size.width() / 2.0, size.height() / 2.0);
}

/** The path without the lines that nobody would see, and with only some of all too many. */
QPainterPath thinned(QPainterPath const& path)
{
    int const count = path.elementCount();
    if (count <= manyElements)
        return path;
    int const stride = count / greatestElementCount + 1;
    int step = 0;
    QPainterPath thin;
    for (int i = 0; i < count; i += path.elementAt(i).isCurveTo() ? 3 : 1) {
        QPainterPath::Element const element = path.elementAt(i);
        bool const isLast = i + 1 == count || path.elementAt(i + 1).isMoveTo();
        if (element.isMoveTo()) {
            thin.moveTo(element);
        } else if (element.isCurveTo() && stride == 1) {
            thin.cubicTo(element, path.elementAt(i + 1), path.elementAt(i + 2));
        } else {
            QPointF const end = element.isCurveTo() ? path.elementAt(i + 2) : element;
            bool const isNear = (end - thin.currentPosition()).manhattanLength() < indistinct
                || ++step % stride != 0;
            if (isLast || !isNear)
                thin.lineTo(end);
        }
    }
    return thin;
}

void drawShape(QPainter& painter, PicturedShape const& shape, QTransform const& toPicture)
{
    painter.setPen(QPen(QColor::fromRgba(frameInk), 1.0, Qt::DotLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(toPicture.mapRect(QRectF(QPointF(0.0, 0.0), shape.box)));
    QPainterPath const path = thinned(toPicture.map(painterPathOf(shape.list)));
    OutlineStyle style;
    style.lineWidth = path.elementCount() > manyElements ? 0.0 : lineWidth;
    OutlinePainter(painter, style)
        .drawMapped(shape.list, shape.fillRule.value_or(Qt::WindingFill),
            {path, path, std::sqrt(std::abs(toPicture.determinant()))}, shape.appearance);
}

/** What is to be seen of the shape and its box; nothing if it cannot be drawn. */
std::optional<QRectF> shownArea(PicturedShape const& shape, bool isBoxAlone)
{
    QRectF const bounds = drawnBounds(shape.list, {});
    if (!isDrawable(bounds) || !isBox(shape.box))
        return std::nullopt;
    QRectF const box(QPointF(0.0, 0.0), shape.box);
    return isBoxAlone || shape.list.segs.isEmpty() ? box : united(box, bounds);
}

} // namespace

QImage thumbnail(PicturedShape const& shape, ThumbnailLayout const& layout)
{
    double const ratio = qBound(1.0, layout.ratio, 8.0);
    QSize const size = layout.size.boundedTo(QSize(1024, 1024)).expandedTo(QSize(1, 1));
    QImage picture((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::white);
    if (auto const shown = shownArea(shape, layout.scale.has_value())) {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        drawShape(painter, shape, placement(*shown, size, layout.scale));
    }
    return picture;
}

QImage thumbnail(ShapeItem const& item, ThumbnailLayout const& layout)
{
    auto const list = outlineOf(item.outline);
    return thumbnail({*list, item.box, item.fillRule, item.appearance}, layout);
}

QImage thumbnail(ShapeItem const& item, QSizeF const& box, ThumbnailLayout const& layout)
{
    auto const list = outlineOf(item.outline);
    list->updateValue(box.width(), box.height());
    return thumbnail({*list, box, item.fillRule, item.appearance}, layout);
}
