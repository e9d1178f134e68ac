"""Frames: their pixels without a copy, their memory, and what is known about them."""

import datetime
import gc
import io
import pickle
import struct
import threading
import time
import unittest

import numpy as np

import pcd
from pcd import _pcd
from support import SceneTest, camera, run_python, scene


class Pixels(SceneTest):
    def take(self, count=1, **keys):
        self.load(scene(camera(**keys)))
        with pcd.open() as opened:
            return [*opened.stream(count)]

    def test_colours_are_red_green_blue(self):
        frame, = self.take()
        pixels = frame.array
        self.assertEqual((240, 322, 3), pixels.shape)
        self.assertEqual(np.uint8, pixels.dtype)
        row = pixels[120]
        self.assertEqual([[255, 0, 0], [0, 255, 0], [0, 0, 255], [0, 0, 0]],
                         row[[53, 160, 268, 2]].tolist())
        self.assertEqual((322, 240), (frame.width, frame.height))

    def test_grey_cameras_have_one_sample(self):
        frame, = self.take(bits=8, flags=["MONO"])
        self.assertEqual((240, 322), frame.array.shape)
        self.assertEqual([87, 127, 39], frame.array[120, [53, 160, 268]].tolist())

    def test_arrays_share_the_frames_memory_and_are_read_only(self):
        frame, = self.take()
        first, second = frame.array, np.asarray(frame)
        self.assertTrue(np.shares_memory(first, second))
        self.assertFalse(first.flags.writeable or first.flags.owndata)
        with self.assertRaises(ValueError):
            first[0, 0, 0] = 1
        with self.assertRaises(ValueError):
            first.setflags(write=True)
        self.assertTrue(np.array(frame).flags.writeable)

    def test_frames_outlive_the_camera_and_arrays_outlive_frames(self):
        frames = self.take(5)
        arrays = [frame.array for frame in frames]
        copies = [array.copy() for array in arrays]
        del frames
        gc.collect()
        self.load({"cameras": []})
        self.take(20)  # would use the memory again if it were free
        for array, copy in zip(arrays, copies):
            np.testing.assert_array_equal(copy, array)

    def test_readers_without_strides_are_refused_where_the_pixels_are_in_parts(self):
        frame, = self.take()
        with self.assertRaisesRegex(BufferError, "ascontiguousarray"):
            io.BytesIO().write(frame)
        with self.assertRaises(TypeError):
            io.BytesIO(bytes(300_000)).readinto(frame)
        self.assertEqual(np.ascontiguousarray(frame).tobytes(), memoryview(frame).tobytes())
        plain, = self.take(bits=8, flags=["MONO"],
                           resolutions=[{"width": 320, "height": 240, "fps": 100}])
        file = io.BytesIO()
        file.write(plain)
        self.assertEqual(plain.array.tobytes(), file.getvalue())

    def test_another_thread_may_use_and_drop_frames(self):
        frames, sums = self.take(3), []

        def use():
            while frames:
                sums.append(int(frames.pop().array.sum()))
        thread = threading.Thread(target=use)
        thread.start()
        thread.join()
        self.assertEqual(3, len(sums))
        self.assertGreater(sums[0], 0)

    def test_a_view_keeps_the_memory_until_it_is_released(self):
        frame, = self.take()
        view = memoryview(frame)
        del frame
        gc.collect()
        self.assertEqual((240, 322, 3), view.shape)
        self.assertEqual(255, view[120, 53, 0])
        self.assertTrue(view.readonly)
        view.release()

    def test_a_frame_is_not_pickled_but_its_array_is(self):
        frame, = self.take()
        with self.assertRaises(TypeError):
            pickle.dumps(frame)
        np.testing.assert_array_equal(frame.array, pickle.loads(pickle.dumps(frame.array)))


    def test_frames_and_streams_are_made_by_cameras_only(self):
        class Mine(pcd.Frame):  # pylint: disable=too-few-public-methods
            """One that Python could make without pixels."""
        for make in (pcd.Frame, lambda: pcd.Frame.__new__(pcd.Frame), Mine,
                     lambda: _pcd.Stream.__new__(_pcd.Stream),
                     lambda: _pcd.Session.__new__(_pcd.Session)):
            with self.assertRaisesRegex(TypeError, "made by cameras only"):
                make()

    def test_a_notebook_shows_a_picture_of_limited_size(self):
        frame, = self.take(resolutions=[{"width": 3000, "height": 1500, "fps": 10}])
        file = frame._repr_png_()  # pylint: disable=protected-access
        self.assertEqual((1024, 512), struct.unpack(">II", file[16:24]))
        small, = self.take(bits=8, flags=["MONO"])
        file = small._repr_png_()  # pylint: disable=protected-access
        self.assertEqual((322, 240, 8, 0), struct.unpack(">IIBB", file[16:26]))  # grey


class Facts(SceneTest):
    def test_a_frame_says_when_and_how_it_was_taken(self):
        with pcd.open() as opened:
            opened.exposure, opened.gain, opened.binning = 3, 1.5, "Add 2x2"
            before, utc = time.monotonic(), datetime.datetime.now(datetime.timezone.utc)
            frames = [*opened.stream(3)]
            after = time.monotonic()
        self.assertEqual([0, 1, 2], [frame.index for frame in frames])
        self.assertEqual([1, 2, 3], [frame.sequence for frame in frames])
        times = [frame.timestamp for frame in frames]
        self.assertEqual(sorted(times), times)
        self.assertTrue(before <= times[0] and times[-1] <= after)
        self.assertLessEqual(utc - datetime.timedelta(milliseconds=1), frames[0].time)
        last = frames[-1]
        self.assertEqual((3.0, 1.5, False, "2x2", False),
                         (last.exposure, last.gain, last.automatic, last.binning, last.still))
        self.assertEqual((3000, "Add 2x2"),
                         (last.settings["autoexpottime"], last.settings["binning"]))
        self.assertEqual("<pcd.Frame 3: 161 x 120, 3 ms (manual)>", repr(last))

    def test_the_settings_of_a_frame_stay_as_they_were(self):
        with pcd.open() as opened:
            opened.contrast = 5
            frame = opened.snap()
            opened.contrast = 50
        self.assertEqual(5, frame.settings["contrast"])
        self.assertTrue(frame.still)


class WithoutNumpy(unittest.TestCase):
    def test_frames_are_buffers_without_numpy(self):
        ended = run_python("import sys; sys.modules['numpy'] = None\n"
                           "import pcd; pcd.simulate()\n"
                           "with pcd.open(1) as camera: view = memoryview(camera.snap())\n"
                           "print(view.shape, view.format)\n")
        self.assertEqual("", ended.stderr)
        self.assertIn("(960, 1280) B\n", ended.stdout)


if __name__ == "__main__":
    unittest.main()
