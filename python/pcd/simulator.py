"""Simulated cameras: scenes, plugging and unplugging, and faults, for examples and for tests."""

from __future__ import annotations

import ctypes
import json
import os
from typing import Any, Mapping, Union

from . import _pcd
from .errors import Error, bad_value, check_flag, check_path, check_text, check_whole

Scene = Union[str, "os.PathLike[str]", Mapping[str, Any]]


class Simulator:
    """The world of the simulated cameras of this process; `pcd.simulate()` returns it.

    Cameras are named by the id that they have in their scene, such as "sim-20mc-1".
    """

    def __init__(self, library: ctypes.CDLL) -> None:
        self._library = library
        library.ToupcamSim_loadScene.restype = ctypes.c_char_p
        library.ToupcamSim_loadSceneFile.restype = ctypes.c_char_p
        library.ToupcamSim_missedTriggers.restype = ctypes.c_ulonglong

    def load(self, scene: Scene) -> None:
        """Replaces the scene: a dict, or a file. All open cameras are unplugged first. A scene with
        an error in it raises `Error`, which names the place, and changes nothing."""
        self._read(scene)
        if _pcd.has_cameras():
            _pcd.rescan()

    def _read(self, scene: Scene) -> None:
        if isinstance(scene, Mapping):
            name = "the scene"
            try:
                text = json.dumps(scene)
            except (TypeError, ValueError, RecursionError) as error:
                raise Error(f"{name}: {error}: expected what JSON has") from error
            complaint = self._library.ToupcamSim_loadScene(text.encode())
        else:
            path = check_path("scene", scene)
            name = f'scene "{path}"'
            complaint = self._library.ToupcamSim_loadSceneFile(path.encode())
        if complaint is not None:
            raise Error(f"{name}: {complaint.decode()}")

    def unplug(self, camera: str) -> None:
        """Unplugs a camera. It is out of `pcd.cameras()` when this returns."""
        _check(self._library.ToupcamSim_unplug(_id(camera)), camera, "that is plugged in")
        _pcd.rescan()

    def plug(self, camera: str) -> None:
        """Plugs a camera in again."""
        _check(self._library.ToupcamSim_plug(_id(camera)), camera, "that is unplugged")
        _pcd.rescan()

    def hold(self, camera: str, held: bool = True) -> None:
        """While held, the camera produces frames that never arrive."""
        is_held = int(check_flag("held", held))
        _check(self._library.ToupcamSim_holdFrames(_id(camera), is_held), camera)

    def fire_trigger(self, camera: str) -> bool:
        """Sends a signal to the camera's trigger input; False if the camera misses it."""
        counts = ctypes.c_ulonglong(), ctypes.c_ulonglong()
        _check(self._library.ToupcamSim_frameCount(_id(camera), *map(ctypes.byref, counts)), camera)
        return bool(self._library.ToupcamSim_fireTrigger(_id(camera)))

    def fail(self, function: str, result: int = -2147467259, skip: int = 0, count: int = 0) -> None:
        """Lets the next `count` calls (0: all) of a function of the SDK fail, after `skip`."""
        code = check_whole("result", result, -(2**31), 2**32 - 1, "a result of the SDK, of 32 bits")
        self._library.ToupcamSim_failCall(
            self._function(function), _number("skip", skip), _number("count", count),
            ctypes.c_int(code))

    def delay(self, function: str, milliseconds: int) -> None:
        """Makes every call of a function of the SDK take longer."""
        self._library.ToupcamSim_delayCall(
            self._function(function), _number("milliseconds", milliseconds))

    def _function(self, name: str) -> bytes:
        """The name of a function that the SDK has."""
        text = check_text("function", name)
        if not text.startswith("Toupcam_") or not hasattr(self._library, text):
            raise bad_value("function", name, 'a function of the SDK, such as "Toupcam_put_Hue"')
        return text.encode()

    def clear_faults(self) -> None:
        """Ends all failures and delays."""
        self._library.ToupcamSim_clearFaults()

    def open_handles(self) -> int:
        """The number of cameras that are open."""
        return int(self._library.ToupcamSim_openHandles())

    def journal(self) -> list[str]:
        """All calls of the SDK since the start, each as one line."""
        line = ctypes.create_string_buffer(4096)
        count = self._library.ToupcamSim_journal(0, None, 0)
        lines = []
        for index in range(count):
            self._library.ToupcamSim_journal(index, line, len(line))
            lines.append(line.value.decode())
        return lines


def _id(camera: str) -> bytes:
    return check_text("camera", camera).encode()


def _number(name: str, value: int) -> ctypes.c_uint:
    return ctypes.c_uint(check_whole(name, value, 0, 2**32 - 1, "a whole number from 0 to 2^32 - 1"))


def _check(done: int, camera: str, expected: str = "") -> None:
    if not done:
        raise Error(f'the scene has no camera "{camera}"{expected and " " + expected}: expected the '
                    '"id" of one')


def simulate(scene: Scene | None = None) -> Simulator:
    """Uses simulated cameras in this process: those of the scene (`docs/simulator.md`), or the
    built-in ones.

    Call it before anything else of this package. Later calls load another scene; if the process
    uses the maker's SDK, they raise `Error`.
    """
    _pcd.load_sdk("sim")
    simulator = Simulator(ctypes.CDLL(_pcd.sdk_path()))
    if scene is not None:
        simulator.load(scene)
    return simulator
