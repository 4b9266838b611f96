// SPDX-License-Identifier: MIT
#ifndef SVGVIEWPORT_H
#define SVGVIEWPORT_H

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QTransform>

#include <optional>

/** The places and sizes that the elements of an SVG text give, as they give them. */
namespace SvgViewport {

/**
 * A length in user units, of which 90 make an inch, as in Qt SVG. Nothing for text that is no
 * length, and for a percentage of a length that is not known.
 *
 * @param whole what 100% are; 0 or less if that is not known
 */
std::optional<double> length(QString const& text, double whole);

/** A view box; its width or height may be 0 or less. Nothing for text that is none. */
std::optional<QRectF> box(QString const& text);

/** How a view box fits into the place that it is shown at. */
struct Fit
{
    QTransform transform; ///< from the view box to the place
    bool isCut; ///< whether what reaches beyond the place should be cut off
};

/**
 * Fits the box into the place, both with a width and a height above 0.
 *
 * @param aspect a preserveAspectRatio; what is none counts as "xMidYMid meet"
 */
Fit fit(QRectF const& box, QRectF const& place, QString const& aspect);

} // namespace SvgViewport

#endif // SVGVIEWPORT_H
