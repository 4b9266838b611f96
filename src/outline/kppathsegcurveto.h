// SPDX-License-Identifier: MIT
#ifndef KPPATHSEGCURVETO_H
#define KPPATHSEGCURVETO_H

#include "kppathseg.h"

/** A cubic Bézier curve from the start point through `ctrl1` and `ctrl2` to `pt`. */
class KPGEOMETRY_EXPORT KpPathSegCurveTo : public KpPathSeg
{
public:
    KpPoint ctrl1; ///< the control point of the start
    KpPoint ctrl2; ///< the control point of the end

    /**
     * A curve whose points are bound in proportion to the width and the height, rates 0.
     *
     * @param owner remembered only: the list that gets the segment sets it
     */
    KpPathSegCurveTo(
        QPointF const& control1, QPointF const& control2, QPointF const& end, KpPathSegList* owner);
    /** A curve of these points, with all their fields; the end comes last. `owner` as above. */
    KpPathSegCurveTo(
        KpPoint const& control1, KpPoint const& control2, KpPoint const& end, KpPathSegList* owner);
    ~KpPathSegCurveTo() override;

    void saveTo(QDomElement& geometry) override;
    void saveTo(XmlStreamWriter& writer) override;
    /** Repeated coordinates are read in turn. Always true, also for a null element. */
    bool parse(QDomElement const& element, unsigned int context) override;
    /** Repeated coordinates are read in turn. Always true. */
    bool parse(QXmlStreamReader& reader, unsigned int context) override;

    KpPathSeg* clone() override;
    /** Appends three elements: the two control points and the end point. */
    void addToPath(KpPath& path) override;

    void updateValue(double width, double height) override;
    void updateRate(double width, double height) override;
    void applyTransform(QMatrix matrix) override;
    void translate(double dx, double dy) override;

    KpPathSegCurveTo* toCurveTo() override;
};

static_assert(sizeof(KpPathSegCurveTo) == 168, "the application's layout of a curve");

#endif // KPPATHSEGCURVETO_H
