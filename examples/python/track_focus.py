#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Tracks the focus while the stage moves: the sharpness of each frame, and the place of the best.

Usage: track_focus.py [--camera ID] [--frames N]. Without a camera, a simulated one shows a specimen
that comes into focus and goes out of it again; the place that is found is compared with the one at
which it was sharp, and the exit code is 1 if it is more than half a step away.
"""

from __future__ import annotations

import argparse
import sys
import tempfile
from pathlib import Path
from typing import Iterator

import numpy as np
import numpy.typing as npt

import pcd

STEPS = 21  # pictures of the simulated stage's way
SHARP_AT = 12.3  # the step, of which there is no picture
FRAMES_EACH = 4
SCALE = 16  # rows


def sharpness(pixels: npt.NDArray[np.uint8]) -> float:
    """The mean square of the differences between neighbours, over the square of the mean: brighter
    light is no better focus."""
    grey = pixels.mean(axis=2) if pixels.ndim == 3 else pixels.astype(float)
    across, down = np.diff(grey, axis=1), np.diff(grey, axis=0)
    return float((across**2).mean() + (down**2).mean()) / max(float(grey.mean()), 1.0) ** 2


def best_place(scores: list[float]) -> float:
    """The place of the highest score, between its neighbours by a parabola through the logarithms:
    near the focus the scores are a bell-shaped curve."""
    top = min(max(int(np.argmax(scores)), 1), len(scores) - 2)
    before, here, after = np.log(scores[top - 1:top + 2])
    bend = before - 2 * here + after
    return top + float(0.5 * (before - after) / bend if bend < 0 else 0.0)


def track(camera: pcd.Camera, frames: int) -> Iterator[tuple[pcd.Frame, float]]:
    """Frames with their sharpness, which is also printed as a bar."""
    best = 0.0
    stream = camera.stream(frames)
    for frame in stream:
        score = sharpness(frame.array[:-SCALE])
        best = max(best, score)
        print(f"{frame.sequence:5} {score:9.5f} {'#' * round(50 * score / best)}")
        yield frame, score
    if stream.dropped:
        print(f"{stream.dropped} frames were dropped: this computer is slower than the camera")


def write_pictures(folder: Path) -> None:
    """Pictures of a specimen, each blurred by its distance from the focus. Below it are three
    fields in the place of a stage's scale: black, white, and a grey that says which step it is."""
    size = 256
    texture = np.fft.fft2(np.random.default_rng(3).normal(size=(size, size)))
    frequency = (np.arange(size) + size // 2) % size / size - 0.5
    distance = np.hypot(*np.meshgrid(frequency, frequency))
    for step in range(STEPS):
        blur = 1 + 0.35 * abs(step - SHARP_AT)  # pixels
        shown = np.fft.ifft2(texture * np.exp(-2 * (np.pi * blur * distance) ** 2)).real
        pixels = np.clip(128 + 120 * shown, 0, 255).astype(np.uint8)
        for field, grey in enumerate((0, 240, round(240 * step / (STEPS - 1)))):
            pixels[-SCALE:, field * 80:field * 80 + 80] = grey
        header = f"P5 {size} {size} 255\n".encode()
        (folder / f"{step:02}.pgm").write_bytes(header + pixels.tobytes())


def read_scale(pixels: npt.NDArray[np.uint8]) -> int:
    """The step at which a frame was taken."""
    black, white, grey = (float(pixels[-SCALE + 2:-2, x:x + 60].mean()) for x in (10, 90, 170))
    return round((grey - black) / (white - black) * (STEPS - 1))


def scene(folder: Path) -> dict[str, object]:
    """A camera that shows these pictures one after the other."""
    return {"cameras": [{
        "id": "stage", "model": "Stage", "serial": "F1", "bits": 8, "flags": ["MONO"],
        "resolutions": [{"width": 256, "height": 256, "fps": 50}],
        "exposure": {"auto": False, "default": 10000},
        "source": {"kind": "picture", "path": str(folder), "framesEach": FRAMES_EACH}}]}


def simulated() -> int:
    """Tracks the simulated stage; returns the exit code."""
    found: dict[int, float] = {}
    with tempfile.TemporaryDirectory() as name:
        write_pictures(Path(name))
        pcd.simulate(scene(Path(name)))
        with pcd.open() as camera:
            for frame, score in track(camera, 2 * STEPS * FRAMES_EACH):
                found[read_scale(frame.array)] = score
                if len(found) == STEPS:
                    break
    place = best_place([found[step] for step in sorted(found)])
    print(f"sharpest at step {place:.2f}; it was sharp at {SHARP_AT}")
    return 0 if len(found) == STEPS and abs(place - SHARP_AT) <= 0.5 else 1


def main() -> int:
    """Tracks, and returns the exit code."""
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--camera", help="id, or the beginning of one; else a simulated camera")
    parser.add_argument("--frames", type=int, default=200, help="how many (200)")
    options = parser.parse_args()
    if options.camera is None:
        return simulated()
    with pcd.open(options.camera) as camera:
        scores = [score for _, score in track(camera, options.frames)]
    print(f"sharpest at frame {best_place(scores):.1f} of {len(scores)}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
