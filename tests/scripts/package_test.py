#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Tests the Debian packages: installed in a clean Debian, used as by a user without rights, and removed. Without the
clean Debian they are unpacked, and used there.

Usage: package_test.py PACKAGES [ROOT]: the folder with the packages, and the clean Debian's root, where what the
packages depend on is installed. Changing into it takes the rights that mmdebstrap gives.
"""

import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import short_uses

PACKAGES = []  # files
ROOT = None  # of the clean Debian
LIBRARIES = Path("usr/lib/x86_64-linux-gnu")
MODULES = Path("usr/lib/python3/dist-packages")
USER, HOME = "nobody", "tmp/home"
# What running programs, apt and dpkg write without packages: devices and processes, lists and logs.
OF_THE_SYSTEM = ("dev", "proc", "sys", "run", "tmp", "var/cache/apt", "var/cache/debconf", "var/cache/ldconfig",
                 "var/cache/man", "var/lib/apt", "var/lib/dpkg/lock", "var/lib/dpkg/status", "var/lib/dpkg/triggers",
                 "var/log")
COMPLETE = """
source /usr/share/bash-completion/bash_completion
source {script}
COMP_WORDS=({words}); COMP_CWORD={last}; COMP_LINE='{words}'; COMP_POINT=${{#COMP_LINE}}
_pcdctl 2>&1
printf '%s\\n' "${{COMPREPLY[@]}}"
"""


def run(*command, environment=None, exits=(0,)):
    """Runs a program; returns what it prints. Raises with its output if it ends otherwise than expected."""
    ended = subprocess.run([str(word) for word in command], check=False, text=True, stdin=subprocess.DEVNULL,
                           stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=environment)
    if ended.returncode not in exits:
        raise AssertionError(f"{command} ended with {ended.returncode}:\n{ended.stdout}")
    return ended.stdout


class CleanDebian:
    """The packages installed in a clean Debian."""

    def __init__(self, root):
        self.root = root
        self.home = root / HOME
        self.before = self.content()
        for file in PACKAGES:
            shutil.copy(file, root / "tmp")
        # It fails if something is missing that a package depends on.
        self.chroot("dpkg", "--install", *(f"/tmp/{file.name}" for file in PACKAGES))
        self.home.mkdir(mode=0o777)
        self.home.chmod(0o777)

    def chroot(self, *command, user="root", **options):
        """Runs a program below the root."""
        environment = {"HOME": f"/{HOME}", "LANG": "C.UTF-8", "PATH": "/usr/sbin:/usr/bin:/sbin:/bin",
                       "DEBIAN_FRONTEND": "noninteractive", "QT_QPA_PLATFORM": "offscreen", "MANPAGER": "cat"}
        return run("chroot", f"--userspec={user}", self.root, *command, environment=environment, **options)

    def use(self, *command, **options):
        """Runs a program as a user."""
        return self.chroot(*command, user=USER, **options)

    def purge(self):
        """Removes the packages with all that belongs to them."""
        self.chroot("dpkg", "--purge", *(file.name.partition("_")[0] for file in PACKAGES))

    def content(self):
        """What each path of the root is, without what changes by itself."""
        found = {}
        for folder, folders, files in os.walk(self.root):
            place = Path(folder).relative_to(self.root)
            folders[:] = [name for name in folders if str(place / name) not in OF_THE_SYSTEM]
            for path in (place / name for name in (*folders, *files)):
                if not str(path).startswith(OF_THE_SYSTEM):
                    found[str(path)] = kind_of(self.root / path)
        return found


class Unpacked:
    """The packages unpacked in a folder of this system."""

    def __init__(self, folder):
        self.root = folder / "root"
        self.home = folder / "home"
        self.home.mkdir()
        for file in PACKAGES:
            run("dpkg-deb", "--extract", file, self.root)

    def use(self, *command, **options):
        """Runs a program that finds the packages' files before the system's."""
        environment = {"HOME": str(self.home), "LANG": "C.UTF-8", "PATH": f"{self.root}/usr/bin:/usr/bin:/bin",
                       "LD_LIBRARY_PATH": str(self.root / LIBRARIES), "MANPATH": str(self.root / "usr/share/man"),
                       "GST_PLUGIN_PATH": str(self.root / LIBRARIES / "gstreamer-1.0"),
                       "PYTHONPATH": str(self.root / MODULES), "QT_QPA_PLATFORM": "offscreen", "MANPAGER": "cat"}
        return run(*command, environment=environment, **options)


def kind_of(path):
    """The permissions and the content of a file or a folder."""
    if path.is_symlink():
        return f"link to {os.readlink(path)}"
    mode = oct(path.lstat().st_mode)
    return f"{mode} {hashlib.sha1(path.read_bytes()).hexdigest()}" if path.is_file() else mode


class InUseTest(unittest.TestCase):
    """What a user does with the packages."""

    def test_the_command_line_takes_a_still(self):
        still = DEBIAN.home / "still.png"
        DEBIAN.use("pcdctl", "--sdk", "sim", "snap", "-c", "1", "-o", self.inside(still))
        self.check_picture(still)

    def test_the_viewer_opens_a_camera_and_saves_its_window(self):
        window = DEBIAN.home / "window.png"
        log = DEBIAN.use("pcdview", "--sdk", "sim", "-c", "1", "--log-level", "info", "--grab", self.inside(window))
        self.assertIn("Toupcam_StartPushMode started: true", log)
        self.assertIn("ready, cameras: 2", log)
        self.check_picture(window)

    def test_man_shows_all_pages(self):
        pages = [path.name.removesuffix(".gz") for path in (DEBIAN.root / "usr/share/man").glob("man?/pcd*")]
        self.assertEqual(sorted(pages), ["pcd-profile.5", "pcd-recording.5", "pcd-scene.5", "pcdctl.1", "pcdview.1"])
        for page in pages:
            self.assertIn(page.partition(".")[0], DEBIAN.use("man", page))

    def test_bash_completes_a_camera_and_a_setting(self):
        script = self.inside(DEBIAN.root / "usr/share/bash-completion/completions/pcdctl")
        for words, expected in (("pcdctl --sdk sim list -c Simulated-2", "Simulated-20MC-SIM20C0001"),
                                ("pcdctl --sdk sim get contr", "contrast")):
            code = COMPLETE.format(script=script, words=words, last=words.count(" "))
            self.assertEqual(DEBIAN.use("bash", "-c", code).strip(), expected)

    def test_the_doctor_finds_SDK_plugin_and_cameras_in_their_places(self):
        # Four: at worst warnings, such as of a clock that is not synchronised.
        report = DEBIAN.use("pcdctl", "--sdk", "sim", "doctor", "-c", "1", "--json",
                            "--folder", self.inside(DEBIAN.home), exits=(0, 4))
        findings = json.loads(report[report.index("{"):report.rindex("}") + 1])["findings"]
        found = {finding["topic"]: (finding["severity"], finding["examined"]) for finding in findings}
        for topic, severity, file in (("sdk", "note", "sim/libtoupcam.so"),
                                      ("sdk-functions", "ok", "sim/libtoupcam.so"),
                                      ("plugin", "ok", "plugins/libPTDevice.so")):
            self.assertEqual(found[topic][0], severity, report)
            # Debian's /lib is a link to /usr/lib, and the loader may use either.
            self.assertTrue(found[topic][1].endswith(f"{LIBRARIES.relative_to('usr')}/pcd/{file}"), report)
        self.assertEqual(found["cameras"][0], "ok", report)

    def test_gstreamer_finds_the_element_and_takes_frames(self):
        # GStreamer too finds its plugins in /lib.
        plugin = re.escape(f"/{LIBRARIES.relative_to('usr')}/gstreamer-1.0/libgstpcd.so")
        self.assertRegex(DEBIAN.use("gst-inspect-1.0", "pcdsrc"), rf"(?m)^ *Filename +\S*{plugin}$")
        frames = DEBIAN.home / "frames"
        DEBIAN.use(*short_uses.PIPELINE, f"location={self.inside(frames)}")
        short_uses.check_frames(self, frames)

    def test_python_takes_a_still_and_frames_as_arrays(self):
        package, libraries = (Path(self.inside(DEBIAN.root / folder)) for folder in (MODULES / "pcd", LIBRARIES))
        short_uses.check_program(self, DEBIAN.use("/usr/bin/python3", "-c", short_uses.PROGRAM), package, libraries)
        for name in ("_pcd.pyi", "py.typed"):
            self.assertTrue((DEBIAN.root / MODULES / "pcd" / name).is_file(), name)

    def test_the_examples_in_python_are_beside_the_module(self):
        example = DEBIAN.root / "usr/share/doc/python3-pcd/examples/track_focus.py"
        self.assertIn("sharpest at step 12.", DEBIAN.use("/usr/bin/python3", self.inside(example)))

    def inside(self, path):
        """A path as the programs see it."""
        return f"/{path.relative_to(ROOT)}" if ROOT else str(path)

    def check_picture(self, file):
        """Expects a PNG of more than one colour."""
        self.assertEqual(file.read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
        self.assertGreater(file.stat().st_size, 10_000)


class DevelopmentTest(unittest.TestCase):
    """A host built with the development package, unpacked: compilers are none of its dependencies."""

    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.unpacked = DEBIAN if ROOT is None else Unpacked(cls.folder)
        cls.example = cls.unpacked.root / "usr/share/doc/libpcd-dev/examples/minimal-host"

    def test_a_host_builds_with_the_cmake_package(self):
        build = self.folder / "by-cmake"
        run("cmake", "-G", "Ninja", "-S", self.example, "-B", build,
            f"-DCMAKE_PREFIX_PATH={self.unpacked.root}/usr")
        run("cmake", "--build", build)
        self.check_host(build / "minimal-host")

    def test_a_host_builds_with_pkg_config(self):
        found = run("pkg-config", "--cflags", "--libs", "pcd", environment={
            **os.environ, "PKG_CONFIG_PATH": str(self.unpacked.root / LIBRARIES / "pkgconfig")}).split()
        program = self.folder / "by-pkg-config"
        run("c++", "-std=c++17", self.example / "main.cpp", "-o", program, *found)
        self.check_host(program)

    def check_host(self, program):
        """Runs the example on the simulated camera."""
        frame = self.folder / "frame.png"
        frame.unlink(missing_ok=True)
        simulator = self.unpacked.root / LIBRARIES / "pcd/sim/libtoupcam.so"
        self.unpacked.use("env", f"TOUPCAM_LIBRARY={simulator}", program, frame)
        self.assertGreater(frame.stat().st_size, 10_000)


class RemovedTest(unittest.TestCase):
    """The packages after their removal."""

    def test_nothing_is_left(self):
        during = DEBIAN.content()
        self.assertGreater(len(during.keys() - DEBIAN.before.keys()), 100)
        DEBIAN.purge()
        after = DEBIAN.content()
        changed = sorted(path for path in {*after, *DEBIAN.before} if after.get(path) != DEBIAN.before.get(path))
        self.assertEqual(changed, [])


def load_tests(loader, _tests, _pattern):
    """The tests in their order: the last one removes the packages."""
    cases = (InUseTest, DevelopmentTest, *((RemovedTest,) if ROOT else ()))
    return unittest.TestSuite(map(loader.loadTestsFromTestCase, cases))


if __name__ == "__main__":
    PACKAGES = sorted(Path(sys.argv[1]).glob("*.deb"))
    ROOT = Path(sys.argv[2]) if len(sys.argv) > 2 else None
    with tempfile.TemporaryDirectory() as folder:
        DEBIAN = CleanDebian(ROOT) if ROOT else Unpacked(Path(folder))
        unittest.main(argv=sys.argv[:1], verbosity=2)
