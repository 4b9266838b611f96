// SPDX-License-Identifier: MIT
#include "kppathsegellipse.h"

#include "boundpoint_p.h"
#include "geometryxml_p.h"

#include <algorithm>

KpPathSegEllipse::KpPathSegEllipse(
    QPointF const& centre, double horizontalRadius, double verticalRadius, KpPathSegList* list)
    : KpPathSegEllipse(BoundPoint::at(centre), BoundPoint::horizontal(horizontalRadius),
        BoundPoint::vertical(verticalRadius), list)
{
}

KpPathSegEllipse::KpPathSegEllipse(KpPoint const& centre, KpReal const& horizontalRadius,
    KpReal const& verticalRadius, KpPathSegList* list)
    : KpPathSeg(SegEllipse, list)
    , a(KpReal::PartOfWidth, horizontalRadius.rate, horizontalRadius.value)
    , b(KpReal::PartOfHeight, verticalRadius.rate, verticalRadius.value)
{
    pt = centre;
}

KpPathSegEllipse::~KpPathSegEllipse() = default;

void KpPathSegEllipse::saveTo(QDomElement& geometry)
{
    GeometryXml::saveSegment(*this, geometry);
}

void KpPathSegEllipse::saveTo(XmlStreamWriter& writer)
{
    GeometryXml::saveSegment(*this, writer);
}

bool KpPathSegEllipse::parse(QDomElement const& element, unsigned int /*context*/)
{
    GeometryXml::parseEach(*this, element);
    return true;
}

bool KpPathSegEllipse::parse(QXmlStreamReader& reader, unsigned int /*context*/)
{
    GeometryXml::parseSegment(*this, reader);
    return true;
}

KpPathSeg* KpPathSegEllipse::clone()
{
    return new KpPathSegEllipse(pt, a, b, nullptr);
}

void KpPathSegEllipse::addToPath(KpPath& path)
{
    QRectF const bounds(pt.x.value - a.value, pt.y.value - b.value, 2.0 * a.value, 2.0 * b.value);
    QVector<KpPath::KpElement> const ellipse = KpPath::ellipse(bounds);
    std::copy(ellipse.begin(), ellipse.end(), BoundPoint::appendTo(path, ellipse.count()));
}

void KpPathSegEllipse::updateValue(double width, double height)
{
    KpPathSeg::updateValue(width, height);
    a.updateValue(width, height);
    b.updateValue(width, height);
}

void KpPathSegEllipse::updateRate(double width, double height)
{
    KpPathSeg::updateRate(width, height);
    a.updateRate(width, height);
    b.updateRate(width, height);
}

KpPathSegEllipse* KpPathSegEllipse::toEllipse()
{
    return this;
}
