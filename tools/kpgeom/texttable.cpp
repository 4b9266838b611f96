// SPDX-License-Identifier: MIT
#include "texttable.h"

#include <QBuffer>

#include <algorithm>

TextTable::TextTable(QStringList const& header)
{
    QStringList titles;
    for (QString const& title : header) {
        bool const isFlushRight = title.startsWith(QLatin1Char('>'));
        m_flushRight.append(isFlushRight);
        titles.append(isFlushRight ? title.mid(1) : title);
    }
    m_widths.resize(titles.size());
    addRow(titles);
}

void TextTable::addRow(QStringList const& row)
{
    for (int column = 0; column < row.size(); ++column)
        m_widths[column] = std::max(m_widths.at(column), row.at(column).size());
    m_writer << row;
}

QString TextTable::lineOf(QStringList const& row) const
{
    QString line;
    for (int column = 0; column < row.size(); ++column) {
        int const width = m_widths.at(column);
        line += m_flushRight.at(column) ? row.at(column).rightJustified(width)
                                        : row.at(column).leftJustified(width);
        line += QStringLiteral("  ");
    }
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

void TextTable::writeTo(QIODevice& device)
{
    QDataStream rows(&m_rows.content());
    while (!rows.atEnd()) {
        QStringList row;
        rows >> row;
        device.write(lineOf(row).toUtf8() + '\n');
    }
}

QString TextTable::toText()
{
    QBuffer text;
    text.open(QIODevice::WriteOnly);
    writeTo(text);
    return QString::fromUtf8(text.data());
}
