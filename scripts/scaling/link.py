"""A long or bad line between two programs: delays and loses packets of UDP, in both directions.

Usage: python3 -m scaling.link JSON: "address", "port" where packets are taken; "to", "to_port" where
they go; "there", "back": for each direction "delay" and "jitter" in milliseconds, "loss" as a share.

GStreamer's netsim does it, which needs no support of the kernel. One program at a time may use it.
At its end it reports how many packets it has taken and lost, of both directions together.
"""

import json
import sys
import time

from .events import emit
from .gst import Gio, Gst, GstNet, count_buffers, pipeline_of, run_until_interrupted

LATEST = 5.0  # seconds after which a packet that a line without losses delays has left it
LATEST_OR_LOST = 0.3  # the same where it may have been lost


def netsim(line):
    """The element for one direction."""
    least, most = line["delay"], line["delay"] + line["jitter"]
    return (f"netsim name=line min-delay={least} max-delay={most} delay-probability={1.0 if most else 0.0} "
            f"drop-probability={line['loss']} allow-reordering=false")


def socket_at(address, port):
    """A socket for packets; with port 0, whichever is free."""
    made = Gio.Socket.new(Gio.SocketFamily.IPV4, Gio.SocketType.DATAGRAM, Gio.SocketProtocol.UDP)
    made.bind(Gio.InetSocketAddress.new_from_string(address, port), True)
    return made


class Direction:
    """A pipeline from one socket to another, and how many packets it took and passed on."""

    def __init__(self, line, taken_from, sent_with):
        self.line = line
        self.pipeline = pipeline_of(
            f"udpsrc name=from close-socket=false ! {netsim(line)} "
            "! udpsink name=to host=127.0.0.1 sync=false async=false close-socket=false")
        self.pipeline.get_by_name("from").set_property("socket", taken_from)
        self.pipeline.get_by_name("to").set_property("socket", sent_with)
        self.taken = self.passed = 0
        count_buffers(self.pipeline, "from", self.take)
        count_buffers(self.pipeline, "line", self.pass_on)

    def send_to(self, host, port):
        """Where packets go from now on."""
        sink = self.pipeline.get_by_name("to")
        sink.set_property("host", host)
        sink.set_property("port", port)

    def take(self, _):
        """One more packet has come. On the streaming thread."""
        self.taken += 1

    def pass_on(self, _):
        """One more packet was not lost. On a streaming thread."""
        self.passed += 1

    def wait_for_late(self):
        """Waits for packets that are on their way; those that are missing then were lost."""
        end = time.monotonic() + 1e-3 * (self.line["delay"] + self.line["jitter"]) \
            + (LATEST_OR_LOST if self.line["loss"] else LATEST)
        while self.passed < self.taken and time.monotonic() < end:
            time.sleep(0.01)


class Link:
    """Both directions."""

    def __init__(self, plan):
        near = socket_at(plan["address"], plan["port"])
        far = socket_at("0.0.0.0", 0)
        self.there = Direction(plan["there"], near, far)
        self.back = Direction(plan["back"], far, near)
        self.there.send_to(plan["to"], plan["to_port"])
        self.client = None
        count_buffers(self.there.pipeline, "from", self.remember)

    def remember(self, packet):
        """Answers go to the program that sent last. On the streaming thread."""
        sender = GstNet.buffer_get_net_address_meta(packet).addr
        client = (sender.get_address().to_string(), sender.get_port())
        if client != self.client:
            self.client = client
            self.back.send_to(*client)

    def run(self):
        """Passes packets on until it is interrupted."""
        both = self.back, self.there
        for direction in both:
            direction.pipeline.set_state(Gst.State.PLAYING)
        emit("ready")
        run_until_interrupted()
        for direction in both:
            direction.wait_for_late()
        emit("end", packets=sum(direction.taken for direction in both),
             lost=sum(direction.taken - direction.passed for direction in both))
        for direction in both:
            direction.pipeline.set_state(Gst.State.NULL)


if __name__ == "__main__":
    Link(json.loads(sys.argv[1])).run()
