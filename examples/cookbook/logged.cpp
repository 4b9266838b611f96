// SPDX-License-Identifier: MIT
// Logs an outline, a segment, a coordinate and a colour.

#include <kpbound.h>
#include <kpdebug.h>
#include <kppathseglineto.h>
#include <kppathsegmoveto.h>

int main()
{
    //! [plate]
    KpPathSegList plate;
    plate.addTail(
        new KpPathSegMoveTo(KpBound::point(KpBound::absolute(0), KpBound::absolute(0)), nullptr));
    plate.addTail(new KpPathSegLineTo(
        KpBound::point(KpBound::fromRightPartOfSide(0.25), KpBound::absolute(0)), nullptr));
    plate.addTail(new KpPathSegLineTo(
        KpBound::point(KpBound::partOfWidth(1), KpBound::fromBottom(10)), nullptr));
    plate.closed = true;
    plate.updateValue(240, 160);
    //! [plate]

    KpPathSeg* const last = plate.segs.last();
    KpColor fill;
    fill.setTintColor(QColor(68, 114, 196), -50, 5);

    //! [log]
    qDebug() << plate; // with kpdebug.h
    qDebug() << last << last->pt.x << fill;
    //! [log]
}
