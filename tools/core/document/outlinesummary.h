// SPDX-License-Identifier: MIT
#ifndef OUTLINESUMMARY_H
#define OUTLINESUMMARY_H

#include "document/bindingrule.h"
#include "kppathseglist.h"

#include <QRectF>
#include <QString>

/** What can be said of an outline at a glance. */
struct OutlineSummary
{
    int moves = 0; ///< segments that begin a subpath
    int lines = 0; ///< straight segments, drawn or too short to be
    int curves = 0; ///< cubic segments
    int ellipses = 0; ///< segments that are whole ellipses
    RuleCounts rules {}; ///< reals by the rule that binds them
    QRectF bounds; ///< of the drawing, control points excluded; null if nothing is drawn
    QString direction; ///< "clockwise", "counterclockwise" or "none", as seen on screen
};

/** Draws the outline, which stays as it is, to find its bounds and direction. */
OutlineSummary summaryOf(KpPathSegList& list);

#endif // OUTLINESUMMARY_H
