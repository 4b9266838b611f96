// SPDX-License-Identifier: MIT
#ifndef SVGREWRITER_H
#define SVGREWRITER_H

#include "common/diagnostic.h"

#include <QByteArray>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/** A symbol that is a picture of its own. */
struct SvgSymbol
{
    QString name; ///< its id, up to longestName, or its number
    QRectF box; ///< what of its coordinates is the picture; null if it is not known
};

/** An SVG text as Qt SVG is to paint it, and what its marks stand for. */
struct RewrittenSvg
{
    QByteArray text; ///< the picture, or a sprite in which each symbol is painted on its own
    QStringList labels; ///< by the numbers of marks: ids of elements, up to longestName
    std::vector<SvgSymbol> symbols; ///< of a sprite, likewise; empty for a picture
    bool hasText; ///< whether there is an element of text, for which Qt SVG needs fonts
};

/**
 * Something between the painted shapes that paints nothing: an empty path whose font family tells
 * where an element with an id begins and ends, or where a symbol begins.
 */
struct SvgMark
{
    /** What it tells. */
    enum class Kind { LabelBegins, LabelEnds, SymbolBegins };

    Kind kind; ///< what it tells
    int number; ///< of the label or the symbol, from 0; any number if the picture is hostile

    /** The family of its font: no picture has such a font. */
    QString family() const;
    /** The mark with this family; nothing for a family that is none of a mark. */
    static std::optional<SvgMark> fromFamily(QString const& family);
};

/** Whether elements are marked that have an id: the text grows by that. */
enum class SvgLabels { AreMarked, AreLeftOut };

/**
 * Rewrites what Qt SVG does not know into what it does, and marks elements with an id.
 *
 * - A nested `svg` element becomes a group, its view box fit into its place.
 * - A `symbol` is not painted, and a `use` of one fits its view box into the place of the use.
 * - If nothing outside of symbols is painted, it is a sprite: each symbol that is in no other one
 *   is painted after a mark, at the origin and unscaled, in the order of the text.
 * - A shape, a text, and a `use` of one shape stand between two marks if they have an id; a `use`
 *   without one has that of the shape. In a `switch`, beside which a mark would be a choice, and in
 *   a picture whose style sheets tell of neighbours, there are no marks.
 * - Images and processing instructions, by which Qt SVG may open other files, are left out.
 *
 * What needs none of this comes back as it is, byte by byte; and all else stays on its line.
 * A warning tells of views that should be cut off. Nothing if the new text would be larger than
 * BoundedXml::Limits().
 *
 * @param svg a well-formed text within the bounds of BoundedXml, not compressed
 * @param file the name in diagnostics
 */
std::optional<RewrittenSvg> rewrittenSvg(
    QByteArray const& svg, SvgLabels labels, QString const& file, Diagnostics& diagnostics);

#endif // SVGREWRITER_H
