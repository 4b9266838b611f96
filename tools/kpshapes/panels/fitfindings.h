// SPDX-License-Identifier: MIT
#ifndef FITFINDINGS_H
#define FITFINDINGS_H

#include "common/diagnostic.h"
#include "fit/outlinefit.h"
#include "model/handle.h"

#include <QVector>

#include <optional>

/** A coordinate that the user may want to see. */
struct FitPlace
{
    int shape; ///< from 0, in FitResult::shapes
    int segment; ///< from 0, in the list of the shape
    QString letter; ///< of its element in the document format
};

/** The handle that moves a coordinate. @param letter of its element in the document format */
HandleId handleOfLetter(KpPathSeg& segment, int index, QString const& letter);

/** Something to be said of what was learnt, on one line. */
struct FitFinding
{
    QString text; ///< to be shown
    std::optional<FitPlace> place; ///< where it is; none for what concerns all
    bool isBad = false; ///< whether it is an error, or no rule expresses the coordinate
};

/** What diagnostics say, a line each, with the file and the line where they are known. */
QVector<FitFinding> findingsOf(Diagnostics const& diagnostics);

/**
 * What is not exact, what is not decided, and what drawings would decide: in this order, a line a
 * coordinate or a box. Beyond a thousand coordinates of a sort, their number is said.
 */
QVector<FitFinding> findingsOf(FitResult const& result);

#endif // FITFINDINGS_H
