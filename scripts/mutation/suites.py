"""The GoogleTest programs of a build, their suites, and runs of them."""

import json
import os
import re
from dataclasses import dataclass, field
from pathlib import Path

from . import processes

LEAST_LIMIT = 20  # seconds: a run gets this long, or several times what it took before
FACTOR = 6
WAIT_MS = 4000  # how long a test waits for what does not come; see tests/support/WaitUntil.h
SHARD_VARIABLES = {"GTEST_TOTAL_SHARDS", "GTEST_SHARD_INDEX"}  # GoogleTest's
FAILED = re.compile(r"^\[  FAILED  \] ([^\s,]+)", re.MULTILINE)
STARTED = re.compile(r"^\[ RUN      \] (\S+)", re.MULTILINE)


@dataclass(frozen=True, order=True)
class Suite:
    """A suite of a program, by their names."""

    program: str
    name: str

    def __str__(self):
        return f"{self.program}/{self.name}"


@dataclass
class Program:
    """A test program of ctest."""

    name: str
    command: list
    environment: dict = field(default_factory=dict)
    folder: str | None = None

    def suites(self):
        """Its suites."""
        listed = processes.run([*self.command, "--gtest_list_tests"], LEAST_LIMIT,
                               self.folder, self.surroundings())
        return [Suite(self.name, line.split(".")[0]) for line in listed.output.splitlines()
                if re.match(r"[\w/]+\.(\s|$)", line)]

    def surroundings(self, coverage=False):
        """The environment of a run. Only a run for coverage writes down what it executed."""
        made = {**os.environ, **self.environment, "PCD_TEST_WAIT_MS": str(WAIT_MS)}
        if coverage:
            made[processes.COVERAGE_VARIABLE] = "1"
        return made

    def run(self, pattern, limit, coverage=False):
        """Runs the tests that match, up to the first failure."""
        return processes.run(
            [*self.command, f"--gtest_filter={pattern}", "--gtest_fail_fast", "--gtest_color=no"],
            limit, self.folder, self.surroundings(coverage))


def tests_of(directory):
    """The tests of a build as ctest describes them, each program once and as a whole."""
    listed = processes.run(["ctest", "--test-dir", str(directory), "--show-only=json-v1"], 60)
    return without_shards(json.loads(listed.output[listed.output.index("{"):])["tests"])


def without_shards(tests):
    """The tests with one in place of the shards of a program, named after the program."""
    return list({test["name"]: test for test in map(without_shard, tests)}.values())


def without_shard(test):
    """A test that runs a shard of a program as one that runs all of it; others as they are."""
    environment = environment_of(test)
    if "GTEST_TOTAL_SHARDS" not in environment:
        return test
    whole = [f"{name}={value}" for name, value in environment.items() if name not in SHARD_VARIABLES]
    return {**test, "name": Path(test["command"][0]).name,
            "properties": [{"name": "ENVIRONMENT", "value": whole} if entry["name"] == "ENVIRONMENT"
                           else entry for entry in test["properties"]]}


def programs_of(directory, names):
    """The GoogleTest programs of a build with these names."""
    return {test["name"]: program_of(test) for test in tests_of(directory)
            if test["name"] in names and is_google_test(test["command"])}


def is_google_test(command):
    """True if a test is a GoogleTest program without arguments of its own."""
    return len(command) == 1 and b"gtest_list_tests" in Path(command[0]).read_bytes()


def program_of(test):
    """A program from ctest's description of a test."""
    properties = properties_of(test)
    return Program(test["name"], test["command"], environment_of(test),
                   properties.get("WORKING_DIRECTORY"))


def environment_of(test):
    """The environment that ctest gives a test."""
    return dict(entry.split("=", 1) for entry in properties_of(test).get("ENVIRONMENT", []))


def properties_of(test):
    """The properties in ctest's description of a test."""
    return {entry["name"]: entry["value"] for entry in test["properties"]}


def pattern_of(suites):
    """The filter that selects whole suites."""
    return ":".join(f"{suite.name}.*" for suite in suites)


def limit_for(seconds):
    """The time limit for a run that took this long before."""
    return max(LEAST_LIMIT, FACTOR * seconds)


def failure_of(ended):
    """What made a run fail: the test and how it ended."""
    if ended.code is None:
        return last_of(STARTED, ended.output), "hung"
    if ended.code < 0:
        return last_of(STARTED, ended.output), f"crashed with signal {-ended.code}"
    failed = FAILED.search(ended.output)
    if failed:
        return failed.group(1), "failed"
    return last_of(STARTED, ended.output), "ended early"


def last_of(pattern, output):
    """The last match in an output, '' without one."""
    found = pattern.findall(output)
    return found[-1] if found else ""
