"""The version is that of CMakeLists.txt, in the changelogs too."""

import re
from pathlib import PurePosixPath

from .result import Result

SOURCE = PurePosixPath("CMakeLists.txt")
PROJECT = re.compile(r"^project\(\w+ VERSION ([\d.]+)", re.MULTILINE)
# The first version that each names: the newest.
PLACES = {
    PurePosixPath("CHANGELOG.md"): re.compile(r"^## ([\d.]+)", re.MULTILINE),
    PurePosixPath("debian/changelog"): re.compile(r"^\S+ \(([^)]+)\)", re.MULTILINE),
}


def check(tree):
    """Compares the versions."""
    result = Result("files")
    wanted = find_version(tree, SOURCE, PROJECT, result)
    for path, pattern in PLACES.items():
        found = find_version(tree, path, pattern, result)
        if wanted and found and found[1] != wanted[1]:
            line = tree.text(path).count("\n", 0, found.start()) + 1
            result.add(path, line, f"version {found[1]}: expected {wanted[1]}, as in {SOURCE}")
    return result


def find_version(tree, path, pattern, result):
    """The place of a file's version; None with a violation if it has none."""
    result.checked += path in tree.files
    found = pattern.search(tree.text(path)) if path in tree.files else None
    if not found:
        result.add(path, 1, "no version was found: expected that of the program")
    return found
