"""The changes: each operator finds the places in a source where it applies."""

import bisect
import re
from dataclasses import dataclass

from .cppcode import Code

# Left operand, right operand and what stands between them stay; the operator changes.
BINARY = {
    "==": ["!="], "!=": ["=="],
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"],
    "&&": ["||"], "||": ["&&"], "|": ["&"], "&": ["|"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "|=": ["&="], "&=": ["|="],
}
BINARY_NAMES = {"==": "compare", "!=": "compare", "<": "compare", "<=": "compare",
                ">": "compare", ">=": "compare", "&&": "logic", "||": "logic"}

# Words that have a counterpart which also compiles: operator, word, replacements.
WORDS = {
    "true": ("bool", ["false"]), "false": ("bool", ["true"]),
    "QueuedConnection": ("connection", ["DirectConnection"]),
    "DirectConnection": ("connection", ["QueuedConnection"]),
    "BlockingQueuedConnection": ("connection", ["QueuedConnection"]),
    "HighPriority": ("priority", ["NormalPriority"]),
    "qobject_cast": ("cast", ["static_cast"]), "dynamic_cast": ("cast", ["static_cast"]),
    "min": ("extreme", ["max"]), "max": ("extreme", ["min"]),
    "qMin": ("extreme", ["qMax"]), "qMax": ("extreme", ["qMin"]),
    "minimum": ("extreme", ["maximum"]), "maximum": ("extreme", ["minimum"]),
    "append": ("order", ["prepend"]), "prepend": ("order", ["append"]),
    "takeFirst": ("order", ["takeLast"]), "takeLast": ("order", ["takeFirst"]),
    "first": ("order", ["last"]), "last": ("order", ["first"]),
    "width": ("dimension", ["height"]), "height": ("dimension", ["width"]),
    "toUtf8": ("text code", ["toLatin1"]), "fromUtf8": ("text code", ["fromLatin1"]),
    "qDebug": ("log level", ["qInfo"]), "qInfo": ("log level", ["qDebug"]),
    "qWarning": ("log level", ["qInfo"]), "qCritical": ("log level", ["qWarning"]),
}
# Only as members of what stands before them.
MEMBERS = {"first", "last", "width", "height", "minimum", "maximum", "append", "prepend",
           "min", "max", "takeFirst", "takeLast", "toUtf8", "fromUtf8"}
LOG_LEVELS = {"Error": "Warning", "Warning": "Info", "Info": "Debug", "Debug": "Info"}
NARROW_TYPES = {"unsigned short": "unsigned char", "short": "signed char", "quint16": "quint8",
                "qint16": "qint8", "quint32": "quint16", "quint64": "quint32", "qint64": "qint32"}

# The brackets after these contain no code that runs.
DECLARING = {"Q_PROPERTY", "Q_PLUGIN_METADATA", "Q_DECLARE_METATYPE", "Q_INTERFACES", "Q_ENUM",
             "Q_GADGET", "Q_DECLARE_INTERFACE", "static_assert", "alignas", "deprecated"}
KEYWORDS = {"return", "if", "for", "while", "do", "switch", "case", "default", "using", "goto",
            "throw", "else", "try", "catch", "public", "private", "protected", "friend",
            "template", "typedef", "class", "struct", "enum", "namespace", "static", "const",
            "constexpr", "auto", "extern", "virtual", "explicit", "inline", "operator", "break",
            "continue", "signals", "slots", "static_assert"}
ASSIGNING = {"=", "+=", "-=", "*=", "/=", "|=", "&=", "^=", "%=", "<<=", ">>="}


@dataclass(frozen=True)
class Mutant:
    """A change to a source: the text between start and end is replaced."""

    path: str
    operator: str
    line: int
    start: int
    end: int
    replacement: str
    before: str
    after: str

    @property
    def key(self):
        """Identifies the mutant as long as its line does not change."""
        return f"{self.path}:{self.line}:{self.operator}:{self.before}:{self.after}:{self.start}"

    def applied(self, text):
        """The source with the change."""
        return text[:self.start] + self.replacement + text[self.end:]


def mutants_of(path, text, virtual_names=frozenset()):
    """All mutants of a source text, in the order of their places."""
    code = Code(text)
    skipped = skipped_tokens(code)
    found = []
    for index in range(len(code.tokens)):
        if index in skipped:
            continue
        for find in FINDERS:
            found += find(code, index)
        found += unvirtual(code, index, virtual_names)
    lines = Lines(text)
    made = {made.key: made for made in (lines.mutant(path, *change) for change in found)}
    return sorted(made.values(), key=lambda mutant: (mutant.start, mutant.end, mutant.replacement))


class Lines:
    """Turns changes of a text into mutants that say what the changed lines become."""

    def __init__(self, text):
        self.text = text
        self.starts = [0] + [found.end() for found in re.finditer("\n", text)]

    def mutant(self, path, operator, start, end, replacement):
        """The mutant that replaces what is between start and end."""
        # Records in the log name their source line: the lines after a change keep their numbers.
        kept = replacement + "\n" * (self.text.count("\n", start, end) - replacement.count("\n"))
        line = bisect.bisect_right(self.starts, start)
        first = self.starts[line - 1]
        last = self.text.find("\n", end) % (len(self.text) + 1)  # the end, if there is none
        before = self.text[first:last]
        after = self.text[first:start] + kept + self.text[end:last]
        return Mutant(path, operator, line, start, end, kept, one_line(before), one_line(after))


def one_line(text):
    """Text with its white space, which may span lines, as single spaces."""
    return " ".join(text.split())


def skipped_tokens(code):
    """Indices of tokens in declarations that no test could see changed."""
    skipped = set()
    for index, token in enumerate(code.tokens):
        if token.text in DECLARING and code.at(index + 1) == "(":
            skipped.update(range(index, code.next(index + 1)))
        elif token.text == "[" and code.at(index + 1) == "[":
            skipped.update(range(index, code.next(index)))
        elif token.text == "template" and code.at(index + 1) == "<":
            skipped.update(range(index, after_angle(code, index + 1)))
        elif token.text == "using":
            skipped.update(range(index, find(code, index, ";")))
        elif token.text == "extern" and code.kind(index + 1) == "string":
            skipped.add(index + 1)
        elif token.text == "operator":
            skipped.update((index, index + 1))
        elif code.at(index - 1) == "=" and token.text == "0" and code.at(index - 2) in (
                ")", "const", "noexcept", "override"):
            skipped.add(index)  # a pure virtual function
    return skipped


def find(code, index, text):
    """The index of the next token with this text, skipping brackets; that of the end without."""
    while index < len(code.tokens) and code.at(index) != text:
        index = code.next(index)
    return index


def after_angle(code, index):
    """The index after the `>` that closes the `<` at index."""
    depth = 0
    while index < len(code.tokens):
        depth += {"<": 1, ">": -1}.get(code.at(index), 0)
        index += 1
        if depth == 0:
            break
    return index


def binary(code, index):
    """Another operator between the same operands."""
    token = code.tokens[index]
    if token.kind != "op" or token.text not in BINARY or not code.spaced(index):
        return []
    if "string" in (code.kind(index - 1), code.kind(index + 1)) and token.text in "+-":
        return []
    name = BINARY_NAMES.get(token.text, "arithmetic")
    return [(name, token.start, token.end, other) for other in BINARY[token.text]]


def negation(code, index):
    """A `!` removed, and `++` for `--`."""
    token = code.tokens[index]
    if token.kind == "op" and token.text == "!":
        return [("not", token.start, token.end, "")]
    other = {"++": "--", "--": "++"}.get(token.text)
    return [("arithmetic", token.start, token.end, other)] if other else []


def condition(code, index):
    """A condition negated, and the two results of `?:` exchanged."""
    token = code.tokens[index]
    if token.text in ("if", "while") and code.at(index + 1) == "(":
        inside = range(index + 2, code.match.get(index + 1, index + 2))
        texts = [code.at(i) for i in inside]
        simple = not {";", "=", "==", "!=", "!"} & set(texts) and texts
        if simple:
            start, end = code.tokens[inside[0]].start, code.tokens[inside[-1]].end
            return [("condition", start, end, f"!({code.text[start:end]})")]
    if token.text == "?":
        return exchanged_results(code, index)
    return []


def exchanged_results(code, index):
    """The change that exchanges what stands around the `:` of a `?:`."""
    colon = find(code, index, ":")
    end = colon + 1
    while end < len(code.tokens) and code.at(end) not in (";", ",", ")", "}", "]", "?"):
        end = code.next(end)
    if end >= len(code.tokens) or code.at(end) == "?":
        return []
    return [exchange("ternary", code, (index + 1, colon - 1), (colon + 1, end - 1))]


def exchange(operator, code, left, right):
    """The change that exchanges two ranges of tokens, given by their first and last."""
    first, second = (code.text[code.tokens[a].start:code.tokens[b].end] for a, b in (left, right))
    between = code.text[code.tokens[left[1]].end:code.tokens[right[0]].start]
    return (operator, code.tokens[left[0]].start, code.tokens[right[1]].end,
            second + between + first)


def words(code, index):
    """A word for its counterpart."""
    token = code.tokens[index]
    if token.kind != "word":
        return []
    if token.text in LOG_LEVELS and code.at(index - 2) == "PLogLevel":
        return [("log level", token.start, token.end, LOG_LEVELS[token.text])]
    operator, others = WORDS.get(token.text, ("", []))
    if token.text in MEMBERS and code.at(index - 1) not in (".", "->", "::"):
        return []
    return [(operator, token.start, token.end, other) for other in others]


def numbers(code, index):
    """A constant one higher, and 0."""
    token = code.tokens[index]
    if token.kind != "number":
        return []
    found = re.fullmatch(r"(0[xX][\da-fA-F']+|[\d']+)([uUlLzZ]*)", token.text)
    if found is None:
        return floats(token)
    value = int(found.group(1).replace("'", ""), 0 if found.group(1)[:2] in ("0x", "0X") else 10)
    values = [value + 1] if value == 0 else [value + 1, 0]
    return [("number", token.start, token.end, f"{v}{found.group(2)}") for v in values]


def floats(token):
    """Changes of a constant with a point or exponent."""
    found = re.fullmatch(r"([\d.]+(?:[eE][-+]?\d+)?)([fFlL]?)", token.text)
    if found is None:
        return []
    value = float(found.group(1))
    values = [value + 1] if value == 0 else [value + 1, 0.0]
    return [("number", token.start, token.end, f"{v!r}{found.group(2)}") for v in values]


def texts(code, index):
    """Another text or character."""
    token = code.tokens[index]
    if token.kind == "char":
        other = "'+'" if token.text.endswith("'~'") else "'~'"
        return [("text", token.start, token.end, token.text[:token.text.index("'")] + other)]
    if token.kind != "string" or 'R"' in token.text:
        return []
    return [("text", token.start, token.end, token.text[:-1] + '~"')]


def returns(code, index):
    """A default-constructed value returned."""
    token = code.tokens[index]
    end = find(code, index, ";")
    if token.text != "return" or end in (index + 1, len(code.tokens)):
        return []
    start, last = code.tokens[index + 1].start, code.tokens[end - 1].end
    value = code.text[start:last]
    if value in ("true", "false", "0", "nullptr", "{}"):
        return []
    return [("return", start, last, "{}")]


def statements(code, index):
    """A statement removed: a call, an assignment, a jump."""
    if not starts_statement(code, index):
        return []
    end = find(code, index, ";")
    if end >= len(code.tokens):
        return []
    first = code.at(index)
    jump = first in ("break", "continue") or (first == "return" and end == index + 1)
    if not jump and not removable(code, index, end):
        return []
    operator = "jump" if jump else "statement"
    return [(operator, code.tokens[index].start, code.tokens[end].end, ";")]


def starts_statement(code, index):
    """True if a statement of a function begins here."""
    if not code.is_code(index):
        return False
    before = code.at(index - 1)
    if before == ")":
        return code.at(code.match.get(index - 1, 0) - 1) in ("if", "for", "while")
    return before in (";", "{", "}", "else", "do") or (
        before == ":" and code.at(find_back(code, index)) in ("case", "default"))


def find_back(code, index):
    """The index of the first token after the last `;` or brace before a place."""
    index -= 1
    while index > 0 and code.at(index - 1) not in (";", "{", "}"):
        index -= 1
    return index


def removable(code, index, end):
    """True for a call or an assignment: not a declaration, not a control statement."""
    if code.at(index) in KEYWORDS or code.kind(index) not in ("word", "op"):
        return False
    if code.at(index) in ("}", "{", "[", "~", ":"):
        return False
    if code.at(index) in ("emit", "delete"):
        return True
    i, called = index, False
    while i < end:
        if code.at(i) in ASSIGNING or code.at(i) in ("++", "--", "<<") or reads(code, i):
            return True
        if code.kind(i) == "word" and code.kind(i + 1) == "word":
            return False
        if code.at(i) in (">", "*", "&") and code.kind(i + 1) == "word" and not called:
            return False
        called = called or code.at(i) == "("
        i = code.next(i)
    return called and code.at(end - 1) == ")"


def reads(code, index):
    """True at the `>>` of a stream, which is not that of a template."""
    return code.at(index) == code.at(index + 1) == ">" and (
        code.text[code.tokens[index].start - 1].isspace())


def arguments(code, index):
    """Two adjacent arguments of a call exchanged, and a queued connection for an implied one."""
    if code.at(index) not in ("(", "{") or not is_call(code, index):
        return []
    parts = split_arguments(code, index)
    if len(parts) < 2 or any(declares(code, part) for part in parts):
        return []
    found = [exchange("arguments", code, left, right) for left, right in zip(parts, parts[1:])
             if alike(shown(code, left), shown(code, right))]
    return found + connections(code, index, parts)


def alike(left, right):
    """True if two arguments differ but may be of one type: most others would not compile."""
    return left != right and sort_of(left) == sort_of(right)


def sort_of(argument):
    """A rough type of an argument."""
    sorts = (("address", r"&"), ("lambda", r"\["), ("handle", r"(m_)?h(andle)?$|this$|nullptr$"),
             ("text", r'"|tr\(|QStringLiteral|QString|QLatin1'), ("truth", r"true$|false$"))
    return next((name for name, pattern in sorts if re.match(pattern, argument)), "value")


def is_call(code, index):
    """True if a bracket opens the arguments of a call or the members of a value."""
    before = code.kind(index - 1)
    if code.at(index) == "{":
        return code.at(index - 1) in ("return", "(", ",", "=") or (
            before == "word" and not code.opens_code(index))
    return (before == "word" and code.at(index - 1) not in KEYWORDS) or code.at(index - 1) == ">"


def split_arguments(code, index):
    """First and last token of each argument in the brackets at index."""
    end, parts, start, i, angles = code.match.get(index, index), [], index + 1, index + 1, 0
    while i < end:
        if code.at(i) == "<" and not code.spaced(i):
            angles += 1
        elif code.at(i) == ">" and angles:
            angles -= 1
        elif code.at(i) == "," and not angles:
            parts.append((start, i - 1))
            start = i + 1
        i = code.next(i)
    if start < end:
        parts.append((start, end - 1))
    return [part for part in parts if part[0] <= part[1]]


def shown(code, part):
    """The text of a range of tokens."""
    return code.text[code.tokens[part[0]].start:code.tokens[part[1]].end]


def declares(code, part):
    """True for what looks like a parameter and not like an argument."""
    first, last = part
    if code.at(first) == "const" or code.at(last) in ("*", "&", "&&"):
        return True
    i = first
    while i < last:
        if code.kind(i) == "word" and code.kind(i + 1) == "word" and code.at(i) != "new":
            return True
        if code.at(i) in ("*", "&", ">") and code.kind(i + 1) == "word" and (
                not code.spaced(i) and i > first and code.kind(i - 1) in ("word", "op")
                and code.text[code.tokens[i].end].isspace()):
            return True
        i = code.next(i)
    return False


def connections(code, index, parts):
    """A connect() without a type of connection given one that changes what it does."""
    if code.at(index - 1) != "connect" or len(parts) != 4 or code.at(parts[1][0]) != "&":
        return []
    end = code.tokens[parts[-1][1]].end
    kinds = ["Queued"]
    if shown(code, parts[0]) == shown(code, parts[2]) == "this":
        kinds.append("Direct")  # to itself: from another thread, that is a different call
    return [("connection", end, end, f", Qt::{kind}Connection") for kind in kinds]


def casts(code, index):
    """A cast to a narrower type of number."""
    if code.at(index) != "static_cast" or code.at(index + 1) != "<":
        return []
    end = after_angle(code, index + 1) - 1
    start, stop = code.tokens[index + 2].start, code.tokens[end - 1].end
    other = NARROW_TYPES.get(code.text[start:stop])
    return [("cast", start, stop, other)] if other else []


def unvirtual(code, index, virtual_names):
    """A call of the own virtual function made a call of this class's version."""
    token = code.tokens[index]
    if token.text not in virtual_names or code.at(index + 1) != "(":
        return []
    before = code.at(index - 1)
    calls = code.kind(index - 1) == "op" or before in ("return", "emit", "else")
    if not calls or before in (".", "->", "::", "~", "&", "*", ">") or not in_code(code, index):
        return []
    owner = class_around(code.text, token.start)
    return [("virtual", token.start, token.start, f"{owner}::")] if owner else []


def in_code(code, index):
    """True inside of a function's body."""
    while index is not None:
        if code.is_code(index):
            return True
        index = code.parent[index]
    return False


def class_around(text, place):
    """The class whose function or definition contains a place; '' if that cannot be seen."""
    head = text[:place]
    owners = [found.group(1) for found in re.finditer(
        r"^(?:\w[^\n;(]*[\s*&])?(\w+)::~?\w+\(|^(?:class|struct) (\w+)", head, re.MULTILINE)]
    types = re.findall(r"^(?:class|struct) (\w+)[^;]*?\{", head, re.MULTILINE)
    owners = [owner for owner in owners if owner]
    return (owners or types or [""])[-1]


def virtual_names_of(text):
    """Names of the functions that a header declares virtual or overridden."""
    return set(re.findall(r"\bvirtual\b[^;{]*?\b(\w+)\(", text)) | set(
        re.findall(r"\b(\w+)\([^;{()]*\)[^;{]*\boverride\b", text))


FINDERS = (binary, negation, condition, words, numbers, texts, returns, statements, arguments,
           casts)
