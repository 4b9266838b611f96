#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Computes the results of conformance vectors anew and compares them, to the last bit.

usage: check.py FOLDER [--change]
  FOLDER    where manifest.json and the files of vectors are
  --change  changes each value of some results of every function instead, and fails unless every
            change is found

The formulas are those of the documentation and of the comments in the headers, written once more:
nothing here calls the library or follows its sources. Only functions of the C library (sine, power
and so on) may differ, within the units in the last place that a vector names.
"""
import copy
import json
import math
import sys
from pathlib import Path

import blur  # pylint: disable=unused-import
import colour  # pylint: disable=unused-import
import companions  # pylint: disable=unused-import
import digest  # pylint: disable=unused-import
import documentcolour  # pylint: disable=unused-import
import outlinelist  # pylint: disable=unused-import
import outlinexml  # pylint: disable=unused-import
import plane  # pylint: disable=unused-import
import recentfiles  # pylint: disable=unused-import
import units  # pylint: disable=unused-import
from reals import decoded
from registry import FUNCTIONS

CHANGED_OF_EACH = 4


def is_same_real(left, right, ulps):
    if math.isnan(left) or math.isnan(right):
        return math.isnan(left) and math.isnan(right)
    if ulps and math.isfinite(left) and math.isfinite(right):
        return abs(left - right) <= ulps * math.ulp(max(abs(left), abs(right)))
    return left == right and math.copysign(1.0, left) == math.copysign(1.0, right)


def is_same(value, expected, ulps):
    """Whether JSON is what was computed, in type and value; reals to the bit or as near as allowed."""
    if isinstance(expected, float):
        real = decoded(value)
        return isinstance(real, float) and is_same_real(real, expected, ulps)
    if isinstance(expected, (list, tuple)):
        return isinstance(value, list) and len(value) == len(expected) and all(
            is_same(a, b, ulps) for a, b in zip(value, expected))
    if isinstance(expected, dict):
        return isinstance(value, dict) and value.keys() == expected.keys() and all(
            is_same(value[name], expected[name], ulps) for name in value)
    return type(value) is type(expected) and value == expected


def recomputed(vector):
    result = FUNCTIONS[vector["function"]](**decoded(vector["inputs"]))
    return result if isinstance(result, dict) else {"result": result}


def is_right(vector, expected):
    return is_same(vector["results"], expected, vector.get("ulps", 0))


def read(folder):
    """Each vector with where it stands."""
    manifest = json.loads((folder / "manifest.json").read_text(encoding="utf-8"))
    if manifest["format"] != 1:
        raise SystemExit(f"{folder}/manifest.json: format {manifest['format']} is not known here")
    for name in manifest["files"]:
        with open(folder / name, encoding="utf-8") as file:
            for number, line in enumerate(file, 1):
                yield f"{folder / name}:{number}", json.loads(line)


def check(vectors):
    """Complains of each vector that is not as computed here; returns how many there are."""
    wrong = 0
    for place, vector in vectors:
        name = vector["function"]
        if name not in FUNCTIONS:
            print(f"{place}: {name} is not known here", file=sys.stderr)
            wrong += 1
            continue
        expected = recomputed(vector)
        if not is_right(vector, expected):
            print(f"{place}: {name} of {decoded(vector['inputs'])} is "
                  f"{vector['results']}, not {expected}", file=sys.stderr)
            wrong += 1
    return wrong


def changed(value, ulps):
    """Another value of the same kind, as near as can be told apart."""
    if isinstance(value, bool):
        return not value
    if isinstance(value, int):
        return value + 1
    if value is None:
        return ""
    real = decoded(value)
    if not isinstance(real, float):
        return value + "0" if not value.endswith("0") else value[:-1] + "1"
    if not math.isfinite(real):
        return "0x0p+0"
    return (real + (2 * ulps + 1) * math.ulp(real)).hex()


def leaves(value, path=()):
    """The ways to all values that hold no others."""
    if isinstance(value, (list, dict)) and value:
        entries = value.items() if isinstance(value, dict) else enumerate(value)
        for name, entry in entries:
            yield from leaves(entry, path + (name,))
    elif not isinstance(value, (list, dict)):
        yield path


def with_change(results, path, ulps):
    results = copy.deepcopy(results)
    around = results
    for name in path[:-1]:
        around = around[name]
    around[path[-1]] = changed(around[path[-1]], ulps)
    return results


def check_changes(vectors):
    """Complains of each change that nobody would notice; returns how many there are."""
    seen = {}
    missed = 0
    for place, vector in vectors:
        name = vector["function"]
        seen[name] = seen.get(name, 0) + 1
        if seen[name] > CHANGED_OF_EACH:
            continue
        expected = recomputed(vector)
        for path in leaves(vector["results"]):
            results = with_change(vector["results"], path, vector.get("ulps", 0))
            if is_right({**vector, "results": results}, expected):
                print(f"{place}: {name}: a change at {path} is not noticed", file=sys.stderr)
                missed += 1
    print(f"{len(seen)} functions")
    return missed


def main(arguments):
    if not arguments or arguments[1:] not in ([], ["--change"]):
        print(__doc__.split("\n\n")[1], file=sys.stderr)
        return 2
    vectors = list(read(Path(arguments[0])))
    if not vectors:
        print(f"{arguments[0]}: there are no vectors", file=sys.stderr)
        return 1
    faults = (check_changes if arguments[1:] else check)(vectors)
    print(f"{len(vectors)} vectors")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
