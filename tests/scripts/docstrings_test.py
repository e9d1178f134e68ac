#!/usr/bin/python3
"""Tests of scripts/docstrings: comments of headers as the constants that Python's docstrings are."""

import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
HEADER = '''
#include <x.h>

/// Not this one.

/// A "camera" with a \\ in it. A value type; any
/// thread.
class PX_EXPORT PCamera : public QObject {
public:
    /// Starts it: PCamera::stop() { ends it.
    /// @internal Throws.
    bool start(const std::function<bool()>& last,
               int number);
    /// Stops it. The device's thread.
    void stop() { if (x) { y("}"); } }
    int count() const;

    /// What it counts.
    struct Counts {
        int seenFrames = 0; ///< in all,
                            ///< since the start
        /// Not seen.
        int lost = 0;
        int silent = 0;
    };

private:
    int m_hidden = 0; ///< not shown
};

/// After the class.
void outside();
'''


class DocstringsTest(unittest.TestCase):
    """The script with one header and one source, compiled by nobody."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def run_script(self, *asked, header=HEADER):
        """Runs the script for a source that asks for these names."""
        (self.folder / "user.cpp").write_text("; ".join(f"f(PText::{name})" for name in asked),
                                              encoding="utf-8")
        (self.folder / "header.h").write_text(header, encoding="utf-8")
        return subprocess.run(
            [ROOT / "scripts/docstrings", self.folder / "out.h", "--users", self.folder / "user.cpp",
             "--headers", self.folder / "header.h"], capture_output=True, text=True, check=False)

    def text(self, name, header=HEADER):
        """The docstring under a name, as C++ compiles it."""
        ended = self.run_script(name, header=header)
        self.assertEqual((0, ""), (ended.returncode, ended.stderr))
        made = (self.folder / "out.h").read_text(encoding="utf-8")
        space, _, last = name.rpartition("::")
        self.assertIn(f"namespace PText::{space} {{\ninline constexpr char {last}[] =\n", made)
        lines = made.split("[] =\n")[1].split(";\n}")[0].split("\n")
        return "".join(line.strip()[1:-1].replace("\\n", "\n").replace('\\"', '"')
                       .replace("\\\\", "\\") for line in lines)

    def test_a_function_has_the_comment_above_it_without_words_for_readers_of_cpp(self):
        self.assertEqual("Starts it: stop() { ends it.", self.text("PCamera::start"))
        self.assertEqual("Stops it.", self.text("PCamera::stop"))
        self.assertEqual("After the class.", self.text("outside::outside", HEADER.replace(
            "void outside", "class outside {\n/// After the class.\nvoid outside")))

    def test_a_function_has_its_comment_however_its_declaration_begins(self):
        for before in ("template <typename T>\n", "template <class A, class B = X<A>>\n    template <int N>\n",
                       "template <typename T,\n              int N = (3 > (2))>\n",
                       "template <typename T = decltype(make())> ", "[[nodiscard]]\n", "[[nodiscard]] ",
                       '[[deprecated("use halt()")]]\n', '[[deprecated("use "\n    "halt()")]] ',
                       "template <class T>\n[[nodiscard]] ", "PX_EXPORT\n", "std::optional<PCamera>\n"):
            with self.subTest(before):
                header = HEADER.replace("void stop()", f"{before}void stop()")
                self.assertEqual("Stops it.", self.text("PCamera::stop", header))
                self.assertEqual("Not seen.", self.text("PCamera::Counts::lost", header))

    def test_a_class_template_has_its_comment_and_those_in_it(self):
        for before in ("template <class T>\n", "template <class T> ", "template <class A,\n          class B>\n"):
            with self.subTest(before):
                for header in (HEADER, HEADER.replace("thread.\nclass", "thread.\n\nclass")):
                    header = header.replace("class PX_EXPORT", f"{before}class PX_EXPORT")
                    self.assertEqual("Stops it.", self.text("PCamera::stop", header))
        header = HEADER.replace("class PX_EXPORT", "template <class T>\nclass PX_EXPORT")
        self.assertEqual('A "camera" with a \\ in it.', self.text("PCamera::ofClass", header))

    def test_what_is_not_a_declaration_takes_no_comment_to_the_next(self):
        for between in ("\n", "public:\n", "#if 1\n", "};\n", "Many, ///< of them\n"):
            with self.subTest(between):
                ended = self.run_script("PCamera::count", header=HEADER.replace(
                    "    int count() const;", f"    /// Of something else.\n{between}    int count() const;"))
                self.assertEqual(1, ended.returncode)
        self.assertEqual("What counts.", self.text("PCamera::count", HEADER.replace(
            "    int count() const;", "    /// Of many.\nMany\n/// What counts.\n    int count() const;")))

    def test_overloads_have_the_comments_of_all(self):
        for more, expected in (
                ("/// Stops it later.\n    void stop(int ms);", "Stops it.\n\nStops it later."),
                ("template <class T>\n    void stop(T ms);", "Stops it."),
                ("/// @internal For tests.\n    void stop(int ms);", "Stops it."),
                ("/// Stops it. Any thread.\n    void stop(int ms);", "Stops it."),
                ("/// Stops it later. Any thread.\n    void stop(int ms);\n    /// @internal Not yet.\n"
                 "    void stop(bool);\n    /// Or at once.\n    void stop(char);",
                 "Stops it.\n\nStops it later.\n\nOr at once.")):
            with self.subTest(more):
                self.assertEqual(expected, self.text("PCamera::stop", HEADER.replace(
                    "    int count() const;", f"    int count() const;\n    {more}")))
        self.assertEqual("Later.", self.text("PCamera::start", HEADER.replace(
            "Starts it: PCamera::stop() { ends it.\n    /// @internal Throws.", "@internal For tests.").replace(
            "    int count() const;", "    /// Later.\n    void start();")))

    def test_a_class_has_its_comment_and_those_of_its_public_members(self):
        self.assertEqual('A "camera" with a \\ in it.', self.text("PCamera::ofClass"))
        self.assertEqual("What it counts.\n\nseen_frames: in all, since the start\nlost: Not seen.",
                         self.text("PCamera::Counts::ofClass"))

    def test_a_member_has_the_comment_beside_or_above_it(self):
        self.assertEqual("in all, since the start", self.text("PCamera::Counts::seenFrames"))
        self.assertEqual("Not seen.", self.text("PCamera::Counts::lost"))

    def test_another_comment_is_another_text(self):
        self.assertEqual("Halts it.", self.text("PCamera::stop", HEADER.replace("Stops", "Halts")))

    def test_what_has_no_comment_fails_with_its_name(self):
        for name in ("PCamera::count", "PCamera::nosuch", "PCamera::Counts::silent", "PNone::stop"):
            with self.subTest(name):
                ended = self.run_script("PCamera::stop", name)
                self.assertEqual(1, ended.returncode)
                self.assertIn(f"user.cpp: {name} has no comment in any of the headers: expected one",
                              ended.stderr)
                self.assertFalse((self.folder / "out.h").exists())

    def test_a_header_that_is_not_there_is_named(self):
        ended = subprocess.run([ROOT / "scripts/docstrings", self.folder / "out.h", "--users", __file__,
                                "--headers", "/no/header.h"], capture_output=True, text=True, check=False)
        self.assertEqual((1, "/no/header.h: No such file or directory\n"),
                         (ended.returncode, ended.stderr))


if __name__ == "__main__":
    unittest.main()
