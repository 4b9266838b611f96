// SPDX-License-Identifier: MIT
#ifndef STYLECHOICE_H
#define STYLECHOICE_H

#include <QString>

#include <array>
#include <optional>

/** How the windows look. */
enum class StyleChoice { System, Light, Dark, HighContrast };

/** How a choice is called. */
struct StyleName
{
    StyleChoice choice; ///< which one
    char const* id; ///< in settings and names of actions
    char const* text; ///< in the menu
};

/** All choices, in the order of the menu. */
std::array<StyleName, 4> const& styleNames();

/** The choice of this id; nothing for any other text. */
std::optional<StyleChoice> styleOf(QString const& id);

/** Gives all windows of the application the look. */
void applyStyle(StyleChoice choice);

#endif // STYLECHOICE_H
