// SPDX-License-Identifier: MIT
#ifndef KPPATHSEGLINETO_H
#define KPPATHSEGLINETO_H

#include "kppathseg.h"

/** A straight line from the start point to `pt`. */
class KPGEOMETRY_EXPORT KpPathSegLineTo : public KpPathSeg
{
public:
    /**
     * A line to `point`, bound in proportion to the width and the height, rates 0.
     *
     * @param owner remembered only: the list that gets the segment sets it
     */
    KpPathSegLineTo(QPointF const& point, KpPathSegList* owner);
    /** A line to `point`, with all its fields; `owner` as above. */
    KpPathSegLineTo(KpPoint const& point, KpPathSegList* owner);
    ~KpPathSegLineTo() override;

    void saveTo(QDomElement& geometry) override;
    void saveTo(XmlStreamWriter& writer) override;
    /** Of repeated coordinates the first counts. False, with nothing read, if null. */
    bool parse(QDomElement const& element, unsigned int context) override;
    /** Of repeated coordinates the last counts. Always true. */
    bool parse(QXmlStreamReader& reader, unsigned int context) override;

    KpPathSeg* clone() override;
    /**
     * Appends a line element, unless `pt` lies less than one unit from the last element of
     * `path`, of whatever type, in both directions: so short a line is dropped. On an empty
     * path the line stands alone, without a move.
     */
    void addToPath(KpPath& path) override;
};

static_assert(sizeof(KpPathSegLineTo) == 72, "the application's layout of a line");

#endif // KPPATHSEGLINETO_H
