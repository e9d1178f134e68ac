"""Runs mutants: builds what depends on each, runs what can detect it, keeps the result."""

import random
import shutil
import threading
import time
from collections import defaultdict
from pathlib import Path

from . import processes
from .building import Build, moment
from .checkout import Checkout
from .results import KILLED, NOT_COMPILED, SAME_CODE, SURVIVED, counts, digest, line_of
from .suites import failure_of, limit_for, pattern_of, programs_of, tests_of

MOC = "Q_CLASSINFO"  # what moc alone reads, and can be changed so that it still compiles
QUICK = 0.5  # seconds: suites that take less run together
MOST_COMPARED = 4  # objects whose code is compared; a change in a header may concern a hundred


class Worker:
    """A copy of the checkout with a build, in which one mutant at a time is tried."""

    def __init__(self, origin, folder, build_jobs):
        self.folder = Path(folder)
        self.checkout = Checkout(origin, self.folder / "tree")
        self.build = Build(self.folder / "tree", self.folder / "build", self.folder / "pristine",
                           build_jobs)
        self.programs = {}

    def prepare(self, folders):
        """Brings copy and build up to date with what uses the sources in some folders.

        Returns the names of the tests that are not run. Raises BuildError.
        """
        self.checkout.bring_up_to_date()
        self.clear_scratch()
        self.build.configure()
        names = [test["name"] for test in tests_of(self.build.directory)]
        users = self.build.users_of(folders, names) or names  # all, of headers alone
        self.build.make(users)
        self.build.jobs = 1  # from now on, it is the workers that share the machine
        self.programs = programs_of(self.build.directory, users)
        for program in self.programs.values():
            program.environment["TMPDIR"] = str(self.scratch())
        return [name for name in names if name not in self.programs]

    def try_mutant(self, mutant, baseline):
        """Status, and what detected it and how: of one mutant."""
        coverage = baseline.coverage
        runs = runs_of(coverage.of_line(mutant.path, mutant.line), mutant.path, baseline.seconds)
        original = self.checkout.read(mutant.path)
        objects = coverage.objects_of_line(mutant.path, mutant.line,
                                           self.build.dependents.get(mutant.path, set()))
        # A header keeps its time, so moc would not notice a change in the part that it reads.
        discarded = objects | (self.build.moc_of(mutant.path) if MOC in mutant.before else set())
        since = moment()
        try:
            self.checkout.write(mutant.path, mutant.applied(original))
            self.build.discard(discarded)
            result = self.judge(runs) if runs else self.judge_unused(objects)
            changed = self.code_to_compare(result, objects)
            self.checkout.write(mutant.path, original)
            if changed and changed == self.build.code_of(objects):
                return SAME_CODE, "", "compiles to the same code"
            return result
        finally:
            # The source last: while it is changed, the next start knows that objects are too.
            self.build.put_back(discarded, since)
            self.checkout.write(mutant.path, original)
            self.clear_scratch()

    def judge(self, runs):
        """Builds and runs until something detects the change."""
        built = set()
        for suites, seconds in runs:
            program = self.programs[suites[0].program]
            if program.name not in built:
                if not self.build.target(program.name):
                    return NOT_COMPILED, "", "does not build"
                built.add(program.name)
            found = detected(program, suites, seconds)
            if found:
                return KILLED, f"{program.name}/{found[0]}", found[1]
        return SURVIVED, "", "all passed"

    def judge_unused(self, objects):
        """The result where no test executes the file: only the compiler can object."""
        if all(self.build.target(name) for name in sorted(objects)):
            return SURVIVED, "", "no test executes it"
        return NOT_COMPILED, "", "does not build"

    def code_to_compare(self, result, objects):
        """The changed code of a survivor, to be compared with the unchanged one; None for others."""
        if result[0] != SURVIVED or len(objects) > MOST_COMPARED:
            return None
        return self.build.code_of(objects)

    def clear_scratch(self):
        """Removes the files that killed tests left behind."""
        shutil.rmtree(self.scratch(), ignore_errors=True)
        self.scratch().mkdir(parents=True)

    def scratch(self):
        """The folder for temporary files of the tests."""
        return self.folder / "scratch"


def detected(program, suites, seconds):
    """The test that fails, and how; None if all pass, or if it passes when it runs again."""
    pattern, limit = pattern_of(suites), limit_for(seconds)
    ended = program.run(pattern, limit)
    if ended.good:
        return None
    test, how = failure_of(ended)
    if ended.code is None or not program.run(test or pattern, limit).good:
        return test, how
    again = program.run(pattern, limit)
    return None if again.good else failure_of(again)


def runs_of(suites, path, seconds):
    """Groups of suites of one program, in the order in which they are run.

    Those named after the source first, then the quick ones of each program together, then each
    slow one by itself; within these, what takes less time first.
    """
    groups = defaultdict(list)
    for suite in suites:
        if suite not in seconds:
            continue
        named, quick = is_named_after(suite, path), seconds[suite] < QUICK
        groups[not named, not quick, suite.program, "" if quick else suite.name].append(suite)
    runs = [(key[:2], sorted(group), sum(seconds[suite] for suite in group))
            for key, group in groups.items()]
    return [(group, time_taken) for _, group, time_taken in
            sorted(runs, key=lambda run: (run[0][0], run[2], run[1]))]


def is_named_after(suite, path):
    """True if a suite is that of a source's class, as its name says."""
    return Path(path).stem in suite.name


def spread(mutants, seed):
    """The mutants in an order in which any first part is spread over the files by their size."""
    chosen = random.Random(seed)
    by_file = defaultdict(list)
    for mutant in mutants:
        by_file[mutant.path].append(mutant)
    places = []
    for path in sorted(by_file):
        chosen.shuffle(by_file[path])
        shift = chosen.random()
        places += [((number + shift) / len(by_file[path]), path, mutant)
                   for number, mutant in enumerate(by_file[path])]
    return [mutant for _, _, mutant in sorted(places, key=lambda place: place[:2])]


def wait_for(threads):
    """Waits for threads to end. (An interrupted join() regards its thread as ended.)"""
    while any(thread.is_alive() for thread in threads):
        time.sleep(0.1)


class Campaign:
    """Mutants tried by several workers, up to a number of those that count."""

    def __init__(self, workers, baseline, results, sources, verbose=False):
        self.workers = workers
        self.baseline = baseline
        self.results = results
        self.digests = {path: digest(text) for path, text in sources.items()}
        self.verbose = verbose
        self.entries = []
        self.lock = threading.Lock()
        self.stopped = threading.Event()
        self.failures = []

    def run(self, mutants, wanted):
        """The results of the first `wanted` mutants that count; of all if it is None."""
        queue = iter(mutants)
        threads = [threading.Thread(target=self.work, args=(worker, queue, wanted))
                   for worker in self.workers]
        for thread in threads:
            thread.start()
        try:
            wait_for(threads)
        except KeyboardInterrupt:
            self.stopped.set()
            processes.end_all()
            wait_for(threads)  # they put the sources back
            raise
        if self.failures:
            raise self.failures[0]
        return self.entries

    def work(self, worker, queue, wanted):
        """Tries mutants from the queue until none is left or enough were tried."""
        try:
            while not self.stopped.is_set():
                with self.lock:
                    mutant = None if self.enough(wanted) else next(queue, None)
                if mutant is None:
                    return
                entry = self.result_of(worker, mutant)
                if entry:
                    self.take(entry)
        except Exception as failure:  # a thread of its own: run() raises it
            self.failures.append(failure)
            self.stopped.set()

    def enough(self, wanted):
        """True if this number of mutants counts."""
        return wanted is not None and sum(map(counts, self.entries)) >= wanted

    def result_of(self, worker, mutant):
        """The result of a mutant: from an earlier run, or by trying it; None if interrupted."""
        source = self.digests[mutant.path]
        known = self.results.find(mutant, source)
        if known:
            return known
        started = time.monotonic()
        status, by, how = worker.try_mutant(mutant, self.baseline)
        if self.stopped.is_set():
            return None  # it may have been ended, not failed
        return self.results.add(mutant, source, status, by=by, how=how,
                                seconds=round(time.monotonic() - started, 2))

    def take(self, entry):
        """Adds a result."""
        with self.lock:
            self.entries.append(entry)
            if self.verbose:
                print(line_of(entry), flush=True)
