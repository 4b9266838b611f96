// SPDX-License-Identifier: MIT
#ifndef PATHDATAPARSER_H
#define PATHDATAPARSER_H

#include "kppathseglist.h"

#include <QString>

#include <optional>

/** Why a text is no path data. */
struct PathDataFault
{
    int line = 0; ///< of the first character that does not fit, or of the end, from 1
    int column = 0; ///< likewise, in characters from 1
    QString what; ///< what is wrong there
};

/**
 * Reads the path data of SVG (the attribute `d` of a `path`; SVG 1.1, 8.3) and appends its
 * segments: all commands, in either case. Places are exactly those that the text gives.
 *
 * Quadratic curves become cubic ones. An arc becomes cubic curves, as arcCurves() makes them; two
 * arcs that make a whole upright ellipse, clockwise and in a closed subpath of their own, become an
 * ellipse. Subpaths that draw nothing are left out. `closed` is set if the last subpath is closed;
 * one before it gets a line back to its start instead, for an outline closes its last one only.
 * All coordinates are bound in proportion to the box, with rate 0.
 *
 * @return the fault, with what could be read before it in the list; nothing if there is none
 */
std::optional<PathDataFault> parsePathData(QString const& text, KpPathSegList& list);

#endif // PATHDATAPARSER_H
