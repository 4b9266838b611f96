// SPDX-License-Identifier: MIT
// Keeps a list of recent files: adds, pins, lists and saves.

#include <kprecentfilemanager.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication const application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("cookbook")); // names the folder

    //! [add]
    KpRecentFileManager recent;
    recent.load(); // once a process; what is missing or broken changes nothing

    recent.addOpenFileInfo(
        QStringLiteral("/plans/house.x"), KpRecentFileManager::RecAuto, QString());
    recent.addSaveFileInfo(
        QStringLiteral("/plans/garden.x"), KpRecentFileManager::RecAuto, QString());
    recent.addOpenFileInfo(
        QStringLiteral("/plans/fence.x"), KpRecentFileManager::RecAuto, QString());
    //! [add]

    //! [pin]
    recent.moveRecentFileTop(2); // the third row, while nothing is pinned: house.x
    //! [pin]

    //! [list]
    QVector<KpRecentFileManager::RecFileInfo> shown;
    recent.getRecentFiles(shown);
    for (KpRecentFileManager::RecFileInfo const& file : shown) {
        std::printf("%s %-9s in %s\n", file.isTop ? "pinned" : "      ", qPrintable(file.name),
            qPrintable(file.location));
    }
    recent.save(); // never by itself
    //! [list]
}
