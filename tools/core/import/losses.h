// SPDX-License-Identifier: MIT
#ifndef LOSSES_H
#define LOSSES_H

#include "import/importedoutlines.h"

/**
 * What outlines do not hold of all that a shape is painted with: a bit a kind.
 *
 * @param scale of its picture
 */
quint32 lossesOf(RecordedPath const& painted, double scale);

/**
 * Warns of all that the shapes of a picture were painted with and that outlines do not hold:
 * colours, opacity, widths and dashes of lines. A line for each kind, with the number of shapes.
 * Likewise of the outlines that only one fill rule fills as painted, and of lines that are too
 * short to be drawn.
 *
 * @param file the picture's name in warnings
 */
void warnOfLosses(ImportedOutlines const& picture, QString const& file, Diagnostics& diagnostics);

/** As of one picture; what several have in common is one line. */
void warnOfLosses(ImportedPictures const& pictures, QString const& file, Diagnostics& diagnostics);

/** How many lines of the outlines drawing leaves out although they lead somewhere. */
int countLostLines(ImportedOutlines const& picture);

#endif // LOSSES_H
