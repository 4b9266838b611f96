// SPDX-License-Identifier: MIT
#ifndef COLOURTEXT_H
#define COLOURTEXT_H

#include <QColor>

/** "#RGB", "#RRGGBB", "#AARRGGBB", six digits without the sign, or a name of SVG; else invalid. */
QColor colourFromText(QString const& text);

#endif // COLOURTEXT_H
