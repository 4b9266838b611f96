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
    QVector<HandleId> sorted = handles;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    std::optional<HandleId> const current =
        handles.isEmpty() ? std::nullopt : std::optional(handles.constLast());
    if (sorted == m_handles && current == m_current)
        return;
    m_handles = sorted;
    m_current = current;
    Q_EMIT changed();
}

void Selection::toggle(HandleId id)
{
    QVector<HandleId> handles = m_handles;
    if (!handles.removeOne(id))
        handles.append(id);
    set(handles);
}

void Selection::restrictTo(KpPathSegList const& list)
{
    QVector<HandleId> kept;
    std::copy_if(m_handles.cbegin(), m_handles.cend(), std::back_inserter(kept),
        [&list](HandleId id) { return handleOf(list, id).has_value(); });
    if (kept.size() != m_handles.size())
        set(kept);
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
