// SPDX-License-Identifier: MIT
#ifndef COLOURTHEME_H
#define COLOURTHEME_H

#include "document/appearance.h"

#include <QColor>
#include <QString>
#include <QVector>

#include <vector>

/** How many slots a theme has; the theme index of a KpColor counts them from 1. */
constexpr int themeSlotCount = 10;

/** The reference colours that the slots of a document's colours stand for. */
struct ColourTheme
{
    QString name; ///< as documents and menus have it
    QVector<QColor> colours; ///< one for each slot, opaque

    /** The colour of a slot. @param slot from 1 to themeSlotCount; any other: an invalid colour */
    QColor colour(int slot) const { return colours.value(slot - 1); }
};

/** The themes that there are; never empty. The first is the usual one. */
std::vector<ColourTheme> const& colourThemes();

/** The theme of this name (case-sensitive), or null. */
ColourTheme const* themeOf(QString const& name);

/** What a slot is called: "Dark 1". @param slot from 1 to themeSlotCount; any other: empty */
QString themeSlotName(int slot);

/**
 * The appearance in another theme: each colour from a slot gets the colour of that slot, with the
 * tint, the transforms and the alpha that it had. Plain colours and slots that the theme does not
 * have stay as they are.
 */
Appearance withTheme(Appearance appearance, ColourTheme const& theme);

#endif // COLOURTHEME_H
