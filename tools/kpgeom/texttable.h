// SPDX-License-Identifier: MIT
#ifndef TEXTTABLE_H
#define TEXTTABLE_H

#include "common/spool.h"

#include <QDataStream>
#include <QStringList>
#include <QVector>

/** A table in plain text: columns aligned, two blanks between them. It may have any length. */
class TextTable
{
public:
    /** @param header the titles; one that starts with '>' makes its column flush right */
    explicit TextTable(QStringList const& header);

    /** @param row as many cells as there are columns */
    void addRow(QStringList const& row);
    /** Writes the table in UTF-8; it takes no more rows then. */
    void writeTo(QIODevice& device);
    /** The whole table; it takes no more rows then. */
    QString toText();

private:
    QString lineOf(QStringList const& row) const;

    QVector<bool> m_flushRight;
    QVector<int> m_widths;
    Spool m_rows;
    QDataStream m_writer {&m_rows};
};

#endif // TEXTTABLE_H
