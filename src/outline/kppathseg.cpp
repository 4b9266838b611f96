// SPDX-License-Identifier: MIT
#include "kppathseg.h"

#include "boundpoint_p.h"
#include "kppathseglist.h"

KpPathSeg::KpPathSeg(SegType segType, KpPathSegList* list)
    : type(segType)
    , place(-1)
    , owner(list)
    , pt(BoundPoint::at(QPointF(0.0, 0.0)))
{
}

KpPathSeg::~KpPathSeg() = default;

QPointF KpPathSeg::startPt()
{
    KpPathSeg const* const previous = owner ? owner->getPrevSeg(this) : nullptr;
    return previous ? BoundPoint::position(previous->pt) : QPointF(0.0, 0.0);
}

void KpPathSeg::setStartPt(QPointF point)
{
    if (KpPathSeg* const previous = owner ? owner->getPrevSeg(this) : nullptr)
        BoundPoint::setPosition(previous->pt, point);
}

void KpPathSeg::updateValue(double width, double height)
{
    pt.updateValue(width, height);
}

void KpPathSeg::updateRate(double width, double height)
{
    pt.updateRate(width, height);
}

void KpPathSeg::applyTransform(QMatrix matrix)
{
    BoundPoint::map(pt, matrix);
}

void KpPathSeg::translate(double dx, double dy)
{
    BoundPoint::translate(pt, dx, dy);
}

KpPathSegCurveTo* KpPathSeg::toCurveTo()
{
    return nullptr;
}

KpPathSegEllipse* KpPathSeg::toEllipse()
{
    return nullptr;
}

bool KpPathSeg::isLastSeg()
{
    return owner && !owner->segs.isEmpty() && owner->segs.constLast() == this;
}
