#include "recentlists.h"

#include "check/recentaudit.h"
#include "common/filecontent.h"
#include "common/xmldiagnostic.h"
#include "kpfilepathmanager.h"

#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>

#include <cerrno>
#include <sys/stat.h>

namespace {

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

/** Tells a file from what it becomes when it is written: another file, or another time. */
struct FileState
{
    ino_t identity = 0; ///< 0 where there is no file
    timespec changed {};

    explicit FileState(QString const& file)
    {
        struct stat status = {};
        if (stat(QFile::encodeName(file).constData(), &status) == 0) {
            identity = status.st_ino;
            changed = status.st_ctim;
        }
    }

    bool isSame(FileState const& other) const
    {
        return identity == other.identity && changed.tv_sec == other.changed.tv_sec
            && changed.tv_nsec == other.changed.tv_nsec;
    }
};

/** Whether there is no file of this name, and none that a link of this name should lead to. */
bool isMissing(QString const& file)
{
    struct stat status = {};
    return stat(QFile::encodeName(file).constData(), &status) != 0 && errno == ENOENT;
}

/** Whether the list can be read: one that was written into its file may have met a full disk. */
bool isWhole(QString const& file)
{
    QDomDocument document;
    return KpFilePathManager::loadXmlFile(document, file);
}

} // namespace

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
    // The library writes the file, and does not say when it cannot.
    FileState const before(m_file);
    {
        ConfigurationDirectory const redirected(m_directory);
        m_manager.save();
    }
    FileState const after(m_file);
    if (after.identity != 0 && !after.isSame(before) && isWhole(m_file))
        return true;
    diagnostics.error(m_file, QStringLiteral("cannot be written"));
    return false;
}
