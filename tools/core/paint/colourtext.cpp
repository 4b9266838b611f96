// SPDX-License-Identifier: MIT
#include "paint/colourtext.h"

QColor colourFromText(QString const& text)
{
    QColor colour;
    if (text.size() == 6)
        colour.setNamedColor(QLatin1Char('#') + text);
    if (!colour.isValid())
        colour.setNamedColor(text);
    return colour;
}
