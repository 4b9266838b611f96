// SPDX-License-Identifier: MIT
#ifndef KPPATHSEGMOVETO_H
#define KPPATHSEGMOVETO_H

#include "kppathseg.h"

/** Starts a new subpath at `pt`. */
class KPGEOMETRY_EXPORT KpPathSegMoveTo : public KpPathSeg
{
public:
    /**
     * A move to `point`, bound in proportion to the width and the height, rates 0.
     *
     * @param owner remembered only: the list that gets the segment sets it
     */
    KpPathSegMoveTo(QPointF const& point, KpPathSegList* owner);
    /** A move to `point`, with all its fields; `owner` as above. */
    KpPathSegMoveTo(KpPoint const& point, KpPathSegList* owner);
    ~KpPathSegMoveTo() override;

    /** A move starts where it stands: the values of its own `pt`. */
    QPointF startPt() override;
    /** Moves the segment itself. */
    void setStartPt(QPointF point) override;

    void saveTo(QDomElement& geometry) override;
    void saveTo(XmlStreamWriter& writer) override;
    /** Of repeated coordinates the first counts. False, with nothing read, if null. */
    bool parse(QDomElement const& element, unsigned int context) override;
    /** Of repeated coordinates the last counts. Always true. */
    bool parse(QXmlStreamReader& reader, unsigned int context) override;

    KpPathSeg* clone() override;
    /** Appends a move element, even if the path already ends at that point. */
    void addToPath(KpPath& path) override;
};

static_assert(sizeof(KpPathSegMoveTo) == 72, "the application's layout of a move");

#endif // KPPATHSEGMOVETO_H
