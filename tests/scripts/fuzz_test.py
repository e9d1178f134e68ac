#!/usr/bin/python3
"""Tests of what scripts/fuzz says about its arguments. What it runs is tested by running it."""

import re
import subprocess
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


class FuzzTest(unittest.TestCase):
    """The script with arguments that build and run nothing."""

    def run_script(self, *arguments):
        """Runs the script."""
        return subprocess.run([ROOT / "scripts" / "fuzz", *arguments], capture_output=True, text=True,
                              check=False)

    def test_it_lists_every_target_that_has_a_source(self):
        result = self.run_script("--list")
        self.assertEqual(result.returncode, 0, result.stderr)
        sources = {re.sub("Target$", "", path.stem).lower()
                   for path in (ROOT / "fuzz").glob("*Target.cpp")}
        self.assertEqual(set(result.stdout.split()), sources)

    def test_every_target_has_seeds(self):
        for name in self.run_script("--list").stdout.split():
            with self.subTest(name):
                self.assertTrue(any((ROOT / "fuzz" / "corpus" / name).iterdir()))

    def test_wrong_arguments_are_named_with_what_was_expected(self):
        for arguments, words in (
                (("dance",), "dance: there is no such target, expected one of binary, "),
                (("--seconds", "0"), "'0' is not a number of at least 1"),
                (("--runs", "many"), "'many' is not a number of at least 1"),
                (("--seed", "-1"), "'-1' is not a number of at least 1"),
                (("--seconds", "1", "--runs", "1"), "not allowed with argument"),
                (("--replay", "/no/file", "json"), "/no/file: there is no such file, expected a finding"),
                (("--replay", __file__), "expected the one target to give it to"),
                (("--replay", __file__, "json", "ome"), "expected the one target to give it to")):
            with self.subTest(arguments):
                result = self.run_script(*arguments)
                self.assertEqual(result.returncode, 2)
                self.assertIn(words, result.stderr)


if __name__ == "__main__":
    unittest.main()
