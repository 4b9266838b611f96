# SPDX-License-Identifier: MIT
"""Shows the library's types in gdb, in the words in which kpdebug.h shows them in a log.

gdb runs this when it meets the library. Only memory is read, and no function of the program is
called: so cores are shown too. An object may be damaged, or not be there yet: what cannot be read is
said to be so, and not much is read, whatever stands where a length should be.
"""
import math
import os
import shlex
import struct
import unicodedata
from decimal import ROUND_HALF_UP, Context, Decimal
from itertools import chain

import gdb
import gdb.printing
import gdb.types

MOST_ELEMENTS = 10000
MOST_CHARACTERS = 1000
WORD = 8  # bytes; the library is for 64-bit processors, which here have the lowest byte first
UNREADABLE = "<not readable>"

RULES = {
    1: "= {} W",
    2: "= {} H",
    3: "= W - {}",
    4: "= H - {}",
    5: "= {} M",
    6: "= W - {} M",
    7: "= H - {} M",
}
# Of each kind of segment: its name, and what it has beside its point.
SEGMENT_KINDS = {
    2: ("MoveTo", ()),
    3: ("LineTo", ()),
    4: ("CurveTo", ("ctrl1", "ctrl2")),
    5: ("Ellipse", ("a", "b")),
}
ELEMENT_KINDS = ("MoveTo", "LineTo", "CurveTo", "CurveData", "Close")
FILE_TYPES = ("RecAuto", "RecLocal", "RecPersonal", "RecTeam", "RecGoogleDrive", "RecDropbox")
# Of each kind of QColor: what Qt calls it, and by what its parts behind alpha are divided.
WHOLE = 0xFFFF
HUES = 36000
COLOUR_KINDS = {
    1: ("ARGB", (WHOLE, WHOLE, WHOLE)),
    2: ("AHSV", (HUES, WHOLE, WHOLE)),
    3: ("ACMYK", (WHOLE, WHOLE, WHOLE, WHOLE)),
    4: ("AHSL", (HUES, WHOLE, WHOLE)),
}
INVALID_COLOUR = 0
EXTENDED_COLOUR = 5
WHOLE_TINT = 100
ESCAPES = {'"': '\\"', "\\": "\\\\", "\b": "\\b", "\f": "\\f", "\n": "\\n", "\r": "\\r",
           "\t": "\\t"}


class Damaged(Exception):
    """What was read is no length or no place."""


FAILURES = (gdb.error, Damaged)


# -- Numbers and texts as Qt writes them


def number_text(number):
    """Six significant digits. Halves are rounded up, where Python would take the even digit."""
    if math.isnan(number):
        return "nan"
    if math.isinf(number):
        return "inf" if number > 0 else "-inf"
    if number == 0:
        return "0"
    rounded = Context(prec=6, rounding=ROUND_HALF_UP).create_decimal(Decimal(number)).normalize()
    exponent = rounded.adjusted()
    if -5 < exponent < 6:
        return f"{rounded:f}"
    return f"{rounded.scaleb(-exponent):f}e{exponent:+03d}"


def character_text(character):
    if character in ESCAPES:
        return ESCAPES[character]
    if unicodedata.category(character)[0] != "C":
        return character
    code = ord(character)
    return f"\\u{code:04X}" if code <= 0xFFFF else f"\\U{code:08X}"


def quoted(text):
    return '"' + "".join(map(character_text, text)) + '"'


def count_text(count, noun):
    return f"{count} {noun}" if count == 1 else f"{count} {noun}s"


def kind_text(names, index):
    return names[index] if 0 <= index < len(names) else f"type {index}"


def flags_text(value, names):
    return "".join(f"{text}, " for field, text in names if int(value[field]) != 0)


def number_of(enumerator):
    """An enumeration that has no negative number is not signed for gdb, whatever it holds."""
    return int(enumerator.cast(gdb.lookup_type("int")))


# -- Containers of Qt 5, by their fields


def read(address, size):
    # A sum with a damaged offset may be negative.
    return gdb.selected_inferior().read_memory(address % 2**64, size).tobytes()


def array_of(data):
    """The address of the elements of a QArrayData, and their number."""
    count, allocated, offset = int(data["size"]), int(data["alloc"]), int(data["offset"])
    # Nothing is allocated for constant data.
    if count < 0 or 0 < allocated < count:
        raise Damaged
    return int(data) + offset, count


def vector_elements(vector, name):
    """The elements of a QVector of the type `name`, and their number."""
    address, count = array_of(vector["d"])
    element = gdb.lookup_type(name).pointer()
    size = element.target().sizeof
    places = (address + index * size for index in range(min(count, MOST_ELEMENTS)))
    return (gdb.Value(place).cast(element).dereference() for place in places), count


def pointed_elements(address, count, name):
    """What the pointers at `address` point to, of the type `name`; the name alone for null."""
    element = gdb.lookup_type(name).pointer()
    for index in range(min(count, MOST_ELEMENTS)):
        place, = struct.unpack("<Q", read(address + index * WORD, WORD))
        yield gdb.Value(place).cast(element).dereference() if place else f"{name}(0x0)"


def list_elements(value, name):
    """The elements of a QList of the type `name`, which it points to, and their number."""
    data = value["p"]["d"]
    begin, end, allocated = int(data["begin"]), int(data["end"]), int(data["alloc"])
    if not 0 <= begin <= end <= allocated:
        raise Damaged
    address = int(data["array"].address) + begin * WORD
    return pointed_elements(address, end - begin, name), end - begin


def string_text(string):
    """A QString in quotes; dots follow where it is longer than what is read."""
    address, count = array_of(string["d"])
    units = min(count, MOST_CHARACTERS)
    content = read(address, 2 * units) if units else b""
    return quoted(content.decode("utf-16-le", "surrogatepass")) + ("" if units == count else "...")


# -- The library's types: text_of(value) or, of those that hold others, whole_of(value), which gives
# the text and the elements


def real_text(real):
    base, rate = int(real["base"]), float(real["rate"])
    value = number_text(float(real["value"]))
    if base in RULES:
        return f"{value} {RULES[base].format(number_text(rate))}"
    if base != 0:
        return f"{value} by no rule (base {base}, rate {number_text(rate)})"
    return f"{value} fixed" if rate == 0 else f"{value} fixed (rate {number_text(rate)})"


def coordinates_text(point):
    return f"{real_text(point['x'])}, {real_text(point['y'])}"


def point_text(point):
    return f"({coordinates_text(point)})"


def whole_object(base):
    """The object that `base` is a part of; `base` itself if that cannot be told."""
    try:
        return base.cast(base.dynamic_type)
    except gdb.error:
        return base


def segment_text(segment):
    kind = number_of(segment["type"])
    name, parts = SEGMENT_KINDS.get(kind, (None, ()))
    text = f"{name}(" if name else f"KpPathSeg(type {kind}, "
    text += coordinates_text(segment["pt"])
    whole = whole_object(segment)
    for part in parts:
        if gdb.types.has_field(whole.type, part):
            part_text = point_text if part.startswith("ctrl") else real_text
            text += f", {part} {part_text(whole[part])}"
    return text + ")"


def outline(value):
    address, count = array_of(value["segs"]["d"])
    flags = flags_text(value, [(name, name) for name in ("closed", "noLine", "noFill")])
    return (f"KpPathSegList({flags}{count_text(count, 'segment')})",
            pointed_elements(address, count, "KpPathSeg"))


def element_text(element):
    place = ", ".join(number_text(float(element[name])) for name in ("x", "y"))
    return f"{kind_text(ELEMENT_KINDS, int(element['type']))}({place})"


def path(value):
    elements, count = vector_elements(value["elements"], "KpPath::KpElement")
    return f"KpPath({count_text(count, 'element')})", elements


def concrete_text(colour):
    """What Qt shows of a QColor."""
    kind = number_of(colour["cspec"])
    parts = [int(colour["ct"]["array"][index]) for index in range(5)]
    if kind == INVALID_COLOUR:
        return "QColor(Invalid)"
    if kind == EXTENDED_COLOUR:
        name = "Ext. ARGB"
        shares = struct.unpack("<4e", struct.pack("<4H", *parts[:4]))
    elif kind in COLOUR_KINDS:
        name, wholes = COLOUR_KINDS[kind]
        shares = [-1 if whole == HUES and part == WHOLE else part / whole
                  for part, whole in zip(parts, (WHOLE, *wholes))]
    else:
        return f"QColor(kind {kind})"
    return f"QColor({name} {', '.join(map(number_text, shares))})"


def colour_text(colour):
    code = int(colour["m_tintCode"])
    tint = code if code <= WHOLE_TINT else WHOLE_TINT - code
    return (f"KpColor({concrete_text(colour)}, theme {int(colour['m_themeIndex'])}, tint {tint}, "
            f"reference #{int(colour['m_reference']) & 0xFFFFFF:06x})")


def place_text(file):
    pinned = flags_text(file, [("isTop", "pinned")])
    return f"{pinned}{kind_text(FILE_TYPES, int(file['type']))}, {string_text(file['path'])}"


def file_text(file):
    team = string_text(file["teamName"])
    return f"RecFile({place_text(file)}" + (")" if team == '""' else f", team {team})")


def file_info_text(info):
    return (f"RecFileInfo({place_text(info)}, name {string_text(info['name'])}, "
            f"location {string_text(info['location'])})")


def manager(value):
    files, file_count = list_elements(value["m_files"], "KpRecentFileManager::RecFile")
    folders, folder_count = list_elements(value["m_folders"], "KpRecentFileManager::RecFile")
    text = (f"KpRecentFileManager({flags_text(value, [('m_isModified', 'modified')])}"
            f"{count_text(file_count, 'file')}, {count_text(folder_count, 'folder')}, "
            f"at most {int(value['m_maxCount'])}, "
            f"last file from {string_text(value['m_recentFileFolder'])}, "
            f"library from {string_text(value['m_libraryFolder'])}, "
            f"symbol from {string_text(value['m_symbolFolder'])})")
    return text, chain(files, folders)


# -- What gdb asks


def text_printer(name, text_of):
    class Printer:
        def __init__(self, value):
            self.value = value

        def to_string(self):
            try:
                return text_of(self.value)
            except FAILURES:
                return f"{name}({UNREADABLE})"

    return Printer


def list_printer(name, whole_of):
    class Printer:
        def __init__(self, value):
            try:
                self.text, self.elements = whole_of(value)
            except FAILURES:
                self.text, self.elements = f"{name}({UNREADABLE})", ()

        def to_string(self):
            return self.text

        def display_hint(self):
            return "array"

        def children(self):
            try:
                for index, element in enumerate(self.elements):
                    yield f"[{index}]", readable(element)
            except FAILURES:
                yield "[...]", UNREADABLE

    return Printer


def readable(element):
    """An element, which is a text or else read here and not where a failure would end the list."""
    try:
        if isinstance(element, gdb.Value):
            element.fetch_lazy()
        return element
    except gdb.error:
        return UNREADABLE


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("kpgeometry")

    def add(names, printer, *arguments):
        name = names.split("|")[0].split("::")[-1]
        collection.add_printer(names, f"^({names})$", printer(name, *arguments))

    add("KpReal", text_printer, real_text)
    add("KpPoint", text_printer, point_text)
    add("KpPathSeg|KpPathSegMoveTo|KpPathSegLineTo|KpPathSegCurveTo|KpPathSegEllipse",
        text_printer, segment_text)
    add("KpPathSegList", list_printer, outline)
    add("KpPath::KpElement", text_printer, element_text)
    add("KpPath", list_printer, path)
    add("KpColor", text_printer, colour_text)
    add("KpRecentFileManager::RecFile", text_printer, file_text)
    add("KpRecentFileManager::RecFileInfo", text_printer, file_info_text)
    add("KpRecentFileManager", list_printer, manager)
    return collection


def load_types(library):
    """Lets gdb know the types, of which a program has but the names: see types.cpp."""
    types = os.path.join(os.path.dirname(library.filename), "kpgeometry", "types.debug")
    known = any(types == objfile.filename for objfile in gdb.objfiles())
    if os.path.exists(types) and not known:
        # The answer would be shown: that it was asked for is enough.
        gdb.execute(f"add-symbol-file {shlex.quote(types)}", from_tty=False, to_string=True)


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
if gdb.current_objfile():
    load_types(gdb.current_objfile())
