#!/usr/bin/python3
"""Tests that libraries export what their headers mark, and nothing else.

Usage: exports_test.py FOLDER=LIBRARY…: a folder of src, and the library that is built from it.
"""

import re
import subprocess
import sys
import unittest
from pathlib import Path

SRC = Path(__file__).resolve().parents[2] / "src"
MARK = re.compile(r"\bPCD_(?:TEST_)?EXPORT\s+(?:(?:class|struct)\s+)?([^;{]*)")
TYPE = re.compile(r"\b(?:class|struct)\s+PCD_(?:TEST_)?EXPORT\s+(\w+)")
FUNCTION = re.compile(r"(operator\S+|\w+)\s*\(")
BEFORE = re.compile(r"^(?:typeinfo (?:name )?for |vtable for |(?:non-)?virtual thunk to |VTT for |"
                    r"guard variable for |construction vtable for .*-in-)+")
# What Qt looks for in a plugin, and the plugin's catalogue.
ENTRY = {"qt_plugin_instance", "qt_plugin_query_metadata_v2", "qInitResources_ptdevice()",
         "qCleanupResources_ptdevice()"}
LIBRARIES = {}


def marked(folder):
    """The names of the types and functions that the headers of a folder mark."""
    names = set()
    for path in (SRC / folder).rglob("*.h"):
        text = path.read_text(encoding="utf-8")
        names.update(TYPE.findall(text))
        for rest in MARK.findall(text):
            names.update(FUNCTION.findall(rest)[:1])
    return names


def exported(library):
    """The symbols that a library defines for others, as they are written in C++."""
    ended = subprocess.run(["nm", "--dynamic", "--demangle", "--defined-only", library], check=True,
                           capture_output=True, text=True)
    return [line.split(" ", 2)[2] for line in ended.stdout.splitlines()]


def is_marked(symbol, names):
    """True if a symbol is a marked function, or belongs to a marked type."""
    path = re.split(r"[(<\[]", BEFORE.sub("", symbol).replace("operator<", "operator\0")
                    .replace("operator\0<", "operator\0\0"))[0].replace("\0", "<")
    return bool(set(path.split("::")) & names)


class ExportsTest(unittest.TestCase):
    """The symbols of every library."""

    def test_only_what_is_marked_is_exported(self):
        self.assertTrue(LIBRARIES)
        for folder, library in LIBRARIES.items():
            with self.subTest(folder):
                names, symbols = marked(folder), exported(library)
                self.assertGreater(len(names & {part for symbol in symbols
                                                for part in re.findall(r"\w+", symbol)}), 3)
                others = [symbol for symbol in symbols
                          if symbol not in ENTRY and not is_marked(symbol, names)]
                self.assertEqual(others, [], f"{library} exports more than its headers mark")


if __name__ == "__main__":
    LIBRARIES = dict(argument.split("=", 1) for argument in sys.argv[1:])
    unittest.main(argv=sys.argv[:1])
