// SPDX-License-Identifier: MIT
#include "model/selection.h"

#include <algorithm>

Selection::Selection(QObject* parent)
    : QObject(parent)
{
}

bool Selection::contains(HandleId id) const
{
    return std::binary_search(m_handles.cbegin(), m_handles.cend(), id);
}

void Selection::set(QVector<HandleId> const& handles)
{
    change(handles, handles.isEmpty() ? std::nullopt : std::optional(handles.constLast()));
}

void Selection::toggle(HandleId id)
{
    QVector<HandleId> handles = m_handles;
    if (handles.removeOne(id))
        change(handles, m_current);
    else
        set(handles << id);
}

void Selection::restrictTo(KpPathSegList const& list)
{
    QVector<HandleId> kept;
    std::copy_if(m_handles.cbegin(), m_handles.cend(), std::back_inserter(kept),
        [&list](HandleId id) { return handleOf(list, id).has_value(); });
    change(kept, m_current);
}

void Selection::change(QVector<HandleId> const& handles, std::optional<HandleId> current)
{
    QVector<HandleId> sorted = handles;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    if (sorted.isEmpty())
        current.reset();
    else if (!std::binary_search(sorted.cbegin(), sorted.cend(), *current))
        current = sorted.constLast();
    if (sorted == m_handles && current == m_current)
        return;
    m_handles = sorted;
    m_current = current;
    Q_EMIT changed();
}

QVector<int> Selection::segments() const
{
    QVector<int> segments;
    for (HandleId const id : m_handles) {
        if (segments.isEmpty() || segments.constLast() != id.segment)
            segments.append(id.segment);
    }
    return segments;
}
