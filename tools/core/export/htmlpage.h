// SPDX-License-Identifier: MIT
#ifndef HTMLPAGE_H
#define HTMLPAGE_H

#include "document/shapes.h"

#include <QByteArray>
#include <QColor>
#include <QSizeF>
#include <QString>

/** What a page shows beside the outlines. */
struct PageSettings
{
    QString title; ///< any text
    QSizeF box; ///< at first, in the outlines' units, see boxOf(); sides below 0.001 are 0.001
    bool showsPoints = false; ///< at first
    QColor background; ///< of the drawing; invalid: light or dark, as its reader's screen is
};

/**
 * A page in one file that shows the shapes over one another in a box that its reader drags: each
 * coordinate follows its rule. It needs no network and, by its own policy, runs no script and takes
 * no style but those that it brings; names may hold anything.
 *
 * The same shapes and settings give the same bytes. A segment with a coordinate that is no
 * number, or further away than the longer side of the first box 100,000 times, is left out in the
 * boxes for which it has one.
 */
QByteArray htmlPage(Shapes const& shapes, PageSettings const& settings);

#endif // HTMLPAGE_H
