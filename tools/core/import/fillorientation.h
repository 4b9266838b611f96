// SPDX-License-Identifier: MIT
#ifndef FILLORIENTATION_H
#define FILLORIENTATION_H

#include <QPainterPath>

/** A path after the attempt to make both fill rules draw it alike. */
struct OrientedPath
{
    QPainterPath path; ///< with subpaths reversed, or as it was
    /** Whether nonzero winding and even-odd filling cover the same with `path`. */
    bool isSameForBothRules;
};

/**
 * The path with some of its subpaths reversed, so that it covers under either fill rule what
 * `path` covers under its own, for readers that do not know which rule is meant.
 *
 * The path comes back as it was, to the bit, in two cases: if both rules draw it alike already,
 * and, with `isSameForBothRules` false, if no choice of directions makes them. The latter is so
 * for most subpaths that cross themselves, and for a path meant for nonzero winding that has
 * overlaps in one direction: reversing would change what it shows.
 *
 * Otherwise number and order of the subpaths stay, and of those that depend on each other the
 * first keeps its direction. A reversed subpath has the same points and segments in the
 * opposite order: a closed one still starts at its start, an open one, which is filled as if
 * closed, starts at its former end. So of its line only what follows the direction changes, such
 * as dashes. Where subpaths cross, faces of opposite winding meet at the corners, and
 * antialiasing that adds up areas with their signs leaves single pixels too light there.
 *
 * Curves are judged by polygons. What is narrower than a ten-thousandth of the path, or than a
 * hundredth of the subpath whose edge it is at if that is less, does not count. The rest is
 * found on rows across the path, at its points and at equal distances. A path with tens of
 * thousands of elements gets fewer rows, though each subpath is met: there small overlaps can
 * go unnoticed.
 *
 * False can also mean that telling would take too long: if hundreds of subpaths have edges in
 * common, or tens of thousands lie one above the other in a part of the path with as many
 * edges side by side.
 *
 * Coordinates must be finite. May be called by several threads at once.
 */
OrientedPath orientedForBothRules(QPainterPath const& path);

#endif // FILLORIENTATION_H
