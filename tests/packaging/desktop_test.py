#!/usr/bin/python3
"""Tests of the files for the desktop. Usage: desktop_test.py SOURCE-FOLDER BUILD-FOLDER"""

import configparser
import os
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

SOURCE, BUILD = (Path(folder) for folder in sys.argv[1:3])
ID = "invalid.pcd.pcdview"
LANGUAGE = "{http://www.w3.org/XML/1998/namespace}lang"
MIME = "{http://www.freedesktop.org/standards/shared-mime-info}"


def run(*command, **environment):
    """Runs a program of Debian's; its output and errors as one text."""
    return subprocess.run(command, check=False, text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, env={**os.environ, **environment})


def entry():
    """The keys of the desktop file."""
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str
    parser.read(SOURCE / "pcdview.desktop", encoding="utf-8")
    return parser["Desktop Entry"]


def metainfo():
    """The page for software centres."""
    return xml.parse(BUILD / f"{ID}.metainfo.xml").getroot()


def profile_type():
    """The element of the profiles' type."""
    return xml.parse(SOURCE / "pcdview.xml").getroot().find(f"{MIME}mime-type")


class DesktopFileTest(unittest.TestCase):
    """The entry in the menu of programs."""

    def test_is_valid(self):
        ended = run("desktop-file-validate", "--warn-kde", str(SOURCE / "pcdview.desktop"))
        self.assertEqual((ended.returncode, ended.stdout), (0, ""))

    def test_opens_profiles_with_the_viewer(self):
        self.assertEqual(entry()["Exec"], "pcdview %f")
        self.assertEqual(entry()["MimeType"], f"{profile_type().get('type')};")

    def test_is_in_russian_too(self):
        for key in ("GenericName", "Comment", "Keywords"):
            self.assertNotEqual(entry()[f"{key}[ru]"], entry()[key])


class MetainfoTest(unittest.TestCase):
    """The page in software centres."""

    def test_is_valid(self):
        # The id is below "invalid" on purpose: see packaging/desktop/README.md.
        ended = run("appstreamcli", "validate", "--no-net", "--pedantic", "--strict",
                    "--override", "cid-maybe-not-rdns=pedantic", str(BUILD / f"{ID}.metainfo.xml"))
        self.assertEqual(ended.returncode, 0, ended.stdout)

    def test_names_the_other_files(self):
        page = metainfo()
        self.assertEqual(page.findtext("id"), ID)
        self.assertEqual(page.findtext("launchable"), "pcdview.desktop")
        self.assertEqual(page.findtext("icon"), entry()["Icon"])
        self.assertEqual(page.findtext("provides/mediatype"), profile_type().get("type"))
        self.assertEqual([one.text for one in page.findall("categories/category")],
                         entry()["Categories"].strip(";").split(";"))

    def test_has_no_links(self):
        self.assertEqual(metainfo().findall(".//url") + metainfo().findall(".//image"), [])

    def test_is_in_russian_too(self):
        for path in ("summary", "developer_name", "description/p", "description/ul/li"):
            found = [one.get(LANGUAGE) for one in metainfo().findall(path)]
            self.assertEqual(found, [None, "ru"] * (len(found) // 2), path)
            self.assertTrue(found, path)


class ProfileTypeTest(unittest.TestCase):
    """The type of the profiles."""

    def test_is_accepted_by_the_table_of_types(self):
        with tempfile.TemporaryDirectory() as folder:
            packages = Path(folder, "mime", "packages")
            packages.mkdir(parents=True)
            (packages / "pcdview.xml").write_bytes((SOURCE / "pcdview.xml").read_bytes())
            ended = run("update-mime-database", str(packages.parent), XDG_DATA_DIRS=folder)
            self.assertEqual((ended.returncode, ended.stdout), (0, ""))
            globs = (packages.parent / "globs2").read_text(encoding="utf-8")
        self.assertIn(":application/x-pcd-profile+json:*.pcdprofile.json\n", globs)

    def test_is_in_russian_too(self):
        found = [one.get(LANGUAGE) for one in profile_type().findall(f"{MIME}comment")]
        self.assertEqual(found, [None, "ru"])


class IconTest(unittest.TestCase):
    """The icon of the program."""

    def test_has_the_sizes_of_its_files(self):
        for size in (16, 24, 32, 48, 64, 128, 256):
            begin = (BUILD / "icons" / f"{size}.png").read_bytes()[:24]
            self.assertEqual(begin[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", begin[16:24]), (size, size))

    def test_is_a_drawing_without_foreign_parts(self):
        for drawing in sorted((SOURCE / "icons").glob("*.svg")):
            text = drawing.read_text(encoding="utf-8")
            self.assertEqual(xml.fromstring(text).tag, "{http://www.w3.org/2000/svg}svg")
            self.assertNotIn("href", text, drawing.name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
