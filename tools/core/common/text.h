// SPDX-License-Identifier: MIT
#ifndef TEXT_H
#define TEXT_H

#include <QSizeF>
#include <QString>

/** The text with U+FFFD in the place of each surrogate that is no half of a pair. */
QString wellFormed(QString const& text);

/**
 * The text without control characters and line separators: it stays on one line and does nothing
 * to a terminal.
 */
QString printable(QString const& text);

/**
 * The text, or its beginning and an ellipsis: `longest` units of UTF-16 at most, above 0. No
 * character is cut in two.
 */
QString elided(QString const& text, int longest);

/** A number in six significant digits. */
QString numberText(double number);

/** "240 x 160" */
QString sizeText(QSizeF const& size);

/** "3 outlines", "1 outline": the noun without its s for one. */
QString countText(qint64 count, QString const& noun);

#endif // TEXT_H
