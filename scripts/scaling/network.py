"""Several computers on this one: network namespaces with a switch between them where the system
allows that, else addresses of the loopback interface.
"""

import ctypes
import json
import os
import subprocess
import sys
import time
from dataclasses import dataclass, field

INSIDE = "PCD_SCALE_NETWORK"  # set in the process that has a network of its own
NAMESPACES, LOOPBACK = "namespaces", "loopback"
SECONDS = 10  # that a command for the network may take
NARROW = "tbf rate {megabits}mbit burst 32kb latency 50ms"
WIDE = "pfifo_fast"
# All that a network needs of the system.
TRIALS = ("ip link set lo up", "ip link add try0 type veth peer name try1",
          "ip link add try2 type bridge", "ip link set try0 master try2 up",
          f"tc qdisc replace dev try0 root {NARROW.format(megabits=1)}",
          f"tc qdisc replace dev try0 root {WIDE}", "unshare --net true")
REFUSED = 100  # the exit code if the first of them is refused
PR_SET_PDEATHSIG, SIGKILL = 1, 9


class NetworkError(Exception):
    """The network cannot be made; the text says why."""


def end_with_parent():
    """Runs in a new process: the system ends it if this program is killed."""
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, SIGKILL)


def run(*words):
    """Runs a command for the network; returns what it prints. Raises NetworkError."""
    ended = subprocess.run(words, capture_output=True, text=True, timeout=SECONDS, check=False)
    if ended.returncode != 0:
        raise NetworkError(f"{' '.join(words)}: {ended.stderr.strip()}")
    return ended.stdout


def try_all(words):
    """Tries in a network that some words make whether the system allows all of TRIALS. Raises
    NetworkError with the first that it refuses."""
    codes = {REFUSED + number: trial for number, trial in enumerate(TRIALS)}
    script = "\n".join(f"{trial} || exit {code}" for code, trial in codes.items())
    ended = subprocess.run([*words, "sh", "-c", script], capture_output=True, text=True,
                           timeout=SECONDS, check=False)
    if ended.returncode != 0:
        refused = codes.get(ended.returncode, " ".join(words))
        raise NetworkError(f"{refused}: {' '.join(ended.stderr.split())}")


def enter(arguments):
    """Starts this program again in a network of its own, which is gone when it ends. Returns only
    where that is not possible, with the reason."""
    os.environ["PATH"] += ":/usr/sbin:/sbin"  # which not every user has: tc, chronyd, ptp4l
    if INSIDE in os.environ:
        return os.environ[INSIDE]
    own = ["unshare", "--net"]
    if os.getuid() != 0:
        own += ["--user", "--map-root-user"]
    try:
        try_all(own)  # first: after the exec there is no way back
    except (NetworkError, OSError, subprocess.SubprocessError) as error:
        return str(error)
    environment = {**os.environ, INSIDE: NAMESPACES}
    sys.stdout.flush()
    os.execvpe(own[0], [*own, sys.executable, *arguments], environment)


@dataclass
class Computer:
    """One computer: its name, its address, and the words that start a program on it."""

    name: str
    address: str
    prefix: list = field(default_factory=list)
    port: str = ""  # of the switch, to which it is connected


class Network:
    """The computers of an experiment, and the programs on them. All end with it."""

    def __init__(self, why_not):
        self.is_real = why_not == NAMESPACES
        self.why_not = "" if self.is_real else why_not
        self.computers = []
        self.processes = []
        if self.is_real:
            run("ip", "link", "set", "lo", "up")
            run("ip", "link", "add", "switch", "type", "bridge")
            run("ip", "address", "add", "10.77.0.254/24", "dev", "switch")
            run("ip", "link", "set", "switch", "up")
        self.middle = "10.77.0.254" if self.is_real else "127.77.0.254"  # of the switch itself

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in self.processes:
            if process.poll() is None:
                process.kill()
            process.wait()
        if self.is_real:
            run("ip", "link", "delete", "switch")

    def describe(self):
        """What stands for the computers."""
        if self.is_real:
            return "network: each computer is a network namespace, with a switch between them"
        return ("network: loopback, because namespaces are not available here "
                f"({self.why_not}); no cable is pulled and no link is limited")

    def add(self, name):
        """A new computer."""
        number = len(self.computers) + 1
        if not self.is_real:
            computer = Computer(name, f"127.77.0.{number}")
        else:
            holder = self.start_here(["unshare", "--net", "sleep", "infinity"])
            self.wait_for_namespace(holder.pid)
            computer = Computer(name, f"10.77.0.{number}", port=f"port{number}",
                                prefix=["nsenter", f"--net=/proc/{holder.pid}/ns/net"])
            run("ip", "link", "add", computer.port, "type", "veth", "peer", "name", "eth0", "netns",
                str(holder.pid))
            run("ip", "link", "set", computer.port, "master", "switch", "up")
            run(*computer.prefix, "ip", "link", "set", "lo", "up")
            run(*computer.prefix, "ip", "address", "add", f"{computer.address}/24", "dev", "eth0")
            run(*computer.prefix, "ip", "link", "set", "eth0", "up")
        self.computers.append(computer)
        return computer

    @staticmethod
    def wait_for_namespace(pid):
        """Waits until a process has a network of its own."""
        end = time.monotonic() + SECONDS
        while os.readlink(f"/proc/{pid}/ns/net") == os.readlink("/proc/self/ns/net"):
            if time.monotonic() > end:
                raise NetworkError("a namespace did not come")
            time.sleep(0.01)

    def start_here(self, words, **options):
        """Starts a program where the switch is."""
        process = subprocess.Popen(words, preexec_fn=end_with_parent, **options)
        self.processes.append(process)
        return process

    def start(self, computer, words, **options):
        """Starts a program on a computer. Its process id is that of the program itself."""
        return self.start_here([*computer.prefix, *map(str, words)], **options)

    def bytes_from(self, computer):
        """How many bytes a computer has sent, with all headers; None on loopback."""
        if not self.is_real:
            return None
        (link,) = json.loads(run("ip", "-s", "-j", "link", "show", computer.port))
        return link["stats64"]["rx"]["bytes"]

    def limit(self, computer, megabits):
        """Limits what a computer can receive, as a slower link does; 0 is no limit."""
        discipline = NARROW.format(megabits=megabits) if megabits else WIDE
        run("tc", "qdisc", "replace", "dev", computer.port, "root", *discipline.split())

    def pull(self, computer, is_pulled=True):
        """Pulls a computer's cable, or puts it in again."""
        run("ip", "link", "set", computer.port, "down" if is_pulled else "up")
