"""Simulated cameras: scenes, plugging and unplugging, and faults, for examples and for tests."""

from __future__ import annotations

import ctypes
import json
import os
from typing import Any, Mapping, Union

from . import _pcd
from .errors import Error

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
            text, name = json.dumps(scene), "the scene"
            complaint = self._library.ToupcamSim_loadScene(text.encode())
        else:
            path = os.fspath(scene)
            name = f'scene "{path}"'
            complaint = self._library.ToupcamSim_loadSceneFile(os.fsencode(path))
        if complaint is not None:
            raise Error(f"{name}: {complaint.decode()}")

    def unplug(self, camera: str) -> None:
        """Unplugs a camera. It is out of `pcd.cameras()` when this returns."""
        self._check(self._library.ToupcamSim_unplug(camera.encode()), camera, "is plugged in")
        _pcd.rescan()

    def plug(self, camera: str) -> None:
        """Plugs a camera in again."""
        self._check(self._library.ToupcamSim_plug(camera.encode()), camera, "is unplugged")
        _pcd.rescan()

    def hold(self, camera: str, held: bool = True) -> None:
        """While held, the camera produces frames that never arrive."""
        self._check(self._library.ToupcamSim_holdFrames(camera.encode(), int(held)), camera,
                    "is in the scene")

    def fire_trigger(self, camera: str) -> bool:
        """Sends a signal to the camera's trigger input; False if the camera misses it."""
        return bool(self._library.ToupcamSim_fireTrigger(camera.encode()))

    def fail(self, function: str, result: int = -2147467259, skip: int = 0, count: int = 0) -> None:
        """Lets the next `count` calls (0: all) of a function of the SDK fail, after `skip`."""
        self._library.ToupcamSim_failCall(function.encode(), skip, count, ctypes.c_int(result))

    def delay(self, function: str, milliseconds: int) -> None:
        """Makes every call of a function of the SDK take longer."""
        self._library.ToupcamSim_delayCall(function.encode(), milliseconds)

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

    @staticmethod
    def _check(done: int, camera: str, expected: str) -> None:
        if not done:
            raise Error(f'no camera "{camera}" of the scene {expected}: expected the "id" of one')


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
