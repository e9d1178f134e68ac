"""The exceptions of this package. Each says what was wrong and what to do about it."""

from __future__ import annotations

import builtins


class Error(Exception):
    """Anything that fails with a camera; the base of all others here."""


class NoCameraError(Error, LookupError):
    """No camera has this index, id or beginning of an id. The text lists those that there are."""


class NoPropertyError(Error, AttributeError):
    """The camera has no such property. The text lists those that it has."""

    property: str = ""


class BadValueError(Error, ValueError):
    """A value that a property cannot have; nothing was sent to the camera."""

    property: str = ""
    #: The value as text.
    value: str = ""
    #: What the property can have, in words; empty if that is not known.
    expected: str = ""


class RefusedError(Error):
    """The camera did not take a value, or refused to do something."""

    property: str = ""
    value: str = ""


class ClosedError(Error):
    """The camera was closed: open it again."""


class UnpluggedError(Error, ConnectionError):
    """The camera was unplugged, or no longer answers: plug it in, and open it again."""


class BusyError(Error):
    """The camera is open or streaming already: close that first."""


class TimeoutError(Error, builtins.TimeoutError):
    """The camera did not send a frame in time."""


class ThreadError(Error, RuntimeError):
    """Cameras belong to the thread that used them first, and this is another one."""


class ProfileError(Error):
    """A file is no profile for this camera, or cannot be read or written."""


class RecordError(Error, OSError):
    """The files of a recording do not have all frames. What was written stays."""
