// SPDX-License-Identifier: MIT
#ifndef COLOURTEXT_H
#define COLOURTEXT_H

#include <QColor>

/**
 * "#RGB", "#RRGGBB", "#AARRGGBB", six digits without the sign, a name of SVG, or "rgb(1, 2, 3)" with
 * levels up to 255 or percentages; a fourth one, also of "rgba(...)", is the alpha up to 1. Else an
 * invalid colour.
 */
QColor colourFromText(QString const& text);

#endif // COLOURTEXT_H
