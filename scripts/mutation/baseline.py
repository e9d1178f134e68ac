"""The unchanged tests: how long each suite takes, what it executes, whether it passes."""

import json
from collections import defaultdict
from pathlib import Path

from .coverage import Collector, Coverage
from .suites import Suite, limit_for, pattern_of

RUNS = 2
USUAL = 60  # seconds, of a suite of which nothing is known


class Baseline:
    """Times of the suites that pass, the suites left out, and the coverage."""

    def __init__(self, coverage):
        self.seconds = {}
        self.excluded = []
        self.coverage = coverage

    def add(self, program, record):
        """Adds the record of a program."""
        self.excluded += [Suite(program, name) for name in record["excluded"]]
        self.coverage.at_start |= pairs_of(record["start"])
        for name, known in record["suites"].items():
            suite = Suite(program, name)
            self.seconds[suite] = known["seconds"]
            self.coverage.add(suite, pairs_of(known["lines"]))


class Records:
    """Data about each program, in a file. A program that was rebuilt has none."""

    def __init__(self, file):
        self.file = Path(file)
        self.known = json.loads(self.file.read_text(encoding="utf-8")) if file.exists() else {}

    def find(self, program, key):
        """The record of a program, None without one."""
        record = self.known.get(program)
        return record if record and record["key"] == key else None

    def add(self, program, record):
        """Stores a record; it is in the file when this returns."""
        self.known[program] = record
        self.file.write_text(json.dumps(self.known), encoding="utf-8")


def baseline_of(build, programs, sources, file, report):
    """The baseline of programs for sources: what the file has, and the rest from runs."""
    records, collector = Records(file), Collector(build, sources)
    made = Baseline(Coverage(collector.held))
    for program in programs.values():
        key = build.digest_of(program.name, sources)
        record = records.find(program.name, key)
        if record is None:
            report(f"running {program.name} without a change")
            record = {"key": key, **measure(program, collector)}
            records.add(program.name, record)
        made.add(program.name, record)
    return made


def measure(program, collector):
    """Runs every suite RUNS times, and once more for its coverage."""
    seconds, excluded = {}, []
    for suite in program.suites():
        times = [timed(program, suite) for _ in range(RUNS)]
        if None in times:
            excluded.append(suite.name)
        else:
            seconds[suite] = max(times)
    start, lines = collector.of_program(program, seconds, seconds)
    return {"excluded": excluded, "start": by_path(start),
            "suites": {suite.name: {"seconds": seconds[suite], "lines": by_path(lines[suite])}
                       for suite in seconds}}


def timed(program, suite):
    """How long a suite takes; None if it does not pass."""
    ended = program.run(pattern_of([suite]), limit_for(USUAL))
    return ended.seconds if ended.good else None


def by_path(pairs):
    """Pairs of path and line as a list of lines for each path."""
    lines = defaultdict(list)
    for path, line in sorted(pairs):
        lines[path].append(line)
    return lines


def pairs_of(lines):
    """The pairs that by_path() was given."""
    return {(path, line) for path, numbers in lines.items() for line in numbers}
