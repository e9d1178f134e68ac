"""What a check found."""

from dataclasses import dataclass, field
from pathlib import PurePosixPath


@dataclass(frozen=True, order=True)
class Finding:
    """One violation: where it is, what was found and what was expected. Line 0 is no line."""

    path: PurePosixPath
    line: int
    text: str

    def __str__(self):
        place = f"{self.path}:{self.line}" if self.line else self.path
        return f"{place}: {self.text}"


@dataclass
class Result:
    """The findings of a check, and the number of things checked: a check of nothing fails."""

    unit: str
    checked: int = 0
    findings: list = field(default_factory=list)
    stale: list = field(default_factory=list)  # findings that removing their lines would solve
    note: str = ""

    def add(self, path, line, text):
        """Adds a violation."""
        self.findings.append(Finding(PurePosixPath(path), line, text))

    def add_stale(self, path, line, text):
        """Adds the violation that a line of a list is no longer needed."""
        self.add(path, line, f"{text}: expected that this line is removed, as scripts/check "
                 "--prune does")
        self.stale.append(self.findings[-1])
