// SPDX-License-Identifier: MIT
#ifndef KPRECENTFILEMANAGER_H
#define KPRECENTFILEMANAGER_H

#include "kpgeometry_export.h"

#include <QList>
#include <QString>
#include <QVector>

class QDomElement;

/**
 * What the application shows as recent: a list of files, a list of folders, and the folders that
 * the last file, the last symbol and the last library came from.
 *
 * Pinned entries stand at the head of their list, the others follow, the newest first in each
 * group. Nothing is asked of the file system for an entry: one whose file is gone is listed like
 * any other. Paths are compared as they are, with case, separators and trailing "/".
 *
 * The lists live in memory until save(); load() reads what was saved. parse() trusts the file,
 * so that lists may be out of order and too long after it; the next operation that adds to a list
 * or shows it cuts it to m_maxCount.
 *
 * Rows and indices count from 0. Those out of range are ignored, and nothing is reported. For one thread only, the
 * one of the user interface.
 */
class KPGEOMETRY_EXPORT KpRecentFileManager
{
public:
    /** Where a file is kept. The numbers stand in the file of recent files. */
    enum RecFileType {
        RecAuto = 0, ///< an argument only: what it is follows from the path
        RecLocal = 1, ///< on a disk; only the folders of such files are recent folders
        RecPersonal = 2, ///< in the user's cloud space
        RecTeam = 3, ///< in the cloud space of a team
        RecGoogleDrive = 4,
        RecDropbox = 5
    };

    /** An entry of a list. */
    struct RecFile
    {
        bool isTop; ///< pinned
        int type; ///< a RecFileType, or whatever number was in the file
        QString path; ///< as the application gave it; fields of a cloud path are joined by "#$#"
        QString teamName; ///< of a team's file, empty for any other
    };

    /** An entry as it is shown. */
    struct RecFileInfo
    {
        bool isTop; ///< pinned
        int type; ///< a RecFileType, or whatever number was in the file
        QString name; ///< of the file, or of the last folder of the path
        QString location; ///< the folders to it, with ">" between them
        QString path; ///< as in the list
    };

    /**
     * Whether a manager of this process has read the file, or has tried to: load() of all others
     * does nothing then.
     */
    static bool s_isLoaded;

    /** Empty lists for up to 60 entries; the three folders are the user's documents folder. */
    KpRecentFileManager();
    /** Writes nothing. */
    ~KpRecentFileManager();
    /** A copy of everything. */
    KpRecentFileManager(KpRecentFileManager const& other) = default;
    /** Takes over all but m_isModified, which stays as it is: deliberate, it is the caller's. */
    KpRecentFileManager& operator=(KpRecentFileManager const& other);

    /**
     * Remembers the folder part of a file's path: "/a/b" of "/a/b/c.x", "." of a bare name, and
     * nothing of an empty path.
     */
    void setSymbolFolder(QString const& filePath);
    /** As setSymbolFolder(), for a library. */
    void setLibraryFolder(QString const& filePath);
    /** As setSymbolFolder(), for a file. */
    void setRecentFileFolder(QString const& filePath);

    /**
     * A file was saved: remembers its folder and calls addRecentFile().
     *
     * @param type a RecFileType. For RecAuto the first that fits is taken, of: RecTeam if the
     * path contains "/Team/", RecPersonal if "/Personal/", RecGoogleDrive if "#$#/GoogleDrive/",
     * RecDropbox if "#$#/Dropbox/", RecLocal; and the team name is dropped, deliberately.
     */
    void addSaveFileInfo(QString const& path, unsigned int type, QString const& teamName);
    /** A file was opened; does what addSaveFileInfo() does. */
    void addOpenFileInfo(QString const& path, unsigned int type, QString const& teamName);

    /**
     * Puts a file at the head of those that are not pinned, and its folder with addRecentFolder().
     *
     * Older entries of the same type that are not pinned go if their path contains the last field
     * of the new one, which is the whole path where "#$#" joins nothing. So "/a/b.x" takes away
     * "/x/a/b.x" and "/a/b.x.bak" too: deliberate, a cloud file is known by its last field. If
     * that field is empty, only the last entry of the same path goes.
     *
     * If such an entry is pinned, the call ends there: nothing is added, and only what stood
     * behind that entry is gone.
     *
     * Of a list that is too long then, the tail is cut off, pinned or not.
     */
    void addRecentFile(QString const& path, unsigned int type, QString const& teamName);
    /**
     * Puts the folder part of a local file's path at the head of the folders that are not pinned;
     * one that is pinned stays where it is. Any other type than RecLocal changes nothing.
     */
    void addRecentFolder(QString const& path, unsigned int type, QString const& teamName);

    /** Removes the first entry of this path. */
    void delRecentFile(QString const& path);
    /**
     * Removes the entry in a row of the list as it is shown.
     *
     * There a row of its own stands between the pinned entries and the others. For removal every
     * row but the first counts one too many if the list begins with a pinned entry: deliberately
     * not the rule of moveRecentFileTop(), the application counts on both.
     */
    void delRecentFile(int row);
    /** As delRecentFile(), for folders. */
    void delRecentFolder(int row);

    /**
     * Pins the entry in a row of the list as it is shown, and moves it to the very top.
     *
     * If the list begins with a pinned entry, a row that follows on a pinned entry is its index,
     * and any other but the first counts one too many.
     *
     * @return false if the row is the first and pinned already; true in any other case, also for
     * a row that is not there
     */
    bool moveRecentFileTop(int row);
    /** As moveRecentFileTop(), for folders. */
    bool moveRecentFolderTop(int row);

    /** Unpins the entry at an index of the list, and makes it the first that is not pinned. */
    void moveRecentFileNotTop(int index);
    /** As moveRecentFileNotTop(), for folders. */
    void moveRecentFolderNotTop(int index);

    /**
     * The index of the first file that is not pinned; the number of files if all are. Changes
     * nothing: that it is not const belongs to the application's binary interface.
     */
    int notTopFileFirstIndex();
    /** As notTopFileFirstIndex(), for folders. */
    int notTopFolderFirstIndex();

    /**
     * Appends the files to `out` as they are shown, after cutting the list to m_maxCount.
     *
     * In the location of a local file the user's documents folder, else the desktop folder, else
     * the home folder is shown by its last name alone. QStandardPaths tells at each call where these
     * folders are; it may read the user's configuration for that. The files themselves are not
     * looked at.
     *
     * Not const, for it cuts the list.
     */
    void getRecentFiles(QVector<RecFileInfo>& out);
    /**
     * Appends the folders to `out` as they are shown. It cuts the list of files to m_maxCount, not
     * that of the folders: deliberate, the application has always had it so.
     */
    void getRecentFolder(QVector<RecFileInfo>& out);

    /**
     * Reads RecentFiles.xml in the application's configuration directory, if no manager of the
     * process has done so before. When the file is missing or is no XML, everything stays as it
     * is; there is no second try.
     */
    void load();
    /**
     * Takes over the three folders of a root element "RecentFiles", if they are there, and appends
     * its entries to the lists, unchecked but for those without a path, which are left out. A
     * null element changes nothing.
     */
    void parse(QDomElement& root);
    /**
     * Writes everything to RecentFiles.xml in the application's configuration directory.
     *
     * The file is replaced in one step, and keeps its permissions; if it is a symbolic link, its
     * target is replaced. On any failure it stays as it was: nothing is reported. Only where its
     * directory cannot be written to, and the file can, the file itself is written, and is lost if
     * that fails midway. A device or pipe in its place is left alone. What a process that was killed
     * within a save has left beside the file (".kpgeometry-save-" and 16 digits) is removed.
     *
     * Control characters are written as they are, though XML 1.0 has no place for most of them:
     * load() reads them back. Only what no reader gives back becomes U+FFFD: NUL, halves of
     * surrogate pairs, U+FFFE and U+FFFF.
     */
    void save();

    bool m_isModified; ///< set by every operation that adds an entry; the caller may clear it
    int m_maxCount; ///< the greatest number of entries in a list
    QString m_recentFileFolder; ///< of the file that was opened or saved last
    QString m_libraryFolder; ///< where a library came from last
    QString m_symbolFolder; ///< where a symbol came from last
    QList<RecFile> m_files; ///< the pinned ones first, the newest first in each group
    QList<RecFile> m_folders; ///< in the same order
};

static_assert(sizeof(KpRecentFileManager) == 48 && sizeof(KpRecentFileManager::RecFile) == 24
        && sizeof(KpRecentFileManager::RecFileInfo) == 32,
    "the application's layout of recent files");

#endif // KPRECENTFILEMANAGER_H
