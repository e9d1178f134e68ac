"""A build of the private copy, which is restored after a change without compiling."""

import hashlib
import os
import shlex
import shutil
import time
from collections import defaultdict
from pathlib import Path

from . import processes

BUILD_LIMIT = 900  # seconds for what depends on one change
CONFIGURE = (
    "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_C_COMPILER=gcc", "-DCMAKE_CXX_COMPILER=g++",
    "-DPCD_WERROR=OFF", "-DPCD_BUILD_TESTS=ON",
    # A rebuilt library does not rebuild its users: its symbols are the same.
    "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON")
COMPILE = "-O0 -w --coverage"
# Of the many programs that run, only some should write coverage data. gcov's own variables only set
# the place; its errors would be mixed into the program's output, which tests read.
GATE = f"""#include <stdlib.h>
__attribute__((visibility("hidden"))) void __real___gcov_exit(void);
__attribute__((visibility("hidden"))) void __wrap___gcov_exit(void);
void __wrap___gcov_exit(void) {{
    if (getenv("{processes.COVERAGE_VARIABLE}"))
        __real___gcov_exit();
}}
"""
# A change to what has no definition must fail here, not in the program that loads the library.
LIBRARY_LINK = "-Wl,-z,defs"


class BuildError(Exception):
    """The sources do not build; the text is the build's output."""


class Build:
    """A CMake build directory of a source tree."""

    def __init__(self, tree, directory, pristine, jobs=1):
        self.tree = Path(tree)
        self.directory = Path(directory)
        self.pristine = Path(pristine)
        self.jobs = jobs
        self.dependents = {}

    def configure(self):
        """Makes the build directory. Raises BuildError."""
        self.directory.mkdir(parents=True, exist_ok=True)
        self.gate().with_suffix(".c").write_text(GATE, encoding="utf-8")
        self.expect(["gcc", "-c", "-fPIC", "-o", str(self.gate()),
                     str(self.gate().with_suffix(".c"))])
        self.expect(self.configuration())

    def gate(self):
        """The object that decides whether a program records what it executed."""
        return self.directory / "gate.o"

    def make(self, targets):
        """Builds targets, and keeps a copy of the results. Raises BuildError."""
        self.expect(self.ninja(*targets))
        self.keep()
        self.dependents = self.read_dependents()

    def expect(self, command):
        """Runs a command that has to succeed. Raises BuildError."""
        ended = processes.run(command, None)
        if not ended.good:
            raise BuildError(ended.output)

    def users_of(self, folders, names):
        """Those of the named targets that have sources in some folders of the tree."""
        wanted = {str(self.tree / folder) for folder in folders}
        return [name for name in names if wanted & {
            os.path.dirname(path) for path in self.inputs_of(name) if path.endswith(".cpp")}]

    def inputs_of(self, target):
        """All input files of a target; none if there is no such target."""
        listed = processes.run(self.ninja("-t", "inputs", target), None)
        return listed.output.splitlines() if listed.good else []

    def configuration(self):
        """The command that configures the build."""
        linker = f"-Wl,--wrap=__gcov_exit {self.gate()} "
        linker += "-fuse-ld=lld " if shutil.which("ld.lld") else ""
        return ["cmake", "-S", str(self.tree), "-B", str(self.directory), *CONFIGURE,
                f"-DCMAKE_C_FLAGS={COMPILE}", f"-DCMAKE_CXX_FLAGS={COMPILE}",
                f"-DCMAKE_EXE_LINKER_FLAGS={linker}",
                f"-DCMAKE_SHARED_LINKER_FLAGS={linker}{LIBRARY_LINK}",
                f"-DCMAKE_MODULE_LINKER_FLAGS={linker}"]  # a test's plugin is incomplete

    def ninja(self, *arguments):
        """The command that runs ninja here."""
        return ["ninja", "-C", str(self.directory), "-j", str(self.jobs), *arguments]

    def target(self, name):
        """Builds a target. True if it could be built."""
        return processes.run(self.ninja(name), BUILD_LIMIT).good

    def code_of(self, objects):
        """The code of objects, optimised, as assembler's text; None if one does not compile."""
        texts = []
        for name in sorted(objects):
            command = processes.run(self.ninja("-t", "commands", "-s", name), None).output
            ended = processes.run(assembling(command.splitlines()[-1]), BUILD_LIMIT, self.directory)
            if not ended.good:
                return None
            texts.append(ended.output)
        return texts

    def digest_of(self, target, more):
        """A digest of the objects that a target is made of, and of more words."""
        digest = hashlib.sha256("\0".join(more).encode())
        for name in sorted(self.inputs_of(target)):
            if name.endswith((".o", ".qm")):
                digest.update(hashlib.sha256((self.directory / name).read_bytes()).digest())
        return digest.hexdigest()

    def read_dependents(self):
        """Which objects depend on each file of the tree: relative path to a set of objects."""
        listed = processes.run(self.ninja("-t", "deps"), None).output
        dependents, current = defaultdict(set), ""
        for line in listed.splitlines():
            if line.startswith("    "):
                path = os.path.normpath(os.path.join(self.directory, line.strip()))
                if path.startswith(f"{self.tree}/"):
                    dependents[os.path.relpath(path, self.tree)].add(current)
            elif line:
                current = line.partition(":")[0]
        return {path: {o for o in objects if (self.pristine / o).suffix == ".o"
                       and (self.pristine / o).exists()}
                for path, objects in dependents.items()}

    def made_files(self):
        """Everything a build makes except of its own records, relative to the directory."""
        for folder, folders, files in os.walk(self.directory):
            folders[:] = [f for f in folders if f not in ("CMakeFiles.tmp", "Testing")]
            for name in files:
                path = Path(folder, name)
                if not name.startswith(".ninja") and path.suffix not in (".gcda", ".log"):
                    yield path.relative_to(self.directory)

    def keep(self):
        """Brings the kept copy up to date."""
        made = set(self.made_files())
        for path in made:
            restore(self.directory / path, self.pristine / path)
        for path in list(self.pristine.rglob("*")):
            if path.is_file() and path.relative_to(self.pristine) not in made:
                path.unlink()

    def moc_of(self, path):
        """What moc made of a header, with the marks that it is done."""
        made = self.directory.rglob(f"moc_{Path(path).stem}.cpp")
        return {str(file.relative_to(self.directory)) for source in made
                for file in (source, source.parent.parent / "timestamp")}

    def discard(self, objects):
        """Removes objects, so that they are made again."""
        for path in with_notes(objects):
            (self.directory / path).unlink(missing_ok=True)

    def put_back(self, discarded, since):
        """Puts the kept files back for objects that were discarded, and all made since a time."""
        for path in with_notes(discarded):
            restore(self.pristine / path, self.directory / path)
        for path in list(self.made_files()):
            if (self.directory / path).lstat().st_mtime >= since:
                self.put_back_one(path)

    def put_back_one(self, path):
        """Puts one kept file back; what was not there before goes."""
        if (self.pristine / path).exists():
            restore(self.pristine / path, self.directory / path)
        else:
            (self.directory / path).unlink()


def assembling(command):
    """A command that writes optimised assembler, made from one that compiles an object."""
    words = shlex.split(command)
    compiler = next(i for i, word in enumerate(words) if not word.endswith("ccache"))
    kept, skip = [], 0
    for word in words[compiler:]:
        if skip:
            skip -= 1
        elif word in ("-o", "-MF", "-MT"):
            skip = 1  # with its argument
        elif word not in ("-c", "-MD", "--coverage", "-O0"):
            kept.append(word)
    return [*kept, "-O2", "-S", "-o", "-"]


def with_notes(made):
    """What was made, objects with the notes on their lines, which come and go with them."""
    return [path for name in made for path in (Path(name), Path(name).with_suffix(".gcno"))
            if path == Path(name) or path.with_suffix(".o") == Path(name)]


def restore(source, target):
    """Copies a file with its time unless the target is the same one."""
    there, here = source.stat(), target.stat() if target.exists() else None
    if here and (here.st_mtime_ns, here.st_size) == (there.st_mtime_ns, there.st_size):
        return
    target.parent.mkdir(parents=True, exist_ok=True)
    target.unlink(missing_ok=True)
    shutil.copy2(source, target)


def moment():
    """A time that files made from now on are not older than, as file systems count."""
    return time.time() - 0.01
