#!/usr/bin/python3
"""Installs a build and moves what was installed, for the tests that use it there.

Usage: installed_tree.py BUILD PREFIX: PREFIX is replaced.
"""

import shutil
import subprocess
import sys
from pathlib import Path


def main(build, prefix):
    """Leaves the tree at the prefix; it was installed to another path."""
    first = prefix.with_name(prefix.name + "-first")
    for folder in (first, prefix):
        shutil.rmtree(folder, ignore_errors=True)
    subprocess.run(["cmake", "--install", build, "--prefix", first], check=True,
                   stdout=subprocess.DEVNULL)
    first.rename(prefix)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(Path(sys.argv[1]), Path(sys.argv[2]))
