"""Frames one after the other, for loops and for asyncio."""

from __future__ import annotations

import asyncio
from types import TracebackType
from typing import Callable, Type

from . import _pcd
from .events import attach
from ._pcd import Frame


class _Counts:
    """What both kinds of streams report. The camera starts with the first frame that is wanted."""

    def __init__(self, start: Callable[[], _pcd.Stream]) -> None:
        self._start = start
        self._stream: _pcd.Stream | None = None
        self._is_closed = False

    def _started(self) -> _pcd.Stream | None:
        if self._stream is None and not self._is_closed:
            self._stream = self._start()
        return self._stream

    @property
    def dropped(self) -> int:
        """Frames that arrived while the queue was full: the loop took them too slowly."""
        return 0 if self._stream is None else self._stream.dropped

    @property
    def waiting(self) -> int:
        """Frames that wait in the queue now."""
        return 0 if self._stream is None else self._stream.waiting

    @property
    def ledger(self) -> dict[str, int]:
        """What happened to each frame that the camera has produced for this stream, by the keys of
        `pcdctl stream --json`. `failed_in_writer` counts those that are `dropped`."""
        return {} if self._stream is None else self._stream.ledger()

    def close(self) -> None:
        """Stops the camera and releases the frames that wait; nothing the second time."""
        self._is_closed = True
        if self._stream is not None:
            self._stream.close()


class Stream(_Counts):
    """Frames of a camera: an iterator, and a context manager that closes it.

    Without frames waiting, the loop waits, and other Python threads run meanwhile. A stream that
    nothing refers to any more is closed.
    """

    def __iter__(self) -> Stream:
        return self

    def __next__(self) -> Frame:
        stream = self._started()
        frame = None if stream is None else stream.next()
        if frame is None:
            raise StopIteration
        return frame

    def __enter__(self) -> Stream:
        self._started()
        return self

    def __exit__(
        self,
        kind: Type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()


class AsyncStream(_Counts):
    """The same for asyncio: `async for frame in camera.astream(100)`."""

    def __aiter__(self) -> AsyncStream:
        return self

    async def __anext__(self) -> Frame:
        stream = self._started()
        while stream is not None:
            is_found, frame = stream.poll()
            if frame is not None:
                return frame
            if is_found:
                break
            await _readable(stream.descriptor)
        raise StopAsyncIteration

    async def __aenter__(self) -> AsyncStream:
        self._started()
        return self

    async def __aexit__(
        self,
        kind: Type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()


#: Seconds between two looks at a camera that sends nothing: it may have been unplugged.
_LOOK = 0.05


async def _readable(descriptor: int) -> None:
    """Returns when the file can be read, or after a while."""
    loop = asyncio.get_running_loop()
    attach(loop)
    if descriptor < 0:
        await asyncio.sleep(_LOOK / 5)
        return
    ready = asyncio.Event()
    loop.add_reader(descriptor, ready.set)
    try:
        await asyncio.wait_for(ready.wait(), _LOOK)
    except asyncio.TimeoutError:
        pass
    finally:
        loop.remove_reader(descriptor)
