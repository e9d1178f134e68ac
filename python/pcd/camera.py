"""One open camera."""

from __future__ import annotations

import difflib
import os
from dataclasses import dataclass
from types import TracebackType
from typing import Any, Type, Union

from . import _pcd
from ._pcd import Frame
from .errors import BadValueError, NoPropertyError, RefusedError, check_time
from .properties import Properties, Property
from .streams import AsyncStream, Stream

_Path = Union[str, "os.PathLike[str]"]

#: Frames that may wait for a loop, unless the user says otherwise.
QUEUE = 8


@dataclass(frozen=True)
class Mode:
    """One resolution of a camera, in pixels."""

    id: str
    name: str
    width: int
    height: int
    #: Bits of a pixel.
    bit_depth: int


@dataclass(frozen=True)
class ProfileReport:
    """What happened to each value of a profile."""

    #: In the order in which they were sent.
    applied: list[str]
    #: The camera lacks these, cannot have them, or refused them: ids and reasons.
    refused: dict[str, str]
    #: Actions, and what profiles do not contain: ids and reasons.
    ignored: dict[str, str]
    #: Settings of the camera that the file does not have.
    missing: list[str]
    #: Says so if the profile was saved from another camera.
    note: str


@dataclass(frozen=True)
class Recording:
    """What a recording has. `wanted` is the sum of the next four."""

    path: str
    wanted: int
    written: int
    #: Could not be written.
    failed: int
    #: Arrived while too many waited for the disk.
    refused: int
    #: Have not arrived.
    not_taken: int
    #: Besides: between the frames of a time-lapse.
    not_due: int


class Camera:
    """An open camera; `pcd.open()` returns it. A context manager that closes it.

    Its properties are attributes: `camera.gain = 2.0`. Those with a common meaning have the same
    name and unit for every camera (`exposure` in milliseconds, `gain` as a factor …); the others
    have their id. `camera.properties` has them all, with range, unit and title.

    All functions are called on the thread that used this package first.
    """

    _session: _pcd.Session

    def __init__(self, session: _pcd.Session) -> None:
        object.__setattr__(self, "_session", session)

    @property
    def id(self) -> str:
        """Model and serial number, as `pcdctl list` prints them."""
        return self._session.identity["id"]

    @property
    def model(self) -> str:
        """The model's name."""
        return self._session.identity["model"]

    @property
    def serial(self) -> str:
        """The serial number; empty if it is not known."""
        return self._session.identity["serial"]

    @property
    def simulated(self) -> bool:
        """True for a camera that exists only in software."""
        return self._session.identity["simulated"]

    @property
    def is_open(self) -> bool:
        """False once it was closed or unplugged."""
        return self._session.is_open

    @property
    def properties(self) -> Properties:
        """All settings by name."""
        return Properties(self._session)

    @property
    def modes(self) -> list[Mode]:
        """The resolutions that the camera has."""
        return [Mode(**mode) for mode in self._session.modes()]

    @property
    def mode(self) -> Mode | None:
        """The resolution: a `Mode`, its id or its name can be assigned, also during a stream."""
        found = self._session.mode()
        return None if found is None else Mode(**found)

    @mode.setter
    def mode(self, mode: Mode | str) -> None:
        self._session.set_mode(mode.id if isinstance(mode, Mode) else mode)

    def close(self) -> None:
        """Stops and closes the camera; its frames stay. Nothing the second time."""
        self._session.close()

    def stream(
        self, frames: int | None = None, *, queue: int = QUEUE, timeout: float | None = None
    ) -> Stream:
        """Live frames: `for frame in camera.stream(100)`; without a number, until the loop ends.

        At most `queue` frames wait for the loop. One that finds the queue full is lost, and counted
        in `Stream.dropped`; so a slow loop never needs more memory. `timeout` is the longest time
        without a frame, in seconds; unless given, 30 s and four times the exposure time. Then
        `TimeoutError` is raised.
        """
        self._check_counts(frames, queue)
        check_time("timeout", timeout)
        return Stream(lambda: self._session.stream(frames, queue, timeout))

    def astream(
        self, frames: int | None = None, *, queue: int = QUEUE, timeout: float | None = None
    ) -> AsyncStream:
        """The same for asyncio: `async for frame in camera.astream(100)`."""
        self._check_counts(frames, queue)
        check_time("timeout", timeout)
        return AsyncStream(lambda: self._session.stream(frames, queue, timeout))

    def trigger(
        self,
        frames: int | None = 1,
        *,
        exposure: float | None = None,
        external: bool = False,
        queue: int = QUEUE,
        timeout: float | None = None,
    ) -> Stream:
        """Triggered frames: `for frame in camera.trigger(10, exposure=20)`.

        The run begins with the loop: at once, or with `external` by the signals at the camera's
        input, one for each frame. `exposure` is in milliseconds; without it, as the camera has it
        for triggered frames. Afterwards the camera is in live capture again.
        """
        self._check_counts(frames, queue)
        check_time("timeout", timeout)
        check_time("exposure", exposure, "milliseconds")
        return Stream(lambda: self._session.trigger(frames, queue, timeout, external, exposure))

    def snap(self, timeout: float | None = None) -> Frame:
        """A still; of a camera that takes none, a live frame. Also during a stream. `timeout` is in
        seconds."""
        check_time("timeout", timeout)
        return self._session.snap(timeout)

    def record(
        self,
        path: _Path,
        frames: int | None = None,
        *,
        duration: float | None = None,
        interval: float | None = None,
        pixel_size: float | None = None,
        timeout: float | None = None,
    ) -> Recording:
        """Records live frames into files, and returns when they are complete.

        A name that ends in .ome.tif gets all frames in one file; a name such as run-####.tif or
        run-####.png is a series. No file is ever replaced. It ends after `frames`, or after
        `duration` seconds. `interval` is that of a time-lapse, in seconds; `pixel_size` is in
        micrometres on the specimen, for the metadata. The frames are written by threads of their
        own: Python neither sees nor delays them. Ctrl-C ends it too; what was written by then is
        complete.
        """
        if frames is None and duration is None:
            raise BadValueError("a recording needs an end: give frames=100, or duration=10 (seconds)")
        self._check_counts(frames, 1)
        check_time("duration", duration, least=0.001)
        check_time("interval", interval, least=0.001)
        check_time("timeout", timeout)
        check_time("pixel_size", pixel_size, "micrometres", least=0.0001)
        path = os.fspath(path)
        found = self._session.record(path, frames, duration, interval, pixel_size, timeout)
        return Recording(path, **found)

    def save_profile(self, path: _Path) -> None:
        """Saves all settings to a file, which `pcdctl` and `pcdview` can load too."""
        self._session.save_profile(os.fspath(path))

    def load_profile(self, path: _Path, *, strict: bool = True) -> ProfileReport:
        """Applies a profile. Unless `strict` is false, raises `RefusedError` if the camera did not
        take all of it; everything else is applied then."""
        path = os.fspath(path)
        report = ProfileReport(**self._session.load_profile(path))
        if strict and report.refused:
            reasons = "; ".join(f"{name}: {reason}" for name, reason in report.refused.items())
            raise RefusedError(f'"{path}" was not applied completely: {reasons}')
        return report

    @staticmethod
    def _check_counts(frames: int | None, queue: int) -> None:
        for name, number in (("frames", frames), ("queue", queue)):
            if number is None:
                continue
            if not isinstance(number, int) or isinstance(number, bool) or not 0 < number < 2**31:
                error = BadValueError(f'"{name}" cannot be {number!r}: expected a whole number '
                                      "from 1 on")
                error.property, error.value = name, repr(number)
                raise error

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(name)
        return self._find(name).value

    def __setattr__(self, name: str, value: Any) -> None:
        if isinstance(getattr(type(self), name, None), property):
            object.__setattr__(self, name, value)
        else:
            self._find(name).value = value

    def _find(self, name: str) -> Property:
        try:
            return Property(self._session, name)
        except NoPropertyError as error:
            near = difflib.get_close_matches(name, [*self._session.names(), *dir(type(self))], 1)
            if near:
                found = NoPropertyError(f'{self.id} has no "{name}": did you mean "{near[0]}"?')
                found.property = name
                raise found from error
            raise

    def __dir__(self) -> list[str]:
        names = list(super().__dir__())
        return names + self._session.names() if self.is_open else names

    def __enter__(self) -> Camera:
        return self

    def __exit__(
        self,
        kind: Type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<pcd.Camera {self.id}{'' if self.is_open else ', closed'}>"
