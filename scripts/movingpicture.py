#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws three of the examples in a box that changes all the time, as an SVG picture that moves by
itself. What is drawn is what the tool makes of the examples.

usage: scripts/movingpicture.py KPGEOM OUT.svg
"""

import math
import pathlib
import subprocess
import sys

DOCUMENTS = pathlib.Path(__file__).resolve().parent.parent / "examples/documents"
SHAPES = [
    ("callout", "upper corners keep their size"),
    ("arrow", "the head follows the smaller side"),
    ("plate", "holes stay in their corners"),
]
FRAMES = 32
SECONDS = 7
CELL = 270
MARGIN = 18
HEIGHT = 226


def boxes():
    """Once around: the last one is the first one again."""
    for frame in range(FRAMES + 1):
        turn = 2 * math.pi * frame / FRAMES
        yield round(185 + 45 * math.cos(turn)), round(135 + 45 * math.sin(turn))


def outlines(tool, name, box):
    """The path data of a document in a box, an outline a line."""
    command = [tool, "svg", "--precision", "1", "--size", f"{box[0]}x{box[1]}"]
    done = subprocess.run(
        [*command, DOCUMENTS / f"{name}.xml"], check=True, capture_output=True, text=True
    )
    return done.stdout.splitlines()


def animated(element, attributes):
    """An element whose attributes go through a list of values each."""
    first = " ".join(f'{name}="{values[0]}"' for name, values in attributes.items())
    moves = "".join(
        f'<animate attributeName="{name}" dur="{SECONDS}s" repeatCount="indefinite" '
        f'values="{";".join(str(value) for value in values)}"/>'
        for name, values in attributes.items()
    )
    return f"{element} {first}>{moves}"


def cell(tool, name, caption):
    sizes = list(boxes())
    widths = [width for width, _ in sizes]
    heights = [height for _, height in sizes]
    lines = [f'    <text x="0" y="{HEIGHT - MARGIN - 14}">{caption}</text>']
    frames = zip(*(outlines(tool, name, size) for size in sizes), strict=True)
    for number, drawn in enumerate(frames):
        path = f'<path class="{"detail" if number else "body"}"'
        lines.append(f'    {animated(path, {"d": drawn})}</path>')
    box = animated('<rect class="box"', {"width": widths, "height": heights})
    handle = animated(
        '<rect class="handle" width="8" height="8"',
        {"x": [width - 4 for width in widths], "y": [height - 4 for height in heights]},
    )
    return [*lines, f"    {box}</rect>", f"    {handle}</rect>"]


STYLE = """
    :root { color-scheme: light dark; }
    .body { fill: #cfe0f3; stroke: #2f6db5; stroke-width: 1.5; }
    .detail { fill: #ffffff; stroke: #2f6db5; stroke-width: 1.5; }
    .box { fill: none; stroke: #8a94a3; stroke-dasharray: 4 4; }
    .handle { fill: #d9822b; }
    text { fill: #596273; font: 14px system-ui, "DejaVu Sans", sans-serif; }
    @media (prefers-color-scheme: dark) {
      .body { fill: #24405f; stroke: #82b6f5; }
      .detail { fill: #16191f; stroke: #82b6f5; }
      .box { stroke: #77818f; }
      text { fill: #a3acba; }
    }
"""


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__.rsplit("\n\n", 1)[1].strip())
    width = CELL * len(SHAPES)
    lines = []
    for number, (name, caption) in enumerate(SHAPES):
        lines.append(f'  <g transform="translate({MARGIN + number * CELL} {MARGIN})">')
        lines += cell(sys.argv[1], name, caption)
        lines.append("  </g>")
    pathlib.Path(sys.argv[2]).write_text(
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{HEIGHT}" '
        f'viewBox="0 0 {width} {HEIGHT}" role="img">\n'
        "  <!-- Made by scripts/movingpicture.py. -->\n"
        "  <title>Three shapes in a box that changes: "
        f"{', '.join(caption for _, caption in SHAPES)}</title>\n"
        f"  <style>{STYLE}  </style>\n" + "\n".join(lines) + "\n</svg>\n",
        encoding="utf-8",
    )


if __name__ == "__main__":
    main()
