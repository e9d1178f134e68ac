"""The exceptions of this package. Each says what was wrong and what to do about it."""

from __future__ import annotations

import builtins
import operator
import os
from numbers import Real
from typing import Any


class Error(Exception):
    """Anything that fails with a camera; the base of all others here."""


class NoCameraError(Error, LookupError):
    """No camera has this index, id or beginning of an id. The text lists those that there are."""


class NoPropertyError(Error, AttributeError, KeyError):
    """The camera has no such property. The text lists those that it has."""

    __str__ = Exception.__str__  # KeyError would put it in quotes

    property: str = ""


class BadValueError(Error, ValueError):
    """A value that a property cannot have; nothing was sent to the camera."""

    property: str = ""
    #: The value as text.
    value: str = ""
    #: What the property can have, in words; empty if that is not known.
    expected: str = ""


class RefusedError(Error):
    """The camera did not take a value, did not report one, or refused to do something."""

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


#: Characters of a value in a message.
_LONGEST = 200


def shown(value: object) -> str:
    """A value in a message, however long it is, and whatever its `repr()` does."""
    try:
        text = repr(value)
    except Exception:  # pylint: disable=broad-except
        return f"<{type(value).__name__}>"  # the message is about the value, not about its repr()
    return text if len(text) <= _LONGEST else text[:_LONGEST] + "…"


def bad_value(name: str, value: object, expected: str) -> BadValueError:
    """The exception for an argument."""
    text = shown(value)
    error = BadValueError(f'"{name}" cannot be {text}: expected {expected}')
    error.property, error.value, error.expected = name, text, expected
    return error


def check_path(name: str, path: Any) -> str:
    """The path as text. Raises `BadValueError` if the library in C++ would use another file."""
    if not isinstance(path, (str, bytes, os.PathLike)):
        raise TypeError(f"{name} is {shown(path)}: expected a path")
    return check_text(name, os.fsdecode(path))


def check_text(name: str, text: Any) -> str:
    """Raises `BadValueError` if the library in C++ would read another text."""
    if not isinstance(text, str):
        raise TypeError(f"{name} is {shown(text)}: expected a str")
    try:
        text.encode()
    except UnicodeEncodeError:
        raise bad_value(name, text, "a name in UTF-8") from None
    if "\0" in text:
        raise bad_value(name, text, "a name without a zero character")
    return text


def check_flag(name: str, value: Any) -> bool:
    """Raises `BadValueError` for anything but true and false: "no" would be true."""
    is_number = isinstance(value, int) and value in (0, 1)
    if is_number or type(value).__name__ in ("bool", "bool_"):  # NumPy's
        return bool(value)
    raise bad_value(name, value, "True or False")


def whole(value: Any) -> int | None:
    """The number, if it is a whole one."""
    if isinstance(value, bool):
        return None
    try:
        return operator.index(value)
    except TypeError:  # also from an array of several numbers
        return None


def check_whole(name: str, value: Any, least: int, most: int, expected: str) -> int:
    """Raises `BadValueError` unless the value is a whole number in this range."""
    number = whole(value)
    if number is None or not least <= number <= most:
        raise bad_value(name, value, expected)
    return number


#: The longest time in any unit, and the largest pixel: far from what 64 bits hold.
_MOST = 1e9


def check_time(name: str, value: Any, unit: str = "seconds", least: float = 0) -> None:
    """Raises `BadValueError` unless the value is None or a number of this unit, from `least` on."""
    if value is None:
        return
    is_number = isinstance(value, Real) and not isinstance(value, bool)
    if is_number and least <= value <= _MOST:  # false for nan
        return
    raise bad_value(name, value, f"{unit} from {least:g} to 1e9")
