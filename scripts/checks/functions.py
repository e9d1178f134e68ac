"""No function in src is longer than 60 lines."""

from mutation.cppcode import Code

from .result import Result

LONGEST = 60  # lines between the braces


def check(tree):
    """Checks the bodies of all functions, and of lambdas at file level."""
    result = Result("functions")
    for path in tree.sources("src"):
        code = Code(tree.text(path))
        for brace in bodies_of(code):
            result.checked += 1
            check_body(code, brace, path, result)
    return result


def check_body(code, brace, path, result):
    """Adds a violation if the body that a brace opens is too long or does not end."""
    line = code.tokens[brace].line
    if brace not in code.match:
        result.add(path, line, "a brace is never closed: expected code whose braces match in "
                   "every branch of the preprocessor")
        return
    lines = code.tokens[code.match[brace]].line - line - 1
    if lines > LONGEST:
        result.add(path, line, f"a function of {lines} lines: expected at most {LONGEST}")


def bodies_of(code):
    """Yields the index of each brace that opens a function; functions inside it are part of it."""
    index = 0
    while index < len(code.tokens):
        if code.at(index) == "{" and code.kind(index) == "op" and not opens_scope(code, index):
            if is_function(code, index):
                yield index
            index = code.next(index)
        else:
            index += 1


def opens_scope(code, brace):
    """True if a brace holds declarations: of a type, a namespace, or with C linkage."""
    return code.heads_type(brace) or code.kind(brace - 1) == "string"


def is_function(code, brace):
    """True if a brace that opens no scope is that of a function and not of a list of values."""
    if code.at(brace - 1) in ("=", ",", "(", "{", "return", "["):
        return False
    index = brace - 1
    while index >= 0 and code.at(index) not in (";", "{", "}", "="):
        if code.at(index) == ")":
            return True
        index -= 1
    return index >= 0 and code.at(index) == "}" and ends_member(code, index)


def ends_member(code, brace):
    """True if a closing brace ends the start value of a member, before the constructor's body."""
    opening = code.match.get(brace, 0)
    return code.kind(opening - 1) == "word" and code.at(opening - 2) in (",", ":")
