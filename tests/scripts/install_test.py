#!/usr/bin/python3
"""Tests an installed tree, which was moved: the programs run, other trees find it, and nothing is left
of one that is removed. (examples_test.py builds and runs hosts and a driver with it.)

Usage: install_test.py BUILD PREFIX [PART…]: the build folder, where installed_tree.py left its tree, and which of the
parts `gstreamer` and `python` it has.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import venv
from pathlib import Path

import short_uses

BUILD = None
PREFIX = None
ABSENT = ()  # classes of tests
PYTHON_FOLDER = f"lib/python{sys.version_info.major}.{sys.version_info.minor}/site-packages"


class InstallTest(unittest.TestCase):
    """What `cmake --install` wrote, used under another path than it was installed to."""

    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))

    def test_the_command_line_takes_a_still_with_the_simulated_sdk(self):
        picture = self.folder / "still.png"
        run(PREFIX / "bin" / "pcdctl", "--sdk", "sim", "snap", "-o", picture)
        self.assertGreater(picture.stat().st_size, 0)

    def test_a_traced_command_is_replayed(self):
        trace = self.folder / "list.trace"
        listed = run(PREFIX / "bin" / "pcdctl", "--sdk", "sim", "list", "--trace", trace)
        self.assertIn(listed, run(PREFIX / "bin" / "pcdctl", "replay", trace))

    def test_the_viewer_shows_a_picture(self):
        picture = self.folder / "window.png"
        run(PREFIX / "bin" / "pcdview", "--sdk", "sim", "--grab", picture)
        self.assertGreater(picture.stat().st_size, 0)

    def test_without_any_sdk_the_cameras_of_other_plugins_can_be_used(self):
        # As with only the packages of the program and of another maker's plugin.
        tree = self.folder / "tree"
        shutil.copytree(PREFIX, tree, symlinks=True)
        shutil.rmtree(tree / "lib" / "pcd" / "sim")
        program = [tree / "bin" / "pcdctl", "--plugin-path", BUILD / "lib" / "test-plugins" / "lab"]
        self.assertIn("Lab-", run(*program, "list", TOUPCAM_LIBRARY=""))
        with self.assertRaisesRegex(AssertionError, "ok +cameras +all plugins: Lab-"):  # an error: no SDK
            run(*program, "doctor", "--folder", self.folder, TOUPCAM_LIBRARY="")
        for choice in (("--sdk", "sim"), ("--scene", self.folder)):
            with self.assertRaisesRegex(AssertionError, "ended with [12]:"):
                run(*program, *choice, "list", TOUPCAM_LIBRARY="")

    def test_libraries_have_versions_and_no_path_of_the_build(self):
        libraries = sorted((PREFIX / "lib").glob("lib*.so"))
        self.assertEqual([library.stem for library in libraries],
                         ["libPCd", "libPCdGui", "libPCore", "libPDip", "libPGui", "libPLog"])
        modules = [PREFIX / "lib/pcd/plugins/libPTDevice.so",
                   PREFIX / "lib/pcd/sim/libtoupcam.so",
                   PREFIX / "lib/pcd/trace/libtoupcam.so",
                   PREFIX / "lib/pcd/replay/libtoupcam.so"]
        programs = [PREFIX / "bin" / name for name in ("pcdctl", "pcdview")]
        for file in (*libraries, *modules, *programs):
            dynamic = run("readelf", "--dynamic", file)
            self.assertNotIn(str(BUILD), dynamic, file)
            if file in libraries:
                self.assertIn(f"soname: [{file.name}.0]", dynamic)

    def test_a_version_that_does_not_fit_is_refused(self):
        source = self.folder / "other-version"
        source.mkdir()
        (source / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(other LANGUAGES CXX)\n"
            "find_package(PCd 0.2 REQUIRED)\n", encoding="utf-8")
        ended = subprocess.run(["cmake", "-S", source, "-B", self.folder / "by-version",
                                f"-DCMAKE_PREFIX_PATH={PREFIX}"], check=False,
                               capture_output=True, text=True)
        self.assertNotEqual(ended.returncode, 0)
        self.assertIn('compatible with requested version "0.2"', " ".join(ended.stderr.split()))


class UninstallTest(unittest.TestCase):
    """The target `uninstall`."""

    def test_nothing_is_left_but_what_was_there(self):
        with tempfile.TemporaryDirectory() as folder:
            prefix = Path(folder, "prefix")
            other = prefix / "lib" / "pcd" / "plugins" / "other.so"
            other.parent.mkdir(parents=True)
            other.touch()
            run("cmake", "--install", BUILD, "--prefix", prefix)
            run("cmake", "--build", BUILD, "--target", "uninstall")
            self.assertEqual([path for path in prefix.rglob("*") if not path.is_dir()], [other])


class GStreamerTest(unittest.TestCase):
    """The component `gstreamer` of the tree that was moved."""

    plugin = "lib/gstreamer-1.0/libgstpcd.so"

    def test_a_pipeline_takes_frames(self):
        with tempfile.TemporaryDirectory() as folder:
            frames = Path(folder, "frames")
            run(*short_uses.PIPELINE, f"location={frames}", GST_PLUGIN_PATH=(PREFIX / self.plugin).parent,
                GST_REGISTRY=Path(folder, "registry.bin"))
            short_uses.check_frames(self, frames)

    def test_the_plugin_has_no_path_of_the_build(self):
        self.assertNotIn(str(BUILD), run("readelf", "--dynamic", PREFIX / self.plugin))


class PythonTest(unittest.TestCase):
    """The component `python`."""

    def test_a_program_uses_the_tree_that_was_moved(self):
        package = PREFIX / PYTHON_FOLDER / "pcd"
        printed = run(sys.executable, "-c", short_uses.PROGRAM, PYTHONPATH=package.parent, PYTHONDONTWRITEBYTECODE=1)
        short_uses.check_program(self, printed, package, PREFIX / "lib")
        self.assertNotIn(str(BUILD), run("readelf", "--dynamic", *package.glob("_pcd.*.so")))
        # What is installed is what is in the tree, with the types and what declares them.
        sources = Path(__file__).parents[2] / "python/pcd"
        kinds = (".py", ".pyi", ".typed")
        self.assertEqual(*([(path.name, path.read_bytes()) for path in sorted(folder.iterdir()) if path.suffix in kinds]
                           for folder in (package, sources)))

    def test_in_a_virtual_environment_it_is_found_and_removed(self):
        with tempfile.TemporaryDirectory() as folder:
            prefix = Path(folder, "environment")
            venv.create(prefix, system_site_packages=True, symlinks=True)
            before = sorted(prefix.rglob("*"))
            for component in ("runtime", "plugin", "simulator", "python"):
                run("cmake", "--install", BUILD, "--prefix", prefix, "--component", component)
            package = prefix / PYTHON_FOLDER / "pcd"
            printed = run(prefix / "bin/python", "-c", short_uses.PROGRAM, PYTHONDONTWRITEBYTECODE="")
            short_uses.check_program(self, printed, package, prefix / "lib")
            self.assertTrue((package / "__pycache__").exists())
            run("cmake", "--build", BUILD, "--target", "uninstall")
            self.assertEqual(sorted(prefix.rglob("*")), before)


def load_tests(_loader, tests, _pattern):
    """All tests but those of parts that were not built."""
    return unittest.TestSuite(test for cases in tests for test in cases if not isinstance(test, ABSENT))


def run(*command, **environment):
    """Runs a program offscreen; returns what it prints. Raises with its output if it fails."""
    ended = subprocess.run([str(word) for word in command], check=False, text=True,
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                           env={**os.environ, "QT_QPA_PLATFORM": "offscreen",
                                **{name: str(value) for name, value in environment.items()}})
    if ended.returncode != 0:
        raise AssertionError(f"{command} ended with {ended.returncode}:\n{ended.stdout}")
    return ended.stdout


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    BUILD, PREFIX = Path(sys.argv[1]), Path(sys.argv[2])
    PARTS = {"gstreamer": GStreamerTest, "python": PythonTest}
    ABSENT = tuple(cases for part, cases in PARTS.items() if part not in sys.argv[3:])
    unittest.main(argv=sys.argv[:1])
