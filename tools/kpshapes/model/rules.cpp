// SPDX-License-Identifier: MIT
#include "model/rules.h"

#include "document/bindingrule.h"
#include "model/binding.h"
#include "model/nodekind.h"

#include <cmath>
#include <limits>

namespace {

template <class Visitor>
void forEachCoordinate(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis, Visitor visit)
{
    for (HandleId const id : handles) {
        auto const handle = handleOf(list, id);
        if (!handle)
            continue;
        if (KpReal* const real = axis == Axis::Horizontal ? handle->x : handle->y)
            visit(*real);
    }
}

/** Whether they are equal to the bit, or both no numbers. */
bool isSameNumber(double left, double right)
{
    if (std::isnan(left) || std::isnan(right))
        return std::isnan(left) && std::isnan(right);
    return !(left < right) && !(left > right) && std::signbit(left) == std::signbit(right);
}

/** What all coordinates have in common, by `numberOf`. */
template <class NumberOf>
std::optional<double> commonNumber(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis, NumberOf numberOf)
{
    std::optional<double> common;
    bool isMixed = false;
    forEachCoordinate(list, handles, axis, [&](KpReal const& real) {
        double const number = numberOf(real);
        if (!common)
            common = number;
        isMixed = isMixed || !isSameNumber(*common, number);
    });
    return isMixed ? std::nullopt : common;
}

/** The coordinate with another rule and value, unless its rate cannot be told then. */
std::optional<KpReal> rebound(qint16 rule, double value, QSizeF const& box)
{
    KpReal real(rule, std::numeric_limits<double>::quiet_NaN(), value);
    bindInPlace(real, rule, box);
    return std::isfinite(real.rate) ? std::optional(real) : std::nullopt;
}

bool isBinding(KpReal const& real)
{
    return real.base != KpReal::Absolute && ruleOf(real.base) != unknownRule;
}

/** Changes each coordinate to what `changed` makes of it, if anything. */
template <class Changed>
bool change(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, Changed changed)
{
    bool isAnyChanged = false;
    auto const all = withTwins(*shape.list, handles);
    forEachCoordinate(*shape.list, all, axis, [&](KpReal& real) {
        if (std::optional<KpReal> const other = changed(real)) {
            real = *other;
            isAnyChanged = true;
        }
    });
    return isAnyChanged;
}

} // namespace

std::optional<qint16> commonRule(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis)
{
    auto const rule =
        commonNumber(list, handles, axis, [](KpReal const& real) { return double(real.base); });
    return rule ? std::optional(static_cast<qint16>(*rule)) : std::nullopt;
}

std::optional<double> commonValue(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis)
{
    return commonNumber(list, handles, axis, [](KpReal const& real) { return real.value; });
}

std::optional<double> commonRate(
    KpPathSegList const& list, QVector<HandleId> const& handles, Axis axis)
{
    if (!commonRule(list, handles, axis))
        return std::nullopt;
    return commonNumber(list, handles, axis, [](KpReal const& real) { return real.rate; });
}

bool setRule(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, qint16 rule)
{
    if (ruleOf(rule) == unknownRule)
        return false;
    return change(shape, handles, axis, [&](KpReal const& real) -> std::optional<KpReal> {
        if (real.base == rule)
            return std::nullopt;
        return rebound(rule, real.value, shape.box);
    });
}

bool setRate(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, double rate)
{
    if (!std::isfinite(rate))
        return false;
    return change(shape, handles, axis, [&](KpReal const& real) -> std::optional<KpReal> {
        if (!isBinding(real))
            return std::nullopt;
        KpReal changed(real.base, rate, real.value);
        changed.updateValue(shape.box.width(), shape.box.height());
        bool const isSame =
            isSameNumber(changed.rate, real.rate) && isSameNumber(changed.value, real.value);
        return std::isfinite(changed.value) && !isSame ? std::optional(changed) : std::nullopt;
    });
}

bool setValue(WorkingShape& shape, QVector<HandleId> const& handles, Axis axis, double value)
{
    if (!std::isfinite(value))
        return false;
    return change(shape, handles, axis, [&](KpReal const& real) -> std::optional<KpReal> {
        if (isSameNumber(real.value, value))
            return std::nullopt;
        return rebound(real.base, value, shape.box);
    });
}
