# SPDX-License-Identifier: MIT
"""Writes a copy of the sources that holds all mutants, and finds out which cannot be in it."""

import hashlib
import json
import os
import re
import subprocess
from dataclasses import dataclass
from pathlib import Path

ERROR = re.compile(r"(\S[^:\n]*):(\d+):(\d+): (?:fatal )?(error|note): (.*)")
NO_CONSTANT = re.compile(r"(\w+)\W was not (?:initialized with a constant|declared .constexpr)")
NO_SIZE = re.compile("size of array .* is not an integral constant")
CONSEQUENCE = re.compile("invalid types|was not declared|request for member|too many|scalar object"
                         "|has no member|expected|the value of")
# For one set of instructions instead of five: with all mutants it alone compiles for minutes. What
# every x86-64 processor has would leave no vectors at all.
EXTRA = {"src/CMakeLists.txt": b"""
set_property(SOURCE blur/stackblurwide.cpp APPEND PROPERTY
  COMPILE_DEFINITIONS HWY_COMPILE_ONLY_STATIC)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
  set_property(SOURCE blur/stackblurwide.cpp APPEND PROPERTY COMPILE_OPTIONS
    -mavx2 -mbmi -mbmi2 -mfma -maes -mpclmul)
endif()
"""}


@dataclass
class Numbered:
    """A mutant of the build."""
    number: int
    file: object
    point: object
    mutant: object
    line: int
    column: int

    def key(self):
        """What names it for as long as its line stays as it is."""
        return (self.file.name, self.point.function, self.mutant.what,
                self.file.line(self.point.start))


class Copy:
    """The copy of one file: its text, and where in it each point came to stand."""

    def __init__(self, file, points, numbers):
        self.file = file
        self.numbers = numbers
        self.points = sorted(points, key=lambda p: (p.start, -p.end, p.level()))
        self.spans = []  # point, start and end in the copy's text

    def write(self):
        self.at = 0
        text, _ = self.range(0, len(self.file.data), 0, 0)
        return text

    def range(self, start, end, index, offset):
        """The copy of a range whose points begin with one of an index."""
        out, position = [], start
        length = 0

        def put(text):
            nonlocal length
            out.append(text)
            length += len(text)

        while index < len(self.points):
            point = self.points[index]
            if point.start >= end:
                break
            put(self.file.text(position, point.start))
            text, index = self.point(point, index, offset + length)
            put(text)
            position = point.end
        put(self.file.text(position, end))
        return "".join(out), index

    def point(self, point, index, offset):
        spans = len(self.spans)
        before, after = self.frame(point)
        if point.kind == "constant":
            inner, index = "", index + 1
        else:
            inner, index = self.range(point.start, point.end, index + 1, offset + len(before))
        text = before + inner + after
        self.spans.insert(spans, (point, offset, offset + len(text)))
        return text, index

    def frame(self, point):
        """What stands around the original."""
        call = "Mutation::isAtRunTime" if point.constexpr else "Mutation::is"
        numbers = self.numbers[id(point)]
        tests = [f"{call}({number})" for number in numbers]
        if point.kind == "constant":
            return point.mutants[0].text, ""
        if point.kind == "statement":
            return f"{{ if (!{tests[0]}) ", " }"
        if point.kind == "return":
            return f"{{ if ({tests[0]}) return {{}}; ", " }"
        choice = "".join(f"{test} ? ({mutant.text.replace(chr(10), ' ')}) : "
                         for test, mutant in zip(tests, point.mutants))
        if point.kind == "condition":
            return f"({choice}static_cast<bool>(", "))"
        return f"({choice}(", "))"


def synchronize(root, tree, header):
    """The project's files as they are, but for those of the library; touches only what differs."""
    names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=root, check=True, text=True,
                           stdout=subprocess.PIPE).stdout.split("\0")
    for name in filter(None, names):
        if name.startswith(("src/", "companions/")) and name.endswith((".cpp", ".h")) \
                and (tree / name).exists():
            continue
        if (root / name).is_file():
            write(tree / name, (root / name).read_bytes() + EXTRA.get(name, b""))
    write(tree / "mutant.h", header.read_bytes())


def write(path, data):
    if path.exists() and path.read_bytes() == data:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(data)


def digest(file):
    return file.name + " " + hashlib.sha256(file.data).hexdigest()


class Build:
    """The build with all mutants."""

    def __init__(self, root, files, folder):
        self.root = root
        self.files = files
        self.tree = folder / "tree"
        self.binaries = folder / "build"
        self.dropped = set()  # points that need a constant: file, range, kind
        self.memory = folder / "constants.json"  # by the file's contents
        self.remember()
        self.mutants = []
        self.number()

    def number(self):
        """All mutants, those in no schema too: so numbers do not depend on what is left out."""
        self.numbers = {}
        for name, file in self.files.items():
            for key in sorted(file.points):
                point = file.points[key]
                if point.kind == "constant":
                    self.numbers[id(point)] = []
                    continue
                self.numbers[id(point)] = list(
                    range(len(self.mutants), len(self.mutants) + len(point.mutants)))
                for mutant in point.mutants:
                    self.mutants.append(Numbered(len(self.mutants), file, point, mutant,
                                                 *file.place(point.start)))

    def remember(self):
        known = json.loads(self.memory.read_text()) if self.memory.exists() else {}
        for name, file in self.files.items():
            places = known.get(digest(file), [])
            self.dropped |= {(name, *place) for place in places}

    def save(self):
        known = {digest(file): sorted(place[1:] for place in self.dropped if place[0] == name)
                 for name, file in self.files.items()}
        self.memory.write_text(json.dumps(known))

    def is_dropped(self, file, point):
        return (file.name, point.start, point.end, point.kind) in self.dropped \
            or (point.variable and (file.name, *point.variable) in self.dropped)

    def write_copies(self):
        self.copies = {}
        for name, file in self.files.items():
            points = [p for p in file.points.values() if not self.is_dropped(file, p)]
            copy = Copy(file, points, self.numbers)
            include = f'#include "{self.tree}/mutant.h"\n'
            text = include + copy.write()
            copy.text, copy.offset = text, len(include)
            self.copies[name] = copy
            write(self.tree / name, text.encode())

    def places(self, output):
        """Where something has to be left out: of what only follows from another error, the latter."""
        places, consequences = set(), set()
        for path, line, column, kind, text in ERROR.findall(output):
            path = (self.binaries / path).resolve()
            if self.tree not in path.parents or path.name == "mutant.h":
                continue
            name = str(path.relative_to(self.tree))
            if kind == "note":
                variable = NO_CONSTANT.search(text)
                if variable:
                    places.add((name, variable.group(1)))
            elif NO_SIZE.search(text) and name in self.copies:
                declaration = self.copies[name].text.split("\n")[int(line) - 1]
                places |= {(name, bound) for bound in re.findall(r"\[(\w+)\]", declaration)}
            elif CONSEQUENCE.search(text):
                consequences.add((name, int(line), int(column)))
            else:
                places.add((name, int(line), int(column)))
        first = {place[0] for place in places}
        return places | {place for place in consequences if place[0] not in first}

    def drop(self, name, line, column):
        """Leaves out the innermost point at a place in the copy."""
        copy = self.copies.get(name)
        if copy is None:
            return
        lines = copy.text.split("\n")
        offset = sum(len(text) + 1 for text in lines[:line - 1]) - copy.offset
        # The compiler counts bytes.
        offset += len(lines[line - 1].encode()[:column - 1].decode(errors="replace"))
        inside = [span for span in copy.spans if span[1] <= offset < span[2]]
        innermost = sorted(inside, key=lambda span: span[2] - span[1])[:1]
        start = offset - column
        for point, *_ in innermost or [span for span in copy.spans
                                       if start <= span[1] < start + len(lines[line - 1])]:
            if point.variable:
                self.dropped.add((name, *point.variable))
            self.dropped.add((name, point.start, point.end, point.kind))

    def drop_variable(self, name, variable):
        """Leaves a variable as constant as it is."""
        file = self.files.get(name)
        for point in file.points.values() if file else []:
            declaration = re.search(rf"\b{variable}\b", file.text(*point.variable)) \
                if point.variable else None
            if point.kind == "constant" and declaration:
                self.dropped.add((name, *point.variable))
            elif not point.variable and re.search(rf"\b{variable}\s*[={{][^;]*\Z",
                                                  file.text(max(0, point.start - 80), point.start)):
                self.dropped.add((name, point.start, point.end, point.kind))

    def configure(self):
        subprocess.run(
            ["cmake", "-S", self.tree, "-B", self.binaries, "-G", "Ninja",
             "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
             "-DKPGEOMETRY_PRECOMPILED_HEADERS=ON",
             "-DCMAKE_CXX_FLAGS=-O1 -w -Wno-narrowing -fno-diagnostics-show-caret"],
            check=True, stdout=subprocess.DEVNULL)

    def compile(self, targets):
        """Builds, and leaves out what cannot be until the rest can."""
        for _ in range(30):
            self.write_copies()
            result = subprocess.run(
                ["cmake", "--build", self.binaries, "--target", *targets, "--", "-k", "0"],
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                env={**os.environ, "LC_ALL": "C.UTF-8"})
            if result.returncode == 0:
                return
            places = self.places(result.stdout)
            before = len(self.dropped)
            for place in places:
                (self.drop if len(place) == 3 else self.drop_variable)(*place)
            self.save()
            (self.binaries / "errors.txt").write_text(result.stdout)
            print(f"  {len(self.dropped) - before} places must stay constant", flush=True)
            if len(self.dropped) == before:
                print(result.stdout[-5000:])
                raise SystemExit("the mutants do not compile")
        raise SystemExit("the mutants still do not compile")

