"""The settings of a camera as objects."""

from __future__ import annotations

from typing import Any, Iterator, Mapping, NamedTuple

from . import _pcd
from .errors import shown
from .texts import described_by


class Range(NamedTuple):
    """The values that a number can have, inclusive; `step` is the distance between them."""

    minimum: float
    maximum: float
    step: float

    def __contains__(self, value: object) -> bool:
        return isinstance(value, (int, float)) and self.minimum <= value <= self.maximum


class Region(NamedTuple):
    """A part of the sensor, in pixels of the mode."""

    x: int
    y: int
    width: int
    height: int


class Area(NamedTuple):
    """The regions that a camera accepts: inside `bounds`, at least `minimum` wide and high, with
    sizes that are multiples of `step` and positions that are multiples of `offset_step`."""

    bounds: Region
    minimum: tuple[int, int]
    step: tuple[int, int]
    offset_step: int


class Property:
    """One setting of an open camera.

    What describes it (`title`, `unit`, `range` …) is what the camera reported last; `value` is read
    from the camera each time, and sent to it when it is assigned.
    """

    def __init__(self, session: _pcd.Session, name: str) -> None:
        if not isinstance(name, str):
            raise TypeError(f"the name of a property is {shown(name)}: expected a str")
        self._session = session
        #: The attribute of the camera: "gain".
        self.name: str = session.canonical_name(name)

    def _described(self, key: str) -> Any:
        return self._session.describe(self.name)[key]

    @property
    def id(self) -> str:
        """The id that `pcdctl` and profiles use: "autoexpogain"."""
        return str(self._described("id"))

    @property
    def title(self) -> str:
        """The title for users; empty for one that has a panel of its own."""
        return str(self._described("title"))

    @property
    def description(self) -> str:
        """A sentence for users; mostly empty."""
        return str(self._described("description"))

    @property
    def kind(self) -> str:
        """"number", "switch", "choice", "region", "composite" or "action"."""
        return str(self._described("kind"))

    @property
    def unit(self) -> str:
        """The unit of the value, the range and the default: "ms"; empty for a plain number."""
        return str(self._described("unit"))

    @property
    def range(self) -> Range | None:
        """The range of a number; None if it has none, or is no number."""
        found = self._described("range")
        return None if found is None else Range(*found)

    @property
    def choices(self) -> tuple[str, ...] | None:
        """The names that a choice can have; None if it is no choice."""
        found = self._described("choices")
        return None if found is None else tuple(found)

    @property
    def area(self) -> Area | None:
        """The regions that a region can be; None if it is no region."""
        found = self._described("area")
        if found is None:
            return None
        return Area(Region(*found["bounds"]), found["minimum"], found["step"], found["offset_step"])

    @property
    def default(self) -> Any:
        """The value that a reset sends; None if there is none."""
        return self._described("default")

    @property
    def is_saved(self) -> bool:
        """True if profiles have it."""
        return bool(self._described("is_saved"))

    @property
    @described_by(_pcd.Session.get)
    def value(self) -> Any:
        found = self._session.get(self.name)
        return Region(*found) if isinstance(found, tuple) else found

    @value.setter
    def value(self, value: Any) -> None:
        self._session.set(self.name, value)

    @described_by(_pcd.Session.run)
    def run(self) -> None:
        self._session.run(self.name)

    def __repr__(self) -> str:
        unit = f" {self.unit}" if self.unit else ""
        if self.kind == "action":
            return f"<pcd.Property {self.name}: action>"
        return f"<pcd.Property {self.name} = {self.value!r}{unit}>"


class Properties(Mapping[str, Property]):
    """The properties of an open camera by name, in the camera's order. Ids are understood too."""

    def __init__(self, session: _pcd.Session) -> None:
        self._session = session

    def __getitem__(self, name: str) -> Property:
        return Property(self._session, name)

    def __iter__(self) -> Iterator[str]:
        return iter(self._session.names())

    def __len__(self) -> int:
        return len(self._session.names())

    def __contains__(self, name: object) -> bool:
        return isinstance(name, str) and (
            name in self._session.names() or any(name == one.id for one in self.values())
        )

    def __repr__(self) -> str:
        return f"<pcd.Properties {', '.join(self)}>"
