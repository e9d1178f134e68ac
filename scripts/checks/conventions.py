"""Literals, casts, names and spelling follow the table "Conventions" of CONTRIBUTING.md."""

import re

from mutation.cppcode import TOKEN, Code

from .result import Result

TOPS = ("src", "tests", "bench", "examples")
NOT_OURS = ("src/toupcam/toupcam.h",)
# Arithmetic types whose name is one word: a cast to them is written as int(x).
NUMBERS = re.compile(
    r"(bool|char|short|int|long|float|double|unsigned|char16_t|uchar|ushort|uint|ulong|qreal|"
    r"q?u?int(8|16|32|64)(_t)?|qsizetype|(std::)?(size_t|ptrdiff_t|uintptr_t)|"
    r"(std::)?u?int(8|16|32|64)_t|BYTE|LONG|DWORD|HRESULT)$")
# Constants; those that are global and in headers have the prefix of the types.
CONSTANT = re.compile(r"(?!k[A-Z])([a-z]|P[A-Z])\w*$")
# A name that says what its function is given, not what it returns. Qt has some of its own, and a
# question such as isValueOf() reads well.
NAME_OF = re.compile(r"(?!is[A-Z]|indexOf$|lastIndexOf$|sizeOf$)[a-z]\w*Of$")
# American spellings, and the British ones that this project uses in comments and documents.
SPELLINGS = {
    r"colors?|colored|coloring|colorless": "colour",
    r"gray(s|ed)?|grayscale": "grey",
    r"behaviors?": "behaviour",
    r"center(s|ed|ing)?": "centre",
    r"neighbor(s|ing)?": "neighbour",
    r"\w*analyz(e|es|ed|er|ers|ing)": "analyse",
    r"micrometers?|millimeters?|kilometers?": "micrometre, millimetre",
    r"\w*(serial|normal|optim|initial|synchron|organ|general|special|minim|maxim|stabil)"
    r"iz(e|es|ed|ing|ation|ations|able)": "-ise, -isation",
    r"recogniz(e|es|ed|ing|able)": "recognise",
}
SPELLING = re.compile("|".join(rf"(?P<s{number}>(?<![\w.:`\"|-])({words})(?![\w`:(]))"
                               for number, words in enumerate(SPELLINGS)))
# A file that moc reads, and a condition in it: of the headers that may define its macros, moc reads only ours.
FOR_MOC = re.compile(r"^\s*Q_(OBJECT|GADGET|NAMESPACE)(_EXPORT)?\b", re.MULTILINE)
CONDITION = re.compile(r"^[ \t]*#[ \t]*if(n?def)?\b.*", re.MULTILINE)
CODE_IN_TEXT = re.compile(r"```.*?```|`[^`\n]*`", re.DOTALL)


def check(tree):
    """Checks all C++ files, and the spelling of the documents."""
    result = Result("files")
    for path in tree.files:
        if path.suffix == ".md":
            result.checked += 1
            text = CODE_IN_TEXT.sub(lambda code: re.sub(r"[^\n]", "`", code[0]), tree.text(path))
            check_spelling(path, text, 0, text, result)
    for path in [path for top in TOPS for path in tree.sources(top)]:
        if str(path) not in NOT_OURS:
            result.checked += 1
            check_code(path, tree.text(path), result)
    return result


def check_code(path, text, result):
    """Adds the violations of one C++ file."""
    code = Code(text)
    for index, token in enumerate(code.tokens):
        fault = (literal_fault(code, index) or text_fault(code, index) or cast_fault(code, index)
                 or constant_fault(code, index) or name_fault(code, index))
        if fault:
            result.add(path, token.line, fault)
    for found in CONDITION.finditer(text) if FOR_MOC.search(text) else ():
        result.add(path, text.count("\n", 0, found.start()) + 1,
                   f"{found[0].strip()}: expected no conditions in a file that moc reads")
    for comment in TOKEN.finditer(text):
        if comment.lastgroup == "comment":
            check_spelling(path, comment[0], comment.start(), text, result)


def literal_fault(code, index):
    """What is wrong with a literal that begins at a token; "" if nothing is."""
    inside = code.kind(index + 2) if code.at(index + 1) == "(" else ""
    if code.at(index) == "QStringLiteral" and inside == "string":
        return 'QStringLiteral("…"): expected u"…"_qs'
    if code.at(index) == "QLatin1Char" and inside == "char":
        return "QLatin1Char('…'): expected u'…', or QChar(u'…') where that is ambiguous"
    return ""


def text_fault(code, index):
    """What is wrong with a text that is filled at a token; "" if nothing is."""
    if code.at(index) != "arg" or code.at(index + 1) != "(" or code.at(index - 2) != ")":
        return ""
    opening = code.match.get(index - 2, 0)
    # A value that contains %2 would be filled by the second call.
    return ".arg(a).arg(b): expected .arg(a, b)" if code.at(opening - 1) == "arg" else ""


def cast_fault(code, index):
    """What is wrong with a cast that begins at a token; "" if nothing is."""
    if code.at(index) == "static_cast":
        name = "".join(code.at(at) for at in range(index + 2, closing_angle(code, index + 1)))
        if NUMBERS.match(name):
            return f"static_cast<{name}>(…): expected {name}(…)"
    elif code.at(index) == "(" and code.at(index + 2) == ")" \
            and NUMBERS.match(code.at(index + 1)) and code.kind(index - 1) != "word" \
            and code.at(index - 1) not in (">", ")", "]") \
            and (code.kind(index + 3) in ("word", "number") or code.at(index + 3) == "("):
        return f"({code.at(index + 1)}) …: expected {code.at(index + 1)}(…)"
    return ""


def closing_angle(code, index):
    """The place of the bracket that closes the one at a place, in a type without brackets."""
    while code.at(index) not in (">", ""):
        index += 1
    return index


def constant_fault(code, index):
    """What is wrong with the name of a constant whose "constexpr" is a token; "" if nothing is."""
    if code.at(index) != "constexpr":
        return ""
    end = index + 1
    while code.at(end) not in ("=", "{", "(", "[", ";", ""):
        end = code.next(end)
    name = code.at(end - 1)
    is_value = code.at(end) in ("=", "{", "[") and code.kind(end - 1) == "word"
    if is_value and not CONSTANT.match(name):
        return f"the constant {name}: expected a name such as mostFrames"
    return ""


def name_fault(code, index):
    """What is wrong with the name that is a token; "" if nothing is."""
    name = code.at(index)
    if code.kind(index) == "word" and NAME_OF.match(name):
        return f"{name}: expected a name of the result, such as toText, findProperty or makeRange"
    return ""


def check_spelling(path, part, start, text, result):
    """Adds the American spellings in a part of a text."""
    for found in SPELLING.finditer(part):
        british = list(SPELLINGS.values())[int(found.lastgroup[1:])]
        result.add(path, text.count("\n", 0, start + found.start()) + 1,
                   f'"{found[0]}": expected British spelling ({british})')
