"""How far clocks that follow each other over a network are apart. All computers here have the same
clock, so every difference is an error of what follows it."""

import json
import statistics

from . import daemons
from .live import PERFECT, Failure, Site, python

PORT = 7000
LINES = (
    ("as it is", {}, {}),
    ("20 ms each way", {"delay": 20}, {"delay": 20}),
    ("20 ms each way, and 0 to 10 more", {"delay": 20, "jitter": 10}, {"delay": 20, "jitter": 10}),
    ("20 ms there, 40 back", {"delay": 20}, {"delay": 40}),
    ("20 ms each way, 5 % lost", {"delay": 20, "loss": 0.05}, {"delay": 20, "loss": 0.05}),
)
QUICK_LINES = (LINES[0], LINES[3], ("20 ms each way, 20 % lost", {"delay": 20, "loss": 0.2},
                                    {"delay": 20, "loss": 0.2}))
LEAST = 2  # seconds, in which a clock comes near the other one
SETTLED = 0.3  # the share of the measurements at the beginning that is left out


class Clocks(Site):
    """A computer with the clock, and one that follows it."""

    def __init__(self, build, folder, network, scale):
        super().__init__(build, folder, network, scale)
        self.server, self.client = self.computer("server"), self.computer("client")

    def gstreamer(self, seconds, lines):
        """GStreamer's own clock over each line; returns rows of name and errors."""
        server = self.start("server", self.server, python("clockserver", self.server.address, PORT))
        server.wait("ready")
        for number, (name, there, back) in enumerate(lines):
            plan = {"address": self.network.middle, "port": PORT + 1 + number,
                    "to": self.server.address, "to_port": PORT,
                    "there": {**PERFECT, **there}, "back": {**PERFECT, **back}}
            address, port = self.server.address, PORT
            if there:
                link = self.in_the_middle("link", python("link", json.dumps(plan)))
                link.wait("ready")
                address, port = plan["address"], plan["port"]
            client = self.start("client", self.client,
                                python("clockclient", address, port, seconds))
            yield f"GStreamer, {name}", client.wait("end", seconds + 60)["errors"]


def row(name, errors):
    """A row of the table. Raises Failure if nothing was measured."""
    settled = errors[int(SETTLED * len(errors)):]
    if not settled:
        raise Failure(f"{name}: no error was measured")
    sizes = sorted(abs(error) for error in settled)
    middle, most = statistics.median(settled), sizes[int(0.99 * len(sizes))]
    return f"| {name} | {1e6 * middle:.1f} | {1e6 * most:.1f} | {len(settled)} |"


def run(build, folder, network, scale, is_quick):
    """Measures all clocks, and prints a table in microseconds."""
    site = Clocks(build, folder, network, scale)
    print("| clock | error, median (us) | 99 % below | measurements |\n|---|---|---|---|")
    for name, errors in site.gstreamer(max(scale.seconds, LEAST), QUICK_LINES if is_quick else LINES):
        print(row(name, errors), flush=True)
    for name, daemon in (("NTP: chronyd", daemons.chronyd), ("PTP: ptp4l", daemons.ptp4l)):
        why_not = "namespaces are" if not network.is_real else \
            "" if daemons.find(daemon.__name__) else f"{daemon.__name__} is"
        if why_not:
            print(f"{name}: not measured, because {why_not} not available here")
            continue
        errors = daemons.measure(site, daemon, scale.seconds)
        print(row(f"{name}, the kernel's stamps, as it is", errors), flush=True)
