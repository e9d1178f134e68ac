"""The checkout for the checks: its files, and its commits in git."""

import subprocess
from pathlib import Path, PurePosixPath

CPP = (".cpp", ".h")
MAIN = "origin/main"  # what a branch is compared with
BUILD, CHANGELOG = "build", "debian/changelog"


class InputError(Exception):
    """What was given cannot be checked; the text says what is wrong and what was expected."""


class Tree:
    """A checkout: its tracked and its new files, ignored ones left out, by relative path. Or a
    source package, which has no git: its files except those in the build folder."""

    def __init__(self, root):
        self.root = Path(root)
        is_package = not (self.root / ".git").exists() and (self.root / CHANGELOG).exists()
        paths = self.unpacked() if is_package else self.known_to_git()
        self.files = sorted(path for path in paths if (self.root / path).is_file())
        self.texts = {}

    def known_to_git(self):
        """The paths of a checkout. Raises InputError."""
        ended = self.run_git("ls-files", "-z", "--cached", "--others", "--exclude-standard")
        if ended.returncode != 0:
            raise InputError(f"{self.root}: {ended.stderr.strip()}, expected a git checkout")
        return {*map(PurePosixPath, ended.stdout.split("\0")[:-1])}

    def unpacked(self):
        """The paths of a source package."""
        return {PurePosixPath(path.relative_to(self.root)) for top in self.root.iterdir()
                if top.name != BUILD for path in (top, *top.rglob("*"))}

    def run_git(self, *arguments):
        """Runs a git command in the checkout."""
        return subprocess.run(["git", "-C", str(self.root), *arguments], check=False,
                              capture_output=True, text=True)

    def git(self, *arguments):
        """What a git command prints; None if it fails."""
        ended = self.run_git(*arguments)
        return ended.stdout if ended.returncode == 0 else None

    def text(self, path):
        """The text of a file. Raises InputError if it cannot be read."""
        if path not in self.texts:
            try:
                self.texts[path] = (self.root / path).read_text(encoding="utf-8")
            except (OSError, UnicodeDecodeError) as error:
                raise InputError(f"{path}: {error}, expected a text in UTF-8") from error
        return self.texts[path]

    def sources(self, top):
        """The C++ files below a folder at the top of the tree."""
        return [path for path in self.files if path.suffix in CPP and path.parts[0] == top]
