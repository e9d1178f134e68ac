"""Mutexes, threads, and hops to other threads have a comment."""

import re

from mutation.cppcode import TOKEN

from .result import Result

# A mutex is explained where it is declared, a hop where it is made.
MUTEX = re.compile(r"^\s*((static|mutable|inline|thread_local)\s+)*"
                   r"(std::(recursive_|shared_|timed_)*mutex|QMutex|QReadWriteLock)\s+\w+\s*;")
HOP = re.compile(r"\bQt::(Blocking)?QueuedConnection\b|\bpostEvent\(|\bstd::thread\([^)]|"
                 r"\bstd::async\(|\bmoveToThread\(")
LINES_ABOVE = 3  # a statement may begin there, or the comment be followed by its first lines
COMMENT = re.compile(r"//|/\*")


def check(tree):
    """Checks the C++ files of src."""
    result = Result("mutexes and hops")
    for path in tree.sources("src"):
        text = tree.text(path)
        bare = without_comments(text).split("\n")
        lines = text.split("\n")
        for number, line in enumerate(bare):
            if MUTEX.match(line):
                what, above = "a mutex without a comment: expected what it guards", 2
            elif HOP.search(line):
                what, above = ("a hop to another thread without a comment: expected which thread, "
                               "and why"), LINES_ABOVE
            else:
                continue
            result.checked += 1
            near = lines[max(0, number - above):number + 1]
            if not any(COMMENT.search(one) for one in near):
                result.add(path, number + 1, what)
    return result


def without_comments(text):
    """A source text with the same lines, without its comments and literals."""
    def blank(found):
        if found.lastgroup in ("comment", "string", "raw", "char", "preproc"):
            return re.sub(r"[^\n]", " ", found[0])
        return found[0]
    return TOKEN.sub(blank, text)
