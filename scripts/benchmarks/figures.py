"""The figures that the programs of bench report."""

from dataclasses import asdict, dataclass


class FigureError(Exception):
    """A row of a program's JSON that is not a figure; the text says which and why."""


@dataclass
class Figure:
    """One row of the table; reference, ratio and spread are None if the value alone is bounded, and
    ours too if this build cannot measure it."""

    name: str
    what: str
    against: str
    unit: str
    ours: float | None
    reference: float | None
    ratio: float | None
    spread: float | None
    target: float

    @property
    def missing(self):
        """Whether this build has nothing that could be measured."""
        return self.ours is None

    @property
    def bounded(self):
        """The number that the target bounds; None if it is missing."""
        return self.ours if self.ratio is None else self.ratio

    @property
    def holds(self):
        """Whether the target does."""
        return not self.missing and self.bounded <= self.target

    def as_dict(self):
        """For JSON."""
        return {**asdict(self), "holds": self.holds}


def figure_of(row):
    """The figure that a row of Google Benchmark's JSON contains."""
    name = row.get("run_name", row.get("name", "?")).removesuffix("/iterations:1")
    if row.get("error_occurred"):
        raise FigureError(f"{name}: {row.get('error_message', 'failed')}")
    words = row.get("label", "").split("|")
    if len(words) != 3 or "target" not in row or ("ours" in row) == ("missing" in row):
        raise FigureError(f"{name}: is not a figure; see bench/figure/FigureProgram.h")
    return Figure(name, *words, row.get("ours"), row.get("reference"), row.get("ratio"),
                  row.get("spread"), row["target"])


def figure_from(entry):
    """The figure that an entry of bench.json contains."""
    try:
        return Figure(**{key: value for key, value in entry.items() if key != "holds"})
    except TypeError as error:
        raise FigureError(f"{entry.get('name', '?')}: {error}") from error
