"""A file reaches by its includes each class of the tree that it names."""

import re
from pathlib import PurePosixPath

from mutation.cppcode import Code

from .includes import includes_of
from .result import Result

TOPS = ("src", "tests", "bench")
DECLARED = re.compile(r"\b(?:class|struct|union|namespace)\s+(?:[A-Z]+_\w+\s+)?(?:\w+\s*::\s*)*(\w+)|\busing\s+(\w+)\s*=")
SUITE = re.compile(r"\b(TEST|TYPED_TEST)\(\w+")  # named like the class it tests, which is not a use of it


def check(tree):
    """Checks all C++ files. Compilers do not: sources compiled as one see what others include."""
    files = {path.relative_to(top): path for top in TOPS for path in tree.sources(top)}
    reach = Reach(tree, files)
    headers = {path.stem: name for name, path in files.items()
               if path.suffix == ".h" and path.stem in declared(tree.text(path))}
    result = Result("uses")
    for path in files.values():
        named = {}
        for token in Code(SUITE.sub(r"\1(", tree.text(path))).tokens:
            named.setdefault(token.text, token.line)
        for name in sorted(named.keys() & headers.keys()):
            result.checked += 1
            if name not in reach.names(path):
                result.add(path, named[name], f"names {name}, which none of its includes "
                           f"declares: expected #include <{headers[name]}>")
    return result


def declared(text):
    """The names of the types that a text declares, and of its namespaces."""
    return {name for found in DECLARED.findall(text) for name in found if name}


class Reach:
    """What the includes of a file declare, and the includes of these, and so on."""

    def __init__(self, tree, files):
        self.tree = tree
        self.files = files
        self.found = {}

    def names(self, path):
        """The names that a file or a header it reaches declares."""
        if path not in self.found:
            self.found[path] = self.collect(path)
        return self.found[path]

    def collect(self, path):
        names, seen, waiting = set(), {path}, [path]
        while waiting:
            text = self.tree.text(waiting.pop())
            names |= declared(text)
            for _, _, name in includes_of(text):
                header = self.files.get(PurePosixPath(name))
                if header and header not in seen:
                    seen.add(header)
                    waiting.append(header)
        return names
