# SPDX-License-Identifier: MIT
"""The shells whose completion is tested, with the scripts that are installed. A shell that is missing is a failure."""

import os
import pty
import select
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

LONGEST = 30  # seconds, until a shell that does not answer is a failure
READY = "ready> "


class Terminal:
    """An interactive shell, with keys and screen."""

    def __init__(self, command, environment, folder):
        self.screen = ""
        self.process_id, self.terminal = pty.fork()
        if self.process_id == 0:
            os.chdir(folder)
            os.execvpe(command[0], command, environment)

    def type(self, keys):
        """Presses keys."""
        os.write(self.terminal, keys.encode())

    def wait_for(self, text):
        """Waits until the screen shows a text."""
        end = time.monotonic() + LONGEST
        while text not in self.screen:
            if not select.select([self.terminal], [], [], max(0, end - time.monotonic()))[0]:
                raise AssertionError(f"expected {text!r}, and the screen has {self.screen!r}")
            self.screen += os.read(self.terminal, 4096).decode(errors="replace")

    def close(self):
        """Ends the shell, after the program that it runs."""
        # If the terminal hung up, the system would also continue all its programs: LeakSanitizer, which
        # stops a program at its end, would then wait for that for ever, and use a processor.
        self.type("\x15exit\r")  # without what is left in the line
        end = time.monotonic() + LONGEST
        try:
            while select.select([self.terminal], [], [], max(0, end - time.monotonic()))[0]:
                os.read(self.terminal, 4096)
            raise AssertionError("the shell does not end")
        except OSError:
            pass  # nobody has the other end of the terminal any more
        finally:
            os.close(self.terminal)
            os.waitpid(self.process_id, 0)


class ShellTest(unittest.TestCase):
    """A test in one shell."""

    program = scripts = None  # paths, from the command line

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        (self.folder / "slide one.json").touch()
        self.environment = {
            "HOME": folder.name, "PATH": f"{self.program.parent}:/usr/bin:/bin", "TERM": "dumb",
            "LANG": "C.UTF-8", "COLUMNS": "200", "LINES": "100", "PCD_LANG": "en",
            "PCD_COMPLETION_SECONDS": "60",  # the limit is not to matter on a slow computer
            # What sanitizers need.
            **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}}


class InteractiveTest(ShellTest):
    """What the user sees who presses Tab, and what the program then gets."""

    def start(self):
        """A shell that is ready for the first line."""
        terminal = Terminal(self.command(), self.environment, self.folder)
        self.addCleanup(terminal.close)
        terminal.wait_for(READY)
        terminal.screen = ""
        return terminal

    def run_completed(self, line, expected):
        """Types a line with tabs and runs it: the program prints the expected line."""
        terminal = self.start()
        terminal.type(line)
        # The shell handles keys in order: the line runs after its tabs have been completed.
        terminal.type("\r")
        terminal.wait_for(f"\n{expected}")

    def show(self, line, *expected):
        """Types a line with tabs that shows several candidates."""
        terminal = self.start()
        terminal.type(line)
        for text in expected:
            terminal.wait_for(text)


class Bash(InteractiveTest):
    """bash, with the package bash-completion."""

    def command(self):
        settings = self.folder / "bashrc"
        settings.write_text(
            f"PS1='{READY}'\n. /usr/share/bash-completion/bash_completion\n"
            f". '{self.scripts}/{self.program.name}.bash'\n"
            "bind 'set enable-bracketed-paste off'\n"
            "bind 'set completion-query-items 0'\nbind 'set page-completions off'\n")
        return ["bash", "--noprofile", "--rcfile", str(settings), "-i"]


class Zsh(InteractiveTest):
    """zsh, with its completion system."""

    def command(self):
        (self.folder / ".zshrc").write_text(
            f"PS1='{READY}'\nfpath=('{self.scripts}' $fpath)\nautoload -Uz compinit\ncompinit -D -u\n"
            "LISTMAX=1000\n")
        return ["zsh", "-o", "NO_GLOBAL_RCS", "-i"]


class Fish(ShellTest):
    """fish, which prints what it would offer."""

    def complete(self, line):
        """The candidates for a line, each with its description."""
        result = subprocess.run(
            ["fish", "--no-config", "-c", f"source '{self.scripts}/{self.program.name}.fish'; complete -C $argv[1]", line],
            env=self.environment, cwd=self.folder, capture_output=True, text=True, timeout=LONGEST,
            check=True)
        self.assertEqual(result.stderr, "")
        return dict((*candidate.split("\t"), "")[:2] for candidate in result.stdout.splitlines())


def main():
    """Runs the tests of the calling program: PROGRAM SCRIPTS [TEST]…"""
    ShellTest.program, ShellTest.scripts = (Path(path).resolve() for path in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
