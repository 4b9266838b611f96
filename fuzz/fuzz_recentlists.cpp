// SPDX-License-Identifier: MIT
// Any sequence of operations on the lists of recent files, in memory, beside a model of them: the
// same rules, said once more with a split for each path and a walk for each search. Arguments may
// be strings of the lists themselves.

#include "fuzzing.h"
#include "kprecentfilemanager.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <vector>

using Fuzzing::require;

namespace {

using Entry = KpRecentFileManager::RecFile;
using Info = KpRecentFileManager::RecFileInfo;
using List = std::vector<Entry>;

QString const separator = QStringLiteral("#$#");

bool areSame(Entry const& left, Entry const& right)
{
    return left.isTop == right.isTop && left.type == right.type && left.path == right.path
        && left.teamName == right.teamName;
}

bool areSame(QList<Entry> const& list, List const& model)
{
    return std::equal(list.cbegin(), list.cend(), model.cbegin(), model.cend(),
        [](Entry const& left, Entry const& right) { return areSame(left, right); });
}

struct Model
{
    List files;
    List folders;
    QString folder;
    bool isModified = true;
    int maxCount = 60;

    static int firstUnpinned(List const& list)
    {
        int index = 0;
        while (index < int(list.size()) && list[std::size_t(index)].isTop)
            ++index;
        return index;
    }

    void cut(List& list) const
    {
        while (!list.empty() && int(list.size()) > maxCount)
            list.pop_back();
    }

    static void insert(List& list, Entry const& entry)
    {
        list.insert(list.begin() + firstUnpinned(list), entry);
    }

    void addFile(Entry const& added)
    {
        QString const key = added.path.split(separator).last();
        for (int i = int(files.size()) - 1; i >= 0; --i) {
            Entry const entry = files[std::size_t(i)];
            bool const isMatch =
                key.isEmpty() ? entry.path == added.path : entry.path.indexOf(key) != -1;
            if (entry.type != added.type || !isMatch)
                continue;
            if (entry.isTop)
                return;
            files.erase(files.begin() + i);
            if (key.isEmpty())
                break;
        }
        insert(files, added);
        cut(files);
        addFolder(added);
        isModified = true;
    }

    void addFolder(Entry const& added)
    {
        if (added.type != 1)
            return;
        QString const path = QFileInfo(added.path).path();
        for (std::size_t i = 0; i < folders.size(); ++i) {
            if (folders[i].path != path || folders[i].type != 1)
                continue;
            if (folders[i].isTop)
                return;
            folders.erase(folders.begin() + long(i));
            break;
        }
        insert(folders, {false, 1, path, added.teamName});
        cut(folders);
        isModified = true;
    }

    void open(QString const& path, unsigned int type, QString const& team)
    {
        folder = QFileInfo(path).path();
        if (type != 0) {
            addFile({false, int(type), path, team});
            return;
        }
        int code = 1;
        if (path.contains(QStringLiteral("/Team/")))
            code = 3;
        else if (path.contains(QStringLiteral("/Personal/")))
            code = 2;
        else if (path.contains(separator + QStringLiteral("/GoogleDrive/")))
            code = 4;
        else if (path.contains(separator + QStringLiteral("/Dropbox/")))
            code = 5;
        addFile({false, code, path, QString()});
    }

    static bool isIn(List const& list, qint64 index)
    {
        return index >= 0 && index < qint64(list.size());
    }

    static bool pin(List& list, int row)
    {
        bool const beginsPinned = !list.empty() && list[0].isTop;
        if (row == 0 && beginsPinned)
            return false;
        int index = row;
        if (row > 0 && beginsPinned) {
            bool const isBehindPinned = isIn(list, row - 1) && list[std::size_t(row - 1)].isTop;
            index = isBehindPinned ? row : row - 1;
        }
        if (!isIn(list, index))
            return true;
        Entry entry = list[std::size_t(index)];
        entry.isTop = true;
        list.erase(list.begin() + index);
        list.insert(list.begin(), entry);
        return true;
    }

    static void unpin(List& list, int index)
    {
        if (!isIn(list, index))
            return;
        Entry entry = list[std::size_t(index)];
        entry.isTop = false;
        list.erase(list.begin() + index);
        insert(list, entry);
    }

    static void remove(List& list, int row)
    {
        bool const isShifted = !list.empty() && row >= 1 && list[0].isTop;
        int const index = isShifted ? row - 1 : row;
        if (isIn(list, index))
            list.erase(list.begin() + index);
    }

    void removePath(QString const& path)
    {
        auto const found = std::find_if(
            files.begin(), files.end(), [&](Entry const& entry) { return entry.path == path; });
        if (found != files.end())
            files.erase(found);
    }
};

/** The path with a folder of the user's in it by its last name. */
QString shortened(QString const& path)
{
    for (auto const location : {QStandardPaths::DocumentsLocation, QStandardPaths::DesktopLocation,
             QStandardPaths::HomeLocation}) {
        QString const folder = QStandardPaths::writableLocation(location);
        if (path.contains(folder))
            return QString(path).replace(folder, folder.split(QLatin1Char('/')).last());
    }
    return path;
}

QString fieldOf(QString const& path, int index)
{
    QStringList const fields = path.split(separator);
    return fields.size() > index ? fields.at(index) : path;
}

QString withMarks(QString const& location)
{
    return location.split(QLatin1Char('/')).join(QLatin1Char('>'));
}

Info shownFile(Entry const& entry)
{
    QString const folder = QFileInfo(entry.path).path();
    QString const locations[] = {
        QString(), shortened(folder), folder, folder, fieldOf(folder, 2), fieldOf(folder, 1)};
    QString const location = entry.type >= 1 && entry.type <= 5 ? locations[entry.type] : QString();
    return {
        entry.isTop, entry.type, QFileInfo(entry.path).fileName(), withMarks(location), entry.path};
}

Info shownFolder(Entry const& entry)
{
    QString location;
    if (entry.type == 1)
        location = shortened(entry.path);
    if (entry.type == 2 || entry.type == 3)
        location = entry.path;
    location = withMarks(location);
    QString name = entry.path.split(QLatin1Char('/')).last();
    if (entry.type == 2)
        name = QStringLiteral("Personal");
    if (name.isEmpty())
        name = location.left(std::max(0, location.size() - 1));
    return {entry.isTop, entry.type, name, location, entry.path};
}

class Session
{
public:
    explicit Session(FuzzedDataProvider& input)
        : m_input(input)
    {
        m_model.folder = m_manager.m_recentFileFolder;
    }

    void run()
    {
        for (int i = 0; i < 60 && m_input.remaining_bytes() > 0; ++i) {
            step();
            require(areSame(m_manager.m_files, m_model.files), "the files as modelled");
            require(areSame(m_manager.m_folders, m_model.folders), "the folders as modelled");
            require(m_manager.m_isModified == m_model.isModified, "modified as modelled");
            require(m_manager.m_recentFileFolder == m_model.folder, "the last folder as modelled");
            require(m_manager.notTopFileFirstIndex() == Model::firstUnpinned(m_model.files)
                    && m_manager.notTopFolderFirstIndex() == Model::firstUnpinned(m_model.folders),
                "the first that is not pinned");
        }
        checkShown();
    }

private:
    QString path()
    {
        static constexpr char const* parts[] = {"/", "a", "b.x", "/a/b.x", "#$#", "/Team/",
            "/Personal/", "/GoogleDrive/", "/Dropbox/", "#$#/Dropbox/", "..", "\xc3\xa4", "#", "$"};
        QString result;
        int const count = m_input.ConsumeIntegralInRange(0, 4);
        for (int i = 0; i < count; ++i)
            result += QString::fromUtf8(m_input.PickValueInArray(parts));
        if (m_input.ConsumeIntegralInRange(0, 15) == 0)
            result.prepend(QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
        return result;
    }

    int row()
    {
        return m_input.ConsumeIntegralInRange(0, 9) == 0 ? m_input.ConsumeIntegral<int>()
                                                         : m_input.ConsumeIntegralInRange(-1, 8);
    }

    unsigned int type()
    {
        return m_input.ConsumeIntegralInRange(0, 9) == 0 ? m_input.ConsumeIntegral<unsigned int>()
                                                         : m_input.ConsumeIntegralInRange(0U, 2U);
    }

    void step()
    {
        QString const own = path();
        bool const isAlias = !m_manager.m_files.isEmpty() && m_input.ConsumeBool();
        int const alias =
            m_input.ConsumeIntegralInRange(0, std::max(0, m_manager.m_files.size() - 1));
        // A string of the list itself: the call changes that list.
        QString const& path = isAlias ? m_manager.m_files.at(alias).path : own;
        QString const& team = isAlias ? m_manager.m_files.at(alias).teamName : own;
        QString const copy = path;
        QString const teamCopy = team;
        switch (m_input.ConsumeIntegralInRange(0, 12)) {
        case 0:
        case 1: {
            auto const add = m_input.ConsumeBool() ? &KpRecentFileManager::addOpenFileInfo
                                                   : &KpRecentFileManager::addSaveFileInfo;
            unsigned int const kind = type();
            (m_manager.*add)(path, kind, team);
            m_model.open(copy, kind, teamCopy);
            break;
        }
        case 2: {
            unsigned int const kind = type();
            m_manager.addRecentFile(path, kind, team);
            m_model.addFile({false, int(kind), copy, teamCopy});
            break;
        }
        case 3: {
            unsigned int const kind = type();
            m_manager.addRecentFolder(path, kind, team);
            m_model.addFolder({false, int(kind), copy, teamCopy});
            break;
        }
        case 4:
            m_manager.delRecentFile(path);
            m_model.removePath(copy);
            break;
        case 5:
            m_manager.m_isModified = m_model.isModified = false;
            break;
        case 6:
            m_manager.m_maxCount = m_model.maxCount = m_input.ConsumeIntegralInRange(-1, 8);
            break;
        case 7:
            // As files hold them: in any order, and pinned anywhere.
            m_manager.m_folders.append({true, 1, copy, teamCopy});
            m_model.folders.push_back({true, 1, copy, teamCopy});
            break;
        case 8:
            m_manager.m_files.append({m_input.ConsumeBool(), int(type()), copy, teamCopy});
            m_model.files.push_back(m_manager.m_files.constLast());
            break;
        default:
            stepOfRow();
        }
    }

    void stepOfRow()
    {
        int const row = this->row();
        switch (m_input.ConsumeIntegralInRange(0, 5)) {
        case 0:
            m_manager.delRecentFile(row);
            Model::remove(m_model.files, row);
            break;
        case 1:
            m_manager.delRecentFolder(row);
            Model::remove(m_model.folders, row);
            break;
        case 2:
            require(m_manager.moveRecentFileTop(row) == Model::pin(m_model.files, row),
                "a pin says what the model says");
            break;
        case 3:
            require(m_manager.moveRecentFolderTop(row) == Model::pin(m_model.folders, row),
                "a pin says what the model says");
            break;
        case 4:
            m_manager.moveRecentFileNotTop(row);
            Model::unpin(m_model.files, row);
            break;
        default:
            m_manager.moveRecentFolderNotTop(row);
            Model::unpin(m_model.folders, row);
        }
    }

    void checkShown()
    {
        QVector<Info> shown;
        m_manager.getRecentFiles(shown);
        m_manager.getRecentFolder(shown);
        m_model.cut(m_model.files);
        std::vector<Info> expected;
        for (Entry const& entry : m_model.files)
            expected.push_back(shownFile(entry));
        for (Entry const& entry : m_model.folders)
            expected.push_back(shownFolder(entry));
        require(std::equal(shown.cbegin(), shown.cend(), expected.cbegin(), expected.cend(),
                    [](Info const& left, Info const& right) {
                        return left.isTop == right.isTop && left.type == right.type
                            && left.name == right.name && left.location == right.location
                            && left.path == right.path;
                    }),
            "all is shown as modelled");
        KpRecentFileManager copy;
        copy = m_manager;
        require(areSame(copy.m_files, m_model.files) && copy.m_maxCount == m_model.maxCount,
            "a copy is equal");
    }

    FuzzedDataProvider& m_input;
    KpRecentFileManager m_manager;
    Model m_model;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    Fuzzing::forbidLog();
    // A home that is not there: nothing is read for the folders of the user.
    qputenv("HOME", "/nowhere");
    qputenv("XDG_CONFIG_HOME", "/nowhere/config");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    Session(input).run();
    return 0;
}
