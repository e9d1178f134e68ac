"""A folder of src holds about a dozen classes and has a README.md."""

from pathlib import PurePosixPath

from .result import Result

MOST = 12  # classes
EXCEPTIONS = {
    "src/PCdPlugins/PTDevice": (28, "hosts see its paths in log records, so it stays flat"),
}
TABLE = PurePosixPath("scripts/checks/folders.py")


def check(tree):
    """Checks all folders with C++ sources."""
    classes = {}
    for path in tree.sources("src"):
        classes.setdefault(path.parent, set()).add(path.stem)
    result = Result("folders", len(classes))
    for folder, names in sorted(classes.items()):
        readme = folder / "README.md"
        if readme not in tree.files:
            result.add(readme, 1, "is missing: expected what lives in the folder, what it may "
                       "include, and where to begin reading")
        check_size(folder, len(names), result)
    for folder in EXCEPTIONS:
        if PurePosixPath(folder) not in classes:
            result.add(TABLE, 1, f"{folder} has no sources: expected that its exception is removed")
    return result


def check_size(folder, size, result):
    """Adds a violation if a folder has too many classes, or fewer than an exception says."""
    most, reason = EXCEPTIONS.get(str(folder), (MOST, ""))
    if size > most:
        result.add(folder / "README.md", 1, f"the folder holds {size} classes: expected at most "
                   f"{most}{f' ({reason})' if reason else ''}")
    elif reason and size < most:
        result.add(TABLE, 1, f"{folder} holds {size} classes: expected that its exception, {most}, "
                   f"is {'lowered' if size > MOST else 'removed'}")
