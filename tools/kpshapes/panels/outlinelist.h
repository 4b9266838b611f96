// SPDX-License-Identifier: MIT
#ifndef OUTLINELIST_H
#define OUTLINELIST_H

#include "model/shapedocument.h"

#include <QVector>
#include <QWidget>

class OutlineModel;
class OutlineView;
class QAction;

/**
 * The outlines of a document, the lowest first: one is the current one, several may be selected to
 * be removed or duplicated.
 *
 * QWidget::actions() has what can be done with them, for a menu: new, duplicate, rename, move up
 * and down, remove. Their shortcuts hold while the list has the focus. One named "separator" stands
 * between.
 */
class OutlineList : public QWidget
{
    Q_OBJECT

public:
    /** @param document not owned, must outlive this */
    explicit OutlineList(ShapeDocument& document, QWidget* parent = nullptr);

    /** The rows that are selected, ascending. */
    QVector<int> selectedRows() const;

private:
    template <class Slot>
    QAction* addNamed(QString const& text, QKeySequence const& shortcut, Slot slot);
    void addNew();
    void duplicate();
    void rename();
    void moveBy(int rows);
    void removeSelected();
    void selectRows(int first, int last);
    void showCurrent();
    void takeCurrent(int row);
    void updateActions();

    ShapeDocument& m_document;
    OutlineModel* m_model;
    OutlineView* m_view;
    bool m_isTaking = false; ///< while the user selects: the view selects what is to be selected
    QAction* m_duplicate = nullptr;
    QAction* m_rename = nullptr;
    QAction* m_moveUp = nullptr;
    QAction* m_moveDown = nullptr;
    QAction* m_remove = nullptr;
};

#endif // OUTLINELIST_H
