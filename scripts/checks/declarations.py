"""The types and public functions that a header declares, and which of them have a comment."""

import re
from dataclasses import dataclass

from mutation.cppcode import Code

ACCESS = ("public", "protected", "private", "signals", "Q_SIGNALS")
TYPES = ("class", "struct", "union", "enum")
NO_FUNCTIONS = ("using", "typedef", "friend", "static_assert", "namespace", "extern")
MACRO = re.compile(r"[A-Z][A-Z0-9]*_[A-Z0-9_]+$")
COMMENT = re.compile(r"\s*(///|//|\*/|/\*)")


@dataclass
class Declaration:
    """A type or a function: its kind ("type", "function"), its name, its first and last line.

    bases are the types that a type derives from. commented is true if a comment stands before it
    or on one of its lines, or before the function right above it, whose lines it continues.
    plain is true of a function that needs no comment: a constructor, a destructor, one that
    overrides, is deleted or the default, or whose code is in the same line.
    """

    kind: str
    name: str
    line: int
    last: int
    commented: bool
    plain: bool = False
    bases: tuple = ()


class Header:
    """A header's declarations that its users see, operators left out."""

    def __init__(self, text):
        self.lines = text.split("\n")
        self.code = Code(text)
        self.found = []
        self.owners = [""]
        self.read(0, len(self.code.tokens), True)

    def read(self, first, end, visible):
        """Reads the declarations between two tokens, of which the first are visible or not."""
        start = index = first
        while index < end:
            text = self.code.at(index)
            colon = self.colon_of_access(index)
            if colon:
                visible = text not in ("private", "protected")
                start = index = colon + 1
            elif text == "{":
                start = index = self.read_block(start, index, visible)
            elif text == ";":
                self.read_one(start, index, visible)
                start = index = index + 1
            else:
                index = self.code.next(index) if text in ("(", "[") else index + 1

    def colon_of_access(self, index):
        """The colon of "public:" or "public slots:"; 0 if a word is not one of these."""
        if self.code.at(index) not in ACCESS:
            return 0
        colon = index + 2 if self.code.at(index + 1) in ("slots", "Q_SLOTS") else index + 1
        return colon if self.code.at(colon) == ":" else 0

    def read_block(self, start, brace, visible):
        """Reads a declaration with braces; returns the place after them."""
        after = self.code.next(brace)
        start = self.skip_macros(start, brace, "Q_")
        head = [token.text for token in self.code.tokens[start:brace]]
        if "namespace" in head or head[:1] == ["extern"]:
            self.read(brace + 1, after - 1, True)
        elif self.code.heads_type(brace):
            if visible:
                self.read_type(start, brace, head)
        elif self.function_name(start, brace):
            self.read_one(start, brace, visible)
        return after

    def read_type(self, start, brace, head):
        """Adds a type, and what it declares."""
        place = max(index for index, word in enumerate(head) if word in TYPES)
        names = [word for word in head[place + 1:] if not MACRO.match(word)]
        colon = head.index(":") if ":" in head else len(head)
        bases = tuple(word for word in head[colon:] if re.match(r"[A-Za-z_]", word))
        self.add("type", names[0] if names else "", start, brace, bases=bases)
        if "enum" not in head:
            self.owners.append(self.found[-1].name)
            self.read(brace + 1, self.code.match[brace], head[place] != "class")
            self.owners.pop()

    def read_one(self, start, end, visible):
        """Reads a declaration that ends at a token, and adds it if it is a visible function."""
        start = self.skip_macros(start, end, "Q_")
        name = self.function_name(start, end)
        if name and visible:
            self.add("function", name, start, end, plain=self.is_plain(name, start, end))

    def is_plain(self, name, start, end):
        """True if a function needs no comment of its own."""
        if name.strip("~") == self.owners[-1]:
            return True
        words = [token.text for token in self.code.tokens[start:end]]
        if {"override", "final"} & set(words) or words[-2:] in (["=", "default"], ["=", "delete"]):
            return True
        close = self.code.match.get(end)
        return close is not None and self.code.tokens[close].line == self.code.tokens[end].line

    def skip_macros(self, start, end, prefix=""):
        """The first token after macros such as Q_OBJECT and Q_PROPERTY(...)."""
        while start < end and MACRO.match(self.code.at(start)) \
                and self.code.at(start).startswith(prefix):
            start += 1
            if self.code.at(start) == "(":
                start = self.code.next(start)
        return start

    def function_name(self, start, end):
        """The name of the function between two tokens; "" if there is none, or an operator."""
        first, angles = self.skip_macros(start, end), 0
        if self.code.at(first) in NO_FUNCTIONS:
            return ""
        for index in range(first, end):
            text = self.code.at(index)
            if text == "=" and angles <= 0:
                return ""
            angles += {"<": 1, ">": -1}.get(text, 0)
            if text == "(" and angles <= 0:
                return self.name_before(start, index)
        return ""

    def name_before(self, start, bracket):
        """The name of a function before its parameters; "" if there is none."""
        before = [token.text for token in self.code.tokens[start:bracket]]
        if "operator" in before or self.code.kind(bracket - 1) != "word":
            return ""
        if self.code.at(bracket - 2) == "::":  # a definition: its declaration is elsewhere
            return ""
        return ("~" if self.code.at(bracket - 2) == "~" else "") + self.code.at(bracket - 1)

    def add(self, kind, name, start, end, **more):
        """Adds a declaration."""
        first, last = self.code.tokens[start].line, self.code.tokens[end].line
        commented = self.is_commented(first, last)
        if kind == "function":
            last = self.code.tokens[self.code.match.get(end, end)].line
            before = self.found[-1] if self.found else None
            if before and before.kind == "function" and before.last == first - 1:
                commented = commented or before.commented
        self.found.append(Declaration(kind, name, first, last, commented, **more))

    def is_commented(self, first, last):
        """True if a comment ends before a line, or stands on one of the lines to another."""
        before = self.lines[first - 2] if first > 1 else ""
        return bool(COMMENT.match(before)) or any(
            "//" in line or "/*" in line for line in self.lines[first - 1:last])
