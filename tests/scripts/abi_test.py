#!/usr/bin/python3
"""Tests of scripts/abi: each change of what small libraries promise is found, and nothing else."""

import contextlib
import io
import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))

from interface import cli  # noqa: E402  (the path comes first)

COMPILE = ("g++", "-std=c++17", "-g", "-O2", "-fPIC", "-fvisibility=hidden",
           "-fvisibility-inlines-hidden", "-Isrc", "-Iother")
EXPORT = '#define PCD_EXPORT __attribute__((visibility("default")))\n#define PCD_TEST_EXPORT PCD_EXPORT\n'
# A library with a class, a template, records and a private class for tests; an SDK; a plugin.
TREE = {
    "other/Foreign.h": "#pragma once\nstruct Foreign { int a; };\ntypedef int Number;\n",
    "src/PLib/CMakeLists.txt": "pcd_add_library(PLib\n    SOURCES PThing.cpp PBox.cpp\n"
                               "    HEADERS PExport.h PThing.h PBox.h\n    LINK Qt6::Core)\n",
    "src/PLib/PExport.h": "#pragma once\n" + EXPORT,
    "src/PLib/PThing.h": """\
#pragma once
#include <PLib/PExport.h>
#include <Foreign.h>
struct PRecord { Number a; double b; Foreign foreign; };
enum class PSide { Left };
enum class PKind { One = 1, Two = 2 };
class PSecret;
class PCD_EXPORT PThing {
public:
    virtual ~PThing();
    virtual bool start(const PRecord& record);
    virtual int stop(PKind kind);
    long count() const;
    PCD_EXPORT friend void reset(PThing& thing, void (*done)(int));
private:
    PSecret* m_secret;
};
""",
    "src/PLib/PSecret.h": """\
#pragma once
#include <PLib/PThing.h>
class PCD_TEST_EXPORT PSecret {
public:
    void reset();
    long m_count;
    PSide m_side;
};
""",
    "src/PLib/PThing.cpp": """\
#include <PLib/PThing.h>
#include <PLib/PSecret.h>
PThing::~PThing() { delete m_secret; }
bool PThing::start(const PRecord& record) { return record.a > 0; }
int PThing::stop(PKind kind) { return int(kind); }
long PThing::count() const { return m_secret->m_count; }
void PSecret::reset() { ++m_count; }
void reset(PThing&, void (*done)(int)) { done(0); }
""",
    "src/PLib/PBox.h": """\
#pragma once
#include <PLib/PThing.h>
template <typename T> class PBox {
public:
    virtual T value() const { return m_value; }
    virtual void set(T value) { m_value = value; }
protected:
    T m_value{};
};
class PCD_EXPORT PThingBox : public PBox<PThing*> {
public:
    void set(PThing* value) override;
};
""",
    "src/PLib/PBox.cpp": "#include <PLib/PBox.h>\n"
                         "void PThingBox::set(PThing* value) { m_value = value->count() ? value : nullptr; }\n",
    "src/toupcam/CMakeLists.txt": "pcd_set_face(sdk HEADERS sdk.h)\n",
    "src/toupcam/sdk.h": "typedef struct { int width; int height; } SdkFrame;\n",
    "src/toupcam/sdk.cpp": '#include <toupcam/sdk.h>\nextern "C" __attribute__((visibility("default")))\n'
                           "int Sdk_pull(SdkFrame* frame) { return frame->width; }\n",
    "src/PCdPlugins/PTDevice/PTDevice.h": "#include <PLib/PBox.h>\nstruct PTValue { int on; short target; };\n"
                                          "class PCD_EXPORT PTDevice : public PBox<PTValue> {\n"
                                          "public:\n    PTValue value() const override;\n};\n",
    "src/PCdPlugins/PTDevice/PTDevice.cpp": "#include <PCdPlugins/PTDevice/PTDevice.h>\n"
                                            "PTValue PTDevice::value() const { return m_value; }\n",
}
# Targets, their libraries and sources.
BUILT = {
    "PLib": ("lib/libPLib.so", ["PLib/PThing.cpp", "PLib/PBox.cpp"]),
    "toupcamsim": ("lib/pcd/sim/libtoupcam.so", ["toupcam/sdk.cpp"]),
    "PTDeviceObjects": ("lib/pcd/plugins/libPTDevice.so", ["PCdPlugins/PTDevice/PTDevice.cpp"]),
}
FILE = "packaging/abi/PLib.abi"


class Made:
    """A folder with the tree, as a git checkout, and its build."""

    def __init__(self, root):
        self.root = root
        self.commands = {}

    def write(self, files):
        """Writes files: paths and their texts."""
        for path, text in files.items():
            (self.root / path).parent.mkdir(parents=True, exist_ok=True)
            (self.root / path).write_text(text, encoding="utf-8")

    def build(self, target, sources=None, options=()):
        """Compiles a library, with other sources or options if they are given."""
        path, usual = BUILT[target]
        library = self.root / "build" / path
        library.parent.mkdir(parents=True, exist_ok=True)
        objects = [f"x/CMakeFiles/{target}.dir/{source}.o" for source in sources or usual]
        self.commands[target] = [f"g++ -o {name} -c" for name in objects]
        for source, name in zip(sources or usual, objects):
            (self.root / "build" / name).parent.mkdir(parents=True, exist_ok=True)
            self.run(*COMPILE, *options, "-c", f"src/{source}", "-o", f"build/{name}")
        self.run("g++", "-shared", "-o", str(library), *(f"build/{name}" for name in objects))
        lines = [{"directory": str(self.root / "build"), "command": command}
                 for commands in self.commands.values() for command in commands]
        self.write({"build/compile_commands.json": json.dumps(lines)})

    def run(self, *command):
        """Runs a command in the tree."""
        subprocess.run(command, cwd=self.root, check=True, capture_output=True)


class AbiTest(unittest.TestCase):
    """A tree whose interface is kept."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.first = Made(Path(folder.name).resolve())
        cls.first.write(TREE)
        cls.first.run("git", "init", "-q")
        for target in BUILT:
            cls.first.build(target)
        code, output = cls.call(cls.first.root, "--update")
        if code != 0:
            raise AssertionError(output)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        root = Path(folder.name).resolve() / "tree"
        shutil.copytree(self.first.root, root)
        self.made = Made(root)
        for target in BUILT:
            self.made.commands[target] = self.first.commands[target]
        commands = root / "build/compile_commands.json"
        commands.write_text(commands.read_text().replace(str(self.first.root), str(root)))

    @staticmethod
    def call(root, *arguments):
        """Runs the command line in a tree; returns the exit code and what it prints."""
        output = io.StringIO()
        with contextlib.redirect_stdout(output), contextlib.redirect_stderr(output):
            code = cli.main(root, arguments)
        return code, output.getvalue()

    def compare(self):
        """The exit code and the output for the tree as it is built."""
        return self.call(self.made.root)

    def change(self, path, old, new, target="PLib"):
        """Changes a text of the tree, builds it and compares."""
        text = (self.made.root / path).read_text()
        self.assertIn(old, text)
        self.made.write({path: text.replace(old, new)})
        self.made.build(target)
        return self.compare()

    def kept(self, line):
        """Where the kept text of the library has a line."""
        lines = (self.made.root / FILE).read_text().splitlines()
        self.assertIn(line, lines)
        return f"{FILE}:{lines.index(line) + 1}"

    def assert_found(self, result, *differences):
        """Checks that exactly these differences are found."""
        code, output = result
        self.assertEqual(code, cli.EXIT_FOUND, output)
        found = [line for line in output.splitlines() if line.endswith(("[breaks]", "[adds]"))]
        self.assertEqual(found, list(differences))
        self.assertIn("scripts/abi --update", output)

    def test_an_unchanged_tree_passes(self):
        code, output = self.compare()
        self.assertEqual(code, 0, output)
        self.assertRegex(output, r"PLib: \d\d types and symbols, 0 differences break, 0 add")

    def test_swapped_virtual_functions_break_their_slots(self):
        one, two = "    virtual bool start(const PRecord& record);\n", "    virtual int stop(PKind kind);\n"
        start, stop = "bool PThing::start(PRecord const&)", "int PThing::stop(PKind)"
        self.assert_found(
            self.change("src/PLib/PThing.h", one + two, two + one),
            f"{self.kept('    slot 2: ' + start)}: class PThing: slot 2 was {start}, is {stop} [breaks]",
            f"{self.kept('    slot 3: ' + stop)}: class PThing: slot 3 was {stop}, is {start} [breaks]")

    def test_swapped_virtual_functions_of_a_template_break_its_slots(self):
        one, two = ("    virtual T value() const { return m_value; }\n",
                    "    virtual void set(T value) { m_value = value; }\n")
        code, output = self.change("src/PLib/PBox.h", one + two, two + one)
        self.assertEqual(code, cli.EXIT_FOUND, output)
        self.assertIn("class PBox<PThing*>: slot 0 was PThing* PBox<PThing*>::value() const, is "
                      "void PBox<PThing*>::set(PThing*) [breaks]", output)

    def test_a_virtual_function_after_all_others_is_an_addition(self):
        path = self.made.root / "src/PLib/PThing.cpp"
        path.write_text(path.read_text() + "void PThing::pause() {}\n")
        self.assert_found(
            self.change("src/PLib/PThing.h", "    long count() const;",
                        "    virtual void pause();\n    long count() const;"),
            f"{self.kept('class PThing: 16 bytes')}: class PThing: slot 4 is new, "
            "void PThing::pause() [adds]",
            f"{self.kept('symbol vtable for PThing: 48 bytes')}: symbol vtable for PThing was "
            "48 bytes, is 56 bytes [adds]",
            f"{self.kept('symbol vtable for PThingBox: 32 bytes')}: function PThing::pause() is new "
            "[adds]")

    def test_a_virtual_function_that_is_gone_breaks(self):
        text = "int PThing::stop(PKind kind) { return int(kind); }\n"
        path = self.made.root / "src/PLib/PThing.cpp"
        path.write_text(path.read_text().replace(text, ""))
        code, output = self.change("src/PLib/PThing.h", "    virtual int stop(PKind kind);\n", "")
        self.assertEqual(code, cli.EXIT_FOUND, output)
        self.assertIn("class PThing: slot 3 is gone, was int PThing::stop(PKind) [breaks]", output)
        self.assertIn("function PThing::stop(PKind) is gone [breaks]", output)

    def test_another_type_of_a_member_breaks(self):
        self.assert_found(
            self.change("src/PLib/PThing.h", "{ Number a; double b;", "{ unsigned a; double b;"),
            f"{self.kept('    member a: int, at 0')}: class PRecord: member a was int, at 0, is "
            "unsigned int, at 0 [breaks]")

    def test_a_name_for_another_type_than_before_breaks(self):
        code, output = self.change("other/Foreign.h", "typedef int Number;", "typedef unsigned Number;")
        self.assertEqual(code, cli.EXIT_FOUND, output)
        self.assertIn("class PRecord: member a was int, at 0, is unsigned int, at 0 [breaks]", output)

    def test_another_base_breaks(self):
        code, output = self.change("src/PLib/PBox.h", "public PBox<PThing*> {",
                                   "public PBox<PThing*>, public PRecord {")
        self.assertEqual(code, cli.EXIT_FOUND, output)
        self.assertIn("class PThingBox: base PRecord is new, at 16 [breaks]", output)

    def test_an_added_member_breaks_even_in_a_gap(self):
        self.assert_found(
            self.change("src/PLib/PThing.h", "{ Number a; double b;", "{ Number a; int gap; double b;"),
            f"{self.kept('class PRecord: 24 bytes')}: class PRecord: member gap is new, int, at 4 "
            "[breaks]")

    def test_a_member_that_is_gone_breaks(self):
        code, output = self.change("src/PLib/PThing.h", "double b; ", "")
        self.assertEqual(code, cli.EXIT_FOUND, output)
        self.assertIn("class PRecord was 24 bytes, is 8 bytes [breaks]", output)
        self.assertIn("class PRecord: member b is gone, was double, at 8 [breaks]", output)

    def test_a_changed_record_of_the_sdk_breaks(self):
        code, output = self.change("src/toupcam/sdk.h", "int width; int height;", "int height; int width;",
                                   "toupcamsim")
        self.assertEqual(code, cli.EXIT_FOUND, output)
        self.assertIn("class SdkFrame: member width was int, at 0, is int, at 4 [breaks]", output)

    def test_other_parameters_of_a_function_of_the_sdk_break(self):
        code, output = self.change("src/toupcam/sdk.cpp", "SdkFrame* frame", "SdkFrame* frame, unsigned",
                                   "toupcamsim")
        self.assertEqual(code, cli.EXIT_FOUND, output)
        self.assertIn("function Sdk_pull(SdkFrame*) is gone [breaks]", output)
        self.assertIn("function Sdk_pull(SdkFrame*, unsigned int) is new [adds]", output)

    def test_a_changed_record_of_the_plugin_breaks(self):
        code, output = self.change("src/PCdPlugins/PTDevice/PTDevice.h", "short target", "int target",
                                   "PTDeviceObjects")
        self.assertEqual(code, cli.EXIT_FOUND, output)
        self.assertIn("class PTValue: member target was short int, at 4, is int, at 4 [breaks]", output)

    def test_another_number_of_an_enumerator_breaks(self):
        self.assert_found(
            self.change("src/PLib/PThing.h", "Two = 2", "Two = 3"),
            f"{self.kept('    Two: 2')}: enum PKind: Two was 2, is 3 [breaks]")

    def test_a_new_enumerator_is_an_addition(self):
        self.assert_found(
            self.change("src/PLib/PThing.h", "Two = 2", "Two = 2, Three = 3"),
            f"{self.kept('enum PKind: 4 bytes')}: enum PKind: Three is new, 3 [adds]")

    def test_a_symbol_that_is_gone_breaks(self):
        path = self.made.root / "src/PLib/PThing.h"
        path.write_text(path.read_text().replace("    PCD_EXPORT friend void reset", "    friend void reset"))
        self.made.build("PLib")
        name = "function reset(PThing&, void (*)(int))"
        self.assert_found(self.compare(), f"{self.kept(name + ': void')}: {name} is gone [breaks]")

    def test_a_new_symbol_is_an_addition(self):
        path = self.made.root / "src/PLib/PThing.cpp"
        path.write_text(path.read_text() + "long PThing::total() const { return 0; }\n")
        self.assert_found(
            self.change("src/PLib/PThing.h", "    long count() const;",
                        "    long count() const;\n    long total() const;"),
            f"{self.kept('symbol vtable for PThingBox: 32 bytes')}: function PThing::total() const is "
            "new [adds]")

    def test_another_result_of_a_function_breaks(self):
        path = self.made.root / "src/PLib/PThing.cpp"
        path.write_text(path.read_text().replace("long PThing::count", "int PThing::count")
                        .replace("return m_secret->m_count", "return int(m_secret->m_count)"))
        self.assert_found(
            self.change("src/PLib/PThing.h", "    long count() const;", "    int count() const;"),
            f"{self.kept('function PThing::count() const: long int')}: function PThing::count() const "
            "was long int, is int [breaks]")

    def test_private_classes_and_those_of_others_may_change(self):
        self.made.write({"other/Foreign.h": "struct Foreign { unsigned renamed; };\n"
                                               "typedef int Other;\ntypedef Other Number;\n"})
        path = self.made.root / "src/PLib/PThing.cpp"
        path.write_text(path.read_text() + "void PSecret::tell() {}\n")
        code, output = self.change("src/PLib/PSecret.h", "void reset();", "void reset();\n    void tell();"
                                   "\n    int m_more;")
        self.assertEqual(code, 0, output)
        text = (self.made.root / FILE).read_text()
        self.assertIn("member m_secret: PSecret*, at 8", text)
        for name in ("PSecret::", "PSide", "class Foreign"):
            self.assertNotIn(name, text)

    def test_sources_that_are_compiled_as_one_give_the_same_text(self):
        self.made.write({"src/PLib/all.cpp": "#include <PLib/PBox.cpp>\n#include <PLib/PThing.cpp>\n"})
        self.made.build("PLib", ["PLib/all.cpp"], ["-O0"])
        before = (self.made.root / FILE).read_bytes()
        self.assertEqual(self.call(self.made.root, "--update"), (0, ""))
        self.assertEqual((self.made.root / FILE).read_bytes(), before)

    def test_an_update_keeps_what_is_built(self):
        self.change("src/PLib/PThing.h", "Two = 2", "Two = 3")
        code, output = self.call(self.made.root, "--update")
        self.assertEqual(code, 0)
        self.assertRegex(output, r"^packaging/abi/PLib.abi: written, \d+ lines\n$")
        self.assertEqual(self.compare()[0], 0)

    def assert_refused(self, text):
        """Checks that the tree cannot be compared, and why."""
        code, output = self.compare()
        self.assertEqual(code, cli.EXIT_BAD_INPUT, output)
        self.assertIn(text, output)

    def test_a_library_that_is_missing_is_an_error(self):
        (self.made.root / "build/lib/libPLib.so").unlink()
        self.assert_refused("lib/libPLib.so: there is no such file")

    def test_a_library_without_debug_information_is_an_error(self):
        self.made.build("PLib", options=["-g0"])
        self.assert_refused("PThing::count() const")

    def test_a_library_that_exports_nothing_is_an_error(self):
        path = self.made.root / "src/PLib/PExport.h"
        path.write_text("#pragma once\n#define PCD_EXPORT\n#define PCD_TEST_EXPORT\n")
        self.made.build("PLib")
        self.assert_refused("libPLib.so")

    def test_a_type_that_two_sources_define_otherwise_is_an_error(self):
        path = self.made.root / "src/PLib/PThing.h"
        path.write_text(path.read_text() + "PCD_EXPORT void other(const PRecord&);\n")
        self.made.write({"src/PLib/POther.cpp": "#define double float\n#include <PLib/PThing.h>\n"
                                                "void other(const PRecord&) {}\n"})
        self.made.build("PLib", ["PLib/PThing.cpp", "PLib/PBox.cpp", "PLib/POther.cpp"])
        self.assert_refused("class PRecord is not the same in all sources: 24 bytes or 12 bytes; "
                            "member b, member foreign differs")

    def test_an_interface_that_is_not_kept_is_an_error(self):
        (self.made.root / FILE).unlink()
        self.assert_refused(f"{FILE}: there is no such file")

    def test_a_kept_interface_without_a_library_is_an_error(self):
        self.made.write({"packaging/abi/PGone.abi": "# Old.\n"})
        self.assert_refused("packaging/abi/PGone.abi: no library of this name")


if __name__ == "__main__":
    unittest.main()
