#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Records as OME-Zarr with pcdctl from the simulated cameras, and reads it with programs that are not
ours: zarr, dask, and numpy for the arithmetic.

Usage: zarr_test.py PCDCTL
"""

import csv
import json
import os
import shlex
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import dask.array
import numpy
import tifffile
import zarr

import guide_blocks

PCDCTL = None
SECONDS = 300  # that a recording may take
OME = "{http://www.openmicroscopy.org/Schemas/OME/2016-06}"
UNITS = {"time": {"second"}, "space": {"micrometer"}}  # of ours; 0.4 has more


class Recording:
    """A recording on the disk. What one can check without knowing what was recorded."""

    def __init__(self, test, path):
        self.path = path
        self.root = zarr.open_group(str(path), mode="r")
        test.assertEqual(dict(self.root.attrs), {"bioformats2raw.layout": 3})
        test.assertEqual(self.root["OME"].attrs["series"], ["0"])
        self.image = self.root["0"]
        (self.multiscale,) = self.image.attrs["multiscales"]
        self.levels = [self.image[data["path"]] for data in self.multiscale["datasets"]]
        self.xml = ElementTree.parse(path / "OME" / "METADATA.ome.xml").getroot()
        self.check_axes(test)
        self.check_datasets(test)
        self.check_omero(test)
        self.check_chunks(test)

    def check_axes(self, test):
        """The rules of 0.4 for axes: names are unique, time before channel before space, and so on."""
        test.assertEqual(self.multiscale["version"], "0.4")
        axes = self.multiscale["axes"]
        test.assertEqual([(axis["name"], axis["type"]) for axis in axes],
                         [("t", "time"), ("c", "channel"), ("y", "space"), ("x", "space")])
        for axis in axes:
            if "unit" in axis:
                test.assertIn(axis["unit"], UNITS[axis["type"]])
        for level in self.levels:
            test.assertEqual(level.ndim, len(axes))

    def check_datasets(self, test):
        """The largest is first; each has exactly one scale, and at most one translation after it."""
        sizes = [level.shape[2] * level.shape[3] for level in self.levels]
        test.assertEqual(sizes, sorted(sizes, reverse=True))
        for data in self.multiscale["datasets"]:
            kinds = [one["type"] for one in data["coordinateTransformations"]]
            test.assertIn(kinds, (["scale"], ["scale", "translation"]))
            for one in data["coordinateTransformations"]:
                test.assertEqual(len(one[one["type"]]), 4)
            test.assertTrue(all(factor > 0 for factor in data["coordinateTransformations"][0]["scale"]))

    def check_omero(self, test):
        """Each channel has a colour of six hexadecimal digits and a window."""
        channels = self.image.attrs["omero"]["channels"]
        test.assertEqual(len(channels), self.levels[0].shape[1])
        for channel in channels:
            test.assertRegex(channel["color"], "^[0-9A-F]{6}$")
            test.assertEqual(channel["window"], {"min": 0, "max": 255, "start": 0, "end": 255})

    def check_chunks(self, test):
        """All chunks that the metadata counts are there, and none that are hidden from it."""
        for number, level in enumerate(self.levels):
            frames, channels = level.shape[:2]
            test.assertEqual(level.chunks, (1, 1, *level.shape[2:]))
            test.assertEqual(level.dtype, numpy.uint8)
            folder = self.path / "0" / str(number)
            found = {str(file.relative_to(folder)) for file in folder.rglob("*")
                     if file.is_file() and not any(part.startswith(".") for part in file.parts[-5:])}
            test.assertEqual(found, {f"{t}/{c}/0/0" for t in range(frames) for c in range(channels)})

    def scale(self, level=0):
        """The scale of a level: t, c, y, x."""
        return self.multiscale["datasets"][level]["coordinateTransformations"][0]["scale"]

    def units(self):
        """The units of the axes, None where there is none."""
        return [axis.get("unit") for axis in self.multiscale["axes"]]

    def note(self, key):
        """A value of the map annotation of the OME-XML."""
        return next(m.text for m in self.xml.iter(OME + "M") if m.get("K") == key)

    def times(self):
        """The rows of the table of times."""
        with open(self.path / "OME" / "frames.csv", encoding="ascii") as file:
            return list(csv.DictReader(file))

    def parts(self):
        """What is hidden in it and unfinished."""
        return list(self.path.rglob("*.part"))


class ZarrTest(unittest.TestCase):
    """A folder for scenes and recordings."""

    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.path = self.folder / "run.ome.zarr"

    def scene(self, source="ring", faults=(), **camera):
        """A scene with one camera. A ring has frames that differ from each other."""
        camera = {"id": "cam-1", "model": "Small", "serial": "S0001", "source": {"kind": source},
                  "resolutions": [{"width": 650, "height": 491, "fps": 100}], **camera}
        path = self.folder / "scene.json"
        path.write_text(json.dumps({"cameras": [camera], "faults": list(faults)}), encoding="utf-8")
        return path

    def command(self, *arguments, output=None, **scene):
        """The words of a command that records."""
        return [PCDCTL, "record", "--sdk", "sim", "--scene", self.scene(**scene), "--json", "-o",
                output or self.path, *arguments]

    def record(self, *arguments, code=0, limit=None, output=None, **scene):
        """Records to the end; returns the report."""
        before = None if limit is None else lambda: limit_files(limit)
        result = subprocess.run(self.command(*arguments, output=output, **scene), text=True, check=False,
                                capture_output=True, timeout=SECONDS, preexec_fn=before)
        self.assertEqual(result.returncode, code, result.stderr)
        self.errors = result.stderr
        return json.loads(result.stdout) if result.stdout else {}

    def start(self, *arguments, **scene):
        """Starts a recording; it is killed with the test."""
        program = self.enterContext(subprocess.Popen(
            self.command(*arguments, **scene), text=True, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE))
        self.addCleanup(program.kill)
        end = threading.Timer(SECONDS, program.kill)
        end.start()
        self.addCleanup(end.cancel)
        return program

    def wait_for_frames(self, program, count):
        """Waits until this many frames are in the recording."""
        while not (self.path / "0" / "0" / str(count - 1)).exists():
            self.assertIsNone(program.poll(), "ended early")
            time.sleep(0.01)

    def whole_frames(self):
        """The number of frames whose chunks can all be decompressed."""
        recording = zarr.open_array(str(self.path / "0" / "0"), mode="r")
        for frame in range(recording.shape[0]):
            self.assertTrue((self.path / "0" / "0" / str(frame)).is_dir())
            self.assertGreater(int(recording[frame].max()), 0)
        return recording.shape[0]


class PixelsTest(ZarrTest):
    """What was recorded is what the camera sent."""

    def record_stack(self, **scene):
        """Records the scene as OME-TIFF. Returns the frames."""
        path = self.folder / "run.ome.tif"
        path.unlink(missing_ok=True)
        self.record("-n", "8", output=path, **scene)
        with tifffile.TiffFile(path) as tiff:
            frames = tiff.series[0].asarray()
        return numpy.moveaxis(frames, -1, 1) if frames.ndim == 4 else frames[:, None]

    def compare_with_tiff(self, **scene):
        """The same scene gives the same frames: as OME-Zarr and as OME-TIFF. Returns the former."""
        self.record("-n", "8", **scene)
        found = Recording(self, self.path).levels[0][:]
        # A busy machine loses frames between those that are taken, so they are found by their content. The camera repeats
        # four of them, so after a few stacks each has been seen.
        known = set()
        for _ in range(10):
            stack = self.record_stack(**scene)
            self.assertEqual(found.shape, stack.shape)
            known.update(frame.tobytes() for frame in stack)
            unknown = [number for number, frame in enumerate(found) if frame.tobytes() not in known]
            if not unknown:
                break
        self.assertEqual(unknown, [], "frames that are in no stack")
        return found

    def test_every_pixel_of_a_colour_recording_is_that_of_the_stack(self):
        found = self.compare_with_tiff(source="patches")
        self.assertEqual(found.shape, (8, 3, 491, 650))
        # The middles of the patches, as the stack's own test has them.
        self.assertEqual([[int(found[0, c, 245, 650 * (2 + 4 * patch) // 12]) for c in range(3)]
                          for patch in range(3)], [[255, 0, 0], [0, 255, 0], [0, 0, 255]])

    def test_frames_that_differ_are_those_of_the_stack(self):
        found = self.compare_with_tiff()
        self.assertGreater(len({frame.tobytes() for frame in found}), 1)

    def test_every_pixel_of_a_grey_recording_is_that_of_the_stack(self):
        found = self.compare_with_tiff(flags=["MONO"], bits=8)
        self.assertEqual(found.shape, (8, 1, 491, 650))
        self.assertGreater(len(numpy.unique(found)), 50)

    def test_dask_reads_the_same_as_zarr(self):
        self.record("-n", "3")
        lazy = dask.array.from_zarr(str(self.path), component="0/0")
        self.assertEqual(lazy.chunksize, (1, 1, 491, 650))
        pixels = Recording(self, self.path).levels[0][:]
        self.assertEqual(int(lazy.sum().compute()), int(pixels.sum(dtype=numpy.int64)))
        numpy.testing.assert_array_equal(lazy[1:, 2, ::7].compute(), pixels[1:, 2, ::7])

    def test_each_level_of_the_pyramid_is_the_mean_of_the_one_before(self):
        self.record("-n", "3", "--pyramid", "--pixel-size", "0.5")
        recording = Recording(self, self.path)
        self.assertEqual([level.shape[2:] for level in recording.levels],
                         [(491, 650), (245, 325), (122, 162)])
        before = recording.levels[0][:].astype(int)
        for number, level in enumerate(recording.levels[1:], 1):
            rows, columns = (2 * size for size in level.shape[2:])
            whole = before[:, :, :rows, :columns]
            mean = (whole[:, :, ::2, ::2] + whole[:, :, 1::2, ::2] + whole[:, :, ::2, 1::2]
                    + whole[:, :, 1::2, 1::2] + 2) // 4
            numpy.testing.assert_array_equal(level[:], mean)
            self.assertEqual(recording.scale(number)[2:], [0.5 * 2 ** number] * 2)
            before = mean


class MetadataTest(ZarrTest):
    """What a recording says about itself."""

    def test_times_and_sizes_are_those_of_the_frames(self):
        report = self.record("-n", "5", "--pixel-size", "0.345")
        recording = Recording(self, self.path)
        self.assertEqual(report["recording"]["written"], 5)
        self.assertEqual(report["file"], str(self.path))
        rows = recording.times()
        planes = list(recording.xml.iter(OME + "Plane"))
        self.assertEqual([int(row["index"]) for row in rows], [0, 1, 2, 3, 4])
        self.assertEqual(len(planes), 15)
        for number, plane in enumerate(planes):
            row = rows[number // 3]
            self.assertEqual((plane.get("TheT"), plane.get("TheC")), (row["index"], str(number % 3)))
            self.assertEqual(plane.get("DeltaT"), row["delta_t_s"])
            self.assertEqual(plane.get("ExposureTime"), row["exposure_ms"])
        step = float(rows[-1]["delta_t_s"]) / 4
        self.assertGreater(step, 0)
        self.assertAlmostEqual(recording.scale()[0], step)
        self.assertEqual(recording.scale()[1:], [1, 0.345, 0.345])
        self.assertEqual(recording.units(), ["second", None, "micrometer", "micrometer"])
        pixels = next(recording.xml.iter(OME + "Pixels"))
        self.assertEqual([pixels.get("Size" + name) for name in "TCYX"], ["5", "3", "491", "650"])
        self.assertEqual(pixels.get("PhysicalSizeX"), "0.345")
        self.assertEqual(recording.note("Complete"), "yes")
        self.assertEqual(recording.note("Simulated"), "yes")
        self.assertEqual(recording.note("Recording written"), "5")
        self.assertEqual(recording.parts(), [])

    def test_what_is_not_known_has_no_unit(self):
        self.record("-n", "1")
        recording = Recording(self, self.path)
        self.assertEqual(recording.scale(), [1, 1, 1, 1])
        self.assertEqual(recording.units(), [None] * 4)

    def test_the_temperature_of_a_cooled_sensor_is_there(self):
        self.record("-n", "1", flags=["TEC_ONOFF"])
        place = next(Recording(self, self.path).xml.iter(OME + "ImagingEnvironment"))
        self.assertTrue(15 < float(place.get("Temperature")) < 50, place.get("Temperature"))

    def test_it_has_all_that_a_stack_has(self):
        stack = self.folder / "run.ome.tif"
        self.record("-n", "2", "--set", "contrast=12")
        self.record("-n", "2", "--set", "contrast=12", output=stack)
        with tifffile.TiffFile(stack) as tiff:
            expected = ElementTree.fromstring(tiff.ome_metadata)
        found = Recording(self, self.path).xml
        self.assertEqual(facts(found), facts(expected))
        self.assertIn(("M", "K", "Contrast"), facts(found))


class FailureTest(ZarrTest):
    """What remains of a recording that ended otherwise."""

    def test_a_killed_recording_has_the_frames_that_were_whole(self):
        program = self.start("--pyramid")
        self.wait_for_frames(program, 12)
        program.send_signal(signal.SIGKILL)
        program.wait()
        frames = self.whole_frames()
        self.assertGreaterEqual(frames, 11)  # the twelfth may not be counted yet
        chunks = {int(entry.name) for entry in (self.path / "0" / "0").iterdir() if entry.name.isdigit()}
        self.assertIn(chunks, (set(range(frames)), set(range(frames + 1))))
        xml = ElementTree.parse(self.path / "OME" / "METADATA.ome.xml").getroot()
        size = int(next(xml.iter(OME + "Pixels")).get("SizeT"))
        self.assertIn(size, (frames, frames - 1))
        complete = next(m.text for m in xml.iter(OME + "M") if m.get("K") == "Complete")
        self.assertTrue(complete.startswith("no: the recording was cut short"), complete)
        lines = (self.path / "OME" / "frames.csv").read_bytes().splitlines()
        self.assertGreaterEqual(len(lines) - 1, frames)
        for level in range(3):  # what the full size counts, all sizes have
            smaller = zarr.open_array(str(self.path / "0" / str(level)), mode="r")
            self.assertIn(smaller.shape[0], (frames, frames + 1))
            self.assertGreater(int(smaller[frames - 1].max()), 0)

    def test_chunks_appear_whole(self):
        program = self.start("--pyramid")
        self.wait_for_frames(program, 1)
        for _ in range(40):  # as a program that follows the recording would
            frames = zarr.open_array(str(self.path / "0" / "0"), mode="r").shape[0]
            newest = max(int(entry.name) for entry in (self.path / "0" / "0").iterdir()
                         if entry.name.isdigit())
            self.assertGreaterEqual(newest + 1, frames)
            for channel in range(3):
                chunk = (self.path / "0" / "0" / str(newest) / str(channel) / "0" / "0").read_bytes()
                self.assertEqual(len(zarr.Blosc().decode(chunk)), 491 * 650)
        program.send_signal(signal.SIGINT)
        output, errors = program.communicate()
        self.assertEqual(program.returncode, 0, errors)
        self.assertEqual(Recording(self, self.path).levels[0].shape[0],
                         json.loads(output)["recording"]["written"])

    def test_ctrl_c_before_a_set_end_is_a_failure_with_whole_frames(self):
        program = self.start("-n", "1000000")
        self.wait_for_frames(program, 5)
        program.send_signal(signal.SIGINT)
        output, errors = program.communicate()
        self.assertEqual(program.returncode, 1)
        report = json.loads(output)["recording"]
        recording = Recording(self, self.path)
        self.assertEqual(recording.levels[0].shape[0], report["written"])
        self.assertTrue(report["balanced"])
        self.assertIn("interrupted after", errors)
        self.assertTrue(recording.note("Complete").startswith("no: interrupted after"))

    def test_after_an_unplug_the_frames_before_are_there_and_the_reason(self):
        fault = {"do": "unplug", "camera": "cam-1", "afterFrames": 12}
        report = self.record("-n", "100000", code=1, faults=[fault])
        recording = Recording(self, self.path)
        frames = recording.levels[0].shape[0]
        self.assertGreaterEqual(frames, 10)
        self.assertEqual(report["recording"]["written"], frames)
        self.assertEqual(report["recording"]["not_taken"], 100000 - frames)
        self.assertTrue(report["recording"]["balanced"])
        message = f"camera Small-S0001 was unplugged after {frames} frames"
        self.assertIn(message, self.errors)
        self.assertEqual(recording.note("Complete"), "no: " + message)

    def test_a_disk_that_takes_no_more_ends_it_with_the_reason(self):
        # A chunk is never larger than the limit, but the table of times grows until it is.
        report = self.record("--pyramid", code=1, limit=6000, source="patches")
        self.assertIn(f'cannot save "{self.path}": {os.strerror(27)}', self.errors)
        tally = report["recording"]
        self.assertTrue(tally["balanced"])
        self.assertGreaterEqual(tally["failed"], 1)
        self.assertGreater(tally["written"], 10)
        self.assertEqual(self.whole_frames(), tally["written"])
        recording = Recording(self, self.path)
        self.assertEqual(len(recording.times()), tally["written"])
        self.assertEqual(recording.parts(), [])

    def test_a_disk_without_room_for_a_frame_is_left_without_a_recording(self):
        # Natural pictures have noise, which no compression removes.
        report = self.record("-n", "3", code=1, limit=20000, source="specimen")
        self.assertIn(f'cannot save "{self.path}": {os.strerror(27)}', self.errors)
        self.assertEqual(report["recording"]["written"], 0)
        self.assertEqual([entry.name for entry in self.folder.iterdir()], ["scene.json"])

    def test_what_exists_is_refused_and_left_alone(self):
        self.path.mkdir()
        (self.path / "mine").write_text("mine", encoding="ascii")
        self.record("-n", "1", code=1)
        self.assertIn(f'"{self.path}" already exists, and files are never overwritten', self.errors)
        self.assertEqual([entry.name for entry in self.path.iterdir()], ["mine"])


class GuideTest(ZarrTest):
    """The examples of docs/recording.md about OME-Zarr."""

    # In the place of rsync: waits until the recording has another frame or its end, runs rsync, and
    # notes what the copy then counts and does not have. For the chunks of the second pass, which are
    # its fifth run, the connection is lost.
    RSYNC = """#!{python}
import json, pathlib, subprocess, sys, time
recording, copy, log = map(pathlib.Path, ("run.ome.zarr", "copy/run.ome.zarr", "passes"))
def frames_of(folder, size=0):
    counted = folder / f"0/{{size}}/.zarray"
    return json.loads(counted.read_bytes())["shape"][0] if counted.exists() else 0
before = log.read_text().splitlines() if log.exists() else []
seen = json.loads(before[-1])[0] if before else 0
while frames_of(recording) <= seen and b"Recording wanted" not in (
        recording / "OME/METADATA.ome.xml").read_bytes():
    time.sleep(0.01)
seen = frames_of(recording)
is_lost = len(before) == 4
wrong = 0 if is_lost else subprocess.run(["/usr/bin/rsync", *sys.argv[1:]], check=False).returncode
frames = [frames_of(copy, size) for size in (0, 1)]
for size, count in enumerate(frames):
    for frame in range(count):
        if not all((copy / f"0/{{size}}/{{frame}}/{{channel}}/0/0").exists() for channel in range(3)):
            wrong = wrong or f"frame {{frame}} of size {{size}} is counted, but not there"
if frames[0] and len((copy / "OME/frames.csv").read_bytes().splitlines()) <= frames[0]:
    wrong = wrong or "a frame is counted, but not in the table"
with open(log, "a") as file:
    print(json.dumps([seen, frames[0], wrong]), file=file)
sys.exit(12 if is_lost else wrong)
"""

    @staticmethod
    def block(heading, language):
        """The text of the one block in a section of the guide."""
        (found,) = guide_blocks.blocks("docs/recording.md", heading, language)
        return found.text

    def passes(self):
        """For each call of rsync: the frames of the recording, those that the copy counts, what is wrong."""
        log = self.folder / "passes"
        return [json.loads(line) for line in log.read_text().splitlines()] if log.exists() else []

    def test_a_copy_by_rsync_counts_what_it_has_at_any_time(self):
        recipe = self.block("Copying an OME-Zarr recording while it grows", "sh")
        tools = self.folder / "tools"
        tools.mkdir()
        for name, text in (("rsync", self.RSYNC.format(python=sys.executable)),
                           ("sleep", "#!/bin/sh\nexec /bin/sleep 0.1\n")):
            (tools / name).write_text(text)
            (tools / name).chmod(0o755)
        following = self.enterContext(subprocess.Popen(
            ["bash", "-e", "-c", recipe], cwd=self.folder, text=True, stderr=subprocess.PIPE,
            env={**os.environ, "PATH": f"{tools}:{os.environ['PATH']}"}))
        self.addCleanup(following.kill)
        program = self.start("--pyramid", resolutions=[{"width": 320, "height": 240, "fps": 10}])
        self.wait_for_copies(program, following, 3)
        program.send_signal(signal.SIGTERM)  # a shell's background job ignores SIGINT
        output, errors = program.communicate()
        self.assertEqual(program.returncode, 0, errors)
        _, errors = following.communicate(timeout=SECONDS)
        self.assertEqual((following.returncode, errors), (0, ""))
        self.assertEqual([wrong for _, _, wrong in self.passes() if wrong], [])
        copy = self.folder / "copy/run.ome.zarr"
        self.assertEqual(Recording(self, copy).levels[0].shape[0], json.loads(output)["recording"]["written"])
        subprocess.run(["diff", "-r", self.path, copy], check=True)

    def wait_for_copies(self, program, following, count):
        """Waits until this many copies have had frames, each more than the one before."""
        end = time.monotonic() + SECONDS
        while len({frames for _, frames, _ in self.passes()} - {0}) < count:
            self.assertIsNone(program.poll(), "ended early")
            self.assertIsNone(following.poll(), "ended early")
            self.assertFalse([wrong for _, _, wrong in self.passes() if wrong])
            self.assertLess(time.monotonic(), end, self.passes())
            time.sleep(0.02)

    def test_the_examples_do_what_the_guide_says(self):
        shell, script = (self.block("One folder: OME-Zarr", language) for language in ("sh", "python"))
        for line in shell.splitlines():
            words = shlex.split(line)
            self.assertEqual(words[0], "pcdctl")
            subprocess.run([PCDCTL, *words[1:], "--sdk", "sim", "--scene", self.scene()], check=True,
                           cwd=self.folder, capture_output=True, timeout=SECONDS)
        result = subprocess.run([sys.executable, "-c", script], check=False, cwd=self.folder,
                                capture_output=True, text=True, timeout=SECONDS)
        self.assertEqual(result.returncode, 0, result.stderr)
        shape, _, latest = result.stdout.splitlines()
        self.assertEqual(shape, "(100, 3, 491, 650)")
        self.assertGreater(float(latest), 0)


def facts(xml):
    """What an OME-XML document speaks of: elements with their attributes, and keys of the annotation.

    Without what depends on how the pixels are stored: planes and channels are counted once.
    """
    storage = {"TiffData", "MetadataOnly", "IFD", "FirstT", "PlaneCount"}
    colours = {("Channel", "Name"), ("Channel", "Color")}  # only where each has a plane of its own
    found = set()
    for element in xml.iter():
        name = element.tag.removeprefix(OME)
        if name in storage:
            continue
        found |= {(name, key) for key in element.attrib if (name, key) not in colours}
        if name == "M":
            found.add(("M", "K", element.get("K")))
    return found


def limit_files(size):
    """Limits the files of a program that is about to start; writing more is an error."""
    import resource  # pylint: disable=import-outside-toplevel

    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


if __name__ == "__main__":
    PCDCTL = Path(sys.argv.pop(1)).resolve()
    unittest.main()
