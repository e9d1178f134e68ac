"""Copies a recording into an object store while it grows, with rclone.

Usage: python3 -m scaling.follow RECORDING REMOTE: ends once the recording is complete and copied.

Chunks never change, so each is copied once, and no listing is needed. The metadata says how many
frames there are, so it must not arrive before the chunks: it is read first, and copied last.
"""

import json
import shutil
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from .events import emit

OME = "{http://www.openmicroscopy.org/Schemas/OME/2016-06}"
PAUSE = 0.2  # seconds


def rclone(*words, text=""):
    """Runs rclone. Raises CalledProcessError, with its message on standard error."""
    subprocess.run(["rclone", "--s3-no-check-bucket", *map(str, words)], input=text, text=True,
                   check=True)


def sizes_of(recording):
    """For each size in which the recording has its frames, its folder and its .zarray."""
    return {path.parent.name: path for path in sorted(recording.glob("0/*/.zarray"))}


def copy_metadata(recording, folder):
    """Copies everything but chunks; returns the sizes' frames and channels as this copy has them."""
    for path in recording.rglob(".z*"):
        if len(path.relative_to(recording).parts) <= 3:
            target = folder / path.relative_to(recording)
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(path, target)
    (folder / "OME").mkdir(exist_ok=True)
    for name in ("METADATA.ome.xml", "frames.csv", ".zattrs", ".zgroup"):
        if (recording / "OME" / name).exists():
            shutil.copyfile(recording / "OME" / name, folder / "OME" / name)
    return {name: json.loads((folder / "0" / name / ".zarray").read_text(encoding="utf-8"))["shape"]
            for name in sizes_of(folder)}


def is_complete(folder):
    """True if a copy of the metadata says that the recording has ended."""
    xml = ElementTree.parse(folder / "OME" / "METADATA.ome.xml")
    notes = {note.get("K"): note.text for note in xml.iter(OME + "M")}
    return "Recording wanted" in notes


def follow(recording, remote):
    """Copies until the recording is complete."""
    copied = {}
    while not recording.exists():
        time.sleep(PAUSE)
    while True:
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            shapes = copy_metadata(recording, folder)
            chunks = [f"0/{size}/{frame}/{channel}/0/0"
                      for size, (frames, channels, *_) in shapes.items()
                      for frame in range(copied.get(size, 0), frames)
                      for channel in range(channels)]
            if chunks:
                rclone("copy", "--no-traverse", "--no-check-dest", "--transfers", 4,
                       "--files-from-raw", "-", recording, remote, text="\n".join(chunks))
            rclone("copy", "--no-traverse", "--no-check-dest", folder, remote)
            copied = {size: shape[0] for size, shape in shapes.items()}
            emit("copied", frames=copied.get("0", 0), chunks=len(chunks))
            if is_complete(folder):
                return
        time.sleep(PAUSE)


if __name__ == "__main__":
    follow(Path(sys.argv[1]), sys.argv[2])
    emit("end")
