#include "panels/handlevalues.h"

#include "model/binding.h"

#include <cmath>

namespace HandleValues {

namespace {

template <class Visitor>
void forEachReal(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis, Visitor visit)
{
    for (HandleId const id : handles) {
        auto const handle = handleOf(list, id);
        KpReal* const real = handle ? (axis == Axis::Horizontal ? handle->x : handle->y) : nullptr;
        if (real)
            visit(*real);
    }
}

bool isSame(qint16 left, qint16 right)
{
    return left == right;
}

bool isSame(double left, double right)
{
    return !(left < right) && !(left > right) && std::isnan(left) == std::isnan(right);
}

bool isSame(KpReal const& left, KpReal const& right)
{
    return left.base == right.base && isSame(left.rate, right.rate)
        && isSame(left.value, right.value);
}

/** Whether `change` makes any of the coordinates different. */
template <class Change>
bool changeAll(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, Change change)
{
    bool isChanged = false;
    forEachReal(*shape.list, handles, axis, [&](KpReal& real) {
        KpReal const before = real;
        change(real);
        isChanged = isChanged || !isSame(before, real);
    });
    return isChanged;
}

/** What `get` gives of all coordinates. */
template <class Get>
auto common(KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis, Get get)
    -> std::optional<decltype(get(std::declval<KpReal const&>()))>
{
    std::optional<decltype(get(std::declval<KpReal const&>()))> first;
    bool isCommon = true;
    forEachReal(list, handles, axis, [&](KpReal const& real) {
        auto const one = get(real);
        isCommon = isCommon && (!first || isSame(*first, one));
        first = first.value_or(one);
    });
    return isCommon ? first : std::nullopt;
}

} // namespace

int countOf(KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis)
{
    int count = 0;
    forEachReal(list, handles, axis, [&count](KpReal const& /*real*/) { ++count; });
    return count;
}

std::optional<qint16> commonRule(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis)
{
    return common(list, handles, axis, [](KpReal const& real) { return real.base; });
}

std::optional<double> commonValue(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis)
{
    return common(list, handles, axis, [](KpReal const& real) { return real.value; });
}

std::optional<double> commonRate(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis)
{
    if (!commonRule(list, handles, axis))
        return std::nullopt;
    return common(list, handles, axis, [](KpReal const& real) { return real.rate; });
}

bool setRule(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, qint16 rule)
{
    return changeAll(shape, handles, axis, [&](KpReal& real) {
        if (real.base != rule)
            bindInPlace(real, rule, shape.box);
    });
}

bool setValue(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, double value)
{
    return changeAll(shape, handles, axis, [&](KpReal& real) {
        if (!isSame(real.value, value))
            moveBound(real, value, shape.box);
    });
}

bool setRate(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, double rate)
{
    return changeAll(shape, handles, axis, [&](KpReal& real) {
        KpReal changed(real.base, rate, real.value);
        changed.updateValue(shape.box.width(), shape.box.height());
        bool const isBound =
            real.base > KpReal::Absolute && real.base <= KpReal::FromBottomPartOfSide;
        if (isBound && std::isfinite(changed.value))
            real = changed;
    });
}

} // namespace HandleValues
