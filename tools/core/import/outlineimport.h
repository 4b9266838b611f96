#ifndef OUTLINEIMPORT_H
#define OUTLINEIMPORT_H

#include "boundedxml_p.h"
#include "import/pathrecorder.h"
#include "kppathseglist.h"

#include <QByteArray>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/**
 * The outlines of a picture, in the order in which they were painted.
 *
 * Their coordinates follow the picture's size: each is bound in proportion to the box
 * (0, 0, size). An outline is closed exactly if its last subpath has a line or a curve and ends
 * at its start, so that closing it changes nothing. Outlines carry neither colours nor a fill
 * rule; these stand in `painted`.
 */
struct ImportedPicture
{
    QSizeF size; ///< in outline units
    std::vector<std::unique_ptr<KpPathSegList>> outlines;
    QStringList names; ///< one an outline: "path 3", or the character
    std::vector<RecordedPath> painted; ///< one an outline: what it was made from
    QStringList warnings; ///< one line each: what could not become an outline
};

/**
 * The longer side of an imported SVG picture in outline units, unless a scale is given.
 *
 * An outline that is drawn leaves out lines shorter than one unit, and a document holds six
 * digits of a coordinate. So no line vanishes that is longer than a ten-thousandth of the
 * picture, and what is stored is a hundred times as exact as that at least.
 */
constexpr double defaultPictureSide = 10000.0;

/** Outline units in an em: the grid on which most TrueType outlines are drawn. */
constexpr double defaultEmSize = 2048.0;

/** The longest side of a picture: from there on, six digits tell no two units apart. */
constexpr double maximumPictureSide = 1e6;

/**
 * The outlines of an SVG picture as Qt SVG paints them: SVG Tiny 1.2, so clip paths, masks,
 * filters, patterns and the like have no effect, and the shapes in them may be painted; each
 * kind that occurs is named in a warning. One outline a painted shape: `noFill` and `noLine`
 * tell what of it was painted, possibly nothing. The user unit is that of the view box, whose
 * corner becomes the origin.
 *
 * No other file is opened: images are left out, with a warning, and references to style sheets
 * are ignored.
 *
 * On failure `error` is set, and nothing is imported. That is the case for text that is
 * not well-formed XML or no SVG, for gzip files that are damaged, for a size that is empty or above
 * maximumPictureSide, and for pictures whose nested elements, or whose `use` elements when they
 * are followed, go too deep or repeat too much.
 *
 * Needs a QGuiApplication. Replaces Qt's message handler for the time of the call, so two
 * threads must not import at once.
 *
 * @param scale outline units a user unit: finite, not negative; 0 makes the longer side
 * defaultPictureSide units long
 */
ImportedPicture importSvg(QByteArray const& svg, double scale, BoundedXml::Error& error);

/**
 * The glyphs of a text, one outline a character with ink, side by side on one baseline at the
 * font's own distances; there is no kerning, no joining of letters, and no line break. The box
 * is as wide as the text and as high as the font's ascent and descent; ink may reach beyond it.
 * Glyphs are filled and have no line; their fill rule is nonzero winding. Coordinates are those
 * of the font's design, unhinted, scaled to `emSize`.
 *
 * On failure `error` is set, and nothing is imported. A character without a glyph takes no
 * room and gives a warning.
 *
 * Needs a QGuiApplication, for which the offscreen platform serves, and the same care with
 * threads as importSvg().
 *
 * @param fontFile a font that FreeType reads
 * @param emSize outline units an em: finite and above 0
 */
ImportedPicture importText(
    QString const& fontFile, QString const& text, double emSize, BoundedXml::Error& error);

/**
 * The outline of one painted path, bound to the box (0, 0, size); see ImportedPicture. Null if
 * a coordinate is not finite.
 */
std::unique_ptr<KpPathSegList> outlineOf(RecordedPath const& painted, QSizeF size);

#endif // OUTLINEIMPORT_H
