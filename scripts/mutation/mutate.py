# SPDX-License-Identifier: MIT
"""Mutation testing of the library; see scripts/mutate."""

import argparse
import json
import os
import time
from collections import Counter, defaultdict
from pathlib import Path

import points
import schemata
import survivors
import trial

ROOT = survivors.ROOT
FOLDER = ROOT / "build/mutate"
RESULTS = FOLDER / "results.json"
LEFT = ("survived", "not reached")
# What tests src and companions; the tools' own tests are another matter.
PROGRAMS = ["tst_" + name for name in """
    md5 kpmath kpbound kppoint unitutil quarkmanager xmlstreamwriter kppath kpfilepathmanager
    numbertext kpcolorio kppathseg kppathsegmoveto kppathseglineto kppathsegcurveto
    kppathsegellipse kppathseglist geometryundo geometryxml neighbours useatexit boundedxml
    markupbounds kpcolor colorutil kprecentfilemanager largeoutlines recentfilesfile savedfile
    filereplacement xmlelement xmltext segmentkind gaussianblur largepages
    colourtables""".split()]


def options():
    parser = argparse.ArgumentParser(
        prog="scripts/mutate",
        description="Changes the library in one place at a time, and sees whether a test fails.")
    parser.add_argument("files", nargs="*", metavar="FILE", help="by default all")
    parser.add_argument("--list", action="store_true", help="only list the mutants")
    parser.add_argument("--again", action="store_true",
                        help="only those without a reason that the last run did not catch")
    parser.add_argument("--tests", metavar="NAME,...", help="only with these test programs")
    parser.add_argument("--slowest", metavar="SECONDS", type=float, default=trial.SLOWEST,
                        help="only with test functions that take no longer")
    parser.add_argument("--jobs", metavar="N", type=int, default=os.cpu_count(),
                        help="how many tests run at a time")
    return parser.parse_args()


def place(mutant):
    return f"{mutant.file.name}:{mutant.line}:{mutant.column}: {mutant.mutant.what}"


def identity(mutant):
    return f"{mutant.file.name}:{mutant.point.start}-{mutant.point.end}: {mutant.mutant.text}"


def chosen(mutants, files, wanted):
    names = {os.path.relpath(name, ROOT) for name in map(os.path.abspath, wanted)}
    unknown = names - set(files)
    if unknown:
        raise SystemExit(f"no source of the library: {', '.join(sorted(unknown))}")
    return [m for m in mutants if not names or m.file.name in names]


def outcome_of(mutant, build, outcomes):
    """"caught", "survived", "not reached", or "constant" of what only the compiler evaluates."""
    if build.is_dropped(mutant.file, mutant.point):
        return "constant"
    outcome = outcomes[identity(mutant)]
    if outcome == "not reached" and mutant.point.constexpr:
        return "constant"
    return outcome if outcome in LEFT else "caught"


def table(mutants, build, outcomes, listed):
    rows = defaultdict(Counter)
    for mutant in mutants:
        for name in (mutant.file.name, "all"):
            rows[name]["mutants"] += 1
            rows[name][outcome_of(mutant, build, outcomes)] += 1
    for key, count in listed.items():
        for name in (key[0], "all"):
            if key[0] in rows:
                rows[name]["with reason"] += count
    columns = ["mutants", "caught", "survived", "not reached", "with reason", "constant"]
    print(f"{'':40}" + "".join(f"{name:>13}" for name in columns) + "   of the tried")
    for name in sorted(rows, key=lambda n: (n == "all", n)):
        row = rows[name]
        tried = row["mutants"] - row["constant"]
        share = f"{100 * row['caught'] / tried:13.1f} %" if tried else ""
        print(f"{name:40}" + "".join(f"{row[column]:13}" for column in columns) + share)


def compare(mutants, build, outcomes, listed, places):
    """Whether what was not caught is what the list says."""
    left = [m for m in mutants if outcome_of(m, build, outcomes) in LEFT]
    counts = Counter(mutant.key() for mutant in left)
    files = {mutant.file.name for mutant in mutants}
    fine = True
    for mutant in left:
        key = mutant.key()
        if counts[key] > listed[key]:
            fine = False
            print(f"{place(mutant)}: {outcomes[identity(mutant)]}, and not listed\n    "
                  + survivors.text_of(key, counts[key]))
    for key in listed:
        if key[0] in files and counts[key] < listed[key]:
            fine = False
            print(f"{survivors.LIST.relative_to(ROOT)}:{places[key]}: is caught: "
                  + survivors.text_of(key, listed[key] - counts[key]))
    return fine


def main():
    wanted = options()
    start = time.monotonic()
    build = schemata.Build(ROOT, {}, FOLDER)
    schemata.synchronize(ROOT, build.tree, Path(__file__).parent / "mutant.h")
    build.configure()
    files = points.known(ROOT, build.tree, build.binaries / "compile_commands.json",
                         FOLDER / "points")
    build = schemata.Build(ROOT, files, FOLDER)
    mutants = chosen(build.mutants, files, wanted.files)
    if wanted.list:
        print("\n".join(map(place, mutants)))
        return 0
    print(f"{len(mutants)} mutants; building", flush=True)
    build.compile(["kpgeometry", "kpbx", "kpgraphics"])
    programs = wanted.tests.split(",") if wanted.tests else PROGRAMS
    build.compile(programs)
    print(f"built after {time.monotonic() - start:.0f} s", flush=True)

    outcomes = json.loads(RESULTS.read_text()) if RESULTS.exists() else {}
    if os.nice(0) == 0:
        os.nice(10)
    tried = [m for m in mutants if not build.is_dropped(m.file, m.point)]
    if wanted.again:
        reasons, _ = survivors.read()
        tried = [m for m in tried if outcomes.get(identity(m), "survived") in LEFT]
        # Of mutants that read alike nobody knows which of them have the reasons.
        alike = Counter(m.key() for m in tried)
        tried = [m for m in tried
                 if identity(m) not in outcomes or alike[m.key()] > reasons[m.key()]]
    trials = trial.Trials(build.binaries, programs, FOLDER, wanted.jobs, wanted.slowest)
    print(f"tests pass after {time.monotonic() - start:.0f} s", flush=True)
    done = 0

    def report(mutant, outcome):
        nonlocal done
        done += 1
        outcomes[identity(mutant)] = outcome
        if outcome in LEFT:
            print(f"{place(mutant)}: {outcome}", flush=True)
        if done % 20 == 0 or done == len(tried):
            RESULTS.write_text(json.dumps(outcomes))
            print(f"{done} of {len(tried)} after {time.monotonic() - start:.0f} s", flush=True)

    trials.try_all(tried, report, build.mutants)
    RESULTS.write_text(json.dumps(outcomes))
    listed, places = survivors.read()
    table(mutants, build, outcomes, listed)
    return 0 if compare(mutants, build, outcomes, listed, places) else 1


if __name__ == "__main__":
    raise SystemExit(main())
