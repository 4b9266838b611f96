// SPDX-License-Identifier: MIT
#ifndef SVGGUARD_H
#define SVGGUARD_H

#include "common/diagnostic.h"

#include <QByteArray>

#include <optional>

/**
 * What of an SVG text may be given to the painter of SVG, which opens other files, recurses over
 * nested elements and follows `use` elements without end.
 *
 * The text comes back unpacked if it was a gzip file. It may still name images and style sheets,
 * which rewrittenSvg() leaves out. A warning reports each kind of element that has no effect, and
 * the images. Nothing, with a diagnostic, for text
 * that is no well-formed XML within BoundedXml's bounds or no SVG, for a damaged gzip file, and
 * for a picture whose nested elements, or whose `use` elements when they are followed, go too deep
 * or repeat too much.
 *
 * @param file the name in diagnostics
 */
std::optional<QByteArray> guardedSvg(
    QByteArray const& svg, QString const& file, Diagnostics& diagnostics);

/**
 * Why the elements of a text that was rewritten cannot be painted within the same bounds; empty if
 * they can.
 */
QString useFault(QByteArray const& svg);

#endif // SVGGUARD_H
