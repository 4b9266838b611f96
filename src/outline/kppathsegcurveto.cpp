// SPDX-License-Identifier: MIT
#include "kppathsegcurveto.h"

#include "boundpoint_p.h"
#include "geometryxml_p.h"

#include <QPainterPath>

KpPathSegCurveTo::KpPathSegCurveTo(
    QPointF const& control1, QPointF const& control2, QPointF const& end, KpPathSegList* list)
    : KpPathSeg(SegCurveTo, list)
    , ctrl1(BoundPoint::at(control1))
    , ctrl2(BoundPoint::at(control2))
{
    pt = BoundPoint::at(end);
}

KpPathSegCurveTo::KpPathSegCurveTo(
    KpPoint const& control1, KpPoint const& control2, KpPoint const& end, KpPathSegList* list)
    : KpPathSeg(SegCurveTo, list)
    , ctrl1(control1)
    , ctrl2(control2)
{
    pt = end;
}

KpPathSegCurveTo::~KpPathSegCurveTo() = default;

void KpPathSegCurveTo::saveTo(QDomElement& geometry)
{
    GeometryXml::saveSegment(*this, geometry);
}

void KpPathSegCurveTo::saveTo(XmlStreamWriter& writer)
{
    GeometryXml::saveSegment(*this, writer);
}

bool KpPathSegCurveTo::parse(QDomElement const& element, unsigned int /*context*/)
{
    GeometryXml::parseEach(*this, element);
    return true;
}

bool KpPathSegCurveTo::parse(QXmlStreamReader& reader, unsigned int /*context*/)
{
    GeometryXml::parseSegment(*this, reader);
    return true;
}

KpPathSeg* KpPathSegCurveTo::clone()
{
    return new KpPathSegCurveTo(ctrl1, ctrl2, pt, nullptr);
}

void KpPathSegCurveTo::addToPath(KpPath& path)
{
    KpPath::KpElement* const elements = BoundPoint::appendTo(path, 3);
    elements[0] = BoundPoint::element(ctrl1, QPainterPath::CurveToElement);
    elements[1] = BoundPoint::element(ctrl2, QPainterPath::CurveToDataElement);
    elements[2] = BoundPoint::element(pt, QPainterPath::CurveToDataElement);
}

void KpPathSegCurveTo::updateValue(double width, double height)
{
    ctrl1.updateValue(width, height);
    ctrl2.updateValue(width, height);
    pt.updateValue(width, height);
}

void KpPathSegCurveTo::updateRate(double width, double height)
{
    ctrl1.updateRate(width, height);
    ctrl2.updateRate(width, height);
    pt.updateRate(width, height);
}

void KpPathSegCurveTo::applyTransform(QMatrix matrix)
{
    BoundPoint::map(pt, matrix);
    BoundPoint::map(ctrl1, matrix);
    BoundPoint::map(ctrl2, matrix);
}

void KpPathSegCurveTo::translate(double dx, double dy)
{
    BoundPoint::translate(pt, dx, dy);
    BoundPoint::translate(ctrl1, dx, dy);
    BoundPoint::translate(ctrl2, dx, dy);
}

KpPathSegCurveTo* KpPathSegCurveTo::toCurveTo()
{
    return this;
}
