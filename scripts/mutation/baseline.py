"""What the tests do without a change: how long each suite takes, and which do not pass."""

import json
from pathlib import Path

from .coverage import Collector, Coverage
from .suites import Suite, limit_for, pattern_of

RUNS = 2


class Baseline:
    """Times of the suites that pass, the suites left out, and the coverage."""

    def __init__(self, seconds, excluded, coverage):
        self.seconds = seconds
        self.excluded = excluded
        self.coverage = coverage

    def as_json(self):
        """For a file; from_json() reads it."""
        return {"seconds": [[s.program, s.name, t] for s, t in self.seconds.items()],
                "excluded": [[s.program, s.name] for s in self.excluded],
                "coverage": self.coverage.as_json()}

    @classmethod
    def from_json(cls, stored):
        """A baseline as it was stored."""
        return cls({Suite(program, name): t for program, name, t in stored["seconds"]},
                   [Suite(*suite) for suite in stored["excluded"]],
                   Coverage.from_json(stored["coverage"]))


def baseline_of(build, programs, sources, file, key, report):
    """The baseline from a file if it was made of the same tree and sources, else a new one."""
    file = Path(file)
    if file.exists():
        stored = json.loads(file.read_text(encoding="utf-8"))
        if stored["key"] == key:
            return Baseline.from_json(stored["baseline"])
    made = measure(build, programs, sources, report)
    file.write_text(json.dumps({"key": key, "baseline": made.as_json()}), encoding="utf-8")
    return made


def measure(build, programs, sources, report):
    """Runs every suite RUNS times, and once more for its coverage."""
    seconds, excluded = {}, []
    for program in programs.values():
        report(f"baseline of {program.name}")
        for suite in program.suites():
            times = [timed(program, suite) for _ in range(RUNS)]
            if None in times:
                excluded.append(suite)
            else:
                seconds[suite] = max(times)
    coverage = Collector(build, sources).collect(programs, seconds, seconds, report)
    return Baseline(seconds, excluded, coverage)


def timed(program, suite):
    """How long a suite takes; None if it does not pass."""
    ended = program.run(pattern_of([suite]), limit_for(60))
    return ended.seconds if ended.good else None
