// SPDX-License-Identifier: MIT
#include "declaredentities_p.h"

#include "boundedxml_p.h"

#include <algorithm>

namespace {

/** The names of the entities to which there are references in a text. */
QByteArrayList referencesIn(QByteArray const& text)
{
    QByteArrayList names;
    for (int from = text.indexOf('&'); from >= 0; from = text.indexOf('&', from + 1)) {
        int const to = text.indexOf(';', from);
        if (to > from + 1 && text.at(from + 1) != '#')
            names << text.mid(from + 1, to - from - 1);
    }
    return names;
}

} // namespace

void DeclaredEntities::declare(QByteArray const& name, QByteArray const& value)
{
    if (m_general.contains(name))
        return;
    m_general.insert(name, referencesIn(value));
    m_counts.clear();
}

void DeclaredEntities::declareParameter(QByteArray const& name, QByteArray const& value)
{
    if (!m_parameters.contains(name))
        m_parameters.insert(name, value);
}

bool DeclaredEntities::isExcessive(QByteArray const& name)
{
    return referencesOf(name, 0) > BoundedXml::maximumNestedReferences;
}

bool DeclaredEntities::areAnyExcessive()
{
    QList<QByteArray> const names = m_general.keys();
    return std::any_of(
        names.cbegin(), names.cend(), [this](QByteArray const& name) { return isExcessive(name); });
}

/** How many references there are below one to the entity; any larger number beyond the bound. */
int DeclaredEntities::referencesOf(QByteArray const& name, int depth)
{
    constexpr int tooMany = BoundedXml::maximumNestedReferences + 1;
    if (auto const known = m_counts.constFind(name); known != m_counts.constEnd())
        return *known;
    if (depth >= tooMany)
        return tooMany;
    // Where entities go round in a circle Qt stops by itself.
    m_counts.insert(name, 0);
    int count = 0;
    QByteArrayList const inner = m_general.value(name);
    for (auto it = inner.cbegin(); it != inner.cend() && count < tooMany; ++it)
        count += 1 + referencesOf(*it, depth + 1);
    m_counts.insert(name, count);
    return count;
}
