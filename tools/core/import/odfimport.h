// SPDX-License-Identifier: MIT
#ifndef ODFIMPORT_H
#define ODFIMPORT_H

#include "import/importedoutlines.h"

/** How an OpenDocument drawing is imported. */
struct OdfImportOptions
{
    QString file; ///< its name in diagnostics
    /** Outline units a pixel of 1/96 inch, finite and above 0; 0 makes each picture a usual one. */
    double scale = 0.0;
    bool keepsPainted = false; ///< as in ImportedOutlines
};

/**
 * The drawn elements of an OpenDocument file, one outline each: of a zip file (.odg and its like) or
 * of flat XML (.fodg). Each element on a page, and each outermost group, is a picture by itself, whose
 * box is what its paths cover, at least one unit wide and high. As with SVG, its longer side is
 * defaultPictureSide unless a scale is given, or finePictureSide where lines would vanish.
 *
 * What OdfDrawing does not read, and what outlines do not hold (warnOfLosses()), is named in
 * warnings. Nothing, with a diagnostic, for a damaged zip file, what is no OpenDocument, and a
 * picture beyond maximumPictureSide.
 */
std::optional<ImportedPictures> importOdf(
    QByteArray const& content, OdfImportOptions const& options, Diagnostics& diagnostics);

#endif // ODFIMPORT_H
