"""GStreamer in the programs that scripts/scale starts."""

import signal

import gi

gi.require_version("Gst", "1.0")
gi.require_version("GstNet", "1.0")
gi.require_version("GstVideo", "1.0")
# pylint: disable=wrong-import-position
from gi.repository import Gio, GLib, Gst, GstNet, GstVideo  # noqa: E402  (the versions come first)

Gst.init(None)
__all__ = ["Gio", "GLib", "Gst", "GstNet", "GstVideo", "count_buffers", "pipeline_of",
           "run_until_interrupted", "watch"]


def pipeline_of(text):
    """A pipeline. Its clock is the system's monotonic one, which all processes here share."""
    return Gst.parse_launch(text)


def watch(pipeline, on_message):
    """Calls a function for each message of a pipeline, on the main loop."""
    bus = pipeline.get_bus()
    bus.add_signal_watch()
    bus.connect("message", lambda _, message: on_message(message))


def count_buffers(pipeline, name, on_buffer):
    """Calls a function for each buffer that leaves an element, on the streaming thread."""
    def probe(_, info):
        on_buffer(info.get_buffer())
        return Gst.PadProbeReturn.OK
    pad = pipeline.get_by_name(name).get_static_pad("src")
    pad.add_probe(Gst.PadProbeType.BUFFER, probe)


def run_until_interrupted(loop=None):
    """Runs the main loop until SIGINT or SIGTERM."""
    loop = loop or GLib.MainLoop()
    for number in (signal.SIGINT, signal.SIGTERM):
        GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, number, loop.quit)
    loop.run()
