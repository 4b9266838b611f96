// SPDX-License-Identifier: MIT
#include "panels/outlinelist.h"

#include "common/text.h"
#include "panels/outlinemodel.h"
#include "panels/outlineview.h"

#include <QAction>
#include <QItemSelectionModel>
#include <QVBoxLayout>

#include <algorithm>

namespace {

/** "Remove outline", "Remove 3 outlines" */
QString stepText(QString const& verb, int count)
{
    return count == 1
        ? QStringLiteral("%1 outline").arg(verb)
        : QStringLiteral("%1 %2").arg(verb, countText(count, QStringLiteral("outline")));
}

ItemPointer copyOf(ShapeItem const& item)
{
    ShapeItem copy = item;
    if (!copy.name.isEmpty())
        copy.name += QStringLiteral(" copy");
    copy.origin = -1;
    return std::make_shared<ShapeItem const>(std::move(copy));
}

} // namespace

OutlineList::OutlineList(ShapeDocument& document, QWidget* parent)
    : QWidget(parent)
    , m_document(document)
    , m_model(new OutlineModel(document, this))
    , m_view(new OutlineView(this))
{
    m_view->setModel(m_model);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(m_view);
    setFocusProxy(m_view);

    addNamed(QStringLiteral("&New Outline"), Qt::Key_Insert, &OutlineList::addNew);
    m_duplicate = addNamed(QStringLiteral("&Duplicate Outline"),
        QKeySequence(QStringLiteral("Ctrl+Shift+D")), &OutlineList::duplicate);
    m_rename = addNamed(QStringLiteral("&Rename Outline\u2026"), Qt::Key_F2, &OutlineList::rename);
    m_moveUp = addNamed(QStringLiteral("Move Outline &Up"), QKeySequence(QStringLiteral("Alt+Up")),
        [this] { moveBy(-1); });
    m_moveDown = addNamed(QStringLiteral("Move Outline Do&wn"),
        QKeySequence(QStringLiteral("Alt+Down")), [this] { moveBy(1); });
    auto* const separator = new QAction(this);
    separator->setSeparator(true);
    addAction(separator);
    m_remove =
        addNamed(QStringLiteral("R&emove Outline"), Qt::Key_Delete, &OutlineList::removeSelected);
    setContextMenuPolicy(Qt::ActionsContextMenu);

    connect(&document, &ShapeDocument::currentChanged, this, &OutlineList::showCurrent);
    connect(&document, &ShapeDocument::itemsReplaced, this, &OutlineList::updateActions);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
        [this](QModelIndex const& current) { takeCurrent(current.row()); });
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &OutlineList::updateActions);
    showCurrent();
}

template <class Slot>
QAction* OutlineList::addNamed(QString const& text, QKeySequence const& shortcut, Slot slot)
{
    auto* const action = new QAction(text, this);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, slot);
    addAction(action);
    return action;
}

QVector<int> OutlineList::selectedRows() const
{
    QVector<int> rows;
    QModelIndexList const indexes = m_view->selectionModel()->selectedRows();
    for (QModelIndex const& index : indexes)
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void OutlineList::addNew()
{
    // Keys typed into a name may be shortcuts.
    if (m_view->isEditing())
        return;
    KpPathSegList empty;
    QSizeF const box =
        m_document.hasCurrent() ? m_document.at(m_document.current()).box : QSizeF(100.0, 100.0);
    m_document.insert(m_document.current() + 1,
        {std::make_shared<ShapeItem const>(
            ShapeItem {QString(), box, std::nullopt, recordOf(empty), {}, -1})},
        QStringLiteral("New outline"));
}

void OutlineList::duplicate()
{
    QVector<int> const rows = selectedRows();
    if (rows.isEmpty())
        return;
    Items copies;
    for (int const row : rows)
        copies.push_back(copyOf(m_document.at(row)));
    int const first = rows.constLast() + 1;
    m_document.insert(first, copies, stepText(QStringLiteral("Duplicate"), rows.size()));
    selectRows(first, first + rows.size() - 1);
}

void OutlineList::rename()
{
    if (!m_view->isEditing() && m_view->currentIndex().isValid())
        m_view->edit(m_view->currentIndex());
}

void OutlineList::moveBy(int rows)
{
    int const from = m_document.current();
    if (!m_view->isEditing() && from >= 0)
        m_document.move(from, from + rows, QStringLiteral("Move outline"));
}

void OutlineList::removeSelected()
{
    QVector<int> const rows = selectedRows();
    if (rows.isEmpty() || m_view->isEditing())
        return;
    QString const text = stepText(QStringLiteral("Remove"), rows.size());
    bool const isOneRange = rows.constLast() - rows.constFirst() + 1 == rows.size();
    if (!isOneRange)
        m_document.undoStack().beginMacro(text);
    // From the end, so that the rows before stay where they are.
    for (int end = rows.size(); end > 0;) {
        int first = end - 1;
        while (first > 0 && rows.at(first - 1) + 1 == rows.at(first))
            --first;
        m_document.remove(rows.at(first), end - first, text);
        end = first;
    }
    if (!isOneRange)
        m_document.undoStack().endMacro();
}

void OutlineList::selectRows(int first, int last)
{
    m_view->selectionModel()->select(QItemSelection(m_model->index(first), m_model->index(last)),
        QItemSelectionModel::ClearAndSelect);
}

void OutlineList::showCurrent()
{
    QModelIndex const current = m_model->index(m_document.current());
    if (!m_isTaking && current.isValid()
        && (m_view->currentIndex() != current || !m_view->selectionModel()->isSelected(current)))
        m_view->setCurrentIndex(current);
    updateActions();
}

void OutlineList::takeCurrent(int row)
{
    if (m_model->isFollowing() || row < 0)
        return;
    m_isTaking = true;
    m_document.setCurrent(row);
    m_isTaking = false;
}

void OutlineList::updateActions()
{
    int const current = m_document.current();
    bool const isAnySelected = m_view->selectionModel()->hasSelection();
    m_duplicate->setEnabled(isAnySelected);
    m_rename->setEnabled(current >= 0);
    m_moveUp->setEnabled(current > 0);
    m_moveDown->setEnabled(current >= 0 && current + 1 < m_document.count());
    m_remove->setEnabled(isAnySelected);
}
