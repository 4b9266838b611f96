// SPDX-License-Identifier: MIT
#include "kprecentfilemanager.h"

#include "filereplacement_p.h"
#include "kpfilepathmanager.h"
#include "savedfile_p.h"
#include "xmlelement_p.h"
#include "xmltext_p.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTextCodec>

#include <algorithm>
#include <array>

using RecFile = KpRecentFileManager::RecFile;

bool KpRecentFileManager::s_isLoaded = false;

namespace {

/**
 * Uses at load what listing, loading and saving need of Qt's own static objects. These are destroyed
 * in the reverse order of their first uses, and so after a program's own, whose destructors may use
 * a manager.
 */
struct FirstUseOfQt
{
    FirstUseOfQt()
    {
        QCoreApplication::organizationName();
        // Not the codec of the locale, which is not set yet.
        QTextCodec::codecForName("UTF-8");
        QRegularExpression(QStringLiteral("a")).match(QStringLiteral("a"));
    }
};

FirstUseOfQt const firstUseOfQt;

constexpr int defaultMaxCount = 60;
constexpr int xmlIndentation = 4;
/** A constant of the compiler's: without the length QLatin1String is none with every compiler. */
template <std::size_t size> constexpr QLatin1String constant(char const (&text)[size])
{
    return QLatin1String(text, static_cast<int>(size) - 1);
}

constexpr QLatin1String fieldSeparator = constant("#$#");

QString fileName()
{
    return QStringLiteral("RecentFiles.xml");
}

// -- Paths

/** The part of the path that names the folder: "." for a bare name. */
QString folderOf(QString const& path)
{
    return QFileInfo(path).path();
}

/** What stands behind the last "/", or all. */
QString lastComponent(QString const& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

/** The field of a cloud path; the whole path if it has no so many fields. */
QString fieldOf(QString const& path, int index)
{
    int start = 0;
    for (; index > 0; --index) {
        int const separator = path.indexOf(fieldSeparator, start);
        if (separator == -1)
            return path;
        start = separator + fieldSeparator.size();
    }
    int const end = path.indexOf(fieldSeparator, start);
    return path.mid(start, end == -1 ? -1 : end - start);
}

/** The last field of a cloud path, by which the file is known; a local path is all one field. */
QString keyOf(QString const& path)
{
    // From the front, as fields are counted: separators may overlap.
    int start = 0;
    for (int separator = 0; (separator = path.indexOf(fieldSeparator, start)) != -1;)
        start = separator + fieldSeparator.size();
    return path.mid(start);
}

/** What a path says of where its file is kept. */
KpRecentFileManager::RecFileType typeOf(QString const& path)
{
    struct Mark
    {
        QLatin1String text;
        KpRecentFileManager::RecFileType type;
    };
    constexpr Mark marks[] = {
        {constant("/Team/"), KpRecentFileManager::RecTeam},
        {constant("/Personal/"), KpRecentFileManager::RecPersonal},
        {constant("#$#/GoogleDrive/"), KpRecentFileManager::RecGoogleDrive},
        {constant("#$#/Dropbox/"), KpRecentFileManager::RecDropbox},
    };
    auto const* const found = std::find_if(std::begin(marks), std::end(marks),
        [&path](Mark const& mark) { return path.contains(mark.text); });
    return found == std::end(marks) ? KpRecentFileManager::RecLocal : found->type;
}

// -- Lists: the same for files and folders

int firstUnpinned(QList<RecFile> const& list)
{
    auto const found =
        std::find_if(list.cbegin(), list.cend(), [](RecFile const& entry) { return !entry.isTop; });
    return static_cast<int>(found - list.cbegin());
}

bool beginsPinned(QList<RecFile> const& list)
{
    return !list.isEmpty() && list.first().isTop;
}

bool hasIndex(QList<RecFile> const& list, int index)
{
    return index >= 0 && index < list.size();
}

void cutToLength(QList<RecFile>& list, int length)
{
    int const kept = std::max(length, 0);
    if (list.size() > kept)
        list.erase(list.begin() + kept, list.end());
}

void insertUnpinned(QList<RecFile>& list, RecFile const& entry)
{
    list.insert(firstUnpinned(list), entry);
}

bool pinRow(QList<RecFile>& list, int row)
{
    if (row == 0 && beginsPinned(list))
        return false;
    bool const isBehindExtraRow =
        row > 0 && beginsPinned(list) && !(hasIndex(list, row - 1) && list.at(row - 1).isTop);
    int const index = isBehindExtraRow ? row - 1 : row;
    if (hasIndex(list, index)) {
        list.move(index, 0);
        list.first().isTop = true;
    }
    return true;
}

void unpin(QList<RecFile>& list, int index)
{
    if (!hasIndex(list, index))
        return;
    RecFile entry = list.takeAt(index);
    entry.isTop = false;
    insertUnpinned(list, entry);
}

void removeRow(QList<RecFile>& list, int row)
{
    int const index = row >= 1 && beginsPinned(list) ? row - 1 : row;
    if (hasIndex(list, index))
        list.removeAt(index);
}

/** Makes way for an entry of the type and path; false if there is a pinned one that stays. */
bool removeLastOfPath(QList<RecFile>& list, RecFile const& added)
{
    for (int i = list.size() - 1; i >= 0; --i) {
        if (list.at(i).type != added.type || list.at(i).path != added.path)
            continue;
        if (list.at(i).isTop)
            return false;
        list.removeAt(i);
        return true;
    }
    return true;
}

/**
 * Makes way for an entry of the type and key; false if there is a pinned one that stays, and with
 * it all before it.
 */
bool removeAllOfKey(QList<RecFile>& list, RecFile const& added, QString const& key)
{
    auto const isDuplicate = [&](RecFile const& entry) {
        return entry.type == added.type && entry.path.contains(key);
    };
    int behindPinned = list.size();
    while (behindPinned > 0
        && !(list.at(behindPinned - 1).isTop && isDuplicate(list.at(behindPinned - 1))))
        --behindPinned;
    list.erase(std::remove_if(list.begin() + behindPinned, list.end(), isDuplicate), list.end());
    return behindPinned == 0;
}

/** Makes way for a file; false if it is there and pinned. */
bool removeDuplicates(QList<RecFile>& list, RecFile const& added)
{
    QString const key = keyOf(added.path);
    return key.isEmpty() ? removeLastOfPath(list, added) : removeAllOfKey(list, added, key);
}

/** Makes way for a folder; false if it is there and pinned. */
bool removeFolder(QList<RecFile>& list, RecFile const& added)
{
    auto const found = std::find_if(list.begin(), list.end(), [&added](RecFile const& entry) {
        return entry.type == added.type && entry.path == added.path;
    });
    if (found == list.end())
        return true;
    if (found->isTop)
        return false;
    list.erase(found);
    return true;
}

// -- What is shown

/** The folders of the user that are shown by their last name, in the order in which they count. */
using UserFolders = std::array<QString, 3>;

QString documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

UserFolders userFolders()
{
    return {documentsFolder(), QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
        QStandardPaths::writableLocation(QStandardPaths::HomeLocation)};
}

/** The last name of a user's folder; empty for one without any "/", unlike lastComponent(). */
QString labelOf(QString const& folder)
{
    return folder.contains(QLatin1Char('/')) ? lastComponent(folder) : QString();
}

/** The path with the first folder that it contains replaced, everywhere, by its last name. */
QString shortened(QString path, UserFolders const& folders)
{
    auto const* const found = std::find_if(folders.cbegin(), folders.cend(),
        [&path](QString const& folder) { return path.contains(folder); });
    return found == folders.cend() ? path : path.replace(*found, labelOf(*found));
}

QString locationOfFile(int type, QString const& folder, UserFolders const& folders)
{
    switch (type) {
    case KpRecentFileManager::RecLocal:
        return shortened(folder, folders);
    case KpRecentFileManager::RecPersonal:
    case KpRecentFileManager::RecTeam:
        return folder;
    case KpRecentFileManager::RecGoogleDrive:
        return fieldOf(folder, 2);
    case KpRecentFileManager::RecDropbox:
        return fieldOf(folder, 1);
    default:
        return QString();
    }
}

QString locationOfFolder(int type, QString const& path, UserFolders const& folders)
{
    switch (type) {
    case KpRecentFileManager::RecLocal:
        return shortened(path, folders);
    case KpRecentFileManager::RecPersonal:
    case KpRecentFileManager::RecTeam:
        return path;
    default:
        return QString();
    }
}

QString breadcrumb(QString location)
{
    return location.replace(QLatin1Char('/'), QLatin1Char('>'));
}

KpRecentFileManager::RecFileInfo infoOfFile(RecFile const& file, UserFolders const& folders)
{
    QFileInfo const info(file.path);
    return {file.isTop, file.type, info.fileName(),
        breadcrumb(locationOfFile(file.type, info.path(), folders)), file.path};
}

KpRecentFileManager::RecFileInfo infoOfFolder(RecFile const& folder, UserFolders const& folders)
{
    QString const location = breadcrumb(locationOfFolder(folder.type, folder.path, folders));
    QString name = folder.type == KpRecentFileManager::RecPersonal ? QStringLiteral("Personal")
                                                                   : lastComponent(folder.path);
    if (name.isEmpty())
        name = location.left(location.size() - 1);
    return {folder.isTop, folder.type, name, location, folder.path};
}

/** Appends what `infoOf` makes of each entry. The user's folders are looked up once for all. */
template <class InfoOf>
void appendInfos(
    QList<RecFile> const& list, InfoOf infoOf, QVector<KpRecentFileManager::RecFileInfo>& out)
{
    UserFolders const folders = userFolders();
    std::transform(list.cbegin(), list.cend(), std::back_inserter(out),
        [&](RecFile const& entry) { return infoOf(entry, folders); });
}

// -- The file

namespace Tag {
constexpr QLatin1String files = constant("RecentFiles");
constexpr QLatin1String file = constant("RecentFile");
constexpr QLatin1String symbol = constant("RecentSymbol");
constexpr QLatin1String library = constant("RecentLibrary");
constexpr QLatin1String folders = constant("RecentFolders");
constexpr QLatin1String folder = constant("RecentFolder");
} // namespace Tag

namespace Attribute {
constexpr QLatin1String value = constant("V");
constexpr QLatin1String type = constant("Type");
constexpr QLatin1String teamName = constant("TeamName");
constexpr QLatin1String top = constant("Top");
} // namespace Attribute

QString savedText(QString const& text)
{
    return XmlText::readable(text, XmlText::Controls::AreKept);
}

QDomElement appendPath(QDomElement& parent, QLatin1String tag, QString const& path)
{
    QDomElement element = XmlElement::append(parent, tag);
    element.setAttribute(Attribute::value, savedText(path));
    return element;
}

void appendList(
    QDomElement& root, QLatin1String listTag, QLatin1String entryTag, QList<RecFile> const& list)
{
    QDomElement parent = XmlElement::append(root, listTag);
    for (RecFile const& entry : list) {
        QDomElement element = appendPath(parent, entryTag, entry.path);
        element.setAttribute(Attribute::type, static_cast<unsigned int>(entry.type));
        if (!entry.teamName.isEmpty())
            element.setAttribute(Attribute::teamName, savedText(entry.teamName));
        element.setAttribute(Attribute::top, entry.isTop ? 1 : 0);
    }
}

void readPath(QDomElement const& root, QLatin1String tag, QString& path)
{
    QDomElement const element = root.firstChildElement(tag);
    if (!element.isNull())
        path = element.attribute(Attribute::value);
}

/** Elements of any name are entries: deliberate, files are read this way. */
void readList(QDomElement const& root, QLatin1String listTag, QList<RecFile>& list)
{
    QDomElement element = root.firstChildElement(listTag).firstChildElement();
    for (; !element.isNull(); element = element.nextSiblingElement()) {
        RecFile const entry {element.attribute(Attribute::top).toInt() == 1,
            element.attribute(Attribute::type).toInt(), element.attribute(Attribute::value),
            element.attribute(Attribute::teamName)};
        if (!entry.path.isEmpty())
            list.append(entry);
    }
}

/**
 * The file as it was stays if the new one cannot be written to the last byte; but where its
 * directory cannot be written to, the file itself is written.
 */
void replaceFile(QString const& name, QByteArray const& content)
{
    // A link to the null device is how some users keep no list.
    if (FileReplacement::isDeviceOrPipe(QFileInfo(name)))
        return;
    SavedFile::removeStale(name);
    SavedFile file(name);
    if (file.begin(SavedFile::Unwritable::IsBypassed) && FileReplacement::write(file, content))
        file.commit();
}

} // namespace

KpRecentFileManager::KpRecentFileManager()
    : m_isModified(true)
    , m_maxCount(defaultMaxCount)
    , m_recentFileFolder(documentsFolder())
    , m_libraryFolder(m_recentFileFolder)
    , m_symbolFolder(m_recentFileFolder)
{
}

KpRecentFileManager::~KpRecentFileManager() = default;

KpRecentFileManager& KpRecentFileManager::operator=(KpRecentFileManager const& other)
{
    m_maxCount = other.m_maxCount;
    m_recentFileFolder = other.m_recentFileFolder;
    m_libraryFolder = other.m_libraryFolder;
    m_symbolFolder = other.m_symbolFolder;
    m_files = other.m_files;
    m_folders = other.m_folders;
    return *this;
}

void KpRecentFileManager::setSymbolFolder(QString const& filePath)
{
    m_symbolFolder = folderOf(filePath);
}

void KpRecentFileManager::setLibraryFolder(QString const& filePath)
{
    m_libraryFolder = folderOf(filePath);
}

void KpRecentFileManager::setRecentFileFolder(QString const& filePath)
{
    m_recentFileFolder = folderOf(filePath);
}

void KpRecentFileManager::addSaveFileInfo(
    QString const& path, unsigned int type, QString const& teamName)
{
    // A copy: both may be strings of this manager, which change.
    bool const isAuto = type == RecAuto;
    RecFile const added {
        false, isAuto ? typeOf(path) : static_cast<int>(type), path, isAuto ? QString() : teamName};
    setRecentFileFolder(added.path);
    addRecentFile(added.path, static_cast<unsigned int>(added.type), added.teamName);
}

void KpRecentFileManager::addOpenFileInfo(
    QString const& path, unsigned int type, QString const& teamName)
{
    addSaveFileInfo(path, type, teamName);
}

void KpRecentFileManager::addRecentFile(
    QString const& path, unsigned int type, QString const& teamName)
{
    RecFile const added {false, static_cast<int>(type), path, teamName};
    if (!removeDuplicates(m_files, added))
        return;
    insertUnpinned(m_files, added);
    cutToLength(m_files, m_maxCount);
    addRecentFolder(added.path, type, added.teamName);
    m_isModified = true;
}

void KpRecentFileManager::addRecentFolder(
    QString const& path, unsigned int type, QString const& teamName)
{
    if (type != RecLocal)
        return;
    RecFile const added {false, RecLocal, folderOf(path), teamName};
    if (!removeFolder(m_folders, added))
        return;
    insertUnpinned(m_folders, added);
    cutToLength(m_folders, m_maxCount);
    m_isModified = true;
}

void KpRecentFileManager::delRecentFile(QString const& path)
{
    auto const found = std::find_if(
        m_files.begin(), m_files.end(), [&path](RecFile const& file) { return file.path == path; });
    if (found != m_files.end())
        m_files.erase(found);
}

void KpRecentFileManager::delRecentFile(int row)
{
    removeRow(m_files, row);
}

void KpRecentFileManager::delRecentFolder(int row)
{
    removeRow(m_folders, row);
}

bool KpRecentFileManager::moveRecentFileTop(int row)
{
    return pinRow(m_files, row);
}

bool KpRecentFileManager::moveRecentFolderTop(int row)
{
    return pinRow(m_folders, row);
}

void KpRecentFileManager::moveRecentFileNotTop(int index)
{
    unpin(m_files, index);
}

void KpRecentFileManager::moveRecentFolderNotTop(int index)
{
    unpin(m_folders, index);
}

int KpRecentFileManager::notTopFileFirstIndex()
{
    return firstUnpinned(m_files);
}

int KpRecentFileManager::notTopFolderFirstIndex()
{
    return firstUnpinned(m_folders);
}

void KpRecentFileManager::getRecentFiles(QVector<RecFileInfo>& out)
{
    cutToLength(m_files, m_maxCount);
    appendInfos(m_files, infoOfFile, out);
}

void KpRecentFileManager::getRecentFolder(QVector<RecFileInfo>& out)
{
    cutToLength(m_files, m_maxCount);
    appendInfos(m_folders, infoOfFolder, out);
}

void KpRecentFileManager::load()
{
    if (s_isLoaded)
        return;
    s_isLoaded = true;
    QDomDocument document;
    if (!KpFilePathManager::loadXmlFile(document, KpFilePathManager::configPath(fileName())))
        return;
    QDomElement root = document.firstChildElement(Tag::files);
    parse(root);
}

void KpRecentFileManager::parse(QDomElement& root)
{
    readPath(root, Tag::file, m_recentFileFolder);
    readPath(root, Tag::symbol, m_symbolFolder);
    readPath(root, Tag::library, m_libraryFolder);
    readList(root, Tag::files, m_files);
    readList(root, Tag::folders, m_folders);
}

void KpRecentFileManager::save()
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(
        QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"utf-8\"")));
    QDomElement root = XmlElement::append(document, Tag::files);
    appendPath(root, Tag::file, m_recentFileFolder);
    appendPath(root, Tag::symbol, m_symbolFolder);
    appendPath(root, Tag::library, m_libraryFolder);
    appendList(root, Tag::files, Tag::file, m_files);
    appendList(root, Tag::folders, Tag::folder, m_folders);
    replaceFile(KpFilePathManager::configPath(fileName()), document.toByteArray(xmlIndentation));
}
