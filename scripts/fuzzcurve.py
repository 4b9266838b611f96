#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Copies what libFuzzer prints, and notes how its coverage grows.

usage: libFuzzer's program 2>&1 | fuzzcurve.py COVERAGE.csv
       fuzzcurve.py --last COVERAGE.csv   says what was reached in all runs

A row of the file: seconds and inputs of all runs so far; edges of the code; features, which are
edges and how often they were taken; inputs in the corpus. A run adds a row where one of the last
three grew, at most one a second, and one at its end.
"""
import csv
import os
import re
import sys
import time

COLUMNS = ["seconds", "inputs", "edges", "features", "corpus"]
STATUS = re.compile(r"#(\d+)\s+\w+\s+cov: (\d+) ft: (\d+) corp: (\d+)")


def last_row(path):
    """The numbers of the last row; zeros if there is none."""
    row = dict.fromkeys(COLUMNS, 0)
    if os.path.exists(path):
        with open(path, newline="", encoding="ascii") as file:
            for row in csv.DictReader(file):
                pass
    return [float(row["seconds"])] + [int(row[name]) for name in COLUMNS[1:]]


def copy_and_note(path):
    """Copies the input line by line; appends rows to the file."""
    before = last_row(path)
    is_new = not os.path.exists(path)
    start = time.monotonic()
    with open(path, "a", newline="", encoding="ascii") as file:
        writer = csv.writer(file)
        if is_new:
            writer.writerow(COLUMNS)
        noted = before
        row = before
        for line in sys.stdin.buffer:
            sys.stdout.buffer.write(line)
            match = STATUS.match(line.decode("ascii", "replace"))
            if not match:
                continue
            inputs, *reached = (int(number) for number in match.groups())
            seconds = round(before[0] + time.monotonic() - start, 1)
            row = [seconds, before[1] + inputs, *reached]
            if reached != noted[2:] and seconds >= noted[0] + 1:
                writer.writerow(row)
                noted = row
        if row is not noted:
            writer.writerow(row)


def main():
    if sys.argv[1] == "--last":
        seconds, inputs, edges, features, corpus = last_row(sys.argv[2])
        print(f"so far {seconds:.0f} s, {inputs} inputs, {edges} edges, {features} features, "
              f"{corpus} inputs kept")
    else:
        copy_and_note(sys.argv[1])


main()
