#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Builds the wheel of the Python package for pip, as pyproject.toml says: the module, the libraries of the framework,
the plugin and the simulated SDK. Qt and the other libraries stay those of the system.

CMake builds in build/pip; or in the folder that PCD_BUILD_DIR names, which is a build tree already.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext
from setuptools.command.sdist import sdist
from setuptools.errors import BaseError, ExecError

WORK = Path("build", "pip")  # below this file: pip builds there
WHEEL = WORK / "wheel"


def run_cmake(*arguments):
    """Runs CMake, whose output pip shows if it fails. Raises ExecError."""
    command = ["cmake", *map(str, arguments)]
    try:
        subprocess.run(command, check=True)
    except (OSError, subprocess.CalledProcessError) as error:
        raise ExecError(f"{' '.join(command)}: {error}") from error


def find_build_tree():
    """The build tree to use. Raises BaseError if PCD_BUILD_DIR names none."""
    given = os.environ.get("PCD_BUILD_DIR")
    if given:
        if not Path(given, "CMakeCache.txt").is_file():
            raise BaseError(f'PCD_BUILD_DIR is "{given}", which has no CMakeCache.txt: expected a folder in which CMake '
                            "has been run")
        return given
    tree = WORK / sys.implementation.cache_tag
    run_cmake("--preset", "release", "-B", tree, "-D", "PCD_BUILD_PYTHON=ON", "-D", f"PCD_PYTHON={sys.executable}")
    return tree


class BuildByCMake(build_ext):
    """Builds the module with all that it loads, each file in its place in the wheel."""

    def run(self):
        if self.inplace:
            raise BaseError("an editable installation has no place for the libraries: build the target pcd_python, and "
                            "put build/python into PYTHONPATH")
        super().run()

    def build_extension(self, ext):
        tree = find_build_tree()
        run_cmake("--build", tree, "--target", "pcd_python")
        run_cmake("--install", tree, "--component", "wheel", "--prefix", self.build_lib, "--strip")
        module = Path(self.get_ext_fullpath(ext.name))
        if not module.is_file():
            raise BaseError(f'"{tree}" is for another Python: expected "{module.name}" from it')
        # A wheel has no links: each library has the name that the loader looks for.
        for link in filter(Path.is_symlink, (module.parent / "lib").iterdir()):
            link.resolve().replace(link)


class NoArchive(sdist):
    """There is no archive of sources for pip: CMake needs the whole tree."""

    def run(self):
        raise BaseError('pip installs from the whole tree: expected an archive of that, as from "git archive"')


def main():
    """Calls setuptools."""
    text = Path("CMakeLists.txt").read_text(encoding="utf-8")
    shutil.rmtree(WHEEL, ignore_errors=True)  # without what an earlier version had
    WHEEL.mkdir(parents=True)
    setup(version=re.search(r"^project\(\w+ VERSION ([\d.]+)", text, re.MULTILINE)[1],
          ext_modules=[Extension("pcd._pcd", [])],
          cmdclass={"build_ext": BuildByCMake, "sdist": NoArchive},
          options={"build": {"build_base": str(WORK), "build_lib": str(WHEEL)},
                   "egg_info": {"egg_base": str(WORK)}})


if __name__ == "__main__":
    main()
