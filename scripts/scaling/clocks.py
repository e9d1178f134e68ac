"""How far clocks that follow each other over a network are apart. All computers here have the same
clock, so every difference is an error of what follows it."""

import json
import re
import shutil
import statistics
import subprocess
import time

from .live import PERFECT, Failure, Site, python

PORT = 7000
LINES = (
    ("as it is", {}, {}),
    ("20 ms each way", {"delay": 20}, {"delay": 20}),
    ("20 ms each way, and 0 to 10 more", {"delay": 20, "jitter": 10}, {"delay": 20, "jitter": 10}),
    ("20 ms there, 40 back", {"delay": 20}, {"delay": 40}),
    ("20 ms each way, 5 % lost", {"delay": 20, "loss": 0.05}, {"delay": 20, "loss": 0.05}),
)
POLL = -4  # chrony and ptp4l: as a power of two seconds
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

    def chrony(self, seconds):
        """The offsets that chronyd measures and would correct, without setting any clock."""
        common = ("cmdport 0\npidfile {folder}/{name}.pid\nbindcmdaddress {folder}/{name}.sock\n"
                  "port 123\n")
        texts = {"server": "local stratum 1\nallow\n",
                 "client": f"server {self.server.address} minpoll {POLL} maxpoll {POLL} xleave\n"
                           f"log measurements\nlogdir {self.folder}\n"}
        for computer in (self.server, self.client):
            name = computer.name
            path = self.folder / f"chrony-{name}.conf"
            path.write_text(common.format(folder=self.folder, name=name) + texts[name],
                            encoding="ascii")
            self.network.start(computer, ["chronyd", "-d", "-x", "-u", "root", "-f", path],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(seconds)
        rows = (self.folder / "measurements.log").read_text(encoding="ascii").splitlines()
        return [float(row.split()[11]) for row in rows if re.match(r"\d{4}-", row)]

    def ptp4l(self, seconds):
        """The offsets that ptp4l measures with software stamps, without setting any clock."""
        outputs = []
        for computer, more in ((self.server, ["--priority1=1"]), (self.client, ["-s"])):
            words = ["ptp4l", "-i", "eth0", "-2", "-S", "-m", "-q", "--free_running=1",
                     f"--logSyncInterval={POLL}", f"--logMinDelayReqInterval={POLL}",
                     "--summary_interval=-4", "--announceReceiptTimeout=2", "--logAnnounceInterval=-1",
                     f"--uds_address={self.folder}/ptp-{computer.name}", *more]
            path = self.folder / f"ptp-{computer.name}.log"
            outputs.append(path)
            with open(path, "wb") as file:
                self.network.start(computer, words, stdout=file, stderr=subprocess.STDOUT)
        time.sleep(seconds)
        text = outputs[1].read_text(encoding="utf-8")
        return [float(value) * 1e-9 for value in re.findall(r"master offset +(-?\d+)", text)]


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
    lines = (LINES[0], LINES[3]) if is_quick else LINES
    for name, errors in site.gstreamer(max(scale.seconds, LEAST), lines):
        print(row(name, errors), flush=True)
    for name, program in (("NTP: chronyd", "chronyd"), ("PTP: ptp4l", "ptp4l")):
        if is_quick or not network.is_real or not shutil.which(program):
            print(f"{name}: not measured here")
            continue
        errors = site.chrony(scale.seconds) if program == "chronyd" else site.ptp4l(scale.seconds)
        print(row(f"{name}, software stamps, as it is", errors), flush=True)
