#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Completes command lines of pcdview in the shells themselves, with the scripts that are installed.

Usage: completion_test.py PROGRAM SCRIPTS. A shell that is missing is a failure.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))

import shells


def long_options(text):
    """The long options that a text names."""
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", text))


class Viewer:
    """The viewer, and in its place a program that prints what it gets, as no window is to be opened."""

    def setUp(self):
        super().setUp()
        shown = subprocess.run([self.program, "--help"], capture_output=True, text=True, check=True,
                               env={**os.environ, "QT_QPA_PLATFORM": "offscreen"}).stdout
        self.options = long_options(shown)
        self.assertIn("--theme", self.options)
        printer = self.folder / "bin" / "pcdview"
        printer.parent.mkdir()
        printer.write_text("#!/bin/sh\nprintf '[%s]' \"$@\"\necho\n")
        printer.chmod(0o755)
        self.environment["PATH"] = f"{printer.parent}:/usr/bin:/bin"
        (self.folder / "slide.txt").touch()


class CompletedLines(Viewer):
    """The tests of bash and zsh."""

    def test_the_options_are_those_of_the_program(self):
        self.assertEqual(long_options((self.scripts / self.script).read_text()), self.options)
        self.show("pcdview --\t\t", *self.options)

    def test_an_option_and_its_value_are_completed(self):
        self.run_completed("pcdview --the\tda\t", self.dark)

    def test_the_value_after_a_sign_is_completed(self):
        self.run_completed("pcdview --lang=r\t", "[--lang=ru]")

    def test_a_camera_library_is_a_name_or_a_file(self):
        self.run_completed("pcdview --sdk si\t", "[--sdk][sim]")
        self.run_completed("pcdview --sdk slide.\t", "[--sdk][slide.txt]")

    def test_a_profile_is_a_file_that_can_be_one(self):
        self.run_completed("pcdview sli\t", "[slide one.json]")

    def test_a_scene_is_a_file_that_can_be_one(self):
        self.run_completed("pcdview --scene sli\t", "[--scene][slide one.json]")

    def test_a_profile_follows_options(self):
        self.run_completed("pcdview --theme light sli\t", "[--theme][light][slide one.json]")


class BashTest(CompletedLines, shells.Bash):
    """In bash."""

    script = "pcdview.bash"
    dark = "[--theme][dark]"


class ZshTest(CompletedLines, shells.Zsh):
    """In zsh."""

    script = "_pcdview"
    dark = "[--theme=dark]"


class FishTest(Viewer, shells.Fish):
    """In fish."""

    def test_the_options_are_those_of_the_program(self):
        self.assertEqual({*self.complete("pcdview --")}, self.options)

    def test_the_values_of_options_are_completed(self):
        self.assertEqual({*self.complete("pcdview --theme ")}, {"system", "light", "dark"})
        self.assertEqual([*self.complete("pcdview --lang=r")], ["--lang=ru"])
        self.assertIn("sim", self.complete("pcdview --sdk s"))
        self.assertIn("slide.txt", self.complete("pcdview --sdk s"))

    def test_profiles_and_scenes_come_first(self):
        self.assertEqual([*self.complete("pcdview sli")][0], "slide one.json")
        self.assertEqual([*self.complete("pcdview --scene sli")][0], "slide one.json")


if __name__ == "__main__":
    shells.main()
