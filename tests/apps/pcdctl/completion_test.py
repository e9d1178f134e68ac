#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Completes command lines of pcdctl in the shells themselves, with the scripts that are installed.

Usage: completion_test.py PROGRAM SCRIPTS. A shell that is missing is a failure.
"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))

import shells


class CompletedLines:
    """The tests of bash and zsh."""

    def test_the_id_of_a_property_is_completed(self):
        self.run_completed("pcdctl --sdk sim get contr\t", "contrast=0")

    def test_a_command_and_the_value_of_an_option_are_completed(self):
        self.run_completed("pcdctl --sdk si\tge\tcontr\t", "contrast=0")

    def test_the_value_after_a_sign_is_completed(self):
        self.run_completed("pcdctl --sdk=si\tget contr\t", "contrast=0")

    def test_the_id_of_a_setting_is_followed_by_its_value(self):
        self.run_completed("pcdctl --sdk sim set contr\t12", "contrast=12")

    def test_a_value_with_blanks_is_one_word(self):
        self.run_completed("pcdctl --sdk sim set binning=Av\t3\t", "binning=Average 3x3")

    def test_a_value_with_blanks_is_completed_within_quotes(self):
        self.run_completed("pcdctl --sdk sim set \"binning=Average 3\t", "binning=Average 3x3")

    def test_a_camera_is_completed(self):
        self.run_completed("pcdctl --sdk sim modes -c Simulated-1\t", "0    1280x960")

    def test_a_file_is_completed(self):
        self.run_completed("pcdctl --sdk sim snap -o a.png --profile sli\t",
                           'pcdctl: "slide one.json"')

    def test_a_file_after_a_sign_is_completed(self):
        self.run_completed("pcdctl --sdk sim snap -o a.png --profile=sli\t",
                           'pcdctl: "slide one.json"')

    def test_a_format_is_completed(self):
        self.run_completed("pcdctl --sdk sim snap -c 1 -o still.p\t", "Saved ")
        self.assertTrue((self.folder / "still.png").exists())

    def test_all_properties_are_shown(self):
        self.show("pcdctl --sdk sim get \t\t", "autoexponeable", "contrast", "rotate")

    def test_the_values_of_a_choice_are_shown(self):
        self.show("pcdctl --sdk sim set rotate=\t\t", "180", "270")

    def test_all_commands_are_shown(self):
        self.show("pcdctl \t\t", "list", "monitor", "snap")


class BashTest(CompletedLines, shells.Bash):
    """In bash."""


class ZshTest(CompletedLines, shells.Zsh):
    """In zsh."""


class FishTest(shells.Fish):
    """In fish."""

    def test_commands_are_completed_with_their_summaries(self):
        self.assertEqual(self.complete("pcdctl sna"), {"snap": "Take a still and save it."})

    def test_the_ids_of_properties_are_completed(self):
        candidates = self.complete("pcdctl --sdk sim get ")
        self.assertIn("rotate", candidates)
        self.assertEqual(candidates["contrast"], "Contrast: a whole number from -100 to 100")

    def test_a_setting_is_completed_up_to_its_value(self):
        self.assertEqual(list(self.complete("pcdctl --sdk sim set contr")), ["contrast="])

    def test_values_with_blanks_are_completed(self):
        self.assertIn("binning=Average 3x3", self.complete("pcdctl --sdk sim set binning=Av"))
        self.assertIn("binning=Average 3x3", self.complete("pcdctl --sdk sim set 'binning=Average 3"))

    def test_cameras_are_completed(self):
        self.assertEqual(list(self.complete("pcdctl --sdk=sim modes --camera=Simulated-1")),
                         ["--camera=Simulated-1MM-SIM01M0001"])

    def test_files_are_completed(self):
        self.assertEqual(list(self.complete("pcdctl snap --profile sli")), ["slide one.json"])
        self.assertEqual(list(self.complete("pcdctl snap --profile=sli")),
                         ["--profile=slide one.json"])


if __name__ == "__main__":
    shells.main()
