"""A recording that others read while it grows: over HTTP, and in an object store with S3."""

import json
import signal
import subprocess
import sys
import time

from . import keys
from .events import Events
from .live import Failure, Site, environment, python
from .machine import processor_seconds

HTTP_PORT, STORE_PORT = 8000, 8080
BUCKET, RECORDING = "recordings", "run.ome.zarr"
MOST, MOST_EACH = 60, 0.5  # seconds for everything, and for each frame


class Store(Site):
    """A computer with a camera and the recording, one with the store, and one that computes."""

    def __init__(self, build, folder, network, scale, frames):
        super().__init__(build, folder, network, scale)
        self.frames = frames
        self.recorder = self.computer("recorder")
        self.store = self.computer("store")
        self.analyst = self.computer("analyst")
        self.disk = self.folder / "disk"
        self.disk.mkdir()
        self.access = {}  # of the object store, once that is there
        self.end = time.monotonic() + MOST + MOST_EACH * frames

    def left(self):
        """The seconds that all of it may still take."""
        return max(0, self.end - time.monotonic())

    def record(self):
        """Starts the recording."""
        words = [self.build / "bin/pcdctl", "record", "--sdk", "sim", "--scene", self.scene(0),
                 "--json", "-n", self.frames, "--timeout", self.left(), "-o", self.disk / RECORDING]
        return self.network.start(self.recorder, words, stdout=subprocess.PIPE, text=True)

    def hold(self, recording, follower, readers):
        """Stops the recorder at its first frames until all readers have seen some: else a busy
        computer could have recorded all before the first of them looks. Raises EventError if one does not."""
        while not (self.disk / RECORDING).exists() and recording.poll() is None and self.left():
            time.sleep(0.01)
        if recording.poll():
            return  # it failed, and its output says why
        recording.send_signal(signal.SIGSTOP)
        follower.wait("copied", self.left())
        for reader in readers:
            reader.wait("part", self.left())
        recording.send_signal(signal.SIGCONT)

    def serve_files(self):
        """Serves the folder of the recording over HTTP."""
        self.network.start(self.recorder, [sys.executable, "-m", "http.server", HTTP_PORT, "--bind",
                                           self.recorder.address, "--directory", self.disk],
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return f"http://{self.recorder.address}:{HTTP_PORT}/{RECORDING}"

    def serve_objects(self):
        """Starts the object store."""
        folder = self.folder / "objects"
        folder.mkdir()
        words = python("objectstore", self.store.address, STORE_PORT, folder)
        store = self.start("store", self.store, words)
        store.wait("ready")
        endpoint = f"http://{self.store.address}:{STORE_PORT}"
        # Of this store only: settings of the user for other ones, and for the way there, do not apply.
        plain = {name: value for name, value in environment(self.build).items()
                 if not name.startswith("AWS_") and not name.lower().endswith("_proxy")}
        self.access = {**plain, **keys.rclone(endpoint)}
        self.rclone("mkdir", f"store:{BUCKET}")
        return f"{endpoint}{keys.PUBLIC}/{BUCKET}/{RECORDING}", store.process.pid

    def rclone(self, *words):
        """Runs rclone on the computer with the recording."""
        process = self.network.start(self.recorder, ["rclone", *words], env=self.access)
        if process.wait(self.left()) != 0:
            raise Failure(f"rclone {' '.join(words)}: exit code {process.returncode}")

    def follow(self):
        """Starts the copy into the store."""
        # With the last slash rclone does not look whether that is a file.
        words = python("follow", self.disk / RECORDING, f"store:{BUCKET}/{RECORDING}/")
        return Events("follow", self.network.start(self.recorder, words, env=self.access,
                                                   stdout=subprocess.PIPE))

    def read(self, name, url):
        """Starts a reader on the computer that computes."""
        return self.start(name, self.analyst, python("reader", url, self.frames, self.left()))


def run(build, folder, network, scale, frames):
    """Records, follows, reads in three ways, and compares. Raises Failure if they differ."""
    site = Store(build, folder, network, scale, frames)
    http = site.serve_files()
    objects, store_pid = site.serve_objects()
    before = processor_seconds(store_pid)
    follower = site.follow()
    readers = {"HTTP": site.read("HTTP", http), "S3": site.read("S3", objects)}
    for reader in readers.values():  # they are there before the first frame
        reader.wait("ready")
    recording = site.record()
    site.hold(recording, follower, readers.values())
    output, _ = recording.communicate(timeout=site.left())
    if recording.returncode != 0:
        raise Failure(f"the recording failed: {output}")
    tally = json.loads(output)["recording"]
    follower.wait("end", site.left())
    ends = {name: events.wait("end", site.left()) for name, events in readers.items()}
    local = site.read("disk", site.disk / RECORDING)
    ends = {"disk": local.wait("end", site.left()), **ends}
    print(f"recorded: {tally['written']} frames of {scale.width}x{scale.height}")
    for name, events in readers.items():
        report_parts(name, events.all("part"), frames)
    compare(ends, frames)
    copies = follower.all("copied")
    chunks = sum(event["chunks"] for event in copies)
    each = 1000 * (processor_seconds(store_pid) - before) / chunks
    print(f"copied into the store: {chunks} chunks in {len(copies)} steps; the servers of the store "
          f"took {each:.1f} ms of processor time for each, which was also read twice")


def report_parts(name, parts, frames):
    """What a reader saw before the end. Raises Failure if it saw a frame that was not there yet, or
    nothing before the end."""
    if not parts or parts[-1]["frames"] != frames:
        raise Failure(f"{name}: the last frame was not read while the recording was followed")
    if parts[0]["frames"] == frames:
        raise Failure(f"{name}: all {frames} frames were there at once, none while the recording grew")
    black = [part for part in parts if part["darkest"] == 0]
    if black:
        raise Failure(f"{name}: a frame that was counted had no chunk yet: {black[0]}")
    print(f"{name}: read in {len(parts)} parts as they came, the first with {parts[0]['frames']} of "
          f"{frames} frames")


def compare(ends, frames):
    """Prints the results. Raises Failure if they differ from those of the disk."""
    expected = ends["disk"]
    for name, end in ends.items():
        print(f"{name}: mean {end['mean']:.6f}, projection {end['hash'][:16]}, of {end['frames']} "
              f"frames, {end['bytes'] / 1e6 / end['seconds']:.0f} MB/s")
        if end["frames"] != frames:
            raise Failure(f"{name}: {end['frames']} frames, expected {frames}")
        for key in ("mean", "sum", "hash"):
            if end[key] != expected[key]:
                raise Failure(f"{name}: {key} is {end[key]}, expected {expected[key]} as on the disk")
    print("all results are those of the disk")
