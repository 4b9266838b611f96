# SPDX-License-Identifier: MIT
"""Recent files, from docs/recentfiles.md and the comments of kprecentfilemanager.h."""
import copy

from reals import to_int
from registry import constant, gives
from xmltext import Element, element_of

constant("KpRecentFileManager::s_isLoaded", False)

CLASS = "KpRecentFileManager::"
LOCAL, PERSONAL, TEAM, DRIVE, DROPBOX = 1, 2, 3, 4, 5
TOP, TYPE, PATH = range(3)
HOME = "/home/user"
USER_FOLDERS = [f"{HOME}/Documents", f"{HOME}/Desktop", HOME]
NEW = {"isModified": True, "maxCount": 60, "files": [], "folders": [],
       **{folder: USER_FOLDERS[0] for folder in ("recentFileFolder", "libraryFolder",
                                                 "symbolFolder")}}
COPIED = [field for field in NEW if field != "isModified"]


def changing(member):
    """Registers a change of a manager in place; what it returns beside is "result"."""
    def register(function):
        @gives(CLASS + member)
        def _(manager, **inputs):
            manager = copy.deepcopy(manager)
            result = function(manager, **inputs)
            return {"manager": manager, **({} if result is None else {"result": result})}
        return function
    return register


def folder_of(path):
    if "/" not in path:
        return "." if path else ""
    return path.rpartition("/")[0] or "/"


def last_name(path):
    return path.rpartition("/")[2]


def pinned_count(entries):
    """The index of the first entry that is not pinned."""
    return next((i for i, entry in enumerate(entries) if not entry[TOP]), len(entries))


def cut(entries, manager):
    del entries[manager["maxCount"]:]


@gives(f"{CLASS}KpRecentFileManager()")
def default():
    return {"manager": NEW}


@gives(f"{CLASS}KpRecentFileManager(KpRecentFileManager const&)")
def copied(other):
    return {"manager": other}


@gives(f"{CLASS}operator=(KpRecentFileManager const&)")
def assigned(manager, other):
    return {"manager": {**manager, **{field: other[field] for field in COPIED}}}


for setter, field in {"setSymbolFolder": "symbolFolder", "setLibraryFolder": "libraryFolder",
                      "setRecentFileFolder": "recentFileFolder"}.items():
    def set_folder(manager, filePath, field=field):
        manager[field] = folder_of(filePath)
    changing(f"{setter}(QString const&)")(set_folder)


def without_duplicates(files, path, kind):
    """The files that stay, and whether a pinned one forbids the new one."""
    key = path.split("#$#")[-1]
    for i in reversed(range(len(files))):
        top, other_kind, other_path, _ = files[i]
        if other_kind != kind or not (key in other_path if key else other_path == path):
            continue
        if top:
            return True
        del files[i]
        if not key:
            break
    return False


@changing("addRecentFile(QString const&, unsigned int, QString const&)")
def add_file(manager, path, type, teamName):  # pylint: disable=redefined-builtin
    files = manager["files"]
    if without_duplicates(files, path, type):
        return
    files.insert(pinned_count(files), [False, type, path, teamName])
    cut(files, manager)
    add_folder(manager, path, type, teamName)
    manager["isModified"] = True


@changing("addRecentFolder(QString const&, unsigned int, QString const&)")
def add_folder(manager, path, type, teamName):  # pylint: disable=redefined-builtin
    if type != LOCAL:
        return
    folders = manager["folders"]
    folder = folder_of(path)
    same = next((entry for entry in folders if entry[TYPE:3] == [LOCAL, folder]), None)
    if same and same[TOP]:
        return
    if same:
        folders.remove(same)
    folders.insert(pinned_count(folders), [False, LOCAL, folder, teamName])
    cut(folders, manager)
    manager["isModified"] = True


def kind_of(path):
    marks = {"/Team/": TEAM, "/Personal/": PERSONAL, "#$#/GoogleDrive/": DRIVE,
             "#$#/Dropbox/": DROPBOX}
    return next((kind for mark, kind in marks.items() if mark in path), LOCAL)


@changing("addSaveFileInfo(QString const&, unsigned int, QString const&)")
@changing("addOpenFileInfo(QString const&, unsigned int, QString const&)")
def add_info(manager, path, type, teamName):  # pylint: disable=redefined-builtin
    manager["recentFileFolder"] = folder_of(path)
    if type:
        add_file(manager, path, type, teamName)
    else:
        add_file(manager, path, kind_of(path), "")


def begins_pinned(entries):
    return bool(entries) and entries[0][TOP]


def pin(entries, row):
    if begins_pinned(entries):
        if row == 0:
            return False
        if row > 0 and not (row <= len(entries) and entries[row - 1][TOP]):
            row -= 1
    if 0 <= row < len(entries):
        entries.insert(0, [True] + entries.pop(row)[TYPE:])
    return True


def unpin(entries, index):
    if 0 <= index < len(entries):
        entry = [False] + entries.pop(index)[TYPE:]
        entries.insert(pinned_count(entries), entry)


def remove_row(entries, row):
    if row >= 1 and begins_pinned(entries):
        row -= 1
    if 0 <= row < len(entries):
        del entries[row]


for name, entries_name in {"File": "files", "Folder": "folders"}.items():
    changing(f"moveRecent{name}Top(int)")(
        lambda manager, row, of=entries_name: pin(manager[of], row))
    changing(f"moveRecent{name}NotTop(int)")(
        lambda manager, index, of=entries_name: unpin(manager[of], index))
    changing(f"delRecent{name}(int)")(
        lambda manager, row, of=entries_name: remove_row(manager[of], row))
    gives(f"{CLASS}notTop{name}FirstIndex()")(
        lambda manager, of=entries_name: pinned_count(manager[of]))


@changing("delRecentFile(QString const&)")
def remove_path(manager, path):
    files = manager["files"]
    found = next((entry for entry in files if entry[PATH] == path), None)
    if found:
        files.remove(found)


def shortened(path):
    """With the user's folder in it shown by its last name."""
    for folder in USER_FOLDERS:
        if folder in path:
            return path.replace(folder, last_name(folder))
    return path


BEFORE = [True, 1, "before", "it", "/is"] # what the list holds at the call


def file_row(entry):
    top, kind, path, _ = entry
    folder = folder_of(path)
    fields = folder.split("#$#")
    if kind == LOCAL:
        location = shortened(folder)
    elif kind in (PERSONAL, TEAM):
        location = folder
    elif kind in (DRIVE, DROPBOX):
        wanted = 2 if kind == DRIVE else 1
        location = fields[wanted] if len(fields) > wanted else folder
    else:
        location = ""
    return [top, kind, last_name(path), location.replace("/", ">"), path]


def folder_row(entry):
    top, kind, path, _ = entry
    name = last_name(path)
    location = {LOCAL: shortened(path), PERSONAL: path, TEAM: path}.get(kind, "").replace("/", ">")
    if kind == PERSONAL:
        name = "Personal"
    return [top, kind, name or location[:-1], location, path]


def shown(manager, entries, row):
    manager = copy.deepcopy(manager)
    cut(manager["files"], manager)
    return {"out": [BEFORE] + list(map(row, manager[entries])), "manager": manager}


@gives(f"{CLASS}getRecentFiles(QVector<KpRecentFileManager::RecFileInfo>&)")
def show_files(manager):
    return shown(manager, "files", file_row)


@gives(f"{CLASS}getRecentFolder(QVector<KpRecentFileManager::RecFileInfo>&)")
def show_folders(manager):
    return shown(manager, "folders", folder_row)


@changing("parse(QDomElement&)")
def parse(manager, xml):
    root = element_of(xml)
    for name, field_name in {"RecentFile": "recentFileFolder", "RecentSymbol": "symbolFolder",
                             "RecentLibrary": "libraryFolder"}.items():
        element = root.first(name)
        if element:
            manager[field_name] = element.attributes.get("V", "")
    for name, of in {"RecentFiles": "files", "RecentFolders": "folders"}.items():
        element = root.first(name)
        for child in element.children if element else []:
            given = child.attributes
            if given.get("V"):
                manager[of].append([to_int(given.get("Top", "")) == 1, to_int(given.get("Type", "")),
                                    given["V"], given.get("TeamName", "")])


@changing("load()")
def load(manager, xml, s_isLoaded):
    if not s_isLoaded:
        parse(manager, xml)


def entry_element(name, entry):
    top, kind, path, team = entry
    attributes = {"V": path, "Type": str(kind), "Top": str(int(top))}
    if team:
        attributes["TeamName"] = team
    return Element(name, attributes)


@gives(f"{CLASS}save()")
def save(manager):
    root = Element("RecentFiles", {}, [
        Element("RecentFile", {"V": manager["recentFileFolder"]}),
        Element("RecentSymbol", {"V": manager["symbolFolder"]}),
        Element("RecentLibrary", {"V": manager["libraryFolder"]}),
        Element("RecentFiles", {}, [entry_element("RecentFile", e) for e in manager["files"]]),
        Element("RecentFolders", {}, [entry_element("RecentFolder", e)
                                      for e in manager["folders"]])])
    return {"isRead": True, "root": root.written()}
