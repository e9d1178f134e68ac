"""C++ source as tokens with brackets matched: as much of the language as changing a line needs."""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""(?P<preproc>^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*)
    |(?P<comment>//[^\n]*|/\*.*?\*/)
    |(?P<string>(?:u8|[uUL])?(?:R"(?P<raw>[^(\s]*)\(.*?\)(?P=raw)"|"(?:[^"\\\n]|\\.)*"))
    |(?P<char>(?:u8|[uUL])?'(?:[^'\\\n]|\\.)+')
    |(?P<number>\.?\d(?:[eEpP][+-]|'(?=\w)|[\w.])*)
    |(?P<word>[A-Za-z_]\w*)
    |(?P<op><<=|>>=|\.\.\.|->\*|::|->|\+\+|--|<<|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[^\s\w])
    """,
    re.MULTILINE | re.DOTALL | re.VERBOSE)

CLOSING = {"(": ")", "[": "]", "{": "}"}
# What can stand before the brace that opens a function's code or a block.
ENDS_OF_HEADS = (")", "]", ";", "}", "const", "noexcept", "override", "else", "do", "try",
                 "mutable")
NOT_CODE = ("class", "struct", "union", "enum", "namespace")


@dataclass
class Token:
    """A piece of source: its kind, its text, and where it is."""

    kind: str
    text: str
    start: int
    line: int

    @property
    def end(self):
        """The place after its last character."""
        return self.start + len(self.text)


class Code:
    """The tokens of a source file without comments and preprocessor lines.

    match maps the index of a bracket to its partner's; parent maps each token's index to that of
    the bracket around it (None at file level).
    """

    def __init__(self, text):
        self.text = text
        self.tokens = list(tokens_of(text))
        self.match, self.parent = match_brackets(self.tokens)

    def at(self, index):
        """The text of a token, '' where there is none."""
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def kind(self, index):
        """The kind of a token, '' where there is none."""
        return self.tokens[index].kind if 0 <= index < len(self.tokens) else ""

    def next(self, index):
        """The index after a token, or after its partner where the token opens a bracket."""
        return self.match.get(index, index) + 1 if self.at(index) in CLOSING else index + 1

    def spaced(self, index):
        """True if a token has white space on both sides, as binary operators have here."""
        token = self.tokens[index]
        before, after = self.text[token.start - 1], self.text[token.end:token.end + 1]
        return before.isspace() and after.isspace()

    def is_code(self, index):
        """True if a token stands directly in the braces of a function's code."""
        opening = self.parent[index]
        return opening is not None and self.at(opening) == "{" and self.opens_code(opening)

    def opens_code(self, brace):
        """True if a brace opens statements: not a type, a namespace or a list of values."""
        before = self.at(brace - 1)
        if before in ("=", ",", "(", "{", "return", "[") or before == "":
            return before == "{" and self.is_code(brace)
        if before == ":":  # of a case, not of a for over a list
            return self.at(self.parent[brace]) == "{" if self.parent[brace] is not None else False
        return not self.heads_type(brace) and before in ENDS_OF_HEADS

    def heads_type(self, brace):
        """True if the declaration before a brace is that of a type or namespace."""
        index = brace - 1
        while index >= 0 and self.at(index) not in (";", "}", "{", ")"):
            if self.at(index) in NOT_CODE:
                return True
            index -= 1
        return False


def tokens_of(text):
    """Yields the tokens of a source text that are code."""
    line, place = 1, 0
    for found in TOKEN.finditer(text):
        line += text.count("\n", place, found.start())
        place = found.start()
        kind = found.lastgroup if found.lastgroup != "raw" else "string"
        if kind not in ("comment", "preproc"):
            yield Token(kind, found.group(), place, line)


def match_brackets(tokens):
    """The partner of each bracket, and the opening bracket around each token."""
    match, parent, stack = {}, [], []
    for index, token in enumerate(tokens):
        if token.kind == "op" and stack and token.text == CLOSING[tokens[stack[-1]].text]:
            match[index] = stack[-1]
            match[stack.pop()] = index
        parent.append(stack[-1] if stack else None)
        if token.kind == "op" and token.text in CLOSING:
            stack.append(index)
    return match, parent
