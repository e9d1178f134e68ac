#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures the photon-transfer curve of a camera, and from it the constants of its sensor.

The shot noise of light has a variance that equals the number of electrons. So the variance of a
pixel over its mean, both in counts, is a line: its slope is counts per electron, and where no light
falls, the noise of reading the sensor remains.

Usage: photon_transfer.py [--camera ID]. Without a camera it measures a simulated one, compares the
result with the constants of the scene, and ends with exit code 1 if they differ.

A real camera needs even light that stays the same, and pictures that are not processed.
"""

from __future__ import annotations

import argparse
import sys
from typing import NamedTuple

import numpy as np

import pcd

PAIRS = 4  # of frames for each exposure time
TARGETS = np.linspace(30, 200, 12)  # mean counts: neither black nor white is cut off

# The sensor that is simulated. Its noise of reading is 3 counts: less than a count would hardly be
# seen beside the rounding to whole counts.
SENSOR = {"electronsPerCount": 8, "readNoise": 24, "offset": 10, "electronsPerMs": 1350,
          "fullWell": 15000}
LEVEL = 0.6  # of full light, which the simulator rounds to whole 255ths: this is 153
SCENE = {"seed": 7, "cameras": [{
    "id": "bench", "model": "Bench", "serial": "PTC1", "bits": 8, "flags": ["MONO"],
    "resolutions": [{"width": 640, "height": 480, "fps": 200}],
    "exposure": {"auto": False}, "sensor": SENSOR, "source": {"kind": "flat", "level": LEVEL}}]}

# Each variance is the mean of 4 x 307,200 squares, so its error is 0.13 %. Over 12 times that
# leaves 0.1 % for the slope, and 0.3 % for the noise of reading, which is an end of the line;
# the means are known to a hundredth of a count. These are at least five times as much.
TOLERANCES = {"electrons per count": 0.01, "noise of reading, electrons": 0.03,
              "offset, counts": 0.01, "electrons per ms": 0.01}


class Point(NamedTuple):
    """The pixels at one exposure time: milliseconds, counts, and counts squared."""

    time: float
    mean: float
    variance: float


def measure(camera: pcd.Camera, time: float) -> Point:
    """The mean, and the variance from differences of frames: what is fixed in them cancels out."""
    camera.exposure = time
    means, variances = [], []
    frames = [frame for frame in camera.stream(2 * PAIRS + 2) if frame.exposure == camera.exposure]
    for first, second in zip(frames[2::2], frames[3::2]):  # the first may have the time before
        a, b = first.array.astype(float), second.array.astype(float)
        means.append((a.mean() + b.mean()) / 2)
        variances.append((a - b).var() / 2)
    return Point(camera.exposure, float(np.mean(means)), float(np.mean(variances)))


def exposure_times(camera: pcd.Camera) -> list[float]:
    """The times at which the mean is what is wanted, from two that were measured."""
    shortest = camera.properties["exposure"].range
    assert shortest is not None
    low = measure(camera, shortest.minimum)
    time = shortest.minimum * 2
    while (high := measure(camera, time)).mean < 100:
        time *= 2
    slope = (high.mean - low.mean) / (high.time - low.time)
    return [low.time + (float(target) - low.mean) / slope for target in TARGETS]


def constants(points: list[Point]) -> dict[str, float]:
    """The constants of a sensor whose gain is 1."""
    times, means, variances = np.array(points).T
    rate, offset = np.polyfit(times, means, 1)
    slope, remaining = np.polyfit(means - offset, variances, 1)
    rounding = 1 / 12  # the variance that rounding to whole counts adds
    return {"electrons per count": 1 / slope,
            "noise of reading, electrons": float(np.sqrt(max(remaining - rounding, 0))) / slope,
            "offset, counts": offset, "electrons per ms": rate / slope}


def compare(found: dict[str, float]) -> bool:
    """Prints what the scene has beside what was found; false if something is not within its
    tolerance."""
    known = {"electrons per count": SENSOR["electronsPerCount"],
             "noise of reading, electrons": SENSOR["readNoise"],
             "offset, counts": SENSOR["offset"], "electrons per ms": SENSOR["electronsPerMs"] * LEVEL}
    is_good = True
    for name, value in known.items():
        error = abs(found[name] / value - 1)
        is_good &= error <= TOLERANCES[name]
        print(f"{name:28} {value:9.2f} {found[name]:9.3f}  error {error:.2%}, "
              f"at most {TOLERANCES[name]:.0%}")
    return is_good


def main() -> int:
    """Measures, and returns the exit code."""
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--camera", help="id, or the beginning of one; else a simulated camera")
    name = parser.parse_args().camera
    if name is None:
        pcd.simulate(SCENE)
    with pcd.open(name) as camera:
        camera.auto_exposure = False
        camera.gain = 1.0
        points = [measure(camera, time) for time in exposure_times(camera)]
    for point in points:
        print(f"{point.time:9.3f} ms  mean {point.mean:7.2f}  variance {point.variance:7.3f}")
    found = constants(points)
    if name is None:
        return 0 if compare(found) else 1
    for what, value in found.items():
        print(f"{what:28} {value:9.3f}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
