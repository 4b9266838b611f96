// Any bytes as the file of recent files: read, saved and read again, until nothing changes; what
// was read is what is in the tree, and what no XML holds has been replaced once. The file lies in
// memory, and nobody waits for a disk: that is for tests with a disk to show.

#include "boundedxml_p.h"
#include "fuzzing.h"
#include "kpfilepathmanager.h"
#include "kprecentfilemanager.h"
#include "xmltext_p.h"

#include <QDir>
#include <QDomDocument>
#include <QTemporaryDir>

#include <algorithm>

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

/** The entries of a list of the tree, one by one. */
QStringList entriesOf(QDomElement const& root, QString const& name)
{
    QStringList lines;
    QDomNodeList const children = root.firstChildElement(name).childNodes();
    int count = 0;
    for (int i = 0; i < children.count(); ++i) {
        QDomElement const child = children.at(i).toElement();
        QString const path = child.attribute(QStringLiteral("V"));
        if (path.isEmpty())
            continue;
        ++count;
        lines << QString::number(child.attribute(QStringLiteral("Top")).toInt() == 1)
              << QString::number(child.attribute(QStringLiteral("Type")).toInt()) << path
              << child.attribute(QStringLiteral("TeamName"));
    }
    lines.prepend(QString::number(count));
    return lines;
}

void checkRead(QDomElement const& root, KpRecentFileManager const& manager)
{
    QStringList expected;
    KpRecentFileManager const untouched;
    QString const folders[] = {QStringLiteral("RecentFile"), QStringLiteral("RecentSymbol"),
        QStringLiteral("RecentLibrary")};
    for (QString const& name : folders) {
        QDomElement const element = root.firstChildElement(name);
        expected << (element.isNull() ? untouched.m_symbolFolder
                                      : element.attribute(QStringLiteral("V")));
    }
    expected << entriesOf(root, QStringLiteral("RecentFiles"))
             << entriesOf(root, QStringLiteral("RecentFolders"));
    require(stateOf(manager) == expected, "what is read is what the tree holds");
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
    KpRecentFileManager manager;
    manager.parse(root);
    checkRead(root, manager);

    manager.save();
    KpRecentFileManager saved = loaded();
    require(stateOf(saved) == savedState(manager), "what is saved is read back");
    saved.save();
    require(stateOf(loaded()) == stateOf(saved), "and nothing changes any more");
    return 0;
}
