#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Counts the instructions that each reader takes for each kind of input, of one size and of four
times as much.

usage: growth.py PROGRAM [--documents | --pictures | READER...]
  PROGRAM      "growth", built as a release
  --documents  the readers of all but pictures
  --pictures   the readers of pictures, which take most of the time

Fails if four times as much takes more than six times as many instructions: what is more than linear
takes up to sixteen times as many.
"""
import os
import re
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

from instructions import BOUND, ENVIRONMENT, run, under_valgrind

MOST_GROWTH = 6.0
SIZE = 3000
PICTURES = ["svg", "path", "stencil", "odf"]
# Of readers that take many times as long for a byte as the others.
SIZES = {"svg": 1000}


def counts(program, reader):
    """The kinds with the instructions for either size: each call is in a file of its own."""
    with tempfile.TemporaryDirectory() as folder:
        kinds, _ = under_valgrind(
            [program, "--count", reader, str(SIZES.get(reader, SIZE))], {**ENVIRONMENT, **BOUND},
            "--toggle-collect=counted", "--dump-after=counted",
            f"--callgrind-out-file={folder}/out")

        def total(number):
            with open(f"{folder}/out.{number}", encoding="utf-8") as file:
                return int(re.search(r"^totals: (\d+)", file.read(), re.MULTILINE).group(1))
        return [(kind, total(2 * i + 1), total(2 * i + 2))
                for i, kind in enumerate(kinds.splitlines())]


def tell(reader, found):
    """Prints the counts; the kinds that grow too fast."""
    faulty = []
    for kind, small, large in found:
        growth = large / small
        print(f"{reader:10} {kind:32} {small:>12,} {large:>13,} {growth:6.2f}")
        if growth > MOST_GROWTH:
            faulty.append(f"{reader}: {kind}: {growth:.1f} times as many instructions")
    return faulty


def chosen(program, choice):
    """The readers that the arguments name; all, if there are none."""
    if choice == ["--pictures"]:
        return PICTURES
    if choice and choice != ["--documents"]:
        return choice
    readers = run([program, "--readers"], ENVIRONMENT)[0].split()
    return [name for name in readers if not choice or name not in PICTURES]


def main(program, *choice):
    readers = chosen(program, list(choice))
    faulty = []
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        for reader, found in zip(readers, pool.map(lambda name: counts(program, name), readers)):
            if not found:
                sys.exit(f"{reader}: nothing was counted")
            faulty += tell(reader, found)
    if faulty:
        sys.exit("\n".join(["For four times as much input:", *faulty]))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main(*sys.argv[1:])
