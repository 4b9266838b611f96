// SPDX-License-Identifier: MIT
#include "document/coordinatetext.h"

#include "geometryformat_p.h"
#include "numbertext_p.h"

#include <algorithm>
#include <cmath>

bool CoordinateText::readsAs(KpReal const& real, MarkupAttribute const& attribute)
{
    QString const& name = attribute.name;
    QString const& text = attribute.value;
    if (name == GeometryFormat::base())
        return !text.isEmpty() && NumberText::toBase(text) == real.base;
    if (name != GeometryFormat::value() && name != GeometryFormat::rate())
        return true;
    double const number = name == GeometryFormat::value() ? real.value : real.rate;
    double const read = NumberText::toReal(text);
    return !text.isEmpty() && std::isnan(read) == std::isnan(number) && !(read < number)
        && !(read > number);
}

QString CoordinateText::textOf(KpReal const& real, QString const& name)
{
    if (name == GeometryFormat::base())
        return NumberText::fromBase(real.base);
    return NumberText::fromReal(name == GeometryFormat::value() ? real.value : real.rate);
}

CoordinateText::Change CoordinateText::changeOf(
    KpReal const& real, QVector<MarkupAttribute> const& given, bool isFirst)
{
    Change change {given, {}, {}};
    for (int i = 0; i < given.size(); ++i) {
        if (readsAs(real, given.at(i)) || (!isFirst && given.at(i).value.isEmpty()))
            continue;
        change.attributes[i].value = textOf(real, given.at(i).name);
        change.changed.append(i);
    }
    for (QString const& name :
        {GeometryFormat::value(), GeometryFormat::base(), GeometryFormat::rate()}) {
        bool const isNeeded =
            isFirst && (name != GeometryFormat::rate() || real.base != KpReal::Absolute);
        bool const isGiven = std::any_of(given.cbegin(), given.cend(),
            [&name](MarkupAttribute const& attribute) { return attribute.name == name; });
        if (isNeeded && !isGiven)
            change.added.append({name, textOf(real, name), false});
    }
    return change;
}
