"""What the headers mark for export, and the symbols that belong to it."""

import re

TYPE = re.compile(r"(template\s*<[^;{}]*>\s*)?\b(?:class|struct)\s+(PCD_(?:TEST_)?EXPORT)\s+(\w+)")
MARK = re.compile(r"\b(PCD_(?:TEST_)?EXPORT)\s+(?:(?:class|struct)\s+)?([^;{]*)")
FUNCTION = re.compile(r"(operator\S+|\w+)\s*\(")
BEFORE = re.compile(r"^(?:typeinfo (?:name )?for |vtable for |(?:non-)?virtual thunk to |VTT for |"
                    r"guard variable for |construction vtable for .*-in-)+")
FOR_HOSTS, FOR_TESTS = "PCD_EXPORT", "PCD_TEST_EXPORT"


class Marks:
    """The names of the types and functions that a mark stands before."""

    def __init__(self, texts, marks):
        self.types, self.templates, self.functions = set(), set(), set()
        for text in texts:
            for template, mark, name in TYPE.findall(text):
                if mark in marks:
                    (self.templates if template else self.types).add(name)
            for mark, rest in MARK.findall(text):
                if mark in marks:
                    self.functions.update(FUNCTION.findall(rest)[:1])

    @property
    def names(self):
        """All names."""
        return self.types | self.templates | self.functions

    def cover(self, symbol):
        """True if a symbol, as it is written in C++, is a marked function or part of a marked type."""
        return bool(parts_of(symbol) & self.names)


def parts_of(symbol):
    """The names in the path of a symbol: that of its class, of the function and so on."""
    path = re.split(r"[(<\[]", BEFORE.sub("", symbol).replace("operator<", "operator\0")
                    .replace("operator\0<", "operator\0\0"))[0].replace("\0", "<")
    return set(path.split("::"))
