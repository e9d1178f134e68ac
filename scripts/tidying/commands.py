"""What clang-tidy is run on, by what the asan preset compiles.

There, up to 64 sources are compiled as one, so what they all include is read once. The analyser, which follows the
paths through each function, looks only at what stands in the compiled file itself: it runs over one source at a time.
"""

import json
import re
import shlex
import subprocess
from dataclasses import dataclass
from pathlib import Path

ANALYSER = "clang-analyzer-*"
# Without what .clang-tidy leaves out on purpose, too, and without what takes each copy of a shared value for the
# last: it does not follow counts of references that are atomic.
ANALYSER_CHECKS = f"-*,{ANALYSER},-clang-analyzer-cplusplus.NewDelete*,-clang-analyzer-optin.performance.Padding"
WRITTEN_BY_QT = re.compile(r"mocs_compilation|qrc_")
INCLUDED = re.compile(r'^#include "(.*[.]cpp)"$', re.MULTILINE)
# In what `ninja -t deps` prints: an object, then, a line each, the files that were read for it.
OBJECT = re.compile(r"^(\S.*): #deps \d+, deps mtime \d+ \(VALID\)$")


@dataclass(frozen=True)
class Run:
    """One run of clang-tidy: the file that it looks at, its arguments, and the files that were read to compile that."""
    path: str
    arguments: tuple
    files: tuple


class Unit:
    """A file that the build compiles: of one source, or of up to 64."""

    def __init__(self, entry, read):
        words = shlex.split(entry["command"])
        first = next(at for at, word in enumerate(words) if Path(word).name.startswith("clang")) + 1
        output = words.index("-o")
        self.path = entry["file"]
        self.options = [word for word in words[first:output] + words[output + 2:] if word not in ("-c", self.path)]
        self.files = read.get(words[output + 1], ())

    def sources(self):
        """The sources in the unit."""
        if "/Unity/" not in self.path:
            return [self.path]
        return INCLUDED.findall(Path(self.path).read_text(encoding="utf-8"))


def files_read(deps, build):
    """The files that were read for each object of a build folder, by what `ninja -t deps` prints."""
    found, files = {}, None
    for line in deps.splitlines():
        if line.startswith("    "):
            if files is not None:
                files.append(str(build / line.strip()))
        else:
            match = OBJECT.match(line)
            files = found.setdefault(match[1], []) if match else None
    return found


def units(root, build):
    """The units of src that the build compiles, without what moc and rcc wrote."""
    with open(build / "compile_commands.json", encoding="utf-8") as file:
        entries = json.load(file)
    deps = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, stdout=subprocess.PIPE, text=True).stdout
    places = (root / "src", build / "src")
    found = {entry["file"]: entry for entry in entries  # one of each: some programs compile a source again
             if any(place in Path(entry["file"]).parents for place in places)
             and not WRITTEN_BY_QT.match(Path(entry["file"]).name)}
    read = files_read(deps, build)
    return [Unit(entry, read) for entry in found.values()]


def make_run(root, path, checks, unit):
    """clang-tidy for a file, which is compiled as its unit is. Findings are errors, which the exit code says."""
    # A unit includes sources, and findings are wanted from them as from headers; not from what moc wrote.
    return Run(path, ("clang-tidy", "--quiet", "--warnings-as-errors=*",
                      f"--header-filter=^{re.escape(str(root))}/src/.*[.](h|cpp)$", checks, path,
                      "--", *unit.options), tuple(unit.files))


def unit_runs(root, all_units, text):
    """clang-tidy for each unit whose path has the text, with all checks but the analyser's."""
    checks = f"--checks=-bugprone-suspicious-include,-{ANALYSER}"
    return [make_run(root, unit.path, checks, unit)
            for unit in all_units if text in unit.path]


def source_runs(root, all_units, text):
    """clang-tidy for each source whose path has the text, by itself, compiled as its unit is; the analyser only."""
    checks = f"--checks={ANALYSER_CHECKS}"
    return [make_run(root, source, checks, unit)
            for unit in all_units for source in unit.sources() if text in source]
