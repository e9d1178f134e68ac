"""What a check found."""

from dataclasses import dataclass, field
from pathlib import PurePosixPath


@dataclass(frozen=True, order=True)
class Finding:
    """One violation: where it is, what was found and what was expected."""

    path: PurePosixPath
    line: int
    text: str

    def __str__(self):
        return f"{self.path}:{self.line}: {self.text}"


@dataclass
class Result:
    """The findings of a check, and how much it looked at: a check of nothing is a failure."""

    unit: str
    checked: int = 0
    findings: list = field(default_factory=list)
    stale: list = field(default_factory=list)  # findings that removing their lines would solve

    def add(self, path, line, text):
        """Adds a violation."""
        self.findings.append(Finding(PurePosixPath(path), line, text))

    def add_stale(self, path, line, text):
        """Adds the violation that a line of a list is needed no more."""
        self.add(path, line, f"{text}: expected that this line is removed, as scripts/check "
                 "--prune does")
        self.stale.append(self.findings[-1])
