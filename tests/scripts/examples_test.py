#!/usr/bin/python3
"""Tests the examples: copied out of the tree, built against an installed framework with the CMake
package and GCC and with pkg-config and Clang, and run on the simulated camera.

Usage: examples_test.py --prefix DIR: where the framework is, programs, plugin and simulated SDK
included: what `cmake --install` wrote to DIR, or DIR/usr of unpacked packages.
"""

import csv
import json
import os
import re
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy
import tifffile

import guide_blocks

ROOT = Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"
WARNINGS = ("-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror")
CAMERA = "Simulated-Bench-BENCH00001"
# What the guides install to is here already. A window is closed like any other program, once it has printed UNTIL.
BEFORE = """
cmake() { [ "$1" = --install ] || command cmake "$@"; }
c++() { # Clang; warnings in Qt's headers do not count, in ours they do
    local word words=()
    for word; do
        case $word in -I*) [ "${word#-I}" -ef "$OURS" ] || word=-isystem${word#-I} ;; esac
        words+=("$word")
    done
    command clang++ -O0 $WARNINGS "${words[@]}"
}
build/examples/qt-host/qt-host() { endless command build/examples/qt-host/qt-host "$@"; }
"""
PREFIX = None
SECONDS = 120  # that a program may take


class BuiltExamples:
    """The examples as one way of building makes them. The classes below have the ways."""

    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.tree = cls.folder / "tree"
        cls.sources = cls.tree / "examples"
        shutil.copytree(EXAMPLES, cls.sources)
        cls.home = cls.folder / "home"
        cls.home.mkdir()
        (cls.home / "pcd").symlink_to(PREFIX)
        cls.config = {"PKG_CONFIG_PATH": next(PREFIX.rglob("pcd.pc")).parent}
        cls.plugins = Path(run("pkg-config", "--variable=plugindir", "pcd", **cls.config).strip())
        cls.driver = cls.folder / "driver"
        cls.driver.mkdir()
        cls.build()

    @classmethod
    def block(cls, guide, heading, index):
        """A block of a guide for a shell, with the folder of libraries that the prefix has."""
        block = guide_blocks.blocks(guide, heading, "sh")[index]
        libraries = cls.plugins.parents[1]
        return block if libraries == PREFIX / "lib" else block._replace(
            text=block.text.replace("$HOME/pcd/lib", str(libraries)))

    @classmethod
    def shell(cls, name, **environment):
        """A shell at the root of the tree, of a user whose home has the prefix."""
        return guide_blocks.Shell(cls.folder / name, cls.tree, texts({
            "HOME": cls.home, "PREFIX": PREFIX, "CHECKOUT": cls.tree, "CMAKE_BUILD_PARALLEL_LEVEL": 2,
            **environment}), BEFORE)

    def setUp(self):
        self.here = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.environment = {"TOUPCAM_LIBRARY": self.plugins.parent / "sim" / "libtoupcam.so",
                            "TOUPCAM_SIM_SCENE": self.scene("scene.json")}

    def scene(self, name, faults=(), source="patches", **resolution):
        """A scene with one camera; returns its file."""
        path = self.here / name
        resolution = {"width": 640, "height": 480, "fps": 40, **resolution}
        camera = {"id": "bench-1", "model": "Simulated-Bench", "serial": "BENCH00001",
                  "resolutions": [resolution], "source": {"kind": source}}
        path.write_text(json.dumps({"cameras": [camera], "faults": list(faults)}), encoding="utf-8")
        return path

    def run_example(self, name, *arguments, code=0, **environment):
        """Runs an example to its end; returns what it prints."""
        return run(self.folder / name, *arguments, code=code,
                   **{**self.environment, **environment})

    def start_example(self, name, *arguments, **environment):
        """Starts an example. It is killed with the test, or if it takes too long."""
        program = self.enterContext(subprocess.Popen(
            [self.folder / name, *arguments], text=True, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, env=texts({**self.environment, **environment})))
        end = threading.Timer(SECONDS, program.kill)
        end.start()
        self.addCleanup(end.cancel)
        self.addCleanup(program.kill)
        return program

    def check_picture(self, picture, shape, colours):
        """A file has a picture of this size, with at least this number of colours."""
        pixels = tifffile.imread(picture).astype(int)
        self.assertEqual(pixels.shape[:2], shape)
        self.assertGreaterEqual(len(numpy.unique(pixels[..., :3] @ (1, 256, 65536))), colours)

    def test_the_minimal_host_lists_the_camera_and_saves_a_frame(self):
        picture = self.here / "frame.tif"
        self.assertIn(f"{CAMERA}  Simulated-Bench\n", self.run_example("minimal-host", picture))
        self.check_picture(picture, (480, 640), 4)

    def test_the_minimal_host_ends_with_its_camera(self):
        faults = [{"do": "unplug", "camera": "bench-1", "afterFrames": 4}]
        printed = self.run_example("minimal-host", self.here / "no.tif", code=1,
                                   TOUPCAM_SIM_SCENE=self.scene("faults.json", faults))
        self.assertRegex(printed, r"minimal-host: gone after \d frames")

    def test_the_minimal_host_names_what_is_missing(self):
        self.assertIn("usage: minimal-host PICTURE", self.run_example("minimal-host", code=1))
        self.assertIn("no camera found", self.run_example(
            "minimal-host", "no.tif", code=1, TOUPCAM_LIBRARY="/nonexistent"))
        self.assertIn("cannot write", self.run_example(
            "minimal-host", self.here / "no" / "no.tif", code=1))

    def test_hosts_without_a_window_need_no_display(self):
        for name, arguments in (("minimal-host", [self.here / "frame.tif"]),
                                ("headless-recorder", ["-n", 1, self.here / "recording"])):
            self.run_example(name, *arguments, QT_QPA_PLATFORM="xcb", DISPLAY="")

    def test_the_window_shows_picture_and_panel(self):
        picture = self.here / "window.tif"
        self.run_example("qt-host", "--grab", picture, CAMERA,
                         TOUPCAM_SIM_SCENE=self.scene("specimen.json", source="specimen"))
        self.check_picture(picture, (800, 1200), 100)
        window = tifffile.imread(picture)
        view, panel = window[100:650, 10:800, :3], window[:700, 950:, :3]
        self.assertGreater(numpy.ptp(view, axis=(0, 1)).min(), 100, "the picture")
        self.assertGreater(numpy.ptp(panel, axis=(0, 1)).min(), 100, "the panel")
        # The picture keeps its shape: above and below it, the view is empty.
        self.assertEqual(numpy.ptp(window[2:40, 10:800, :3], axis=(0, 1)).max(), 0)

    def test_the_window_names_what_is_missing(self):
        printed = self.run_example("qt-host", "--grab", self.here / "no.tif", "Other", code=1)
        self.assertIn('qt-host: no camera "Other"', printed)
        printed = self.run_example("qt-host", "--grab", self.here / "no" / "no.tif", code=1)
        self.assertIn("qt-host: cannot write", printed)

    def test_the_window_ends_if_its_camera_goes_before_the_first_picture(self):
        faults = [{"do": "lose", "camera": "bench-1", "probability": 1.0},
                  {"do": "unplug", "camera": "bench-1", "afterFrames": 5}]
        picture = self.here / "no.tif"
        printed = self.run_example("qt-host", "--grab", picture, code=1,
                                   TOUPCAM_SIM_SCENE=self.scene("faults.json", faults))
        self.assertIn(f"qt-host: {CAMERA} was unplugged", printed)
        self.assertFalse(picture.exists())

    def test_the_window_follows_its_camera(self):
        # The first of the times after it was unplugged, however long opening takes.
        faults = [{"do": "unplug", "camera": "bench-1", "afterFrames": 5},
                  *({"do": "plug", "camera": "bench-1", "atMs": ms} for ms in range(500, 60_000, 500))]
        program = self.start_example("qt-host", TOUPCAM_SIM_SCENE=self.scene("faults.json", faults))
        waiting = "qt-host: Waiting for a picture"
        for text in (waiting, f"qt-host: {CAMERA} was unplugged", waiting):
            self.assertTrue(any(text in line for line in program.stdout), text)
        program.terminate()
        self.assertEqual(program.wait(SECONDS), -signal.SIGTERM)

    def check_recording(self, folder, frames):
        """A recording has this many complete pictures, and lists them with rising numbers."""
        pictures = sorted(path.name for path in folder.glob("*.tif*"))
        with open(folder / "frames.csv", newline="", encoding="utf-8") as file:
            lines = list(csv.DictReader(file))
        self.assertEqual([line["file"] for line in lines], pictures)
        self.assertEqual(len(pictures), frames)
        numbers = [int(line["number"]) for line in lines]
        self.assertEqual(numbers, sorted(set(numbers)))
        settings = json.loads((folder / "settings.json").read_text(encoding="utf-8"))
        self.assertEqual(settings["camera"]["model"], "Simulated-Bench")
        return numbers

    def test_the_recorder_writes_every_frame(self):
        folder = self.here / "recording"
        printed = self.run_example("headless-recorder", "-n", 12, "-c", "Simulated", folder)
        self.assertIn("12 of 12 frames written", printed)
        self.assertEqual(self.check_recording(folder, 12), list(range(1, 13)))
        for picture in folder.glob("*.tif"):
            self.check_picture(picture, (480, 640), 4)

    def test_the_recorder_ends_by_control_c(self):
        folder = self.here / "recording"
        program = self.start_example("headless-recorder", "-n", "1000000", folder)
        wait_until(lambda: len(list(folder.glob("*.tif"))) > 1)
        program.send_signal(signal.SIGINT)
        printed, _ = program.communicate(timeout=SECONDS)
        self.assertEqual(program.returncode, 1, printed)
        self.check_recording(folder, int(re.search(r"(\d+) of 1000000 frames written", printed)[1]))

    def test_the_recorder_ends_with_its_camera(self):
        folder = self.here / "recording"
        faults = [{"do": "unplug", "camera": "bench-1", "afterFrames": 4}]
        printed = self.run_example("headless-recorder", folder, code=1,
                                   TOUPCAM_SIM_SCENE=self.scene("faults.json", faults))
        self.assertIn("headless-recorder: the camera is gone", printed)
        self.check_recording(folder, int(re.search(r"(\d+) of 100 frames written", printed)[1]))

    def test_the_recorder_counts_the_frames_that_a_slow_disk_costs(self):
        # No disk takes what this camera sends, with room for one waiting frame only.
        folder = self.here / "recording"
        fast = self.scene("fast.json", width=2400, height=1600, fps=400)
        printed = self.run_example("headless-recorder", "-n", 12, "--memory", 1, folder, code=1,
                                   TOUPCAM_SIM_SCENE=fast)
        written = int(re.search(r"(\d+) of 12 frames written", printed)[1])
        lost = int(re.search(r"lost frames: (\d+), as the disk is too slow", printed)[1])
        self.assertEqual(written + lost, 12)
        self.check_recording(folder, written)

    def test_the_recorder_leaves_no_incomplete_picture_on_a_full_disk(self):
        folder = self.here / "recording"
        printed = run(self.folder / "headless-recorder", folder, code=1, limit=100_000,
                      **self.environment)
        self.assertRegex(printed, r"lost frames: \d+, frame-000001.tif: File too large")
        self.check_recording(folder, 0)

    def test_the_recorder_refuses_what_it_cannot_do(self):
        for folder in (self.here, "/proc/new"):
            self.assertIn(f"\"{folder}\" cannot be made, or is not empty",
                          self.run_example("headless-recorder", folder, code=1))
        for arguments in (("-n", "x", "new"), ("--memory", "0", "new"), ()):
            self.assertIn("expected one FOLDER, and --frames and --memory of 1 or more",
                          self.run_example("headless-recorder", *arguments, code=1))
        self.assertIn("no camera found", self.run_example(
            "headless-recorder", "new", code=1, TOUPCAM_LIBRARY="/nonexistent"))
        plugin = self.here / "broken.so"
        plugin.write_text("no plugin", encoding="utf-8")
        self.assertIn(f"headless-recorder: {plugin}: ", self.run_example(
            "headless-recorder", "-n", 1, self.here / "recording", PCD_PLUGIN_PATH=plugin))

    def pcdctl(self, *arguments, code=0):
        """Runs the installed program with the plugin of the example; returns what it prints."""
        return run(PREFIX / "bin" / "pcdctl", "--sdk", "sim", "--plugin-path", self.driver,
                   *arguments, code=code, **self.environment)

    def test_the_camera_of_the_driver_is_listed(self):
        cameras = json.loads(self.pcdctl("list", "--json"))["cameras"]
        self.assertEqual([camera["id"] for camera in cameras], ["Pattern-P1", CAMERA])

    def test_the_camera_of_the_driver_takes_stills_in_both_modes(self):
        picture, smaller = self.here / "still.tif", self.here / "smaller.tif"
        self.pcdctl("snap", "-c", "Pattern", "-o", picture)
        self.check_picture(picture, (480, 640), 8)
        self.pcdctl("snap", "-c", "Pattern", "-o", smaller, "--mode", "320x240")
        self.check_picture(smaller, (240, 320), 8)

    def test_the_camera_of_the_driver_streams(self):
        self.assertIn("  balanced", self.pcdctl("stream", "-c", "Pattern", "-n", 10))

    def test_the_camera_of_the_driver_takes_values_in_range_only(self):
        for setting in ("exposure=5000", "gain=200", "pattern=tiles", "negative=on"):
            self.pcdctl("set", "-c", "Pattern", setting)
        self.assertIn('"gain" cannot be 500: expected a whole number from 100 to 400',
                      self.pcdctl("set", "-c", "Pattern", "gain=500", code=2))
        self.assertIn("Gain = 100", self.pcdctl("props", "-c", "Pattern"))

    def test_viewer_and_window_show_the_camera_of_the_driver(self):
        picture = self.here / "window.tif"
        self.run_example("qt-host", "--grab", picture, "Pattern", PCD_PLUGIN_PATH=self.driver)
        self.check_picture(picture, (800, 1200), 100)
        picture = self.here / "viewer.png"
        run(PREFIX / "bin" / "pcdview", "--sdk", "sim", "--plugin-path", self.driver, "-c",
            "Pattern", "--grab", picture, **self.environment)
        self.assertGreater(picture.stat().st_size, 0)


class CMakeAndGccTest(BuiltExamples, unittest.TestCase):
    """All examples in one build, with the CMake package."""

    @classmethod
    def build(cls):
        """Builds everything as their README says; copies what the tests use."""
        cls.compiler = {"CXX": "g++", "CXXFLAGS": f"-O0 {' '.join(WARNINGS)}"}
        cls.shell("building", **cls.compiler).run(cls.block("examples/README.md", "Building them", 0))
        made = cls.tree / "build/examples"
        for name in ("minimal-host", "qt-host", "headless-recorder"):
            (cls.folder / name).symlink_to(made / name / name)
        shutil.copy(made / "driver" / "libpattern.so", cls.driver)

    def check_png(self, picture, size):
        """A file has a picture of this width and height."""
        head = picture.read_bytes()[:24]
        self.assertEqual((head[1:4], struct.unpack(">2I", head[16:])), (b"PNG", size))

    def test_they_run_as_their_readme_says(self):
        waiting = "qt-host: Waiting for a picture"
        shell = self.shell("running", TOUPCAM_SIM_SCENE=self.scene("scene.json"), UNTIL=waiting)
        printed = shell.run(self.block("examples/README.md", "Running them", 0))
        self.assertEqual(printed.count(waiting), 2, printed)
        self.check_png(self.tree / "frame.png", (640, 480))
        self.assertEqual(len(list((self.tree / "recording").glob("*.tif"))), 20)

    def test_a_host_is_built_and_run_as_the_guide_says(self):
        block = self.block("docs/own-host.md", "A first one", 0)
        (shown,) = guide_blocks.blocks("docs/own-host.md", "A first one", "text")
        self.assertIn(shown.text, self.shell("host", **self.compiler).run(block))
        self.check_png(self.tree / "frame.png", (5440, 3648))

    def test_a_driver_is_built_run_and_checked_as_the_guide_says(self):
        heading = "Build one outside the tree"
        shell = self.shell("new-driver", **self.compiler)
        shell.run(self.block("docs/own-driver.md", heading, 0))
        printed = shell.run(self.block("docs/own-driver.md", heading, 1))
        (shown,) = guide_blocks.blocks("docs/own-driver.md", heading, "text")
        self.assertIn(shown.text, printed)
        self.assertIn("  balanced", printed)
        self.assertIn(" 0 failed", shell.run(self.block("docs/own-driver.md", "Test it", 0)))


class PkgConfigAndClangTest(BuiltExamples, unittest.TestCase):
    """Each example with one command, as their README has it for one of them."""

    @classmethod
    def build(cls):
        """Builds each example."""
        ours = run("pkg-config", "--variable=includedir", "pcd", **cls.config).strip()
        cls.compiler = {"OURS": ours, "WARNINGS": " ".join(WARNINGS), **cls.config}
        with ThreadPoolExecutor(2) as pool:
            made = [pool.submit(cls.build_driver),
                    *(pool.submit(cls.build_host, *which) for which in (
                        ("minimal-host", "pcd"), ("headless-recorder", "pcd"),
                        ("qt-host", "pcd-gui")))]
        for one in made:
            one.result()

    @classmethod
    def build_host(cls, name, package):
        """A program of one source."""
        block = cls.block("examples/README.md", "Building them", 1)
        cls.shell(f"{name}.state", **cls.compiler).run(block._replace(
            text=block.text.replace("qt-host", name).replace("pcd-gui", package)))
        (cls.folder / name).symlink_to(cls.tree / name)

    @classmethod
    def build_driver(cls):
        """The plugin, with what moc makes of its headers."""
        cls.shell("driver.state", **cls.compiler).run(cls.block("examples/README.md", "Building them", 2))
        shutil.copy(cls.sources / "driver/libpattern.so", cls.driver)


class TextsTest(unittest.TestCase):
    """What documents say about the examples."""

    def test_the_host_in_the_readme_is_the_one_that_builds(self):
        self.assertEqual([block.text for block in guide_blocks.blocks("README.md", "In your own host")],
                         [(EXAMPLES / "minimal-host" / name).read_text(encoding="utf-8")
                          for name in ("CMakeLists.txt", "main.cpp")])

    def test_what_the_guides_quote_is_in_an_example(self):
        files = [path.read_text(encoding="utf-8") for path in EXAMPLES.rglob("*.*")
                 if path.suffix in (".cpp", ".h", ".txt")]
        code = "\n".join(line.strip() for text in files for line in text.splitlines())
        guides = ("docs/own-host.md", "docs/own-driver.md", "docs/packaging.md")
        quotes = [(guide, block.text) for guide in guides for block in guide_blocks.blocks(guide)
                  if block.language in ("cpp", "cmake")]
        self.assertGreater(len(quotes), 5)
        for name, quote in quotes:
            for part in re.split(r"^\s*…\n", quote, flags=re.MULTILINE):
                self.assertIn("\n".join(line.strip() for line in part.strip().splitlines()), code,
                              name)

    def test_every_block_for_a_shell_is_one_that_the_tests_above_run(self):
        for guide, headings in (("examples/README.md", ["Building them"] * 3 + ["Running them"]),
                                ("docs/own-host.md", ["A first one"]),
                                ("docs/own-driver.md", ["Build one outside the tree"] * 2 + ["Test it"])):
            self.assertEqual([block.heading for block in guide_blocks.blocks(guide, language="sh")], headings)

    def test_the_examples_are_as_short_as_they_are_said_to_be(self):
        table = (EXAMPLES / "README.md").read_text(encoding="utf-8")
        for name in sorted(path.name for path in EXAMPLES.iterdir() if path.is_dir()):
            lines = sum(len(path.read_text(encoding="utf-8").splitlines())
                        for path in (EXAMPLES / name).iterdir())
            said = re.search(rf"^\| `{name}` \| (\d+) \|", table, re.MULTILINE)
            self.assertTrue(said, f"{name} in the table")
            self.assertEqual(lines, int(said[1]), name)


def texts(environment):
    """An environment offscreen, with some variables more."""
    return {**os.environ, "QT_QPA_PLATFORM": "offscreen",
            **{name: str(value) for name, value in environment.items()}}


def run(*command, code=0, limit=resource.RLIM_INFINITY, **environment):
    """Runs a program; returns what it prints. Raises with that if it ends with another code.

    No file that it writes may grow beyond the limit, in bytes.
    """
    def prepare():
        resource.setrlimit(resource.RLIMIT_FSIZE, (limit, resource.RLIM_INFINITY))
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)

    ended = subprocess.run([str(word) for word in command], check=False, text=True,
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=SECONDS,
                           env=texts(environment), preexec_fn=prepare)
    if ended.returncode != code:
        raise AssertionError(f"{command} ended with {ended.returncode}, expected {code}:\n"
                             f"{ended.stdout}")
    return ended.stdout


def wait_until(condition):
    """Waits for a condition. Raises if it does not become true."""
    end = time.monotonic() + SECONDS
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("the condition did not become true")
        time.sleep(0.01)


if __name__ == "__main__":
    if len(sys.argv) < 3 or sys.argv[1] != "--prefix":
        sys.exit(__doc__)
    PREFIX = Path(sys.argv[2]).resolve()
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
