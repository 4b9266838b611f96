// SPDX-License-Identifier: MIT
#include "recentlists.h"

#include "check/recentaudit.h"
#include "common/filecontent.h"
#include "common/unfinishedfile.h"
#include "common/xmldiagnostic.h"
#include "kpfilepathmanager.h"
#include "process/termination.h"
#include "xmltext_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using RecFile = KpRecentFileManager::RecFile;

/** While it lives the application's configuration directory is another one. */
class ConfigurationDirectory
{
public:
    explicit ConfigurationDirectory(QString const& directory)
    {
        qputenv(variable, QFile::encodeName(directory));
        // The directory itself, not one within it: an empty name would become the tool's.
        QCoreApplication::setApplicationName(QStringLiteral("."));
    }
    ~ConfigurationDirectory()
    {
        if (m_home.isNull())
            qunsetenv(variable);
        else
            qputenv(variable, m_home);
        QCoreApplication::setApplicationName(m_name);
    }
    ConfigurationDirectory(ConfigurationDirectory const&) = delete;
    ConfigurationDirectory& operator=(ConfigurationDirectory const&) = delete;

private:
    static constexpr char variable[] = "XDG_CONFIG_HOME";
    QByteArray const m_home = qgetenv(variable);
    QString const m_name = QCoreApplication::applicationName();
};

/**
 * The file that a name stands for. Its number is given to no other file while this lives, so that a
 * file that has taken its place is told from it for sure.
 */
class HeldFile
{
public:
    explicit HeldFile(QString const& name)
        : m_name(QFile::encodeName(name))
        , m_descriptor(::open(m_name.constData(), O_PATH | O_CLOEXEC))
    {
    }
    ~HeldFile()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    HeldFile(HeldFile const&) = delete;
    HeldFile& operator=(HeldFile const&) = delete;

    /** Whether it still has the name, or there was none and is none. */
    bool isInPlace() const
    {
        struct stat held = {};
        struct stat present = {};
        bool const wasThere = m_descriptor >= 0 && fstat(m_descriptor, &held) == 0;
        bool const isThere = stat(m_name.constData(), &present) == 0;
        return wasThere == isThere && held.st_dev == present.st_dev
            && held.st_ino == present.st_ino;
    }

private:
    QByteArray const m_name;
    int const m_descriptor; ///< -1 if there was no such file
};

/** Whether there is no file of this name, and none that a link of this name should lead to. */
bool isMissing(QString const& file)
{
    struct stat status = {};
    return stat(QFile::encodeName(file).constData(), &status) != 0 && errno == ENOENT;
}

QString textReadBack(QString const& text)
{
    return XmlText::readable(text, XmlText::Controls::AreKept);
}

/** What is read of entries that are saved. */
QList<RecFile> readBack(QList<RecFile> const& entries)
{
    QList<RecFile> result;
    for (RecFile const& entry : entries) {
        if (!entry.path.isEmpty()) {
            result.append({entry.isTop, std::max(entry.type, 0), textReadBack(entry.path),
                textReadBack(entry.teamName)});
        }
    }
    return result;
}

bool areSame(QList<RecFile> const& left, QList<RecFile> const& right)
{
    return std::equal(left.cbegin(), left.cend(), right.cbegin(), right.cend(), areEqual);
}

/** Whether the file holds what the manager has saved, and nothing else. */
bool holds(QString const& file, KpRecentFileManager const& saved)
{
    QDomDocument document;
    if (!KpFilePathManager::loadXmlFile(document, file))
        return false;
    KpRecentFileManager read;
    QDomElement root = document.firstChildElement(QStringLiteral("RecentFiles"));
    read.parse(root);
    return read.m_recentFileFolder == textReadBack(saved.m_recentFileFolder)
        && read.m_symbolFolder == textReadBack(saved.m_symbolFolder)
        && read.m_libraryFolder == textReadBack(saved.m_libraryFolder)
        && areSame(read.m_files, readBack(saved.m_files))
        && areSame(read.m_folders, readBack(saved.m_folders));
}

} // namespace

bool areEqual(RecFile const& left, RecFile const& right)
{
    return left.isTop == right.isTop && left.type == right.type && left.path == right.path
        && left.teamName == right.teamName;
}

RecentLists::RecentLists(QString const& directory)
    : m_directory(QDir(directory).absolutePath())
    , m_file(QDir(directory).filePath(QStringLiteral("RecentFiles.xml")))
{
}

std::optional<RecentLists> RecentLists::load(
    QString const& directory, Missing missing, Diagnostics& diagnostics)
{
    RecentLists lists(directory);
    bool const isEmpty = missing == Missing::IsEmpty && isMissing(lists.m_file);
    if (!isEmpty && !lists.read(diagnostics))
        return std::nullopt;
    return lists;
}

bool RecentLists::read(Diagnostics& diagnostics)
{
    auto const text = readFile(m_file, diagnostics);
    if (!text)
        return false;
    QDomDocument document;
    BoundedXml::Error error;
    if (!BoundedXml::parse(*text, document, error, BoundedXml::configurationLimits)) {
        diagnostics.add(xmlDiagnostic(error, m_file));
        return false;
    }
    QDomElement root = document.firstChildElement(QStringLiteral("RecentFiles"));
    m_oddities = auditRecentFiles(document, m_file);
    m_manager.parse(root);
    return true;
}

bool RecentLists::save(Diagnostics& diagnostics)
{
    constexpr int mostTries = 1000;
    for (int i = 0; i < mostTries; ++i) {
        switch (trySave()) {
        case Try::Saved:
            return true;
        case Try::Failed:
            diagnostics.error(m_file, QStringLiteral("cannot be written"));
            return false;
        case Try::Overtaken:
            break;
        }
    }
    diagnostics.error(m_file, QStringLiteral("cannot be written: others write it all the time"));
    return false;
}

RecentLists::Try RecentLists::trySave()
{
    // The library writes the file, and does not say when it cannot.
    HeldFile const before(m_file);
    endTidily();
    {
        UnfinishedFile const unfinished;
        ConfigurationDirectory const redirected(m_directory);
        m_manager.save();
    }
    bool const isReplaced = !before.isInPlace();
    // In its place it has been written to, or needed not be; but not where it must not be.
    if (holds(m_file, m_manager) && (isReplaced || QFileInfo(m_file).isWritable()))
        return Try::Saved;
    // By another's file, be it instead of this one or after it: nothing tells which.
    return isReplaced ? Try::Overtaken : Try::Failed;
}
