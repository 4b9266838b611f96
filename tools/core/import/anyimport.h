// SPDX-License-Identifier: MIT
#ifndef ANYIMPORT_H
#define ANYIMPORT_H

#include "import/importedoutlines.h"
#include "import/svgimport.h"

/**
 * The outlines of a file of any kind that is read, which its content tells, not its name: an
 * OpenDocument drawing, as a zip file or flat (importOdf()); a shape file of Dia (importDia()); or
 * else an SVG picture (importSvg()). They say what they need, and when there is nothing.
 */
std::optional<ImportedPictures> importAny(
    QByteArray const& content, SvgImportOptions const& options, Diagnostics& diagnostics);

#endif // ANYIMPORT_H
