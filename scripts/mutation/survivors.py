# SPDX-License-Identifier: MIT
"""The committed list of mutants that no test catches, each with the reason.

A paragraph that begins in the first column is the reason for the indented lines below it:

    FILE | FUNCTION | MUTATION | LINE OF THE SOURCE

with " | xN" at the end for N such mutants in lines that read alike. Run as a program, this checks that
what is listed still stands in the sources.
"""

import re
import sys
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
LIST = ROOT / "tests/mutation/survivors.txt"
TIMES = re.compile(r" \| x(\d+)\Z")
# What an operator becomes may be a "|" itself.
ENTRY = re.compile(r"(.+?) \| (.*?) \| (.+? becomes \||.+?) \| (.+)\Z")


def read(path=LIST):
    """Entries as keys (file, function, mutation, line), with how many and the line of the list."""
    entries, places, reason = Counter(), {}, ""
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line.strip():
            reason = ""
        elif not line[0].isspace():
            reason += line
        else:
            times = TIMES.search(line)
            entry = ENTRY.match(TIMES.sub("", line).strip())
            if not entry or not reason:
                raise SystemExit(f"{path.name}:{number}: not FILE | FUNCTION | MUTATION | LINE"
                                 " below a reason")
            entries[entry.groups()] += int(times.group(1)) if times else 1
            places[entry.groups()] = number
    return entries, places


def text_of(key, count):
    return " | ".join(key) + (f" | x{count}" if count > 1 else "")


def stands(key, lines):
    """Whether a file still has what an entry names."""
    _, function, mutation, line = key
    changed = re.match(r"(.+) (becomes|is left out)", mutation)
    word = changed.group(1) if changed else ""
    if word == "the text":
        word = '"'
    there = [at for at, text in enumerate(lines) if text.strip() == line]
    return bool(there) and word in line and \
        any(function in text for text in lines[:there[-1] + 1])


def main():
    entries, places = read()
    wrong = []
    for key in entries:
        source = ROOT / key[0]
        lines = source.read_text().splitlines() if source.is_file() else []
        if not stands(key, lines):
            wrong.append(f"{LIST.relative_to(ROOT)}:{places[key]}: no longer in the sources: "
                         + " | ".join(key))
    print("\n".join(wrong) if wrong else f"{sum(entries.values())} listed mutants stand")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
