// SPDX-License-Identifier: MIT
// Any bytes as the file of recent files: read, saved and read again, until nothing changes; what
// was read, by a new manager and by one in use, is what is in the tree, and what no XML holds has
// been replaced once. The file lies in memory, and nobody waits for a disk: that is for tests with a
// disk to show.

#include "boundedxml_p.h"
#include "fuzzing.h"
#include "kpfilepathmanager.h"
#include "kprecentfilemanager.h"
#include "xmltext_p.h"

#include <QDir>
#include <QDomDocument>
#include <QTemporaryDir>

#include <algorithm>
#include <utility>

using Fuzzing::require;

/** In the place of the system's: it is asked for at each saving, and takes most of its time. */
extern "C" int fdatasync(int /*descriptor*/)
{
    return 0;
}

extern "C" int fsync(int /*descriptor*/)
{
    return 0;
}

namespace {

/** A configuration directory in memory, where the machine has such a place. */
QTemporaryDir const& directory()
{
    static QString const memory = QStringLiteral("/dev/shm");
    static QTemporaryDir const made(
        (QDir(memory).exists() ? memory : QDir::tempPath()) + QStringLiteral("/recentfiles"));
    return made;
}

/** What is the same after saving and reading. */
QStringList stateOf(KpRecentFileManager const& manager)
{
    QStringList lines {manager.m_recentFileFolder, manager.m_symbolFolder, manager.m_libraryFolder};
    for (auto const* const list : {&manager.m_files, &manager.m_folders}) {
        lines << QString::number(list->size());
        for (KpRecentFileManager::RecFile const& entry : *list) {
            lines << QString::number(entry.isTop) << QString::number(entry.type) << entry.path
                  << entry.teamName;
        }
    }
    return lines;
}

/** As a file can hold it: types are written without a sign, and read as an int or 0. */
QStringList savedState(KpRecentFileManager manager)
{
    auto const makeReadable = [](QString& text) {
        text = XmlText::readable(text, XmlText::Controls::AreKept);
    };
    for (auto* const folder :
        {&manager.m_recentFileFolder, &manager.m_symbolFolder, &manager.m_libraryFolder})
        makeReadable(*folder);
    for (auto* const list : {&manager.m_files, &manager.m_folders}) {
        for (KpRecentFileManager::RecFile& entry : *list) {
            entry.type = std::max(entry.type, 0);
            makeReadable(entry.path);
            makeReadable(entry.teamName);
        }
    }
    return stateOf(manager);
}

/** Appends the entries of a list of the tree, one by one. */
void appendEntries(
    QList<KpRecentFileManager::RecFile>& list, QDomElement const& root, QString const& name)
{
    QDomNodeList const children = root.firstChildElement(name).childNodes();
    for (int i = 0; i < children.count(); ++i) {
        QDomElement const child = children.at(i).toElement();
        QString const path = child.attribute(QStringLiteral("V"));
        if (path.isEmpty())
            continue;
        list.append({child.attribute(QStringLiteral("Top")).toInt() == 1,
            child.attribute(QStringLiteral("Type")).toInt(), path,
            child.attribute(QStringLiteral("TeamName"))});
    }
}

/** What the tree makes of a manager: what it does not name stays, and lists grow. */
KpRecentFileManager modelled(QDomElement const& root, KpRecentFileManager manager)
{
    std::pair<QString, QString*> const folders[] = {
        {QStringLiteral("RecentFile"), &manager.m_recentFileFolder},
        {QStringLiteral("RecentSymbol"), &manager.m_symbolFolder},
        {QStringLiteral("RecentLibrary"), &manager.m_libraryFolder}};
    for (auto const& [name, folder] : folders) {
        QDomElement const element = root.firstChildElement(name);
        if (!element.isNull())
            *folder = element.attribute(QStringLiteral("V"));
    }
    appendEntries(manager.m_files, root, QStringLiteral("RecentFiles"));
    appendEntries(manager.m_folders, root, QStringLiteral("RecentFolders"));
    return manager;
}

/** A manager of which nothing is as in a new one. */
KpRecentFileManager usedManager()
{
    KpRecentFileManager manager;
    manager.m_recentFileFolder = QStringLiteral("files");
    manager.m_symbolFolder = QStringLiteral("symbols");
    manager.m_libraryFolder = QStringLiteral("libraries");
    manager.m_files.append({true, 3, QStringLiteral("a"), QStringLiteral("b")});
    manager.m_folders.append({false, 2, QStringLiteral("c"), QString()});
    return manager;
}

void checkRead(QDomElement root)
{
    for (KpRecentFileManager const& before : {KpRecentFileManager(), usedManager()}) {
        KpRecentFileManager manager(before);
        manager.parse(root);
        require(stateOf(manager) == stateOf(modelled(root, before)),
            "what is read is what the tree holds");
    }
}

KpRecentFileManager loaded()
{
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager manager;
    manager.load();
    require(KpRecentFileManager::s_isLoaded, "a file is read once");
    return manager;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::forbidLog();
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(directory().path()));
    qputenv("HOME", QFile::encodeName(directory().path()));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    BoundedXml::Error error;
    QDomDocument document;
    BoundedXml::parse(Fuzzing::bytes(data, size), document, error, BoundedXml::configurationLimits);
    QDomElement root = document.firstChildElement(QStringLiteral("RecentFiles"));
    checkRead(root);
    KpRecentFileManager manager;
    manager.parse(root);
    manager.save();
    KpRecentFileManager saved = loaded();
    require(stateOf(saved) == savedState(manager), "what is saved is read back");
    saved.save();
    require(stateOf(loaded()) == stateOf(saved), "and nothing changes any more");
    return 0;
}
