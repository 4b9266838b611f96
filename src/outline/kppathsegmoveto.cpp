// SPDX-License-Identifier: MIT
#include "kppathsegmoveto.h"

#include "boundpoint_p.h"
#include "geometryxml_p.h"

#include <QPainterPath>

KpPathSegMoveTo::KpPathSegMoveTo(QPointF const& point, KpPathSegList* list)
    : KpPathSeg(SegMoveTo, list)
{
    pt = BoundPoint::at(point);
}

KpPathSegMoveTo::KpPathSegMoveTo(KpPoint const& point, KpPathSegList* list)
    : KpPathSeg(SegMoveTo, list)
{
    pt = point;
}

KpPathSegMoveTo::~KpPathSegMoveTo() = default;

QPointF KpPathSegMoveTo::startPt()
{
    return BoundPoint::position(pt);
}

void KpPathSegMoveTo::setStartPt(QPointF point)
{
    BoundPoint::setPosition(pt, point);
}

void KpPathSegMoveTo::saveTo(QDomElement& geometry)
{
    GeometryXml::saveSegment(*this, geometry);
}

void KpPathSegMoveTo::saveTo(XmlStreamWriter& writer)
{
    GeometryXml::saveSegment(*this, writer);
}

bool KpPathSegMoveTo::parse(QDomElement const& element, unsigned int /*context*/)
{
    if (element.isNull())
        return false;
    GeometryXml::parseFirstOfEach(*this, element);
    return true;
}

bool KpPathSegMoveTo::parse(QXmlStreamReader& reader, unsigned int /*context*/)
{
    GeometryXml::parseSegment(*this, reader);
    return true;
}

KpPathSeg* KpPathSegMoveTo::clone()
{
    return new KpPathSegMoveTo(pt, nullptr);
}

void KpPathSegMoveTo::addToPath(KpPath& path)
{
    path.append(BoundPoint::element(pt, QPainterPath::MoveToElement));
}
