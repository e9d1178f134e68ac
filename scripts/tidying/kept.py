"""Which runs of clang-tidy found nothing, kept from one run of scripts/tidy to the next.

clang-tidy takes as long for a unit as compiling it does. As ccache does for compilers, this remembers, by the contents
of everything that decides what it finds, that it found nothing. What has findings is not kept: it is run again.
"""

import contextlib
import hashlib
import os
import re
import shutil
import subprocess
import time
from pathlib import Path

UNUSED_FOR = 60 * 24 * 3600  # seconds after which a result is forgotten
LIBRARY = re.compile(r"=> (/\S+)")  # in what ldd prints


def default_folder():
    """Where results are kept: with the user's caches, as they are of use in every checkout at the same path."""
    return Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "pcd-tidy"


def program_files():
    """The program and its libraries, which hold most of it: a package of theirs can change without its version."""
    program = shutil.which("clang-tidy")
    listed = subprocess.run(["ldd", program], check=False, text=True, capture_output=True).stdout
    return [program, *LIBRARY.findall(listed)]


def read_digest(path):
    """The digest of a file's bytes. Raises OSError."""
    return hashlib.sha256(Path(path).read_bytes()).hexdigest()


def make_name(run, program, digest):
    """What decides the result of a run, as one digest: of the program's digests, of the arguments, and of each file by
    the function. None if it is not known what was read for the unit."""
    if not run.files:
        return None
    settings = [folder / ".clang-tidy" for folder in Path(run.path).parents if (folder / ".clang-tidy").is_file()]
    parts = [*program, *run.arguments]
    for path in (*settings, *run.files):
        parts += [str(path), digest(path)]
    return hashlib.sha256("\0".join(parts).encode()).hexdigest()


class Kept:
    """The kept results: an empty file for each run without findings, named by what decided it."""

    def __init__(self, folder):
        self.folder = folder
        self.program = [read_digest(path) for path in program_files()]
        self.digests = {}
        self.names = {}  # of runs, before they were done

    def digest(self, path):
        """The digest of a file when it was first read."""
        if path not in self.digests:
            self.digests[path] = read_digest(path)
        return self.digests[path]

    def has(self, run):
        """Whether the run found nothing when everything that decides was as it is now."""
        name = self.names[run] = make_name(run, self.program, self.digest)
        if name is None or not (self.folder / name).exists():
            return False
        (self.folder / name).touch()  # it is of use: forget_unused leaves it
        return True

    def add(self, run):
        """Keeps that the run, which was not kept before, found nothing; not if a file has changed since has(): which
        contents clang-tidy saw is unknown."""
        name = self.names[run]
        if name is not None and name == make_name(run, self.program, read_digest):
            self.folder.mkdir(parents=True, exist_ok=True)
            (self.folder / name).touch()

    def forget_unused(self):
        """Deletes what was of no use for two months."""
        if self.folder.is_dir():
            for path in self.folder.iterdir():
                with contextlib.suppress(FileNotFoundError):  # another scripts/tidy forgets it, too
                    if path.stat().st_mtime < time.time() - UNUSED_FOR:
                        path.unlink()
