"""Runs a program with a time limit, after which it and everything it started is killed."""

import os
import signal
import subprocess
import threading
import time
from dataclasses import dataclass

COVERAGE_VARIABLE = "MUTATE_COVERAGE"  # set for programs that should record what they execute
RUNNING = set()
ENDING = threading.Event()


@dataclass
class Ended:
    """How a program ended: its exit code (None if the limit ended it), its output, its seconds."""

    code: int | None
    output: str
    seconds: float

    @property
    def good(self):
        """True if it ended on its own with exit code 0."""
        return self.code == 0


def run(command, limit, cwd=None, env=None):
    """Runs a command; its output is what it writes to both of its outputs.

    Raises InterruptedError after end_all().
    """
    if ENDING.is_set():
        raise InterruptedError("no program is started any more")
    started = time.monotonic()
    with subprocess.Popen(command, cwd=cwd, env=env, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          start_new_session=True) as process:
        RUNNING.add(process)
        if ENDING.is_set():  # since it was looked at above
            kill_group(process)
        try:
            output, _ = process.communicate(timeout=limit)
            code = process.returncode
        except subprocess.TimeoutExpired:
            output, code = end_group(process), None
        except BaseException:
            end_group(process)
            raise
        finally:
            RUNNING.discard(process)
    return Ended(code, output.decode("utf-8", "replace"), time.monotonic() - started)


def end_all():
    """Kills what other threads are running; they start nothing more."""
    ENDING.set()
    for process in list(RUNNING):
        kill_group(process)


def end_group(process):
    """Kills a program and what it started; returns the rest of its output."""
    kill_group(process)
    return process.communicate()[0]


def kill_group(process):
    """Kills a program and what it started, if it still runs."""
    if process.poll() is None:
        os.killpg(process.pid, signal.SIGKILL)
