# SPDX-License-Identifier: MIT
"""The list of segments, from docs/outlines.md and the comments of kppathseglist.h."""
from outline import CURVE, LINE, MOVE, REALS, at, cloned, is_clockwise, path_of
from reals import sixteen_bits
from registry import gives

FLAGS = {"closed": False, "noFill": False, "noLine": False}


def changing(member):
    """Registers a change of an outline, given a list of its segments that may be changed."""
    def register(function):
        @gives(f"KpPathSegList::{member}")
        def _(outline, **inputs):
            segments = list(outline["segments"])
            flags = function(segments, **inputs) or {}
            return {"outline": {**outline, **flags, "segments": segments}}
        return function
    return register


@gives("KpPathSegList::KpPathSegList()")
def default():
    return {"outline": {**FLAGS, "segments": []}}


@gives("KpPathSegList::KpPathSegList(KpPathSegList const&)", "KpPathSegList::clone()")
def copied(outline):
    return {"copy": {**outline, "segments": list(map(cloned, outline["segments"]))}}


for flag in FLAGS:
    gives(f"KpPathSegList::get{flag[0].upper()}{flag[1:]}() const")(
        lambda outline, flag=flag: outline[flag])


@changing("assign(KpPathSegList const&)")
def assign(segments, other):
    segments += map(cloned, other["segments"])
    return {flag: other[flag] for flag in FLAGS}


@changing("clear()")
def clear(segments):
    segments.clear()
    return {**FLAGS, "closed": True}


@changing("removeAll(bool)")
def remove_all(segments, deleteSegs):
    del deleteSegs
    segments.clear()


@changing("moveTo(QPointF)")
def move_to(segments, point):
    segments.append([MOVE] + at(*point))


@changing("lineTo(QPointF)")
def line_to(segments, point):
    segments.append([LINE] + at(*point))


@changing("curveTo(QPointF, QPointF, QPointF)")
def curve_to(segments, control1, control2, end):
    segments.append([CURVE] + at(*end) + at(*control1) + at(*control2))


@changing("addTail(KpPathSeg*)")
def add_tail(segments, segment):
    if segment is not None:
        segments.append(segment)


@changing("insertAt(int, KpPathSeg*)")
def insert_at(segments, index, segment):
    segments.insert(max(index, 0), segment)


@changing("removeAt(int, bool)")
def remove_at(segments, index, deleteSeg):
    del deleteSeg
    if 0 <= index < len(segments):
        del segments[index]


@changing("removeAt(QVector<int>, bool)")
def remove_each(segments, indices, deleteSegs):
    """One after the other, where later indices mean the segments as they stood at first."""
    del deleteSegs
    indices = list(indices)
    for k in range(len(indices)):
        index = indices[k]
        if not 0 <= index < len(segments):
            return
        del segments[index]
        indices = [other - 1 if other > index else other for other in indices]


NO_SEGMENT = -2 # the index of a null pointer; -1 is that of a segment which the list does not hold


@gives("KpPathSegList::getNextSeg(KpPathSeg*) const")
def next_segment(outline, index):
    count = len(outline["segments"])
    if index == NO_SEGMENT or count == 0:
        return {"index": -1}
    if index + 1 < count:
        return {"index": index + 1}
    return {"index": 0 if outline["closed"] else -1}


@gives("KpPathSegList::getPrevSeg(KpPathSeg*) const")
def previous_segment(outline, index):
    count = len(outline["segments"])
    if index == NO_SEGMENT:
        return {"index": -1}
    if index > 0:
        return {"index": index - 1}
    return {"index": count - 1 if outline["closed"] else -1}


@gives("KpPathSegList::toPath(KpPath&) const")
def to_path(outline, path):
    return {"path": path_of(outline, path)}


@gives("KpPathSegList::isClockwise()")
def clockwise(outline):
    return is_clockwise(path_of(outline, []))


@changing("fromPath(KpPath&)")
def from_path(segments, path):
    flags = {}
    place = 0
    while place < len(path):
        kind, *point = path[place]
        if kind == 0:
            move_to(segments, point)
        elif kind == 1:
            line_to(segments, point)
        elif kind == 2 and place + 2 < len(path):
            curve_to(segments, point, path[place + 1][1:], path[place + 2][1:])
            place += 2
        elif kind == 4:
            flags["closed"] = True
        place += 1
    return flags


@gives("KpPathSegList::toUndoValue(QVector<int>&, QVector<double>&)")
def to_undo(outline, ints, doubles):
    ints = ints + [int(outline[flag]) for flag in ("closed", "noFill", "noLine")]
    doubles = list(doubles)
    for segment in outline["segments"]:
        ints.append(segment[0])
        for base, rate, value in segment[1:]:
            ints.append(base)
            doubles += [value, rate]
    return {"ints": ints, "doubles": doubles}


class Record:
    """An undo record that is read from two positions on, as far as whole parts go."""

    def __init__(self, ints, doubles, intPos, doublePos):
        self.ints, self.doubles, self.int_pos, self.double_pos = ints, doubles, intPos, doublePos

    def take(self, ints, doubles):
        """So many entries of either, or None."""
        holds = (0 <= self.int_pos <= len(self.ints) - ints
                 and (doubles == 0 or 0 <= self.double_pos <= len(self.doubles) - doubles))
        if not holds:
            return None
        taken = (self.ints[self.int_pos:self.int_pos + ints],
                 self.doubles[self.double_pos:self.double_pos + doubles])
        self.int_pos += ints
        self.double_pos += doubles
        return taken

    def segment(self):
        """The next one: None at the end, an empty list for an unknown type."""
        if not 0 <= self.int_pos < len(self.ints):
            return None
        kind = self.ints[self.int_pos]
        count = REALS.get(kind, 0)
        taken = self.take(1 + count, 2 * count)
        if taken is None:
            return None
        ints, doubles = taken
        return [kind] + [[sixteen_bits(base), doubles[2 * i + 1], doubles[2 * i]]
                         for i, base in enumerate(ints[1:])] if count else []


@gives("KpPathSegList::fromUndoValue(QVector<int>&, QVector<double>&, int&, int&, int)")
def from_undo(outline, ints, doubles, intPos, doublePos, segmentCount):
    record = Record(ints, doubles, intPos, doublePos)
    flags = {}
    segments = list(outline["segments"])
    header = record.take(3, 0)
    if header is not None:
        flags = dict(zip(("closed", "noFill", "noLine"), (number == 1 for number in header[0])))
        for _ in range(segmentCount):
            segment = record.segment()
            if segment is None:
                break
            segments += [segment] if segment else []
    return {"outline": {**outline, **flags, "segments": segments}, "intPos": record.int_pos,
            "doublePos": record.double_pos}
