// SPDX-License-Identifier: MIT
#include "inputfiles.h"

#include "common/filecontent.h"

#include <QDir>

#include <filesystem>
#include <system_error>

namespace {

/** "a/b.c" of "a/b.c.d", ".b" of ".b" */
QString withoutSuffix(QString const& path)
{
    QFileInfo const info(path);
    QString const base = info.completeBaseName();
    int const folder = path.size() - info.fileName().size();
    return base.isEmpty() ? path : path.left(folder) + base;
}

/** Of all that is in a folder, but what is hidden, in their order; QDir passes over some. */
QStringList namesIn(QString const& folder)
{
    QStringList names;
    std::error_code fault;
    std::filesystem::directory_iterator const entries(
        QFile::encodeName(folder).toStdString(), fault);
    for (auto entry = begin(entries); entry != end(entries); entry.increment(fault)) {
        QString const name = QFile::decodeName(entry->path().filename().c_str());
        if (!name.startsWith(QLatin1Char('.')))
            names << name;
    }
    names.sort();
    return names;
}

/** Looks for files in one folder that was named, and below. */
class FolderWalk
{
public:
    FolderWalk(FolderSearch const& search, InputFiles& result)
        : m_search(search)
        , m_leftOut(
              search.leftOut.isNull() ? QString() : QFileInfo(search.leftOut).canonicalFilePath())
        , m_result(result)
    {
    }

    /** @param below the path from the folder that was named, empty or with a slash at its end */
    void enter(QString const& folder, QString const& below)
    {
        QFileInfo const info(folder);
        if (!info.isReadable() || !info.isExecutable()) {
            m_result.diagnostics.error(folder, QStringLiteral("Permission denied"));
            return;
        }
        m_result.folders << folder;
        for (QString const& name : namesIn(folder)) {
            QString const path = folder.endsWith(QLatin1Char('/'))
                ? folder + name
                : folder + QLatin1Char('/') + name;
            QFileInfo const entry(path);
            // Without links there are no loops.
            if (entry.isSymLink() || !isNameExact(path, m_result.diagnostics))
                continue;
            if (entry.isDir() && !isLeftOut(entry))
                enter(path, below + name + QLatin1Char('/'));
            else if (entry.isFile() && isTaken(entry))
                m_result.files.append({path, withoutSuffix(below + name), false});
        }
    }

private:
    bool isLeftOut(QFileInfo const& folder) const
    {
        return !m_leftOut.isEmpty() && folder.canonicalFilePath() == m_leftOut;
    }

    bool isTaken(QFileInfo const& file) const
    {
        return m_search.suffixes.isEmpty()
            || m_search.suffixes.contains(file.suffix(), Qt::CaseInsensitive);
    }

    FolderSearch const& m_search;
    QString const m_leftOut;
    InputFiles& m_result;
};

} // namespace

InputFiles inputFiles(QStringList const& operands, FolderSearch const& search)
{
    InputFiles result;
    for (QString const& operand : operands) {
        if (operand == QLatin1String("-")) {
            result.files.append({operand, QStringLiteral("stdin"), true});
        } else if (!search.isRecursive || !QFileInfo(operand).isDir()) {
            result.files.append({operand, withoutSuffix(QFileInfo(operand).fileName()), true});
        } else {
            int const before = result.files.size() + result.diagnostics.size();
            FolderWalk(search, result).enter(operand, QString());
            if (result.files.size() + result.diagnostics.size() == before)
                result.diagnostics.warning(operand, QStringLiteral("no file in it to be taken"));
        }
    }
    return result;
}
