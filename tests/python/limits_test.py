"""What is too slow, full or gone: the interpreter's lock held, readers that die, disks, cables."""

import ctypes
import errno
import gc
import os
import resource
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

import pcd
from support import UNTIL, SceneTest, camera, scene


def resident():
    """Bytes of this process that are in memory."""
    pages = int(Path("/proc/self/statm").read_text(encoding="ascii").split()[1])
    return pages * os.sysconf("SC_PAGE_SIZE")


class LimitTest(SceneTest):
    def assert_balanced(self, ledger):
        """Each frame that was produced has one outcome, or waits."""
        self.assertEqual(ledger["produced"], sum(ledger.values()) - ledger["produced"], ledger)
        self.assertGreater(ledger["produced"], 0)


class HeldInterpreter(LimitTest):
    """This thread keeps the interpreter's lock: no other one could take it."""

    def hold_until(self, is_done):
        """Waits without ever giving the lock away; false if nothing happens. Not while another thread
        of Python runs: it might just have the lock, and would keep it as long."""
        library = ctypes.PyDLL(None)  # calls functions with the lock
        before = sys.getswitchinterval()
        self.addCleanup(sys.setswitchinterval, before)
        sys.setswitchinterval(10 * UNTIL)  # nor do bytecodes
        end = time.monotonic() + UNTIL
        while not is_done() and time.monotonic() < end:
            library.usleep(5000)
        sys.setswitchinterval(before)
        return is_done()

    def test_frames_arrive_are_counted_and_keep_their_time(self):
        with pcd.open() as opened, opened.stream(queue=5) as stream:
            first = next(stream)
            before = stream.dropped
            self.assertTrue(self.hold_until(lambda: stream.dropped >= before + 20),
                            "the camera's thread waits for the interpreter")
            released = time.monotonic()
            self.assertEqual(5, stream.waiting)
            waited = [next(stream) for _ in range(5)]
            for earlier, later in zip([first, *waited], waited):
                self.assertGreater(later.timestamp, earlier.timestamp)
            self.assertLess(waited[-1].timestamp, released)
            later = next(stream)
            self.assertGreaterEqual(later.sequence - waited[-1].sequence, 20)
            stream.close()
            self.assertEqual(stream.dropped, stream.ledger["failed_in_writer"])
            self.assert_balanced(stream.ledger)

    def test_a_recording_goes_on_while_another_thread_of_python_computes(self):
        stop = threading.Event()

        def hold():
            library = ctypes.PyDLL(None)
            while not stop.is_set():
                library.usleep(20000)
        thread = threading.Thread(target=hold)
        with tempfile.TemporaryDirectory() as folder, pcd.open() as opened:
            thread.start()
            try:
                done = opened.record(Path(folder) / "run.ome.tif", frames=20)
            finally:
                stop.set()
                thread.join()
        self.assertEqual((20, 20, 0), (done.wanted, done.written, done.refused))


class Readers(LimitTest):
    def test_a_reader_that_dies_leaves_a_bounded_queue_and_a_balanced_ledger(self):
        self.load(scene(camera(resolutions=[{"width": 1600, "height": 1200, "fps": 100}])))
        with pcd.open() as opened:
            stream = opened.stream(queue=3)

            def read():
                for _ in stream:
                    raise ZeroDivisionError("the reader dies")
            with self.assertRaises(ZeroDivisionError):
                read()
            while stream.dropped < 5:
                time.sleep(0.01)
            before = resident()
            while stream.dropped < 60:  # 345 MB of pixels
                time.sleep(0.01)
            self.assertLess(resident() - before, 60e6)
            self.assertEqual(3, stream.waiting)
            with self.assertRaisesRegex(pcd.BusyError, "close that stream first"):
                next(opened.stream())
            stream.close()
            self.assertEqual(stream.dropped, stream.ledger["failed_in_writer"])
            self.assert_balanced(stream.ledger)
            self.assertEqual(2, len([*opened.stream(2)]))


class Cables(LimitTest):
    def test_unplugging_and_replugging_during_a_stream_ends_it_and_frees_its_memory(self):
        self.load(scene(camera(resolutions=[{"width": 1600, "height": 1200, "fps": 100}])))
        sizes = []
        for _ in range(6):  # 70 MB of pixels at a time would wait
            opened = pcd.open()
            stream = opened.stream(queue=4)
            next(stream)
            while stream.waiting < 4:
                time.sleep(0.005)
            self.pull("cam-1")
            self.simulator.plug("cam-1")
            frames = []
            with self.assertRaisesRegex(pcd.UnpluggedError,
                                        "Small-CAM-1 was unplugged: plug it in, and open it again"):
                for frame in stream:
                    frames.append(frame.sequence)
            self.assertGreaterEqual(len(frames), 4)
            self.assert_balanced(stream.ledger)
            self.assertEqual(0, stream.waiting)
            with self.assertRaises(StopIteration):
                next(stream)
            self.assertTrue(pcd.wait_for(pcd.cameras, UNTIL))
            with pcd.open() as again:  # the same camera, which has come back meanwhile
                self.assertEqual(1, next(again.stream()).sequence)
            gc.collect()
            sizes.append(resident())
        self.assertLess(sizes[-1] - sizes[1], 40e6, sizes)
        self.load({"cameras": []})
        self.assertEqual(0, self.simulator.open_handles())


class ClosedMeanwhile(LimitTest):
    """A function of on_unplug() closes the camera that is busy, because another one has gone."""

    def setUp(self):
        super().setUp()
        self.load(scene(camera("one"), camera("two")))
        self.opened = pcd.open("Small-ONE")
        subscription = pcd.on_unplug(lambda _: self.opened.close())
        self.addCleanup(subscription.cancel)

    def test_a_recording_says_so_and_its_file_is_complete(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "run.ome.tif"
            self.when(path.exists, lambda: self.pull("two"))
            with self.assertRaisesRegex(
                    pcd.ClosedError, 'run.ome.tif" has .* frames: camera Small-ONE was closed before'):
                self.opened.record(path, frames=100_000)
            import tifffile  # pylint: disable=import-outside-toplevel
            with tifffile.TiffFile(path) as file:
                self.assertGreater(len(file.pages), 0)

    def test_a_still_says_so(self):
        self.simulator.hold("one")
        begun = len(self.simulator.journal())
        self.when(lambda: any(line.startswith("Toupcam_Start")
                              for line in self.simulator.journal()[begun:]),
                  lambda: self.pull("two"))
        with self.assertRaisesRegex(pcd.ClosedError, "was closed before a live frame arrived"):
            self.opened.snap()

    def test_a_stream_says_so(self):
        self.when(lambda: True, lambda: self.pull("two"))
        with self.assertRaisesRegex(pcd.ClosedError, "Small-ONE is closed: open it again"):
            for _ in self.opened.stream():
                pass


class FullDisks(LimitTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        before = resource.getrlimit(resource.RLIMIT_FSIZE)
        self.addCleanup(resource.setrlimit, resource.RLIMIT_FSIZE, before)
        resource.setrlimit(resource.RLIMIT_FSIZE, (2_000_000, before[1]))  # of 230 kB a frame

    def test_a_stack_that_no_longer_fits_names_its_file_and_stays_readable(self):
        path = self.folder / "run.ome.tif"
        with pcd.open() as opened:
            with self.assertRaises(pcd.RecordError) as caught:
                opened.record(path, frames=1000)
            said = str(caught.exception)
            self.assertRegex(said, r'run\.ome\.tif" has [1-9]\d* frames: .*(limit|too large|large)')
            self.assertIsInstance(caught.exception, OSError)
            written = int(said.split(" has ")[1].split()[0])
            import tifffile  # pylint: disable=import-outside-toplevel
            with tifffile.TiffFile(path) as file:
                self.assertEqual(written, len(file.pages))
            self.assertLess(path.stat().st_size, 2_000_001)
            self.assertEqual(2, len([*opened.stream(2)]))

    def test_so_does_a_folder(self):
        # A chunk of a picture as plain as this one is smaller, but the table of times grows.
        resource.setrlimit(resource.RLIMIT_FSIZE, (8000, resource.getrlimit(resource.RLIMIT_FSIZE)[1]))
        path = self.folder / "run.ome.zarr"
        with pcd.open() as opened:
            with self.assertRaisesRegex(
                    pcd.RecordError, r'run\.ome\.zarr" has [1-9]\d* frames: cannot save '
                    rf'"{path}": {os.strerror(errno.EFBIG)}') as caught:
                opened.record(path, frames=1000)
            written = int(str(caught.exception).split(" has ")[1].split()[0])
            import zarr  # pylint: disable=import-outside-toplevel
            frames = zarr.open_group(str(path), mode="r")["0/0"]
            self.assertEqual(written, frames.shape[0])
            for frame in range(written):
                self.assertEqual([255, 0, 0], frames[frame, :, 120, 53].tolist())
            self.assertEqual(2, len([*opened.stream(2)]))

    def test_so_does_a_profile(self):
        resource.setrlimit(resource.RLIMIT_FSIZE, (100, resource.getrlimit(resource.RLIMIT_FSIZE)[1]))
        path = self.folder / "settings.json"
        with pcd.open() as opened, self.assertRaisesRegex(pcd.ProfileError, "settings.json"):
            opened.save_profile(path)
        self.assertFalse(path.exists())


if __name__ == "__main__":
    unittest.main()
