#!/usr/bin/python3
"""Tests of scripts/instructions, with a made-up program that callgrind counts."""

import json
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SOURCE = """
#include <stdlib.h>
#include <string.h>
int main(int argc, char** argv) {
    if (argc != 3 || strcmp(argv[1], "loop") != 0)
        return 9;
    for (volatile long i = 0; i < atol(argv[2]) * 1000; ++i) {}
}
"""


class InstructionsTest(unittest.TestCase):
    """A build folder with a program whose instructions are in proportion to its number."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        (cls.folder / "bin").mkdir()
        subprocess.run(["cc", "-x", "c", "-O0", "-o", cls.folder / "bin" / "counted_work", "-"],
                       input=SOURCE, text=True, check=True)
        cls.kept = cls.folder / "kept.json"
        cls.keep("loop", 1)
        result = cls.run_script("--update")
        cls.once = json.loads(cls.kept.read_text(encoding="utf-8"))["loop"]["instructions"]
        assert result.returncode == 0 and cls.once > 1000, result.stdout + result.stderr

    @classmethod
    def keep(cls, thing, instructions, many=20):
        """What is kept of a thing."""
        cls.kept.write_text(json.dumps({thing: {"few": 10, "many": many,
                                                "instructions": instructions}}), encoding="utf-8")

    @classmethod
    def run_script(cls, *options):
        """Runs the script on the folder."""
        return subprocess.run([ROOT / "scripts" / "instructions", "--build", cls.folder, "--kept",
                               cls.kept, *options], capture_output=True, text=True, check=False)

    def test_the_same_count_is_good(self):
        self.keep("loop", self.once)
        result = self.run_script()
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertNotIn("MORE", result.stdout)

    def test_more_than_the_tolerance_fails(self):
        self.keep("loop", round(self.once / 1.05))
        result = self.run_script()
        self.assertEqual(result.returncode, 1, result.stdout + result.stderr)
        self.assertIn("+5.0 %  MORE", result.stdout)

    def test_less_is_good_and_is_worth_keeping(self):
        self.keep("loop", round(self.once * 2))
        result = self.run_script()
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertIn("--update keeps it", result.stdout)

    def test_a_thing_that_the_program_does_not_know_fails(self):
        self.keep("dance", self.once)
        result = self.run_script()
        self.assertEqual(result.returncode, 3)
        self.assertIn("counted_work dance 10 ended with 9", result.stderr)

    def test_bad_input_is_named(self):
        for text, words in (("{", "kept.json: "), ("{}", "nothing to count"),
                            ('{"loop": {"few": 2, "many": 2, "instructions": 5}}', '"few"')):
            with self.subTest(text):
                self.kept.write_text(text, encoding="utf-8")
                result = self.run_script()
                self.assertEqual(result.returncode, 2)
                self.assertIn(words, result.stderr)

    def test_a_build_without_the_program_is_named(self):
        self.keep("loop", self.once)
        result = subprocess.run([ROOT / "scripts" / "instructions", "--build", "/nowhere", "--kept",
                                 self.kept], capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 2)
        self.assertIn("counted_work: not built", result.stderr)


if __name__ == "__main__":
    unittest.main()
