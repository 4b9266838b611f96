// SPDX-License-Identifier: MIT
#ifndef SHAPEDOCUMENT_H
#define SHAPEDOCUMENT_H

#include "model/shapeitem.h"

#include <QObject>
#include <QUndoStack>

#include <utility>
#include <vector>

/**
 * What a window edits: the outlines of a document, of which one is the current one, and the steps
 * that can be undone. Needs no window and no application.
 *
 * The current outline is taken apart to be changed: working(). Whoever changes it calls touch() as
 * often as it is to be seen, and commit() at the end, which makes one step of it all.
 */
class ShapeDocument : public QObject
{
    Q_OBJECT

public:
    /** Empty. */
    explicit ShapeDocument(QObject* parent = nullptr);
    ~ShapeDocument() override;

    /** How many outlines it has. */
    int count() const { return static_cast<int>(m_items.size()); }
    /** All outlines, as the last step has left them. */
    Items const& items() const { return m_items; }
    /** @param index from 0, below count() */
    ShapeItem const& at(int index) const { return *m_items[static_cast<std::size_t>(index)]; }
    /** The steps; a step's text says what it was. */
    QUndoStack& undoStack() { return m_stack; }

    /** Becomes a document of these outlines, without any steps, the first of them current. */
    void reset(Items const& items);
    /** Appends outlines while a document is loaded: no step. */
    void append(Items const& items);

    /** Inserts outlines and makes the first of them current. One step. @param index 0 to count() */
    void insert(int index, Items const& items, QString const& text);
    /** Removes outlines. One step. @param count from 1 on, all of them there */
    void remove(int index, int count, QString const& text);
    /** Moves an outline, so that it stands at the index `to` then. One step. */
    void move(int from, int to, QString const& text);
    /** Puts others in the place of some outlines. One step; none if nothing is different. */
    void replace(std::vector<std::pair<int, ItemPointer>> const& items, QString const& text);

    /** The index of the current outline; -1 in an empty document. */
    int current() const { return m_current; }
    /** Makes another outline current; what was not committed is dropped. Out of range: ignored. */
    void setCurrent(int index);
    /** Whether there is a current outline. */
    bool hasCurrent() const { return m_current >= 0; }

    /** The current outline to be changed; without one, an empty shape that is kept nowhere. */
    WorkingShape& working() { return m_working; }
    /** The current outline. */
    WorkingShape const& working() const { return m_working; }
    /** The current outline was changed: tells everybody, and makes no step yet. */
    void touch();
    /** Makes a step of what was changed in the current outline; false if nothing was. */
    bool commit(QString const& text);
    /** Drops what was changed since the last step. */
    void revert();

Q_SIGNALS:
    /** Outlines were put in the place of others; `removed` and `added` are numbers of outlines. */
    void itemsReplaced(int first, int removed, int added);
    /** Another outline is the current one, or it stands at another index. */
    void currentChanged();
    /** The shape of the current outline changed, or there is another: to be painted anew. */
    void workingChanged();

private:
    friend class SpliceStep;
    struct Splice;
    void push(std::vector<Splice> splices, QString const& text);
    void apply(std::vector<Splice> const& splices);
    int currentAfter(std::vector<Splice> const& splices) const;
    void exchange(Splice const& splice);
    void takeWorking();

    Items m_items;
    WorkingShape m_working;
    int m_current = -1;
    bool m_isWorkingKept = false; ///< while a step is made of the working shape itself
    QUndoStack m_stack;
};

#endif // SHAPEDOCUMENT_H
