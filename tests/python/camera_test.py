"""Cameras: opening them, their properties, modes and profiles, and what is said about mistakes."""

import tempfile
import threading
import unittest
from pathlib import Path

import numpy as np

import pcd
from support import Nameless, SceneTest, camera, scene


class Opening(SceneTest):
    def setUp(self):
        super().setUp()
        self.load(scene(camera("one"), camera("two")))

    def test_cameras_are_listed_with_their_identity(self):
        self.assertEqual([pcd.CameraInfo("Small-ONE", "Small", "ONE", True),
                          pcd.CameraInfo("Small-TWO", "Small", "TWO", True)], pcd.cameras())

    def test_a_camera_is_named_by_index_id_prefix_or_info(self):
        for name in (1, np.int64(1), "Small-TWO", "Small-T", pcd.cameras()[1]):
            with self.subTest(name), pcd.open(name) as opened:
                self.assertEqual("Small-TWO", opened.id)
        with pcd.open() as opened:
            self.assertEqual(("Small-ONE", "Small", "ONE", True),
                             (opened.id, opened.model, opened.serial, opened.simulated))

    def test_the_error_for_an_unknown_camera_lists_those_there_are(self):
        with self.assertRaisesRegex(pcd.NoCameraError, 'no camera "x": .*"Small-ONE".*"Small-TWO"'):
            pcd.open("x")
        with self.assertRaisesRegex(pcd.NoCameraError, "numbered 0 to 1"):
            pcd.open(7)
        with self.assertRaisesRegex(pcd.NoCameraError, "numbered from 0"):
            pcd.open(-1)
        with self.assertRaisesRegex(pcd.NoCameraError, "several cameras"):
            pcd.open("Small")
        with self.assertRaisesRegex(pcd.NoCameraError, "numbered 0 to 1"):
            pcd.open(10**5000)
        with self.assertRaisesRegex(pcd.NoCameraError, r'no camera "\?": there are "Small-ONE"'):
            pcd.open("\ud800")
        for wrong in (1.5, True, b"Small", int, np.array([0, 1]), Nameless()):
            with self.assertRaisesRegex(TypeError, "camera is .*: expected an index"):
                pcd.open(wrong)

    def test_without_cameras_the_error_says_so(self):
        self.load({"cameras": []})
        with self.assertRaisesRegex(pcd.NoCameraError, "no camera found"):
            pcd.open()

    def test_a_camera_is_opened_once_at_a_time(self):
        with pcd.open():
            with self.assertRaisesRegex(pcd.BusyError, "close it first"):
                pcd.open()
        pcd.open().close()

    def test_a_closed_camera_says_that_it_is_closed(self):
        with pcd.open() as opened:
            self.assertTrue(opened.is_open)
        self.assertFalse(opened.is_open)
        opened.close()
        for use in (lambda: opened.gain, opened.snap, lambda: next(opened.stream(1)),
                    lambda: opened.modes, lambda: list(opened.properties),
                    lambda: opened.record("x.ome.tif", 1), lambda: setattr(opened, "gain", 1)):
            with self.assertRaisesRegex(pcd.ClosedError, r'pcd.open\("Small-ONE"\)'):
                use()
        self.assertEqual("Small-ONE", opened.id)

    def test_a_camera_that_nothing_refers_to_is_closed(self):
        pcd.open()
        pcd.open().close()

    def test_another_thread_is_told_where_to_go(self):
        caught, shown = [], []
        opened = pcd.open()
        self.addCleanup(opened.close)
        stream = opened.stream()
        next(stream)

        def use():
            for function in (pcd.cameras, pcd.open, opened.snap, opened.close, stream.close,
                             lambda: opened.gain, lambda: next(stream)):
                try:
                    function()
                except pcd.ThreadError as error:
                    caught.append(str(error))
            shown.append(repr(opened))
        thread = threading.Thread(target=use)
        thread.start()
        thread.join()
        self.assertEqual(7, len(caught))
        self.assertIn("call pcd from that thread", caught[0])
        self.assertEqual(["<pcd.Camera Small-ONE>"], shown)
        next(stream)

    def test_a_camera_dropped_by_another_thread_is_closed_later(self):
        held = [pcd.open()]
        thread = threading.Thread(target=held.clear)
        thread.start()
        thread.join()
        pcd.handle_events()
        pcd.open().close()


class PropertiesOfACamera(SceneTest):
    def setUp(self):
        super().setUp()
        self.camera = pcd.open()
        self.addCleanup(self.camera.close)

    def test_names_units_and_ranges_are_those_of_the_role(self):
        gain = self.camera.properties["gain"]
        self.assertEqual((1.0, 5.0, 0.01), gain.range)
        self.assertEqual(("gain", "autoexpogain", "Gain", "number", ""),
                         (gain.name, gain.id, gain.title, gain.kind, gain.unit))
        exposure = self.camera.properties["exposure"]
        self.assertEqual("ms", exposure.unit)
        self.assertEqual((0.05, 15000.0, 0.001), exposure.range)
        self.assertIn(20, exposure.range)
        self.assertNotIn(20000, exposure.range)

    def test_values_reach_the_camera_in_its_unit(self):
        self.camera.gain = 2.5
        self.camera.exposure = 20
        self.camera.contrast = -7
        self.camera.negative = True
        self.camera.binning = "Add 2x2"
        self.camera.region = (0, 0, 160, 120)
        self.assertEqual((2.5, 20.0, -7, True, "Add 2x2", pcd.Region(0, 0, 160, 120)),
                         (self.camera.gain, self.camera.exposure, self.camera.contrast,
                          self.camera.negative, self.camera.binning, self.camera.region))
        journal = self.simulator.journal()
        self.assertTrue(any(line.startswith("Toupcam_put_ExpoAGain") and ", 250)" in line
                            for line in journal))
        self.assertTrue(any(line.startswith("Toupcam_put_ExpoTime") and ", 20000)" in line
                            for line in journal))

    def test_ids_are_understood_too(self):
        self.camera.autoexpogain = 3
        self.assertEqual(3.0, self.camera.gain)
        self.assertEqual("gain", self.camera.properties["autoexpogain"].name)
        self.assertIn("autoexpogain", self.camera.properties)
        self.assertIn("gain", self.camera.properties)
        self.assertNotIn("gian", self.camera.properties)

    def test_choices_and_regions_are_described(self):
        self.assertEqual(("0", "90", "180", "270"), self.camera.properties["rotation"].choices)
        self.assertIsNone(self.camera.properties["rotation"].range)
        region = self.camera.properties["region"]
        self.assertEqual("region", region.kind)
        self.assertEqual(((0, 0, 322, 240), (4, 4)), (region.area.bounds, region.area.minimum))
        self.assertIsNone(self.camera.properties["gain"].area)
        self.assertEqual(len(list(self.camera.properties)), len(self.camera.properties))
        for one in self.camera.properties.values():
            self.assertTrue(repr(one).startswith("<pcd.Property"))

    def test_composite_values_are_dicts_and_keep_what_is_not_given(self):
        self.camera.extexposure = {"target": 99, "gain": 150}
        found = self.camera.extexposure
        self.assertEqual((99, 150), (found["target"], found["gain"]))
        self.camera.extexposure = {"target": 88}
        self.assertEqual((88, 150), (self.camera.extexposure["target"],
                                     self.camera.extexposure["gain"]))

    def test_bad_values_are_refused_with_property_value_and_range(self):
        cases = [("gain", 9, "a number from 1 to 5"), ("gain", "x", "a number from 1 to 5"),
                 ("exposure", 0, "a number from 0.05 to 15000 ms"),
                 ("gain", float("nan"), "a number from 1 to 5"),
                 ("contrast", 101, "a whole number from -100 to 100"),
                 ("contrast", 1.5, "a whole number from -100 to 100"),
                 ("contrast", 10**30, "a whole number from -100 to 100"),
                 ("contrast", None, "a whole number from -100 to 100"),
                 ("negative", 2, "on or off"), ("rotation", "91", "one of '0', '90'"),
                 ("region", (0, 0), "a region x,y,width,height inside 0,0,322,240"),
                 ("region", np.array(5), "a region x,y"), ("region", b"\0\0@@", "a region x,y"),
                 ("region", bytearray(b"\0\0@@"), "a region x,y"),
                 ("region", (8, 0, 2**31 - 1, 64), "a region x,y"),
                 ("region", (0, 0, -2**31, 64), "a region x,y"),
                 ("region", Unreadable(), "a region x,y"),
                 ("extexposure", 3, "one field"), ("gain", b"2", "a number from 1 to 5"),
                 ("gain", complex(1, 2), "a number from 1 to 5"),
                 ("rotation", "\ud800", "one of '0', '90'"), ("rotation", b"90", "one of '0', '90'"),
                 ("negative", np.array([1, 2]), "on or off")]
        before = len(self.simulator.journal())
        for name, value, expected in cases:
            with self.subTest(name=name, value=value):
                with self.assertRaises(pcd.BadValueError) as caught:
                    setattr(self.camera, name, value)
                self.assertEqual(name, caught.exception.property)
                self.assertIn(caught.exception.value, (repr(value), ascii(value)))
                self.assertIn(expected, caught.exception.expected)
                self.assertIn(expected, str(caught.exception))
                self.assertIsInstance(caught.exception, ValueError)
        sent = [line for line in self.simulator.journal()[before:] if "_put_" in line]
        self.assertEqual([], sent)

    def test_an_interrupt_in_a_value_is_not_about_the_value(self):
        before = len(self.simulator.journal())
        for name, method in (("gain", "__float__"), ("contrast", "__float__"), ("exposure", "__float__"),
                             ("gain", "__repr__"), ("rotation", "__repr__"), ("region", "__len__"),
                             ("region", "__getitem__")):
            for error in (KeyboardInterrupt, SystemExit):
                with self.subTest(name=name, method=method), self.assertRaises(error):
                    setattr(self.camera, name, interrupted(method, error))
        self.assertEqual([], [line for line in self.simulator.journal()[before:] if "_put_" in line])

    def test_a_value_that_cannot_be_shown_is_named_by_its_type_and_a_long_one_is_cut(self):
        for value, shown in ((Nameless(), "<Nameless>"), (10**5000, "<int>"),
                             ("x" * 1000, "'" + "x" * 199 + "…")):
            with self.assertRaises(pcd.BadValueError) as caught:
                self.camera.gain = value
            self.assertEqual(shown, caught.exception.value)

    def test_numbers_of_numpy_are_numbers(self):
        self.camera.gain = np.float32(2)
        self.camera.contrast = np.int8(-3)
        self.camera.negative = np.bool_(True)
        self.camera.region = np.array([0, 0, 160, 120])
        self.camera.extexposure = {"target": np.int64(90)}
        self.assertEqual((2.0, -3, True, (0, 0, 160, 120), 90),
                         (self.camera.gain, self.camera.contrast, self.camera.negative,
                          self.camera.region, self.camera.extexposure["target"]))

    def test_methods_are_not_replaced_by_mistake(self):
        for name in ("close", "snap", "_session", "id"):
            with self.assertRaises(AttributeError):
                setattr(self.camera, name, 1)
        self.assertTrue(self.camera.snap().still)

    def test_properties_are_a_mapping(self):
        self.assertIsNone(self.camera.properties.get("nosuch"))
        self.assertNotIn(3, self.camera.properties)
        with self.assertRaises(KeyError):
            print(self.camera.properties["nosuch"])
        with self.assertRaisesRegex(TypeError, "name of a property is 3: expected a str"):
            print(self.camera.properties[3])

    def test_bad_fields_are_refused(self):
        with self.assertRaisesRegex(pcd.BadValueError, "extexposure.*nosuch"):
            self.camera.extexposure = {"nosuch": 1}
        with self.assertRaisesRegex(pcd.BadValueError, "extexposure.*target"):
            self.camera.extexposure = {"target": "bright"}
        for wrong, shown in ((10**5000, "<int>"), (Nameless(), "<Nameless>"), (float("nan"), "nan")):
            with self.assertRaisesRegex(pcd.BadValueError, f"extexposure.*target.*{shown}"):
                self.camera.extexposure = {"target": wrong}
        with self.assertRaisesRegex(pcd.BadValueError, 'extexposure.*"<Nameless>"'):
            self.camera.extexposure = {Nameless(): 1}

    def test_a_dict_that_changes_while_it_is_read_is_no_danger(self):
        fields = {"target": Changing(), "gain": 100}
        fields["target"].fields = fields
        self.camera.extexposure = fields
        self.assertEqual(80, self.camera.extexposure["target"])

    def test_a_value_that_the_camera_does_not_take_is_reported(self):
        self.simulator.fail("Toupcam_put_Contrast")
        with self.assertRaisesRegex(pcd.RefusedError, 'did not take 5 for "contrast": it has 0'):
            self.camera.contrast = 5
        self.simulator.fail("Toupcam_put_ExpoAGain")
        self.camera.auto_exposure = True
        with self.assertRaisesRegex(pcd.RefusedError, "set auto_exposure = False first"):
            self.camera.gain = 2

    def test_a_value_can_be_set_after_a_reading_that_failed(self):
        self.camera.auto_exposure = False
        for function, name, value in (("Toupcam_get_Contrast", "contrast", 7),
                                      ("Toupcam_get_ExpoTime", "exposure", 10.0)):
            self.simulator.fail(function, count=1)
            with self.assertRaisesRegex(pcd.RefusedError, f'did not report "{name}"'):
                self.camera.properties[name].value
            setattr(self.camera, name, value)
            self.assertEqual(value, getattr(self.camera, name))

    def test_a_value_that_cannot_be_read_back_is_not_said_to_be_another(self):
        self.simulator.fail("Toupcam_get_Contrast")
        with self.assertRaisesRegex(pcd.RefusedError, 'did not report "contrast" after it was set'):
            self.camera.contrast = 5
        self.simulator.fail("Toupcam_get_AutoExpoTarget", skip=1)
        with self.assertRaisesRegex(pcd.RefusedError, 'did not report "extexposure" after it was set'):
            self.camera.extexposure = {"target": 100}

    def test_a_camera_that_no_longer_answers_is_not_said_to_refuse(self):
        self.simulator.fail("Toupcam_get_ResolutionNumber")
        self.simulator.fail("Toupcam_get_Contrast")
        with self.assertRaisesRegex(pcd.UnpluggedError, "no longer answers"):
            self.camera.contrast

    def test_an_unknown_property_suggests_the_nearest(self):
        with self.assertRaisesRegex(pcd.NoPropertyError, 'did you mean "gain"'):
            self.camera.gian = 2
        with self.assertRaisesRegex(AttributeError, 'no property "zzzz": it has .*gain'):
            print(self.camera.zzzz)
        self.assertFalse(hasattr(self.camera, "zzzz"))
        self.assertTrue(hasattr(self.camera, "gain"))
        self.assertIn("gain", dir(self.camera))

    def test_actions_run_and_have_no_value(self):
        action = self.camera.properties["awbonce"]
        self.assertEqual("action", action.kind)
        with self.assertRaisesRegex(pcd.BadValueError, "run()"):
            print(action.value)
        with self.assertRaisesRegex(pcd.BadValueError, "run()"):
            action.value = 1
        action.run()
        with self.assertRaisesRegex(pcd.BadValueError, "no action"):
            self.camera.properties["gain"].run()


class Unreadable:
    """A sequence of four items that gives none of them."""

    def __len__(self):
        return 4

    def __getitem__(self, index):
        raise OSError("no item")


def interrupted(method, error):
    """A value in one of whose methods an error comes that is not its own, such as that of Ctrl-C."""
    def interrupt(*_):
        raise error
    methods = {"__len__": lambda _: 4, "__getitem__": lambda *_: 1, method: interrupt}
    return type("Interrupted", (), methods)()


class Changing:
    """The text of a field, which empties the dict that has it."""

    fields = {}

    def __str__(self):
        self.fields.clear()
        self.fields.update((str(number), number) for number in range(100))
        return "80"


class ModesAndProfiles(SceneTest):
    def setUp(self):
        super().setUp()
        self.camera = pcd.open()
        self.addCleanup(self.camera.close)
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = Path(folder.name) / "settings.json"

    def test_modes_are_listed_and_set(self):
        first, second = self.camera.modes
        self.assertEqual((322, 240, 160, 120), (first.width, first.height,
                                                second.width, second.height))
        for mode in (second, first.id, second.name):
            self.camera.mode = mode
        self.assertEqual(second, self.camera.mode)
        self.assertEqual((120, 160, 3), self.camera.snap().array.shape)

    def test_an_unknown_mode_lists_those_there_are(self):
        for wrong in ("1x1", None, 3, "\ud800"):
            with self.assertRaisesRegex(pcd.BadValueError, '"322x240", "160x120"'):
                self.camera.mode = wrong

    def test_modes_that_the_camera_does_not_report_are_not_zeros(self):
        self.simulator.fail("Toupcam_get_Resolution")
        with self.assertRaisesRegex(pcd.RefusedError, "did not report its modes"):
            self.camera.modes
        with self.assertRaisesRegex(pcd.RefusedError, "did not report its modes"):
            self.camera.mode = "160x120"

    def test_a_profile_brings_settings_back(self):
        self.camera.contrast = 33
        self.camera.mode = "160x120"
        self.camera.save_profile(self.path)
        self.camera.contrast = 0
        self.camera.mode = "322x240"
        report = self.camera.load_profile(self.path)
        self.assertEqual((33, "160x120"), (self.camera.contrast, self.camera.mode.name))
        self.assertIn("contrast", report.applied)
        self.assertEqual({}, report.refused)

    def test_a_file_that_is_no_profile_is_refused_with_its_line(self):
        self.path.write_text("{", encoding="utf-8")
        with self.assertRaisesRegex(pcd.ProfileError, "settings.json.*line 1"):
            self.camera.load_profile(self.path)
        with self.assertRaisesRegex(pcd.ProfileError, "missing.json"):
            self.camera.load_profile(self.path.with_name("missing.json"))
        with self.assertRaisesRegex(pcd.ProfileError, "nowhere"):
            self.camera.save_profile(self.path.parent / "nowhere" / "x.json")

    def test_a_profile_that_is_not_applied_completely_is_an_error_unless_wanted(self):
        self.camera.contrast = 33
        self.camera.save_profile(self.path)
        self.camera.contrast = 0
        self.simulator.fail("Toupcam_put_Contrast")
        with self.assertRaisesRegex(pcd.RefusedError, "contrast: "):
            self.camera.load_profile(self.path)
        report = self.camera.load_profile(self.path, strict=False)
        self.assertEqual(["contrast"], list(report.refused))


if __name__ == "__main__":
    unittest.main()
