// SPDX-License-Identifier: MIT
#include "panels/steplist.h"

#include <QKeyEvent>
#include <QMouseEvent>

StepList::StepList(QWidget* parent)
    : QListWidget(parent)
{
    setSelectionMode(QAbstractItemView::SingleSelection);
    setUniformItemSizes(true);
}

void StepList::mousePressEvent(QMouseEvent* event)
{
    QListWidget::mousePressEvent(event);
    m_dragged = event->button() == Qt::LeftButton ? indexAt(event->pos()).row() : -1;
    m_isMoved = false;
}

void StepList::mouseMoveEvent(QMouseEvent* event)
{
    // Not the view's own: it would select what the pointer passes.
    if (m_dragged < 0 || !(event->buttons() & Qt::LeftButton))
        return;
    int target = indexAt(event->pos()).row();
    if (target < 0)
        target = event->pos().y() < 0 ? 0 : count() - 1;
    if (target == m_dragged)
        return;
    int const from = m_dragged;
    m_dragged = target;
    m_isMoved = true;
    Q_EMIT moveWanted(from, target, false);
}

void StepList::mouseReleaseEvent(QMouseEvent* event)
{
    QListWidget::mouseReleaseEvent(event);
    m_dragged = -1;
    if (m_isMoved)
        Q_EMIT dropped();
    m_isMoved = false;
}

void StepList::keyPressEvent(QKeyEvent* event)
{
    bool const isUp = event->key() == Qt::Key_Up;
    if (event->modifiers() == Qt::AltModifier && (isUp || event->key() == Qt::Key_Down)) {
        int const to = currentRow() + (isUp ? -1 : 1);
        if (currentRow() >= 0 && to >= 0 && to < count())
            Q_EMIT moveWanted(currentRow(), to, true);
    } else if (event->key() == Qt::Key_Delete && currentRow() >= 0) {
        Q_EMIT removalWanted();
    } else {
        QListWidget::keyPressEvent(event);
    }
}
