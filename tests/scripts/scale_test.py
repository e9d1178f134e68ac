#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Runs the command lines of docs/scale.md: pipelines and scripts as they are, the experiments of
scripts/scale in their small form. Compares the guide's arithmetic with the script's.

Usage: scale_test.py BUILD
"""

import contextlib
import io
import re
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True

import gstreamer_test  # noqa: E402  (the paths come first)
from scaling import arithmetic, faults, live, store  # noqa: E402

GUIDE = (ROOT / "docs" / "scale.md").read_text(encoding="utf-8")
BLOCKS = gstreamer_test.BLOCK.findall(GUIDE)
EXPERIMENTS = [line for block in BLOCKS for line in block.splitlines()
               if line.startswith("scripts/scale ")]
BUILD = None
NAMESPACES = "network: each computer is a network namespace"
LOOPBACK = "network: loopback, because namespaces are not available here"


class PipelineTest(gstreamer_test.PipelineTest):
    """All classes have one cache of plugins: looking for them takes seconds."""

    @classmethod
    def setUpClass(cls):
        cls.registry = BUILD / "tests" / "scale-registry.bin"


class ScaleTest(PipelineTest):
    """Runs scripts/scale, and says on what."""

    def scale(self, words, code=0, **more):
        """Runs an experiment in its small form; returns what it prints."""
        output = self.run_all(f"exec {ROOT}/scripts/scale {words} --quick --build {BUILD}", code, **more)
        self.assertRegex(output, f"^({NAMESPACES}|{LOOPBACK})")
        print(f"scripts/scale {words}: {output.splitlines()[0]}", file=sys.stderr)
        return output

    def check_live(self, output):
        """Every way has a row, with pictures."""
        for way in ("rtp-jpeg", "srt-vp8"):
            (row,) = re.findall(rf"^\| {way} \| as it is \|(.*)\|$", output, re.MULTILINE)
            self.assertGreater(float(row.split("|")[1]), 0, output)


class ExperimentTest(ScaleTest):
    """The experiments, as the guide starts them."""

    def test_the_guide_has_all_experiments(self):
        self.assertEqual([line.split()[1] for line in EXPERIMENTS],
                         ["live", "faults", "store", "clocks", "hundred"])

    def test_pictures_of_all_computers_are_shown(self):
        self.check_live(self.scale("live"))

    def test_a_computer_that_fails_is_named_and_the_others_go_on(self):
        output = self.scale("faults")
        for way in ("rtp-jpeg", "srt-vp8"):
            self.assertIn(f'{way}: computer1 was killed: the viewer reported "computer1: lost"; '
                          "computer2 went on", output)
            if output.startswith(NAMESPACES):
                self.assertRegex(output, f'{way}: the cable of computer1 was out .* "computer1: back"')
            else:
                self.assertIn(f"{way}: no cable was pulled and no link was limited", output)

    def test_dask_computes_the_same_over_the_network(self):
        output = self.scale("store")
        self.assertEqual(len(set(re.findall(r"mean (\S+, projection \w+), of 20 frames", output))), 1)
        self.assertEqual(len(re.findall(r"^(?:disk|HTTP|S3): mean ", output, re.MULTILINE)), 3)
        self.assertIn("all results are those of the disk", output)

    def test_clocks_are_measured(self):
        output = self.scale("clocks")
        measured = re.findall(r"^\| GStreamer, .*\| (\d+) \|$", output, re.MULTILINE)
        self.assertEqual(len(measured), 2, output)

    def test_loopback_is_used_and_named_where_there_are_no_namespaces(self):
        output = self.scale("live", PCD_SCALE_NETWORK="not allowed")
        self.assertTrue(output.startswith(f"{LOOPBACK} (not allowed)"), output)
        self.check_live(output)

    def test_what_cannot_be_used_is_named(self):
        for words, expected in (("live --way tcp", "--way tcp: expected one of rtp-jpeg, "),
                                ("live --build /nowhere", "/nowhere/lib/gstreamer-1.0/libgstpcd.so: "),
                                ("live --size big", '"big", expected a size such as 640x480')):
            output = self.run_all(f"exec {ROOT}/scripts/scale --build {BUILD} {words}", code=2)
            self.assertIn(expected, output)


class JudgementTest(unittest.TestCase):
    """What an experiment does not accept."""

    ENDS = {"disk": {"frames": 9, "mean": 2.5, "sum": 7, "hash": "a" * 64, "bytes": 1, "seconds": 1}}

    def refused(self, expected, function, *arguments):
        """Checks that a function fails, with this in its reason."""
        with self.assertRaisesRegex(live.Failure, expected), \
                contextlib.redirect_stdout(io.StringIO()):
            function(*arguments)

    def test_other_results_than_those_of_the_disk(self):
        for key, value in (("mean", 2.6), ("sum", 8), ("hash", "b" * 64)):
            ends = {**self.ENDS, "S3": {**self.ENDS["disk"], key: value}}
            self.refused(f"S3: {key} is {value}", store.compare, ends, 9)

    def test_a_frame_that_is_missing(self):
        self.refused("disk: 9 frames, expected 10", store.compare, self.ENDS, 10)

    def test_a_frame_that_was_counted_before_it_was_there(self):
        parts = [{"frames": 4, "darkest": 0}, {"frames": 9, "darkest": 80}]
        self.refused("a frame that was counted had no chunk", store.report_parts, "HTTP", parts, 9)
        self.refused("the last frame was not read", store.report_parts, "HTTP", parts[1:], 10)

    def test_a_sender_that_keeps_what_it_cannot_send(self):
        self.refused("its memory grew from 40 to 400 MB", faults.check_memory, "computer1", 40, 400)


class GuideTest(PipelineTest):
    """The other command lines, and the tables."""

    def test_the_commands_work_as_they_are_pasted(self):
        blocks = [block for block in BLOCKS if "scripts/scale " not in block]
        self.assertEqual(len(blocks), 2)
        self.environment["PATH"] = f"{BUILD / 'bin'}:{self.environment['PATH']}"
        self.run_all(blocks[0])
        self.assertGreaterEqual(self.frames("wall.avi"), 8)
        shape, mean = self.run_all(blocks[1]).splitlines()[-2:]
        self.assertEqual(shape, "(20, 1, 960, 1280)")
        self.assertTrue(0 < float(mean) < 255, mean)

    def test_the_tables_are_those_of_the_script(self):
        for line in arithmetic.tables():
            self.assertIn(line + "\n", GUIDE)
        output = subprocess.run([ROOT / "scripts/scale", "hundred"], capture_output=True, text=True,
                                check=True).stdout
        self.assertEqual(output.splitlines(), arithmetic.tables())


if __name__ == "__main__":
    BUILD = Path(sys.argv.pop(1)).resolve()
    gstreamer_test.PLUGIN = BUILD / "lib/gstreamer-1.0"
    unittest.main()
