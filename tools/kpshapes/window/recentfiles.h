// SPDX-License-Identifier: MIT
#ifndef RECENTFILES_H
#define RECENTFILES_H

#include "kprecentfilemanager.h"

#include <QObject>

#include <functional>

class QMenu;

/**
 * The recent files and folders of all windows, kept by the library. Read when the first window opens,
 * and saved at each change: another program may read them at any time.
 */
class RecentFiles : public QObject
{
    Q_OBJECT

public:
    /** Reads what was saved. */
    explicit RecentFiles(QObject* parent = nullptr);

    /** A file was opened or saved. @param path absolute */
    void add(QString const& path);
    /** The folder that the last file came from. */
    QString folder() const { return m_manager.m_recentFileFolder; }
    /** The lists, as the library has them. */
    KpRecentFileManager& manager() { return m_manager; }

    /** Is told the path of what was chosen in a menu. */
    using Choice = std::function<void(QString const&)>;
    /**
     * Fills a menu: the files, pinned ones first, then a menu of folders and one to pin and unpin
     * files.
     *
     * @param file called when a file is chosen
     * @param folder called when a folder is chosen
     */
    void fill(QMenu& menu, Choice const& file, Choice const& folder);

private:
    void fillFolders(QMenu& menu, Choice const& choose);
    void fillPins(QMenu& menu);
    void togglePin(int index);
    void removeMissing();
    void save();

    KpRecentFileManager m_manager;
};

#endif // RECENTFILES_H
