// SPDX-License-Identifier: MIT
#include "suggestion.h"

#include <QVector>

#include <algorithm>

namespace {

constexpr int slipsAllowed = 2;
constexpr int lettersASlip = 3;
constexpr int lettersOfBeginning = 3;

/** How many slips lead from one to the other: Damerau's distance, no part being changed twice. */
int slipsBetween(QString const& left, QString const& right)
{
    QVector<int> beforeLast;
    QVector<int> last;
    QVector<int> row(right.size() + 1);
    for (int j = 0; j <= right.size(); ++j)
        row[j] = j;
    for (int i = 1; i <= left.size(); ++i) {
        beforeLast = last;
        last = row;
        row[0] = i;
        for (int j = 1; j <= right.size(); ++j) {
            int const wrong = left.at(i - 1) == right.at(j - 1) ? 0 : 1;
            row[j] = std::min({last.at(j) + 1, row.at(j - 1) + 1, last.at(j - 1) + wrong});
            bool const areSwapped = i > 1 && j > 1 && left.at(i - 1) == right.at(j - 2)
                && left.at(i - 2) == right.at(j - 1);
            if (areSwapped)
                row[j] = std::min(row.at(j), beforeLast.at(j - 2) + 1);
        }
    }
    return row.last();
}

/** The only name that begins so, or nothing. */
QString nameThatBegins(QString const& beginning, QStringList const& names)
{
    if (beginning.size() < lettersOfBeginning)
        return QString();
    QStringList found;
    for (QString const& name : names) {
        if (name.startsWith(beginning, Qt::CaseInsensitive))
            found << name;
    }
    return found.size() == 1 ? found.first() : QString();
}

} // namespace

QString likelyName(QString const& given, QStringList const& names)
{
    QString nearest;
    int fewest = slipsAllowed + 1;
    for (QString const& name : names) {
        int const letters = std::max(given.size(), name.size());
        int const allowed = std::min({slipsAllowed, letters / lettersASlip, fewest - 1});
        // Also bounds the work for a name without end.
        if (std::abs(given.size() - name.size()) > allowed)
            continue;
        int const slips = slipsBetween(given.toLower(), name.toLower());
        if (slips <= allowed) {
            nearest = name;
            fewest = slips;
        }
    }
    return nearest.isEmpty() ? nameThatBegins(given, names) : nearest;
}

QString withSuggestion(QString const& fault, QString const& likely)
{
    if (likely.isEmpty())
        return fault;
    return fault.endsWith(QLatin1Char('.'))
        ? QStringLiteral("%1 Did you mean %2?").arg(fault, likely)
        : QStringLiteral("%1; did you mean %2?").arg(fault, likely);
}

QString withSuggestion(QString const& fault, QString const& given, QStringList const& names)
{
    return withSuggestion(fault, likelyName(given, names));
}
