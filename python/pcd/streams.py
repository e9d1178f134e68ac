"""Frames one after the other, for loops and for asyncio."""

from __future__ import annotations

import asyncio
from types import TracebackType
from typing import AsyncIterator, Callable, Type

from . import _pcd
from .errors import ThreadError
from .events import attach
from ._pcd import Frame
from .texts import described_by


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
    @described_by(_pcd.Stream.dropped)
    def dropped(self) -> int:
        return 0 if self._stream is None else self._stream.dropped

    @property
    @described_by(_pcd.Stream.waiting)
    def waiting(self) -> int:
        return 0 if self._stream is None else self._stream.waiting

    @property
    @described_by(_pcd.Stream.ledger)
    def ledger(self) -> dict[str, int]:
        return {} if self._stream is None else self._stream.ledger()

    @described_by(_pcd.Stream.close)
    def close(self) -> None:
        self._is_closed = True
        if self._stream is not None:
            self._stream.close()


class Stream(_Counts):
    """Frames of a camera: an iterator, and a context manager that closes it.

    Without frames waiting, the loop waits, and other Python threads run meanwhile. A stream that
    nothing refers to any more is closed; so is one whose wait an exception ended, such as Ctrl-C.
    """

    def __iter__(self) -> Stream:
        return self

    def __next__(self) -> Frame:
        stream = self._started()
        try:
            frame = None if stream is None else stream.next()
        except ThreadError:
            raise  # nothing has happened to the stream
        except BaseException:
            # After Ctrl-C the traceback keeps this object, in a notebook until the next exception.
            self.close()
            raise
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
    """The same for asyncio: `async for frame in camera.astream(100)`. A loop over it that is
    cancelled closes it; `asyncio.wait_for(anext(stream), 1)` does not."""

    def __aiter__(self) -> AsyncIterator[Frame]:
        return _Loop(self)

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


class _Loop:
    """One loop over a stream for asyncio. Other uses of the stream, before and after, are not its own."""

    def __init__(self, stream: AsyncStream) -> None:
        self._stream = stream

    def __aiter__(self) -> _Loop:
        return self

    async def __anext__(self) -> Frame:
        try:
            return await anext(self._stream)
        except (asyncio.CancelledError, KeyboardInterrupt):
            self._stream.close()  # as the traceback may keep it
            raise


#: Seconds between two looks at a camera that sends nothing: it may have been unplugged.
_LOOK = 0.05


async def _readable(descriptor: int) -> None:
    """Returns when the file can be read, or after a while."""
    loop = asyncio.get_running_loop()
    attach(loop)
    if descriptor < 0:
        await asyncio.sleep(_LOOK / 5)
        return
    # Not asyncio.wait_for(), which forgets that it was cancelled if a frame comes at that moment.
    ready = loop.create_future()

    def wake() -> None:
        if not ready.done():
            ready.set_result(None)
    timer = loop.call_later(_LOOK, wake)
    loop.add_reader(descriptor, wake)
    try:
        await ready
    finally:
        loop.remove_reader(descriptor)
        timer.cancel()
