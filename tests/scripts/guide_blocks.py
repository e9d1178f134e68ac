# SPDX-License-Identifier: MIT
"""The blocks of code in the guides, for the tests that run them: each takes all of a guide, a heading or a language, as
they are in the file, so that a block that is added there is run too. guides_test.py expects a test or a reason for
each.
"""

import os
import re
import signal
import subprocess
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parents[2]
FENCE = re.compile(r"^( *)(```+|~~~+)(\S*)\s*$")
HEADING = re.compile(r"^#+ +(.+?) *$")

SECONDS = 240  # that a block may take

# `endless COMMAND` runs a command until it has printed something, or what matches UNTIL, and then interrupts it as
# Ctrl-C does.
ENDLESS = """
endless() {
    rm -f endless.txt
    set -m; "$@" > endless.txt 2>&1 & set +m
    until grep --quiet "${UNTIL:-.}" endless.txt 2> /dev/null || ! kill -0 $! 2> /dev/null; do sleep 0.05; done
    kill -INT $!; wait $! || [ $? = 130 ]; cat endless.txt
}
"""

# In the place of scripts/build, which the tests are called by: whether it has these targets.
BUILD_SCRIPT = """#!/bin/sh -e
for target; do ninja -C build -t query "$target" > out/query; done
"""


class Block(NamedTuple):
    """A block: the guide's path in the tree, the line and the text of the heading above it, what is in it."""

    guide: str
    line: int
    heading: str
    language: str
    text: str

    @property
    def first_line(self):
        """The line that names a block in a list."""
        return self.text.strip().partition("\n")[0]


def blocks(guide, heading=None, language=None):
    """The blocks of a guide, those under a heading, or those in a language, in their order."""
    return [block for block in parse(guide, (ROOT / guide).read_text(encoding="utf-8"))
            if heading in (None, block.heading) and language in (None, block.language)]


def parse(guide, text):
    """All blocks of a text. Raises ValueError for one without an end."""
    found, heading, start, lines = [], "", None, []
    for number, line in enumerate(text.splitlines(), 1):
        fence = FENCE.match(line)
        if start is None:
            heading = match[1] if (match := HEADING.match(line)) else heading
            if fence:
                start, lines = (number, fence), []
        elif fence and fence[2] == start[1][2] and not fence[3]:
            indent = len(start[1][1])
            body = "".join(f"{each[indent:]}\n" for each in lines)
            found.append(Block(guide, start[0], heading, start[1][3], body))
            start = None
        else:
            lines.append(line)
    if start is not None:
        raise ValueError(f"{guide}:{start[0]}: a block without an end")
    return found


def all_guides():
    """The paths of all guides in the tree."""
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.md"], cwd=ROOT,
                            check=True, capture_output=True, text=True)
    return sorted(path for path in listed.stdout.splitlines() if (ROOT / path).exists())


def make_tree(folder, build):
    """Makes a folder that is like the root of the tree after scripts/run, for what the guides write there."""
    for name in ("docs", "examples", "src"):
        (folder / name).symlink_to(ROOT / name)
    (folder / "build").symlink_to(Path(build).resolve())
    for name in ("out", "scripts"):
        (folder / name).mkdir()
    script = folder / "scripts/build"
    script.write_text(BUILD_SCRIPT, encoding="utf-8")
    script.chmod(0o755)
    return folder


class Shell:
    """The shell of a user, which blocks are pasted into one after the other. It keeps its state in a file."""

    def __init__(self, state, root, environment, before=""):
        """`before` is defined in the shell, such as functions."""
        self.state, self.environment, self.before = state, environment, before
        state.write_text(f"cd {root}\n", encoding="utf-8")

    def paste(self, text):
        """Runs lines, where one that fails ends them; returns the exit code and what was printed."""
        keep = f"trap 'code=$?; {{ export -p; echo cd \"$PWD\"; }} > {self.state}; exit $code' EXIT"
        script = f"{ENDLESS}{self.before}\n. {self.state}\n{keep}\nset -e\n{text}"
        with subprocess.Popen(["bash", "-c", script], text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              env={name: str(value) for name, value in self.environment.items()},
                              start_new_session=True) as shell:
            try:
                output, _ = shell.communicate(timeout=SECONDS)
            except subprocess.TimeoutExpired:
                os.killpg(shell.pid, signal.SIGKILL)
                raise
        return shell.returncode, output

    def run(self, block):
        """Runs a block to its end; returns what it prints. Raises with that if it fails."""
        code, output = self.paste(block.text)
        if code != 0:
            raise AssertionError(f"{block.guide}:{block.line}: ended with {code}:\n{block.text}{output}")
        return output

    def folder(self):
        """Where it is now."""
        return Path(self.paste("pwd")[1].strip())
