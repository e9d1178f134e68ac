#!/usr/bin/python3
"""Tests an installed tree, which was moved: the programs run, other trees build with it, and nothing
is left of it.

Usage: install_test.py BUILD: the build folder to install from.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"
BUILD = None


class InstallTest(unittest.TestCase):
    """What `cmake --install` wrote, used under another path than it was installed to."""

    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        run("cmake", "--install", BUILD, "--prefix", cls.folder / "first")
        cls.prefix = cls.folder / "moved"
        (cls.folder / "first").rename(cls.prefix)

    def test_the_command_line_takes_a_still_with_the_simulated_sdk(self):
        picture = self.folder / "still.png"
        run(self.prefix / "bin" / "pcdctl", "--sdk", "sim", "snap", "-o", picture)
        self.assertGreater(picture.stat().st_size, 0)

    def test_the_viewer_shows_a_picture(self):
        picture = self.folder / "window.png"
        run(self.prefix / "bin" / "pcdview", "--sdk", "sim", "--grab", picture)
        self.assertGreater(picture.stat().st_size, 0)

    def test_libraries_have_versions_and_no_path_of_the_build(self):
        libraries = sorted((self.prefix / "lib").glob("lib*.so"))
        self.assertEqual([library.stem for library in libraries],
                         ["libPCd", "libPCdGui", "libPCore", "libPDip", "libPGui", "libPLog"])
        modules = [self.prefix / "lib/pcd/plugins/libPTDevice.so",
                   self.prefix / "lib/pcd/sim/libtoupcam.so"]
        programs = [self.prefix / "bin" / name for name in ("pcdctl", "pcdview")]
        for file in (*libraries, *modules, *programs):
            dynamic = run("readelf", "--dynamic", file)
            self.assertNotIn(str(BUILD), dynamic, file)
            if file in libraries:
                self.assertIn(f"soname: [{file.name}.0]", dynamic)

    def test_a_host_builds_with_the_cmake_package(self):
        build = self.folder / "by-cmake"
        run("cmake", "-S", EXAMPLES / "minimal-host", "-B", build, f"-DCMAKE_PREFIX_PATH={self.prefix}")
        run("cmake", "--build", build)
        self.check_host(build / "minimal-host")

    def test_a_host_builds_with_pkg_config(self):
        found = run("pkg-config", "--cflags", "--libs", "pcd",
                    PKG_CONFIG_PATH=self.prefix / "lib/pkgconfig").split()
        program = self.folder / "by-pkg-config"
        run("c++", "-std=c++17", EXAMPLES / "minimal-host/main.cpp", "-o", program, *found,
            f"-Wl,-rpath,{self.prefix / 'lib'}")
        self.check_host(program)

    def test_the_host_in_the_readme_is_the_one_that_builds(self):
        readme = (ROOT / "README.md").read_text(encoding="utf-8")
        for name in ("CMakeLists.txt", "main.cpp"):
            self.assertIn((EXAMPLES / "minimal-host" / name).read_text(encoding="utf-8"), readme)

    def check_host(self, program):
        """Runs the example on the simulated camera."""
        picture = self.folder / "frame.png"
        picture.unlink(missing_ok=True)
        run(program, picture, TOUPCAM_LIBRARY=self.prefix / "lib/pcd/sim/libtoupcam.so")
        self.assertGreater(picture.stat().st_size, 0)

    def test_a_version_that_does_not_fit_is_refused(self):
        source = self.folder / "other-version"
        source.mkdir()
        (source / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(other LANGUAGES CXX)\n"
            "find_package(PCd 0.2 REQUIRED)\n", encoding="utf-8")
        ended = subprocess.run(["cmake", "-S", source, "-B", self.folder / "by-version",
                                f"-DCMAKE_PREFIX_PATH={self.prefix}"], check=False,
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
    BUILD = Path(sys.argv[1])
    assert shutil.which("pkg-config"), "pkg-config is missing: expected what scripts/dependencies installs"
    unittest.main(argv=sys.argv[:1])
