#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures the processor time and the memory that each reader takes for usual input of several sizes.

usage: readers.py PROGRAM MEGABYTES...
  PROGRAM  "growth", built as a release

Prints a table for docs/limits.md. The memory is the peak of the whole process beyond that of one
that reads next to nothing, for each byte of the input; the input itself is one of them. Fails if a
reader takes more than is given here, or refuses the first size. Less than a megabyte tells nothing.
"""
import os
import subprocess
import sys

from instructions import ENVIRONMENT

# What is usual for each reader, and the shortest elements where those take much more for each byte;
# with the most memory that it may take, in bytes a byte.
KINDS = (("load", "names of elements", 45), ("load", "texts of elements", 22),
         ("outlines", "outlines", 8), ("check", "outlines", 5), ("normalize", "outlines", 5),
         ("rewrite", "outlines", 5), ("svg", "icons", 24), ("svg", "paths", 62),
         ("stencil", "icons", 20), ("stencil", "paths", 66), ("odf", "shapes", 24),
         ("presets", "shapes", 56), ("custom", "paths", 56), ("path", "fine curves", 42),
         ("path", "lines", 42))
MEGABYTE = 1000000


def measured(program, reader, kind, size):
    """The bytes that were read, the seconds, the peak of memory in bytes, and whether all was read."""
    with subprocess.Popen([program, reader, kind, str(size)], env=ENVIRONMENT,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as process:
        told = process.stdout.read().split()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{reader}: status {process.returncode}")
    return (int(told[0]), usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024,
            b"refused" not in told)


def main(program, *megabytes):
    print("| Reader | Input | MB | Time, s | Time a MB, s | Memory, bytes a byte |")
    print("|---|---|---|---|---|---|")
    faults = []
    for reader, kind, most in KINDS:
        _, start, empty, _ = measured(program, reader, kind, 1)
        for size in megabytes:
            read, seconds, memory, is_read = measured(
                program, reader, kind, int(float(size) * MEGABYTE))
            spent = seconds - start
            multiple = (memory - empty) / read
            if multiple > most:
                faults.append(f"{reader}: {kind}: {multiple:.1f} bytes a byte, more than {most}")
            if not is_read and size == megabytes[0]:
                faults.append(f"{reader}: {kind}: refused")
            print(f"| {reader} | {kind}{'' if is_read else ', refused'} | {read / MEGABYTE:.1f} |"
                  f" {spent:.2f} | {spent / read * MEGABYTE:.3f} | {multiple:.1f} |", flush=True)
    if faults:
        sys.exit("\n".join(faults))


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
