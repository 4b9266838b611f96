// SPDX-License-Identifier: MIT
#ifndef WINDOWTESTING_H
#define WINDOWTESTING_H

#include "model/operations.h"
#include "window/mainwindow.h"
#include "window/prompter.h"
#include "window/recentfiles.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

/** What tests of whole windows share: a user who answers at once, and a place for all files. */
namespace Testing {

/** Answers as it was told to, and remembers what it was asked. */
class ScriptedPrompter : public Prompter
{
public:
    Unsaved unsaved = Unsaved::Cancel; ///< the answer to unsaved changes
    bool isConfirmed = false; ///< the answer to whether to do it
    QStringList open; ///< the files that are opened
    QString saveAs; ///< the file that is written
    QString answer; ///< the text that is entered
    QStringList asked; ///< the questions so far

    Unsaved askToSave(QWidget*, QString const& name) override
    {
        asked << "save " + name;
        return unsaved;
    }
    bool confirm(QWidget*, QString const& question, QString const&) override
    {
        asked << question;
        return isConfirmed;
    }
    QStringList filesToOpen(QWidget*, QString const& title, QString const&, QString const&) override
    {
        asked << title;
        return open;
    }
    QString fileToSave(QWidget*, QString const& title, QString const&, QString const&) override
    {
        asked << title;
        return saveAs;
    }
    QString text(QWidget*, QString const& title, QString const&, QString const&) override
    {
        asked << title;
        return answer;
    }
};

/** A folder of its own, in which windows keep their settings, recent files and unsaved work. */
class WindowFolder
{
public:
    WindowFolder()
    {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.filePath("config")));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.filePath("data")));
        forgetRecent();
    }

    /** Empties it: another session begins in a folder of the same name. */
    void clear()
    {
        for (QFileInfo const& entry :
            QDir(m_folder.path()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
            if (!(entry.isDir() ? QDir(entry.filePath()).removeRecursively()
                                : QFile::remove(entry.filePath())))
                qFatal("cannot remove %s", qPrintable(entry.filePath()));
        }
        forgetRecent();
    }

    /** What windows in it get. */
    Surroundings surroundings() { return surroundingsIn(m_folder.path(), prompter, *recent); }

    /** What windows get in any folder; unsaved work is kept at once. */
    static Surroundings surroundingsIn(
        QString const& folder, Prompter& prompter, RecentFiles& recent)
    {
        return {prompter, recent, folder + "/window.ini", folder + "/recovery", 50};
    }

    /** The path of a file in it. */
    QString path(QString const& name) const { return m_folder.filePath(name); }

    /** Writes a file into it. @return its path */
    QString write(QString const& name, QByteArray const& content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    /** All that a file holds; null if it cannot be read. */
    static QByteArray read(QString const& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    ScriptedPrompter prompter; ///< the user
    std::unique_ptr<RecentFiles> recent; ///< the recent files

private:
    void forgetRecent()
    {
        KpRecentFileManager::s_isLoaded = false;
        recent = std::make_unique<RecentFiles>();
    }

    QTemporaryDir m_folder;
};

/** A ring of three points in proportion to its box, 240 by 160, and a line of fixed points. */
inline QByteArray twoOutlines()
{
    return "<Shapes><Shape Name='plate' Width='240' Height='160'><Geometry Closed='1'>"
           "<MoveTo><X V='0' B='1' P='0'/><Y V='0' B='2' P='0'/></MoveTo>"
           "<LineTo><X V='240' B='1' P='1'/><Y V='0' B='2' P='0'/></LineTo>"
           "<LineTo><X V='240' B='1' P='1'/><Y V='160' B='2' P='1'/></LineTo>"
           "</Geometry></Shape><Shape Name='roof' Width='100' Height='50'><Geometry>"
           "<MoveTo><X V='0' B='0'/><Y V='50' B='0'/></MoveTo>"
           "<LineTo><X V='96' B='0'/><Y V='50' B='0'/></LineTo>"
           "</Geometry></Shape></Shapes>";
}

/** Waits until the window has read its file. */
inline bool awaitLoading(MainWindow& window)
{
    return QTest::qWaitFor([&window] { return !window.controller().isLoading(); }, 30000);
}

/** Opens a file in a window and waits for it. */
inline bool openFile(MainWindow& window, QString const& path)
{
    window.controller().open(path);
    return awaitLoading(window);
}

/** Triggers an action by its name, as its menu does. */
inline void trigger(MainWindow& window, QString const& id)
{
    QAction* const action = window.actions().action(id);
    if (!action)
        qFatal("there is no action %s", qPrintable(id));
    action->trigger();
}

/** Another box for the current outline: one step. */
inline void resizeCurrent(MainWindow& window, QSizeF const& box)
{
    resizeBox(window.document().working(), box);
    window.document().commit("Resize box");
}

/** The first point of the current outline goes elsewhere: one step. */
inline void movePoint(MainWindow& window, double x)
{
    window.document().working().list->segs.first()->pt.x.value = x;
    window.document().touch();
    window.document().commit("Move point");
}

} // namespace Testing

#endif // WINDOWTESTING_H
