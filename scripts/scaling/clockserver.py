"""Offers this computer's clock to others, with GStreamer.

Usage: python3 -m scaling.clockserver ADDRESS PORT
"""

import sys

from .events import emit
from .gst import Gst, GstNet, run_until_interrupted

if __name__ == "__main__":
    provider = GstNet.NetTimeProvider.new(Gst.SystemClock.obtain(), sys.argv[1], int(sys.argv[2]))
    emit("ready")
    run_until_interrupted()
