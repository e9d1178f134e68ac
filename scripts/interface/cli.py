"""The command line of scripts/abi."""

import argparse
import os
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from checks.tree import InputError, Tree

from .compare import differences
from .libraries import find_libraries
from .promise import promise_of
from .text import FOLDER, file_of, read, written

KINDS = ("class", "union", "enum")  # of types
EXIT_FOUND, EXIT_BAD_INPUT = 1, 2
ADVICE = """\
What adds keeps hosts and plugins running that were built before; what breaks makes them fail, until they
are built again. If this is meant, raise the version in CMakeLists.txt (its third number for what adds, its
second one for what breaks, unless that was done since the last release), write it into CHANGELOG.md, run
scripts/abi --update, and commit what it changes with the code."""


def parser():
    """The options."""
    made = argparse.ArgumentParser(
        prog="scripts/abi", description="Compares the binary interface of the built libraries with "
        f"the one that is kept in {FOLDER}.")
    made.add_argument("--update", action="store_true", help="keep the interface of the build")
    made.add_argument("--build", metavar="FOLDER", help="the build folder (default: build); GCC's, "
                      "with debug information, such as the preset dev makes")
    return made


def promises(libraries):
    """What libraries promise. A type is in the first of those that use it."""
    with ThreadPoolExecutor(os.cpu_count()) as sources, ThreadPoolExecutor(len(libraries)) as pool:
        found = dict(zip((library.name for library in libraries),
                         pool.map(lambda library: promise_of(library, sources.map), libraries)))
    known = set()
    for name, promise in found.items():
        found[name] = {entry: value for entry, value in promise.items() if entry not in known}
        known |= {entry for entry in promise if entry.split()[0] in KINDS}
    return found


def keep(root, built):
    """Writes what was built as what is kept."""
    (root / FOLDER).mkdir(parents=True, exist_ok=True)
    for name, promise in built.items():
        file, text = root / file_of(name), written(promise)
        if not file.is_file() or file.read_text(encoding="utf-8") != text:
            file.write_text(text, encoding="utf-8")
            print(f"{file_of(name)}: written, {text.count(chr(10))} lines")


def compare(root, built):
    """Prints what differs. Returns True if nothing does."""
    good = True
    for name, promise in built.items():
        file = root / file_of(name)
        if not file.is_file():
            raise InputError(f"{file_of(name)}: there is no such file, expected what {name} promises "
                             "(scripts/abi --update writes it)")
        found = differences(str(file_of(name)), read(file_of(name), file.read_text(encoding="utf-8")),
                            promise)
        for difference in found:
            print(difference)
        breaking = sum(difference.breaks for difference in found)
        print(f"{name}: {len(promise)} types and symbols, {breaking} differences break, "
              f"{len(found) - breaking} add")
        good = good and bool(promise) and not found
    return good


def surplus(root, built):
    """Raises InputError if a promise is kept that no library makes."""
    for file in sorted((root / FOLDER).glob("*.abi")):
        if file.stem not in built:
            raise InputError(f"{FOLDER / file.name}: no library of this name is built, expected one of "
                             f"{', '.join(built)}")


def run(root, options):
    """Carries out the options; returns the exit code."""
    built = promises(find_libraries(Tree(root), Path(options.build or root / "build")))
    surplus(root, built)
    if options.update:
        keep(root, built)
        return 0
    if compare(root, built):
        return 0
    print(ADVICE)
    return EXIT_FOUND


def main(root, arguments=None):
    """Runs the command line; returns the exit code."""
    try:
        return run(Path(root), parser().parse_args(arguments))
    except InputError as error:
        print(f"scripts/abi: {error}", file=sys.stderr)
        return EXIT_BAD_INPUT
