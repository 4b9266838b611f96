#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints a table of what it costs to start kpgeom and programs beside it: CPU time in ms.

usage: starts.py KPGEOM

User and system time of each process together, as the kernel tells it when the process has ended:
median and least of 50 starts, the programs taking turns.
"""
import os
import statistics
import sys
import tempfile

STARTS = 50
DOCUMENT = "examples/documents/plate.xml"
PICTURE = "examples/pictures/pennant.svg"


def commands(kpgeom, folder):
    """By what is shown of each; no picture is drawn over that of another program."""
    peers = [["rsvg-convert", PICTURE, "-o", f"{folder}/peer.png"],
             ["rsvg-convert", "--version"],
             ["xmllint", "--noout", DOCUMENT]]
    ours = ["--version", f"info {DOCUMENT}", f"svg {DOCUMENT}", "colour 2F6DB5 tint=0.5",
            f"convert {PICTURE} -o {folder}/out.xml",
            f"render {DOCUMENT} -o {folder}/out.png", f"render {DOCUMENT} -o {folder}/out.pdf",
            f"render {DOCUMENT} -o {folder}/out.svg",
            f"render {DOCUMENT} --sheet -o {folder}/sheet.png",
            f"blur {folder}/peer.png -r 3 -o {folder}/blurred.png"]
    return peers + [[kpgeom, *arguments.split()] for arguments in ours]


def cpu_time(command):
    """Of one process, in ms."""
    nowhere = [(os.POSIX_SPAWN_OPEN, descriptor, os.devnull, os.O_WRONLY, 0)
               for descriptor in (1, 2)]
    process = os.posix_spawnp(command[0], command, os.environ, file_actions=nowhere)
    _, status, usage = os.wait4(process, 0)
    if status != 0:
        sys.exit(f"{' '.join(command)}: status {os.waitstatus_to_exitcode(status)}")
    return 1e3 * (usage.ru_utime + usage.ru_stime)


def main(kpgeom):
    with tempfile.TemporaryDirectory() as folder:
        all_commands = commands(kpgeom, folder)
        times = [[] for _ in all_commands]
        for _ in range(STARTS):
            for command, of_command in zip(all_commands, times):
                of_command.append(cpu_time(command))
        print(f"{'CPU time of a start, ms':62}{'median':>8}{'least':>8}")
        for command, of_command in zip(all_commands, times):
            shown = " ".join([os.path.basename(command[0]), *command[1:]])
            shown = shown.replace(folder + "/", "")
            print(f"{shown:62}{statistics.median(of_command):8.2f}{min(of_command):8.2f}")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(os.path.abspath(sys.argv[1]))
