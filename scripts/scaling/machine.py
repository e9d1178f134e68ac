"""What a program costs this computer, from /proc."""

import os

TICKS = os.sysconf("SC_CLK_TCK")


def processor_seconds(pid):
    """The processor time of a process so far, all threads, user and system."""
    with open(f"/proc/{pid}/stat", encoding="utf-8") as file:
        fields = file.read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def resident_megabytes(pid):
    """The memory of a process that is in use now."""
    with open(f"/proc/{pid}/status", encoding="utf-8") as file:
        for line in file:
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) / 1024
    return 0.0
