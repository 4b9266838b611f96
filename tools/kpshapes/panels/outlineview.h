// SPDX-License-Identifier: MIT
#ifndef OUTLINEVIEW_H
#define OUTLINEVIEW_H

#include <QListView>
#include <QStyledItemDelegate>

/** Paints a row of an OutlineModel: its thumbnail, and beside it the name above the details. */
class OutlineDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, QStyleOptionViewItem const& option,
        QModelIndex const& index) const override;
    QSize sizeHint(QStyleOptionViewItem const& option, QModelIndex const& index) const override;
    QWidget* createEditor(QWidget* parent, QStyleOptionViewItem const& option,
        QModelIndex const& index) const override;
    void setModelData(
        QWidget* editor, QAbstractItemModel* model, QModelIndex const& index) const override;
    void updateEditorGeometry(QWidget* editor, QStyleOptionViewItem const& option,
        QModelIndex const& index) const override;
};

/** A list of outlines, of which one can be dragged to another place. Its model is an OutlineModel. */
class OutlineView : public QListView
{
    Q_OBJECT

public:
    /** Without a model yet. */
    explicit OutlineView(QWidget* parent);

    /** Whether a name is being edited. */
    bool isEditing() const { return state() == EditingState; }

protected:
    void startDrag(Qt::DropActions actions) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int rowBefore(QPoint const& position) const;
};

#endif // OUTLINEVIEW_H
