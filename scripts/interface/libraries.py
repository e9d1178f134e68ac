"""The libraries that promise something to others, and where the promise is written."""

import json
import re
from dataclasses import dataclass, field
from pathlib import Path

from checks.faces import HEADERS
from checks.tree import InputError

from .marks import FOR_HOSTS, FOR_TESTS, Marks

MADE = re.compile(r"^pcd_add_library\((\w+)", re.MULTILINE)
OUTPUT = re.compile(r" -o (\S+)/CMakeFiles/(\w+)\.dir/(\S+\.o)\b")
LINKED = re.compile(r"^    LINK ([^)]*)", re.MULTILINE)
SDK, PLUGIN = "src/toupcam", "src/PCdPlugins/PTDevice"


# What Qt looks for in a plugin, and the plugin's catalogue, which a host may register by name.
ENTRY = {"qt_plugin_instance", "qt_plugin_query_metadata_v2", "qInitResources_ptdevice()",
         "qCleanupResources_ptdevice()"}


@dataclass
class Library:
    """A built library and what it promises."""

    name: str
    path: Path
    objects: list  # what it is linked of: the debug information of each source
    headers: set  # relative to src: types that these define are described
    promised: Marks | None = None  # None: everything that it exports
    private: Marks = field(default_factory=lambda: Marks((), ()))

    def promises(self, symbol):
        """True if hosts may use a symbol, as it is written in C++."""
        return self.promised is None or symbol in ENTRY \
            or (self.promised.cover(symbol) and not self.private.cover(symbol))


def find_libraries(tree, build):
    """The libraries of a build, each after those whose types it uses. Raises InputError if one is
    not there."""
    lists = {path.parent: tree.text(path) for path in tree.files
             if path.parts[0] == "src" and path.name == "CMakeLists.txt"}
    headers = {(folder / name).relative_to("src").as_posix() for folder, text in lists.items()
               if MADE.search(text) or folder.is_relative_to(SDK)
               for found in HEADERS.findall(text) for name in found.split()}
    own = {path.relative_to("src").as_posix() for path in tree.files
           if path.is_relative_to(PLUGIN) and path.suffix == ".h"}
    made = {name: (folder, text) for folder, text in lists.items() for name in MADE.findall(text)}
    objects = find_objects(build)
    found = [Library(name, build / f"lib/lib{name}.so", objects.get(name, []), headers,
                     *marks_of(tree, made[name][0]))
             for name in in_order({name: text for name, (_, text) in made.items()})]
    found += [Library("toupcam", build / "lib/pcd/sim/libtoupcam.so", objects.get("toupcamsim", []),
                      headers),
              Library("PTDevice", build / "lib/pcd/plugins/libPTDevice.so",
                      objects.get("PTDevice", []) + objects.get("PTDeviceObjects", []),
                      headers | own, *marks_of(tree, PLUGIN))]
    for library in found:
        for file in (library.path, *library.objects):
            if not file.is_file():
                raise InputError(f"{file}: there is no such file, expected what scripts/build makes")
    return found


def find_objects(build):
    """The compiled sources of a build by target."""
    file, found = build / "compile_commands.json", {}
    if not file.is_file():
        raise InputError(f"{file}: there is no such file, expected a folder that scripts/build made")
    for entry in json.loads(file.read_text(encoding="utf-8")):
        for folder, target, name in OUTPUT.findall(entry["command"]):
            found.setdefault(target, []).append(
                Path(entry["directory"], folder, "CMakeFiles", f"{target}.dir", name))
    return found


def marks_of(tree, folder):
    """What the headers of a folder mark for hosts, and for tests."""
    texts = [tree.text(path) for path in tree.files if path.is_relative_to(folder) and path.suffix == ".h"]
    return Marks(texts, {FOR_HOSTS}), Marks(texts, {FOR_TESTS})


def in_order(texts):
    """The names of libraries, each after those that it links, by the texts of their CMakeLists.txt."""
    links = {name: set(texts) & set(" ".join(LINKED.findall(text)).split())
             for name, text in texts.items()}
    return sorted(texts, key=lambda name: (len(reach(name, links)), name))


def reach(name, links):
    """All that a library links, directly or not."""
    found = set(links[name])
    return found.union(*(reach(other, links) for other in found))
