"""The examples of docs/python.md and README.md, and the programs in examples/python, run as they
are."""

import ast
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from support import UNTIL, run_python

TREE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TREE / "tests/scripts"))

import guide_blocks  # noqa: E402  (the path comes first)


class Guide(unittest.TestCase):
    def test_its_examples_run_one_after_the_other(self):
        parts = [block.text for block in guide_blocks.blocks("docs/python.md", language="python")]
        self.assertEqual(8, len(parts))
        with tempfile.TemporaryDirectory() as folder:
            ended = run_python("\n".join(parts), env={**os.environ, "TMPDIR": folder})
            written = sorted(path.name for path in Path(folder).glob("*/*"))
        self.assertEqual((0, ""), (ended.returncode, ended.stderr))
        for expected in ("Simulated-1MM-SIM01M0001 Simulated-1MM SIM01M0001 True",
                         '"gain" cannot be 9: expected a number from 1 to 5\ngain 9 a number',
                         "2.0 Range(minimum=1.0, maximum=5.0, step=0.01) Gain",
                         "20 of 20", "5.0\n5.0\n5.0\n", "[255   0   0]",
                         "camera Simulated-1MM-SIM01M0001 was unplugged: plug it in",
                         "camera Bench-1 sent no frame for 0.2 s", 'did not take 5 for "contrast"'):
            self.assertIn(expected, ended.stdout)
        self.assertIn("run.ome.tif", written)
        self.assertIn("run.ome.zarr", written)
        self.assertIn("frame-0001.png", written)

    def test_it_names_every_exception_and_attribute(self):
        text = (TREE / "docs/python.md").read_text(encoding="utf-8")
        listed = run_python("import pcd\nprint(*(n for n in dir(pcd) if n.endswith('Error')), "
                            "*(n for n in dir(pcd.Frame) if n[0] != '_'))").stdout.split()
        self.assertGreater(len(listed), 20)
        self.assertEqual([], [name for name in listed if f"`{name}`" not in text
                              and f"`pcd.{name}`" not in text and f"`frame.{name}`" not in text])

    def test_every_public_name_has_a_docstring(self):
        ended = run_python("import pcd, inspect\n"
                           "for name in pcd.__all__:\n"
                           "    one = getattr(pcd, name)\n"
                           "    if not inspect.getdoc(one): print(name)\n"
                           "    for part, value in vars(one).items() if inspect.isclass(one) else ():\n"
                           "        shown = callable(value) or isinstance(value, property)\n"
                           "        if part[0] != '_' and shown and not inspect.getdoc(value):\n"
                           "            print(name, part)\n")
        self.assertEqual(("", ""), (ended.stdout, ended.stderr))


class Docstrings(unittest.TestCase):
    """They are the comments of the headers, which scripts/docstrings passes on."""

    def comments(self, header, count):
        """The first sentences of the comments of a header that Python should have."""
        text = (TREE / "src" / header).read_text(encoding="utf-8")
        found = re.findall(r"(?:^\s*///(?!<) ?.*\n)+", text, re.MULTILINE)
        firsts = [" ".join(re.sub(r"^\s*/// ?", "", part, flags=re.MULTILINE).split()) for part in found]
        firsts = [re.split(r"(?<=[.:;])\s", first)[0] for first in firsts]
        self.assertGreaterEqual(len(firsts), count, header)
        return firsts

    def test_help_has_the_text_of_the_headers(self):
        shown = run_python("import pcd, pydoc\n"
                           "for one in (pcd, pcd.Frame): print(pydoc.plain(pydoc.render_doc(one)))\n")
        self.assertEqual("", shown.stderr)
        text = " ".join(re.sub(r"^[ |]*", "", shown.stdout, flags=re.MULTILINE).split())
        # All of a frame, and what is shown of the others: not what they have for C++ only.
        lacking = {header: [one for one in self.comments(header, count) if one not in text]
                   for header, count in (("python/frame/PPythonFrame.h", 14),
                                         ("python/frame/PPythonCapture.h", 3))}
        self.assertEqual({"python/frame/PPythonFrame.h": ["`names` are those of the camera's settings, "
                                                          "`index` the frame's place in its stream.",
                                                          "Adds the class to the module.",
                                                          "The picture as a notebook shows it:"],
                          "python/frame/PPythonCapture.h": ["Stills and recordings of an open camera:",
                                                            "Which frames are recorded, and where."]},
                         lacking)
        for sentence in ("One resolution of a device. width: pixels height: pixels",
                         "Identifies a camera, even after its device is gone.",
                         "The result of applying a profile to a device.",
                         "failed: could not be written, or waited when another could not",
                         "Frames that arrived while the queue was full:"):
            self.assertIn(sentence, text)
        for word in ("@internal", "PPython", "PDevice", "lock"):
            self.assertNotIn(word, text)

    def test_every_native_function_has_a_text(self):
        ended = run_python("from pcd import _pcd\nimport inspect\n"
                           "def check(place, name, value):\n"
                           "    if name[0] != '_' and not (value.__doc__ or '').strip():\n"
                           "        print(place, name)\n"
                           "for name, one in vars(_pcd).items():\n"
                           "    check('_pcd', name, one)\n"
                           "    for part, value in vars(one).items() if inspect.isclass(one) else ():\n"
                           "        check(name, part, value)\n"
                           "print(len(vars(_pcd)) > 15, '->' in _pcd.Session.snap.__doc__)\n")
        self.assertEqual(("True False\n", ""), (ended.stdout, ended.stderr))


class Types(unittest.TestCase):
    def test_what_is_declared_of_the_native_module_is_what_it_has(self):
        declared = set()
        for one in ast.parse((TREE / "python/pcd/_pcd.pyi").read_text(encoding="utf-8")).body:
            if isinstance(one, ast.FunctionDef):
                declared.add(one.name)
            elif isinstance(one, ast.AnnAssign):
                declared.add(one.target.id)
            elif isinstance(one, ast.ClassDef) and one.name[0] != "_":
                declared |= {one.name} | {f"{one.name}.{part.name}" for part in one.body}
        ended = run_python("from pcd import _pcd\n"
                           "for name, one in vars(_pcd).items():\n"
                           "    if name[0] == '_': continue\n"
                           "    print(name)\n"
                           "    for part in vars(one) if isinstance(one, type) else ():\n"
                           "        if part[0] != '_' or part == '_repr_png_': print(f'{name}.{part}')\n")
        # NumPy uses the buffer, which types cannot express before Python 3.12.
        self.assertEqual(declared - {"Frame.__array__"}, set(ended.stdout.split()))


class Pasted(unittest.TestCase):
    """The lines for a shell at the root of the tree."""

    def paste(self, block):
        """Runs a block in a folder like the root, whose build folder has the module; returns what it prints."""
        build = Path(os.environ["PYTHONPATH"].split(":")[0]).parent
        with tempfile.TemporaryDirectory() as folder:
            guide_blocks.make_tree(Path(folder), build)
            environment = {name: value for name, value in os.environ.items() if name != "PYTHONPATH"}
            ended = subprocess.run(["bash", "-e", "-c", block.text], cwd=folder, text=True, check=False,
                                   env=environment, capture_output=True, timeout=UNTIL * 2)
        self.assertEqual(0, ended.returncode, ended.stderr)
        self.assertIn("electrons per count", ended.stdout)
        return ended.stdout

    def test_those_of_the_readme_run(self):
        (block,) = guide_blocks.blocks("README.md", "In Python")
        self.assertIn("(3648, 5440, 3)", self.paste(block))

    def test_those_of_the_guide_run(self):
        (block,) = guide_blocks.blocks("docs/python.md", "Python", "sh")
        self.paste(block)


class Examples(unittest.TestCase):
    def run_example(self, name):
        ended = subprocess.run([sys.executable, TREE / "examples/python" / name], text=True,
                               check=False, capture_output=True, timeout=UNTIL * 2)
        self.assertEqual((0, ""), (ended.returncode, ended.stderr), ended.stdout)
        return ended.stdout

    def test_the_photon_transfer_curve_has_the_constants_of_the_scene(self):
        text = self.run_example("photon_transfer.py")
        self.assertEqual(4, text.count("at most"))

    def test_the_focus_is_found_where_it_is(self):
        place = float(re.search(r"sharpest at step (\S+);", self.run_example("track_focus.py"))[1])
        self.assertAlmostEqual(12.3, place, delta=0.5)


if __name__ == "__main__":
    unittest.main()
