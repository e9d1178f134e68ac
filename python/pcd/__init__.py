"""Microscope cameras in Python.

    import pcd

    with pcd.open() as camera:
        camera.exposure = 20
        for frame in camera.stream(100):
            print(frame.sequence, frame.array.mean())

Cameras belong to the thread that uses this package first, mostly the main one: all functions are
called there, except those of frames, which any thread may use. See docs/python.md.
"""

from __future__ import annotations

import atexit
import os
import warnings
from typing import Iterable, Union

from . import _pcd
from ._pcd import Frame
from .camera import Camera, Mode, ProfileReport, Recording
from .errors import (
    BadValueError,
    BusyError,
    ClosedError,
    Error,
    NoCameraError,
    NoPropertyError,
    ProfileError,
    RecordError,
    RefusedError,
    ThreadError,
    TimeoutError,  # pylint: disable=redefined-builtin
    UnpluggedError,
    check_path,
    shown,
    whole,
)
from .events import CameraInfo, Subscription, attach, handle_events, on_plug, on_unplug, wait_for
from .properties import Area, Properties, Property, Range, Region
from .simulator import Simulator, simulate
from .streams import AsyncStream, Stream
from .texts import described_by

__all__ = [
    "Area", "AsyncStream", "BadValueError", "BusyError", "Camera", "CameraInfo", "ClosedError",
    "Error", "Frame", "Mode", "NoCameraError", "NoPropertyError", "ProfileError", "ProfileReport",
    "Properties", "Property", "Range", "RecordError", "Recording", "RefusedError", "Region",
    "Simulator", "Stream", "Subscription", "ThreadError", "TimeoutError", "UnpluggedError",
    "attach", "cameras", "configure", "handle_events", "on_plug", "on_unplug", "open", "simulate",
    "wait_for",
]

_pcd.check_interpreter()
atexit.register(_pcd.shut_down)


def configure(
    *, sdk: str = "auto", plugins: Iterable[Union[str, "os.PathLike[str]"]] = ()
) -> None:
    """Chooses where cameras come from, before their first use.

    `sdk` is "auto" (the maker's if the system has it, else the simulated one), "sim", or the path
    of a library; `plugins` are folders or files of plugins besides the usual ones.
    """
    # Of a text, each character would be a path.
    if isinstance(plugins, (str, bytes)) or not isinstance(plugins, Iterable):
        raise TypeError(f"plugins is {shown(plugins)}: expected a list of paths")
    library = check_path("sdk", sdk)
    paths = [check_path("plugins", path) for path in plugins]
    _pcd.load_sdk(library)
    _pcd.find_cameras(paths)
    _warn()


@described_by(_pcd.cameras)
def cameras() -> list[CameraInfo]:
    found = [CameraInfo(**camera) for camera in _pcd.cameras()]
    _warn()
    return found


def open(camera: Union[int, str, CameraInfo, None] = None) -> Camera:
    """Opens a camera: by its index in `cameras()`, its id, or the beginning of its id if no other
    camera has the same; without an argument, the first one.

    Raises `NoCameraError`, which lists the cameras there are.
    """
    if isinstance(camera, CameraInfo):
        name = camera.id
    elif camera is None or isinstance(camera, str):
        name = camera or ""
    else:
        name = _index(camera)
    session = _pcd.open(name)
    _warn()
    return Camera(session)


def _index(camera: object) -> str:
    """A camera's index as text."""
    index = whole(camera)
    if index is None:
        raise TypeError(
            f"camera is {shown(camera)}: expected an index, an id or the beginning of one")
    if index < 0:
        raise NoCameraError("no camera has such a number: cameras are numbered from 0")
    return str(min(index, 2**31 - 1))


def _warn() -> None:
    """What the user should know about SDK and plugins, once."""
    for notice in _pcd.notices():
        warnings.warn(notice, RuntimeWarning, stacklevel=3)
