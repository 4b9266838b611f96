// SPDX-License-Identifier: MIT
#include "document/appearance.h"

#include "colorutil.h"
#include "common/samenumber.h"

#include <algorithm>

namespace {

/**
 * The transform called `name`, or null. The library fills its table at the first question and counts
 * on one thread; of the tools, any thread may be the first.
 */
ColorUtil::ColorFunc transformCalled(QString const& name)
{
    static bool const isTableFilled = [] {
        ColorUtil::initColorFunctionMap();
        return true;
    }();
    return isTableFilled ? ColorUtil::getColorFunc(name) : nullptr;
}

} // namespace

QVector<QColor> ShapeColour::steps() const
{
    KpColor changed = colour;
    QVector<QColor> all {changed};
    for (ColourTransform const& transform : transforms) {
        if (auto const change = transformCalled(transform.name))
            change(changed, transform.value);
        all.append(changed);
    }
    return all;
}

namespace {

bool isSame(ColourTransform const& left, ColourTransform const& right)
{
    return left.name == right.name && isSameNumber(left.value, right.value);
}

bool isSame(ShapeColour const& left, ShapeColour const& right)
{
    return left.colour == right.colour
        && std::equal(left.transforms.cbegin(), left.transforms.cend(), right.transforms.cbegin(),
            right.transforms.cend(),
            [](auto const& one, auto const& other) { return isSame(one, other); });
}

bool isSame(ShapeShadow const& left, ShapeShadow const& right)
{
    return left.radius == right.radius && left.flatness == right.flatness
        && isSameNumber(left.offset.x(), right.offset.x())
        && isSameNumber(left.offset.y(), right.offset.y()) && left.colour == right.colour;
}

template <class Part> bool isSame(std::optional<Part> const& left, std::optional<Part> const& right)
{
    return left.has_value() == right.has_value() && (!left || isSame(*left, *right));
}

} // namespace

bool operator==(Appearance const& left, Appearance const& right)
{
    return left.theme == right.theme && isSame(left.fill, right.fill)
        && isSame(left.line, right.line) && isSame(left.shadow, right.shadow);
}
