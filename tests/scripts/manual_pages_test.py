#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Reads the manual pages as man does. Usage: manual_pages_test.py PAGE..."""

import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
WIDTHS = (80, 132)  # columns of a terminal: the usual ones, and more


def run(*command, width=80):
    """The standard output and the error output of a program that succeeds."""
    environment = {**os.environ, "MANWIDTH": str(width), "LC_ALL": "C.UTF-8"}
    result = subprocess.run(command, env=environment, capture_output=True, text=True, check=True)
    return result.stdout, result.stderr


class ManualPagesTest(unittest.TestCase):
    """All pages; a page that is not there is a failure."""

    def test_the_pages_are_those_of_the_programs_and_of_the_formats(self):
        self.assertEqual(sorted(page.name for page in PAGES),
                         ["pcd-profile.5", "pcd-recording.5", "pcd-scene.5", "pcdctl.1", "pcdview.1"])

    def test_groff_has_no_warnings(self):
        for page in PAGES:
            for width in WIDTHS:
                with self.subTest(page=page.name, width=width):
                    text, warnings = run("man", "--warnings=w", "--local-file", str(page), width=width)
                    self.assertEqual(warnings, "")
                    self.assertIn("SEE ALSO", text)

    def test_whatis_finds_name_and_purpose(self):
        for page in PAGES:
            with self.subTest(page=page.name):
                self.assertRegex(run("lexgrog", str(page))[0], rf'"{page.stem} - \w.*\w"')

    def test_each_page_that_is_referred_to_exists(self):
        names = {f"{page.stem}({page.suffix[1:]})" for page in PAGES}
        for page in PAGES:
            text = run("man", "--local-file", str(page))[0]
            found = set(re.findall(r"\bpcd[\w-]*\(\d\)", text))
            with self.subTest(page=page.name):
                self.assertLess({"pcdctl(1)", "pcdview(1)"} - {f"{page.stem}(1)"}, found)
                self.assertEqual(found - names, set())

    def test_pages_of_programs_have_what_the_help_has(self):
        text = run("man", "--local-file", str(next(page for page in PAGES if page.stem == "pcdctl")))[0]
        for term in ("snap ", "--pixel-size UM", "-c, --camera CAMERA", "PCD_LANG", "--help",
                     "pcdctl modes -c 1", "wrong usage"):
            self.assertIn(term, text)

    def test_pages_of_programs_have_the_variables_of_the_guides(self):
        for program in ("pcdctl", "pcdview"):
            text = run("man", "--local-file", str(next(page for page in PAGES if page.stem == program)))[0]
            guide = (ROOT / "docs" / f"{program}.md").read_text(encoding="utf-8")
            named = set(re.findall(r"`(PCD_\w+|TOUPCAM_\w+)`", guide))
            self.assertTrue(named)
            self.assertEqual({name for name in named if not re.search(rf"^ +{name}\b", text, re.MULTILINE)}, set())

    def test_pages_of_formats_have_the_tables_of_the_guides(self):
        text = run("man", "--local-file", str(next(page for page in PAGES if page.stem == "pcd-scene")))[0]
        for term in ("speedLevels", "TEC_ONOFF", "dropTrigger", "electronsPerCount", '"seed": 5'):
            self.assertIn(term, text)


if __name__ == "__main__":
    PAGES = [Path(page).resolve() for page in sys.argv[1:]]
    unittest.main(argv=sys.argv[:1])
