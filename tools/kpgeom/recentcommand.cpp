// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "common/text.h"
#include "console.h"
#include "recentlists.h"
#include "suggestion.h"
#include "texttable.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <algorithm>

namespace {

using RecFile = KpRecentFileManager::RecFile;
using RecFileInfo = KpRecentFileManager::RecFileInfo;

struct RecentOptions
{
    QStringList operands;
    bool asJson = false;
    bool ofFolders = false;
};

/** What can be done with the lists. */
struct Action
{
    char const* name;
    char const* operandText; ///< of the operand that it needs, empty if it takes none
    bool takesMore;
    bool changes;
    RecentLists::Missing missing; ///< what it is that there is no file yet
    /** The text to print; nothing, with a diagnostic, on failure. */
    std::optional<QString> (*run)(
        RecentLists& lists, RecentOptions const& options, Diagnostics& diagnostics);
};

QString kindText(int kind)
{
    switch (kind) {
    case KpRecentFileManager::RecLocal:
        return QStringLiteral("local");
    case KpRecentFileManager::RecPersonal:
        return QStringLiteral("personal");
    case KpRecentFileManager::RecTeam:
        return QStringLiteral("team");
    case KpRecentFileManager::RecGoogleDrive:
        return QStringLiteral("Google Drive");
    case KpRecentFileManager::RecDropbox:
        return QStringLiteral("Dropbox");
    default:
        return QStringLiteral("unknown (%1)").arg(kind);
    }
}

/** An entry of a list as it is shown, and the numbers by which it is spoken of. */
struct ShownEntry
{
    RecFileInfo info;
    QString teamName;
    int index;
    std::optional<int> pinRow; ///< of the row that pins it: none reaches some in a broken list
    int removeRow; ///< of the row that removes it
};

/** Rows are those of the application, where one of its own stands behind the pinned entries. */
std::optional<int> pinRowOf(QList<RecFile> const& entries, int index)
{
    if (!entries.first().isTop)
        return index;
    if (!entries.at(index).isTop)
        return index + 1;
    return index == 0 || entries.at(index - 1).isTop ? std::optional(index) : std::nullopt;
}

/** For removal the application counts every row but the first one too many behind a pinned one. */
int removeRowOf(QList<RecFile> const& entries, int index)
{
    return index > 0 && entries.first().isTop ? index + 1 : index;
}

QVector<ShownEntry> shownEntries(QList<RecFile> const& entries, QVector<RecFileInfo> const& infos)
{
    QVector<ShownEntry> shown;
    for (int i = 0; i < infos.size(); ++i) {
        shown.append({infos.at(i), entries.at(i).teamName, i, pinRowOf(entries, i),
            removeRowOf(entries, i)});
    }
    return shown;
}

QVector<ShownEntry> shownFiles(KpRecentFileManager& manager)
{
    QVector<RecFileInfo> infos;
    manager.getRecentFiles(infos);
    return shownEntries(manager.m_files, infos);
}

QVector<ShownEntry> shownFolders(KpRecentFileManager& manager)
{
    QVector<RecFileInfo> infos;
    manager.getRecentFolder(infos);
    return shownEntries(manager.m_folders, infos);
}

QString toText(QVector<ShownEntry> const& entries, QString const& title)
{
    if (entries.isEmpty())
        return QStringLiteral("%1: none\n").arg(title);
    TextTable table({QStringLiteral(">index"), QStringLiteral(">pin"), QStringLiteral(">remove"),
        QStringLiteral("pinned"), QStringLiteral("kind"), QStringLiteral("name"),
        QStringLiteral("location"), QStringLiteral("path")});
    for (ShownEntry const& entry : entries) {
        table.addRow({QString::number(entry.index),
            entry.pinRow ? QString::number(*entry.pinRow) : QStringLiteral("-"),
            QString::number(entry.removeRow),
            entry.info.isTop ? QStringLiteral("yes") : QStringLiteral("-"),
            kindText(entry.info.type), printable(entry.info.name), printable(entry.info.location),
            printable(entry.info.path)});
    }
    return QStringLiteral("%1: %2\n").arg(title, QString::number(entries.size())) + table.toText();
}

QJsonArray toJson(QVector<ShownEntry> const& entries)
{
    QJsonArray array;
    for (ShownEntry const& entry : entries) {
        array.append(QJsonObject {{QStringLiteral("index"), entry.index},
            {QStringLiteral("pinRow"), entry.pinRow ? QJsonValue(*entry.pinRow) : QJsonValue()},
            {QStringLiteral("removeRow"), entry.removeRow},
            {QStringLiteral("pinned"), entry.info.isTop}, {QStringLiteral("type"), entry.info.type},
            {QStringLiteral("kind"), kindText(entry.info.type)},
            {QStringLiteral("name"), entry.info.name},
            {QStringLiteral("location"), entry.info.location},
            {QStringLiteral("path"), entry.info.path}, {QStringLiteral("team"), entry.teamName}});
    }
    return array;
}

QString toText(QJsonObject const& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson());
}

std::optional<QString> listAll(
    RecentLists& lists, RecentOptions const& options, Diagnostics& /*diagnostics*/)
{
    KpRecentFileManager& manager = lists.manager();
    if (options.asJson) {
        return toText(QJsonObject {{QStringLiteral("file"), wellFormed(lists.file())},
            {QStringLiteral("fileFolder"), manager.m_recentFileFolder},
            {QStringLiteral("symbolFolder"), manager.m_symbolFolder},
            {QStringLiteral("libraryFolder"), manager.m_libraryFolder},
            {QStringLiteral("files"), toJson(shownFiles(manager))},
            {QStringLiteral("folders"), toJson(shownFolders(manager))}});
    }
    return QStringLiteral("last file from:    %1\n"
                          "last symbol from:  %2\n"
                          "last library from: %3\n\n")
               .arg(printable(manager.m_recentFileFolder), printable(manager.m_symbolFolder),
                   printable(manager.m_libraryFolder))
        + toText(shownFiles(manager), QStringLiteral("files")) + QLatin1Char('\n')
        + toText(shownFolders(manager), QStringLiteral("folders"));
}

std::optional<QString> listFolders(
    RecentLists& lists, RecentOptions const& options, Diagnostics& /*diagnostics*/)
{
    QVector<ShownEntry> const folders = shownFolders(lists.manager());
    if (options.asJson) {
        return toText(QJsonObject {{QStringLiteral("file"), wellFormed(lists.file())},
            {QStringLiteral("folders"), toJson(folders)}});
    }
    return toText(folders, QStringLiteral("folders"));
}

/** A path as the application would have given it: one of the cloud is none of the file system. */
std::optional<QString> absolutePath(QString const& path, Diagnostics& diagnostics)
{
    if (path.contains(QLatin1String("#$#")) || QDir::isAbsolutePath(path))
        return path;
    QString const folder = QDir::currentPath();
    if (path.isEmpty())
        diagnostics.error(path, QStringLiteral("No file name specified"));
    else if (folder.isEmpty())
        diagnostics.error(path, QStringLiteral("the current directory is gone"));
    if (!diagnostics.isEmpty())
        return std::nullopt;
    return QDir::cleanPath(folder + QLatin1Char('/') + path);
}

QString changeText(char const* change, QString const& path)
{
    return QStringLiteral("%1 %2\n").arg(QLatin1String(change), printable(path));
}

std::optional<QString> addFiles(
    RecentLists& lists, RecentOptions const& options, Diagnostics& diagnostics)
{
    KpRecentFileManager& manager = lists.manager();
    QString text;
    for (QString const& operand : options.operands) {
        // The list is XML: another name would be read from it.
        if (wellFormed(operand) != operand) {
            diagnostics.error(operand, QStringLiteral("the name is not valid text"));
            return std::nullopt;
        }
        auto const path = absolutePath(operand, diagnostics);
        if (!path)
            return std::nullopt;
        manager.m_isModified = false;
        manager.addOpenFileInfo(*path, KpRecentFileManager::RecAuto, QString());
        text += changeText(manager.m_isModified ? "added" : "pinned already:", *path);
    }
    return text;
}

std::nullopt_t fail(QString const& what, Diagnostics& diagnostics)
{
    diagnostics.error(QString(), QStringLiteral("kpgeom recent: %1").arg(what));
    return std::nullopt;
}

std::nullopt_t noEntry(char const* what, QString const& operand, Diagnostics& diagnostics)
{
    return fail(QStringLiteral("there is no entry for %1 %2").arg(QLatin1String(what), operand),
        diagnostics);
}

QList<RecFile>& chosenList(KpRecentFileManager& manager, RecentOptions const& options)
{
    return options.ofFolders ? manager.m_folders : manager.m_files;
}

std::optional<QString> pinEntry(
    RecentLists& lists, RecentOptions const& options, Diagnostics& diagnostics)
{
    KpRecentFileManager& manager = lists.manager();
    QList<RecFile> const& list = chosenList(manager, options);
    QList<RecFile> const before = list;
    bool isNumber = false;
    int const row = options.operands.first().toInt(&isNumber);
    if (!isNumber)
        return noEntry("row", options.operands.first(), diagnostics);
    bool const isNew =
        options.ofFolders ? manager.moveRecentFolderTop(row) : manager.moveRecentFileTop(row);
    if (!isNew)
        return changeText("pinned already:", list.first().path);
    if (std::equal(list.cbegin(), list.cend(), before.cbegin(), areEqual))
        return noEntry("row", options.operands.first(), diagnostics);
    return changeText("pinned", list.first().path);
}

std::optional<QString> unpinEntry(
    RecentLists& lists, RecentOptions const& options, Diagnostics& diagnostics)
{
    KpRecentFileManager& manager = lists.manager();
    QList<RecFile> const& list = chosenList(manager, options);
    bool isNumber = false;
    int const index = options.operands.first().toInt(&isNumber);
    if (!isNumber || index < 0 || index >= list.size())
        return noEntry("index", options.operands.first(), diagnostics);
    QString const path = list.at(index).path;
    if (!list.at(index).isTop)
        return fail(QStringLiteral("%1 is not pinned").arg(path), diagnostics);
    if (options.ofFolders)
        manager.moveRecentFolderNotTop(index);
    else
        manager.moveRecentFileNotTop(index);
    return changeText("unpinned", path);
}

std::optional<QString> removeRow(
    KpRecentFileManager& manager, int row, RecentOptions const& options, Diagnostics& diagnostics)
{
    QList<RecFile> const& list = chosenList(manager, options);
    QList<RecFile> const before = list;
    if (options.ofFolders)
        manager.delRecentFolder(row);
    else
        manager.delRecentFile(row);
    if (list.size() == before.size())
        return noEntry("row", QString::number(row), diagnostics);
    auto const removed =
        std::mismatch(list.cbegin(), list.cend(), before.cbegin(), areEqual).second;
    return changeText("removed", removed->path);
}

std::optional<QString> removePath(KpRecentFileManager& manager, QString const& path,
    RecentOptions const& options, Diagnostics& diagnostics)
{
    QList<RecFile>& list = chosenList(manager, options);
    // Where a path has no beginning, one as it stands may still be there.
    Diagnostics unused;
    for (QString const& wanted : {path, absolutePath(path, unused).value_or(path)}) {
        auto const found = std::find_if(list.begin(), list.end(),
            [&wanted](RecFile const& entry) { return entry.path == wanted; });
        if (found != list.end()) {
            list.erase(found);
            return changeText("removed", wanted);
        }
    }
    return noEntry("path", path, diagnostics);
}

std::optional<QString> removeEntry(
    RecentLists& lists, RecentOptions const& options, Diagnostics& diagnostics)
{
    QString const operand = options.operands.first();
    bool isNumber = false;
    int const row = operand.toInt(&isNumber);
    return isNumber ? removeRow(lists.manager(), row, options, diagnostics)
                    : removePath(lists.manager(), operand, options, diagnostics);
}

constexpr Value actionValue {"ACTION", Value::Kind::Word, "list folders add pin unpin remove"};

constexpr Action actions[] = {
    {"list", "", false, false, RecentLists::Missing::IsEmpty, listAll},
    {"folders", "", false, false, RecentLists::Missing::IsEmpty, listFolders},
    {"add", "PATH...", true, true, RecentLists::Missing::IsEmpty, addFiles},
    {"pin", "ROW", false, true, RecentLists::Missing::IsError, pinEntry},
    {"unpin", "INDEX", false, true, RecentLists::Missing::IsError, unpinEntry},
    {"remove", "ROW or PATH", false, true, RecentLists::Missing::IsError, removeEntry},
};

/** What is wrong with the number of operands, or nothing. */
std::optional<Diagnostic> operandFault(Action const& action, QStringList const& operands)
{
    QString const name = QLatin1String(action.name);
    bool const isNeeded = *action.operandText != '\0';
    if (isNeeded && operands.isEmpty())
        return misuse(QStringLiteral("%1 needs %2").arg(name, QLatin1String(action.operandText)));
    if (operands.size() > (isNeeded ? 1 : 0) && !action.takesMore)
        return misuse(
            QStringLiteral("%1 takes %2")
                .arg(
                    name, isNeeded ? QStringLiteral("one operand") : QStringLiteral("no operand")));
    return std::nullopt;
}

/** The text to print; nothing, with a diagnostic, on failure. */
std::optional<QString> perform(Action const& action, RecentLists& lists,
    RecentOptions const& options, Diagnostics& diagnostics)
{
    auto text = action.run(lists, options, diagnostics);
    if (text && action.changes && !lists.save(diagnostics))
        return std::nullopt;
    return text;
}

Outcome run(Action const& action, QString const& directory, RecentOptions const& options)
{
    Diagnostics diagnostics;
    auto lists = RecentLists::load(directory, action.missing, diagnostics);
    auto const text = lists ? perform(action, *lists, options, diagnostics) : std::nullopt;
    report(diagnostics);
    if (!text || !printOut(*text))
        return Outcome::Failed;
    if (action.changes || lists->oddities().isEmpty())
        return Outcome::Done;
    report(lists->oddities());
    return Outcome::Warned;
}

Outcome runRecent(Command const& command, QStringList const& arguments)
{
    CommandLine line(command);
    if (auto const end = line.parse(arguments))
        return *end;
    QString const name = line.operands().value(0);
    auto const* const action = std::find_if(std::begin(actions), std::end(actions),
        [&name](Action const& candidate) { return name == QLatin1String(candidate.name); });
    if (action == std::end(actions)) {
        return line.misused(
            misuse(name.isEmpty() ? QStringLiteral("no action given")
                                  : withSuggestion(QStringLiteral("unknown action '%1'").arg(name),
                                      name, wordsOf(actionValue))));
    }
    RecentOptions const options {line.operands().mid(1), line.isSet(QStringLiteral("json")),
        line.isSet(QStringLiteral("folders"))};
    if (auto const fault = operandFault(*action, options.operands))
        return line.misused(*fault);
    QString const directory = line.isSet(QStringLiteral("config"))
        ? line.file(QStringLiteral("config"))
        : QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    bool const isThere = !directory.isEmpty() && QDir(directory).exists();
    if (line.isSet(QStringLiteral("config")) && !isThere) {
        report({Diagnostic::Severity::Error, directory, 0, 0, QStringLiteral("is no directory")});
        return Outcome::Failed;
    }
    return run(*action, directory, options);
}

constexpr CommandOption recentOptions[] = {
    {"", "config", {"DIR", Value::Kind::Folder},
        "The configuration directory that holds RecentFiles.xml; by default the platform's for "
        "this tool."},
    {"", "folders", {}, "With pin, unpin and remove: the list of folders, not of files."},
    {"", "json", {}, "With list and folders: print a JSON object."},
    quietOption,
};

} // namespace

constexpr Command recentCommand {"recent", "ACTION [OPERAND...]",
    "list, folders, add PATH..., pin ROW, unpin INDEX, remove ROW or remove PATH.",
    {actionValue, fileValue}, "Shows and changes the recent files of a configuration directory.",
    runRecent, {recentOptions}};
