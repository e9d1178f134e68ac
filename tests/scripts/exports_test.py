#!/usr/bin/python3
"""Tests that libraries export what their headers mark, and nothing else.

Usage: exports_test.py FOLDER=LIBRARY…: a folder of src, and the library that is built from it.
"""

import re
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SRC = ROOT / "src"
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))

from interface.libraries import ENTRY  # noqa: E402  (the path comes first)
from interface.marks import FOR_HOSTS, FOR_TESTS, Marks  # noqa: E402

LIBRARIES = {}


def marked(folder):
    """What the headers of a folder mark."""
    return Marks((path.read_text(encoding="utf-8") for path in (SRC / folder).rglob("*.h")),
                 {FOR_HOSTS, FOR_TESTS})


def exported(library):
    """The symbols that a library defines for others, as they are written in C++."""
    ended = subprocess.run(["nm", "--dynamic", "--demangle", "--defined-only", library], check=True,
                           capture_output=True, text=True)
    return [line.split(" ", 2)[2] for line in ended.stdout.splitlines()]


class ExportsTest(unittest.TestCase):
    """The symbols of every library."""

    def test_only_what_is_marked_is_exported(self):
        self.assertTrue(LIBRARIES)
        for folder, library in LIBRARIES.items():
            with self.subTest(folder):
                marks, symbols = marked(folder), exported(library)
                self.assertGreater(len(marks.names & {part for symbol in symbols
                                                      for part in re.findall(r"\w+", symbol)}), 3)
                others = [symbol for symbol in symbols
                          if symbol not in ENTRY and not marks.cover(symbol)]
                self.assertEqual(others, [], f"{library} exports more than its headers mark")


if __name__ == "__main__":
    LIBRARIES = dict(argument.split("=", 1) for argument in sys.argv[1:])
    unittest.main(argv=sys.argv[:1])
