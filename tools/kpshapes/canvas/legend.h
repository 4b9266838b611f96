// SPDX-License-Identifier: MIT
#ifndef LEGEND_H
#define LEGEND_H

#include "document/bindingrule.h"

#include <QFont>
#include <QPalette>
#include <QSizeF>

class KpPathSegList;
class QPainter;

/** What a legend explains: the marks that an outline has. */
struct Legend
{
    RuleCounts rules {}; ///< how many coordinates each rule binds
    bool hasCurves = false; ///< curves or ellipses, and so control points or radii

    /** Whether there is nothing to explain. */
    bool isEmpty() const { return rules == RuleCounts {}; }
    /** What it takes with this font, in logical pixels. */
    QSizeF size(QFont const& font) const;
    /** Draws it on a panel of its own. @param topLeft of the panel */
    void paint(QPainter& painter, QPointF const& topLeft, QFont const& font,
        QPalette const& palette) const;
};

/** The legend of an outline. */
Legend legendOf(KpPathSegList const& list);

#endif // LEGEND_H
