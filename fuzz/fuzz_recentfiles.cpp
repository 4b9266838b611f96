// Any bytes as the file of recent files: read, changed, shown, saved and read again.

#include "boundedxml_p.h"
#include "kpfilepathmanager.h"
#include "kprecentfilemanager.h"
#include "xmltext_p.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
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

void change(KpRecentFileManager& manager, std::uint8_t const* data, std::size_t size)
{
    for (std::size_t i = 0; i < size && i < 32; ++i) {
        int const row = data[i] / 8 - 4;
        QString const path =
            QString::fromUtf8(reinterpret_cast<char const*>(data + i), int(size - i) % 8);
        switch (data[i] % 8) {
        case 0:
            manager.addOpenFileInfo(path, 0, QString());
            break;
        case 1:
            manager.addSaveFileInfo(path, unsigned(row), path);
            break;
        case 2:
            manager.moveRecentFileTop(row);
            break;
        case 3:
            manager.moveRecentFileNotTop(row);
            break;
        case 4:
            manager.delRecentFile(row);
            break;
        case 5:
            manager.delRecentFile(path);
            break;
        case 6:
            manager.moveRecentFolderTop(row);
            break;
        default:
            manager.delRecentFolder(row);
            break;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static QTemporaryDir const directory;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(directory.path()));
    qputenv("HOME", QFile::encodeName(directory.path()));
    BoundedXml::Error error;
    QDomDocument document;
    QByteArray const text(reinterpret_cast<char const*>(data), static_cast<int>(size));
    BoundedXml::parse(text, document, error, BoundedXml::configurationLimits);
    QDomElement root = document.firstChildElement(QStringLiteral("RecentFiles"));
    KpRecentFileManager manager;
    manager.parse(root);
    change(manager, data, size);
    QVector<KpRecentFileManager::RecFileInfo> infos;
    manager.getRecentFiles(infos);
    manager.getRecentFolder(infos);
    require(infos.size() == manager.m_files.size() + manager.m_folders.size());

    manager.save();
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager saved;
    saved.load();
    // What XML cannot hold has been replaced once, and an entry without a path is left out: from
    // then on nothing changes.
    saved.save();
    KpRecentFileManager::s_isLoaded = false;
    KpRecentFileManager again;
    again.load();
    require(stateOf(saved) == stateOf(again));
    require(saved.m_files.size() <= manager.m_files.size());
    // Nothing else is replaced.
    for (auto const folder : {&KpRecentFileManager::m_recentFileFolder,
             &KpRecentFileManager::m_symbolFolder, &KpRecentFileManager::m_libraryFolder}) {
        require(saved.*folder == XmlText::readable(manager.*folder, XmlText::Controls::AreKept));
    }
    return 0;
}
