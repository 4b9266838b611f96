#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs clang-tidy on sources, several of them at a time as if they were one.

usage: tidy.py BUILD SOURCE...
  BUILD   a configured build folder with a compile_commands.json; works in BUILD/together

Most of the time of clang-tidy goes into the headers of Qt. So sources that are compiled with the
same options are included, one after the other, by one source. Where that does not compile, since
two of them give the same name to something of their own, each is checked alone.

Prints what clang-tidy finds. Fails if it finds something.
"""
import json
import os
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from itertools import groupby
from pathlib import Path

MOST_TOGETHER = 12
TIDY = ["clang-tidy-14", "--quiet"]
INCLUDE = '#include "{}" // NOLINT(bugprone-suspicious-include)\n'


def options(command):
    """The command without the names of its source and of what it makes."""
    words = shlex.split(command["command"])
    out = words.index("-o")
    return words[:out] + [word for word in words[out + 2:] if word not in ("-c", command["file"])]


def batches(commands):
    """Lists of commands that differ only in their source."""
    for _, group in groupby(commands, options):
        group = list(group)
        count = -(-len(group) // MOST_TOGETHER)
        # The sizes differ by one at most, lest a last batch of one source needs all headers again.
        yield from (group[i::count] for i in range(count))


def tidy(folder, source, *more):
    return subprocess.run([*TIDY, "-p", folder, *more, source], capture_output=True, text=True,
                          check=False)


def own_files(sources):
    """What warnings may be about: the headers as ever, and the sources that are included."""
    headers = re.search(r"HeaderFilterRegex: '(.*)'", Path(".clang-tidy").read_text()).group(1)
    return "|".join([headers, *(re.escape(source) + "$" for source in sources)])


def check(build, together, index, batch):
    """What clang-tidy says of a batch, and whether it found nothing."""
    sources = [command["file"] for command in batch]
    results = []
    if len(sources) > 1:
        source = str(together / f"{index}.cpp")
        results = [tidy(together, source, f"--header-filter={own_files(sources)}")]
    if not results or "clang-diagnostic-" in results[0].stdout:
        results = [tidy(build, source) for source in sources]
    return ("".join(result.stdout for result in results),
            all(result.returncode == 0 for result in results))


def write_batches(together, all_batches):
    together.mkdir(exist_ok=True)
    commands = []
    for index, batch in enumerate(all_batches):
        source = together / f"{index}.cpp"
        source.write_text("".join(INCLUDE.format(command["file"]) for command in batch))
        # What one source names for itself may be a name within a function of the next.
        commands.append({"directory": batch[0]["directory"], "file": str(source),
                         "arguments": [*options(batch[0]), "-Wno-shadow", "-c", str(source)]})
    (together / "compile_commands.json").write_text(json.dumps(commands))


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__.strip())
    build = Path(sys.argv[1]).resolve()
    wanted = {str(Path(source).resolve()) for source in sys.argv[2:]}
    commands = json.loads((build / "compile_commands.json").read_text())
    commands = sorted((command for command in commands if command["file"] in wanted),
                      key=lambda command: (options(command), command["file"]))
    missing = wanted - {command["file"] for command in commands}
    if missing:
        sys.exit(f"not in {build}: {', '.join(sorted(missing))}")
    all_batches = sorted(batches(commands), key=len, reverse=True)
    together = build / "together"
    write_batches(together, all_batches)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(lambda item: check(build, together, *item), enumerate(all_batches)))
    sys.stdout.write("".join(text for text, _ in results))
    sys.exit(0 if all(clean for _, clean in results) else 1)


if __name__ == "__main__":
    main()
