// SPDX-License-Identifier: MIT
#ifndef KPPATHSEGLIST_H
#define KPPATHSEGLIST_H

#include "kpgeometry_export.h"
#include "kppathseg.h"

#include <QAtomicInt>
#include <QMatrix>
#include <QPointF>
#include <QVector>

class KpPath;
class QDomElement;
class QXmlStreamReader;
class XmlStreamWriter;

/**
 * One outline: the ordered list of its segments, which it owns, and three drawing flags.
 *
 * Coordinates are in the outline's own units, x to the right and y downwards. Indices count
 * from 0. Nothing here fails or throws: null segments are refused, indices out of range are
 * ignored, bad input gives the plain result. Two threads may use two lists at the same time;
 * one list must not be used by two.
 *
 * A segment must not be held twice: removeAll() would destroy it twice, and its neighbours are
 * those of one of its places; which one depends on the searches before. A destructor or an
 * override that is called from here must not change the list.
 *
 * clone(), isClockwise(), toUndoValue() and saveTo() change nothing and are not const: the
 * application's binary interface has them so.
 */
class KPGEOMETRY_EXPORT KpPathSegList
{
public:
    bool closed; ///< a ring: neighbours wrap around and the drawn path is closed
    bool noLine; ///< the outline is not to be stroked; carried for the renderer
    bool noFill; ///< the interior is not to be filled; carried for the renderer

private:
    friend struct SegmentSearch;

    mutable QAtomicInt lastFound; ///< where the last search for a segment ended

public:
    QVector<KpPathSeg*> segs; ///< in drawing order; never null, owned

    /** Empty and open, all flags false. */
    KpPathSegList();
    /** A deep copy. */
    KpPathSegList(KpPathSegList const& other);
    KpPathSegList& operator=(KpPathSegList const&) = delete;
    /** Destroys every segment that the list still holds. */
    virtual ~KpPathSegList();

    /** A deep copy; the caller owns it. */
    KpPathSegList* clone();
    /**
     * Appends clones of the segments that `other` holds at the call, and takes its flags. The
     * segments held before stay; to replace them call removeAll(true) first.
     */
    void assign(KpPathSegList const& other);
    /**
     * Destroys every segment and resets the flags. A cleared list is closed, although a new
     * one is open; this is deliberate, clients rely on both.
     */
    void clear();

    /** The flag `closed`. */
    bool getClosed() const;
    /** The flag `noLine`. */
    bool getNoLine() const;
    /** The flag `noFill`. */
    bool getNoFill() const;

    /** Appends `seg`, takes ownership and sets its `owner`; null is refused. */
    void addTail(KpPathSeg* seg);
    /**
     * Inserts `seg` before the segment now at `index`, takes ownership and sets its `owner`;
     * null is refused. A negative index means the front, one at or beyond the count the end.
     */
    void insertAt(int index, KpPathSeg* seg);
    /** Appends a move to `point`, bound in proportion to the box, rates 0. */
    void moveTo(QPointF point);
    /** Appends a line to `point`, bound in proportion to the box, rates 0. */
    void lineTo(QPointF point);
    /** Appends a cubic curve to `end`, bound in proportion to the box, rates 0. */
    void curveTo(QPointF control1, QPointF control2, QPointF end);

    /**
     * Empties the list; the flags stay.
     *
     * @param deleteSegs false hands the segments over to the caller; their `owner` still
     * names this list
     */
    void removeAll(bool deleteSegs);
    /** Removes one segment, destroying it if `deleteSeg`; an index out of range is ignored. */
    void removeAt(int index, bool deleteSeg);
    /**
     * Removes the segments that stand at `indices` at the time of the call, in any order. The
     * first index out of range ends the removal: it and all later ones are ignored. An index
     * given again removes the next segment that is still there.
     */
    void removeAt(QVector<int> indices, bool deleteSegs);

    /**
     * The segment after `seg`; on a closed list the first one follows the last. Null at the
     * end of an open list and for null. A segment that the list does not hold is followed by
     * the first; it must exist all the same, here and below.
     *
     * An answer of this function or the next costs constant time, in a walk or in any order.
     * After a change of the list, also one of `segs` itself, the first questions search on both
     * sides of where the segment was.
     */
    KpPathSeg* getNextSeg(KpPathSeg* seg) const;
    /**
     * The segment before `seg`; on a closed list the last one precedes the first. Null at the
     * start of an open list and for null. A segment that the list does not hold is preceded
     * by the last one of a closed list, and by none of an open one.
     */
    KpPathSeg* getPrevSeg(KpPathSeg* seg) const;

    /** Moves every segment. */
    void translate(double dx, double dy);
    /** Recomputes every bound value for a box of `width` by `height`. */
    void updateValue(double width, double height);
    /** Takes the current values as the reference for a box of `width` by `height`. */
    void updateRate(double width, double height);
    /** Maps the points of every segment. The radii of ellipses do not follow. */
    void applyTransform(QMatrix matrix);

    /** Appends the drawing to `path`, and a close when the list is closed. */
    void toPath(KpPath& path) const;
    /**
     * Appends a segment for each drawing step of `path`; a close sets `closed`, which is never
     * reset. Elements that form no step are skipped: a curve without two followers, a stray
     * data element, an unknown type.
     */
    void fromPath(KpPath& path);
    /** Whether the drawing runs clockwise on screen; false when it encloses no area. */
    bool isClockwise();

    /**
     * Appends the outline's undo record to both vectors. The number of segments is not part
     * of it: the caller keeps `segs.count()` for fromUndoValue.
     *
     * Ints: closed, noFill, noLine (1 or 0), then for each segment its type and the bases of
     * its reals. Doubles: value and rate of the same reals. Reals stand in the order of the
     * document format: x and y of `pt`, then of the control points, or the radii.
     */
    void toUndoValue(QVector<int>& ints, QVector<double>& doubles);
    /**
     * Appends the segments of the undo record that starts at the two positions, sets the
     * flags, and moves the positions behind the record.
     *
     * A record that ends early, or a negative position, stops the reading there: the flags are
     * read together or not at all, whole segments stay, the unfinished one is dropped, and the
     * positions stand before what was not read. An unknown type takes one int and no real, and
     * counts as a segment.
     *
     * @param segmentCount how many segments the record holds; 0 or less reads the flags only
     */
    void fromUndoValue(QVector<int>& ints, QVector<double>& doubles, int& intPos, int& doublePos,
        int segmentCount);

    /** Appends a `Geometry` element to `parent`; a null parent takes nothing. */
    void saveTo(QDomElement& parent);
    /** Writes a `Geometry` element at the writer's position. */
    void saveTo(XmlStreamWriter& writer);
    /**
     * Reads the `Geometry` element `geometry`: appends its segments, and sets the flags whose
     * attributes are there and not empty. Unknown children are ignored. Always true.
     *
     * @param context handed on to the segments; not examined
     */
    bool parse(QDomElement const& geometry, unsigned int context);
    /**
     * Reads the `Geometry` element on whose start tag the reader stands, to its end tag. As
     * the DOM reader, but an empty NoFill or NoLine reads as false; and a start tag without
     * any attribute is not read at all: the result is false and the reader does not move.
     *
     * An error in the XML ends the reading; it stays in the reader for the caller to see.
     *
     * @param context handed on to the segments; not examined
     */
    bool parse(QXmlStreamReader& reader, unsigned int context);
};

static_assert(sizeof(KpPathSegList) == 24, "the application's layout of an outline");

#endif // KPPATHSEGLIST_H
