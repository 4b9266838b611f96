// SPDX-License-Identifier: MIT
#ifndef KPPATH_H
#define KPPATH_H

#include "kpgraphics_export.h"

#include <QPainterPath>
#include <QRectF>
#include <QVector>

/**
 * A painter path: the plain sequence of elements that a shape is drawn from.
 *
 * x grows to the right and y grows downwards, as on the screen. Nothing is checked on
 * entry: the sequence holds whatever was appended, and every operation gives a defined
 * result for any sequence.
 */
class KpPath
{
public:
    /**
     * One element. Its type is 0 for a move, 1 for a line, 2 for the first control point of a
     * cubic curve, 3 for that curve's second control point and then for its end point (these
     * four are QPainterPath::ElementType), or 4 for the close of the current subpath. Any
     * other type draws nothing. `reserved1` and `reserved2` are only carried.
     */
    struct KpElement
    {
        double x; ///< to the right
        double y; ///< downwards
        double reserved1; ///< carried, 0 in elements made here
        double reserved2; ///< carried, 0 in elements made here
        int type; ///< 0 to 4
    };

    QVector<KpElement> elements; ///< the only data of a path

    /** Appends `element` as it is. */
    void append(KpElement const& element) { elements.append(element); }
    /** How many elements there are. */
    int count() const { return elements.count(); }
    /** The element at `index`. @param index from 0 to count() - 1 */
    KpElement const& at(int index) const { return elements.at(index); }
    /** The last element; the path must not be empty. */
    KpElement const& last() const { return elements.last(); }
    /** Whether there is no element. */
    bool isEmpty() const { return elements.isEmpty(); }

    /**
     * Appends one close element. It carries the point at which the current subpath
     * started: that of the last move, or of the first element when there is no move, or
     * (0, 0) on an empty path.
     */
    KPGRAPHICS_EXPORT void closeSubpath();

    /**
     * The complete outline of the ellipse inscribed in `rect`: a move to the right-most
     * point, four cubic curves that run clockwise on screen, a close. An empty or negative
     * `rect` gives the same fourteen elements from the same formula.
     */
    KPGRAPHICS_EXPORT static QVector<KpElement> ellipse(QRectF rect);

    /**
     * Whether the outline runs clockwise on screen: the sign of the signed area of the one
     * polygon through all element points, control points included. False for zero area and
     * where a coordinate is NaN.
     */
    KPGRAPHICS_EXPORT bool isClockWise();

    /**
     * The same outline for QPainter. Elements that do not form a drawing step (a curve
     * without its two followers, a stray data element, an unknown type) are left out, and
     * Qt leaves out points that are not finite.
     */
    KPGRAPHICS_EXPORT QPainterPath toPainterPath() const;

    /**
     * The elements of `path` one by one, with nothing added: QPainterPath does not record
     * closes, it holds the closing line itself.
     */
    KPGRAPHICS_EXPORT static KpPath fromPainterPath(QPainterPath const& path);
};

static_assert(sizeof(KpPath::KpElement) == 40, "the application's layout of a path element");
static_assert(sizeof(KpPath) == sizeof(QVector<KpPath::KpElement>),
    "a path is its element vector, at offset 0");

Q_DECLARE_TYPEINFO(KpPath::KpElement, Q_PRIMITIVE_TYPE);

#endif // KPPATH_H
