#!/usr/bin/python3
"""Tests of scripts/mutate: its operators, its copy of the checkout, its runs, its results."""

import contextlib
import io
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))

# The path comes first.
from mutation import cli, processes  # noqa: E402
from mutation.baseline import Baseline, Records, by_path  # noqa: E402
from mutation.building import Build, assembling, moment  # noqa: E402
from mutation.campaign import Campaign, Worker, detected, runs_of, spread  # noqa: E402
from mutation.checkout import Checkout  # noqa: E402
from mutation.coverage import Coverage  # noqa: E402
from mutation.equivalents import reason_to_exclude  # noqa: E402
from mutation.operators import mutants_of, virtual_names_of  # noqa: E402
from mutation.processes import Ended, run  # noqa: E402
from mutation.results import (  # noqa: E402
    KILLED, NOT_COMPILED, SAME_CODE, SURVIVED, Results, excess, survivors, table)
from mutation.suites import Program as TestProgram  # noqa: E402
from mutation.suites import Suite, failure_of, program_of, without_shards  # noqa: E402


def changes(text, operator, **more):
    """What the lines of a text become by an operator."""
    return [m.after for m in mutants_of("src/a.cpp", text, **more) if m.operator == operator]


def in_function(line):
    """A function with this line."""
    return f"void A::f() {{\n    {line}\n}}\n"


class OperatorTest(unittest.TestCase):
    """Each operator changes what it is for, and nothing that would mean nothing."""

    def test_a_comparison_becomes_its_neighbour_and_its_opposite(self):
        self.assertEqual(changes("bool b = x < y;", "compare"),
                         ["bool b = x <= y;", "bool b = x >= y;"])

    def test_brackets_of_templates_and_of_includes_are_no_comparisons(self):
        text = "#include <QList>\ntemplate <typename T>\nQList<QMap<int, T>> f(const T&& t);\n"
        self.assertEqual(mutants_of("src/a.h", text), [])

    def test_comments_are_left_alone(self):
        self.assertEqual(mutants_of("src/a.cpp", "// a == b\n/* f(1,\n true) */\n"), [])

    def test_a_string_is_changed_also_where_it_looks_like_a_comment(self):
        self.assertEqual(changes('x = "// a";', "text"), ['x = "// a~";'])

    def test_a_string_of_a_declaration_is_left_alone(self):
        self.assertEqual(changes('static_assert(a, "text"); extern "C" { }', "text"), [])

    def test_a_constant_becomes_one_more_and_0(self):
        self.assertEqual(changes("int n = 0x10u;", "number"), ["int n = 0u;", "int n = 17u;"])

    def test_a_constant_with_separators_is_one_constant(self):
        self.assertEqual(changes("int n = 50'000;", "number"), ["int n = 0;", "int n = 50001;"])

    def test_the_0_of_a_pure_virtual_function_is_left_alone(self):
        self.assertEqual(changes("virtual int f() const = 0;", "number"), [])

    def test_a_call_and_an_assignment_are_removed(self):
        self.assertEqual(changes(in_function("call(a);"), "statement"), [";"])
        self.assertEqual(changes(in_function("m_x = y;"), "statement"), [";"])
        self.assertEqual(changes(in_function("in >> a.b >> c;"), "statement"), [";"])

    def test_a_statement_over_two_lines_keeps_the_numbers_of_the_lines_after_it(self):
        mutant = [m for m in mutants_of("src/a.cpp", in_function("call(a,\n    b);"))
                  if m.operator == "statement"][0]
        changed = mutant.applied(in_function("call(a,\n    b);"))
        self.assertEqual(changed, "void A::f() {\n    ;\n\n}\n")

    def test_a_declaration_is_not_removed(self):
        self.assertEqual(changes(in_function("const QMutexLocker locker(&lock);"), "statement"),
                         [])
        self.assertEqual(changes(in_function("QList<QMap<A, B>> list(c);"), "statement"), [])
        self.assertEqual(changes("class A {\n    A();\n    int f(int);\n};", "statement"), [])

    def test_a_statement_in_a_lambda_is_removed(self):
        self.assertIn("connect(a, [this] { ; });",
                      changes(in_function("connect(a, [this] { m_x = 1; });"), "statement"))

    def test_break_continue_and_an_early_return_are_removed(self):
        for jump in ("break", "continue", "return"):
            self.assertEqual(changes(in_function(f"if (a) {jump};"), "jump"), ["if (a) ;"])

    def test_a_result_becomes_a_default_one(self):
        self.assertEqual(changes(in_function("return a + b;"), "return"), ["return {};"])

    def test_a_condition_is_negated(self):
        self.assertEqual(changes(in_function("if (a) b();"), "condition"), ["if (!(a)) b();"])

    def test_the_results_of_a_choice_are_exchanged(self):
        self.assertEqual(changes(in_function("x = a ? b : c(d);"), "ternary"),
                         ["x = a ? c(d) : b;"])

    def test_adjacent_arguments_of_a_call_are_exchanged(self):
        self.assertEqual(changes(in_function("f(a, b, b);"), "arguments"), ["f(b, a, b);"])

    def test_parameters_are_not_exchanged(self):
        for text in ("int f(int a, int b);", "int f(const A& a, B* b) {}", "int f(A*, B*);"):
            self.assertEqual(changes(text, "arguments"), [])

    def test_a_comma_between_types_separates_no_arguments(self):
        self.assertEqual(changes(in_function("f(QMap<A, B>());"), "arguments"), [])

    def test_a_queued_connection_becomes_a_direct_one(self):
        self.assertEqual(changes("x = Qt::QueuedConnection;", "connection"),
                         ["x = Qt::DirectConnection;"])

    def test_a_connection_without_a_type_becomes_a_queued_one(self):
        line = "connect(a, &A::b, c, &C::d);"
        self.assertEqual(changes(in_function(line), "connection"),
                         ["connect(a, &A::b, c, &C::d, Qt::QueuedConnection);"])

    def test_a_checked_cast_becomes_an_unchecked_one(self):
        self.assertEqual(changes("x = qobject_cast<A*>(b);", "cast"), ["x = static_cast<A*>(b);"])

    def test_a_virtual_call_becomes_one_of_this_class(self):
        names = virtual_names_of("virtual int f() = 0;\nint g() const override;\nint h();\n")
        self.assertEqual(names, {"f", "g"})
        line = in_function("x = f() + b->f() + h();")
        self.assertEqual(changes(line, "virtual", virtual_names=names),
                         ["x = A::f() + b->f() + h();"])

    def test_what_only_reserves_memory_is_left_out_with_its_reason(self):
        mutant = mutants_of("src/a.cpp", in_function("list.reserve(n);"))[0]
        self.assertIn("speed", reason_to_exclude(mutant))


class CheckoutTest(unittest.TestCase):
    """The copy follows the checkout; the checkout is never written to."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.origin = Path(self.folder.name, "origin")
        (self.origin / "src").mkdir(parents=True)
        self.file = self.origin / "src" / "a.cpp"
        self.file.write_text("int a;\n", encoding="utf-8")
        subprocess.run(["git", "-C", str(self.origin), "init", "-q"], check=True)
        self.checkout = Checkout(self.origin, Path(self.folder.name, "copy"))
        self.checkout.bring_up_to_date()

    def test_a_change_keeps_the_time_and_does_not_reach_the_checkout(self):
        copied = self.checkout.copy / "src" / "a.cpp"
        before = copied.stat().st_mtime_ns
        self.checkout.write("src/a.cpp", "int b;\n")
        self.assertEqual(self.checkout.read("src/a.cpp"), "int b;\n")
        self.assertEqual(copied.stat().st_mtime_ns, before)
        self.assertEqual(self.file.read_text(encoding="utf-8"), "int a;\n")

    def test_a_change_left_by_a_run_that_was_killed_is_undone_and_built_again(self):
        self.checkout.write("src/a.cpp", "int b;\n")
        copied = self.checkout.copy / "src" / "a.cpp"
        before = copied.stat().st_mtime_ns
        self.checkout.bring_up_to_date()
        self.assertEqual(self.checkout.read("src/a.cpp"), "int a;\n")
        self.assertGreater(copied.stat().st_mtime_ns, before)

    def test_a_file_that_is_gone_goes_from_the_copy(self):
        self.file.unlink()
        self.checkout.bring_up_to_date()
        self.assertFalse((self.checkout.copy / "src" / "a.cpp").exists())


class BuildTest(unittest.TestCase):
    """What was built of a changed source is replaced by what was kept."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.build = Build(folder.name, Path(folder.name, "build"), Path(folder.name, "kept"))
        self.build.directory.mkdir()
        self.made = [self.build.directory / name for name in ("a.so", "a.o", "a.gcno")]
        for path in self.made:
            path.write_text("good", encoding="utf-8")
        self.times = [path.stat().st_mtime_ns for path in self.made]
        self.build.keep()

    def expect_as_kept(self):
        """Expects what was kept, with its times, and nothing else."""
        self.assertEqual(set(self.build.directory.iterdir()), set(self.made))
        self.assertEqual([path.read_text(encoding="utf-8") for path in self.made], ["good"] * 3)
        self.assertEqual([path.stat().st_mtime_ns for path in self.made], self.times)

    def test_the_kept_files_come_back_with_their_times(self):
        new = self.build.directory / "new.so"
        for path in (self.made[0], new):
            path.unlink(missing_ok=True)
            path.write_text("bad", encoding="utf-8")
        self.build.put_back([], self.made[0].stat().st_mtime)
        self.expect_as_kept()

    def test_what_moc_made_of_a_header_is_made_again_and_comes_back(self):
        moc = self.build.directory / "a_autogen" / "X" / "moc_a.cpp"
        mark = moc.parent.parent / "timestamp"
        moc.parent.mkdir(parents=True)
        for path in (moc, mark):
            path.write_text("good", encoding="utf-8")
        self.build.keep()
        discarded, since = self.build.moc_of("src/a.h"), moment()
        self.build.discard(discarded)
        self.assertFalse(moc.exists() or mark.exists())
        self.build.put_back(discarded, since)
        self.assertTrue(moc.exists() and mark.exists())

    def test_objects_come_back_also_where_nothing_could_be_compiled(self):
        self.build.discard(["a.o"])
        self.assertFalse(self.made[1].exists())
        self.made[2].unlink(missing_ok=True)  # the compiler does so when it fails
        self.build.put_back(["a.o"], moment())
        self.expect_as_kept()


class CoverageTest(unittest.TestCase):
    """Which suites run for a line."""

    def setUp(self):
        self.coverage = Coverage([("a", line, "a.o") for line in (1, 2, 4)])
        self.coverage.add(Suite("p", "A"), [("a", 1)])
        self.coverage.at_start = {("a", 4)}

    def test_a_line_with_code_has_the_suites_that_execute_it(self):
        self.assertEqual(self.coverage.of_line("a", 1), {Suite("p", "A")})

    def test_a_line_whose_code_no_suite_executes_has_those_of_its_file(self):
        self.assertEqual(self.coverage.of_line("a", 2), {Suite("p", "A")})

    def test_a_line_without_code_has_those_of_its_file(self):
        self.assertEqual(self.coverage.of_line("a", 3), {Suite("p", "A")})

    def test_a_line_that_runs_when_programs_start_has_those_of_its_file(self):
        self.assertEqual(self.coverage.of_line("a", 4), {Suite("p", "A")})

    def test_a_file_without_code_has_all(self):
        self.assertEqual(self.coverage.of_line("constants.h", 1), {Suite("p", "A")})

    def test_only_objects_that_hold_a_line_are_made_again(self):
        self.assertEqual(self.coverage.objects_of_line("a", 1, {"a.o", "b.o"}), {"a.o"})
        self.assertEqual(self.coverage.objects_of_line("a", 3, {"a.o", "b.o"}), {"a.o", "b.o"})

    def test_the_data_of_a_program_is_read_back_from_a_file_until_it_is_rebuilt(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "records.json")
            lines = {("a", 1), ("a", 2), ("b", 1)}
            record = {"key": "k", "excluded": ["E"], "start": {},
                      "suites": {"A": {"seconds": 2, "lines": by_path(lines)}}}
            Records(file).add("p", record)
            self.assertIsNone(Records(file).find("p", "other"))
            made = Baseline(Coverage([("b", 1, "b.o")]))
            made.add("p", Records(file).find("p", "k"))
        self.assertEqual(made.seconds, {Suite("p", "A"): 2})
        self.assertEqual(made.excluded, [Suite("p", "E")])
        self.assertEqual(made.coverage.of_line("b", 1), {Suite("p", "A")})


class Program:
    """A test program whose runs end as given, one after the other."""

    name = "program"

    def __init__(self, *ends):
        self.ends = list(ends)

    def run(self, _pattern, _limit):
        """The next end."""
        return self.ends.pop(0)


FAILURE = Ended(1, "[ RUN      ] A.b\n[  FAILED  ] A.b (3 ms)\n", 0.1)
PASS = Ended(0, "", 0.1)


class DetectionTest(unittest.TestCase):
    """What counts as detected."""

    def test_a_test_that_fails_again_has_detected_the_change(self):
        self.assertEqual(detected(Program(FAILURE, FAILURE), [Suite("p", "A")], 1),
                         ("A.b", "failed"))

    def test_a_test_that_fails_only_once_has_not(self):
        self.assertIsNone(detected(Program(FAILURE, PASS, PASS), [Suite("p", "A")], 1))

    def test_a_test_that_fails_only_after_others_has(self):
        self.assertEqual(detected(Program(FAILURE, PASS, FAILURE), [Suite("p", "A")], 1),
                         ("A.b", "failed"))

    def test_a_run_that_does_not_end_has_detected_the_change(self):
        ended = Ended(None, "[ RUN      ] A.b\n", 30)
        self.assertEqual(detected(Program(ended), [Suite("p", "A")], 1), ("A.b", "hung"))

    def test_a_crash_is_distinguished_from_a_failure(self):
        self.assertEqual(failure_of(Ended(-11, "[ RUN      ] A.b\n", 1)),
                         ("A.b", "crashed with signal 11"))

    def test_a_program_is_ended_at_its_limit(self):
        self.assertIsNone(run(["sleep", "60"], 0.1).code)

    def test_nothing_is_started_once_all_was_ended(self):
        self.addCleanup(processes.ENDING.clear)
        processes.end_all()
        with self.assertRaises(InterruptedError):
            run(["true"], None)

    def test_suites_named_after_the_source_run_first_then_the_quick_ones_together(self):
        seconds = {Suite("p", "Other"): 0.1, Suite("p", "Another"): 0.1, Suite("p", "Slow"): 9,
                   Suite("p", "PThingTest"): 1}
        runs = [[suite.name for suite in suites]
                for suites, _ in runs_of(set(seconds), "src/PThing.cpp", seconds)]
        self.assertEqual(runs, [["PThingTest"], ["Another", "Other"], ["Slow"]])

    def test_the_shards_of_a_program_are_one_program_and_run_whole(self):
        shards = [{"name": f"test_a.{shard}", "command": ["/bin/test_a"], "properties": [
            {"name": "ENVIRONMENT", "value": ["QT_QPA_PLATFORM=offscreen", "GTEST_TOTAL_SHARDS=2",
                                              f"GTEST_SHARD_INDEX={shard}"]},
            {"name": "WORKING_DIRECTORY", "value": "/tmp"}]} for shard in range(2)]
        script = {"name": "a_script", "command": ["/bin/a"], "properties": []}
        whole, other = without_shards([*shards, script])
        self.assertEqual(program_of(whole), TestProgram("test_a", ["/bin/test_a"],
                                                    {"QT_QPA_PLATFORM": "offscreen"}, "/tmp"))
        self.assertEqual(other, script)

    def test_a_suite_that_does_not_pass_without_a_change_is_not_run(self):
        self.assertEqual(runs_of({Suite("p", "Unsteady")}, "src/a.cpp", {}), [])


def mutants(*paths):
    """Four mutants of each path."""
    return [m for path in paths for m in mutants_of(path, "x = a < b;\ny = c < d;\n")]


class Compiler:
    """A build in which a change compiles or does not, and makes other code or the same."""

    dependents = {"src/a.cpp": {"a.o"}}

    def __init__(self, compiles, codes):
        self.compiles = compiles
        self.codes = list(codes)

    def target(self, _name):
        """True if it compiles."""
        return self.compiles

    def code_of(self, _objects):
        """The next code: first that of the change, then that of the source."""
        return self.codes.pop(0)

    def discard(self, objects):
        """Nothing is kept here."""

    def put_back(self, objects, since):
        """Nothing is kept here."""


class WorkerTest(unittest.TestCase):
    """What happens to a mutant that no test executes, and whether it is a change at all."""

    def result(self, compiles, *codes):
        """The result of a change in a line that no test executes; the source is as before."""
        with tempfile.TemporaryDirectory() as folder:
            worker = Worker(folder, folder, 1)
            worker.build = Compiler(compiles, codes)
            source = Path(folder, "tree", "src", "a.cpp")
            source.parent.mkdir(parents=True)
            source.write_text("x = a < b;\n", encoding="utf-8")
            result = worker.try_mutant(mutants("src/a.cpp")[0], Baseline(Coverage()))
            self.assertEqual(source.read_text(encoding="utf-8"), "x = a < b;\n")
        return result[0]

    def test_a_line_that_no_test_executes_survives(self):
        self.assertEqual(self.result(True, ["changed"], ["source"]), SURVIVED)

    def test_it_does_not_if_it_does_not_compile(self):
        self.assertEqual(self.result(False), NOT_COMPILED)

    def test_a_change_that_makes_the_same_code_does_not_count(self):
        self.assertEqual(self.result(True, ["code"], ["code"]), SAME_CODE)

    def test_the_code_is_that_of_the_optimising_compiler(self):
        self.assertEqual(
            assembling("/usr/bin/ccache g++ -DA='b c' -O0 --coverage -MD -MT a.o -MF a.d -o a.o "
                       "-c a.cpp"),
            ["g++", "-DA=b c", "a.cpp", "-O2", "-S", "-o", "-"])


class StubWorker:
    """Gives the results it was made with."""

    def __init__(self, *ends):
        self.ends = list(ends)

    def try_mutant(self, _mutant, _baseline):
        """The next end."""
        return self.ends.pop(0)


class ResultsTest(unittest.TestCase):
    """Results last, and are counted."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.file = Path(folder.name, "results.jsonl")

    def campaign(self, *ends, tree="tree"):
        """The results of mutants of one source that end as given."""
        made = Campaign([StubWorker(*ends)], None, Results(self.file, tree), {"src/a.cpp": "source"})
        return made.run(mutants("src/a.cpp")[:3], None)

    def test_a_second_run_goes_on_where_the_first_ended(self):
        first = self.campaign((KILLED, "t", "failed"), (SURVIVED, "", "all passed"),
                              (NOT_COMPILED, "", "x"))
        with self.file.open("a", encoding="utf-8") as out:
            out.write('{"cut off')
        self.assertEqual(self.campaign(), first)

    def test_survivors_are_tried_again_when_something_else_changed(self):
        self.campaign(*[(SURVIVED, "", "all passed")] * 2, (KILLED, "t", "failed"))
        again = self.campaign(*[(KILLED, "t", "failed")] * 2, tree="other tree")
        self.assertEqual([entry["status"] for entry in again], [KILLED] * 3)

    def test_only_changes_that_compile_and_make_a_difference_count_for_a_sample(self):
        worker = StubWorker((NOT_COMPILED, "", "x"), (SAME_CODE, "", "x"),
                            (KILLED, "t", "failed"), (KILLED, "t", "failed"))
        made = Campaign([worker], None, Results(self.file, "tree"), {"src/a.cpp": "source"})
        self.assertEqual(len(made.run(mutants("src/a.cpp"), 1)), 3)

    def test_the_table_counts_and_the_list_names_the_survivors(self):
        entries = self.campaign((KILLED, "t", "failed"), (SURVIVED, "", "all passed"),
                                (NOT_COMPILED, "", "x"))
        self.assertEqual(table(entries).splitlines()[1].split(), ["src/a.cpp", "2", "1", "1", "1", "0"])
        self.assertEqual(survivors(entries), ["src/a.cpp:1: [compare] x = a < b; -> x = a >= b;"])

    def test_an_allowance_is_a_number_or_a_share(self):
        entries = [{"status": SURVIVED}] + [{"status": KILLED}] * 9
        for allowance, is_excess in (("0", True), ("1", False), ("9%", True), ("10%", False)):
            self.assertEqual(excess(entries, allowance), is_excess)

    def test_any_first_part_of_a_sample_is_spread_over_the_files(self):
        order = spread(mutants("src/a.cpp", "src/b.cpp"), seed=1)
        self.assertEqual({m.path for m in order[:2]}, {"src/a.cpp", "src/b.cpp"})
        self.assertEqual(order, spread(mutants("src/a.cpp", "src/b.cpp"), seed=1))
        self.assertNotEqual(order, spread(mutants("src/a.cpp", "src/b.cpp"), seed=2))


class CommandLineTest(unittest.TestCase):
    """Bad input is named, with what was expected."""

    def fail(self, *arguments):
        """What a command line that is wrong writes, after its exit code."""
        out = io.StringIO()
        with contextlib.redirect_stderr(out), contextlib.redirect_stdout(io.StringIO()):
            try:
                code = cli.main(ROOT, list(arguments))
            except SystemExit as ended:
                code = ended.code
        return f"{code}: {out.getvalue()}"

    def test_a_path_that_is_not_there_is_named(self):
        self.assertIn("2: scripts/mutate: nowhere: there is no such", self.fail("nowhere"))

    def test_a_path_outside_of_the_sources_is_named(self):
        self.assertIn("only sources below", self.fail(str(ROOT / "tests")))

    def test_a_folder_without_sources_is_named(self):
        self.assertIn("expected a .cpp or .h file",
                      self.fail(str(ROOT / "src" / "CMakeLists.txt")))

    def test_an_operator_that_does_not_exist_is_named(self):
        self.assertIn("expected one of arguments, ",
                      self.fail(str(ROOT / "src" / "PCore"), "--operator", "x"))

    def test_a_number_that_is_not_valid_is_named(self):
        self.assertIn("'0' is not a number of at least 1", self.fail("src", "--sample", "0"))
        self.assertIn("neither a number nor a share", self.fail("src", "--allow", "few"))

    def test_all_mutants_of_a_source_can_be_listed(self):
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            code = cli.main(ROOT, [str(ROOT / "src" / "PCore" / "PFpsCounter.cpp"), "--list"])
        self.assertEqual(code, 0)
        self.assertRegex(out.getvalue(), r"^src/PCore/PFpsCounter.cpp:\d+: \[\w+\] .* -> ")


if __name__ == "__main__":
    unittest.main()
