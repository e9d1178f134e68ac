"""Streams, triggered runs, stills and recordings; slow loops, timeouts and Ctrl-C."""

import builtins
import gc
import math
import os
import signal
import tempfile
import threading
import time
import unittest
from pathlib import Path

import numpy as np

import pcd
from support import UNTIL, Nameless, SceneTest, camera, scene


class OneCamera(SceneTest):
    def setUp(self):
        super().setUp()
        self.camera = pcd.open()
        self.addCleanup(self.camera.close)


class Streams(OneCamera):
    def test_a_stream_has_the_number_of_frames_that_was_asked_for(self):
        stream = self.camera.stream(7)
        self.assertEqual([*range(7)], [frame.index for frame in stream])
        self.assertEqual([], [*stream])
        ledger = stream.ledger
        self.assertEqual(ledger["produced"], sum(ledger.values()) - ledger["produced"])
        self.assertGreaterEqual(ledger["produced"], 7)

    def test_a_loop_that_ends_early_stops_the_camera(self):
        for frame in self.camera.stream():
            if frame.index == 2:
                break
        self.assertEqual(2, len([*self.camera.stream(2)]))

    def test_a_stream_that_is_kept_is_closed_by_its_block(self):
        with self.camera.stream() as stream:
            next(stream)
            with self.assertRaisesRegex(pcd.BusyError, "close that stream first"):
                next(self.camera.stream(1))
            with self.assertRaisesRegex(pcd.BusyError, "close that stream first"):
                next(self.camera.trigger(1))
            with self.assertRaisesRegex(pcd.BusyError, "close that stream first"):
                self.camera.record(f"{tempfile.gettempdir()}/never.ome.tif", 1)
            next(stream)
        with self.assertRaises(StopIteration):
            next(stream)
        self.assertEqual(1, len([*self.camera.stream(1)]))

    def test_a_stream_begins_with_its_first_frame(self):
        stream = self.camera.stream(1)
        self.assertEqual({}, stream.ledger)
        self.assertEqual(1, len([*self.camera.stream(1)]))
        stream.close()
        self.assertEqual([], [*stream])

    def test_a_stream_ends_when_the_camera_is_closed(self):
        stream = self.camera.stream()
        next(stream)
        self.camera.close()
        with self.assertRaises(pcd.ClosedError):
            while True:
                next(stream)

    def test_wrong_numbers_are_refused(self):
        for wrong in (0, -1, 1.5, "3", True, 2**40):
            with self.assertRaisesRegex(pcd.BadValueError, '"frames" cannot be .*from 1 on'):
                self.camera.stream(wrong)
        for wrong in (0, None, np.array([1, 2]), int):
            with self.assertRaisesRegex(pcd.BadValueError, '"queue" cannot be .*from 1 on'):
                self.camera.stream(1, queue=wrong)

    def test_a_wrong_value_is_named_however_long_it_is_and_whatever_its_repr_does(self):
        for wrong, shown in ((10**5000, "<int>"), (Nameless(), "<Nameless>"),
                             ("x" * 1000, "'" + "x" * 199 + "…")):
            for name in ("frames", "queue", "timeout"):
                with self.subTest(name, shown=shown[:10]):
                    with self.assertRaises(pcd.BadValueError) as caught:
                        self.camera.stream(**{"frames": 1, name: wrong})
                    self.assertEqual((name, shown), (caught.exception.property, caught.exception.value))
                    self.assertLess(len(str(caught.exception)), 300)

    def test_what_is_neither_true_nor_false_is_refused(self):
        never = f"{tempfile.gettempdir()}/never.ome.tif"
        for wrong in ("no", "", 2, 0.5, None, np.array([1, 2])):
            with self.subTest(repr(wrong)):
                with self.assertRaisesRegex(pcd.BadValueError, '"external" cannot be .*True or False'):
                    self.camera.trigger(1, external=wrong)
                with self.assertRaisesRegex(pcd.BadValueError, '"pyramid" cannot be .*True or False'):
                    self.camera.record(never, 1, pyramid=wrong)
        self.assertEqual(1, len([*self.camera.trigger(1, external=np.False_)]))

    def test_another_thread_has_the_ledger_only_once_the_stream_is_closed(self):
        stream, found = self.camera.stream(), []

        def use():
            try:
                found.append(stream.ledger)
            except pcd.ThreadError as error:
                found.append(str(error))
        for end in (lambda: None, stream.close):
            next(stream)
            end()
            thread = threading.Thread(target=use)
            thread.start()
            thread.join()
        self.assertIn("call pcd from that thread", found[0])
        self.assertEqual(stream.ledger, found[1])

    def test_impossible_times_are_refused(self):
        never = f"{tempfile.gettempdir()}/never.ome.tif"
        calls = {"timeout": [lambda wrong: self.camera.stream(1, timeout=wrong),
                             lambda wrong: self.camera.astream(1, timeout=wrong),
                             lambda wrong: self.camera.trigger(1, timeout=wrong),
                             lambda wrong: self.camera.snap(timeout=wrong),
                             lambda wrong: self.camera.record(never, 1, timeout=wrong),
                             lambda wrong: pcd.wait_for(lambda: True, wrong)],
                 "exposure": [lambda wrong: self.camera.trigger(1, exposure=wrong)],
                 "duration": [lambda wrong: self.camera.record(never, duration=wrong)],
                 "interval": [lambda wrong: self.camera.record(never, 1, interval=wrong)],
                 "pixel_size": [lambda wrong: self.camera.record(never, 1,
                                                                 pixel_size=wrong)]}
        units = {"exposure": "milliseconds", "pixel_size": "micrometres"}
        for name, uses in calls.items():
            expected = units.get(name, "seconds")
            for wrong in (math.inf, -math.inf, math.nan, 1e300, -1, 10**400, "1", True):
                for number, use in enumerate(uses):
                    with self.subTest(name, number=number, wrong=str(wrong)[:9]):
                        with self.assertRaisesRegex(
                                pcd.BadValueError,
                                f'"{name}" cannot be .*: expected {expected} from .* to 1e9'):
                            use(wrong)
        self.assertEqual(1, len([*self.camera.stream(1, timeout=np.float32(1e6))]))

    def test_a_stream_dropped_by_another_thread_is_stopped_later(self):
        held = [self.camera.stream()]
        next(held[0])
        thread = threading.Thread(target=held.clear)
        thread.start()
        thread.join()
        pcd.handle_events()
        self.assertEqual(1, len([*self.camera.stream(1)]))

    def test_a_camera_that_is_closed_under_a_stream_leaves_nothing_of_it(self):
        self.camera.close()
        left = []
        before = len(os.listdir("/proc/self/fd"))
        for _ in range(3):
            with pcd.open() as opened:
                left.append(opened.stream(queue=1))
                next(left[-1])
        with pcd.open() as opened, opened.stream(20, queue=20) as stream:
            for _ in stream:
                pass
        # The queues of the others take no frames, and so do not lose any.
        self.assertEqual((20, 0), (stream.ledger["delivered"], stream.ledger["failed_in_writer"]))
        left.clear()
        del stream
        gc.collect()
        self.assertEqual(before, len(os.listdir("/proc/self/fd")))

    def test_settings_change_during_a_stream(self):
        found = []
        for frame in self.camera.stream(30):
            found.append(frame.settings["contrast"])
            if frame.index == 1:
                self.camera.contrast = 9
            if frame.index == 2:
                self.assertTrue(self.camera.snap().still)
        self.assertEqual((0, 9), (found[0], found[-1]))

    def test_other_threads_run_while_a_stream_waits(self):
        self.camera.exposure = 500
        ticks, stop = [], threading.Event()

        def tick():
            while not stop.wait(0.001):
                ticks.append(1)
        thread = threading.Thread(target=tick)
        thread.start()
        next(self.camera.stream())
        stop.set()
        thread.join()
        self.assertGreater(len(ticks), 3)


class SlowLoops(OneCamera):
    def test_a_slow_loop_loses_frames_by_number_and_never_more_memory(self):
        stream = self.camera.stream(queue=3)
        first = next(stream)
        dropped = stream.dropped
        while stream.dropped < dropped + 50:  # without a call that takes frames
            time.sleep(0.01)
            self.assertLessEqual(stream.waiting, 3)
        self.assertEqual(3, stream.waiting)
        numbers = [first.sequence] + [next(stream).sequence for _ in range(4)]
        self.assertEqual(sorted(set(numbers)), numbers)
        self.assertGreater(numbers[4], numbers[3] + 50)  # what was lost came after those that waited
        stream.close()
        ledger = stream.ledger
        self.assertEqual(stream.dropped, ledger["failed_in_writer"])

    def test_memory_stays_bounded_however_long_the_loop_sleeps(self):
        self.load(scene(camera(resolutions=[{"width": 1600, "height": 1200, "fps": 100}])))
        with pcd.open() as opened:
            stream = opened.stream(queue=4)
            next(stream)
            while stream.dropped < 5:
                time.sleep(0.01)
            before = resident()
            while stream.dropped < 100:  # 576 MB of pixels
                time.sleep(0.01)
            self.assertLess(resident() - before, 60e6)

    def test_frames_that_nobody_keeps_are_released(self):
        for frame in self.camera.stream(50):
            pixels = frame.array
        del frame, pixels
        gc.collect()
        before = resident()
        for _ in self.camera.stream(300):  # 70 MB of pixels
            pass
        self.assertLess(resident() - before, 30e6)


def resident():
    """Bytes of this process that are in memory."""
    pages = int(Path("/proc/self/statm").read_text(encoding="ascii").split()[1])
    return pages * os.sysconf("SC_PAGE_SIZE")


class Waiting(OneCamera):
    def test_a_camera_that_sends_nothing_is_a_timeout(self):
        self.simulator.hold("cam-1")
        with self.assertRaisesRegex(pcd.TimeoutError, "no frame for 0.2 s; 0 arrived") as caught:
            next(self.camera.stream(timeout=0.2))
        self.assertIsInstance(caught.exception, builtins.TimeoutError)
        with self.assertRaisesRegex(pcd.TimeoutError, "did not send a live frame in time"):
            self.camera.snap(timeout=0.1)
        self.simulator.hold("cam-1", False)
        self.assertEqual(1, len([*self.camera.stream(1)]))

    def test_ctrl_c_ends_the_wait_for_a_frame(self):
        self.simulator.hold("cam-1")
        for wait in (lambda: next(self.camera.stream()), self.camera.snap,
                     lambda: pcd.wait_for(lambda: False)):
            with self.assertRaises(KeyboardInterrupt):
                interrupt_soon()
                wait()
        self.simulator.hold("cam-1", False)
        self.assertEqual(1, len([*self.camera.stream(1)]))

    def test_an_error_in_a_predicate_reaches_the_caller(self):
        with self.assertRaises(ZeroDivisionError):
            pcd.wait_for(lambda: 1 / 0)
        with self.assertRaisesRegex(ValueError, "truth value"):
            pcd.wait_for(lambda: np.array([1, 2]), 0)
        self.assertFalse(pcd.wait_for(lambda: False, 0.05))
        self.assertTrue(pcd.wait_for(lambda: 1))


def interrupt():
    """Sends this process what Ctrl-C sends."""
    os.kill(os.getpid(), signal.SIGINT)


def interrupt_soon():
    """The same while the caller waits; or just before, if the machine is slow."""
    threading.Timer(0.1, interrupt).start()


class Triggers(OneCamera):
    def test_a_triggered_run_has_its_frames_and_exposure(self):
        frames = [*self.camera.trigger(4, exposure=7)]
        self.assertEqual([7.0] * 4, [frame.exposure for frame in frames])
        self.assertIn("Toupcam_Trigger(h", " ".join(self.simulator.journal()))

    def test_afterwards_the_camera_is_in_live_capture_with_its_own_exposure(self):
        self.camera.exposure = 2
        list(self.camera.trigger(1, exposure=30))
        self.assertEqual((2.0, 0), (self.camera.exposure, self.camera.extexposure["capturemode"]))
        self.assertEqual([2.0] * 3, [frame.exposure for frame in self.camera.stream(3)])

    def test_external_signals_take_one_frame_each(self):
        stream = self.camera.trigger(2, external=True, exposure=1)
        with stream:
            for _ in range(2):
                self.assertTrue(pcd.wait_for(lambda: self.simulator.fire_trigger("cam-1"), UNTIL))
                next(stream)
        self.assertEqual(0, self.camera.extexposure["capturemode"])

    def test_an_endless_run_ends_with_the_loop(self):
        for frame in self.camera.trigger(None, exposure=1):
            if frame.index == 3:
                break
        self.assertEqual(1, len([*self.camera.stream(1)]))

    def test_a_lost_trigger_is_a_timeout(self):
        self.load(scene(faults=[{"do": "dropTrigger", "camera": "cam-1", "nth": 2}]))
        with pcd.open() as opened:
            stream, taken = opened.trigger(3, exposure=1, timeout=0.5), []
            with self.assertRaisesRegex(pcd.TimeoutError, "2 arrived before"):
                for frame in stream:
                    taken.append(frame.sequence)
        self.assertEqual(2, len(taken))

    def test_an_impossible_time_and_a_camera_without_trigger_are_refused(self):
        with self.assertRaisesRegex(pcd.RefusedError, "expected 5e-05 s to 15 s"):
            next(self.camera.trigger(1, exposure=20_000))
        self.assertEqual(1, len([*self.camera.stream(1)]))
        self.load(scene(camera(flags=[])))
        with pcd.open() as opened:
            with self.assertRaises(pcd.RefusedError):
                next(opened.trigger(1))
            self.assertEqual(1, len([*opened.stream(1)]))


class Recordings(OneCamera):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_a_stack_has_all_frames(self):
        path = self.folder / "run.ome.tif"
        done = self.camera.record(path, frames=12, pixel_size=0.5)
        self.assertEqual((str(path), 12, 12), (done.path, done.wanted, done.written))
        import tifffile  # pylint: disable=import-outside-toplevel
        with tifffile.TiffFile(path) as file:
            self.assertEqual(12, len(file.pages))
            self.assertEqual([255, 0, 0], file.pages[3].asarray()[120, 53].tolist())
            self.assertIn('PhysicalSizeX="0.5"', file.ome_metadata)

    def test_a_folder_has_all_frames_and_its_pyramid(self):
        path = self.folder / "new" / "run.ome.zarr"
        done = self.camera.record(path, frames=7, pixel_size=0.5, pyramid=True)
        self.assertEqual((str(path), 7, 7), (done.path, done.wanted, done.written))
        import zarr  # pylint: disable=import-outside-toplevel
        image = zarr.open_group(str(path), mode="r")["0"]
        self.assertEqual([(7, 3, 240, 322), (7, 3, 120, 161)],
                         [image[name].shape for name in sorted(image.array_keys())])
        patches = {"0": (120, [53, 160, 268]), "1": (60, [26, 80, 134])}
        for name, (row, columns) in patches.items():
            for frame in (0, 6):
                self.assertEqual([[255, 0, 0], [0, 255, 0], [0, 0, 255]],
                                 [image[name][frame, :, row, column].tolist() for column in columns])
        first = image.attrs["multiscales"][0]["datasets"][0]["coordinateTransformations"][0]
        self.assertEqual([0.5, 0.5], first["scale"][2:])
        self.camera.record(self.folder / "flat.ome.zarr", frames=1)
        flat = zarr.open_group(str(self.folder / "flat.ome.zarr"), mode="r")
        self.assertEqual(["0"], [*flat["0"].array_keys()])

    def test_a_series_has_one_file_a_frame(self):
        self.camera.record(os.fsencode(self.folder / "f-##.png"), np.int32(3))
        self.assertEqual(["f-01.png", "f-02.png", "f-03.png"],
                         sorted(path.name for path in self.folder.iterdir()))

    def test_a_recording_ends_after_a_time(self):
        done = self.camera.record(self.folder / "run.ome.tif", duration=0.2, interval=0.05)
        self.assertEqual(done.wanted, done.written)
        self.assertTrue(1 <= done.written <= 6, done)
        self.assertGreater(done.not_due, 0)

    def test_mistakes_are_named(self):
        with self.assertRaisesRegex(pcd.BadValueError, "needs an end: give frames"):
            self.camera.record(self.folder / "run.ome.tif")
        with self.assertRaisesRegex(pcd.BadValueError, r"run\.jpg.*\.ome\.tif"):
            self.camera.record(self.folder / "run.jpg", 1)
        for wrong, expected in (("a\0b.ome.tif", "without a zero"), ("\udcff.ome.tif", "in UTF-8")):
            for use in (lambda: self.camera.record(wrong, 1), lambda: self.camera.save_profile(wrong),
                        lambda: self.camera.load_profile(wrong)):
                with self.assertRaisesRegex(pcd.BadValueError, f'"path" cannot be .*{expected}'):
                    use()
        with self.assertRaisesRegex(pcd.BadValueError, '"duration" cannot be -1'):
            self.camera.record(self.folder / "run.ome.tif", duration=-1)
        self.assertEqual([], [*self.folder.iterdir()])

    def test_what_is_refused_leaves_no_folder(self):
        for name, expected in (("run.tif", "is not the name of a recording"),
                               ("run-#.jpg", "is not the name of a picture file"),
                               ("run-#.ome.zarr", "expected a name without #")):
            with self.assertRaisesRegex(pcd.BadValueError, expected) as caught:
                self.camera.record(self.folder / "new" / name, 1)
            self.assertEqual(("path", str(self.folder / "new" / name)),
                             (caught.exception.property, caught.exception.value))
        with self.assertRaisesRegex(pcd.BadValueError,
                                    r'"pyramid" is not for .*\.tif": expected .*\.ome\.zarr'):
            self.camera.record(self.folder / "new" / "run.ome.tif", 1, pyramid=True)
        with self.camera.stream() as stream:
            next(stream)
            with self.assertRaisesRegex(pcd.BusyError, "close that stream first"):
                self.camera.record(self.folder / "new" / "run.ome.zarr", 1)
        self.assertEqual([], [*self.folder.iterdir()])

    def test_no_file_is_replaced(self):
        for name in ("run.ome.tif", "run.ome.zarr"):
            path = self.folder / name
            path.write_text("mine", encoding="ascii")
            with self.assertRaisesRegex(pcd.RecordError, name):
                self.camera.record(path, 2)
            self.assertEqual("mine", path.read_text(encoding="ascii"))
        kept = self.folder / "kept.ome.zarr"
        kept.mkdir()
        with self.assertRaisesRegex(pcd.RecordError, "kept.ome.zarr.*it is a folder"):
            self.camera.record(kept, 2)
        self.assertEqual([], [*kept.iterdir()])

    def test_ctrl_c_leaves_a_complete_file(self):
        path = self.folder / "run.ome.tif"
        self.when(path.exists, interrupt)  # it gets its name with its first frame
        with self.assertRaises(KeyboardInterrupt):
            self.camera.record(path, frames=100_000)
        import tifffile  # pylint: disable=import-outside-toplevel
        with tifffile.TiffFile(path) as file:
            self.assertGreater(len(file.pages), 0)
            self.assertIn("interrupted", file.ome_metadata)
        self.assertEqual(1, len([*self.camera.stream(1)]))

    def test_an_unplugged_camera_leaves_a_complete_file(self):
        self.load(scene(faults=[{"do": "unplug", "camera": "cam-1", "afterFrames": 5}]))
        path = self.folder / "run.ome.tif"
        with pcd.open() as opened, self.assertRaisesRegex(pcd.UnpluggedError, "run.ome.tif.*frames"):
            opened.record(path, frames=1000)
        import tifffile  # pylint: disable=import-outside-toplevel
        with tifffile.TiffFile(path) as file:
            self.assertGreater(len(file.pages), 0)

    def test_an_unplugged_camera_leaves_a_complete_folder(self):
        self.load(scene(faults=[{"do": "unplug", "camera": "cam-1", "afterFrames": 5}]))
        path = self.folder / "run.ome.zarr"
        with pcd.open() as opened, self.assertRaisesRegex(
                pcd.UnpluggedError, r'run.ome.zarr" has [1-9]\d* frames: .* was unplugged') as caught:
            opened.record(path, frames=1000)
        import zarr  # pylint: disable=import-outside-toplevel
        frames = zarr.open_group(str(path), mode="r")["0/0"]
        self.assertIn(f" has {frames.shape[0]} frames", str(caught.exception))
        for frame in range(frames.shape[0]):
            self.assertEqual([255, 0, 0], frames[frame, :, 120, 53].tolist())


class Stills(OneCamera):
    def test_a_still_is_taken_with_and_without_a_stream(self):
        first = self.camera.snap()
        self.assertTrue(first.still)
        with self.camera.stream() as stream:
            next(stream)
            second = self.camera.snap()
            next(stream)
        self.assertTrue(second.still)
        np.testing.assert_array_equal(first.array, second.array)


if __name__ == "__main__":
    unittest.main()
