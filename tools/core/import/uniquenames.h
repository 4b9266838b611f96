// SPDX-License-Identifier: MIT
#ifndef UNIQUENAMES_H
#define UNIQUENAMES_H

#include <QHash>
#include <QSet>
#include <QString>

/** The longest name that an import gives an outline, in units of UTF-16. */
constexpr int longestName = 200;

/** Gives the outlines of one document names of which no two are the same. */
class UniqueNames
{
public:
    /**
     * The name, or with the first number from 2 on that makes it another one: "bolt", "bolt 2". Of
     * a name that is longer than longestName only the beginning counts.
     */
    QString unique(QString const& name);

private:
    QSet<QString> m_taken;
    QHash<QString, int> m_numbers; ///< the last one that was tried for a name
};

#endif // UNIQUENAMES_H
