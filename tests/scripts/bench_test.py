#!/usr/bin/python3
"""Tests of scripts/bench: made-up programs report figures, and the table is right about them."""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# What a program of bench writes, for `bench_…` scripts that write it: reads the option, as they do.
PROGRAM = """#!/usr/bin/python3
import json, re, sys
rows = json.loads({rows!r})
options = dict(word.lstrip("-").split("=", 1) for word in sys.argv[1:])
rows = [row for row in rows if re.search(options.get("benchmark_filter", ""), row["run_name"])]
if rows:
    with open(options["benchmark_out"], "w") as file:
        json.dump({{"benchmarks": rows}}, file)
sys.exit({code})
"""


def row(name, ours, reference, target, unit="ms"):
    """A row with a bound on the ratio, or on the value if there is no reference."""
    made = {"name": f"{name}/iterations:1", "run_name": f"{name}/iterations:1",
            "label": f"our {name}|{'' if reference is None else 'theirs'}|{unit}",
            "ours": ours, "target": target}
    if reference is not None:
        made.update(reference=reference, ratio=ours / reference, spread=0.01)
    return made


class BenchTest(unittest.TestCase):
    """A build folder with made-up programs."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        (self.folder / "bin").mkdir()
        self.output = self.folder / "bench.json"

    def add_program(self, name, rows, code=0):
        """A program that reports these rows and ends with this code."""
        program = self.folder / "bin" / name
        program.write_text(PROGRAM.format(rows=json.dumps(rows), code=code), encoding="utf-8")
        program.chmod(0o755)

    def run_bench(self, *options):
        """Runs the script on the folder."""
        return subprocess.run(
            [ROOT / "scripts" / "bench", "--build", self.folder, "--output", self.output, *options],
            capture_output=True, text=True, check=False)

    def line(self, result, name):
        """The first line of the output that begins with the name, as words."""
        for line in result.stdout.splitlines():
            if line.startswith(name):
                return line.split()
        return self.fail(f"no line {name} in:\n{result.stdout}{result.stderr}")

    def test_a_ratio_at_its_target_holds_and_one_above_it_does_not(self):
        self.add_program("bench_a", [row("copy/small", 1.5, 1.0, 1.5)])
        self.add_program("bench_b", [row("copy/large", 15.1, 10.0, 1.5)])
        result = self.run_bench()
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertEqual(self.line(result, "copy/small"),
                         "copy/small 1.50 ms 1.00 ms 1.500 0.010 1.50 yes".split())
        self.assertEqual(self.line(result, "copy/large"),
                         "copy/large 15.1 ms 10.0 ms 1.510 0.010 1.50 NO".split())
        self.assertIn("1 of 2 do not hold: copy/large", result.stdout)
        self.assertIn("our copy/large, against: theirs", result.stdout)

    def test_a_value_without_a_reference_is_held_against_its_own_bound(self):
        self.add_program("bench_a", [row("faults", 0, None, 0, "faults"),
                                     row("heap", 64.5, None, 64, "KiB")])
        result = self.run_bench()
        self.assertEqual(self.line(result, "faults"), "faults 0 faults - - - 0 faults yes".split())
        self.assertEqual(self.line(result, "heap"), "heap 64.5 KiB - - - 64.0 KiB NO".split())

    def test_all_targets_that_hold_are_a_success(self):
        self.add_program("bench_a", [row("copy", 1, 1, 1.1)])
        result = self.run_bench()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertNotIn("do not hold", result.stdout)

    def test_the_file_has_every_figure_and_the_machine(self):
        self.add_program("bench_a", [row("copy", 3, 2, 1.1)])
        self.run_bench()
        written = json.loads(self.output.read_text(encoding="utf-8"))
        self.assertEqual(written["figures"], [{
            "name": "copy", "what": "our copy", "against": "theirs", "unit": "ms", "ours": 3,
            "reference": 2, "ratio": 1.5, "spread": 0.01, "target": 1.1, "holds": False}])
        self.assertGreaterEqual(written["machine"]["cores"], 1)

    def test_a_comparison_says_what_is_better_worse_new_and_gone(self):
        self.add_program("bench_a", [row("same", 100, 100, 2), row("slow", 100, 100, 2),
                                     row("fast", 100, 100, 2), row("broken", 100, 100, 1.2),
                                     row("gone", 1, 1, 2)])
        self.assertEqual(self.run_bench().returncode, 0)
        old = self.folder / "old.json"
        self.output.rename(old)
        self.add_program("bench_a", [row("same", 102, 100, 2), row("slow", 150, 100, 2),
                                     row("fast", 50, 100, 2), row("broken", 130, 100, 1.2),
                                     row("added", 1, 1, 2)])
        result = self.run_bench("--compare", old)
        changes = result.stdout[result.stdout.index("before"):]
        for line in ("same 1.00 1.02 +2.0 %", "slow 1.00 1.50 +50.0 % worse",
                     "fast 1.00 0.500 -50.0 % better", "broken 1.00 1.30 +30.0 % NO LONGER HOLDS",
                     "added - 1.00 - new", "gone 1.00 - - not measured now"):
            self.assertIn(line.split(), [text.split() for text in changes.splitlines()])

    def test_what_was_not_built_is_in_the_table_and_no_success(self):
        absent = row("ways/python", 1, None, 1.1)
        del absent["ours"]
        absent["missing"] = 1
        self.add_program("bench_a", [absent, row("copy", 1, 1, 2)])
        result = self.run_bench()
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertEqual(self.line(result, "ways/python"),
                         "ways/python not built - - - 1.10 NO".split())
        self.assertIn("1 of 2 were not measured, as what they need was not built: ways/python",
                      result.stdout)
        self.assertNotIn("do not hold", result.stdout)

    def test_a_comparison_says_what_was_not_built(self):
        absent = row("ways/python", 1, None, 1.1)
        del absent["ours"]
        absent["missing"] = 1
        self.add_program("bench_a", [row("ways/python", 1, None, 1.1)])
        self.assertEqual(self.run_bench().returncode, 0)
        old = self.folder / "old.json"
        self.output.rename(old)
        self.add_program("bench_a", [absent])
        changes = self.run_bench("--compare", old).stdout
        self.assertIn("ways/python 1.00 not built - NOT BUILT".split(),
                      [text.split() for text in changes.splitlines()])
        self.output.rename(old)
        self.add_program("bench_a", [row("ways/python", 1, None, 1.1)])
        changes = self.run_bench("--compare", old).stdout
        self.assertIn("ways/python not built 1.00 - new".split(),
                      [text.split() for text in changes.splitlines()])

    def test_a_row_without_numbers_is_an_error(self):
        broken = row("copy", 1, 1, 2)
        del broken["ours"]
        self.add_program("bench_a", [broken])
        result = self.run_bench()
        self.assertEqual(result.returncode, 3, result.stdout)
        self.assertIn("copy: is not a figure", result.stderr)

    def test_a_filter_runs_only_what_matches(self):
        self.add_program("bench_a", [row("copy", 1, 1, 2), row("paint", 1, 1, 2)])
        self.add_program("bench_b", [row("start", 1, 1, 2)])
        result = self.run_bench("--filter", "^paint")
        self.assertEqual(result.returncode, 0, result.stderr)
        names = [figure["name"] for figure in json.loads(self.output.read_text())["figures"]]
        self.assertEqual(names, ["paint"])

    def test_bad_input_is_named_and_the_earlier_file_stays(self):
        self.add_program("bench_a", [row("copy", 1, 1, 2)])
        self.output.write_text("earlier", encoding="utf-8")
        broken = self.folder / "broken.json"
        for text, options, words in (
                ("{", ("--compare", broken), "broken.json: not the figures of an earlier run"),
                ('{"figures": [{"name": "a"}]}', ("--compare", broken), "broken.json: not the"),
                ("", ("--filter", "nothing"), "--filter nothing: matches no figure")):
            with self.subTest(words=words):
                broken.write_text(text, encoding="utf-8")
                result = self.run_bench(*options)
                self.assertEqual(result.returncode, 2, result.stdout)
                self.assertIn(words, result.stderr)
                self.assertEqual(self.output.read_text(encoding="utf-8"), "earlier")

    def test_what_would_be_noticed_at_the_end_is_named_before_anything_runs(self):
        self.add_program("bench_a", [row("copy", 1, 1, 2)])
        (self.folder / "file").write_text("", encoding="utf-8")
        for options, words in ((("--filter", "("), "--filter (: missing ), unterminated"),
                               (("--output", self.folder), f"{self.folder}: it is a folder; expected a file"),
                               (("--output", self.folder / "file" / "bench.json"),
                                "bench.json: cannot be written ([Errno 17] File exists:"),
                               (("--output", "/proc/bench.json"),
                                "/proc/bench.json: cannot be written ([Errno 2] No such file")):
            with self.subTest(words=words):
                result = self.run_bench(*options)
                self.assertEqual((result.returncode, result.stdout), (2, ""))
                self.assertIn(words, result.stderr)
                self.assertNotIn("bench_a", result.stderr)
        self.assertFalse(self.output.exists())

    def test_a_program_that_fails_fails_the_run(self):
        failed = {**row("copy", 1, 1, 2), "error_occurred": True, "error_message": "no memory"}
        for name, rows, code, words in (("without figures", [], 0, "wrote no figures"),
                                        ("with a code", [row("copy", 1, 1, 2)], 7, "ended with 7"),
                                        ("with an error", [failed], 1, "copy: no memory")):
            with self.subTest(name):
                self.add_program("bench_a", rows, code)
                result = self.run_bench()
                self.assertEqual(result.returncode, 3, result.stdout)
                self.assertIn(words, result.stderr)
                self.assertFalse(self.output.exists())

    def test_what_was_measured_is_shown_although_something_else_could_not_be(self):
        failed = {**row("lost", 1, None, 0), "error_occurred": True, "error_message": "disk full"}
        self.add_program("bench_a", [failed, row("copy", 1, 1, 2)], 1)
        self.add_program("bench_b", [row("start", 1, 1, 2)])
        self.output.write_text("earlier", encoding="utf-8")
        result = self.run_bench()
        self.assertEqual(result.returncode, 3)
        self.assertIn("lost: disk full", result.stderr)
        self.assertEqual(self.line(result, "copy")[-1], "yes")
        self.assertEqual(self.line(result, "start")[-1], "yes")
        self.assertEqual(self.output.read_text(encoding="utf-8"), "earlier")

    def test_a_folder_without_programs_is_an_error(self):
        result = self.run_bench()
        self.assertEqual(result.returncode, 3)
        self.assertIn("no programs bench_*", result.stderr)


if __name__ == "__main__":
    unittest.main()
