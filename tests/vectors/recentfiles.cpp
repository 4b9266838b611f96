// SPDX-License-Identifier: MIT
#include "kpfilepathmanager.h"
#include "kprecentfilemanager.h"
#include "themes.h"
#include "xmlsources.h"

#include <QFile>

#include <functional>

namespace {

using Manager = KpRecentFileManager;
using Vectors::Fields;
using Vectors::Theme;

Manager managerOf(QList<Manager::RecFile> const& files, QList<Manager::RecFile> const& folders)
{
    Manager manager;
    manager.m_isModified = false;
    manager.m_maxCount = 4;
    manager.m_recentFileFolder = "/last";
    manager.m_libraryFolder = "/library";
    manager.m_symbolFolder = "/symbol";
    manager.m_files = files;
    manager.m_folders = folders;
    return manager;
}

QVector<Manager> managers()
{
    return {managerOf({}, {}), managerOf({{false, 1, "/a/b.x", ""}}, {{false, 1, "/a", ""}}),
        managerOf({{true, 1, "/p/1.x", ""}, {true, 3, "/t/Team/2.x", "Blue"},
                      {false, 1, "/a/b.x", ""}, {false, 1, "/x/a/b.x", ""}},
            {{true, 1, "/p", ""}, {false, 1, "/a", ""}, {false, 2, "/a", ""}}),
        managerOf({{false, 1, "/a/b.x.bak", ""}, {true, 1, "/a/b.x", ""}, {false, 2, "/a/b.x", ""}},
            {{false, 1, "/q", ""}, {true, 1, "/a", ""}}),
        managerOf(
            {{true, 1, "/1", ""}, {true, 1, "/2", ""}, {true, 1, "/3", ""}, {true, 1, "/4", ""}},
            {{true, 1, "/1f", ""}, {true, 1, "/2f", ""}, {true, 1, "/3f", ""},
                {true, 1, "/4f", ""}}),
        managerOf(
            {{false, 4, "id#$#n#$#/GoogleDrive/d/f.x", ""}, {false, 5, "x#$#/Dropbox/sub/f.x", ""},
                {false, 4, "a#$#", ""}, {false, 9, "/odd/f.x", ""}, {false, 1, "", ""}},
            {{false, 1, "C:/", ""}, {false, 2, "/cloud/Personal/p", ""}, {false, 3, "/Team/t", "T"},
                {false, 4, "/g/d", ""}, {false, 1, "none", ""}})};
}

void addChange(Theme& theme, QString const& member, Manager const& before, Fields inputs,
    std::function<void(Manager&)> const& change)
{
    inputs.push_back({"manager", before});
    Manager after = before;
    change(after);
    theme.add("KpRecentFileManager::" + member, inputs, {{"manager", after}});
}

void addConstruction(Theme& theme)
{
    theme.add("KpRecentFileManager::s_isLoaded", {}, {{"value", Manager::s_isLoaded}});
    theme.add("KpRecentFileManager::KpRecentFileManager()", {}, {{"manager", Manager()}});
    QVector<Manager> const all = managers();
    for (Manager const& other : all) {
        Manager assigned;
        assigned = other;
        theme.add("KpRecentFileManager::operator=(KpRecentFileManager const&)",
            {{"manager", Manager()}, {"other", other}}, {{"manager", assigned}});
        theme.add("KpRecentFileManager::KpRecentFileManager(KpRecentFileManager const&)",
            {{"other", other}}, {{"manager", Manager(other)}});
    }
}

void addFolders(Theme& theme)
{
    for (QString const path : {"/a/b/c.x", "c.x", "/c.x", "a/", ""}) {
        Manager const before = managers().at(1);
        Fields const inputs {{"filePath", path}};
        addChange(theme, "setSymbolFolder(QString const&)", before, inputs,
            [&path](Manager& manager) { manager.setSymbolFolder(path); });
        addChange(theme, "setLibraryFolder(QString const&)", before, inputs,
            [&path](Manager& manager) { manager.setLibraryFolder(path); });
        addChange(theme, "setRecentFileFolder(QString const&)", before, inputs,
            [&path](Manager& manager) { manager.setRecentFileFolder(path); });
    }
}

struct Entry
{
    QString path;
    unsigned int type;
    QString team;
};

void addAdding(Theme& theme, Manager const& before)
{
    for (Entry const& entry : {Entry {"/a/b.x", 1, ""}, {"/new/n.x", 1, "ignored"}, {"a#$#", 4, ""},
             {"other#$#/Dropbox/sub/f.x", 5, ""}, {"/c/Team/t.x", 3, "Red"}}) {
        Fields const inputs {{"path", entry.path}, {"type", entry.type}, {"teamName", entry.team}};
        addChange(theme, "addRecentFile(QString const&, unsigned int, QString const&)", before,
            inputs, [&entry](Manager& m) { m.addRecentFile(entry.path, entry.type, entry.team); });
        addChange(theme, "addRecentFolder(QString const&, unsigned int, QString const&)", before,
            inputs,
            [&entry](Manager& m) { m.addRecentFolder(entry.path, entry.type, entry.team); });
    }
}

void addClassifying(Theme& theme)
{
    for (Entry const& entry : {Entry {"/c/Team/Personal/t.x", 0, "Red"}, {"/c/Personal/t.x", 0, ""},
             {"i#$#/GoogleDrive/t.x", 0, ""}, {"i#$#/Dropbox/t.x", 0, ""}, {"/l/t.x", 0, "Red"},
             {"/c/Team/t.x", 1, "Red"}, {"/GoogleDrive/t.x", 0, ""}, {"/l/t.x", 7, ""}}) {
        Fields const inputs {{"path", entry.path}, {"type", entry.type}, {"teamName", entry.team}};
        Manager const before = managers().at(1);
        addChange(theme, "addSaveFileInfo(QString const&, unsigned int, QString const&)", before,
            inputs,
            [&entry](Manager& m) { m.addSaveFileInfo(entry.path, entry.type, entry.team); });
        addChange(theme, "addOpenFileInfo(QString const&, unsigned int, QString const&)", before,
            inputs,
            [&entry](Manager& m) { m.addOpenFileInfo(entry.path, entry.type, entry.team); });
    }
}

template <class Pin>
void addPinning(Theme& theme, QString const& member, Manager const& before, int row, Pin pin)
{
    Manager after = before;
    bool const result = (after.*pin)(row);
    theme.add("KpRecentFileManager::" + member, {{"manager", before}, {"row", row}},
        {{"manager", after}, {"result", result}});
}

void addRows(Theme& theme, Manager const& before)
{
    for (int row = -1; row <= 3; ++row) {
        addPinning(theme, "moveRecentFileTop(int)", before, row, &Manager::moveRecentFileTop);
        addPinning(theme, "moveRecentFolderTop(int)", before, row, &Manager::moveRecentFolderTop);
        addChange(theme, "delRecentFile(int)", before, {{"row", row}},
            [row](Manager& manager) { manager.delRecentFile(row); });
        addChange(theme, "delRecentFolder(int)", before, {{"row", row}},
            [row](Manager& manager) { manager.delRecentFolder(row); });
        addChange(theme, "moveRecentFileNotTop(int)", before, {{"index", row}},
            [row](Manager& manager) { manager.moveRecentFileNotTop(row); });
        addChange(theme, "moveRecentFolderNotTop(int)", before, {{"index", row}},
            [row](Manager& manager) { manager.moveRecentFolderNotTop(row); });
    }
    for (QString const path : {"/a/b.x", "/a", ""})
        addChange(theme, "delRecentFile(QString const&)", before, {{"path", path}},
            [&path](Manager& manager) { manager.delRecentFile(path); });
    Manager asked = before;
    theme.add("KpRecentFileManager::notTopFileFirstIndex()", {{"manager", before}},
        {{"result", asked.notTopFileFirstIndex()}});
    theme.add("KpRecentFileManager::notTopFolderFirstIndex()", {{"manager", before}},
        {{"result", asked.notTopFolderFirstIndex()}});
}

void addShowing(Theme& theme, Manager const& before)
{
    QVector<Manager::RecFileInfo> files {{true, 1, "before", "it", "/is"}};
    Manager after = before;
    after.getRecentFiles(files);
    theme.add("KpRecentFileManager::getRecentFiles(QVector<KpRecentFileManager::RecFileInfo>&)",
        {{"manager", before}}, {{"out", files}, {"manager", after}});
    QVector<Manager::RecFileInfo> folders {{true, 1, "before", "it", "/is"}};
    after = before;
    after.getRecentFolder(folders);
    theme.add("KpRecentFileManager::getRecentFolder(QVector<KpRecentFileManager::RecFileInfo>&)",
        {{"manager", before}}, {{"out", folders}, {"manager", after}});
}

/** Entries in the user's own folders, as the surroundings of the vectors have them. */
Manager inUserFolders()
{
    return managerOf(
        {{false, 1, "/home/user/Documents/p/f.x", ""}, {false, 1, "/home/user/Desktop/g.x", ""},
            {false, 1, "/home/user/h.x", ""}, {false, 2, "/home/user/Documents/i.x", ""}},
        {{false, 1, "/home/user/Documents/p", ""}, {false, 1, "/home/user/Desktop", ""},
            {false, 1, "/home/user", ""}, {false, 1, "/mnt/home/user/x", ""}});
}

QStringList sources()
{
    return {"<RecentFiles/>",
        R"(<RecentFiles><RecentFile V="/f"/><RecentSymbol/><RecentLibrary V="/l"/>)"
        R"(<RecentFile V="/second"/></RecentFiles>)",
        R"(<RecentFiles><RecentFiles><RecentFile V="/a" Type="1" Top="1"/><RecentFolder V="/b" )"
        R"(Type="3" TeamName="Red &amp; Blue" Top="2"/><RecentFile V="" Type="1"/><RecentFile )"
        R"(V="/c" Type="x" Top="true"/></RecentFiles><RecentFolders><RecentFolder V="/d" Type="-1" )"
        R"(Top="01"/><any V="/e"/></RecentFolders></RecentFiles>)"};
}

void addFile(Theme& theme)
{
    QString const path = KpFilePathManager::configPath("RecentFiles.xml");
    for (QString const& xml : sources()) {
        QDomDocument const document = Vectors::treeOf(xml);
        QDomElement root = document.documentElement();
        addChange(theme, "parse(QDomElement&)", managers().at(1), {{"xml", xml}},
            [&root](Manager& manager) { manager.parse(root); });

        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(xml.toUtf8());
        file.close();
        for (bool const isLoaded : {false, true}) {
            Manager::s_isLoaded = isLoaded;
            addChange(theme, "load()", managers().at(0), {{"xml", xml}, {"s_isLoaded", isLoaded}},
                [](Manager& manager) { manager.load(); });
        }
        Manager::s_isLoaded = false;
    }
    QVector<Manager> all = managers();
    all[1].m_files[0].path = QString::fromUtf8("/<&\">/\u00E4\u5B8B\U0001F600.x");
    for (Manager& manager : all) {
        QFile::remove(path);
        manager.save();
        QDomDocument document;
        bool const isRead = KpFilePathManager::loadXmlFile(document, path);
        theme.add("KpRecentFileManager::save()", {{"manager", manager}},
            {{"isRead", isRead}, {"root", document.documentElement()}});
    }
    QFile::remove(path);
}

} // namespace

void Vectors::addRecentFiles(Theme& theme)
{
    addConstruction(theme);
    addFolders(theme);
    for (Manager const& manager : managers()) {
        addAdding(theme, manager);
        if (manager.m_files.count() <= manager.m_maxCount)
            addRows(theme, manager);
        addShowing(theme, manager);
    }
    addShowing(theme, inUserFolders());
    addClassifying(theme);
    addFile(theme);
}
