// SPDX-License-Identifier: MIT
#include "model/shapeitem.h"

bool haveSameContent(ShapeItem const& left, ShapeItem const& right)
{
    // QSizeF's own comparison allows for differences.
    auto const isSameSize = [](QSizeF const& one, QSizeF const& other) {
        return !(one.width() < other.width()) && !(one.width() > other.width())
            && !(one.height() < other.height()) && !(one.height() > other.height());
    };
    return left.name == right.name && isSameSize(left.box, right.box)
        && left.fillRule == right.fillRule && left.outline == right.outline
        && left.appearance == right.appearance;
}

WorkingShape workingShapeOf(ShapeItem const& item)
{
    return {
        item.name, item.box, item.fillRule, outlineOf(item.outline), item.appearance, item.origin};
}

ShapeItem itemOf(WorkingShape const& shape)
{
    return {shape.name, shape.box, shape.fillRule, recordOf(*shape.list), shape.appearance,
        shape.origin};
}
