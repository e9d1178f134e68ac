#!/usr/bin/python3
"""Tests of scripts/faults, races and soak: what cannot be used is named before anything is built."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
NUMBER = "needs a whole number from {} to {}, found \"{}\"\n"


class ArgumentsTest(unittest.TestCase):
    """What is accepted by mistake fails at once, because programs for a build are not in the path."""

    def setUp(self):
        self.programs = tempfile.TemporaryDirectory()
        self.addCleanup(self.programs.cleanup)
        for name in ("bash", "dirname", "sed"):
            Path(self.programs.name, name).symlink_to(shutil.which(name))

    def refuse(self, command, expected):
        """Expects a message that ends so, and nothing else."""
        script, *arguments = command
        with self.subTest(command):
            result = subprocess.run([ROOT / "scripts" / script, *arguments], capture_output=True,
                                    text=True, check=False, env={"PATH": self.programs.name})
            self.assertEqual((2, ""), (result.returncode, result.stdout), result.stderr)
            self.assertEqual(1, result.stderr.count("\n"), result.stderr)
            self.assertTrue(result.stderr.endswith(expected), result.stderr)

    def test_numbers_that_would_be_others_are_refused(self):
        most = 999999999
        for option, script, least in (("--rounds", "races", 1), ("--seed", "races", 0),
                                      ("--count", "faults", 1), ("--pairs", "faults", 0),
                                      ("--seed", "faults", 0)):
            for wrong in ("x", "", "-1", "1.5", "9" * 20, *(["0"] if least else [])):
                self.refuse([script, option, wrong], f"{option} {NUMBER.format(least, most, wrong)}")
            self.refuse([script, option], f"{option} {NUMBER.format(least, most, '')}")
        self.refuse(["soak", "9" * 20], f"MINUTES {NUMBER.format(0, 99999, '9' * 20)}")

    def test_a_part_that_there_is_not_is_refused(self):
        self.refuse(["faults", "--part", "3/2"], "--part " + NUMBER.format(1, 2, 3))
        self.refuse(["faults", "--part", "x"], '--part needs I/N such as 1/2, found "x"\n')

    def test_a_name_that_is_missing_is_asked_for(self):
        for script in ("faults", "races", "soak"):
            for arguments in (["--preset"], ["--preset", ""]):
                self.refuse([script, *arguments], "--preset needs a name: dev, asan or tsan\n")
        self.refuse(["faults", "--case", ""], "--case needs FUNCTION#NUMBER:KIND\n")

    def test_everything_else_is_answered_with_the_usage(self):
        for script in ("faults", "races", "soak"):
            for wrong in ("", "--nope", "nope"):
                self.refuse([script, wrong], "[--preset NAME]\n")


if __name__ == "__main__":
    unittest.main()
