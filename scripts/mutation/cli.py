"""The command line of scripts/mutate."""

import argparse
import re
import signal
import subprocess
import sys
from collections import Counter
from pathlib import Path

from . import baseline as baselines
from . import campaign
from .building import BuildError
from .equivalents import reason_to_exclude
from .operators import mutants_of, virtual_names_of
from .results import Results, excess, survivors, table

EXIT_SURVIVORS, EXIT_BAD_INPUT, EXIT_FAILED = 1, 2, 3


class InputError(Exception):
    """The request is invalid; the text says what is wrong and what was expected."""


def parser():
    """The options."""
    made = argparse.ArgumentParser(
        prog="scripts/mutate",
        description="Applies one-line changes to sources, and lists those that no test detects. "
        "See docs/testing.md.")
    made.add_argument("paths", nargs="+", metavar="PATH",
                      help="a .cpp or .h file of src, or a folder")
    made.add_argument("--sample", type=positive, metavar="N",
                      help="try N mutants, spread over the files")
    made.add_argument("--seed", type=int, default=1, metavar="S",
                      help="choose other mutants (default: 1)")
    made.add_argument("--jobs", type=positive, default=1, metavar="N",
                      help="try N at a time, each in a build of its own (default: 1)")
    made.add_argument("--allow", type=allowance, default="0", metavar="N|N%",
                      help="fail only if more survive (default: 0)")
    made.add_argument("--operator", action="append", metavar="NAME",
                      help="only changes of this kind; repeatable")
    made.add_argument("--list", action="store_true", help="list the mutants without trying them")
    made.add_argument("--verbose", action="store_true", help="print a line for each mutant")
    made.add_argument("--fresh", action="store_true",
                      help="discard results and times of earlier runs")
    made.add_argument("--results", type=Path, metavar="FILE",
                      help="file with earlier results (default: build/mutate/results.jsonl)")
    return made


def positive(text):
    """A number of at least 1."""
    if not re.fullmatch(r"[1-9]\d*", text):
        raise argparse.ArgumentTypeError(f"'{text}' is not a number of at least 1")
    return int(text)


def allowance(text):
    """A number of survivors, or a share of all mutants."""
    if not re.fullmatch(r"\d+|\d+(\.\d+)?%", text):
        raise argparse.ArgumentTypeError(f"'{text}' is neither a number nor a share such as 5%")
    return text


def sources_of(root, paths):
    """The C++ sources that paths name, relative to the checkout: path to text."""
    found = {}
    for name in paths:
        path = Path(name).resolve()
        if not path.exists():
            raise InputError(f"{name}: there is no such file or folder")
        if not path.is_relative_to(root / "src"):
            raise InputError(f"{name}: only sources below {root / 'src'} can be changed")
        files = sorted(path.rglob("*")) if path.is_dir() else [path]
        chosen = [file for file in files if file.suffix in (".cpp", ".h")]
        if not chosen:
            raise InputError(f"{name}: expected a .cpp or .h file, or a folder that has some")
        for file in chosen:
            found[str(file.relative_to(root))] = file.read_text(encoding="utf-8")
    return found


def all_mutants(root, sources, operators):
    """The mutants of the sources, and how many were left out for each reason."""
    virtual_names = set()
    for header in (root / "src").rglob("*.h"):
        virtual_names |= virtual_names_of(header.read_text(encoding="utf-8"))
    mutants, left_out = [], Counter()
    for path, text in sources.items():
        for mutant in mutants_of(path, text, virtual_names):
            reason = reason_to_exclude(mutant)
            if reason:
                left_out[reason] += 1
            else:
                mutants.append(mutant)
    return chosen(mutants, operators), left_out


def chosen(mutants, operators):
    """The mutants of some operators. Raises InputError for one that has none."""
    names = sorted({mutant.operator for mutant in mutants})
    for operator in operators or []:
        if operator not in names:
            raise InputError(f"--operator {operator}: expected one of {', '.join(names)}")
    return [mutant for mutant in mutants if not operators or mutant.operator in operators]


def say(text):
    """Prints the progress for the user."""
    print(text, file=sys.stderr, flush=True)


def baseline_file(root):
    """Where the baseline is kept."""
    return root / "build" / "mutate" / "baseline.json"


def prepare(root, options, sources):
    """The workers with their builds, and the baseline."""
    folder = root / "build" / "mutate"
    workers = [campaign.Worker(root, folder / str(number), options.jobs)
               for number in range(1, options.jobs + 1)]
    for worker in workers:
        say(f"building in {worker.folder}")
        others = worker.prepare({str(Path(path).parent) for path in sources})
    made = baselines.baseline_of(workers[0].build, workers[0].programs, in_folders(root, sources),
                                 baseline_file(root), say)
    say(f"{len(made.seconds)} suites take {sum(made.seconds.values()):.0f} s")
    say(f"not run, for other sources or not GoogleTest's: {', '.join(others) or 'none'}")
    for suite in made.excluded:
        say(f"left out, as it does not pass without a change: {suite}")
    return workers, made, workers[0].checkout.fingerprint()


def in_folders(root, sources):
    """All sources in the folders of some, so that the baseline is that of the others too."""
    folders = {(root / path).parent for path in sources}
    return sorted(str(file.relative_to(root)) for folder in folders for file in folder.iterdir()
                  if file.suffix in (".cpp", ".h"))


def show(entries, left_out):
    """Prints the survivors and the table."""
    for line in survivors(entries):
        print(line)
    print()
    print(table(entries))
    for reason, number in left_out.items():
        print(f"left out: {number} ({reason})")


def mutate(root, options):
    """Carries out the options; returns the exit code."""
    sources = sources_of(root, options.paths)
    mutants, left_out = all_mutants(root, sources, options.operator)
    ordered = campaign.spread(mutants, options.seed) if options.sample else mutants
    if options.list:
        for mutant in ordered[:options.sample]:
            print(f"{mutant.path}:{mutant.line}: [{mutant.operator}] "
                  f"{mutant.before} -> {mutant.after}")
        return 0
    file = options.results or root / "build" / "mutate" / "results.jsonl"
    if options.fresh:
        file.unlink(missing_ok=True)
        baseline_file(root).unlink(missing_ok=True)
    workers, baseline, tree = prepare(root, options, sources)
    running = campaign.Campaign(workers, baseline, Results(file, tree), sources, options.verbose)
    entries = running.run(ordered, options.sample)
    show(entries, left_out)
    return EXIT_SURVIVORS if excess(entries, options.allow) else 0


def interrupt(number, _frame):
    """Ends a run as Ctrl+C does, which leaves nothing running and nothing changed."""
    raise KeyboardInterrupt(signal.Signals(number).name)


def main(root, arguments=None):
    """Runs the command line; returns the exit code."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        if signal.getsignal(number) != signal.SIG_IGN:
            signal.signal(number, interrupt)
    try:
        return mutate(Path(root), parser().parse_args(arguments))
    except InputError as error:
        say(f"scripts/mutate: {error}")
        return EXIT_BAD_INPUT
    except BuildError as error:
        say(f"{error}\nscripts/mutate: the sources do not build without a change")
        return EXIT_FAILED
    except (OSError, subprocess.CalledProcessError) as error:
        say(f"scripts/mutate: {error}")
        return EXIT_FAILED
    except KeyboardInterrupt as signalled:
        say(f"scripts/mutate: ended by {signalled}; the next run goes on from here")
        return 130
