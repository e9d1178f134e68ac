#!/usr/bin/python3
"""Runs every command of docs/gstreamer.md, and those of README.md for GStreamer, as it is written there, and what can
fail around them. What is shown is seen on a display in memory.

Usage: gstreamer_test.py PLUGIN: the folder with libgstpcd.so, in its build tree.
"""

import contextlib
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

import guide_blocks

ROOT = guide_blocks.ROOT
README_LINE = re.compile(r"^With a display, `(gst-launch-1\.0 .*?)`", re.MULTILINE)
SECONDS = 120  # that a command may take
PLUGIN = None
LOST = re.compile(r"CRITICAL|GStreamer-WARNING|GLib-GObject")  # a wrong use of the libraries


class PipelineTest(unittest.TestCase):
    """A folder and an environment with the plugin, and without any cache of plugins."""

    registry = None

    @classmethod
    def setUpClass(cls):
        cls.registry = Path(cls.enterClassContext(tempfile.TemporaryDirectory())) / "registry.bin"

    def setUp(self):
        self.here = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.environment = {**os.environ, "GST_PLUGIN_PATH": str(PLUGIN),
                            "GST_REGISTRY": str(self.registry), "LC_ALL": "C.UTF-8"}
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "PCD_GST_SDK", "PCD_PLUGIN_PATH"):
            self.environment.pop(name, None)

    def start(self, command, **more):
        """Starts a command of a shell, with its output in a pipe."""
        process = subprocess.Popen(["bash", "-c", command], cwd=self.here, text=True,
                                   env={**self.environment, **more}, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT, start_new_session=True)
        self.addCleanup(self.end, process)
        return process

    @staticmethod
    def end(process):
        """Ends the shell and what it started, which can outlive it."""
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)
        process.communicate()

    def run_all(self, command, code=0, **more):
        """Runs a command to its end, checks its code, and returns what it printed."""
        process = self.start(command, **more)
        output, _ = process.communicate(timeout=SECONDS)
        self.assertEqual(process.returncode, code, f"{command}\n{output}")
        self.assertIsNone(LOST.search(output), output)
        return output

    def wait_for(self, condition, what):
        """Waits until a condition is true."""
        end = time.monotonic() + SECONDS
        while not condition():
            self.assertLess(time.monotonic(), end, f"{what} did not come")
            time.sleep(0.02)

    def frames(self, path):
        """The number of frames of a film, decoded."""
        output = self.run_all(f"gst-launch-1.0 -v filesrc location={path} ! decodebin "
                              "! fakesink silent=false")
        return len(re.findall(r"last-message = chain ", output))

    def write_scene(self, faults=(), fps=60, size=(320, 240)):
        """A scene with one small camera; returns its file."""
        camera = {"id": "a", "model": "Simulated-A", "serial": "A1",
                  "flags": ["USB30"], "speedLevels": 1, "source": {"kind": "patches"},
                  "resolutions": [{"width": size[0], "height": size[1], "fps": fps}]}
        path = self.here / "scene.json"
        path.write_text(json.dumps({"cameras": [camera], "faults": list(faults)}))
        return path


class GuideTest(PipelineTest):
    """The commands of the guides, in a folder like the root of the tree, with nothing but what they set themselves."""

    def setUp(self):
        super().setUp()
        guide_blocks.make_tree(self.here, PLUGIN.parents[1])
        del self.environment["GST_PLUGIN_PATH"]
        self.environment["DISPLAY"] = self.start_display()

    def start_display(self):
        """Starts an X server without a screen; returns its name."""
        numbers, number = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(number), "-screen", "0", "1920x1280x24", "-noreset",
                                   "-nolisten", "tcp"], pass_fds=[number], stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.terminate)
        os.close(number)
        with open(numbers, encoding="ascii") as file:
            return f":{file.readline().strip()}"

    def colours_on_display(self):
        """The number of colours that the display shows, in one of sixteen pixels."""
        self.run_all("gst-launch-1.0 -q ximagesrc num-buffers=1 use-damage=false ! video/x-raw,format=BGRx "
                     "! filesink location=screen")
        pixels = (self.here / "screen").read_bytes()
        return len({pixels[at:at + 3] for at in range(0, len(pixels), 64)})

    def test_every_block_runs_and_writes_what_it_says(self):
        blocks = [block.text for block in guide_blocks.blocks("docs/gstreamer.md", language="sh")]
        self.assertGreater(len(blocks), 11)
        setting = ""
        for block in blocks:
            with self.subTest(block.split("\n")[0][:60]):
                before = set(self.here.iterdir())
                output = self.run_all(f"set -e\n{setting}{block}")
                self.check_files(block, set(self.here.iterdir()) - before)
                for command, expected in (("gst-device-monitor", "pcdsrc camera=Simulated-1MM-SIM01M0001"),
                                          ("gst-inspect-1.0 pcdsrc", "  on-unplug "),
                                          ("autovideosink", "Got EOS")):
                    if command in block:
                        self.assertIn(expected, output)
            # The next ones are pasted into the same shell.
            setting += "".join(f"{line}\n" for line in block.splitlines() if line.startswith("export "))

    def test_the_lines_of_the_readme_take_a_still(self):
        (block,) = guide_blocks.blocks("README.md", heading="In GStreamer")
        self.run_all(f"set -e\n{block.text}")
        self.assertEqual((self.here / "out/still.jpg").read_bytes()[:3], b"\xff\xd8\xff")

    def test_the_line_of_the_readme_for_a_display_shows_the_live_picture(self):
        (line,) = README_LINE.findall((ROOT / "README.md").read_text(encoding="utf-8"))
        self.environment["GST_PLUGIN_PATH"] = str(PLUGIN)
        player = self.start(f"exec {line}")
        self.wait_for(lambda: player.poll() is not None or self.colours_on_display() > 1000, "the picture")
        self.assertIsNone(player.poll(), "it ends when it is interrupted")
        player.send_signal(signal.SIGINT)
        output, _ = player.communicate(timeout=SECONDS)
        self.assertEqual(player.returncode, 0, output)

    def check_files(self, block, made):
        """Checks the files that the sinks of a block were to write."""
        names = {path.name for path in made}
        for location in re.findall(r"location=(\S+)", block):
            form = re.compile(re.escape(location).replace("%d", r"\d+") + "$")
            found = [path for path in made if form.match(path.name)]
            self.assertTrue(found, f"{location}: only {names} were written")
            for path in found:
                if path.suffix == ".jpg":
                    self.assertEqual(path.read_bytes()[:2], b"\xff\xd8", path)
                else:
                    self.assertGreaterEqual(self.frames(path.name), 8, path)


class FailureTest(PipelineTest):
    """What fails is reported, or does not matter."""

    SOURCE = "gst-launch-1.0 pcdsrc sdk=sim camera=1 mode=1"

    def test_a_full_disk_is_an_error(self):
        output = self.run_all(f"{self.SOURCE} ! filesink location=/dev/full", code=1)
        self.assertIn("No space left", output)

    def test_a_killed_reader_of_shared_memory_does_not_end_the_sender(self):
        sender = self.start(f"exec {self.SOURCE} ! shmsink socket-path=s shm-size=8000000 "
                            "wait-for-connection=true")
        self.wait_for((self.here / "s").exists, "the socket")
        read = ("gst-launch-1.0 shmsrc socket-path=s is-live=true {} ! video/x-raw,format=GRAY8,"
                "width=640,height=480,framerate=0/1 ! jpegenc ! multifilesink location={}%d.jpg")
        reader = self.start("exec " + read.format("", "first"))
        self.wait_for((self.here / "first3.jpg").exists, "a frame")
        reader.kill()
        reader.wait()
        self.run_all(read.format("num-buffers=3", "second"))
        self.assertTrue((self.here / "second2.jpg").exists())
        self.assertIsNone(sender.poll())
        sender.send_signal(signal.SIGINT)
        sender.wait(SECONDS)

    def test_rtp_without_a_receiver_goes_on(self):
        self.run_all(f"{self.SOURCE} num-buffers=20 ! videoconvert ! video/x-raw,format=I420 "
                     "! jpegenc ! rtpjpegpay ! udpsink host=127.0.0.1 port=5009")

    def test_a_lost_connection_is_an_error(self):
        receiver = self.start("exec gst-launch-1.0 tcpserversrc host=127.0.0.1 port=5010 "
                              "! filesink buffer-mode=unbuffered location=received")
        sender = None
        for _ in range(100):  # until the receiver listens
            sender = self.start(f"exec {self.SOURCE} ! jpegenc ! tcpclientsink host=127.0.0.1 port=5010")
            self.wait_for(lambda: sender.poll() is not None or self.has_received(),
                          "the connection")
            if sender.poll() is None:
                break
        receiver.kill()
        receiver.wait()
        output, _ = sender.communicate(timeout=SECONDS)
        self.assertEqual(sender.returncode, 1, output)
        self.assertRegex(output, "Broken pipe|reset by peer|Error while sending")

    def has_received(self):
        """True once the receiver has written something."""
        path = self.here / "received"
        return path.exists() and path.stat().st_size > 0

    def test_an_unplugged_camera_is_an_error_or_the_end(self):
        scene = self.write_scene([{"do": "unplug", "camera": "a", "afterFrames": 5}])
        command = f"gst-launch-1.0 pcdsrc sdk=sim scene={scene} on-unplug={{}} ! fakesink"
        output = self.run_all(command.format("error"), code=1)
        self.assertIn("camera Simulated-A-A1 was unplugged", output)
        self.assertIn("Got EOS", self.run_all(command.format("eos")))

    def test_waiting_ends_when_the_camera_is_plugged_in_again(self):
        scene = self.write_scene([{"do": "unplug", "camera": "a", "afterFrames": 5},
                                  {"do": "plug", "camera": "a", "atMs": 2500}])
        output = self.run_all(f"gst-launch-1.0 -m pcdsrc sdk=sim scene={scene} on-unplug=wait "
                              "num-buffers=20 ! fakesink")
        self.assertIn("pcdsrc-unplugged", output)
        self.assertIn("pcdsrc-plugged", output)

    def test_an_sdk_that_cannot_be_loaded_is_named(self):
        output = self.run_all("gst-launch-1.0 pcdsrc sdk=/nowhere/sdk.so ! fakesink", code=255)
        self.assertIn("/nowhere/sdk.so", output)

    def test_an_interrupted_pipeline_ends(self):
        process = self.start(f"exec {self.SOURCE} ! jpegenc ! multifilesink location=f%d.jpg")
        self.wait_for((self.here / "f2.jpg").exists, "a frame")
        process.send_signal(signal.SIGINT)
        output, _ = process.communicate(timeout=SECONDS)
        self.assertIn("Freeing pipeline", output)


class PluginTest(PipelineTest):
    """The plugin as GStreamer's own tools see it."""

    def test_the_scanner_finds_both_features_and_loads_no_sdk(self):
        journal = self.here / "journal"
        output = self.run_all("gst-inspect-1.0 pcd", GST_REGISTRY=str(self.here / "new.bin"),
                              TOUPCAM_SIM_JOURNAL=str(journal), PCD_GST_SDK="sim")
        self.assertIn("pcdsrc", output)
        self.assertIn("pcddeviceprovider", output)
        self.assertFalse(journal.exists(), "cameras were searched")
        blacklist = self.run_all("gst-inspect-1.0 -b", GST_REGISTRY=str(self.here / "new.bin"))
        self.assertNotIn("gstpcd", blacklist)

    def test_the_element_is_described(self):
        output = self.run_all("gst-inspect-1.0 pcdsrc")
        for name in ("camera", "mode", "settings", "trigger", "on-unplug", "queue-size", "dropped",
                     "stats"):
            self.assertRegex(output, rf"\n  {name} +: \S")

    def test_files_of_series_are_as_many_as_frames(self):
        self.run_all("gst-launch-1.0 pcdsrc sdk=sim camera=1 mode=1 num-buffers=7 ! jpegenc "
                     "! multifilesink location=f%d.jpg")
        self.assertEqual(len(list(self.here.glob("f*.jpg"))), 7)

    def test_nothing_leaks(self):
        for command, done in (
                ("gst-launch-1.0 pcdsrc sdk=sim camera=1 mode=1 num-buffers=5 ! jpegenc ! fakesink",
                 "Got EOS from element"),
                ("gst-device-monitor-1.0 Video/Source", "Simulated-1MM")):
            with self.subTest(command):
                output = self.run_all(command, GST_TRACERS="leaks", GST_DEBUG="GST_TRACER:7",
                                      PCD_GST_SDK="sim", GST_DEBUG_NO_COLOR="1")
                self.assertIn(done, output)
                self.assertIn("object-alive.class", output)  # the tracer was there
                self.assertNotRegex(output, r"object-alive, type-name=\(string\)[A-Za-z]")


if __name__ == "__main__":
    PLUGIN = Path(sys.argv.pop(1)).resolve()
    unittest.main()
