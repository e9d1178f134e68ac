"""What differs between a kept promise and a built one, and whether that breaks it."""

from dataclasses import dataclass


@dataclass(frozen=True, order=True)
class Difference:
    """One difference, with the line of the kept text."""

    path: str
    line: int
    what: str
    breaks: bool

    def __str__(self):
        return f"{self.path}:{self.line}: {self.what} [{'breaks' if self.breaks else 'adds'}]"


def differences(path, kept, built):
    """All differences, by line. New entries have the last line, where there is no entry to name."""
    found = []
    end = max((entry.line for entry in kept.values()), default=1)
    for name in kept.keys() - built.keys():
        found.append(Difference(path, kept[name].line, f"{name} is gone", True))
    for name in built.keys() - kept.keys():
        found.append(Difference(path, end, f"{name} is new", False))
    for name in kept.keys() & built.keys():
        old, new = kept[name], built[name]
        if old.value != new.value:
            # A longer table shows a virtual destructor after all others, which has no slot in the text.
            longer = name.startswith("symbol vtable") and number_in(new.value) > number_in(old.value)
            found.append(Difference(path, old.line, f"{name} was {old.value}, is {new.value}",
                                    not longer))
        found += different_parts(path, name, old, new)
    return sorted(found)


def number_in(size):
    """The number of "48 bytes"."""
    return int(size.split()[0])


def different_parts(path, name, old, new):
    """The differences between the parts of an entry."""
    for part in old.parts.keys() - new.parts.keys():
        value, line = old.parts[part]
        yield Difference(path, line, f"{name}: {part} is gone, was {value}", True)
    for part in new.parts.keys() - old.parts.keys():
        # A new slot is after all others, or was another class's; otherwise it moves one, which breaks.
        adds = name.startswith("enum ") or part.startswith("slot ")
        yield Difference(path, old.line, f"{name}: {part} is new, {new.parts[part]}", not adds)
    for part in old.parts.keys() & new.parts.keys():
        value, line = old.parts[part]
        if value != new.parts[part]:
            yield Difference(path, line, f"{name}: {part} was {value}, is {new.parts[part]}", True)
