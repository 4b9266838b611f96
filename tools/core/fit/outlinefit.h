// SPDX-License-Identifier: MIT
#ifndef OUTLINEFIT_H
#define OUTLINEFIT_H

#include "common/diagnostic.h"
#include "document/shapes.h"
#include "fit/boxproposal.h"
#include "fit/rulefit.h"

#include <QSizeF>
#include <QString>
#include <QVector>

#include <optional>
#include <vector>

/** One drawing of the outlines that are to be learnt, at one size. */
struct SizedDrawing
{
    QString file; ///< its name in diagnostics
    QSizeF box; ///< that it was drawn for: both sides above 0
    Shapes
        shapes; ///< their values are those in that box; rules and boxes of their own do not count
};

/** How rules are learnt. */
struct FitOptions
{
    double tolerance = 0.0; ///< how far a coordinate may be off, in units; not negative
    bool findsEllipses = true; ///< whether four curves that are an ellipse become an Ellipse
};

/** A coordinate that the drawings do not decide, or that no rule expresses. */
struct CoordinateFinding
{
    int shape; ///< from 0, in FitResult::shapes
    int segment; ///< from 0, in the list of the shape
    QString letter; ///< of its element in the document format
    CoordinateFit fit; ///< what was taken, and what else would do
};

/** What was learnt of drawings. */
struct FitResult
{
    Shapes shapes; ///< in the order of the first drawing, with the values in its box
    QVector<CoordinateFinding> undecided; ///< in document order
    QVector<CoordinateFinding> inexact; ///< that no rule expresses, in document order
    QVector<BoxProposal> proposals; ///< of one box or a few, by box
    int coordinates = 0; ///< in all
    double tolerance = 0.0; ///< that was kept to, in units

    /** Whether every coordinate has just one rule, and obeys it. */
    bool isWhole() const { return undecided.isEmpty() && inexact.isEmpty(); }
};

/**
 * Learns how outlines follow their box: each coordinate gets the rule that it obeys in all
 * drawings.
 *
 * Shapes correspond by their names, or else in their order, and their subpaths and steps in
 * theirs; where the order, the start or the direction differs, the way in which most coordinates obey
 * rules is taken. Names, flags, fill rules and order are those of the first drawing; flags that
 * differ in others are warned of.
 *
 * Nothing, with a diagnostic, if the drawings have no common structure, if two have the same box,
 * or for a box or a coordinate that is not finite.
 *
 * @param drawings at least two
 */
std::optional<FitResult> fitDrawings(
    std::vector<SizedDrawing> const& drawings, FitOptions const& options, Diagnostics& diagnostics);

#endif // OUTLINEFIT_H
