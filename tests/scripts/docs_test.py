#!/usr/bin/python3
"""Tests of scripts/docs: each fault of a made-up tree is found, and a good tree has none."""

import contextlib
import io
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path, PurePosixPath

ROOT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))

# The path comes first.
from docsite import cli, guides, headers, links  # noqa: E402
from docsite.fault import Fault  # noqa: E402

README = "# Tree\n\nA tree.\n\n| | |\n|---|---|\n| [docs/a.md](docs/a.md) | more |\n"
# A tree without faults: a guide, and a library with one class.
TREE = {
    "CMakeLists.txt": "project(Tree VERSION 1.2.3)\n",
    "LICENSE": "Free.\n",
    "README.md": README,
    "docs/a.md": "# The guide\n\nSee [README.md](../README.md), [below](#the-end) and\n"
                 "[the licence](../LICENSE).\n\n```\n[code](no.md)\n```\n\n## The end\n\nText.\n",
    "docs/images/empty.txt": "",
    "src/README.md": "# src\n\nSources.\n",
    "src/PLib/README.md": "# PLib\n\nA library. It is small.\n",
    "src/PLib/CMakeLists.txt": "pcd_add_library(PLib\n    SOURCES PThing.cpp\n"
                               "    HEADERS PThing.h)\n",
    "src/PLib/PThing.h": "#pragma once\n\n/// A thing.\n"
                         "class PCD_EXPORT PThing : public QObject {\n    Q_OBJECT\n\npublic:\n"
                         "    /// Does it.\n    void run();\n    void stop();\n\nprivate:\n    struct Item {\n"
                         "        int m_a;\n    };\n\n    Item m_item;\n};\n",
    "src/PLib/PSecret.h": "class PSecret {};\n",
}


class DocsTest(unittest.TestCase):
    """A folder for a tree or a site."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()

    def write(self, files):
        """Writes files: paths and their texts."""
        for path, text in files.items():
            file = self.root / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")

    def run_docs(self, changes=None):
        """Builds the site of the tree with some changes; returns the exit code and the output."""
        self.write({**TREE, **(changes or {})})
        subprocess.run(["git", "init", "-q", str(self.root)], check=True)
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            try:
                code = cli.run(self.root)
            except Fault as fault:
                code = f"{fault}"
        return code, output.getvalue()

    def page(self, name):
        """The text of a page of the site."""
        return (self.root / "build" / "site" / name).read_text(encoding="utf-8")


class SiteTest(DocsTest):
    """The whole site, with Doxygen."""

    def test_a_good_tree_has_a_site_without_faults(self):
        code, output = self.run_docs()
        self.assertEqual(code, 0, output)
        self.assertIn("1.2.3", self.page("index.html"))
        self.assertIn('href="index.html"', self.page("a.html"))
        self.assertIn("[code](no.md)", self.page("a.html"))
        self.assertIn("Free.", self.page("files/LICENSE.txt"))
        self.assertIn("A thing.", self.page("PThing_8h.html"))
        self.assertIn("Does it.", self.page("classPThing.html"))
        self.assertIn("stop", self.page("classPThing.html"))

    def test_private_headers_and_private_types_have_no_page(self):
        self.assertEqual(self.run_docs()[0], 0)
        names = {file.name for file in (self.root / "build" / "site").iterdir()}
        self.assertIn("classPThing.html", names)
        self.assertNotIn("classPSecret.html", names)
        self.assertNotIn("structPThing_1_1Item.html", names)

    def test_functions_of_a_namespace_are_found_by_the_navigation_and_without_macros(self):
        text = (TREE["src/PLib/PThing.h"] + "\n/// All.\nnamespace PTree {\n/// Goes.\n"
                "PCD_EXPORT void go();\n} // namespace PTree\n")
        code, output = self.run_docs({"src/PLib/PThing.h": text})
        self.assertEqual(code, 0, output)
        self.assertIn("Goes.", self.page("namespacePTree.html"))
        self.assertNotIn("PCD_EXPORT", self.page("namespacePTree.html"))

    def test_a_class_without_a_sentence_is_found_with_its_line(self):
        text = TREE["src/PLib/PThing.h"] + "\nclass PBare {};\n"
        code, output = self.run_docs({"src/PLib/PThing.h": text})
        self.assertEqual(code, cli.EXIT_FOUND)
        self.assertIn("src/PLib/PThing.h:20: class PBare has no sentence", output)
        self.assertEqual(output.count("has no sentence"), 1, output)

    def test_a_namespace_without_a_sentence_is_found(self):
        text = (TREE["src/PLib/PThing.h"]
                + "\nnamespace PTree {\n/// Goes.\nvoid go();\n} // namespace PTree\n")
        code, output = self.run_docs({"src/PLib/PThing.h": text})
        self.assertEqual(code, cli.EXIT_FOUND)
        self.assertIn("namespace PTree has no sentence", output)

    def test_a_header_without_a_sentence_is_found(self):
        lists = TREE["src/PLib/CMakeLists.txt"].replace("PThing.h", "PThing.h PMore.h")
        code, output = self.run_docs({"src/PLib/CMakeLists.txt": lists,
                                      "src/PLib/PMore.h": "/// Goes.\nvoid go();\n"})
        self.assertEqual(code, cli.EXIT_FOUND)
        self.assertIn("file PMore.h has no sentence", output)

    def test_a_folder_without_a_description_is_found(self):
        code, output = self.run_docs({"src/PLib/README.md": "# PLib\n"})
        self.assertEqual(code, cli.EXIT_FOUND)
        self.assertIn("dir src/PLib has no sentence", output)

    def test_a_warning_of_doxygen_stops_the_build_with_the_line_of_the_source(self):
        text = TREE["src/PLib/PThing.h"].replace("Does it.", "Does \\nosuchcommand it.")
        fault, _ = self.run_docs({"src/PLib/PThing.h": text})
        self.assertIn("src/PLib/PThing.h:8: ", fault)
        self.assertIn("nosuchcommand", fault)

    def test_a_warning_about_a_guide_names_the_guide_as_it_is_in_the_tree(self):
        fault, _ = self.run_docs({"docs/a.md": "# A\n\nText.\n\nA \\nosuchcommand.\n"})
        self.assertIn("docs/a.md:5: ", fault)


class GuidesTest(unittest.TestCase):
    """The guides as Doxygen reads them."""

    def make(self, text, **others):
        """The guides of a tree with docs/a.md of this text."""
        texts = {"README.md": README, "docs/a.md": text, **others}
        files = [*texts, "LICENSE", "docs/images/a.png"]
        return guides.Guides({PurePosixPath(path): one for path, one in texts.items()},
                             map(PurePosixPath, files))

    def page(self, text):
        """What Doxygen reads of docs/a.md."""
        return self.make(text).page(PurePosixPath("docs/a.md"))

    def test_keep_their_lines(self):
        text = "# A\n\nText [x](../LICENSE)\n\n```cpp\nint a;\n```\n\n## B\n\n## C\n\n## D\n\nEnd.\n"
        self.assertEqual(self.page(text).count("\n"), text.count("\n"))
        self.assertEqual(self.page(text).split("\n")[14], "End.")

    def test_headings_get_the_anchors_that_links_in_the_tree_have(self):
        self.assertIn("## The `x` end {#a-the-x-end}\n", self.page("# A\n\n## The `x` end\n"))

    def test_code_is_left_alone(self):
        page = self.page("# A\n\n```\n# no heading\n[no](link.md)\n```\n\n`[no](link.md)`\n")
        self.assertIn("```{.unparsed}\n# no heading\n[no](link.md)\n```\n", page)
        self.assertIn("`[no](link.md)`", page)

    def test_links_lead_to_pages_headings_files_and_pictures(self):
        page = self.page("# A\n\n## B\n\n[one](../README.md) [two](#b) [three](../LICENSE)\n"
                         "![four](images/a.png) [five](https://example.org/a.md)\n")
        for link in ("[one](@ref index)", "[two](@ref a-b)", "[three](files/LICENSE.txt)",
                     "![four](a.png)", "[five](https://example.org/a.md)"):
            self.assertIn(link, page)

    def test_a_link_that_names_a_file_shows_its_title(self):
        self.assertIn("[Tree](@ref index)", self.page("# A\n\nSee [README.md](../README.md).\n"))

    def test_a_link_to_a_file_that_does_not_exist_is_a_fault_with_its_line(self):
        with self.assertRaisesRegex(Fault, r"docs/a.md:4: the link to no.md: expected a file"):
            self.page("# A\n\nText\nand [x](no.md).\n")

    def test_a_link_to_a_heading_that_does_not_exist_is_a_fault(self):
        with self.assertRaisesRegex(Fault, r"docs/a.md:3: .*README.md has no such heading"):
            self.page("# A\n\n[x](../README.md#no)\n")

    def test_a_guide_that_the_first_one_does_not_list_is_a_fault(self):
        with self.assertRaisesRegex(Fault, "links docs/b.md"):
            self.make("# A\n", **{"docs/b.md": "# B\n"}).order()

    def test_have_the_order_of_the_table(self):
        readme = README + "| [docs/b.md](docs/b.md) | b |\n"
        made = self.make("# A\n", **{"docs/b.md": "# B\n", "README.md": readme})
        self.assertEqual([str(path) for path in made.order()], ["docs/a.md", "docs/b.md"])


class HeadersTest(unittest.TestCase):
    """The headers as Doxygen reads them."""

    def test_keep_their_lines_without_their_private_parts(self):
        text = "class A {\npublic:\n    int a;\n\nprivate:\n    int b;\n};\nint c;\n"
        made = headers.without_private(text)
        self.assertEqual(made, "class A {\npublic:\n    int a;\n\n\n\n};\nint c;\n")

    def test_a_header_has_the_sentence_of_the_type_of_its_name_in_its_namespace(self):
        for text, name in (("class PA {\n", "PA"), ("struct PCD_EXPORT PA {\n", "PA"),
                           ("template <typename T>\nclass PA : public B {\n", "PA"),
                           ("namespace N {\n\nclass PA {\n", "N::PA"),
                           ("namespace N {\n} // namespace N\nclass PA {\n", "PA")):
            made = headers.with_sentence(PurePosixPath("src/PA.h"), text)
            self.assertTrue(made.endswith(f"/// @file\n/// @copybrief {name}\n"), made)

    def test_a_declaration_alone_gives_a_header_no_sentence(self):
        made = headers.with_sentence(PurePosixPath("src/PA.h"), "class PA;\n")
        self.assertEqual(made, "class PA;\n")


class LinksTest(DocsTest):
    """The links of a built site."""

    def faults(self, files):
        """The broken links of a site."""
        self.write(files)
        return links.broken_links(self.root)

    def test_good_ones_are_counted_and_no_faults(self):
        found = self.faults({
            "index.html": '<a href="b.html#x">b</a><a href="#y"></a><h2 id="y"></h2>'
                          '<img src="i%20j.png"><a href="https://example.org/no"></a>',
            "b.html": '<a name="x"></a>', "i j.png": "", "nav.js": 'a = ["b.html#x"];'})
        self.assertEqual(found, ([], 4))

    def test_a_page_that_does_not_exist_is_found_with_its_line(self):
        self.assertEqual(self.faults({"index.html": '<p>\n<a href="no.html">b</a>'})[0],
                         ["index.html:2: the link to no.html: expected a file of the site"])

    def test_an_anchor_that_does_not_exist_is_found(self):
        self.assertEqual(self.faults({"index.html": '<a href="b.html#no">b</a>',
                                      "b.html": '<p id="x">'})[0],
                         ["index.html:1: the link to b.html#no: b.html has no such place"])

    def test_an_anchor_of_its_own_page_that_does_not_exist_is_found(self):
        self.assertEqual(len(self.faults({"index.html": '<a href="#no">b</a>'})[0]), 1)

    def test_a_picture_that_does_not_exist_is_found(self):
        self.assertEqual(len(self.faults({"index.html": '<img src="no.png">'})[0]), 1)

    def test_a_page_that_the_navigation_leads_to_in_vain_is_found(self):
        self.assertEqual(self.faults({"index.html": "", "nav.js": 'a =\n["no.html"];'})[0],
                         ["nav.js:2: the link to no.html: expected a file of the site"])


if __name__ == "__main__":
    unittest.main()
