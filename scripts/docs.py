#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Finishes the pages that doxygen has made: headings get names that last, links between the guides
and to files of the source tree lead where they should, code begins at the left, and long guides have a
list of their headings. Then every link is followed.

usage: scripts/docs.py FOLDER
"""

import html
import pathlib
import re
import shutil
import sys
import urllib.parse

SOURCE = pathlib.Path(__file__).resolve().parent.parent
HEADING = re.compile(
    r'<h([1-6])><a class="anchor" id="(autotoc_md\d+)"></a>\s*(.*?)</h\1>', re.DOTALL
)
TEXT = '<div class="textblock">'
FRAGMENT = re.compile(r'<div class="fragment">.*?</div><!-- fragment -->', re.DOTALL)
# The search has a style of its own, which knows nothing of the dark.
SEARCH_STYLE = re.compile(r'<link href="[^"]*search/search\.css"[^>]*>\n?')
NAMED_HEADING = re.compile(r'<h([12])><a class="anchor" id="([^"]+)"></a>\s*(.*?)</h\1>')
LINK = re.compile(r'\b(href|src|data)="([^"]*)"')


def name_of(heading, taken):
    """The name that code hosts give to a heading, so that the guides' links work there and here."""
    text = html.unescape(re.sub(r"<[^>]*>", "", heading)).strip().lower()
    name = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
    count = taken.setdefault(name, -1) + 1
    taken[name] = count
    return f"{name}-{count}" if count else name


def name_headings(pages):
    """Gives every heading its name: doxygen has numbered them, through all pages."""
    names = {}
    for page, text in pages.items():
        # Doxygen shows the tags of code in a heading.
        text = pages[page] = re.sub(
            r"&lt;tt&gt;(.*?)&lt;/tt&gt;", r"<code>\1</code>", text
        )
        taken = {}
        for _, number, heading in HEADING.findall(text):
            names[number] = name_of(heading, taken)
    for page, text in pages.items():
        pages[page] = re.sub(
            r"\bautotoc_md\d+\b", lambda match: names.get(match[0], match[0]), text
        )


def contents_of(page):
    """A list of the headings of a guide, that code hosts would show as well."""
    headings = NAMED_HEADING.findall(page)
    if len(headings) < 4:
        return ""
    rows = "".join(
        f'<li class="level{level}"><a href="#{name}">{re.sub("</?code>", "", heading)}</a></li>\n'
        for level, name, heading in headings
    )
    return f'<nav class="toc"><ul>\n{rows}</ul></nav>\n'


def outdent(fragment):
    """Moves a piece of code to the left by what all of its lines begin with."""
    lines = re.findall(r'<div class="line">( *)(?=[^ ]|$)(?!</div>)', fragment[0])
    blanks = min(map(len, lines), default=0)
    return fragment[0].replace('<div class="line">' + " " * blanks, '<div class="line">')


class Folder:
    """The pages and what they lead to."""

    def __init__(self, path):
        self.path = path
        self.pages = {
            page: page.read_text(encoding="utf-8") for page in sorted(path.rglob("*.html"))
        }
        self.faults = []

    def source_link(self, link):
        """A link of a guide, relative to docs/ in the source tree, as one between the pages."""
        # Where a link stands in a list, doxygen takes the sign before the place for C++.
        target, _, fragment = link.replace(".md::", ".md#").partition("#")
        file = (SOURCE / "docs" / target).resolve()
        if not file.is_relative_to(SOURCE) or not file.exists():
            return link
        place = file.relative_to(SOURCE)
        page = self.path / f"md_{place.with_suffix('').as_posix().replace('/', '_')}.html"
        if page.exists():
            return page.name + (f"#{fragment}" if fragment else "")
        return self.copy_of(file, place).as_posix()

    def copy_of(self, file, place):
        """Puts a file, or a folder and a page that lists it, beside the pages."""
        copy = pathlib.Path("source") / place
        if not file.is_dir():
            (self.path / copy).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(file, self.path / copy)
            return copy
        files = sorted(each for each in file.iterdir() if each.is_file())
        for each in files:
            self.copy_of(each, place / each.name)
        rows = "".join(f'<li><a href="{each.name}">{each.name}</a></li>\n' for each in files)
        (self.path / copy / "index.html").write_text(
            '<!DOCTYPE html>\n<html lang="en"><head><meta charset="UTF-8"/>\n'
            f"<title>{place}</title></head>\n<body><h1>{place}</h1>\n<ul>\n{rows}</ul></body></html>\n",
            encoding="utf-8",
        )
        return copy / "index.html"

    def mend_links(self):
        for page, text in self.pages.items():

            def mended(match):
                target = match[2].partition("#")[0]
                if not target or "//" in target or (page.parent / target).exists():
                    return match[0]
                return f'{match[1]}="{self.source_link(match[2])}"'

            self.pages[page] = LINK.sub(mended, SEARCH_STYLE.sub("", text))

    def add_contents(self):
        for page, text in self.pages.items():
            if page.name.startswith("md_"):
                text = text.replace(TEXT, contents_of(text) + TEXT, 1)
            self.pages[page] = text

    def outdent_code(self):
        for page, text in self.pages.items():
            self.pages[page] = FRAGMENT.sub(outdent, text)

    def write(self):
        for page, text in self.pages.items():
            page.write_text(text, encoding="utf-8")

    def check(self):
        for page, text in self.pages.items():
            if "@ref " in text:
                self.faults.append(f"{page}: doxygen shows a link as text")
            for _, link in LINK.findall(text):
                self.check_link(page, html.unescape(link))

    def check_link(self, page, link):
        parts = urllib.parse.urlsplit(link)
        if parts.scheme == "javascript":
            return
        if parts.scheme or parts.netloc:
            self.faults.append(f"{page}: leads away from the pages: {link}")
            return
        target = page.parent / urllib.parse.unquote(parts.path) if parts.path else page
        if not target.is_file():
            self.faults.append(f"{page}: leads nowhere: {link}")
        elif parts.fragment and target in self.pages:
            wanted = re.escape(html.escape(parts.fragment))
            if not re.search(rf'\b(?:id|name)="{wanted}"', self.pages[target]):
                self.faults.append(f"{page}: no such place: {link}")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__.rsplit("\n\n", 1)[1].strip())
    folder = Folder(pathlib.Path(sys.argv[1]))
    name_headings(folder.pages)
    folder.mend_links()
    folder.outdent_code()
    folder.add_contents()
    folder.write()
    folder.check()
    sys.exit("\n".join(folder.faults) or None)


if __name__ == "__main__":
    main()
