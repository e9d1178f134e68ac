#!/usr/bin/python3
"""Tests of scripts/check: each check finds its violation in a made-up tree, and nothing else."""

import contextlib
import io
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

ROOT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))

# The path comes first.
from checks import (  # noqa: E402
    cli, commits, conventions, folders, format, functions, headers, includes, tests, threads,
    uses, versions, words)
from checks.allowed import FOLDER, pruned  # noqa: E402
from checks.tree import InputError, Tree  # noqa: E402

LISTS = str(FOLDER)


class TreeTest(unittest.TestCase):
    """A git checkout in a temporary folder."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.git("init", "-q")

    def git(self, *arguments):
        """Runs git as a user without settings of their own; returns what it prints."""
        command = ["git", "-C", str(self.root), "-c", "user.name=n", "-c", "user.email=e",
                   "-c", "commit.gpgsign=false", *arguments]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()

    def tree(self, files):
        """The checkout with some files: paths and their texts."""
        for path, text in files.items():
            self.write(path, text)
        return Tree(self.root)

    def write(self, path, text):
        """Writes a file."""
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def commit(self, subject):
        """Commits everything; returns the commit's id."""
        self.git("add", "--all")
        self.git("commit", "-q", "--allow-empty", "-m", subject)
        return self.git("rev-parse", "HEAD")

    def expect(self, result, *places):
        """Expects violations at these places, and that something was checked."""
        self.assertGreater(result.checked, 0)
        found = [f"{finding.path}:{finding.line}" for finding in sorted(result.findings)]
        self.assertEqual(found, list(places), [str(finding) for finding in result.findings])

    def expect_text(self, result, text):
        """Expects that one of the violations says this."""
        self.assertTrue(any(text in str(finding) for finding in result.findings),
                        [str(finding) for finding in result.findings])


class FormatTest(TreeTest):
    """clang-format checks every C++ file."""

    def test_a_file_that_is_formatted_differently_is_found_once_with_its_first_line(self):
        tree = self.tree({"src/a.cpp": "int a;\nint  b;\nint  c;\n", "src/b.h": "int b;\n"})
        self.expect(format.check(tree), "src/a.cpp:2")

    def test_a_source_package_has_all_files_but_those_that_were_built(self):
        (self.root / ".git").rename(self.root / "other")
        tree = self.tree({"debian/changelog": "", "build/a.cpp": "int  a;\n", "src/b.cpp": "int  b;\n"})
        self.expect(format.check(tree), "src/b.cpp:1")

    def test_a_new_file_is_checked_and_an_ignored_one_is_not(self):
        tree = self.tree({".gitignore": "/build\n", "build/a.cpp": "int  a;\n",
                          "new.cpp": "int  a;\n"})
        self.expect(format.check(tree), "new.cpp:1")

    def test_a_clang_format_that_fails_is_a_violation(self):
        self.write(".clang-format", "nonsense\n")
        self.expect(format.check(self.tree({"a.cpp": "int a;\n"})), "a.cpp:1")

    def test_without_clang_format_the_input_is_wrong(self):
        with mock.patch("shutil.which", return_value=None), self.assertRaises(InputError):
            format.check(self.tree({"a.cpp": "int a;\n"}))


class IncludesTest(TreeTest):
    """Includes follow the two tables, and the tables have no arrow too many."""

    def setUp(self):
        super().setUp()
        self.use({"Low": "", "High": "Low"}, {"High": {"top": "base"}})
        self.files = {"src/Low/CMakeLists.txt": "pcd_add_library(Low\n    HEADERS a.h\n    LINK Q)\n",
                      "src/Low/a.h": "", "src/High/base/b.h": "#include <Low/a.h>\n",
                      "src/High/top/c.h": "#include <QList>\n#include <High/base/b.h>\n"}

    def use(self, libraries, inside):
        """Has the checks use these tables."""
        for name, table in (("LIBRARIES", libraries), ("FOLDERS", inside)):
            patch = mock.patch.object(includes, name, table)
            patch.start()
            self.addCleanup(patch.stop)

    def test_includes_that_follow_the_tables_are_right(self):
        self.expect(includes.check(self.tree(self.files)))

    def test_an_include_of_a_library_above_is_found(self):
        self.files["src/High/CMakeLists.txt"] = "pcd_add_library(High HEADERS base/b.h)\n"
        self.files["src/Low/a.h"] = "\n#include <High/base/b.h>\n"
        result = includes.check(self.tree(self.files))
        self.expect(result, "src/Low/a.h:2")
        self.expect_text(result, "Low includes High/base/b.h: expected none of the others")

    def test_an_include_against_the_folders_of_a_library_is_found(self):
        self.files["src/High/base/b.h"] += "#include <High/top/c.h>\n"
        self.expect(includes.check(self.tree(self.files)), "src/High/base/b.h:2")

    def test_an_arrow_that_no_include_uses_is_found(self):
        self.files["src/High/base/b.h"] = ""
        result = includes.check(self.tree(self.files))
        self.expect_text(result, "no file of High includes Low any more")
        self.assertEqual(len(result.findings), 1)

    def test_a_circle_in_a_table_is_found(self):
        self.use({"Low": "", "High": "Low"}, {"High": {"top": "base", "base": "top"}})
        self.files["src/High/base/b.h"] += "#include <High/top/c.h>\n"
        result = includes.check(self.tree(self.files))
        self.expect_text(result, "High: base -> top -> base is a cycle")
        self.assertEqual(len(result.findings), 1)

    def test_quotes_are_for_generated_files(self):
        text = '#include "a.h"\n#include "ui_b.h"\n#include "b.moc"\n#include "moc_b.cpp"\n'
        self.files["src/Low/b.cpp"] = self.files["tests/Low/c.cpp"] = text
        self.expect(includes.check(self.tree(self.files)), "src/Low/b.cpp:1", "tests/Low/c.cpp:1")

    def test_meta_object_code_is_compiled_with_a_source_beside_its_header(self):
        self.files["src/Low/a.h"] = "class A {\n    Q_OBJECT\n};\n"
        self.files["src/High/base/e.cpp"] = '#include "moc_a.cpp"\n'
        result = includes.check(self.tree(self.files))
        self.expect(result, "src/Low/a.h:2")
        self.expect_text(result, 'Q_OBJECT: expected #include "moc_a.cpp" at the end of the source')
        self.files["src/Low/a.cpp"] = '#include <Low/a.h>\n#include "moc_a.cpp"\n'
        self.expect(includes.check(self.tree(self.files)))

    def test_an_example_includes_the_headers_beside_it_in_quotes(self):
        self.files["examples/tool/a.h"] = self.files["examples/tool/b.h"] = ""
        self.files["examples/tool/a.cpp"] = '#include "a.h"\n#include "b.h"\n#include "c.h"\n'
        self.expect(includes.check(self.tree(self.files)), "examples/tool/a.cpp:3")
        self.files["examples/tool/a.cpp"] = '#include "b.h"\n#include "a.h"\n'
        result = includes.check(self.tree(self.files))
        self.expect(result, "examples/tool/a.cpp:1")
        self.expect_text(result, 'includes b.h first: expected "a.h"')

    def test_a_source_includes_its_own_header_first(self):
        self.files["src/Low/a.cpp"] = "// A.\n#include <Low/a.h>\n#include <QList>\n"
        self.expect(includes.check(self.tree(self.files)))
        self.files["src/Low/a.cpp"] = "// A.\n#include <QList>\n#include <Low/a.h>\n"
        result = includes.check(self.tree(self.files))
        self.expect(result, "src/Low/a.cpp:2")
        self.expect_text(result, "includes QList first: expected <Low/a.h>")

    def test_a_file_outside_of_all_libraries_includes_none(self):
        self.files["src/other.cpp"] = "#include <Low/a.h>\n"
        self.expect(includes.check(self.tree(self.files)), "src/other.cpp:1")

    def test_a_private_header_is_for_its_own_library_and_its_own_tests(self):
        self.files["src/Low/hidden.h"] = ""
        user = "#include <Low/a.h>\n#include <Low/hidden.h>\n"
        for path in ("src/Low/a.cpp", "tests/Low/aTest.cpp", "bench/Low/a.cpp", "src/High/d.cpp",
                     "tests/High/dTest.cpp", "tests/support/e.cpp"):
            self.files[path] = user
        result = includes.check(self.tree(self.files))
        self.expect(result, "src/High/d.cpp:2", "tests/High/dTest.cpp:2", "tests/support/e.cpp:2")
        self.expect_text(result, "includes Low/hidden.h, which is private to Low: expected a header "
                         "of its face (if others need this one, list it under HEADERS in "
                         "src/Low/CMakeLists.txt)")

    def test_a_library_without_a_list_of_headers_has_only_private_ones(self):
        self.files["src/Low/CMakeLists.txt"] = "add_library(Low SHARED a.cpp a.h)\n"
        self.expect(includes.check(self.tree(self.files)), "src/High/base/b.h:1")

    def test_a_header_of_the_face_includes_no_private_one(self):
        self.files["src/Low/hidden.h"] = ""
        self.files["src/Low/a.h"] = "#include <Low/hidden.h>\n"
        result = includes.check(self.tree(self.files))
        self.expect(result, "src/Low/a.h:1")
        self.expect_text(result, "is in the face of Low and includes Low/hidden.h, which is private")

    def test_a_face_is_listed_over_several_lines(self):
        self.files["src/Low/CMakeLists.txt"] = "pcd_set_face(Low HEADERS\n    a.h\n    sub/b.h)\n"
        self.files["src/Low/sub/b.h"] = ""
        self.files["tests/High/c.cpp"] = "#include <Low/sub/b.h>\n"
        self.expect(includes.check(self.tree(self.files)))


class FoldersTest(TreeTest):
    """A folder has few classes and a README."""

    def setUp(self):
        super().setUp()
        patch = mock.patch.object(folders, "EXCEPTIONS", {})
        self.exceptions = patch.start()
        self.addCleanup(patch.stop)

    def fill(self, number):
        """A folder with this number of classes of two files each, and a README."""
        for count in range(number):
            self.write(f"src/A/C{count}.h", "")
            self.write(f"src/A/C{count}.cpp", "")
        return self.tree({"src/A/README.md": "A.\n"})

    def test_a_dozen_classes_are_right(self):
        self.expect(folders.check(self.fill(folders.MOST)))

    def test_one_class_more_is_found(self):
        self.expect(folders.check(self.fill(folders.MOST + 1)), "src/A/README.md:1")

    def test_an_exception_allows_no_more_than_its_number(self):
        self.exceptions["src/A"] = (14, "reason")
        self.expect(folders.check(self.fill(14)))
        self.expect(folders.check(self.fill(15)), "src/A/README.md:1")

    def test_an_exception_that_allows_too_much_is_found(self):
        self.exceptions["src/A"] = (14, "reason")
        self.expect_text(folders.check(self.fill(folders.MOST)), "its exception, 14, is removed")
        self.expect_text(folders.check(self.fill(13)), "its exception, 14, is lowered")

    def test_an_exception_for_a_folder_that_is_gone_is_found(self):
        self.exceptions["src/B"] = (14, "reason")
        self.expect_text(folders.check(self.fill(1)), "src/B has no sources")

    def test_a_folder_without_a_readme_is_found(self):
        self.expect(folders.check(self.tree({"src/A/a.h": ""})), "src/A/README.md:1")


class FunctionsTest(TreeTest):
    """Long functions are found wherever they stand; long types and lists are none."""

    LONG = "    call();\n" * (functions.LONGEST + 1)
    FITS = "    call();\n" * functions.LONGEST

    def check(self, text):
        """The result for a source of this text."""
        return functions.check(self.tree({"src/a.cpp": text}))

    def test_a_function_of_60_lines_is_right(self):
        self.expect(self.check(f"void f() {{\n{self.FITS}}}\n"))

    def test_a_longer_one_is_found_at_its_brace(self):
        self.expect(self.check(f"\nvoid f(int a,\n       int b) {{\n{self.LONG}}}\n"),
                    "src/a.cpp:3")

    def test_methods_constructors_and_lambdas_are_functions_too(self):
        for head in ("void A::f() const noexcept {", "A::A()\n    : m_a{1} {", "auto f() -> int {",
                     "namespace n {\nclass A {\n    void f() override {",
                     'extern "C" {\nint f() {', "template <class T>\nvoid f() {"):
            text = f"{head}\n{self.LONG}}}\n" + "}\n" * head.count("{\n")
            self.assertEqual(len(self.check(text).findings), 1, head)

    def test_long_types_and_lists_of_values_are_not_functions(self):
        members, values = "    int a;\n" * 70, "    1,\n" * 70
        result = self.check(f"class A {{\n{members}}};\nint a[] = {{\n{values}}};\n"
                            f"QList<int> b{{\n{values}}};\nnamespace n {{\nint c;\n}}\n"
                            f"QList<int> d{{\n{values}}};\nvoid f() {{}}\n")
        self.expect(result)
        self.assertEqual(result.checked, 1)

    def test_braces_in_texts_and_comments_do_not_count(self):
        self.expect(self.check('void f() {\n    // {\n    call("}", \'{\');\n}\n'))

    def test_a_brace_that_is_never_closed_is_found(self):
        self.expect(self.check("void f() {\n"), "src/a.cpp:1")

    def test_tests_may_be_longer(self):
        tree = self.tree({"src/a.cpp": "void f() {}\n",
                          "tests/b.cpp": f"void f() {{\n{self.LONG}}}\n"})
        self.expect(functions.check(tree))


class HeadersTest(TreeTest):
    """Types and public functions have a comment, and headers with functions name a thread."""

    def check(self, text, listed=""):
        """The result for one header, with a list of exceptions."""
        self.write(f"{LISTS}/headers.txt", listed)
        return headers.check(self.tree({"src/PA.h": text}))

    def test_a_header_that_says_everything_is_right(self):
        self.expect(self.check(
            "/// A thing. The main thread.\nclass PA : public PB {\n    Q_OBJECT\npublic:\n"
            "    /// Makes it.\n    int make(int a);\n};\n"))

    def test_a_type_and_a_function_without_a_comment_are_found(self):
        self.expect(self.check("// thread\n\nclass PA {\npublic:\n    int make();\n};\n"
                               "\nenum class PK { A };\nvoid free(int);\n"),
                    "src/PA.h:3", "src/PA.h:5", "src/PA.h:8", "src/PA.h:9")

    def test_macros_of_qt_do_not_hide_what_follows_them(self):
        self.expect(self.check("/// Any thread.\nclass PA : public QObject {\n    Q_OBJECT\n"
                               "    Q_PROPERTY(int a READ a)\n\npublic:\n    int a();\n\n"
                               "private:\n    Q_DISABLE_COPY(PA)\n    int b();\n};\n"),
                    "src/PA.h:7")

    def test_a_comment_holds_for_the_lines_that_it_stands_above(self):
        head = "/// Any thread.\nstruct PA {\n    /// Both.\n    int a();\n"
        self.expect(self.check(f"{head}    int b();\n}};\n"))
        self.expect(self.check(f"{head}\n    int b();\n}};\n"), "src/PA.h:6")

    def test_signals_and_slots_are_public(self):
        self.expect(self.check("/// Any thread.\nclass PA {\nsignals:\n    void a();\n\n"
                               "public slots:\n    void b();\n};\n"),
                    "src/PA.h:4", "src/PA.h:7")

    def test_what_is_not_public_and_what_explains_itself_need_none(self):
        self.expect(self.check(
            "class PB;\n/// Any thread.\nclass PA : public PB {\npublic:\n    PA(int a);\n"
            "    ~PA() override;\n    PA(const PA&) = delete;\n    bool operator==(const PA&);\n"
            "    int b() override;\n    int c() const { return m_c; }\n    friend void d();\n"
            "    operator bool() const;\n    int i(); ///< What it does.\n\n"
            "    using E = int (*)(int);\n    std::function<void(int)> f;\n\nprotected:\n"
            "    int g();\n\nprivate:\n    struct H {\n        int h();\n    };\n"
            "    int m_c = k();\n};\n"))

    def test_a_function_with_a_body_of_some_lines_needs_one(self):
        self.expect(self.check("// thread\n\nint a() {\n    return b();\n}\n"), "src/PA.h:3")

    def test_the_definition_of_a_template_s_function_needs_none(self):
        text = ("/// Any thread.\nstruct PA {\n    /// Makes it.\n    template <typename T>\n"
                "    T make();\n};\n\ntemplate <typename T>\nT %smake() {\n    return T();\n}\n")
        self.expect(self.check(text % "PA::"))
        self.expect(self.check(text % ""), "src/PA.h:8")

    def test_a_header_with_functions_that_names_no_thread_is_found(self):
        text = "/// A thing.\nstruct PA {\n    /// Makes it.\n    int make();\n};\n"
        self.expect(self.check(text), "src/PA.h:1")
        self.expect(self.check(text.replace("A thing", "A thing. Any thread")))
        self.expect(self.check(text.replace("    int make", "    int thread_make")), "src/PA.h:1")

    def test_a_header_without_functions_needs_no_thread(self):
        self.expect(self.check("/// A thing.\nstruct PA {\n    int a = 0;\n};\n"))

    def test_a_class_has_the_thread_of_the_class_that_it_derives_from(self):
        self.write("src/PB.h", "/// The main thread.\nclass PB {};\n")
        text = "/// A thing.\nstruct PA : PB {\n    /// Makes it.\n    int make();\n};\n"
        self.expect(self.check(text))
        self.expect(self.check(text.replace(": PB", ": QObject")), "src/PA.h:1")

    def test_a_macro_before_the_name_of_a_function_is_not_its_name(self):
        result = self.check("// thread\n\nTOUPCAM_API(int)\nopen(int a);\n")
        self.expect(result, "src/PA.h:3")
        self.expect_text(result, "function open")

    def test_namespaces_and_c_linkage_do_not_hide_what_is_in_them(self):
        self.expect(self.check('// thread\n\nnamespace n::m {\n\nint a();\n\n}\n\n'
                               'extern "C" {\n\nint b();\n\n}\n\nint c();\n'),
                    "src/PA.h:5", "src/PA.h:11", "src/PA.h:15")

    def test_brackets_of_templates_are_not_those_of_parameters(self):
        result = self.check("// thread\n\nQList<QList<int>> a();\n\n"
                            "template <class T, class U = V<T>>\nF<T(U)> b();\n\nF<T(U)> c;\n")
        self.expect(result, "src/PA.h:3", "src/PA.h:5")
        self.expect_text(result, "function b ")

    def test_start_values_in_braces_do_not_end_a_declaration(self):
        result = self.check("// thread\n\nint a(PB b = {}, int c = 1);\n\nint d{1};\nint e();\n")
        self.expect(result, "src/PA.h:3", "src/PA.h:6")
        self.expect_text(result, "function a ")

    def test_an_exception_is_for_one_name_and_has_to_be_needed(self):
        text = "// thread\n\nint a();\n\nint b();\n"
        self.expect(self.check(text, "# Reason.\nPA.h a\n"), "src/PA.h:5")
        self.expect(self.check(text, "# Reason.\nPA.h\n"))
        self.expect(self.check(text, "# Reason.\nPA.h\nPA.h c\n"), f"{LISTS}/headers.txt:3")


class TestsTest(TreeTest):
    """A class has a test of its name, or an exception that names its tests."""

    def check(self, files, listed=""):
        """The result for some files and a list of exceptions."""
        self.write(f"{LISTS}/tests.txt", listed)
        self.write("tests/PATest.cpp", "TEST_F(A, b) {}\n")
        return tests.check(self.tree(files))

    def test_a_class_with_a_test_of_its_name_is_right(self):
        self.expect(self.check({"src/PA.h": "", "src/PA.cpp": ""}))

    def test_a_class_without_one_is_found_once(self):
        self.expect(self.check({"src/x/PB.h": "", "src/x/PB.cpp": ""}), "src/x/PB.cpp:1")

    def test_a_test_of_any_kind_counts(self):
        for kind in "TEST", "TEST_F", "TEST_P", "TYPED_TEST", "ROW_TEST":
            self.expect(self.check({"src/PC.h": "", "tests/PCTest.cpp": f"{kind}(PC, works) {{}}\n"}))

    def test_a_file_without_a_test_in_it_does_not_count(self):
        self.expect(self.check({"src/PC.h": "", "tests/PCTest.cpp": "int a;\n"}), "src/PC.h:1")

    def test_an_exception_names_tests_that_there_are(self):
        self.expect(self.check({"src/PB.cpp": ""}, "# Reason.\nPB: PATest\n"))
        self.expect(self.check({"src/PB.cpp": ""}, "# Reason.\nPB: PATest PXTest\n"),
                    f"{LISTS}/tests.txt:2")

    def test_an_exception_without_tests_is_for_headers_or_says_that_there_is_no_test(self):
        self.expect(self.check({"src/PB.h": ""}, "# Types.\nPB\n"))
        self.expect(self.check({"src/PB.cpp": ""}, "# No test looks at it.\nPB\n"))
        self.expect(self.check({"src/PB.cpp": ""}, "# Types.\nPB\n"), f"{LISTS}/tests.txt:2")

    def test_an_exception_for_a_class_with_a_test_or_that_is_gone_is_found(self):
        self.expect(self.check({"src/PA.h": ""}, "# Reason.\nPA: PATest\nPB: PATest\n"),
                    f"{LISTS}/tests.txt:2", f"{LISTS}/tests.txt:3")


class CommitsTest(TreeTest):
    """The subjects of the branch are checked, those on main are not."""

    def test_only_the_commits_that_main_does_not_have_are_checked(self):
        main = self.commit("Whatever was done before.")
        self.git("update-ref", "refs/remotes/origin/main", main)
        self.commit("docs: the new page")
        wrong = self.commit("the wrong subject")
        self.commit("scripts/check, .ci: check the commits")
        result = commits.check(Tree(self.root))
        self.expect(result, f"commit {wrong[:7]}:0")
        self.assertEqual((result.checked, result.note), (3, ""))

    def test_the_last_commit_is_checked_where_main_has_all_or_is_not_known(self):
        wrong = self.commit("Wrong.")
        result = commits.check(Tree(self.root))
        self.expect(result, f"commit {wrong[:7]}:0", f"commit {wrong[:7]}:0")
        self.assertIn("origin/main is not known, so only the last commit", result.note)
        self.git("update-ref", "refs/remotes/origin/main", wrong)
        self.assertIn("has no commit that it has not", commits.check(Tree(self.root)).note)

    def test_each_fault_of_a_subject_is_named(self):
        self.assertEqual(commits.faults_of(f"docs: {'a' * 66}"), [])
        self.assertIn("73 characters", commits.faults_of(f"docs: {'a' * 67}")[0])
        self.assertIn("no full stop", commits.faults_of("docs: the new page.")[0])
        for subject in ("New page", "docs:", "docs:page", ": page", "the docs: page"):
            self.assertEqual(len(commits.faults_of(subject)), 1, subject)

    def test_a_checkout_without_commits_has_nothing_to_check(self):
        self.assertEqual(commits.check(Tree(self.root)).checked, 0)


class ConventionsTest(TreeTest):
    """Literals, casts, names and spelling are of one kind."""

    def check(self, text, path="tests/a.cpp"):
        """The result for one file."""
        return conventions.check(self.tree({path: text}))

    def expect_wrong(self, code, text):
        """Expects a violation in the second line of a file, which says this."""
        result = self.check(f"// A.\n{code}\n")
        self.expect(result, "tests/a.cpp:2")
        self.expect_text(result, text)

    def expect_right(self, *lines):
        """Expects no violation in a file of these lines."""
        self.expect(self.check("\n".join(lines) + "\n"))

    def test_literals_of_qt_s_macros_are_found(self):
        self.expect_wrong('f(QStringLiteral("a"));', 'expected u"…"_qs')
        self.expect_wrong("f(QLatin1Char('a'));", "expected u'…'")
        self.expect_right('f(u"a"_qs, u\'a\', QStringLiteral(PATH), QLatin1Char(c)); // QStringLiteral("a")')

    def test_conditions_are_found_in_files_that_moc_reads(self):
        for macro in ("Q_OBJECT", "Q_GADGET", "Q_NAMESPACE_EXPORT(P)"):
            with self.subTest(macro):
                self.expect_wrong(f"#ifdef Q_OS_LINUX\n#endif\nclass A {{\n    {macro}\n}};",
                                  "#ifdef Q_OS_LINUX: expected no conditions in a file that moc reads")
        self.expect_wrong("# if QT_VERSION > 1\n#endif\nQ_OBJECT", "# if QT_VERSION > 1: expected no conditions")
        self.expect_right("#ifdef Q_OS_LINUX // a class without Q_OBJECT", "#endif")
        self.expect_right("class A {", "    Q_OBJECT", "};", "#define IF 1", "#include <ifdef.h>")

    def test_texts_are_filled_in_one_call(self):
        self.expect_wrong('u"%1 %2"_qs.arg(a).arg(b);', ".arg(a).arg(b): expected .arg(a, b)")
        self.expect_wrong('tr("%1 %2").arg(f(a), 3).arg(b.c(d));', "expected .arg(a, b)")
        self.expect(self.check('u"%1 %2"_qs\n    .arg(a)\n    .arg(b);\n'), "tests/a.cpp:3")
        self.expect_right('u"%1 %2"_qs.arg(u"%1"_qs.arg(a), b); // .arg(a).arg(b)',
                          'u"%1"_qs.arg(a).trimmed(); f(a).arg(b);')

    def test_casts_to_numbers_are_written_as_functions(self):
        self.expect_wrong("f(static_cast<int>(a));", "static_cast<int>(…): expected int(…)")
        self.expect_wrong("f(static_cast<std::size_t>(a));", "expected std::size_t(…)")
        self.expect_wrong("a = (double)b;", "(double) …: expected double(…)")
        self.expect_wrong("a = 1 + (quint8)(b);", "expected quint8(…)")
        self.expect_right("a = int(b) + static_cast<unsigned char>(c) + sizeof(int);",
                          "d = static_cast<PA*>(static_cast<void*>(e));", "void f(int) const;",
                          "std::function<void(int)> g;", "auto h = [](int) { return 1; };")

    def test_constants_begin_with_a_small_letter_or_the_prefix_of_the_project(self):
        for name in ("kMost", "Most", "MOST"):
            self.expect_wrong(f"constexpr int {name} = 1;", f"the constant {name}: expected")
            self.expect_wrong(f"static constexpr Row {name}[] = {{}};", f"the constant {name}")
            self.expect_wrong(f"constexpr std::pair<int, int> {name}{{1, 2}};", name)
        self.expect_right("constexpr int most = 1, PMost = 2;", "constexpr int PMost{3};",
                          "constexpr int kinds[] = {1};", "constexpr PA f(int a) { return a; }",
                          "if constexpr (A)", "    f();")

    def test_functions_are_named_after_their_result(self):
        self.expect_wrong("QString textOf(const PA& a);", "textOf: expected a name of the result")
        self.expect_wrong("const auto textOf = [](int a) { return a; };", "textOf: expected")
        self.expect_wrong("f(textOf<int>(a));", "textOf: expected")
        self.expect_right("QString toText(const PA& a); // textOf", 'f("textOf", isValueOf(a));',
                          "g(a.indexOf(b), a.lastIndexOf(b), type.sizeOf());", "bool isOf(int a);",
                          "std::any_of(a, b, c); PA::of(a);")

    def test_comments_and_documents_have_british_spelling(self):
        self.expect_wrong("int a; // its color", '"color": expected British spelling (colour)')
        self.expect(self.check("/* It is\n * gray */\n"), "tests/a.cpp:2")
        self.expect_right("int color; // its colour, a QColor, `color()`, ColorFormat::Gray")
        (self.root / "tests/a.cpp").unlink()
        text = "The colour of `color`.\n```\ncolor = gray\n```\nIt is serialized.\n"
        result = self.check(text, "docs/a.md")
        self.expect(result, "docs/a.md:5")
        self.expect_text(result, '"serialized": expected British spelling (-ise')


class ThreadsTest(TreeTest):
    """Mutexes and hops between threads have a comment."""

    def check(self, text):
        """The result for one source."""
        return threads.check(self.tree({"src/a.cpp": text}))

    def test_a_mutex_says_what_it_guards(self):
        for name in ("mutable std::mutex", "static std::mutex", "std::shared_mutex", "QMutex"):
            self.expect(self.check(f"int a;\nint b;\nint c;\n    {name} m;\n"), "src/a.cpp:4")
            self.expect(self.check(f"    {name} m; // guards all below\n"))
            self.expect(self.check(f"    // Guards all below, which\n    // is much.\n    {name} m;\n"))

    def test_a_hop_says_which_thread_and_why(self):
        for hop in ("invokeMethod(a, f, Qt::QueuedConnection);", "App::postEvent(a, e);",
                    "m_thread = std::thread(f);", "a->moveToThread(b);"):
            self.expect(self.check(f"int a;\nint b;\nint c;\n    {hop}\n"), "src/a.cpp:4")
            self.expect(self.check(f"    // To the thread of a: only it may.\n    {hop}\n"))

    def test_a_comment_s_words_and_a_mutex_that_is_passed_on_are_ignored(self):
        self.expect(self.check("QMutex m; // guards a\n\n\n\n\nvoid f(QMutex& m);\n"
                               'f("postEvent(");\n'))


class UsesTest(TreeTest):
    """A class that is named is declared in the file or in what it includes."""

    def setUp(self):
        super().setUp()
        self.files = {"src/a/PA.h": "class PA {};\n", "src/a/PB.h": "#include <a/PA.h>\nclass PB {};\n"}

    def check_source(self, text):
        """Checks a tree of two headers and a source with this text."""
        self.files["src/a/c.cpp"] = text
        return uses.check(self.tree(self.files))

    def test_a_class_that_an_include_of_an_include_declares_is_right(self):
        self.expect(self.check_source("#include <a/PB.h>\nPA a;\n"))

    def test_a_class_that_the_file_declares_is_right(self):
        self.expect(self.check_source("class PA;\nPA* a;\n"))

    def test_a_class_whose_header_is_not_reached_is_found_once_with_the_header(self):
        result = self.check_source("#include <a/PA.h>\n\nPB b;\nPB c;\n")
        self.expect(result, "src/a/c.cpp:3")
        self.expect_text(result, "expected #include <a/PB.h>")

    def test_comments_texts_and_names_of_tests_are_not_uses(self):
        self.expect(self.check_source('// PB\nauto text = "PA";\nTEST(PB, works) {}\n'))

    def test_a_header_without_a_class_of_its_name_is_not_looked_for(self):
        self.files["src/a/PLimit.h"] = "constexpr int PLimit = 1;\n"
        self.expect(self.check_source("int PLimit;\n"))


class VersionsTest(TreeTest):
    """The version that CMakeLists.txt has and others repeat."""

    FILES = {"CMakeLists.txt": "cmake_minimum_required(VERSION 3.25)\nproject(A VERSION 0.2.0 LANGUAGES C)\n",
             "CHANGELOG.md": "# Changelog\n\n## 0.2.0 (unreleased)\n\n## 0.1.0\n",
             "debian/changelog": "a (0.2.0) unstable; urgency=medium\n\na (0.1.0) unstable; urgency=medium\n"}

    def test_the_newest_versions_are_compared(self):
        self.expect(versions.check(self.tree(self.FILES)))

    def test_another_version_is_found_with_the_one_expected(self):
        result = versions.check(self.tree({**self.FILES, "CHANGELOG.md": "# Changelog\n\n## 0.1.0\n",
                                           "debian/changelog": "a (0.2.1) unstable; urgency=medium\n"}))
        self.expect(result, "CHANGELOG.md:3", "debian/changelog:1")
        self.expect_text(result, "version 0.2.1: expected 0.2.0, as in CMakeLists.txt")

    def test_a_file_without_a_version_is_found(self):
        del (files := dict(self.FILES))["CHANGELOG.md"]
        self.expect(versions.check(self.tree({**files, "CMakeLists.txt": "project(A)\n"})),
                    "CHANGELOG.md:1", "CMakeLists.txt:1")


class WordsTest(TreeTest):
    """The words of the list are found in all texts, over the ends of lines too."""

    def check(self, files, listed=""):
        """The result for some files, a word that is found, and a list of exceptions."""
        self.write("scripts/checks/words.txt", "# No big thing.\n\n(big|bigger) thing -> item\n")
        self.write(f"{LISTS}/words.txt", listed)
        return words.check(self.tree(files))

    def test_words_are_found_in_any_case_and_in_the_names_of_tests(self):
        self.expect(self.check({"a.cpp": "int a; // No Bigger  Thing.\nTEST(A, big_thing_fits)\n"}),
                    "a.cpp:1", "a.cpp:2")

    def test_words_are_found_over_the_end_of_a_comment_s_or_a_text_s_line(self):
        for text in ("/// A big\n    /// thing.\n", '"a big "\n    "thing"\n', "# big\n# thing\n"):
            self.expect(self.check({"a.h": text}), "a.h:1")

    def test_parts_of_words_and_an_empty_line_between_them_are_ignored(self):
        self.expect(self.check({"a.md": "A big thingy. A Xbig thing. It is big.\n\n\nThing.\n"
                               .replace("\n\n\n", ".\n\n")}))

    def test_the_list_itself_catalogues_and_texts_of_others_are_left_out(self):
        self.expect(self.check({"a.md": "small\n",
                                "b.ts": "big thing\n", "LICENSE": "big thing\n"}))

    def test_an_exception_is_for_one_file_and_has_to_be_needed(self):
        listed = "# Reason.\na.md, (big|bigger) thing\n"
        self.expect(self.check({"a.md": "big thing\n", "b.md": "big thing\n"}, listed), "b.md:1")
        self.write("b.md", "small\n")
        self.expect(self.check({"a.md": "small\n"}, listed), f"{LISTS}/words.txt:2")

    def test_a_line_of_the_list_without_a_plain_word_is_named(self):
        for line in ("big thing", "big thing ->", "-> item"):
            with self.assertRaisesRegex(InputError, f'words.txt:1: "{line}", expected'):
                words.check(self.tree({"scripts/checks/words.txt": f"{line}\n"}))

    def test_a_file_that_is_not_text_is_named(self):
        self.write("scripts/checks/words.txt", "a -> b\n")
        (self.root / "bad.md").write_bytes(b"\xff\xfe")
        with self.assertRaisesRegex(InputError, "bad.md: .*expected a text in UTF-8"):
            words.check(Tree(self.root))


class AllowedTest(TreeTest):
    """Lists of exceptions have reasons and only shrink."""

    def check(self, listed):
        """The result for a header that needs two exceptions."""
        self.write(f"{LISTS}/headers.txt", listed)
        return headers.check(self.tree({"src/PA.h": "// thread\n\nint a();\n\nint b();\n"}))

    def test_an_entry_without_a_reason_is_found(self):
        self.expect(self.check("# Reason.\nPA.h a\n\nPA.h b\n"), f"{LISTS}/headers.txt:4")

    def test_an_entry_that_is_there_twice_is_found(self):
        self.expect(self.check("# Reason.\nPA.h a\nPA.h b\nPA.h a\n"), f"{LISTS}/headers.txt:4")

    def test_a_list_that_is_longer_than_on_main_is_found(self):
        self.check("# Reason.\nPA.h c\n")
        self.git("update-ref", "refs/remotes/origin/main", self.commit("docs: a"))
        self.expect(self.check("# Reason.\nPA.h a\nPA.h b\n"), f"{LISTS}/headers.txt:1")

    def test_pruning_removes_entries_and_the_groups_that_become_empty(self):
        text = "# About.\n\n# One.\na\nb\n\n# Two.\n# More.\nc\n\n# Three.\nd\n"
        self.assertEqual(pruned(text, {4, 9}), "# About.\n\n# One.\nb\n\n# Three.\nd\n")
        self.assertEqual(pruned(text, set()), text)


class CommandLineTest(TreeTest):
    """Exit codes and what is printed."""

    def run_cli(self, *arguments):
        """Exit code, standard output and error output of a run."""
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            code = cli.main(self.root, arguments)
        return code, out.getvalue(), err.getvalue()

    def test_violations_are_1_and_are_printed_with_their_place(self):
        self.write("src/A/a.cpp", "int  a;\n")
        code, out, _ = self.run_cli("functions", "folders", "format")
        self.assertEqual(code, 1)
        self.assertIn("src/A/a.cpp:1: formatted differently, the first of 1 places: expected what "
                      "clang-format -i src/A/a.cpp writes [format]", out)

    def test_no_violation_is_0(self):
        self.write("src/a.cpp", "void f() {}\n")
        code, out, _ = self.run_cli("functions")
        self.assertEqual(code, 0, out)
        self.assertIn("functions: 1 functions, 0 violations", out)

    def test_a_check_of_nothing_is_a_failure(self):
        for name in cli.CHECKS:
            with mock.patch.object(includes, "LIBRARIES", {}), \
                    mock.patch.object(includes, "FOLDERS", {}), \
                    mock.patch.object(folders, "EXCEPTIONS", {}):
                self.write("scripts/checks/words.txt", "a -> b\n")
                code, out, _ = self.run_cli(name)
            self.assertEqual(code, 1, name)
            self.assertIn(f"{name}: nothing was checked", out)

    def test_an_unknown_name_is_2_and_named(self):
        for arguments in (("nope",), ("--list", "nope")):
            code, _, err = self.run_cli(*arguments)
            self.assertEqual(code, 2)
            self.assertIn("nope: there is no such check, expected one of commits, conventions", err)

    def test_a_folder_that_is_not_a_checkout_is_2_and_named(self):
        with tempfile.TemporaryDirectory() as folder:
            err = io.StringIO()
            with contextlib.redirect_stderr(err):
                self.assertEqual(cli.main(folder, ["functions"]), 2)
        self.assertIn(f"{folder}: fatal: not a git repository", err.getvalue())

    def test_the_list_has_every_check_with_its_rule(self):
        code, out, _ = self.run_cli("--list")
        self.assertEqual(code, 0)
        self.assertEqual([line.split()[0] for line in out.splitlines()], list(cli.CHECKS))
        self.assertIn("No function in src is longer than 60 lines.", out)

    def test_pruning_writes_the_list_without_what_is_not_needed(self):
        self.write("src/PA.h", "// thread\n\nint a();\n")
        self.write(f"{LISTS}/headers.txt", "# Reason.\nPA.h a\nPA.h b\n")
        self.assertEqual(self.run_cli("headers")[0], 1)
        code, out, _ = self.run_cli("--prune", "headers")
        self.assertEqual(code, 0, out)
        self.assertEqual((self.root / LISTS / "headers.txt").read_text(encoding="utf-8"),
                         "# Reason.\nPA.h a\n")


if __name__ == "__main__":
    unittest.main()
