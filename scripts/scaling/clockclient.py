"""How far a clock of GStreamer that follows another computer is from that computer's clock.

Usage: python3 -m scaling.clockclient ADDRESS PORT SECONDS. On one computer both are the same clock of
the system, so what differs is the error.
"""

import sys
import time

from .events import emit
from .gst import Gst, GstNet


def errors(address, port, seconds):
    """Differences in seconds, twenty each second, from the moment when the clock is set."""
    system = Gst.SystemClock.obtain()
    clock = GstNet.NetClientClock.new("remote", address, port, 0)
    if not clock.wait_for_sync(20 * Gst.SECOND):
        return
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        before, remote, after = system.get_time(), clock.get_time(), system.get_time()
        yield (remote - (before + after) / 2) / Gst.SECOND
        time.sleep(0.05)


if __name__ == "__main__":
    emit("end", errors=list(errors(sys.argv[1], int(sys.argv[2]), float(sys.argv[3]))))
