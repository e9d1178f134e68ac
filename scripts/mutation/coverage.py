"""Which suites execute which line: gcov's word, one suite at a time."""

import json
import os
import subprocess
from collections import defaultdict
from pathlib import Path

from .suites import Suite, limit_for, pattern_of

NO_TEST = "no suite of this name"


class Coverage:
    """For each line of the sources, the suites that execute it and the objects that hold it."""

    def __init__(self):
        self.suites = defaultdict(lambda: defaultdict(set))
        self.objects = defaultdict(lambda: defaultdict(set))

    def is_known(self, path, line):
        """True if the compiler made code for a line that is not run while programs start."""
        return line in self.objects[path]

    def of_line(self, path, line):
        """The suites that execute a line; for one without code those that execute its file."""
        if self.is_known(path, line):
            return self.suites[path][line]
        return set().union(*self.suites[path].values())

    def objects_of_line(self, path, line, dependents):
        """The objects to make again for a change of a line: those that hold code of it."""
        return self.objects[path].get(line) or dependents

    def as_json(self):
        """For a file; from_json() reads it."""
        return {
            "suites": {path: {line: sorted([s.program, s.name] for s in suites)
                              for line, suites in lines.items()}
                       for path, lines in self.suites.items()},
            "objects": {path: {line: sorted(objects) for line, objects in lines.items()}
                        for path, lines in self.objects.items()}}

    @classmethod
    def from_json(cls, stored):
        """A coverage as it was stored."""
        made = cls()
        for path, lines in stored["suites"].items():
            for line, suites in lines.items():
                made.suites[path][int(line)] = {Suite(*suite) for suite in suites}
        for path, lines in stored["objects"].items():
            for line, objects in lines.items():
                made.objects[path][int(line)] = set(objects)
        return made


class Collector:
    """Runs suites of a build and collects what they execute of some sources."""

    def __init__(self, build, sources):
        self.build = build
        self.sources = set(sources)
        self.relevant = []
        self.at_start = {}

    def collect(self, programs, suites, seconds, report=lambda text: None):
        """The coverage of the suites."""
        coverage = Coverage()
        self.find_objects(coverage)
        for program in programs.values():
            own = [suite for suite in suites if suite.program == program.name]
            if own:
                report(f"coverage of {program.name}")
                self.collect_program(coverage, program, own, seconds)
        self.clear()
        return coverage

    def find_objects(self, coverage):
        """Adds the objects that hold code of the sources' lines."""
        for name in set().union(*(self.build.dependents.get(p, set()) for p in self.sources)):
            for path, line, _ in self.lines_of([name]):
                coverage.objects[path][line].add(name)
        held = [objects for lines in coverage.objects.values() for objects in lines.values()]
        self.relevant = sorted(set().union(*held))

    def collect_program(self, coverage, program, suites, seconds):
        """Adds the coverage of one program's suites."""
        self.at_start = {}
        at_start = self.executed(program, NO_TEST, 0)
        self.at_start = {name: self.counts_of(name) for name in self.relevant}
        for suite in suites:
            lines = self.executed(program, pattern_of([suite]), seconds[suite])
            for path, line in lines - at_start:
                coverage.suites[path][line].add(suite)
        # Executed whatever test runs: code of static objects, as if there were none of the line.
        for path, line in at_start:
            coverage.objects[path].pop(line, None)

    def executed(self, program, pattern, seconds):
        """The lines that a run executes."""
        self.clear()
        program.run(pattern, limit_for(10 * seconds), coverage=True)
        ran = [name for name in self.relevant
               if self.counts_of(name) not in (b"", self.at_start.get(name))]
        return {(path, line) for path, line, count in self.lines_of(ran) if count}

    def data_of(self, name):
        """Where the counts of an object are written."""
        return (self.build.directory / name).with_suffix(".gcda")

    def counts_of(self, name):
        """The counts of an object as they were written; nothing if it did not run."""
        data = self.data_of(name)
        return data.read_bytes() if data.exists() else b""

    def clear(self):
        """Removes the counts of all objects."""
        for folder, _, files in os.walk(self.build.directory):
            for name in files:
                if name.endswith(".gcda"):
                    Path(folder, name).unlink()

    def lines_of(self, objects):
        """Yields path, line and count of the sources' lines in some objects."""
        if not objects:
            return
        data = [str(self.data_of(name)) for name in objects]
        output = subprocess.run(
            ["gcov", "--json-format", "--stdout", "--relative-only", "--source-prefix",
             str(self.build.tree), *data],
            cwd=self.build.directory, check=True, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL).stdout
        for document in output.splitlines():
            if document.startswith(b"{"):
                yield from self.lines_in(json.loads(document))

    def lines_in(self, document):
        """Yields path, line and count of the sources' lines in one document of gcov's."""
        for file in document["files"]:
            path = os.path.relpath(file["file"], self.build.tree) if os.path.isabs(
                file["file"]) else file["file"]
            if path in self.sources:
                for line in file["lines"]:
                    yield path, line["line_number"], line["count"]
