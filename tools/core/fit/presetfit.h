// SPDX-License-Identifier: MIT
#ifndef PRESETFIT_H
#define PRESETFIT_H

#include "common/diagnostic.h"
#include "document/shapes.h"
#include "import/shapedefinition.h"

#include <QSizeF>
#include <QString>
#include <QVector>

#include <optional>

/** The largest error that counts as none, as part of the longer side of the box. */
constexpr double exactPresetError = 1e-6;

/** How one coordinate of a shape with binding rules differs from its definition. */
struct PresetDeviation
{
    int shape; ///< from 0, in LearntPreset::shapes
    int segment; ///< from 0, in the list of the shape
    QString letter; ///< of its element in the document format
    double error; ///< the largest one, as part of the longer side of the box
    QSizeF box; ///< where it is so large
};

/** A shape whose coordinates have the binding rules that come nearest to its definition. */
struct LearntPreset
{
    Shapes shapes; ///< their values are those in the box that was asked for
    int coordinates = 0; ///< in all
    double error = 0.0; ///< the largest of all coordinates, as part of the longer side of the box
    QVector<PresetDeviation> inexact; ///< coordinates off by more than exactPresetError, in order

    /** Whether the rules say all that the definition says, as far as the boxes tell. */
    bool isWhole() const { return inexact.isEmpty(); }
    /** The deviation with the largest error; null if it is whole. */
    PresetDeviation const* worst() const;
};

/**
 * The boxes in which a shape with rules is compared with its definition: seven, from 4:1 to 1:4.
 *
 * @param box about as large as they are
 */
QVector<QSizeF> presetBoxes(QSizeF const& box);

/**
 * Learns the binding rules of a shape from its definition, which is evaluated in presetBoxes(). A
 * coordinate gets the rule that it obeys in all of them; failing that, the one that it obeys
 * in those from 3:2 to 2:3, or else the nearest, in smaller boxes too. Then the shape is brought to each of the boxes by
 * its rules, and what differs from the definition there is reported in the result.
 *
 * @param box of the values: finite, above 0
 * @param file that the definition is from, in diagnostics
 * @return nothing, with a diagnostic, where shapesInBoxes() has none
 */
std::optional<LearntPreset> learntPreset(ShapeDefinition const& definition, QSizeF const& box,
    GuideAdjustments const& adjustments, QString const& file, Diagnostics& diagnostics);

/** What a shape is drawn for that has no box of its own. */
constexpr QSizeF defaultPresetBox(12000.0, 9000.0);

/**
 * As learntPreset(), for the shape's own box or defaultPresetBox, with a warning at the shape's place
 * if it is no more than nearly what its definition says. Nothing, with a warning, if it draws nothing.
 */
std::optional<LearntPreset> learntShape(ShapeDefinition const& definition,
    GuideAdjustments const& adjustments, QString const& file, Diagnostics& diagnostics);

#endif // PRESETFIT_H
