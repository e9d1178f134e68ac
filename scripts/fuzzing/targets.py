"""The targets: their names, programs and folders."""

import re
from dataclasses import dataclass
from pathlib import Path

DECLARED = re.compile(r"^pcd_add_fuzz_target\((\w+)", re.MULTILINE)
BUILD = Path("build", "asan")
KEPT = Path("build", "fuzz")  # what runs leave, also when the build is removed
FINDINGS = KEPT / "findings"


@dataclass
class Target:
    """One target, in a checkout."""

    root: Path
    name: str

    @property
    def program(self):
        """The program, once it is built."""
        return self.root / BUILD / "bin" / f"fuzz_{self.name}"

    @property
    def seeds(self):
        """The folder of the inputs that are kept in the checkout."""
        return self.root / "fuzz" / "corpus" / self.name

    @property
    def corpus(self):
        """The folder of the inputs that earlier runs have found to be of interest."""
        return self.root / KEPT / "corpus" / self.name


def all_targets(root):
    """The targets that the checkout has, by name."""
    text = (root / "fuzz" / "CMakeLists.txt").read_text(encoding="utf-8")
    return {name: Target(root, name) for name in sorted(DECLARED.findall(text))}
