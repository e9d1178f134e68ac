"""The command line of scripts/instructions."""

import argparse
import json
import os
import sys
from pathlib import Path

from .count import CountError, count

EXIT_MORE, EXIT_BAD_INPUT, EXIT_FAILED = 1, 2, 3
KEPT = Path("bench", "counts", "instructions.json")
# Threads that wait take a few instructions more or less; a line of code more in the work of a frame
# is above this: two more readings of each range at opening are 1.1 %.
TOLERANCE = 0.01
ADVICE = """\
If this is meant, because the work is worth it, run scripts/instructions --update and say in the commit what
the instructions are for. To see where they are: valgrind --tool=callgrind build/bin/counted_work THING 100"""


class InputError(Exception):
    """The request is invalid; the text says what is wrong and what was expected."""


def parser():
    """The options."""
    made = argparse.ArgumentParser(
        prog="scripts/instructions", description="Counts the instructions of what is done most, and "
        f"fails if they are more than what {KEPT} says by over {TOLERANCE:.0%}.")
    made.add_argument("--update", action="store_true", help="keep what is counted now")
    made.add_argument("--build", type=Path, metavar="FOLDER",
                      help="the build folder (default: build); GCC's, optimised, such as the preset "
                      "dev makes")
    made.add_argument("--kept", type=Path, metavar="FILE", help=f"compare with another file than {KEPT}")
    return made


def read_kept(path):
    """What is kept: for each thing how often it is done in the two runs, and its instructions."""
    try:
        kept = json.loads(path.read_text(encoding="utf-8"))
        for entry in kept.values():
            if not (0 <= entry["few"] < entry["many"] and entry["instructions"] > 0):
                raise ValueError("\"few\" is not below \"many\", or no instructions")
        if not kept:
            raise ValueError("nothing to count")
        return kept
    except (OSError, ValueError, KeyError, TypeError, AttributeError) as error:
        raise InputError(f"{path}: {error}; expected things with \"few\", \"many\" and "
                         "\"instructions\"") from error


def is_more(now, kept):
    """Whether a count is above the kept one by more than threads make it vary."""
    return now > kept * (1 + TOLERANCE)


def compare(counted, kept):
    """Prints the counts. Returns True if none is more than it was."""
    good = True
    for thing, now in counted.items():
        before = kept[thing]["instructions"]
        bad = is_more(now, before)
        good = good and not bad
        note = "MORE" if bad else "less: scripts/instructions --update keeps it" if is_more(
            before, now) else ""
        print(f"{thing:<16} {now:>12,.0f}  kept {before:>12,}  {100 * (now / before - 1):+6.1f} %  "
              f"{note}".rstrip())
    return good


def update(path, counted, kept):
    """Writes what is counted."""
    for thing, now in counted.items():
        kept[thing]["instructions"] = round(now)
    draft = path.with_name(path.name + ".new")
    draft.write_text(json.dumps(kept, indent=2) + "\n", encoding="utf-8")
    os.replace(draft, path)
    print(f"{path.name}: written")


def run(root, options):
    """Does what the options say; returns the exit code."""
    path = options.kept or root / KEPT
    kept = read_kept(path)
    program = (options.build or root / "build") / "bin" / "counted_work"
    if not program.is_file():
        raise InputError(f"{program}: not built; expected scripts/build, or --build FOLDER")
    counted = {thing: count(program, thing, entry["few"], entry["many"])
               for thing, entry in kept.items()}
    good = compare(counted, kept)
    if options.update:
        update(path, counted, kept)
        return 0
    if not good:
        print(ADVICE)
    return 0 if good else EXIT_MORE


def main(root):
    """Runs the command; returns the exit code."""
    options = parser().parse_args()
    try:
        return run(root, options)
    except InputError as error:
        print(f"scripts/instructions: {error}", file=sys.stderr)
        return EXIT_BAD_INPUT
    except CountError as error:
        print(f"scripts/instructions: {error}", file=sys.stderr)
        return EXIT_FAILED
