// SPDX-License-Identifier: MIT
#ifndef RECENTLISTS_H
#define RECENTLISTS_H

#include "common/diagnostic.h"
#include "kprecentfilemanager.h"

#include <optional>

/** Whether two entries have everything in common. */
bool areEqual(KpRecentFileManager::RecFile const& left, KpRecentFileManager::RecFile const& right);

/** The recent files of a configuration directory: a RecentFiles.xml and what it is read as. */
class RecentLists
{
public:
    enum class Missing { IsError, IsEmpty };

    /** Of the directory; nothing, with a diagnostic, when the file cannot be read. */
    static std::optional<RecentLists> load(
        QString const& directory, Missing missing, Diagnostics& diagnostics);

    QString const& file() const { return m_file; }
    KpRecentFileManager& manager() { return m_manager; }

    /** What reading the file has changed or left out, with its place. */
    Diagnostics const& oddities() const { return m_oddities; }

    /**
     * Writes the file as the application would; false, with a diagnostic, on failure. When others
     * write it at the same time, the last one's lists stay; that is no failure.
     */
    bool save(Diagnostics& diagnostics);

private:
    enum class Try { Saved, Failed, Overtaken };

    explicit RecentLists(QString const& directory);
    bool read(Diagnostics& diagnostics);
    Try trySave();

    QString m_directory;
    QString m_file;
    KpRecentFileManager m_manager;
    Diagnostics m_oddities;
};

#endif // RECENTLISTS_H
