#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Installs the Python package with pip as docs/python.md says, in a virtual environment, and uses it there.

Usage: pip_test.py BUILD: a build tree, whose module and libraries are taken: what pip adds is tested here, and
not the compiler again. Without PCD_BUILD_DIR pip uses a tree of its own, which is configured here but not built.
"""

import importlib.util
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import guide_blocks
import short_uses

BUILD = None
TREE = Path(__file__).resolve().parents[2]
PYTHON_FOLDER = f"lib/python{sys.version_info.major}.{sys.version_info.minor}/site-packages"


def run(*command, code=0, **environment):
    """Runs a program in the tree; returns what it prints. Raises with that if it ends with another code."""
    ended = subprocess.run(list(map(str, command)), check=False, text=True, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, cwd=TREE, env={**os.environ, **environment})
    if ended.returncode != code:
        raise AssertionError(f"{command} ended with {ended.returncode}:\n{ended.stdout}")
    return ended.stdout


def untidy():
    """What setuptools is known to leave in a tree of sources."""
    return sorted(path for folder in (TREE, TREE / "python") for path in folder.glob("*.egg-info"))


class PipTest(unittest.TestCase):
    """The lines of the guide, run as they are with another home."""

    @classmethod
    def setUpClass(cls):
        cls.home = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        (block,) = guide_blocks.blocks("docs/python.md", "Installing", "sh")
        cls.lines = block.text
        run("bash", "-e", "-c", cls.lines, HOME=str(cls.home), PCD_BUILD_DIR=str(BUILD))
        cls.environment = cls.home / "pcd"
        cls.packages = cls.environment / PYTHON_FOLDER

    def pip(self, *arguments, **options):
        """Runs the pip of the environment."""
        return run(self.environment / "bin/pip", *arguments, HOME=str(self.home), **options)

    def test_1_the_lines_install_without_a_network_and_without_another_place_for_building(self):
        self.assertIn("pip\" install --no-build-isolation --no-index .\n", self.lines)

    def test_2_a_program_uses_nothing_but_the_environment(self):
        package = self.packages / "pcd"
        printed = run(self.environment / "bin/python", "-c", f"import os; os.chdir('/')\n{short_uses.PROGRAM}")
        short_uses.check_program(self, printed, package, package / "lib")
        for library in (*package.rglob("*.so"), *package.rglob("*.so.*")):
            self.assertNotIn(str(BUILD), run("readelf", "--dynamic", library), library)

    def test_3_types_are_declared_and_the_version_is_that_of_the_tree(self):
        for name in ("py.typed", "_pcd.pyi"):
            self.assertEqual((self.packages / "pcd" / name).read_bytes(), (TREE / "python/pcd" / name).read_bytes())
        version = re.search(r"^project\(\w+ VERSION (\S+)", (TREE / "CMakeLists.txt").read_text(encoding="utf-8"), re.M)[1]
        self.assertIn(f"\nVersion: {version}\n", self.pip("show", "pcd"))

    def test_4_the_sources_stay_as_they_were(self):
        self.assertEqual(untidy(), [])

    def test_5_without_a_build_tree_one_is_configured_for_the_python_of_pip(self):
        spec = importlib.util.spec_from_file_location("setup_of_the_tree", TREE / "setup.py")
        setup = importlib.util.module_from_spec(spec)
        spec.loader.exec_module(setup)
        setup.WORK = self.home / "work"
        os.chdir(TREE)  # as pip does
        tree = setup.find_build_tree()
        cache = (tree / "CMakeCache.txt").read_text(encoding="utf-8")
        for line in ("CMAKE_BUILD_TYPE:STRING=Release", f"PCD_PYTHON:FILEPATH={sys.executable}"):
            self.assertIn(f"\n{line}\n", cache)
        self.assertIn("\npcd_python: phony\n", run("cmake", "--build", tree, "--target", "help"))

    def test_6_what_cannot_be_done_is_refused_with_the_reason(self):
        install = ("install", "--no-build-isolation", "--no-index", "--no-deps", "--force-reinstall")
        printed = self.pip(*install, ".", code=1, PCD_BUILD_DIR=str(self.home))
        self.assertIn(f'PCD_BUILD_DIR is "{self.home}", which has no CMakeCache.txt', printed)
        self.assertIn("put build/python into PYTHONPATH",
                      self.pip(*install, "--editable", ".", code=1, PCD_BUILD_DIR=str(BUILD)))

    def test_7_pip_removes_everything(self):
        self.pip("uninstall", "--yes", "pcd")
        self.assertEqual(sorted(self.packages.glob("*pcd*")), [])


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    BUILD = Path(sys.argv[1]).resolve()
    unittest.main(argv=sys.argv[:1])
