#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Counts the instructions of one operation of each kind and compares them with those on record.

usage: instructions.py BUILD [--update]
  BUILD     the folder with the programs "instructions" and "kpgeom", built as a release
  --update  puts the counts on record

Fails if a count has risen by more than 3 %, or is not on record. Counts are compared only with
those of the same compiler, libraries and processor; otherwise they are printed alone.
"""
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

MOST_RISE = 0.03
RECORD = "benchmarks/instructions.txt"
START = ["info", "examples/documents/plate.xml"]

# Nothing of the surroundings: what is counted must not depend on them.
ENVIRONMENT = {"LC_ALL": "C.UTF-8", "HOME": "/nonexistent", "PATH": "/usr/bin:/bin",
               "QT_HASH_SEED": "0", "QT_QPA_PLATFORM": "offscreen"}
# Of an operation; it is a part of a start that functions are looked up when they are first called.
BOUND = {"LD_BIND_NOW": "1"}


def run(command, environment):
    """What a command prints, on standard output and on standard error."""
    result = subprocess.run(command, env=environment, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        sys.exit(f"{' '.join(command)}: status {result.returncode}\n{result.stderr}")
    return result.stdout, result.stderr


def under_valgrind(command, environment, *options):
    return run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *options,
                *command], environment)


def count(command, environment, *options):
    _, log = under_valgrind(command, environment, *options)
    return int(re.search(r"Collected : (\d+)", log).group(1))


def counts(build):
    program = f"{build}/benchmarks/instructions"
    names = run([program, "--names"], ENVIRONMENT)[0].split()
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        jobs = {name: pool.submit(count, [program, name], {**ENVIRONMENT, **BOUND},
                                  "--toggle-collect=counted") for name in names}
        jobs["start"] = pool.submit(count, [f"{build}/tools/kpgeom/kpgeom", *START], ENVIRONMENT)
        return {name: job.result() for name, job in jobs.items()}


def built(build):
    """On what the counts depend: the processor is the one that valgrind shows."""
    return under_valgrind([f"{build}/benchmarks/instructions", "--built"], ENVIRONMENT)[0].strip()


def recorded():
    """With what the counts on record were made, and these."""
    if not os.path.exists(RECORD):
        return "", {}
    with open(RECORD, encoding="utf-8") as lines:
        made_with = next(lines).removeprefix("# ").strip()
        return made_with, {name: int(number) for name, number in map(str.split, lines)}


def update(made_with, found):
    with open(RECORD, "w", encoding="utf-8") as file:
        file.write(f"# {made_with}\n")
        file.writelines(f"{name} {number}\n" for name, number in found.items())


def compare(found, known):
    """Prints each count beside that on record; false if one is too large or has none."""
    is_good = True
    for name, number in found.items():
        change = number / known[name] - 1.0 if name in known else None
        is_risen = change is None or change > MOST_RISE
        is_good = is_good and not is_risen
        shown = "not on record" if change is None else f"{change:+.2%}"
        print(f"{name:20}{number:>12,}  {shown}{'  <-- risen' if is_risen else ''}")
    return is_good


def main(build, *options):
    made_with = built(build)
    known_with, known = recorded()
    found = counts(build)
    if options == ("--update",):
        compare(found, known)
        update(made_with, found)
    elif made_with != known_with:
        print(f"Not compared: this is {made_with}; on record is {known_with or 'nothing'}.")
        for name, number in found.items():
            print(f"{name:20}{number:>12,}")
    elif not compare(found, known):
        sys.exit(f"More instructions than on record by over {MOST_RISE:.0%}; if that is meant:"
                 " scripts/bench --instructions --update")


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--update"]):
        sys.exit(__doc__)
    main(*sys.argv[1:])
