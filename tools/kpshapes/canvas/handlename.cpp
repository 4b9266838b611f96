// SPDX-License-Identifier: MIT
#include "canvas/handlename.h"

namespace {

QString number(double value)
{
    return QString::number(value, 'g', 6);
}

QString percent(double rate)
{
    return QStringLiteral("%1 %").arg(number(rate * 100.0));
}

/** A length from the right or the lower edge, where that is the edge of the axis. */
QString fromEdge(QString const& length, bool isRight, Axis axis)
{
    if (isRight)
        return axis == Axis::X ? QStringLiteral("%1 left of the right edge").arg(length)
                               : QStringLiteral("the width less %1").arg(length);
    return axis == Axis::Y ? QStringLiteral("%1 above the lower edge").arg(length)
                           : QStringLiteral("the height less %1").arg(length);
}

QString placeText(KpReal const& real, Axis axis)
{
    QString ofSide = QStringLiteral("%1 of the smaller side").arg(percent(real.rate));
    switch (real.base) {
    case KpReal::Absolute:
        return QStringLiteral("fixed at %1").arg(number(real.value));
    case KpReal::PartOfWidth:
        return QStringLiteral("%1 of the width").arg(percent(real.rate));
    case KpReal::PartOfHeight:
        return QStringLiteral("%1 of the height").arg(percent(real.rate));
    case KpReal::FromRight:
        return fromEdge(number(real.rate), true, axis);
    case KpReal::FromBottom:
        return fromEdge(number(real.rate), false, axis);
    case KpReal::PartOfSide:
        return ofSide;
    case KpReal::FromRightPartOfSide:
        return fromEdge(ofSide, true, axis);
    case KpReal::FromBottomPartOfSide:
        return fromEdge(ofSide, false, axis);
    default:
        return QStringLiteral("%1 by no rule").arg(number(real.value));
    }
}

QString kindOf(KpPathSeg::SegType type)
{
    switch (type) {
    case KpPathSeg::SegMoveTo:
        return QStringLiteral("move");
    case KpPathSeg::SegLineTo:
        return QStringLiteral("line");
    case KpPathSeg::SegCurveTo:
        return QStringLiteral("curve");
    case KpPathSeg::SegEllipse:
        return QStringLiteral("ellipse");
    }
    return {};
}

QString partOf(HandleKind kind, bool isEllipse)
{
    switch (kind) {
    case HandleKind::Point:
        return isEllipse ? QStringLiteral("centre") : QString();
    case HandleKind::Control1:
        return QStringLiteral("first control point");
    case HandleKind::Control2:
        return QStringLiteral("second control point");
    case HandleKind::RadiusA:
        return QStringLiteral("horizontal radius");
    case HandleKind::RadiusB:
        return QStringLiteral("vertical radius");
    }
    return {};
}

} // namespace

QString coordinateText(KpReal const& real, Axis axis)
{
    return QStringLiteral("%1 %2").arg(
        axis == Axis::X ? QStringLiteral("x") : QStringLiteral("y"), placeText(real, axis));
}

QString handleName(KpPathSegList const& list, HandleId id)
{
    auto const handle = handleOf(list, id);
    if (!handle)
        return {};
    KpPathSeg::SegType const type = list.segs.at(id.segment)->type;
    QString name = QStringLiteral("Point %1 of %2, %3")
                       .arg(id.segment + 1)
                       .arg(list.segs.count())
                       .arg(kindOf(type));
    QString const part = partOf(id.kind, type == KpPathSeg::SegEllipse);
    if (!part.isEmpty())
        name += QStringLiteral(", ") + part;
    // A radius is a length along its axis and has no other coordinate.
    if (id.kind == HandleKind::RadiusA)
        return name + QStringLiteral(": ") + placeText(*handle->x, Axis::X);
    if (id.kind == HandleKind::RadiusB)
        return name + QStringLiteral(": ") + placeText(*handle->y, Axis::Y);
    return QStringLiteral("%1: %2, %3")
        .arg(name, coordinateText(*handle->x, Axis::X), coordinateText(*handle->y, Axis::Y));
}
