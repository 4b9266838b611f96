// SPDX-License-Identifier: MIT
#ifndef ACTIONTABLE_H
#define ACTIONTABLE_H

#include <QAction>
#include <QHash>
#include <QObject>

#include <functional>

class QActionGroup;
class QMenu;
class QMenuBar;

/** An action that a menu offers. */
struct ActionEntry
{
    char const* id; ///< its name in settings and tests: "save"
    char const* text; ///< in the menu, with its mnemonic
    char const* shortcut; ///< as QKeySequence has it, or empty
    std::function<void()> run; ///< what it does
};

/** The actions of a window, by their names. All of them stand in its menus. */
class ActionTable : public QObject
{
    Q_OBJECT

public:
    /** @param bar not owned; it gets the menus */
    ActionTable(QMenuBar& bar, QObject* parent);

    /** Appends a menu. */
    QMenu& addMenu(QString const& title);
    /** Appends a menu within another. */
    QMenu& addMenu(QMenu& menu, QString const& title);
    /** Appends an action to a menu. */
    QAction& add(QMenu& menu, ActionEntry const& entry);
    /** Appends an action that is on or off. @param run told which */
    QAction& addSwitch(
        QMenu& menu, ActionEntry const& entry, bool isOn, std::function<void(bool)> const& run);
    /** Appends an action that exists already, under a name. */
    void add(QMenu& menu, QString const& id, QAction& action);
    /** A new group; of the switches in it one is on. */
    QActionGroup& addGroup();
    /** The action of this name, or null. */
    QAction* action(QString const& id) const { return m_actions.value(id); }
    /** The names of all actions, in the order of the menus. */
    QStringList const& ids() const { return m_ids; }

private:
    void keep(QString const& id, QAction& action);

    QMenuBar& m_bar;
    QHash<QString, QAction*> m_actions;
    QStringList m_ids;
};

#endif // ACTIONTABLE_H
