#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints a table of ratios from results of Google Benchmark.

usage: ratios.py RESULT.json...

A line compares the medians of two benchmarks of one run. The pairs stand below; a place in
braces is filled in from the arguments of the benchmark.
"""
import json
import re
import sys

# What is compared, ours, the peer. {} stands for whatever follows in both.
PAIRS = [
    ("next segment, against plain calls", "walkForwards{}", "walkPeerPlainCalls{}"),
    ("previous segment, against plain calls", "walkBackwards{}", "walkPeerPlainCalls{}"),
    ("next in any order, against plain calls", "neighboursAtRandom{}",
     "neighboursAtRandomPeerPlainCalls{}"),
    ("next and front removed, against removal", "neighboursWhileTheFrontGoes{}",
     "neighboursWhileTheFrontGoesPeerRemoval{}"),
    ("save, stream, against ready texts", "saveStream{}", "saveStreamPeerReadyTexts{}"),
    ("parse, stream, against a bare reader", "parseStream{}", "parseStreamPeerBareReader{}"),
    ("save, DOM, against ready texts", "saveDom{}", "saveDomPeerReadyTexts{}"),
    ("parse, DOM, against a bare walk", "parseDom{}", "parseDomPeerWalk{}"),
    ("number of a name, against a hash", "quarkFromString", "quarkFromStringPeerHash"),
    ("to undo record, against a copy of memory", "toUndo{}", "toUndoPeerCopyOfMemory{}"),
    ("from undo record, against new and delete", "fromUndo{}", "fromUndoPeerAllocation{}"),
    ("clone, against new and delete", "cloneAndDestroy{}", "cloneAndDestroyPeerAllocation{}"),
    ("to path, against a painter path", "toPath{}", "pathPeerPainterPath{}"),
    ("from path, against a painter path", "fromPath{}", "pathPeerPainterPath{}"),
    ("update values, against a flat array", "updateValue{}", "updateValuePeerFlatArray{}"),
    ("update rates, against a flat array", "updateRate{}", "updateRatePeerFlatArray{}"),
    ("transform, against a flat array", "applyTransform{}", "applyTransformPeerFlatArray{}"),
    ("translate, against a flat array", "translate{}", "translatePeerFlatArray{}"),
    ("learn rules, against reading the drawings", "fitOutlines{}", "fitOutlinesPeerReading{}"),
    ("read a document, against a bare reader", "readOutlines{}", "readOutlinesPeerBareReader{}"),
    ("read it with its markup, against the same", "readOutlinesAndMarkup{}",
     "readOutlinesPeerBareReader{}"),
    ("tint, against six powers", "tint{}", "tintPeerSixPowers{}"),
    ("shade, against six powers", "shade{}", "shadePeerSixPowers{}"),
    ("find transform, against a bare map", "getColorFunc{}", "getColorFuncPeerMap{}"),
    ("find transform, against a map by value", "getColorFunc{}", "getColorFuncPeerMapByValue{}"),
    ("add recent file, against a list of strings", "addNew{}", "peerAddNew{}"),
    ("blur, against a copy of the memory", "ours{radius}{flatness}", "copyOfMemory"),
    ("blur, against the scalar one", "ours{radius}{flatness}", "scalar{radius}{flatness}"),
    ("blur, against cv::GaussianBlur", "ours{radius}{flatness}", "peerGaussian{radius}"),
    ("blur, against two cv::blur", "ours{radius}{flatness}", "peerTwoBoxes{radius}"),
    ("own picture's blur, against a copy", "oursMoved{radius}{flatness}", "copyOfMemory"),
    ("blur of 8K, against 16 of 1080p", "largeOurs{radius}{flatness}",
     "largeInParts{radius}{flatness}"),
    ("own picture's blur of 8K, against 16", "largeOursMoved{radius}{flatness}",
     "largeInParts{radius}{flatness}"),
    ("blur of 64 x 64, against the scalar one", "smallOurs{radius}{flatness}",
     "smallScalar{radius}{flatness}"),
    ("digest, against Qt's MD5", "ours{bytes}", "peerQt{bytes}"),
    ("digest, against OpenSSL's MD5", "ours{bytes}", "peerOpenSsl{bytes}"),
]

NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def medians(file):
    """The median times of one run in nanoseconds, by the name of the benchmark."""
    with open(file, encoding="utf-8") as text:
        results = json.load(text)["benchmarks"]
    return {
        result["run_name"]: result["real_time"] * NANOSECONDS[result["time_unit"]]
        for result in results
        if result.get("aggregate_name") == "median"
    }


def pattern(name):
    """A regular expression for a name of PAIRS, with a group for each place."""
    parts = re.split(r"(\{\w*\})", name)
    expressions = []
    for part in parts:
        if part == "{}":
            expressions.append(r"(?P<rest>(?:/[^/]+)*)")
        elif part.startswith("{"):
            expressions.append(rf"(?P<{part[1:-1]}>/{part[1:-1]}:[^/]+)")
        else:
            expressions.append(re.escape(part))
    return re.compile("".join(expressions) + "$")


def by_numbers(item):
    """Sorts names that differ in numbers by these."""
    return [int(part) if part.isdigit() else part for part in re.split(r"(\d+)", item[0])]


def lines_of(times):
    for title, ours, peer in PAIRS:
        for name, time in sorted(times.items(), key=by_numbers):
            match = pattern(ours).match(name)
            if not match:
                continue
            places = match.groupdict()
            peer_name = re.sub(
                r"\{(\w*)\}", lambda place: places.get(place.group(1) or "rest", ""), peer)
            if peer_name in times:
                arguments = "".join(places.values()).replace("/", " ").strip()
                yield title, arguments, time, times[peer_name]


def duration(nanoseconds):
    for unit in ("s", "ms", "us"):
        if nanoseconds >= NANOSECONDS[unit]:
            return f"{nanoseconds / NANOSECONDS[unit]:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def main(files):
    print(f"{'':45}{'':25}{'ours':>10}{'peer':>10}  time of ours / peer's")
    for file in files:
        for title, arguments, ours, peer in lines_of(medians(file)):
            print(f"{title:45}{arguments:25}{duration(ours):>10}{duration(peer):>10}"
                  f"{ours / peer:>8.3f}")


if __name__ == "__main__":
    main(sys.argv[1:])
