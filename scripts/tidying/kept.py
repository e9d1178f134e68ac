"""Which runs of clang-tidy found nothing, kept from one run of scripts/tidy to the next.

clang-tidy takes as long for a unit as compiling it does. As ccache does for compilers, this remembers, by the contents
of everything that decides what it finds, that it found nothing. What has findings is not kept: it is run again.
"""

import hashlib
import os
import shutil
import time
from functools import lru_cache
from pathlib import Path

UNUSED_FOR = 60 * 24 * 3600  # seconds after which a result is forgotten


def default_folder():
    """Where results are kept: with the user's caches, as they are of use in every checkout at the same path."""
    return Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "pcd-tidy"


@lru_cache(maxsize=None)
def contents(path):
    """The digest of a file's bytes. Raises OSError."""
    return hashlib.sha256(Path(path).read_bytes()).hexdigest()


class Kept:
    """The kept results: an empty file for each run without findings, named by what decided it."""

    def __init__(self, folder, settings):
        self.folder = folder
        self.since = time.time()
        # The program itself, as its package can change without its version.
        self.common = [contents(path) for path in (shutil.which("clang-tidy"), settings)]

    def name_of(self, run):
        """What decides the result of a run, as a digest; None if it is not known what was read for the unit."""
        if not run.files:
            return None
        digest = hashlib.sha256()
        for word in (*self.common, *run.arguments):
            digest.update(word.encode() + b"\0")
        for path in run.files:
            digest.update(f"{path}\0{contents(path)}\0".encode())
        return digest.hexdigest()

    def has(self, run):
        """Whether the run found nothing when it was last done with the same of everything that decides."""
        name = self.name_of(run)
        if name is None or not (self.folder / name).exists():
            return False
        (self.folder / name).touch()  # it is of use: forget_unused leaves it
        return True

    def add(self, run):
        """Keeps that the run found nothing; not if a file was changed meanwhile: which contents it saw is unknown."""
        name = self.name_of(run)
        if name is not None and all(os.stat(path).st_mtime < self.since for path in run.files):
            self.folder.mkdir(parents=True, exist_ok=True)
            (self.folder / name).touch()

    def forget_unused(self):
        """Deletes what was of no use for two months."""
        if self.folder.is_dir():
            for path in self.folder.iterdir():
                if path.stat().st_mtime < time.time() - UNUSED_FOR:
                    path.unlink(missing_ok=True)
