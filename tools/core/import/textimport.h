// SPDX-License-Identifier: MIT
#ifndef TEXTIMPORT_H
#define TEXTIMPORT_H

#include "import/importedoutlines.h"

/** Outline units in an em: the grid on which most TrueType outlines are drawn. */
constexpr double defaultEmSize = 2048.0;

/** How a text is imported. */
struct TextImportOptions
{
    QString fontFile; ///< a font that FreeType reads
    double emSize = defaultEmSize; ///< outline units an em: finite and above 0
    /** What the user calls the em's size: a diagnostic tells which would do. */
    QString emName = QStringLiteral("em");
    TakeMessages takeMessages; ///< not empty
    bool keepsPainted = false; ///< as in ImportedOutlines
};

/**
 * The glyphs of a text, one outline a character with ink, side by side on one baseline at the
 * font's own distances; there is no kerning, no joining of letters, and no line break. The box
 * is as wide as the text and as high as the font's ascent and descent; ink may reach beyond it.
 * Glyphs are filled and have no line. Coordinates are those of the font's design, unhinted, scaled
 * to the em's size.
 *
 * Nothing, with a diagnostic, if the font cannot be read, the text is empty, or the picture would
 * be larger than maximumPictureSide. A character without a glyph takes no room and gives a warning.
 *
 * Needs a QGuiApplication: see startFonts().
 */
std::optional<ImportedOutlines> importText(
    QString const& text, TextImportOptions const& options, Diagnostics& diagnostics);

#endif // TEXTIMPORT_H
