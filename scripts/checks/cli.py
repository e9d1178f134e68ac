"""The command line of scripts/check."""

import argparse
import importlib
import sys
import time
from pathlib import Path

from .allowed import FOLDER, pruned
from .tree import InputError, Tree

EXIT_FOUND, EXIT_BAD_INPUT = 1, 2
CHECKS = ("commits", "conventions", "folders", "format", "functions", "headers", "includes", "tests",
          "threads", "uses", "versions", "words")


def parser():
    """The options."""
    made = argparse.ArgumentParser(
        prog="scripts/check",
        description="Checks the rules of CONTRIBUTING.md that a program can check.")
    made.add_argument("names", nargs="*", metavar="NAME", help="run only these (default: all)")
    made.add_argument("--list", action="store_true", help="list the checks without running them")
    made.add_argument("--prune", action="store_true",
                      help=f"remove from the lists in {FOLDER} what is no longer needed")
    return made


def check_of(name):
    """The module of a check."""
    return importlib.import_module(f"{__package__}.{name}")


def chosen(names):
    """The checks that names stand for, all without one. Raises InputError."""
    for name in names:
        if name not in CHECKS:
            raise InputError(f"{name}: there is no such check, expected one of {', '.join(CHECKS)}")
    return names or list(CHECKS)


def show(name, result, seconds):
    """Prints the findings of a check and its figures. Returns True if all is well."""
    findings = sorted(set(result.findings))
    for finding in findings:
        print(f"{finding} [{name}]")
    if not result.checked:
        print(f"{name}: nothing was checked, expected {result.unit}")
    print(f"{name}: {result.checked} {result.unit}, {len(findings)} violations "
          f"({seconds:.1f} s){'; ' + result.note if result.note else ''}", flush=True)
    return result.checked > 0 and not findings


def prune(tree, result):
    """Removes the unnecessary entries of lists, and the findings about them."""
    for path in {finding.path for finding in result.stale}:
        lines = {finding.line for finding in result.stale if finding.path == path}
        file = tree.root / path
        file.write_text(pruned(file.read_text(encoding="utf-8"), lines), encoding="utf-8")
        print(f"{path}: removed {len(lines)} of its lines")
    result.findings = [finding for finding in result.findings if finding not in result.stale]


def run(root, options):
    """Carries out the options; returns the exit code."""
    names = chosen(options.names)
    if options.list:
        for name in names:
            print(f"{name:10} {check_of(name).__doc__.splitlines()[0]}")
        return 0
    tree, good = Tree(root), True
    for name in names:
        started = time.monotonic()
        result = check_of(name).check(tree)
        if options.prune:
            prune(tree, result)
        good = show(name, result, time.monotonic() - started) and good
    return 0 if good else EXIT_FOUND


def main(root, arguments=None):
    """Runs the command line; returns the exit code."""
    try:
        return run(Path(root), parser().parse_args(arguments))
    except InputError as error:
        print(f"scripts/check: {error}", file=sys.stderr)
        return EXIT_BAD_INPUT
