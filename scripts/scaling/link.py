"""A long or bad line between two programs: delays and loses packets of UDP, in both directions.

Usage: python3 -m scaling.link JSON: "address", "port" where packets are taken; "to", "to_port" where
they go; "there", "back": for each direction "delay" and "jitter" in milliseconds, "loss" as a share.

GStreamer's netsim does it, which needs no support of the kernel. One program at a time may use it.
"""

import json
import sys

from .events import emit
from .gst import Gio, Gst, GstNet, pipeline_of, run_until_interrupted


def netsim(line):
    """The element for one direction."""
    least, most = line["delay"], line["delay"] + line["jitter"]
    return (f"netsim min-delay={least} max-delay={most} delay-probability={1.0 if most else 0.0} "
            f"drop-probability={line['loss']} allow-reordering=false")


def socket_at(address, port):
    """A socket for packets; with port 0, whichever is free."""
    made = Gio.Socket.new(Gio.SocketFamily.IPV4, Gio.SocketType.DATAGRAM, Gio.SocketProtocol.UDP)
    made.bind(Gio.InetSocketAddress.new_from_string(address, port), True)
    return made


class Link:
    """Both directions."""

    def __init__(self, plan):
        near = socket_at(plan["address"], plan["port"])
        far = socket_at("0.0.0.0", 0)
        self.there = self.direction(plan["there"], near, far)
        self.back = self.direction(plan["back"], far, near)
        sink = self.there.get_by_name("to")
        sink.set_property("host", plan["to"])
        sink.set_property("port", plan["to_port"])
        self.client = None
        self.there.get_by_name("from").get_static_pad("src").add_probe(
            Gst.PadProbeType.BUFFER, self.remember)

    @staticmethod
    def direction(line, taken_from, sent_with):
        """A pipeline from one socket to another."""
        made = pipeline_of(f"udpsrc name=from close-socket=false ! {netsim(line)} "
                           "! udpsink name=to host=127.0.0.1 sync=false async=false close-socket=false")
        made.get_by_name("from").set_property("socket", taken_from)
        made.get_by_name("to").set_property("socket", sent_with)
        return made

    def remember(self, _, info):
        """Answers go to the program that sent last. On the streaming thread."""
        sender = GstNet.buffer_get_net_address_meta(info.get_buffer()).addr
        client = (sender.get_address().to_string(), sender.get_port())
        if client != self.client:
            self.client = client
            sink = self.back.get_by_name("to")
            sink.set_property("host", client[0])
            sink.set_property("port", client[1])
        return Gst.PadProbeReturn.OK

    def run(self):
        """Passes packets on until it is interrupted."""
        for pipeline in (self.back, self.there):
            pipeline.set_state(Gst.State.PLAYING)
        emit("ready")
        run_until_interrupted()
        for pipeline in (self.back, self.there):
            pipeline.set_state(Gst.State.NULL)


if __name__ == "__main__":
    Link(json.loads(sys.argv[1])).run()
