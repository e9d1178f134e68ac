"""Docstrings that come from the headers of the library in C++."""

from __future__ import annotations

import re
from typing import Any, Callable, TypeVar

_Described = TypeVar("_Described", bound=Callable[..., Any])

#: A line about one member of a class: "name: text".
_MEMBER = re.compile(r"(\w+): ")


def described_by(source: object) -> Callable[[_Described], _Described]:
    """Gives a function the docstring of a native one, before its own.

    A class gets a text; of the members that it lists, those that the class has.
    """
    text = source if isinstance(source, str) else source.__doc__ or ""

    def describe(described: _Described) -> _Described:
        shown = [line for line in text.split("\n") if _fits(line, described)]
        own = described.__doc__
        described.__doc__ = "\n".join(shown + (["", own] if own else []))
        return described
    return describe


def _fits(line: str, described: object) -> bool:
    member = _MEMBER.match(line)
    if member is None or not isinstance(described, type):
        return True
    return member[1] in described.__annotations__
