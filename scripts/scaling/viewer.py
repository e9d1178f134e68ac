"""The program on the computer where all cameras are shown: side by side, whatever comes or not.

Usage: python3 -m scaling.viewer JSON: "streams", each with its "name" and the pipeline that receives
it, "text"; "width" and "height" of each in the picture; "picture", a file for the last one, or "".

Each stream is a pipeline of its own, so that a connection that is lost concerns nobody else. The
pictures go from there to the compositor through inter-elements, which always have the latest one.
"""

import json
import math
import sys
import threading
import time

from .events import emit
from .gst import GLib, Gst, GstVideo, count_buffers, pipeline_of, run_until_interrupted, watch

LOST_AFTER = 1.0  # seconds without a picture
AGAIN_AFTER = 0.5  # seconds, before a connection is made again
RTP_CLOCK = 90000


class Stream:
    """What is received from one computer."""

    def __init__(self, name, text):
        self.name = name
        self.pipeline = pipeline_of(f"{text} ! identity name=shown silent=true "
                                    f"! intervideosink channel={name} sync=false")
        self.depayloader = self.pipeline.get_by_name("depay")
        self.last = None
        self.is_known = self.is_lost = self.is_starting = False
        self.times = []  # when a picture was taken on the sender's running time, and shown on ours
        count_buffers(self.pipeline, "shown", self.show)
        watch(self.pipeline, self.report)
        self.again("")

    def show(self, _):
        """A picture is decoded. On the streaming thread."""
        self.last = time.monotonic()
        stats = self.depayloader.get_property("stats")
        self.times.append((stats.get_uint("timestamp").value / RTP_CLOCK, self.last))

    def report(self, message):
        """After an error or the end of a stream, the connection is made again."""
        if message.type == Gst.MessageType.ERROR:
            error, _ = message.parse_error()
            self.again(error.message)
        elif message.type == Gst.MessageType.EOS:
            self.again("the stream ended")

    def again(self, why):
        """Makes a connection, a little later if there was one. On a thread of its own, because a
        computer that does not answer takes seconds."""
        if self.is_starting:
            return
        self.is_starting = True
        if why:
            emit("connection", name=self.name, text=why)
        threading.Thread(target=self.start, args=(AGAIN_AFTER if why else 0,), daemon=True).start()

    def start(self, pause):
        """Begins from nothing."""
        self.pipeline.set_state(Gst.State.NULL)
        time.sleep(pause)
        self.is_starting = False
        self.pipeline.set_state(Gst.State.PLAYING)

    def look(self):
        """Reports the first picture, when pictures stop, and when they are back."""
        if self.last is not None and not self.is_known:
            self.is_known = True
            emit("first", name=self.name)
        silent = self.last is not None and time.monotonic() - self.last > LOST_AFTER
        if silent != self.is_lost:
            self.is_lost = silent
            emit("lost" if silent else "back", name=self.name)


class Viewer:
    """All streams, side by side."""

    def __init__(self, plan):
        self.streams = [Stream(**stream) for stream in plan["streams"]]
        self.picture = plan["picture"]
        columns = math.ceil(math.sqrt(len(self.streams)))
        width, height = plan["width"], plan["height"]
        inputs, places = [], []
        for number, stream in enumerate(self.streams):
            row, column = divmod(number, columns)
            places.append(f"sink_{number}::xpos={column * width} sink_{number}::ypos={row * height}")
            inputs.append(f"intervideosrc channel={stream.name} ! video/x-raw,format=I420,"
                          f"width={width},height={height},framerate=15/1 ! wall.sink_{number}")
        rows = math.ceil(len(self.streams) / columns)
        self.wall = pipeline_of(
            f"compositor name=wall {' '.join(places)} ! video/x-raw,format=I420,framerate=15/1,"
            f"width={columns * width},height={rows * height} ! identity name=together silent=true "
            f"! fakesink name=screen sync=false enable-last-sample=true {' '.join(inputs)}")
        self.pictures = 0
        count_buffers(self.wall, "together", self.count)
        watch(self.wall, self.report)

    def count(self, _):
        """One more picture of all of them."""
        self.pictures += 1

    @staticmethod
    def report(message):
        """The compositor itself never fails, whatever the streams do."""
        if message.type == Gst.MessageType.ERROR:
            emit("error", name="viewer", text=message.parse_error()[0].message)

    def look(self):
        """Looks at all streams, ten times a second."""
        for stream in self.streams:
            stream.look()
        return GLib.SOURCE_CONTINUE

    def save(self):
        """Writes the last picture as a JPEG."""
        sample = GstVideo.video_convert_sample(
            self.wall.get_by_name("screen").get_property("last-sample"),
            Gst.Caps.from_string("image/jpeg"), 10 * Gst.SECOND)
        data = sample.get_buffer()
        with open(self.picture, "wb") as file:
            file.write(data.extract_dup(0, data.get_size()))

    def run(self):
        """Shows until it is interrupted."""
        self.wall.set_state(Gst.State.PLAYING)
        GLib.timeout_add(100, self.look)
        emit("ready")
        run_until_interrupted()
        if self.picture:
            self.save()
        emit("end", together=self.pictures,
             streams={stream.name: list(stream.times) for stream in self.streams})
        for pipeline in (*(stream.pipeline for stream in self.streams), self.wall):
            pipeline.set_state(Gst.State.NULL)


if __name__ == "__main__":
    Viewer(json.loads(sys.argv[1])).run()
