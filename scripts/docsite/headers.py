"""The headers of the libraries' faces, with a sentence about each file for Doxygen."""

import re
from pathlib import PurePosixPath

from checks.faces import HEADERS

# A section of a class, up to the next one or to the end of the class.
PRIVATE = re.compile(r"^( *)private:\n(?:(?!\1[a-z}]).*\n)*", re.MULTILINE)
SPACE = re.compile(r"^(?:namespace (\w+) \{$|\} // namespace)", re.MULTILINE)
LIBRARY = re.compile(r"^pcd_add_library\(", re.MULTILINE)


def find_headers(tree):
    """The faces of the libraries that the project makes for hosts and plugins."""
    lists = [path for path in tree.files if path.parts[0] == "src" and len(path.parts) == 3
             and path.name == "CMakeLists.txt" and LIBRARY.search(tree.text(path))]
    return [path.parent / name for path in lists
            for found in HEADERS.findall(tree.text(path)) for name in found.split()]


def for_doxygen(path, text):
    """A header as Doxygen reads it."""
    return with_sentence(path, without_private(text))


def without_private(text):
    """A header without what its classes keep private, whose lines are left empty. Doxygen would make
    pages of the types there."""
    return PRIVATE.sub(lambda part: "\n" * part[0].count("\n"), text)


def with_sentence(path, text):
    """A header followed by the sentence about its file: that of the type or namespace of the same
    name. A header without one has a sentence of its own."""
    named = re.search(rf"^(?:template.*>\s*)?(?:class|struct|enum class|namespace)\s+"
                      rf"(?:[A-Z]+_\w+\s+)?{path.stem}\b[^;]*$", text, re.MULTILINE)
    if not named:
        return text
    # The last namespace that was opened before it; none if that was closed.
    space = ["", *SPACE.findall(text[:named.start()])][-1]
    name = f"{space}::{path.stem}" if space else path.stem
    return f"{text}/// @file\n/// @copybrief {name}\n"


def folder_sentences(guides, headers):
    """What Doxygen reads about the folders of the headers: the first sentence of each guide."""
    folders = {parent for path in headers for parent in path.parents if parent.parts}
    texts = []
    for folder in sorted(folders):
        guide = guides.texts.get(folder / "README.md")
        if guide is None and folder != PurePosixPath("src"):
            continue
        sentence = first_sentence(guide) if guide else "All sources."
        texts.append(f"/// @dir {folder}\n/// @brief {sentence}")
    return "\n\n".join(texts) + "\n"


def first_sentence(guide):
    """The first sentence of a guide, without links."""
    paragraph = (guide.split("\n\n") + [""])[1].replace("\n", " ")
    paragraph = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", paragraph)
    return re.split(r"(?<=\.) (?=[A-Z])", paragraph)[0]
