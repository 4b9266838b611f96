// SPDX-License-Identifier: MIT
#include "window/actiontable.h"

#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>

ActionTable::ActionTable(QMenuBar& bar, QObject* parent)
    : QObject(parent)
    , m_bar(bar)
{
}

QMenu& ActionTable::addMenu(QString const& title)
{
    return *m_bar.addMenu(title);
}

QMenu& ActionTable::addMenu(QMenu& menu, QString const& title)
{
    return *menu.addMenu(title);
}

QAction& ActionTable::add(QMenu& menu, ActionEntry const& entry)
{
    auto* const action = new QAction(QString::fromUtf8(entry.text), this);
    action->setShortcut(QKeySequence(QString::fromLatin1(entry.shortcut)));
    if (entry.run)
        connect(action, &QAction::triggered, this, [run = entry.run] { run(); });
    add(menu, QString::fromLatin1(entry.id), *action);
    return *action;
}

QAction& ActionTable::addSwitch(
    QMenu& menu, ActionEntry const& entry, bool isOn, std::function<void(bool)> const& run)
{
    QAction& action = add(menu, entry);
    action.setCheckable(true);
    action.setChecked(isOn);
    connect(&action, &QAction::triggered, this, [run](bool isChecked) { run(isChecked); });
    return action;
}

void ActionTable::add(QMenu& menu, QString const& id, QAction& action)
{
    menu.addAction(&action);
    keep(id, action);
}

QActionGroup& ActionTable::addGroup()
{
    return *new QActionGroup(this);
}

void ActionTable::keep(QString const& id, QAction& action)
{
    action.setObjectName(id);
    m_actions.insert(id, &action);
    m_ids << id;
}
