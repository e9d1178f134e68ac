"""Live pictures of cameras on several computers, side by side on another one: what they cost, how late
they are, and what happens when the network is bad."""

import json
import os
import signal
import statistics
import subprocess
import sys
import time
from dataclasses import dataclass
from pathlib import Path

from .events import Events
from .machine import processor_seconds, resident_megabytes
from .ways import NOTHING, WAYS

FIRST_PORT = 5100
WALL = 320, 240  # the size of each camera in the viewer's picture
SCRIPTS = Path(__file__).resolve().parents[1]
PERFECT = {"delay": 0, "jitter": 0, "loss": 0}


class Failure(Exception):
    """Something that must hold does not."""


@dataclass
class Scale:
    """How much is measured."""

    computers: int
    width: int
    height: int
    fps: int
    seconds: float
    source: str
    bits: int  # per second that VP8 is given
    latency: int = 200  # milliseconds that the receivers of RTP and SRT wait for what was lost
    picture: str = ""
    warm_up: float = 1.0


def environment(build):
    """Where the programs find each other and the plugin."""
    return {**os.environ, "PYTHONPATH": str(SCRIPTS), "PYTHONDONTWRITEBYTECODE": "1",
            "GST_PLUGIN_PATH": str(build / "lib/gstreamer-1.0")}


def python(module, *arguments):
    """The words that start one of our programs."""
    return [sys.executable, "-m", f"scaling.{module}", *arguments]


@dataclass
class Shown:
    """What was measured of one camera, or the mean of several."""

    name: str
    sent: float  # pictures a second
    shown: float
    bytes_each: float
    megabits: float  # on the wire, None where that is not measured
    sending: float  # processor time, as a share of one core
    viewing: float  # of the viewer, divided by the cameras
    late: float  # milliseconds: the median, and what one of a hundred exceeds
    latest: float
    dropped: int  # by pcdsrc
    memory: float  # megabytes of the sender


class Site:
    """The computers of an experiment, and what is needed to start programs on them."""

    def __init__(self, build, folder, network, scale):
        self.build, self.folder, self.network, self.scale = build, Path(folder), network, scale

    def computer(self, name):
        """A computer, which experiments before this one may have had."""
        for computer in self.network.computers:
            if computer.name == name:
                return computer
        return self.network.add(name)

    def start(self, name, computer, words):
        """Starts a program that reports events."""
        process = self.network.start(computer, words, env=environment(self.build),
                                     stdout=subprocess.PIPE)
        return Events(name, process)

    def in_the_middle(self, name, words):
        """Starts a program that reports events where the switch is."""
        process = self.network.start_here(words, env=environment(self.build), stdout=subprocess.PIPE)
        return Events(name, process)

    def scene(self, number):
        """A scene with one camera, which no other computer has."""
        path = self.folder / f"scene{number}.json"
        camera = {"id": f"camera-{number}", "model": "Simulated-Remote", "bits": 8, "flags": ["MONO"],
                  "serial": f"R{number:03}", "source": {"kind": self.scale.source},
                  "resolutions": [{"width": self.scale.width, "height": self.scale.height,
                                   "fps": self.scale.fps}]}
        path.write_text(json.dumps({"seed": number + 1, "cameras": [camera]}), encoding="utf-8")
        return path

    def measure(self, running, seconds):
        """Lets programs run for a while; returns when that was, their shares of a core, and the
        megabits a second that their computers sent. Raises EventError if one has ended."""
        def costs():
            for events in running.values():
                events.check_running()
            return {name: (processor_seconds(events.process.pid),
                           self.network.bytes_from(self.computer(name)))
                    for name, events in running.items()}
        start, before = time.monotonic(), costs()
        time.sleep(seconds)
        end, after = time.monotonic(), costs()
        shares = {name: (after[name][0] - before[name][0]) / (end - start) for name in after}
        sent = {name: None if value is None else 8e-6 * (value - before[name][1]) / (end - start)
                for name, (_, value) in after.items()}
        return (start, end), shares, sent

    def camera_alone(self):
        """What a camera costs without encoder and network, as a share of one core."""
        text = NOTHING.format(scene=self.scene(0))
        sender = self.start("computer1", self.computer("computer1"),
                            python("sender", "computer1", text))
        sender.wait("playing")
        time.sleep(self.scale.warm_up)
        _, shares, _ = self.measure({"computer1": sender}, self.scale.seconds)
        sender.process.send_signal(signal.SIGINT)
        sender.wait("end")
        sender.process.wait(30)
        return shares["computer1"]


@dataclass
class Lost:
    """Packets that bad lines took, and those that they lost."""

    lost: int
    taken: int


class Experiment(Site):
    """One viewer and some computers with a camera each, connected in one way."""

    def __init__(self, build, folder, network, scale, way, line=None, back=None):
        super().__init__(build, folder, network, scale)
        self.way = WAYS[way]
        self.line, self.back = line, back or line
        self.senders, self.playing, self.links = {}, {}, []
        self.packets = Lost(0, 0)
        self.viewer_at = self.computer("viewer")
        self.cameras = [self.computer(f"computer{n + 1}") for n in range(scale.computers)]
        for number, computer in enumerate(self.cameras if self.way.is_called else ()):
            self.start_sender(number, computer, computer.address, FIRST_PORT + number)
        targets = [self.line_to(self.cameras[number] if self.way.is_called else self.viewer_at,
                                FIRST_PORT + number) for number in range(scale.computers)]
        self.viewer = self.start_viewer(targets)
        for number, computer in enumerate(() if self.way.is_called else self.cameras):
            self.start_sender(number, computer, *targets[number])
        for computer in self.cameras:
            self.viewer.wait("first", name=computer.name)

    def start_viewer(self, targets):
        """Starts the viewer, which calls the targets or waits at its own ports."""
        width, height = WALL
        streams = []
        for number, computer in enumerate(self.cameras):
            host, port = targets[number] if self.way.is_called else ("", FIRST_PORT + number)
            streams.append({"name": computer.name,
                            "text": self.way.receiver(width, height, host=host, port=port,
                                                      latency=self.scale.latency)})
        plan = {"streams": streams, "width": width, "height": height,
                "picture": self.scale.picture}
        viewer = self.start("viewer", self.viewer_at, python("viewer", json.dumps(plan)))
        viewer.wait("ready")
        return viewer

    def start_sender(self, number, computer, host, port):
        """Starts a camera, which sends to an address or waits at a port."""
        text = self.way.sender(self.scene(number), self.scale.bits, host=host, port=port,
                               latency=self.scale.latency)
        sender = self.start(computer.name, computer, python("sender", computer.name, text))
        self.senders[computer.name] = sender
        self.playing[computer.name] = sender.wait("playing")

    def line_to(self, computer, port):
        """Where a port of a computer is reached: there, or where a bad line to it begins."""
        if not self.line:
            return computer.address, port
        plan = {"address": self.network.middle, "port": port + 1000, "to": computer.address,
                "to_port": port,
                "there": {**PERFECT, **self.line}, "back": {**PERFECT, **self.back}}
        link = self.in_the_middle("link", python("link", json.dumps(plan)))
        link.wait("ready")
        self.links.append(link)
        return plan["address"], plan["port"]

    def finish(self, gone=""):
        """Ends the programs, except a sender that is gone; returns what the others report."""
        ends = {}
        for name, events in (("viewer", self.viewer), *self.senders.items()):  # it must not miss them
            if name == gone:
                continue
            if events.process.poll() is None:
                events.process.send_signal(signal.SIGINT)
            ends[name] = events.wait("end")
            events.process.wait(30)
        for link in self.links:
            link.process.send_signal(signal.SIGINT)
        for link in self.links:
            end = link.wait("end")
            self.packets.taken += end["packets"]
            self.packets.lost += end["lost"]
            link.process.wait(30)
        return ends

    def figures(self, seconds):
        """Measures, ends everything, and returns what was seen of each camera. The packets that
        bad lines lost are counted then."""
        time.sleep(self.scale.warm_up)
        span, shares, sent = self.measure({**self.senders, "viewer": self.viewer}, seconds)
        for link in self.links:
            link.check_running()
        memory = {name: resident_megabytes(events.process.pid)
                  for name, events in self.senders.items()}
        ends = self.finish()
        rows = []
        for computer in self.cameras:
            name, end = computer.name, ends[computer.name]
            base = self.playing[name]["base_time"]
            times = [(base + taken, shown) for taken, shown in ends["viewer"]["streams"][name]
                     if span[0] <= shown <= span[1]]
            late = sorted(1000 * (shown - taken) for taken, shown in times) or [float("nan")]
            length = span[1] - self.playing[name]["at"] + 1e-9
            rows.append(Shown(
                name, end["pictures"] / max(end["at"] - self.playing[name]["at"], length),
                len(times) / (span[1] - span[0]), end["bytes"] / max(end["pictures"], 1),
                sent[name], shares[name], shares["viewer"] / len(self.cameras),
                statistics.median(late), late[int(0.99 * len(late))], end["dropped"],
                memory[name]))
        return rows


def heading():
    """The first lines of the table."""
    return ("| way | line | pictures/s sent | shown | kB each | Mbit/s | packets lost "
            "| core of sender | of viewer | ms late, median | 99 % | dropped | MB of sender |\n"
            + "|---" * 13 + "|")


def line_of(way, line, rows, packets=Lost(0, 0)):
    """A row: the mean of the cameras; the latest of all. Lines that lose packets count them."""
    def mean(field):
        return statistics.fmean(getattr(row, field) for row in rows)
    megabits = "" if rows[0].megabits is None else f"{mean('megabits'):.2f}"
    lost = f"{packets.lost} of {packets.taken}" if packets.taken else ""
    return (f"| {way} | {line} | {mean('sent'):.1f} | {mean('shown'):.1f} "
            f"| {mean('bytes_each') / 1000:.1f} | {megabits} | {lost} | {mean('sending'):.2f} "
            f"| {mean('viewing'):.2f} | {mean('late'):.1f} | {max(row.latest for row in rows):.1f} "
            f"| {sum(row.dropped for row in rows)} | {max(row.memory for row in rows):.0f} |")
