"""The guides as pages: their names in the site, their headings, code and links for Doxygen."""

import re
from pathlib import PurePosixPath

from .fault import Fault

TOP = ("CHANGELOG.md", "CONTRIBUTING.md", "README.md")
FEWEST_PARTS = 3  # of a guide with a table of contents
START = PurePosixPath("README.md")
CODE = re.compile(r"^( *)(```+)(\w*)\n.*?^\1\2$", re.MULTILINE | re.DOTALL)
HEADING = re.compile(r"^(#+) +(.+?) *$", re.MULTILINE)
FIRST_LINES = re.compile(r"(# .*\n)\n")
TABLE_LINE = re.compile(r"^\|.*$", re.MULTILINE)
# A link or a picture; code between backquotes is found first, so that it has none.
LINK = re.compile(r"`[^`]*`|(!?)\[((?:[^][`]|`[^`]*`)*)\]\(([^()\s]+)\)")
# What Doxygen can highlight; it would take code of other languages for C++.
HIGHLIGHTED = {"cpp": ".cpp", "json": ".js"}


def is_guide(path):
    """True if a file is a guide: at the top, in docs, or the description of a source folder."""
    return str(path) in TOP or (path.parent.name == "docs" and path.suffix == ".md") \
        or (path.parts[0] == "src" and path.name == "README.md")


def page_name(path):
    """The name of a guide's page in the site; those of its anchors begin with it."""
    if path == START:
        return "index"
    return "-".join(("folder", *path.parent.parts[1:])) if path.name == "README.md" \
        else path.stem.lower()


def slug_of(heading):
    """The anchor that a heading has where the tree is browsed."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def without_code(text):
    """A text with its blocks of code blanked, line by line."""
    return CODE.sub(lambda code: re.sub(r"[^\n]", " ", code[0]), text)


class Guides:
    """The guides of a tree, whose texts are given by path, and the tree's files."""

    def __init__(self, texts, files):
        self.texts = texts
        self.files = set(files)
        self.copied = set()  # files that a guide links and that have no page
        self.slugs = {path: {slug_of(found[2]) for found in HEADING.finditer(without_code(text))}
                      for path, text in texts.items()}

    def title(self, path):
        """What a guide is called in the navigation: its first heading, or its folder."""
        if path.parts[0] == "src":
            return str(path.parent)
        found = HEADING.search(without_code(self.texts[path]))
        return found[2] if found else path.stem

    def order(self):
        """The guides in the order of the table of the first one, without it; folders not included.
        Raises Fault for a guide that the table lacks."""
        table = "\n".join(TABLE_LINE.findall(self.texts[START]))
        found = [PurePosixPath(link[3]) for link in LINK.finditer(table) if link[3]]
        lost = [path for path in self.texts
                if path.parts[0] != "src" and path != START and path not in found]
        if lost:
            raise Fault(f"{START}: no row of its table links {', '.join(map(str, lost))}: "
                        "expected one for each guide")
        return [path for path in found if path in self.texts]

    def folders(self):
        """The descriptions of the source folders."""
        return sorted(path for path in self.texts if path.parts[0] == "src")

    def page(self, path):
        """The text of a guide for Doxygen, line by line. Raises Fault for links to nowhere."""
        faults, parts, end = [], [], 0
        text = self.texts[path]
        for code in [*CODE.finditer(text), None]:
            part = text[end:code.start() if code else len(text)]
            line = text.count("\n", 0, end) + 1
            parts.append(self.prose(path, part, line, faults))
            if code:
                parts.append(fenced(code))
                end = code.end()
        if faults:
            raise Fault("\n".join(faults))
        text = "".join(parts)
        return FIRST_LINES.sub(r"\1[TOC]\n", text, count=1) if self.is_long(path) else text

    def is_long(self, path):
        """True of a guide that has a table of contents in the site, between its first lines."""
        return path != START and len(self.slugs[path]) > FEWEST_PARTS

    def prose(self, path, part, line, faults):
        """A part of a guide without code, which begins at a line; adds what is wrong to faults."""
        def replaced(found):
            if not found[3]:
                return found[0]
            target, fault = self.target(path, found[3], found[1] == "!")
            if fault:
                faults.append(f"{path}:{line + part.count(chr(10), 0, found.start())}: {fault}")
            return f"{found[1]}[{self.words(path, found)}]({target})"
        return HEADING.sub(lambda found: heading(path, found), LINK.sub(replaced, part))

    def words(self, path, found):
        """The words of a link; for one that names a guide's file, the guide's title."""
        file = normalised(path.parent / found[3].partition("#")[0])
        is_name = file in self.texts and found[2] in (found[3], str(file), file.name)
        return self.title(file) if is_name else found[2]

    def target(self, path, link, is_picture):
        """Where a guide's link leads in the site, and what is wrong with it, "" if nothing is."""
        if re.match(r"\w+:", link):
            return link, ""
        name, _, anchor = link.partition("#")
        file = normalised(path.parent / name) if name else path
        if file in self.texts:
            if anchor and anchor not in self.slugs[file]:
                return "", f"the link to {link}: {file} has no such heading"
            return f"@ref {page_name(file)}{f'-{anchor}' if anchor else ''}", ""
        if file not in self.files:
            return "", f"the link to {link}: expected a file of the tree"
        if is_picture:
            return file.name, ""
        self.copied.add(file)
        return f"files/{file}.txt", ""


def heading(path, found):
    """A heading with its anchor; the first one has the page's name."""
    marks, text = found[1], found[2]
    if len(marks) > 1:
        return f"{marks} {text} {{#{page_name(path)}-{slug_of(text)}}}"
    if path.parts[0] == "src":
        text = str(path.parent)
    name = "mainpage" if path == START else page_name(path)
    return f"# {text} {{#{name}}}"


def fenced(code):
    """A block of code with a language that Doxygen has, or none."""
    first, _, rest = code[0].partition("\n")
    fence = first[:len(first) - len(code[3])]
    return f"{fence}{{{HIGHLIGHTED.get(code[3], '.unparsed')}}}\n{rest}"


def normalised(path):
    """A path without its "..", which may not lead out of the tree."""
    parts = []
    for part in path.parts:
        if part == ".." and parts:
            parts.pop()
        elif part != ".":
            parts.append(part)
    return PurePosixPath(*parts)
