#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the folders and which of them may include which, as scripts/layers has it: a box for a
folder, an arrow for what it uses. Arrows that follow from others are left out.

usage: scripts/architecture.py OUT.svg
"""

import html
import pathlib
import re
import sys

LAYERS = pathlib.Path(__file__).resolve().parent / "layers"

# What the folders belong to, from the top to the bottom of the picture: the beginnings of their
# paths, and what the box around them is called.
ROWS = [
    [("tools/kpgeom", "kpgeom, the tool"), ("tools/kpshapes", "kpshapes, the editor")],
    [("tools/process", "")],
    [("tools/core/", "kpgeomcore, what the tools share"), ("examples/", "examples")],
    [("src/", "libkpgeometry")],
    [("companions/kpbx", "libKPBX"), ("companions/kpgraphics", "libkpgraphics")],
]
GROUPS = [group for row in ROWS for group in row]

BOX_HEIGHT = 30
ROOM = 12
LEVEL = BOX_HEIGHT + 22
TITLE = 26
ROW_GAP = 34
WIDTH = 860


def read_layers():
    """Folders, and for each those that it may include."""
    text = LAYERS.read_text(encoding="utf-8")
    table = dict(re.findall(r"""^    \[([\w/]+)\]=['"](.*)['"]$""", text, re.MULTILINE))
    if len(table) < 20:
        sys.exit(f"{LAYERS}: the table of folders is written in another way")
    uses = {}
    for folder, patterns in table.items():
        used = set()
        for pattern in patterns.split():
            beginning = re.sub(r"[$*].*", "", pattern)
            used.update(other for other in table if (other + "/").startswith(beginning))
        # A room may include what stands in the folder around it, which is main() and no more.
        uses[folder] = {other for other in used if not folder.startswith(other)}
    return uses


def reduced(uses):
    """Without the arrows that follow from two others."""
    return {
        one: {
            other
            for other in used
            if not any(other in uses[between] for between in used if between != other)
        }
        for one, used in uses.items()
    }


def group_of(folder):
    for beginning, _ in GROUPS:
        if folder.startswith(beginning):
            return beginning
    sys.exit(f"{folder} of {LAYERS} has no place in the picture: name it in {__file__}")


def heights(uses):
    """How many arrows lead down from a folder, at most: 0 for what uses nothing."""
    found = {}

    def height(one):
        if one not in found:
            found[one] = 1 + max((height(other) for other in uses[one]), default=-1)
        return found[one]

    for one in uses:
        height(one)
    return found


def text_width(text):
    return 7.4 * len(text)


class Group:
    """The folders that make one library or program, each in its level."""

    def __init__(self, title, folders, uses):
        self.title = title
        inner = {folder: uses[folder] & set(folders) for folder in folders}
        self.arrows = reduced(inner)
        self.levels = self.ordered_levels()
        widths = [
            sum(self.box_width(folder) for folder in each) + ROOM * (len(each) - 1)
            for each in self.levels
        ]
        self.width = max([*widths, 1.15 * text_width(title)]) + 2 * ROOM
        self.head = TITLE if title else ROOM
        self.height = self.head + LEVEL * len(self.levels) - (LEVEL - BOX_HEIGHT) + ROOM

    def ordered_levels(self):
        """From the top down, each level in the order of what its folders use below."""
        height = heights(self.arrows)
        levels = []
        place = {}
        for level in range(max(height.values()) + 1):
            folders = sorted(folder for folder in height if height[folder] == level)
            below = {
                folder: [place[other] for other in self.arrows[folder]] or [0]
                for folder in folders
            }
            folders.sort(key=lambda folder: sum(below[folder]) / len(below[folder]))
            place.update((folder, number) for number, folder in enumerate(folders))
            levels.insert(0, folders)
        return levels

    @staticmethod
    def box_width(folder):
        return text_width(folder.rsplit("/", 1)[-1]) + 22

    def place(self, x, y):
        """Where the boxes stand if the group does at `x` and `y`."""
        boxes = {}
        for number, folders in enumerate(self.levels):
            total = sum(self.box_width(each) for each in folders) + ROOM * (len(folders) - 1)
            left = x + (self.width - total) / 2
            for folder in folders:
                boxes[folder] = (left, y + self.head + number * LEVEL, self.box_width(folder))
                left += self.box_width(folder) + ROOM
        return boxes


def arrow(start, end):
    (x1, y1), (x2, y2) = start, end
    middle = (y1 + y2) / 2
    return (
        f'<path class="arrow" d="M{x1:.0f} {y1:.0f}C{x1:.0f} {middle:.0f} '
        f'{x2:.0f} {middle:.0f} {x2:.0f} {y2 - 3:.0f}" marker-end="url(#head)"/>'
    )


def draw(uses):
    members = {beginning: [] for beginning, _ in GROUPS}
    for folder in uses:
        members[group_of(folder)].append(folder)
    between = {
        one: {
            group_of(other) for folder in members[one] for other in uses[folder]
        } - {one}
        for one in members
    }
    lines = []
    frames = {}
    y = 10
    for row in ROWS:
        groups = [(name, Group(title, members[name], uses)) for name, title in row]
        spare = (WIDTH - sum(group.width for _, group in groups)) / (len(groups) + 1)
        height = max(group.height for _, group in groups)
        x = 0.0
        for name, group in groups:
            x += spare
            top = y + height - group.height
            lines += frame(group, x, top)
            frames[name] = (x, top, group.width, group.height)
            x += group.width
        y += height + ROW_GAP
    total = y - ROW_GAP + 10
    for one, others in reduced(between).items():
        for other in sorted(others):
            lines.append(arrow(*ends(frames[one], frames[other])))
    return total, lines


def ends(upper, lower):
    """From the lower edge of one frame to the upper edge of another, as upright as can be."""
    left = max(upper[0], lower[0])
    right = min(upper[0] + upper[2], lower[0] + lower[2])
    if left + 30 <= right:
        middle = (left + right) / 2
        return (middle, upper[1] + upper[3]), (middle, lower[1])
    return (upper[0] + upper[2] / 2, upper[1] + upper[3]), (lower[0] + lower[2] / 2, lower[1])


def frame(group, x, y):
    lines = [
        f'<rect class="frame" x="{x:.0f}" y="{y:.0f}" width="{group.width:.0f}" height="{group.height:.0f}" rx="8"/>',
        f'<text class="title" x="{x + ROOM:.0f}" y="{y + 18:.0f}">{html.escape(group.title)}</text>',
    ]
    boxes = group.place(x, y)
    for folder, (left, top, width) in boxes.items():
        name = folder.rsplit("/", 1)[-1]
        lines.append(
            f'<rect class="room" x="{left:.0f}" y="{top:.0f}" width="{width:.0f}" height="{BOX_HEIGHT}" rx="4"/>'
        )
        lines.append(
            f'<text class="name" x="{left + width / 2:.0f}" y="{top + 20:.0f}">{html.escape(name)}</text>'
        )
        for other in sorted(group.arrows[folder]):
            other_left, other_top, other_width = boxes[other]
            lines.append(
                arrow(
                    (left + width / 2, top + BOX_HEIGHT),
                    (other_left + other_width / 2, other_top),
                )
            )
    return lines


STYLE = """
    :root { color-scheme: light dark; }
    .frame { fill: #f2f4f7; stroke: #c3cad4; }
    .room { fill: #ffffff; stroke: #7c899b; }
    .title { fill: #4c5667; font: 600 13px "DejaVu Sans", system-ui, sans-serif; }
    .name { fill: #1f2430; font: 13px "DejaVu Sans Mono", ui-monospace, monospace; text-anchor: middle; }
    .arrow { fill: none; stroke: #2f6db5; stroke-width: 1.4; }
    .head { fill: #2f6db5; }
    @media (prefers-color-scheme: dark) {
      .frame { fill: #1f242c; stroke: #3d4654; }
      .room { fill: #16191f; stroke: #6b7789; }
      .title { fill: #a3acba; }
      .name { fill: #e3e6eb; }
      .arrow { stroke: #82b6f5; }
      .head { fill: #82b6f5; }
    }
"""


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__.rsplit("\n\n", 1)[1].strip())
    height, lines = draw(read_layers())
    pathlib.Path(sys.argv[1]).write_text(
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height:.0f}" '
        f'viewBox="0 0 {WIDTH} {height:.0f}" role="img">\n'
        "  <!-- Made by scripts/architecture.py out of scripts/layers. -->\n"
        "  <title>Folders, and which of them use which: arrows run downwards only</title>\n"
        f"  <style>{STYLE}  </style>\n"
        '  <defs><marker id="head" class="head" viewBox="0 0 8 8" refX="6" refY="4" markerWidth="7" '
        'markerHeight="7" orient="auto"><path d="M0 0 8 4 0 8Z"/></marker></defs>\n'
        + "".join(f"  {line}\n" for line in lines)
        + "</svg>\n",
        encoding="utf-8",
    )


if __name__ == "__main__":
    main()
