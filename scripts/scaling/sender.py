"""The program on a computer with a camera: sends its pictures until it is interrupted.

Usage: python3 -m scaling.sender NAME PIPELINE: the pipeline has a pcdsrc called "camera", and an
identity called "encoded" where a buffer is a picture.
"""

import sys

from .events import emit
from .gst import GLib, Gst, count_buffers, pipeline_of, run_until_interrupted, watch


class Sender:
    """One camera, its encoder and its connection."""

    def __init__(self, name, text):
        self.name = name
        self.pipeline = pipeline_of(text)
        self.camera = self.pipeline.get_by_name("camera")
        self.loop = GLib.MainLoop()
        self.pictures = self.bytes = 0
        self.errors = []
        count_buffers(self.pipeline, "encoded", self.count)
        watch(self.pipeline, self.report)

    def count(self, buffer):
        """One more picture was encoded."""
        self.pictures += 1
        self.bytes += buffer.get_size()

    def report(self, message):
        """Reports what the pipeline says, by the name of the computer."""
        if message.type == Gst.MessageType.QOS and message.src == self.camera:
            _, _, dropped = message.parse_qos_stats()
            emit("dropped", name=self.name, dropped=dropped)
        elif message.type == Gst.MessageType.ERROR:
            error, _ = message.parse_error()
            self.errors.append(f"{message.src.get_name()}: {error.message}")
            emit("error", name=self.name, text=self.errors[-1])
            self.loop.quit()
        elif message.type == Gst.MessageType.WARNING:
            error, _ = message.parse_warning()
            emit("warning", name=self.name, text=f"{message.src.get_name()}: {error.message}")
        elif message.type == Gst.MessageType.EOS:
            self.loop.quit()

    def run(self):
        """Sends until it is interrupted, or until something fails."""
        self.pipeline.set_state(Gst.State.PLAYING)
        state = self.pipeline.get_state(30 * Gst.SECOND)
        emit("playing", name=self.name, base_time=self.pipeline.get_base_time() / Gst.SECOND,
             state=state[1].value_nick)
        run_until_interrupted(self.loop)
        stats = self.camera.get_property("stats")
        counts = {stats.nth_field_name(n): stats.get_value(stats.nth_field_name(n))
                  for n in range(stats.n_fields())}
        emit("end", name=self.name, pictures=self.pictures, bytes=self.bytes,
             dropped=self.camera.get_property("dropped"), counts=counts, errors=self.errors)
        self.pipeline.set_state(Gst.State.NULL)


if __name__ == "__main__":
    Sender(*sys.argv[1:]).run()
