"""Headers of src have a comment on each type and public function, and name a thread."""

import re

from .allowed import Allowed
from .declarations import Header
from .result import Result

THREAD = re.compile(r"//.*thread|/\*[^*]*thread", re.IGNORECASE)


def check(tree):
    """Checks all headers."""
    result, allowed = Result("types and functions"), Allowed(tree, "headers")
    headers = {path: Header(tree.text(path))
               for path in tree.sources("src") if path.suffix == ".h"}
    threaded = types_with_thread(tree, headers)
    for path, header in headers.items():
        result.checked += len(header.found)
        lacking = {one.name: (one.line, f"{one.kind} {one.name} has no comment: expected one above "
                              "it, or above the lines it continues")
                   for one in reversed(header.found) if not (one.commented or one.plain)}
        if lacks_thread(header, tree.text(path), threaded):
            lacking["thread"] = 1, ("no comment names a thread: expected one that says on which "
                                    "thread these functions run")
        for name, (line, text) in lacking.items():
            if not allowed.find(f"{path.name} {name}") and not allowed.find(path.name):
                result.add(path, line, text)
    allowed.report(result)
    return result


def lacks_thread(header, text, threaded):
    """True if a header declares functions with more code than it shows, and names no thread."""
    if all(one.kind == "type" or one.plain for one in header.found) or names_thread(text):
        return False
    bases = [one.bases for one in header.found if one.bases]
    return not bases or not all(threaded & set(names) for names in bases)


def names_thread(text):
    """True if a comment of a header says something about threads."""
    return bool(THREAD.search(text))


def types_with_thread(tree, headers):
    """The names of the types whose headers name a thread for all that derive from them."""
    return {one.name for path, header in headers.items() if names_thread(tree.text(path))
            for one in header.found if one.kind == "type"}
