"""Which suites execute which line, and which objects contain it, according to gcov."""

import json
import os
import subprocess
from collections import defaultdict
from pathlib import Path

from .suites import limit_for, pattern_of

NO_TEST = "no suite of this name"
MORE = 10  # so much longer than usual may a run take that writes down what it executes


class Coverage:
    """For each line of the sources, the suites that execute it and the objects that hold it."""

    def __init__(self, objects=()):
        self.suites = defaultdict(lambda: defaultdict(set))
        self.objects = defaultdict(lambda: defaultdict(set))
        self.at_start = set()
        self.all_suites = set()
        for path, line, name in objects:
            self.objects[path][line].add(name)

    def add(self, suite, lines):
        """A suite executes lines: pairs of path and number."""
        self.all_suites.add(suite)
        for path, line in lines:
            self.suites[path][line].add(suite)

    def has_tests_of_its_own(self, path, line):
        """True if the compiler made code of a line that is not run whenever programs start."""
        return line in self.objects[path] and (path, line) not in self.at_start

    def of_line(self, path, line):
        """The suites that execute a line; without any, those that execute its file.

        A line may have no code, and that of a statement of several lines may be counted at another
        one of them. A file without any code, such as one of constants, may be used by all.
        """
        if self.has_tests_of_its_own(path, line) and self.suites[path][line]:
            return self.suites[path][line]
        if not self.objects[path]:
            return self.all_suites
        return set().union(*self.suites[path].values())

    def objects_of_line(self, path, line, dependents):
        """The objects to make again for a change of a line: those that hold code of it."""
        return self.objects[path].get(line) or dependents


class Collector:
    """Finds out what runs of a build's programs execute of some sources."""

    def __init__(self, build, sources):
        self.build = build
        self.sources = set(sources)
        dependents = set().union(*(build.dependents.get(path, set()) for path in sources))
        self.held = [(path, line, name) for path, line, name, _ in self.lines_of(dependents)]
        self.relevant = sorted({name for _, _, name in self.held})
        self.at_start = {}

    def of_program(self, program, suites, seconds):
        """What a program executes when it starts, and what each of its suites does then."""
        self.at_start = {}
        start = self.executed(program, NO_TEST, 0)
        self.at_start = {name: self.counts_of(name) for name in self.relevant}
        lines = {suite: self.executed(program, pattern_of([suite]), seconds[suite]) - start
                 for suite in suites}
        self.clear()
        return start, lines

    def executed(self, program, pattern, seconds):
        """The lines that a run executes."""
        self.clear()
        program.run(pattern, limit_for(MORE * seconds), coverage=True)
        ran = [name for name in self.relevant
               if self.counts_of(name) not in (b"", self.at_start.get(name))]
        return {(path, line) for path, line, _, count in self.lines_of(ran) if count}

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
        """Yields path, line, object and count of the sources' lines in some objects."""
        if not objects:
            return
        names = {str(self.data_of(name)): name for name in objects}
        output = subprocess.run(
            ["gcov", "--json-format", "--stdout", "--relative-only", "--source-prefix",
             str(self.build.tree), *names],
            cwd=self.build.directory, check=True, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL).stdout
        for text in output.splitlines():
            if text.startswith(b"{"):
                document = json.loads(text)
                name = names[document["data_file"]]
                yield from ((path, line, name, count)
                            for path, line, count in self.lines_in(document))

    def lines_in(self, document):
        """Yields path, line and count of the sources' lines in one document of gcov's."""
        for file in document["files"]:
            path = os.path.relpath(file["file"], self.build.tree)
            if path in self.sources:
                for line in file["lines"]:
                    yield path, line["line_number"], line["count"]
