#ifndef RECENTLISTS_H
#define RECENTLISTS_H

#include "boundedxml_p.h"
#include "kprecentfilemanager.h"

#include <QVector>

#include <optional>

/** The recent files of a configuration directory: a RecentFiles.xml and what it is read as. */
class RecentLists
{
public:
    enum class Missing { IsError, IsEmpty };

    /** Of the directory; nothing, after an error message, when the file cannot be read. */
    static std::optional<RecentLists> load(QString const& directory, Missing missing);

    QString const& file() const { return m_file; }
    KpRecentFileManager& manager() { return m_manager; }

    /** What reading the file has changed or left out, with its place. */
    QVector<BoundedXml::Error> const& oddities() const { return m_oddities; }

    /** Writes the file as the application would; false, after an error message, on failure. */
    bool save();

private:
    explicit RecentLists(QString const& directory);
    bool read();

    QString m_directory;
    QString m_file;
    KpRecentFileManager m_manager;
    QVector<BoundedXml::Error> m_oddities;
};

#endif // RECENTLISTS_H
