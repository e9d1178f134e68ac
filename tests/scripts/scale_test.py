#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Runs the command lines of docs/scale.md: pipelines and scripts as they are, the experiments of
scripts/scale in their small form. Compares the guide's arithmetic with the script's.

Usage: scale_test.py BUILD. Exits with 77 if everything passed, but namespaces were not available to
pull a cable and to limit a link.
"""

import contextlib
import io
import os
import re
import shutil
import subprocess
import sys
import tempfile
import types
import unittest
import unittest.mock
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True

import gstreamer_test  # noqa: E402  (the paths come first)
import guide_blocks  # noqa: E402
from scaling import arithmetic, daemons, events, faults, follow, live, store  # noqa: E402

GUIDE = (ROOT / "docs" / "scale.md").read_text(encoding="utf-8")
BLOCKS = [block.text for block in guide_blocks.blocks("docs/scale.md", language="sh")]
EXPERIMENTS = [line for block in BLOCKS for line in block.splitlines()
               if line.startswith("scripts/scale ")]
BUILD = None
SYSTEM = os.environ["PATH"] + ":/usr/sbin:/sbin"
NAMESPACES = "network: each computer is a network namespace"
NOT_ALL = 77  # as tests/gstreamer/CMakeLists.txt has it
LOOPBACK = "network: loopback, because namespaces are not available here"
CHRONYD_LOG = """\
===========================================================================================================
   Date (UTC) Time     IP Address   L St 123 567 ABCD  LP RP Score    Offset  Peer del. Peer disp.  Root del.
===========================================================================================================
2026-11-23 08:47:19 10.77.0.1       N  1 111 111 1111  -4  0 1.00 -4.188e-06  2.029e-05  3.526e-07  0.000e+00
2026-11-23 08:47:19 10.77.0.1       N  1 111 111 0111  -4 -4 0.83  8.857e-06  2.289e-05  1.271e-04  0.000e+00"""


class PipelineTest(gstreamer_test.PipelineTest):
    """All classes have one cache of plugins: looking for them takes seconds."""

    @classmethod
    def setUpClass(cls):
        cls.registry = BUILD / "tests" / "scale-registry.bin"


class ScaleTest(PipelineTest):
    """Runs scripts/scale, and says on what."""

    def scale(self, words, code=0, **more):
        """Runs an experiment in its small form; returns what it prints."""
        output = self.run_all(f"exec {ROOT}/scripts/scale {words} --quick --build {BUILD}", code, **more)
        self.assertRegex(output, f"^({NAMESPACES}|{LOOPBACK})")
        print(f"scripts/scale {words}: {output.splitlines()[0]}", file=sys.stderr)
        return output

    def check_live(self, output, ways):
        """The ways have their rows: pictures over each line, which delays and loses as its name says."""
        lines = [[cell.strip() for cell in line[1:-1].split("|")] for line in output.splitlines()
                 if line.startswith("| ")]
        rows = {tuple(line[:2]): dict(zip(lines[0], line)) for line in lines[1:]}
        names = {"tcp-jpeg": ["as it is"]}
        self.assertEqual(list(rows), [(way, name) for way in ways
                                      for name in names.get(way, ["20 ms each way", "10 % lost"])], output)
        for (_, name), row in rows.items():
            self.assertGreater(float(row["shown"]), 0, output)
            self.assertEqual(row["packets lost"] == "", name == "as it is", output)
        for way in set(ways) - set(names):
            late = rows[way, "20 ms each way"]
            self.assertGreater(float(late["ms late, median"]), 19.9, output)
            self.assertRegex(late["packets lost"], "^0 of [1-9]", output)
            lost, packets = map(int, rows[way, "10 % lost"]["packets lost"].split(" of "))
            self.assertGreater(lost, 0, output)
            deviation = (0.1 * 0.9 * packets) ** 0.5
            self.assertLess(abs(lost - 0.1 * packets), 5 * deviation, output)


class ExperimentTest(ScaleTest):
    """The experiments, as the guide starts them."""

    def test_the_guide_has_all_experiments(self):
        self.assertEqual([line.split()[1] for line in EXPERIMENTS],
                         ["live", "faults", "store", "clocks", "hundred"])

    def test_pictures_of_all_computers_are_shown(self):
        self.check_live(self.scale("live"), live.WAYS)

    def test_a_computer_that_fails_is_named_and_the_others_go_on(self):
        output = self.scale("faults")
        has_cables = output.startswith(NAMESPACES)
        for way in ("rtp-jpeg", "srt-vp8"):
            self.assertIn(f'{way}: computer1 was killed: the viewer reported "computer1: lost"; '
                          "computer2 went on", output)
            if has_cables:
                self.assertRegex(output, f'{way}: the cable of computer1 was out .* "computer1: back"')
            else:
                self.assertIn(f"{way}: no cable was pulled and no link was limited", output)
        if not has_cables:
            self.skipTest(output.splitlines()[0])
        # Enough that a sender which keeps them would not pass.
        (dropped,) = re.findall(r"^\| tcp-jpeg \| 4 Mbit/s to the viewer \|.*\| (\d+) \| \d+ \|$",
                                output, re.MULTILINE)
        self.assertGreater(1e-6 * 640 * 480 * int(dropped), faults.NOISE)

    def test_dask_computes_the_same_over_the_network(self):
        output = self.scale("store")
        self.assertEqual(len(set(re.findall(r"mean (\S+, projection \w+), of 20 frames", output))), 1)
        self.assertEqual(len(re.findall(r"^(?:disk|HTTP|S3): mean ", output, re.MULTILINE)), 3)
        self.assertIn("all results are those of the disk", output)

    def test_clocks_are_measured(self):
        # Half of the difference between the directions, and none; in microseconds.
        expected = {"GStreamer, as it is": 0, "GStreamer, 20 ms there, 40 back": -10_000,
                    "GStreamer, 20 ms each way, 20 % lost": 0}
        medians = {}
        for _ in range(5):  # a busy computer delays packets too, but not always
            output = self.scale("clocks")
            without = re.findall("^.*: not measured, .*$", output, re.MULTILINE)
            if not without:
                expected.update({"NTP: chronyd, the kernel's stamps, as it is": 0,
                                 "PTP: ptp4l, the kernel's stamps, as it is": 0})
            rows = re.findall(r"^\| (.*?) \| (-?[\d.]+) \| [\d.]+ \| [1-9]\d* \|$", output, re.MULTILINE)
            medians = {name: float(median) for name, median in rows}
            self.assertEqual(set(medians), set(expected), output)
            if all(abs(medians[name] - value) < 5000 for name, value in expected.items()):
                break
        else:
            self.fail(f"{medians}, expected {expected}, each with less than 5000 of difference")
        if without:
            self.skipTest("; ".join(without))

    def test_loopback_is_used_and_named_where_a_network_is_not_allowed(self):
        output = self.scale("live --way rtp-jpeg --picture wall.jpg", PATH=refuse(self.here, "ip", "type bridge"))
        self.assertRegex(output, rf"^{LOOPBACK} \(.*\); no cable is pulled and no link is limited\n")
        self.check_live(output, ["rtp-jpeg"])
        picture = self.run_all("exiftool -s3 -FileType -ImageSize wall.jpg").split()
        self.assertEqual(picture, ["JPEG", "640x240"])  # of two cameras

    def test_what_cannot_be_used_is_named(self):
        for words, expected in (("faults --computers 1", "--computers 1: expected at least 2"),
                                ("live --way tcp", "--way tcp: expected one of rtp-jpeg, "),
                                ("live --build /nowhere", "/nowhere/lib/gstreamer-1.0/libgstpcd.so: "),
                                ("live --picture /nowhere/wall.jpg", "/nowhere/wall.jpg: its folder does not"),
                                ("live --computers 251", "--computers 251: expected at most 250"),
                                ("live --size 15x480", '"15x480", expected a size such as 640x480, from 16 to'),
                                ("live --size 640x16385", "from 16 to 16384 pixels"),
                                ("live --size big", '"big", expected a size such as 640x480')):
            output = self.run_all(f"exec {ROOT}/scripts/scale --build {BUILD} {words}", code=2)
            self.assertIn(expected, output)


class JudgementTest(unittest.TestCase):
    """What an experiment does not accept."""

    ENDS = {"disk": {"frames": 9, "mean": 2.5, "sum": 7, "hash": "a" * 64, "bytes": 1, "seconds": 1}}

    def refused(self, expected, function, *arguments):
        """Checks that a function fails, with this in its reason."""
        with self.assertRaisesRegex(live.Failure, expected), \
                contextlib.redirect_stdout(io.StringIO()):
            function(*arguments)

    def test_other_results_than_those_of_the_disk(self):
        for key, value in (("mean", 2.6), ("sum", 8), ("hash", "b" * 64)):
            ends = {**self.ENDS, "S3": {**self.ENDS["disk"], key: value}}
            self.refused(f"S3: {key} is {value}", store.compare, ends, 9)

    def test_a_frame_that_is_missing(self):
        self.refused("disk: 9 frames, expected 10", store.compare, self.ENDS, 10)

    def test_a_frame_that_was_counted_before_it_was_there(self):
        parts = [{"frames": 4, "darkest": 0}, {"frames": 9, "darkest": 80}]
        self.refused("a frame that was counted had no chunk", store.report_parts, "HTTP", parts, 9)
        self.refused("the last frame was not read", store.report_parts, "HTTP", parts[1:], 10)

    def test_a_recording_of_which_nothing_was_read_before_its_end(self):
        self.refused("all 9 frames were there at once", store.report_parts, "HTTP",
                     [{"frames": 9, "darkest": 80}], 9)

    def test_a_sender_that_keeps_what_it_cannot_send(self):
        faults.check_memory("computer1", 40, 60, 50)
        self.refused("its memory grew from 40 to 70 MB while 50 MB", faults.check_memory, "computer1",
                     40, 70, 50)
        self.refused("expected at most 12 MB", faults.check_memory, "computer1", 40, 53, 0)

    def test_another_computer_without_pictures_than_the_one_that_is_gone(self):
        def viewer(*reports):
            seen = [{"event": kind, "name": name} for kind, name in reports]
            return types.SimpleNamespace(all=lambda *kinds: [each for each in seen
                                                             if each["event"] in kinds])
        faults.check_lost(viewer(("lost", "two"), ("lost", "one"), ("back", "two")), "one")
        for reports in ((), [("lost", "one"), ("back", "one")], [("lost", "one"), ("lost", "two")]):
            self.refused("expected one", faults.check_lost, viewer(*reports), "one")

    def test_only_a_link_that_is_too_narrow_must_lead_to_dropped_frames(self):
        scale = live.Scale(4, 640, 480, 30, 10, "specimen", 0)
        self.assertEqual([faults.must_drop(scale, megabits, 79_500) for megabits in (90, 20, 6)],
                         [False, True, True])


def refuse(folder, name, words):
    """Makes a program in the place of the system's that refuses what ends with some words, such as a
    kernel that has no such thing. Returns the PATH with it."""
    program = Path(folder) / name
    program.write_text(f"""#!/bin/sh
case "$*" in *"{words}") echo 'Error: not supported.' >&2; exit 2;; esac
exec {shutil.which(name, path=SYSTEM)} "$@"
""", encoding="ascii")
    program.chmod(0o755)
    return f"{folder}:{SYSTEM}"


class NetworkTest(unittest.TestCase):
    """Whether this computer can stand for several."""

    PROGRAM = ("from scaling import network; print(network.enter(['-c', \"print('inside')\"]))")

    def enter(self, **environment):
        """What a program prints that enters a network of its own."""
        return subprocess.run([sys.executable, "-B", "-c", self.PROGRAM], capture_output=True, text=True,
                              env={**os.environ, "PYTHONPATH": str(ROOT / "scripts"), **environment},
                              check=True).stdout

    def test_what_the_system_refuses_is_named(self):
        if self.enter() != "inside\n":
            self.skipTest(f"{LOOPBACK} ({self.enter().strip()})")
        for name, words in (("ip", "link add try0 type veth peer name try1"),
                            ("ip", "link add try2 type bridge"),
                            ("ip", "link set try0 master try2 up"),
                            ("tc", "qdisc replace dev try0 root tbf rate 1mbit burst 32kb latency 50ms"),
                            ("tc", "qdisc replace dev try0 root pfifo_fast"), ("unshare", "--net true")):
            with self.subTest(words), tempfile.TemporaryDirectory() as folder:
                self.assertEqual(self.enter(PATH=refuse(folder, name, words)),
                                 f"{name} {words}: Error: not supported.\n")
        with tempfile.TemporaryDirectory() as folder:
            self.assertRegex(self.enter(PATH=refuse(folder, "unshare", "")),
                             "^unshare --net.*: Error: not supported.\n$")


class EventsTest(unittest.TestCase):
    """What programs report, and programs that end."""

    def events(self, script):
        """The events of a shell."""
        process = subprocess.Popen(["sh", "-c", script], stdout=subprocess.PIPE)
        self.addCleanup(process.communicate)
        return events.Events("computer1", process)

    def test_a_program_that_has_ended_is_named_with_its_code_and_error(self):
        script = """echo '{"event": "error", "at": 1, "text": "no camera"}'; exit 3"""
        expected = "^computer1: ended with code 3: no camera, "
        with self.assertRaisesRegex(events.EventError, expected):
            self.events(script).wait("playing")
        ended = self.events(script)
        ended.process.wait()
        with self.assertRaisesRegex(events.EventError, expected):
            ended.check_running()

    def test_other_output_than_events_is_named(self):
        with self.assertRaisesRegex(events.EventError, "computer1: b'Illegal', expected an event"):
            self.events("echo Illegal").wait("playing")

    def test_an_event_from_before_is_not_taken(self):
        script = """for at in 1 5; do echo "{\\"event\\": \\"lost\\", \\"at\\": $at}"; done"""
        self.assertEqual(self.events(script).wait("lost", since=2)["at"], 5)


class DaemonTest(unittest.TestCase):
    """What chronyd and ptp4l write, and what they do not."""

    LINE = "echo 'ptp4l[24764.590]: master offset     -11845 s0 freq  -14439 path delay     15540'; "

    def measure(self, script):
        """Measures with a shell in the place of the program."""
        here = Path(self.enterContext(tempfile.TemporaryDirectory()))
        site = types.SimpleNamespace(folder=here, network=types.SimpleNamespace(start=self.start))

        def sh(_):
            return ([(types.SimpleNamespace(name=name), ["-c", script]) for name in ("server", "client")],
                    daemons.ptp4l_errors)
        with unittest.mock.patch.object(daemons, "PATIENCE", 0):
            return daemons.measure(site, sh, 0.1)

    def start(self, _, words, **more):
        """Starts a program that ends with the test."""
        process = subprocess.Popen(words, **more)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def test_errors_are_read_in_seconds(self):
        self.assertEqual(daemons.chronyd_errors(CHRONYD_LOG), [-4.188e-06, 8.857e-06])
        self.assertEqual(self.measure(self.LINE * 3 + "printf 'a master offset     1'; exec sleep 60"),
                         [-1.1845e-05] * 3)

    def test_a_program_that_measures_too_little_is_named(self):
        with self.assertRaisesRegex(live.Failure, "^sh: 1 errors were measured, expected at least 3; "
                                    "it printed: ptp4l.24764.590.: master offset"):
            self.measure(self.LINE + "exec sleep 60")

    def test_a_program_that_ends_is_named_with_its_code_and_output(self):
        with self.assertRaisesRegex(live.Failure, "^sh on server: ended with code 3: no such option$"):
            self.measure("echo no such option; exit 3")


class Recording:
    """A recording in the order in which pcdctl writes it, with small files instead of chunks."""

    def __init__(self, path):
        self.path, self.frames = path, 0
        for name in follow.SMALL:
            self.write(name, "first")
        self.write("0/0/.part/0/0/0", "the next chunk")
        self.write("0/0/.zarray.part", "the next number")
        self.add()

    def write(self, name, text):
        """Writes or replaces a file."""
        (self.path / name).parent.mkdir(parents=True, exist_ok=True)
        (self.path / name).write_text(text, encoding="ascii")

    def add(self):
        """One more frame."""
        self.write(f"0/0/{self.frames}/0/0/0", f"chunk {self.frames}")
        self.frames += 1
        self.write("OME/frames.csv", f"{self.frames} rows")
        self.write("0/0/.zarray", f'{{"shape": [{self.frames}, 1, 480, 640]}}')
        self.write(follow.XML, f'<OME xmlns="{follow.OME[1:-1]}"><M K="Frames">{self.frames}</M></OME>')

    def finish(self):
        """The end."""
        self.write("0/.zattrs", "with the time between frames")
        self.write(follow.XML, f'<OME xmlns="{follow.OME[1:-1]}"><M K="Recording wanted">3</M></OME>')

    @staticmethod
    def files(folder):
        """The content of all files in a folder that have their names."""
        return {str(path.relative_to(folder)): path.read_text(encoding="ascii")
                for path in folder.rglob("*") if path.is_file() and ".part" not in str(path)}


class FollowTest(unittest.TestCase):
    """A recording that is copied while it grows."""

    def setUp(self):
        self.here = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.enterContext(contextlib.redirect_stdout(io.StringIO()))
        self.enterContext(unittest.mock.patch.object(follow, "PAUSE", 0))

    def upload(self, *words, text=""):
        """In the place of rclone: copies to a folder, where all frames that are counted must be."""
        source, remote = map(Path, words[-2:])
        if text:
            for name in text.splitlines():
                (remote / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(source / name, remote / name)
        else:
            shutil.copytree(source, remote, dirs_exist_ok=True)
            (frames, _), = follow.shapes_of(
                {"0/0/.zarray": (remote / "0/0/.zarray").read_text(encoding="ascii")}).values()
            for frame in range(frames):
                self.assertTrue((remote / f"0/0/{frame}/0/0/0").exists(), f"{frame} of {frames}")

    def follow(self, remote, recording, moment):
        """Copies a recording that gets a frame and ends after a number of reads and copies.
        Returns how many there were."""
        steps = 0

        def step(function):
            def call(*arguments, **more):
                nonlocal steps
                result = function(*arguments, **more)
                steps += 1
                if steps == moment:
                    recording.add()
                    recording.finish()
                return result
            return call
        read = step(lambda path: path.read_bytes())
        with unittest.mock.patch.object(follow, "rclone", step(self.upload)), \
                unittest.mock.patch.object(follow, "read_file", read):
            follow.follow(recording.path, remote)
        return steps

    def test_a_recording_that_ends_at_any_moment_is_copied_whole(self):
        moment, steps = 1, 0
        for moment in range(1, 13):  # nine files are read first, then chunks and files are copied
            with self.subTest(moment):
                remote = self.here / f"remote{moment}"
                recording = Recording(self.here / f"run{moment}.ome.zarr")
                steps = self.follow(remote, recording, moment)
                self.assertEqual(Recording.files(remote), Recording.files(recording.path))
                self.assertGreater(steps, moment)
                self.assertFalse(list(remote.rglob("*.part")))

    def test_a_recording_that_never_ends_is_named(self):
        path = self.here / "run.ome.zarr"
        with self.assertRaisesRegex(follow.FollowError, "run.ome.zarr: not there for 0 s"):
            follow.follow(path, self.here / "remote", 0)
        recording = Recording(path)
        recording.add()
        with unittest.mock.patch.object(follow, "rclone", self.upload), \
                self.assertRaisesRegex(follow.FollowError, "nothing new for 0 s, .* so far: 2 frames"):
            follow.follow(path, self.here / "remote", 0)

    def use_rclone(self, script):
        """Runs a script in the place of rclone."""
        for name, value in (("RCLONE", ("sh", "-c", script)), ("PAUSES", (0, 0))):
            self.enterContext(unittest.mock.patch.object(follow, name, value))

    def test_a_store_that_is_gone_is_named(self):
        self.use_rclone(f"echo try >> {self.here}/tries; printf 'first\\ncannot copy\\nno such host\\n' >&2; "
                        "exit 3")
        with self.assertRaisesRegex(follow.FollowError,
                                    "^rclone to store:bucket failed 3 times: cannot copy no such host$"):
            follow.rclone("copy", "folder", "store:bucket")
        self.assertEqual((self.here / "tries").read_text(encoding="ascii"), "try\n" * 3)

    def test_a_copy_ends_at_its_first_error_although_others_would_follow(self):
        self.use_rclone("printf 'now ERROR : 7/0/0: Failed to copy\nno such host\n' >&2; exec sleep 1000")
        with self.assertRaisesRegex(follow.FollowError, "times: now ERROR : 7/0/0: Failed to copy no such host$"):
            follow.rclone("copy", "folder", "store:bucket")

    def test_a_store_that_comes_back_is_used_again(self):
        self.use_rclone(f"cat > {self.here}/got; mkdir {self.here}/once 2> /dev/null && exit 3; exit 0")
        follow.rclone("copy", "folder", "store:bucket", text="chunks")
        self.assertEqual((self.here / "got").read_text(encoding="ascii"), "chunks")


class GuideTest(PipelineTest):
    """The other command lines, and the tables."""

    def test_the_commands_work_as_they_are_pasted(self):
        blocks = [block for block in BLOCKS if "scripts/scale " not in block]
        self.assertEqual(len(blocks), 2)
        self.environment["PATH"] = f"{BUILD / 'bin'}:{self.environment['PATH']}"
        self.run_all(blocks[0])
        self.assertGreaterEqual(self.frames("wall.avi"), 8)
        shape, mean = self.run_all(blocks[1]).splitlines()[-2:]
        self.assertEqual(shape, "(20, 1, 960, 1280)")
        self.assertTrue(0 < float(mean) < 255, mean)

    def test_the_tables_are_those_of_the_script(self):
        for line in arithmetic.tables():
            self.assertIn(line + "\n", GUIDE)
        output = subprocess.run([ROOT / "scripts/scale", "hundred"], capture_output=True, text=True,
                                check=True).stdout
        self.assertEqual(output.splitlines(), arithmetic.tables())


if __name__ == "__main__":
    BUILD = Path(sys.argv.pop(1)).resolve()
    gstreamer_test.PLUGIN = BUILD / "lib/gstreamer-1.0"
    result = unittest.main(exit=False).result
    sys.exit(NOT_ALL if result.wasSuccessful() and result.skipped else not result.wasSuccessful())
