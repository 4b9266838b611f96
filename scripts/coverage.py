#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tells what tests reach of the sources, and fails if that is too little.

usage: coverage.py LIBRARY.json TOOLS.json MERGED.json

The first two are what gcovr has gathered, of the library and of the tools. MERGED.json is written
for gcovr: both, each file under its own name.
"""
import collections
import json
import os
import sys

UNREACHED = "tests/unreached.txt"
FEWEST_TOOL_LINES = 0.98


def read(name):
    """The lines by file and number. Headers are compiled under the name of a link, too."""
    with open(name, encoding="utf-8") as stream:
        tracefile = json.load(stream)
    files = collections.defaultdict(dict)
    for entry in tracefile["files"]:
        lines = files[os.path.relpath(os.path.realpath(entry["file"]))]
        for line in entry["lines"]:
            if not line["gcovr/noncode"]:
                add(lines.setdefault(line["line_number"], dict(line, count=0, branches=[])), line)
    return tracefile, files


def add(total, line):
    total["count"] += line["count"]
    for place, branch in enumerate(line["branches"]):
        if place == len(total["branches"]):
            total["branches"].append(dict(branch, count=0))
        total["branches"][place]["count"] += branch["count"]


def write(name, tracefile, files):
    tracefile["files"] = [
        {"file": file, "lines": list(lines.values()), "functions": []}
        for file, lines in sorted(files.items())]
    with open(name, "w", encoding="utf-8") as stream:
        json.dump(tracefile, stream)


def is_reached(line):
    return line["count"] > 0 and all(branch["count"] > 0 for branch in line["branches"])


def read_source(file):
    with open(file, encoding="utf-8") as stream:
        return stream.read().splitlines()


class Exceptions:
    """What the list of the unreached names, and whether that is so."""

    def __init__(self, files):
        self.numbers = collections.defaultdict(set)
        self.faults = []
        for row, text in enumerate(read_source(UNREACHED), 1):
            if text and not text.startswith("#"):
                name, place, _reason = (part.strip() for part in text.split(" | ", 2))
                file = name.removeprefix("? ")
                found = self.unreached(files.get(file, {}), file, place)
                self.numbers[file].update(found)
                if not found and file == name:
                    self.faults.append(f"{UNREACHED}:{row}: is reached, or is not there: {place}")

    @staticmethod
    def unreached(lines, file, place):
        """The numbers of the unreached lines that hold a text, or from one text to another."""
        first, _, last = place.partition(" ... ")
        found = set()
        is_within = False
        for number, source in enumerate(read_source(file) if lines else [], 1):
            is_within = is_within or first in source
            if is_within and number in lines and not is_reached(lines[number]):
                found.add(number)
            if is_within and last in source:
                is_within = False
        return found


class Share:
    """How many of the lines and branches of some files are reached."""

    def __init__(self, files):
        lines = [line for numbered in files.values() for line in numbered.values()]
        branches = [branch for line in lines for branch in line["branches"]]
        self.lines = self.reached(lines), len(lines)
        self.branches = self.reached(branches), len(branches)

    @staticmethod
    def reached(counted):
        return sum(1 for entry in counted if entry["count"] > 0)


def print_row(name, share):
    def text(part):
        reached, count = part
        return f"{reached:6} of {count:6} {reached / max(count, 1):8.2%}"
    print(f"{name:24}{text(share.lines)}   {text(share.branches)}")


def print_table(title, files):
    print(f"{title:24}{'lines':>16}{'branches':>28}")
    folders = collections.defaultdict(dict)
    for file, lines in files.items():
        folders[os.path.dirname(file)][file] = lines
    for folder in sorted(folders):
        print_row(folder, Share(folders[folder]))
    print_row("all", Share(files))
    print()


def main(library_name, tools_name, merged_name):
    tracefile, library = read(library_name)
    _, tools = read(tools_name)
    write(merged_name, tracefile, {**library, **tools})
    print_table("library", library)
    print_table("tools", tools)

    exceptions = Exceptions(library)
    faults = exceptions.faults
    for file, lines in sorted(library.items()):
        for number in sorted(set(lines) - exceptions.numbers[file]):
            if not is_reached(lines[number]):
                part = "all branches of " if lines[number]["count"] else ""
                source = read_source(file)[number - 1].strip()
                faults.append(f"{file}:{number}: tests do not reach {part}this line: {source}")
    reached, count = Share(tools).lines
    if reached < FEWEST_TOOL_LINES * count:
        faults.append(f"tools: fewer than {FEWEST_TOOL_LINES:.0%} of the lines are reached")
    if faults:
        sys.exit("\n".join(faults))


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
