#!/usr/bin/python3
"""Counts the copies of each way out of a camera, with bench_ways, against docs/performance.md. Of all
benchmarks these figures are the same on every computer, whatever else it does.

Usage: ways_test.py BUILD.
"""

import json
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
GUIDE = (ROOT / "docs" / "performance.md").read_text(encoding="utf-8")
ROW = re.compile(r"^\| (.*?) \| ([\d.]+) \| ([\d.]+) \| .* \|$", re.MULTILINE)
WAYS = ["sink", "pipe", "gstreamer", "python", "ome-tiff", "ome-zarr"]  # in the guide's order
BUILD = None


class WaysTest(unittest.TestCase):
    """scripts/bench on the programs of a build."""

    def test_each_way_has_the_copies_that_the_guide_lists(self):
        table = GUIDE[GUIDE.index("| way | copies: target |"):].partition("\n\n")[0]
        expected = {f"ways/{way}/copies": (float(target), float(copies))
                    for way, (_, target, copies) in zip(WAYS, ROW.findall(table), strict=True)}
        with tempfile.TemporaryDirectory() as folder:
            output = Path(folder) / "bench.json"
            ended = subprocess.run(
                [ROOT / "scripts/bench", "--build", BUILD, "--filter", "^ways/.*/copies", "--output", output],
                cwd=folder, capture_output=True, text=True, check=False)
            self.assertEqual(ended.returncode, 0, ended.stdout + ended.stderr)
            figures = {figure["name"]: (figure["target"], figure["ours"])
                       for figure in json.loads(output.read_text(encoding="utf-8"))["figures"]}
        self.assertEqual(figures.keys(), expected.keys())
        for name, (target, copies) in figures.items():
            with self.subTest(name):
                self.assertEqual(target, expected[name][0])
                self.assertAlmostEqual(copies, expected[name][1], delta=0.05)


if __name__ == "__main__":
    BUILD = Path(sys.argv.pop(1)).resolve()
    unittest.main()
