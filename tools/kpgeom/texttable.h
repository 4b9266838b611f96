#ifndef TEXTTABLE_H
#define TEXTTABLE_H

#include <QStringList>
#include <QVector>

/** A table in plain text: columns aligned, two blanks between them. */
class TextTable
{
public:
    /** @param header the titles; one that starts with '>' makes its column flush right */
    explicit TextTable(QStringList const& header);

    /** @param row as many cells as there are columns */
    void addRow(QStringList const& row) { m_rows.append(row); }
    QString toText() const;

private:
    QVector<bool> m_flushRight;
    QVector<QStringList> m_rows;
};

#endif // TEXTTABLE_H
