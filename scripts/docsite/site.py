"""The site, from a copy of what Doxygen reads of the tree."""

import re
import shutil
import subprocess
from pathlib import Path

from checks.tree import Tree

from .fault import Fault
from .guides import Guides, is_guide, page_name
from .headers import find_headers, folder_sentences, for_doxygen
from .layout import layout

OWN = Path(__file__).resolve().parent
ANCHOR = re.compile(r'\bid="(a[0-9a-f]+)"')
IN_HEADER = re.compile(r"\b(\w+_8h\.html)#(a[0-9a-f]+)")
VERSION = re.compile(r"^project\(\w+ VERSION ([\d.]+)", re.MULTILINE)


class Site:
    """The site of a tree: built in one folder, from a copy of what Doxygen reads in another."""

    def __init__(self, root):
        self.tree = Tree(root)
        self.headers = find_headers(self.tree)
        paths = [path for path in self.tree.files if is_guide(path)]
        self.guides = Guides({path: self.tree.text(path) for path in paths}, self.tree.files)
        self.work = self.tree.root / "build" / "docs-work"
        self.copy = self.work / "tree"
        self.folder = self.tree.root / "build" / "site"

    def build(self):
        """Builds the site again. Raises Fault."""
        shutil.rmtree(self.work, ignore_errors=True)
        shutil.rmtree(self.folder, ignore_errors=True)
        self.prepare()
        self.run_doxygen()
        (self.work / "site").rename(self.folder)
        self.correct_navigation()
        for path in sorted(self.guides.copied):
            target = self.folder / "files" / f"{path}.txt"
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.tree.root / path, target)

    def prepare(self):
        """Writes the copy of the tree."""
        for path in self.headers:
            self.write(path, for_doxygen(path, self.tree.text(path)))
        for path in self.guides.texts:
            self.write(f"{page_name(path)}.md", self.guides.page(path))
        self.write("folders.dox", folder_sentences(self.guides, self.headers))
        self.write("layout.xml", layout(self.guides))
        shutil.copytree(self.tree.root / "docs" / "images", self.copy / "docs" / "images")
        shutil.copy(OWN / "site.css", self.copy)

    def write(self, path, text):
        """Writes a file of the copy."""
        file = self.copy / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def run_doxygen(self):
        """Reads the copy with Doxygen. Raises Fault with what it warns of."""
        version = VERSION.search(self.tree.text(Path("CMakeLists.txt")))
        settings = (OWN / "Doxyfile").read_text(encoding="utf-8")
        settings += f"PROJECT_NUMBER = {version[1] if version else ''}\n"
        ended = subprocess.run(["doxygen", "-"], cwd=self.copy, input=settings, check=False,
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        if ended.returncode != 0 or ended.stderr:
            raise Fault(self.in_tree(ended.stderr.replace(f"{self.copy}/", "").strip()))

    def correct_navigation(self):
        """Makes the navigation lead to where a namespace's members are described. Doxygen lists them
        below their headers too, and takes the header's page for their place."""
        described = {anchor: file.name for file in self.folder.glob("namespace*.html")
                     for anchor in ANCHOR.findall(file.read_text(encoding="utf-8"))}
        for file in self.folder.glob("*.js"):
            text = file.read_text(encoding="utf-8")
            file.write_text(IN_HEADER.sub(
                lambda link: f"{described.get(link[2], link[1])}#{link[2]}", text),
                encoding="utf-8")

    def in_tree(self, text):
        """A text about the copy in which the guides have the names that they have in the tree."""
        names = {f"{page_name(path)}.md": str(path) for path in self.guides.texts}
        return re.sub(r"^([\w-]+\.md):", lambda found: f"{names[found[1]]}:", text,
                      flags=re.MULTILINE)
