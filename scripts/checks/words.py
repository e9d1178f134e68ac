"""Comments, docs and messages use plain words, not those in scripts/checks/words.txt."""

import re
from pathlib import PurePosixPath

from .allowed import Allowed
from .result import Result
from .tree import InputError

WORDS = PurePosixPath("scripts/checks/words.txt")
# Texts that authors write. Catalogues repeat the texts of the sources.
KINDS = (".cpp", ".h", ".c", ".ui", ".md", ".py", ".cmake", ".txt", ".supp", "")
NOT_OURS = ("LICENSE", "src/toupcam/toupcam.h")
INPUTS = PurePosixPath("fuzz", "corpus")  # of programs, most of them no texts
# Between two words: spaces, the end of a line with the marks of a comment or the quotes of a text,
# or the underscore in the name of a test.
GAP = r"""(?:[ \t_]|"?\n[ \t]*(?:///?<?|\#|\*|")?)+"""


def check(tree):
    """Checks all texts of the tree."""
    result, allowed = Result("files"), Allowed(tree, "words")
    words = read_words(tree)
    for path in tree.files:
        if path.suffix not in KINDS or str(path) in NOT_OURS or path == WORDS:
            continue
        if path.parent.name == "allowed" or path.is_relative_to(INPUTS):
            continue
        result.checked += 1
        check_file(path, tree.text(path), words, allowed, result)
    allowed.report(result)
    return result


def check_file(path, text, words, allowed, result):
    """Adds a violation for each word of the list in a text, unless the file may have it."""
    for word, (pattern, plain) in words.items():
        for found in pattern.finditer(text):
            if not allowed.find(f"{path}, {word}"):
                line = text.count("\n", 0, found.start()) + 1
                shown = " ".join(re.findall("[A-Za-z]+", found[0]))
                result.add(path, line, f'"{shown}": expected {plain}')


def read_words(tree):
    """The words of the list: each with its pattern, and the plain word. Raises InputError."""
    words = {}
    for number, line in enumerate(tree.text(WORDS).splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        word, separator, plain = line.partition("->")
        if not separator or not word.strip() or not plain.strip():
            raise InputError(f'{WORDS}:{number}: "{line}", expected "words -> plain word"')
        words[word.strip()] = pattern_of(word.strip()), plain.strip()
    return words


def pattern_of(words):
    """What finds words in a text, in any case, as whole words and over the end of a line."""
    return re.compile(rf"(?<![A-Za-z]){GAP.join(words.split())}(?![A-Za-z])", re.IGNORECASE)
