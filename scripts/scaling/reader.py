"""Reads a recording with Dask, over HTTP or from the disk, while it grows.

Usage: python3 -m scaling.reader URL FRAMES SECONDS: prints the mean of what there is as it comes, and,
with all FRAMES, the mean and what identifies the projection: its sum and its SHA-256. Fails if they
have not come after SECONDS.
"""

import hashlib
import sys
import time

import dask.array

from .events import emit

COMPONENT = "0/0"
PAUSE = 0.3  # seconds


def frames_at(url):
    """The frames so far, as a lazy array: t, c, y, x. None before there are any."""
    try:
        return dask.array.from_zarr(url, component=COMPONENT)
    except (KeyError, FileNotFoundError, ValueError) as error:
        if "not found" not in str(error) and not isinstance(error, (KeyError, FileNotFoundError)):
            raise
        return None


def read(url, wanted, seconds):
    """Follows a recording to its end. Exits with an error if that does not come."""
    end, seen = time.monotonic() + seconds, 0
    emit("ready")
    while True:
        frames = frames_at(url)
        if frames is not None and frames.shape[0] > seen:
            newest = frames[seen:]
            seen = frames.shape[0]
            # A chunk that is not there yet would read as 0.
            emit("part", frames=seen, mean=float(newest.mean().compute()),
                 darkest=int(newest.max(axis=(1, 2, 3)).min().compute()))
        if seen >= wanted:
            break
        if time.monotonic() > end:
            emit("error", text=f"{url}: {seen} of {wanted} frames came in {seconds:g} s")
            sys.exit(1)
        time.sleep(PAUSE)
    started = time.monotonic()
    mean, projection = dask.array.compute(frames.mean(), frames.max(axis=0))
    emit("end", frames=seen, mean=float(mean), sum=int(projection.sum(dtype="u8")),
         hash=hashlib.sha256(projection.tobytes()).hexdigest(), bytes=int(frames.nbytes),
         seconds=time.monotonic() - started)


if __name__ == "__main__":
    read(sys.argv[1], int(sys.argv[2]), float(sys.argv[3]))
