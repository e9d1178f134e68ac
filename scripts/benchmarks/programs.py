"""The programs of bench: which there are, and what they write."""

import json
import os
import subprocess
import tempfile
from pathlib import Path

GROWTH = "bench_growth"


class ProgramError(Exception):
    """A program that could not be built or run; the text names it."""


def build(root):
    """Builds the programs in release; returns the build folder."""
    if subprocess.run([root / "scripts" / "build", "--preset", "bench"],
                      stdout=subprocess.DEVNULL, check=False).returncode:
        raise ProgramError("scripts/build --preset bench failed")
    return root / "build" / "bench"


def programs_in(folder):
    """The programs of figures in a build folder, and the one of growth, or None."""
    found = sorted(path for path in (folder / "bin").glob("bench_*") if os.access(path, os.X_OK))
    figures = [path for path in found if path.name != GROWTH]
    if not figures:
        raise ProgramError(f"no programs bench_* in {folder / 'bin'}")
    return figures, next((path for path in found if path.name == GROWTH), None)


def rows_of(program, pattern=None):
    """Runs a program without a screen; the rows that it wrote. None need match the pattern."""
    with tempfile.TemporaryDirectory(prefix="bench-") as folder:
        output, log = Path(folder, "rows.json"), Path(folder, "log")
        command = [program, f"--benchmark_out={output}", "--benchmark_out_format=json"]
        if pattern:
            command.append(f"--benchmark_filter={pattern}")
        environment = {"QT_QPA_PLATFORM": "offscreen", **os.environ}
        with log.open("w") as lines:
            code = subprocess.run(command, env=environment, stdout=lines, stderr=subprocess.STDOUT,
                                  check=False).returncode
        written = output.read_text(encoding="utf-8") if output.is_file() else ""
        if not written and pattern:
            return []  # nothing in it matches
        try:
            rows = json.loads(written)["benchmarks"]
        except (ValueError, KeyError) as error:
            raise ProgramError(f"{program.name} ended with {code} and wrote no figures:\n"
                               f"{log.read_text(encoding='utf-8', errors='replace')}") from error
    if code and not any(row.get("error_occurred") for row in rows):
        raise ProgramError(f"{program.name} ended with {code}")
    return rows
