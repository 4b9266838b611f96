// SPDX-License-Identifier: MIT
#ifndef CONTENTKIND_H
#define CONTENTKIND_H

#include <QByteArray>
#include <QString>

/**
 * What a file of no text is, by its first bytes: "a PNG picture"; empty for text, and for what is
 * not known. Text in UTF-16 or UTF-32 is known by its mark, or by markup at its start. Not more
 * than a hint for whoever has named the wrong file.
 */
QString kindOfContent(QByteArray const& content);

#endif // CONTENTKIND_H
