"""The command line of scripts/tidy."""

import argparse
import os
import subprocess
from concurrent.futures import ThreadPoolExecutor

from .commands import source_runs, unit_runs, units
from .kept import Kept, default_folder


def parser():
    """The options."""
    made = argparse.ArgumentParser(
        prog="scripts/tidy", description="Runs clang-tidy with the checks of .clang-tidy over the sources of src, as "
        "the asan preset compiles them, which is built first. Those that were clean and have not changed since are "
        "skipped; to check them all again, delete " + str(default_folder()).replace("%", "%%") + ".")
    made.add_argument("text", nargs="?", default="", metavar="TEXT",
                      help="only units, or sources, whose path contains the text")
    made.add_argument("--analyse", action="store_true",
                      help="run clang-tidy's analyser alone, over one source at a time: five seconds for each")
    return made


def tidy(run, root):
    """Runs clang-tidy. Returns True if it found nothing."""
    ended = subprocess.run(run.arguments, cwd=root, text=True, check=False,
                           stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if ended.returncode != 0:
        # The count of warnings in stderr matters only where nothing else is said.
        print(ended.stdout.strip() or ended.stderr.strip(), flush=True)
    return ended.returncode == 0


def run_all(runs, kept, root):
    """Does the runs that are not kept. Returns how many there were, and how many of these found something."""
    due = [run for run in runs if not kept.has(run)]

    def do(run):
        good = tidy(run, root)
        if good:
            kept.add(run)
        return good

    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return len(due), list(pool.map(do, due)).count(False)


def main(root, words=None):
    """Runs the command line; returns the exit code: 1 if something was found, or nothing was looked at."""
    options = parser().parse_args(words)
    subprocess.run([root / "scripts" / "build", "--preset", "asan"], check=True)
    runs_of, name = (source_runs, "sources") if options.analyse else (unit_runs, "units")
    runs = runs_of(root, units(root, root / "build" / "asan"), options.text)
    kept = Kept(default_folder())
    done, bad = run_all(runs, kept, root)
    kept.forget_unused()
    print(f"clang-tidy: {len(runs)} {name}, {len(runs) - done} unchanged since they were clean, {bad} with findings")
    return 0 if runs and bad == 0 else 1
