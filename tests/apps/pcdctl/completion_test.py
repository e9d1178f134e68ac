#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Completes command lines of pcdctl in the shells themselves, with the scripts that are installed.

Usage: completion_test.py PROGRAM SCRIPTS. A shell that is missing is a failure.
"""

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
        """Ends the shell: the terminal hangs up."""
        os.close(self.terminal)
        os.waitpid(self.process_id, 0)


class ShellTest(unittest.TestCase):
    """One shell; the tests of all shells are the same."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        (self.folder / "slide one.json").touch()
        self.environment = {
            "HOME": folder.name, "PATH": f"{PROGRAM.parent}:/usr/bin:/bin", "TERM": "dumb",
            "LANG": "C.UTF-8", "COLUMNS": "200", "LINES": "100", "PCD_LANG": "en",
            "PCD_COMPLETION_SECONDS": "60",  # the limit is not to matter on a slow computer
            # What sanitizers need.
            **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}}


class InteractiveTest:
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

    def test_the_id_of_a_property_is_completed(self):
        self.run_completed("pcdctl --sdk sim get contr\t", "contrast=0")

    def test_a_command_and_the_value_of_an_option_are_completed(self):
        self.run_completed("pcdctl --sdk si\tge\tcontr\t", "contrast=0")

    def test_the_value_after_a_sign_is_completed(self):
        self.run_completed("pcdctl --sdk=si\tget contr\t", "contrast=0")

    def test_the_id_of_a_setting_is_followed_by_its_value(self):
        self.run_completed("pcdctl --sdk sim set contr\t12", "contrast=12")

    def test_a_value_with_blanks_is_one_word(self):
        self.run_completed("pcdctl --sdk sim set binning=Av\t3\t", "binning=Average 3x3")

    def test_a_value_with_blanks_is_completed_within_quotes(self):
        self.run_completed("pcdctl --sdk sim set \"binning=Average 3\t", "binning=Average 3x3")

    def test_a_camera_is_completed(self):
        self.run_completed("pcdctl --sdk sim modes -c Simulated-1\t", "0    1280x960")

    def test_a_file_is_completed(self):
        self.run_completed("pcdctl --sdk sim snap -o a.png --profile sli\t",
                           'pcdctl: "slide one.json"')

    def test_a_file_after_a_sign_is_completed(self):
        self.run_completed("pcdctl --sdk sim snap -o a.png --profile=sli\t",
                           'pcdctl: "slide one.json"')

    def test_a_format_is_completed(self):
        self.run_completed("pcdctl --sdk sim snap -c 1 -o still.p\t", "Saved ")
        self.assertTrue((self.folder / "still.png").exists())

    def test_all_properties_are_shown(self):
        self.show("pcdctl --sdk sim get \t\t", "autoexponeable", "contrast", "rotate")

    def test_the_values_of_a_choice_are_shown(self):
        self.show("pcdctl --sdk sim set rotate=\t\t", "180", "270")

    def test_all_commands_are_shown(self):
        self.show("pcdctl \t\t", "list", "monitor", "snap")


class BashTest(InteractiveTest, ShellTest):
    """bash, with the package bash-completion."""

    def command(self):
        settings = self.folder / "bashrc"
        settings.write_text(
            f"PS1='{READY}'\n. /usr/share/bash-completion/bash_completion\n"
            f". '{SCRIPTS}/pcdctl.bash'\n"
            "bind 'set enable-bracketed-paste off'\n"
            "bind 'set completion-query-items 0'\nbind 'set page-completions off'\n")
        return ["bash", "--noprofile", "--rcfile", str(settings), "-i"]


class ZshTest(InteractiveTest, ShellTest):
    """zsh, with its completion system."""

    def command(self):
        (self.folder / ".zshrc").write_text(
            f"PS1='{READY}'\nfpath=('{SCRIPTS}' $fpath)\nautoload -Uz compinit\ncompinit -D -u\n"
            "LISTMAX=1000\n")
        return ["zsh", "-o", "NO_GLOBAL_RCS", "-i"]


class FishTest(ShellTest):
    """fish, which prints what it would offer."""

    def complete(self, line):
        """The candidates for a line, each with its description."""
        result = subprocess.run(
            ["fish", "--no-config", "-c", f"source '{SCRIPTS}/pcdctl.fish'; complete -C $argv[1]", line],
            env=self.environment, cwd=self.folder, capture_output=True, text=True, timeout=LONGEST,
            check=True)
        self.assertEqual(result.stderr, "")
        return dict((*candidate.split("\t"), "")[:2] for candidate in result.stdout.splitlines())

    def test_commands_are_completed_with_their_summaries(self):
        self.assertEqual(self.complete("pcdctl sna"), {"snap": "Take a still and save it."})

    def test_the_ids_of_properties_are_completed(self):
        candidates = self.complete("pcdctl --sdk sim get ")
        self.assertIn("rotate", candidates)
        self.assertEqual(candidates["contrast"], "Contrast: a whole number from -100 to 100")

    def test_a_setting_is_completed_up_to_its_value(self):
        self.assertEqual(list(self.complete("pcdctl --sdk sim set contr")), ["contrast="])

    def test_values_with_blanks_are_completed(self):
        self.assertIn("binning=Average 3x3", self.complete("pcdctl --sdk sim set binning=Av"))
        self.assertIn("binning=Average 3x3", self.complete("pcdctl --sdk sim set 'binning=Average 3"))

    def test_cameras_are_completed(self):
        self.assertEqual(list(self.complete("pcdctl --sdk=sim modes --camera=Simulated-1")),
                         ["--camera=Simulated-1MM-SIM01M0001"])

    def test_files_are_completed(self):
        self.assertEqual(list(self.complete("pcdctl snap --profile sli")), ["slide one.json"])
        self.assertEqual(list(self.complete("pcdctl snap --profile=sli")),
                         ["--profile=slide one.json"])


if __name__ == "__main__":
    PROGRAM, SCRIPTS = (Path(path).resolve() for path in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
