// SPDX-License-Identifier: MIT
#ifndef RECENTFILESTESTING_H
#define RECENTFILESTESTING_H

#include "kprecentfilemanager.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/** What the tests of recent files share: a user of their own, and lists as text. */
namespace RecentFilesTesting {

using RecFile = KpRecentFileManager::RecFile;
using RecFileInfo = KpRecentFileManager::RecFileInfo;

/** A home folder that is not the user's, with the documents in "Papers" and a desktop. */
class Home
{
public:
    Home()
    {
        QDir(path()).mkpath("config");
        QFile folders(path() + "/config/user-dirs.dirs");
        if (!folders.open(QIODevice::WriteOnly)
            || folders.write(
                   "XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\nXDG_DESKTOP_DIR=\"$HOME/Table\"\n")
                < 0)
            qFatal("%s cannot be written", qPrintable(folders.fileName()));
        qputenv("HOME", QFile::encodeName(path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(path() + "/config"));
        KpRecentFileManager::s_isLoaded = false;
    }

    QString path() const { return m_directory.path(); }
    QString documents() const { return path() + "/Papers"; }
    QString desktop() const { return path() + "/Table"; }

private:
    QTemporaryDir m_directory;
};

inline QString text(RecFile const& entry)
{
    return QStringLiteral("%1%2 %3%4")
        .arg(entry.isTop ? QStringLiteral("*") : QString(), QString::number(entry.type), entry.path,
            entry.teamName.isEmpty() ? QString() : " [" + entry.teamName + ']');
}

/** An entry a line: a star for a pin, type, path, team. */
inline QStringList text(QList<RecFile> const& entries)
{
    QStringList lines;
    for (RecFile const& entry : entries)
        lines << text(entry);
    return lines;
}

/** An entry a line: a star for a pin, type, name, location, path. */
inline QStringList text(QVector<RecFileInfo> const& infos)
{
    QStringList lines;
    for (RecFileInfo const& info : infos) {
        lines << QStringLiteral("%1%2 %3 | %4 | %5")
                     .arg(info.isTop ? QStringLiteral("*") : QString(), QString::number(info.type),
                         info.name, info.location, info.path);
    }
    return lines;
}

/** Entries of local files from paths, of which those with a star in front are pinned. */
inline QList<RecFile> entriesOf(QStringList const& paths)
{
    QList<RecFile> entries;
    for (QString const& path : paths) {
        bool const isTop = path.startsWith('*');
        entries << RecFile {isTop, KpRecentFileManager::RecLocal, path.mid(isTop ? 1 : 0), {}};
    }
    return entries;
}

/** The paths of entries, pinned ones with a star in front. */
inline QStringList pathsOf(QList<RecFile> const& entries)
{
    QStringList paths;
    for (RecFile const& entry : entries)
        paths << (entry.isTop ? QStringLiteral("*") : QString()) + entry.path;
    return paths;
}

} // namespace RecentFilesTesting

#endif // RECENTFILESTESTING_H
