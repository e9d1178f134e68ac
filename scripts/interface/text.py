"""Promises as text: a line for each entry, and one for each of its parts."""

from pathlib import PurePosixPath

from checks.tree import InputError

from .promise import Entry

FOLDER = PurePosixPath("packaging/abi")
HEAD = "# What hosts may rely on; written by scripts/abi --update, see docs/abi.md."
INDENT = "    "


def file_of(name):
    """The file that keeps the promise of a library."""
    return FOLDER / f"{name}.abi"


def written(promise):
    """A promise as text."""
    lines = [HEAD]
    for name, entry in promise.items():
        lines.append("")
        lines.append(line_of(name, entry.value))
        lines += [INDENT + line_of(part, value) for part, value in entry.parts.items()]
    # Entries without parts stand together.
    made = [line for number, line in enumerate(lines)
            if line or number == 1 or lines[number - 1].startswith(INDENT)
            or lines[number + 2:number + 3] and lines[number + 2].startswith(INDENT)]
    return "\n".join(made) + "\n"


def line_of(name, value):
    """A name with its value, if it has one."""
    return f"{name}: {value}" if value else name


def read(path, text):
    """The promise that a text keeps. Raises InputError for a part without an entry."""
    promise, entry = {}, None
    for number, line in enumerate(text.splitlines(), 1):
        name, _, value = line.strip().partition(": ")
        if not line or line.startswith("#"):
            continue
        if not line.startswith(INDENT):
            entry = promise[name] = Entry(value, {}, number)
        elif entry is None:
            raise InputError(f"{path}:{number}: {name} belongs to nothing, expected a type before it")
        else:
            entry.parts[name] = (value, number)
    return promise
