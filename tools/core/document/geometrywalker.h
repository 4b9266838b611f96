// SPDX-License-Identifier: MIT
#ifndef GEOMETRYWALKER_H
#define GEOMETRYWALKER_H

#include "kppathseglist.h"

#include <QString>
#include <QStringList>
#include <QVector>

/**
 * What the elements inside a segment's element are to the readers, reported one by one in
 * document order.
 */
class SegmentWalker
{
public:
    /** A real of the segment, under the letter of its element. */
    struct Coordinate
    {
        QString letter; ///< the name of its element
        KpReal const* real; ///< of the segment; not owned
        bool isGiven; ///< whether there has been an element of it
    };

    /** What a child element is read into. */
    struct Match
    {
        KpReal const* real; ///< null for an element that readers ignore
        bool isFirst; ///< false for a coordinate that the segment has had before
    };

    /** @param segment what the readers have made of the element; it must outlive this */
    explicit SegmentWalker(KpPathSeg& segment);

    /** Goes on to the next child element, which has this name. */
    Match enter(QString const& elementName);

    /** The coordinates in the order of the format. */
    QVector<Coordinate> const& coordinates() const { return m_coordinates; }

private:
    QVector<Coordinate> m_coordinates;
};

/**
 * What the elements inside a `Geometry` element are to the readers, reported one by one in
 * document order, whatever the document is walked with: a tree or a stream.
 */
class GeometryWalker
{
public:
    /** @param list what the readers have made of the element; it must not change meanwhile */
    explicit GeometryWalker(KpPathSegList const& list)
        : m_list(list)
    {
    }

    /**
     * Goes on to the next child element, which has this name. The segment that was read from it,
     * or null for an element that readers ignore.
     */
    KpPathSeg* enter(QString const& elementName);

private:
    KpPathSegList const& m_list;
    int m_next = 0;
};

#endif // GEOMETRYWALKER_H
