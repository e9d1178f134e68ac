"""Cameras that are unplugged and plugged in, and the functions called for that."""

import os
import sys
import unittest
from unittest import mock

import pcd
from support import UNTIL, SceneTest, camera, scene


class Unplugging(SceneTest):
    def test_an_unplugged_camera_says_so_and_can_be_opened_again(self):
        opened = pcd.open()
        opened.contrast = 7
        self.simulator.unplug("cam-1")
        self.assertEqual([], pcd.cameras())
        self.assertFalse(opened.is_open)
        for use in (lambda: opened.gain, opened.snap, lambda: next(opened.stream(1)),
                    lambda: setattr(opened, "gain", 1), lambda: opened.save_profile("x")):
            with self.assertRaisesRegex(pcd.UnpluggedError, "plug it in, and open it again"):
                use()
        opened.close()
        self.simulator.plug("cam-1")
        with pcd.open("Small-CAM-1") as again:
            self.assertEqual(0, again.contrast)
            self.assertEqual(2, len([*again.stream(2)]))
        with self.assertRaises(pcd.UnpluggedError):
            print(opened.gain)

    def test_a_stream_first_returns_what_has_arrived(self):
        self.load(scene(faults=[{"do": "unplug", "camera": "cam-1", "afterFrames": 20}]))
        opened, frames = pcd.open(), []
        stream = opened.stream(queue=50)
        with self.assertRaisesRegex(pcd.UnpluggedError, "Small-CAM-1 was unplugged"):
            for frame in stream:
                frames.append(frame)
        self.assertEqual([*range(1, len(frames) + 1)], [frame.sequence for frame in frames])
        self.assertGreaterEqual(len(frames), 19)
        self.assertEqual(240, frames[-1].array.shape[0])
        self.assertEqual(len(frames), stream.ledger["delivered"])

    def test_a_still_and_a_triggered_run_end_too(self):
        for start in (lambda camera: camera.snap(),
                      lambda camera: [*camera.trigger(None, external=True)]):
            self.load(scene())
            self.simulator.hold("cam-1")
            begun = len(self.simulator.journal())
            with pcd.open() as opened, self.assertRaises(pcd.UnpluggedError):
                self.when(lambda: self.has_started(begun), lambda: self.pull("cam-1"))
                start(opened)

    def has_started(self, begun):
        """True if a stream has started after the first `begun` lines of the journal."""
        return any(line.startswith("Toupcam_Start") for line in self.simulator.journal()[begun:])

    def test_the_other_camera_goes_on(self):
        self.load(scene(camera("one"), camera("two")))
        with pcd.open("Small-TWO") as second:
            for frame in second.stream(10):
                if frame.index == 3:
                    self.simulator.unplug("one")
        self.assertEqual(9, frame.index)
        with self.assertRaisesRegex(pcd.Error, '"one".*is plugged in'):
            self.simulator.unplug("one")


class Listening(SceneTest):
    def setUp(self):
        super().setUp()
        self.seen = []

    def listen(self, name, register):
        subscription = register(lambda camera: self.seen.append(f"{name} {camera.id}"))
        self.addCleanup(subscription.cancel)
        return subscription

    def test_functions_are_called_for_cameras_that_come_and_go(self):
        self.listen("+", pcd.on_plug)
        self.listen("-", pcd.on_unplug)
        self.simulator.unplug("cam-1")
        self.simulator.plug("cam-1")
        self.assertTrue(pcd.wait_for(lambda: len(self.seen) == 2, UNTIL))
        self.assertEqual(["- Small-CAM-1", "+ Small-CAM-1"], self.seen)

    def test_they_are_called_while_a_stream_waits(self):
        self.load(scene(camera("one"), camera("two")))
        self.listen("-", pcd.on_unplug)
        with pcd.open(0) as opened:
            for frame in opened.stream():
                if frame.index == 0:
                    self.pull("two")
                if self.seen:
                    break
        self.assertEqual(["- Small-TWO"], self.seen)

    def test_a_cancelled_function_is_called_no_more(self):
        with self.listen("-", pcd.on_unplug):
            pass
        self.simulator.unplug("cam-1")
        pcd.handle_events()
        self.assertEqual([], self.seen)

    def test_a_function_may_open_the_camera(self):
        self.simulator.unplug("cam-1")

        def use(info):
            with pcd.open(info) as opened:
                self.seen.append(opened.snap().array.shape)
        with pcd.on_plug(use):
            self.simulator.plug("cam-1")
            self.assertTrue(pcd.wait_for(lambda: self.seen, UNTIL))
        self.assertEqual([(240, 322, 3)], self.seen)

    def test_an_exception_in_a_function_is_reported_and_stops_nothing(self):
        def fail(_):
            raise ZeroDivisionError("mine")
        reported = []
        with mock.patch.object(sys, "unraisablehook", reported.append), pcd.on_unplug(fail):
            self.listen("-", pcd.on_unplug)
            self.simulator.unplug("cam-1")
            self.assertTrue(pcd.wait_for(lambda: self.seen, UNTIL))
        self.assertEqual(["mine"], [str(one.exc_value) for one in reported])
        self.assertIs(fail, reported[0].object)
        self.assertEqual(["- Small-CAM-1"], self.seen)

    def test_a_function_may_close_what_streams_and_use_what_waits(self):
        self.load(scene(camera("one"), camera("two")))
        opened = pcd.open(0)
        stream = opened.stream()

        def use(_):
            self.seen.append(next(stream).index)  # inside the call of next() below
            self.seen.append(opened.snap().still)
            opened.close()
        taken = []
        with pcd.on_unplug(use), self.assertRaises(pcd.ClosedError):
            for frame in stream:
                taken.append(frame.index)
                if frame.index == 0:
                    self.pull("two")
        self.assertNotIn(self.seen[0], taken)
        self.assertTrue(self.seen[1])

    def test_a_function_may_close_the_camera_of_which_a_still_is_awaited(self):
        self.load(scene(camera("one"), camera("two")))
        opened = pcd.open("Small-ONE")
        self.simulator.hold("one")
        files = len(os.listdir("/proc/self/fd"))
        with pcd.on_unplug(lambda _: opened.close()):
            self.when(lambda: True, lambda: self.pull("two"))
            with self.assertRaisesRegex(pcd.ClosedError, "closed before a live frame arrived"):
                opened.snap()
        self.assertEqual(files, len(os.listdir("/proc/self/fd")))  # each queue has one

    def test_a_function_that_cannot_be_called_is_refused(self):
        with self.assertRaisesRegex(TypeError, "the function is None: expected one that takes"):
            pcd.on_plug(None)

    def test_ctrl_c_in_a_function_reaches_the_caller(self):
        def interrupt(_):
            raise KeyboardInterrupt
        reported = []
        with mock.patch.object(sys, "unraisablehook", reported.append), pcd.on_unplug(interrupt):
            self.pull("cam-1")
            with self.assertRaises(KeyboardInterrupt):
                pcd.wait_for(lambda: False, UNTIL)
        self.assertEqual([], reported)
        self.assertEqual([], pcd.cameras())


class Simulating(SceneTest):
    def test_a_scene_with_a_mistake_names_its_place_and_changes_nothing(self):
        with self.assertRaisesRegex(pcd.Error, "the scene: .*nosuch"):
            self.simulator.load({"cameras": [], "nosuch": 1})
        with self.assertRaisesRegex(pcd.Error, 'scene "missing.json"'):
            pcd.simulate("missing.json")
        self.assertEqual(["Small-CAM-1"], [one.id for one in pcd.cameras()])

    def test_what_no_scene_can_be_is_refused(self):
        ring = {}
        ring["ring"] = ring
        for wrong in ({"seed": {1}}, ring):
            with self.assertRaisesRegex(pcd.Error, "the scene: .*: expected what JSON has"):
                self.simulator.load(wrong)
        with self.assertRaisesRegex(TypeError, "scene is 5: expected a path"):
            self.simulator.load(5)
        with self.assertRaisesRegex(pcd.BadValueError, '"scene" cannot be .*without a zero'):
            self.simulator.load("scene\0.json")

    def test_a_camera_that_is_not_in_the_scene_is_refused(self):
        uses = (self.simulator.unplug, self.simulator.plug, self.simulator.hold,
                self.simulator.fire_trigger)
        for use in uses:
            with self.subTest(use.__name__):
                with self.assertRaisesRegex(pcd.Error, 'no camera "nobody".*expected the "id"'):
                    use("nobody")
                with self.assertRaisesRegex(TypeError, "camera is 1: expected a str"):
                    use(1)
                with self.assertRaisesRegex(pcd.BadValueError, '"camera" cannot be .*in UTF-8'):
                    use("\udc80")
        self.assertFalse(self.simulator.fire_trigger("cam-1"))  # it is there, and misses it
        with self.assertRaisesRegex(pcd.BadValueError, '"held" cannot be .*True or False'):
            self.simulator.hold("cam-1", "no")

    def test_a_fault_that_could_never_happen_is_refused(self):
        for use in (self.simulator.fail, lambda name: self.simulator.delay(name, 1)):
            for wrong in ("Toupcam_put_Gian", "printf", "", "ToupcamSim_plug"):
                with self.assertRaisesRegex(pcd.BadValueError, '"function" cannot be .*a function of'):
                    use(wrong)
            with self.assertRaisesRegex(TypeError, "function is 7"):
                use(7)
        for name in ("skip", "count"):
            for wrong in (-1, 2**32, 1.5, None):
                with self.assertRaisesRegex(pcd.BadValueError, f'"{name}" cannot be .*from 0'):
                    self.simulator.fail("Toupcam_put_Hue", **{name: wrong})
        for wrong in (-1, 2**32, None, "1"):
            with self.assertRaisesRegex(pcd.BadValueError, '"milliseconds" cannot be .*from 0'):
                self.simulator.delay("Toupcam_put_Hue", wrong)
        with self.assertRaisesRegex(pcd.BadValueError, '"result" cannot be .*32 bits'):
            self.simulator.fail("Toupcam_put_Hue", 2**32)

    def test_what_is_no_list_of_plugins_no_function_and_no_loop_is_refused(self):
        for wrong in ("plugins", b"plugins", 5):
            with self.assertRaisesRegex(TypeError, "plugins is .*: expected a list of paths"):
                pcd.configure(plugins=wrong)
        with self.assertRaisesRegex(TypeError, "plugins is 5: expected a path"):
            pcd.configure(plugins=["x", 5])
        with self.assertRaisesRegex(TypeError, "predicate is True: expected a function"):
            pcd.wait_for(True)
        with self.assertRaisesRegex(TypeError, "loop is 'x': expected one of asyncio"):
            pcd.attach("x")

    def test_another_sdk_cannot_be_chosen_afterwards(self):
        with self.assertRaisesRegex(pcd.Error, "before the first use of cameras"):
            pcd.configure(sdk="auto")
        with self.assertRaisesRegex(pcd.Error, "before the first use of cameras"):
            pcd.configure(sdk="sim", plugins=["x"])


if __name__ == "__main__":
    unittest.main()
