// SPDX-License-Identifier: MIT
#include "window/recentfiles.h"

#include "common/text.h"
#include "common/unfinishedfile.h"

#include <QFileInfo>
#include <QMenu>

namespace {

/** Menu texts have mnemonics: a name's own "&" is to be seen. */
QString menuText(QString const& text)
{
    return elided(printable(text), 80).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

QString entryText(KpRecentFileManager::RecFileInfo const& entry)
{
    return menuText(entry.name + QStringLiteral(" \u2014 ") + entry.location);
}

} // namespace

RecentFiles::RecentFiles(QObject* parent)
    : QObject(parent)
{
    m_manager.load();
}

void RecentFiles::add(QString const& path)
{
    m_manager.addOpenFileInfo(path, KpRecentFileManager::RecLocal, QString());
    save();
}

void RecentFiles::fill(QMenu& menu, Choice const& file, Choice const& folder)
{
    menu.clear();
    QVector<KpRecentFileManager::RecFileInfo> files;
    m_manager.getRecentFiles(files);
    bool isAfterPin = false;
    for (auto const& entry : qAsConst(files)) {
        if (isAfterPin && !entry.isTop)
            menu.addSeparator();
        isAfterPin = entry.isTop;
        QAction* const action = menu.addAction(
            (entry.isTop ? QStringLiteral("\u2605 ") : QString()) + entryText(entry));
        action->setToolTip(entry.path);
        connect(action, &QAction::triggered, this, [file, path = entry.path] { file(path); });
    }
    if (files.isEmpty())
        menu.addAction(QStringLiteral("No recent files"))->setEnabled(false);
    menu.addSeparator();
    fillFolders(*menu.addMenu(QStringLiteral("&Folders")), folder);
    fillPins(*menu.addMenu(QStringLiteral("&Pinned")));
    menu.addAction(QStringLiteral("&Remove Missing Files"), this, [this] { removeMissing(); });
}

void RecentFiles::fillFolders(QMenu& menu, Choice const& choose)
{
    QVector<KpRecentFileManager::RecFileInfo> folders;
    m_manager.getRecentFolder(folders);
    for (auto const& folder : qAsConst(folders))
        menu.addAction(entryText(folder), this, [choose, path = folder.path] { choose(path); });
    menu.setEnabled(!folders.isEmpty());
}

void RecentFiles::fillPins(QMenu& menu)
{
    QVector<KpRecentFileManager::RecFileInfo> files;
    m_manager.getRecentFiles(files);
    for (int i = 0; i < files.size(); ++i) {
        QAction* const action = menu.addAction(entryText(files.at(i)));
        action->setCheckable(true);
        action->setChecked(files.at(i).isTop);
        connect(action, &QAction::triggered, this, [this, i] { togglePin(i); });
    }
    menu.setEnabled(!files.isEmpty());
}

void RecentFiles::togglePin(int index)
{
    if (index >= m_manager.m_files.size())
        return;
    int const firstFree = m_manager.notTopFileFirstIndex();
    if (index < firstFree) {
        m_manager.moveRecentFileNotTop(index);
    } else {
        // Rows count the line between the pinned files and the others, but for the first of these.
        m_manager.moveRecentFileTop(firstFree > 0 && index > firstFree ? index + 1 : index);
    }
    save();
}

void RecentFiles::removeMissing()
{
    QStringList missing;
    for (auto const& file : qAsConst(m_manager.m_files)) {
        if (file.type == KpRecentFileManager::RecLocal && !QFileInfo::exists(file.path))
            missing << file.path;
    }
    for (QString const& path : qAsConst(missing))
        m_manager.delRecentFile(path);
    save();
}

void RecentFiles::save()
{
    UnfinishedFile const unfinished;
    m_manager.save();
}
