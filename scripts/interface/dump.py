"""What abidw reads from the debug information of a compiled source, and nm from a library.

abidw reads the sources one by one. In a whole library it takes the first description of a class for
all, and loses the functions that belong to the others: which ones depends on the order of sources.
"""

import os.path
import shutil
import subprocess
import xml.etree.ElementTree as ElementTree

from checks.tree import InputError

# The tools, and their packages.
ABIDW, NM, CXXFILT = ("abidw", "abigail-tools"), ("nm", "binutils"), ("c++filt", "binutils")
OPTIONS = ("--exported-interfaces-only", "--no-linux-kernel-mode", "--no-corpus-path",
           "--no-elf-needed", "--no-parameter-names")
RECORDS = ("class-decl", "union-decl")
CODE = "T"  # nm's letter for functions


def run(tool, arguments, text=None):
    """What a tool prints. Raises InputError if it is missing or fails."""
    name, package = tool
    if shutil.which(name) is None:
        raise InputError(f"there is no {name}, expected it from Debian's {package} "
                         "(scripts/dependencies test)")
    ended = subprocess.run([name, *arguments], input=text, check=False, capture_output=True, text=True)
    if ended.returncode != 0:
        raise InputError(f"{name} {' '.join(arguments[-1:])}: {ended.stderr.strip()}, expected a "
                         "library or a compiled source")
    return ended.stdout


def demangled(symbols):
    """Symbols as they are written in C++, by symbol."""
    names = sorted(symbols)
    return dict(zip(names, run(CXXFILT, (), "\n".join(names)).splitlines()))


def read_symbols(library):
    """The symbols that a library promises, as written in C++: None for a function, otherwise the
    size in bytes."""
    lines = [line.split() for line in run(NM, [
        "--dynamic", "--defined-only", "--portability", "--radix=d", str(library.path)]).splitlines()]
    names = demangled({line[0] for line in lines})
    return {names[symbol]: None if kind == CODE else int(size)
            for symbol, kind, _, size in lines if library.promises(names[symbol])}


def sources_of(library, symbols):
    """The compiled sources of a library that define one of its functions."""
    lines = run(NM, ["-A", "--extern-only", "--defined-only", "--portability",
                     *map(str, library.objects)]).splitlines() if library.objects else []
    found = [line.rpartition(": ")[::2] for line in lines]
    names = demangled({rest.split()[0] for _, rest in found})
    return sorted({file for file, rest in found
                   if rest.split()[1] == CODE and names[rest.split()[0]] in symbols})


def symbol_of(function):
    """The symbol of a function; one of C that is only called has none but its name."""
    return function.get("mangled-name") or function.get("name")


class Dump:
    """The functions of a compiled source that others may call, by how they are written in C++, and
    the types that come with them."""

    def __init__(self, file, headers):
        self.headers = headers
        root = ElementTree.fromstring(run(ABIDW, [*OPTIONS, file]))
        self.parents = {child: parent for parent in root.iter() for child in parent}
        symbols = {element: symbol_of(element) for element in root.iter("function-decl")}
        names = demangled(set(symbols.values()))
        self.written = {element: names[symbol] for element, symbol in symbols.items()}
        self.functions = {written: element for element, written in self.written.items()
                          if element.get("size-in-bits")}
        self.types = {element.get("id"): element for element in root.iter() if element.get("id")}

    def source(self, element):
        """The file below src that declares a type; None if it is not ours."""
        path = "/" + os.path.normpath(element.get("filepath", ""))
        _, below, file = path.rpartition("/src/")
        return file if below else None

    def is_described(self, element):
        """True if a type is defined in a header that hosts include."""
        return self.source(element) in self.headers and element.get("is-declaration-only") is None
