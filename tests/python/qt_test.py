"""The module in a program of PyQt6, whose window and event loop run already."""

import os
import sys
import threading
import unittest

os.environ["QT_QPA_PLATFORM"] = "offscreen"

from PyQt6.QtCore import QEventLoop, QTimer  # noqa: E402  (the platform comes first)
from PyQt6.QtWidgets import QApplication, QLabel  # noqa: E402

APPLICATION = QApplication(sys.argv)

import pcd  # noqa: E402
from support import UNTIL, SceneTest  # noqa: E402


class BesideQt(SceneTest):
    def in_loop(self, function):
        """Calls a function from the running event loop, as a button does; returns its result."""
        results = []

        def call():
            try:
                results.append(function())
            finally:
                APPLICATION.quit()
        QTimer.singleShot(0, call)
        QTimer.singleShot(UNTIL * 1000, APPLICATION.quit)
        APPLICATION.exec()
        self.assertEqual(1, len(results), "the function did not end")
        return results[0]

    def test_the_window_goes_on_while_a_stream_waits(self):
        label, ticks = QLabel(), []
        label.show()
        timer = QTimer()
        timer.timeout.connect(lambda: (ticks.append(1), label.setText(str(len(ticks)))))

        def use():
            timer.start(1)
            with pcd.open() as opened:
                opened.exposure = 30
                return [frame.array.shape for frame in opened.stream(5)]
        self.assertEqual([(240, 322, 3)] * 5, self.in_loop(use))
        self.assertGreater(len(ticks), 2)
        timer.stop()
        self.assertIs(APPLICATION, QApplication.instance())

    def test_the_loop_calls_functions_for_cameras_that_come_and_go(self):
        seen = []

        def note(camera):
            seen.append(camera.id)
            if len(seen) == 2:
                APPLICATION.quit()
        timer = QTimer()
        timer.setSingleShot(True)
        timer.timeout.connect(APPLICATION.quit)
        timer.start(UNTIL * 1000)
        with pcd.on_unplug(note), pcd.on_plug(note):
            QTimer.singleShot(0, lambda: self.pull("cam-1"))
            QTimer.singleShot(1, lambda: self.sdk.ToupcamSim_plug(b"cam-1"))
            APPLICATION.exec()
        timer.stop()
        self.assertEqual(["Small-CAM-1"] * 2, seen)

    def test_a_slot_that_is_called_during_a_stream_may_use_the_camera(self):
        stills, problems = [], []

        def use():
            with pcd.open() as opened:
                def snap():
                    try:
                        stills.append(opened.snap().still)
                        next(opened.stream())
                    except pcd.BusyError as error:
                        problems.append(str(error))
                QTimer.singleShot(1, snap)
                taken = 0
                for _ in opened.stream():
                    taken += 1
                    if problems:
                        return taken
            return 0
        self.assertGreater(self.in_loop(use), 0)
        self.assertEqual([True], stills)
        self.assertIn("is streaming already", problems[0])

    def test_a_slot_may_close_the_camera_under_a_stream(self):
        def use():
            opened = pcd.open()
            QTimer.singleShot(1, opened.close)
            with self.assertRaisesRegex(pcd.ClosedError, "open it again"):
                for _ in opened.stream():
                    pass
            return opened.is_open
        self.assertFalse(self.in_loop(use))

    def test_a_loop_in_a_loop_may_wait_too(self):
        def use():
            inner, found = QEventLoop(), []

            def take():
                with pcd.open() as opened:
                    found.append(len([*opened.stream(2)]))
                inner.quit()
            QTimer.singleShot(0, take)
            inner.exec()
            return found
        self.assertEqual([2], self.in_loop(use))

    def test_another_thread_gets_frames_but_no_cameras(self):
        sums, refused = [], []

        def use():
            with pcd.open() as opened:
                frame = opened.snap()

            def work():
                sums.append(int(frame.array.sum()))
                try:
                    pcd.cameras()
                except pcd.ThreadError as error:
                    refused.append(error)
            thread = threading.Thread(target=work)
            thread.start()
            thread.join()
            return True
        self.assertTrue(self.in_loop(use))
        self.assertEqual((1, 1), (len(sums), len(refused)))


if __name__ == "__main__":
    unittest.main()
