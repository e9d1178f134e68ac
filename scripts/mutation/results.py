"""The results of the mutants: a file with a line for each, and the tables."""

import hashlib
import json
import threading
from collections import Counter, defaultdict
from pathlib import Path

KILLED, SURVIVED = "killed", "survived"
NOT_COMPILED, SAME_CODE = "not compiled", "same code"  # these are no changes, and do not count


def digest(text):
    """A short digest of a source."""
    return hashlib.sha256(text.encode()).hexdigest()[:16]


class Results:
    """Results in a file of JSON lines, from which a later run continues."""

    def __init__(self, file, tree):
        self.file = Path(file)
        self.tree = tree
        self.known = {}
        self.lock = threading.Lock()
        if self.file.exists():
            self.read()

    def read(self):
        """Reads the results of earlier runs. A truncated last line is left out."""
        for line in self.file.read_text(encoding="utf-8").splitlines():
            try:
                entry = json.loads(line)
                self.known[entry["key"], entry["source"]] = entry
            except (ValueError, KeyError, TypeError):
                continue

    def find(self, mutant, source):
        """The earlier result of a mutant of this source; None if it has to run.

        What was detected stays so while its source is the same; what survived is tried again
        after any change, for there may be a test for it now.
        """
        entry = self.known.get((mutant.key, source))
        if entry and (entry["status"] != SURVIVED or entry["tree"] == self.tree):
            return entry
        return None

    def add(self, mutant, source, status, **more):
        """Stores a result; it is in the file when this returns."""
        entry = {"key": mutant.key, "source": source, "tree": self.tree, "path": mutant.path,
                 "line": mutant.line, "operator": mutant.operator, "before": mutant.before,
                 "after": mutant.after, "status": status, **more}
        with self.lock:
            self.known[mutant.key, source] = entry
            self.file.parent.mkdir(parents=True, exist_ok=True)
            with self.file.open("a", encoding="utf-8") as out:
                out.write(json.dumps(entry, ensure_ascii=False) + "\n")
        return entry


def line_of(entry):
    """A result in one line."""
    by = f" by {entry['by']} ({entry['how']})" if entry.get("by") else f" ({entry['how']})"
    return (f"{entry['status']:<12} {entry['path']}:{entry['line']} [{entry['operator']}] "
            f"{entry['before']} -> {entry['after']}{by} {entry['seconds']:.1f} s")


def table(entries):
    """Results by file, and their sums."""
    files = defaultdict(Counter)
    for entry in entries:
        for name in (entry["path"], "all"):
            files[name][entry["status"]] += 1
    width = max([len(name) for name in files] + [4])
    rows = [f"{'file':<{width}}  mutants  killed  survived  not compiled  same code"]
    for name in sorted(files, key=lambda name: (name == "all", name)):
        count = files[name]
        rows.append(f"{name:<{width}}  {counted(count):>7}  {count[KILLED]:>6}  "
                    f"{count[SURVIVED]:>8}  {count[NOT_COMPILED]:>12}  {count[SAME_CODE]:>9}")
    return "\n".join(rows)


def counts(entry):
    """True if a result is that of a change to the program."""
    return entry["status"] in (KILLED, SURVIVED)


def counted(count):
    """The number of results that count."""
    return count[KILLED] + count[SURVIVED]


def survivors(entries):
    """The survivors, a line each."""
    return [f"{e['path']}:{e['line']}: [{e['operator']}] {e['before']} -> {e['after']}"
            + (f"  ({e['how']})" if e["how"] != "all passed" else "")
            for e in sorted(entries, key=lambda e: (e["path"], e["line"]))
            if e["status"] == SURVIVED]


def excess(entries, allowance):
    """True if more survived than allowed: a number, or a share as in "5%"."""
    count = Counter(entry["status"] for entry in entries)
    if allowance.endswith("%"):
        return count[SURVIVED] * 100 > float(allowance[:-1]) * counted(count)
    return count[SURVIVED] > int(allowance)
