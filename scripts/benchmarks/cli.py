"""The command line of scripts/bench."""

import argparse
import json
import os
import re
import sys
import tempfile
from pathlib import Path

from .compare import differences
from .figures import FigureError, figure_from, figure_of
from .machine import machine
from .programs import ProgramError, build, programs_in, rows_of
from .table import failing, missing, table

EXIT_FAILING, EXIT_BAD_INPUT, EXIT_FAILED = 1, 2, 3
RESULTS = Path("build", "bench.json")
PLOTS = Path("docs", "images")


class InputError(Exception):
    """The request is invalid; the text says what is wrong and what was expected."""


def parser():
    """The options."""
    made = argparse.ArgumentParser(
        prog="scripts/bench", description="Builds the benchmarks in release, runs them, writes "
        f"{RESULTS} and prints a table; fails if a target does not hold. See docs/performance.md.")
    made.add_argument("--compare", type=Path, metavar="OLD.json",
                      help="also print what changed since an earlier run")
    made.add_argument("--plots", action="store_true",
                      help=f"also measure how it grows, and draw it in {PLOTS}")
    made.add_argument("--filter", metavar="REGEX", help="only figures whose name matches")
    made.add_argument("--build", type=Path, metavar="FOLDER",
                      help="run the programs of this build folder, as they are")
    made.add_argument("--output", type=Path, metavar="FILE",
                      help=f"write the figures here (default: {RESULTS})")
    return made


def read_figures(path):
    """The figures of an earlier run."""
    try:
        entries = json.loads(path.read_text(encoding="utf-8"))["figures"]
        return [figure_from(entry) for entry in entries]
    except (OSError, ValueError, KeyError, TypeError, AttributeError, FigureError) as error:
        raise InputError(f"{path}: not the figures of an earlier run ({error}); "
                         "expected a file that scripts/bench has written") from error


def write_figures(path, facts, figures):
    """Replaces the file in one step."""
    text = json.dumps({"machine": facts, "figures": [figure.as_dict() for figure in figures]},
                      indent=2)
    draft = path.with_name(path.name + ".new")
    draft.write_text(text + "\n", encoding="utf-8")
    os.replace(draft, path)


def check(options, path):
    """Raises InputError for what would be noticed only after an hour of measuring."""
    try:
        re.compile(options.filter or "")
    except re.error as error:
        raise InputError(f"--filter {options.filter}: {error}; expected a regular expression") from error
    if path.is_dir():
        raise InputError(f"{path}: it is a folder; expected a file")
    try:
        path.parent.mkdir(parents=True, exist_ok=True)
        with tempfile.TemporaryFile(dir=path.parent):
            pass
    except OSError as error:
        raise InputError(f"{path}: cannot be written ({error}); expected a file in a folder that "
                         "can be written to") from error


def measure(programs, pattern):
    """The figures of all programs, and what could not be measured, as texts."""
    figures, failures = [], []
    for program in programs:
        print(f"{program.name} ...", file=sys.stderr, flush=True)
        for row in rows_of(program, pattern):
            try:
                figures.append(figure_of(row))
            except FigureError as error:
                failures.append(str(error))
    if not figures and not failures:
        raise InputError(f"--filter {pattern}: matches no figure" if pattern
                         else "the programs reported no figures")
    return figures, failures


def draw(growth, folder):
    """Measures how it grows, and draws it in a folder."""
    if growth is None:
        raise ProgramError("bench_growth was not built")
    from .plots import draw as draw_rows  # needs matplotlib, which figures do not
    print(f"{growth.name} ...", file=sys.stderr, flush=True)
    draw_rows(rows_of(growth), folder)


def run(root, options):
    """Does what the options say; returns the exit code."""
    output = options.output or root / RESULTS
    check(options, output)
    before = read_figures(options.compare) if options.compare else None
    facts = machine()  # before anything loads it
    programs, growth = programs_in(options.build or build(root))
    figures, failures = measure(programs, options.filter)
    if failures:  # an earlier file stays: this run is not whole
        print("\n".join(table(figures)))
        raise FigureError("\nscripts/bench: ".join(failures))
    write_figures(output, facts, figures)
    print("\n".join(table(figures)))
    if before is not None:
        print("\n" + "\n".join(differences(before, figures)))
    if options.plots:
        draw(growth, root / PLOTS)
    bad = failing(figures)
    if bad:
        print(f"\n{len(bad)} of {len(figures)} do not hold: {', '.join(bad)}")
    absent = missing(figures)
    if absent:
        print(f"\n{len(absent)} of {len(figures)} were not measured, as what they need was not "
              f"built: {', '.join(absent)}")
    return EXIT_FAILING if bad or absent else 0


def main(root):
    """Runs the command; returns the exit code."""
    options = parser().parse_args()
    try:
        return run(root, options)
    except InputError as error:
        print(f"scripts/bench: {error}", file=sys.stderr)
        return EXIT_BAD_INPUT
    except (ProgramError, FigureError) as error:
        print(f"scripts/bench: {error}", file=sys.stderr)
        return EXIT_FAILED
