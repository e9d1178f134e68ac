"""A private copy of the checkout: sources are changed there, never in the user's own files."""

import hashlib
import os
import shutil
import subprocess
from pathlib import Path

BUILT = ("cmake", "src", "tests")


class Checkout:
    """Copies the files of a checkout that git tracks or would add, and changes one at a time."""

    def __init__(self, origin, copy):
        self.origin = Path(origin)
        self.copy = Path(copy)

    def files(self):
        """Paths of the checkout's files, relative to it."""
        listed = subprocess.run(
            ["git", "-C", str(self.origin), "ls-files", "-z", "--cached", "--others",
             "--exclude-standard"], check=True, stdout=subprocess.PIPE).stdout
        return sorted({path for path in os.fsdecode(listed).split("\0")
                       if path and (self.origin / path).is_file()})

    def bring_up_to_date(self):
        """Makes the copy equal to the checkout; untouched files keep their times."""
        files = self.files()
        for path in files:
            copy_if_different(self.origin / path, self.copy / path)
        wanted = set(files)
        for present in list(self.copy.rglob("*")):
            if present.is_file() and str(present.relative_to(self.copy)) not in wanted:
                present.unlink()

    def fingerprint(self):
        """A digest of the copy's files of which programs and tests are built."""
        digest = hashlib.sha256()
        for path in sorted(self.copy.rglob("*")):
            relative = path.relative_to(self.copy)
            if path.is_file() and (relative.parts[0] in BUILT or len(relative.parts) == 1):
                digest.update(str(relative).encode() + b"\0")
                digest.update(hashlib.sha256(path.read_bytes()).digest())
        return digest.hexdigest()

    def write(self, path, text):
        """Changes a file and keeps its time, so that only what is removed is built again."""
        file = self.copy / path
        times = file.stat()
        file.write_text(text, encoding="utf-8")
        os.utime(file, ns=(times.st_atime_ns, times.st_mtime_ns))

    def read(self, path):
        """The text of a file of the copy."""
        return (self.copy / path).read_text(encoding="utf-8")


def copy_if_different(source, target):
    """Copies content and mode, with the time of now, so that a build sees the change."""
    content = source.read_bytes()
    if not target.is_file() or target.read_bytes() != content:
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(content)
    shutil.copymode(source, target)
