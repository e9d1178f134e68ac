"""The command line of scripts/fuzz."""

import argparse
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from . import libfuzzer
from .targets import FINDINGS, all_targets

EXIT_FOUND, EXIT_BAD_INPUT, EXIT_FAILED = 1, 2, 3
DEFAULT_SECONDS = 20
LINES_SHOWN = 40  # of the output of a target that has a finding
BROKEN = "This does not hold"  # what a target prints of a rule that its input breaks
ROW = "{:<12} {:>12} {:>8} {:>9} {:>9} {:>5} {:>9}"


class InputError(Exception):
    """The request is invalid; the text says what is wrong and what was expected."""


class BuildError(Exception):
    """The targets do not build; the compiler has said why."""


def parser():
    """The options."""
    made = argparse.ArgumentParser(
        prog="scripts/fuzz", description="Gives the code that reads what comes from outside the "
        "inputs that libFuzzer makes up. See fuzz/README.md.")
    made.add_argument("targets", nargs="*", metavar="TARGET", help="run only these (default: all)")
    what = made.add_mutually_exclusive_group()
    what.add_argument("--seconds", type=positive, metavar="N",
                      help=f"fuzz each target for N seconds (default: {DEFAULT_SECONDS})")
    what.add_argument("--runs", type=positive, metavar="N", help="give each target N inputs")
    what.add_argument("--replay", type=Path, metavar="FILE",
                      help="give one target this input, once")
    what.add_argument("--keep", action="store_true",
                      help="add what earlier runs have reached to the seeds in fuzz/corpus")
    what.add_argument("--list", action="store_true", help="list the targets without running them")
    made.add_argument("--seed", type=positive, metavar="N",
                      help="make up the same inputs for the same N (default: others each time)")
    made.add_argument("--jobs", type=positive, default=os.cpu_count(), metavar="N",
                      help="run N at a time (default: the number of processors)")
    return made


def positive(text):
    """A number of at least 1."""
    if not re.fullmatch(r"[1-9]\d*", text):
        raise argparse.ArgumentTypeError(f"'{text}' is not a number of at least 1")
    return int(text)


def chosen(root, options):
    """The targets that the options name. Raises InputError."""
    known = all_targets(root)
    for name in options.targets:
        if name not in known:
            raise InputError(f"{name}: there is no such target, expected one of {', '.join(known)}")
    if options.replay:
        if not options.replay.is_file():
            raise InputError(f"{options.replay}: there is no such file, expected a finding in "
                             f"{FINDINGS}")
        if len(options.targets) != 1:
            raise InputError(f"--replay {options.replay}: expected the one target to give it to")
    return [known[name] for name in dict.fromkeys(options.targets)] or list(known.values())


def build(root, targets):
    """Builds the programs of targets. Raises BuildError."""
    command = [root / "scripts" / "build", "--preset", "asan",
               *(target.program.name for target in targets)]
    if subprocess.run(command, check=False).returncode:
        raise BuildError("the targets do not build: see above")


def in_parallel(options, action, targets):
    """Does something with each target; returns the results in the order of the targets."""
    with ThreadPoolExecutor(options.jobs) as pool:
        return list(pool.map(action, targets))


def fuzz(options, targets):
    """Fuzzes targets and prints the table; returns the exit code."""
    seconds = options.seconds or DEFAULT_SECONDS
    how = [f"-runs={options.runs}" if options.runs else f"-max_total_time={seconds}"]
    how += [f"-seed={options.seed}"] if options.seed else []
    outcomes = in_parallel(options, lambda target: libfuzzer.run(target, how), targets)
    for outcome in outcomes:
        if not outcome.is_good:
            show_failure(outcome)
    print(ROW.format("target", "executions", "seconds", "a second", "coverage", "new", "findings"))
    for outcome in outcomes:
        rate = outcome.executions / max(outcome.seconds, 1)
        print(ROW.format(outcome.name, f"{outcome.executions:,}", f"{outcome.seconds:.0f}",
                         f"{rate:,.0f}", outcome.coverage, outcome.new_coverage,
                         len(outcome.findings)))
    total = sum(outcome.executions for outcome in outcomes)
    found = sum(len(outcome.findings) for outcome in outcomes)
    print(f"fuzz: {len(outcomes)} targets, {total:,} executions, {found} findings")
    return 0 if all(outcome.is_good for outcome in outcomes) else EXIT_FOUND


def show_failure(outcome):
    """Prints how a target ended, and how to do that again."""
    print(f"\n{outcome.name}:")
    lines = outcome.output.rstrip().splitlines()
    begins = [at for at, line in enumerate(lines) if line.startswith(("==", BROKEN))]
    begin = min(begins, default=max(0, len(lines) - LINES_SHOWN))
    print("\n".join(lines[begin:begin + LINES_SHOWN]))
    for file in outcome.findings:
        print(f"To do it again: scripts/fuzz --replay {os.path.relpath(file)} {outcome.name}")
    print(flush=True)


def replay(options, target):
    """Gives a target one input; returns the exit code."""
    ended = libfuzzer.execute(target, [options.replay.resolve(), *libfuzzer.LIMITS])
    print(ended.stdout.rstrip())
    print(f"{target.name}: {'nothing happens' if ended.returncode == 0 else 'it happens again'}")
    return 0 if ended.returncode == 0 else EXIT_FOUND


def keep(options, targets):
    """Adds to the seeds; returns the exit code."""
    good = True
    for target, (added, outcome) in zip(targets, in_parallel(options, libfuzzer.keep, targets)):
        if not outcome.is_good:
            show_failure(outcome)
        good = good and outcome.is_good
        print(f"{target.name}: {added} added to {target.seeds.relative_to(target.root)}")
    return 0 if good else EXIT_FOUND


def run(root, options):
    """Does what the options say; returns the exit code."""
    targets = chosen(root, options)
    if options.list:
        print("\n".join(target.name for target in targets))
        return 0
    build(root, targets)
    if options.replay:
        return replay(options, targets[0])
    return keep(options, targets) if options.keep else fuzz(options, targets)


def main(root):
    """Runs the command; returns the exit code."""
    try:
        return run(root, parser().parse_args())
    except InputError as error:
        print(f"scripts/fuzz: {error}", file=sys.stderr)
        return EXIT_BAD_INPUT
    except BuildError as error:
        print(f"scripts/fuzz: {error}", file=sys.stderr)
        return EXIT_FAILED
