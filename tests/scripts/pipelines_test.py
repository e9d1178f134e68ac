#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Runs the command lines of docs/pipes.md, and those of README.md with --to, as a shell does, on the
simulated cameras. Usage: pipelines_test.py PCDCTL.

Players and encoders are the real ones. What FFmpeg decoded is compared with what it was given.
"""

import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

import guide_blocks

ROOT = guide_blocks.ROOT
SECONDS = 240
PCDCTL = None

# In the place of a program of FFmpeg: keeps a copy of what it is given. A player whose film is over
# ends, instead of waiting for a key, and reports each frame that it decoded.
KEEPER = "#!/bin/bash\nset -o pipefail\ntee given.y4m | /usr/bin/{name} {options} \"$@\" 2> report\n"
# On a busy machine a player leaves frames out, to show the others in time.
OPTIONS = {"ffplay": "-autoexit -noframedrop -vf showinfo", "ffmpeg": ""}


class Film:
    """A film of YUV4MPEG2: its header, and the planes of each frame."""

    def __init__(self, path):
        with open(path, "rb") as file:
            words = file.readline().split()
            assert words[0] == b"YUV4MPEG2", words
            self.tags = {word[:1].decode(): word[1:].decode() for word in reversed(words[1:])}
            width, height = int(self.tags["W"]), int(self.tags["H"])
            quarter = -(-width // 2) * -(-height // 2)
            chroma = {"mono": 0, "420jpeg": quarter, "444": width * height}[self.tags["C"]]
            self.luma, self.frames = width * height, []
            while mark := file.readline():
                assert mark == b"FRAME\n", mark
                self.frames.append(file.read(self.luma + 2 * chroma))
                assert len(self.frames[-1]) == self.luma + 2 * chroma


def lines_of(name):
    """The command lines with --to in the blocks of a guide, without comments."""
    blocks = guide_blocks.blocks(name, language="sh")
    lines = [line.strip() for block in blocks for line in block.text.splitlines()]
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
        for name, options in OPTIONS.items():
            (tools / name).write_text(KEEPER.format(name=name, options=options), encoding="utf-8")
            (tools / name).chmod(0o755)
        self.environment = {**os.environ, "PATH": f"{tools}:{os.environ['PATH']}",
                            "TOUPCAM_LIBRARY": "", "SDL_VIDEODRIVER": "dummy", "SDL_AUDIODRIVER": "dummy"}

    def run_line(self, line):
        """Runs a line in bash until each of its programs has succeeded; returns what it prints."""
        line = re.sub(r"(?<!/)\bpcdctl stream", "pcdctl --sdk sim stream", line)
        result = subprocess.run(["bash", "-o", "pipefail", "-c", line], cwd=self.folder,
                                env=self.environment, capture_output=True, text=True,
                                timeout=SECONDS, check=False)
        self.assertEqual(result.returncode, 0, f"{line}\n{result.stderr}")
        return result.stdout

    def decode(self, name, *options):
        """The bytes of a film that FFmpeg decodes, and its first stream as ffprobe describes it."""
        stream = subprocess.run(["ffprobe", "-v", "error", "-show_streams", "-of", "json", name], check=True,
                                cwd=self.folder, capture_output=True, timeout=SECONDS).stdout
        decoded = subprocess.run(["/usr/bin/ffmpeg", "-v", "error", "-i", name, "-f", "rawvideo", *options,
                                  "-"], check=True, cwd=self.folder, capture_output=True,
                                 timeout=SECONDS).stdout
        return decoded, json.loads(stream)["streams"][0]

    def check_played(self, frames):
        """Checks that a player decoded these frames of the last film, by their sums."""
        film = Film(self.folder / "given.y4m")
        self.assertEqual(len(film.frames), frames)
        report = (self.folder / "report").read_text(encoding="utf-8", errors="replace")
        self.assertEqual([int(luma, 16) for luma in re.findall(r"plane_checksum:\[(\w+)", report)],
                         [zlib.adler32(frame[:film.luma], 0) for frame in film.frames], report)

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

    def test_a_player_shows_the_film_of_the_readme(self):
        (line,) = re.findall(r"^(build/bin/pcdctl .*) > \S+ +# or (\| ffplay -)$",
                             (ROOT / "README.md").read_text(encoding="utf-8"), re.MULTILINE)
        self.run_line(" ".join(line).replace("-n 20", "-n 2"))  # of 20 megapixels
        self.check_played(2)

    def test_the_guide_has_the_lines_of_the_readme_and_of_the_manual(self):
        guide = lines_of("docs/pipes.md")
        self.assertEqual(guide[:3], [line.rstrip() for line in lines_of("README.md")])
        self.assertTrue(lines_of("docs/pcdctl.md"))
        self.assertLessEqual(set(lines_of("docs/pcdctl.md")), set(guide))

    def test_the_other_lines_of_the_guide_work(self):
        lines = lines_of("docs/pipes.md")[3:]
        checks = {"ffplay": lambda: self.check_played(8), "ffmpeg": self.check_encoded,
                  "y4mtopnm": self.check_pictures, "mpeg2enc": self.check_mpeg}
        self.assertEqual([line.split("|")[1].split()[0] for line in lines], list(checks))
        for line, check in zip(lines, checks.values()):
            with self.subTest(line=line):
                # What does not end by itself gets an end; a small camera and few frames save time.
                short = "-n 3" if "--mode" in line else "-c 1 -n 8"
                self.run_line(line.replace("stream", f"stream {short}"))
                check()

    def check_encoded(self):
        """FFV1 loses nothing."""
        film = Film(self.folder / "given.y4m")
        decoded, stream = self.decode("run.mkv")
        self.assertEqual((stream["codec_name"], stream["width"], stream["height"], stream["pix_fmt"],
                          stream["color_range"]), ("ffv1", 1280, 960, "gray", "pc"))
        self.assertEqual(len(film.frames), 8)
        self.assertEqual(decoded, b"".join(film.frames))

    def check_pictures(self):
        """Eight pictures in the size of the camera."""
        pictures = (self.folder / "pictures.pnm").read_bytes()
        self.assertEqual(len(pictures), 8 * (len("P5\n1280 960 255\n") + 1280 * 960))

    def check_mpeg(self):
        """The beginning of a film of MPEG 2."""
        self.assertTrue((self.folder / "run.m2v").read_bytes().startswith(b"\0\0\1\xb3"))

    def test_ffmpeg_takes_colours_for_what_they_are(self):
        camera = {"id": "a", "model": "Small", "serial": "S0001", "source": {"kind": "patches"},
                  "resolutions": [{"width": 162, "height": 121, "fps": 50}]}
        (self.folder / "scene.json").write_text(json.dumps({"cameras": [camera]}), encoding="utf-8")
        self.run_line("pcdctl stream --scene scene.json -n 1 --to expected")
        expected = (self.folder / "expected").read_bytes()
        for chroma, form in (("444", "yuv444p"), ("420", "yuv420p")):
            with self.subTest(chroma):
                name = f"run{chroma}.y4m"
                self.run_line(f"pcdctl stream --scene scene.json -n 3 --as y4m --chroma {chroma} --to {name}")
                self.assertEqual(self.decode(name)[0], b"".join(Film(self.folder / name).frames))
                decoded, stream = self.decode(name, "-pix_fmt", "bgr24")
                self.assertEqual((stream["pix_fmt"], stream["color_range"]), (form, "tv"))
                self.assertEqual(len(decoded), 3 * len(expected))
                off = sum(abs(a - b) > 4 for a, b in zip(decoded, 3 * expected))
                # Where the patches meet, four pixels have one colour in the second form.
                self.assertLessEqual(off, 0 if chroma == "444" else len(decoded) // 10)

    def test_the_process_substitution_of_the_shell_works(self):
        printed = self.run_line("pcdctl stream -c 1 -n 4 --to >(wc -c > count; touch done); "
                                "while [ ! -e done ]; do sleep 0.05; done; cat count")
        self.assertIn("Passed on: 4 frames to ", printed)
        self.assertEqual(int(printed.splitlines()[-1]), 4 * 1280 * 960)


if __name__ == "__main__":
    PCDCTL = Path(sys.argv[1]).resolve()
    unittest.main(argv=sys.argv[:1])
