"""Cameras that come and go, and the events that tell so."""

from __future__ import annotations

import asyncio
import weakref
from dataclasses import dataclass
from types import TracebackType
from typing import Callable, Type

from . import _pcd
from .errors import check_time, shown
from .texts import described_by


@dataclass(frozen=True)
@described_by(_pcd.texts["CameraInfo"])
class CameraInfo:
    id: str
    model: str
    serial: str
    simulated: bool

    def __str__(self) -> str:
        return f"{self.id}{' (simulated)' if self.simulated else ''}"


class Subscription:
    """Calls a function for cameras that come or go, until `cancel()`; a context manager too."""

    def __init__(self, is_there: bool, function: Callable[[CameraInfo], object]) -> None:
        if not callable(function):
            raise TypeError(
                f"the function is {shown(function)}: expected one that takes a CameraInfo")
        self._is_there = is_there
        self._function = function
        _pcd.set_listener(_announce)
        _subscriptions.append(self)

    def cancel(self) -> None:
        """Calls the function no more."""
        if self in _subscriptions:
            _subscriptions.remove(self)

    def _call(self, is_there: bool, camera: CameraInfo) -> None:
        if is_there != self._is_there:
            return
        try:
            self._function(camera)
        except Exception as error:  # pylint: disable=broad-except
            # There is no caller to report it to, and the other functions are called too.
            _pcd.write_unraisable(error, self._function)

    def __enter__(self) -> Subscription:
        return self

    def __exit__(
        self,
        kind: Type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.cancel()


_subscriptions: list[Subscription] = []
_attached: weakref.WeakSet[asyncio.AbstractEventLoop] = weakref.WeakSet()

#: Seconds between two looks at what waits for the thread of the cameras.
_PERIOD = 0.02


def _announce(is_there: bool, id_: str, model: str, serial: str, simulated: bool) -> None:
    camera = CameraInfo(id_, model, serial, simulated)
    for subscription in list(_subscriptions):
        subscription._call(is_there, camera)


def on_plug(function: Callable[[CameraInfo], object]) -> Subscription:
    """Calls the function with each camera that is plugged in from now on.

    It is called while a function of this package waits, while Qt's event loop runs, or in asyncio
    after `attach()`; on the thread of the cameras. Its exceptions go to sys.unraisablehook, which
    prints them; KeyboardInterrupt is raised where the thread waits.
    """
    return Subscription(True, function)


def on_unplug(function: Callable[[CameraInfo], object]) -> Subscription:
    """Calls the function with each camera that is unplugged from now on; see `on_plug()`."""
    return Subscription(False, function)


@described_by(_pcd.wait_for)
def wait_for(predicate: Callable[[], object], timeout: float | None = None) -> bool:
    if not callable(predicate):
        raise TypeError(f"the predicate is {shown(predicate)}: expected a function")
    check_time("timeout", timeout)
    return _pcd.wait_for(predicate, timeout)


@described_by(_pcd.handle_events)
def handle_events() -> None:
    _pcd.handle_events()


def attach(loop: asyncio.AbstractEventLoop | None = None) -> None:
    """Lets a running asyncio loop handle the events of cameras, 50 times a second, as long as it
    runs; `astream()` does so by itself. For functions of `on_plug()` in Jupyter, for example."""
    loop = asyncio.get_running_loop() if loop is None else loop
    if not isinstance(loop, asyncio.AbstractEventLoop):
        raise TypeError(f"the loop is {shown(loop)}: expected one of asyncio")
    _pcd.handle_events()  # first: on another thread than that of the cameras, this raises
    if loop in _attached:
        return
    _attached.add(loop)
    loop.call_later(_PERIOD, _handle_again, loop)


def _handle_again(loop: asyncio.AbstractEventLoop) -> None:
    loop.call_later(_PERIOD, _handle_again, loop)  # first: Ctrl-C may be raised below
    _pcd.handle_events()
