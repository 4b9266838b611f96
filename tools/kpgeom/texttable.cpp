#include "texttable.h"

#include <algorithm>

TextTable::TextTable(QStringList const& header)
{
    QStringList titles;
    for (QString const& title : header) {
        bool const isFlushRight = title.startsWith(QLatin1Char('>'));
        m_flushRight.append(isFlushRight);
        titles.append(isFlushRight ? title.mid(1) : title);
    }
    m_rows.append(titles);
}

QString TextTable::toText() const
{
    QVector<int> widths(m_flushRight.size(), 0);
    for (QStringList const& row : m_rows) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths.at(column), row.at(column).size());
    }
    QString text;
    for (QStringList const& row : m_rows) {
        QString line;
        for (int column = 0; column < row.size(); ++column) {
            int const width = widths.at(column);
            line += m_flushRight.at(column) ? row.at(column).rightJustified(width)
                                            : row.at(column).leftJustified(width);
            line += QStringLiteral("  ");
        }
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        text += line + QLatin1Char('\n');
    }
    return text;
}
