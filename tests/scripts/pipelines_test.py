#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Runs the command lines of docs/pipes.md, and those of README.md with --to, as a shell does, on the
simulated cameras. Usage: pipelines_test.py PCDCTL.

Players and encoders that are no part of the tests' dependencies are replaced by a reader of
YUV4MPEG2 that is as strict, under their names.
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BLOCK = re.compile(r"^ *```(?:sh)?\n(.*?)^ *```$", re.MULTILINE | re.DOTALL)
SECONDS = 240
PCDCTL = None

# Reads at most MOST frames and then ends, as a player does that is closed; fails if they are
# malformed, or if there are none.
READER = """#!/usr/bin/python3
import sys
MOST = 3
stream = sys.stdin.buffer
words = stream.readline().split()
assert words[0] == b"YUV4MPEG2", words
tags = {word[:1]: word[1:] for word in words[1:]}
width, height = int(tags[b"W"]), int(tags[b"H"])
quarter = -(-width // 2) * -(-height // 2)
chroma = {b"mono": 0, b"420jpeg": quarter, b"444": width * height}[
    next(word[1:] for word in words if word[:1] == b"C")]
size = width * height + 2 * chroma
frames = 0
while frames < MOST and (mark := stream.readline()):
    assert mark == b"FRAME\\n", mark
    assert len(stream.read(size)) == size
    frames += 1
assert frames
"""


def lines_of(name):
    """The command lines with --to in the blocks of a guide, without comments."""
    text = (ROOT / name).read_text(encoding="utf-8")
    lines = [line.strip() for block in BLOCK.findall(text) for line in block.splitlines()]
    return [line.split("   #")[0] for line in lines if re.match(r"\S*pcdctl .*--to", line)]


class PipelinesTest(unittest.TestCase):
    """Each line runs in a folder that is like the root of the tree after scripts/run."""

    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.folder / "out").mkdir()
        (self.folder / "build/bin").mkdir(parents=True)
        (self.folder / "build/bin/pcdctl").symlink_to(PCDCTL)
        tools = self.folder / "tools"
        tools.mkdir()
        (tools / "pcdctl").symlink_to(PCDCTL)
        for name in ("ffplay", "ffmpeg"):
            (tools / name).write_text(READER, encoding="utf-8")
            (tools / name).chmod(0o755)
        self.environment = {**os.environ, "PATH": f"{tools}:{os.environ['PATH']}",
                            "TOUPCAM_LIBRARY": ""}

    def run_line(self, line):
        """Runs a line in bash until each of its programs has succeeded; returns what it prints."""
        line = re.sub(r"(?<!/)\bpcdctl stream", "pcdctl --sdk sim stream", line)
        result = subprocess.run(["bash", "-o", "pipefail", "-c", line], cwd=self.folder,
                                env=self.environment, capture_output=True, text=True,
                                timeout=SECONDS, check=False)
        self.assertEqual(result.returncode, 0, f"{line}\n{result.stderr}")
        return result.stdout

    def test_the_lines_of_the_readme_work_as_they_are_pasted(self):
        lines = lines_of("README.md")
        self.assertEqual(len(lines), 3)
        film, header, brightest = [self.run_line(line) for line in lines]
        self.assertEqual(film, "")
        frames = (self.folder / "out/run.y4m").read_bytes()
        self.assertEqual(frames.count(b"FRAME\n"), 20)
        self.assertRegex(frames[:80], rb"^YUV4MPEG2 W5440 H3648 F\d+:\d+ Ip A1:1 C420jpeg ")
        self.assertIn('"frameBytes":1228800', header)
        self.assertIn(int(brightest), range(20, 256))

    def test_the_guide_has_the_lines_of_the_readme(self):
        self.assertEqual(lines_of("docs/pipes.md")[:3],
                         [line.rstrip() for line in lines_of("README.md")])

    def test_the_other_lines_of_the_guide_work(self):
        lines = lines_of("docs/pipes.md")[3:]
        self.assertEqual([line.split("|")[1].split()[0] for line in lines],
                         ["ffplay", "ffmpeg", "y4mtopnm", "mpeg2enc"])
        for line in lines:
            with self.subTest(line=line):
                # What does not end by itself gets an end; a small camera saves time.
                camera = "" if "--mode" in line else "-c 1"
                self.run_line(line.replace("stream", f"stream {camera} -n 8"))
        pictures = (self.folder / "pictures.pnm").read_bytes()
        self.assertEqual(len(pictures), 8 * (len("P5\n1280 960 255\n") + 1280 * 960))
        self.assertTrue((self.folder / "run.m2v").read_bytes().startswith(b"\0\0\1\xb3"))

    def test_the_process_substitution_of_the_shell_works(self):
        printed = self.run_line("pcdctl stream -c 1 -n 4 --to >(wc -c > count; touch done); "
                                "while [ ! -e done ]; do sleep 0.05; done; cat count")
        self.assertIn("Passed on: 4 frames to ", printed)
        self.assertEqual(int(printed.splitlines()[-1]), 4 * 1280 * 960)


if __name__ == "__main__":
    PCDCTL = Path(sys.argv[1]).resolve()
    unittest.main(argv=sys.argv[:1])
