// SPDX-License-Identifier: MIT
#ifndef KPPATHSEG_H
#define KPPATHSEG_H

#include "kpgeometry_export.h"
#include "kppoint.h"

#include <QAtomicInt>
#include <QMatrix>
#include <QPointF>

class KpPath;
class KpPathSegCurveTo;
class KpPathSegEllipse;
class KpPathSegList;
class QDomElement;
class QXmlStreamReader;
class XmlStreamWriter;

/**
 * One drawing step of an outline: the abstract base of the four segment kinds.
 *
 * A segment is owned by the list that holds it (KpPathSegList), or by its creator while no
 * list does. Coordinates are in the outline's own units, x to the right and y downwards.
 * Segments are copied with clone() only.
 *
 * The `owner` of a constructor is remembered, no more: the list does not hold the segment
 * before KpPathSegList::addTail() or insertAt(), which set `owner` themselves. Null will do.
 *
 * Functions that change nothing are not const: the application's binary interface has them so.
 *
 * The order of the virtual functions is part of the binary interface; every segment header
 * declares its overrides in this order.
 */
class KPGEOMETRY_EXPORT KpPathSeg
{
public:
    /** The segment kinds. 0 and 1 belong to none. */
    enum SegType : int { SegMoveTo = 2, SegLineTo = 3, SegCurveTo = 4, SegEllipse = 5 };

    SegType type; ///< the kind; set by the constructor, never changed

private:
    friend struct SegmentSearch;

    QAtomicInt place; ///< where a list looks for the segment first; negative: nowhere yet

public:
    KpPathSegList* owner; ///< the list that holds the segment, or null; not owned
    KpPoint pt; ///< the end point; of an ellipse, the centre

    /** A segment at the origin, bound to the box in proportion, with rates 0. No list holds it yet. */
    KpPathSeg(SegType type, KpPathSegList* owner);
    virtual ~KpPathSeg();

    /**
     * Where the segment starts: the values of the `pt` of the segment before it, which on a
     * closed list wraps around; (0, 0) when there is none. A move starts at its own point.
     */
    virtual QPointF startPt();
    /**
     * Moves the start: writes the values of the `pt` that startPt() reads, and leaves its
     * rates and rules alone. Does nothing when there is no such point.
     */
    virtual void setStartPt(QPointF point);

    /** Appends the segment's own element to `geometry`, its outline's; null takes nothing. */
    virtual void saveTo(QDomElement& geometry) = 0;
    /** Writes the segment's element at the writer's position. */
    virtual void saveTo(XmlStreamWriter& writer) = 0;
    /**
     * Reads the segment from its own element. What is missing leaves its field as it was,
     * what is unknown is ignored, a number that cannot be read stores 0.
     *
     * @param context carried for readers of later kinds; not examined
     * @return what the kind's own comment says; the list reader ignores it
     */
    virtual bool parse(QDomElement const& element, unsigned int context) = 0;
    /**
     * Reads the segment from a reader that stands on its start tag, and leaves it on the end
     * tag of the segment, or at the end of the input or its first error. Always true.
     */
    virtual bool parse(QXmlStreamReader& reader, unsigned int context) = 0;

    /** A copy without an owner; the caller owns it. */
    virtual KpPathSeg* clone() = 0;
    /** Appends the segment's drawing to `path`. */
    virtual void addToPath(KpPath& path) = 0;

    /** KpReal::updateValue of every real of the segment. */
    virtual void updateValue(double width, double height);
    /** KpReal::updateRate of every real of the segment. */
    virtual void updateRate(double width, double height);
    /** Maps the values of the segment's points; rates and rules stay. */
    virtual void applyTransform(QMatrix matrix);
    /** Moves the values of the segment's points; rates and rules stay. */
    virtual void translate(double dx, double dy);

    /** The segment itself if it is a curve, else null. */
    virtual KpPathSegCurveTo* toCurveTo();
    /** The segment itself if it is an ellipse, else null. */
    virtual KpPathSegEllipse* toEllipse();

    /**
     * Whether the segment is the last of its owner's list. Closed lists do not wrap here;
     * false without an owner.
     */
    bool isLastSeg();

private:
    Q_DISABLE_COPY(KpPathSeg)
};

static_assert(sizeof(KpPathSeg) == 72, "the application's layout of a segment");
static_assert(sizeof(QAtomicInt) == 4, "what the application's layout leaves free beside the type");

#endif // KPPATHSEG_H
