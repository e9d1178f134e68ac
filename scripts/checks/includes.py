"""Includes run one way between libraries and their folders, and reach only a library's face."""

import re
from pathlib import PurePosixPath

from .faces import Faces, TOPS, owner_of
from .result import Result

# Of each library, the libraries whose headers it includes. They stand below it.
LIBRARIES = {
    "PCore": "",
    "PLog": "PCore",
    "PDip": "PCore",
    "PCd": "PCore PDip PLog",
    "PGui": "PCore",
    "PCdGui": "PCd PCore PGui",
    "PCdPlugins/PTDevice": "PCd PCore PDip PGui PLog toupcam",
    "toupcam": "",
    "toupcam/sim": "toupcam",
    "toupcam/trace": "toupcam",
    "apps/common": "PCd PCore PDip PLog",
    "apps/pcdctl": "PCd PCore PDip PLog apps/common",
    "apps/pcdview": "PCd PCdGui PCore PDip PGui PLog apps/common",
    "gstreamer": "PCd PCore PDip PLog apps/common",
    "python": "PCd PCore PLog apps/common",
}

# Of each library with folders, the folders whose headers each of them includes; "." is the
# library's own. A folder that is not here includes none.
FOLDERS = {
    "PCore": {
        "call": ".",
        "file": ".",
        "state": ".",
        "work": ".",
    },
    "PCd": {
        ".": "frame",
        "device": ". frame property property/value",
        "plugin": "device",
        "profile": ". device frame property property/value",
        "property": ". property/value",
        "property/typed": ". property",
        "property/value": ".",
    },
    "PCdGui": {
        ".": "editor text",
        "editor": "text",
    },
    "toupcam/sim": {
        "api": "hook scene world",
        "world": "frame hook scene settings stream",
        "stream": "frame hook sensor settings timing",
        "settings": "frame scene timing",
        "timing": "scene",
        "sensor": "frame processing scene",
        "processing": "frame",
        "scene": "frame",
    },
    "toupcam/trace": {
        "record": "format",
        "replay": "format",
    },
    "apps/common": {
        "camera": "crash",
        "doctor": "camera crash program system",
        "ome": "camera metadata program record tiff",
        "zarr": "file ome record tiff",
        "program": "hang",
        "record": "camera hang picture program",
        "output": "camera ome picture record zarr",
        "picture": "file metadata tiff",
        "pipe": "camera program record",
        "tiff": "file metadata",
        "metadata": "camera program",
    },
    "apps/pcdctl": {
        ".": "camera check cli commands completion doctor replay",
        "check": "camera check/bench check/rules cli",
        "check/bench": "cli",
        "check/frames": "check/bench check/rules",
        "check/rules": "check/bench",
        "commands": "camera cli properties runs",
        "completion": "camera cli",
        "doctor": "cli runs",
        "replay": "cli",
        "runs": "camera cli",
        "camera": "cli properties",
        "properties": "cli",
    },
    "python": {
        ".": "frame host property",
        "frame": "host property",
        "property": "host",
    },
    "apps/pcdview": {
        ".": "camera hang options window/camera window/main",
        "window/main": "camera capture options view window/actions window/camera window/panels",
        "window/actions": "analysis camera capture icons options view window/camera window/dialogs "
                          "window/panels",
        "window/camera": "camera view window/panels",
        "window/panels": "analysis capture",
        "window/dialogs": "capture",
        "capture": "camera options",
        "hang": "options",
        "analysis": "view",
    },
    "gstreamer": {
        ".": "camera frame",
        "camera": "frame",
    },
}

TABLES = PurePosixPath("scripts/checks/includes.py")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"]', re.MULTILINE)
GENERATED = re.compile(r"docstrings\.h$|ui_\w+\.h$|\w+\.moc$|moc_\w+\.cpp$")
META = re.compile(r"^[ \t]*Q_(OBJECT|GADGET|NAMESPACE)", re.MULTILINE)


def check(tree):
    """Checks all includes against the tables and the faces, and the tables for cycles."""
    result = Result("includes")
    check_faces(tree, result)
    check_meta_objects(tree, result)
    unused = {(None, a, b) for a, b in arrows(LIBRARIES)}
    unused |= {(library, a, b) for library in FOLDERS for a, b in arrows(FOLDERS[library])}
    for path in tree.sources("src"):
        for line, bracket, name in includes_of(tree.text(path)):
            result.checked += 1
            check_one(tree, path, line, (bracket, name), unused, result)
    for library, a, b in sorted(unused, key=str):
        where = f"in {library} " if library else ""
        result.add(TABLES, 1, f"no file {where}of {a} includes {b} any more: expected that the "
                   "arrow is removed from the table")
    for name, table in (("LIBRARIES", LIBRARIES), *FOLDERS.items()):
        for circle in circles(table):
            result.add(TABLES, 1, f"{name}: {' -> '.join(circle)} is a cycle: expected that "
                       "includes run one way")
    return result


def check_faces(tree, result):
    """Adds the includes, in all folders of code, of headers that are private to a library."""
    faces = Faces(tree, LIBRARIES)
    for path in [path for top in ("src", *TOPS) for path in tree.sources(top)]:
        here = place_of(path.relative_to("src")) if path.parts[0] == "src" else None
        user = here[0] if here else owner_of(path, LIBRARIES)
        check_first(tree, path, result)
        for line, bracket, name in includes_of(tree.text(path)):
            if bracket == '"' and not GENERATED.match(name) and not is_beside(tree, path, name):
                result.add(path, line, f'#include "{name}": expected the path from {path.parts[0]} '
                           "in <>, as quotes are for generated files")
            there = place_of(PurePosixPath(name))
            if there and PurePosixPath("src", name) in tree.files:
                faces.check(user, there[0], path, line, name, result)


def check_first(tree, path, result):
    """Adds a violation if a source with a header of its name does not include that one first."""
    own = path.with_suffix(".h")
    if path.suffix != ".cpp" or own not in tree.files:
        return
    line, _, name = next(includes_of(tree.text(path)), (1, "", ""))
    expected = f"<{own.relative_to(own.parts[0])}>"
    if is_beside(tree, path, own.name):
        expected = f'"{own.name}"'
    if name != expected[1:-1]:
        result.add(path, line, f"includes {name or 'nothing'} first: expected {expected}, which "
                   "so is seen to need no other header before it")


def check_meta_objects(tree, result):
    """Adds headers whose meta-object code no source beside them includes: alone, what moc wrote
    for a folder takes as long to compile as many sources that have read the same headers."""
    sources = [path for top in ("src", "tests", "bench") for path in tree.sources(top)]
    included = {(path.parent, name) for path in sources if path.suffix == ".cpp"
                for _, _, name in includes_of(tree.text(path))}
    for path in [path for path in sources if path.suffix == ".h"]:
        found = META.search(tree.text(path))
        moc = f"moc_{path.stem}.cpp"
        if found and (path.parent, moc) not in included:
            line = tree.text(path).count("\n", 0, found.start()) + 1
            result.add(path, line, f'{found[0].strip()}: expected #include "{moc}" at the end of '
                       "the source beside it")


def is_beside(tree, path, name):
    """True if a name is that of a header beside a file of an example, which is a tree of its own."""
    return path.parts[0] == "examples" and path.parent / name in tree.files


def includes_of(text):
    """Yields line, bracket and name of each include of a text."""
    for found in INCLUDE.finditer(text):
        yield text.count("\n", 0, found.start()) + 1, *found.groups()


def arrows(table):
    """The pairs of a table: what includes, and what is included."""
    return [(a, b) for a, included in table.items() for b in included.split()]


def check_one(tree, path, line, found, unused, result):
    """Adds a violation if one include is against the tables; an arrow it uses is not unused."""
    bracket, name = found
    if bracket == '"':
        return
    here, there = place_of(path.relative_to("src")), place_of(PurePosixPath(name))
    if there is None or here == there:
        return
    if here is None:
        result.add(path, line, f"includes {name} but belongs to no library of {TABLES}: expected "
                   "that its folder is in the table")
        return
    if here[0] == there[0]:
        library, table, a, b = here[0], FOLDERS.get(here[0], {}), here[1], there[1]
    else:
        library, table, a, b = None, LIBRARIES, here[0], there[0]
    unused.discard((library, a, b))
    if b not in table.get(a, "").split():
        where = f"{library}/{a}" if library else a
        expected = f"of all others only {table[a]}" if table.get(a) else "none of the others"
        result.add(path, line, f"{where} includes {name}: expected {expected} (see {TABLES})")


def place_of(path):
    """The library and the folder in it of a path from src; None for what is not in src."""
    for library in sorted(LIBRARIES, key=len, reverse=True):
        if path.is_relative_to(library):
            return library, str(path.relative_to(library).parent)
    return None


def circles(table):
    """The cycles in a table, each once."""
    found = []

    def follow(way):
        for following in table.get(way[-1], "").split():
            if following in way:
                circle = way[way.index(following):]
                if circle[0] == min(circle):
                    found.append((*circle, following))
            else:
                follow((*way, following))

    for start in table:
        follow((start,))
    return sorted(set(found))
