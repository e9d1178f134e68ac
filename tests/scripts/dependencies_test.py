#!/usr/bin/python3
"""Tests of scripts/dependencies: what is installed and what is only unpacked, with made-up packages."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
# Everything is installed except what the test names.
DPKG_QUERY = """#!/bin/sh
for word in "$@"; do case "$word" in
    -*) ;;
    $MISSING) echo "no packages found matching $word" >&2; code=1;;
    *) printf ' %s installed ' "$word";;
esac; done
exit ${code-0}
"""
# Writes down what it is told. A package that is downloaded has a program of its name.
APT_GET = """#!/bin/sh
echo "apt-get $*" >> "$LOG"
[ "$1" = download ] || exit 0
[ -z "$OFFLINE" ] || { echo 'E: no network' >&2; exit 100; }
for name in "$@"; do :; done
mkdir -p made/DEBIAN made/usr/sbin
printf 'Package: %s\\nVersion: 1\\nArchitecture: all\\nMaintainer: a <a@b.c>\\nDescription: x\\n' "$name" \\
    > made/DEBIAN/control
touch made/usr/sbin/$name
dpkg-deb --build made "${name}_1_all.deb" > /dev/null
rm -r made
"""


class DependenciesTest(unittest.TestCase):
    """The script in a tree of its own, as root."""

    def setUp(self):
        self.here = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.log, self.programs = self.here / "log", self.here / "build/programs"
        (self.here / "scripts").mkdir()
        shutil.copy(ROOT / "scripts/dependencies", self.here / "scripts")
        for name, text in (("dpkg-query", DPKG_QUERY), ("apt-get", APT_GET),
                           ("id", "#!/bin/sh\necho 0\n")):
            (self.here / name).write_text(text, encoding="ascii")
            (self.here / name).chmod(0o755)

    def run_script(self, *words, code=0, **environment):
        """Runs the script; returns its errors, and what it told apt-get."""
        self.log.write_text("", encoding="ascii")
        ended = subprocess.run(
            [self.here / "scripts/dependencies", *words], capture_output=True, text=True, check=False,
            env={**os.environ, "PATH": f"{self.here}:{os.environ['PATH']}", "LOG": str(self.log),
                 "MISSING": "-", "OFFLINE": "", **environment})
        self.assertEqual(ended.returncode, code, ended.stderr)
        return ended.stderr, [line.split()[1:] for line in self.log.read_text("ascii").splitlines()]

    def test_what_is_missing_is_installed_and_nothing_else(self):
        errors, calls = self.run_script("build", MISSING="zlib1g-dev")
        self.assertEqual(errors, "Installing from Debian: zlib1g-dev\n")
        self.assertEqual([(call[0], call[-1]) for call in calls], [("update", "-qq"), ("install", "zlib1g-dev")])
        self.assertEqual(self.run_script("bench"), ("", []))

    def test_what_tests_are_compiled_with_is_in_each_list_that_builds_them(self):
        for list_, code in (("compile", True), ("test", True), ("ci", True), ("docs", False)):
            _, calls = self.run_script(list_, MISSING="libgtest-dev")
            self.assertEqual(["libgtest-dev" in call for call in calls if call[0] == "install"], [True] * code, list_)

    def test_building_needs_nothing_that_only_tests_use(self):
        self.assertEqual(self.run_script("compile", MISSING="ffmpeg"), ("", []))

    def test_time_daemons_are_unpacked_once_and_never_installed(self):
        _, calls = self.run_script("test", MISSING="chrony")
        self.assertEqual([(call[0], call[-1]) for call in calls], [("download", "chrony"), ("download", "linuxptp")])
        self.assertEqual(sorted(str(path.relative_to(self.programs)) for path in self.programs.rglob("*")
                                if path.is_file()), ["chrony/usr/sbin/chrony", "linuxptp/usr/sbin/linuxptp"])
        self.assertEqual(self.run_script("ci", MISSING="chrony"), ("", []))

    def test_without_a_network_a_developer_can_build_and_ci_cannot_go_on(self):
        for list_, code in (("test", 0), ("ci", 1)):
            errors, _ = self.run_script(list_, code=code, OFFLINE="1")
            self.assertIn("chrony could not be downloaded", errors)
            self.assertEqual(list(self.programs.iterdir()), [])

    def test_an_unknown_list_is_named(self):
        errors, calls = self.run_script("all", code=2)
        self.assertEqual((errors[:27], calls), ("usage: scripts/dependencies", []))


if __name__ == "__main__":
    unittest.main()
