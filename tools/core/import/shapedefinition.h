// SPDX-License-Identifier: MIT
#ifndef SHAPEDEFINITION_H
#define SHAPEDEFINITION_H

#include "common/diagnostic.h"
#include "document/shapes.h"
#include "import/guideformula.h"

#include <QSizeF>
#include <QString>

#include <array>
#include <optional>
#include <vector>

/** One step of a path in DrawingML. */
struct PathStep
{
    /** What it does from where the one before has ended. */
    enum class Kind {
        Move, ///< a new subpath at the point x y
        Line, ///< to the point x y
        Cubic, ///< a curve: two control points, then its end
        Quadratic, ///< a curve: one control point, then its end
        Arc, ///< of an ellipse: its two radii, the angle where it starts, and how far it goes
        Close ///< back to where the subpath has started
    };

    Kind kind; ///< which one
    std::array<GuideNumber, 6> numbers; ///< as many as the kind has, the rest 0
};

/** How many numbers a step of this kind has. */
int numberCount(PathStep::Kind kind);

/** One path of a shape in DrawingML. */
struct PathDefinition
{
    /** The width and height that its coordinates are counted in; 0 for those of the box. */
    QSizeF extent;
    bool isFilled = true; ///< in whatever tone: outlines know none
    bool isStroked = true; ///< whether its line is drawn
    std::vector<PathStep> steps; ///< in drawing order
};

/** A shape in DrawingML, whose coordinates follow the box by formulas. */
struct ShapeDefinition
{
    QString name; ///< what it is called, or empty
    QSizeF box; ///< that it has where it was read; empty if none is given
    qint64 line = 0; ///< of the file, where it ends its start tag; counted from 1
    qint64 column = 0; ///< counted from 1
    Guides guides; ///< what its formulas compute
    std::vector<PathDefinition> paths; ///< the first lies lowest
};

/** What messages call a shape: its name, or "shape". */
QString titleOf(ShapeDefinition const& definition);

/**
 * The shape in several boxes: one result for each, in their order. All have the same outlines, with
 * segments of the same kinds in the same order, so that they can be compared coordinate by
 * coordinate. Values are not rounded, and bound in proportion to the box.
 *
 * A path becomes an outline; one that draws nothing becomes none. If the shape has several, their
 * number stands behind its name. Arcs become cubic curves of at most a quarter each, in as many
 * as the box needs in which the arc goes farthest; a subpath of arcs alone that go once around
 * becomes an ellipse in every box or in none. A subpath that is closed but not the last of its path
 * gets a line back to its start, unless it ends there in every box. The paths are filled by the
 * even-odd rule, which is named where the other one would fill them differently in the first box.
 *
 * Guides without a value count as 0, with one warning.
 *
 * @param boxes finite, above 0
 * @param file that the definition is from, in diagnostics
 * @return nothing, with a diagnostic, if a coordinate becomes too large for a double
 */
std::optional<std::vector<Shapes>> shapesInBoxes(ShapeDefinition const& definition,
    std::vector<QSizeF> const& boxes, GuideAdjustments const& adjustments, QString const& file,
    Diagnostics& diagnostics);

#endif // SHAPEDEFINITION_H
