#!/usr/bin/python3
"""Tests of scripts/tidy: what it runs clang-tidy on, and when it does not. A program that stands in for clang-tidy
finds something in files with the word "bad"."""

import contextlib
import io
import json
import os
import re
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path
from unittest import mock

ROOT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))

# The path comes first.
from tidying import cli, commands, kept  # noqa: E402

CLANG_TIDY = """#!/bin/bash
echo run >>"$(dirname "$0")/runs"
errors=0
for word in "$@"; do
    case $word in
        --) break ;;
        "--warnings-as-errors=*") errors=1 ;;
    esac
    file=$word
done
. "$(dirname "$0")/meanwhile"
! grep -H bad "$file" || exit "$errors"
"""

DEPS = """a.o: #deps 2, deps mtime 1 (VALID)
    /src/a.cpp
    a.h

old.o: #deps 1, deps mtime 1 (STALE)
    /src/old.cpp

b.o: #deps 1, deps mtime 1 (VALID)
    /src/b.cpp
"""


class Folder(unittest.TestCase):
    """A folder with a source, its header, the settings, and in PATH a program that stands in for clang-tidy, with a
    library of which ldd says that it has it."""

    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.write("bin/clang-tidy", CLANG_TIDY)
        self.write("bin/library", "1")
        self.write("bin/ldd", f"#!/bin/bash\necho '  liba.so => {self.folder}/bin/library (0x1)'\n")
        self.write("bin/meanwhile", "")
        self.source, self.header = self.write("src/a.cpp", "good"), self.write("src/a.h", "int a();")
        self.write(".clang-tidy", "Checks: all")
        self.enterContext(mock.patch.dict(os.environ, PATH=f"{self.folder / 'bin'}:{os.environ['PATH']}"))
        self.results = self.folder / "cache" / "results"

    def write(self, name, text):
        """Writes a file that can be run."""
        path = self.folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(0o755)
        return path

    def run_of(self, *options):
        """The run over the source."""
        unit = mock.Mock(options=options, files=[str(self.source), str(self.header)])
        return commands.make_run(self.folder, str(self.source), "--checks=*", unit)

    def tidy(self, run=None):
        """Does the run as scripts/tidy would. Returns how many were done, and how many of them found something."""
        with contextlib.redirect_stdout(io.StringIO()):
            return cli.run_all([run or self.run_of()], kept.Kept(self.results), self.folder)


class KeptTest(Folder):
    """What is run again, and what is not."""

    def test_what_is_as_it_was_is_not_run_again(self):
        self.assertEqual(self.tidy(), (1, 0))
        self.assertEqual(self.tidy(), (0, 0))
        self.assertEqual((self.folder / "bin" / "runs").read_text(encoding="utf-8"), "run\n")

    def test_what_has_a_finding_is_run_again_and_found_again(self):
        self.write("src/a.cpp", "bad")
        self.assertEqual(self.tidy(), (1, 1))
        self.assertEqual(self.tidy(), (1, 1))

    def test_a_change_of_anything_that_decides_is_run_again(self):
        for name, text in (("src/a.cpp", "other"), ("src/a.h", "long a();"), (".clang-tidy", "Checks: some"),
                           ("src/.clang-tidy", "Checks: others"), ("bin/clang-tidy", CLANG_TIDY + "# newer\n"),
                           ("bin/library", "2")):
            with self.subTest(name):
                self.tidy()
                self.assertEqual(self.tidy(), (0, 0))
                self.write(name, text)
                self.assertEqual(self.tidy(), (1, 0))

    def test_other_options_are_run_again(self):
        self.tidy()
        self.assertEqual(self.tidy(self.run_of("-DOTHER")), (1, 0))

    def test_a_finding_that_a_change_brings_is_reported(self):
        self.tidy()
        self.write("src/a.cpp", "bad")
        self.assertEqual(self.tidy(), (1, 1))

    def test_without_the_files_that_were_read_it_is_always_run(self):
        run = commands.Run(str(self.source), self.run_of().arguments, ())
        self.assertEqual(self.tidy(run), (1, 0))
        self.assertEqual(self.tidy(run), (1, 0))

    def test_what_changes_during_the_run_is_run_again(self):
        self.write("bin/meanwhile", f"echo 'int b();' >>'{self.header}'")
        self.assertEqual(self.tidy(), (1, 0))
        self.write("bin/meanwhile", "")
        self.assertEqual(self.tidy(), (1, 0))
        self.assertEqual(self.tidy(), (0, 0))
        self.write("src/a.h", "int a();")
        self.assertEqual(self.tidy(), (1, 0))  # nor is it kept for what was there before

    def test_what_is_of_no_use_for_two_months_is_forgotten_and_what_is_of_use_stays(self):
        results = kept.Kept(self.results)
        results.forget_unused()  # no folder yet
        used, unused = self.run_of("-DUSED"), self.run_of("-DUNUSED")
        for run in (used, unused):
            self.assertFalse(results.has(run))
            results.add(run)
            os.utime(self.results / results.names[run], (time.time() - kept.UNUSED_FOR - 60,) * 2)
        self.assertTrue(results.has(used))
        results.forget_unused()
        self.assertTrue(results.has(used))
        self.assertFalse(results.has(unused))

    def test_results_are_with_the_caches_of_the_user(self):
        with mock.patch.dict(os.environ, XDG_CACHE_HOME=str(self.folder)):
            self.assertEqual(kept.default_folder(), self.folder / "pcd-tidy")
        with mock.patch.dict(os.environ, XDG_CACHE_HOME="", HOME="/home/user"):
            self.assertEqual(kept.default_folder(), Path("/home/user/.cache/pcd-tidy"))


class CommandsTest(Folder):
    """What is looked at, by what the build compiles."""

    def units(self, *files):
        """The units of a build that compiles the files."""
        build = self.folder / "build"
        (build / "src").mkdir(parents=True, exist_ok=True)
        entries = [{"file": str(file), "command": f"/usr/bin/ccache /usr/bin/clang++ -DA -Wall -o {Path(file).name}.o -c {file}"}
                   for file in files]
        (build / "compile_commands.json").write_text(json.dumps(entries), encoding="utf-8")
        deps = "".join(f"{Path(file).name}.o: #deps 1, deps mtime 1 (VALID)\n    {file}\n\n" for file in set(files))
        self.enterContext(mock.patch.object(subprocess, "run", return_value=mock.Mock(stdout=deps)))
        return commands.units(self.folder, build)

    def test_files_are_those_that_ninja_knows_of_a_current_object(self):
        self.assertEqual(commands.files_read(DEPS, Path("/build")),
                         {"a.o": ["/src/a.cpp", "/build/a.h"], "b.o": ["/src/b.cpp"]})

    def test_sources_of_the_tree_are_looked_at_once_and_what_qt_wrote_is_not(self):
        source, build = self.folder / "src" / "a.cpp", self.folder / "build" / "src"
        found = self.units(source, source, self.folder / "tests" / "b.cpp", build / "mocs_compilation.cpp",
                           build / "qrc_icons.cpp")
        self.assertEqual([unit.path for unit in found], [str(source)])
        self.assertEqual(found[0].options, ["-DA", "-Wall"])
        self.assertEqual(found[0].files, [str(source)])

    def test_a_unit_is_one_run_and_each_source_in_it_one_of_the_analyser(self):
        unity = self.folder / "build" / "src" / "Unity" / "unity_0.cxx"
        unity.parent.mkdir(parents=True)
        unity.write_text('#include "/x/src/a.cpp"\n#include "/x/src/b.cpp"\n', encoding="utf-8")
        found = self.units(unity)
        runs = commands.unit_runs(self.folder, found, "")
        self.assertEqual([run.path for run in runs], [str(unity)])
        self.assertEqual(runs[0].arguments[-3:], ("--", "-DA", "-Wall"))
        self.assertEqual(runs[0].arguments[-4], str(unity))
        self.assertIn(f"--header-filter=^{re.escape(str(self.folder))}/src/.*[.](h|cpp)$", runs[0].arguments)
        self.assertEqual(commands.unit_runs(self.folder, found, "a text that no path has"), [])
        self.assertIn("--checks=-bugprone-suspicious-include,-clang-analyzer-*", runs[0].arguments)
        runs = commands.source_runs(self.folder, found, "")
        self.assertEqual([run.path for run in runs], ["/x/src/a.cpp", "/x/src/b.cpp"])
        self.assertEqual([run.files for run in runs], [(str(unity),)] * 2)
        self.assertEqual([run.path for run in commands.source_runs(self.folder, found, "b.cpp")],
                         ["/x/src/b.cpp"])


class MainTest(Folder):
    """What it builds, the runs that the command line names, and the exit code."""

    def main(self, *words, units=(), sources=(), build_fails=False):
        """Runs the command line where these are the runs. Returns the exit code, and what it printed last."""
        def run(command, **more):
            if command[1:] != ["--preset", "asan"]:
                return real(command, **more)
            self.assertEqual(command[0], self.folder / "scripts" / "build")
            self.assertTrue(more["check"])
            self.built += 1
            if build_fails:
                raise subprocess.CalledProcessError(1, command)
            return None
        real, output, self.built = subprocess.run, io.StringIO(), 0
        with mock.patch.object(subprocess, "run", run), mock.patch.object(cli, "units"), \
                mock.patch.object(cli, "unit_runs", side_effect=self.given("unit", units)), \
                mock.patch.object(cli, "source_runs", side_effect=self.given("source", sources)), \
                mock.patch.dict(os.environ, XDG_CACHE_HOME=str(self.folder / "cache")), \
                contextlib.redirect_stdout(output):
            return cli.main(self.folder, words), output.getvalue().splitlines()[-1]

    def given(self, kind, runs):
        """A function that returns the runs and notes with which text it was called."""
        def all_runs(_root, _units, text):
            self.called = (kind, text)
            return runs
        return all_runs

    def test_a_finding_fails(self):
        runs = [self.run_of()]
        self.assertEqual(self.main(units=runs),
                         (0, "clang-tidy: 1 units, 0 unchanged since they were clean, 0 with findings"))
        self.assertEqual(self.built, 1)
        self.assertEqual(self.main(units=runs),
                         (0, "clang-tidy: 1 units, 1 unchanged since they were clean, 0 with findings"))
        self.write("src/a.cpp", "bad")
        self.assertEqual(self.main(units=runs),
                         (1, "clang-tidy: 1 units, 0 unchanged since they were clean, 1 with findings"))

    def test_a_run_that_looks_at_nothing_fails(self):
        self.assertEqual(self.main()[0], 1)

    def test_a_build_that_fails_ends_it(self):
        with self.assertRaises(subprocess.CalledProcessError):
            self.main(units=[self.run_of()], build_fails=True)

    def test_the_text_and_the_analyser_choose_the_runs(self):
        self.assertEqual(self.main("PCd", units=[self.run_of()])[0], 0)
        self.assertEqual(self.called, ("unit", "PCd"))
        self.assertEqual(self.main("--analyse", "PTDevice", sources=[self.run_of("-DB")])[1],
                         "clang-tidy: 1 sources, 0 unchanged since they were clean, 0 with findings")
        self.assertEqual(self.called, ("source", "PTDevice"))

    def test_unknown_arguments_are_refused(self):
        result = subprocess.run([ROOT / "scripts" / "tidy", "--dance"], capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 2)
        self.assertIn("unrecognized arguments: --dance", result.stderr)


if __name__ == "__main__":
    unittest.main()
