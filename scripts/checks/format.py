"""C++ is formatted with clang-format."""

import re
import shutil
import subprocess

from .result import Result
from .tree import CPP, InputError

PLACE = re.compile(r"^(?P<path>.+?):(?P<line>\d+):\d+: error: .*\[-Wclang-format-violations\]",
                   re.MULTILINE)
AT_ONCE = 100  # files: a command line has an end


def check(tree):
    """Checks all C++ files. Raises InputError without clang-format."""
    if not shutil.which("clang-format"):
        raise InputError("clang-format is not installed: expected what scripts/dependencies ci "
                         "installs")
    files = [str(path) for path in tree.files if path.suffix in CPP]
    result = Result("files", len(files))
    for first in range(0, len(files), AT_ONCE):
        check_some(tree, files[first:first + AT_ONCE], result)
    return result


def check_some(tree, files, result):
    """Adds a violation for each file that clang-format would change."""
    ended = subprocess.run(["clang-format", "--dry-run", "--Werror", *files], cwd=tree.root,
                           check=False, capture_output=True, text=True)
    places = {}
    for found in PLACE.finditer(ended.stderr):
        places.setdefault(found["path"], []).append(int(found["line"]))
    for path, lines in places.items():
        result.add(path, lines[0], f"formatted differently, the first of {len(lines)} places: "
                   f"expected what clang-format -i {path} writes")
    if ended.returncode != 0 and not places:
        result.add(files[0], 1, f"clang-format failed: {ended.stderr.strip()}")
