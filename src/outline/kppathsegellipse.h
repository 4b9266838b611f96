// SPDX-License-Identifier: MIT
#ifndef KPPATHSEGELLIPSE_H
#define KPPATHSEGELLIPSE_H

#include "kppathseg.h"

/**
 * A whole ellipse around `pt`, a closed figure that does not connect to the segment before.
 *
 * It stays parallel to the axes: transforms and translations move the centre and leave the
 * radii as they are, whatever scale or rotation a matrix holds. This is deliberate, the
 * application scales ellipses through their box.
 */
class KPGEOMETRY_EXPORT KpPathSegEllipse : public KpPathSeg
{
public:
    KpReal a; ///< the horizontal radius, half the width
    KpReal b; ///< the vertical radius, half the height

    /**
     * An ellipse bound in proportion to the width and the height, rates 0.
     *
     * @param owner remembered only: the list that gets the segment sets it
     */
    KpPathSegEllipse(QPointF const& centre, double a, double b, KpPathSegList* owner);
    /**
     * Takes value and rate of the radii, but not their rules: `a` is always bound in
     * proportion to the width and `b` to the height. This is deliberate, and so holds for
     * clone(); readers and undo write the fields afterwards and restore any rule. `owner` as
     * above.
     */
    KpPathSegEllipse(KpPoint const& centre, KpReal const& a, KpReal const& b, KpPathSegList* owner);
    ~KpPathSegEllipse() override;

    void saveTo(QDomElement& geometry) override;
    void saveTo(XmlStreamWriter& writer) override;
    /** Repeated coordinates are read in turn. Always true, also for a null element. */
    bool parse(QDomElement const& element, unsigned int context) override;
    /** Repeated coordinates are read in turn. Always true. */
    bool parse(QXmlStreamReader& reader, unsigned int context) override;

    /** A copy without an owner, its radii bound as the constructor binds them. */
    KpPathSeg* clone() override;
    /** Appends KpPath::ellipse of the bounding box; radii of any sign are handed on. */
    void addToPath(KpPath& path) override;

    void updateValue(double width, double height) override;
    void updateRate(double width, double height) override;

    KpPathSegEllipse* toEllipse() override;
};

static_assert(sizeof(KpPathSegEllipse) == 120, "the application's layout of an ellipse");

#endif // KPPATHSEGELLIPSE_H
