"""Copies a recording into an object store while it grows, with rclone.

Usage: python3 -m scaling.follow RECORDING REMOTE [SECONDS]: ends once the recording is complete and
copied. It fails if the store cannot be reached again and again, or if no frame came for SECONDS (60)
and the recording is not complete; what there was until then has been copied.

Chunks never change, so each is copied once, and no listing is needed. The metadata says how many
frames there are, so it must not arrive before the chunks: it is read first, and copied last.
"""

import json
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from .events import emit
from .network import end_with_parent

OME = "{http://www.openmicroscopy.org/Schemas/OME/2016-06}"
XML = "OME/METADATA.ome.xml"
# Besides it and a .zarray for each size. The names are given, because a search would list all chunks,
# and could find what the recorder is about to rename.
SMALL = ".zgroup", ".zattrs", "0/.zgroup", "0/.zattrs", "OME/.zgroup", "OME/.zattrs", "OME/frames.csv"
PAUSE = 0.2  # seconds
PAUSES = 1, 2, 4, 8  # before a copy that failed is tried again
MOST_SILENCE = 60  # seconds without a new frame: then the recorder was killed
RCLONE = ("rclone", "--s3-no-check-bucket", "--contimeout", "5s", "--timeout", "20s", "--retries", "1",
          "--low-level-retries", "2")


class FollowError(Exception):
    """The recording cannot be followed to its end; the text says why."""


def try_rclone(words, text):
    """Runs rclone once; returns why it failed, or nothing. It is ended at its first error: with a store
    that is gone it would try each of many chunks for seconds."""
    with tempfile.TemporaryFile("w+") as given:
        given.write(text)
        given.seek(0)
        process = subprocess.Popen([*RCLONE, *map(str, words)], stdin=given, stderr=subprocess.PIPE,
                                   text=True, preexec_fn=end_with_parent)
    lines, first = [], None
    with process:
        for line in process.stderr:
            lines.append(line.strip())
            if first is None and " ERROR " in line:
                first = len(lines) - 1
                process.kill()  # what it has written until then, with the reason, can still be read
    if process.returncode == 0:
        return ""
    # What failed and why are two lines.
    reason = lines[-2:] if first is None else lines[first:first + 2]
    return " ".join(reason) or f"exit code {process.returncode}"


def rclone(*words, text=""):
    """Runs rclone, again if it fails: a store may be started again. Raises FollowError after the last
    attempt."""
    for pause in (*PAUSES, None):
        reason = try_rclone(words, text)
        if not reason:
            return
        emit("failed", text=reason)
        if pause is not None:
            time.sleep(pause)
    raise FollowError(f"rclone to {words[-1]} failed {len(PAUSES) + 1} times: {reason}")


def read_file(path):
    """The content of a small file."""
    return path.read_bytes()


def read_small(recording):
    """The content of everything but chunks, by name; the recorder replaces each file as a whole. The
    document that says whether the recording has ended is read first: what it ends is read after."""
    sizes = (path.parent.name for path in sorted(recording.glob("0/*/.zarray")))
    return {name: read_file(recording / name)
            for name in (XML, *SMALL, *(f"0/{size}/.zarray" for size in sizes))}


def shapes_of(small):
    """For each size of the frames, how many frames and channels these files count."""
    return {name.split("/")[1]: json.loads(content)["shape"][:2]
            for name, content in small.items() if name.endswith("/.zarray")}


def is_end(small):
    """True if these files say that the recording has ended."""
    notes = ElementTree.fromstring(small[XML]).iter(OME + "M")
    return any(note.get("K") == "Recording wanted" for note in notes)


class Follower:
    """What has been copied of a recording."""

    def __init__(self, recording, remote):
        self.recording, self.remote = recording, remote
        self.small = {}
        self.frames = {}  # by size
        self.is_complete = False

    def copy(self):
        """Copies what is new, its chunks first. Returns False if nothing was."""
        small = read_small(self.recording)
        changed = {name for name, content in small.items() if self.small.get(name) != content}
        if not changed:
            return False
        shapes = shapes_of(small)
        chunks = [f"0/{size}/{frame}/{channel}/0/0" for size, (frames, channels) in shapes.items()
                  for frame in range(self.frames.get(size, 0), frames)
                  for channel in range(channels)]
        if chunks:
            rclone("copy", "--no-traverse", "--no-check-dest", "--transfers", 4,
                   "--files-from-raw", "-", self.recording, self.remote, text="\n".join(chunks))
        with tempfile.TemporaryDirectory() as folder:
            for name in changed:
                path = Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(small[name])
            rclone("copy", "--no-traverse", "--no-check-dest", folder, self.remote)
        self.small, self.is_complete = small, is_end(small)
        self.frames = {size: frames for size, (frames, _) in shapes.items()}
        emit("copied", frames=self.frames.get("0", 0), chunks=len(chunks))
        return True


def follow(recording, remote, most_silence=MOST_SILENCE):
    """Copies until the recording is complete. Raises FollowError if that does not come, and OSError if
    the recording cannot be read."""
    follower, last, is_over = Follower(recording, remote), time.monotonic(), False
    while not is_over:
        is_over = follower.is_complete  # once more then, whole: the end may have come while it copied
        if recording.exists() and follower.copy():
            last = time.monotonic()
        elif not is_over and time.monotonic() - last > most_silence:
            state = "nothing new" if recording.exists() else "not there"
            raise FollowError(f"{recording}: {state} for {most_silence:g} s, and not complete; copied "
                              f"so far: {follower.frames.get('0', 0)} frames")
        if not is_over:
            time.sleep(PAUSE)


if __name__ == "__main__":
    try:
        follow(Path(sys.argv[1]), sys.argv[2], *map(float, sys.argv[3:4]))
    except (FollowError, OSError, ElementTree.ParseError, ValueError) as error:
        emit("error", text=str(error))
        sys.exit(f"follow: {error}")
    emit("end")
