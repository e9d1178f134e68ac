"""Counting with callgrind."""

import os
import subprocess
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path


class CountError(Exception):
    """What could not be counted, and why."""


def instructions_of(program, thing, times):
    """The instructions of a run of the program that does the thing so often."""
    with tempfile.TemporaryDirectory(prefix="instructions-") as folder:
        output = Path(folder, "callgrind.out")
        ended = subprocess.run(
            ["valgrind", "--tool=callgrind", f"--callgrind-out-file={output}", program, thing,
             str(times)], env={"QT_QPA_PLATFORM": "offscreen", **os.environ}, check=False,
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        written = output.read_text(encoding="utf-8") if output.is_file() else ""
    if ended.returncode:
        raise CountError(f"{program.name} {thing} {times} ended with {ended.returncode}:\n"
                         f"{ended.stdout}")
    for line in written.splitlines():
        name, _, value = line.partition(":")
        if name == "summary":
            return int(value)
    raise CountError(f"callgrind counted nothing in {program.name} {thing} {times}")


def count(program, thing, few, many):
    """The instructions of the thing done once."""
    with ThreadPoolExecutor(2) as pool:
        less, more = pool.map(lambda times: instructions_of(program, thing, times), (few, many))
    return (more - less) / (many - few)
