// SPDX-License-Identifier: MIT
#ifndef PRESETCONVERSION_H
#define PRESETCONVERSION_H

#include "command.h"
#include "common/diagnostic.h"
#include "import/guideformula.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/** Shapes that DrawingML defines by formulas, and where documents of them go. */
struct PresetConversion
{
    QString input; ///< a document of preset shapes
    QString folder; ///< for a document a shape; made if it is missing
    GuideAdjustments adjustments; ///< by their names
};

/** "NAME=VALUE", each. Nothing, with the fault set, if one of them is not so. */
std::optional<GuideAdjustments> adjustmentsFromTexts(QStringList const& texts, Diagnostic& fault);

/**
 * Writes a document for each shape, and prints how exact it is. A warning for each shape that rules
 * do not express, and for each that is left out.
 */
Outcome convertPresets(PresetConversion const& conversion);

/**
 * Writes one document of the custom shapes in a text, with warnings likewise.
 *
 * @param operand what the text was read from
 */
Outcome convertCustomShapes(QByteArray const& text, QString const& operand, QString const& output);

#endif // PRESETCONVERSION_H
