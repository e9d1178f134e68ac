"""Lists of exceptions, which may only shrink: an entry that is no longer needed is a violation.

A list is a text file of groups: lines with "#" that give the reason, then one entry a line, "name"
or "name: details". An empty line ends a group.
"""

from dataclasses import dataclass
from pathlib import PurePosixPath

from .tree import MAIN

FOLDER = PurePosixPath("scripts/checks/allowed")


@dataclass
class Entry:
    """An exception: its name, what is said about it, the reason of its group, its line."""

    name: str
    details: str
    reason: str
    line: int
    used: bool = False


class Allowed:
    """The exceptions of one check. Those of a list that may not grow are no more than on main."""

    def __init__(self, tree, name, may_grow=False):
        self.path = FOLDER / f"{name}.txt"
        self.entries = list(entries_of(tree.text(self.path) if self.path in tree.files else ""))
        before = None if may_grow else tree.git("show", f"{MAIN}:{self.path}")
        self.most = len(self.entries) if before is None else len(list(entries_of(before)))

    def find(self, name):
        """The exception of a name, marked as needed; None without one."""
        for entry in self.entries:
            if entry.name == name:
                entry.used = True
                return entry
        return None

    def report(self, result):
        """Adds the entries that are not needed, have no reason, or are there twice."""
        if len(self.entries) > self.most:
            result.add(self.path, 1, f"{len(self.entries)} entries, {self.most} of them on {MAIN}: "
                       "expected no more, as this list only shrinks")
        seen = set()
        for entry in self.entries:
            if entry.name in seen:
                result.add(self.path, entry.line, f"{entry.name} is listed twice: expected once")
            elif not entry.used:
                result.add_stale(self.path, entry.line,
                                 f"{entry.name} needs no exception any more")
            elif not entry.reason:
                result.add(self.path, entry.line, f"{entry.name} has no reason: expected a line "
                           "with # above its group")
            seen.add(entry.name)


def entries_of(text):
    """Yields the entries of a list."""
    reason, in_reason = "", False
    for number, line in enumerate(text.splitlines(), 1):
        line = line.strip()
        if line.startswith("#"):
            reason = f"{reason} {line[1:].strip()}".strip() if in_reason else line[1:].strip()
        elif line:
            name, _, details = line.partition(":")
            yield Entry(name.strip(), details.strip(), reason, number)
        else:
            reason = ""
        in_reason = line.startswith("#")


def pruned(text, lines):
    """A list without some lines, and without the groups whose entries all were in them."""
    kept, group = [], []
    for number, line in enumerate([*text.splitlines(), ""], 1):
        if line.strip():
            group.append((number in lines, line))
            continue
        left = [one for is_gone, one in group if not is_gone]
        if any(entries_of("\n".join(left))) or len(left) == len(group):
            kept += [*left, line]
        group = []
    return "\n".join(kept).strip("\n") + "\n"
