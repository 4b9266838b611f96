// SPDX-License-Identifier: MIT
#ifndef KPPATH_H
#define KPPATH_H

#include "othercompanions.h"

#include <QRectF>
#include <QVector>

class QPainterPath;

/** A painter path: a sequence of elements, each with the coordinates of one point. */
class KpPath
{
public:
    /** A point and what it is for: 0 move, 1 line, 2 and 3 curve and the rest of it, 4 close. */
    struct KpElement
    {
        double x;
        double y;
        double reserved1;
        double reserved2;
        int type;
    };

    QVector<KpElement> elements;

    void append(KpElement const& element) { elements.append(element); }
    int count() const { return elements.count(); }
    KpElement const& at(int index) const { return elements.at(index); }
    KpElement const& last() const { return elements.last(); }
    bool isEmpty() const { return elements.isEmpty(); }

    /** Appends an element 4 at the point where the subpath started, (0, 0) on an empty path. */
    OTHERCOMPANIONS_EXPORT void closeSubpath();
    /** A closed outline, clockwise on screen from the right-most point. */
    OTHERCOMPANIONS_EXPORT static QVector<KpElement> ellipse(QRectF rect);
    /** Whether the polygon through all points has an area and runs clockwise on screen. */
    OTHERCOMPANIONS_EXPORT bool isClockWise();

    OTHERCOMPANIONS_EXPORT QPainterPath toPainterPath() const;
    OTHERCOMPANIONS_EXPORT static KpPath fromPainterPath(QPainterPath const& path);
};

#endif
