#include "recentlists.h"

#include "check/recentaudit.h"
#include "inputoutput.h"

#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>
#include <QFileInfo>

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

/** Tells two files apart that have the same name one after the other; 0 where there is none. */
ino_t identityOf(QString const& file)
{
    struct stat status = {};
    return stat(QFile::encodeName(file).constData(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

RecentLists::RecentLists(QString const& directory)
    : m_directory(QDir(directory).absolutePath())
    , m_file(QDir(directory).filePath(QStringLiteral("RecentFiles.xml")))
{
}

std::optional<RecentLists> RecentLists::load(QString const& directory, Missing missing)
{
    RecentLists lists(directory);
    bool const isEmpty = missing == Missing::IsEmpty && !QFileInfo::exists(lists.m_file);
    if (!isEmpty && !lists.read())
        return std::nullopt;
    return lists;
}

bool RecentLists::read()
{
    auto const text = readInput(m_file);
    if (!text)
        return false;
    QDomDocument document;
    BoundedXml::Error error;
    if (!BoundedXml::parse(*text, document, error, BoundedXml::configurationLimits)) {
        printError(m_file, error);
        return false;
    }
    QDomElement root = document.firstChildElement(QStringLiteral("RecentFiles"));
    m_oddities = odditiesOf(document);
    m_manager.parse(root);
    return true;
}

bool RecentLists::save()
{
    // The library replaces the file, and does not say when it cannot.
    ino_t const before = identityOf(m_file);
    {
        ConfigurationDirectory const redirected(m_directory);
        m_manager.save();
    }
    ino_t const after = identityOf(m_file);
    if (after != 0 && after != before)
        return true;
    printError(QStringLiteral("%1: cannot be written").arg(displayName(m_file)));
    return false;
}
