# SPDX-License-Identifier: MIT
"""Run by gdb on the program debugged: what it shows of the objects is what debugged.expected says,
and what the program says itself. Of what never was an object it shows something, and not much."""
import os

import gdb

TYPES = ("KpReal", "KpPoint", "KpPathSeg", "KpPathSegCurveTo", "KpPathSegEllipse", "KpPathSegList",
         "KpPath::KpElement", "KpPath", "KpColor", "KpRecentFileManager::RecFile",
         "KpRecentFileManager::RecFileInfo", "KpRecentFileManager")
MUCH = 4000000
GARBAGE_ROWS = 40

faults = []


def expect(holds, message):
    if not holds:
        faults.append(message)


def lines_of(name):
    with open(name, encoding="utf-8") as file:
        return [line.rstrip("\n") for line in file]


def shown(expression):
    try:
        return gdb.execute(f"output {expression}", to_string=True)
    except gdb.error as error:
        return f"error: {error}"


def expect_shown(lines, least):
    expect(len(lines) >= least, f"there are only {len(lines)} lines")
    for line in lines:
        expression, text = line.split(": ", 1)
        found = shown(expression)
        expect(found == text, f"{expression} is shown as\n  {found}\nand not as\n  {text}")


folder = os.environ["KPGEOMETRY_PACKAGE_TESTS"]
said_file = os.environ["KPGEOMETRY_SAID"]
gdb.execute("break stop")
gdb.execute(f"run > '{said_file}'")
gdb.execute("up")
expect_shown(lines_of(f"{folder}/debugged.expected"), 50)
expect_shown(lines_of(said_file), 240)
expect(shown("endless") == 'RecFile(RecLocal, "' + 1000 * "x" + '"...)', "a long text is cut off")
gdb.execute("set print elements unlimited")
for name in TYPES:
    for row in range(GARBAGE_ROWS):
        garbage = f"*({name}*) garbage[{row}]"
        expect(len(shown(garbage)) < MUCH, f"much is shown of {garbage}")
print("\n".join(faults) or "gdb shows all of them")
