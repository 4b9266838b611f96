// SPDX-License-Identifier: MIT
#ifndef SELECTION_H
#define SELECTION_H

#include "model/handle.h"

#include <QObject>
#include <QVector>

/** The handles of the current outline that are selected. One of them is the current one. */
class Selection : public QObject
{
    Q_OBJECT

public:
    /** Nothing is selected. */
    explicit Selection(QObject* parent = nullptr);

    /** In the order of the outline; none twice. */
    QVector<HandleId> const& handles() const { return m_handles; }
    /** Whether nothing is selected. */
    bool isEmpty() const { return m_handles.isEmpty(); }
    /** Whether the handle is selected. */
    bool contains(HandleId id) const;
    /**
     * The one that was selected last; nothing if none is. After it was taken from the selection,
     * the last of the others in the order of the outline.
     */
    std::optional<HandleId> current() const { return m_current; }

    /** Selects these alone, the last of them the current one. */
    void set(QVector<HandleId> const& handles);
    /** Selects a handle beside the others, or no longer. */
    void toggle(HandleId id);
    /** Selects nothing. */
    void clear() { set({}); }
    /** Drops what the outline does not have. */
    void restrictTo(KpPathSegList const& list);

    /** The segments whose end points, or anything else, are selected, ascending, none twice. */
    QVector<int> segments() const;

Q_SIGNALS:
    /** Another selection, or another current handle. */
    void changed();

private:
    void change(QVector<HandleId> const& handles, std::optional<HandleId> current);

    QVector<HandleId> m_handles;
    std::optional<HandleId> m_current;
};

#endif // SELECTION_H
