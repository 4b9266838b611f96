#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What scripts/docs.py makes of pages, and which links it complains of.

usage: tests/docstest.py
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "scripts/docs.py"


class Pages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def finish(self, **pages):
        """Writes the pages and has them finished; gives what was complained of."""
        for name, text in pages.items():
            (self.folder / f"{name}.html").write_text(text, encoding="utf-8")
        done = subprocess.run(
            [sys.executable, SCRIPT, self.folder], capture_output=True, text=True, check=False
        )
        self.assertEqual(done.returncode != 0, bool(done.stderr))
        return done.stderr.replace(f"{self.folder}/", "").splitlines()

    def page(self, name):
        return (self.folder / f"{name}.html").read_text(encoding="utf-8")

    def test_good_links_pass(self):
        faults = self.finish(
            one='<a href="two.html#there">two</a> <a href="#here">up</a> <b id="here"></b>',
            two='<a id="there"></a><a href="javascript:toggle()">more</a>',
        )
        self.assertEqual(faults, [])

    def test_links_to_nothing_are_faults(self):
        faults = self.finish(one='<a href="gone.html">x</a><img src="gone.png"/>')
        self.assertEqual(
            faults, ["one.html: leads nowhere: gone.html", "one.html: leads nowhere: gone.png"]
        )

    def test_missing_places_are_faults(self):
        faults = self.finish(one='<a href="one.html#gone">x</a>')
        self.assertEqual(faults, ["one.html: no such place: one.html#gone"])

    def test_links_to_the_network_are_faults(self):
        faults = self.finish(one='<script src="https://example.org/a.js"></script>')
        self.assertEqual(
            faults, ["one.html: leads away from the pages: https://example.org/a.js"]
        )

    def test_a_link_shown_as_text_is_a_fault(self):
        faults = self.finish(one='see @ref two "the other"')
        self.assertEqual(faults, ["one.html: doxygen shows a link as text"])

    def test_headings_get_the_names_of_code_hosts(self):
        self.finish(
            one='<h1><a class="anchor" id="autotoc_md7"></a>\nA page: &lt;tt&gt;kpgeom&lt;/tt&gt;</h1>'
            '<h2><a class="anchor" id="autotoc_md8"></a>\nAgain</h2>'
            '<h2><a class="anchor" id="autotoc_md9"></a>\nAgain</h2>'
            '<a href="#autotoc_md9">x</a>'
        )
        text = self.page("one")
        self.assertIn('id="a-page-kpgeom"></a>\nA page: <code>kpgeom</code></h1>', text)
        self.assertIn('id="again"', text)
        self.assertIn('<a href="#again-1">x</a>', text)

    def test_links_between_guides_and_to_sources_lead_there(self):
        faults = self.finish(
            md_docs_rules='<h1><a class="anchor" id="autotoc_md1"></a>\nThe eight rules</h1>',
            md_docs_other='<a href="rules.md#the-eight-rules">rules</a>'
            '<a href="rules.md::the-eight-rules">rules</a>'
            '<a href="../examples/documents/arrow.xml">arrow</a><a href="../schema">schema</a>',
        )
        self.assertEqual(faults, [])
        text = self.page("md_docs_other")
        self.assertEqual(text.count('href="md_docs_rules.html#the-eight-rules"'), 2)
        self.assertTrue((self.folder / "source/examples/documents/arrow.xml").is_file())
        self.assertIn("shapes.rng", self.page("source/schema/index"))

    def test_code_begins_at_the_left(self):
        code = '<div class="fragment"><div class="line">{}a {{</div>\n<div class="line"> </div>\n<div class="line">{}b</div>\n</div><!-- fragment -->'
        self.finish(one=code.format(" " * 4, " " * 8))
        self.assertEqual(self.page("one"), code.format("", " " * 4))


if __name__ == "__main__":
    unittest.main()
