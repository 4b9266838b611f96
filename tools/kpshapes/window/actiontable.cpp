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

QAction& ActionTable::add(QMenu& menu, ActionSpec const& spec)
{
    auto* const action = new QAction(QString::fromUtf8(spec.text), this);
    action->setShortcut(QKeySequence(QString::fromLatin1(spec.shortcut)));
    if (spec.run)
        connect(action, &QAction::triggered, this, [run = spec.run] { run(); });
    add(menu, QString::fromLatin1(spec.id), *action);
    return *action;
}

QAction& ActionTable::addSwitch(
    QMenu& menu, ActionSpec const& spec, bool isOn, std::function<void(bool)> const& run)
{
    QAction& action = add(menu, spec);
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
