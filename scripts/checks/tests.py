"""Each class of src has a test file of its name, or an exception says which tests cover it."""

import re

from .allowed import Allowed
from .result import Result

TEST = re.compile(r"^((TYPED|ROW)_)?TEST(_[FP])?\(", re.MULTILINE)


def check(tree):
    """Checks all C++ files of src; the tests are known by their names."""
    result, allowed = Result("classes"), Allowed(tree, "tests", may_grow=True)
    tests = {path.stem for path in tree.sources("tests") if TEST.search(tree.text(path))}
    classes = {}
    for path in tree.sources("src"):
        classes.setdefault(path.stem, []).append(path)
    for name, paths in classes.items():
        result.checked += 1
        if f"{name}Test" in tests:
            continue
        entry = allowed.find(name)
        if entry is None:
            result.add(paths[0], 1, f"no test is named {name}Test: expected one, or a line in "
                       f"{allowed.path} that names the tests of {name}")
        else:
            check_entry(entry, paths, tests, allowed.path, result)
    allowed.report(result)
    return result


def check_entry(entry, paths, tests, file, result):
    """Adds a violation if an exception names a test that does not exist, or none for code."""
    named = entry.details.split()
    for test in named:
        if test not in tests:
            result.add(file, entry.line, f"{entry.name}: there is no test {test}, expected the "
                       "name of a test file without .cpp")
    if not named and "no test" not in entry.reason.lower() \
            and any(path.suffix == ".cpp" for path in paths):
        result.add(file, entry.line, f"{entry.name} has a .cpp file: expected the names of the "
                   "tests that cover it")
