#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Kills the receiver of the SRT pipelines of docs/gstreamer.md, and starts another one.

Usage: srt_test.py BUILD. It waits for the time after which SRT takes a peer for lost, and computes little.
"""

import re
import shlex
import signal
import socket
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True

import gstreamer_test  # noqa: E402  (the paths come first)
import guide_blocks  # noqa: E402
from scaling import faults, live  # noqa: E402
from scaling.events import Events  # noqa: E402
from scaling.machine import resident_megabytes  # noqa: E402

BUILD = None
WAITING = 4  # frames: queue-size by default
WIDTH, HEIGHT, FPS = 640, 480, 60


def guide_pipelines():
    """The receiver's and the sender's pipeline of the guide."""
    (block,) = [block.text for block in guide_blocks.blocks("docs/gstreamer.md", language="sh")
                if "srtsink" in block.text]
    commands = re.findall(r"^gst-launch-1.0 (.*?)(?: &)?$", block.replace("\\\n", " "), re.MULTILINE)
    return [" ".join(shlex.split(command)) for command in commands]


def free_port():
    """A port of UDP that nobody has."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


class KilledReceiverTest(gstreamer_test.PipelineTest):
    """The sender goes on, says what happens, and keeps nothing."""

    def setUp(self):
        super().setUp()
        receiver, sender = guide_pipelines()
        self.port = free_port()
        self.receiver, self.sender = (text.replace("7001", str(self.port)) for text in (receiver, sender))

    def receive(self, name):
        """Starts the receiver of the guide, which decodes and writes pictures instead of a film."""
        pipeline = re.sub("! matroskamux .*", f"! vp8dec ! jpegenc ! multifilesink location={name}%d.jpg",
                          self.receiver)
        self.assertNotIn("matroskamux", pipeline)
        receiver = self.start(f"exec gst-launch-1.0 {pipeline}")
        bound = f":{self.port:04X} 00000000:0000 "
        self.wait_for(lambda: bound in Path("/proc/net/udp").read_text(encoding="ascii"), "its port")
        return receiver

    def send(self):
        """Starts the sender of the guide, without an end and with a camera of a known size."""
        scene = self.write_scene(fps=FPS, size=(WIDTH, HEIGHT))
        changes = {"pcdsrc sdk=sim camera=1 mode=1 num-buffers=50":
                   f"pcdsrc name=camera sdk=sim scene={scene}",
                   "! vp8enc ": "! vp8enc cpu-used=8 ",
                   "! rtpvp8pay": "! identity name=encoded silent=true ! rtpvp8pay"}
        text = self.sender
        for old, new in changes.items():
            self.assertIn(old, text)
            text = text.replace(old, new)
        process = subprocess.Popen(live.python("sender", "sender", text), stdout=subprocess.PIPE,
                                   env={**self.environment, **live.environment(BUILD)}, cwd=self.here)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        events = Events("sender", process)
        events.wait("playing")
        return events

    def wait_for_pictures(self, name, sender):
        """Waits until a receiver has shown some, while the sender runs."""
        def is_there():
            sender.check_running()
            return (self.here / f"{name}5.jpg").exists()
        self.wait_for(is_there, f"pictures of the {name} receiver")

    def test_the_sender_names_it_counts_what_is_lost_and_takes_the_next_one(self):
        first = self.receive("first")
        sender = self.send()
        self.wait_for_pictures("first", sender)
        before = resident_megabytes(sender.process.pid)
        first.kill()
        first.wait()
        lost = sender.wait("warning")
        again = sender.wait("warning")
        for warning in (lost, again):
            self.assertRegex(warning["text"], "^srtsink0: Error on SRT socket: .*Trying to reconnect$")
        after = resident_megabytes(sender.process.pid)
        unsent = FPS * (again["at"] - lost["at"]) * WIDTH * HEIGHT * 3e-6
        self.assertGreater(unsent, 2 * faults.NOISE)  # else a sender that keeps all would not be noticed
        faults.check_memory("sender", before, after, unsent)
        self.receive("second")
        self.wait_for_pictures("second", sender)
        sender.process.send_signal(signal.SIGINT)
        end = sender.wait("end")
        counts = end["counts"]
        self.assertEqual(counts["arrived"], counts["delivered"] + counts["dropped"] + counts["discarded"]
                         + counts["waiting"], counts)
        self.assertGreater(counts["dropped"], FPS)  # a second of three, on a busy computer
        reported = sender.all("dropped")[-1]["dropped"]  # some may have followed the last picture
        self.assertTrue(FPS < reported <= counts["dropped"], f"{reported}: {counts}")
        self.assertLessEqual(counts["waiting"], WAITING)
        self.assertEqual(end["errors"], [])


if __name__ == "__main__":
    BUILD = Path(sys.argv.pop(1)).resolve()
    gstreamer_test.PLUGIN = BUILD / "lib/gstreamer-1.0"
    unittest.main()
