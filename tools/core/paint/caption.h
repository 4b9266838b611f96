// SPDX-License-Identifier: MIT
#ifndef CAPTION_H
#define CAPTION_H

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

/** The font of captions and legends. */
QFont captionFont();

/** Draws a text in the middle of a place, on one line, shortened in the middle if it is longer. */
void drawCaption(QPainter& painter, QString const& text, QRectF const& place, QColor const& colour);

#endif // CAPTION_H
