// SPDX-License-Identifier: MIT
#include "import/uniquenames.h"

#include "common/text.h"

QString UniqueNames::unique(QString const& name)
{
    QString const wanted = elided(name, longestName);
    QString result = wanted;
    // What was tried once is taken, so the numbers of a name never start again.
    for (int& number = m_numbers.insert(wanted, m_numbers.value(wanted, 1)).value();
         m_taken.contains(result);) {
        result = wanted + QLatin1Char(' ') + QString::number(++number);
    }
    m_taken.insert(result);
    return result;
}
