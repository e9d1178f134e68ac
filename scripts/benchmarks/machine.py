"""What the figures were measured on: enough to judge them, nothing that names the machine."""

import os
import platform
from pathlib import Path


def field(path, name):
    """The value of a "name : value" line of a file in /proc."""
    for line in Path(path).read_text(encoding="utf-8").splitlines():
        key, _, value = line.partition(":")
        if key.strip() == name:
            return value.strip()
    return "unknown"


def machine():
    """For JSON."""
    return {
        "processor": field("/proc/cpuinfo", "model name"),
        "cores": len(os.sched_getaffinity(0)),
        "memory": field("/proc/meminfo", "MemTotal"),
        "kernel": platform.release(),
        "load": round(os.getloadavg()[0], 2),
    }
