// SPDX-License-Identifier: MIT
#include "kppathseglineto.h"

#include "boundpoint_p.h"
#include "geometryxml_p.h"

#include <QPainterPath>

#include <cmath>

KpPathSegLineTo::KpPathSegLineTo(QPointF const& point, KpPathSegList* list)
    : KpPathSeg(SegLineTo, list)
{
    pt = BoundPoint::at(point);
}

KpPathSegLineTo::KpPathSegLineTo(KpPoint const& point, KpPathSegList* list)
    : KpPathSeg(SegLineTo, list)
{
    pt = point;
}

KpPathSegLineTo::~KpPathSegLineTo() = default;

void KpPathSegLineTo::saveTo(QDomElement& geometry)
{
    GeometryXml::saveSegment(*this, geometry);
}

void KpPathSegLineTo::saveTo(XmlStreamWriter& writer)
{
    GeometryXml::saveSegment(*this, writer);
}

bool KpPathSegLineTo::parse(QDomElement const& element, unsigned int /*context*/)
{
    if (element.isNull())
        return false;
    GeometryXml::parseFirstOfEach(*this, element);
    return true;
}

bool KpPathSegLineTo::parse(QXmlStreamReader& reader, unsigned int /*context*/)
{
    GeometryXml::parseSegment(*this, reader);
    return true;
}

KpPathSeg* KpPathSegLineTo::clone()
{
    return new KpPathSegLineTo(pt, nullptr);
}

void KpPathSegLineTo::addToPath(KpPath& path)
{
    // Shorter than this in both directions, a line would only be a speck at its join.
    double const shortest = 1.0;
    if (!path.isEmpty()) {
        KpPath::KpElement const& last = path.last();
        if (std::abs(pt.x.value - last.x) < shortest && std::abs(pt.y.value - last.y) < shortest)
            return;
    }
    path.append(BoundPoint::element(pt, QPainterPath::LineToElement));
}
