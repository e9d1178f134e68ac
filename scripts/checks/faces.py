"""The face of a library: the headers that others may include, listed in its CMakeLists.txt."""

import re
from pathlib import PurePosixPath

# Tests and benchmarks include the private headers of the library they belong to, which is the one
# with the same path below its top folder, but for these.
OWN = {
    "tests/PTDevice": "PCdPlugins/PTDevice",
    "tests/reliability": "PCdPlugins/PTDevice",
    "tests/toupcam/trace": "toupcam/trace",
    "tests/toupcam": "toupcam/sim",
    "bench/devices": "apps/pcdview",
    "bench/pixels": "PCdPlugins/PTDevice",
    "bench/view": "apps/pcdview",
}
TOPS = ("tests", "bench", "examples")
HEADERS = re.compile(r"\bHEADERS((?:\s+[\w./]+\.h\b)+)")


class Faces:
    """The faces of all libraries, as listed in their CMakeLists.txt after HEADERS."""

    def __init__(self, tree, libraries):
        self.lists = {library: PurePosixPath("src", library, "CMakeLists.txt")
                      for library in libraries}
        self.headers = {PurePosixPath(library, name) for library, file in self.lists.items()
                        if file in tree.files
                        for found in HEADERS.findall(tree.text(file)) for name in found.split()}

    def check(self, user, library, path, line, name, result):
        """Adds a violation if a file of a library (or of None) includes a private header."""
        header = PurePosixPath(name)
        if header in self.headers:
            return
        if user != library:
            result.add(path, line, f"includes {name}, which is private to {library}: expected a "
                       f"header of its face (if others need this one, list it under HEADERS in "
                       f"{self.lists[library]})")
        elif path.parts[0] == "src" and path.relative_to("src") in self.headers:
            result.add(path, line, f"is in the face of {library} and includes {name}, which is "
                       f"private: expected a header of the face (list it under HEADERS in "
                       f"{self.lists[library]}, or include it in a .cpp)")


def owner_of(path, libraries):
    """The library to which a test or benchmark belongs; None for one of no library."""
    for folder, library in OWN.items():
        if path.is_relative_to(folder):
            return library
    inside = PurePosixPath(*path.parts[1:])
    for library in sorted(libraries, key=len, reverse=True):
        if inside.is_relative_to(library):
            return library
    return None
