// SPDX-License-Identifier: MIT
#ifndef FITREPORT_H
#define FITREPORT_H

#include "common/diagnostic.h"
#include "fit/outlinefit.h"

#include <QJsonObject>
#include <QString>

/**
 * What was not decided, what is not exact and what lines are too short to be drawn in the boxes of
 * the drawings, as warnings; and the boxes to draw next. Empty if there is nothing to be said.
 *
 * @param drawings that the result was learnt from
 * @param file that is named in the warnings
 */
Diagnostics fitWarnings(
    FitResult const& result, std::vector<SizedDrawing> const& drawings, QString const& file);

/** All that is known of the result, a number with all its digits. */
QJsonObject fitJson(FitResult const& result, std::vector<SizedDrawing> const& drawings);

#endif // FITREPORT_H
