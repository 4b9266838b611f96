#ifndef OUTLINESUMMARY_H
#define OUTLINESUMMARY_H

#include "document/bindingrule.h"
#include "kppathseglist.h"

#include <QRectF>
#include <QString>

/** What can be said of an outline at a glance. */
struct OutlineSummary
{
    int moves = 0;
    int lines = 0;
    int curves = 0;
    int ellipses = 0;
    RuleCounts rules {}; ///< reals by the rule that binds them
    QRectF bounds; ///< of the drawing, control points excluded; null if nothing is drawn
    QString direction; ///< "clockwise", "counterclockwise" or "none", as seen on screen
};

OutlineSummary summaryOf(KpPathSegList& list);

#endif // OUTLINESUMMARY_H
