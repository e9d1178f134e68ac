"""chronyd and ptp4l on a computer with the clock and on one that follows it: what they measure. They
set no clock. They are taken from where scripts/dependencies unpacks them, else from the system.
"""

import os
import re
import shutil
import subprocess
import time
from pathlib import Path

from .live import Failure

PROGRAMS = Path(__file__).resolve().parents[2] / "build/programs"
POLL = -4  # as a power of two seconds
LEAST = 3  # measurements
PATIENCE = 60  # seconds, for these
CHRONY_COMMON = """cmdport 0
pidfile {folder}/chronyd-{name}.pid
bindcmdaddress {folder}/chronyd-{name}.sock
port 123
"""
CHRONY_SERVER = "local stratum 1\nallow\n"
CHRONY_CLIENT = f"""server {{server}} minpoll {POLL} maxpoll {POLL} xleave
log measurements
logdir {{folder}}
"""
# The last ones decide how soon it begins, and that it writes each second what it has measured.
PTP = ("-i", "eth0", "-2", "-S", "-m", "-q", "--free_running=1", f"--logSyncInterval={POLL}",
       f"--logMinDelayReqInterval={POLL}", "--announceReceiptTimeout=3", "--logAnnounceInterval=-3",
       "--summary_interval=-4", "--freq_est_interval=0")


def find(name):
    """The path of a program; None if it is not there."""
    unpacked = [str(path) for path in PROGRAMS.glob("*/usr/sbin")]
    return shutil.which(name, path=os.pathsep.join([*unpacked, os.environ["PATH"]]))


def chronyd(site):
    """The words for the server and the client, and a function that reads the client's errors."""
    words = []
    for computer, text in ((site.server, CHRONY_SERVER), (site.client, CHRONY_CLIENT)):
        path = site.folder / f"chronyd-{computer.name}.conf"
        path.write_text((CHRONY_COMMON + text).format(
            folder=site.folder, name=computer.name, server=site.server.address), encoding="ascii")
        words.append((computer, ["-d", "-x", "-u", "root", "-f", path]))
    return words, lambda _: chronyd_errors(read(site.folder / "measurements.log"))


def chronyd_errors(text):
    """The offsets in a log of measurements, in seconds."""
    return [float(line.split()[11]) for line in text.splitlines() if re.match(r"\d{4}-", line)]


def ptp4l(site):
    """The same for PTP, with stamps by the kernel."""
    return [(computer, [*PTP, f"--uds_address={site.folder}/ptp-{computer.name}", *more])
            for computer, more in ((site.server, ["--priority1=1"]), (site.client, ["-s"]))], ptp4l_errors


def ptp4l_errors(text):
    """The offsets in what ptp4l prints, in seconds."""
    return [float(value) / 1e9 for value in re.findall(r"master offset +(-?\d+)", text)]


def read(path):
    """The lines that a file has by now."""
    return path.read_text(encoding="utf-8").rpartition("\n")[0] if path.exists() else ""


def measure(site, daemon, seconds):
    """The errors that a program measures in some seconds, and until there are enough of them. Raises
    Failure if there are not, or if the program ends."""
    name = daemon.__name__
    words, errors_of = daemon(site)
    running = []
    for computer, arguments in words:
        output = site.folder / f"{name}-{computer.name}.txt"
        with open(output, "wb") as file:
            process = site.network.start(computer, [find(name), *arguments], stdout=file,
                                         stderr=subprocess.STDOUT)
        running.append((computer, process, output))
    end = time.monotonic() + seconds
    errors = []
    while time.monotonic() < end or len(errors) < LEAST:
        if time.monotonic() > end + PATIENCE:
            raise Failure(f"{name}: {len(errors)} errors were measured, expected at least {LEAST}; "
                          f"it printed: {read(running[-1][2])[-500:]}")
        time.sleep(0.1)
        for computer, process, output in running:
            if process.poll() is not None:
                raise Failure(f"{name} on {computer.name}: ended with code {process.returncode}: "
                              f"{read(output)[-500:].strip()}")
        errors = errors_of(read(running[-1][2]))
    for _, process, _ in running:
        process.terminate()
        process.wait(30)
    return errors
