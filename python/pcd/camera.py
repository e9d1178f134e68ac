"""One open camera."""

from __future__ import annotations

import difflib
import os
from dataclasses import dataclass
from types import TracebackType
from typing import Any, Type, Union

from . import _pcd
from ._pcd import Frame
from .errors import (
    BadValueError,
    Error,
    NoPropertyError,
    RefusedError,
    check_flag,
    check_path,
    check_time,
    check_whole,
)
from .properties import Properties, Property
from .streams import AsyncStream, Stream
from .texts import described_by

_Path = Union[str, "os.PathLike[str]"]

#: Frames that may wait for a loop, unless the user says otherwise.
QUEUE = 8


@dataclass(frozen=True)
@described_by(_pcd.texts["Mode"])
class Mode:
    id: str
    name: str
    width: int
    height: int
    bit_depth: int


@dataclass(frozen=True)
@described_by(_pcd.texts["ProfileReport"])
class ProfileReport:
    """`refused` and `ignored` map ids to reasons."""

    applied: list[str]
    refused: dict[str, str]
    ignored: dict[str, str]
    missing: list[str]
    note: str


@dataclass(frozen=True)
@described_by(_pcd.texts["Recording"])
class Recording:
    """`wanted` is the sum of the next four. `path` is the name that `record()` was given."""

    path: str
    wanted: int
    written: int
    failed: int
    refused: int
    not_taken: int
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
    @described_by(_pcd.Session.is_open)
    def is_open(self) -> bool:
        return self._session.is_open

    @property
    def properties(self) -> Properties:
        """All settings by name."""
        return Properties(self._session)

    @property
    @described_by(_pcd.Session.modes)
    def modes(self) -> list[Mode]:
        return [Mode(**mode) for mode in self._session.modes()]

    @property
    @described_by(_pcd.Session.mode)
    def mode(self) -> Mode | None:
        found = self._session.mode()
        return None if found is None else Mode(**found)

    @mode.setter
    def mode(self, mode: Mode | str) -> None:
        self._session.set_mode(mode.id if isinstance(mode, Mode) else str(mode))

    @described_by(_pcd.Session.close)
    def close(self) -> None:
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

    @described_by(_pcd.Session.trigger)
    def trigger(
        self,
        frames: int | None = 1,
        *,
        exposure: float | None = None,
        external: bool = False,
        queue: int = QUEUE,
        timeout: float | None = None,
    ) -> Stream:
        """The run begins with the loop: `for frame in camera.trigger(10, exposure=20)`."""
        self._check_counts(frames, queue)
        check_time("timeout", timeout)
        check_time("exposure", exposure, "milliseconds")
        by_signal = check_flag("external", external)
        return Stream(lambda: self._session.trigger(frames, queue, timeout, by_signal, exposure))

    @described_by(_pcd.Session.snap)
    def snap(self, timeout: float | None = None) -> Frame:
        check_time("timeout", timeout)
        return self._session.snap(timeout)

    @described_by(_pcd.Session.record)
    def record(
        self,
        path: _Path,
        frames: int | None = None,
        *,
        duration: float | None = None,
        interval: float | None = None,
        pixel_size: float | None = None,
        pyramid: bool = False,
        timeout: float | None = None,
    ) -> Recording:
        if frames is None and duration is None:
            raise BadValueError("a recording needs an end: give frames=100, or duration=10 (seconds)")
        self._check_counts(frames, 1)
        check_time("duration", duration, least=0.001)
        check_time("interval", interval, least=0.001)
        check_time("timeout", timeout)
        check_time("pixel_size", pixel_size, "micrometres", least=0.0001)
        has_levels = check_flag("pyramid", pyramid)
        path = check_path("path", path)
        found = self._session.record(
            path, frames, duration, interval, pixel_size, timeout, has_levels
        )
        return Recording(path, **found)

    @described_by(_pcd.Session.save_profile)
    def save_profile(self, path: _Path) -> None:
        self._session.save_profile(check_path("path", path))

    @described_by(_pcd.Session.load_profile)
    def load_profile(self, path: _Path, *, strict: bool = True) -> ProfileReport:
        """Unless `strict` is false, raises `RefusedError` if the camera did not take all of it;
        everything else is applied then."""
        path = check_path("path", path)
        report = ProfileReport(**self._session.load_profile(path))
        if strict and report.refused:
            reasons = "; ".join(f"{name}: {reason}" for name, reason in report.refused.items())
            raise RefusedError(f'"{path}" was not applied completely: {reasons}')
        return report

    @staticmethod
    def _check_counts(frames: int | None, queue: int) -> None:
        expected = "a whole number from 1 on"
        if frames is not None:
            check_whole("frames", frames, 1, 2**31 - 1, expected)
        check_whole("queue", queue, 1, 2**31 - 1, expected)

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(name)
        return self._find(name).value

    def __setattr__(self, name: str, value: Any) -> None:
        if isinstance(getattr(type(self), name, None), property):
            object.__setattr__(self, name, value)
        elif hasattr(type(self), name) or name.startswith("_"):
            raise AttributeError(f'"{name}" is no property of a camera: it cannot be assigned')
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
        try:
            state = "" if self.is_open else ", closed"
        except Error:  # on another thread or in a forked process, of which debuggers know nothing
            state = ""
        return f"<pcd.Camera {self.id}{state}>"
