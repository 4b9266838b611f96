#ifndef OUTLINEFACTS_H
#define OUTLINEFACTS_H

#include "bindingrule.h"
#include "kppathseglist.h"

#include <QRectF>
#include <QString>

/** What can be said of an outline at a glance. */
struct OutlineFacts
{
    int moves = 0;
    int lines = 0;
    int curves = 0;
    int ellipses = 0;
    RuleCounts rules {}; ///< reals by the rule that binds them
    QRectF bounds; ///< of the drawing, control points excluded; null if nothing is drawn
    QString direction; ///< "clockwise", "counterclockwise" or "none", as seen on screen
};

OutlineFacts factsOf(KpPathSegList& list);

#endif // OUTLINEFACTS_H
