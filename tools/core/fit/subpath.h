// SPDX-License-Identifier: MIT
#ifndef SUBPATH_H
#define SUBPATH_H

#include "kppathseglist.h"

#include <QPointF>

#include <optional>
#include <string>
#include <vector>

/** An ellipse with axes that are parallel to those of the plane. */
struct DrawnEllipse
{
    QPointF centre; ///< in units
    double a = 0.0; ///< the horizontal radius
    double b = 0.0; ///< the vertical radius
    bool isClockwise = true; ///< as it was drawn, on screen
};

/** A line or a curve of a subpath, from where the step before it ends. */
struct DrawnStep
{
    bool isCurve = false; ///< a line has no control points
    QPointF control1; ///< of the start
    QPointF control2; ///< of the end
    QPointF end; ///< in units
};

/** What is drawn between two moves: points without rules. */
struct Subpath
{
    bool hasMove = true; ///< false for what follows an ellipse, or begins an outline, without one
    QPointF start; ///< where the move leads
    std::vector<DrawnStep> steps; ///< in drawing order
    bool isRing = false; ///< whether it ends where it starts
    bool isClosedByFlag = false; ///< the last step is drawn by the outline's flag, not a segment
    std::optional<DrawnEllipse> ellipse; ///< what the four curves of a ring are, if they are one
    bool isEllipseSegment = false; ///< drawn as one, not by a move and four curves

    /** A letter a step: 'L' or 'C'. */
    std::string kinds() const;
    /** Where step `index` ends; the start for 0, since step 1 is the first. */
    QPointF point(std::size_t index) const { return index == 0 ? start : steps[index - 1].end; }
};

/**
 * The subpaths of an outline in their order. A ring of four curves that is an ellipse is known as
 * one.
 *
 * @param tolerance how far points may be off, in units
 */
std::vector<Subpath> subpathsOf(KpPathSegList const& list, double tolerance);

/** The same drawn from its end to its start. */
Subpath reversed(Subpath const& subpath);

/** The same ring, started at the end of step `shift`, which is below the number of steps. */
Subpath rotated(Subpath const& ring, std::size_t shift);

#endif // SUBPATH_H
