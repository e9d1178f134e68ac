"""Running the program of one target."""

import os
import re
import shutil
import subprocess
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

from .targets import FINDINGS

COVERAGE = re.compile(r"^#\d+\s+(\w+)\s+cov: (\d+)", re.MULTILINE)
EXECUTIONS = re.compile(r"^stat::number_of_executed_units:\s*(\d+)", re.MULTILINE)
STARTED = re.compile(r"^#(\d+)\s", re.MULTILINE)
LONGEST_INPUT = 4096  # bytes
# Where temporary files are not written to a disk, if there is such a place.
MEMORY = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
LIMITS = ("-timeout=30", "-rss_limit_mb=2048")


@dataclass
class Outcome:
    """What a run did: its executions, its time, how much more code its inputs reached, findings."""

    name: str
    executions: int = 0
    seconds: float = 0
    coverage: int = 0
    new_coverage: int = 0
    findings: list = field(default_factory=list)
    output: str = ""
    is_good: bool = True


def environment(folder):
    """The environment of a target, whose temporary files go into a folder."""
    return {"QT_QPA_PLATFORM": "offscreen", **os.environ, "TMPDIR": str(folder),
            # As for the tests: the sanitizer would guess where thread-local blocks are.
            "ASAN_OPTIONS": "intercept_tls_get_addr=0"}


def execute(target, arguments):
    """Runs a target's program; returns what ended, with its output."""
    with tempfile.TemporaryDirectory(prefix="fuzz-", dir=MEMORY) as folder:
        return subprocess.run([target.program, *map(str, arguments)], env=environment(folder),
                              check=False, cwd=folder, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace")


def run(target, how):
    """Fuzzes a target with options of libFuzzer that say how long. Returns the outcome."""
    findings = target.root / FINDINGS
    for folder in (findings, target.corpus, target.seeds):
        folder.mkdir(parents=True, exist_ok=True)
    before, started = set(findings.iterdir()), time.monotonic()
    ended = execute(target, [*how, *LIMITS, f"-max_len={LONGEST_INPUT}", "-keep_seed=1",
                             "-print_final_stats=1",
                             f"-artifact_prefix={findings}/{target.name}-", target.corpus,
                             target.seeds])
    outcome = Outcome(target.name, seconds=time.monotonic() - started, output=ended.stdout,
                      is_good=ended.returncode == 0)
    outcome.findings = sorted(set(findings.glob(f"{target.name}-*")) - before)
    outcome.executions = executions_in(ended.stdout)
    reached = [(word, int(number)) for word, number in COVERAGE.findall(ended.stdout)]
    if reached:
        first = next((number for word, number in reached if word == "INITED"), 0)
        outcome.coverage = max(number for _, number in reached)
        outcome.new_coverage = outcome.coverage - first
    return outcome


def executions_in(output):
    """The executions that an output of libFuzzer reports, even if it ended early."""
    final = EXECUTIONS.search(output)
    return int(final[1]) if final else max(map(int, STARTED.findall(output)), default=0)


def keep(target):
    """Adds to a target's seeds what its corpus reaches and they do not, in as few files as can be.
    Returns the number of files that were added, and the outcome."""
    with tempfile.TemporaryDirectory(prefix="fuzz-") as folder:
        merged = Path(folder, "merged")
        shutil.copytree(target.seeds, merged)
        before = set(merged.iterdir())
        ended = execute(target, ["-set_cover_merge=1", f"-max_len={LONGEST_INPUT}", *LIMITS, merged,
                                 target.corpus])
        added = sorted(set(merged.iterdir()) - before)
        for file in added:
            shutil.copy(file, target.seeds)
    return len(added), Outcome(target.name, output=ended.stdout, is_good=ended.returncode == 0)
