#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Runs the command lines of the guides that no other test runs, as a shell does, on the simulated cameras, and compares
what they print with what the guide shows. Expects a test, or a reason why there is none, for every block of code.

Usage: guides_test.py BUILD.
"""

import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import guide_blocks
import pipelines_test

BUILD = None
ROOT = guide_blocks.ROOT

# Who runs what: guide, heading, language (None: all), and the test, which takes all of that from the guide.
RUN = (
    ("README.md", "In a pipe", "sh", "scripts/pipelines_test.py"),
    ("README.md", "In GStreamer", "sh", "scripts/gstreamer_test.py"),
    ("README.md", "In Python", "sh", "python/documents_test.py"),
    ("README.md", "In your own host", None, "scripts/examples_test.py"),
    ("docs/check.md", None, "sh", "scripts/guides_test.py"),
    ("docs/first-hour.md", None, None, "scripts/guides_test.py"),
    ("docs/gstreamer.md", None, "sh", "scripts/gstreamer_test.py"),
    ("docs/own-driver.md", None, "cmake", "scripts/examples_test.py"),
    ("docs/own-driver.md", None, "cpp", "scripts/examples_test.py"),
    ("docs/own-driver.md", "Build one outside the tree", "sh", "scripts/examples_test.py"),
    ("docs/own-driver.md", "Test it", "sh", "scripts/examples_test.py"),
    ("docs/own-host.md", None, "cpp", "scripts/examples_test.py"),
    ("docs/own-host.md", "A first one", "sh", "scripts/examples_test.py"),
    ("docs/packaging.md", None, "cmake", "scripts/examples_test.py"),
    ("docs/pcdctl.md", None, "json", "scripts/guides_test.py"),
    ("docs/pcdctl.md", None, "sh", "scripts/guides_test.py"),
    ("docs/pipes.md", None, "sh", "scripts/pipelines_test.py"),
    ("docs/profiles.md", None, "json", "scripts/guides_test.py"),
    ("docs/python.md", None, "python", "python/documents_test.py"),
    ("docs/python.md", "Python", "sh", "python/documents_test.py"),
    ("docs/python.md", "Installing", "sh", "scripts/pip_test.py"),
    ("docs/recording.md", "One folder: OME-Zarr", None, "scripts/zarr_test.py"),
    ("docs/recording.md", "Copying an OME-Zarr recording while it grows", "sh", "scripts/zarr_test.py"),
    ("docs/reliability.md", None, "sh", "scripts/guides_test.py"),
    ("docs/scale.md", None, "sh", "scripts/scale_test.py"),
    ("docs/simulator.md", None, "json", "scripts/guides_test.py"),
    ("docs/testing.md", "A made-up system", "sh", "scripts/guides_test.py"),
    ("docs/trace.md", None, None, "scripts/guides_test.py"),
    ("examples/README.md", "Building them", "sh", "scripts/examples_test.py"),
    ("examples/README.md", "Running them", "sh", "scripts/examples_test.py"),
)
# What is not run, by its first line, and why.
STEP = "a step of .ci/run"
LONG = "it takes hours; scripts/{}_test.py tests the script with little"
RELIABILITY = "it takes hours; the tests of tests/reliability are a part of it"
SYSTEM = "it installs something on the computer"
NOT_RUN = {
    "CONTRIBUTING.md": {"./scripts/build                  # into": "steps of .ci/run, and what takes too long for it"},
    "README.md": {"./scripts/run     # installs": "both are steps of .ci/run"},
    "docs/first-hour.md": {"pcdview --sdk sim": "a window stays open; test_pcdview_program starts and ends it"},
    "docs/gui.md": {
        "#include <PCdGui/PCdGui.h>": "lines of a program without the rest of it; the tests of PCdGui call them",
        "PCD_SCREENSHOTS=/some/folder": "the folder is the reader's; its test is one of ctest"},
    "docs/packaging.md": {
        "scripts/package          # installs": f"{STEP}; {SYSTEM}",
        "#!/usr/bin/make -f": "it needs the packages on the computer, where the tests install none",
        "cmake -G Ninja -B build -D CMAKE_BUILD_TYPE=Release": "scripts/package builds and installs it like this"},
    "docs/pcdctl.md": {"pcdctl doctor --udev found | sudo": SYSTEM},
    "docs/reliability.md": {"scripts/fuzz                     # 20": f"{STEP}, and more of the same"},
    "docs/testing.md": {"scripts/faults --all": RELIABILITY,
                        "scripts/mutate src/PCd": LONG.format("mutate")},
    "fuzz/README.md": {"scripts/fuzz                          # all": LONG.format("fuzz")},
}
OUTPUT = "text"  # the language of what is shown and not pasted

# Two small cameras for the guides that need none in particular.
SCENE = {"cameras": [
    {"id": "a", "model": "Simulated-A", "serial": "A1",
     "resolutions": [{"width": size, "height": size, "fps": 60} for size in (256, 128, 64)]},
    {"id": "b", "model": "Simulated-B", "serial": "B1", "resolutions": [{"width": 64, "height": 48, "fps": 60}]}]}
# A player that its user closes after some frames: what it shows, pipelines_test.py compares.
PLAYER = """#!/bin/bash
head --bytes=1000000 | SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy /usr/bin/ffplay -autoexit "$@" 2> /dev/null
"""
TEST_PROGRAM = re.compile(r"^.*\bbuild/bin/(?:test_\w+|\w+_test)\b.*$", re.MULTILINE)
FILTERED = re.compile(r"build/bin/(\w+)(?: --gtest_filter='([^']+)')?")


class LedgerTest(unittest.TestCase):
    """Every block is run by a test, or is in a list with the reason."""

    def setUp(self):
        self.blocks = [block for guide in guide_blocks.all_guides() for block in guide_blocks.blocks(guide)]

    @staticmethod
    def runs(row, block):
        """True if a row of RUN has a block."""
        guide, heading, language, _ = row
        return guide == block.guide and heading in (None, block.heading) and language in (None, block.language)

    @staticmethod
    def is_listed(block):
        """True of a block that is not run for a reason."""
        return any(block.first_line.startswith(line) for line in NOT_RUN.get(block.guide, ()))

    def test_every_block_is_run_or_has_a_reason(self):
        self.assertGreater(len(self.blocks), 100)
        lost = [f"{block.guide}:{block.line}: {block.first_line}" for block in self.blocks
                if block.language != OUTPUT and not self.is_listed(block)
                and not any(self.runs(row, block) for row in RUN)]
        self.assertEqual(lost, [], "run them, or list them with the reason; what a program prints is `text`")

    def test_no_row_is_left_of_what_was_removed(self):
        self.assertEqual([row for row in RUN if not any(self.runs(row, block) for block in self.blocks)], [])
        listed = [(guide, line) for guide, lines in NOT_RUN.items() for line in lines]
        self.assertEqual([(guide, line) for guide, line in listed if not any(
            block.guide == guide and block.first_line.startswith(line) for block in self.blocks)], [])

    def test_no_line_for_pipes_is_left_out(self):
        (block,) = guide_blocks.blocks("README.md", "In a pipe")
        lines = [line.split("   #")[0] for line in block.text.splitlines()]
        self.assertEqual(lines, pipelines_test.lines_of("README.md"))

    def test_the_tests_read_the_guides(self):
        for guide, _, _, test in RUN:
            self.assertIn(Path(guide).name, (ROOT / "tests" / test).read_text(encoding="utf-8"), test)

    def test_the_test_programs_that_guides_name_have_such_tests(self):
        found = {match for block in self.blocks if block.language == "sh"
                 for line in TEST_PROGRAM.findall(block.text) for match in FILTERED.findall(line)}
        self.assertGreater(len(found), 8)
        for program, patterns in sorted(found):
            for pattern in patterns.split(":"):
                listed = subprocess.run([BUILD / "bin" / program, f"--gtest_filter={pattern or '*'}",
                                         "--gtest_list_tests"], check=True, capture_output=True, text=True,
                                        env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
                self.assertRegex(listed.stdout, r"(?m)^  \w", f"{program}: {pattern}")

    def test_the_scripts_that_guides_name_exist(self):
        named = {name for block in self.blocks if block.language == "sh"
                 for name in re.findall(r"(?:^|\s)(?:\./)?((?:scripts|\.ci)/\w+)", block.text)}
        self.assertGreater(len(named), 12)
        self.assertEqual([name for name in sorted(named) if not os.access(ROOT / name, os.X_OK)], [])


class GuideTest(unittest.TestCase):
    """The blocks of a guide are pasted one after the other into the shell of a user at the root of the tree."""

    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.root = self.folder / "tree"
        self.root.mkdir()
        guide_blocks.make_tree(self.root, BUILD)
        tools = self.folder / "tools"
        tools.mkdir()
        (tools / "ffplay").write_text(PLAYER, encoding="utf-8")
        (tools / "ffplay").chmod(0o755)
        self.environment = {**os.environ, "PATH": f"{tools}:{os.environ['PATH']}", "HOME": str(self.folder),
                            "TOUPCAM_LIBRARY": "", "LC_ALL": "C.UTF-8"}
        self.shell = guide_blocks.Shell(self.folder / "state", self.root, self.environment)

    def use_programs(self):
        """As if the programs were installed."""
        self.environment["PATH"] = f"{BUILD / 'bin'}:{self.environment['PATH']}"

    def use_scene(self):
        """As if two small cameras were there."""
        path = self.folder / "scene.json"
        path.write_text(json.dumps(SCENE), encoding="utf-8")
        self.environment["TOUPCAM_SIM_SCENE"] = str(path)

    def run_block(self, block):
        """Runs a block, and returns what it printed. What ctest runs anyway is left out."""
        return self.shell.run(block._replace(text=TEST_PROGRAM.sub("", block.text)))

    def run_guide(self, guide, **which):
        """Runs the command lines of a guide that are not listed; returns what they printed."""
        blocks = [block for block in guide_blocks.blocks(guide, language="sh", **which)
                  if not LedgerTest.is_listed(block)]
        self.assertTrue(blocks)
        return [self.run_block(block) for block in blocks]


class FirstHourTest(GuideTest):
    """docs/first-hour.md, with what it shows."""

    def follow(self, before, block, shown):
        """What a reader does with a block; `shown` is what the guide says that it prints."""
        if block.language == "json":
            (name,) = re.findall(r"Save this as `([\w.]+)`:\s*$", before)
            (self.shell.folder() / name).write_text(block.text, encoding="utf-8")
        elif block.language == "sh" and not LedgerTest.is_listed(block):
            code, output = self.shell.paste(block.text)
            has_failed = re.search(r"^pcdctl: ", shown, re.MULTILINE) is not None
            self.assertEqual(code != 0, has_failed, f"{block.guide}:{block.line}:\n{block.text}{output}")
            self.assertIsNotNone(re.search(self.expected(shown), output), f"{output}\ndoes not have\n{shown}")

    @staticmethod
    def expected(shown):
        """What is printed, as an expression. Where a speed is shown, the numbers are those of another computer."""
        parts = re.escape(shown).replace("…", ".*")
        return re.sub(r"(\\ )*\d+(\\\.\d+)?", r" *\\d+(\\.\\d+)?", parts) if "fps" in shown else parts

    def test_it_does_and_prints_what_it_says(self):
        guide = "docs/first-hour.md"
        lines = (ROOT / guide).read_text(encoding="utf-8").splitlines()
        blocks = guide_blocks.blocks(guide)
        for block, after in zip(blocks, [*blocks[1:], None]):
            with self.subTest(line=block.line):
                shown = after.text if after is not None and after.language == OUTPUT else ""
                self.follow("\n".join(lines[:block.line - 1]), block, shown)
        out = self.root / "out"
        self.assertEqual(sorted(path.name for path in out.glob("*.*")),
                         ["cells.png", "first.png", "run.ome.tif", "scene.json", "second.png", "slide.json",
                          "third.png"])
        self.assertEqual(len(list((out / "run").glob("frame-*.png"))), 3)


class CommandsTest(GuideTest):
    """The guides with single commands."""

    def test_those_of_pcdctl_work(self):
        self.use_programs()
        self.use_scene()
        first, replay = (block for block in guide_blocks.blocks("docs/pcdctl.md", language="sh")
                         if not LedgerTest.is_listed(block))
        *commands, doctor = first.text.splitlines()
        self.assertEqual(doctor, "pcdctl doctor")  # what it finds is the computer's
        endless = "UNTIL='\"event\":\"present\"' endless \\g<0>"
        text = "\n".join(re.sub("^pcdctl monitor", endless, line) for line in commands)
        code, output = self.shell.paste(text)
        self.assertEqual(code, 0, output)
        for expected in ("Simulated-B-B1", "64 x 48 pixels", "Recorded: 100 of 100 frames in", '"event":"present"'):
            self.assertIn(expected, output)
        self.assertEqual(len(list((self.root / "run").glob("frame-*.png"))), 100)
        code, output = self.shell.paste(doctor)
        self.assertIn(code, (0, 1, 4))
        self.assertIn("has all 62 functions", output)
        self.assertEqual(self.run_block(replay).count('all as recorded'), 2)

    def test_those_of_the_traces_work(self):
        self.use_programs()
        self.use_scene()
        self.run_guide("docs/trace.md")
        self.assertEqual(*((self.root / name).stat().st_size > 0 for name in ("a.png", "b.png")))

    def test_those_of_the_reliability_work(self):
        self.use_programs()
        self.use_scene()
        self.assertIn("5  delivered", "".join(self.run_guide("docs/reliability.md")))

    def test_those_of_the_check_work(self):
        self.use_programs()
        (self.root / "build").unlink()
        (self.root / "build").symlink_to(BUILD / "lib/test-plugins/pattern")
        (output,) = self.run_guide("docs/check.md")
        rules = re.findall(r"^(\d+) rules: .* 0 failed$", output, re.MULTILINE)
        self.assertEqual(len(rules), 3, output)
        for name in ("check", "own-driver", "reliability"):  # as many as are said
            self.assertIn(f"{rules[0]} rules", (ROOT / f"docs/{name}.md").read_text(encoding="utf-8"))

    def test_a_made_up_system_is_examined(self):
        (block,) = guide_blocks.blocks("docs/testing.md", "A made-up system")
        code, output = self.shell.paste(block.text)
        self.assertIn(code, (1, 4))
        self.assertIn("the time source: hpet", output)


class DataTest(GuideTest):
    """The files that guides show."""

    def pcdctl(self, *words, code=0):
        """Runs the program; returns what it prints."""
        self.use_programs()
        found, output = self.shell.paste(f"pcdctl --sdk sim {' '.join(words)}")
        self.assertEqual(found, code, output)
        return output

    def write(self, guide, heading=None):
        """Writes the JSON of a guide to a file."""
        (block,) = guide_blocks.blocks(guide, heading, "json")
        (self.root / "shown.json").write_text(block.text, encoding="utf-8")

    def test_the_profile_is_taken_by_the_camera(self):
        self.write("docs/profiles.md")
        output = self.pcdctl("profile", "load", "shown.json")
        self.assertIn(f"{self.root}/shown.json: 4 values set\n", output)

    def test_the_scene_is_simulated(self):
        self.write("docs/simulator.md")
        output = self.pcdctl("--scene", "shown.json", "stream", "-t", "20", code=1)
        self.assertIn("camera Simulated-Bench-BENCH00001 was unplugged after 100 frames", output)

    def test_what_programs_print_for_programs_is_json(self):
        for block in guide_blocks.blocks("docs/pcdctl.md", language="json"):
            self.assertIsInstance(json.loads(block.text), dict)
        (calls,) = guide_blocks.blocks("docs/trace.md", language="json")
        for line in calls.text.splitlines():
            self.assertIn("kind", json.loads(line))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    BUILD = Path(sys.argv.pop(1)).resolve()
    unittest.main()
